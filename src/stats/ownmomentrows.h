/* SPDX-License-Identifier: BSD-2-Clause */
// Rows of the moments: sums of samples times powers of x.
#pragma once

#include <cstddef>
#include <cstdint>

// The sums of s, s x, s x^2 and s x^3 over some pixels of a row.
struct OwnRowMoments {
    double sums[4];
};

// Adds n samples, or n bytes of one-bit pixels, of which the first lies at x.
using OwnMomentRow = void (*)(const uint8_t* samples, ptrdiff_t n, int32_t x, OwnRowMoments& row);

OwnMomentRow ownMomentRow(int32_t depth);
