// SPDX-License-Identifier: BSD-2-Clause
#include "ownmomentrows.h"

#include <algorithm>

#include "frame/ownbits.h"
#include "frame/owndepth.h"
#include "ownlanes.h"

// Sums over u = x - origin as sums over x. All terms of an image of positive samples are positive, and so nothing is
// lost by differences.
static void ownAddShifted(const double (&sums)[4], double origin, OwnRowMoments& row)
{
    const double s0 = sums[0];
    const double s1 = sums[1];
    const double s2 = sums[2];
    row.sums[0] += s0;
    row.sums[1] += s1 + origin * s0;
    row.sums[2] += s2 + origin * (2 * s1 + origin * s0);
    row.sums[3] += sums[3] + origin * (3 * s2 + origin * (3 * s1 + origin * s0));
}

// ---- 8 and 16 bits -------------------------------------------------------------------------------------------------

// Lane j of a block takes the samples at ownLanes b + j. Adding each sum to the next one, from the last b down to 0,
// gives the sums of s, s b, s b (b - 1) / 2 and s b (b - 1) (b - 2) / 6 without a product. The last of them stays below
// 2^31 for so many steps, and the sums of a block below 2^53: all of it is exact.
template <class T> constexpr int32_t ownMomentSteps = sizeof(T) == 1 ? 64 : 24;

template <class T> static void ownSumLanes(const T* samples, int32_t steps, int32_t (&binomials)[4][ownLanes])
{
    int32_t s0[ownLanes] = {};
    int32_t s1[ownLanes] = {};
    int32_t s2[ownLanes] = {};
    int32_t s3[ownLanes] = {};
    for (ptrdiff_t b = steps - 1; b >= 0; --b) {
        const T* const from = samples + b * ownLanes;
        for (int32_t j = 0; j < ownLanes; ++j) {
            s3[j] += s2[j];
            s2[j] += s1[j];
            s1[j] += s0[j];
            s0[j] += from[j];
        }
    }
    std::copy(s0, s0 + ownLanes, binomials[0]);
    std::copy(s1, s1 + ownLanes, binomials[1]);
    std::copy(s2, s2 + ownLanes, binomials[2]);
    std::copy(s3, s3 + ownLanes, binomials[3]);
}

// Whole steps of samples from x on.
template <class T> static void ownAddBlock(const T* samples, int32_t steps, int32_t x, OwnRowMoments& row)
{
    constexpr double width = ownLanes;
    int32_t binomials[4][ownLanes];
    double lanes[4][ownLanes];
    ownSumLanes(samples, steps, binomials);
    for (int32_t j = 0; j < ownLanes; ++j) {
        const double s0 = binomials[0][j];
        const double b1 = binomials[1][j]; // sums of s b, s b^2, s b^3
        const double b2 = 2.0 * binomials[2][j] + b1;
        const double b3 = 6.0 * binomials[3][j] + 3 * b2 - 2 * b1;
        const double p1 = width * b1; // of s p, s p^2, s p^3, where p = ownLanes b and u = p + j
        const double p2 = width * width * b2;
        const double p3 = width * width * width * b3;
        const double at = j;
        lanes[0][j] = s0;
        lanes[1][j] = p1 + at * s0;
        lanes[2][j] = p2 + at * (2 * p1 + at * s0);
        lanes[3][j] = p3 + at * (3 * p2 + at * (3 * p1 + at * s0));
    }
    double sums[4];
    for (int32_t power = 0; power < 4; ++power) sums[power] = ownJoinLanes(lanes[power], OwnAddReal {});
    ownAddShifted(sums, x, row);
}

template <class T> static void ownAddIntegers(const uint8_t* from, ptrdiff_t n, int32_t x, OwnRowMoments& row)
{
    const T* samples = reinterpret_cast<const T*>(from);
    while (n >= ownLanes) {
        const int32_t steps = static_cast<int32_t>(std::min<ptrdiff_t>(n / ownLanes, ownMomentSteps<T>));
        ownAddBlock(samples, steps, x, row);
        samples += steps * ownLanes;
        x += steps * ownLanes;
        n -= steps * ownLanes;
    }
    if (n == 0) return;
    T rest[ownLanes] = {};
    std::copy(samples, samples + n, rest);
    ownAddBlock(rest, 1, x, row);
}

// Bits as samples of 0 and 1.
static void ownAddBits(const uint8_t* from, ptrdiff_t n, int32_t x, OwnRowMoments& row)
{
    constexpr int32_t most = ownMomentSteps<uint8_t> * ownLanes;
    uint8_t samples[most];
    for (ptrdiff_t start = 0; start < 8 * n; start += most) {
        const ptrdiff_t count = std::min<ptrdiff_t>(most, 8 * n - start);
        ownExpandBits(from + start / 8, 0, samples, count, 1);
        ownAddIntegers<uint8_t>(samples, count, x + static_cast<int32_t>(start), row);
    }
}

// ---- 32 bits -------------------------------------------------------------------------------------------------------

// Powers of u, counted from the first sample, in lanes: lane j takes samples j, j + ownLanes, and so on.
template <class T> static void ownAddReals(const uint8_t* from, ptrdiff_t n, int32_t x, OwnRowMoments& row)
{
    const T* const samples = reinterpret_cast<const T*>(from);
    double lanes[4][ownLanes] = {};
    double at[ownLanes];
    for (int32_t j = 0; j < ownLanes; ++j) at[j] = x + j;
    const ptrdiff_t whole = n / ownLanes * ownLanes;
    const auto add = [&](int32_t j, double term) {
        lanes[0][j] += term;
        term *= at[j];
        lanes[1][j] += term;
        term *= at[j];
        lanes[2][j] += term;
        term *= at[j];
        lanes[3][j] += term;
        at[j] += ownLanes;
    };
    for (ptrdiff_t i = 0; i < whole; i += ownLanes) {
        for (int32_t j = 0; j < ownLanes; ++j) add(j, samples[i + j]);
    }
    for (int32_t j = 0; whole + j < n; ++j) add(j, samples[whole + j]);
    for (int32_t power = 0; power < 4; ++power) row.sums[power] += ownJoinLanes(lanes[power], OwnAddReal {});
}

OwnMomentRow ownMomentRow(int32_t depth)
{
    OwnMomentRow row = ownAddBits;
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if constexpr (sizeof(T) == 4) {
            row = ownAddReals<T>;
        } else {
            row = ownAddIntegers<T>;
        }
    });
    return row;
}
