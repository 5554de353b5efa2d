/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of the neighbourhood filters: every window is gathered sample by sample through the border rule.
#pragma once

#include <cmath>
#include <functional>

#include "reference/border.h"
#include "reference/frame.h"

struct WindowShape {
    int32_t nCols, nRows, anchorX, anchorY; // the window's pixel that the result belongs to
};

// What the source holds at (x, y) of channel c, at any coordinate.
using Reader = std::function<double(int64_t, int64_t, int32_t)>;

inline Reader borderReader(const Picture& source)
{
    return [&source](int64_t x, int64_t y, int32_t c) {
        return numberOf(source.spec.depth, modelBorderBits(source, x, y, c));
    };
}

// Rows of the window from the top, each from the left.
inline std::vector<double> gather(const Reader& read, const WindowShape& shape, const Place& at)
{
    std::vector<double> samples;
    for (int32_t v = 0; v < shape.nRows; ++v) {
        for (int32_t u = 0; u < shape.nCols; ++u) {
            samples.push_back(read(int64_t(at.x) - shape.anchorX + u, int64_t(at.y) - shape.anchorY + v, at.c));
        }
    }
    return samples;
}

// Writes result(at) to every selected sample of dst, reading `old`, a copy of the source.
template <class F> void modelFilter(Picture& old, Picture& dst, const F& result)
{
    forEachSelected({ &old, &dst }, [&](const Place* at) { at[1].setNumber(result(at[0])); });
}

// ---- rank ----------------------------------------------------------------------------------------------------------

enum class Rank { LARGEST, SMALLEST, MIDDLE };

inline double modelRank(std::vector<double> samples, Rank rank, int32_t depth)
{
    const size_t n = samples.size();
    if (rank == Rank::LARGEST) return *std::max_element(samples.begin(), samples.end());
    if (rank == Rank::SMALLEST) return *std::min_element(samples.begin(), samples.end());
    if (depth == PXK_DEPTH_1U) return 2 * size_t(std::count(samples.begin(), samples.end(), 1.0)) >= n;
    std::sort(samples.begin(), samples.end());
    return samples[n / 2];
}

// ---- morphology ----------------------------------------------------------------------------------------------------

// The region of an image with a ring of some samples round it; everything farther out repeats the ring.
inline Reader ringReader(const Reader& read, const Window& region, CommonSize size, int32_t ring)
{
    return [=](int64_t x, int64_t y, int32_t c) {
        const int64_t left = region.x - ring, right = region.x + size.width - 1 + ring;
        const int64_t top = region.y - ring, bottom = region.y + size.height - 1 + ring;
        return read(std::min(std::max(x, left), right), std::min(std::max(y, top), bottom), c);
    };
}

// ---- convolution ---------------------------------------------------------------------------------------------------

struct ModelKernel {
    WindowShape shape; // anchors as the caller gave them
    std::vector<double> values;
    int32_t shift = 0;
};

// Both ends of what a result may be: sums of single precision come within its rounding.
struct Range {
    double low, high;
};

// Sum over u, v of K[v][u] src(x + ax - u, y + ay - v), or of the magnitudes.
inline double modelSum(const Reader& read, const ModelKernel& kernel, const Place& at, bool isMagnitude = false)
{
    double sum = 0;
    for (int32_t v = 0; v < kernel.shape.nRows; ++v) {
        for (int32_t u = 0; u < kernel.shape.nCols; ++u) {
            const double term = kernel.values[size_t(v * kernel.shape.nCols + u)]
                * read(int64_t(at.x) + kernel.shape.anchorX - u, int64_t(at.y) + kernel.shape.anchorY - v, at.c);
            sum += isMagnitude ? std::fabs(term) : term;
        }
    }
    return sum;
}

// Can no sum over samples of the depth reach `limit` or its negative?
inline bool sumsStayBelow(double limit, const ModelKernel& kernel, int32_t depth)
{
    const double low = depth < 0 ? -std::exp2(depthBits(depth) - 1) : 0, high = low + std::exp2(depthBits(depth)) - 1;
    double least = 0, most = 0;
    for (const double value : kernel.values) {
        least += std::min(value * low, value * high);
        most += std::max(value * low, value * high);
    }
    return least > -limit - 1 && most < limit;
}

// Exact where coefficients have 16 bits and no sum can leave 32.
inline bool isExactSum(const ModelKernel& kernel, int32_t depth)
{
    if (depth == PXK_DEPTH_32S || depth == PXK_DEPTH_32F) return false;
    const auto fits = [](double value) { return value >= -32768 && value <= 32767; };
    return std::all_of(kernel.values.begin(), kernel.values.end(), fits) && sumsStayBelow(2147483647.0, kernel, depth);
}

