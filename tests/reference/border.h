/* SPDX-License-Identifier: BSD-2-Clause */
// What a pixel outside an image is: one coordinate at a time, period by period.
#pragma once

#include <algorithm>

#include "support/picture.h"

inline int32_t modelCoordinate(int32_t mode, int64_t c, int64_t n)
{
    switch (mode) {
    case PXK_EDGE_CLAMP: return static_cast<int32_t>(std::min(std::max<int64_t>(c, 0), n - 1));
    case PXK_EDGE_WRAP:
        while (c < 0) c += n;
        while (c >= n) c -= n;
        return static_cast<int32_t>(c);
    default:
        while (c < -n) c += 2 * n;
        while (c >= n) c -= 2 * n;
        return static_cast<int32_t>(c < 0 ? -c - 1 : c);
    }
}

// Sample (x, y, c) of the plane that the image is part of.
inline uint32_t modelBorderBits(const Picture& picture, int64_t x, int64_t y, int32_t c)
{
    const PxkImage& image = picture.header;
    int32_t side = -1;
    if (x >= image.width) side = 3;
    if (x < 0) side = 2;
    if (y >= image.height) side = 1;
    if (y < 0) side = 0;
    if (side < 0) return picture.bits(static_cast<int32_t>(x), static_cast<int32_t>(y), c);
    const int32_t mode = image.borderMode[side] & 3;
    if (mode == PXK_EDGE_CONST) {
        if (image.depth == PXK_DEPTH_32F) return bitsOf(PXK_DEPTH_32F, image.borderConst[0]);
        const uint64_t sampleRange = 1ull << depthBits(image.depth);
        return static_cast<uint32_t>(static_cast<uint32_t>(image.borderConst[side]) % sampleRange);
    }
    return picture.bits(modelCoordinate(mode, x, image.width), modelCoordinate(mode, y, image.height), c);
}
