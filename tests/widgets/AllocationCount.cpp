#include "widgets/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int g_nAllocations = 0;

}  // namespace

int CountAllocations() {
    return g_nAllocations;
}

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
