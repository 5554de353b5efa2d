/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of the colour model conversions and of the colour twist, one pixel at a time. Integers are formed in 64
// bits, so no sum is ever cut.
#pragma once

#include <array>
#include <cmath>

#include "reference/frame.h"

namespace model {

using Pixel = std::array<double, 3>;
using Whole = std::array<int64_t, 3>;

inline int64_t limited(int64_t v, int64_t low, int64_t high)
{
    return v < low ? low : v > high ? high : v;
}
inline double cut(double v, double low)
{
    return std::trunc(std::min(std::max(v, low), 2147483647.0));
}
inline Pixel cut(Pixel p, double low)
{
    return { cut(p[0], low), cut(p[1], low), cut(p[2], low) };
}
inline Pixel pixelOf(Whole w)
{
    return { double(w[0]), double(w[1]), double(w[2]) };
}
inline Pixel times(const double (&m)[9], Pixel p)
{
    Pixel q;
    for (size_t k = 0; k < 3; ++k) q[k] = m[3 * k] * p[0] + m[3 * k + 1] * p[1] + m[3 * k + 2] * p[2];
    return q;
}
inline bool isShort(int32_t depth)
{
    return depth == PXK_DEPTH_8U || depth == PXK_DEPTH_16U;
}
inline Whole whole(Pixel p)
{
    return { int64_t(p[0]), int64_t(p[1]), int64_t(p[2]) };
}

inline Pixel toYuv(int32_t depth, Pixel p)
{
    const Pixel q = times({ 0.299, 0.587, 0.114, -0.146, -0.288, 0.434, 0.617, -0.517, -0.1 }, p);
    if (!isShort(depth)) return depth == PXK_DEPTH_32F ? q : cut(q, -2147483648.0);
    const auto [r, g, b] = whole(p);
    const int64_t h = depth == PXK_DEPTH_8U ? 127 : 32767, top = depthMax(depth);
    return pixelOf({ limited((9798 * r + 19235 * g + 3736 * b) >> 15, 0, top),
                     ((-4784 * r - 9437 * g + 14221 * b) >> 15) + h,
                     limited(((20218 * r - 16941 * g - 3277 * b) >> 15) + h, 0, top) });
}

inline Pixel fromYuv(int32_t depth, Pixel p)
{
    const Pixel q =
        times({ 1, -0.0009400501, 1.135920183, 1, -0.3959190767, -0.5782887929, 1, 2.041101518, -0.001619414 }, p);
    if (!isShort(depth)) return depth == PXK_DEPTH_32F ? q : cut(q, 0);
    const int64_t h = depth == PXK_DEPTH_8U ? 127 : 32767, top = depthMax(depth);
    const int64_t y = int64_t(p[0]), u = int64_t(p[1]) - h, v = int64_t(p[2]) - h;
    return pixelOf({ limited(y + ((37222 * v - 31 * u) >> 15), 0, top),
                     limited(y + ((-12974 * u - 18949 * v) >> 15), 0, top),
                     limited(y + ((66883 * u - 53 * v) >> 15), 0, top) });
}

inline Pixel toYcrcb(int32_t depth, Pixel p)
{
    const auto [r, g, b] = whole(p);
    if (depth == PXK_DEPTH_8U) {
        const int64_t y = (4898 * r + 9617 * g + 1867 * b + 8192) >> 14;
        return pixelOf({ y, ((b - y) * 9246 + 2097152) >> 14, ((r - y) * 11686 + 2097152) >> 14 });
    }
    if (depth == PXK_DEPTH_16U) {
        return pixelOf({ (4899 * r + 9617 * g + 1868 * b + 8192) >> 14,
                         (0x20000000 - 2765 * r - 5427 * g + 8192 * b) >> 14,
                         (8192 * r - 6860 * g + 0x20000000 - 1332 * b) >> 14 });
    }
    Pixel q = times({ 0.299, 0.587, 0.114, -0.1687359, -0.331264, 0.5, 0.5, -0.41868759, -0.08131241 }, p);
    const double half = depth == PXK_DEPTH_32F ? 0.5 : 1073741823.0;
    q[1] += half;
    q[2] += half;
    return depth == PXK_DEPTH_32F ? q : cut(q, -2147483648.0);
}

inline Pixel fromYcrcb(int32_t depth, Pixel p)
{
    if (isShort(depth)) {
        const auto [y, cb, cr] = whole(p);
        const bool is8 = depth == PXK_DEPTH_8U;
        const int64_t top = depthMax(depth);
        return pixelOf({ limited(y + ((22970 * cr - (is8 ? 2928675 : 752669475)) >> 14), 0, top),
                         limited(y - ((5638 * cb + 11700 * cr - (is8 ? 2210595 : 568122915)) >> 14), 0, top),
                         limited(y + ((29032 * cb - (is8 ? 3701580 : 951306060)) >> 14), 0, top) });
    }
    const double y = p[0], cb = p[1], cr = p[2];
    if (depth == PXK_DEPTH_32F) {
        return { std::max(y + 1.40199995 * cr - 0.70099998, 0.0),
                 std::max(y - 0.3441363 * cb - 0.7141363 * cr + 0.5291363, 0.0),
                 std::max(y + 1.77199996 * cb - 0.88599998, 0.0) };
    }
    return cut(Pixel { y + 1.402 * cr - 1505386036.547 + 0.5,
                       y - 0.3441362862 * cb - 0.7141362862 * cr + 1136311521.6488118 + 0.5,
                       y + 1.772 * cb - 1902670511.242 + 0.5 },
               0);
}

inline Pixel toXyz(int32_t depth, Pixel p)
{
    const Pixel q =
        times({ 0.412453, 0.35758, 0.180423, 0.212671, 0.71516, 0.072169, 0.019334, 0.119193, 0.950227 }, p);
    if (!isShort(depth)) return depth == PXK_DEPTH_32F ? q : cut(q, 0);
    const auto [r, g, b] = whole(p);
    return pixelOf({ (6758 * r + 5859 * g + 2956 * b + 8192) >> 14, (3484 * r + 11717 * g + 1182 * b + 8192) >> 14,
                     limited((317 * r + 1953 * g + 15569 * b + 8192) >> 14, 0, depthMax(depth)) });
}

inline Pixel fromXyz(int32_t depth, Pixel p)
{
    const Pixel q =
        times({ 3.240479, -1.53715, -0.498535, -0.969256, 1.875992, 0.041556, 0.055648, -0.204043, 1.057311 }, p);
    if (!isShort(depth)) return depth == PXK_DEPTH_32F ? q : cut(q, 0);
    const auto [x, y, z] = whole(p);
    const int64_t top = depthMax(depth);
    return pixelOf({ limited((53092 * x - 25185 * y - 8168 * z + 8192) >> 14, 0, top),
                     limited((-15880 * x + 30736 * y + 681 * z + 8192) >> 14, 0, top),
                     limited((912 * x - 3343 * y + 17323 * z + 8192) >> 14, 0, top) });
}

inline Pixel toLuv(int32_t, Pixel p)
{
    const auto [x, y, z] = toXyz(PXK_DEPTH_32F, p);
    if (y <= 0.00329f) return { 0, 0, 0 };
    const double l = 116 * std::pow(y * 3.0395136778, 0.3333333433) - 16, d = 1 / (x + 15 * y + 3 * z);
    return { l, (4 * d * x - 0.19783001) * 13 * l, (9 * d * y - 0.46831998) * 13 * l };
}

inline Pixel fromLuv(int32_t, Pixel p)
{
    const double y = std::pow((16 + p[0]) * 0.00862069, 3) * 0.329;
    const double q = 1 / (13 * (std::fabs(p[0]) < 0.00001 ? 0.00001 : p[0]));
    const double a = p[1] * q + 0.19783001, b = p[2] * q + 0.46831998;
    const double x = 9 / (4 * b) * y * a, z = (4 / (3 * a) - 0.33333299) * x - 5 * y;
    Pixel rgb = fromXyz(PXK_DEPTH_32F, { x, y, z });
    for (double& v : rgb) v = std::max(v, 0.0);
    return rgb;
}

inline double hueOf(int32_t depth, Pixel p, double maxc, double dc)
{
    const auto [r, g, b] = p;
    double hue = r == maxc ? (g - b) * 60 / dc : g == maxc ? (b - r) * 60 / dc + 120 : (r - g) * 60 / dc + 240;
    if (hue < 0) hue += 360;
    return depth == PXK_DEPTH_8U ? double(int64_t(hue) >> 1) : std::trunc(hue);
}

inline Pixel toHsv(int32_t depth, Pixel p)
{
    const double maxc = std::max({ p[0], p[1], p[2] }), dc = maxc - std::min({ p[0], p[1], p[2] });
    if (dc == 0 || maxc <= 0) return { 0, 0, maxc };
    const double top = double(depthMax(depth));
    const double s = depth == PXK_DEPTH_8U ? double(int64_t(dc) * 255 / int64_t(maxc)) : cut(top / maxc * dc, 0);
    return { hueOf(depth, p, maxc, dc), s, maxc };
}

inline Pixel toHls(int32_t depth, Pixel p)
{
    const double maxc = std::max({ p[0], p[1], p[2] }), minc = std::min({ p[0], p[1], p[2] });
    const double dc = maxc - minc, sum = maxc + minc, top = double(depthMax(depth)), l = std::floor(sum / 2);
    const double base = sum <= top ? sum : 2 * top - sum;
    if (dc == 0 || base <= 0) return { 0, l, 0 };
    return { hueOf(depth, p, maxc, dc), l, cut(dc * top / base, 0) };
}

inline Pixel fromHsv(int32_t depth, Pixel p)
{
    const auto [hue, s, v] = p;
    if (s == 0) return { v, v, v };
    int64_t sector;
    double low, q, t;
    if (depth == PXK_DEPTH_8U) {
        int64_t f = int64_t(hue) * 2 % 360;
        for (sector = 0; f >= 60; f -= 60) ++sector;
        const int64_t ss = int64_t(s) * int64_t(v) >> 8;
        low = v - double(ss);
        q = v - double((ss * 34 * f) >> 11);
        t = v - double(((60 - f) * 34 * ss) >> 11);
    } else {
        const double top = double(depthMax(depth)), scale = depth == PXK_DEPTH_16U ? 1.5259e-05 : 5e-10;
        const double turned = std::fmod(std::fmod(hue, 360) + 360, 360) * 0.0166666667, f = turned - std::floor(turned);
        sector = int64_t(turned);
        low = cut((top - s) * scale * v, -2147483648.0);
        q = cut((top - f * s) * scale * v, -2147483648.0);
        t = cut((top - (1 - f) * s) * scale * v, -2147483648.0);
    }
    const Pixel rgb[6] = { { v, t, low }, { q, v, low }, { low, v, t }, { low, q, v }, { t, low, v }, { v, low, q } };
    return rgb[sector];
}

inline Pixel fromHls(int32_t depth, Pixel p)
{
    const auto [hue, l, s] = p;
    if (s == 0) return { l, l, l };
    const bool is8 = depth == PXK_DEPTH_8U;
    const double top = double(depthMax(depth)), scale = depth == PXK_DEPTH_16U ? 1.5259e-05 : 5e-10;
    const double m = is8 ? double((int64_t(l) * 258 * int64_t(s)) >> 16) : l * scale * s;
    const double m2 = l <= std::floor(top / 2) ? l + m : l + s - m, m1 = 2 * l - m2;
    const auto part = [&](double a) {
        return is8 ? double((int64_t(m2 - m1) * 137 * int64_t(a)) >> 13) : (m2 - m1) * a * 0.0166666667;
    };
    const auto channel = [&](double a) {
        if (a < 0) a += 360;
        if (a > 360) a -= 360;
        const double c = a < 60 ? m1 + part(a) : a < 180 ? m2 : a < 240 ? m1 + part(240 - a) : m1;
        return is8 ? c : cut(c, 0);
    };
    const double h = is8 ? std::fmod(hue * 2, 360) : std::fmod(std::fmod(hue, 360) + 360, 360);
    return { channel(h + 120), channel(h), channel(h - 120) };
}

} // namespace model
