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

// Semitones above C2.
std::vector<int> Heights(const Tuning& tuning) {
    std::vector<int> heights;
    for (const StringNote& note : tuning.m_strings) {
        heights.push_back(note.semitone + 12 * note.octave);
    }
    return heights;
}

int Semitone(const CString& strName) {
    const auto found = std::find(SEMITONE_NAMES.begin(), SEMITONE_NAMES.end(), strName);
    EXPECT_NE(found, SEMITONE_NAMES.end()) << strName;
    return static_cast<int>(found - SEMITONE_NAMES.begin());
}

class PresetList : public testing::Test {
protected:
    PresetList() {
        CTuningList presets;
        m_bRead = LoadPresetFile(FRETVANE_SOURCE_DIR "/data/preset.txt", presets, m_nDropped);
        Tuning tuning;
        for (bool bMore = presets.GetAt(tuning, 0); bMore; bMore = presets.GetNext(tuning)) {
            m_presets.push_back(tuning);
        }
    }

    bool m_bRead = false;
    int m_nDropped = -1;
    std::vector<Tuning> m_presets;
};

TEST_F(PresetList, RunsFromEToEbEachNoteBegunByItsStandard) {
    EXPECT_TRUE(m_bRead);
    EXPECT_EQ(m_nDropped, 0);
    ASSERT_GE(m_presets.size(), 60U);
    EXPECT_TRUE(m_presets.front().IsEqual(Tuning::StandardE()));
    EXPECT_EQ(m_presets.front().m_strName, Tuning::StandardE().m_strName);
    int nAboveE = -1;
    for (const Tuning& preset : m_presets) {
        const int nNote = (preset.m_strings[0].semitone + 12 - 4) % 12;
        if (nNote != nAboveE) {
            EXPECT_EQ(nNote, ++nAboveE) << preset.m_strName;
            EXPECT_THAT(preset.m_strName, testing::StartsWith("Standard ")) << "the first of its note";
        }
    }
    EXPECT_EQ(nAboveE, 11);
}

TEST_F(PresetList, NamesAndNotesStandOnce) {
    std::set<CString> names;
    std::map<std::vector<int>, CString> notes;
    for (const Tuning& preset : m_presets) {
        EXPECT_TRUE(names.insert(preset.m_strName).second) << preset.m_strName << " is there twice";
        const auto [other, bNew] = notes.emplace(Heights(preset), preset.m_strName);
        EXPECT_TRUE(bNew) << preset.m_strName << " has the notes of " << other->second;
        EXPECT_EQ(preset.m_dwTag, 0U) << preset.m_strName;
        EXPECT_LE(preset.m_strName.size(), 21U) << preset.m_strName << " is too long for its row";
        EXPECT_NE(preset.m_strName.front(), ' ');
        // The name of the row for strings set by hand.
        EXPECT_FALSE(preset.m_strName.starts_with("User") || preset.m_strName.starts_with("user"));
    }
    for (const char* szSought :
         {"Drop D", "Double Drop D", "DADGAD", "Drop C", "Open C", "Open Cm", "Open D", "Open Dm", "Open E",
          "Open Em", "Open F", "Open Fm", "Open G", "Open Gm", "Open A", "Open Am"}) {
        EXPECT_TRUE(names.contains(szSought)) << szSought;
    }
}

// The words of a name, without brackets and commas.
std::vector<CString> Words(CString strName) {
    std::erase_if(strName, [](char c) { return c == '(' || c == ')' || c == ','; });
    std::istringstream words(strName);
    return {std::istream_iterator<CString>(words), {}};
}

// True if exactly the notes of a chord such as "F#", "Em", "C6" sound.
bool SoundsChord(const Tuning& preset, CString strChord) {
    const auto takeLast = [&strChord](char c) {
        const bool bTaken = strChord.back() == c;
        strChord.resize(strChord.size() - (bTaken ? 1 : 0));
        return bTaken;
    };
    std::set<int> chord{0, 7};
    if (takeLast('6')) {
        chord.insert(9);
    } else if (takeLast('7')) {
        chord.insert(10);
    }
    chord.insert(takeLast('m') ? 3 : 4);
    std::set<int> sounding;
    for (const StringNote& note : preset.m_strings) {
        sounding.insert((note.semitone - Semitone(strChord) + 12) % 12);
    }
    return sounding == chord;
}

// Checks a preset against what its name promises. False if the name promises nothing that is known here.
bool IsChecked(const Tuning& preset) {
    std::vector<int> heights = Heights(preset);
    std::vector<CString> words = Words(preset.m_strName);
    bool bChecked = false;
    for (const CString& strWord : words) {
        if (strWord.size() >= STRINGS && strWord.find_first_not_of("ABCDEFG#b") == CString::npos) {
            CString strLetters;
            for (const StringNote& note : preset.m_strings) {
                strLetters += SEMITONE_NAMES[static_cast<std::size_t>(note.semitone)];
            }
            EXPECT_EQ(strLetters, strWord);
            bChecked = true;
        }
    }
    if (words.front() == "Double") {
        heights.back() += 2;
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
    if (words.front() == "Lap") {
        words.erase(words.begin());
    }
    if (std::set<CString>{"Open", "Dobro", "Steel", "Atta's"}.contains(words.front())) {
        EXPECT_TRUE(SoundsChord(preset, words[1]));
        return true;
    }
    return bChecked;
}

TEST_F(PresetList, EachIsWhatItsNameSays) {
    const std::map<CString, CString> others{{"All Fourths", "E2 A2 D3 G3 C4 F4"},
                                            {"Major Thirds", "E2 G#2 C3 E3 G#3 C4"},
                                            {"Nashville", "E3 A3 D4 G4 B3 E4"},
                                            {"Renaissance Lute", "G2 C3 F3 A3 D4 G4"},
                                            {"C Wahine", "C2 G2 D3 G3 B3 E4"},
                                            {"Taro Patch, C bass", "C2 G2 D3 G3 B3 D4"},
                                            {"New Standard", "C2 G2 D3 A3 E4 G4"},
                                            {"All Fifths", "C2 G2 D3 A3 E4 B4"},
                                            {"DADGAD, half down", "C#2 G#2 C#3 F#3 G#3 C#4"},
                                            {"D Wahine", "D2 A2 D3 F#3 A3 C#4"},
                                            {"G Wahine", "D2 G2 D3 F#3 B3 D4"}};
    for (const Tuning& preset : m_presets) {
        CString strNotes;
        for (const StringNote& note : preset.m_strings) {
            CString strNote;
            note.GetText(strNote);
            strNotes += strNotes.empty() ? strNote : ' ' + strNote;
        }
        SCOPED_TRACE(preset.m_strName + ": " + strNotes);
        const auto other = others.find(preset.m_strName);
        if (other != others.end()) {
            EXPECT_EQ(strNotes, other->second);
        } else {
            EXPECT_TRUE(IsChecked(preset)) << "nobody looks at it";
        }
        // But for strings that are tuned an octave up, they rise.
        const std::vector<int> heights = Heights(preset);
        EXPECT_EQ(std::is_sorted(heights.begin(), heights.end()), preset.m_strName != "Nashville");
    }
}

}  // namespace
