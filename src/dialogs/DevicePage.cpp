#include "dialogs/DevicePage.h"

#include "platform/base/String.h"
#include "platform/multimedia/MidiOut.h"
#include "platform/multimedia/WaveIn.h"
#include "platform/multimedia/WaveInRow.h"
#include "platform/windows/DataExchange.h"

#include <array>

namespace {

constexpr int WAVE_LIST = 1011;
constexpr int MIDI_LIST = 1012;
constexpr int WAVE_COMBO = 1013;
constexpr int MIDI_COMBO = 1014;

constexpr DWORD COMBO_STYLE = CBS_DROPDOWN | WS_VSCROLL | WS_TABSTOP;
constexpr DWORD LIST_STYLE = LBS_USETABSTOPS | WS_VSCROLL | WS_BORDER;

constexpr std::array CONTROLS{
    DialogControl{DialogControlKind::Static, -1, "录音设备:", 7, 7, 58, 8},
    DialogControl{DialogControlKind::Static, -1, "Midi输出设备:", 133, 7, 64, 8},
    DialogControl{DialogControlKind::ComboBox, WAVE_COMBO, "录音设备", 7, 20, 120, 63, COMBO_STYLE},
    DialogControl{DialogControlKind::ComboBox, MIDI_COMBO, "Midi输出设备", 133, 20, 120, 62, COMBO_STYLE},
    DialogControl{DialogControlKind::ListBox, WAVE_LIST, "录音设备", 7, 38, 120, 96, LIST_STYLE},
    DialogControl{DialogControlKind::ListBox, MIDI_LIST, "Midi输出设备", 133, 38, 120, 96, LIST_STYLE},
};

constexpr DialogTemplate TEMPLATE{113, "设备选择", 260, 141, CONTROLS};

constexpr const char* NO_PROPERTIES = "No properties";
// The first two rows of the recording device's list.
constexpr int HEADINGS = 2;

// The bits of a rate, in the order of the columns.
using FormatBits = std::array<DWORD, 4>;
constexpr FormatBits BITS_11 = {WAVE_FORMAT_1M08, WAVE_FORMAT_1S08, WAVE_FORMAT_1M16, WAVE_FORMAT_1S16};
constexpr FormatBits BITS_22 = {WAVE_FORMAT_2M08, WAVE_FORMAT_2S08, WAVE_FORMAT_2M16, WAVE_FORMAT_2S16};
constexpr FormatBits BITS_44 = {WAVE_FORMAT_4M08, WAVE_FORMAT_4S08, WAVE_FORMAT_4M16, WAVE_FORMAT_4S16};

// There are bits for three rates only: each rate reads as the next of the three at or above it, and 48 kHz as
// the highest.
struct FormatRow {
    const char* szLabel;
    const FormatBits& bits;
};
constexpr std::array FORMAT_ROWS{FormatRow{"8K", BITS_11},  FormatRow{"11K", BITS_11},
                                 FormatRow{"16K", BITS_22}, FormatRow{"22K", BITS_22},
                                 FormatRow{"32K", BITS_44}, FormatRow{"44K", BITS_44},
                                 FormatRow{"48K", BITS_44}};

CString FormatLine(const FormatRow& row, DWORD dwFormats) {
    CString strLine = row.szLabel;
    for (const DWORD dwBit : row.bits) {
        strLine += (dwFormats & dwBit) != 0 ? "\tYes" : "\tNo";
    }
    return strLine;
}

int MajorVersion(UINT vVersion) {
    return static_cast<int>(vVersion >> 8U & 0xFFU);
}

int MinorVersion(UINT vVersion) {
    return static_cast<int>(vVersion & 0xFFU);
}

// Where no row is selected there is no device of that number.
UINT DeviceOfRow(int nRow) {
    static_assert(WAVE_MAPPER == MIDI_MAPPER);
    return nRow == 0 ? WAVE_MAPPER : static_cast<UINT>(nRow - 1);
}

// What kind of output it is, where there is something to say of it.
const char* DescribeTechnology(WORD wTechnology) {
    switch (wTechnology) {
        case MOD_MAPPER:
            return "Microsoft MIDI mapped";
        case MOD_MIDIPORT:
            return "MIDI Hardware port enabled";
        case MOD_SQSYNTH:
            return "Square wave synthesizer detected";
        case MOD_SYNTH:
            return "MIDI Synthesizer detected";
        default:
            return nullptr;
    }
}

}  // namespace

CDevicePage::CDevicePage() : CPropertyPage(TEMPLATE) {}

CDevicePage::~CDevicePage() = default;

const CMessageMap& CDevicePage::GetMessageMap() const {
    static constexpr std::array entries{
        MapNotification<&CDevicePage::OnWaveDeviceChange>(CBN_SELCHANGE, WAVE_COMBO),
        MapNotification<&CDevicePage::OnMidiDeviceChange>(CBN_SELCHANGE, MIDI_COMBO)};
    static const CMessageMap map{entries, &CPropertyPage::GetMessageMap()};
    return map;
}

