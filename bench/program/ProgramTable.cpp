// What the whole program costs, seen from outside: from its start to its first picture and its first reading,
// its processor time at a hop of one sample, its memory, and its end. A virtual microphone hears one string.

#include "platform/base/String.h"
#include "stage/Guitar.h"
#include "stage/Stage.h"
#include "stage/SyntheticString.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr int ROUNDS = 5;
constexpr auto WATCHED = 20s;
constexpr double STRING = 110.0;
constexpr const char* NAME = "A";
constexpr int RATE = 11025;
// The last but one field is the hop. It starts at one sample, and grows where the machine cannot keep up.
constexpr const char* EVERY_SAMPLE =
    "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
    "44000\t10485760\t16711680\t32768\t16711680\t0\t0\t0\t1\t0\n";

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// User and system time of all threads, seconds.
double ProcessorSeconds(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string strLine;
    std::getline(file, strLine);
    // The name, in brackets, may hold blanks; utime and stime are the 12th and 13th field behind it.
    std::istringstream fields(strLine.substr(strLine.rfind(')') + 1));
    std::string strField;
    for (int i = 0; i < 11; ++i) {
        fields >> strField;
    }
    double dUser = 0.0;
    double dSystem = 0.0;
    fields >> dUser >> dSystem;
    return (dUser + dSystem) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

long ResidentMegabytes(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string strKey; status >> strKey;) {
        if (strKey == "VmRSS:") {
            long nKb = 0;
            status >> nKb;
            return nKb / 1024;
        }
    }
    return 0;
}

// What the program has saved; 0 if it has not.
int SavedHop(const CStage& stage) {
    std::istringstream state(stage.ReadFile("state.txt"));
    std::string strLine;
    std::getline(state, strLine);
    std::string strField;
    for (int i = 0; i < 9; ++i) {
        std::getline(state, strField, '\t');
    }
    return static_cast<int>(std::strtol(strField.c_str(), nullptr, 10));
}

struct Figures {
    std::vector<double> pictures;  // milliseconds
    std::vector<double> readings;
    std::vector<double> ends;
    double dLoad = 0.0;
    int nHop = 0;  // at the end of the time that the load was taken in
    long nMegabytes = 0;
};

// One life of the program, in front of a string that sounds already. False if it did not do what it should.
bool Live(CStage& stage, const CSoundServer& sound, bool bWatch, Figures& figures) {
    const auto start = Clock::now();
    const auto isDrawn = [](const DisplayedReading& reading) { return !reading.strNote.empty(); };
    if (!stage.StartProgram(&sound) || !stage.ReadsSoon(isDrawn, 10s)) {
        return false;
    }
    figures.pictures.push_back(MillisecondsSince(start));
    const auto isRight = [](const DisplayedReading& reading) { return reading.strNote == NAME; };
    if (!stage.ReadsSoon(isRight, 10s)) {
        return false;
    }
    figures.readings.push_back(MillisecondsSince(start));
    std::this_thread::sleep_for(1s);
    if (bWatch) {
        const pid_t pid = stage.GetProgram().GetPid();
        const auto watched = Clock::now();
        const double dBefore = ProcessorSeconds(pid);
        std::this_thread::sleep_for(WATCHED);
        figures.dLoad = (ProcessorSeconds(pid) - dBefore) / (MillisecondsSince(watched) / 1000.0);
        figures.nMegabytes = ResidentMegabytes(pid);
        if (!isRight(stage.Read())) {
            return false;
        }
    }
    const auto end = Clock::now();
    stage.GetProgram().Signal(SIGTERM);
    if (stage.GetProgram().WaitForEnd(10s) != 0) {
        return false;
    }
    figures.ends.push_back(MillisecondsSince(end));
    if (bWatch) {
        figures.nHop = SavedHop(stage);
    }
    return !bWatch || figures.nHop > 0;
}

void PrintRange(const char* pszWhat, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    std::cout << FormatText("| %s | %.0f to %.0f ms, median %.0f |\n", pszWhat, values.front(), values.back(),
                            values[values.size() / 2]);
}

}  // namespace

int main() {
    CSoundServer sound;
    CTemporaryDirectory waves;
    const std::filesystem::path wave = waves.GetPath() / "string.wav";
    const SyntheticString string{.dFrequency = STRING, .dStiffness = 0.00005, .nSampleRate = GUITAR_RATE};
    std::vector<float> samples = string.MakeFloats(GUITAR_RATE * 120);
    for (float& f : samples) {
        f /= 32768.0F;
    }
    CStage stage;
    if (!sound.Start() || !WriteWave(samples, GUITAR_RATE, wave) || !sound.PlayIntoMicrophone(wave) ||
        !stage.Start(&sound)) {
        std::cerr << "no stage\n";
        return 1;
    }
    stage.GetProgram().End();
    std::ofstream(stage.GetDirectory() / "state.txt") << EVERY_SAMPLE;
    Figures figures;
    for (int i = 0; i < ROUNDS; ++i) {
        if (!Live(stage, sound, i == 0, figures)) {
            std::cerr << "the program did not start, read or end as it should\n"
                      << stage.ReadFile("program.log") << stage.ReadFile("errorlog.txt");
            return 1;
        }
    }
    std::cout << FormatText("| processor time, %d analyses a second | %.1f %% of a core |\n",
                            RATE / figures.nHop, 100.0 * figures.dLoad)
              << FormatText("| resident memory | %ld MB |\n", figures.nMegabytes);
    PrintRange("start to the first picture", figures.pictures);
    PrintRange("start to the first reading, a string sounding", figures.readings);
    PrintRange("request to end to the end", figures.ends);
    return 0;
}
