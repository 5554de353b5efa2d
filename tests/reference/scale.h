/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of changes of scale and mirrors: each destination sample from its own few source samples.
#pragma once

#include <cmath>
#include <functional>

#include "reference/frame.h"

// One axis: `extent` source pixels, made into to / from as many.
struct ScaleAxis {
    int64_t extent, to, from;
    double ratio() const { return double(from) / double(to); }
};

inline int64_t modelFloor(double v)
{
    return int64_t(std::nearbyint(v + 0.00001 - 0.5));
}

inline int32_t modelCount(const ScaleAxis& axis, int64_t most)
{
    return int32_t(std::max<int64_t>(1, std::min(most, modelFloor(double(axis.extent) / axis.ratio()))));
}

inline double modelPosition(const ScaleAxis& axis, int64_t i)
{
    const double scaled = double(axis.extent) / axis.ratio();
    if (axis.to == axis.from) return double(i);
    return scaled <= 1 ? 0 : double(i) * (double(axis.extent - 1) / (scaled - 1));
}

// Samples of one channel, counted from the region's first pixel.
using ScaleSource = std::function<double(int64_t x, int64_t y)>;

// ---- interpolations ------------------------------------------------------------------------------------------------

inline double modelNearest(const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j)
{
    const auto index = [](const ScaleAxis& axis, int64_t k) {
        return std::min(modelFloor(modelPosition(axis, k) + 0.5), axis.extent - 1);
    };
    return read(index(x, i), index(y, j));
}

inline double modelLinear(const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j,
                          bool isByte)
{
    const auto between = [](const ScaleAxis& axis, int64_t k, int32_t shift,
                            const std::function<int64_t(int64_t)>& at) {
        const double p = modelPosition(axis, k);
        const int64_t below = std::min(modelFloor(p), axis.extent - 2);
        const bool isLast = modelFloor(p) > below;
        const int64_t w = isLast ? 16384 : std::max<int64_t>(0, modelFloor((p - double(below)) * 16384));
        return (at(below) * (16384 - w) + at(below + 1) * w) >> shift;
    };
    return double(between(y, j, isByte ? 20 : 28, [&](int64_t row) {
        return between(x, i, isByte ? 8 : 0, [&](int64_t column) { return int64_t(read(column, row)); });
    }));
}

inline double modelCubic(const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j,
                         double most)
{
    const auto through = [](const ScaleAxis& axis, int64_t k, const std::function<float(int64_t)>& at) {
        const int64_t last = axis.extent - 1, below = modelFloor(modelPosition(axis, k));
        const int64_t base = below >= last ? last - 2 : below == last - 1 ? last - 2 : below == 0 ? 1 : below;
        const volatile float f = below >= last ? 2.0f : float(modelPosition(axis, k) - double(base));
        const float p0 = at(base - 1), p1 = at(base), p2 = at(base + 1), p3 = at(base + 2);
        const volatile float u = f + 1, second = u * 0.5f * f, third = second * (f - 1), sixth = third * 0.33333334f;
        const float d1 = p1 - p0, d2 = (p2 - p1) - (p1 - p0), d3 = p3 - 2 * p2 + p1 - d2;
        return p0 + u * d1 + second * d2 + sixth * d3;
    };
    const float value = through(
        y, j, [&](int64_t row) { return through(x, i, [&](int64_t column) { return float(read(column, row)); }); });
    return std::min(std::max(double(modelFloor(value)), 0.0), most);
}

// The nearest integer of the mean, from the parts of pixels that the box covers.
inline double modelMean(const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j)
{
    const auto sum = [](const ScaleAxis& axis, int64_t k, const std::function<int64_t(int64_t)>& at) {
        int64_t total = 0;
        for (int64_t n = k * axis.from / axis.to; n < axis.extent && n * axis.to < (k + 1) * axis.from; ++n) {
            const int64_t end = n == axis.extent - 1 ? INT64_MAX : (n + 1) * axis.to;
            total += at(n) * (std::min(end, (k + 1) * axis.from) - std::max(n * axis.to, k * axis.from));
        }
        return total;
    };
    const int64_t parts = x.from * y.from,
                  total = sum(y, j, [&](int64_t row) {
                      return sum(x, i, [&](int64_t column) { return int64_t(read(column, row)); });
                  });
    return double((2 * total + parts) / (2 * parts));
}

// ---- images --------------------------------------------------------------------------------------------------------

using ScaleModel = std::function<double(const ScaleSource&, const ScaleAxis&, const ScaleAxis&, int64_t, int64_t)>;

