// SPDX-License-Identifier: BSD-2-Clause
// Ordered dithering.
#include "frame/ownivdep.h"
#include "ownreduc.h"

// Thresholds by column and row, each modulo 4: the sixteenths of 3856 in the order of a 4 by 4 Bayer matrix.
static constexpr int32_t ownMatrix[4][4] = {
    { 0, 1928, 482, 2410 },
    { 2892, 964, 3374, 1446 },
    { 723, 2651, 241, 2169 },
    { 3615, 1687, 3133, 1205 },
};

// Thresholds repeat every four columns; this many are laid out side by side for the row loop.
static constexpr ptrdiff_t ownThresholds = 64;

template <class T>
static void ownDitherBlock(T* samples, ptrdiff_t n, const T* thresholds, int32_t largest, int32_t stepBits)
{
    const T lowBits = static_cast<T>((1 << stepBits) - 1);
    const T most = static_cast<T>(largest);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const T low = static_cast<T>(samples[i] & lowBits);
        const T down = static_cast<T>(samples[i] & static_cast<T>(~lowBits));
        const T last = static_cast<T>(down + lowBits); // below the next step, which may lie beyond the sample's range
        const T up = last == most ? most : static_cast<T>(last + 1);
        samples[i] = low > thresholds[i] ? up : down;
    }
}

template <class T> static void ownDitherRow(T* samples, ptrdiff_t n, uint32_t x, uint32_t y, const OwnLevels& levels)
{
    T thresholds[ownThresholds];
    for (uint32_t i = 0; i < ownThresholds; ++i) {
        thresholds[i] = static_cast<T>((ownMatrix[(x + i) & 3][y & 3] << levels.stepBits) >> 12);
    }
    ptrdiff_t start = 0;
    for (; start + ownThresholds <= n; start += ownThresholds) {
        ownDitherBlock(samples + start, ownThresholds, thresholds, levels.largest, levels.stepBits);
    }
    ownDitherBlock(samples + start, n - start, thresholds, levels.largest, levels.stepBits);
}

void ownDitherOrdered(uint8_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, const OwnLevels& levels)
{
    ownDitherRow(samples, n, x, y, levels);
}

void ownDitherOrdered(uint16_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, const OwnLevels& levels)
{
    ownDitherRow(samples, n, x, y, levels);
}
