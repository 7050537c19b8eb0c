#include "stage/ChildProcess.h"
#include "stage/Plucks.h"
#include "stage/Stage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

// What a screen reader learns of the window, asked over the accessibility bus as it asks.

using namespace std::chrono_literals;

namespace {

constexpr const char* ROOT = "/org/a11y/atspi/accessible/root";

// The first quoted text of a reply at or behind a place.
std::string Quoted(const std::string& strReply, std::size_t nFrom = 0) {
    const std::size_t nStart = strReply.find('\'', nFrom);
    const std::size_t nEnd = strReply.find('\'', nStart + 1);
    return nEnd == std::string::npos ? "" : strReply.substr(nStart + 1, nEnd - nStart - 1);
}

class Accessibility : public testing::Test {
protected:
    void SetUp() override {
        const std::string strSocket = "unix:path=" + (m_directory.GetPath() / "bus").string();
        const CChildProcess::Environment session{{"DBUS_SESSION_BUS_ADDRESS", strSocket},
                                                 {"HOME", m_directory.GetPath().string()},
                                                 {"XDG_RUNTIME_DIR", m_directory.GetPath().string()}};
        ASSERT_TRUE(m_bus.Start({"dbus-daemon", "--session", "--nofork", "--address=" + strSocket}, session,
                                m_directory.GetPath(), m_directory.GetPath() / "bus.log"));
        ASSERT_TRUE(Until([&] { return std::filesystem::exists(m_directory.GetPath() / "bus"); }));
        const auto reply =
            RunCommand({"gdbus", "call", "--address", strSocket, "--dest", "org.a11y.Bus", "--object-path",
                        "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress"},
                       session);
        ASSERT_TRUE(reply);
        m_strAddress = Quoted(*reply);
        ASSERT_TRUE(m_sound.Start());
        m_stage.AddToEnvironment(
            {{"DBUS_SESSION_BUS_ADDRESS", strSocket}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}});
        ASSERT_TRUE(m_stage.Start(&m_sound));
        ASSERT_TRUE(Until([&] {
            m_strProgram = Quoted(Call("org.a11y.atspi.Registry", ROOT, "GetChildren"));
            return m_strProgram.starts_with(":");
        }));
        const std::string strWindows = Call(m_strProgram, ROOT, "GetChildren");
        m_strWindow = Quoted(strWindows, strWindows.find("objectpath"));
    }

    static bool Until(const std::function<bool()>& condition) {
        for (int i = 0; i < 200; ++i) {
            if (condition()) {
                return true;
            }
            std::this_thread::sleep_for(50ms);
        }
        return false;
    }
    std::string Ask(std::vector<std::string> arguments) const {
        std::vector<std::string> command{"gdbus", "call", "--address", m_strAddress, "--dest"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunCommand(command, {}, 5s).value_or("");
    }
    std::string Call(const std::string& strWho, const std::string& strObject,
                     const std::string& strMethod) const {
        return Ask(
            {strWho, "--object-path", strObject, "--method", "org.a11y.atspi.Accessible." + strMethod});
    }
    std::string Property(const std::string& strObject, const std::string& strName) const {
        return Quoted(Ask({m_strProgram, "--object-path", strObject, "--method",
                           "org.freedesktop.DBus.Properties.Get", "org.a11y.atspi.Accessible", strName}));
    }
    std::string Description() const { return Property(m_strWindow, "Description"); }

    CTemporaryDirectory m_directory;
    CChildProcess m_bus;
    CSoundServer m_sound;
    CStage m_stage;
    std::string m_strAddress;
    std::string m_strProgram;
    std::string m_strWindow;
};

TEST_F(Accessibility, ControlsHaveNamesAndTheReadingIsDescribed) {
    EXPECT_THAT(Property(m_strWindow, "Name"), testing::StartsWith("Fretvane"));
    std::vector<std::string> names;
    const std::string strChildren = Call(m_strProgram, m_strWindow, "GetChildren");
    for (std::size_t nAt = strChildren.find("/org"); nAt != std::string::npos;
         nAt = strChildren.find("/org", nAt + 1)) {
        names.push_back(Property(Quoted(strChildren, nAt - 1), "Name"));
    }
    for (const char* szName : {"播放, Play", "A : 440.0 Hz", "新增, Add tuning", "删除, Delete tuning",
                               "调音规则, Tunings", "设置, Options", "帮助, Help", "退出, Exit"}) {
        EXPECT_THAT(names, testing::Contains(szName));
    }

    const PreparedPluck pluck = PreparePluck({45, 20.0}, 2.5, m_directory.GetPath() / "a.wav");
    ASSERT_TRUE(m_sound.PlayIntoMicrophone(pluck.waveFile));
    std::string strHeard;
    EXPECT_TRUE(Until([&] {
        strHeard = Description();
        return strHeard.starts_with("A2, ") && strHeard.ends_with("cents sharp") &&
               std::fabs(std::strtod(strHeard.c_str() + 4, nullptr) - pluck.dCents) <= 3.0;
    })) << strHeard
        << " where it sounded " << pluck.dCents;
    EXPECT_TRUE(Until([&] {
        strHeard = Description();
        return strHeard.ends_with("sharp, held");
    })) << strHeard;
}

// However fast the pitch runs, it is not announced more often than three times a second.
TEST_F(Accessibility, TheReadingChangesSlowlyEnoughToBeHeard) {
    std::vector<float> samples(std::size_t{6} * GUITAR_RATE);
    double dPhase = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double dTime = static_cast<double>(i) / GUITAR_RATE;
        dPhase += 2.0 * std::numbers::pi * 100.0 * std::exp2(dTime / 6.0) / GUITAR_RATE;
        samples[i] = static_cast<float>(0.4 * std::sin(dPhase) + 0.2 * std::sin(2.0 * dPhase) +
                                        0.1 * std::sin(3.0 * dPhase));
    }
    ASSERT_TRUE(WriteWave(samples, GUITAR_RATE, m_directory.GetPath() / "sweep.wav"));
    ASSERT_TRUE(m_sound.PlayIntoMicrophone(m_directory.GetPath() / "sweep.wav"));
    ASSERT_TRUE(Until([&] { return !Description().empty(); }));
    const auto start = std::chrono::steady_clock::now();
    int nChanges = 0;
    std::string strBefore = Description();
    while (std::chrono::steady_clock::now() < start + 4s) {
        const std::string strNow = Description();
        nChanges += strNow != strBefore ? 1 : 0;
        strBefore = strNow;
    }
    EXPECT_GE(nChanges, 3);
    EXPECT_LE(nChanges, 13);
}

}  // namespace