void CDevicePage::DoDataExchange(CDataExchange* pDX) {
    CPropertyPage::DoDataExchange(pDX);
    DDX_Control(pDX, WAVE_LIST, m_lbWave);
    DDX_Control(pDX, MIDI_LIST, m_lbMidi);
    DDX_Control(pDX, WAVE_COMBO, m_cbWave);
    DDX_Control(pDX, MIDI_COMBO, m_cbMidi);
}

bool CDevicePage::OnInitDialog() {
    CPropertyPage::OnInitDialog();
    m_lbWave.EnableWindow(false);
    m_lbMidi.EnableWindow(false);
    FillWaveDevices();
    FillMidiDevices();
    OnMidiDeviceChange();
    OnWaveDeviceChange();
    return true;
}

void CDevicePage::FillWaveDevices() {
    const int nDevices = static_cast<int>(waveInGetNumDevs());
    if (nDevices < 1) {
        m_lbWave.AddString(NO_PROPERTIES);
        m_cbWave.EnableWindow(false);
        return;
    }
    m_cbWave.InsertString(0, "Preferred recoring device");
    for (int i = 0; i < nDevices; ++i) {
        WAVEINCAPS caps;
        waveInGetDevCapsA(static_cast<UINT>(i), caps);
        m_cbWave.InsertString(i + 1, caps.szPname);
    }
    m_cbWave.SetCurSel(FindWaveRow(m_strWaveKey, m_nWaveChoice));
    constexpr int nColumn = 23;
    m_lbWave.SetTabStops(nColumn);
    m_lbWave.InsertString(0, "\t8-bit\t\t16-bit");
    m_lbWave.InsertString(1, "Rate\tMono\tStereo\tMono\tStereo");
}

void CDevicePage::FillMidiDevices() {
    const int nDevices = static_cast<int>(midiOutGetNumDevs());
    if (nDevices < 1) {
        m_lbMidi.AddString(NO_PROPERTIES);
        m_cbMidi.EnableWindow(false);
        return;
    }
    m_cbMidi.InsertString(0, "Preferred Midi output device");
    for (int i = 0; i < nDevices; ++i) {
        MIDIOUTCAPS caps;
        midiOutGetDevCapsA(static_cast<UINT>(i), caps);
        m_cbMidi.InsertString(i + 1, caps.szPname);
    }
    m_cbMidi.SetCurSel(m_nMidiChoice);
}

void CDevicePage::OnWaveDeviceChange() {
    while (m_lbWave.GetCount() > HEADINGS) {
        m_lbWave.DeleteString(HEADINGS);
    }
    m_nWaveChoice = m_cbWave.GetCurSel();
    // Where no row is selected, the device that is away stays the chosen one.
    if (m_nWaveChoice >= 0) {
        m_strWaveKey = KeyOfWaveRow(m_nWaveChoice);
    }
    WAVEINCAPS caps;
    if (waveInGetDevCapsA(DeviceOfRow(m_nWaveChoice), caps) != MMSYSERR_NOERROR) {
        return;
    }
    int nRow = HEADINGS;
    for (const FormatRow& row : FORMAT_ROWS) {
        m_lbWave.InsertString(nRow++, FormatLine(row, caps.dwFormats));
    }
    m_lbWave.InsertString(nRow++, FormatText("Number of Channels:\t%i", int{caps.wChannels}));
    m_lbWave.InsertString(nRow, FormatText("Driver Version:\t%i.%i", MajorVersion(caps.vDriverVersion),
                                           MinorVersion(caps.vDriverVersion)));
}

void CDevicePage::OnMidiDeviceChange() {
    // Without an output the line that says so stays.
    while (m_cbMidi.IsWindowEnabled() && m_lbMidi.GetCount() > 0) {
        m_lbMidi.DeleteString(0);
    }
    m_nMidiChoice = m_cbMidi.GetCurSel();
    MIDIOUTCAPS caps;
    if (midiOutGetDevCapsA(DeviceOfRow(m_nMidiChoice), caps) != MMSYSERR_NOERROR) {
        return;
    }
    int nRow = m_lbMidi.GetCount();
    m_lbMidi.InsertString(nRow++, caps.wTechnology == MOD_FMSYNTH ? "FM support" : "No FM support");
    if (const char* const szTechnology = DescribeTechnology(caps.wTechnology)) {
        m_lbMidi.InsertString(nRow++, szTechnology);
    }
    constexpr int nColumn = 20;
    m_lbMidi.SetTabStops(nColumn);
    m_lbMidi.InsertString(nRow++, FormatText("Simultaneous notes:\t%i", int{caps.wNotes}));
    m_lbMidi.InsertString(nRow++, FormatText("Number of voices:\t\t%i", int{caps.wVoices}));
    m_lbMidi.InsertString(nRow, FormatText("Driver version:\t\t%i.%i", MajorVersion(caps.vDriverVersion),
                                           MinorVersion(caps.vDriverVersion)));
}
