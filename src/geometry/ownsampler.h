/* SPDX-License-Identifier: BSD-2-Clause */
// Samples between a source's pixels, for runs of positions.
#pragma once

#include "frame/ownview.h"
#include "owninterpolation.h"
#include "ownpositions.h"

// Ties of the nearest pixel.
enum class OwnTies { UP, EVEN };

// Pixels that may be read, and how. Positions are held inside the view, and so is every tap; one that is no number
// counts as the first pixel.
struct OwnSampler {
    OwnView source; // 2 pixels and more along both axes for LINEAR, 4 for CUBIC; one-bit rows: NEAREST
    int32_t left;   // coordinates of the view's first pixel, from which positions are counted
    int32_t top;
    OwnInterpolation interpolation;
};

// The numbers of adjacent channels that are taken together. Any other channels are views of their own.
inline bool ownAreTakenTogether(const OwnView& view)
{
    return view.nChannels == 1
        || (view.channelStep == view.sampleBytes && (view.nChannels == 3 || view.nChannels == 4));
}

// n pixels of such channels, without gaps; one-bit pixels become bytes of 0 and 1. The nearest pixel is that of the
// whole part: rounding is the caller's. 16-bit samples: NEAREST.
void ownSampleFixed(const OwnSampler& sampler, const OwnFixedRun& run, int32_t n, uint8_t* to);
void ownSampleReal(const OwnSampler& sampler, const OwnRealRun& run, int32_t n, OwnTies ties, uint8_t* to);
