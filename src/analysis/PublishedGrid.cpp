#include "analysis/PublishedGrid.h"

#include <utility>

CPublishedGrid::~CPublishedGrid() {
    Publish(nullptr);
}

void CPublishedGrid::Publish(std::unique_ptr<const CNoteGrid> pGrid) {
    std::unique_ptr<const CNoteGrid> pOld(m_pGrid.exchange(pGrid.release()));
    const CNoteGrid* pReading = m_pReading.load();
    if (pOld && pOld.get() == pReading) {
        m_pKept = std::move(pOld);
    } else if (m_pKept && m_pKept.get() != pReading) {
        m_pKept.reset();
    }
}

CPublishedGrid::CReader::CReader(CPublishedGrid& published)
    : m_published(published), m_pHeld(published.m_pGrid.load()) {
    for (;;) {
        m_published.m_pReading.store(m_pHeld);
        const CNoteGrid* pNow = m_published.m_pGrid.load();
        if (pNow == m_pHeld) {
            return;
        }
        m_pHeld = pNow;
    }
}

CPublishedGrid::CReader::~CReader() {
    // Release: the writer that reads this null sees all reading of the grid done.
    m_published.m_pReading.store(nullptr, std::memory_order_release);
}
