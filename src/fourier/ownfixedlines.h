/* SPDX-License-Identifier: BSD-2-Clause */
// Fourier transforms of sixteen lines side by side in 32-bit fixed point with 14-bit factors. Values are what they
// would be one line at a time; sums wrap. Layouts and functions are those of ownlines.h and ownreallines.h.
#pragma once

#include "ownreallines.h"

struct OwnFixedTurn {
    int32_t cosine; // 16384 times the value, truncated toward zero
    int32_t sine;
};

struct OwnFixedPlan {
    int32_t n;
    int32_t points;
    OwnRealLayout layout;
    bool isFast;               // a power of two from 4 on; otherwise direct sums
    const OwnFixedTurn* turns; // of 2 pi k / n, k from 0 to n - 1
};

// False: no memory, or no free entry.
[[nodiscard]] bool ownFixedPlan(OwnTransformCaches& caches, int32_t n, OwnFixedPlan& plan);

int64_t ownSpareValues(const OwnFixedPlan& plan);
int64_t ownRealValues(const OwnFixedPlan& plan);
int32_t* ownTransformLines(const OwnFixedPlan& plan, int32_t* data, int32_t* spare, OwnSign sign);
int32_t* ownRealToSpectra(const OwnFixedPlan& plan, int32_t* data, int32_t* spare);
int32_t* ownSpectraToReal(const OwnFixedPlan& plan, int32_t* data, int32_t* spare);
