// SPDX-License-Identifier: BSD-2-Clause
#include "owntwist.h"

#include <algorithm>

OwnCheck ownFirstFailure(std::initializer_list<OwnCheck> checks)
{
    for (const OwnCheck& check : checks) {
        if (check.fails) return check;
    }
    return {};
}

OwnCheck ownHeaderFailure(const OwnTwistImages& images)
{
    for (PxkImage* image : { images.src, images.dst }) {
        const int32_t fault = pxkCheckImageHeader(image);
        if (fault != PXK_StsOk) return { true, fault, "Incorrect Image" };
    }
    return {};
}

OwnCheck ownTwistChannelFailure(const OwnTwistImages& images)
{
    const PxkImage *const src = images.src, *const dst = images.dst;
    return ownFirstFailure({
        { src->nChannels < 3, PXK_StsBadArg, "(srcImage->nChannels < 3)" },
        { src->alphaChannel != 0 && src->nChannels < 4, PXK_StsBadArg,
          "((srcImage->alphaChannel != 0) && (srcImage->nChannels < 4))" },
        { src->alphaChannel != 0 && src->alphaChannel < src->nChannels, PXK_StsBadArg,
          "((srcImage->alphaChannel != 0) && (srcImage->alphaChannel < srcImage->nChannels))" },
        { dst->nChannels < 3, PXK_StsBadArg, "(dstImage->nChannels < 3)" },
        { dst->alphaChannel != 0 && dst->nChannels < 4, PXK_StsBadArg,
          "((dstImage->alphaChannel != 0) && (dstImage->nChannels < 4))" },
        { dst->alphaChannel != 0 && dst->alphaChannel < dst->nChannels, PXK_StsBadArg,
          "((dstImage->alphaChannel != 0) && (dstImage->alphaChannel < dstImage->nChannels))" },
    });
}

// The first three channels, whatever the channel of interest.
static OwnPixelChannels ownTwistedChannels(const PxkImage* image, const OwnView& view)
{
    const int32_t firstOfView = std::max(ownChannelOfInterest(image) - 1, 0);
    return ownSomeChannels(view, -firstOfView, 3);
}

int32_t ownRunTwist(const OwnSite& site, const OwnTwistImages& images, const OwnRowFunction& row)
{
    OwnWork work = {};
    work.site = site;
    work.count = 2;
    work.operands[0] = { images.src, "(srcImage->tileInfo->tileData == NULL)" };
    work.operands[1] = { images.dst, "(dstImage->tileInfo->tileData == NULL)" };
    const OwnStart start = ownFindArea(work.area, { images.src, images.dst });
    if (start == OwnStart::NO_MEMORY) return ownRefused(site, { true, PXK_StsBadArg, "(msk == NULL)" });
    if (start == OwnStart::NOTHING_TO_DO) return PXK_StsOk;
    const bool isComplete = ownSweepPieces(work, [&](const OwnPiece& piece) {
        ownRunPixels({ ownTwistedChannels(images.src, piece.views[0]), ownTwistedChannels(images.dst, piece.views[1]) },
                     1, piece.mask, row);
    });
    return isComplete ? PXK_StsOk : PXK_StsBadArg;
}
