#include "platform/threads/WinThread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <utility>

namespace {

// One step of priority, in units of the nice value. Nice values belong to single threads here.
constexpr int NICE_PER_STEP = 5;

// Only downwards, which needs no privilege. A system that refuses leaves the ordinary priority.
void LowerPriority(int nSteps) {
    const auto nThread = static_cast<id_t>(gettid());
    setpriority(PRIO_PROCESS, nThread, getpriority(PRIO_PROCESS, nThread) + nSteps * NICE_PER_STEP);
}

}  // namespace

// What the owner and the thread both hold: the thread may outlive the owner.
struct CWinThread::Shared {
    enum class Phase { Suspended, Running, Ended };

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Phase m_phase = Phase::Suspended;
    bool m_bDropped = false;  // never to be resumed
    int m_nExitCode = 0;

    void Run(const Procedure& procedure, int nPriority) {
        bool bResumed = false;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_phase == Phase::Running || m_bDropped; });
            bResumed = m_phase == Phase::Running;
        }
        int nExitCode = 0;
        if (bResumed) {
            if (nPriority < THREAD_PRIORITY_NORMAL) {
                LowerPriority(THREAD_PRIORITY_NORMAL - nPriority);
            }
            nExitCode = procedure();
        }
        const std::lock_guard lock(m_mutex);
        m_nExitCode = nExitCode;
        m_phase = Phase::Ended;
        m_changed.notify_all();
    }
};

CWinThread::CWinThread(std::shared_ptr<Shared> pShared) : m_pShared(std::move(pShared)) {}

std::unique_ptr<CWinThread> CWinThread::Create(Procedure procedure, int nPriority) {
    try {
        std::unique_ptr<CWinThread> pThread(new CWinThread(std::make_shared<Shared>()));
        pThread->m_thread = std::thread([pShared = pThread->m_pShared, procedure = std::move(procedure),
                                         nPriority] { pShared->Run(procedure, nPriority); });
        return pThread;
    } catch (const std::exception&) {
        return nullptr;
    }
}

CWinThread::~CWinThread() {
    if (!m_thread.joinable()) {
        return;
    }
    bool bEnds = false;
    {
        const std::lock_guard lock(m_pShared->m_mutex);
        m_pShared->m_bDropped = m_pShared->m_phase == Shared::Phase::Suspended;
        bEnds = m_pShared->m_bDropped || m_pShared->m_phase == Shared::Phase::Ended;
        m_pShared->m_changed.notify_all();
    }
    if (bEnds) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

bool CWinThread::ResumeThread() {
    const std::lock_guard lock(m_pShared->m_mutex);
    if (m_pShared->m_phase != Shared::Phase::Suspended) {
        return false;
    }
    m_pShared->m_phase = Shared::Phase::Running;
    m_pShared->m_changed.notify_all();
    return true;
}

bool CWinThread::WaitForEnd(std::int64_t nMilliseconds) {
    std::unique_lock lock(m_pShared->m_mutex);
    return m_pShared->m_changed.wait_for(lock, std::chrono::milliseconds(nMilliseconds),
                                         [this] { return m_pShared->m_phase == Shared::Phase::Ended; });
}

std::optional<int> CWinThread::GetExitCode() const {
    const std::lock_guard lock(m_pShared->m_mutex);
    if (m_pShared->m_phase != Shared::Phase::Ended) {
        return std::nullopt;
    }
    return m_pShared->m_nExitCode;
}
