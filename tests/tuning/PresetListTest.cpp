#include "tuning/PresetFile.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <vector>

// The list of presets that is installed: every tuning is what its name says.

namespace {

std::vector<Tuning> ReadPresets() {
    CTuningList list;
    int nDropped = -1;
    EXPECT_TRUE(LoadPresetFile(FRETVANE_SOURCE_DIR "/data/preset.txt", list, nDropped));
    EXPECT_EQ(nDropped, 0);
    std::vector<Tuning> presets(static_cast<std::size_t>(list.GetCount()));
    for (std::size_t i = 0; i < presets.size(); ++i) {
        list.GetAt(presets[i], static_cast<int>(i));
    }
    return presets;
}

// Semitones above C2.
std::vector<int> Heights(const Tuning& tuning) {
    std::vector<int> heights;
    for (const StringNote& note : tuning.m_strings) {
        heights.push_back(note.semitone + 12 * note.octave);
    }
    return heights;
}

CString Notes(const Tuning& tuning) {
    CString strNotes;
    for (const StringNote& note : tuning.m_strings) {
        CString strNote;
        note.GetText(strNote);
        strNotes += strNote + ' ';
    }
    return strNotes;
}

int Semitone(const CString& strName) {
    const auto found = std::find(SEMITONE_NAMES.begin(), SEMITONE_NAMES.end(), strName);
    EXPECT_NE(found, SEMITONE_NAMES.end()) << strName;
    return static_cast<int>(found - SEMITONE_NAMES.begin());
}

TEST(PresetList, RunsFromEToEbAndEachStandsOnce) {
    const std::vector<Tuning> presets = ReadPresets();
    ASSERT_GE(presets.size(), 60U);
    EXPECT_TRUE(presets.front().IsEqual(Tuning::StandardE()));
    EXPECT_EQ(presets.front().m_strName, Tuning::StandardE().m_strName);
    int nAboveE = -1;
    std::set<CString> names;
    std::set<CString> notes;
    for (const Tuning& preset : presets) {
        SCOPED_TRACE(preset.m_strName);
        const int nNote = (preset.m_strings[0].semitone + 12 - 4) % 12;
        if (nNote != nAboveE) {
            EXPECT_EQ(nNote, ++nAboveE);
            EXPECT_THAT(preset.m_strName, testing::StartsWith("Standard ")) << "the first of its note";
        }
        EXPECT_TRUE(names.insert(preset.m_strName).second) << "is there twice";
        EXPECT_TRUE(notes.insert(Notes(preset)).second) << "has the notes of another";
        EXPECT_EQ(preset.m_dwTag, 0U);
        EXPECT_LE(preset.m_strName.size(), 21U) << "too long for its row";
        // Neither a blank before it nor the name of the row for strings set by hand.
        EXPECT_THAT(preset.m_strName, testing::Not(testing::MatchesRegex("( |[Uu]ser).*")));
    }
    EXPECT_EQ(nAboveE, 11);
    for (const char* szSought :
         {"Drop D", "Double Drop D", "DADGAD", "Drop C", "Open C", "Open Cm", "Open D", "Open Dm", "Open E",
          "Open Em", "Open F", "Open Fm", "Open G", "Open Gm", "Open A", "Open Am"}) {
        EXPECT_TRUE(names.contains(szSought)) << szSought;
    }
}

// True if exactly the notes of a chord such as "F#", "Em", "C6" sound.
bool SoundsChord(const Tuning& preset, const CString& strChord) {
    const std::map<CString, std::set<int>> chords{
        {"", {0, 4, 7}}, {"m", {0, 3, 7}}, {"6", {0, 4, 7, 9}}, {"7", {0, 4, 7, 10}}};
    const std::size_t nRootEnd = std::min(strChord.find_first_of("m67"), strChord.size());
    std::set<int> sounding;
    for (const StringNote& note : preset.m_strings) {
        sounding.insert((note.semitone - Semitone(strChord.substr(0, nRootEnd)) + 12) % 12);
    }
    return sounding == chords.at(strChord.substr(nRootEnd));
}

// Checks a preset against what its name promises. False if the name promises nothing that is known here.
bool IsChecked(const Tuning& preset) {
    CString strName = preset.m_strName;
    std::erase_if(strName, [](char c) { return c == '(' || c == ')' || c == ','; });
    std::istringstream stream(strName);
    std::vector<CString> words{std::istream_iterator<CString>(stream), {}};
    std::vector<int> heights = Heights(preset);
    if (words.back().size() >= STRINGS && words.back().find_first_not_of("ABCDEFG#b") == CString::npos) {
        CString strLetters = Notes(preset);
        std::erase_if(strLetters, [](char c) { return c == ' ' || (c >= '2' && c <= '4'); });
        EXPECT_EQ(strLetters, words.back());
        return true;
    }
    if (words.front() == "Double") {
        heights.back() += 2;
    }
    if (words.front() == "Double" || words.front() == "Lap") {
        words.erase(words.begin());
    }
    if (words.front() == "Drop" || words.front() == "Standard") {
        EXPECT_EQ(preset.m_strings[0].semitone, Semitone(words[1]));
        const int nLowest = heights.front() + (words.front() == "Drop" ? 2 : 0);
        // Fourths, but for the third under the second string.
        EXPECT_EQ(heights, (std::vector{heights.front(), nLowest + 5, nLowest + 10, nLowest + 15,
                                        nLowest + 19, nLowest + 24}));
        return true;
    }
    return std::set<CString>{"Open", "Dobro", "Steel", "Atta's"}.contains(words.front()) &&
           SoundsChord(preset, words[1]);
}

TEST(PresetList, EachIsWhatItsNameSays) {
    const std::map<CString, CString> others{{"All Fourths", "E2 A2 D3 G3 C4 F4 "},
                                            {"Major Thirds", "E2 G#2 C3 E3 G#3 C4 "},
                                            {"Nashville", "E3 A3 D4 G4 B3 E4 "},
                                            {"Renaissance Lute", "G2 C3 F3 A3 D4 G4 "},
                                            {"C Wahine", "C2 G2 D3 G3 B3 E4 "},
                                            {"Taro Patch, C bass", "C2 G2 D3 G3 B3 D4 "},
                                            {"New Standard", "C2 G2 D3 A3 E4 G4 "},
                                            {"All Fifths", "C2 G2 D3 A3 E4 B4 "},
                                            {"DADGAD, half down", "C#2 G#2 C#3 F#3 G#3 C#4 "},
                                            {"D Wahine", "D2 A2 D3 F#3 A3 C#4 "},
                                            {"G Wahine", "D2 G2 D3 F#3 B3 D4 "}};
    for (const Tuning& preset : ReadPresets()) {
        SCOPED_TRACE(preset.m_strName + ": " + Notes(preset));
        const auto other = others.find(preset.m_strName);
        if (other != others.end()) {
            EXPECT_EQ(Notes(preset), other->second);
        } else {
            EXPECT_TRUE(IsChecked(preset)) << "not the chord, or nobody looks at it";
        }
        // But for strings that are tuned an octave up, they rise.
        const std::vector<int> heights = Heights(preset);
        EXPECT_EQ(std::is_sorted(heights.begin(), heights.end()), preset.m_strName != "Nashville");
    }
}

}  // namespace
