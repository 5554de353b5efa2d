// SPDX-License-Identifier: BSD-2-Clause
#include <cmath>
#include <limits>

#include "frame/ownmeasure.h"

// Several running extrema at a time, for the order does not matter: a NaN is neither below nor above anything, and of
// zeros the sign is settled at the end.
constexpr int32_t ownExtremaLanes = 32;

struct OwnExtrema {
    float low = std::numeric_limits<float>::infinity();
    float high = -std::numeric_limits<float>::infinity();
};

static void ownTakeRow(const float* samples, ptrdiff_t n, OwnExtrema& extrema)
{
    float low[ownExtremaLanes];
    float high[ownExtremaLanes];
    for (int32_t j = 0; j < ownExtremaLanes; ++j) {
        low[j] = extrema.low;
        high[j] = extrema.high;
    }
    const ptrdiff_t whole = n / ownExtremaLanes * ownExtremaLanes;
    for (ptrdiff_t i = 0; i < whole; i += ownExtremaLanes) {
        for (int32_t j = 0; j < ownExtremaLanes; ++j) {
            const float sample = samples[i + j];
            low[j] = sample < low[j] ? sample : low[j];
            high[j] = sample > high[j] ? sample : high[j];
        }
    }
    for (ptrdiff_t i = whole; i < n; ++i) {
        low[0] = samples[i] < low[0] ? samples[i] : low[0];
        high[0] = samples[i] > high[0] ? samples[i] : high[0];
    }
    for (int32_t j = 0; j < ownExtremaLanes; ++j) {
        extrema.low = low[j] < extrema.low ? low[j] : extrema.low;
        extrema.high = high[j] > extrema.high ? high[j] : extrema.high;
    }
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
    if (!isDone) return PXK_StsBadArg;                                             // reported
    const bool isFound = extrema.low <= extrema.high;                              // otherwise all samples are NaN
    *min = isFound ? extrema.low + 0.0f : std::numeric_limits<float>::quiet_NaN(); // -0 + 0 is 0
    *max = isFound ? extrema.high + 0.0f : std::numeric_limits<float>::quiet_NaN();
    return PXK_StsOk;
}
