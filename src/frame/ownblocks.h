/* SPDX-License-Identifier: BSD-2-Clause */
// Rows in whole blocks of a fixed number of samples, so that vector code leaves no remainder to a scalar loop.
#pragma once

#include "ownivdep.h"

// Rows that are worked on in blocks hold this many bytes at least, or lie in buffers with room for them.
constexpr ptrdiff_t ownBlockBytes = 64;

// Samples of T in a block.
template <class T> constexpr ptrdiff_t ownBlockOf = ownBlockBytes / static_cast<ptrdiff_t>(sizeof(T));

// Calls each(i) for every i below n, in whole blocks of B. The last block begins inside the others where n is no
// multiple of B, so `each` gives the same result when it is called twice for one i; a row below a block is worked on up
// to B. `each` may take STEP samples at a time.
template <ptrdiff_t B, ptrdiff_t STEP = 1, class F>
__attribute__((always_inline)) inline void ownInBlocks(ptrdiff_t n, const F& each)
{
    if (n < B) n = B;
    ptrdiff_t first = 0;
    ptrdiff_t count = n & -B;
    for (;;) {
        const ptrdiff_t end = first + count, turns = count / STEP;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < turns; ++i) each(first + i * STEP);
        if (end == n) return;
        first = n - B;
        count = B;
    }
}
