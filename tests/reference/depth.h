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
            store(from.at(i, j, c), to.at(i, isTurned ? lastRow - j : j, c));
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

// Ends meet ends. A wider range is a multiple of the narrower one; the other way, numbers about the middle of the range
// lose their part in 2^n, n the bits that are left, before they are shifted.
inline int64_t scaledSample(int32_t fromDepth, int32_t toDepth, int64_t x)
{
    const int32_t from = depthBits(fromDepth), to = depthBits(toDepth);
    const int64_t fromZero = x - depthMin(fromDepth), one = 1;
    if (from <= to) return fromZero * (((one << to) - 1) / ((one << from) - 1)) + depthMin(toDepth);
    const int64_t v = fromZero - (one << (from - 1));
    return shiftedRight(v - shiftedRight(v, to), from - to) + depthMin(toDepth) + (one << (to - 1));
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
    if (!(v >= minVal) || !std::isfinite(maxVal - minVal)) return { low, low };
    if (v > maxVal) return { high, high };
    const long double exact = low + ((long double)v - minVal) * (high - low) / ((long double)maxVal - minVal);
    const long double doubt = std::ldexp((long double)(high - low), -50);
    const auto rounded = [&](long double x) { return std::min(std::max(double(std::nearbyint(x)), low), high); };
    return { rounded(exact - doubt), rounded(exact + doubt) };
}

inline Interval scaledToFloat(int32_t depth, double x, double minVal, double maxVal)
{
    const long double low = depthMin(depth), high = depthMax(depth);
    if (x == low || x == high) return x == low ? Interval { minVal, minVal } : Interval { maxVal, maxVal };
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
