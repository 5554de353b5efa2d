/* SPDX-License-Identifier: BSD-2-Clause */
// Fourier transforms of a line by itself, sixteen of its own points side by side instead of one of sixteen lines each:
// the steps are the same, and so are the bits of the results.
#pragma once

#include "ownreallines.h"

// Real and imaginary parts of a line's complex points, apart.
struct OwnLoneLine {
    float* re;
    float* im;
};

// So few lines cost less one by one than sixteen at a time. So do any lines that are long enough for sixteen of them to
// leave the second-level cache.
constexpr int32_t OWN_MOST_LONE = 8;
constexpr int32_t OWN_LONG_LINE = 1 << 15; // complex points

constexpr bool ownWantsLoneLines(int32_t points, int32_t lines)
{
    return (lines > 0 && lines <= OWN_MOST_LONE) || points >= OWN_LONG_LINE;
}

// Values from the real to the imaginary parts of a line of so many points: sixteen may stand out over the last one.
constexpr ptrdiff_t ownLonePart(int32_t points)
{
    return (points + 2 * OWN_LANES - 1) / OWN_LANES * OWN_LANES;
}

inline OwnLoneLine ownLoneLine(int32_t points, float* data)
{
    return { data, data + ownLonePart(points) };
}

// What lone lines need besides a plan: the turns of its first pass. Null, and true, where lines of the plan go sixteen
// at a time only. False: no memory, or no free entry.
[[nodiscard]] bool ownLoneTurns(OwnTransformCaches& caches, const OwnLinePlan& plan, const float*& turns);

// Values that each buffer for a lone line must hold; those for sixteen lines do.
int64_t ownLoneValues(const OwnLinePlan& plan);

// Transforms ownLoneLine(plan.n, data) in place.
void ownTransformLoneLine(const OwnLinePlan& plan, const float* loneTurns, float* data, float* spare, OwnSign sign);

// The same for real lines, whose plan keeps the turns.
[[nodiscard]] bool ownAddLoneLines(OwnTransformCaches& caches, OwnRealPlan& plan);

// Whether so many lines that are left go one by one.
inline bool ownGoesAlone(const OwnRealPlan& plan, int32_t lines)
{
    return plan.loneTurns != nullptr && ownWantsLoneLines(plan.points, lines);
}

// From n real values to their spectrum, ownLoneLine(plan.points, data), in the order and with the first point of
// ownRealToSpectra, and sixteen zeros behind it. `values` may be `spare`.
void ownRealToLoneSpectrum(const OwnRealPlan& plan, const float* values, float* data, float* spare);

// The reverse, without scaling: n values in `spare`.
void ownLoneSpectrumToReal(const OwnRealPlan& plan, float* data, float* spare);
