// SPDX-License-Identifier: BSD-2-Clause
// The aligned allocator, and making, testing, filling and freeing of the image records.
#include <cstdlib>
#include <cstring>

#include "ownbuffer.h"
#include "owndepth.h"
#include "ownimage.h"
#include "ownpoison.h"
#include "ownreport.h"

// ---- the allocator -------------------------------------------------------------------------------------------------

// A runtime block starts at a multiple of 8 or 16 bytes. 35 bytes further, rounded down to 32, at least a pointer's
// width lies in front of the result, and 33 of the 68 additional bytes behind it.
static void* ownAllocate(int32_t length, int32_t itemBytes)
{
    const int64_t bytes = static_cast<int64_t>(length) * itemBytes + 68;
    if (length < 0 || bytes > INT32_MAX) return nullptr;
    void* const block = malloc(static_cast<size_t>(bytes));
    if (block == nullptr) return nullptr;
    const uintptr_t result = (reinterpret_cast<uintptr_t>(block) + 35) & ~static_cast<uintptr_t>(31);
    memcpy(reinterpret_cast<void*>(result - sizeof block), &block, sizeof block);
    // The spare bytes would hide steps behind the end from a sanitizer. Its free takes the poison off.
    ASAN_POISON_MEMORY_REGION(reinterpret_cast<char*>(result) + (bytes - 68),
                              reinterpret_cast<uintptr_t>(block) + 68 - result);
    return reinterpret_cast<void*>(result);
}

void* pxkMalloc(int32_t length)
{
    return ownAllocate(length, 1);
}

void* pxkwMalloc(int32_t length)
{
    return ownAllocate(length, 2);
}

void* pxkiMalloc(int32_t length)
{
    return ownAllocate(length, 4);
}

void* pxksMalloc(int32_t length)
{
    return ownAllocate(length, 4);
}

void* pxkdMalloc(int32_t length)
{
    return ownAllocate(length, 8);
}

void pxkFree(void* pointer)
{
    if (pointer == nullptr) return;
    void* block;
    memcpy(&block, static_cast<char*>(pointer) - sizeof block, sizeof block);
    free(block);
}

// ---- sizes ---------------------------------------------------------------------------------------------------------

// True when pixels of the image's kind, a whole image or a tile of them, fit in 31 bits.
static bool ownFitsMemory(const PxkImage* image, int32_t width, int32_t height)
{
    const int64_t step = ownRowStep(image->dataOrder, image->depth, image->align, image->nChannels, width);
    return ownImageSize(image->dataOrder, image->nChannels, height, step) <= INT32_MAX;
}

static void ownStoreSizes(PxkImage* image)
{
    const int64_t step = ownRowStep(image->dataOrder, image->depth, image->align, image->nChannels, image->width);
    const int64_t size = ownImageSize(image->dataOrder, image->nChannels, image->height, step);
    // Only a tiled image can be too large here, and its sizes are not used.
    image->widthStep = step <= INT32_MAX ? static_cast<int32_t>(step) : 0;
    image->imageSize = size <= INT32_MAX ? static_cast<int32_t>(size) : 0;
}

// ---- tests of a header ---------------------------------------------------------------------------------------------

static int32_t ownHeaderFault(PxkImage* image, int32_t level);

// What must hold for any header, also for one without pixels. `hasTexts`: colorModel and channelSeq were given.
// `level`: how many masks stand above this header, each the mask of the next.
static int32_t ownFieldFault(PxkImage* image, bool hasTexts, int32_t level = 0)
{
    constexpr int32_t mostLevels = 8; // a chain that goes on is taken for a ring
    if (image->height < 1 || image->width < 1) return PXK_StsBadImageSize;
    if (image->nChannels < 1) return PXK_StsBadChannels;
    if (image->nChannels != 1 && image->depth == PXK_DEPTH_1U) return PXK_StsBadChannels1U;
    if (!hasTexts) return PXK_StsBadColorModel;
    if (!ownIsDepth(image->depth)) return PXK_StsBadDepth;
    if (image->alphaChannel != 0 && image->alphaChannel != image->nChannels) return PXK_StsBadAlphaChannel;
    if (image->dataOrder != PXK_DATA_ORDER_PIXEL && image->dataOrder != PXK_DATA_ORDER_PLANE) {
        return PXK_StsBadDataOrder;
    }
    if (image->origin != 0 && image->origin != 1) return PXK_StsBadOrigin;
    if (image->align != 4 && image->align != 8 && image->align != 16 && image->align != 32) return PXK_StsBadAlign;
    if (image->tileInfo == nullptr && !ownFitsMemory(image, image->width, image->height)) return PXK_StsBadImageSize;
    if (image->maskROI == nullptr) return PXK_StsOk;
    if (image->maskROI->depth != PXK_DEPTH_1U) return PXK_StsMaskBadDepth;
    if (image->maskROI->tileInfo != nullptr) return PXK_StsMaskTiled;
    if (level == mostLevels) return PXK_StsMaskBadDataPointers;
    const int32_t maskStatus = ownHeaderFault(image->maskROI, level + 1);
    return maskStatus != PXK_StsOk ? maskStatus - 100 : PXK_StsOk;
}

