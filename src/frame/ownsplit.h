/* SPDX-License-Identifier: BSD-2-Clause */
// Pixels of two to four contiguous samples, taken apart into rows of one channel each, and put together again.
#pragma once

#include <cstddef>
#include <cstdint>

// True when ownSplitPixels serves the first `count` samples of pixels of unitSamples. Joining needs all of them.
bool ownCanSplit(int32_t unitSamples, int32_t count);

// The first `count` samples of each of n pixels, as rows.
void ownSplitPixels(const uint8_t* from, int32_t unitSamples, int32_t sampleBytes, uint8_t* const* rows, int32_t count,
                    ptrdiff_t n);

// Pixels of `count` samples out of as many rows.
void ownJoinPixels(const uint8_t* const* rows, int32_t count, int32_t sampleBytes, uint8_t* to, ptrdiff_t n);
