#include "dialogs/DevicePage.h"

#include "platform/base/String.h"
#include "platform/multimedia/MidiOut.h"
#include "platform/multimedia/WaveIn.h"
#include "platform/windows/DataExchange.h"

#include <array>

namespace {

constexpr int g_nWaveList = 1011;
constexpr int g_nMidiList = 1012;
constexpr int g_nWaveCombo = 1013;
constexpr int g_nMidiCombo = 1014;

constexpr DWORD g_dwCombo = CBS_DROPDOWN | WS_VSCROLL | WS_TABSTOP;
constexpr DWORD g_dwList = LBS_USETABSTOPS | WS_VSCROLL | WS_BORDER;

constexpr std::array g_controls{
    DialogControl{DialogControlKind::Static, -1, "录音设备:", 7, 7, 58, 8},
    DialogControl{DialogControlKind::Static, -1, "Midi输出设备:", 133, 7, 64, 8},
    DialogControl{DialogControlKind::ComboBox, g_nWaveCombo, "录音设备", 7, 20, 120, 63, g_dwCombo},
    DialogControl{DialogControlKind::ComboBox, g_nMidiCombo, "Midi输出设备", 133, 20, 120, 62, g_dwCombo},
    DialogControl{DialogControlKind::ListBox, g_nWaveList, "录音设备", 7, 38, 120, 96, g_dwList},
    DialogControl{DialogControlKind::ListBox, g_nMidiList, "Midi输出设备", 133, 38, 120, 96, g_dwList},
};

constexpr DialogTemplate g_template{113, "设备选择", 260, 141, g_controls};

constexpr const char* g_szNoProperties = "No properties";
// The first two rows of the recording device's list.
constexpr int g_nHeadings = 2;

// The bits of a rate, in the order of the columns.
using FormatBits = std::array<DWORD, 4>;
constexpr FormatBits g_bits11 = {WAVE_FORMAT_1M08, WAVE_FORMAT_1S08, WAVE_FORMAT_1M16, WAVE_FORMAT_1S16};
constexpr FormatBits g_bits22 = {WAVE_FORMAT_2M08, WAVE_FORMAT_2S08, WAVE_FORMAT_2M16, WAVE_FORMAT_2S16};
constexpr FormatBits g_bits44 = {WAVE_FORMAT_4M08, WAVE_FORMAT_4S08, WAVE_FORMAT_4M16, WAVE_FORMAT_4S16};

// There are bits for three rates only: each rate reads as the next of the three at or above it, and 48 kHz as
// the highest.
struct FormatRow {
    const char* szLabel;
    const FormatBits& bits;
};
constexpr std::array g_formatRows{FormatRow{"8K", g_bits11},  FormatRow{"11K", g_bits11},
                                  FormatRow{"16K", g_bits22}, FormatRow{"22K", g_bits22},
                                  FormatRow{"32K", g_bits44}, FormatRow{"44K", g_bits44},
                                  FormatRow{"48K", g_bits44}};

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

CDevicePage::CDevicePage() : CPropertyPage(g_template) {}

CDevicePage::~CDevicePage() = default;

const CMessageMap& CDevicePage::GetMessageMap() const {
    static constexpr std::array entries{
        MapNotification<&CDevicePage::OnWaveDeviceChange>(CBN_SELCHANGE, g_nWaveCombo),
        MapNotification<&CDevicePage::OnMidiDeviceChange>(CBN_SELCHANGE, g_nMidiCombo)};
    static const CMessageMap map{entries, &CPropertyPage::GetMessageMap()};
    return map;
}

void CDevicePage::DoDataExchange(CDataExchange* pDX) {
    CPropertyPage::DoDataExchange(pDX);
    DDX_Control(pDX, g_nWaveList, m_lbWave);
    DDX_Control(pDX, g_nMidiList, m_lbMidi);
    DDX_Control(pDX, g_nWaveCombo, m_cbWave);
    DDX_Control(pDX, g_nMidiCombo, m_cbMidi);
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
        m_lbWave.AddString(g_szNoProperties);
        m_cbWave.EnableWindow(false);
        return;
    }
    m_cbWave.InsertString(0, "Preferred recoring device");
    for (int i = 0; i < nDevices; ++i) {
        WAVEINCAPS caps;
        waveInGetDevCapsA(static_cast<UINT>(i), caps);
        m_cbWave.InsertString(i + 1, caps.szPname);
    }
    m_cbWave.SetCurSel(m_nWaveChoice);
    constexpr int nColumn = 23;
    m_lbWave.SetTabStops(nColumn);
    m_lbWave.InsertString(0, "\t8-bit\t\t16-bit");
    m_lbWave.InsertString(1, "Rate\tMono\tStereo\tMono\tStereo");
}

void CDevicePage::FillMidiDevices() {
    const int nDevices = static_cast<int>(midiOutGetNumDevs());
    if (nDevices < 1) {
        m_lbMidi.AddString(g_szNoProperties);
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
    while (m_lbWave.GetCount() > g_nHeadings) {
        m_lbWave.DeleteString(g_nHeadings);
    }
    m_nWaveChoice = m_cbWave.GetCurSel();
    WAVEINCAPS caps;
    if (waveInGetDevCapsA(DeviceOfRow(m_nWaveChoice), caps) != MMSYSERR_NOERROR) {
        return;
    }
    int nRow = g_nHeadings;
    for (const FormatRow& row : g_formatRows) {
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
