// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cstring>

#include "frame/ownregion.h"
#include "frame/ownreport.h"
#include "owncosinelines.h"
#include "owneightbyeight.h"
#include "ownplanelines.h"

// A region leaves its image as soon as one of its pixels lies outside.
static bool ownLeavesImage(const PxkImage* image)
{
    const PxkROI* roi = image->roi;
    return roi != nullptr
        && (roi->xOffset < 0 || roi->yOffset < 0 || roi->width > image->width - roi->xOffset
            || roi->height > image->height - roi->yOffset);
}

static bool ownAreCompatible(const PxkImage* source, const PxkImage* destination)
{
    return source->nChannels == destination->nChannels && (source->roi == nullptr) == (destination->roi == nullptr)
        && source->dataOrder == destination->dataOrder && !ownLeavesImage(source) && !ownLeavesImage(destination);
}

static bool ownGoodCosineImages(const OwnSite& site, const PxkImage* source, const PxkImage* destination)
{
    const bool isOneBit = source->depth == PXK_DEPTH_1U || destination->depth == PXK_DEPTH_1U;
    const int32_t alpha = source->alphaChannel;
    return ownPassed(
        site,
        { { source == destination, PXK_StsBadArg, "\nFunction does not support inplace operation" },
          { isOneBit, PXK_StsBadArg, "\nImages with 1u depth are not processed" },
          { alpha != 0 && alpha != source->nChannels, PXK_StsBadArg, "\nAlpha channel may be 0 or number of channels" },
          { !ownAreCompatible(source, destination), PXK_StsBadArg, "Images are not compatible" },
          { source->imageData == nullptr, PXK_StsBadArg, "srcImage->imageData == ((void*)(0))" },
          { destination->imageData == nullptr, PXK_StsBadArg, "dstImage->imageData == ((void*)(0))" } });
}

// Of sixteen lines at a time, and of one by itself.
struct OwnCosineTransform {
    float* (*lines)(const OwnCosinePlan&, const float* const* from, float* first, float* second);
    void (*loneLine)(const OwnCosinePlan&, const float* values, float* first, float* second);
};

constexpr OwnCosineTransform ownCosinesForward = { ownCosineForward, ownLoneCosineForward };
constexpr OwnCosineTransform ownCosinesBackward = { ownCosineBackward, ownLoneCosineBackward };

// A transform of one size: its rows, then its columns in blocks of sixteen, one after the other, row after row.
struct OwnCosineWork {
    OwnCosineTransform transform;
    OwnCosinePlan rows;
    OwnCosinePlan columns;
    float* blocks;
    float* first;
    float* second;
};

static ptrdiff_t ownBlockValues(const OwnCosineWork& work)
{
    return static_cast<ptrdiff_t>(ownPadded(work.columns.real.n) * OWN_LANES);
}

static bool ownOpenCosineWork(OwnTransformCaches& caches, const OwnSize& size, OwnCosineWork& work)
{
    if (!ownCosinePlan(caches, size.width, work.rows) || !ownCosinePlan(caches, size.height, work.columns))
        return false;
    if (ownWantsLoneLines(work.rows.real.points, size.height % OWN_LANES) && !ownAddLoneLines(caches, work.rows.real))
        return false;
    const int64_t rows = ownGoesAlone(work.rows.real, size.height) ? ownLoneValues(*work.rows.real.lines)
                                                                   : ownRealValues(work.rows.real);
    const int64_t lines = std::max(rows, ownRealValues(work.columns.real)) + OWN_LANES * OWN_GROUP;
    const int64_t blocks = ownPadded(size.width) * ownPadded(size.height);
    work.blocks =
        static_cast<float*>(ownWorkMemory(caches, (blocks + 2 * lines) * static_cast<int64_t>(sizeof(float))));
    work.first = work.blocks + blocks;
    work.second = work.first + lines;
    return work.blocks != nullptr;
}

static void ownLoneCosineRow(const OwnCosineWork& work, const OwnFloatPlane& source, int32_t y)
{
    const int32_t width = work.rows.real.n, lanes = static_cast<int32_t>(OWN_LANES);
    ownLoadValues(source, 0, y, width, work.second);
    work.transform.loneLine(work.rows, work.second, work.first, work.second);
    for (int32_t x = 0; x < width; x += lanes)
        memcpy(work.blocks + x / lanes * ownBlockValues(work) + y * OWN_LANES, work.first + x,
               OWN_LANES * sizeof(float));
}

static void ownCosineRows(const OwnCosineWork& work, const OwnFloatPlane& source)
{
    const OwnRealPlan& plan = work.rows.real;
    const int32_t height = work.columns.real.n, lanes = static_cast<int32_t>(OWN_LANES);
    for (int32_t y = 0; y < height;) {
        if (ownGoesAlone(plan, height - y)) {
            ownLoneCosineRow(work, source, y++);
            continue;
        }
        const float* const from[2] = { work.first, work.first + plan.n * OWN_LANES };
        for (int32_t batch = 0; batch < plan.layout.batches; ++batch)
            ownLoadLines(source, plan.n, height, y + batch * lanes, work.first + batch * plan.n * OWN_LANES, OWN_LANES);
        const float* lines = work.transform.lines(work.rows, from, work.first, work.second);
        for (int32_t batch = 0; batch < plan.layout.batches && y < height; ++batch, y += lanes)
            for (int32_t x = 0; x < plan.n; x += lanes)
                ownTransposeFrom(lines + (batch * plan.n + x) * OWN_LANES, OWN_LANES,
                                 work.blocks + x / lanes * ownBlockValues(work) + y * OWN_LANES, OWN_LANES);
    }
}

