#include "tuning/TuningList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

TEST(Tuning, IsComparedAndLimitedNoteByNote) {
    const Tuning standard = Tuning::StandardE();
    Tuning other = standard;
    other.m_strName = "other";
    other.m_dwTag = 7;
    EXPECT_TRUE(standard.IsEqual(other));
    EXPECT_TRUE(Tuning().IsInRange());
    for (std::size_t i = 0; i < STRINGS; ++i) {
        other.m_strings[i] = {11, 2};
        EXPECT_TRUE(other.IsInRange());
        for (const StringNote note : {StringNote{12, 0}, {-1, 0}, {0, 3}, {0, -1}}) {
            other.m_strings[i] = note;
            EXPECT_FALSE(other.IsInRange());
        }
        const StringNote note = standard.m_strings[i];
        for (const StringNote changed :
             {StringNote{note.semitone + 1, note.octave}, {note.semitone, note.octave + 1}}) {
            other.m_strings[i] = changed;
            EXPECT_FALSE(standard.IsEqual(other));
        }
        other.m_strings[i] = note;
    }
}

// Whatever is done to it: the model's cursor is an entry, known by its tag, and 0 at the end.
TEST(TuningList, KeepsItsCursorAtAnEntryOverAllChanges) {
    std::mt19937 random(5);
    CTuningList list;
    Tuning out;
    std::vector<DWORD> tags;
    DWORD dwCursor = 0;
    const auto behind = [&tags](DWORD dwTag) {
        const auto entry = std::find(tags.begin(), tags.end(), dwTag);
        return dwTag == 0 || entry + 1 == tags.end() ? 0 : *(entry + 1);
    };
    // Several entries have the same notes.
    const auto tuningOf = [](DWORD dwTag) {
        Tuning tuning;
        tuning.m_dwTag = dwTag;
        tuning.m_strings[0].semitone = static_cast<int>(dwTag % 7);
        return tuning;
    };
    for (DWORD dwStep = 1; dwStep <= 20000; ++dwStep) {
        const int nIndex = static_cast<int>(random() % 10) - 2;
        const bool bThere = nIndex >= 0 && nIndex < std::ssize(tags);
        const DWORD dwTag = bThere ? tags[static_cast<std::size_t>(nIndex)] : 0;
        const DWORD dwBefore = out.m_dwTag;
        switch (random() % 5) {
            case 0:
                list.AddTail(tuningOf(dwStep));
                tags.push_back(dwStep);
                break;
            case 1:
                ASSERT_EQ(list.GetAt(out, nIndex), bThere);
                ASSERT_EQ(out.m_dwTag, bThere ? dwTag : dwBefore);
                dwCursor = behind(dwTag);
                break;
            case 2:
                ASSERT_EQ(list.GetNext(out), dwCursor != 0);
                ASSERT_EQ(out.m_dwTag, dwCursor != 0 ? dwCursor : dwBefore);
                dwCursor = behind(dwCursor);
                break;
            case 3:
                ASSERT_EQ(list.RemoveAt(nIndex), bThere);
                dwCursor = bThere && dwCursor == dwTag ? behind(dwTag) : dwCursor;
                std::erase(tags, dwTag);
                break;
            default:
                const auto first =
                    std::find_if(tags.begin(), tags.end(), [&](DWORD dw) { return dw % 7 == dwStep % 7; });
                ASSERT_EQ(list.Find(tuningOf(dwStep)), first == tags.end() ? -1 : first - tags.begin());
        }
        if (dwStep % 100 == 0) {
            list.RemoveAll();
            tags.clear();
            dwCursor = 0;
        }
        ASSERT_EQ(list.GetCount(), std::ssize(tags));
    }
}

}  // namespace
