/* SPDX-License-Identifier: BSD-2-Clause */
// Runs of pixels copied from row to row: forward, mirrored, or one pixel again and again; one-bit rows like all others.
#pragma once

#include <cstddef>
#include <cstdint>

// Pixels x on of row `from` become n pixels of row `to`, from toX on. The two stretches share no pixel.
using OwnPixelCopy = void (*)(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n,
                              ptrdiff_t pixelBytes);

struct OwnPixelCopies {
    OwnPixelCopy forward;  // pixels x, x + 1, ...
    OwnPixelCopy backward; // pixels x, x - 1, ...
    OwnPixelCopy still;    // pixel x again and again
};

// The copies for pixels of so many bytes, 0 for one-bit rows; they take the same pixelBytes.
OwnPixelCopies ownPixelCopies(int32_t pixelBytes);

// Copies `count` rows of n bytes each, at least one; the two blocks share no byte.
void ownCopyByteRows(const uint8_t* from, ptrdiff_t fromStep, uint8_t* to, ptrdiff_t toStep, ptrdiff_t n,
                     int64_t count);

// A sample's value as a row of a few samples; `still` spreads the first one further.
constexpr int32_t ownConstantBytes = 16;
struct OwnConstant {
    uint8_t bytes[ownConstantBytes];
    int32_t sampleBytes;
};

// The lowest bits of the value; one-bit depth takes all of them from the lowest.
OwnConstant ownConstant(int32_t depth, uint32_t value);
