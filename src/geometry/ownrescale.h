/* SPDX-License-Identifier: BSD-2-Clause */
// Changes of scale: regions, masks, channels and tiles around the rows of each interpolation.
#pragma once

#include "frame/ownregion.h"
#include "frame/ownreport.h"
#include "ownscaleview.h"

// A change of scale behind its checks.
struct OwnRescale {
    OwnSite site;
    PxkImage* srcImage;
    PxkImage* dstImage;
    OwnRatio across;
    OwnRatio down;
    OwnInterpolation interpolation; // one-bit images: NEAREST
    OwnSampling xSampling;          // the mean needs none
    OwnSampling ySampling;
};

bool ownIsScalable(int32_t depth);
constexpr const char* ownUnscalableDepth =
    "srcImage->depth != PXK_DEPTH_1U && srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U";

// One of those that need no boxes.
bool ownIsInterpolation(int32_t interpolate);
constexpr const char* ownUnknownInterpolation =
    "interpolate != PXK_INTER_NN && interpolate != PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC";

// Brings the source's region through a scaling to the destination's, without a look at the images' masks: `mask` tells
// which of the `size` destination pixels change. False: reported.
bool ownRunScaling(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnSize size, const OwnBits* mask,
                   const OwnScaling& scaling);

// The work itself. Reports unlike channels (-2), refused tiles and a shortage of memory.
void ownRunRescale(const OwnRescale& rescale);

// A change of scale with both ends of the source on both ends of the destination: checks, each reported, and work.
void ownScaleEndToEnd(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnRatio across, OwnRatio down,
                      int32_t interpolate);

// The same without the checks.
void ownRunEndToEnd(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnRatio across, OwnRatio down,
                    OwnInterpolation interpolation);
