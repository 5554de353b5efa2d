/* SPDX-License-Identifier: BSD-2-Clause */
// Selection of the middle sample of a window by merging: columns are sorted, neighbours are merged to windows of two,
// four and more columns, and all windows that hold such a list share it. A plan is found once for a size of window;
// what it exchanges are rows of samples.
#pragma once

#include "frame/ownbuffer.h"

// Samples `shift` pixels behind the start of a row. The first rows are the window's own, the others are made.
struct OwnRowPlace {
    int32_t row;
    int32_t shift;
};

// The smaller samples of two rows go to one row, the larger ones to another. -1: nobody needs them.
struct OwnExchange {
    OwnRowPlace a;
    OwnRowPlace b;
    int32_t low;
    int32_t high;
    int32_t beyond; // pixels behind the last output pixel that are needed, too
};

struct OwnMergePlan {
    OwnBuffer<OwnExchange> exchanges;
    int32_t count;
    int32_t nRows;  // in all
    int32_t result; // the row of the middle samples
};

// Most samples that a plan is made for.
constexpr int32_t ownMostMerged = 1024;

// False: out of memory. The window holds at least two samples.
[[nodiscard]] bool ownPlanMerge(OwnMergePlan& plan, int32_t nCols, int32_t nRows);
