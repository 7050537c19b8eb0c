#include "tones/MidiTrackCursor.h"

#include <algorithm>
#include <cstdint>
#include <limits>

DWORD g_nUsPerTick = 0;
DWORD g_nPrevUsPerTick = 0;

namespace {

constexpr DWORD LONGEST_WAIT = std::numeric_limits<DWORD>::max();

}  // namespace

CMidiTrackCursor::CMidiTrackCursor(int nTrack, const CMidiEvent* pFirstEvent)
    : m_nTrack(nTrack), m_pEvent(pFirstEvent) {
    StartWait();
}

bool CMidiTrackCursor::Take(CMidiMessage& message) {
    if (m_bDone || m_nRemaining >= TIMER_TICK) {
        return false;
    }
    m_pEvent->GetMessage(message);
    message.m_nTrack = m_nTrack;
    m_nCarry += m_nRemaining;
    return true;
}

void CMidiTrackCursor::Advance() {
    if (m_pEvent != nullptr) {
        m_pEvent = m_pEvent->GetNext();
    }
    StartWait();
}

void CMidiTrackCursor::StartWait() {
    if (m_pEvent == nullptr) {
        m_bDone = true;
        return;
    }
    std::uint64_t nWait = std::uint64_t{m_pEvent->GetDelta()} * g_nUsPerTick;
    if (nWait > 0) {
        nWait += m_nCarry;
        m_nCarry = 0;
    }
    m_nRemaining = static_cast<DWORD>(std::min<std::uint64_t>(nWait, LONGEST_WAIT));
}

void CMidiTrackCursor::Tick() {
    if (m_nRemaining >= TIMER_TICK) {
        m_nRemaining -= TIMER_TICK;
    }
}

void CMidiTrackCursor::Rescale() {
    if (g_nPrevUsPerTick == 0) {
        return;
    }
    const double dScaled = static_cast<double>(m_nRemaining) * static_cast<double>(g_nUsPerTick) /
                           static_cast<double>(g_nPrevUsPerTick);
    m_nRemaining = static_cast<DWORD>(std::min(dScaled, static_cast<double>(LONGEST_WAIT)));
}
