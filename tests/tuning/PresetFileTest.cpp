#include "support/ScratchDirectory.h"
#include "tuning/PresetFile.h"

#include <gtest/gtest.h>

namespace {

const CString NOTES = "\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";

CString Record(const CString& strName) {
    return strName + "\t0" + NOTES;
}

const CString ONE = Record("one") + '\n';
const CString TWO = '\n' + Record("two");

// The names have a bar behind each.
void ExpectRead(const CString& strText, bool bRead, int nDropped, const CString& strNames) {
    SCOPED_TRACE(strText.substr(0, 200));
    CTuningList presets;
    int nFound = -1;
    EXPECT_EQ(LoadPresetText(strText, presets, nFound), bRead);
    EXPECT_EQ(nFound, nDropped);
    CString strFound;
    Tuning tuning;
    for (bool bMore = presets.GetAt(tuning, 0); bMore; bMore = presets.GetNext(tuning)) {
        EXPECT_TRUE(tuning.IsInRange());
        strFound += tuning.m_strName + '|';
    }
    EXPECT_EQ(strFound, strNames);
}

TEST(PresetFile, ARecordHasNameTagAndSixPairs) {
    CTuningList presets;
    presets.AddTail(Tuning::StandardE());
    int nDropped = -1;
    ASSERT_TRUE(LoadPresetText("a name\t77\t0 2\t\t1  1\n2 0\t3\t2 4\v1\t5\t0", presets, nDropped));
    Tuning tuning;
    ASSERT_TRUE(presets.GetAt(tuning, 1)) << "added to what is there";
    EXPECT_EQ(tuning.m_strName, "a name");
    EXPECT_EQ(tuning.m_dwTag, 77U);
    EXPECT_EQ(tuning.m_strings,
              (std::array<StringNote, 6>{{{0, 2}, {1, 1}, {2, 0}, {3, 2}, {4, 1}, {5, 0}}}));
}

TEST(PresetFile, ABadRecordIsDroppedAndTheRestStay) {
    for (const char* szPair : {"\t12\t0", "\t-1\t0", "\t0\t3", "\t0\t-1", "\t99999999999999999999\t0"}) {
        const CString strBad = CString("bad\t0") + szPair + NOTES.substr(4);
        ExpectRead(ONE + strBad + TWO, true, 1, "one|two|");
        ExpectRead(strBad, false, 1, "");
    }
    for (const char* szBad : {"bad\tx\t4\t0", "bad\t", "bad\t0\t4\t0 \t ", "bad\t0\t4\n", "bad\t0\t4.0\t2"}) {
        ExpectRead(ONE + szBad + TWO, true, 1, "one|two|");
        ExpectRead(ONE + szBad, true, 1, "one|");
    }
    ExpectRead(ONE + "no tab", true, 1, "one|");
    // A number of the next line's name is no note of the broken one.
    ExpectRead("bad\t0\t4\t0\n" + Record("12-string"), true, 1, "12-string|");
    // An empty name stops the reader.
    ExpectRead(ONE + Record("") + '\n' + Record("three"), false, 0, "one|");
    ExpectRead(ONE + TWO, true, 0, "one|\ntwo|");
    ExpectRead("\n", false, 1, "");
    // A broken record is counted once wherever its lines end.
    for (const char* szBroken : {"no tab\n\nbad\tx\t1", "\nbad\t0\t4\n0\t9\n0\tx\t2\t1"}) {
        ExpectRead(ONE + szBroken + TWO, true, 1, "one|two|");
    }
    // Two of them are two, and what follows the second is a record again.
    ExpectRead(ONE + "bad\t0\t4\t0\n9\tx\nworse\tx\t1" + TWO, true, 2, "one|two|");
}

// A line end behind the last number is no longer the end: an empty name follows.
TEST(PresetFile, CutAnywhereItGivesWholeRecordsOnly) {
    const CString strWhole = Record("one") + TWO + "\n";
    const std::size_t nOne = Record("one").size();
    const std::size_t nTwo = nOne + TWO.size();
    for (std::size_t nLength = 0; nLength <= strWhole.size(); ++nLength) {
        const bool bAtLineEnd = nLength == nOne + 1 || nLength == nTwo + 1;
        const bool bBetween = nLength == 0 || nLength == nOne || nLength == nTwo;
        ExpectRead(strWhole.substr(0, nLength), nLength >= nOne && !bAtLineEnd,
                   bBetween || bAtLineEnd ? 0 : 1,
                   nLength < nOne   ? ""
                   : nLength < nTwo ? "one|"
                                    : "one|two|");
    }
}

TEST(PresetFile, IsReadWithLineEndsOfEitherKind) {
    const CScratchDirectory directory;
    directory.Write("preset.txt", "\xEF\xBB\xBF" + Record("one") + "\r\n" + Record("two"));
    CTuningList presets;
    int nDropped = -1;
    EXPECT_TRUE(LoadPresetFile(directory.Path("preset.txt"), presets, nDropped));
    EXPECT_EQ(nDropped, 0);
    EXPECT_EQ(presets.GetCount(), 2);
    EXPECT_FALSE(LoadPresetFile(directory.Path("missing.txt"), presets, nDropped));
    EXPECT_FALSE(LoadPresetFile(directory.Path(), presets, nDropped));
}

}  // namespace
