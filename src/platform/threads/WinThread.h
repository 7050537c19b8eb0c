#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

// Priorities of a thread, relative to the ordinary one.
inline constexpr int THREAD_PRIORITY_NORMAL = 0;
inline constexpr int THREAD_PRIORITY_BELOW_NORMAL = -1;

// One thread, created suspended. The object is used by one other thread, its owner.
//
// A thread can't be ended by force: whatever it is about, it may hold a lock or a device. So an owner that is
// done waiting abandons it: the thread keeps its stack and all that it holds until it ends by itself, or
// until the process does. What the procedure refers to must therefore live as long as the thread, not as long
// as its owner: the procedure owns a share of it.
class CWinThread {
public:
    // What the thread runs; the result is its exit code. It must not throw.
    using Procedure = std::function<int()>;

    // Null when the system has no room or no memory for another thread. The thread waits for ResumeThread.
    static std::unique_ptr<CWinThread> Create(Procedure procedure, int nPriority);

    // A thread that was never resumed ends without having run; one that has ended is cleared away; one that
    // still runs is abandoned.
    ~CWinThread();
    CWinThread(const CWinThread&) = delete;
    CWinThread& operator=(const CWinThread&) = delete;

    // Lets the suspended thread go. False when it has been resumed before.
    bool ResumeThread();
    // True when the thread has ended, false when the time ran out.
    bool WaitForEnd(std::int64_t nMilliseconds);
    // What the procedure gave, once the thread has ended.
    std::optional<int> GetExitCode() const;

private:
    struct Shared;

    explicit CWinThread(std::shared_ptr<Shared> pShared);

    std::shared_ptr<Shared> m_pShared;
    std::thread m_thread;
};
