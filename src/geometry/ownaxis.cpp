// SPDX-License-Identifier: BSD-2-Clause
#include "ownaxis.h"

#include <algorithm>
#include <numeric>

#include "frame/ownround.h"

int32_t ownFloorUp(double value)
{
    return ownRoundEven(value + 0.00001 - 0.5);
}

int32_t ownScaledCount(int32_t extent, OwnRatio ratio, int32_t most)
{
    const double scaled = extent / ratio.step();
    return scaled < most ? std::max(std::min(ownFloorUp(scaled), most), 1) : most;
}

OwnSampling ownEndToEnd(int32_t extent, OwnRatio ratio)
{
    if (ratio.to == ratio.from) return { 0, 1 };
    const double scaled = extent / ratio.step();
    return { 0, scaled <= 1 ? 0.0 : (extent - 1) / (scaled - 1) };
}

static void ownSetNearest(OwnAxis& axis, ptrdiff_t i, double position, int32_t last)
{
    axis.first[static_cast<size_t>(i)] = std::min(ownFloorUp(position), last);
}

static void ownSetLinear(OwnAxis& axis, ptrdiff_t i, double position, int32_t last)
{
    constexpr int32_t whole = 16384;
    const int32_t below = ownFloorUp(position);
    const bool isLast = below >= last;
    // A position that was lifted to the next pixel lies below it, by a weight under 0.
    const int32_t weight = isLast ? whole : std::clamp(ownFloorUp((position - below) * whole), 0, whole);
    axis.first[static_cast<size_t>(i)] = isLast ? last - 1 : below;
    for (int32_t k = 0; k < axis.unit; ++k) {
        axis.weight[static_cast<size_t>(i * axis.unit + k)] = static_cast<int16_t>(-2 * weight);
    }
}

static void ownSetCubic(OwnAxis& axis, ptrdiff_t i, double position, int32_t last)
{
    const int32_t below = ownFloorUp(position);
    const int32_t base = std::clamp(below, 1, last - 2); // the second of the four taps
    const float f = below >= last ? 2.0f : static_cast<float>(position - base);
    const float u = f + 1.0f;
    // Each product is rounded to single precision: at the last pixel the third factor is 1 only then.
    const float second = u * 0.5f * f;
    const float third = second * (f - 1.0f) * 0.33333334f;
    axis.first[static_cast<size_t>(i)] = base - 1;
    for (int32_t k = 0; k < axis.unit; ++k) {
        const size_t at = static_cast<size_t>(i * axis.unit + k);
        axis.factors[0][at] = u;
        axis.factors[1][at] = second;
        axis.factors[2][at] = third;
    }
}

static bool ownAllocateAxis(OwnAxis& axis, OwnInterpolation interpolation, int32_t count)
{
    const int64_t samples = static_cast<int64_t>(count) * axis.unit;
    axis.first = ownBuffer<int32_t>(count);
    if (axis.first == nullptr) return false;
    if (interpolation == OwnInterpolation::LINEAR) {
        axis.weight = ownBuffer<int16_t>(samples);
        return axis.weight != nullptr;
    }
    if (interpolation == OwnInterpolation::NEAREST) return true;
    for (OwnBuffer<float>& factors : axis.factors) {
        factors = ownBuffer<float>(samples);
        if (factors == nullptr) return false;
    }
    return true;
}

bool ownMakeAxis(OwnAxis& axis, OwnInterpolation interpolation, int32_t extent, const OwnSampling& sampling,
                 int32_t count, int32_t unit)
{
    const bool isNearest = interpolation == OwnInterpolation::NEAREST;
    axis.taps = isNearest ? 1 : interpolation == OwnInterpolation::LINEAR ? 2 : 4;
    axis.unit = isNearest ? 1 : unit;
    if (!ownAllocateAxis(axis, interpolation, count)) return false;
    const auto set = isNearest ? ownSetNearest : axis.taps == 2 ? ownSetLinear : ownSetCubic;
    const double behindLast = extent - 0.5; // whatever lies farther means the last pixel, too
    for (int32_t i = 0; i < count; ++i) {
        set(axis, i, std::min(sampling.start + i * sampling.step, behindLast), extent - 1);
    }
    return true;
}

static bool ownAllocateBoxes(OwnAxis& axis, OwnRatio ratio, int32_t count)
{
    axis.ratio = ratio;
    axis.taps = 0;
    axis.unit = 1;
    axis.first = ownBuffer<int32_t>(count);
    axis.last = ownBuffer<int32_t>(count);
    axis.firstParts = ownBuffer<int32_t>(count);
    axis.lastParts = ownBuffer<int32_t>(count);
    return axis.first != nullptr && axis.last != nullptr && axis.firstParts != nullptr && axis.lastParts != nullptr;
}

// The box from part `start` to before `end`; where it reaches beyond the source, the pixel at the end has more parts.
static void ownSetBox(OwnAxis& axis, int32_t i, int64_t start, int64_t end, int32_t extent)
{
    const size_t at = static_cast<size_t>(i);
    const int64_t parts = axis.ratio.to;
    const int64_t first = std::clamp<int64_t>(start / parts, 0, extent - 1);
    const int64_t last = std::clamp<int64_t>((end - 1) / parts, 0, extent - 1);
    axis.first[at] = static_cast<int32_t>(first);
    axis.last[at] = static_cast<int32_t>(last);
    axis.firstParts[at] = static_cast<int32_t>(first == last ? end - start : (first + 1) * parts - start);
    axis.lastParts[at] = static_cast<int32_t>(first == last ? 0 : end - last * parts);
}

bool ownMakeBoxes(OwnAxis& axis, int32_t extent, OwnRatio ratio, int32_t count)
{
    const int32_t divisor = std::gcd(ratio.to, ratio.from);
    const OwnRatio reduced = { ratio.to / divisor, ratio.from / divisor };
    if (!ownAllocateBoxes(axis, reduced, count)) return false;
    for (int32_t i = 0; i < count; ++i) {
        const int64_t start = static_cast<int64_t>(i) * reduced.from;
        ownSetBox(axis, i, start, start + reduced.from, extent);
    }
    return true;
}

bool ownMakeWindows(OwnAxis& axis, int32_t extent, int32_t size)
{
    if (!ownAllocateBoxes(axis, { 1, size }, extent)) return false;
    for (int32_t i = 0; i < extent; ++i) {
        const int64_t start = static_cast<int64_t>(i) - size / 2;
        ownSetBox(axis, i, start, start + size, extent);
    }
    return true;
}
