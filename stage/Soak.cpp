#include "platform/base/String.h"
#include "stage/Hand.h"
#include "stage/Plucks.h"
#include "stage/Stage.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

// Lets the tuner hear music in real time while a user who never rests does everything at random, and watches
// what the program takes of memory, descriptors and threads. Fails if any of them grows once it has settled.
//   usage: fretvane_soak <minutes>

using namespace std::chrono_literals;

namespace {

constexpr const char* TUNER = "^Fretvane ";
constexpr unsigned SEED = 20;
// What an allocator may keep back for later without anything leaking.
constexpr long SLACK_KB = 1024;

struct Usage {
    long nResidentKb = 0;
    long nDescriptors = 0;
    long nThreads = 0;
};

Usage Measure(pid_t pid) {
    const std::filesystem::path process = "/proc/" + std::to_string(pid);
    Usage usage;
    std::ifstream status(process / "status");
    for (std::string strKey; status >> strKey;) {
        if (strKey == "VmRSS:") {
            status >> usage.nResidentKb;
        } else if (strKey == "Threads:") {
            status >> usage.nThreads;
        }
    }
    std::error_code ignored;
    const std::filesystem::directory_iterator files(process / "fd", ignored);
    usage.nDescriptors = std::distance(begin(files), end(files));
    return usage;
}

// Does one thing in the tuner's window, and answers whatever that opens.
class CRestlessUser {
public:
    explicit CRestlessUser(const std::string& strDisplay) : m_hand(strDisplay) {}

    bool FindTuner() {
        const auto place = m_hand.FindWindow(TUNER);
        m_tuner = place.value_or(m_tuner);
        return place.has_value();
    }
    void Act() {
        switch (Random(10)) {
            case 0:
                return Click(40 + Random(120), 172 + Random(110));  // a tuning
            case 1:
                return Click(35 + Random(145), 40 + Random(60));  // a string
            case 2:                                               // the popup: a note, or none
                Click(45 + 25 * Random(6), 70, 3);
                Keys({"Down", "Right"});
                return Keys(Random(2) == 0 ? std::vector<std::string>{"Down", "Return"}
                                           : std::vector<std::string>{"Escape", "Escape"});
            case 3:
                return Keys({"p"});
            case 4:  // the A frequency
                Click(149, 120);
                Keys({"ctrl+a"});
                m_hand.Type(std::to_string(425 + Random(30)));
                return Keys({Random(2) == 0 ? "Return" : "Escape", "Escape", "Escape"});
            case 5:  // the options, and in them a colour
                Click(287, 379);
                Keys({"Tab", "Tab"});
                Click(88, 94);
                return Keys({"Tab", "Escape", "Escape"});
            case 6:  // a tuning of one's own, and away with it
                Click(132, 154);
                m_hand.Type("Sunk");  // no letter of it is a key of the tuner's
                Keys({"Return", "Escape"});
                Click(168, 154);
                return;
            case 7:
                return Keys({"Tab", "Tab"});
            case 8:
                return Keys({"f"});
            default:
                m_hand.Minimize(TUNER);
                m_hand.Activate(TUNER);
                return;
        }
    }

private:
    int Random(int nBelow) { return static_cast<int>(m_random() % static_cast<unsigned>(nBelow)); }
    void Click(int x, int y, int nButton = 1) { m_hand.Click(m_tuner.x + x, m_tuner.y + y, nButton); }
    void Keys(const std::vector<std::string>& keys) { m_hand.Keys(keys); }

    CHand m_hand;
    CHand::Place m_tuner;
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): what he did once he can do again
    std::mt19937 m_random{SEED};
};

bool Soak(int nMinutes) {
    CSoundServer sound;
    CStage stage;
    const CTemporaryDirectory waves;
    if (!sound.Start() || !stage.StartOnDesktop(&sound)) {
        std::cerr << "The virtual screen, the private sound server or the tuner did not start.\n";
        return false;
    }
    std::vector<PreparedPluck> plucks;
    for (const int nKey : {40, 45, 50, 55, 59, 64}) {
        plucks.push_back(PreparePluck({nKey, 0.0}, 4.0, waves.GetPath() / (std::to_string(nKey) + ".wav")));
    }
    CRestlessUser user(stage.GetScreen().GetDisplay());
    const pid_t pid = stage.GetProgram().GetPid();
    const auto start = std::chrono::steady_clock::now();
    const auto end = start + std::chrono::minutes(nMinutes);
    const auto settled = start + std::chrono::seconds(20 * nMinutes);
    auto nextPluck = start;
    auto nextLine = start;
    std::size_t nPluck = 0;
    long nActions = 0;
    Usage most;
    std::cout << "minute  actions  resident KB  descriptors  threads\n";
    if (!user.FindTuner()) {
        return false;
    }
    Usage now;
    while (std::chrono::steady_clock::now() < end) {
        const auto time = std::chrono::steady_clock::now();
        if (time >= nextPluck) {
            sound.PlayIntoMicrophone(plucks[nPluck++ % plucks.size()].waveFile);
            nextPluck = time + 3s;
        }
        user.Act();
        ++nActions;
        if (!stage.GetProgram().IsRunning()) {
            std::cerr << "The tuner ended with " << stage.GetProgram().WaitForEnd(1s).value_or(-1) << ".\n"
                      << stage.ReadFile("program.log") << "\n";
            return false;
        }
        now = Measure(pid);
        if (time < settled) {
            most = {std::max(most.nResidentKb, now.nResidentKb),
                    std::max(most.nDescriptors, now.nDescriptors), std::max(most.nThreads, now.nThreads)};
        }
        if (time >= nextLine) {
            std::cout << FormatText("%6.1f  %7ld  %11ld  %11ld  %7ld\n",
                                    std::chrono::duration<double, std::ratio<60>>(time - start).count(),
                                    nActions, now.nResidentKb, now.nDescriptors, now.nThreads)
                      << std::flush;
            nextLine = time + 30s;
        }
    }
    std::cout << FormatText(
        "settled: at most %ld KB, %ld descriptors, %ld threads; at the end %ld KB, %ld, %ld\n",
        most.nResidentKb, most.nDescriptors, most.nThreads, now.nResidentKb, now.nDescriptors, now.nThreads);
    stage.GetProgram().Signal(SIGTERM);
    const auto exitCode = stage.GetProgram().WaitForEnd(10s);
    const std::string strLog = stage.ReadFile("program.log");
    std::cout << "ended with " << exitCode.value_or(-1) << "\n" << strLog;
    return exitCode == 0 && now.nResidentKb <= most.nResidentKb + SLACK_KB &&
           now.nDescriptors <= most.nDescriptors && now.nThreads <= most.nThreads;
}

}  // namespace

int main(int nArguments, char** arguments) {
    const int nMinutes = nArguments == 2 ? static_cast<int>(std::strtol(arguments[1], nullptr, 10)) : 0;
    if (nMinutes < 1) {
        std::cerr << "usage: " << arguments[0] << " <minutes>\n";
        return 2;
    }
    return Soak(nMinutes) ? EXIT_SUCCESS : EXIT_FAILURE;
}
