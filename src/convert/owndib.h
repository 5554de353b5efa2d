/* SPDX-License-Identifier: BSD-2-Clause */
// The parts of a device-independent bitmap: header, colour table or masks, rows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pxk/pxk.h"

// Headers come out of files and may stand at any address, so they are copied in and out.
PxkBitmapInfoHeader ownLoadDib(const PxkBitmapInfoHeader* dib);
void ownStoreDib(PxkBitmapInfoHeader* dib, const PxkBitmapInfoHeader& header);

// Rows, as the absolute value of biHeight; 64 bits hold it for every height.
inline int64_t ownDibHeight(const PxkBitmapInfoHeader& header)
{
    const int64_t height = header.biHeight;
    return height < 0 ? -height : height;
}

// Four-byte entries between the header and the bits.
int64_t ownDibColorCount(const PxkBitmapInfoHeader& header);

// Bytes of a row of `width` pixels of `bits` bits each, rounded up to a multiple of `align`.
int64_t ownDibRowBytes(int64_t width, int32_t bits, int32_t align);

// Where colour table or masks stand, in both forms of a bitmap.
inline uint8_t* ownDibTable(PxkBitmapInfoHeader* dib)
{
    return reinterpret_cast<uint8_t*>(dib) + sizeof(PxkBitmapInfoHeader);
}

// Where the bits of a bitmap in one block stand; null when its table would have 2^31 bytes or more.
uint8_t* ownDibBits(PxkBitmapInfoHeader* dib);

// True for a table of two entries or more with entry i the gray level i 255 / (entries - 1).
bool ownDibIsGrayRamp(PxkBitmapInfoHeader* dib);

// The fixed tables of 2, 16 and 256 entries; tables of other sizes stay as they are.
void ownSetStandardPalette(PxkBitmapInfoHeader* dib, bool isGray);

// A channel's place in a pixel of 16 or 32 bits.
// To a byte: (((pixel & mask) >> down) << up), low eight bits. From a byte: ((byte >> down) << up) & mask.
struct OwnDibField {
    uint32_t mask;
    int32_t down;
    int32_t up;
};

struct OwnDibFields {
    OwnDibField blue, green, red, alpha; // alpha is not used at 16 bits
};

// Fields of a bitmap of 16 or 32 bits. False: a mask is zero.
[[nodiscard]] bool ownFieldsToBytes(PxkBitmapInfoHeader* dib, OwnDibFields* fields);
[[nodiscard]] bool ownFieldsFromBytes(PxkBitmapInfoHeader* dib, OwnDibFields* fields);
