// SPDX-License-Identifier: BSD-2-Clause
// Set, copy and exchange.
#include <algorithm>
#include <cstring>

#include "owndepth.h"
#include "ownrect.h"
#include "ownwork.h"

// ---- traversal -----------------------------------------------------------------------------------------------------

// One image of a transfer: a block in memory, or the image's tiles where the block's data is null; and the place of the
// work's first pixel.
struct OwnParty {
    PxkImage* image;
    OwnBlock block;
    OwnRect rect;
    int32_t tileMode;

    bool isTiled() const { return block.data == nullptr; }
    OwnRect place(const OwnRect& piece) const
    {
        return { rect.x + piece.x, rect.y + piece.y, piece.width, piece.height };
    }
};

static OwnParty ownPartyOf(PxkImage* image, int32_t tileMode)
{
    const OwnBlock block = image->tileInfo == nullptr ? ownImageBlock(image) : OwnBlock {};
    return { image, block, ownRegionRect(image), tileMode };
}

// Source, if there is one, and destination last.
struct OwnTransfer {
    OwnSite site;
    OwnParty parties[2];
    int32_t count;
    int32_t nDestinations;
    OwnRowFunction rowFunction;
    OwnSize size;
    const OwnBits* mask;
};

static void ownRunPiece(const OwnTransfer& transfer, const OwnBlock* blocks, const OwnRect* places,
                        const OwnRect& piece)
{
    OwnView views[2];
    for (int32_t k = 0; k < transfer.count; ++k) {
        views[k] = ownBlockView(transfer.parties[k].image, blocks[k], places[k]);
    }
    OwnBits maskBits;
    if (transfer.mask != nullptr) maskBits = ownBitsAt(*transfer.mask, piece.x, piece.y);
    ownRunViews(views, transfer.count, transfer.nDestinations, transfer.mask != nullptr ? &maskBits : nullptr,
                transfer.rowFunction);
}

static bool ownRunTransfer(const OwnTransfer& transfer);

// What an exchange of two tiled images fetched from the first one now holds the second one's pixels; they go back.
static bool ownStoreFetched(const OwnTransfer& transfer, const OwnBlock& fetched, const OwnRect& piece)
{
    const OwnParty& party = transfer.parties[0];
    const OwnParty from = { party.image, fetched, { 0, 0, piece.width, piece.height }, PXK_TILE_READ };
    const OwnParty to = { party.image, OwnBlock {}, party.place(piece), PXK_TILE_WRITE };
    const OwnCopyRow copyRow = { ownSampleBytes(party.image->depth) };
    OwnBits maskBits;
    if (transfer.mask != nullptr) maskBits = ownBitsAt(*transfer.mask, piece.x, piece.y);
    return ownRunTransfer({ transfer.site,
                            { from, to },
                            2,
                            1,
                            copyRow,
                            { piece.width, piece.height },
                            transfer.mask != nullptr ? &maskBits : nullptr });
}

// One piece: the part of the work inside one tile of the grid image, which is the last tiled party. After a failed step
// the tile stays held, as in all operations of this family.
static bool ownRunTilePiece(const OwnTransfer& transfer, int32_t grid, const OwnRect& piece)
{
    const OwnParty& tiled = transfer.parties[grid];
    OwnBlock blocks[2] = { transfer.parties[0].block, transfer.parties[1].block };
    OwnRect places[2] = { transfer.parties[0].place(piece), transfer.parties[1].place(piece) };
    OwnTile tile;
    if (!tile.hold(tiled.image, places[grid].x, places[grid].y, tiled.tileMode)) {
        const bool isWrite = tiled.tileMode == PXK_TILE_WRITE;
        ownReport(transfer.site, -2, isWrite ? "Error get tile to write" : "Error get tile to read");
        return false;
    }
    blocks[grid] = tile.block();
    places[grid] = ownInTile(tiled.image->tileInfo, places[grid]);

    OwnFetched fetched;
    const bool isFetched = grid == 1 && transfer.parties[0].isTiled();
    if (isFetched) {
        fetched = ownFetch(transfer.parties[0].image, places[0].x, places[0].y, piece.width, piece.height);
        if (fetched.pixels == nullptr || pxkGetErrStatus() < 0) {
            ownReport(transfer.site, PXK_StsBackTrace, "");
            tile.leave();
            return false;
        }
        blocks[0] = fetched.block;
        places[0] = { 0, 0, piece.width, piece.height };
    }
    ownRunPiece(transfer, blocks, places, piece);
    tile.release();
    return !(isFetched && transfer.nDestinations == 2) || ownStoreFetched(transfer, fetched.block, piece);
}

