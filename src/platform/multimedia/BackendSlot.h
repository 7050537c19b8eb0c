#pragma once

#include <memory>
#include <mutex>
#include <utility>

// Holds the one backend that stands behind a family of functions at present: the system's, unless somebody
// put another in its place. Any thread; the lock is never held while a backend is called.
template <class Backend>
class CBackendSlot {
public:
    using MakeSystemBackend = std::shared_ptr<Backend> (*)();

    explicit CBackendSlot(MakeSystemBackend pfnMake) : m_pfnMake(pfnMake), m_pBackend(pfnMake()) {}

    std::shared_ptr<Backend> Get() const {
        const std::lock_guard lock(m_mutex);
        return m_pBackend;
    }
    // Gives the present one back. Null stands for the system's.
    std::shared_ptr<Backend> Exchange(std::shared_ptr<Backend> pBackend) {
        if (!pBackend) {
            pBackend = m_pfnMake();
        }
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_pBackend, std::move(pBackend));
    }

private:
    const MakeSystemBackend m_pfnMake;
    mutable std::mutex m_mutex;
    std::shared_ptr<Backend> m_pBackend;
};
