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

// Result at a pixel: the sum over u, v of K[v][u] src(x + ax - u, y + ay - v).
inline double modelSum(const Reader& read, const ModelKernel& kernel, const Place& at)
{
    double sum = 0;
    for (int32_t v = 0; v < kernel.shape.nRows; ++v) {
        for (int32_t u = 0; u < kernel.shape.nCols; ++u) {
            const double sample =
                read(int64_t(at.x) + kernel.shape.anchorX - u, int64_t(at.y) + kernel.shape.anchorY - v, at.c);
            sum += kernel.values[size_t(v * kernel.shape.nCols + u)] * sample;
        }
    }
    return sum;
}

// How the library holds the sums of an integer kernel: kind 0 fits 16 bits, kind 1 fits 32, kind 2 is single precision.
inline int32_t modelKind(const ModelKernel& kernel, int32_t depth)
{
    if (depth == PXK_DEPTH_32S || depth == PXK_DEPTH_32F) return 2;
    const bool isSigned = depth < 0;
    const double bits = depthBits(depth);
    const double low = isSigned ? -std::exp2(bits - 1) : 0, high = isSigned ? -low - 1 : std::exp2(bits) - 1;
    double least = 0, most = 0;
    bool isSmall = true;
    for (const double value : kernel.values) {
        if (value < -32768 || value > 32767) return 2;
        const double a = value * low, b = value * high;
        least += std::min(a, b);
        most += std::max(a, b);
        isSmall = isSmall && std::min(a, b) >= -32768 && std::max(a, b) <= 32767;
    }
    if (isSmall && least > -32768 && most < 32767) return 0;
    return least > -2147483648.0 && most < 2147483647.0 ? 1 : 2;
}

inline double wrap32(double value)
{
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(value)));
}

// The combined result of all kernels before it is limited to the depth.
inline double modelConvolve(const Reader& read, const std::vector<ModelKernel>& kernels, int32_t method, int32_t depth,
                            const Place& at)
{
    int32_t mostKind = 0;
    std::vector<double> results;
    for (const ModelKernel& kernel : kernels) {
        double sum = modelSum(read, kernel, at);
        const int32_t kind = modelKind(kernel, depth);
        mostKind = std::max(mostKind, kind);
        if (kernel.shift != 0) {
            if (kind == 2) sum = std::min(std::max(std::nearbyint(sum), -2147483648.0), 2147483647.0);
            sum = std::floor(sum / std::exp2(kernel.shift));
        }
        results.push_back(sum);
    }
    const bool isWrapped = mostKind == 0;
    if (results.size() == 1) {
        if (method == PXK_CONV_SUMSQ) return results[0] * results[0];
        return method == PXK_CONV_SUMSQROOT ? std::fabs(results[0]) : results[0];
    }
    if (method == PXK_CONV_MAX) return *std::max_element(results.begin(), results.end());
    if (method == PXK_CONV_MIN) return *std::min_element(results.begin(), results.end());
    double sum = 0;
    for (const double result : results) sum += method == PXK_CONV_SUM ? result : result * result;
    if (method == PXK_CONV_SUM) return sum;
    if (isWrapped) sum = wrap32(sum);
    if (method == PXK_CONV_SUMSQ) return sum;
    if (sum < 0) return -2147483648.0;
    return isWrapped ? std::nearbyint(std::sqrt(sum)) : std::sqrt(sum);
}

// Limited and rounded to nearest even; above 0 is 1 for bits.
inline double modelLimited(double value, int32_t depth)
{
    if (depth == PXK_DEPTH_32F) return value;
    if (depth == PXK_DEPTH_1U) return std::nearbyint(value) > 0;
    const double bits = depthBits(depth);
    const double low = depth < 0 ? -std::exp2(bits - 1) : 0, high = depth < 0 ? -low - 1 : std::exp2(bits) - 1;
    return std::nearbyint(std::min(std::max(value, low), high));
}
