/* SPDX-License-Identifier: BSD-2-Clause */
// The colour operations as the tests name them, and their models on pictures.
#pragma once

#include <cstring>

#include "reference/colour.h"
#include "support/cases.h"

inline void setWords(Picture& picture, const char* colorModel, const char* channelSeq)
{
    memset(picture.header.colorModel, 0, 4);
    memset(picture.header.channelSeq, 0, 4);
    memcpy(picture.header.colorModel, colorModel, strnlen(colorModel, 4));
    memcpy(picture.header.channelSeq, channelSeq, strnlen(channelSeq, 4));
    picture.freeze();
}

struct Conversion {
    const char* name;
    void (*run)(PxkImage*, PxkImage*);
    const char* word;
    bool isToRgb;
    std::vector<int32_t> depths;
    model::Pixel (*model)(int32_t depth, model::Pixel pixel);
};

inline const std::vector<Conversion>& conversions()
{
    static const std::vector<int32_t> four = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S, PXK_DEPTH_32F };
    static const std::vector<int32_t> three = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S };
    static const std::vector<Conversion> all = {
        { "pxkRGB2HSV", pxkRGB2HSV, "HSV", false, three, model::toHsv },
        { "pxkHSV2RGB", pxkHSV2RGB, "HSV", true, three, model::fromHsv },
        { "pxkRGB2HLS", pxkRGB2HLS, "HLS", false, three, model::toHls },
        { "pxkHLS2RGB", pxkHLS2RGB, "HLS", true, three, model::fromHls },
        { "pxkRGB2XYZ", pxkRGB2XYZ, "XYZ", false, four, model::toXyz },
        { "pxkXYZ2RGB", pxkXYZ2RGB, "XYZ", true, four, model::fromXyz },
        { "pxkRGB2LUV", pxkRGB2LUV, "LUV", false, { PXK_DEPTH_32F }, model::toLuv },
        { "pxkLUV2RGB", pxkLUV2RGB, "LUV", true, { PXK_DEPTH_32F }, model::fromLuv },
        { "pxkRGB2YUV", pxkRGB2YUV, "YUV", false, four, model::toYuv },
        { "pxkYUV2RGB", pxkYUV2RGB, "YUV", true, four, model::fromYuv },
        { "pxkRGB2YCrCb", pxkRGB2YCrCb, "YCr", false, four, model::toYcrcb },
        { "pxkYCrCb2RGB", pxkYCrCb2RGB, "YCr", true, four, model::fromYcrcb },
    };
    return all;
}

// The channel of red, then of green and blue.
inline int32_t rgbChannel(const Picture& p, int32_t k)
{
    return p.header.channelSeq[0] == 'R' ? k : 2 - k;
}

template <class F> void forEachCommonPixel(const Picture& a, const Picture& b, F&& visit)
{
    for (int32_t y = 0; y < std::min(a.spec.height, b.spec.height); ++y) {
        for (int32_t x = 0; x < std::min(a.spec.width, b.spec.width); ++x) visit(x, y);
    }
}

inline void modelConversion(const Conversion& of, Picture& src, Picture& dst)
{
    forEachCommonPixel(src, dst, [&](int32_t x, int32_t y) {
        model::Pixel p;
        for (int32_t k = 0; k < 3; ++k) p[size_t(k)] = src.number(x, y, of.isToRgb ? k : rgbChannel(src, k));
        const model::Pixel q = of.model(src.spec.depth, p);
        for (int32_t k = 0; k < 3; ++k) dst.setNumber(x, y, of.isToRgb ? rgbChannel(dst, k) : k, q[size_t(k)]);
    });
}

inline void modelColorToGray(Picture& src, Picture& dst)
{
    forEachCommonPixel(src, dst, [&](int32_t x, int32_t y) {
        const auto v = [&](int32_t k) { return src.value(x, y, rgbChannel(src, k)); };
        const int32_t from = src.spec.depth, to = dst.spec.depth;
        int64_t gray = 54 * v(0) + 183 * v(1) + 18 * v(2);
        const auto wide = [&](int32_t by) { return 109 * (v(0) >> by) + 366 * (v(1) >> by) + 37 * (v(2) >> by); };
        if (from == PXK_DEPTH_32S) {
            gray = to == PXK_DEPTH_1U ? wide(10) >= 0x20000000 : wide(11) >> (to == PXK_DEPTH_8U ? 21 : 13);
        } else if (to == PXK_DEPTH_1U) {
            gray = gray >> 8 > (from == PXK_DEPTH_8U ? 127 : 32767);
        } else {
            gray >>= from - to + 8;
        }
        dst.setBits(x, y, 0, uint32_t(gray) & uint32_t((UINT64_C(1) << to) - 1));
    });
}

