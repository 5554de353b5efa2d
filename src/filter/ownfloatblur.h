/* SPDX-License-Identifier: BSD-2-Clause */
// Means of rectangular windows of floats.
#pragma once

#include "ownwindow.h"

// Computes a band. Sums are formed in double precision and in one written order: that of blocks of the window's height
// and width, which begin where the band does. False: out of memory.
[[nodiscard]] bool ownFloatBlurBand(const OwnBand& band, int32_t nCols, int32_t nRows);
