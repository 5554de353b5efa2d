/* SPDX-License-Identifier: BSD-2-Clause */
// The engine of the warps: source, pieces of the destination, spans, positions, samples.
#pragma once

#include "frame/ownpieces.h"
#include "ownpositions.h"
#include "ownsampler.h"
#include "ownshape.h"
#include "ownturn.h"

// A warp behind its checks.
struct OwnWarp {
    OwnSite site;
    PxkImage* srcImage;
    PxkImage* dstImage;
    OwnRect taps; // pixels of the source that may be read; not empty
    OwnInterpolation interpolation;
    const OwnShape* shape; // what is written of the destination's region; null: all of it
    bool isSmooth;         // a ring round the shape is mixed with what lies there
    bool isAffine;         // positions of all but 16-bit linear and cubic samples come from `fixed`
    OwnFixedMap fixed;
    OwnRealMap real;
    const OwnRightTurn* turn; // not null: pixels are moved, whatever else is asked for
};

// What is asked for, or the next simpler one that the source is large enough for.
OwnInterpolation ownInterpolationFor(int32_t interpolate, int32_t depth, OwnSize source);

void ownRunWarp(const OwnWarp& warp);

// ---- shared with remapping -----------------------------------------------------------------------------------------

// Calls onChannels for all channels, or one by one where they are not taken together.
void ownForChannels(const OwnSampler& sampler, const OwnDestination& piece,
                    OwnFunction<void(const OwnSampler& from, const OwnDestination& to)> onChannels);

// Bytes for a run of the most channels that are taken together.
constexpr int32_t ownRunBytes = ownMostRun * 4 * 2;

// Where pixels of a piece are stored: in place where it lies as samples are made, otherwise through a buffer.
struct OwnRunTarget {
    const OwnDestination& piece;
    bool isDirect;

    explicit OwnRunTarget(const OwnDestination& destination);
    uint8_t* pixel(int32_t x, int32_t y) const
    {
        return piece.view.first + y * piece.view.rowStep + x * piece.view.pixelStep;
    }
    // At most ownMostRun pixels from (x, y) on, which `make` makes. Those whose byte in `selected` is 0 stay; null:
    // none.
    template <class Make> void write(int32_t x, int32_t y, int32_t n, const uint8_t* selected, Make&& make) const
    {
        if (isDirect && selected == nullptr) return make(pixel(x, y));
        alignas(uint64_t) uint8_t samples[ownRunBytes];
        make(samples);
        ownStorePixels(piece, x, y, n, samples, selected);
    }
};
