// SPDX-License-Identifier: BSD-2-Clause
#include "ownpixel.h"

#include <cstring>

#include "owndepth.h"
#include "owntile.h"

static int32_t ownRefuse(const OwnSite& site, int32_t status, const char* text)
{
    return pxkError(status, site.func, text, site.file, site.line);
}

static void ownCopyBit(uint8_t* row, int32_t x, uint8_t* pixel, bool isWrite)
{
    uint8_t& byte = row[x / 8];
    const int32_t place = 7 - x % 8;
    if (isWrite) {
        byte = static_cast<uint8_t>((byte & ~(1 << place)) | (pixel[0] & 1) << place);
    } else {
        pixel[0] = byte >> place & 1;
    }
}

// (x, y) are coordinates in the block.
static void ownCopyPixel(const PxkImage* image, const OwnBlock& block, int32_t x, int32_t y, uint8_t* pixel,
                         bool isWrite)
{
    uint8_t* const row = block.data + y * block.rowStep;
    const int32_t sampleBytes = ownSampleBytes(image->depth);
    if (sampleBytes == 0) return ownCopyBit(row, x, pixel, isWrite);
    const bool isPixelOrder = image->dataOrder == PXK_DATA_ORDER_PIXEL;
    const ptrdiff_t pixelStep = sampleBytes * (isPixelOrder ? static_cast<ptrdiff_t>(image->nChannels) : 1);
    const ptrdiff_t channelStep = isPixelOrder ? sampleBytes : block.planeStep;
    for (int32_t channel = 0; channel < image->nChannels; ++channel) {
        uint8_t* const sample = row + x * pixelStep + channel * channelStep;
        uint8_t* const mine = pixel + static_cast<ptrdiff_t>(channel) * sampleBytes;
        memcpy(isWrite ? sample : mine, isWrite ? mine : sample, static_cast<size_t>(sampleBytes));
    }
}

int32_t ownAccessPixel(const OwnPixelAccess& access, PxkImage* image, int32_t x, int32_t y, uint8_t* pixel)
{
    const OwnSite& site = access.site;
    const int32_t status = pxkCheckImageHeader(image);
    if (status != PXK_StsOk) return ownRefuse(site, status, "Incorrect Image");
    if (x < 0 || x >= image->width) return ownRefuse(site, PXK_StsBadArg, "((x>width-1) || (x<0))");
    if (y < 0 || y >= image->height) return ownRefuse(site, PXK_StsBadArg, "((y>height-1) || (y<0))");
    if (pixel == nullptr) return ownRefuse(site, PXK_StsBadArg, "pixel==0");

    const bool isWrite = access.tileMode == PXK_TILE_WRITE;
    const int32_t row = image->origin == 1 ? image->height - y - 1 : y; // y counts from the picture's top edge
    if (image->tileInfo == nullptr) {
        ownCopyPixel(image, ownImageBlock(image), x, row, pixel, isWrite);
        return PXK_StsOk;
    }
    OwnTile tile;
    if (!tile.hold(image, x, row, access.tileMode)) return ownRefuse(site, -2, access.refusedTile);
    const OwnRect place = ownInTile(image->tileInfo, { x, row, 1, 1 });
    ownCopyPixel(image, tile.block(), place.x, place.y, pixel, isWrite);
    return PXK_StsOk;
}
