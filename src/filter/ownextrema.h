/* SPDX-License-Identifier: BSD-2-Clause */
// Largest or smallest sample of a rectangular window, at a cost that grows with the logarithm of its width and not with
// its height.
#pragma once

#include "ownwindow.h"

enum class OwnExtremum { LARGEST, SMALLEST };

// Computes a band: nCols by nRows samples a window, integer depths; one-bit rows as bits. False: out of memory.
[[nodiscard]] bool ownExtremaBand(const OwnBand& band, int32_t depth, OwnExtremum kind, int32_t nCols, int32_t nRows);
