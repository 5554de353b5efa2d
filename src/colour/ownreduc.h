/* SPDX-License-Identifier: BSD-2-Clause */
// Bit reduction: what its stages share. All of them work on contiguous rows of samples; in pixel order a row holds the
// samples of all channels, and the column of a sample is its index in that row, of which only the low bits count.
#pragma once

#include <algorithm>

#include "frame/ownregion.h"
#include "frame/ownreport.h"

// ---- reduction -----------------------------------------------------------------------------------------------------

// A sample at a lower depth: the high bits, without rounding. One-bit samples are 0 or 1.
template <int32_t DEPTH> struct OwnReduce;

template <> struct OwnReduce<PXK_DEPTH_16U> {
    using Sample = uint16_t;
    Sample operator()(int32_t v) const { return static_cast<Sample>((static_cast<uint32_t>(v) >> 16) ^ 0x8000); }
    Sample operator()(uint16_t v) const { return v; }
};

template <> struct OwnReduce<PXK_DEPTH_8U> {
    using Sample = uint8_t;
    Sample operator()(int32_t v) const { return static_cast<Sample>((static_cast<uint32_t>(v) >> 24) ^ 0x80); }
    Sample operator()(uint16_t v) const { return static_cast<Sample>(v >> 8); }
    Sample operator()(uint8_t v) const { return v; }
};

template <> struct OwnReduce<PXK_DEPTH_1U> {
    using Sample = uint8_t;
    Sample operator()(int32_t v) const { return v >= 1 ? 1 : 0; }
    Sample operator()(uint16_t v) const { return static_cast<Sample>(v >> 15); }
    Sample operator()(uint8_t v) const { return static_cast<Sample>(v >> 7); }
};

// ---- quantiser -----------------------------------------------------------------------------------------------------

// The levels that stay: multiples of the step, and the largest sample.
struct OwnLevels {
    int32_t largest;  // sample, 255 or 65535
    int32_t stepBits; // bits of a sample below the step, 0 to 16
};

// Low bits from half a step upward round up; the half is one less than a true half from a step of 4 on.
inline int32_t ownQuantise(int32_t sample, int32_t largest, int32_t lowBits)
{
    return std::min((sample + (lowBits >> 1)) & ~lowBits, largest);
}

// ---- ordered dithering ---------------------------------------------------------------------------------------------

// In place, n samples from column x of row y on.
void ownDitherOrdered(uint8_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, const OwnLevels& levels);
void ownDitherOrdered(uint16_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, const OwnLevels& levels);

// ---- jitter --------------------------------------------------------------------------------------------------------

// Random numbers of 10 bits, drawn anew from `rand` for each call.
struct OwnNoise {
    int32_t amount; // 1 to 8
    uint16_t table[1024];
    uint16_t shuffle[1024];
};

void ownDrawNoise(OwnNoise& noise, int32_t jitterType);

// Adds noise in place to n samples from column x of row y on, as much as the reduction to a depth calls for.
void ownJitter(const OwnNoise& noise, uint8_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, int32_t toDepth);
void ownJitter(const OwnNoise& noise, uint16_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, int32_t toDepth);
void ownJitter(const OwnNoise& noise, int32_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, int32_t toDepth);

// ---- error diffusion -----------------------------------------------------------------------------------------------

struct OwnDiffusion {
    int32_t ditherType; // PXK_DITHER_FS, _JJN or _STUCKI
    int32_t depth;      // 8U or 16U
    OwnLevels levels;
    int32_t rowSamples;
    int32_t height;
    int32_t gap; // samples from a pixel to its neighbour
};

// Bytes of working memory; 64 bits hold it for any image.
int64_t ownDiffusionBytes(const OwnDiffusion& diffusion);

// Diffuses one plane, or all channels of an image in pixel order, each for itself. Views of the samples, in place when
// both are one; a one-bit destination gets the highest bit of each result.
void ownDiffuse(const OwnDiffusion& diffusion, const OwnView& from, const OwnView& to, uint8_t* memory);
