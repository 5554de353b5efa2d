/* SPDX-License-Identifier: BSD-2-Clause */
// The middle sample of a rectangular window.
#pragma once

#include "ownwindow.h"

// Computes a band: the sample of rank nCols nRows / 2 + 1 in ascending order, every integer depth but one-bit. False:
// out of memory.
[[nodiscard]] bool ownMedianBand(const OwnBand& band, int32_t depth, int32_t nCols, int32_t nRows);

// The same for one-bit rows as bytes: 1 where at least half of the window's bits are set, more than half for an odd
// number.
[[nodiscard]] bool ownMajorityBand(const OwnBand& band, int32_t nCols, int32_t nRows);
