// SPDX-License-Identifier: BSD-2-Clause
// Dilation, erosion, opening and closing with a square window.
#include <algorithm>

#include "frame/ownbuffer.h"
#include "frame/ownimage.h"
#include "ownextrema.h"

static bool ownGoodMorph(const OwnSite& site, const PxkImage* src, const PxkImage* dst, int32_t nIterations)
{
    const int32_t depth = src->depth;
    const bool isServed = depth == PXK_DEPTH_1U || depth == PXK_DEPTH_8U || depth == PXK_DEPTH_16U;
    return ownPassed(site,
                     { { nIterations < 1, PXK_StsBadArg, "Illegal number of of iterations" },
                       { !isServed, PXK_StsBadArg, "Illegal image depth" },
                       { depth != dst->depth, PXK_StsBadArg, "SRC and DST depth are different" },
                       { src->dataOrder != dst->dataOrder, PXK_StsBadArg, "SRC and DST order are different" },
                       { src->origin != dst->origin, PXK_StsBadArg, "SRC and DST orign are different" },
                       { ownProcessedChannels(src) != ownProcessedChannels(dst), PXK_StsBadArg,
                         "SRC and DST number of channels are different" } });
}

// One pass. A window that reaches past the ring everywhere sees the same samples as a larger one, so its side is cut
// there.
static bool ownMorphPass(OwnWindowWork work, OwnExtremum kind, int32_t nIterations)
{
    const int32_t x = std::min(nIterations, work.sourceRect.width + 1);
    const int32_t y = std::min(nIterations, work.sourceRect.height + 1);
    work.margins = { x, y, x, y };
    const int32_t depth = work.source->depth;
    return ownRunWindow(work,
                        [&](const OwnBand& band) { return ownExtremaBand(band, depth, kind, 2 * x + 1, 2 * y + 1); });
}

// The first pass's result over the whole region: its processed channels and nothing else.
struct OwnFirstResult {
    PxkImage image;
    OwnBuffer<uint8_t> pixels;
};

// False: out of memory.
static bool ownOpenFirstResult(OwnFirstResult& first, const PxkImage* source, OwnSize size)
{
    PxkImage& image = first.image;
    image = {};
    image.headerSize = sizeof image;
    image.nChannels = ownProcessedChannels(source);
    image.depth = source->depth;
    image.dataOrder = source->dataOrder;
    image.align = source->align;
    image.width = size.width;
    image.height = size.height;
    const int64_t step = ownRowStep(image.dataOrder, image.depth, image.align, image.nChannels, size.width);
    const int64_t bytes = ownImageSize(image.dataOrder, image.nChannels, size.height, step);
    first.pixels = ownBuffer<uint8_t>(bytes);
    if (first.pixels == nullptr) return false;
    image.widthStep = static_cast<int32_t>(step);
    image.imageSize = static_cast<int32_t>(bytes);
    image.imageData = first.pixels.get();
    return true;
}

// What a call does: one pass, or two of which the second sees the first one's values inside the region only, its edge
// repeated outward.
struct OwnMorphPasses {
    OwnExtremum kinds[2];
    int32_t count;
};

static bool ownRunMorph(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations, const OwnMorphPasses& passes)
{
    OwnArea area;
    const OwnStart start = ownFindArea(area, { srcImage, dstImage });
    if (start == OwnStart::NO_MEMORY) return false;
    if (start == OwnStart::NOTHING_TO_DO || ownProcessedChannels(srcImage) == 0) return true;
    OwnWindowWork work = ownWindowWork(srcImage, dstImage, area);
    work.sourceRect.width = area.regions.width; // the ring lies round it, whatever the mask cuts off
    work.sourceRect.height = area.regions.height;
    work.bitRows = OwnBitRows::AS_BITS;
    work.ring = 1;
    if (passes.count == 1) return ownMorphPass(work, passes.kinds[0], nIterations);
    OwnFirstResult first;
    if (!ownOpenFirstResult(first, srcImage, area.regions)) return false;
    OwnWindowWork firstPass = work;
    firstPass.destination = &first.image;
    firstPass.size = area.regions;
    firstPass.mask = nullptr;
    if (!ownMorphPass(firstPass, passes.kinds[0], nIterations)) return false;
    work.source = &first.image;
    work.sourceRect = { 0, 0, area.regions.width, area.regions.height };
    work.ring = 0;
    return ownMorphPass(work, passes.kinds[1], nIterations);
}

static void ownMorph(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations, const OwnMorphPasses& passes)
{
    pxkSetErrStatus(PXK_StsOk);
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    if (!ownGoodMorph(OWN_HERE, srcImage, dstImage, nIterations)) return;
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
