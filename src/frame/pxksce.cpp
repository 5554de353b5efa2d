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
    OwnSize size;
    const OwnBits* mask;
    OwnRowFunction kernel;
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
                transfer.kernel);
}

static bool ownRunTransfer(const OwnTransfer& transfer);

// What an exchange of two tiled images fetched from the first one now holds the second one's pixels; they go back.
static bool ownStoreFetched(const OwnTransfer& transfer, const OwnBlock& fetched, const OwnRect& piece)
{
    PxkImage* const image = transfer.parties[0].image;
    const OwnRect& rect = transfer.parties[0].rect;
    const OwnParty from = { image, fetched, { 0, 0, piece.width, piece.height }, PXK_TILE_READ };
    const OwnRect place = { rect.x + piece.x, rect.y + piece.y, piece.width, piece.height };
    const OwnParty to = { image, OwnBlock {}, place, PXK_TILE_WRITE };
    const OwnCopyRow copyRow = { ownSampleBytes(image->depth) };
    OwnBits maskBits;
    if (transfer.mask != nullptr) maskBits = ownBitsAt(*transfer.mask, piece.x, piece.y);
    return ownRunTransfer({ transfer.site,
                            { from, to },
                            2,
                            1,
                            { piece.width, piece.height },
                            transfer.mask != nullptr ? &maskBits : nullptr,
                            ownRowFunction(copyRow) });
}

// One piece: the part of the work inside one tile of the grid image, which is the last tiled party.
static bool ownRunTilePiece(const OwnTransfer& transfer, int32_t grid, const OwnRect& piece)
{
    OwnBlock blocks[2];
    OwnRect places[2];
    for (int32_t k = 0; k < transfer.count; ++k) {
        const OwnRect& rect = transfer.parties[k].rect;
        blocks[k] = transfer.parties[k].block;
        places[k] = { rect.x + piece.x, rect.y + piece.y, piece.width, piece.height };
    }
    const OwnParty& tiled = transfer.parties[grid];
    PxkTileInfo* const tiles = tiled.image->tileInfo;
    const int32_t column = places[grid].x / tiles->width;
    const int32_t row = places[grid].y / tiles->height;
    tiles->callBack(tiled.image, column, row, tiled.tileMode);
    void* const tileData = tiles->tileData;
    if (tileData == nullptr) {
        const bool isWrite = tiled.tileMode == PXK_TILE_WRITE;
        ownReport(transfer.site, -2, isWrite ? "Error get tile to write" : "Error get tile to read");
        return false;
    }
    blocks[grid] = ownTileBlock(tiled.image, tileData);
    places[grid].x %= tiles->width;
    places[grid].y %= tiles->height;

    OwnFetched fetched;
    const bool isFetched = grid == 1 && transfer.parties[0].isTiled();
    if (isFetched) {
        PxkImage* const source = transfer.parties[0].image;
        fetched = ownFetch(source, places[0].x, places[0].y, piece.width, piece.height);
        if (fetched.pixels == nullptr || pxkGetErrStatus() < 0) {
            ownReport(transfer.site, PXK_StsBackTrace, "");
            return false; // the tile stays held, as after every failed tile step of this family
        }
        blocks[0] = fetched.block;
        places[0] = { 0, 0, piece.width, piece.height };
    }
    ownRunPiece(transfer, blocks, places, piece);
    tiles->tileData = tileData;
    tiles->callBack(tiled.image, column, row, PXK_TILE_RELEASE);
    return !(isFetched && transfer.nDestinations == 2) || ownStoreFetched(transfer, fetched.block, piece);
}