// Columns beyond the last one may be transformed as the imaginary parts of points whose real parts are columns of the
// image: zeros leave these alone.
static void ownClearColumnsBeyond(const OwnCosineWork& work)
{
    const ptrdiff_t used = work.rows.real.n % OWN_LANES;
    float* row = work.blocks + work.rows.real.n / OWN_LANES * ownBlockValues(work);
    for (int32_t y = 0; used > 0 && y < work.columns.real.n; ++y, row += OWN_LANES)
        for (ptrdiff_t lane = used; lane < OWN_LANES; ++lane) row[lane] = 0;
}

// Up to sixteen values of row y, from column x on.
static void ownStoreCosines(float* line, int32_t x, int32_t y, int32_t width, const OwnFloatPlane& destination)
{
    const int32_t lanes = static_cast<int32_t>(OWN_LANES);
    float* row = width - x < lanes ? nullptr : ownRowInPlace(destination, y);
    if (row == nullptr) return ownStoreValues(destination, x, y, width - x < lanes ? width - x : lanes, line);
    OWN_NOT_UNROLLED
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) row[x + lane] = ownOneNaN(line[lane]);
}

static void ownCosineColumns(const OwnCosineWork& work, const OwnFloatPlane& destination)
{
    const OwnRealPlan& plan = work.columns.real;
    const int32_t width = work.rows.real.n, lanes = static_cast<int32_t>(OWN_LANES);
    for (int32_t x = 0; x < width;) {
        // A last block without a partner is its own.
        const float* block = work.blocks + x / lanes * ownBlockValues(work);
        const float* const from[2] = { block, x + lanes < width ? block + ownBlockValues(work) : block };
        float* lines = work.transform.lines(work.columns, from, work.first, work.second);
        for (int32_t batch = 0; batch < plan.layout.batches && x < width; ++batch, x += lanes)
            for (int32_t y = 0; y < plan.n; ++y)
                ownStoreCosines(lines + (batch * plan.n + y) * OWN_LANES, x, y, width, destination);
    }
}

static bool ownTransformCosines(const OwnCosineTransform& transform, const OwnFloatPlane& source,
                                const OwnFloatPlane& destination, const OwnSize& size)
{
    OwnTransformCaches& caches = ownContext().cosine;
    return ownWithRetry(caches, [&] {
        OwnCosineWork work = {};
        work.transform = transform;
        if (!ownOpenCosineWork(caches, size, work)) return false;
        ownCosineRows(work, source);
        ownClearColumnsBeyond(work);
        ownCosineColumns(work, destination);
        return true;
    });
}

// Eight rows of eight values, in the image or in a block of their own.
struct OwnEightRows {
    float* first;
    ptrdiff_t step;
};

static OwnEightRows ownEightRows(const OwnFloatPlane& plane, float* block)
{
    float* first = ownRowInPlace(plane, 0);
    return first != nullptr ? OwnEightRows { first, ownRowValues(plane) } : OwnEightRows { block, 8 };
}

static void ownTransformEightByEight(const OwnFloatPlane& source, const OwnFloatPlane& destination, bool isForward)
{
    alignas(32) float block[64];
    const OwnEightRows from = ownEightRows(source, block), to = ownEightRows(destination, block);
    if (from.first == block)
        for (int32_t y = 0; y < 8; ++y) ownLoadValues(source, 0, y, 8, block + 8 * y);
    const auto transform = isForward ? ownEightForward : ownEightBackward;
    transform(from.first, from.step, to.first, to.step);
    if (to.first == block)
        for (int32_t y = 0; y < 8; ++y) ownStoreValues(destination, 0, y, 8, block + 8 * y);
}

// The region's pixels with all their channels: the channel of interest is not looked at.
static OwnView ownAllChannels(const PxkImage* image)
{
    if (image->roi == nullptr || image->roi->coi == 0) return ownRegionStart(image);
    PxkImage header = *image;
    PxkROI region = *image->roi;
    region.coi = 0;
    header.roi = &region;
    return ownRegionStart(&header);
}

void pxkDCT2D(PxkImage* srcImage, PxkImage* dstImage, int32_t flags)
{
    if ((flags & PXK_DCT_FREE) != 0) return ownReleaseTransform(ownContext().cosine);
    if (!ownPassed(
            OWN_HERE,
            { { srcImage == nullptr, PXK_StsBadArg, "src==0" }, { dstImage == nullptr, PXK_StsBadArg, "dst==0" } })
        || pxkGetErrStatus() < 0 || !ownGoodCosineImages(OWN_HERE, srcImage, dstImage))
        return;
    const int32_t direction = flags & (PXK_DCT_FORWARD | PXK_DCT_INVERSE);
    const bool isForward = direction == PXK_DCT_FORWARD;
    OwnSize size = ownCommonSize({ srcImage, dstImage });
    if ((!isForward && direction != PXK_DCT_INVERSE) || size.isEmpty()) return;
    OwnFloatPlane source = { ownAllChannels(srcImage), srcImage->depth, 0 };
    OwnFloatPlane destination = { ownAllChannels(dstImage), dstImage->depth, 0 };
    ownLayColumnsDown(source, destination, size);
    const int32_t channels = srcImage->nChannels - (srcImage->alphaChannel > 0);
    for (int32_t channel = 0; channel < channels; ++channel) {
        source.channel = destination.channel = channel;
        if (size.width == 8 && size.height == 8)
            ownTransformEightByEight(source, destination, isForward);
        else if (!ownTransformCosines(isForward ? ownCosinesForward : ownCosinesBackward, source, destination, size))
            return;
    }
}
