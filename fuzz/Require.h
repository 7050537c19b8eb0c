#pragma once

#include <cstdlib>

// Ends a fuzz target where a promise is broken.
inline void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}
