#include "platform/base/String.h"
#include "stage/Plucks.h"
#include "stage/Stage.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

// Plays a sampled guitar to the tuner, string by string, on a screen that nobody sees, and keeps a picture of
// the window for each, all of them in one strip, and a table of what was played and what was shown: the tuner
// on a machine with neither a screen nor a microphone.
//   usage: fretvane_demonstration <directory for the pictures>

using namespace std::chrono_literals;

namespace {

constexpr int COLUMNS = 3;

// Pictures of one size, row by row.
Picture Assemble(const std::vector<Picture>& pictures) {
    const int nWidth = pictures.front().nWidth;
    const int nHeight = pictures.front().nHeight;
    const int nRows = (static_cast<int>(pictures.size()) + COLUMNS - 1) / COLUMNS;
    Picture strip{COLUMNS * nWidth, nRows * nHeight, {}};
    strip.pixels.resize(static_cast<std::size_t>(strip.nWidth) * static_cast<std::size_t>(strip.nHeight));
    for (int i = 0; i < static_cast<int>(pictures.size()); ++i) {
        for (int y = 0; y < nHeight; ++y) {
            for (int x = 0; x < nWidth; ++x) {
                const int nRow = i / COLUMNS * nHeight + y;
                const int nColumn = i % COLUMNS * nWidth + x;
                strip.pixels.at(static_cast<std::size_t>(nRow) * static_cast<std::size_t>(strip.nWidth) +
                                static_cast<std::size_t>(nColumn)) =
                    pictures[static_cast<std::size_t>(i)].At(x, y);
            }
        }
    }
    return strip;
}

bool Demonstrate(const std::filesystem::path& directory) {
    CSoundServer sound;
    CStage stage;
    const CTemporaryDirectory waves;
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error || !sound.Start() || !stage.Start(&sound)) {
        std::cerr << "The virtual screen, the private sound server or the tuner did not start.\n"
                  << stage.ReadFile("program.log") << '\n';
        return false;
    }
    const std::vector<Note> notes{{40, -12.0}, {45, 8.0}, {50, 0.0}, {55, 21.0}, {59, -4.0}, {64, 0.0}};
    std::string strTable = "string  played                shown\n";
    std::vector<Picture> pictures;
    int nString = 6;
    for (const Note& note : notes) {
        const PreparedPluck pluck = PreparePluck(note, 3.0, waves.GetPath() / "pluck.wav");
        if (pluck.dFrequency <= 0.0 || !sound.PlayIntoMicrophone(pluck.waveFile)) {
            std::cerr << "The guitar could not be rendered or played.\n";
            return false;
        }
        stage.ReadUntil([&](const DisplayedReading& reading) { return reading.strNote == pluck.strNote; },
                        3s);
        std::this_thread::sleep_for(1s);
        const auto picture = stage.Grab();
        const DisplayedReading reading = stage.Read();
        const auto file = directory / ("string-" + std::to_string(nString) + ".png");
        if (!picture || !SavePng(*picture, file)) {
            std::cerr << file << " could not be written.\n";
            return false;
        }
        pictures.push_back(*picture);
        strTable +=
            FormatText("%d       %-2s %+6.1f c %8.2f Hz  %-2s %+3d c\n", nString, pluck.strNote.c_str(),
                       pluck.dCents, pluck.dFrequency, reading.strNote.c_str(), reading.nCents.value_or(-99));
        sound.StopPlaying();
        std::this_thread::sleep_for(200ms);
        --nString;
    }
    std::cout << strTable
              << "\nPictures of the window, a strip of all of them and this table: " << directory.string()
              << "\n";
    std::ofstream table(directory / "table.txt");
    table << strTable;
    return table.good() && SavePng(Assemble(pictures), directory / "strip.png");
}

}  // namespace

int main(int nArguments, char** arguments) {
    if (nArguments != 2) {
        std::cerr << "usage: " << arguments[0] << " <directory for the pictures>\n";
        return 2;
    }
    return Demonstrate(arguments[1]) ? 0 : 1;
}