// Walks the tiles of the destination, or of the source where only that one is tiled.
static bool ownRunTransfer(const OwnTransfer& transfer)
{
    int32_t grid = transfer.count - 1;
    while (grid >= 0 && !transfer.parties[grid].isTiled()) --grid;
    if (grid < 0) {
        OwnBlock blocks[2];
        OwnRect places[2];
        for (int32_t k = 0; k < transfer.count; ++k) {
            blocks[k] = transfer.parties[k].block;
            places[k] = transfer.parties[k].rect;
            places[k].width = transfer.size.width;
            places[k].height = transfer.size.height;
        }
        ownRunPiece(transfer, blocks, places, { 0, 0, transfer.size.width, transfer.size.height });
        return true;
    }
    const OwnRect& rect = transfer.parties[grid].rect;
    const PxkTileInfo* const tiles = transfer.parties[grid].image->tileInfo;
    for (OwnRect piece = {}; piece.y < transfer.size.height; piece.y += piece.height) {
        piece.height = std::min(tiles->height - (rect.y + piece.y) % tiles->height, transfer.size.height - piece.y);
        for (piece.x = 0; piece.x < transfer.size.width; piece.x += piece.width) {
            piece.width = std::min(tiles->width - (rect.x + piece.x) % tiles->width, transfer.size.width - piece.x);
            if (!ownRunTilePiece(transfer, grid, piece)) return false;
        }
    }
    return true;
}

// Behind the argument checks: masks, common size, channels, and the way through memory or tiles. The images' parties
// are given; size and mask are found here.
static void ownTraverse(OwnTransfer transfer)
{
    PxkImage* const first = transfer.parties[0].image;
    PxkImage* const last = transfer.parties[transfer.count - 1].image;
    OwnMask mask;
    const OwnMaskCode code = ownCombineMasks({ first->maskROI, last->maskROI }, mask);
    if (code == OWN_MASK_NO_MEMORY) return ownReport(transfer.site, PXK_StsBackTrace, "");
    if (code == OWN_MASK_EMPTY) return;
    const OwnSize size = ownCommonSize({ first, last });
    transfer.size = { std::min(size.width, mask.size.width), std::min(size.height, mask.size.height) };
    transfer.mask = mask.bitsOrNull();
    const int32_t nFirst = ownProcessedChannels(first);
    const int32_t nLast = ownProcessedChannels(last);
    const bool isLoneAlpha = (nFirst == 0 && first->roi == nullptr) || (nLast == 0 && last->roi == nullptr);
    if (transfer.size.isEmpty() || isLoneAlpha) return;
    if (nFirst != nLast) {
        return ownReport(transfer.site, PXK_StsBadArg,
                         "Number of processed channels of srcImage != Number of processed channels of dstImage");
    }
    if (nFirst == 0) return;
    const bool isGood = ownRunTransfer(transfer);
    // Masked one-bit operations tell the call chain of a failure as well.
    if (!isGood && mask.isGiven && last->depth == PXK_DEPTH_1U && transfer.nDestinations == 1) {
        ownReport(transfer.site, PXK_StsBackTrace, "");
    }
}

// The argument checks of copy and exchange. All that fail are reported.
static bool ownGoodPair(const OwnSite& site, const PxkImage* source, const PxkImage* destination)
{
    bool isGood = true;
    const auto check = [&](bool isBad, const char* text) {
        if (isBad) ownReport(site, PXK_StsBadArg, text);
        isGood = isGood && !isBad;
    };
    const bool isOneChannel = source->nChannels == 1 && destination->nChannels == 1;
    check(source->depth != destination->depth, "srcImage->depth != dstImage->depth");
    check(source->origin != destination->origin, "srcImage->origin != dstImage->origin");
    check(source->depth != PXK_DEPTH_1U && !isOneChannel && source->dataOrder != destination->dataOrder,
          "srcImage->dataOrder != dstImage->dataOrder");
    return isGood && pxkGetErrStatus() >= 0;
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
                  {},
                  nullptr,
                  ownRowFunction(copyRow) });
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
                  {},
                  nullptr,
                  ownRowFunction(exchangeRows, true) });
}

template <class T> static void ownSetSamples(const OwnSite& site, PxkImage* image, T value)
{
    const auto setRow = [value](uint8_t* const* rows, ptrdiff_t n) {
        T* const samples = reinterpret_cast<T*>(rows[0]);
        for (ptrdiff_t i = 0; i < n; ++i) samples[i] = value;
    };
    ownTraverse({ site, { ownPartyOf(image, PXK_TILE_WRITE) }, 1, 1, {}, nullptr, ownRowFunction(setRow) });
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
