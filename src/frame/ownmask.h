/* SPDX-License-Identifier: BSD-2-Clause */
// Masks: the one mask that is in force in a call, and its rows as runs of selected pixels or as bytes.
#pragma once

#include <initializer_list>

#include "ownbuffer.h"
#include "ownregion.h"

// The mask in force: none, one of the caller's, or the AND of several.
struct OwnMask {
    bool isGiven = false;
    OwnBits bits = {};
    OwnBuffer<uint8_t> combined; // holds the bits when several masks were joined

    const OwnBits* bitsOrNull() const { return isGiven ? &bits : nullptr; }
};

enum class OwnMasks { READY, COMBINED, NO_MEMORY };

// Joins up to four masks, each read at its own region's offset; nulls and repetitions do not count. A mask's own
// maskROI selects nothing. The masks' regions have pixels; `size` bounds what is joined.
[[nodiscard]] OwnMasks ownCombineMasks(std::initializer_list<const PxkImage*> masks, OwnSize size, OwnMask& result);

// A stretch of a mask row.
struct OwnMaskStretch {
    enum class Kind { NONE, ALL, MIXED };
    Kind kind;
    ptrdiff_t length; // pixels
};

// The longest stretch of one kind that starts at pixel `start` of a row of n pixels, found a machine word at a time; a
// mixed one ends after `mostMixed` pixels.
OwnMaskStretch ownNextMaskStretch(const OwnBits& row, ptrdiff_t start, ptrdiff_t n, ptrdiff_t mostMixed);

// Which bytes of a pixel change: the first selectedBytes of every pixelBytes. Both are equal unless channels are left
// out.
struct OwnPixelBytes {
    int32_t pixelBytes; // 1 to 16
    int32_t selectedBytes;
};

// One byte for each byte of n pixels: 0xFF where it changes. Without bits every pixel is selected.
void ownMaskToBytes(const OwnBits* row, ptrdiff_t start, ptrdiff_t n, OwnPixelBytes pixel, uint8_t* to);
