#pragma once

#include <cstddef>

// Compiles the function that follows it twice, for every x86-64 and for those with AVX2; the better one is
// chosen when the program starts. The arithmetic is the same, so are the results. The sanitizers are not
// ready as early as that choice is made.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__) && \
    !defined(__SANITIZE_ADDRESS__)
#define FRETVANE_VECTOR_CLONES [[gnu::target_clones("avx2", "default")]]
#else
#define FRETVANE_VECTOR_CLONES
#endif

// What a vector register of the better kind holds. Elsewhere the compiler takes two or more.
inline constexpr std::size_t VECTOR_LANES = 8;
using FloatLanes [[gnu::vector_size(VECTOR_LANES * sizeof(float))]] = float;
