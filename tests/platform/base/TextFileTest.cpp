#include "platform/base/TextFile.h"
#include "support/ScratchDirectory.h"
#include "support/Subprocess.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class TextFile : public testing::Test {
protected:
    CString TextOf(const CString& strContent) {
        m_directory.Write("text", strContent);
        CString strText = "left over";
        EXPECT_EQ(ReadTextFile(m_directory.Path("text"), strText), TextFileResult::Read);
        return strText;
    }
    TextFileResult ResultOf(const CString& strName) {
        CString strText = "left over";
        const TextFileResult result = ReadTextFile(m_directory.Path(strName), strText);
        EXPECT_EQ(strText, "");
        return result;
    }

    CScratchDirectory m_directory;
};

TEST_F(TextFile, EveryLineEndIsOneCharacter) {
    EXPECT_EQ(TextOf("one\r\ntwo\nthree\r\n\r\n"), "one\ntwo\nthree\n\n");
    EXPECT_EQ(TextOf("\rlone\rand last\r"), "\rlone\rand last\r");
    EXPECT_EQ(TextOf("\r\r\n"), "\r\n");
    EXPECT_EQ(TextOf(""), "");
    EXPECT_EQ(TextOf(CString("zero\0byte", 9)), CString("zero\0byte", 9));
}

TEST_F(TextFile, AByteOrderMarkIsNoText) {
    EXPECT_EQ(TextOf("\xEF\xBB\xBF"
                     "a\r\n\xEF\xBB\xBF"),
              "a\n\xEF\xBB\xBF");
    EXPECT_EQ(TextOf("\xEF\xBB\xBF"), "");
    EXPECT_EQ(TextOf("\xEF\xBB"), "\xEF\xBB");
}

TEST_F(TextFile, LargerThanTheReadersBuffer) {
    CString strLines;
    for (int i = 0; i < 50000; ++i) {
        strLines += "line\r\n";
    }
    const CString strText = TextOf(strLines);
    EXPECT_EQ(strText.size(), 250000U);
    EXPECT_EQ(strText.find('\r'), CString::npos);
}

TEST_F(TextFile, SaysWhatIsWrong) {
    EXPECT_EQ(ResultOf("missing"), TextFileResult::Missing);
    EXPECT_EQ(ResultOf("missing/too"), TextFileResult::Missing);
    EXPECT_EQ(ResultOf(""), TextFileResult::Unreadable) << "a directory";
    ASSERT_EQ(::mkfifo(m_directory.Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(ResultOf("pipe"), TextFileResult::Unreadable) << "and it doesn't wait for a writer";

    m_directory.Write("huge", "");
    fs::resize_file(m_directory.Path("huge"), 64UL * 1024 * 1024 + 1);
    EXPECT_EQ(ResultOf("huge"), TextFileResult::Unreadable);

    m_directory.Write("secret", "x");
    ASSERT_EQ(::chmod(m_directory.Path("secret").c_str(), 0), 0);
    ASSERT_EQ(::chmod(m_directory.Path().c_str(), 0755), 0);
    EXPECT_EQ(RunAsNobody([this] { return ResultOf("secret") == TextFileResult::Unreadable ? 0 : 1; }), 0);
}

}  // namespace
