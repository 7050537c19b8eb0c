#include "tuning/PresetFile.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <vector>

// The list of presets that is installed: every tuning is what its name says.

namespace {

constexpr std::array<int, 12> FROM_E_TO_EB = {4, 5, 6, 7, 8, 9, 10, 11, 0, 1, 2, 3};

// Semitones above C2.
std::vector<int> Heights(const Tuning& tuning) {
    std::vector<int> heights;
    for (const StringNote& note : tuning.m_strings) {
        heights.push_back(note.semitone + 12 * note.octave);
    }
    return heights;
}

std::vector<int> Steps(const std::vector<int>& heights) {
    std::vector<int> steps;
    for (std::size_t i = 1; i < heights.size(); ++i) {
        steps.push_back(heights[i] - heights[i - 1]);
    }
    return steps;
}

int Semitone(const CString& strName) {
    const auto found = std::find(SEMITONE_NAMES.begin(), SEMITONE_NAMES.end(), strName);
    EXPECT_NE(found, SEMITONE_NAMES.end()) << strName;
    return static_cast<int>(found - SEMITONE_NAMES.begin());
}

CString Text(const Tuning& tuning) {
    CString strNotes;
    for (const StringNote& note : tuning.m_strings) {
        CString strNote;
        note.GetText(strNote);
        strNotes += strNotes.empty() ? strNote : ' ' + strNote;
    }
    return strNotes;
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
    const Tuning& Named(const CString& strName) const {
        static const Tuning none;
        const auto found = std::find_if(m_presets.begin(), m_presets.end(), [&strName](const Tuning& preset) {
            return preset.m_strName == strName;
        });
        EXPECT_NE(found, m_presets.end()) << strName;
        return found == m_presets.end() ? none : *found;
    }

    bool m_bRead = false;
    int m_nDropped = -1;
    std::vector<Tuning> m_presets;
};

TEST_F(PresetList, IsReadWithoutAFault) {
    EXPECT_TRUE(m_bRead);
    EXPECT_EQ(m_nDropped, 0);
    ASSERT_GE(m_presets.size(), 60U);
    EXPECT_TRUE(m_presets.front().IsEqual(Tuning::StandardE()));
    EXPECT_EQ(m_presets.front().m_strName, "Standard E");
}

TEST_F(PresetList, RunsFromEToEb) {
    const auto rank = [](const Tuning& preset) {
        return std::find(FROM_E_TO_EB.begin(), FROM_E_TO_EB.end(), preset.m_strings[0].semitone);
    };
    EXPECT_TRUE(std::is_sorted(m_presets.begin(), m_presets.end(),
                               [&](const Tuning& a, const Tuning& b) { return rank(a) < rank(b); }));
    std::set<int> semitones;
    for (const Tuning& preset : m_presets) {
        if (semitones.insert(preset.m_strings[0].semitone).second) {
            EXPECT_THAT(preset.m_strName, testing::StartsWith("Standard ")) << "the first of its note";
        }
    }
    EXPECT_EQ(semitones.size(), 12U);
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
}

// The words of a name, without brackets and commas.
std::vector<CString> Words(CString strName) {
    std::erase_if(strName, [](char c) { return c == '(' || c == ')' || c == ','; });
    std::istringstream words(strName);
    return {std::istream_iterator<CString>(words), {}};
}

// Takes the last character off if it is one of these; '\0' if it isn't.
char TakeLast(CString& strWord, const CString& strCharacters) {
    const char cLast = strWord.back();
    if (strCharacters.find(cLast) == CString::npos) {
        return '\0';
    }
    strWord.pop_back();
    return cLast;
}

// True if exactly the notes of a chord such as "F#", "Em", "C6" sound.
bool SoundsChord(const Tuning& preset, CString strChord) {
    const char cAdded = TakeLast(strChord, "67");
    const bool bMinor = TakeLast(strChord, "m") == 'm';
    std::set<int> chord{0, bMinor ? 3 : 4, 7};
    if (cAdded != '\0') {
        chord.insert(cAdded == '6' ? 9 : 10);
    }
    std::set<int> sounding;
    for (const StringNote& note : preset.m_strings) {
        sounding.insert((note.semitone - Semitone(strChord) + 12) % 12);
    }
    return sounding == chord;
}

CString Spelt(const Tuning& preset) {
    CString strLetters;
    for (const StringNote& note : preset.m_strings) {
        strLetters += SEMITONE_NAMES[static_cast<std::size_t>(note.semitone)];
    }
    return strLetters;
}

// Checks a preset against what its name promises. False if the name promises nothing that is known here.
bool IsChecked(const Tuning& preset) {
    std::vector<int> heights = Heights(preset);
    std::vector<CString> words = Words(preset.m_strName);
    bool bChecked = false;
    for (const CString& strWord : words) {
        if (strWord.size() >= STRINGS && strWord.find_first_not_of("ABCDEFG#b") == CString::npos) {
            EXPECT_EQ(Spelt(preset), strWord);
            bChecked = true;
        }
    }
    if (words.front() == "Double") {
        heights.back() += 2;
        words.erase(words.begin());
    }
    if (words.front() == "Drop" || words.front() == "Standard") {
        EXPECT_EQ(preset.m_strings[0].semitone, Semitone(words[1]));
        heights.front() += words.front() == "Drop" ? 2 : 0;
        EXPECT_EQ(Steps(heights), (std::vector{5, 5, 5, 4, 5}));
        return true;
    }
    if (words.front() == "Lap") {
        words.erase(words.begin());
    }
    const std::set<CString> ofChords{"Open", "Dobro", "Steel", "Atta's"};
    if (ofChords.contains(words.front())) {
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
        SCOPED_TRACE(preset.m_strName + ": " + Text(preset));
        const auto other = others.find(preset.m_strName);
        if (other != others.end()) {
            EXPECT_EQ(Text(preset), other->second);
        } else {
            EXPECT_TRUE(IsChecked(preset)) << "nobody looks at it";
        }
        // But for strings that are tuned an octave up, they rise.
        const std::vector<int> heights = Heights(preset);
        EXPECT_EQ(std::is_sorted(heights.begin(), heights.end()), preset.m_strName != "Nashville");
    }
}

TEST_F(PresetList, HasWhatPlayersLookFor) {
    EXPECT_EQ(Text(Named("Drop D")), "D2 A2 D3 G3 B3 E4");
    EXPECT_EQ(Text(Named("Double Drop D")), "D2 A2 D3 G3 B3 D4");
    EXPECT_EQ(Text(Named("DADGAD")), "D2 A2 D3 G3 A3 D4");
    EXPECT_EQ(Text(Named("Standard Eb")), "Eb2 G#2 C#3 F#3 Bb3 Eb4");
    EXPECT_EQ(Text(Named("Standard D")), "D2 G2 C3 F3 A3 D4");
    EXPECT_EQ(Text(Named("Drop C")), "C2 G2 C3 F3 A3 D4");
    EXPECT_EQ(Text(Named("Open G")), "D2 G2 D3 G3 B3 D4");
    EXPECT_EQ(Text(Named("Open D")), "D2 A2 D3 F#3 A3 D4");
    for (const char* szChord : {"C", "Cm", "D", "Dm", "E", "Em", "F", "Fm", "G", "Gm", "A", "Am"}) {
        Named(CString("Open ") + szChord);
    }
    std::set<int> standards;
    for (const Tuning& preset : m_presets) {
        if (preset.m_strName.starts_with("Standard ")) {
            standards.insert(Heights(preset).front());
        }
    }
    EXPECT_EQ(standards.size(), 12U) << "all from C2 to B2, whose first string is no higher than B4";
}

}  // namespace
