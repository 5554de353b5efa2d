// Rows of samples that reach beyond an image on either side, and the constants of its sides.
#pragma once

#include "pxk/pxk.h"

// In place of a channel, which counts from 1: all of them, alpha included, interleaved whatever the data order.
constexpr int32_t ownAllChannels = 0;

// Fills `buffer` with the pixels of row y from column x on, both anywhere. They have the same values as in a fetched
// rectangle. One-bit pixels are packed, the first one in the highest bit; bits behind the last one keep their value.
// Tiles are asked for one by one. False: a tile was refused.
[[nodiscard]] bool ownBorderRow(PxkImage* image, int32_t x, int32_t y, int32_t channel, uint8_t* buffer, int32_t count);

// The part of it that lies inside the image, in either direction, to pixel `position` of the buffer on.
[[nodiscard]] bool ownCopyRowRun(PxkImage* image, int32_t x, int32_t y, int32_t channel, uint8_t* buffer,
                                 int32_t position, int32_t count, bool isForward);

// Limits the constants of a private header to its depth's range: a caller may have written any by hand.
void ownNormalizeBorderConsts(PxkImage* header);
