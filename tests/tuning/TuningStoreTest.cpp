#include "tuning/TuningStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <random>
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
    const std::vector<CString> fields{"44000", "1", "2", "3", "4", "5", "6", "7", "8", "0"};
    CString strText = FIRST_LINE;
    for (int i = 0; i < 10; ++i) {
        strText += (i == 0 ? "" : "\t") + (i == nField ? strValue : fields[static_cast<std::size_t>(i)]);
    }
    return strText + '\n';
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

// The one tuning's name after it has been written and read.
CString NameAfterRestart(const CString& strName) {
    CTuningStore store;
    store.SetDefaults();
    Tuning tuning = Tuning::StandardE();
    tuning.m_strName = strName;
    store.GetCustomTunings()->AddTail(tuning);
    tuning.m_strName = "next";
    store.GetCustomTunings()->AddTail(tuning);
    CTuningStore restarted;
    EXPECT_TRUE(restarted.LoadText(store.SaveText()));
    EXPECT_EQ(restarted.GetCustomTunings()->GetCount(), 2);
    EXPECT_EQ(At(restarted, 1).m_strName, "next");
    return At(restarted, 0).m_strName;
}

TEST(TuningStore, BeginsWithoutDevicesAndTunings) {
    CTuningStore store;
    EXPECT_EQ(store.GetMidiDevice(), -1);
    EXPECT_EQ(store.GetWaveDevice(), -1);
    EXPECT_EQ(store.GetCustomTunings()->GetCount(), 0);
    EXPECT_TRUE(store.GetCurrentTuning()->IsEqual(Tuning()));
    EXPECT_EQ(store.GetCurrentTuning()->m_strName, "");
    EXPECT_EQ(store.GetNeedleColor(), 0xA00000U);
}

TEST(TuningStore, DefaultsAreTheseTwoLines) {
    CTuningStore store;
    ASSERT_TRUE(store.LoadText(WithField(0, "43210")));
    EXPECT_NE(store.SaveText(), DEFAULT_TEXT);
    store.SetDefaults();
    EXPECT_EQ(store.SaveText(), DEFAULT_TEXT);
}

TEST(TuningStore, EachNumberHasItsPlace) {
    CTuningStore store;
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
}

TEST(TuningStore, NumbersHaveLimits) {
    const std::vector<CString> always{"", "x", "-1", "-1x", "+", "-", "+-1", ".5", "-99999999999999999999"};
    for (int i = 0; i < 10; ++i) {
        for (const CString& strValue : always) {
            EXPECT_FALSE(Loads(WithField(i, strValue))) << i << ": " << strValue;
        }
    }
    for (const char* szValue : {"43000", "45000", "+44000", "0044000", " \v\f\r\n 44000"}) {
        EXPECT_TRUE(Loads(WithField(0, szValue))) << szValue;
    }
    for (const char* szValue :
         {"42999", "45001", "0", "44000.5", "44000x", "4294967296", "18446744073709595616"}) {
        EXPECT_FALSE(Loads(WithField(0, szValue))) << szValue;
    }
    for (int i = 1; i <= 4; ++i) {
        EXPECT_TRUE(Loads(WithField(i, "16777215")));
        EXPECT_FALSE(Loads(WithField(i, "16777216")));
        EXPECT_FALSE(Loads(WithField(i, "4294967295")));
    }
    for (int i = 5; i <= 8; ++i) {
        for (const char* szValue : {"0", "2147483647", "2147483648", "4294967295", "99999999999999999999"}) {
            EXPECT_TRUE(Loads(WithField(i, szValue))) << i << ": " << szValue;
        }
    }
    EXPECT_FALSE(Loads(WithField(9, "1"))) << "there is no such tuning";
    EXPECT_FALSE(Loads(WithField(9, "2147483647")));
}

