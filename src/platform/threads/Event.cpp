#include "platform/threads/Event.h"

#include <chrono>

void CEvent::SetEvent() {
    const std::lock_guard lock(m_mutex);
    m_bSet = true;
    m_changed.notify_one();
}

void CEvent::ResetEvent() {
    const std::lock_guard lock(m_mutex);
    m_bSet = false;
}

bool CEvent::Wait(int nMilliseconds) {
    std::unique_lock lock(m_mutex);
    const bool bWasSet =
        m_changed.wait_for(lock, std::chrono::milliseconds(nMilliseconds), [this] { return m_bSet; });
    m_bSet = false;
    return bWasSet;
}
