// SPDX-License-Identifier: BSD-2-Clause
#include "ownviews.h"

#include <utility>

#include "ownstage.h"

// True where all channels of a pixel, or with `isPlane` those of one plane, follow each other along a row.
static bool ownLiesTogether(const OwnView& view, bool isPlane)
{
    if (view.sampleBytes == 0) return false;
    if (isPlane || view.nChannels == 1) return view.pixelStep == view.sampleBytes;
    return view.channelStep == view.sampleBytes && view.pixelStep == view.channelStep * view.nChannels;
}

// The bytes from a view's first sample to behind its last one.
struct OwnExtent {
    uintptr_t start;
    uintptr_t end;
};

static OwnExtent ownExtent(const OwnView& view)
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
    OwnExtent extents[ownMostViews];
    for (int32_t k = 0; k < count; ++k) extents[k] = ownExtent(views[k]);
    for (int32_t d = count - nDestinations; d < count; ++d) {
        for (int32_t k = 0; k < d; ++k) {
            const bool isSame = views[k].first == views[d].first && views[k].rowStep == views[d].rowStep
                && views[k].sampleBytes == views[d].sampleBytes && views[k].channelStep == views[d].channelStep;
            if (!isSame && extents[k].start < extents[d].end && extents[d].start < extents[k].end) return true;
        }
    }
    return false;
}

// Runs the row function on rows as they lie, touching ones as one row. False: nothing was done, since they have gaps or
// are shifted.
static bool ownRunInPlace(const OwnView* views, int32_t count, int32_t nDestinations, const OwnRowFunction& rowFunction)
{
    const bool isPlanes = views[0].nChannels > 1 && views[0].pixelStep == views[0].sampleBytes;
    const int32_t planes = isPlanes ? views[0].nChannels : 1;
    ptrdiff_t n = static_cast<ptrdiff_t>(views[0].width) * (isPlanes ? 1 : views[0].nChannels);
    bool isTouching = true;
    for (int32_t k = 0; k < count; ++k) {
        if (!ownLiesTogether(views[k], isPlanes)) return false;
        isTouching = isTouching && views[k].rowStep == n * views[k].sampleBytes;
    }
    if (ownAreShifted(views, count, nDestinations)) return false;
    int32_t height = views[0].height;
    if (isTouching) n *= std::exchange(height, 1);
    for (int32_t plane = 0; plane < planes; ++plane) {
        uint8_t* rows[ownMostViews];
        for (int32_t k = 0; k < count; ++k) rows[k] = views[k].first + plane * views[k].channelStep;
        for (int32_t y = 0; y < height; ++y) {
            rowFunction(rows, n);
            for (int32_t k = 0; k < count; ++k) rows[k] += views[k].rowStep;
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
