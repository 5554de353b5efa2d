#include <algorithm>

#include "frame/ownbits.h"
#include "frame/ownpixelcopy.h"
#include "owngeomchecks.h"
#include "ownresample.h"

struct OwnFlip {
    bool columns; // each row is reversed
    bool rows;    // the order of the rows is
};

// The columns of one channel run backward.
static OwnView ownTurnedColumns(const OwnView& view)
{
    OwnView turned = view;
    turned.first += (view.width - 1) * view.pixelStep;
    turned.pixelStep = -view.pixelStep;
    return turned;
}

// One view to another one of the same size, which share no pixel. False: out of memory.
static bool ownMirrorView(OwnView from, const OwnView& to, const OwnBits* mask, OwnFlip flip)
{
    if (flip.rows) {
        from.first += (from.height - 1) * from.rowStep;
        from.rowStep = -from.rowStep;
    }
    if (!flip.columns) {
        ownCopyView(from, to, mask);
        return true;
    }
    const int32_t n = from.width;
    if (from.sampleBytes == 0) {
        return ownMakeRows(to, OwnBitForm::BITS, mask, [&](int32_t y, uint8_t* row) {
            ownStoreReversedBits(from.first + y * from.rowStep, from.bit, row, 0, n);
        });
    }
    const bool isTogether = from.nChannels == 1 || from.channelStep == from.sampleBytes;
    const int32_t pixelBytes = from.nChannels * from.sampleBytes;
    if (isTogether && from.pixelStep == pixelBytes) {
        const OwnPixelCopy backward = ownPixelCopies(pixelBytes).backward;
        return ownMakeRows(to, OwnBitForm::BITS, mask, [&](int32_t y, uint8_t* row) {
            backward(from.first + y * from.rowStep, n - 1, row, 0, n, pixelBytes);
        });
    }
    if (from.nChannels == 1) {
        ownCopyView(ownTurnedColumns(from), to, mask);
        return true;
    }
    for (int32_t c = 0; c < from.nChannels; ++c) {
        if (!ownMirrorView(ownChannelView(from, c), ownChannelView(to, c), mask, { true, false })) return false;
    }
    return true;
}

// In memory, one image on both sides: bands of rows change places, or are turned where they are. False: out of memory.
static bool ownMirrorInPlace(PxkImage* image, OwnFlip flip)
{
    constexpr int32_t bandRows = 16;
    const OwnRect region = ownRegionRect(image);
    const auto rows = [&](int32_t y, int32_t height) {
        return OwnRect { region.x, region.y + y, region.width, height };
    };
    const auto view = [&](const OwnRect& rect) { return ownBlockView(image, ownImageBlock(image), rect); };
    int32_t y = 0;
    int32_t end = region.height;
    while (y < end) {
        const bool isPair = flip.rows && end - y >= 2 * bandRows;
        const OwnRect upper = rows(y, flip.rows && !isPair ? end - y : std::min(bandRows, end - y));
        const OwnRect lower = isPair ? rows(end - bandRows, bandRows) : upper;
        OwnSource held = {};
        if (!ownReadSource(held, image, upper, OwnReading::AS_COPY)) return false;
        if (isPair && !ownMirrorView(view(lower), view(upper), nullptr, flip)) return false;
        if (!ownMirrorView(held.view(upper), view(lower), nullptr, flip)) return false;
        y += upper.height;
        if (isPair) end -= bandRows;
    }
    return true;
}

static void ownRunMirror(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnFlip flip)
{
    if (srcImage == dstImage && srcImage->tileInfo == nullptr) {
        if (!ownMirrorInPlace(srcImage, flip)) ownReport(site, PXK_StsNoMem, "Out of memory");
        return;
    }
    OwnArea area;
    const OwnStart start = ownFindArea(area, { srcImage, dstImage });
    if (start == OwnStart::NO_MEMORY) ownReport(site, PXK_StsNoMem, "Out of memory");
    if (start != OwnStart::READY) return;
    const OwnRect region = ownRegionRect(srcImage);
    const auto sourceOf = [&](const OwnRect& part) { // a small mask does not move the picture
        const int32_t x = flip.columns ? area.regions.width - part.x - part.width : part.x;
        const int32_t y = flip.rows ? area.regions.height - part.y - part.height : part.y;
        return OwnRect { region.x + x, region.y + y, part.width, part.height };
    };
    ownResample({ site, srcImage, dstImage, area.size, area.mask.bitsOrNull() }, sourceOf,
                [&](const OwnSource& source, const OwnDestination& piece) {
                    return ownMirrorView(source.view(sourceOf(piece.rect)), piece.view, piece.mask, flip);
                });
}

void pxkMirror(PxkImage* srcImage, PxkImage* dstImage, int32_t flipAxis)
{
    const OwnSite site = OWN_HERE;
    if (!ownCheckedHeaders(site, { srcImage, dstImage })) return;
    const int32_t coiSrc = ownChannelOfInterest(srcImage);
    const int32_t coiDst = ownChannelOfInterest(dstImage);
    const int32_t alphaSrc = srcImage->alphaChannel, alphaDst = dstImage->alphaChannel;
    const int32_t nChannels = ownProcessedChannels(srcImage);
    static_cast<void>(ownEveryFault(
        site,
        { { srcImage == dstImage && srcImage->maskROI != nullptr, PXK_StsBadArg,
            "(srcImage==dstImage && srcImage->maskROI != ((void *)0))" },
          { srcImage->depth == PXK_DEPTH_32F || dstImage->depth == PXK_DEPTH_32F, PXK_StsBadArg,
            "(srcImage->depth==32||dstImage->depth==32)" },
          { srcImage->depth != dstImage->depth, PXK_StsBadArg, "(srcImage->depth!=dstImage->depth)" },
          { flipAxis > 1 || flipAxis < -1, PXK_StsBadArg, "((flipAxis>1)||(flipAxis<-1))" },
          { srcImage->depth == PXK_DEPTH_1U && alphaSrc != 0, PXK_StsBadArg,
            "(srcImage->depth==1 && srcImage->alphaChannel!=0)" },
          { dstImage->depth == PXK_DEPTH_1U && alphaDst != 0, PXK_StsBadArg,
            "(dstImage->depth==1 && dstImage->alphaChannel!=0)" },
          { coiSrc < 0 || coiSrc > srcImage->nChannels, PXK_StsBadArg, "(coiSrc<0||coiSrc>srcImage->nChannels)" },
          { alphaSrc != 0 && alphaSrc != srcImage->nChannels, PXK_StsBadArg,
            "(srcImage->alphaChannel!=0 && srcImage->alphaChannel!=srcImage->nChannels)" },
          { coiDst < 0 || coiDst > dstImage->nChannels, PXK_StsBadArg, "(coiDst<0 || coiDst>dstImage->nChannels)" },
          { alphaDst != 0 && alphaDst != dstImage->nChannels, PXK_StsBadArg,
            "(dstImage->alphaChannel!=0 && dstImage->alphaChannel!=dstImage->nChannels)" },
          { nChannels != ownProcessedChannels(dstImage), PXK_StsBadArg, "(nChannelsSrc != nChannelsDst)" } }));
    if (pxkGetErrStatus() < 0 || nChannels == 0) return;
    ownRunMirror(site, srcImage, dstImage, { flipAxis != 0, flipAxis != 1 });
}
