// SPDX-License-Identifier: BSD-2-Clause
#include "owngather.h"

#include <cstring>

template <int32_t BYTES>
static void ownGatherExact(const uint8_t* from, const int32_t* offsets, uint8_t* to, ptrdiff_t n)
{
#pragma GCC unroll 8
    for (ptrdiff_t i = 0; i < n; ++i) memcpy(to + i * BYTES, from + offsets[i], BYTES);
}

// Pixels of three samples move as four. The fourth is overwritten by the next pixel; the last pixel that is read has
// nothing behind it, so its copies are exact.
template <int32_t BYTES>
static void ownGatherThree(const uint8_t* from, const int32_t* offsets, uint8_t* to, ptrdiff_t n)
{
    constexpr size_t wideBytes = BYTES / 3 * 4;
    ptrdiff_t inside = n;
    while (inside > 0 && offsets[inside - 1] + BYTES > offsets[n - 1]) --inside;
#pragma GCC unroll 8
    for (ptrdiff_t i = 0; i < inside; ++i) memcpy(to + i * BYTES, from + offsets[i], wideBytes);
    ownGatherExact<BYTES>(from, offsets + inside, to + inside * BYTES, n - inside);
}

void ownGatherPixels(const uint8_t* from, const int32_t* offsets, int32_t pixelBytes, uint8_t* to, ptrdiff_t n)
{
    switch (pixelBytes) {
    case 1: return ownGatherExact<1>(from, offsets, to, n);
    case 2: return ownGatherExact<2>(from, offsets, to, n);
    case 3: return ownGatherThree<3>(from, offsets, to, n);
    case 4: return ownGatherExact<4>(from, offsets, to, n);
    case 6: return ownGatherThree<6>(from, offsets, to, n);
    case 8: return ownGatherExact<8>(from, offsets, to, n);
    default:
        for (ptrdiff_t i = 0; i < n; ++i) {
            memcpy(to + i * pixelBytes, from + offsets[i], static_cast<size_t>(pixelBytes));
        }
    }
}
