// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "ownbits.h"
#include "owndepth.h"
#include "ownsplit.h"
#include "ownstage.h"

// ---- staging -------------------------------------------------------------------------------------------------------

enum class OwnStrided { SOURCE, TARGET };

template <OwnStrided SIDE, class T, ptrdiff_t STRIDE>
static void ownMoveBy(const uint8_t* from, uint8_t* to, ptrdiff_t step, ptrdiff_t n)
{
    const T* const source = reinterpret_cast<const T*>(from);
    T* const target = reinterpret_cast<T*>(to);
    const ptrdiff_t stride = STRIDE != 0 ? STRIDE : step / static_cast<ptrdiff_t>(sizeof(T));
    for (ptrdiff_t i = 0; i < n; ++i) {
        target[SIDE == OwnStrided::TARGET ? i * stride : i] = source[SIDE == OwnStrided::SOURCE ? i * stride : i];
    }
}

// Samples that are `step` bytes apart on one side and follow each other on the other.
template <OwnStrided SIDE>
static void ownMoveStrided(const uint8_t* from, uint8_t* to, ptrdiff_t step, int32_t sampleBytes, ptrdiff_t n)
{
    ownForSampleBytes(sampleBytes, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        switch (step / static_cast<ptrdiff_t>(sizeof(T))) {
        case 2: return ownMoveBy<SIDE, T, 2>(from, to, step, n);
        case 3: return ownMoveBy<SIDE, T, 3>(from, to, step, n);
        case 4: return ownMoveBy<SIDE, T, 4>(from, to, step, n);
        default: return ownMoveBy<SIDE, T, 0>(from, to, step, n);
        }
    });
}

// ---- rows of samples -----------------------------------------------------------------------------------------------

// One row of every operand, as pixels of `unitSamples` contiguous samples of which the first `selectedSamples` take
// part.
struct OwnSampleRow {
    const OwnRowFunction* rowFunction;
    int32_t count;
    int32_t nSources;
    int32_t unitSamples;
    int32_t selectedSamples;
    uint8_t* first[ownMostViews];
    ptrdiff_t pixelStep[ownMostViews];
    int32_t sampleBytes[ownMostViews]; // 0: one-bit
    int32_t bit[ownMostViews];
    int32_t together[ownMostViews]; // operands from here on that are neighbouring channels of the same pixels

    bool isBits(int32_t k) const { return sampleBytes[k] == 0; }
    bool isContiguous(int32_t k) const { return !isBits(k) && pixelStep[k] == unitSamples * sampleBytes[k]; }
    bool isContiguousEverywhere() const
    {
        for (int32_t k = 0; k < count; ++k) {
            if (!isContiguous(k)) return false;
        }
        return true;
    }
    bool hasGap() const { return selectedSamples != unitSamples; }
    ptrdiff_t samples(ptrdiff_t n) const { return (n - 1) * unitSamples + selectedSamples; }
};

// Most operands that are loaded and stored together.
static constexpr int32_t ownMostTogether = 4;

// True when a destination lies over a source or another destination at some distance, so that the result would depend
// on the order in which a loop visits its samples.
static bool ownIsShifted(const OwnSampleRow& row, ptrdiff_t n)
{
    for (int32_t d = row.nSources; d < row.count; ++d) {
        const uintptr_t start = reinterpret_cast<uintptr_t>(row.first[d]);
        const uintptr_t end = start + static_cast<uintptr_t>(n * row.pixelStep[d]);
        for (int32_t k = 0; k < d; ++k) {
            const uintptr_t other = reinterpret_cast<uintptr_t>(row.first[k]);
            const uintptr_t otherEnd = other + static_cast<uintptr_t>(n * row.pixelStep[k]);
            const bool isSame = other == start && row.sampleBytes[k] == row.sampleBytes[d];
            if (!isSame && other < end && start < otherEnd) return true;
        }
    }
    return false;
}

