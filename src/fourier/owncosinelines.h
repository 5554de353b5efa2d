/* SPDX-License-Identifier: BSD-2-Clause */
// Orthonormal cosine transforms of lines side by side, by real Fourier transforms of the same length.
#pragma once

#include "ownlonelines.h"

struct OwnCosinePlan {
    OwnRealPlan real;
    const float* turns; // see ownCosinePlan
};

// False: no memory, or no free entry.
[[nodiscard]] bool ownCosinePlan(OwnTransformCaches& caches, int32_t n, OwnCosinePlan& plan);

// Transforms plan.real.layout.batches times sixteen lines; value x of line `lane` of batch b lies at from[b] + x *
// OWN_LANES
// + lane. The result lies in one of the two buffers, which hold ownRealValues(plan.real) values each, batch after batch
// in the same form. from[0] may be `first`, one batch following the other.
float* ownCosineForward(const OwnCosinePlan& plan, const float* const* from, float* first, float* second);
float* ownCosineBackward(const OwnCosinePlan& plan, const float* const* from, float* first, float* second);

// A line by itself, if ownGoesAlone says so of plan.real. `values` may be `second`; the result lies in `first`.
void ownLoneCosineForward(const OwnCosinePlan& plan, const float* values, float* first, float* second);
void ownLoneCosineBackward(const OwnCosinePlan& plan, const float* values, float* first, float* second);
