#include "support/ScratchDirectory.h"
#include "support/Subprocess.h"
#include "tuning/TuningStore.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <regex>

// The settings on disk: nothing of the user's is ever lost.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const CString REFUSED = "the user's work of years\n99\t0\n";

class TuningStoreFile : public testing::Test {
protected:
    TuningStoreFile() { m_store.SetDefaults(); }
    CString Path() const { return m_directory.Path("state.txt"); }
    // What the program does with a file that it can't use: it starts with defaults, and saves at its end.
    void RefuseAndSave() {
        const auto names = m_directory.Names();
        EXPECT_FALSE(m_store.Load(Path()));
        EXPECT_EQ(m_directory.Names(), names) << "reading changes nothing";
        m_store.SetDefaults();
        EXPECT_TRUE(m_store.Save(Path()));
        EXPECT_TRUE(m_store.Save(Path()));
        EXPECT_TRUE(m_store.Load(Path()));
    }

    CScratchDirectory m_directory;
    CTuningStore m_store;
};

TEST_F(TuningStoreFile, IsThereAfterARestartWithLineEndsOfEitherKind) {
    m_store.GetCustomTunings()->AddTail(Tuning::StandardE());
    EXPECT_TRUE(m_store.Save(Path()));
    const CString strText = m_store.SaveText();
    EXPECT_EQ(m_directory.Read("state.txt"), strText);
    m_directory.Write("state.txt", std::regex_replace(strText, std::regex("\n"), "\r\n"));
    CTuningStore restarted;
    EXPECT_TRUE(restarted.Load(Path()));
    EXPECT_EQ(restarted.SaveText(), strText);
    EXPECT_TRUE(restarted.Save(Path()));
    EXPECT_THAT(m_directory.Names(), ElementsAre("state.txt"));
    EXPECT_FALSE(m_store.Load(m_directory.Path("missing.txt")));
    EXPECT_EQ(m_store.GetCustomTunings()->GetCount(), 0);
}

TEST_F(TuningStoreFile, EachRefusedFileIsKeptOnceBesideTheEarlierOnes) {
    for (const CString& strText : {REFUSED, CString(), CString("third")}) {
        m_directory.Write("state.txt", strText);
        RefuseAndSave();
    }
    // One that is too large to be read is kept too.
    constexpr std::uintmax_t TOO_LARGE = 65UL * 1024 * 1024;
    std::filesystem::resize_file(Path(), TOO_LARGE);
    RefuseAndSave();
    EXPECT_EQ(m_directory.Read("state.rejected.txt"), REFUSED);
    EXPECT_EQ(m_directory.Read("state.rejected.2.txt"), "");
    EXPECT_EQ(m_directory.Read("state.rejected.3.txt"), "third");
    EXPECT_EQ(std::filesystem::file_size(m_directory.Path("state.rejected.4.txt")), TOO_LARGE);
    EXPECT_EQ(m_directory.Names().size(), 5U);
}

TEST_F(TuningStoreFile, AnotherFileIsNotKept) {
    EXPECT_TRUE(m_store.Save(Path()));
    m_directory.Write("other.txt", REFUSED);
    EXPECT_FALSE(m_store.Load(m_directory.Path("other.txt")));
    m_store.SetDefaults();
    EXPECT_TRUE(m_store.Save(Path()));
    EXPECT_THAT(m_directory.Names(), ElementsAre("other.txt", "state.txt"));
}

TEST_F(TuningStoreFile, AFullDiskCostsNeitherTheOldNorTheRefused) {
    m_directory.Write("state.txt", REFUSED);
    const int nCode = RunInChild([this] {
        FillDiskAbove(16);
        return !m_store.Load(Path()) && !m_store.Save(Path()) ? 0 : 1;
    });
    EXPECT_EQ(nCode, 0);
    EXPECT_EQ(m_directory.Read("state.txt"), REFUSED);
    EXPECT_THAT(m_directory.Names(), ElementsAre("state.txt"));
}

TEST_F(TuningStoreFile, SaysWhenItCannotBeWritten) {
    EXPECT_FALSE(m_store.Save(m_directory.Path("missing/state.txt")));
    ASSERT_EQ(::chmod(m_directory.Path().c_str(), 0755), 0);
    EXPECT_EQ(RunAsNobody([this] { return m_store.Save(Path()) ? 1 : 0; }), 0);
    EXPECT_THAT(m_directory.Names(), IsEmpty());
}

}  // namespace
