// Samples between a source's pixels, for runs of positions.
#pragma once

#include "frame/ownview.h"
#include "ownpositions.h"

enum class OwnInterpolation { NEAREST, LINEAR, CUBIC };

// Ties of the nearest pixel.
enum class OwnTies { UP, EVEN };

// Pixels that may be read, and how. Positions count from the view's first pixel; they are held inside the view, and so
// is every tap. A position that is no number counts as the first pixel.
struct OwnSampler {
    OwnView source; // of 2 pixels and more along both axes for LINEAR, of 4 for CUBIC; one-bit rows: NEAREST
    OwnInterpolation interpolation;
};

// n pixels of all channels, without gaps; one-bit pixels become bytes of 0 and 1. The nearest pixel is that of the whole
// part: rounding is the caller's. 16-bit samples: NEAREST.
void ownSampleFixed(const OwnSampler& sampler, const OwnFixedRun& run, int32_t n, uint8_t* to);
void ownSampleReal(const OwnSampler& sampler, const OwnRealRun& run, int32_t n, OwnTies ties, uint8_t* to);
