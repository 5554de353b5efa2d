/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of warps and remapping: each destination pixel asks for itself whether it lies in the shape and where its
// source is.
#pragma once

#include <array>
#include <cmath>
#include <functional>

#include "reference/frame.h"

struct Point {
    double x, y;
};
using Quad = std::array<Point, 4>;

// ---- between pixels ------------------------------------------------------------------------------------------------

// The pixels that taps may come from, and their samples.
struct TapField {
    int64_t x, y, width, height;
    std::function<double(int64_t, int64_t)> read;
};

inline int32_t modelKind(int32_t interpolate, int32_t depth, const Window& size)
{
    const int64_t least = std::min(size.width, size.height);
    const int32_t kind = interpolate & 15;
    if (kind == PXK_INTER_NN || depth == PXK_DEPTH_1U || least == 1) return PXK_INTER_NN;
    return least < 4 ? PXK_INTER_LINEAR : kind;
}

// The polynomial through values at -1, 0, 1, 2, or the line through those at 0 and 1.
inline double modelBetween(const double* v, double t, int32_t kind)
{
    if (kind == PXK_INTER_LINEAR) return v[0] * (1 - t) + v[1] * t;
    return -v[0] * t * (t - 1) * (t - 2) / 6 + v[1] * (t + 1) * (t - 1) * (t - 2) / 2 - v[2] * (t + 1) * t * (t - 2) / 2
        + v[3] * (t + 1) * t * (t - 1) / 6;
}

// 8-bit samples by 16.16 positions. Linear: 6 fraction bits a row. Cubic: 4, Newton's form on 0, 1, 2, -1.
inline int64_t modelFixedBetween(const int64_t* v, int64_t t, int32_t kind, bool isSecond)
{
    const auto part = [](int64_t a, int64_t b) { return (a * b) >> 16; };
    if (kind == PXK_INTER_LINEAR)
        return isSecond ? v[0] + part(v[1] - v[0], t) : v[0] * 64 + part((v[1] - v[0]) * 64, t);
    if (t % 65536 == 0) return v[t / 65536 + 1] * (isSecond ? 1 : 16);
    const int64_t second = v[3] - 2 * v[2] + v[1], third = v[3] - 3 * v[2] + 3 * v[1] - v[0];
    const int64_t half = isSecond ? second >> 1 : second * 8;
    const int64_t sixth = isSecond ? (third * 43691) >> 18 : (third * 699050) >> 18;
    const int64_t twoSixths = isSecond ? (third * -87381) >> 18 : (third * -1398101) >> 18;
    const int64_t unit = isSecond ? 1 : 16;
    return v[1] * unit + part(t, (v[2] - v[1]) * unit + part(t - 65536, half + twoSixths + part(t, sixth)));
}

// What `between(taps, part, isSecond)` makes of the taps around a position, along the rows and then across; `unit` is a
// pixel in positions.
template <class Number, class F>
Number modelTaps(const TapField& field, Number x, Number y, Number unit, int32_t kind, const F& between)
{
    const int64_t before = kind == PXK_INTER_LINEAR ? 0 : 1;
    const auto baseOf = [&](Number at, int64_t size) {
        return std::clamp<int64_t>(int64_t(at / unit), before, size - 2 - before);
    };
    const int64_t bx = baseOf(x, field.width), by = baseOf(y, field.height);
    Number rows[4];
    for (int64_t j = 0; j < 2 + 2 * before; ++j) {
        Number taps[4];
        for (int64_t i = 0; i < 2 + 2 * before; ++i) {
            taps[i] = Number(field.read(field.x + bx - before + i, field.y + by - before + j));
        }
        rows[j] = between(taps, x - Number(bx) * unit, false);
    }
    return between(rows, y - Number(by) * unit, true);
}

inline double modelReal(const TapField& field, Point p, int32_t kind, int32_t depth)
{
    const double x =
        std::min(std::max(p.x - double(field.x), 0.0), double(field.width - 1)); // also of what is no number
    const double y = std::min(std::max(p.y - double(field.y), 0.0), double(field.height - 1));
    if (kind == PXK_INTER_NN) {
        return field.read(field.x + int64_t(std::floor(x + 0.5)), field.y + int64_t(std::floor(y + 0.5)));
    }
    const auto between = [&](const double* taps, double t, bool) { return modelBetween(taps, t, kind); };
    return std::clamp(std::nearbyint(modelTaps(field, x, y, 1.0, kind, between)), 0.0, double(depthMax(depth)));
}