// Walks the tiles of the destination, or of the source where only that one is tiled.
static bool ownRunTransfer(const OwnTransfer& transfer)
{
    int32_t tiled = transfer.count - 1;
    while (tiled >= 0 && !transfer.parties[tiled].isTiled()) --tiled;
    const OwnRect all = { 0, 0, transfer.size.width, transfer.size.height };
    if (tiled < 0) {
        const OwnBlock blocks[2] = { transfer.parties[0].block, transfer.parties[1].block };
        const OwnRect places[2] = { transfer.parties[0].place(all), transfer.parties[1].place(all) };
        ownRunPiece(transfer, blocks, places, all);
        return true;
    }
    const OwnParty& party = transfer.parties[tiled];
    const OwnGrid grid = { party.image->tileInfo, party.rect.x, party.rect.y, false };
    return ownWalkTiles(transfer.size, &grid, 1,
                        [&](const OwnRect& piece) { return ownRunTilePiece(transfer, tiled, piece); });
}

// Behind the argument checks: masks, common size, channels, and the way through memory or tiles.
static void ownTraverse(OwnTransfer transfer)
{
    PxkImage* const first = transfer.parties[0].image;
    PxkImage* const last = transfer.parties[transfer.count - 1].image;
    OwnArea area;
    const OwnStart start = ownFindArea(area, { first, last });
    if (start == OwnStart::NO_MEMORY) return ownReport(transfer.site, PXK_StsBackTrace, "");
    if (start == OwnStart::NOTHING_TO_DO) return;
    transfer.size = area.size;
    transfer.mask = area.mask.bitsOrNull();
    const int32_t nFirst = ownProcessedChannels(first);
    const int32_t nLast = ownProcessedChannels(last);
    if ((nFirst == 0 && first->roi == nullptr) || (nLast == 0 && last->roi == nullptr)) return; // lone alpha
    const char* const text = "Number of processed channels of srcImage != Number of processed channels of dstImage";
    if (!ownPassed(transfer.site, { { nFirst != nLast, PXK_StsBadArg, text } }) || nFirst == 0) return;
    const bool isGood = ownRunTransfer(transfer);
    // Masked one-bit operations tell the call chain of a failure as well.
    if (!isGood && area.mask.isGiven && last->depth == PXK_DEPTH_1U && transfer.nDestinations == 1) {
        ownReport(transfer.site, PXK_StsBackTrace, "");
    }
}

// The argument checks of copy and exchange. All that fail are reported.
static bool ownGoodPair(const OwnSite& site, const PxkImage* source, const PxkImage* destination)
{
    const bool isOneChannel = source->nChannels == 1 && destination->nChannels == 1;
    const bool isOrdered = source->depth != PXK_DEPTH_1U && !isOneChannel;
    const int32_t fault = ownEveryFault(
        site,
        { { source->depth != destination->depth, PXK_StsBadArg, "srcImage->depth != dstImage->depth" },
          { source->origin != destination->origin, PXK_StsBadArg, "srcImage->origin != dstImage->origin" },
          { isOrdered && source->dataOrder != destination->dataOrder, PXK_StsBadArg,
            "srcImage->dataOrder != dstImage->dataOrder" } });
    return fault == PXK_StsOk && pxkGetErrStatus() >= 0;
}

// ---- the operations ------------------------------------------------------------------------------------------------

