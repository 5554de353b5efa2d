/* SPDX-License-Identifier: BSD-2-Clause */
// Replacement of samples by the entries of maps.
#pragma once

#include "frame/ownreport.h"

// Each sample s of processed channel k of the source becomes entry s of map k in the destination. Maps lie one behind
// the other: `maps` has an entry of the images' depth, 8U or 16U, for each level of each channel. Behind all checks.
void pxkMap(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const uint8_t* maps);
