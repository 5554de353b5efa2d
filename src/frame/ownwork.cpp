#include "ownwork.h"

#include <algorithm>

#include "ownstage.h"

void ownRunViews(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                 const OwnRowFunction& kernel)
{
    bool isAllBits = true;
    for (int32_t k = 0; k < count; ++k) isAllBits = isAllBits && views[k].sampleBytes == 0;
    if (isAllBits) return ownRunBits(views, count, nDestinations, mask, kernel);
    ownRunSamples(views, count, nDestinations, mask, kernel);
}

// ---- point-wise operations -----------------------------------------------------------------------------------------

bool ownBeginWork(OwnWork& work, const OwnSite& site, std::initializer_list<OwnOperand> operands)
{
    work.site = site;
    work.count = static_cast<int32_t>(operands.size());
    std::copy(operands.begin(), operands.end(), work.operands);
    PxkImage* images[4] = {};
    const PxkImage* masks[4] = {};
    for (int32_t k = 0; k < work.count; ++k) {
        images[k] = work.operands[k].image;
        masks[k] = images[k]->maskROI;
    }
    const OwnMaskCode code = ownCombineMasks({ masks[0], masks[1], masks[2] }, work.mask);
    if (code == OWN_MASK_NO_MEMORY) {
        work.status = PXK_StsNoMem;
        ownReport(site, work.status, "Out of memory");
    }
    if (code == OWN_MASK_NO_MEMORY || code == OWN_MASK_EMPTY) return false;
    const OwnSize size = ownCommonSize({ images[0], images[1], images[2], images[3] });
    work.size = { std::min(size.width, work.mask.size.width), std::min(size.height, work.mask.size.height) };
    for (int32_t k = 0; k < work.count; ++k) {
        if (ownProcessedChannels(images[k]) == 0) return false; // a lone alpha channel
    }
    return !work.size.isEmpty();
}

// The tile that an image's current piece lies in.
struct OwnHeldTile {
    void* data;
    int32_t column;
    int32_t row;
};

static void ownReleaseTile(PxkImage* image, OwnHeldTile& held)
{
    if (held.data == nullptr) return;
    image->tileInfo->tileData = held.data;
    image->tileInfo->callBack(image, held.column, held.row, PXK_TILE_RELEASE);
    held.data = nullptr;
}

// False when the tile function refused the tile; nothing is held then.
static bool ownHoldTile(PxkImage* image, int32_t column, int32_t row, int32_t mode, OwnHeldTile& held)
{
    if (held.data != nullptr && held.column == column && held.row == row) return true;
    ownReleaseTile(image, held);
    image->tileInfo->callBack(image, column, row, mode);
    held = { image->tileInfo->tileData, column, row };
    return held.data != nullptr;
}

// A walk over the work area: where each image's region starts, and which tile it is in.
struct OwnSweep {
    const OwnWork& work;
    OwnRect regions[4];
    OwnHeldTile held[4];
};

static bool ownIsTurned(const OwnWork& work, int32_t k)
{
    return work.turnsDestination && k == work.count - 1;
}

// The largest piece from work position (x, y) on that stays inside one tile of each tiled image.
static OwnSize ownPieceSize(const OwnSweep& sweep, int32_t x, int32_t y)
{
    OwnSize size = { sweep.work.size.width - x, sweep.work.size.height - y };
    for (int32_t k = 0; k < sweep.work.count; ++k) {
        const PxkTileInfo* const tiles = sweep.work.operands[k].image->tileInfo;
        if (tiles == nullptr) continue;
        size.width = std::min(size.width, tiles->width - (sweep.regions[k].x + x) % tiles->width);
        const int32_t rowsBelow = tiles->height - (sweep.regions[k].y + y) % tiles->height;
        const int32_t rowsAbove = (sweep.regions[k].y + sweep.work.size.height - 1 - y) % tiles->height + 1;
        size.height = std::min(size.height, ownIsTurned(sweep.work, k) ? rowsAbove : rowsBelow);
    }
    return size;
}

