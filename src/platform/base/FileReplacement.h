#pragma once

#include "platform/base/FileDescriptor.h"
#include "platform/base/Types.h"

#include <optional>
#include <string_view>

// Replaces a file in one step: the new content is written into a file beside it and flushed to the disk, then
// takes the old one's name. Whatever happens on the way (a crash, a full disk, a lost connection), the name
// belongs either to the whole old file or to the whole new one.
//
// A symbolic link stays, its target is replaced. The new file has the old one's mode and, where allowed,
// owner. Use: Prepare, then KeepOld if the old file is still worth something, then Commit.
class CFileReplacement {
public:
    CFileReplacement() = default;
    // What was prepared and not put in place is removed.
    ~CFileReplacement();
    CFileReplacement(const CFileReplacement&) = delete;
    CFileReplacement& operator=(const CFileReplacement&) = delete;
    CFileReplacement(CFileReplacement&&) = delete;
    CFileReplacement& operator=(CFileReplacement&&) = delete;

    // Writes the new content beside the file. False if it couldn't be written, or if the old file may not be
    // written or is no plain file.
    bool Prepare(const CString& strPath, std::string_view strContent);
    // Keeps the old file under a second name too, with a mark before its extension: "state.txt" also as
    // "state.rejected.txt", or "state.rejected.2.txt" and so on where that is taken, so that no file is lost.
    // Where the system gives no second names that is a copy. True also if there is no old file; false if it
    // can't be kept. Either way the old file has its own name until Commit.
    bool KeepOld(const CString& strMark);
    // Puts the prepared file in the old one's place.
    bool Commit();

    // Removes what processes that were killed on the way have left beside the file. What is being prepared by
    // a living one stays: it holds a lock on it. Where the file system knows no locks, nothing is removed.
    static void RemoveAbandoned(const CString& strPath);

private:
    void Discard();

    CString m_strTarget;                    // what the path leads to, links followed
    CString m_strPrepared;                  // the new file; empty when there is none
    std::optional<CFileDescriptor> m_hold;  // keeps the lock on it
};
