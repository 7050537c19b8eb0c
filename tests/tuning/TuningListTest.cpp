#include "tuning/TuningList.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(Tuning, IsComparedAndLimitedNoteByNote) {
    const Tuning standard = Tuning::StandardE();
    Tuning other = standard;
    other.m_strName = "other";
    other.m_dwTag = 7;
    EXPECT_TRUE(standard.IsEqual(other));
    EXPECT_TRUE(Tuning().IsInRange());
    for (std::size_t i = 0; i < STRINGS; ++i) {
        for (const StringNote note : {StringNote{11, 2}, {12, 0}, {-1, 0}, {0, 3}, {0, -1}}) {
            other = standard;
            other.m_strings[i] = note;
            EXPECT_EQ(other.IsInRange(), note.IsNote(11, 2));
            EXPECT_FALSE(standard.IsEqual(other));
        }
    }
}

// Entries are known by their tags: what GetNext gives after each change, 0 at the end.
TEST(TuningList, KeepsItsCursorAtAnEntryOverAllChanges) {
    CTuningList list;
    const auto add = [&list](DWORD dwTag, int nSemitone) {
        Tuning tuning;
        tuning.m_dwTag = dwTag;
        tuning.m_strings[0].semitone = nSemitone;
        list.AddTail(tuning);
    };
    const auto next = [&list] {
        Tuning out;
        return list.GetNext(out) ? out.m_dwTag : 0;
    };
    const auto at = [&list](int nIndex) {
        Tuning out;
        return list.GetAt(out, nIndex) ? out.m_dwTag : 0;
    };
    add(1, 5);
    EXPECT_EQ(next(), 0U) << "a cursor at the end stays there";
    for (DWORD dwTag = 2; dwTag <= 6; ++dwTag) {
        add(dwTag, dwTag < 4 ? 7 : 5);
    }
    EXPECT_EQ(at(1), 2U);
    EXPECT_TRUE(list.RemoveAt(0));
    EXPECT_EQ(next(), 3U) << "an entry before the cursor";
    EXPECT_TRUE(list.RemoveAt(2));
    EXPECT_EQ(next(), 5U) << "the entry under it";
    EXPECT_TRUE(list.RemoveAt(3));
    EXPECT_EQ(next(), 0U) << "the last, under it";
    EXPECT_EQ(at(2), 5U);
    EXPECT_TRUE(list.RemoveAt(0));
    EXPECT_EQ(next(), 0U) << "one before, the cursor at the end";
    for (const int nIndex : {-1, 2}) {
        EXPECT_EQ(at(0), 3U);
        EXPECT_FALSE(list.RemoveAt(nIndex));
        EXPECT_EQ(next(), 5U);
        EXPECT_EQ(at(0), 3U);
        EXPECT_EQ(at(nIndex), 0U);
        EXPECT_EQ(next(), 0U) << "an entry that is not there leads to the end";
    }
    // The first of several with the same notes is found.
    add(7, 7);
    Tuning sought;
    for (const auto& [nSemitone, nIndex] : {std::pair(7, 0), {5, 1}, {0, -1}}) {
        sought.m_strings[0].semitone = nSemitone;
        EXPECT_EQ(list.Find(sought), nIndex);
    }
    EXPECT_EQ(at(0), 3U);
    list.RemoveAll();
    EXPECT_EQ(next(), 0U);
    EXPECT_EQ(list.GetCount(), 0);
}

}  // namespace
