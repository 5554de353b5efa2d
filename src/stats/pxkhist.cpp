// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>

#include "frame/ownbitcount.h"
#include "frame/ownlimit.h"
#include "frame/ownmeasure.h"
#include "owncount.h"
#include "pxkmap.h"

// ---- counting ------------------------------------------------------------------------------------------------------

static void ownCountZerosAndOnes(const OwnWork& work, const PxkLUT& table)
{
    int64_t counts[2] = {}; // of pixels that are 0 and 1
    const bool isDone = ownMeasureSamples(work, OwnSamplesCount::ALIKE, [&](const OwnSampleStretch& stretch) {
        const int64_t ones = static_cast<int64_t>(ownCountOnes(stretch.rows[0], stretch.n));
        counts[0] += stretch.selected - ones;
        counts[1] += ones;
    });
    if (!isDone) return;
    for (int32_t k = 0; k < 2; ++k) table.value[k] = static_cast<int32_t>(std::min<int64_t>(counts[k], INT32_MAX));
}

static void ownCountLevels(const OwnWork& work, PxkLUT* const* lut)
{
    const int32_t nChannels = ownProcessedChannels(work.image(0));
    const int64_t samples = static_cast<int64_t>(work.area.size.width) * work.area.size.height;
    OwnLevelCounts counts;
    if (!counts.open(work.depth(), lut, nChannels, samples)) {
        return ownReport(work.site, PXK_StsNoMem, "Allocation failure");
    }
    const bool isDone = ownMeasureSamples(work, OwnSamplesCount::EACH, [&](const OwnSampleStretch& stretch) {
        counts.add(stretch.channel, stretch.rows[0], stretch.n);
        counts.takeZeros(stretch.channel, static_cast<ptrdiff_t>(stretch.n - stretch.selected));
    });
    if (isDone) counts.store();
}

void pxkComputeHisto(PxkImage* srcImage, PxkLUT** lut)
{
    OWN_REFUSE_BAD_HEADERS(srcImage);
    const OwnSite site = OWN_HERE;
    const int32_t depth = srcImage->depth;
    const int32_t nChannels = ownProcessedChannels(srcImage);
    if (!ownPassed(site,
                   { { lut == nullptr, PXK_StsBadArg, "lut==0" },
                     { (depth & PXK_DEPTH_SIGN) != 0 || depth == PXK_DEPTH_32F, PXK_StsBadArg,
                       "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)" } })
        || !ownGoodTables(site, lut, nChannels, ownLevels(depth))) {
        return;
    }
    OwnWork work;
    work.nDestinations = 0;
    work.refusedTile = -2;
    if (!ownBeginWork(work, site, { { srcImage, "Error get tile to read" } })) return;
    for (int32_t k = 0; k < nChannels; ++k) std::fill_n(lut[k]->value, lut[k]->num - 1, 0);
    if (depth == PXK_DEPTH_1U) {
        ownCountZerosAndOnes(work, *lut[0]);
    } else {
        ownCountLevels(work, lut);
    }
}

// ---- mapping -------------------------------------------------------------------------------------------------------

// Levels outside the keys stay; within a bin a step, or a ramp that wraps where it leaves the depth.
template <class T> static bool ownStretchMap(const PxkLUT& table, T* map)
{
    constexpr int32_t levels = 1 << 8 * sizeof(T);
    const bool isRamp = table.interpolateType != 0 && table.factor != nullptr;
    for (int32_t level = 0; level < levels; ++level) map[level] = static_cast<T>(level);
    for (int32_t k = 0; k + 1 < table.num; ++k) {
        const int32_t base = table.key[k];
        const int32_t width = table.key[k + 1] - base;
        const uint32_t value = static_cast<uint32_t>(table.value[k]);
        const uint32_t factor = isRamp ? static_cast<uint32_t>(table.factor[k]) : 0;
        for (int32_t i = 0; i < width; ++i) map[base + i] = static_cast<T>(value + static_cast<uint32_t>(i) * factor);
    }
    return true;
}

// Brings sums of counts, of `total`, to levels of the result.
template <class T> struct OwnShares {
    int64_t total;
    double factor; // at 16U

    T levelOf(int64_t sum) const
    {
        if constexpr (sizeof(T) == 1) return ownLimitInteger<T>(sum * 255 / total);
        return ownLimitReal<T>(static_cast<double>(sum) * factor);
    }
};

