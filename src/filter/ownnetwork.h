/* SPDX-License-Identifier: BSD-2-Clause */
// Selection of one rank out of a fixed number of samples by exchanging pairs, as straight-line code that the compiler
// turns into vectors over neighbouring pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "frame/ownblocks.h"

// The exchanges must all be inlined, or the samples stay in memory and nothing becomes a vector.
#define OWN_FLATTEN __attribute__((always_inline))

// The exchanges of a sorting network that the sample of one rank depends on.
template <int32_t COUNT> struct OwnNetwork {
    static constexpr int32_t most = 1024;
    int8_t low[most] = {};
    int8_t high[most] = {};
    int32_t length = 0;
};

// Batcher's odd-even merge sort (Batcher, Sorting networks and their applications, 1968), with samples beyond COUNT
// taken as larger than all others, so that exchanges with them drop out; then every exchange whose results nobody needs
// is left out.
template <int32_t COUNT> constexpr OwnNetwork<COUNT> ownSelectionNetwork(int32_t rank)
{
    OwnNetwork<COUNT> all;
    int32_t side = 1;
    while (side < COUNT) side *= 2;
    for (int32_t p = 1; p < side; p *= 2) {
        for (int32_t k = p; k >= 1; k /= 2) {
            for (int32_t j = k % p; j + k < side; j += 2 * k) {
                for (int32_t i = 0; i < k && i + j + k < COUNT; ++i) {
                    if ((i + j) / (2 * p) != (i + j + k) / (2 * p)) continue;
                    all.low[all.length] = static_cast<int8_t>(i + j);
                    all.high[all.length] = static_cast<int8_t>(i + j + k);
                    ++all.length;
                }
            }
        }
    }
    bool isNeeded[COUNT] = {};
    isNeeded[rank] = true;
    bool isKept[OwnNetwork<COUNT>::most] = {};
    for (int32_t e = all.length - 1; e >= 0; --e) {
        const int32_t low = all.low[e];
        const int32_t high = all.high[e];
        if (!isNeeded[low] && !isNeeded[high]) continue;
        isKept[e] = isNeeded[low] = isNeeded[high] = true;
    }
    OwnNetwork<COUNT> kept;
    for (int32_t e = 0; e < all.length; ++e) {
        if (!isKept[e]) continue;
        kept.low[kept.length] = all.low[e];
        kept.high[kept.length] = all.high[e];
        ++kept.length;
    }
    return kept;
}

template <class T> OWN_FLATTEN inline void ownSortPair(T& a, T& b)
{
    const T low = a < b ? a : b;
    const T high = a < b ? b : a;
    a = low;
    b = high;
}

// The middle one of COUNT samples, the upper middle one of an even number.
template <int32_t COUNT, class T, size_t... E>
OWN_FLATTEN inline T ownMiddleOf(T (&v)[COUNT], std::index_sequence<E...>)
{
    [[maybe_unused]] constexpr OwnNetwork<COUNT> network = ownSelectionNetwork<COUNT>(COUNT / 2);
    // A list and not a fold: compilers bound how deep a fold may nest.
    [[maybe_unused]] const bool isDone[] = { true, (ownSortPair(v[network.low[E]], v[network.high[E]]), true)... };
    return v[COUNT / 2];
}

template <int32_t COUNT, class T> OWN_FLATTEN inline T ownMiddleOf(T (&v)[COUNT])
{
    constexpr size_t length = static_cast<size_t>(ownSelectionNetwork<COUNT>(COUNT / 2).length);
    return ownMiddleOf<COUNT>(v, std::make_index_sequence<length> {});
}

// One row of middle samples; taps[k] is the window's k-th sample of the first pixel.
template <int32_t COUNT, class T, size_t... K>
inline void ownMiddleRow(const T* const* taps, T* out, ptrdiff_t n, std::index_sequence<K...>)
{
    const T* const tap[COUNT] = { taps[K]... };
    ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
        T v[COUNT] = { tap[K][i]... };
        out[i] = ownMiddleOf<COUNT>(v);
    });
}
