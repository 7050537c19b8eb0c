#include "tuning/TuningList.h"

#include <gtest/gtest.h>

namespace {

Tuning Named(const CString& strName, int nSemitone = 0) {
    Tuning tuning;
    tuning.m_strName = strName;
    tuning.m_strings[0].semitone = nSemitone;
    return tuning;
}

// The names from the cursor on.
CString Rest(CTuningList& list) {
    CString strNames;
    for (Tuning tuning; list.GetNext(tuning);) {
        strNames += tuning.m_strName;
    }
    return strNames;
}

class TuningList : public testing::Test {
protected:
    TuningList() {
        for (const char* szName : {"a", "b", "c", "d"}) {
            m_list.AddTail(Named(szName, szName[0] - 'a'));
        }
    }
    CString RestFrom(int nIndex) {
        EXPECT_TRUE(m_list.GetAt(m_out, nIndex));
        return m_out.m_strName + Rest(m_list);
    }

    CTuningList m_list;
    Tuning m_out;
};

TEST(Tuning, AreEqualIfAllTwelveNumbersAre) {
    const Tuning standard = Tuning::StandardE();
    Tuning other = standard;
    other.m_strName = "other";
    other.m_dwTag = 7;
    EXPECT_TRUE(standard.IsEqual(other));
    for (std::size_t i = 0; i < STRINGS; ++i) {
        other = standard;
        ++other.m_strings[i].semitone;
        EXPECT_FALSE(standard.IsEqual(other));
        other = standard;
        ++other.m_strings[i].octave;
        EXPECT_FALSE(other.IsEqual(standard));
    }
}

TEST(Tuning, IsInRangeFromC2ToB4) {
    EXPECT_TRUE(Tuning().IsInRange());
    for (std::size_t i = 0; i < STRINGS; ++i) {
        Tuning tuning;
        tuning.m_strings[i] = {11, 2};
        EXPECT_TRUE(tuning.IsInRange());
        for (const StringNote note : {StringNote{12, 0}, {-1, 0}, {0, 3}, {0, -1}}) {
            tuning.m_strings[i] = note;
            EXPECT_FALSE(tuning.IsInRange());
        }
    }
}

TEST(Tuning, StandardEIsWhatGuitarsAreTunedTo) {
    const Tuning standard = Tuning::StandardE();
    CString strNotes;
    for (const StringNote& note : standard.m_strings) {
        CString strNote;
        note.GetText(strNote);
        strNotes += strNote + ' ';
    }
    EXPECT_EQ(strNotes, "E2 A2 D3 G3 B3 E4 ");
    EXPECT_EQ(standard.m_strName, "Standard E");
    EXPECT_EQ(standard.m_dwTag, 0U);
}

TEST_F(TuningList, WalksFromAnyEntryToTheEnd) {
    EXPECT_EQ(Rest(m_list), "") << "a cursor that was never set is at the end";
    EXPECT_EQ(RestFrom(0), "abcd");
    EXPECT_EQ(RestFrom(2), "cd");
    EXPECT_EQ(RestFrom(3), "d");
    EXPECT_FALSE(m_list.GetNext(m_out));
    EXPECT_EQ(m_out.m_strName, "d") << "nothing is copied at the end";
}

TEST_F(TuningList, AnEntryThatIsNotThereMovesTheCursorToTheEnd) {
    for (const int nIndex : {-1, 4, 1000, -2147483647}) {
        ASSERT_TRUE(m_list.GetAt(m_out, 1));
        EXPECT_FALSE(m_list.GetAt(m_out, nIndex));
        EXPECT_EQ(m_out.m_strName, "b");
        EXPECT_FALSE(m_list.GetNext(m_out));
    }
    CTuningList empty;
    EXPECT_FALSE(empty.GetAt(m_out, 0));
    EXPECT_FALSE(empty.GetNext(m_out));
}

TEST_F(TuningList, TheCursorOutlivesChanges) {
    ASSERT_TRUE(m_list.GetAt(m_out, 1));
    EXPECT_TRUE(m_list.RemoveAt(0));
    EXPECT_EQ(Rest(m_list), "cd") << "before the cursor";
    ASSERT_TRUE(m_list.GetAt(m_out, 0));
    EXPECT_TRUE(m_list.RemoveAt(1));
    EXPECT_EQ(Rest(m_list), "d") << "under the cursor";
    ASSERT_TRUE(m_list.GetAt(m_out, 0));
    EXPECT_TRUE(m_list.RemoveAt(1));
    EXPECT_EQ(Rest(m_list), "") << "under the cursor, and the last";
    m_list.AddTail(Named("e"));
    EXPECT_EQ(Rest(m_list), "") << "the end stays the end";
    EXPECT_EQ(RestFrom(0), "be");
    ASSERT_TRUE(m_list.GetAt(m_out, 0));
    m_list.RemoveAll();
    EXPECT_EQ(Rest(m_list), "");
    EXPECT_EQ(m_list.GetCount(), 0);
}

TEST_F(TuningList, RemovesOneEntryOrNone) {
    EXPECT_FALSE(m_list.RemoveAt(-1));
    EXPECT_FALSE(m_list.RemoveAt(4));
    EXPECT_EQ(RestFrom(0), "abcd");
    EXPECT_TRUE(m_list.RemoveAt(3));
    EXPECT_TRUE(m_list.RemoveAt(1));
    EXPECT_EQ(RestFrom(0), "ac");
    EXPECT_EQ(m_list.GetCount(), 2);
}

TEST_F(TuningList, FindsTheFirstWithTheSameNotes) {
    m_list.AddTail(Named("second c", 2));
    EXPECT_EQ(m_list.Find(Named("any", 2)), 2);
    EXPECT_EQ(m_list.Find(Named("a", 9)), -1);
    m_list.RemoveAt(2);
    EXPECT_EQ(m_list.Find(Named("any", 2)), 3);
}

}  // namespace
