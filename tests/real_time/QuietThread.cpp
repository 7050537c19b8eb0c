#include "real_time/QuietThread.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The noting function and the one that stands in for the library's.
constexpr int OWN_FRAMES = 2;

struct Hit {
    const char* szWhat = nullptr;
    std::array<void*, 20> calls{};
    int nCalls = 0;

    bool IsAt(const Hit& other) const {
        return szWhat == other.szWhat && nCalls == other.nCalls &&
               std::equal(calls.begin(), calls.begin() + nCalls, other.calls.begin());
    }
};

std::array<Hit, 256> g_hits;
std::atomic<std::size_t> g_nHits = 0;
thread_local bool t_bWatched = false;

void Note(const char* szWhat) {
    if (!t_bWatched) {
        return;
    }
    t_bWatched = false;
    Hit hit;
    hit.szWhat = szWhat;
    hit.nCalls = backtrace(hit.calls.data(), static_cast<int>(hit.calls.size()));
    const std::size_t nHits = g_nHits;
    const auto end = g_hits.begin() + static_cast<std::ptrdiff_t>(nHits);
    if (nHits < g_hits.size() &&
        std::none_of(g_hits.begin(), end, [&](const Hit& other) { return other.IsAt(hit); })) {
        g_hits[nHits] = hit;
        g_nHits = nHits + 1;
    }
    t_bWatched = true;
}

std::string NameOf(void* pCall) {
    Dl_info info{};
    if (dladdr(pCall, &info) == 0 || info.dli_sname == nullptr) {
        return "?";
    }
    int nStatus = 0;
    char* const szDemangled = abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &nStatus);
    std::string strName = nStatus == 0 ? szDemangled : info.dli_sname;
    std::free(szDemangled);
    return strName;
}

// It counts who called first, of those whose names are known.
bool IsAllowed(const Hit& hit, std::span<const char* const> allowed) {
    std::string strCaller = "?";
    for (int n = OWN_FRAMES; n < hit.nCalls && strCaller == "?"; ++n) {
        strCaller = NameOf(hit.calls.at(static_cast<std::size_t>(n)));
    }
    return std::any_of(allowed.begin(), allowed.end(),
                       [&](const char* szBeginning) { return strCaller.starts_with(szBeginning); });
}

// The library's own function behind the one that stands in its place.
template <auto* pfnStandIn>
auto* Next(const char* szName) {
    static std::atomic<void*> pNext = nullptr;
    if (pNext.load(std::memory_order_relaxed) == nullptr) {
        pNext = dlsym(RTLD_NEXT, szName);
    }
    return reinterpret_cast<decltype(pfnStandIn)>(pNext.load(std::memory_order_relaxed));
}

}  // namespace

void quiet::BeginWatching() {
    // Its first call loads what it needs.
    std::array<void*, 1> call{};
    backtrace(call.data(), 1);
    t_bWatched = true;
}

void quiet::EndWatching() {
    t_bWatched = false;
}

void quiet::Reset() {
    g_nHits = 0;
}

std::string quiet::Describe(std::span<const char* const> allowed) {
    std::string strText;
    for (std::size_t i = 0; i < g_nHits; ++i) {
        const Hit& hit = g_hits.at(i);
        if (IsAllowed(hit, allowed)) {
            continue;
        }
        strText += hit.szWhat;
        for (int n = OWN_FRAMES; n < hit.nCalls; ++n) {
            strText += (n == OWN_FRAMES ? " by " : " < ") + NameOf(hit.calls.at(static_cast<std::size_t>(n)));
        }
        strText += '\n';
    }
    return strText;
}

// What stands in front of the library. Its declarations name some parameters as never null.
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the library gave them their names
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void* malloc(std::size_t nBytes) {
    Note("malloc");
    return __libc_malloc(nBytes);
}
void* calloc(std::size_t nCount, std::size_t nBytes) {
    Note("calloc");
    return __libc_calloc(nCount, nBytes);
}
void* realloc(void* p, std::size_t nBytes) {
    Note("realloc");
    return __libc_realloc(p, nBytes);
}
void* aligned_alloc(std::size_t nAlignment, std::size_t nBytes) {
    Note("aligned_alloc");
    return __libc_memalign(nAlignment, nBytes);
}
int posix_memalign(void** pp, std::size_t nAlignment, std::size_t nBytes) {
    Note("posix_memalign");
    *pp = __libc_memalign(nAlignment, nBytes);
    return *pp != nullptr ? 0 : ENOMEM;
}
void free(void* p) {
    if (p != nullptr) {
        Note("free");
    }
    __libc_free(p);
}

int pthread_mutex_lock(pthread_mutex_t* pMutex) noexcept {
    Note("lock");
    return Next<&pthread_mutex_lock>("pthread_mutex_lock")(pMutex);
}
int sem_wait(sem_t* pSemaphore) {
    Note("sem_wait");
    return Next<&sem_wait>("sem_wait")(pSemaphore);
}

ssize_t write(int nFile, const void* pData, std::size_t nBytes) {
    Note("write");
    return Next<&write>("write")(nFile, pData, nBytes);
}
ssize_t writev(int nFile, const iovec* pPieces, int nPieces) {
    Note("writev");
    return Next<&writev>("writev")(nFile, pPieces, nPieces);
}
ssize_t read(int nFile, void* pData, std::size_t nBytes) {
    Note("read");
    return Next<&read>("read")(nFile, pData, nBytes);
}
FILE* fopen(const char* szPath, const char* szMode) {
    Note("fopen");
    return Next<&fopen>("fopen")(szPath, szMode);
}
std::size_t fwrite(const void* pData, std::size_t nSize, std::size_t nCount, FILE* pFile) {
    Note("fwrite");
    return Next<&fwrite>("fwrite")(pData, nSize, nCount, pFile);
}
int fputs(const char* szText, FILE* pFile) {
    Note("fputs");
    return Next<&fputs>("fputs")(szText, pFile);
}
int open(const char* szPath, int nFlags, ...) {
    Note("open");
    std::va_list rest;
    va_start(rest, nFlags);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is, one line above
    const mode_t nMode = (nFlags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return Next<&open>("open")(szPath, nFlags, nMode);
}
}
