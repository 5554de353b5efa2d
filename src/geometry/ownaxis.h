/* SPDX-License-Identifier: BSD-2-Clause */
// One axis of a change of scale: which source pixels each destination pixel is made of, and with what weights.
#pragma once

#include "frame/ownbuffer.h"
#include "owninterpolation.h"

// Destination pixels over source pixels, both at least 1.
struct OwnRatio {
    int32_t to;
    int32_t from;
    double step() const { return static_cast<double>(from) / to; } // source pixels to a destination pixel
};

// The largest integer that is at most value + 0.00001, which lets positions that fall a hair short of a pixel reach it.
int32_t ownFloorUp(double value);

// Pixels that an extent becomes: at least 1, at most `most`.
int32_t ownScaledCount(int32_t extent, OwnRatio ratio, int32_t most);

// Positions on a source axis: start + i * step.
struct OwnSampling {
    double start;
    double step;
};

// The first destination pixel lies on the first source pixel, the last one on the last.
OwnSampling ownEndToEnd(int32_t extent, OwnRatio ratio);

// Weights are repeated for each of `unit` samples of a pixel.
struct OwnAxis {
    int32_t taps; // source pixels from `first` on that a destination pixel depends on: 1, 2 or 4; 0: those up to `last`
    int32_t unit;
    OwnBuffer<int32_t> first;
    // Linear: the weight of the second tap, 0 to 16384, times -2: from -32768 on, which 16 bits hold.
    OwnBuffer<int16_t> weight;
    // Cubic: factors of the first, second and third difference of the taps.
    OwnBuffer<float> factors[3];
    // Mean: the last pixel of the box, and how much of its first and of its last pixel lies inside, in parts of a pixel
    // that number ratio.to; a box has ratio.from of them, and the ratio is reduced. A box inside a single pixel has all
    // its parts in firstParts.
    OwnRatio ratio;
    OwnBuffer<int32_t> last;
    OwnBuffer<int32_t> firstParts;
    OwnBuffer<int32_t> lastParts;

    int32_t lastTap(int32_t i) const
    {
        const size_t at = static_cast<size_t>(i);
        return taps > 0 ? first[at] + taps - 1 : last[at];
    }
};

// The taps of `count` destination pixels on `extent` source pixels; at least 2 of these for LINEAR, 4 for CUBIC. False:
// out of memory.
[[nodiscard]] bool ownMakeAxis(OwnAxis& axis, OwnInterpolation interpolation, int32_t extent,
                               const OwnSampling& sampling, int32_t count, int32_t unit);

// The boxes of the mean.
[[nodiscard]] bool ownMakeBoxes(OwnAxis& axis, int32_t extent, OwnRatio ratio, int32_t count);

// Boxes of `size` pixels around each source pixel, which begin size / 2 pixels before it; the first and the last pixel
// stand for those beyond them.
[[nodiscard]] bool ownMakeWindows(OwnAxis& axis, int32_t extent, int32_t size);
