/* SPDX-License-Identifier: BSD-2-Clause */
// Changes of scale from views to views: regions, masks and tiles are settled already.
#pragma once

#include "frame/ownpieces.h"
#include "ownaxis.h"

// A change of scale ready to run.
struct OwnScaling {
    OwnInterpolation interpolation;
    OwnAxis across;
    OwnAxis down;
};

// Part of the work: destination pixels (x, y) on, made from source pixels (fromX, fromY) on.
struct OwnScalePlace {
    int32_t x;
    int32_t y;
    int32_t fromX;
    int32_t fromY;
};

// The views have the same channels: one, or those of packed pixels together. False: out of memory.
[[nodiscard]] bool ownScaleView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                                const OwnView& destination, const OwnBits* mask);

// The same where the interpolation is MEAN.
[[nodiscard]] bool ownMeanView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                               const OwnView& destination, const OwnBits* mask);

// Distances in bytes from a row's first pixel to the first taps of n destination pixels from `start` on.
[[nodiscard]] OwnBuffer<int32_t> ownTapOffsets(const OwnAxis& across, int32_t start, int32_t n, int32_t from,
                                               ptrdiff_t pixelStep);
