#include "owndyadic.h"

const char* ownDyadicFormatFault(const PxkImage* srcImageA, const PxkImage* srcImageB, const PxkImage* dstImage,
                                 OwnOrders orders)
{
    if (srcImageA->depth != dstImage->depth) return "(srcImageA->depth != dstImage->depth)";
    if (srcImageB->depth != dstImage->depth) return "(srcImageB->depth != dstImage->depth)";
    if (orders == OwnOrders::MUST_AGREE) {
        if (srcImageA->dataOrder != dstImage->dataOrder) return "(srcImageA->dataOrder != dstImage->dataOrder)";
        if (srcImageB->dataOrder != dstImage->dataOrder) return "(srcImageB->dataOrder != dstImage->dataOrder)";
    }
    return nullptr;
}

const char* ownDyadicChannelFault(const PxkImage* srcImageA, const PxkImage* srcImageB, const PxkImage* dstImage)
{
    const int32_t nChDst = ownProcessedChannels(dstImage);
    if (ownProcessedChannels(srcImageA) != nChDst) return "(nChSrcA != nChDst)";
    if (ownProcessedChannels(srcImageB) != nChDst) return "(nChSrcB != nChDst)";
    return nullptr;
}

bool ownBeginDyadic(OwnWork& work, const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage,
                    OwnOrders orders)
{
    if (!ownGoodHeaders(site, { srcImageA, srcImageB, dstImage })) return false;
    const char* fault = ownDyadicFormatFault(srcImageA, srcImageB, dstImage, orders);
    if (fault == nullptr) fault = ownDyadicChannelFault(srcImageA, srcImageB, dstImage);
    if (fault != nullptr) {
        ownReport(site, PXK_StsBadArg, fault);
        return false;
    }
    return ownBeginWork(work, site,
                        { { srcImageA, "(srcImageA->tileInfo->tileData == ((void*)(0)))" },
                          { srcImageB, "(srcImageB->tileInfo->tileData == ((void*)(0)))" },
                          { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } });
}
