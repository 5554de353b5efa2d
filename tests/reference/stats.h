// Slow models of histograms, maps of levels, threshold, moments, norms and extrema.
#pragma once

#include <cmath>

#include "frame.h"

// A table of levels with its arrays.
struct LevelTable {
    std::vector<int32_t> key, value, factor;
    int32_t isRamp = 0;
};

inline int64_t levelsOf(const Picture& p)
{
    return int64_t(1) << depthBits(p.spec.depth);
}

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

inline int64_t modelStretched(const LevelTable& t, int64_t level)
{
    int64_t result = level;
    for (size_t k = 0; k < t.key.size() && t.key[k] <= level; ++k)
        result = t.value[k] + (t.isRamp != 0 && !t.factor.empty() ? (level - t.key[k]) * t.factor[k] : 0);
    return level < t.key[0] || level >= t.key.back() ? level : result;
}

// The counts of all levels, from which maps are made.
inline std::vector<int64_t> modelCounts(const LevelTable& t, int64_t levels)
{
    std::vector<int64_t> counts(size_t(levels) + 1);
    for (size_t k = 0; k + 1 < t.key.size(); ++k) {
        const int32_t width = std::max(t.key[k + 1] - t.key[k], 1);
        for (int32_t i = 0; i < width; ++i) counts[size_t(t.key[k] + i)] += t.value[k] / width;
        counts[size_t(t.key[k] + width - 1)] += t.value[k] % width;
    }
    counts.pop_back();
    return counts;
}

inline std::vector<int64_t> modelEqualized(const LevelTable& t, int64_t levels)
{
    std::vector<int64_t> map = modelCounts(t, levels);
    for (size_t i = 1; i < map.size(); ++i) map[i] += map[i - 1];
    const int64_t total = map.back();
    for (int64_t& m : map) m = levels == 256 ? m * 255 / total : std::llrint(double(m) * (65535.0 / double(total)));
    return map;
}

inline void modelThreshold(Picture& src, Picture& dst, int64_t threshold)
{
    forEachSelected({ &src, &dst }, [&](const Place* at) {
        const int32_t depth = dst.spec.depth;
        at[1].setNumber(double(at[0].number() >= double(threshold) ? depthMax(depth) : depthMin(depth)));
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
        const long double x = (long double)(at->x - window.x) - xb, y = (long double)(at->y - window.y) - yb;
        const long double term = std::pow(x, m) * std::pow(y, n) * (long double)(at->number());
        result.sum += term;
        result.magnitude += std::fabs(term);
    });
    return result;
}

// Largest (1), sum (2) or sum of squares (4) of the differences of two images; of one, if `b` is null.
inline long double modelNormSum(Picture& a, Picture* b, int32_t type)
{
    long double total = 0;
    const auto take = [&](const Place* at) {
        const long double d = std::fabs((long double)(at[0].number()) - (b != nullptr ? at[1].number() : 0));
        if (type == PXK_NORM_INF) total = d > total ? d : total;
        if (type == PXK_NORM_L1) total += d;
        if (type == PXK_NORM_L2) total += d * d;
    };
    if (b == nullptr) forEachSelected({ &a }, take);
    if (b != nullptr) forEachSelected({ &a, b }, take);
    return total;
}
