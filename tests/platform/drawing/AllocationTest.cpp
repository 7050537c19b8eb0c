#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Pen.h"
#include "platform/drawing/Picture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <mutex>
#include <new>

// Counts what this thread takes from the heap.

namespace {

thread_local int g_nAllocations = 0;

}  // namespace

void* operator new(std::size_t nBytes) {
    ++g_nAllocations;
    if (void* const p = std::malloc(nBytes)) {
        return p;
    }
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept {
    std::free(p);
}

void operator delete(void* p, std::size_t /*nBytes*/) noexcept {
    std::free(p);
}

namespace {

TEST(Allocation, WhatAFrameDrawsTakesNothingFromTheHeap) {
    CPicture picture;
    ASSERT_TRUE(picture.Create(500, 396, 0xC0C0C0));
    MemoryDc dial(240, 257);
    MemoryDc mask(58, 25, true);
    MemoryDc work(58, 25);
    ASSERT_GT(g_nAllocations, 0) << "the count counts";
    g_nAllocations = 0;
    for (int i = 0; i < 100; ++i) {
        dial.dc.FillSolidRect({2, 128, 238, 250}, 0xFFFFFF);
        dial.dc.BitBlt(143, 20, 24, 27, &work.dc, 3, 0, SRCCOPY);
        {
            CPen pen(PS_SOLID, 5, 0xA00000);
            CPen* const pPrevious = dial.dc.SelectObject(&pen);
            dial.dc.MoveTo(120, 241);
            dial.dc.LineTo(70 + i, 89);
            dial.dc.SelectObject(pPrevious);
        }
        work.dc.BitBlt(0, 0, 58, 25, &dial.dc, 91, 232, SRCCOPY);
        work.dc.BitBlt(0, 0, 58, 25, &mask.dc, 0, 0, SRCAND);
        work.dc.BitBlt(0, 0, 58, 25, &dial.dc, 0, 0, SRCINVERT);
        dial.dc.BitBlt(91, 232, 58, 25, &work.dc, 0, 0, SRCCOPY);

        const std::lock_guard lock(picture.GetLock());
        CDC dcClient;
        dcClient.AttachPicture(&picture);
        dcClient.BitBlt(252, 101, 236, 250, &dial.dc, 2, 58, SRCCOPY);
        dcClient.FillSolidRect(212, 45 + i, 26, 100, 0xFFFFFF);
        dcClient.SetPixel(4 * i, 3 * i, 0xFF);
        if (i % 30 == 0) {
            picture.TakeDirty();
        }
    }
    EXPECT_EQ(g_nAllocations, 0);
}

}  // namespace