// Counts of a bin behind the last level belong to none.
static int64_t ownTotalCounts(const PxkLUT& table, int32_t levels)
{
    int64_t total = 0;
    for (int32_t k = 0; k + 1 < table.num; ++k) total += table.key[k] < levels ? table.value[k] : 0;
    return total;
}

// The counts of a bin are spread evenly over its levels, the last one takes the remainder. A bin without levels counts
// for the level at its key. False: there are no counts.
template <class T> static bool ownEqualizeMap(const PxkLUT& table, T* map)
{
    constexpr int32_t levels = 1 << 8 * sizeof(T);
    const int64_t total = ownTotalCounts(table, levels);
    if (total == 0) return false;
    const OwnShares<T> shares = { total, 65535.0 / static_cast<double>(total) };
    int64_t sum = 0;
    std::fill_n(map, table.key[0], shares.levelOf(sum));
    for (int32_t k = 0; k + 1 < table.num && table.key[k] < levels; ++k) {
        T* const bin = map + table.key[k];
        const int32_t width = table.key[k + 1] - table.key[k];
        const int64_t each = width > 1 ? table.value[k] / width : 0;
        for (int32_t i = 0; i + 1 < width; ++i) bin[i] = shares.levelOf(sum + each * (i + 1));
        sum += table.value[k];
        if (width > 0) bin[width - 1] = shares.levelOf(sum);
    }
    std::fill(map + table.key[table.num - 1], map + levels, shares.levelOf(sum));
    return true;
}

[[nodiscard]] static bool ownGoodPair(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, PxkLUT* const* lut)
{
    if (!ownGoodHeaders(site, { srcImage, dstImage })) return false;
    const int32_t nChannels = ownProcessedChannels(srcImage);
    const bool isOther = srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U;
    return ownPassed(
               site,
               { { isOther, PXK_StsBadArg, "srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U" },
                 { srcImage->depth != dstImage->depth, PXK_StsBadArg, "srcImage->depth != dstImage->depth" },
                 { srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg,
                   "srcImage->dataOrder != dstImage->dataOrder" },
                 { srcImage->origin != dstImage->origin, PXK_StsBadArg, "srcImage->origin != dstImage->origin" },
                 { nChannels != ownProcessedChannels(dstImage), PXK_StsBadArg,
                   "Number of processed channels of srcImage != Number of processed channels of dstImage" },
                 { lut == nullptr, PXK_StsBadArg, "lut==0" } })
        && ownGoodTables(site, lut, nChannels, ownLevels(srcImage->depth));
}

// Makes the maps of all channels, then maps: a table that can't be used leaves the destination alone. `makeMap` has a
// form for each of the two depths.
template <class MakeMap>
static void ownMapByTables(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, PxkLUT* const* lut,
                           MakeMap makeMap)
{
    if (!ownGoodPair(site, srcImage, dstImage, lut)) return;
    const int32_t nChannels = ownProcessedChannels(srcImage);
    const int64_t levels = ownLevels(srcImage->depth);
    const int64_t mapBytes = levels * ownSampleBytes(srcImage->depth);
    const OwnBuffer<uint8_t> maps = ownBuffer<uint8_t>(nChannels * mapBytes);
    if (!ownPassed(site, { { maps == nullptr, PXK_StsNoMem, "Allocation failure" } })) return;
    for (int32_t k = 0; k < nChannels; ++k) {
        uint8_t* const map = maps.get() + k * mapBytes;
        const bool isMade = srcImage->depth == PXK_DEPTH_8U ? makeMap(*lut[k], map)
                                                            : makeMap(*lut[k], reinterpret_cast<uint16_t*>(map));
        if (!ownPassed(site, { { !isMade, PXK_StsInternal, "All values in histogram are zeroes" } })) return;
    }
    pxkMap(site, srcImage, dstImage, maps.get());
}

void pxkContrastStretch(PxkImage* srcImage, PxkImage* dstImage, PxkLUT** lut)
{
    ownMapByTables(OWN_HERE, srcImage, dstImage, lut,
                   [](const PxkLUT& table, auto* map) { return ownStretchMap(table, map); });
}

void pxkHistoEqualize(PxkImage* srcImage, PxkImage* dstImage, PxkLUT** lut)
{
    ownMapByTables(OWN_HERE, srcImage, dstImage, lut,
                   [](const PxkLUT& table, auto* map) { return ownEqualizeMap(table, map); });
}
