// SPDX-License-Identifier: BSD-2-Clause
#include "ownwork.h"

#include <algorithm>

// ---- the area ------------------------------------------------------------------------------------------------------

static OwnSize ownSmaller(OwnSize a, OwnSize b)
{
    return { std::min(a.width, b.width), std::min(a.height, b.height) };
}

OwnStart ownFindArea(OwnArea& area, std::initializer_list<const PxkImage*> images)
{
    const PxkImage* masks[4] = {};
    int32_t count = 0;
    area.regions = { INT32_MAX, INT32_MAX };
    for (const PxkImage* image : images) {
        if (image == nullptr) continue;
        area.regions = ownSmaller(area.regions, ownRegionSize(image));
        masks[count++] = image->maskROI;
    }
    area.size = area.regions;
    for (const PxkImage* mask : masks) {
        if (mask != nullptr) area.size = ownSmaller(area.size, ownRegionSize(mask));
    }
    if (area.size.isEmpty()) return OwnStart::NOTHING_TO_DO;
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

// A walk over the work: where each image's region starts, and which tile it is in.
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
        if (grid.isTurned) {
            view.first += (rect.height - 1) * view.rowStep;
            view.rowStep = -view.rowStep;
        }
    }
    if (work.area.mask.isGiven) {
        piece.maskBits = ownBitsAt(work.area.mask.bits, rect.x, rect.y);
        piece.mask = &piece.maskBits;
    }
    return true;
}

bool ownSweepPieces(const OwnWork& work, OwnFunction<void(const OwnPiece&)> onPiece)
{
    OwnSweep sweep = { work, {}, {} };
    for (int32_t k = 0; k < work.count; ++k) {
        const OwnRect region = ownRegionRect(work.image(k));
        const bool isTurned = work.turnsDestination && k == work.count - 1;
        sweep.grids[k] = { work.image(k)->tileInfo, region.x, region.y, isTurned };
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

// True when the work is one run of samples over the whole blocks, padding included.
static bool ownIsBlockRun(const OwnWork& work)
{
    const PxkImage* const destination = work.image(work.count - 1);
    bool isSame = !work.area.mask.isGiven && !work.turnsDestination;
    for (int32_t k = 0; k < work.count; ++k) {
        isSame = isSame && work.image(k)->tileInfo == nullptr && ownSameBlock(work.image(k), destination);
    }
    return isSame;
}

void ownRunWork(const OwnWork& work, OwnPadding padding, const OwnRowFunction& rowFunction)
{
    if (padding == OwnPadding::WORKED_ON && ownIsBlockRun(work)) {
        OwnView views[4];
        for (int32_t k = 0; k < work.count; ++k) {
            OwnView& view = views[k];
            view = ownRegionStart(work.image(k));
            view.sampleBytes = std::max(view.sampleBytes, 1); // a row function of one-bit images works on bytes anyway
            view.pixelStep = view.sampleBytes;
            view.width = work.image(k)->imageSize / view.sampleBytes;
            view.height = 1;
            view.nChannels = 1;
        }
        return ownRunViews(views, work.count, 1, nullptr, rowFunction);
    }
    ownSweepPieces(work, [&](const OwnPiece& piece) {
        ownRunViews(piece.views, work.count, work.nDestinations, piece.mask, rowFunction);
    });
}
