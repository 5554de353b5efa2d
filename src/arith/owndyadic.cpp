// SPDX-License-Identifier: BSD-2-Clause
#include "owndyadic.h"

bool ownGoodFormats(const OwnSite& site, const OwnDyadic& images, OwnOrders orders)
{
    const PxkImage* const a = images.srcImageA;
    const PxkImage* const b = images.srcImageB;
    const PxkImage* const d = images.dstImage;
    const bool mustAgree = orders == OwnOrders::MUST_AGREE;
    return ownPassed(
        site,
        { { a->depth != d->depth, PXK_StsBadArg, "(srcImageA->depth != dstImage->depth)" },
          { b->depth != d->depth, PXK_StsBadArg, "(srcImageB->depth != dstImage->depth)" },
          { mustAgree && a->dataOrder != d->dataOrder, PXK_StsBadArg, "(srcImageA->dataOrder != dstImage->dataOrder)" },
          { mustAgree && b->dataOrder != d->dataOrder, PXK_StsBadArg,
            "(srcImageB->dataOrder != dstImage->dataOrder)" } });
}

bool ownGoodChannels(const OwnSite& site, const OwnDyadic& images)
{
    const int32_t nChDst = ownProcessedChannels(images.dstImage);
    return ownPassed(site,
                     { { ownProcessedChannels(images.srcImageA) != nChDst, PXK_StsBadArg, "(nChSrcA != nChDst)" },
                       { ownProcessedChannels(images.srcImageB) != nChDst, PXK_StsBadArg, "(nChSrcB != nChDst)" } });
}

bool ownOpenDyadic(OwnWork& work, const OwnSite& site, const OwnDyadic& images)
{
    return ownBeginWork(work, site,
                        { { images.srcImageA, "(srcImageA->tileInfo->tileData == ((void*)(0)))" },
                          { images.srcImageB, "(srcImageB->tileInfo->tileData == ((void*)(0)))" },
                          { images.dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } });
}

bool ownBeginDyadic(OwnWork& work, const OwnSite& site, const OwnDyadic& images, OwnOrders orders)
{
    return ownGoodHeaders(site, { images.srcImageA, images.srcImageB, images.dstImage })
        && ownGoodFormats(site, images, orders) && ownGoodChannels(site, images) && ownOpenDyadic(work, site, images);
}
