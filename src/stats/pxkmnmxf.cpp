// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cmath>
#include <limits>

#include "frame/ownmeasure.h"

// Several running extrema at a time, for the order does not matter: a NaN is neither below nor above anything, and of
// zeros the sign is settled at the end.
constexpr int32_t ownExtremaLanes = 48;

struct OwnExtrema {
    float low[ownExtremaLanes];
    float high[ownExtremaLanes];
    OwnExtrema()
    {
        std::fill_n(low, ownExtremaLanes, std::numeric_limits<float>::infinity());
        std::fill_n(high, ownExtremaLanes, -std::numeric_limits<float>::infinity());
    }
};

// Taking a sample twice does no harm, so the last lanes' worth of a row may begin inside the one before.
static void ownTakeRow(const float* samples, ptrdiff_t n, OwnExtrema& extrema)
{
    OwnExtrema of = extrema; // a copy, which no other memory is
    const auto take = [&](ptrdiff_t i, int32_t lanes) {
        for (int32_t j = 0; j < lanes; ++j) {
            const float sample = samples[i + j];
            of.low[j] = sample < of.low[j] ? sample : of.low[j];
            of.high[j] = sample > of.high[j] ? sample : of.high[j];
        }
    };
    const ptrdiff_t last = n - ownExtremaLanes;
    if (last < 0) take(0, static_cast<int32_t>(n));
    for (ptrdiff_t i = 0; i < last; i += ownExtremaLanes) take(i, ownExtremaLanes);
    if (last >= 0) take(last, ownExtremaLanes);
    extrema = of;
}

int32_t pxkMinMaxFP(PxkImage* srcImage, float* min, float* max)
{
    const OwnSite site = OWN_HERE;
    if (!ownGoodHeaders(site, { srcImage })
        || !ownPassed(
            site,
            { { min == nullptr || max == nullptr, PXK_StsBadArg, "((min == ((void*)(0)))||(max == ((void*)(0))))" },
              { srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg, "(srcImage->depth != 32)" } })) {
        return PXK_StsBadArg;
    }
    PxkImage measured = *srcImage;
    measured.maskROI = nullptr; // a mask does not count here
    OwnWork work;
    work.nDestinations = 0;
    if (!ownBeginWork(work, site, { { &measured, "(srcImage->tileInfo->tileData == NULL)" } })) return PXK_StsOk;
    OwnExtrema extrema;
    const bool isDone = ownMeasureSamples(work, OwnSamplesCount::ALIKE, [&](const OwnSampleStretch& stretch) {
        ownTakeRow(reinterpret_cast<const float*>(stretch.rows[0]), stretch.n, extrema);
    });
    if (!isDone) return PXK_StsBadArg; // reported
    const float low = *std::min_element(extrema.low, extrema.low + ownExtremaLanes);
    const float high = *std::max_element(extrema.high, extrema.high + ownExtremaLanes);
    const bool isFound = low <= high;                                      // otherwise all samples are NaN
    *min = isFound ? low + 0.0f : std::numeric_limits<float>::quiet_NaN(); // -0 + 0 is 0
    *max = isFound ? high + 0.0f : std::numeric_limits<float>::quiet_NaN();
    return PXK_StsOk;
}
