/* SPDX-License-Identifier: BSD-2-Clause */
// What a kernel sees of an image. Region, channel of interest, alpha left out, data order, tile and fetched rectangle
// are only different numbers here; a kernel never sees a PxkImage.
#pragma once

#include <cstddef>
#include <cstdint>

struct OwnView {
    uint8_t* first;      // first sample of the region, in the first processed channel; one-bit: byte of the first pixel
    ptrdiff_t rowStep;   // bytes from row to row
    ptrdiff_t pixelStep; // bytes from pixel to pixel; 0 for one-bit rows
    ptrdiff_t channelStep; // bytes from one processed channel to the next: a sample or a whole plane
    int32_t width;         // pixels
    int32_t height;
    int32_t nChannels;   // processed channels, not those of the image
    int32_t sampleBytes; // 1, 2 or 4; 0 for one-bit rows
    int32_t bit;         // one-bit rows: position of the first pixel in its byte, 0 is the most significant bit
};

// One-bit rows, of an image or of a mask.
struct OwnBits {
    uint8_t* first; // byte that holds the first pixel
    ptrdiff_t rowStep;
    int32_t bit; // position of the first pixel in that byte, 0 to 7, most significant first
};