TEST(TuningStore, ARefusedNumberLeavesThoseBeforeIt) {
    CTuningStore store;
    store.SetDefaults();
    EXPECT_FALSE(store.LoadText(WithField(3, "16777216")));
    EXPECT_EQ(store.GetHighColor(), 2U);
    EXPECT_EQ(store.GetLowColor(), 0x008000U);
    EXPECT_EQ(store.GetTextColor(), 0xFF0000U);
}

TEST(TuningStore, NoDeviceComesBackAsTheLargestNumber) {
    CTuningStore store;
    store.SetDefaults();
    store.SetWaveDevice(-1);
    EXPECT_EQ(store.SaveText(),
              FIRST_LINE + "44000\t10485760\t16711680\t32768\t16711680\t0\t4294967295\t0\t128\t0\n");
    ASSERT_TRUE(store.LoadText(store.SaveText()));
    EXPECT_EQ(store.GetWaveDevice(), 2147483647);
}

TEST(TuningStore, FrequencyAndHopAreTruncated) {
    CTuningStore store;
    const auto restart = [&store](float fFrequency) {
        store.SetDefaults();
        store.SetAFrequency(fFrequency);
        EXPECT_TRUE(store.LoadText(store.SaveText()));
        return store.GetAFrequency();
    };
    for (const float fFrequency : {430.0F, 440.0F, 441.5F, 442.25F, 450.0F}) {
        EXPECT_EQ(restart(fFrequency), fFrequency);
    }
    // The single-precision hundredth lies a little below a hundredth.
    EXPECT_EQ(restart(430.1F), std::nextafter(430.1F, 0.0F));
    EXPECT_EQ(store.SaveText().substr(FIRST_LINE.size(), 6), "43009\t");
    for (int i = 43000; i <= 45000; ++i) {
        ASSERT_TRUE(store.LoadText(WithField(0, std::to_string(i))));
        ASSERT_NEAR(store.GetAFrequency(), i / 100.0, 3e-5);
        ASSERT_GE(store.GetAFrequency(), 430.0F);
        ASSERT_LE(store.GetAFrequency(), 450.0F);
    }
    // 430.02 lies a little below itself too, which only the product in double precision shows.
    store.SetAFrequency(430.02F);
    EXPECT_EQ(store.SaveText().substr(FIRST_LINE.size(), 6), "43001\t");
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
        ASSERT_TRUE(store.LoadText(strText)) << "and loading again doesn't add";
        ASSERT_EQ(store.GetCustomTunings()->GetCount(), 2);
    }
    EXPECT_EQ(At(store, 0).m_strName, "Drop D \xE4\xB8\x89");
    EXPECT_EQ(At(store, 0).m_dwTag, 4294967295U);
    for (int i = 0; i < 6; ++i) {
        constexpr int OCTAVES[] = {2, 1, 0, 2, 1, 0};
        EXPECT_TRUE(At(store, 1).m_strings[static_cast<std::size_t>(i)].IsNote(i, OCTAVES[i]));
    }
    EXPECT_EQ(store.GetCurrentTuning()->m_strName, "in force");
    EXPECT_EQ(store.SaveText(), strText);
}

TEST(TuningStore, SurplusLinesAreIgnored) {
    CTuningStore store;
    ASSERT_TRUE(store.LoadText(FIRST_LINE + DEFAULTS + "1\na\t1" + DROP_D_NOTES + "b\t0\t99\tx\n"));
    EXPECT_EQ(store.SaveText(), FIRST_LINE + DEFAULTS + "1\na\t1" + DROP_D_NOTES);
    ASSERT_TRUE(store.LoadText(FIRST_LINE + DEFAULTS + "0\nb\t0\t99\tx\n"));
    EXPECT_EQ(store.SaveText(), DEFAULT_TEXT);
}

