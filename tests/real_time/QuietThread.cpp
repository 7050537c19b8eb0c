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

    friend bool operator==(const Hit&, const Hit&) = default;
};

std::array<Hit, 256> g_hits;
std::atomic<std::size_t> g_nHits = 0;
thread_local bool t_bWatched = false;

[[gnu::noinline]] void Note(const char* szWhat) {
    if (!t_bWatched) {
        return;
    }
    t_bWatched = false;
    Hit hit;
    hit.szWhat = szWhat;
    hit.nCalls = backtrace(hit.calls.data(), static_cast<int>(hit.calls.size()));
    const auto end = g_hits.begin() + static_cast<std::ptrdiff_t>(g_nHits);
    if (end != g_hits.end() && std::find(g_hits.begin(), end, hit) == end) {
        *end = hit;
        ++g_nHits;
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

// Notes a call and gives the library's own function behind the one that stands in its place. Has no frame of
// its own. Looking a function up takes no memory.
template <auto* pfnStandIn>
[[gnu::always_inline]] inline auto* NoteAndFind(const char* szName) {
    static std::atomic<void*> pNext = nullptr;
    Note(szName);
    if (pNext.load(std::memory_order_relaxed) == nullptr) {
        pNext = dlsym(RTLD_NEXT, szName);
    }
    return reinterpret_cast<decltype(pfnStandIn)>(pNext.load(std::memory_order_relaxed));
}

}  // namespace

void quiet::BeginWatching() {
    g_nHits = 0;
    // Its first call loads what it needs.
    std::array<void*, 1> call{};
    backtrace(call.data(), 1);
    t_bWatched = true;
}

void quiet::EndWatching() {
    t_bWatched = false;
}

std::string quiet::Describe(std::span<const char* const> allowed) {
    std::string strText;
    for (std::size_t i = 0; i < g_nHits; ++i) {
        const Hit& hit = g_hits.at(i);
        std::string strWay = hit.szWhat;
        // It counts who called first, of those whose names are known.
        std::string strCaller = "?";
        for (int n = OWN_FRAMES; n < hit.nCalls; ++n) {
            const std::string strName = NameOf(hit.calls.at(static_cast<std::size_t>(n)));
            strWay += (n == OWN_FRAMES ? " by " : " < ") + strName;
            if (strCaller == "?") {
                strCaller = strName;
            }
        }
        if (std::none_of(allowed.begin(), allowed.end(),
                         [&](const char* szBeginning) { return strCaller.starts_with(szBeginning); })) {
            strText += strWay + '\n';
        }
    }
    return strText;
}

// What stands in front of the library. Its declarations name some parameters as never null.
extern "C" {

void* malloc(std::size_t nBytes) {
    return NoteAndFind<&malloc>("malloc")(nBytes);
}
void* calloc(std::size_t nCount, std::size_t nBytes) {
    return NoteAndFind<&calloc>("calloc")(nCount, nBytes);
}
void* realloc(void* p, std::size_t nBytes) {
    return NoteAndFind<&realloc>("realloc")(p, nBytes);
}
void* aligned_alloc(std::size_t nAlignment, std::size_t nBytes) {
    return NoteAndFind<&aligned_alloc>("aligned_alloc")(nAlignment, nBytes);
}
int posix_memalign(void** pp, std::size_t nAlignment, std::size_t nBytes) {
    return NoteAndFind<&posix_memalign>("posix_memalign")(pp, nAlignment, nBytes);
}
void free(void* p) {
    if (p != nullptr) {
        NoteAndFind<&free>("free")(p);
    }
}

int pthread_mutex_lock(pthread_mutex_t* pMutex) noexcept {
    return NoteAndFind<&pthread_mutex_lock>("pthread_mutex_lock")(pMutex);
}
int sem_wait(sem_t* pSemaphore) {
    return NoteAndFind<&sem_wait>("sem_wait")(pSemaphore);
}

ssize_t write(int nFile, const void* pData, std::size_t nBytes) {
    return NoteAndFind<&write>("write")(nFile, pData, nBytes);
}
ssize_t writev(int nFile, const iovec* pPieces, int nPieces) {
    return NoteAndFind<&writev>("writev")(nFile, pPieces, nPieces);
}
ssize_t read(int nFile, void* pData, std::size_t nBytes) {
    return NoteAndFind<&read>("read")(nFile, pData, nBytes);
}
FILE* fopen(const char* szPath, const char* szMode) {
    return NoteAndFind<&fopen>("fopen")(szPath, szMode);
}
std::size_t fwrite(const void* pData, std::size_t nSize, std::size_t nCount, FILE* pFile) {
    return NoteAndFind<&fwrite>("fwrite")(pData, nSize, nCount, pFile);
}
int fputs(const char* szText, FILE* pFile) {
    return NoteAndFind<&fputs>("fputs")(szText, pFile);
}
int fputc(int nCharacter, FILE* pFile) {
    return NoteAndFind<&fputc>("fputc")(nCharacter, pFile);
}
int puts(const char* szText) {
    return NoteAndFind<&puts>("puts")(szText);
}
int vfprintf(FILE* pFile, const char* szFormat, std::va_list values) {
    return NoteAndFind<&vfprintf>("vfprintf")(pFile, szFormat, values);
}
int fprintf(FILE* pFile, const char* szFormat, ...) {
    std::va_list values;
    va_start(values, szFormat);
    const int nWritten = vfprintf(pFile, szFormat, values);
    va_end(values);
    return nWritten;
}
int printf(const char* szFormat, ...) {
    std::va_list values;
    va_start(values, szFormat);
    const int nWritten = vfprintf(stdout, szFormat, values);
    va_end(values);
    return nWritten;
}
int open(const char* szPath, int nFlags, ...) {
    auto* const pfnOpen = NoteAndFind<&open>("open");
    std::va_list rest;
    va_start(rest, nFlags);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is, one line above
    const mode_t nMode = (nFlags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return pfnOpen(szPath, nFlags, nMode);
}
}
