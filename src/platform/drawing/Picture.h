#pragma once

#include "platform/drawing/Surface.h"

#include <array>
#include <cstddef>
#include <mutex>

// The picture of a window's client area. Any thread draws into it through a CDC that is attached to it; each
// drawing operation marks the rectangle that it changed, and whoever shows the picture takes the marks.
//
// All but GetLock wants the lock held (a caller holds it for one widget's draw at a time); nothing here takes
// it. Marking and taking allocate nothing.
class CPicture {
public:
    static constexpr std::size_t s_nMaxDirty = 16;

    // What has changed since the last taking; the first nCount rectangles count. They may overlap.
    struct Dirty {
        std::array<RECT, s_nMaxDirty> rects;
        std::size_t nCount = 0;
    };

    CPicture() = default;
    CPicture(const CPicture&) = delete;
    CPicture& operator=(const CPicture&) = delete;

    std::mutex& GetLock() { return m_lock; }

    // Gives the picture its size, all of it in one colour and marked. False if a side is below 1 or there is
    // no room; then it is empty, and drawing into it does nothing.
    bool Create(int cx, int cy, COLORREF clr);

    CSurface& GetSurface() { return m_surface; }
    const CSurface& GetSurface() const { return m_surface; }

    // Marks the part of the rectangle that lies on the picture. It merges with the marked one with which the
    // union wastes least: where that wastes nothing, and in any case when the list is full.
    void MarkDirty(const RECT& rc);
    Dirty TakeDirty();

private:
    std::mutex m_lock;
    CSurface m_surface;
    Dirty m_dirty;
};
