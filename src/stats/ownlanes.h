/* SPDX-License-Identifier: BSD-2-Clause */
// Sums and extrema of real numbers. The order of their steps is part of the value, so it is written down here, and no
// vector's width decides it.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int32_t ownLanes = 32;

struct OwnAddReal {
    double operator()(double a, double b) const { return a + b; }
};

// The larger one; a NaN never is.
struct OwnLargerReal {
    double operator()(double sofar, double b) const { return b > sofar ? b : sofar; }
};

// Joins all lanes: the upper half to the lower one, until one is left.
template <class Join> inline double ownJoinLanes(double* lanes, Join join)
{
    for (int32_t half = ownLanes / 2; half > 0; half /= 2) {
        for (int32_t j = 0; j < half; ++j) lanes[j] = join(lanes[j], lanes[j + half]);
    }
    return lanes[0];
}

// Joins n terms of at least 0: term i goes to lane i modulo 32, in rising order, and then the lanes are joined.
template <class Term, class Join> inline double ownJoinTerms(ptrdiff_t n, Term term, Join join)
{
    double lanes[ownLanes] = {};
    const ptrdiff_t whole = n / ownLanes * ownLanes;
    for (ptrdiff_t i = 0; i < whole; i += ownLanes) {
        for (int32_t j = 0; j < ownLanes; ++j) lanes[j] = join(lanes[j], term(i + j));
    }
    for (ptrdiff_t i = whole; i < n; ++i) lanes[i - whole] = join(lanes[i - whole], term(i));
    return ownJoinLanes(lanes, join);
}
