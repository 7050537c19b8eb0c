#pragma once

#include "analysis/NoteGrid.h"

#include <atomic>
#include <memory>

// Hands a note grid from the thread that replaces it to the one thread that reads it. The reader neither
// locks, waits nor frees: it announces which grid it reads, and the writer releases no announced grid.
// (Michael, Hazard Pointers, IEEE TPDS 15(6), 2004, with one reader and one hazard.)
//
// m_pGrid and m_pReading are both touched in sequentially consistent order: the reader writes m_pReading and
// then looks at m_pGrid again, the writer replaces m_pGrid and then looks at m_pReading. In a single total
// order one of them must see the other, so either the reader notices the replacement and starts over, or the
// writer notices the reader and keeps the grid.
class CPublishedGrid {
public:
    CPublishedGrid() = default;
    ~CPublishedGrid();
    CPublishedGrid(const CPublishedGrid&) = delete;
    CPublishedGrid& operator=(const CPublishedGrid&) = delete;

    // Puts pGrid, which may be null, in the place of the grid in force. One writing thread at a time. The old
    // grid is released at once, or, while it is being read, by a later Publish or the destructor.
    void Publish(std::unique_ptr<const CNoteGrid> pGrid);

    // The grid in force, held for as long as the object lives; null before the first Publish. One at a time.
    class CReader {
    public:
        explicit CReader(CPublishedGrid& published);
        ~CReader();
        CReader(const CReader&) = delete;
        CReader& operator=(const CReader&) = delete;

        const CNoteGrid* Get() const { return m_pHeld; }

    private:
        CPublishedGrid& m_published;
        const CNoteGrid* m_pHeld;
    };

private:
    std::atomic<const CNoteGrid*> m_pGrid{nullptr};
    std::atomic<const CNoteGrid*> m_pReading{nullptr};
    // A replaced grid that was being read. The one reader holds one grid, so one place is enough.
    std::unique_ptr<const CNoteGrid> m_pKept;
};