TEST(TuningStore, ABadTuningTakesAllWithIt) {
    const CString strStart = FIRST_LINE + DEFAULTS + "2\ngood\t0" + DROP_D_NOTES;
    for (const char* szNotes :
         {"\t12\t0", "\t-1\t0", "\t0\t3", "\t0\t-1", "\tx\t0", "\t0\t4294967296", "\t0"}) {
        CTuningStore store;
        store.GetCustomTunings()->AddTail(Tuning::StandardE());
        const CString strBad = CString("bad\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2") + szNotes + "\n";
        EXPECT_FALSE(store.LoadText(strStart + strBad)) << szNotes;
        EXPECT_EQ(store.GetCustomTunings()->GetCount(), 0) << szNotes;
    }
    EXPECT_FALSE(Loads(FIRST_LINE + DEFAULTS + "1\nno tag\tx" + DROP_D_NOTES));
    EXPECT_FALSE(Loads(FIRST_LINE + DEFAULTS + "1\ntwo signs\t+-1" + DROP_D_NOTES));
    EXPECT_FALSE(Loads(FIRST_LINE + DEFAULTS + "1\nno tab"));
}

TEST(TuningStore, TheFirstLineIsNotLookedAt) {
    EXPECT_TRUE(Loads("\n" + DEFAULTS + "0"));
    EXPECT_TRUE(Loads(CString(1000, 'x') + "\n" + DEFAULTS + "0"));
    EXPECT_FALSE(Loads(""));
    EXPECT_FALSE(Loads(DEFAULTS + "0\n"));
}

TEST(TuningStore, NamesLoseOnlyTabsAndLineEnds) {
    EXPECT_EQ(NameAfterRestart("a\tb\nc\rd\r\ne"), "a b c d  e");
    EXPECT_EQ(NameAfterRestart("\t\n  "), "    ");
    EXPECT_EQ(NameAfterRestart(""), "");
    EXPECT_EQ(NameAfterRestart("12 34"), "12 34");
}

TEST(TuningStore, NamesAreCutAtTheEndOfACharacter) {
    const CString strGuitar = "\xF0\x9F\x8E\xB8";
    EXPECT_EQ(NameAfterRestart(CString(254, 'x')), CString(254, 'x'));
    EXPECT_EQ(NameAfterRestart(CString(255, 'x')), CString(254, 'x'));
    EXPECT_EQ(NameAfterRestart(CString(250, 'x') + strGuitar), CString(250, 'x') + strGuitar);
    for (std::size_t n = 251; n <= 254; ++n) {
        EXPECT_EQ(NameAfterRestart(CString(n, 'x') + strGuitar), CString(n, 'x'));
    }
    EXPECT_EQ(NameAfterRestart(CString(253, 'x') + "\xC3\xA9"), CString(253, 'x'));
    EXPECT_EQ(NameAfterRestart(CString(1000, '\x80')), CString(254, '\x80')) << "no UTF-8 at all";
}

TEST(TuningStore, ALongNameInTheFileDoesNotDerailTheReader) {
    CTuningStore store;
    ASSERT_TRUE(store.LoadText(FIRST_LINE + DEFAULTS + "2\n" + CString(100000, 'x') + "\t1" + DROP_D_NOTES +
                               CString(254, 'y') + "\t2" + DROP_D_NOTES));
    EXPECT_EQ(At(store, 0).m_strName, CString(254, 'x'));
    EXPECT_EQ(At(store, 0).m_dwTag, 1U);
    EXPECT_EQ(At(store, 1).m_strName, CString(254, 'y'));
}

// Settings and tunings of any kind, reproducibly.
class CRandomStore {
public:
    explicit CRandomStore(unsigned uSeed) : m_random(uSeed) {}

    int Upto(int nMax) { return std::uniform_int_distribution(0, nMax)(m_random); }

    CString Name() {
        CString strName;
        for (int i = Upto(1) == 0 ? Upto(20) : Upto(300); i > 0; --i) {
            switch (Upto(4)) {
                case 0:
                    strName += static_cast<char>(Upto(0x7F));
                    break;
                case 1:
                    Append(strName, 0x80 + Upto(0x77F), 0xC0, 1);
                    break;
                case 2:
                    Append(strName, 0x4E00 + Upto(0x51FF), 0xE0, 2);
                    break;
                case 3:
                    Append(strName, 0x10000 + Upto(0xFFFFF), 0xF0, 3);
                    break;
                default:
                    strName += "\t\n\r "[Upto(3)];
            }
        }
        return strName;
    }

