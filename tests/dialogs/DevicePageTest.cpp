#include "dialogs/OptionsSheet.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int WAVE_LIST = 1011;
constexpr int MIDI_LIST = 1012;
constexpr int WAVE_COMBO = 1013;
constexpr int MIDI_COMBO = 1014;
constexpr int DOWN = 0x01000015;
constexpr UINT VERSION = 0x0A1002;  // only the lower word counts

class CFakeMidi final : public IMidiOutBackend {
public:
    std::vector<MIDIOUTCAPS> m_devices = {{0x0100, "Synthesizer", MOD_SYNTH, 64, 32}};

    UINT GetNumDevs() override { return static_cast<UINT>(m_devices.size()); }
    MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) override {
        if (uDeviceId >= m_devices.size()) {
            return MMSYSERR_BADDEVICEID;
        }
        caps = m_devices[uDeviceId];
        return MMSYSERR_NOERROR;
    }
    MMRESULT Open(UINT /*uDeviceId*/, std::shared_ptr<IMidiOutPort>& /*pPort*/) override {
        return MMSYSERR_NODRIVER;
    }
};

class DevicePage : public ::testing::Test {
protected:
    ~DevicePage() override { SetMidiOutBackend(m_pPrevious); }

    // What the user does on the page, opened with these choices.
    void Run(int nWave, int nMidi, const std::function<void()>& fnUser) {
        COptionsSheet sheet;
        m_pSheet = &sheet;
        Page().m_nWaveChoice = nWave;
        Page().m_nMidiChoice = nMidi;
        toolkit::Later([&] {
            toolkit::ClickTab(sheet, 1);
            fnUser();
            toolkit::Click(*sheet.GetDlgItem(IDCANCEL), {5, 5});
        });
        EXPECT_EQ(sheet.DoModal(), IDCANCEL);
    }
    CDevicePage& Page() { return m_pSheet->m_devicePage; }
    CWnd& Item(int nId) { return *Page().GetDlgItem(nId); }
    std::vector<CString> Rows(int nId) {
        auto& list = dynamic_cast<CListBox&>(Item(nId));
        std::vector<CString> rows;
        rows.reserve(static_cast<std::size_t>(list.GetCount()));
        for (int i = 0; i < list.GetCount(); ++i) {
            rows.push_back(list.GetText(i));
        }
        return rows;
    }

    CFakeWaveInScope m_wave;
    const std::shared_ptr<CFakeMidi> m_pMidi = std::make_shared<CFakeMidi>();
    const std::shared_ptr<IMidiOutBackend> m_pPrevious = SetMidiOutBackend(m_pMidi);
    COptionsSheet* m_pSheet = nullptr;
};

TEST_F(DevicePage, ShowsWhatARecordingDeviceCanDo) {
    constexpr const char* LONG_NAME =
        "Monitor of a very long name of a device that somebody makes, 第二路输入";
    m_wave->SetDevices({{.strName = LONG_NAME, .dwFormats = 0xFFF, .nChannels = 2, .vDriverVersion = VERSION},
                        {.dwFormats = 0x1 | 0x20 | 0x400 | 0x800, .nChannels = 1, .vDriverVersion = 0}});
    const auto first =
        AllOf(SizeIs(11), Contains("Number of Channels:\t2"), Contains("Driver Version:\t16.2"));
    Run(0, 0, [&] {
        EXPECT_EQ(m_pSheet->GetActivePage(), &Page());
        EXPECT_THAT(toolkit::ComboRows(Item(WAVE_COMBO)),
                    ElementsAre("Preferred recoring device", LONG_NAME, "Fake Microphone"));
        EXPECT_EQ(Page().m_nWaveChoice, 0);
        EXPECT_THAT(Rows(WAVE_LIST), first);
        EXPECT_FALSE(Item(WAVE_LIST).IsWindowEnabled());
        toolkit::SavePicture(*m_pSheet, "options-devices.png");
        EXPECT_LE(11 * toolkit::RowHeight(Item(WAVE_LIST)) + 2, Item(WAVE_LIST).GetClientRect().bottom)
            << "a disabled list doesn't scroll";
        toolkit::PickRow(Item(WAVE_COMBO), 2);
        EXPECT_EQ(Page().m_nWaveChoice, 2);
        EXPECT_THAT(Rows(WAVE_LIST),
                    ElementsAre("\t8-bit\t\t16-bit", "Rate\tMono\tStereo\tMono\tStereo",
                                "8K\tYes\tNo\tNo\tNo", "11K\tYes\tNo\tNo\tNo", "16K\tNo\tYes\tNo\tNo",
                                "22K\tNo\tYes\tNo\tNo", "32K\tNo\tNo\tYes\tYes", "44K\tNo\tNo\tYes\tYes",
                                "48K\tNo\tNo\tYes\tYes", "Number of Channels:\t1", "Driver Version:\t0.0"));
        toolkit::PickRow(Item(WAVE_COMBO), 1);
        EXPECT_THAT(Rows(WAVE_LIST), first) << "nothing doubles";
        EXPECT_LE(toolkit::MissingWidthOfOpenList(Item(WAVE_COMBO)), 0);
    });
}