inline int64_t modelFixed(const TapField& field, int64_t x, int64_t y, int32_t kind)
{
    const int64_t unit = 65536;
    const auto between = [&](const int64_t* taps, int64_t t, bool isSecond) {
        return modelFixedBetween(taps, t, kind, isSecond);
    };
    const int64_t value =
        modelTaps(field, std::clamp<int64_t>(x - field.x * unit, 0, (field.width - 1) * unit),
                  std::clamp<int64_t>(y - field.y * unit, 0, (field.height - 1) * unit), unit, kind, between);
    return kind == PXK_INTER_LINEAR ? (value + 32) >> 6 : std::clamp<int64_t>((value + 8) >> 4, 0, 255);
}

// ---- shapes and transforms -----------------------------------------------------------------------------------------

// How far a point lies inside the side k, along the axis that crosses it more steeply; below 0 outside.
inline double modelInside(const Quad& q, size_t k, Point p)
{
    const auto cross = [](Point a, Point b, Point c) { return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x); };
    const Point a = q[k], b = q[(k + 1) % 4];
    const double sense = cross(q[0], q[1], q[2]) > 0 ? 1 : -1;
    return sense * cross(a, b, p) / std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
}

inline double modelCoverage(const Quad& q, Point p)
{
    double coverage = 1;
    for (size_t k = 0; k < 4; ++k) {
        const double inside = modelInside(q, k, p);
        coverage *= inside > -1e-6 ? 1 : std::max(0.0, 1 + inside);
    }
    return coverage;
}

enum class Transform { AFFINE, BILINEAR, PERSPECTIVE };

// From (u, v) in the unit square to the quadrangle. Perspective: weights of the corners that make the lines straight.
inline Point modelForward(const Quad& q, Transform transform, double u, double v)
{
    double weights[4] = { (1 - u) * (1 - v), u * (1 - v), u * v, (1 - u) * v };
    if (transform == Transform::PERSPECTIVE) {
        const auto area = [&](size_t a, size_t b, size_t c) {
            return std::abs((q[b].x - q[a].x) * (q[c].y - q[a].y) - (q[b].y - q[a].y) * (q[c].x - q[a].x));
        };
        // A corner weighs the triangle of the other three.
        const double areas[4] = { area(1, 2, 3), area(2, 3, 0), area(3, 0, 1), area(0, 1, 2) };
        for (size_t k = 0; k < 4; ++k) weights[k] *= areas[k];
    }
    Point p = { 0, 0 };
    double sum = 0;
    for (size_t k = 0; k < 4; ++k) {
        p = { p.x + weights[k] * q[k].x, p.y + weights[k] * q[k].y };
        sum += weights[k];
    }
    return { p.x / sum, p.y / sum };
}

// The reverse, a little beyond the square too: bisection along one axis on the side of the line across.
inline double modelSolve(const Quad& q, Transform transform, Point p, bool isRow)
{
    const auto side = [&](double t) {
        const Point a = isRow ? modelForward(q, transform, 0, t) : modelForward(q, transform, t, 0);
        const Point b = isRow ? modelForward(q, transform, 1, t) : modelForward(q, transform, t, 1);
        return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    };
    double low = 0, high = 1;
    const double first = side(0), last = side(1);
    if ((first < 0) == (last < 0)) return std::abs(first) < std::abs(last) ? 0 : 1;
    const bool isRising = last > first;
    for (int32_t k = 0; k < 44; ++k) {
        const double middle = (low + high) / 2;
        ((side(middle) < 0) == isRising ? low : high) = middle;
    }
    return (low + high) / 2;
}

// ---- the operations ------------------------------------------------------------------------------------------------

struct ModelWarp {
    Transform transform;
    Quad quad; // affine: the region's, by the coefficients
    int32_t warpFlag, interpolate;
    std::array<double, 6> coeffs; // affine only
};