void pxkCopy(PxkImage* srcImage, PxkImage* dstImage)
{
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    if (!ownGoodPair(OWN_HERE, srcImage, dstImage) || srcImage == dstImage) return;
    const OwnCopyRow copyRow = { ownSampleBytes(srcImage->depth) };
    ownTraverse({ OWN_HERE,
                  { ownPartyOf(srcImage, PXK_TILE_READ), ownPartyOf(dstImage, PXK_TILE_WRITE) },
                  2,
                  1,
                  copyRow,
                  {},
                  nullptr });
}

void pxkExchange(PxkImage* ImageA, PxkImage* ImageB)
{
    OWN_REFUSE_BAD_HEADERS(ImageA, ImageB);
    if (!ownGoodPair(OWN_HERE, ImageA, ImageB) || ImageA == ImageB) return;
    const int32_t sampleBytes = std::max(ownSampleBytes(ImageA->depth), 1);
    const auto exchangeRows = [sampleBytes](uint8_t* const* rows, ptrdiff_t n) {
        uint8_t* const a = rows[0];
        uint8_t* const b = rows[1];
        const ptrdiff_t bytes = n * sampleBytes;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < bytes; ++i) {
            const uint8_t held = a[i];
            a[i] = b[i];
            b[i] = held;
        }
    };
    ownTraverse({ OWN_HERE,
                  { ownPartyOf(ImageA, PXK_TILE_WRITE), ownPartyOf(ImageB, PXK_TILE_WRITE) },
                  2,
                  2,
                  OwnRowFunction(exchangeRows, true),
                  {},
                  nullptr });
}

template <class T> static void ownSetSamples(const OwnSite& site, PxkImage* image, T value)
{
    const auto setRow = [value](uint8_t* const* rows, ptrdiff_t n) {
        T* const samples = reinterpret_cast<T*>(rows[0]);
        // The rest is copied from the first 16 KB: memcpy knows how to store without reading what it overwrites.
        const ptrdiff_t first = std::min<ptrdiff_t>(n, 16384 / sizeof(T));
        for (ptrdiff_t i = 0; i < first; ++i) samples[i] = value;
        for (ptrdiff_t i = first; i < n; i += first)
            memcpy(samples + i, samples, static_cast<size_t>(std::min(first, n - i)) * sizeof(T));
    };
    ownTraverse({ site, { ownPartyOf(image, PXK_TILE_WRITE) }, 1, 1, setRow, {}, nullptr });
}

void pxkSet(PxkImage* image, int32_t fillValue)
{
    OWN_REFUSE_BAD_HEADERS(image);
    OWN_REFUSE_IF(image->depth == PXK_DEPTH_32F, PXK_StsBadDepth, "You should use pxkSetFP for this image");
    if (pxkGetErrStatus() < 0) return;
    const int32_t value = ownLimit(fillValue, ownDepthRange(image->depth));
    switch (ownDepthBits(image->depth)) {
    case 1: return ownSetSamples(OWN_HERE, image, static_cast<uint8_t>(-value)); // eight pixels a byte
    case 8: return ownSetSamples(OWN_HERE, image, static_cast<uint8_t>(value));
    case 16: return ownSetSamples(OWN_HERE, image, static_cast<uint16_t>(value));
    default: return ownSetSamples(OWN_HERE, image, value);
    }
}

void pxkSetFP(PxkImage* image, float fillValue)
{
    OWN_REFUSE_IF(image == nullptr, PXK_StsBadArg, "dstImage==0");
    OWN_REFUSE_IF(image->depth != PXK_DEPTH_32F, PXK_StsBadDepth, "You should use pxkSet for this image");
    int32_t bits;
    memcpy(&bits, &fillValue, sizeof bits);
    image->depth = PXK_DEPTH_32S; // the float's bits are set as an integer of the same width
    pxkSet(image, bits);
    if (pxkGetErrStatus() < 0) OWN_REPORT(PXK_StsBackTrace, "");
    image->depth = PXK_DEPTH_32F;
}
