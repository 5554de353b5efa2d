/* SPDX-License-Identifier: BSD-2-Clause */
// Convolution with one dense kernel of 3 x 3 or 5 x 5 coefficients: all taps unrolled, several output rows at once.
#pragma once

#include "ownwindow.h"

// Which sums hold the kernel's exactly.
enum class OwnSquareSums {
    NONE,
    SIGNED16,
    UNSIGNED16,
    SIGNED_HALVES, // two parts of the taps in 16 bits each; the last bit of their sum is shifted away
    UNSIGNED_HALVES,
    SIGNED32,
    SINGLE,
};

struct OwnSquare {
    OwnSquareSums sums;
    int32_t side;
    int32_t shift;
    int32_t values[25];
    float valuesFP[25];
};

// Chooses the sums for the coefficients over samples of 8 or 16 bits, or NONE. Those of 16 bits fit 32.
OwnSquareSums ownChooseSquareSums(const OwnSquare& square, int32_t depth);

// Computes a band; the square has sums.
void ownSquareBand(const OwnBand& band, const OwnSquare& square, int32_t depth);