TEST_F(DevicePage, ShowsEachKindOfMidiOutput) {
    m_pMidi->m_devices = {{VERSION, "Port", MOD_MIDIPORT, 1, 2},
                          {VERSION, "Square", MOD_SQSYNTH, 1, 2},
                          {VERSION, "FM", MOD_FMSYNTH, 1, 2},
                          {VERSION, "Synthesizer", MOD_SYNTH, 1, 2}};
    constexpr const char* NO_FM = "No FM support";
    const std::vector<std::vector<CString>> kinds{{NO_FM, "Microsoft MIDI mapped"},
                                                  {NO_FM, "MIDI Hardware port enabled"},
                                                  {NO_FM, "Square wave synthesizer detected"},
                                                  {"FM support"},
                                                  {NO_FM, "MIDI Synthesizer detected"}};
    Run(0, 0, [&] {
        EXPECT_THAT(toolkit::ComboRows(Item(MIDI_COMBO)),
                    ElementsAre("Preferred Midi output device", "Port", "Square", "FM", "Synthesizer"));
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            std::vector<CString> expected = kinds[i];
            expected.insert(expected.end(),
                            {"Simultaneous notes:\t2", "Number of voices:\t\t1", "Driver version:\t\t16.2"});
            EXPECT_EQ(Rows(MIDI_LIST), expected) << i;
            EXPECT_EQ(Page().m_nMidiChoice, static_cast<int>(i));
            toolkit::Key(Item(MIDI_COMBO), DOWN);
        }
    });
}

TEST_F(DevicePage, SelectsNothingPastTheEnd) {
    Run(2, 2147483647, [this] {
        EXPECT_EQ(Page().m_nWaveChoice, -1);
        EXPECT_EQ(Page().m_nMidiChoice, -1);
        EXPECT_THAT(Rows(WAVE_LIST), SizeIs(2));
        EXPECT_THAT(Rows(MIDI_LIST), IsEmpty());
    });
}

TEST_F(DevicePage, HasNothingToChooseWithoutDevices) {
    m_wave->SetDevices({});
    m_pMidi->m_devices.clear();
    Run(0, 1, [this] {
        for (const auto& [nList, nCombo] : {std::pair{WAVE_LIST, WAVE_COMBO}, {MIDI_LIST, MIDI_COMBO}}) {
            EXPECT_THAT(Rows(nList), ElementsAre("No properties"));
            EXPECT_FALSE(Item(nCombo).IsWindowEnabled());
            EXPECT_THAT(toolkit::ComboRows(Item(nCombo)), IsEmpty());
        }
        EXPECT_EQ(Page().m_nWaveChoice, -1);
        EXPECT_EQ(Page().m_nMidiChoice, -1);
    });
}

}  // namespace
