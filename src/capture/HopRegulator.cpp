#include "capture/HopRegulator.h"

namespace {

// So many idle turns in a row say that the step is far too long.
constexpr int LONG_IDLE_RUN = 40;

}  // namespace

void CHopRegulator::OnIdle() {
    if (m_bHadData) {
        m_nIdleRun = 0;
    } else if (++m_nIdleRun > LONG_IDLE_RUN) {
        m_nIdleRun = LONG_IDLE_RUN;
        m_fHop = static_cast<float>(m_fHop * 0.9);
    }
    m_fHop = static_cast<float>(m_fHop * 0.995);
    m_bHadData = false;
    KeepAboveOne();
}

void CHopRegulator::OnBusy() {
    m_fHop = static_cast<float>(m_fHop * 1.005);
    m_bHadData = true;
    KeepAboveOne();
}

void CHopRegulator::KeepAboveOne() {
    if (m_fHop < 1.0F) {
        m_fHop = 1.0F;
    }
}
