/* SPDX-License-Identifier: BSD-2-Clause */
// Rows between colour and gray.
#pragma once

#include "owncolor.h"

// Rows of red, green and blue, then one of gray; a one-bit destination is a row of bytes of 0 and 1. Null: the pair of
// depths is not taken.
OwnColourRow ownColourToGrayRow(int32_t srcDepth, int32_t dstDepth);

// What the channels of a colour are of a gray sample: its product with a weight, shifted to the right.
struct OwnGrayWeights {
    int32_t red;
    int32_t green;
    int32_t blue;
    int32_t shift;
};

OwnGrayWeights ownGrayWeights(int32_t srcDepth, float red, float green, float blue);

// A row of gray, one-bit as bytes of 0 and 1, then rows of red, green and blue.
void ownGrayToColourRow(int32_t srcDepth, const OwnGrayWeights& weights, uint8_t* const* rows, ptrdiff_t n);

bool ownIsGrayDepth(int32_t srcDepth);