// The region of an image, without alpha and in memory, made anew by the model in its own size, at most that of `most`.
inline PicturePtr scaledPicture(const Picture& src, const Window& most, const std::vector<double>& n,
                                const ScaleModel& model)
{
    const Window from = windowOf(src);
    const ScaleAxis x = { from.width, int64_t(n[0]), int64_t(n[1]) }, y = { from.height, int64_t(n[2]), int64_t(n[3]) };
    const PicturePtr scaled = Picture::make(
        PictureSpec { src.spec.depth, modelCount(x, most.width), modelCount(y, most.height), from.channels });
    for (int32_t c = 0; c < from.channels; ++c) {
        const ScaleSource read = [&](int64_t u, int64_t v) { return from.at(u, v, c).number(); };
        for (int32_t j = 0; j < scaled->spec.height; ++j) {
            for (int32_t i = 0; i < scaled->spec.width; ++i) scaled->setNumber(i, j, c, model(read, x, y, i, j));
        }
    }
    return scaled;
}

inline void modelScale(const Picture& src, Picture& dst, const std::vector<double>& n, const ScaleModel& model)
{
    const PicturePtr scaled = scaledPicture(src, windowOf(dst), n, model);
    if (src.mask != nullptr) scaled->setMask(scaledPicture(*src.mask, windowOf(dst), n, modelNearest));
    modelCopy(*scaled, dst);
}

inline void modelResize(const Picture& src, Picture& dst, const std::vector<double>& n)
{
    const Window from = windowOf(src);
    const int64_t side = std::min(from.width, from.height);
    const int32_t bits = depthBits(src.spec.depth), inter = bits == 1 || side < 2 ? 0 : int32_t(n[4]);
    if (inter == PXK_INTER_NN) return modelScale(src, dst, n, modelNearest);
    modelScale(src, dst, n, [=](const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j) {
        const bool isCubic = inter == PXK_INTER_CUBIC && side >= 4;
        return isCubic ? modelCubic(read, x, y, i, j, bits == 8 ? 255 : 65535)
                       : modelLinear(read, x, y, i, j, bits == 8);
    });
}

inline void modelDecimate(const Picture& src, Picture& dst, const std::vector<double>& n)
{
    const Window from = windowOf(src);
    const bool isExactX = int64_t(n[1]) % int64_t(n[0]) == 0, isExactY = int64_t(n[3]) % int64_t(n[2]) == 0;
    const bool isNothing = double(from.width) * n[0] < n[1] || double(from.height) * n[2] < n[3];
    const bool isNearest = n[4] == PXK_INTER_NN || depthBits(src.spec.depth) == 1 || from.width < 4 || from.height < 4
        || isNothing || (isExactX && isExactY && n[4] != PXK_INTER_SUPER);
    if (!isNearest && n[4] != PXK_INTER_SUPER) return modelResize(src, dst, n);
    if (!isNearest) return modelScale(src, dst, n, modelMean);
    modelScale(src, dst, n, [=](const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j) {
        const auto index = [](const ScaleAxis& axis, int64_t k, bool isExact) {
            return std::min(modelFloor((isExact ? 0 : 0.5) + double(k) * axis.ratio()), axis.extent - 1);
        };
        return read(index(x, i, isExactX), index(y, j, isExactY));
    });
}

// Each pixel the mean of n[5] by n[6] pixels, then decimated.
inline void modelDecimateExt(const Picture& src, Picture& dst, const std::vector<double>& n)
{
    const int64_t width = std::max<int64_t>(1, int64_t(n[5])), height = std::max<int64_t>(1, int64_t(n[6]));
    if (depthBits(src.spec.depth) == 1) return modelDecimate(src, dst, n);
    const auto blur = [=](const ScaleSource& read, const ScaleAxis& x, const ScaleAxis& y, int64_t i, int64_t j) {
        int64_t sum = 0;
        for (int64_t v = j - height / 2; v < j - height / 2 + height; ++v) {
            for (int64_t u = i - width / 2; u < i - width / 2 + width; ++u) {
                sum += int64_t(read(std::clamp<int64_t>(u, 0, x.extent - 1), std::clamp<int64_t>(v, 0, y.extent - 1)));
            }
        }
        return double((2 * sum + width * height) / (2 * width * height));
    };
    const PicturePtr blurred = scaledPicture(src, windowOf(src), { 1, 1, 1, 1 }, blur);
    if (src.mask != nullptr) blurred->setMask(src.mask);
    modelDecimate(*blurred, dst, n);
}

inline void modelMirror(Picture& old, Picture& dst, int32_t flipAxis)
{
    const Window from = windowOf(old);
    const Window to = windowOf(dst); // a smaller mask does not move the picture
    forEachSelected({ &old, &dst }, [&](const Place* at) {
        Place source = at[0];
        if (flipAxis != 0) source.x = int32_t(2 * from.x + std::min(from.width, to.width) - 1 - source.x);
        if (flipAxis != 1) source.y = int32_t(2 * from.y + std::min(from.height, to.height) - 1 - source.y);
        at[1].setBits(source.bits());
    });
}
