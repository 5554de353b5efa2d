/* SPDX-License-Identifier: BSD-2-Clause */
// Rows of a scale that doubles: neighbours on the row axis have the same taps, and those of the next two lie one pixel
// on. Such rows are made folded: all first ones of the pairs, then all second ones, then the few pixels that are in no
// pair. So taps are read where they lie, and rows unfold as samples.
#pragma once

#include <algorithm>
#include <type_traits>

#include "frame/ownivdep.h"
#include "ownaxis.h"

// Calls f(start, n) for all samples of a row. Blocks of a whole number of vectors leave no remainder, which compilers
// take one by one; the last two may overlap.
template <class F> inline void ownForBlocks(ptrdiff_t n, const F& f)
{
    constexpr ptrdiff_t block = 64;
    ptrdiff_t start = 0;
    ptrdiff_t count = n < block ? n : n & -block;
    for (;;) {
        f(start, count);
        if (start + count == n) return;
        start = n - block;
        count = block;
    }
}

struct OwnPairs {
    int32_t first; // output pixel
    int32_t count;
};

// The longest chain of pairs that begins near the start: at an end of the source several pixels share their taps. None
// where it holds less than half of the pixels.
inline OwnPairs ownFindPairs(const int32_t* firstTaps, int32_t n)
{
    constexpr int32_t near = 4;
    OwnPairs best = {};
    for (int32_t first = 0; first <= near; ++first) {
        int32_t count = 0;
        const auto isPair = [&](int32_t at) {
            return firstTaps[at] == firstTaps[first] + count && firstTaps[at + 1] == firstTaps[at];
        };
        while (first + 2 * count + 1 < n && isPair(first + 2 * count)) ++count;
        if (count > best.count) best = { first, count };
    }
    return 4 * static_cast<int64_t>(best.count) >= n ? best : OwnPairs {};
}

// Calls move(folded, output) for each of n pixels.
template <class F> inline void ownForFolded(const OwnPairs& pairs, int32_t n, const F& move)
{
    for (int32_t i = 0; i < pairs.count; ++i) move(i, pairs.first + 2 * i);
    for (int32_t i = 0; i < pairs.count; ++i) move(pairs.count + i, pairs.first + 2 * i + 1);
    for (int32_t i = 0; i < pairs.first; ++i) move(2 * pairs.count + i, i);
    for (int32_t i = pairs.first + 2 * pairs.count; i < n; ++i) move(i, i);
}

// n pixels of an axis from `start` on in folded order. False: out of memory.
[[nodiscard]] inline bool ownFoldAxis(const OwnAxis& axis, int32_t start, int32_t n, const OwnPairs& pairs,
                                      OwnAxis& folded)
{
    bool isGood = true;
    const auto fold = [&](const auto& from, auto& to) {
        if (from == nullptr) return;
        to = ownBuffer<std::decay_t<decltype(from[0])>>(n);
        isGood = isGood && to != nullptr;
        if (!isGood) return;
        ownForFolded(pairs, n, [&](int32_t i, int32_t output) {
            to[static_cast<size_t>(i)] = from[static_cast<size_t>(start + output)];
        });
    };
    fold(axis.first, folded.first);
    fold(axis.weight, folded.weight);
    for (int32_t k = 0; k < 3; ++k) fold(axis.factors[k], folded.factors[k]);
    return isGood;
}

// Not inlined: its loops need no copy for each caller.
template <class T>
__attribute__((noinline)) inline void ownUnfold(const T* folded, const OwnPairs& pairs, T* to, int32_t n)
{
    const ptrdiff_t first = pairs.first;
    const ptrdiff_t count = pairs.count;
    std::copy_n(folded + 2 * count, first, to);
    to += first;
    ownForBlocks(count, [&](ptrdiff_t start, ptrdiff_t length) {
        const T* const firsts = folded + start;
        const T* const seconds = firsts + count;
        T* const paired = to + 2 * start;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < length; ++i) {
            paired[2 * i] = firsts[i];
            paired[2 * i + 1] = seconds[i];
        }
    });
    std::copy(folded + 2 * count + first, folded + n, to + 2 * count);
}
