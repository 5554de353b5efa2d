/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of histograms, maps of levels, moments and norms.
#pragma once

#include <cmath>

#include "frame.h"
#include "support/cases.h"

// A table of levels with its arrays.
struct LevelTable {
    std::vector<int32_t> key, value, factor;
    int32_t isRamp = 0;
};

inline void modelHistogram(Picture& image, std::vector<LevelTable>& tables)
{
    for (LevelTable& t : tables) std::fill(t.value.begin(), t.value.end() - 1, 0);
    const bool isBits = image.spec.depth == PXK_DEPTH_1U;
    if (isBits) tables[0].value[1] = 0;
    forEachSelected({ &image }, [&](const Place* at) {
        LevelTable& t = tables[size_t(at->c - windowOf(image).firstChannel)];
        const int32_t level = int32_t(at->number());
        for (size_t k = 0; !isBits && k + 1 < t.key.size(); ++k)
            t.value[k] += t.key[k] <= level && level < t.key[k + 1];
        if (isBits) ++t.value[size_t(level)];
    });
}

inline std::vector<int64_t> modelStretched(const LevelTable& t, int64_t levels)
{
    std::vector<int64_t> map;
    for (int64_t level = 0; level < levels; ++level) {
        int64_t result = level;
        for (size_t k = 0; k < t.key.size() && t.key[k] <= level; ++k)
            result = t.value[k] + (t.isRamp != 0 && !t.factor.empty() ? (level - t.key[k]) * t.factor[k] : 0);
        map.push_back(level < t.key.back() ? result : level);
    }
    return map;
}

// Counts of single levels, added up.
inline std::vector<int64_t> modelEqualized(const LevelTable& t, int64_t levels)
{
    std::vector<int64_t> map(size_t(levels) + 1);
    for (size_t k = 0; k + 1 < t.key.size(); ++k) {
        const int32_t width = std::max(t.key[k + 1] - t.key[k], 1);
        for (int32_t i = 0; i < width; ++i) map[size_t(t.key[k] + i)] += t.value[k] / width;
        map[size_t(t.key[k] + width - 1)] += t.value[k] % width;
    }
    map.pop_back();
    for (size_t i = 1; i < map.size(); ++i) map[i] += map[i - 1];
    const int64_t total = map.back();
    for (int64_t& m : map) m = levels == 256 ? m * 255 / total : std::llrint(double(m) * (65535.0 / double(total)));
    return map;
}

inline void modelThreshold(Picture& src, Picture& dst, double threshold)
{
    forEachSelected({ &src, &dst }, [&](const Place* at) {
        const int32_t depth = dst.spec.depth;
        at[1].setNumber(double(at[0].number() >= threshold ? depthMax(depth) : depthMin(depth)));
    });
}

// The sum of (x - xb)^m (y - yb)^n s, and of its terms' magnitudes, over the selected pixels of one channel.
struct MomentSum {
    long double sum = 0, magnitude = 0;
};

inline MomentSum modelMoment(Picture& image, long double xb, long double yb, int32_t m, int32_t n)
{
    MomentSum result;
    const Window window = windowOf(image);
    forEachSelected({ &image }, [&](const Place* at) {
        long double term = at->number();
        for (int32_t i = 0; i < m; ++i) term *= (long double)(at->x - window.x) - xb;
        for (int32_t i = 0; i < n; ++i) term *= (long double)(at->y - window.y) - yb;
        result.sum += term;
        result.magnitude += std::fabs(term);
    });
    return result;
}

// The norm, one of PXK_NORM_INF, PXK_NORM_L1 and PXK_NORM_L2, of an image or of the difference of two.
inline long double modelNorm(const Scene& s, int32_t type)
{
    long double largest = 0, sum = 0, squares = 0;
    const auto take = [&](long double a, long double b) {
        const long double d = std::fabs(a - b);
        largest = std::max(largest, d);
        sum += d;
        squares += d * d;
    };
    if (s.images.size() == 1) forEachSelected({ &s[0] }, [&](const Place* at) { take(at[0].number(), 0); });
    if (s.images.size() == 2)
        forEachSelected({ &s[0], &s[1] }, [&](const Place* at) { take(at[0].number(), at[1].number()); });
    return type == PXK_NORM_INF ? largest : type == PXK_NORM_L1 ? sum : std::sqrt(squares);
}
