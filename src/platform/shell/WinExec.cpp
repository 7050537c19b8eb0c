#include "platform/shell/WinExec.h"

#include "platform/shell/FindProgram.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace {

bool IsAddress(const CString& strArgument) {
    const auto nColon = strArgument.find(':');
    return nColon != CString::npos && nColon > 1 &&
           std::all_of(strArgument.begin(), strArgument.begin() + static_cast<std::ptrdiff_t>(nColon),
                       [](unsigned char c) { return std::isalpha(c) != 0; });
}

// What follows runs between fork and exec, where other threads' locks may be held for ever: system calls
// only.

void ResetSignals() {
    struct sigaction byDefault {};
    byDefault.sa_handler = SIG_DFL;
    for (int nSignal = 1; nSignal < NSIG; ++nSignal) {
        ::sigaction(nSignal, &byDefault, nullptr);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

void DropFiles() {
    const int nNothing = ::open("/dev/null", O_RDWR);
    for (int nStandard = STDIN_FILENO; nStandard <= STDERR_FILENO; ++nStandard) {
        ::dup2(nNothing, nStandard);
    }
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
}

[[noreturn]] void Become(const char* szProgram, char* const* arguments) {
    ::setsid();
    // The child ends at once, so that the grandchild belongs to nobody who would have to wait for it.
    const pid_t nGrandchild = ::fork();
    if (nGrandchild == 0) {
        ResetSignals();
        DropFiles();
        ::execv(szProgram, arguments);
    }
    ::_exit(nGrandchild < 0 ? EXIT_FAILURE : EXIT_SUCCESS);
}

}  // namespace

bool WinExec(const CString& strCommandLine) {
    const auto nBlank = strCommandLine.find(' ');
    CString strName = strCommandLine.substr(0, nBlank);
    const CString strProgram = FindProgram(strName);
    if (strProgram.empty()) {
        return false;
    }
    CString strArgument = nBlank != CString::npos ? strCommandLine.substr(nBlank + 1) : CString();
    if (IsAddress(strArgument)) {
        std::replace(strArgument.begin(), strArgument.end(), '\\', '/');
    }
    const std::array<char*, 3> arguments = {strName.data(),
                                            nBlank != CString::npos ? strArgument.data() : nullptr, nullptr};

    const pid_t nChild = ::fork();
    if (nChild == 0) {
        Become(strProgram.c_str(), arguments.data());
    }
    if (nChild < 0) {
        return false;
    }
    int nStatus = 0;
    while (::waitpid(nChild, &nStatus, 0) < 0 && errno == EINTR) {
    }
    return nStatus == 0;
}