static int32_t ownTileFault(const PxkImage* image, const PxkTileInfo* tiles)
{
    if (tiles->callBack == nullptr) return PXK_StsNullCallBack;
    if (tiles->width < 1 || tiles->height < 1) return PXK_StsBadTileSize;
    if (tiles->width % 8 != 0 || tiles->height % 8 != 0) return PXK_StsBadTileSize;
    return ownFitsMemory(image, tiles->width, tiles->height) ? PXK_StsOk : PXK_StsBadTileSize;
}

static int32_t ownHeaderFault(PxkImage* image, int32_t level)
{
    if (image == nullptr) return PXK_StsNullHeader;
    const PxkTileInfo* const tiles = image->tileInfo;
    if ((image->imageData == nullptr) == (tiles == nullptr)) return PXK_StsBadDataPointers;
    if (image->imageSize < 1 && tiles == nullptr) return PXK_StsBadImageSize;
    if (image->widthStep < 1 && tiles == nullptr) return PXK_StsBadWidthStep;
    int32_t fault = ownFieldFault(image, true, level);
    if (fault == PXK_StsOk && tiles != nullptr) fault = ownTileFault(image, tiles);
    if (fault != PXK_StsOk) return fault;
    if (const PxkROI* const roi = image->roi) {
        if (roi->coi < 0 || roi->coi > image->nChannels) return PXK_StsBadCOI;
        if (roi->height < 1 || roi->width < 1) return PXK_StsBadRoiSize;
        if (roi->xOffset < 0 || roi->yOffset < 0) return PXK_StsBadRoiOffset;
    }
    return PXK_StsOk;
}

int32_t pxkCheckImageHeader(PxkImage* image)
{
    const int32_t fault = ownHeaderFault(image, 0);
    if (fault != PXK_StsOk) pxkSetErrStatus(fault);
    return fault;
}

// ---- making and filling --------------------------------------------------------------------------------------------

// The text, or its first four characters; what lies behind a shorter one is not read.
static void ownCopyWord(const char* text, char (&word)[4])
{
    for (size_t i = 0; i < sizeof word && text[i] != '\0'; ++i) word[i] = text[i];
}

PxkImage* pxkCreateImageHeader(int32_t nChannels, int32_t alphaChannel, int32_t depth, const char* colorModel,
                               const char* channelSeq, int32_t dataOrder, int32_t origin, int32_t align, int32_t width,
                               int32_t height, PxkROI* roi, PxkImage* maskROI, void* userTag, PxkTileInfo* tileInfo)
{
    PxkImage header = {};
    header.headerSize = sizeof header;
    header.nChannels = nChannels;
    header.alphaChannel = alphaChannel;
    header.depth = depth;
    header.dataOrder = dataOrder;
    header.origin = origin;
    header.align = align;
    header.width = width;
    header.height = height;
    header.roi = roi;
    header.maskROI = maskROI;
    header.userTag = userTag;
    header.tileInfo = tileInfo;
    const int32_t fault = ownFieldFault(&header, colorModel != nullptr && channelSeq != nullptr);
    OWN_REFUSE_IF(fault != PXK_StsOk, fault, "Incorrect data-ins", nullptr);
    ownCopyWord(colorModel, header.colorModel);
    ownCopyWord(channelSeq, header.channelSeq);
    ownStoreSizes(&header); // border mode PXK_EDGE_CONST with constant 0 is all zeros already

    PxkImage* const image = static_cast<PxkImage*>(pxkMalloc(sizeof header));
    if (image != nullptr) *image = header;
    return image;
}

static uint32_t ownFillPattern(int32_t depth, uint32_t value)
{
    switch (ownDepthBits(depth)) {
    case 1: return (value & 1) != 0 ? 0xFFFFFFFFu : 0;
    case 8: return (value & 0xFF) * 0x01010101u;
    case 16: return (value & 0xFFFF) * 0x00010001u;
    default: return value;
    }
}

// The common part of both allocations, behind the tests of depth.
static void ownAllocatePixels(const OwnSite& site, PxkImage* image, bool doFill, uint32_t fillBits)
{
    const int32_t fault = ownFieldFault(image, true);
    if (fault != PXK_StsOk) return ownReport(site, fault, "Incorrect data-ins");
    PxkImage sized = *image;
    ownStoreSizes(&sized);
    image->imageDataBase = malloc(static_cast<size_t>(sized.imageSize) + static_cast<size_t>(image->align) - 1);
    if (image->imageDataBase == nullptr) return;
    const uintptr_t mask = static_cast<uintptr_t>(image->align) - 1;
    image->imageData = reinterpret_cast<void*>((reinterpret_cast<uintptr_t>(image->imageDataBase) + mask) & ~mask);
    image->widthStep = sized.widthStep;
    image->imageSize = sized.imageSize;
    if (!doFill) return;
    const uint32_t pattern = ownFillPattern(image->depth, fillBits);
    uint32_t* const words = static_cast<uint32_t*>(image->imageData);
    const ptrdiff_t count = image->imageSize / 4; // rows are multiples of four bytes
    for (ptrdiff_t i = 0; i < count; ++i) words[i] = pattern;
}