inline void modelGrayToColor(Picture& src, Picture& dst, model::Pixel weights)
{
    const int32_t depth = src.spec.depth;
    int64_t w[3], shift = depth <= 8 && depth > 0 ? 8 : 15;
    for (size_t k = 0; k < 3; ++k) w[k] = int64_t(weights[k] * double(1 << shift));
    if (w[0] == 0 && w[1] == 0 && w[2] == 0) {
        const int64_t defaults[3][3] = { { 54, 183, 18 }, { 109, 366, 37 }, { 6968, 23434, 2364 } };
        std::copy_n(defaults[shift == 8 ? 0 : depth == PXK_DEPTH_16U ? 1 : 2], 3, w);
        if (depth == PXK_DEPTH_16U) shift = 9;
    }
    const uint32_t kept = uint32_t((UINT64_C(1) << depthBits(dst.spec.depth)) - 1);
    forEachCommonPixel(src, dst, [&](int32_t x, int32_t y) {
        const int64_t gray = src.value(x, y) * (depth == PXK_DEPTH_1U ? 255 : 1);
        for (int32_t k = 0; k < 3; ++k) dst.setBits(x, y, rgbChannel(dst, k), uint32_t((gray * w[k]) >> shift) & kept);
    });
}

// ---- twists --------------------------------------------------------------------------------------------------------

// Twelve coefficients, then the scaling value and the offset. A constant is nine of its row's other coefficients.
inline std::vector<double> anyTwist(const Case& c, const Scene&, Random& random)
{
    const int32_t scaling = random.oneOf({ 0, 3, 8, 14, 31 });
    const double unit = c.depth == PXK_DEPTH_32F ? 0.4 : double(INT64_C(1) << std::min(scaling, 30));
    std::vector<double> n;
    for (int32_t k = 0; k < 12; ++k) {
        const double top = k % 4 != 3 ? 1 : c.depth == PXK_DEPTH_8U ? 100 : 10000;
        const double value = unit * top * random.between(-90, 130) / 100;
        n.push_back(c.depth == PXK_DEPTH_32F ? double(float(value)) : std::trunc(std::min(std::max(value, -2e9), 2e9)));
    }
    n.push_back(scaling);
    n.push_back(random.oneIn(2) ? 0 : random.oneOf({ 1, -1, 10, -10, 100, -100, 254, -254 }));
    return n;
}

inline int32_t runTwist(PxkImage* src, PxkImage* dst, const std::vector<double>& n, bool isFloat)
{
    float reals[12];
    int32_t data[16] = {};
    for (size_t k = 0; k < 12; ++k) {
        reals[k] = float(n[k]);
        if (!isFloat) data[k] = int32_t(n[k]);
    }
    if (isFloat) return pxkColorTwistFP(src, dst, reals);
    PxkColorTwist twist;
    pxkSetColorTwist(&twist, data, int32_t(n[12]));
    return pxkApplyColorTwist(src, dst, &twist, int32_t(n[13]));
}

inline void modelTwist(Picture& src, Picture& dst, const std::vector<double>& n, bool isFloat)
{
    const Window from = windowOf(src), to = windowOf(dst);
    const double top = double(depthMax(dst.spec.depth)), offset = n[13];
    const double low = std::max(-offset, 0.0), high = std::min(top, top - offset);
    forEachSelectedPixel({ &src, &dst }, [&](int32_t i, int32_t j) {
        const auto sample = [&](int32_t k) { return src.number(from.at(i, j).x, from.at(i, j).y, k); };
        const model::Pixel p = { sample(0), sample(1), sample(2) };
        for (int32_t k = 0; k < 3; ++k) {
            const double* const w = n.data() + 4 * k;
            const double sum = w[0] * p[0] + w[1] * p[1] + w[2] * p[2] + w[3];
            const double scaled = std::ldexp(sum, -int32_t(n[12]));
            const double limited = scaled < low ? 0 : scaled > high ? top : std::trunc(scaled) + offset;
            dst.setNumber(to.at(i, j).x, to.at(i, j).y, k, isFloat ? sum : limited);
        }
    });
}
