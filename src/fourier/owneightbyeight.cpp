// SPDX-License-Identifier: BSD-2-Clause
#include "owneightbyeight.h"

#include "frame/ownivdep.h"
#include "frame/ownlimit.h"
#include "owntranspose.h"

// The network of Arai, Agui and Nakajima, its odd half over the cosine of pi / 8. What it leaves out are factors of the
// results, one an axis, which are multiplied once a value: the outer product of this vector with itself, over 8.
constexpr float ownEightScales[8] = { 1, 0.666080f, 0.765367f, 0.785695f, 1, 1.175876f, 1.847759f, 3.348610f };

struct OwnEightFactors {
    float values[64];
};

static constexpr OwnEightFactors ownFactorsOfScales()
{
    OwnEightFactors factors = {};
    for (ptrdiff_t i = 0; i < 64; ++i) factors.values[i] = ownEightScales[i / 8] * ownEightScales[i % 8] / 8;
    return factors;
}

constexpr OwnEightFactors ownEightFactors = ownFactorsOfScales();

constexpr float ownHalfRoot = 0.70710678f; // cosine of pi / 4
constexpr float ownTangent = 0.41421356f;  // of pi / 8
constexpr float ownSecant = 1.0823922f;    // of pi / 8
constexpr float ownSecantHalfRoot = 0.76536686f;

// Columns of a block, side by side: sums and differences of opposite values, then both halves by themselves. Result k
// of column x goes to k * along + x * across, so 8 and 1 leave the block as it lies, 1 and 8 turn it over.
template <ptrdiff_t along, ptrdiff_t across> static void ownEightDown(const float (&from)[64], float (&to)[64])
{
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < 8; ++x) {
        const float sum0 = from[x] + from[56 + x], sum1 = from[8 + x] + from[48 + x],
                    sum2 = from[16 + x] + from[40 + x], sum3 = from[24 + x] + from[32 + x];
        const float less0 = from[x] - from[56 + x], less1 = from[8 + x] - from[48 + x],
                    less2 = from[16 + x] - from[40 + x], less3 = from[24 + x] - from[32 + x];

        const float outer = sum0 - sum3, even = (sum1 - sum2 + outer) * ownHalfRoot;
        to[x * across] = sum0 + sum3 + (sum1 + sum2);
        to[4 * along + x * across] = sum0 + sum3 - (sum1 + sum2);
        to[2 * along + x * across] = outer + even;
        to[6 * along + x * across] = outer - even;

        const float low = less3 + less2, middle = (less2 + less1) * ownSecantHalfRoot, high = less1 + less0;
        const float plus = less0 * ownSecant + middle, minus = less0 * ownSecant - middle;
        const float lowTurned = low - high * ownTangent, highTurned = high + low * ownTangent;
        to[along + x * across] = plus + highTurned;
        to[7 * along + x * across] = plus - highTurned;
        to[5 * along + x * across] = minus + lowTurned;
        to[3 * along + x * across] = minus - lowTurned;
    }
}

// The transpose of ownEightDown.
template <ptrdiff_t along, ptrdiff_t across> static void ownEightUp(const float (&from)[64], float (&to)[64])
{
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < 8; ++x) {
        const float sum = from[x] + from[32 + x], less = from[x] - from[32 + x];
        const float even = (from[16 + x] - from[48 + x]) * ownHalfRoot, outer = from[16 + x] + from[48 + x] + even;
        const float sum0 = sum + outer, sum3 = sum - outer, sum1 = less + even, sum2 = less - even;

        const float plus = from[8 + x] + from[56 + x], minus = from[40 + x] + from[24 + x];
        const float highTurned = from[8 + x] - from[56 + x], lowTurned = from[40 + x] - from[24 + x];
        const float middle = (plus - minus) * ownSecantHalfRoot;
        const float high = highTurned - lowTurned * ownTangent, low = lowTurned + highTurned * ownTangent;
        const float less0 = (plus + minus) * ownSecant + high, less1 = high + middle, less2 = middle + low, less3 = low;
        to[x * across] = sum0 + less0;
        to[7 * along + x * across] = sum0 - less0;
        to[along + x * across] = sum1 + less1;
        to[6 * along + x * across] = sum1 - less1;
        to[2 * along + x * across] = sum2 + less2;
        to[5 * along + x * across] = sum2 - less2;
        to[3 * along + x * across] = sum3 + less3;
        to[4 * along + x * across] = sum3 - less3;
    }
}

// Rows become columns: eight at a time in vectors, once the inner loop is straight code.
static inline void ownEightTurn(const float* from, ptrdiff_t fromStep, float (&to)[64])
{
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < 8; ++x) {
#pragma GCC unroll 8
        for (ptrdiff_t y = 0; y < 8; ++y) to[8 * x + y] = from[y * fromStep + x];
    }
}

static inline void ownEightScale(float (&v)[64])
{
    for (ptrdiff_t y = 0; y < 8; ++y) {
        OWN_NOT_UNROLLED
        for (ptrdiff_t i = 8 * y; i < 8 * y + 8; ++i) v[i] *= ownEightFactors.values[i];
    }
}

static inline void ownEightStore(const float (&v)[64], float* to, ptrdiff_t toStep)
{
    for (ptrdiff_t y = 0; y < 8; ++y) {
        OWN_NOT_UNROLLED
        for (ptrdiff_t x = 0; x < 8; ++x) to[y * toStep + x] = ownOneNaN(v[8 * y + x]);
    }
}

void ownEightForward(const float* from, ptrdiff_t fromStep, float* to, ptrdiff_t toStep)
{
    alignas(64) float columns[64], rows[64];
    ownEightTurn(from, fromStep, columns);
    ownEightDown<1, 8>(columns, rows);
    ownEightDown<8, 1>(rows, columns);
    ownEightScale(columns);
    ownEightStore(columns, to, toStep);
}

void ownEightBackward(const float* from, ptrdiff_t fromStep, float* to, ptrdiff_t toStep)
{
    alignas(64) float columns[64], rows[64];
    ownEightTurn(from, fromStep, columns);
    ownEightScale(columns);
    ownEightUp<1, 8>(columns, rows);
    ownEightUp<8, 1>(rows, columns);
    ownEightStore(columns, to, toStep);
}