// True when no destination touches a source or another destination in any row, except in the same place: all rows can
// be run alike. Operands that are together count as one.
static bool ownIsApart(const OwnSampleRow& row, const OwnView* views, ptrdiff_t n, int32_t height)
{
    const auto ends = [&](int32_t k) {
        const ptrdiff_t down = (height - 1) * views[k].rowStep;
        const uintptr_t first =
            reinterpret_cast<uintptr_t>(row.first[k]) + static_cast<uintptr_t>(std::min<ptrdiff_t>(down, 0));
        return std::pair<uintptr_t, uintptr_t>(first,
                                               first + static_cast<uintptr_t>(std::abs(down) + n * row.pixelStep[k]));
    };
    for (int32_t d = row.nSources; d < row.count; d += row.together[d]) {
        const auto [start, end] = ends(d);
        for (int32_t k = 0; k < d; k += row.together[k]) {
            const auto [other, otherEnd] = ends(k);
            const bool isSame = row.first[k] == row.first[d] && row.sampleBytes[k] == row.sampleBytes[d]
                && views[k].rowStep == views[d].rowStep;
            if (!isSame && other < end && start < otherEnd) return false;
        }
    }
    return true;
}

// Operand k, or the operands that are together from k on, into one block each.
static void ownLoadOperands(const OwnSampleRow& row, int32_t k, ptrdiff_t start, uint8_t* const* to, ptrdiff_t n)
{
    const uint8_t* const from = row.first[k] + start * row.pixelStep[k];
    if (row.isBits(k)) {
        const ptrdiff_t position = row.bit[k] + start;
        return ownExpandBits(row.first[k] + position / 8, static_cast<int32_t>(position % 8), to[0], n, 1);
    }
    if (row.isContiguous(k)) {
        memcpy(to[0], from, static_cast<size_t>(row.samples(n) * row.sampleBytes[k]));
    } else if (row.together[k] > 1) {
        const int32_t pixelSamples = static_cast<int32_t>(row.pixelStep[k] / row.sampleBytes[k]);
        ownSplitPixels(from, pixelSamples, row.sampleBytes[k], to, row.together[k], n);
    } else {
        ownMoveStrided<OwnStrided::SOURCE>(from, to[0], row.pixelStep[k], row.sampleBytes[k], n);
    }
}

static void ownStoreOperands(const OwnSampleRow& row, int32_t k, ptrdiff_t start, uint8_t* const* from, ptrdiff_t n)
{
    uint8_t* const to = row.first[k] + start * row.pixelStep[k];
    if (row.isBits(k)) {
        const ptrdiff_t position = row.bit[k] + start;
        return ownPackBits(from[0], row.first[k] + position / 8, static_cast<int32_t>(position % 8), n);
    }
    if (row.isContiguous(k)) {
        memcpy(to, from[0], static_cast<size_t>(row.samples(n) * row.sampleBytes[k]));
    } else if (row.together[k] > 1) {
        ownJoinPixels(from, row.together[k], row.sampleBytes[k], to, n);
    } else {
        ownMoveStrided<OwnStrided::TARGET>(from[0], to, row.pixelStep[k], row.sampleBytes[k], n);
    }
}

static void ownBlendOperands(const OwnSampleRow& row, int32_t k, ptrdiff_t start, uint8_t* const* results, ptrdiff_t n,
                             const OwnBits* mask)
{
    alignas(64) uint8_t maskBytes[ownStageBytes + 64];
    const int32_t sampleBytes = std::max(row.sampleBytes[k], 1);
    const OwnPixelBytes pixel = { row.unitSamples * sampleBytes, row.selectedSamples * sampleBytes };
    ownMaskToBytes(mask, start, n, pixel, maskBytes);
    const ptrdiff_t bytes = row.samples(n) * sampleBytes;
    if (row.isContiguous(k)) {
        return ownBlend(row.first[k] + start * row.pixelStep[k], results[0], maskBytes, bytes);
    }
    alignas(64) uint8_t old[ownMostTogether][ownStageBytes];
    uint8_t* const blocks[ownMostTogether] = { old[0], old[1], old[2], old[3] };
    ownLoadOperands(row, k, start, blocks, n);
    for (int32_t m = 0; m < row.together[k]; ++m) ownBlend(blocks[m], results[m], maskBytes, bytes);
    ownStoreOperands(row, k, start, blocks, n);
}

