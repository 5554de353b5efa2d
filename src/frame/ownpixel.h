/* SPDX-License-Identifier: BSD-2-Clause */
// One pixel by its coordinates, in an image in memory or on tiles.
#pragma once

#include "ownreport.h"

// A pixel operation: how it reports, and which way the samples go.
struct OwnPixelAccess {
    OwnSite site;
    int32_t tileMode; // PXK_TILE_READ: from the image to the caller; PXK_TILE_WRITE: the reverse
    const char* refusedTile;
};

// Checks the arguments and copies all samples of pixel (x, y), alpha included; at depth 1 the lowest bit of one byte.
// PXK_StsOk, or what the report returned.
int32_t ownAccessPixel(const OwnPixelAccess& access, PxkImage* image, int32_t x, int32_t y, uint8_t* pixel);
