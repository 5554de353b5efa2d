/* SPDX-License-Identifier: BSD-2-Clause */
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

// In what the filters' rules differ.
struct OwnRectRules {
    bool allowsSameImage;
    bool stopsOnStaleStatus;
    int32_t refusedDepth;
    const char* refusal;
};

// All checks, reported. False also for images without a channel to process.
[[nodiscard]] bool ownGoodRectFilter(const OwnSite& site, const OwnRectFilter& filter, const OwnRectRules& rules);

// How the engine wants its rows.
struct OwnRectRows {
    OwnBitRows bitRows;
    bool inFixedBands;
};

// Masks, common size, borders and tiles. A shortage of memory or a refused tile ends the call without a report.
void ownRunRectFilter(const OwnRectFilter& filter, const OwnRectRows& rows, OwnBandEngine engine);