// Pixels from `start` on: sources are gathered and results stored through blocks, where they do not lie as the row
// function wants them or only part of them counts.
static void ownRunStaged(const OwnSampleRow& row, ptrdiff_t start, ptrdiff_t n, const OwnBits* mask, bool isShifted)
{
    // Blocks a multiple of 4096 bytes apart would fall into the same few places of a cache.
    alignas(64) uint8_t stage[ownMostViews][ownStageBytes + 192];
    const ptrdiff_t most = ownStageBytes / (4 * row.unitSamples);
    const bool mustBlend = mask != nullptr || row.hasGap();
    const ptrdiff_t end = start + n;
    for (; start < end; start += most) {
        const ptrdiff_t pixels = std::min(most, end - start);
        uint8_t* operands[ownMostViews];
        for (int32_t k = 0; k < row.count; k += row.together[k]) {
            const bool isDestination = k >= row.nSources;
            const bool inPlace = row.isContiguous(k) && !(isDestination && (mustBlend || isShifted));
            for (int32_t m = k; m < k + row.together[k]; ++m) operands[m] = stage[m];
            if (inPlace) operands[k] = row.first[k] + start * row.pixelStep[k];
            if (!inPlace && (!isDestination || row.rowFunction->updates)) {
                ownLoadOperands(row, k, start, operands + k, pixels);
            }
        }
        (*row.rowFunction)(operands, row.samples(pixels));
        for (int32_t k = row.nSources; k < row.count; k += row.together[k]) {
            if (operands[k] != stage[k]) continue;
            if (mustBlend) {
                ownBlendOperands(row, k, start, operands + k, pixels, mask);
            } else {
                ownStoreOperands(row, k, start, operands + k, pixels);
            }
        }
    }
}

static void ownRunDirect(const OwnSampleRow& row, ptrdiff_t start, ptrdiff_t n)
{
    uint8_t* operands[ownMostViews];
    for (int32_t k = 0; k < row.count; ++k) operands[k] = row.first[k] + start * row.pixelStep[k];
    (*row.rowFunction)(operands, n * row.unitSamples);
}

static void ownRunSampleRow(const OwnSampleRow& row, ptrdiff_t n, const OwnBits* mask)
{
    const bool isShifted = ownIsShifted(row, n);
    const bool isDirect = !row.hasGap() && !isShifted && row.isContiguousEverywhere();
    if (mask == nullptr) {
        if (isDirect) return ownRunDirect(row, 0, n);
        return ownRunStaged(row, 0, n, nullptr, isShifted);
    }
    const ptrdiff_t mostMixed = ownStageBytes / (4 * row.unitSamples);
    for (ptrdiff_t start = 0; start < n;) {
        const OwnMaskStretch stretch = ownNextMaskStretch(*mask, start, n, mostMixed);
        if (stretch.kind == OwnMaskStretch::Kind::ALL && isDirect) {
            ownRunDirect(row, start, stretch.length);
        } else if (stretch.kind != OwnMaskStretch::Kind::NONE) {
            ownRunStaged(row, start, stretch.length, stretch.kind == OwnMaskStretch::Kind::MIXED ? mask : nullptr,
                         isShifted);
        }
        start += stretch.length;
    }
}

// How the channels of all operands can be walked together.
enum class OwnChannelWalk {
    PACKED,   // all channels of a pixel are contiguous and take part: a row is one run of samples
    GAPPED,   // the same pixel layout everywhere, but some channels are left out
    SEPARATE, // channel by channel
};

// How many operands from k on, all sources or all destinations, are neighbouring channels of the same pixels and can be
// moved together. Whole pixels must be stored.
static int32_t ownCountTogether(const OwnView* views, int32_t k, int32_t end, bool isDestination)
{
    const OwnView& first = views[k];
    if (first.sampleBytes == 0 || first.nChannels != 1) return 1;
    const int32_t pixelSamples = static_cast<int32_t>(first.pixelStep / first.sampleBytes);
    int32_t count = 1;
    while (count < ownMostTogether && k + count < end && count < pixelSamples) {
        const OwnView& next = views[k + count];
        const bool isNext = next.first == first.first + count * first.sampleBytes && next.nChannels == 1
            && next.sampleBytes == first.sampleBytes && next.pixelStep == first.pixelStep
            && next.rowStep == first.rowStep;
        if (!isNext) break;
        ++count;
    }
    const bool isServed = ownCanSplit(pixelSamples, count) && (!isDestination || count == pixelSamples);
    return isServed ? count : 1;
}

// True when some operands are together.
static bool ownFindTogether(OwnSampleRow& row, const OwnView* views)
{
    bool isAny = false;
    for (int32_t k = 0; k < row.count; k += row.together[k]) {
        const bool isDestination = k >= row.nSources;
        row.together[k] = ownCountTogether(views, k, isDestination ? row.count : row.nSources, isDestination);
        isAny = isAny || row.together[k] > 1;
    }
    return isAny;
}

