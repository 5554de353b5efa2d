// SPDX-License-Identifier: BSD-2-Clause
#include "ownwork.h"

#include <algorithm>

#include "owndepth.h"

// ---- the area ------------------------------------------------------------------------------------------------------

static OwnSize ownSmaller(OwnSize a, OwnSize b)
{
    return { std::min(a.width, b.width), std::min(a.height, b.height) };
}

OwnStart ownFindArea(OwnArea& area, std::initializer_list<const PxkImage*> images)
{
    const PxkImage* masks[4] = {};
    int32_t count = 0;
    area.regions = ownCommonSize(images);
    area.size = area.regions;
    for (const PxkImage* image : images) {
        if (image == nullptr || image->maskROI == nullptr) continue;
        masks[count++] = image->maskROI;
        area.size = ownSmaller(area.size, ownRegionSize(image->maskROI));
    }
    if (area.size.isEmpty()) return OwnStart::NOTHING_TO_DO;
    if (count == 0) return OwnStart::READY;
    const OwnMasks joined = ownCombineMasks({ masks[0], masks[1], masks[2], masks[3] }, area.size, area.mask);
    return joined == OwnMasks::NO_MEMORY ? OwnStart::NO_MEMORY : OwnStart::READY;
}

// ---- point-wise work -----------------------------------------------------------------------------------------------

int32_t ownOpenWork(OwnWork& work, const OwnSite& site, std::initializer_list<OwnOperand> operands,
                    OwnLoneAlpha loneAlpha)
{
    work.site = site;
    work.count = static_cast<int32_t>(operands.size());
    std::copy(operands.begin(), operands.end(), work.operands);
    PxkImage* images[4] = {};
    bool isNothing = false;
    for (int32_t k = 0; k < work.count; ++k) {
        images[k] = work.image(k);
        isNothing = isNothing || (loneAlpha == OwnLoneAlpha::LEFT && ownProcessedChannels(images[k]) == 0);
    }
    const OwnStart start = ownFindArea(work.area, { images[0], images[1], images[2], images[3] });
    if (isNothing) work.area.size = {};
    if (start != OwnStart::NO_MEMORY) return PXK_StsOk;
    ownReport(site, PXK_StsNoMem, "Out of memory");
    return PXK_StsNoMem;
}

static bool ownIsTurned(const OwnWork& work, int32_t k)
{
    return work.turnsDestination && k == work.count - 1;
}

static void ownTurn(OwnView& view)
{
    view.first += (view.height - 1) * view.rowStep;
    view.rowStep = -view.rowStep;
}

static void ownPlaceMask(const OwnWork& work, OwnPiece& piece)
{
    if (!work.area.mask.isGiven) return;
    piece.maskBits = ownBitsAt(work.area.mask.bits, piece.x, piece.y);
    piece.mask = &piece.maskBits;
}

// A walk over tiles: where each image's region starts, and which tile it is in.
struct OwnSweep {
    const OwnWork& work;
    OwnGrid grids[4];
    OwnTile tiles[4];

    bool isDestination(int32_t k) const { return k >= work.count - work.nDestinations; }
};

// The views of a piece. False: a tile was refused, reported.
static bool ownPlacePiece(OwnSweep& sweep, const OwnRect& rect, OwnPiece& piece)
{
    const OwnWork& work = sweep.work;
    piece.x = rect.x;
    piece.y = rect.y;
    for (int32_t k = 0; k < work.count; ++k) {
        PxkImage* const image = work.image(k);
        const OwnGrid& grid = sweep.grids[k];
        const int32_t y = grid.isTurned ? work.area.size.height - rect.y - rect.height : rect.y;
        const OwnRect place = { grid.x + rect.x, grid.y + y, rect.width, rect.height };
        OwnView& view = piece.views[k];
        if (grid.tiles == nullptr) {
            view = ownBlockView(image, ownImageBlock(image), place);
        } else {
            const int32_t mode = sweep.isDestination(k) ? PXK_TILE_WRITE : PXK_TILE_READ;
            if (!sweep.tiles[k].hold(image, place.x, place.y, mode)) {
                ownReport(work.site, work.refusedTile, work.operands[k].refusedTile);
                return false;
            }
            view = ownBlockView(image, sweep.tiles[k].block(), ownInTile(grid.tiles, place));
        }
        if (grid.isTurned) ownTurn(view);
    }
    ownPlaceMask(work, piece);
    return true;
}

