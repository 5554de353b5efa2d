/* SPDX-License-Identifier: BSD-2-Clause */
// Model of bit reduction: one sample at a time, one plane at a time.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "reference/frame.h"

namespace model {

// ---- jitter --------------------------------------------------------------------------------------------------------

struct Noise {
    int32_t table[1024], shuffle[1024];

    Noise()
    {
        for (int32_t* numbers : { table, shuffle }) std::generate_n(numbers, 1024, [] { return rand() % 1024; });
    }
};

inline int64_t jitter(const Noise& noise, int64_t v, int64_t x, int64_t y, int64_t j, int32_t from, int32_t to)
{
    const int64_t a = (y + noise.shuffle[y % 1024] + 4 * x) % 1024;
    const int64_t b = (x + noise.shuffle[x % 1024] + 4 * y) % 1024;
    if (from == PXK_DEPTH_32S && to == PXK_DEPTH_1U) {
        double number = static_cast<double>(v);
        if (2147483647.0 * (noise.table[b] / 1024.0) >= number) number += 2147483647.0;
        const double jd = static_cast<double>(j);
        const double moved = number + (2 * jd * (noise.table[a] / 1024.0) + 0.5 - jd) * 2147483647.0;
        if (moved >= -2147483648.0 && moved <= 2147483647.0) number = moved;
        return static_cast<int64_t>(number);
    }
    const struct {
        int64_t guard, lowBits, multiplier, bump, shift, high;
    } steps[] = { { 240, 15, 17, 16, 4, 255 },
                  { 65280, 255, 257, 256, 8, 65535 },
                  { 0x7FFF0000, 0xFFFF, 65537, 65535, 16, 2147483647 },
                  { 0x7F000000, 0xFFFFFF, 16777217, 0xFFFFFF, 24, 2147483647 } };
    const auto& s = steps[from == PXK_DEPTH_8U ? 0 : from == PXK_DEPTH_16U ? 1 : to == PXK_DEPTH_16U ? 2 : 3];
    if (v >= s.guard) return v;
    const int64_t d = ((2 * j * noise.table[a] + 512) / 1024 - j) * (int64_t(1) << s.shift);
    if ((v & s.lowBits) <= noise.table[b] * s.multiplier / 1024) v += s.bump;
    return v + d >= 0 && v + d <= s.high ? v + d : v;
}

// ---- depth ---------------------------------------------------------------------------------------------------------

inline int64_t floorDivided(int64_t a, int64_t b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

inline int64_t reduce(int64_t v, int32_t from, int32_t to)
{
    if (from == to) return v;
    if (to == PXK_DEPTH_1U) return v >= (from == PXK_DEPTH_32S ? 1 : from == PXK_DEPTH_16U ? 32768 : 128) ? 1 : 0;
    if (from == PXK_DEPTH_32S) {
        return to == PXK_DEPTH_16U ? floorDivided(v, 65536) + 32768 : floorDivided(v, 16777216) + 128;
    }
    return from == PXK_DEPTH_16U && to == PXK_DEPTH_8U ? v / 256 : v;
}

// ---- dithering -----------------------------------------------------------------------------------------------------

struct Quantiser {
    int64_t high, mask, round;
    int32_t shift;
    Quantiser(int32_t width, int32_t bitCount)
        : high((int64_t(1) << width) - 1)
        , mask(high >> bitCount == 0 ? 1 : high >> bitCount)
        , round(mask >> 1)
        , shift(width - bitCount)
    {
    }
    int64_t operator()(int64_t v) const
    {
        return std::min((v & ~mask) + (((v & mask) + round) >> shift << shift), high);
    }
};

struct DiffusionKernel {
    int64_t right[2], rows[2][5];
    int32_t shift;
};

inline DiffusionKernel diffusionKernel(int32_t ditherType)
{
    if (ditherType == PXK_DITHER_FS) return { { 7, 0 }, { { 0, 3, 5, 1, 0 }, {} }, 4 };
    if (ditherType == PXK_DITHER_JJN) {
        return { { 1197, 855 }, { { 513, 855, 1197, 855, 513 }, { 171, 513, 855, 513, 171 } }, 13 };
    }
    return { { 1560, 780 }, { { 390, 780, 1560, 780, 390 }, { 195, 390, 780, 390, 195 } }, 13 };
}

inline void diffuse(Grid<int64_t>& plane, int32_t ditherType, const Quantiser& quantise)
{
    const DiffusionKernel k = diffusionKernel(ditherType);
    const int64_t one = int64_t(1) << k.shift;
    const auto limited = [&](int64_t scaled) {
        return std::min(std::max<int64_t>(scaled >> k.shift, 0), quantise.high);
    };
    for (int32_t y = 0; y < plane.height; ++y) {
        std::vector<int64_t> errors(plane.width + 4, 0); // two pixels of zeros on either side
        for (int32_t x = 0; x < plane.width; ++x) {
            int64_t& v = plane.at(x, y);
            v = limited(v * one + k.right[0] * errors[x + 1] + k.right[1] * errors[x]);
            errors[x + 2] = v - quantise(v);
            v = quantise(v);
        }
        for (int32_t below = 1; below <= (ditherType == PXK_DITHER_FS ? 1 : 2) && y + below < plane.height; ++below) {
            for (int32_t x = 0; x < plane.width; ++x) {
                int64_t sum = plane.at(x, y + below) * one;
                for (int32_t to = -2; to <= 2; ++to) sum += k.rows[below - 1][to + 2] * errors[x + 2 - to];
                plane.at(x, y + below) = limited(sum);
            }
        }
    }
}

inline int64_t ordered(int64_t v, int64_t x, int64_t y, int32_t width, int32_t bitCount)
{
    static const int64_t matrix[4][4] = {
        { 0, 1928, 482, 2410 }, { 2892, 964, 3374, 1446 }, { 723, 2651, 241, 2169 }, { 3615, 1687, 3133, 1205 }
    };
    const int32_t bits = width - bitCount;
    const int64_t step = int64_t(1) << bits, low = v % step;
    const int64_t threshold = (matrix[x % 4][y % 4] << bits) >> 12;
    return low > threshold ? std::min(v - low + step, (int64_t(1) << width) - 1) : v - low;
}

// ---- the operation -------------------------------------------------------------------------------------------------

inline bool isGray(const PxkImage& image)
{
    return image.colorModel[0] == 'G' && image.channelSeq[0] == 'G';
}

inline void reduceBits(Picture& src, Picture& dst, int32_t jitterType, int32_t ditherType, int32_t bitCount)
{
    const int32_t from = src.spec.depth, to = dst.spec.depth, channels = src.spec.channels;
    const int32_t width = std::min(src.spec.width, dst.spec.width);
    const int32_t height = std::min(src.spec.height, dst.spec.height);
    const bool isPixelOrder = src.spec.order == PXK_DATA_ORDER_PIXEL;
    if (bitCount < 0) bitCount = 0;
    if (bitCount > depthBits(to)) bitCount = depthBits(to) / 2;
    // A gray image is dithered at its own depth before it becomes one-bit.
    const bool isMapped = to == PXK_DEPTH_1U && ditherType != PXK_DITHER_NONE && isGray(src.header);
    const int32_t at = isMapped ? from : to;
    Noise* const noise = jitterType != 0 ? new Noise : nullptr;
    for (int32_t c = 0; c < channels; ++c) {
        const auto column = [&](int32_t x) { return isPixelOrder ? x * channels + c : x; };
        Grid<int64_t> plane(width, height);
        plane.forEach([&](int32_t x, int32_t y, int64_t& v) {
            v = src.value(x, y, c);
            if (noise != nullptr) v = jitter(*noise, v, column(x), y, jitterType, from, to);
            v = reduce(v, from, at);
            if (ditherType == PXK_DITHER_BAYER) v = ordered(v, column(x), y, depthBits(at), bitCount);
        });
        if (ditherType != PXK_DITHER_NONE && ditherType != PXK_DITHER_BAYER) {
            diffuse(plane, ditherType, Quantiser(depthBits(at), bitCount));
        }
        plane.forEach([&](int32_t x, int32_t y, int64_t v) { dst.setNumber(x, y, c, double(reduce(v, at, to))); });
    }
    delete noise;
}

} // namespace model