static OwnChannelWalk ownChannelWalk(const OwnView* views, int32_t count, bool isMasked)
{
    constexpr ptrdiff_t mostUnitSamples = 4; // more of them make staged blocks of too few pixels
    bool isPacked = true;
    bool isGapped = true;
    for (int32_t k = 0; k < count; ++k) {
        const OwnView& view = views[k];
        if (view.sampleBytes == 0) return OwnChannelWalk::SEPARATE;
        const ptrdiff_t unitSamples = view.pixelStep / view.sampleBytes;
        // Planes of one sample lie as close to each other as channels of a pixel do.
        const bool isTogether =
            view.nChannels == 1 || (view.channelStep == view.sampleBytes && unitSamples >= view.nChannels);
        isPacked = isPacked && isTogether && unitSamples == view.nChannels;
        isGapped = isGapped && isTogether && unitSamples == views[0].pixelStep / views[0].sampleBytes
            && unitSamples <= mostUnitSamples;
    }
    if (isPacked && (!isMasked || isGapped)) return OwnChannelWalk::PACKED;
    return isGapped && !isPacked ? OwnChannelWalk::GAPPED : OwnChannelWalk::SEPARATE;
}

static bool ownRowsTouch(const OwnSampleRow& row, const OwnView* views, ptrdiff_t n)
{
    for (int32_t k = 0; k < row.count; ++k) {
        if (row.isBits(k) || views[k].rowStep != n * row.pixelStep[k]) return false;
    }
    return true;
}

static void ownPlaceRow(OwnSampleRow& row, const OwnView* views, int32_t channel, int32_t y)
{
    for (int32_t k = 0; k < row.count; ++k) {
        row.first[k] = views[k].first + channel * views[k].channelStep + y * views[k].rowStep;
    }
}

void ownRunSamples(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                   const OwnRowFunction& rowFunction)
{
    const int32_t nChannels = views[0].nChannels;
    OwnSampleRow row = {};
    row.rowFunction = &rowFunction;
    row.count = count;
    row.nSources = count - nDestinations;
    OwnChannelWalk walk = OwnChannelWalk::SEPARATE;
    const bool isTogether = ownFindTogether(row, views);
    if (!isTogether) walk = ownChannelWalk(views, count, mask != nullptr);
    // Samples between the selected ones are left out when a destination is stored, not when there is none.
    if (walk == OwnChannelWalk::GAPPED && nDestinations == 0) walk = OwnChannelWalk::SEPARATE;
    // Without a mask a packed row is one run of samples, and so are touching rows.
    const bool isPlainRun = walk == OwnChannelWalk::PACKED && mask == nullptr;
    row.selectedSamples = walk == OwnChannelWalk::SEPARATE || isPlainRun ? 1 : nChannels;
    row.unitSamples = walk == OwnChannelWalk::GAPPED ? static_cast<int32_t>(views[0].pixelStep / views[0].sampleBytes)
                                                     : row.selectedSamples;
    for (int32_t k = 0; k < count; ++k) {
        row.pixelStep[k] = isPlainRun ? views[k].sampleBytes : views[k].pixelStep;
        row.sampleBytes[k] = views[k].sampleBytes;
        row.bit[k] = views[k].bit;
    }
    ptrdiff_t pixels = static_cast<ptrdiff_t>(views[0].width) * (isPlainRun ? nChannels : 1);
    int32_t height = views[0].height;
    const bool isPlanes = walk == OwnChannelWalk::SEPARATE && mask == nullptr && row.isContiguousEverywhere();
    ownPlaceRow(row, views, 0, 0);
    const bool isSplit = isTogether && mask == nullptr && ownIsApart(row, views, pixels, height);
    if ((isPlainRun || isPlanes || isSplit) && ownRowsTouch(row, views, pixels)) {
        pixels *= height;
        height = 1;
    }
    for (int32_t channel = 0; channel < (walk == OwnChannelWalk::SEPARATE ? nChannels : 1); ++channel) {
        for (int32_t y = 0; y < height; ++y) {
            ownPlaceRow(row, views, channel, y);
            if (mask == nullptr) {
                ownRunSampleRow(row, pixels, nullptr);
            } else {
                const OwnBits maskRow = ownBitsAt(*mask, 0, y);
                ownRunSampleRow(row, pixels, &maskRow);
            }
        }
    }
}
