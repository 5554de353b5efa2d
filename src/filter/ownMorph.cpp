// Dilation, erosion, opening and closing with a square window.
#include <algorithm>

#include "frame/ownbuffer.h"
#include "frame/ownmask.h"
#include "frame/ownreport.h"
#include "ownextrema.h"

// The first argument fault, as the text to report, or null.
static const char* ownMorphFault(const PxkImage* srcImage, const PxkImage* dstImage, int32_t nIterations)
{
    if (nIterations < 1) return "Illegal number of of iterations";
    const int32_t depth = srcImage->depth;
    if (depth != PXK_DEPTH_1U && depth != PXK_DEPTH_8U && depth != PXK_DEPTH_16U) return "Illegal image depth";
    if (depth != dstImage->depth) return "SRC and DST depth are different";
    if (srcImage->dataOrder != dstImage->dataOrder) return "SRC and DST order are different";
    if (srcImage->origin != dstImage->origin) return "SRC and DST orign are different";
    if (ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage)) {
        return "SRC and DST number of channels are different";
    }
    return nullptr;
}

// One pass. A window that reaches past the ring everywhere sees the same samples as a larger one, so its side is cut
// there.
static bool ownMorphPass(OwnWindowWork work, OwnExtremum kind, int32_t nIterations)
{
    const int32_t x = std::min(nIterations, work.sourceRect.width + 1);
    const int32_t y = std::min(nIterations, work.sourceRect.height + 1);
    work.margins = { x, y, x, y };
    const int32_t depth = work.source->depth;
    const auto engine = [&](const OwnBand& band) { return ownExtremaBand(band, depth, kind, 2 * x + 1, 2 * y + 1); };
    return ownRunWindow(work, ownBandEngine(engine));
}

// The first pass's result over the whole region: its processed channels and nothing else.
static OwnTempImage ownFirstResult(const PxkImage* image, OwnSize size)
{
    OwnTempImage result(pxkCreateImageHeader(ownProcessedChannels(image), 0, image->depth, image->colorModel,
                                             image->channelSeq, image->dataOrder, image->origin, image->align,
                                             size.width, size.height, nullptr, nullptr, nullptr, nullptr));
    if (result != nullptr) pxkAllocateImage(result.get(), 0, 0);
    return result;
}

// What a call does: one pass, or two of which the second sees the first one's values inside the region only, its edge
// repeated outward.
struct OwnMorphPasses {
    OwnExtremum kinds[2];
    int32_t count;
};

static bool ownRunMorph(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations, const OwnMorphPasses& passes)
{
    OwnMask mask;
    const OwnMaskCode code = ownCombineMasks({ srcImage->maskROI, dstImage->maskROI }, mask);
    if (code == OWN_MASK_NO_MEMORY) return false;
    const OwnSize size = ownCommonSize({ srcImage, dstImage }); // the ring lies round it, whatever the mask cuts off
    if (code == OWN_MASK_EMPTY || size.isEmpty() || ownProcessedChannels(srcImage) == 0) return true;
    OwnWindowWork work = {};
    work.source = srcImage;
    work.destination = dstImage;
    work.sourceRect = ownRegionRect(srcImage);
    work.sourceRect.width = size.width;
    work.sourceRect.height = size.height;
    work.isInPlace = ownSharePixels(srcImage, dstImage);
    work.bitRows = OwnBitRows::AS_BITS;
    work.ring = 1;
    OwnTempImage first;
    if (passes.count == 2) {
        first = ownFirstResult(srcImage, size);
        if (first == nullptr || first->imageData == nullptr) return false;
        OwnWindowWork firstPass = work;
        firstPass.destination = first.get();
        firstPass.destinationRect = { 0, 0, size.width, size.height };
        firstPass.isInPlace = false;
        if (!ownMorphPass(firstPass, passes.kinds[0], nIterations)) return false;
        work.source = first.get();
        work.sourceRect = firstPass.destinationRect;
        work.isInPlace = false;
        work.ring = 0;
    }
    const OwnRect region = ownRegionRect(dstImage);
    work.destinationRect = { region.x, region.y, std::min(size.width, mask.size.width),
                             std::min(size.height, mask.size.height) };
    work.mask = mask.bitsOrNull();
    return ownMorphPass(work, passes.kinds[passes.count - 1], nIterations);
}

static void ownMorph(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations, const OwnMorphPasses& passes)
{
    pxkSetErrStatus(PXK_StsOk);
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    const char* const fault = ownMorphFault(srcImage, dstImage, nIterations);
    OWN_REFUSE_IF(fault != nullptr, PXK_StsBadArg, fault);
    // A shortage of memory and a refused tile are told by the status alone.
    if (!ownRunMorph(srcImage, dstImage, nIterations, passes)) pxkSetErrStatus(PXK_StsNoMem);
}

void pxkDilate(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations)
{
    ownMorph(srcImage, dstImage, nIterations, { { OwnExtremum::LARGEST }, 1 });
}

void pxkErode(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations)
{
    ownMorph(srcImage, dstImage, nIterations, { { OwnExtremum::SMALLEST }, 1 });
}

void pxkOpen(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations)
{
    ownMorph(srcImage, dstImage, nIterations, { { OwnExtremum::SMALLEST, OwnExtremum::LARGEST }, 2 });
}

void pxkClose(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations)
{
    ownMorph(srcImage, dstImage, nIterations, { { OwnExtremum::LARGEST, OwnExtremum::SMALLEST }, 2 });
}
