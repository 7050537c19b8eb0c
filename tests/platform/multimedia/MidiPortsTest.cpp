#include "platform/multimedia/MidiOut.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/MidiPorts.h"
#include "stage/ChildProcess.h"
#include "tones/TonePlayer.h"

#include <gtest/gtest.h>
#include <rtmidi/RtMidi.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// What reaches a MIDI port of the system: one of a private JACK server with its driver for no hardware.

using namespace std::chrono_literals;

namespace {

using Message = std::vector<unsigned char>;

class MidiPorts : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(RunCommand({"jackd", "--version"}, {})) << "scripts/bootstrap test installs it";
        const std::string strServer = "fretvane" + std::to_string(getpid());
        setenv("JACK_DEFAULT_SERVER", strServer.c_str(), 1);
        setenv("JACK_NO_START_SERVER", "1", 1);
        ASSERT_TRUE(m_server.Start({"setpriv", "--pdeathsig", "KILL", "jackd", "-n", strServer,
                                    "--no-realtime", "--no-mlock", "-d", "dummy", "-r", "48000", "-p", "256"},
                                   {{"JACK_NO_AUDIO_RESERVATION", "1"}}, m_directory.GetPath(),
                                   m_directory.GetPath() / "jackd.log"));
        SetMidiOutBackend(MakeMidiPortsBackend(MidiSystem::Jack));
        testing::internal::CaptureStderr();
        for (int i = 0; i < 100 && !m_pInput; ++i) {
            std::this_thread::sleep_for(50ms);
            auto pInput = std::make_unique<RtMidiIn>(RtMidi::UNIX_JACK, "Listener");
            pInput->setErrorCallback([](RtMidiError::Type, const std::string&, void*) {});
            pInput->ignoreTypes(false, false, false);
            pInput->setCallback(
                [](double, Message* pMessage, void* pArg) {
                    auto& test = *static_cast<MidiPorts*>(pArg);
                    const std::lock_guard lock(test.m_mutex);
                    test.m_heard.push_back(*pMessage);
                },
                this);
            pInput->openVirtualPort("in");
            if (midiOutGetNumDevs() > 0) {
                m_pInput = std::move(pInput);
            }
        }
        testing::internal::GetCapturedStderr();
        ASSERT_TRUE(m_pInput) << "the server did not come up";
    }
    void TearDown() override {
        m_pInput.reset();
        SetMidiOutBackend(nullptr);
    }
    std::vector<Message> TakeHeard() {
        std::this_thread::sleep_for(100ms);
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_heard, {});
    }

    CTemporaryDirectory m_directory;
    CChildProcess m_server;
    std::unique_ptr<RtMidiIn> m_pInput;
    std::mutex m_mutex;
    std::vector<Message> m_heard;
};

TEST_F(MidiPorts, ATonePassesWholeAndOneThatIsCutOffIsSilenced) {
    MIDIOUTCAPS caps;
    ASSERT_EQ(midiOutGetDevCapsA(0, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wTechnology, MOD_MIDIPORT);
    EXPECT_NE(caps.szPname.find("Listener"), std::string::npos) << caps.szPname;
    {
        CTonePlayer player;
        player.PlayString(40, 127);
        std::this_thread::sleep_for(900ms);
        // The last message of a tone has a data byte that is none, and stays here.
        EXPECT_EQ(TakeHeard(),
                  (std::vector<Message>{{0xFF}, {0xC0, 24}, {0xE0, 4, 64}, {0x90, 40, 127}, {0x90, 40, 0}}));
        player.PlayString(45, 127);
        std::this_thread::sleep_for(100ms);
        TakeHeard();
    }
    EXPECT_EQ(TakeHeard(), (std::vector<Message>{{0x80, 45, 0}, {0xB0, 123, 0}, {0xB0, 120, 0}}));
}

}  // namespace