// The affine inverse of c, as it is and in 65536ths.
inline Point modelInverse(const std::array<double, 6>& c, double x, double y, bool isFixed)
{
    const double d = c[0] * c[4] - c[1] * c[3];
    std::array<double, 6> i = { c[4] / d,  -c[1] / d, (c[1] * c[5] - c[4] * c[2]) / d,
                                -c[3] / d, c[0] / d,  (c[3] * c[2] - c[0] * c[5]) / d };
    for (double& value : i) value = isFixed ? std::nearbyint(value * 65536) : value;
    return { i[0] * x + i[1] * y + i[2], i[3] * x + i[4] * y + i[5] };
}

inline void modelWarp(Picture& src, Picture& dst, const ModelWarp& warp)
{
    const Window region = windowOf(src), target = windowOf(dst);
    const Window whole = { 0, 0, src.spec.width, src.spec.height, 0, 0 };
    const Window size = warp.warpFlag == 0 ? region : whole;
    const Window& rect = warp.warpFlag == 0 ? region : target;
    const int32_t depth = src.spec.depth, kind = modelKind(warp.interpolate, depth, size);
    const bool isAffine = warp.transform == Transform::AFFINE;
    const bool isFixed = isAffine && (kind == PXK_INTER_NN || depth == PXK_DEPTH_8U);
    const double w = double(rect.width - 1), h = double(rect.height - 1);
    const auto placeOf = [&](Point p) {
        if (isAffine) return modelInverse(warp.coeffs, p.x, p.y, isFixed);
        if (warp.warpFlag == 0) {
            return Point { double(rect.x) + w * modelSolve(warp.quad, warp.transform, p, false),
                           double(rect.y) + h * modelSolve(warp.quad, warp.transform, p, true) };
        }
        return modelForward(warp.quad, warp.transform, (p.x - double(rect.x)) / w, (p.y - double(rect.y)) / h);
    };
    const auto sample = [&](Point p, int32_t c) {
        const TapField field = { size.x, size.y, size.width, size.height,
                                 [&](int64_t x, int64_t y) { return src.number(int32_t(x), int32_t(y), c); } };
        if (!isFixed) return modelReal(field, p, kind, depth);
        if (kind != PXK_INTER_NN) return double(modelFixed(field, int64_t(p.x), int64_t(p.y), kind));
        return modelReal(field, { std::floor((p.x + 32768) / 65536), std::floor((p.y + 32768) / 65536) }, kind, depth);
    };
    const bool isSmooth = (warp.interpolate & PXK_WARP_SMOOTH_EDGE) != 0 && depth != PXK_DEPTH_1U;
    forEachSelectedPixel({ &dst }, [&](int32_t i, int32_t j) {
        const Point p = { double(target.x + i), double(target.y + j) };
        const double weight = warp.warpFlag == 0 ? modelCoverage(warp.quad, p) : 1;
        if (weight == 0 || (weight < 1 && !isSmooth)) return;
        const Point from = placeOf(p);
        for (int32_t c = 0; c < target.channels; ++c) {
            const double made = sample(from, region.firstChannel + c);
            const Place at = target.at(i, j, c);
            at.setNumber(weight == 1 ? made : std::nearbyint(at.number() + (made - at.number()) * weight));
        }
    });
}

inline void modelRemap(Picture& src, const Picture& xMap, const Picture& yMap, Picture& dst, int32_t interpolate)
{
    const Window region = windowOf(src), xs = windowOf(xMap), ys = windowOf(yMap), target = windowOf(dst);
    const int32_t kind = modelKind(interpolate, src.spec.depth, region);
    forEachSelectedPixel({ &dst }, [&](int32_t i, int32_t j) {
        if (i >= std::min(xs.width, ys.width) || j >= std::min(xs.height, ys.height)) return;
        Point p = { xs.at(i, j).number(), ys.at(i, j).number() };
        const bool isInside = p.x >= double(region.x) && p.x <= double(region.x + region.width - 1)
            && p.y >= double(region.y) && p.y <= double(region.y + region.height - 1);
        if (!isInside) return;
        if (kind == PXK_INTER_NN) p = { std::nearbyint(p.x), std::nearbyint(p.y) };
        for (int32_t c = 0; c < target.channels; ++c) {
            const TapField field = { region.x, region.y, region.width, region.height, [&](int64_t x, int64_t y) {
                                        return src.number(int32_t(x), int32_t(y), region.firstChannel + c);
                                    } };
            target.at(i, j, c).setNumber(modelReal(field, p, kind, src.spec.depth));
        }
    });
}