inline double floorShift(double value, int32_t shift)
{
    return shift == 0 ? value : std::floor(value / std::exp2(shift));
}

inline Range modelKernelResult(const Reader& read, const ModelKernel& kernel, int32_t depth, const Place& at)
{
    const double sum = modelSum(read, kernel, at);
    if (isExactSum(kernel, depth)) return { floorShift(sum, kernel.shift), floorShift(sum, kernel.shift) };
    const double doubt = modelSum(read, kernel, at, true) * double(kernel.values.size() + 1) * std::exp2(-24) + 1e-37;
    const auto shifted = [&](double x) {
        if (kernel.shift == 0) return x;
        return floorShift(std::min(std::max(std::nearbyint(x), -2147483648.0), 2147483647.0), kernel.shift);
    };
    const double low = shifted(sum - doubt), high = shifted(sum + doubt);
    return { low - std::fabs(low) * std::exp2(-24), high + std::fabs(high) * std::exp2(-24) };
}

inline Range squared(const Range& r)
{
    const double a = r.low * r.low, b = r.high * r.high;
    return { r.low <= 0 && r.high >= 0 ? 0 : std::min(a, b), std::max(a, b) };
}

// Limited and rounded to nearest even; above 0 is 1 for bits.
inline double modelLimited(double value, int32_t depth)
{
    if (depth == PXK_DEPTH_32F) return value;
    if (depth == PXK_DEPTH_1U) return std::nearbyint(value) > 0;
    return std::nearbyint(std::min(std::max(value, double(depthMin(depth))), double(depthMax(depth))));
}

// The combined result of all kernels.
inline Range modelConvolve(const Reader& read, const std::vector<ModelKernel>& kernels, int32_t method, int32_t depth,
                           const Place& at)
{
    const bool isInteger = depth != PXK_DEPTH_32S && depth != PXK_DEPTH_32F
        && std::all_of(kernels.begin(), kernels.end(),
                       [&](const ModelKernel& kernel) { return sumsStayBelow(32767, kernel, depth); });
    const bool isSquare = method == PXK_CONV_SUMSQ || method == PXK_CONV_SUMSQROOT;
    Range total = modelKernelResult(read, kernels[0], depth, at);
    if (kernels.size() == 1 && method == PXK_CONV_SUMSQROOT) {
        total = squared(total);
        total = { std::sqrt(total.low), std::sqrt(total.high) };
    } else if (kernels.size() > 1 || method == PXK_CONV_SUMSQ) {
        if (isSquare) total = squared(total);
        double terms = std::max(std::fabs(total.low), std::fabs(total.high));
        for (size_t k = 1; k < kernels.size(); ++k) {
            Range next = modelKernelResult(read, kernels[k], depth, at);
            if (isSquare) next = squared(next);
            terms += std::max(std::fabs(next.low), std::fabs(next.high));
            if (method == PXK_CONV_MAX) {
                total = { std::max(total.low, next.low), std::max(total.high, next.high) };
            } else if (method == PXK_CONV_MIN) {
                total = { std::min(total.low, next.low), std::min(total.high, next.high) };
            } else {
                total = { total.low + next.low, total.high + next.high };
            }
        }
        if (!isInteger) total = { total.low - terms * 1e-6, total.high + terms * 1e-6 };
        if (isInteger && isSquare) total.low = total.high = int32_t(uint32_t(int64_t(total.low))); // wraps
        if (method == PXK_CONV_SUMSQROOT) {
            const auto root = [&](double x) { return x < 0 ? (isInteger ? -2147483648.0 : 0) : std::sqrt(x); };
            total = { root(total.low) * (isInteger ? 1 : 1 - 1e-7), root(total.high) * (isInteger ? 1 : 1 + 1e-7) };
        }
    }
    return { modelLimited(total.low, depth), modelLimited(total.high, depth) };
}

// Takes over what `got` holds where it lies in the range of result(at).
template <class F> void modelRangeFilter(Picture& old, Picture& dst, const Picture& got, const F& result)
{
    forEachSelected({ &old, &dst }, [&](const Place* at) {
        const Range range = result(at[0]);
        const double number = got.number(at[1].x, at[1].y, at[1].c);
        at[1].setNumber(number >= range.low && number <= range.high ? number : range.low);
    });
}
