/* SPDX-License-Identifier: BSD-2-Clause */
// Pixels gathered from scattered places of a row.
#pragma once

#include <cstddef>
#include <cstdint>

// Copies n pixels of pixelBytes each: the i-th one lies offsets[i] bytes behind `from`. Offsets never fall.
void ownGatherPixels(const uint8_t* from, const int32_t* offsets, int32_t pixelBytes, uint8_t* to, ptrdiff_t n);