static bool ownRunPiece(OwnSweep& sweep, const OwnRect& rect, const OwnPieceRunner& runner)
{
    const OwnWork& work = sweep.work;
    OwnPiece piece = {};
    piece.x = rect.x;
    piece.y = rect.y;
    for (int32_t k = 0; k < work.count; ++k) {
        PxkImage* const image = work.operands[k].image;
        const bool isTurned = ownIsTurned(work, k);
        const int32_t y = isTurned ? work.size.height - rect.y - rect.height : rect.y;
        OwnRect place = { sweep.regions[k].x + rect.x, sweep.regions[k].y + y, rect.width, rect.height };
        OwnBlock block;
        if (const PxkTileInfo* const tiles = image->tileInfo) {
            const int32_t mode = k == work.count - 1 ? PXK_TILE_WRITE : PXK_TILE_READ;
            if (!ownHoldTile(image, place.x / tiles->width, place.y / tiles->height, mode, sweep.held[k])) {
                ownReport(work.site, PXK_StsBadArg, work.operands[k].refusedTile);
                return false;
            }
            block = ownTileBlock(image, sweep.held[k].data);
            place.x %= tiles->width;
            place.y %= tiles->height;
        } else {
            block = ownImageBlock(image);
        }
        OwnView& view = piece.views[k];
        view = ownBlockView(image, block, place);
        if (isTurned) {
            view.first += (rect.height - 1) * view.rowStep;
            view.rowStep = -view.rowStep;
        }
    }
    if (work.mask.isGiven) {
        piece.maskBits = ownBitsAt(work.mask.bits, rect.x, rect.y);
        piece.mask = &piece.maskBits;
    }
    runner.call(runner.self, piece);
    return true;
}

bool ownSweepPieces(const OwnWork& work, const OwnPieceRunner& runner)
{
    OwnSweep sweep = { work, {}, {} };
    for (int32_t k = 0; k < work.count; ++k) sweep.regions[k] = ownRegionRect(work.operands[k].image);
    bool isGood = true;
    for (OwnRect rect = {}; isGood && rect.y < work.size.height; rect.y += rect.height) {
        for (rect.x = 0; isGood && rect.x < work.size.width; rect.x += rect.width) {
            const OwnSize size = ownPieceSize(sweep, rect.x, rect.y);
            rect.width = size.width;
            rect.height = size.height;
            isGood = ownRunPiece(sweep, rect, runner);
        }
    }
    for (int32_t k = 0; k < work.count; ++k) ownReleaseTile(work.operands[k].image, sweep.held[k]);
    return isGood;
}

// True when the work is one run of samples over the whole blocks, padding included.
static bool ownIsBlockRun(const OwnWork& work)
{
    const PxkImage* const destination = work.operands[work.count - 1].image;
    bool isSame = !work.mask.isGiven && !work.turnsDestination;
    for (int32_t k = 0; k < work.count; ++k) {
        const PxkImage* const image = work.operands[k].image;
        isSame = isSame && image->tileInfo == nullptr && ownSameBlock(image, destination);
    }
    return isSame;
}

void ownRunWork(const OwnWork& work, const OwnRowFunction& kernel)
{
    if (ownIsBlockRun(work)) {
        OwnView views[4];
        for (int32_t k = 0; k < work.count; ++k) {
            const PxkImage* const image = work.operands[k].image;
            OwnView& view = views[k];
            view = ownRegionStart(image);
            view.sampleBytes = std::max(view.sampleBytes, 1); // a kernel of one-bit images works on bytes anyway
            view.pixelStep = view.sampleBytes;
            view.width = image->imageSize / view.sampleBytes;
            view.height = 1;
            view.nChannels = 1;
        }
        return ownRunViews(views, work.count, 1, nullptr, kernel);
    }
    const auto onPiece = [&](const OwnPiece& piece) { ownRunViews(piece.views, work.count, 1, piece.mask, kernel); };
    ownSweepPieces(work, ownPieceRunner(onPiece));
}
