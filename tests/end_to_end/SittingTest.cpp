#include "end_to_end/DesktopTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

// One user's sitting in front of the real program, by pointer and keys, on a desktop with a window manager;
// and what the next start shows of it. Pictures of each step stay in the build directory.

using namespace std::chrono_literals;

namespace {

constexpr const char* NAME_DIALOG = "^新增调弦规则$";
constexpr const char* COLOR_DIALOG = "olor|颜色";

// Colours of the screen, 0x00RRGGBB.
constexpr std::uint32_t TINT_OF_RED = 0xFFB3B3;
constexpr std::uint32_t DEFAULT_TEXT = 0x0000FF;
constexpr std::uint32_t DEFAULT_NEEDLE = 0x0000A0;

class Sitting : public CDesktopTest {
protected:
    std::uint32_t TunerPixel(int x, int y) const {
        const auto screen = m_stage.Grab();
        return screen ? screen->At(m_tuner.x + x, m_tuner.y + y) : 0;
    }
    bool WaitForPixel(int x, int y, std::uint32_t color) const {
        return m_stage.WaitForPicture(
            [&](const Picture& screen) { return screen.At(m_tuner.x + x, m_tuner.y + y) == color; }, 5s);
    }
    // Opens the colour dialog by the sheet's square of one colour, and gives it another.
    void ChooseColor(const CHand::Place& sheet, std::uint32_t colorNow, const std::string& strHtml) {
        const auto swatch = FindBlock(sheet, colorNow);
        ASSERT_TRUE(swatch);
        ASSERT_TRUE(m_hand->Click(swatch->x, swatch->y));
        ASSERT_TRUE(m_hand->FindWindow(COLOR_DIALOG));
        ASSERT_TRUE(m_hand->Keys({"alt+h", "ctrl+a"}));
        ASSERT_TRUE(m_hand->Type(strHtml));
        KeepPicture("10-color");
        ASSERT_TRUE(m_hand->Keys({"Return"}));
        ASSERT_TRUE(m_hand->WaitUntilGone(COLOR_DIALOG));
    }
    // The middle of the first square of one colour that is at least ten pixels wide and high.
    std::optional<CHand::Place> FindBlock(const CHand::Place& window, std::uint32_t color) const {
        constexpr int nSide = 10;
        const auto screen = m_stage.Grab();
        for (int y = window.y; screen && y + nSide <= window.y + window.nHeight; ++y) {
            for (int x = window.x; x + nSide <= window.x + window.nWidth; ++x) {
                const Picture block = Crop(*screen, x, y, nSide, nSide);
                if (std::all_of(block.pixels.begin(), block.pixels.end(),
                                [&](std::uint32_t pixel) { return pixel == color; })) {
                    return CHand::Place{x + nSide / 2, y + nSide / 2, 0, 0};
                }
            }
        }
        return std::nullopt;
    }
    void ChooseColors();
    void ChooseMicrophone();
    // The A, the red needle, the other microphone, the row and the tuning: "Drop E" with its lowest string at
    // C. The hop is what the capture has come to.
    void ExpectSettings() {
        EXPECT_THAT(m_stage.ReadFile("state.txt"),
                    testing::MatchesRegex("USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
                                          "44200\t255\t16711680\t32768\t16711680\t0\t3\t72\t[0-9]+\t1\n"
                                          "Sitting down\t0\t0\t0\t11\t0\t4\t1\t9\t1\t1\t2\t6\t2\n"));
    }
    static std::filesystem::path PictureFile(const std::string& strName) {
        return std::filesystem::path(FRETVANE_BINARY_DIR) / "pictures" / ("sitting-" + strName + ".png");
    }
    void KeepPicture(const std::string& strName) {
        std::this_thread::sleep_for(300ms);
        const auto screen = m_stage.Grab();
        ASSERT_TRUE(screen);
        std::filesystem::create_directories(PictureFile(strName).parent_path());
        EXPECT_TRUE(SavePng(*screen, PictureFile(strName)));
    }
};

// Row n of the list, while it is not scrolled.
constexpr int RowY(int nRow) {
    return 175 + 12 * nRow;
}

// A red needle by Apply; another colour of the text that Cancel takes back.
void Sitting::ChooseColors() {
    Click(287, 379);
    const auto sheet = m_hand->FindWindow(OPTIONS);
    ASSERT_TRUE(sheet);
    KeepPicture("9-options");
    ChooseColor(*sheet, DEFAULT_NEEDLE, "#ff0000");
    KeepPicture("11-red");
    ASSERT_TRUE(m_hand->Keys({"alt+a"}));
    EXPECT_TRUE(WaitForPixel(26, 350, TINT_OF_RED)) << "the highlight of the coarse indicator";
    ChooseColor(*sheet, DEFAULT_TEXT, "#00c000");
    ASSERT_TRUE(m_hand->Keys({"Escape"}));
    ASSERT_TRUE(m_hand->WaitUntilGone(OPTIONS));
    KeepPicture("12-applied-and-cancelled");
}

// The second page; the second of the real microphones, which becomes the third while the sheet is open.
void Sitting::ChooseMicrophone() {
    const auto plugIn = [this](const std::string& strName) {
        ASSERT_TRUE(m_sound.Control(
            {"load-module", "module-remap-source", "source_name=" + strName, "master=mic_feed.monitor"}));
    };
    ASSERT_NO_FATAL_FAILURE(plugIn("other"));
    Click(287, 379);
    ASSERT_TRUE(m_hand->FindWindow(OPTIONS));
    ASSERT_TRUE(m_hand->Keys({"Right", "Tab", "Down", "Down"}));
    KeepPicture("13-devices");
    ASSERT_NO_FATAL_FAILURE(plugIn("a_headset"));
    ASSERT_TRUE(m_hand->Keys({"Return"}));
    ASSERT_TRUE(m_hand->WaitUntilGone(OPTIONS));
}

TEST_F(Sitting, ChoosesSetsAddsColorsTunesPlaysAndFindsItAllAgain) {
    ASSERT_EQ(m_tuner.nWidth, 500);
    ASSERT_EQ(m_tuner.nHeight, 396);
    KeepPicture("1-start");
    // A tuning of the list.
    Click(80, RowY(1));
    KeepPicture("2-tuning");
    // The lowest string to C.
    Click(45, 70, 3);
    KeepPicture("3-popup");
    ASSERT_TRUE(m_hand->Keys({"Down", "Right"}));
    KeepPicture("4-notes");
    ASSERT_TRUE(m_hand->Keys({"Return"}));
    KeepPicture("5-note-set");
    // The tuning gets a name.
    Click(132, 154);
    ASSERT_TRUE(m_hand->FindWindow(NAME_DIALOG));
    ASSERT_TRUE(m_hand->Type("Sitting down"));
    KeepPicture("6-name");
    ASSERT_TRUE(m_hand->Keys({"Return"}));
    ASSERT_TRUE(m_hand->WaitUntilGone(NAME_DIALOG));
    KeepPicture("7-added");
    // Everything a half tone and a bit higher.
    Click(149, 120);
    ASSERT_TRUE(m_hand->FindWindow(A_DIALOG));
    ASSERT_TRUE(m_hand->Keys({"ctrl+a"}));
    ASSERT_TRUE(m_hand->Type("442"));
    KeepPicture("8-a-frequency");
    ASSERT_TRUE(m_hand->Keys({"Return"}));
    ASSERT_TRUE(m_hand->WaitUntilGone(A_DIALOG));
    ChooseColors();
    ChooseMicrophone();
    // The tones of all strings.
    Click(61, 120);
    std::this_thread::sleep_for(500ms);
    EXPECT_NE(m_sound.Control({"list", "sink-inputs"}).value_or("").find("Fretvane"), std::string::npos);
    KeepPicture("14-played");
    // Closed by its own button.
    Click(452, 379);
    EXPECT_EQ(m_stage.GetProgram().WaitForEnd(10s), 0);
    ExpectSettings();
    // The next start shows all of it.
    ASSERT_NO_FATAL_FAILURE(StartAgain());
    EXPECT_TRUE(WaitForPixel(26, 350, TINT_OF_RED));
    KeepPicture("15-next-start");
    m_stage.GetProgram().Signal(SIGTERM);
    EXPECT_EQ(m_stage.GetProgram().WaitForEnd(10s), 0);
    ExpectSettings();
    EXPECT_EQ(m_stage.ReadFile("program.log"), "");
}

}  // namespace
