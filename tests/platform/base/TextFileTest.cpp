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
    void Expect(const CString& strName, TextFileResult expected, const CString& strExpected = {}) {
        CString strText = "left over";
        EXPECT_EQ(ReadTextFile(m_directory.Path(strName), strText), expected) << strName;
        EXPECT_EQ(strText, strExpected);
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
        Expect("text", TextFileResult::Read, strExpected);
    }
}

TEST_F(TextFile, SaysWhatIsWrong) {
    m_directory.Write("huge", "");
    fs::resize_file(m_directory.Path("huge"), 64UL * 1024 * 1024 + 1);
    m_directory.Write("secret", "x");
    ASSERT_EQ(::chmod(m_directory.Path("secret").c_str(), 0), 0);
    ASSERT_EQ(::chmod(m_directory.Path().c_str(), 0755), 0);
    ASSERT_EQ(::mkfifo(m_directory.Path("pipe").c_str(), 0600), 0);
    for (const char* szName : {"missing", "missing/too", "huge/below"}) {
        Expect(szName, TextFileResult::Missing);
    }
    // A directory, one that has no writer to wait for, and one that is too large.
    for (const char* szName : {"", "pipe", "huge"}) {
        Expect(szName, TextFileResult::Unreadable);
    }
    EXPECT_EQ(RunAsNobody([this] {
                  Expect("secret", TextFileResult::Unreadable);
                  return HasFailure() ? 1 : 0;
              }),
              0);
}

}  // namespace
