/* SPDX-License-Identifier: BSD-2-Clause */
// Rows of pixels between images and bitmaps.
#pragma once

#include "owndib.h"
#include "ownnearest.h"

// A work pixel has its bytes in bitmap order: blue in the lowest byte, then green, red, alpha. A conversion is three
// stages on short stretches of a row: a reader makes work pixels, a sequence stage reorders them, a writer stores them.
// Stretches start at columns that are multiples of eight.
constexpr int32_t ownDibStretch = 1024; // pixels at most

struct OwnDibConversion;
using OwnDibReader = void (*)(const OwnDibConversion& c, const uint8_t* row, int32_t first, int32_t count,
                              uint32_t* work);
using OwnDibSequence = void (*)(uint32_t* work, int32_t count);
using OwnDibWriter = void (*)(const OwnDibConversion& c, const uint32_t* work, int32_t first, int32_t count,
                              uint8_t* row);
using OwnDibWholeRow = void (*)(const OwnDibConversion& c, const uint8_t* source, int64_t count, uint8_t* target);

struct OwnDibConversion {
    OwnDibReader read;
    OwnDibSequence sequence; // null: nothing to reorder
    OwnDibWriter write;
    OwnDibWholeRow wholeRow; // null, or what the three stages do, in one
    OwnDibFields fields;     // bitmaps of 16 and 32 bits
    ptrdiff_t planeStep;     // bytes from channel to channel of an image in planes
    uint32_t colors[256];    // from a bitmap: what an index becomes, in the image's sequence
    uint8_t bytes[256];      // what an index becomes in a gray image, or a gray in a bitmap with a colour table
    OwnNearest* nearest;     // to a bitmap with a colour table
};

// How a picture lies in memory: its top row, and the bytes to the next one, negative when it lies before.
struct OwnDibRows {
    uint8_t* first;
    ptrdiff_t step;
};

// Choose the stages. The result tells what is not served; the order is that of the tests.
enum class OwnDibChoice { SERVED, BAD_BITS, BAD_MASK, BAD_SEQUENCE, BAD_IMAGE };
OwnDibChoice ownChooseFromDib(OwnDibConversion* c, PxkBitmapInfoHeader* dib, const PxkImage* image);
OwnDibChoice ownChooseToDib(OwnDibConversion* c, PxkBitmapInfoHeader* dib, const PxkImage* image, OwnNearest* nearest);

void ownConvertRows(const OwnDibConversion& c, OwnDibRows source, OwnDibRows target, int64_t columns, int64_t rows);
