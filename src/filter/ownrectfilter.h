// What the filters of a plain rectangular window share: their argument checks and the way to the engine.
#pragma once

#include "frame/ownreport.h"
#include "ownwindow.h"

struct OwnRectFilter {
    PxkImage* srcImage;
    PxkImage* dstImage;
    int32_t nCols; // window
    int32_t nRows;
    int32_t anchorX; // the window's pixel that the result belongs to
    int32_t anchorY;
};

enum class OwnSameImage { REFUSED, ALLOWED };

// All checks, reported. False also for a stored status that is negative, and for images without a channel to process.
[[nodiscard]] bool ownGoodRectFilter(const OwnSite& site, const OwnRectFilter& filter, OwnSameImage sameImage,
                                     int32_t refusedDepth = PXK_DEPTH_32F, const char* refusal = "srcImage->depth==32");

// Masks, common size, borders and tiles. A shortage of memory or a refused tile ends the call without a report.
void ownRunRectFilter(const OwnRectFilter& filter, OwnBitRows bitRows, const OwnBandEngine& engine);
