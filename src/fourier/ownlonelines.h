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

// Lines that cost less one by one than sixteen at a time.
constexpr int32_t OWN_MOST_LONE = 8;

// Prepares the plan for lone lines where its length allows them. False: no memory, or no free entry.
[[nodiscard]] bool ownAddLoneLines(OwnTransformCaches& caches, OwnRealPlan& plan);

// Whether so many lines that are left do.
inline bool ownGoesAlone(const OwnRealPlan& plan, int32_t lines)
{
    return plan.loneTurns != nullptr && lines <= OWN_MOST_LONE;
}

// Values from the real to the imaginary parts: sixteen points may stand out over the last one.
inline ptrdiff_t ownLonePart(const OwnRealPlan& plan)
{
    return (plan.points + 2 * OWN_LANES - 1) / OWN_LANES * OWN_LANES;
}

// Where in `data` a spectrum lies: plan.points points, in the order and with the first point of ownRealToSpectra.
inline OwnLoneLine ownLoneSpectrum(const OwnRealPlan& plan, float* data)
{
    return { data, data + ownLonePart(plan) };
}

// From n real values to their spectrum in `data`, and sixteen zeros behind it. Both buffers are as large as for sixteen
// lines; `values` may be `spare`.
void ownRealToLoneSpectrum(const OwnRealPlan& plan, const float* values, float* data, float* spare);

// The reverse, without scaling: n values in `spare`.
void ownLoneSpectrumToReal(const OwnRealPlan& plan, float* data, float* spare);