static bool ownSweepTiles(const OwnWork& work, const OwnFunction<void(const OwnPiece&)>& onPiece)
{
    OwnSweep sweep = { work, {}, {} };
    for (int32_t k = 0; k < work.count; ++k) {
        const OwnRect region = ownRegionRect(work.image(k));
        sweep.grids[k] = { work.image(k)->tileInfo, region.x, region.y, ownIsTurned(work, k) };
    }
    const bool isComplete = ownWalkTiles(work.area.size, sweep.grids, work.count, [&](const OwnRect& rect) {
        OwnPiece piece = {};
        if (!ownPlacePiece(sweep, rect, piece)) return false;
        onPiece(piece);
        return true;
    });
    for (OwnTile& tile : sweep.tiles) tile.release(); // sources first
    return isComplete;
}

bool ownSweepPieces(const OwnWork& work, OwnFunction<void(const OwnPiece&)> onPiece)
{
    if (work.area.size.isEmpty()) return true;
    OwnPiece all = {};
    for (int32_t k = 0; k < work.count; ++k) {
        const PxkImage* const image = work.image(k);
        if (image->tileInfo != nullptr) return ownSweepTiles(work, onPiece);
        const OwnRect region = ownRegionRect(image);
        const OwnRect place = { region.x, region.y, work.area.size.width, work.area.size.height };
        all.views[k] = ownBlockView(image, ownImageBlock(image), place);
        if (ownIsTurned(work, k)) ownTurn(all.views[k]);
    }
    ownPlaceMask(work, all);
    onPiece(all);
    return true;
}

// True when all of an image's samples, padding included, are worked on and follow each other.
static bool ownIsWholeBlock(const PxkImage* image)
{
    if (image->tileInfo != nullptr) return false;
    const int64_t rows =
        static_cast<int64_t>(image->height) * (image->dataOrder == PXK_DATA_ORDER_PLANE ? image->nChannels : 1);
    if (image->widthStep * rows != image->imageSize) return false; // a caller's own sizes need not fit each other
    if ((image->widthStep & (std::max(ownSampleBytes(image->depth), 1) - 1)) != 0) return false; // torn samples
    const PxkROI* const roi = image->roi;
    if (roi == nullptr) return image->alphaChannel == 0;
    return roi->xOffset == 0 && roi->yOffset == 0 && roi->width >= image->width && roi->height >= image->height
        && (roi->coi == 0 ? image->alphaChannel == 0 : image->nChannels == 1);
}

static bool ownHasShapeOf(const PxkImage* image, const PxkImage* other)
{
    return image->height == other->height && image->width == other->width && image->imageSize == other->imageSize
        && image->align == other->align && image->nChannels == other->nChannels
        && (image->dataOrder == other->dataOrder || image->nChannels == 1);
}

// True when the work is one run of samples over whole images of one shape.
static bool ownIsBlockRun(const OwnWork& work)
{
    if (work.area.mask.isGiven || work.turnsDestination) return false;
    for (int32_t k = 0; k < work.count; ++k) {
        if (!ownIsWholeBlock(work.image(k)) || !ownHasShapeOf(work.image(k), work.image(0))) return false;
    }
    return true;
}

// An image's block as one row; a row function of one-bit images works on bytes anyway.
static OwnView ownBlockRow(const PxkImage* image)
{
    const int32_t sampleBytes = std::max(ownSampleBytes(image->depth), 1);
    const int32_t n = image->imageSize / sampleBytes;
    return {
        static_cast<uint8_t*>(image->imageData), image->imageSize, sampleBytes, sampleBytes, n, 1, 1, sampleBytes, 0
    };
}

void ownRunWork(const OwnWork& work, OwnPadding padding, const OwnRowFunction& rowFunction)
{
    if (padding == OwnPadding::WORKED_ON && ownIsBlockRun(work)) {
        OwnView rows[4];
        for (int32_t k = 0; k < work.count; ++k) rows[k] = ownBlockRow(work.image(k));
        return ownRunViews(rows, work.count, 1, nullptr, rowFunction);
    }
    ownSweepPieces(work, [&](const OwnPiece& piece) {
        ownRunViews(piece.views, work.count, work.nDestinations, piece.mask, rowFunction);
    });
}
