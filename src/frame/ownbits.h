/* SPDX-License-Identifier: BSD-2-Clause */
// One-bit rows: pixels are bits, most significant first, and a row may start at any bit of a byte.
#pragma once

#include <cstddef>
#include <cstdint>

// Bytes that hold n bits which start at bit position `bit` of the first one. A row may have 2^31 - 1 of them, also
// where ptrdiff_t has no more bits.
inline ptrdiff_t ownBytesOfBits(int32_t bit, ptrdiff_t n)
{
    return static_cast<ptrdiff_t>((static_cast<int64_t>(n) + bit + 7) / 8);
}

// Bits of a byte from position `from` to before position `to`, 0 <= from < to <= 8.
inline uint8_t ownByteMask(int32_t from, int32_t to)
{
    return static_cast<uint8_t>((0xFF >> from) & (0xFF << (8 - to)));
}

// Moves n bits so that they start at bit position toBit of `to`. Reads no byte that holds none of the bits. Bits of the
// first and last byte beside them come out undefined, so `to` is a buffer, not an image.
void ownAlignBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n);

// Stores n bits into a row; bits beside them keep their value. Source and destination do not overlap.
void ownStoreBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n);

// The same with the last bit first.
void ownStoreReversedBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n);

// The next n bits, 1 to 64, in the high end of a word, the rest 0.
uint64_t ownLoadBits(const uint8_t* from, int32_t fromBit, int32_t n);

// One byte a pixel: `one` where the bit is 1, otherwise 0.
void ownExpandBits(const uint8_t* from, int32_t fromBit, uint8_t* to, ptrdiff_t n, uint8_t one);

// The reverse: the lowest bit of each byte becomes a pixel of a row; bits beside them keep their value.
void ownPackBits(const uint8_t* from, uint8_t* to, int32_t toBit, ptrdiff_t n);

// Sets n bits of a row to one value; bits beside them keep theirs.
void ownFillBits(uint8_t* to, int32_t toBit, ptrdiff_t n, bool value);
