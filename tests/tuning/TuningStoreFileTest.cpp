#include "support/ScratchDirectory.h"
#include "support/Subprocess.h"
#include "tuning/TuningStore.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

// The settings on disk: nothing of the user's is ever lost.

namespace {

using testing::ElementsAre;

const CString REFUSED = "the user's work of years\n99\t0\n";

class TuningStoreFile : public testing::Test {
protected:
    TuningStoreFile() { m_store.SetDefaults(); }
    CString Path() const { return m_directory.Path("state.txt"); }

    CScratchDirectory m_directory;
    CTuningStore m_store;
};

TEST_F(TuningStoreFile, IsThereAfterARestart) {
    EXPECT_FALSE(m_store.Load(Path())) << "there is none yet";
    m_store.SetAFrequency(441.5F);
    m_store.GetCustomTunings()->AddTail(Tuning::StandardE());
    EXPECT_TRUE(m_store.Save(Path()));
    CTuningStore restarted;
    EXPECT_TRUE(restarted.Load(Path()));
    EXPECT_EQ(restarted.GetAFrequency(), 441.5F);
    EXPECT_EQ(restarted.GetCustomTunings()->Find(Tuning::StandardE()), 0);
    EXPECT_EQ(m_directory.Read("state.txt"), restarted.SaveText());
    EXPECT_TRUE(restarted.Save(Path()));
    EXPECT_THAT(m_directory.Names(), ElementsAre("state.txt"));
}

TEST_F(TuningStoreFile, HasLineEndsOfEitherKind) {
    m_store.GetCustomTunings()->AddTail(Tuning::StandardE());
    CString strText;
    for (const char c : m_store.SaveText()) {
        strText += c == '\n' ? "\r\n" : CString(1, c);
    }
    m_directory.Write("state.txt", strText);
    CTuningStore restarted;
    EXPECT_TRUE(restarted.Load(Path()));
    EXPECT_EQ(restarted.SaveText(), m_store.SaveText());
}

TEST_F(TuningStoreFile, ARefusedFileIsKeptOnce) {
    m_directory.Write("state.txt", REFUSED);
    EXPECT_FALSE(m_store.Load(Path()));
    EXPECT_THAT(m_directory.Names(), ElementsAre("state.txt")) << "reading changes nothing";
    m_store.SetDefaults();
    EXPECT_TRUE(m_store.Save(Path()));
    EXPECT_TRUE(m_store.Save(Path()));
    EXPECT_EQ(m_directory.Read("state.rejected.txt"), REFUSED);
    EXPECT_THAT(m_directory.Names(), ElementsAre("state.rejected.txt", "state.txt"));
    EXPECT_TRUE(m_store.Load(Path()));
}

TEST_F(TuningStoreFile, ALaterRefusedFileDoesNotReplaceTheFirst) {
    for (const char* szText : {"first", "", "third"}) {
        m_directory.Write("state.txt", szText);
        EXPECT_FALSE(m_store.Load(Path()));
        m_store.SetDefaults();
        EXPECT_TRUE(m_store.Save(Path()));
    }
    EXPECT_EQ(m_directory.Read("state.rejected.txt"), "first");
    EXPECT_EQ(m_directory.Read("state.rejected.2.txt"), "");
    EXPECT_EQ(m_directory.Read("state.rejected.3.txt"), "third");
}

TEST_F(TuningStoreFile, OneThatCannotBeReadIsKeptToo) {
    m_directory.Write("state.txt", m_store.SaveText());
    std::filesystem::resize_file(Path(), 65UL * 1024 * 1024);
    EXPECT_FALSE(m_store.Load(Path()));
    m_store.SetDefaults();
    EXPECT_TRUE(m_store.Save(Path()));
    EXPECT_EQ(std::filesystem::file_size(m_directory.Path("state.rejected.txt")), 65UL * 1024 * 1024);
}

TEST_F(TuningStoreFile, AGoodOrAnotherFileIsNotKept) {
    EXPECT_TRUE(m_store.Save(Path()));
    EXPECT_TRUE(m_store.Load(Path()));
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
    EXPECT_FALSE(m_store.Save(m_directory.Path()));
    ASSERT_EQ(::chmod(m_directory.Path().c_str(), 0755), 0);
    EXPECT_EQ(RunAsNobody([this] { return m_store.Save(Path()) ? 1 : 0; }), 0);
    EXPECT_THAT(m_directory.Names(), ElementsAre());
}

}  // namespace
