/* SPDX-License-Identifier: BSD-2-Clause */
// What lies beyond an image's edges: the rule for every coordinate outside, written once for rectangles and rows.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "owndepth.h"

// Index into borderMode and borderConst. The four corners belong to top and bottom.
enum OwnSide : int32_t { OWN_SIDE_TOP, OWN_SIDE_BOTTOM, OWN_SIDE_LEFT, OWN_SIDE_RIGHT, OWN_SIDE_NONE };

constexpr int32_t OWN_EDGE_NONE = 4; // inside the image: coordinates stay as they are

// Only two bits of a stored mode count.
inline int32_t ownSideMode(const PxkImage* image, int32_t side)
{
    return side == OWN_SIDE_NONE ? OWN_EDGE_NONE : image->borderMode[side] & 3;
}

// Coordinates c, c + 1, ... and the image coordinates that they stand for: from, from + step, ...
struct OwnBorderRun {
    int32_t from;
    int32_t step; // 1 forward, -1 mirrored, 0 the edge again and again
    int32_t count;
};

// The longest run from coordinate c on, of at most `most` coordinates, on an axis of n pixels. Outside the image the
// mode is not PXK_EDGE_CONST: a constant has no coordinate.
inline OwnBorderRun ownBorderRun(int32_t mode, int64_t c, int32_t n, int64_t most)
{
    const auto run = [most](int64_t from, int32_t step, int64_t count) {
        return OwnBorderRun { static_cast<int32_t>(from), step, static_cast<int32_t>(std::min(count, most)) };
    };
    if (c >= 0 && c < n) return run(c, 1, n - c);
    if (mode == PXK_EDGE_CLAMP) return c < 0 ? run(0, 0, -c) : run(n - 1, 0, most);
    const int64_t period = mode == PXK_EDGE_MIRROR ? 2 * static_cast<int64_t>(n) : n;
    const int64_t rest = c % period;
    const int64_t phase = rest < 0 ? rest + period : rest;
    return phase < n ? run(phase, 1, n - phase) : run(period - 1 - phase, -1, period - phase);
}

// A side's constant as the bits of a sample; one-bit depth: all ones or all zeros. A float image has one constant, the
// top side's, whatever the other sides hold.
inline uint32_t ownBorderConstant(const PxkImage* image, int32_t side)
{
    const uint32_t value = static_cast<uint32_t>(image->borderConst[side]);
    switch (ownDepthBits(image->depth)) {
    case 1: return (value & 1) != 0 ? 0xFFFFFFFFu : 0;
    case 8: return value & 0xFF;
    case 16: return value & 0xFFFF;
    default: break;
    }
    if (image->depth != PXK_DEPTH_32F) return value;
    const float converted = static_cast<float>(image->borderConst[OWN_SIDE_TOP]);
    uint32_t bits;
    memcpy(&bits, &converted, sizeof bits);
    return bits;
}
