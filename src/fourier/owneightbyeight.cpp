// SPDX-License-Identifier: BSD-2-Clause
#include "owneightbyeight.h"

#include <cstring>

#include "frame/ownivdep.h"
#include "owntranspose.h"

// The network of Arai, Agui and Nakajima, its odd half over the cosine of pi / 8. What it leaves out are factors of the
// results, one an axis, which are multiplied once a value: the outer product of this vector with itself, over 8.
constexpr float ownEightScales[8] = { 1, 0.666080f, 0.765367f, 0.785695f, 1, 1.175876f, 1.847759f, 3.348610f };

constexpr float ownHalfRoot = 0.70710678f; // cosine of pi / 4
constexpr float ownTangent = 0.41421356f;  // of pi / 8
constexpr float ownSecant = 1.0823922f;    // of pi / 8
constexpr float ownSecantHalfRoot = 0.76536686f;

// Sums and differences of opposite values, then both halves by themselves. Rows of a block are transformed side by
// side.
static void ownEightDown(float (&v)[64])
{
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < 8; ++x) {
        const float sum0 = v[x] + v[56 + x], sum1 = v[8 + x] + v[48 + x], sum2 = v[16 + x] + v[40 + x],
                    sum3 = v[24 + x] + v[32 + x];
        const float less0 = v[x] - v[56 + x], less1 = v[8 + x] - v[48 + x], less2 = v[16 + x] - v[40 + x],
                    less3 = v[24 + x] - v[32 + x];

        const float outer = sum0 - sum3, even = (sum1 - sum2 + outer) * ownHalfRoot;
        v[x] = sum0 + sum3 + (sum1 + sum2);
        v[32 + x] = sum0 + sum3 - (sum1 + sum2);
        v[16 + x] = outer + even;
        v[48 + x] = outer - even;

        const float low = less3 + less2, middle = (less2 + less1) * ownSecantHalfRoot, high = less1 + less0;
        const float plus = less0 * ownSecant + middle, minus = less0 * ownSecant - middle;
        const float lowTurned = low - high * ownTangent, highTurned = high + low * ownTangent;
        v[8 + x] = plus + highTurned;
        v[56 + x] = plus - highTurned;
        v[40 + x] = minus + lowTurned;
        v[24 + x] = minus - lowTurned;
    }
}

// The transpose of ownEightDown.
static void ownEightUp(float (&v)[64])
{
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < 8; ++x) {
        const float sum = v[x] + v[32 + x], less = v[x] - v[32 + x];
        const float even = (v[16 + x] - v[48 + x]) * ownHalfRoot, outer = v[16 + x] + v[48 + x] + even;
        const float sum0 = sum + outer, sum3 = sum - outer, sum1 = less + even, sum2 = less - even;

        const float plus = v[8 + x] + v[56 + x], minus = v[40 + x] + v[24 + x];
        const float highTurned = v[8 + x] - v[56 + x], lowTurned = v[40 + x] - v[24 + x];
        const float middle = (plus - minus) * ownSecantHalfRoot;
        const float high = highTurned - lowTurned * ownTangent, low = lowTurned + highTurned * ownTangent;
        const float less0 = (plus + minus) * ownSecant + high, less1 = high + middle, less2 = middle + low, less3 = low;
        v[x] = sum0 + less0;
        v[56 + x] = sum0 - less0;
        v[8 + x] = sum1 + less1;
        v[48 + x] = sum1 - less1;
        v[16 + x] = sum2 + less2;
        v[40 + x] = sum2 - less2;
        v[24 + x] = sum3 + less3;
        v[32 + x] = sum3 - less3;
    }
}

static void ownEightTurn(const float* from, float* to)
{
    for (ptrdiff_t y = 0; y < 8; y += 4)
        for (ptrdiff_t x = 0; x < 8; x += 4) ownTransposeFour(from + y * 8 + x, 8, to + x * 8 + y, 8);
}

static void ownEightScale(float (&v)[64])
{
    for (ptrdiff_t y = 0; y < 8; ++y)
        for (ptrdiff_t x = 0; x < 8; ++x) v[8 * y + x] *= ownEightScales[y] * ownEightScales[x] / 8;
}

void ownEightForward(float* block)
{
    alignas(32) float v[64], turned[64];
    ownEightTurn(block, v);
    ownEightDown(v);
    ownEightTurn(v, turned);
    ownEightDown(turned);
    ownEightScale(turned);
    memcpy(block, turned, sizeof turned);
}

void ownEightBackward(float* block)
{
    alignas(32) float v[64], turned[64];
    ownEightTurn(block, v);
    ownEightScale(v);
    ownEightUp(v);
    ownEightTurn(v, turned);
    ownEightUp(turned);
    memcpy(block, turned, sizeof turned);
}