    void Fill(CTuningStore& store) {
        store.SetAFrequency(430.0F + static_cast<float>(Upto(2000)) / 100.0F);
        store.SetNeedleColor(static_cast<COLORREF>(Upto(0xFFFFFF)));
        store.SetHighColor(static_cast<COLORREF>(Upto(0xFFFFFF)));
        store.SetLowColor(static_cast<COLORREF>(Upto(0xFFFFFF)));
        store.SetTextColor(static_cast<COLORREF>(Upto(0xFFFFFF)));
        store.SetMidiDevice(Upto(std::numeric_limits<int>::max()));
        store.SetWaveDevice(Upto(20));
        store.SetListIndex(Upto(100));
        store.SetHop(static_cast<float>(Upto(5000)) / 3.0F);
        for (int i = Upto(8); i > 0; --i) {
            Tuning tuning;
            tuning.m_strName = Name();
            tuning.m_dwTag = static_cast<DWORD>(m_random());
            for (StringNote& note : tuning.m_strings) {
                note = {Upto(11), Upto(2)};
            }
            store.GetCustomTunings()->AddTail(tuning);
        }
    }

private:
    static void Append(CString& strText, int nCharacter, int nLead, int nContinuations) {
        strText += static_cast<char>(nLead | nCharacter >> 6 * nContinuations);
        for (int i = nContinuations - 1; i >= 0; --i) {
            strText += static_cast<char>(0x80 | (nCharacter >> 6 * i & 0x3F));
        }
    }

    std::mt19937 m_random;
};

// True if the bytes are whole characters of UTF-8.
bool IsWholeUtf8(const CString& strText) {
    for (std::size_t i = 0; i < strText.size();) {
        const auto lead = static_cast<unsigned char>(strText[i]);
        const std::size_t nLength = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (i + nLength > strText.size()) {
            return false;
        }
        i += nLength;
    }
    return true;
}

TEST(TuningStore, AnythingWrittenComesBack) {
    for (unsigned uSeed = 0; uSeed < 300; ++uSeed) {
        SCOPED_TRACE(uSeed);
        CTuningStore store;
        CRandomStore(uSeed).Fill(store);
        CTuningStore restarted;
        ASSERT_TRUE(restarted.LoadText(store.SaveText()));
        EXPECT_NEAR(restarted.GetAFrequency(), store.GetAFrequency(), 0.0101);
        EXPECT_EQ(restarted.GetNeedleColor(), store.GetNeedleColor());
        EXPECT_EQ(restarted.GetMidiDevice(), store.GetMidiDevice());
        EXPECT_EQ(restarted.GetHop(), std::trunc(store.GetHop()));
        ASSERT_EQ(restarted.GetCustomTunings()->GetCount(), store.GetCustomTunings()->GetCount());
        for (int i = 0; i < store.GetCustomTunings()->GetCount(); ++i) {
            const Tuning written = At(store, i);
            const Tuning read = At(restarted, i);
            EXPECT_TRUE(read.IsEqual(written));
            EXPECT_EQ(read.m_dwTag, written.m_dwTag);
            EXPECT_TRUE(IsWholeUtf8(read.m_strName));
            EXPECT_LE(read.m_strName.size(), 254U);
            EXPECT_GE(read.m_strName.size(), std::min<std::size_t>(written.m_strName.size(), 251));
            for (std::size_t n = 0; n < read.m_strName.size(); ++n) {
                const bool bBlank = CString("\t\n\r").find(written.m_strName[n]) != CString::npos;
                ASSERT_EQ(read.m_strName[n], bBlank ? ' ' : written.m_strName[n]);
            }
        }
        // What was read once doesn't change any more, but for the A frequency's last hundredth.
        restarted.SetAFrequency(440.0F);
        const CString strText = restarted.SaveText();
        ASSERT_TRUE(restarted.LoadText(strText));
        EXPECT_EQ(restarted.SaveText(), strText);
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
