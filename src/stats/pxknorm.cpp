// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cfloat>
#include <cmath>

#include "frame/owndepth.h"
#include "frame/ownlimit.h"
#include "frame/ownmeasure.h"
#include "frame/ownprecision.h"
#include "ownnormrows.h"

// Sums and extrema of a, or of a - b; and of b, where the norm is relative.
struct OwnNormTotals {
    OwnNormTotal numerator;
    OwnNormTotal denominator;
};

static constexpr int32_t ownRelative = PXK_NORM_INF_REL ^ PXK_NORM_INF; // the bit that makes a type relative

// What stands for the result of a call that failed; it is reported, and is the result.
static constexpr double ownZeroDivided = -1.0;
static constexpr double ownTileRefused = -2.0;

// Blocks of rows that stay in the nearest cache while they are measured twice.
static void ownMeasureStretch(const OwnSampleStretch& stretch, int32_t count, int32_t sampleBytes, int32_t type,
                              OwnNormRow measure, OwnNormTotals& totals)
{
    const ptrdiff_t unit = std::max(sampleBytes, 1);
    const ptrdiff_t most = ownNormBytes / unit;
    for (ptrdiff_t start = 0; start < stretch.n; start += most) {
        const ptrdiff_t n = std::min(most, stretch.n - start);
        const uint8_t* const a = stretch.rows[0] + start * unit;
        const uint8_t* const b = count > 1 ? stretch.rows[1] + start * unit : nullptr;
        measure(a, b, n, totals.numerator);
        if ((type & ownRelative) != 0) measure(b, nullptr, n, totals.denominator);
    }
}

static double ownNormResult(const OwnNormTotals& totals, int32_t type)
{
    const double numerator = totals.numerator.value();
    const double denominator = totals.denominator.value();
    const bool isRoot = (type & PXK_NORM_L2) != 0;
    if ((type & ownRelative) == 0) return isRoot ? std::sqrt(numerator) : numerator;
    if (denominator <= DBL_MIN) return ownZeroDivided;
    return isRoot ? std::sqrt(numerator) / std::sqrt(denominator) : numerator / denominator;
}

static bool ownIsNormType(int32_t type, bool isPair)
{
    const int32_t plain = isPair ? type & ~ownRelative : type;
    return plain == PXK_NORM_INF || plain == PXK_NORM_L1 || plain == PXK_NORM_L2;
}

static bool ownGoodNorm(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, int32_t normType)
{
    if (!ownGoodHeaders(site, { srcImageA })) return false;
    if (srcImageB == nullptr) {
        return ownPassed(site, { { !ownIsNormType(normType, false), PXK_StsBadArg, "normType unknown" } });
    }
    return ownGoodHeaders(site, { srcImageB })
        && ownPassed(site,
                     { { srcImageA->dataOrder != srcImageB->dataOrder, PXK_StsBadArg,
                         "(srcImageA->dataOrder!=srcImageB->dataOrder)" },
                       { srcImageA->depth != srcImageB->depth, PXK_StsBadArg, "(srcImageA->depth!=srcImageB->depth)" },
                       { !ownIsNormType(normType, true), PXK_StsBadArg, "normType unknown" },
                       { ownProcessedChannels(srcImageA) != ownProcessedChannels(srcImageB), PXK_StsBadChannels,
                         "Bad number of channels" } });
}

double pxkNorm(PxkImage* srcImageA, PxkImage* srcImageB, int32_t normType)
{
    const OwnDoublePrecision precision;
    const OwnSite site = OWN_HERE;
    if (!ownGoodNorm(site, srcImageA, srcImageB, normType)) return 0.0;
    OwnWork work;
    work.site = site;
    work.count = srcImageB != nullptr ? 2 : 1;
    work.operands[0] = { srcImageA, " " };
    work.operands[1] = { srcImageB, " " };
    work.nDestinations = 0;
    work.refusedTile = -2;
    const OwnStart start = ownFindArea(work.area, { srcImageA, srcImageB });
    OWN_REFUSE_IF(start == OwnStart::NO_MEMORY, PXK_StsNullHeader, "Null pointer for mask", 0.0);
    if (start == OwnStart::NOTHING_TO_DO || ownProcessedChannels(srcImageA) == 0) return 0.0;
    OwnNormTotals totals;
    const OwnNormRow measure = ownNormRow(srcImageA->depth, normType & ~ownRelative);
    const bool isDone = ownMeasureSamples(work, OwnSamplesCount::ALIKE, [&](const OwnSampleStretch& stretch) {
        ownMeasureStretch(stretch, work.count, ownSampleBytes(work.depth()), normType, measure, totals);
    });
    if (!isDone) return ownTileRefused; // reported
    const double result = ownNormResult(totals, normType);
    if (result == ownZeroDivided) OWN_REPORT(PXK_StsBadArg, "Zero divided");
    return ownOneNaN(result);
}
