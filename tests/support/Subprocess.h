#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdlib>

// Runs `body` in a process of its own and gives its exit code: what it gives up of its rights, and what kills
// it, doesn't concern the test. -1 if it was killed. Only where the test has no threads.
template <class Body>
int RunInChild(Body&& body) {
    const pid_t nChild = ::fork();
    if (nChild == 0) {
        ::_exit(body());
    }
    int nStatus = 0;
    if (nChild < 0 || ::waitpid(nChild, &nStatus, 0) != nChild || !WIFEXITED(nStatus)) {
        return -1;
    }
    return WEXITSTATUS(nStatus);
}

// In a child: from here on a file that grows past this size meets an error, as on a full disk.
inline void FillDiskAbove(std::size_t nBytes) {
    const rlimit limit{nBytes, nBytes};
    if (std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || ::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
        std::abort();
    }
}

// The same as RunInChild, as a user whom the permissions of files concern, also where the tests run as root.
template <class Body>
int RunAsNobody(Body&& body) {
    return RunInChild([&body] {
        constexpr uid_t NOBODY = 65534;
        constexpr int NO_RIGHTS_DROPPED = 99;
        if (::geteuid() == 0 && (::setgid(NOBODY) != 0 || ::setuid(NOBODY) != 0)) {
            return NO_RIGHTS_DROPPED;
        }
        return body();
    });
}
