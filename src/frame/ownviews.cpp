// SPDX-License-Identifier: BSD-2-Clause
#include "ownviews.h"

#include <algorithm>
#include <utility>

#include "ownblocks.h"
#include "ownpixelcopy.h"
#include "ownstage.h"

// True where all channels of a pixel, or with `isPlane` those of one plane, follow each other along a row.
static bool ownLiesTogether(const OwnView& view, bool isPlane)
{
    if (view.sampleBytes == 0) return false;
    if (isPlane || view.nChannels == 1) return view.pixelStep == view.sampleBytes;
    return view.channelStep == view.sampleBytes && view.pixelStep == view.channelStep * view.nChannels;
}

// The bytes from a view's first sample to behind its last one.
struct OwnByteRange {
    uintptr_t start;
    uintptr_t end;
};

static OwnByteRange ownBytesOf(const OwnView& view)
{
    const ptrdiff_t down = (view.height - 1) * view.rowStep;
    const ptrdiff_t across = (view.nChannels - 1) * view.channelStep + (view.width - 1) * view.pixelStep;
    const uintptr_t first = reinterpret_cast<uintptr_t>(view.first);
    return { first + static_cast<uintptr_t>(down < 0 ? down : 0),
             first + static_cast<uintptr_t>((down > 0 ? down : 0) + across + view.sampleBytes) };
}

// True when a destination lies over another view, but not in the same place: then results would depend on the order in
// which samples are visited.
static bool ownAreShifted(const OwnView* views, int32_t count, int32_t nDestinations)
{
    OwnByteRange ranges[ownMostViews];
    for (int32_t k = 0; k < count; ++k) ranges[k] = ownBytesOf(views[k]);
    for (int32_t d = count - nDestinations; d < count; ++d) {
        for (int32_t k = 0; k < d; ++k) {
            const bool isSame = views[k].first == views[d].first && views[k].rowStep == views[d].rowStep
                && views[k].sampleBytes == views[d].sampleBytes && views[k].channelStep == views[d].channelStep;
            if (!isSame && ranges[k].start < ranges[d].end && ranges[d].start < ranges[k].end) return true;
        }
    }
    return false;
}

// Rows of n samples as a row function takes them.
struct OwnRowsInPlace {
    uint8_t* rows[ownMostViews];
    ptrdiff_t rowStep[ownMostViews];
    ptrdiff_t rowBytes[ownMostViews];
    int32_t count;
    int32_t nSources;
    int32_t height;
    ptrdiff_t n;
};

// Short rows are gathered, as many at once as fit, and run as a single long one: loops over vectors would leave most of
// a short one to scalar code. Not inlined: rows that are not short need no room on the stack.
__attribute__((noinline)) static void ownRunShortRows(const OwnRowsInPlace& place, const OwnRowFunction& rowFunction)
{
    alignas(64) uint8_t stage[ownMostViews][ownStageBytes];
    uint8_t* staged[ownMostViews];
    for (int32_t k = 0; k < place.count; ++k) staged[k] = stage[k];
    const int32_t most = static_cast<int32_t>(ownStageBytes / (4 * place.n));
    for (int32_t y = 0; y < place.height; y += most) {
        const int32_t rows = std::min(most, place.height - y);
        for (int32_t k = 0; k < (rowFunction.updates ? place.count : place.nSources); ++k) {
            ownCopyByteRows(place.rows[k] + y * place.rowStep[k], place.rowStep[k], stage[k], place.rowBytes[k],
                            place.rowBytes[k], rows);
        }
        rowFunction(staged, rows * place.n);
        for (int32_t k = place.nSources; k < place.count; ++k) {
            ownCopyByteRows(stage[k], place.rowBytes[k], place.rows[k] + y * place.rowStep[k], place.rowStep[k],
                            place.rowBytes[k], rows);
        }
    }
}

// Vectors that are stored across the lines of a cache take up to twice as long. So the samples of a long row up to the
// destination's first line are done by themselves.
static void ownRunRowInPlace(const OwnRowsInPlace& place, const OwnView* views, const OwnRowFunction& rowFunction)
{
    constexpr ptrdiff_t lineBytes = 64, longRow = 16384; // samples
    uint8_t* rows[ownMostViews];
    std::copy(place.rows, place.rows + place.count, rows);
    const int32_t d = place.count - 1;
    const ptrdiff_t misplaced = static_cast<ptrdiff_t>(reinterpret_cast<uintptr_t>(rows[d]) % lineBytes);
    ptrdiff_t n = place.n;
    if (d >= place.nSources && n >= longRow && misplaced != 0 && misplaced % views[d].sampleBytes == 0) {
        const ptrdiff_t first = (lineBytes - misplaced) / views[d].sampleBytes;
        rowFunction(rows, first);
        for (int32_t k = 0; k < place.count; ++k) rows[k] += first * views[k].sampleBytes;
        n -= first;
    }
    rowFunction(rows, n);
}

// Runs the row function on rows as they lie, touching ones as one row. False: nothing was done, since they have gaps or
// are shifted.
static bool ownRunInPlace(const OwnView* views, int32_t count, int32_t nDestinations, const OwnRowFunction& rowFunction)
{
    const bool isPlanes = views[0].nChannels > 1 && views[0].pixelStep == views[0].sampleBytes;
    const int32_t planes = isPlanes ? views[0].nChannels : 1;
    OwnRowsInPlace place;
    place.count = count;
    place.nSources = count - nDestinations;
    place.height = views[0].height;
    place.n = static_cast<ptrdiff_t>(views[0].width) * (isPlanes ? 1 : views[0].nChannels);
    bool isTouching = true;
    ptrdiff_t mostBytes = 0;
    for (int32_t k = 0; k < count; ++k) {
        if (!ownLiesTogether(views[k], isPlanes)) return false;
        place.rowStep[k] = views[k].rowStep;
        place.rowBytes[k] = place.n * views[k].sampleBytes;
        mostBytes = std::max(mostBytes, place.rowBytes[k]);
        isTouching = isTouching && views[k].rowStep == place.rowBytes[k];
    }
    if (ownAreShifted(views, count, nDestinations)) return false;
    if (isTouching) place.n *= std::exchange(place.height, 1);
    const bool isShort = nDestinations > 0 && place.height > 1 && mostBytes < ownBlockBytes;
    for (int32_t plane = 0; plane < planes; ++plane) {
        for (int32_t k = 0; k < count; ++k) place.rows[k] = views[k].first + plane * views[k].channelStep;
        if (isShort) {
            ownRunShortRows(place, rowFunction);
            continue;
        }
        for (int32_t y = 0; y < place.height; ++y) {
            ownRunRowInPlace(place, views, rowFunction);
            for (int32_t k = 0; k < count; ++k) place.rows[k] += place.rowStep[k];
        }
    }
    return true;
}

void ownRunViews(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                 const OwnRowFunction& rowFunction)
{
    if (mask == nullptr && ownRunInPlace(views, count, nDestinations, rowFunction)) return;
    bool isAllBits = true;
    for (int32_t k = 0; k < count; ++k) isAllBits = isAllBits && views[k].sampleBytes == 0;
    if (isAllBits) return ownRunBits(views, count, nDestinations, mask, rowFunction);
    ownRunSamples(views, count, nDestinations, mask, rowFunction);
}
