/* SPDX-License-Identifier: BSD-2-Clause */
// Fourier transforms of sixteen lines side by side, in single precision. A point of the lines is a group of sixteen
// real and sixteen imaginary parts, one of each line; lines never mix, so a result does not depend on its neighbours.
#pragma once

#include <cstddef>

#include "owntables.h"

constexpr ptrdiff_t OWN_LANES = 16;
constexpr ptrdiff_t OWN_GROUP = 2 * OWN_LANES; // values of a complex point

// The next multiple of sixteen.
constexpr int64_t ownPadded(int64_t n)
{
    return (n + OWN_LANES - 1) / OWN_LANES * OWN_LANES;
}

// Transforms of radix * second points each, a complex factor (a turn) at each of their results.
struct OwnPass {
    int32_t radix;
    int32_t second; // 1, or the radix of a second step, between which the points stay in the first-level cache
    int32_t groups; // transforms that differ in their turns
    int32_t run;    // neighbouring points that share a turn
    const float* turns;
    const float* innerTurns; // between two steps; of a prime radix from 11 on, its cosines and sines
};

// Tables of one length. Lengths with a prime factor that is too large for a pass go over a longer convolution.
struct OwnLinePlan {
    int32_t n;
    int32_t passCount;
    OwnPass passes[32];
    const OwnLinePlan* inner; // for the convolution, else null
    const float* chirp;       // n complex factors
    const float* kernel;      // inner->n complex factors, the transform of what is convolved with
};

// A prime factor up to this goes through a pass of its own, whose cost grows with its square; the convolution of larger
// ones costs like two or three transforms of twice the length.
constexpr int32_t OWN_LARGEST_RADIX = 127;

// Larger radices are prime, and their transforms direct sums.
constexpr int32_t OWN_LARGEST_BUTTERFLY = 8;

// Null: no memory, or no free entry. Lives until the caches are released.
const OwnLinePlan* ownLinePlan(OwnTransformCaches& caches, int32_t n);

// Real and imaginary parts of a point, as offsets: exchanging both turns the transform's sign around.
struct OwnParts {
    ptrdiff_t re;
    ptrdiff_t im;
};

void ownRunAnyPass(const OwnPass& pass, const float* from, float* to, OwnParts parts);

// Values that `spare` must hold.
int64_t ownSpareValues(const OwnLinePlan& plan);

enum class OwnSign { MINUS, PLUS };

// Transforms n groups without scaling. The result lies in `data` or in `spare`.
float* ownTransformLines(const OwnLinePlan& plan, float* data, float* spare, OwnSign sign);
