#include "platform/base/FileReplacement.h"

#include "platform/base/FileDescriptor.h"
#include "platform/base/String.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>

namespace {

constexpr int MAX_LINKS = 40;
constexpr int MAX_NAME_ATTEMPTS = 100;
constexpr int MAX_KEPT_FILES = 1000;
constexpr mode_t PERMISSION_BITS = 0777;
constexpr mode_t NEW_FILE_MODE = 0666;
constexpr mode_t PRIVATE_MODE = 0600;
constexpr std::size_t COPIED_AT_ONCE = 65536;
// Prepared files are named "<target>.<process>-<number>.new".
constexpr std::string_view PREPARED_END = ".new";

// The directory of a path, with its slash; empty for a bare name.
CString DirectoryOf(const CString& strPath) {
    return strPath.substr(0, strPath.rfind('/') + 1);
}

// Follows the links that the last part of a path may be. What it leads to need not exist.
std::optional<CString> FollowLinks(CString strPath) {
    for (int i = 0; i < MAX_LINKS; ++i) {
        std::array<char, PATH_MAX> buffer;
        const ssize_t nLength = ::readlink(strPath.c_str(), buffer.data(), buffer.size());
        if (nLength < 0) {
            return errno == EINVAL || errno == ENOENT ? std::optional(strPath) : std::nullopt;
        }
        const CString strTarget(buffer.data(), static_cast<std::size_t>(nLength));
        strPath = strTarget.starts_with('/') ? strTarget : DirectoryOf(strPath).append(strTarget);
    }
    return std::nullopt;
}

bool WriteAll(int nDescriptor, std::string_view strContent) {
    while (!strContent.empty()) {
        const ssize_t nWritten = ::write(nDescriptor, strContent.data(), strContent.size());
        if (nWritten > 0) {
            strContent.remove_prefix(static_cast<std::size_t>(nWritten));
        } else if (nWritten == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

// Locks the file until its last descriptor is closed, by the end of the process at the latest. False if
// somebody takes it for abandoned at this very moment. A file system without locks gets none.
bool Hold(int nDescriptor) {
    struct stat status = {};
    return (::flock(nDescriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) &&
           ::fstat(nDescriptor, &status) == 0 && status.st_nlink > 0;
}

// Makes a file of its own beside the target, whoever else may be writing there, and holds it.
int CreateBeside(const CString& strTarget, CString& strCreated) {
    static std::atomic<unsigned> uNext = 0;
    for (int i = 0; i < MAX_NAME_ATTEMPTS; ++i) {
        strCreated = FormatText("%s.%d-%u", strTarget.c_str(), static_cast<int>(::getpid()), uNext++);
        strCreated += PREPARED_END;
        const int nDescriptor =
            ::open(strCreated.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NEW_FILE_MODE);
        if (nDescriptor < 0 ? errno != EEXIST : Hold(nDescriptor)) {
            return nDescriptor;
        }
        if (nDescriptor >= 0) {
            ::close(nDescriptor);
        }
    }
    return -1;
}

bool IsPreparedName(std::string_view strEntry, std::string_view strTarget) {
    if (strEntry.size() <= strTarget.size() + PREPARED_END.size() || !strEntry.starts_with(strTarget) ||
        !strEntry.ends_with(PREPARED_END)) {
        return false;
    }
    strEntry.remove_prefix(strTarget.size());
    strEntry.remove_suffix(PREPARED_END.size());
    const std::size_t nDash = strEntry.find('-');
    constexpr std::string_view DIGITS = "0123456789";
    return strEntry.front() == '.' && nDash != std::string_view::npos && nDash > 1 &&
           nDash + 1 < strEntry.size() &&
           strEntry.substr(1, nDash - 1).find_first_not_of(DIGITS) == std::string_view::npos &&
           strEntry.substr(nDash + 1).find_first_not_of(DIGITS) == std::string_view::npos;
}

void RemoveUnlessHeld(const CString& strPrepared) {
    const CFileDescriptor file(::open(strPrepared.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (file.IsOpen() && ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode) &&
        ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0) {
        ::unlink(strPrepared.c_str());
    }
}

// The new file looks to others like the old one. Another's file can only be given back to its owner by the
// system's administrator; for everybody else it becomes their own.
bool TakeOver(int nDescriptor, const struct stat& old) {
    struct stat status = {};
    if (::fstat(nDescriptor, &status) != 0) {
        return false;
    }
    const bool bSameOwner = status.st_uid == old.st_uid && status.st_gid == old.st_gid;
    const bool bGivenBack = bSameOwner || ::fchown(nDescriptor, old.st_uid, old.st_gid) == 0;
    const mode_t mode = old.st_mode & PERMISSION_BITS;
    return ::fchmod(nDescriptor, bGivenBack ? mode : mode & ~static_cast<mode_t>(S_IRWXG)) == 0;
}

bool CopyContent(int nFrom, int nTo) {
    std::array<char, COPIED_AT_ONCE> buffer;
    for (;;) {
        const ssize_t nRead = ::read(nFrom, buffer.data(), buffer.size());
        if (nRead == 0) {
            return true;
        }
        const bool bInterrupted = nRead < 0 && errno == EINTR;
        if (!bInterrupted &&
            (nRead < 0 || !WriteAll(nTo, {buffer.data(), static_cast<std::size_t>(nRead)}))) {
            return false;
        }
    }
}

// A copy under a name that nobody has, flushed to the disk. Where that fails, there is none.
bool CopyFile(const CString& strFrom, const struct stat& from, const CString& strTo) {
    const CFileDescriptor source(::open(strFrom.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source.IsOpen()) {
        return false;
    }
    CFileDescriptor copy(::open(strTo.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, PRIVATE_MODE));
    if (!copy.IsOpen()) {
        return false;
    }
    const bool bCopied =
        TakeOver(copy.Get(), from) && CopyContent(source.Get(), copy.Get()) && ::fsync(copy.Get()) == 0;
    if (!copy.Close() || !bCopied) {
        ::unlink(strTo.c_str());
        return false;
    }
    return true;
}

void FlushDirectory(const CString& strDirectory) {
    const char* szDirectory = strDirectory.empty() ? "." : strDirectory.c_str();
    const CFileDescriptor directory(::open(szDirectory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.IsOpen()) {
        ::fsync(directory.Get());
    }
}

// "state.txt" with the mark ".rejected" is "state.rejected.txt", and "state.rejected.2.txt" for number 2.
CString KeptName(const CString& strTarget, const CString& strMark, int nNumber) {
    const std::size_t nName = DirectoryOf(strTarget).size();
    const std::size_t nDot = strTarget.rfind('.');
    const std::size_t nCut = nDot == CString::npos || nDot <= nName ? strTarget.size() : nDot;
    const CString strNumber = nNumber == 1 ? CString() : FormatText(".%d", nNumber);
    return strTarget.substr(0, nCut) + strMark + strNumber + strTarget.substr(nCut);
}

}  // namespace

CFileReplacement::~CFileReplacement() {
    Discard();
}

void CFileReplacement::Discard() {
    if (!m_strPrepared.empty()) {
        ::unlink(m_strPrepared.c_str());
        m_strPrepared.clear();
    }
    m_hold.reset();
}

bool CFileReplacement::Prepare(const CString& strPath, std::string_view strContent) {
    const auto target = FollowLinks(strPath);
    Discard();
    if (!target) {
        return false;
    }
    struct stat old = {};
    const bool bThere = ::stat(target->c_str(), &old) == 0;
    if (bThere ? !S_ISREG(old.st_mode) || ::faccessat(AT_FDCWD, target->c_str(), W_OK, AT_EACCESS) != 0
               : errno != ENOENT) {
        return false;
    }
    CFileDescriptor file(CreateBeside(*target, m_strPrepared));
    if (!file.IsOpen()) {
        m_strPrepared.clear();
        return false;
    }
    m_hold.emplace(::fcntl(file.Get(), F_DUPFD_CLOEXEC, 0));
    m_strTarget = *target;
    const bool bWritten = (!bThere || TakeOver(file.Get(), old)) && WriteAll(file.Get(), strContent) &&
                          ::fsync(file.Get()) == 0;
    if (!file.Close() || !bWritten) {
        Discard();
        return false;
    }
    return true;
}

bool CFileReplacement::KeepOld(const CString& strMark) {
    struct stat old = {};
    if (::stat(m_strTarget.c_str(), &old) != 0) {
        return errno == ENOENT;
    }
    for (int i = 1; i <= MAX_KEPT_FILES; ++i) {
        const CString strKept = KeptName(m_strTarget, strMark, i);
        struct stat kept = {};
        if (::lstat(strKept.c_str(), &kept) == 0) {
            // Kept already, by somebody who was stopped before the replacement.
            if (kept.st_dev == old.st_dev && kept.st_ino == old.st_ino) {
                return true;
            }
            continue;
        }
        const bool bLinked = ::link(m_strTarget.c_str(), strKept.c_str()) == 0;
        if (!bLinked && errno == EEXIST) {
            continue;
        }
        // A file system without second names, or one that forbids them here, gets a copy.
        if (!bLinked && !CopyFile(m_strTarget, old, strKept)) {
            return false;
        }
        FlushDirectory(DirectoryOf(m_strTarget));
        return true;
    }
    return false;
}

bool CFileReplacement::Commit() {
    if (m_strPrepared.empty() || ::rename(m_strPrepared.c_str(), m_strTarget.c_str()) != 0) {
        return false;
    }
    m_strPrepared.clear();
    m_hold.reset();
    FlushDirectory(DirectoryOf(m_strTarget));
    return true;
}

void CFileReplacement::RemoveAbandoned(const CString& strPath) {
    const auto target = FollowLinks(strPath);
    if (!target) {
        return;
    }
    const CString strDirectory = DirectoryOf(*target);
    const auto close = [](DIR* pDirectory) { ::closedir(pDirectory); };
    const std::unique_ptr<DIR, decltype(close)> pDirectory(
        ::opendir(strDirectory.empty() ? "." : strDirectory.c_str()), close);
    while (const dirent* const pEntry = pDirectory ? ::readdir(pDirectory.get()) : nullptr) {
        if (IsPreparedName(pEntry->d_name, std::string_view(*target).substr(strDirectory.size()))) {
            RemoveUnlessHeld(strDirectory + pEntry->d_name);
        }
    }
}
