#include "capture/CaptureThread.h"
#include "platform/multimedia/support/FakeWaveIn.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

// In this program every allocation is counted for the thread that makes it.

namespace {

thread_local int g_nAllocations = 0;

void* Allocate(std::size_t nBytes) {
    ++g_nAllocations;
    void* const pMemory = std::malloc(nBytes);
    if (pMemory == nullptr) {
        std::abort();
    }
    return pMemory;
}

}  // namespace

void* operator new(std::size_t nBytes) {
    return Allocate(nBytes);
}
void* operator new[](std::size_t nBytes) {
    return Allocate(nBytes);
}
void* operator new(std::size_t nBytes, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(nBytes);
}
void* operator new[](std::size_t nBytes, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(nBytes);
}
void operator delete(void* pMemory) noexcept {
    std::free(pMemory);
}
void operator delete[](void* pMemory) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept {
    std::free(pMemory);
}
void operator delete[](void* pMemory, std::size_t) noexcept {
    std::free(pMemory);
}

namespace {

struct Client {
    std::atomic<int> nBlocks = 0;
    std::atomic<int> nAtFirst = 0;
    std::atomic<int> nAtLatest = 0;
};

void CountAllocations(void* pArg) {
    auto& client = *static_cast<Client*>(pArg);
    client.nAtLatest = g_nAllocations;
    if (client.nBlocks++ == 0) {
        client.nAtFirst = g_nAllocations;
    }
}

TEST(CaptureAllocation, NothingIsAllocatedFromBlockToBlock) {
    const CFakeWaveInScope fake;
    std::vector<float> destination(256);
    Client client;
    CCaptureThread capture;
    capture.SetBufferSamples(256);
    capture.SetBlockSamples(256);
    capture.SetHop(64);
    capture.SetAdaptHop(true);
    capture.SetDestination(destination.data());
    capture.SetBlockCallback(&CountAllocations, &client);
    ASSERT_TRUE(capture.Start());
    fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>(n); },
               {.nChunk = 100, .interval = std::chrono::microseconds(500)});
    for (int i = 0; i < 2000 && client.nBlocks < 500; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_GE(client.nBlocks, 500);
    EXPECT_GT(client.nAtFirst, 0) << "the buffers were made on this thread";
    EXPECT_EQ(client.nAtLatest, client.nAtFirst);
}

}  // namespace
