/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of the conversions between depths.
#pragma once

#include <cmath>

#include "reference/frame.h"

// Calls store(at) for each selected sample of a source and a destination, whose rows may run from the last one upward.
// Masks are read in the order of the source's rows.
template <class F> void forEachConverted(Picture& src, Picture& dst, bool isTurned, F&& store)
{
    const Window from = windowOf(src), to = windowOf(dst);
    const int64_t lastRow = commonSize({ &src, &dst }).height - 1;
    forEachSelectedPixel({ &src, &dst }, [&](int32_t i, int32_t j) {
        for (int32_t c = 0; c < from.channels; ++c) {
            const int64_t y = isTurned ? lastRow - j : j;
            store(Place { &src, int32_t(from.x) + i, int32_t(from.y) + j, from.firstChannel + c },
                  Place { &dst, int32_t(to.x) + i, int32_t(to.y + y), to.firstChannel + c });
        }
    });
}

inline double convertedSample(double x, int32_t toDepth)
{
    if (toDepth == PXK_DEPTH_1U) return x > 0 ? 1 : 0;
    return std::min(std::max(x, double(depthMin(toDepth))), double(depthMax(toDepth)));
}

inline void modelConvert(Picture& src, Picture& dst)
{
    const bool isTurned = src.header.origin != dst.header.origin;
    forEachConverted(src, dst, isTurned, [](const Place& s, const Place& d) {
        d.setNumber(convertedSample(s.number(), d.picture->spec.depth));
    });
}

inline int64_t shiftedRight(int64_t x, int32_t by)
{
    return int64_t(std::floor(double(x) / double(int64_t(1) << by)));
}

// One row for each pair of depths; all numbers are exact in 64 bits.
inline int64_t scaledSample(int32_t fromDepth, int32_t toDepth, int64_t x)
{
    const auto is = [&](int32_t from, int32_t to) { return fromDepth == from && toDepth == to; };
    const auto narrowed = [](int64_t v, int32_t pull, int32_t by) {
        return shiftedRight(v - shiftedRight(v, pull), by);
    };
    if (is(PXK_DEPTH_8S, PXK_DEPTH_8U)) return (x + 128) & 0xFF;
    if (is(PXK_DEPTH_8U, PXK_DEPTH_8S)) return int8_t((x + 128) & 0xFF);
    if (is(PXK_DEPTH_8S, PXK_DEPTH_16U)) return 257 * x + 32896;
    if (is(PXK_DEPTH_8S, PXK_DEPTH_16S)) return 257 * x + 128;
    if (is(PXK_DEPTH_8U, PXK_DEPTH_16U)) return 257 * x;
    if (is(PXK_DEPTH_8U, PXK_DEPTH_16S)) return 257 * x - 32768;
    if (is(PXK_DEPTH_8S, PXK_DEPTH_32S)) return 16843009 * x + 8421504;
    if (is(PXK_DEPTH_8U, PXK_DEPTH_32S)) return 16843009 * (x - 128) + 8421504;
    if (is(PXK_DEPTH_16S, PXK_DEPTH_16U)) return x + 32768;
    if (is(PXK_DEPTH_16U, PXK_DEPTH_16S)) return x - 32768;
    if (is(PXK_DEPTH_16S, PXK_DEPTH_32S)) return 65537 * x + 32768;
    if (is(PXK_DEPTH_16U, PXK_DEPTH_32S)) return 65537 * x - 0x80000000LL;
    if (is(PXK_DEPTH_16S, PXK_DEPTH_8S)) return narrowed(x, 8, 8);
    if (is(PXK_DEPTH_16S, PXK_DEPTH_8U)) return narrowed(x, 8, 8) + 128;
    if (is(PXK_DEPTH_16U, PXK_DEPTH_8S)) return narrowed(x - 32768, 8, 8);
    if (is(PXK_DEPTH_16U, PXK_DEPTH_8U)) return narrowed(x - 32768, 8, 8) + 128;
    if (is(PXK_DEPTH_32S, PXK_DEPTH_8S)) return narrowed(x, 8, 24);
    if (is(PXK_DEPTH_32S, PXK_DEPTH_8U)) return narrowed(x, 8, 24) + 128;
    if (is(PXK_DEPTH_32S, PXK_DEPTH_16S)) return narrowed(x, 16, 16);
    return narrowed(x, 16, 16) + 32768; // 32S to 16U
}

inline void modelScale(Picture& src, Picture& dst)
{
    forEachConverted(src, dst, false, [&](const Place& s, const Place& d) {
        d.setNumber(double(scaledSample(src.spec.depth, dst.spec.depth, int64_t(s.number()))));
    });
}

// Both ends of an interval in which the exact result rounds, or lies: double arithmetic may decide a near tie, or the
// last place of a float, either way.
struct Interval {
    double low, high;
};

inline Interval scaledToInteger(int32_t depth, double v, double minVal, double maxVal)
{
    const double low = double(depthMin(depth)), high = double(depthMax(depth));
    if (!(v >= minVal)) return { low, low };
    if (v > maxVal) return { high, high };
    const long double exact = low + ((long double)v - minVal) * (high - low) / ((long double)maxVal - minVal);
    const long double doubt = std::ldexp((long double)(high - low), -50);
    const auto rounded = [&](long double x) { return std::min(std::max(double(std::nearbyint(x)), low), high); };
    return { rounded(exact - doubt), rounded(exact + doubt) };
}

inline Interval scaledToFloat(int32_t depth, double x, double minVal, double maxVal)
{
    const long double low = depthMin(depth), high = depthMax(depth);
    const long double exact = minVal + ((long double)maxVal - minVal) * (x - low) / (high - low);
    const long double doubt = std::ldexp(std::max(std::fabs(minVal), std::fabs(maxVal)), -50)
        + std::ldexp(std::fabs(exact), -24) + std::ldexp(1.0L, -150);
    return { double(exact - doubt), double(exact + doubt) };
}

// Takes over what `got` holds where it lies in the interval.
inline void modelScaleFP(Picture& src, Picture& dst, Picture& got, double minVal, double maxVal)
{
    forEachConverted(src, dst, false, [&](const Place& s, const Place& d) {
        const bool isToFloat = isFloatDepth(d.picture->spec.depth);
        const Interval want = isToFloat ? scaledToFloat(src.spec.depth, s.number(), minVal, maxVal)
                                        : scaledToInteger(dst.spec.depth, s.number(), minVal, maxVal);
        const double number = got.number(d.x, d.y, d.c);
        if (number >= want.low && number <= want.high) return d.setBits(got.bits(d.x, d.y, d.c));
        d.setNumber(isToFloat ? (want.low + want.high) / 2 : want.low);
    });
}

inline void modelBitonalToGray(Picture& src, Picture& dst, int32_t zero, int32_t one)
{
    forEachConverted(src, dst, false, [&](const Place& s, const Place& d) { d.setNumber(s.bits() == 1 ? one : zero); });
}
