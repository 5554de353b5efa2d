/* SPDX-License-Identifier: BSD-2-Clause */
// Fourier transforms of real lines, batches of sixteen side by side, and the other way: each by a complex transform of
// half the work.
#pragma once

#include "ownlines.h"

// Value x of line `lane` of batch `b` lies at x * step + b * OWN_LANES + lane. An even length is one batch, whose pairs
// of values are complex points as they lie. An odd one is two batches, the real and the imaginary part of one
// transform.
struct OwnRealLayout {
    ptrdiff_t step;
    int32_t batches;
};

struct OwnRealPlan {
    int32_t n;
    int32_t points; // complex points of a line's spectrum: (n + 1) / 2
    OwnRealLayout layout;
    const OwnLinePlan* lines;
    const float* turns;     // even lengths: of the pairs, see ownpairs.h
    const float* loneTurns; // null where lines go sixteen at a time only, see ownlonelines.h
};

// False: no memory, or no free entry.
[[nodiscard]] bool ownRealPlan(OwnTransformCaches& caches, int32_t n, OwnRealPlan& plan);

// Values that a buffer for real lines or their spectra must hold, and that `spare` must hold.
int64_t ownRealValues(const OwnRealPlan& plan);

// Spectrum of each line, exponent negative: groups 0 to points - 1, batch after batch. Group 0 holds S(0) as its real
// and, for even n, S(n / 2) as its imaginary part, which are both real. The result lies in `data` or in `spare`.
float* ownRealToSpectra(const OwnRealPlan& plan, float* data, float* spare);

// The reverse, exponent positive, without scaling: n times the values that ownRealToSpectra got.
float* ownSpectraToReal(const OwnRealPlan& plan, float* data, float* spare);
