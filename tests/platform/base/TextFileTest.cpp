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
    TextFileResult ResultOf(const CString& strName) {
        CString strText = "left over";
        const TextFileResult result = ReadTextFile(m_directory.Path(strName), strText);
        EXPECT_EQ(strText, "");
        return result;
    }

    CScratchDirectory m_directory;
};

TEST_F(TextFile, EveryLineEndIsOneCharacterAndAByteOrderMarkIsNoText) {
    const std::pair<CString, CString> cases[] = {
        {"one\r\ntwo\nthree\r\n\r\n", "one\ntwo\nthree\n\n"},
        {"\rlone\rand last\r", "\rlone\rand last\r"},
        {"\r\r\n", "\r\n"},
        {"", ""},
        {CString("zero\0byte", 9), CString("zero\0byte", 9)},
        {"\xEF\xBB\xBF\r\n\xEF\xBB\xBF", "\n\xEF\xBB\xBF"},
        {"\xEF\xBB", "\xEF\xBB"},
        {CString(150000, '-') + "\r\n", CString(150000, '-') + "\n"},  // more than is read at once
    };
    for (const auto& [strContent, strExpected] : cases) {
        m_directory.Write("text", strContent);
        CString strText = "left over";
        EXPECT_EQ(ReadTextFile(m_directory.Path("text"), strText), TextFileResult::Read);
        EXPECT_EQ(strText, strExpected);
    }
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
