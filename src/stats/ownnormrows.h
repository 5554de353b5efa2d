/* SPDX-License-Identifier: BSD-2-Clause */
// Rows of the norms: largest difference, sum of differences, sum of squared differences of two rows, or of a row and
// zeros.
#pragma once

#include <cstddef>
#include <cstdint>

// Bytes of a row that are measured at once; sums of this many samples keep within their width.
constexpr ptrdiff_t ownNormBytes = 8192;

// A running measure of differences. Sums of integers are exact, whatever the size of the image; those of 32-bit squares
// and of floats are sums in double, a block after the other.
struct OwnNormTotal {
    uint64_t exact = 0;
    double real = 0;

    void add(uint64_t sum)
    {
        exact += sum;
        if (exact >> 62 != 0) { // only huge tiled images get here
            real += static_cast<double>(exact);
            exact = 0;
        }
    }
    void add(double sum) { real += sum; }
    void raise(double distance) { real = distance > real ? distance : real; }
    double value() const { return real + static_cast<double>(exact); }
};

// Measures n samples, or bytes of one-bit pixels, of at most ownNormBytes bytes. Null b: zeros.
using OwnNormRow = void (*)(const uint8_t* a, const uint8_t* b, ptrdiff_t n, OwnNormTotal& total);

// The row of a norm type, one of PXK_NORM_INF, PXK_NORM_L1 and PXK_NORM_L2.
OwnNormRow ownNormRow(int32_t depth, int32_t type);
