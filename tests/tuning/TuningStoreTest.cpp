#include "tuning/TuningStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

// What the settings look like as a text, and which texts are settings.

namespace {

const CString FIRST_LINE = "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n";
const CString DEFAULTS = "44000\t10485760\t16711680\t32768\t16711680\t0\t0\t0\t128\t";
const CString DEFAULT_TEXT = FIRST_LINE + DEFAULTS + "0\n";
const CString DROP_D_NOTES = "\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n";

// A text in which one of the ten numbers is another.
CString WithField(int nField, const CString& strValue) {
    std::array<CString, 10> fields{"44000", "1", "2", "3", "4", "5", "6", "7", "8", "0"};
    fields.at(static_cast<std::size_t>(nField)) = strValue;
    CString strText = FIRST_LINE;
    for (const CString& strField : fields) {
        strText += strField + '\t';
    }
    strText.back() = '\n';
    return strText;
}

bool Loads(const CString& strText) {
    CTuningStore store;
    return store.LoadText(strText);
}

Tuning At(CTuningStore& store, int nIndex) {
    Tuning tuning;
    EXPECT_TRUE(store.GetCustomTunings()->GetAt(tuning, nIndex));
    return tuning;
}

TEST(TuningStore, EachNumberHasItsPlaceAndItsDefault) {
    CTuningStore store;
    EXPECT_EQ(store.SaveText(),
              FIRST_LINE + "44000\t10485760\t16711680\t32768\t16711680\t4294967295\t4294967295\t0\t128\t0\n");
    ASSERT_TRUE(store.LoadText(store.SaveText()));
    EXPECT_EQ(store.GetWaveDevice(), 2147483647) << "no device comes back as the largest number";
    ASSERT_TRUE(store.LoadText(WithField(0, "44150")));
    EXPECT_EQ(store.GetAFrequency(), 441.5F);
    EXPECT_EQ(store.GetNeedleColor(), 1U);
    EXPECT_EQ(store.GetHighColor(), 2U);
    EXPECT_EQ(store.GetLowColor(), 3U);
    EXPECT_EQ(store.GetTextColor(), 4U);
    EXPECT_EQ(store.GetMidiDevice(), 5);
    EXPECT_EQ(store.GetWaveDevice(), 6);
    EXPECT_EQ(store.GetListIndex(), 7);
    EXPECT_EQ(store.GetHop(), 8.0F);
    EXPECT_EQ(store.SaveText(), WithField(0, "44150"));
    store.SetDefaults();
    EXPECT_EQ(store.SaveText(), DEFAULT_TEXT);
}

TEST(TuningStore, NumbersHaveLimits) {
    struct Row {
        int nFirst;  // fields
        int nLast;
        bool bLoads;
        std::vector<CString> values;
    };
    const std::vector<Row> ROWS{
        {0, 9, false, {"", "x", "-1", "+", "+-1", ".5", "-99999999999999999999"}},
        {0, 0, true, {"43000", "45000", "+44000", "0044000", " \v\f\r\n 44000"}},
        {0, 0, false, {"42999", "45001", "0", "44000.5", "44000x", "4294967296", "18446744073709595616"}},
        {1, 4, true, {"0", "16777215"}},
        {1, 4, false, {"16777216", "4294967295"}},
        {5, 8, true, {"0", "2147483647", "2147483648", "4294967295", "99999999999999999999"}},
        {9, 9, false, {"1", "2147483647"}},  // there is no such tuning
    };
    for (const Row& row : ROWS) {
        for (int i = row.nFirst; i <= row.nLast; ++i) {
            for (const CString& strValue : row.values) {
                EXPECT_EQ(Loads(WithField(i, strValue)), row.bLoads) << i << ": " << strValue;
            }
        }
    }
    // A refused number leaves those before it.
    CTuningStore store;
    store.SetDefaults();
    EXPECT_FALSE(store.LoadText(WithField(3, "16777216")));
    EXPECT_EQ(store.GetHighColor(), 2U);
    EXPECT_EQ(store.GetLowColor(), 0x008000U);
    EXPECT_EQ(store.GetTextColor(), 0xFF0000U);
}

TEST(TuningStore, FrequencyAndHopAreTruncated) {
    CTuningStore store;
    const auto hundredths = [&store] { return store.SaveText().substr(FIRST_LINE.size(), 5); };
    // The single-precision hundredth lies a little below a hundredth.
    ASSERT_TRUE(store.LoadText(WithField(0, "43010")));
    EXPECT_EQ(store.GetAFrequency(), std::nextafter(430.1F, 0.0F));
    EXPECT_EQ(hundredths(), "43009");
    // 430.02 lies a little below itself too, which only the product in double precision shows.
    store.SetAFrequency(430.02F);
    EXPECT_EQ(hundredths(), "43001");
    store.SetDefaults();
    store.SetHop(128.7F);
    EXPECT_EQ(store.SaveText(), DEFAULT_TEXT);
}

TEST(TuningStore, WhateverItHoldsCanBeReadBack) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    for (const float fValue : {-1.0F, 0.0F, 429.99F, 1e30F, INFINITE, -INFINITE, std::nanf("")}) {
        CTuningStore store;
        store.SetAFrequency(fValue);
        store.SetHop(fValue);
        store.SetHighColor(0xFFFFFFFF);
        store.SetListIndex(-1);
        Tuning tuning;
        store.GetCustomTunings()->AddTail(tuning);
        tuning.m_strings[3].semitone = 12;
        store.GetCustomTunings()->AddTail(tuning);
        EXPECT_TRUE(store.LoadText(store.SaveText())) << fValue;
        EXPECT_EQ(store.GetCustomTunings()->GetCount(), 1);
    }
}

