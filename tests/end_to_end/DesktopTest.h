#pragma once

#include "stage/Hand.h"
#include "stage/Stage.h"

#include <gtest/gtest.h>

#include <optional>

// A user in front of the real program, on a desktop with a window manager and a sound server.
class CDesktopTest : public testing::Test {
protected:
    static constexpr const char* TUNER = "^Fretvane ";
    static constexpr const char* A_DIALOG = "^标准 'A' 频率设置$";
    static constexpr const char* OPTIONS = "^.高音 .$";

    void SetUp() override {
        ASSERT_TRUE(m_sound.Start());
        ASSERT_TRUE(m_stage.StartOnDesktop(&m_sound));
        m_hand.emplace(m_stage.GetScreen().GetDisplay());
        ASSERT_NO_FATAL_FAILURE(FindTuner());
    }
    void FindTuner() {
        const auto place = m_hand->FindWindow(TUNER);
        ASSERT_TRUE(place) << "program " << (m_stage.GetProgram().IsRunning() ? "runs" : "has ended")
                           << ", sound server " << (m_sound.Control({"info"}) ? "answers" : "is gone")
                           << ", windows:\n"
                           << m_hand->ListWindows() << m_stage.ReadFile("program.log")
                           << m_stage.ReadFile("errorlog.txt");
        m_tuner = *place;
    }
    void StartAgain() {
        ASSERT_TRUE(m_stage.StartProgram(&m_sound));
        ASSERT_NO_FATAL_FAILURE(FindTuner());
    }
    // Client coordinates of the tuner's window.
    void Click(int x, int y, int nButton = 1) {
        ASSERT_TRUE(m_hand->Click(m_tuner.x + x, m_tuner.y + y, nButton));
    }

    CSoundServer m_sound;
    CStage m_stage;
    std::optional<CHand> m_hand;
    CHand::Place m_tuner;
};
