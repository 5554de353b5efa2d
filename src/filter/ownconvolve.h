/* SPDX-License-Identifier: BSD-2-Clause */
// The convolution engine: what a call computes, prepared once, and how a band is computed from it.
#pragma once

#include "frame/ownbuffer.h"
#include "ownsquare.h"

constexpr int32_t ownMostKernels = 10;

// Which arithmetic holds a kernel's sums exactly: 16-bit products and sums, 32-bit ones, or single precision.
enum class OwnSums { NARROW, WIDE, SINGLE };

// A coefficient and the source sample it meets, relative to the first sample of the window that holds all kernels.
struct OwnTap {
    int32_t row;
    int32_t column;
    int32_t value;
    float valueFP;
    int32_t group; // the first tap of a group that is summed in 16 bits: the number of its taps
};

struct OwnKernelPlan {
    const OwnTap* taps; // integer sums: those that are not 0
    int32_t count;
    OwnSums sums;
    bool isUnsigned16; // the sum lies in 0 to 65535
    bool hasGroups;    // 8-bit samples: all taps are in groups
    bool isBox;        // integer sums with one coefficient everywhere
    int32_t shift;
};

struct OwnConvPlan {
    int32_t depth;
    int32_t method;
    int32_t nKernels;
    OwnKernelPlan kernels[ownMostKernels];
    OwnMargins margins; // of all kernels together
    OwnSquare square;   // of a single small kernel
    OwnBuffer<OwnTap> taps;
};

// One kernel, as a plain correlation.
struct OwnCorrelation {
    int32_t nCols;
    int32_t nRows;
    int32_t anchorX;
    int32_t anchorY;
    const int32_t* values; // this one or the next
    const float* valuesFP;
    int32_t shift;
};

// False: out of memory.
[[nodiscard]] bool ownPlanConvolution(OwnConvPlan& plan, int32_t depth, const OwnCorrelation* kernels, int32_t nKernels,
                                      int32_t method);

// Computes a band; one-bit rows as bytes. False: out of memory.
[[nodiscard]] bool ownConvolveBand(const OwnBand& band, const OwnConvPlan& plan);