void pxkAllocateImage(PxkImage* image, int32_t doFill, int32_t fillValue)
{
    OWN_REFUSE_IF(image == nullptr, PXK_StsBadArg, "( image == ((void *)0) )");
    OWN_REFUSE_IF(image->imageData != nullptr, PXK_StsBadArg, "( image->imageData != ((void *)0) )");
    OWN_REFUSE_IF(image->tileInfo != nullptr, PXK_StsBadArg, "( image->tileInfo != ((void *)0) )");
    OWN_REFUSE_IF(image->depth == PXK_DEPTH_32F, PXK_StsBadArg, "( image->depth == 32 )");
    ownAllocatePixels(OWN_HERE, image, doFill != 0, static_cast<uint32_t>(fillValue));
}

void pxkAllocateImageFP(PxkImage* image, int32_t doFill, float fillValue)
{
    OWN_REFUSE_IF(image == nullptr, PXK_StsBadArg, "( image == ((void *)0) )");
    OWN_REFUSE_IF(image->imageData != nullptr, PXK_StsBadArg, "( image->imageData != ((void *)0) )");
    OWN_REFUSE_IF(image->tileInfo != nullptr, PXK_StsBadArg, "( image->tileInfo != ((void *)0) )");
    OWN_REFUSE_IF(image->depth != PXK_DEPTH_32F, PXK_StsBadArg, "( image->depth != 32 )");
    uint32_t fillBits;
    memcpy(&fillBits, &fillValue, sizeof fillBits);
    ownAllocatePixels(OWN_HERE, image, doFill != 0, fillBits);
}

void pxkSetBorderMode(PxkImage* image, int32_t mode, int32_t sides, int32_t constant)
{
    const int32_t limited = ownLimit(constant, ownDepthRange(image->depth));
    for (int32_t side = 0; side < 4; ++side) {
        if ((sides >> side & 1) == 0) continue;
        image->borderMode[side] = mode;
        image->borderConst[side] = limited;
    }
}

// ---- freeing -------------------------------------------------------------------------------------------------------

void pxkDeallocateImage(PxkImage* image)
{
    free(image->imageDataBase);
    image->imageData = nullptr;
    image->imageDataBase = nullptr;
}

void pxkDeallocate(PxkImage* image, int32_t flag)
{
    if (image == nullptr) return;
    if ((flag & PXK_FREE_ROI) != 0) {
        pxkDeleteROI(image->roi);
        image->roi = nullptr;
    }
    if ((flag & PXK_FREE_MASK) != 0) {
        pxkDeallocate(image->maskROI, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI | PXK_FREE_TILE);
        image->maskROI = nullptr;
    }
    if ((flag & PXK_FREE_TILE) != 0) {
        pxkDeleteTileInfo(image->tileInfo);
        image->tileInfo = nullptr;
    }
    if ((flag & PXK_FREE_DATA) != 0 && image->imageDataBase != nullptr) pxkDeallocateImage(image);
    if ((flag & PXK_FREE_HEADER) != 0) pxkFree(image);
}

void pxkDeallocateHeader(PxkImage* image)
{
    pxkDeallocate(image, PXK_FREE_HEADER);
}

// ---- regions and tile records --------------------------------------------------------------------------------------

PxkROI* pxkCreateROI(int32_t coi, int32_t xOffset, int32_t yOffset, int32_t width, int32_t height)
{
    PxkROI* const roi = static_cast<PxkROI*>(pxkMalloc(sizeof(PxkROI)));
    pxkSetROI(roi, coi, xOffset, yOffset, width, height);
    return roi;
}

void pxkSetROI(PxkROI* roi, int32_t coi, int32_t xOffset, int32_t yOffset, int32_t width, int32_t height)
{
    if (roi != nullptr) *roi = { coi, xOffset, yOffset, width, height };
}

void pxkDeleteROI(PxkROI* roi)
{
    pxkFree(roi);
}

PxkTileInfo* pxkCreateTileInfo(PxkTileCallBack callBack, int32_t id, int32_t width, int32_t height)
{
    PxkTileInfo* const tileInfo = static_cast<PxkTileInfo*>(pxkMalloc(sizeof(PxkTileInfo)));
    pxkSetTileInfo(tileInfo, callBack, id, width, height);
    return tileInfo;
}

void pxkSetTileInfo(PxkTileInfo* tileInfo, PxkTileCallBack callBack, int32_t id, int32_t width, int32_t height)
{
    if (tileInfo != nullptr) *tileInfo = { callBack, id, nullptr, width, height };
}

void pxkDeleteTileInfo(PxkTileInfo* tileInfo)
{
    pxkFree(tileInfo);
}