TEST(TuningStore, TuningsHaveFourteenFields) {
    const CString strText = FIRST_LINE + DEFAULTS + "2\nDrop D \xE4\xB8\x89\t4294967295" + DROP_D_NOTES +
                            "all different\t7\t0\t2\t1\t1\t2\t0\t3\t2\t4\t1\t5\t0\n";
    CTuningStore store;
    store.GetCurrentTuning()->m_strName = "in force";
    for (int i = 0; i < 2; ++i) {
        // Neither does loading again add to them, nor is there more than was promised.
        ASSERT_TRUE(store.LoadText(strText + "surplus\t0\t99\tx\n"));
        EXPECT_EQ(store.SaveText(), strText);
    }
    EXPECT_EQ(At(store, 1).m_strings,
              (std::array<StringNote, 6>{{{0, 2}, {1, 1}, {2, 0}, {3, 2}, {4, 1}, {5, 0}}}));
    EXPECT_EQ(store.GetCurrentTuning()->m_strName, "in force");
    // A number below 0 counts back from the top.
    ASSERT_TRUE(store.LoadText(FIRST_LINE + DEFAULTS + "1\na\t-1" + DROP_D_NOTES));
    EXPECT_EQ(At(store, 0).m_dwTag, 4294967295U);
}

TEST(TuningStore, ABadTuningTakesAllWithIt) {
    const CString strStart = FIRST_LINE + DEFAULTS + "2\ngood\t0" + DROP_D_NOTES;
    for (const char* szNotes : {"\t12\t0", "\t0\t-1", "\tx\t0", "\t0\t4294967296", "\t0"}) {
        CTuningStore store;
        store.GetCustomTunings()->AddTail(Tuning::StandardE());
        const CString strBad = CString("bad\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2") + szNotes + "\n";
        EXPECT_FALSE(store.LoadText(strStart + strBad)) << szNotes;
        EXPECT_EQ(store.GetCustomTunings()->GetCount(), 0) << szNotes;
    }
    EXPECT_FALSE(Loads(FIRST_LINE + DEFAULTS + "1\ntwo signs\t+-1" + DROP_D_NOTES));
    // The first line is not looked at, but it has to be there.
    EXPECT_TRUE(Loads(CString(1000, 'x') + "\n" + DEFAULTS + "0"));
    EXPECT_FALSE(Loads(DEFAULTS + "0\n"));
}

TEST(TuningStore, NamesInTheFileAreCutToo) {
    CTuningStore store;
    ASSERT_TRUE(store.LoadText(FIRST_LINE + DEFAULTS + "1\n" + CString(100000, 'x') + "\t1" + DROP_D_NOTES));
    EXPECT_EQ(At(store, 0).m_strName, CString(254, 'x'));
    // What is no UTF-8 at all is cut anywhere.
    Tuning tuning;
    tuning.m_strName = CString(1000, '\x80');
    store.GetCustomTunings()->AddTail(tuning);
    ASSERT_TRUE(store.LoadText(store.SaveText()));
    EXPECT_EQ(At(store, 1).m_strName, CString(254, '\x80'));
}

// Characters of one to four bytes at every place around the limit of 254, behind a TAB and both line ends.
TEST(TuningStore, AnyNameComesBackWithWholeCharactersAndBlanks) {
    for (const CString strCharacter : {"x", "\xC3\xA9", "\xE4\xB8\x89", "\xF0\x9F\x8E\xB8"}) {
        for (std::size_t nStart = 240; nStart < 260; ++nStart) {
            const CString strEnd = strCharacter + strCharacter;
            CTuningStore store;
            Tuning tuning = Tuning::StandardE();
            tuning.m_strName = "\t\r\n" + CString(nStart - 3, 'x') + strEnd;
            store.GetCustomTunings()->AddTail(tuning);
            CString strExpected = "   " + CString(std::min<std::size_t>(nStart, 254) - 3, 'x');
            for (int i = 0; i < 2 && strExpected.size() + strCharacter.size() <= 254; ++i) {
                strExpected += strCharacter;
            }
            for (int i = 0; i < 2; ++i) {
                ASSERT_TRUE(store.LoadText(store.SaveText()));
                EXPECT_EQ(At(store, 0).m_strName, strExpected) << strCharacter << nStart;
                EXPECT_TRUE(At(store, 0).IsEqual(tuning));
            }
        }
    }
}

TEST(TuningStore, ATextCutShortIsRefusedOrWhole) {
    const CString strWhole = FIRST_LINE + DEFAULTS + "2\na\t1" + DROP_D_NOTES + "b\t2" + DROP_D_NOTES;
    for (std::size_t nLength = 0; nLength <= strWhole.size(); ++nLength) {
        CTuningStore store;
        const bool bLoaded = store.LoadText(std::string_view(strWhole).substr(0, nLength));
        // Only the last line end can be missed.
        EXPECT_EQ(bLoaded, nLength + 1 >= strWhole.size()) << nLength;
        EXPECT_EQ(store.GetCustomTunings()->GetCount(), bLoaded ? 2 : 0);
    }
}

TEST(TuningStore, TheNeedleColourIsReadWhileItChanges) {
    constexpr int READS = 10000;
    CTuningStore store;
    std::atomic<int> nReads = 0;
    std::thread frames([&] {
        for (; nReads < READS; ++nReads) {
            const COLORREF clr = store.GetNeedleColor();
            EXPECT_TRUE(clr == 0xA00000 || clr == 0x00FF00) << clr;
        }
    });
    for (int i = 0; nReads < READS; ++i) {
        store.SetNeedleColor(i % 2 == 0 ? 0x00FF00 : 0xA00000);
    }
    frames.join();
}

}  // namespace
