#include "support/ScratchDirectory.h"
#include "tuning/PresetFile.h"

#include <gtest/gtest.h>

namespace {

const CString NOTES = "\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";

struct PresetResult {
    bool bRead;
    int nDropped;
    CString strNames;  // each with a bar behind it
};

PresetResult Read(const CString& strText) {
    CTuningList presets;
    int nDropped = -1;
    const bool bRead = LoadPresetText(strText, presets, nDropped);
    CString strNames;
    Tuning tuning;
    for (bool bMore = presets.GetAt(tuning, 0); bMore; bMore = presets.GetNext(tuning)) {
        EXPECT_TRUE(tuning.IsInRange());
        strNames += tuning.m_strName + '|';
    }
    return {bRead, nDropped, strNames};
}

CString Record(const CString& strName) {
    return strName + "\t0" + NOTES;
}

void ExpectRead(const CString& strText, bool bRead, int nDropped, const CString& strNames) {
    SCOPED_TRACE(strText.substr(0, 200));
    const PresetResult result = Read(strText);
    EXPECT_EQ(result.bRead, bRead);
    EXPECT_EQ(result.nDropped, nDropped);
    EXPECT_EQ(result.strNames, strNames);
}

TEST(PresetFile, EndsDirectlyBehindTheLastNumber) {
    const CString strTwo = Record("one") + '\n' + Record("two words");
    ExpectRead(strTwo, true, 0, "one|two words|");
    ExpectRead(strTwo + '\n', false, 0, "one|two words|");
    ExpectRead(strTwo + ' ', false, 0, "one|two words|");
    ExpectRead("", false, 0, "");
    ExpectRead("\n", false, 1, "");
}

TEST(PresetFile, ARecordHasNameTagAndSixPairs) {
    CTuningList presets;
    int nDropped = -1;
    ASSERT_TRUE(LoadPresetText("a name\t77\t0 2\t\t1  1\n2 0\t3\t2 4\v1\t5\t0", presets, nDropped));
    Tuning tuning;
    ASSERT_TRUE(presets.GetAt(tuning, 0));
    EXPECT_EQ(tuning.m_strName, "a name");
    EXPECT_EQ(tuning.m_dwTag, 77U);
    for (int i = 0; i < 6; ++i) {
        constexpr int OCTAVES[] = {2, 1, 0, 2, 1, 0};
        EXPECT_TRUE(tuning.m_strings[static_cast<std::size_t>(i)].IsNote(i, OCTAVES[i]));
    }
}

TEST(PresetFile, IsAddedToWhatIsThere) {
    CTuningList presets;
    presets.AddTail(Tuning::StandardE());
    int nDropped = -1;
    EXPECT_TRUE(LoadPresetText(Record("more"), presets, nDropped));
    EXPECT_EQ(presets.GetCount(), 2);
}

TEST(PresetFile, AnEmptyNameStopsTheReader) {
    ExpectRead(Record("one") + '\n' + Record("") + '\n' + Record("three"), false, 0, "one|");
    ExpectRead(Record(""), false, 0, "");
    ExpectRead(Record("one") + "\n\n" + Record("two"), true, 0, "one|\ntwo|");
}

TEST(PresetFile, ABadRecordIsDroppedAndTheRestStay) {
    const auto between = [](const CString& strBad) {
        return Record("one") + '\n' + strBad + '\n' + Record("two");
    };
    for (const char* szPair : {"\t12\t0", "\t-1\t0", "\t0\t3", "\t0\t-1", "\t99999999999999999999\t0"}) {
        const CString strBad = CString("bad\t0") + szPair + NOTES.substr(4);
        ExpectRead(between(strBad), true, 1, "one|two|");
        ExpectRead(strBad + '\n' + Record("two"), true, 1, "two|");
        ExpectRead(Record("one") + '\n' + strBad, true, 1, "one|");
        ExpectRead(strBad, false, 1, "");
    }
    for (const char* szBad :
         {"bad\tx\t4\t0", "bad\t0\t4\tletters\t0\t0", "bad\t0\t4\t0\t9\t0\t2", "bad\t0", "bad\t",
          "bad\t0\t4\t0 \t ", "bad\t0\t4\n", "bad\t0\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4.0\t2"}) {
        ExpectRead(between(szBad), true, 1, "one|two|");
        ExpectRead(Record("one") + '\n' + szBad, true, 1, "one|");
    }
    ExpectRead(Record("one") + "\nno tab", true, 1, "one|");
    // A number of the next line's name is no note of the broken one.
    ExpectRead("bad\t0\t4\t0\n" + Record("12-string"), true, 1, "12-string|");
}

TEST(PresetFile, ABrokenRecordIsCountedOnceWhereverItsLinesEnd) {
    const CString strOne = Record("one") + '\n';
    const CString strTwo = '\n' + Record("two");
    ExpectRead(strOne + "\nbad\tx\t1" + strTwo, true, 1, "one|two|");
    ExpectRead(strOne + "no tab\n\nbad\tx\t1" + strTwo, true, 1, "one|two|");
    ExpectRead(strOne + "bad\t0\t4\t0\n9\tx\t2\t1" + strTwo, true, 1, "one|two|");
    ExpectRead(strOne + "\nbad\t0\t4\n0\t9\n0\tx\t2\t1" + strTwo, true, 1, "one|two|");
    ExpectRead(strOne + "bad\t0\t4\t0\n9\t0", true, 1, "one|");
    // Two of them are two, and what follows the second is a record again.
    ExpectRead(strOne + "bad\t0\t4\t0\nworse\tx\t1" + strTwo, true, 2, "one|two|");
    ExpectRead(strOne + "bad\t0\t4\t0\n9\tx\nworse\tx\t1" + strTwo, true, 2, "one|two|");
}

TEST(PresetFile, NamesAreCutTo254Bytes) {
    const CString strLong(254, 'x');
    ExpectRead(Record(strLong) + '\n' + Record(strLong + "y") + '\n' + Record("next"), true, 0,
               strLong + '|' + strLong + "|next|");
    ExpectRead(Record(CString(253, 'x') + "\xE4\xB8\x89"), true, 0, CString(253, 'x') + '|');
}

TEST(PresetFile, CutAnywhereItGivesWholeRecordsOnly) {
    const CString strWhole = Record("one") + '\n' + Record("two") + '\n' + Record("three");
    const std::size_t nOne = Record("one").size();
    const std::size_t nTwo = nOne + 1 + Record("two").size();
    for (std::size_t nLength = 0; nLength <= strWhole.size(); ++nLength) {
        SCOPED_TRACE(nLength);
        const PresetResult result = Read(strWhole.substr(0, nLength));
        EXPECT_EQ(result.strNames, nLength < nOne              ? ""
                                   : nLength < nTwo            ? "one|"
                                   : nLength < strWhole.size() ? "one|two|"
                                                               : "one|two|three|");
        const bool bAtLineEnd = nLength == nOne + 1 || nLength == nTwo + 1;
        EXPECT_EQ(result.bRead, nLength >= nOne && !bAtLineEnd);
        const bool bBetween =
            nLength == 0 || nLength == nOne || nLength == nTwo || nLength == strWhole.size();
        EXPECT_EQ(result.nDropped, bBetween || bAtLineEnd ? 0 : 1);
    }
}

TEST(PresetFile, IsReadWithLineEndsOfEitherKind) {
    const CScratchDirectory directory;
    directory.Write("preset.txt", "\xEF\xBB\xBF" + Record("one") + "\r\n" + Record("two"));
    CTuningList presets;
    int nDropped = -1;
    EXPECT_TRUE(LoadPresetFile(directory.Path("preset.txt"), presets, nDropped));
    EXPECT_EQ(nDropped, 0);
    Tuning tuning;
    ASSERT_TRUE(presets.GetAt(tuning, 0));
    EXPECT_EQ(tuning.m_strName, "one");
    ASSERT_TRUE(presets.GetNext(tuning));
    EXPECT_EQ(tuning.m_strName, "two");
    EXPECT_FALSE(LoadPresetFile(directory.Path("missing.txt"), presets, nDropped));
    EXPECT_FALSE(LoadPresetFile(directory.Path(), presets, nDropped));
    EXPECT_EQ(presets.GetCount(), 2);
}

}  // namespace
