// SPDX-License-Identifier: BSD-2-Clause
#include "ownsamples.h"
#include "ownscalar.h"

static void ownRunAbs(const OwnWork& work)
{
    ownForDepth(work.depth(), [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if constexpr (ownIsFloat<T>) {
            // As bit patterns: the sign goes, whatever the number is.
            ownRunScalarAs<uint32_t>(work, [](uint32_t a) { return a & 0x7FFFFFFFu; });
        } else if constexpr (std::is_signed<T>::value) {
            ownRunScalarAs<T>(work, OwnAbsoluteSample {});
        }
    });
}

void pxkAbs(PxkImage* srcImage, PxkImage* dstImage)
{
    const int32_t isNull = ownEveryFault(OWN_HERE,
                                         { { srcImage == nullptr, PXK_StsBadArg, "srcImage==0" },
                                           { dstImage == nullptr, PXK_StsBadArg, "dstImage==0" } });
    if (isNull != PXK_StsOk || pxkGetErrStatus() < 0) return;
    if (srcImage->depth == PXK_DEPTH_1U || srcImage->depth == PXK_DEPTH_8U || srcImage->depth == PXK_DEPTH_16U) {
        pxkCopy(srcImage, dstImage); // these samples have no sign
        if (pxkGetErrStatus() < 0) OWN_REPORT(PXK_StsBackTrace, "pxkCopy is failed");
        return;
    }
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    const bool isGood = ownPassed(
        OWN_HERE,
        { { srcImage->depth != dstImage->depth, PXK_StsBadArg, "(srcImage->depth != dstImage->depth)" },
          { srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg, "(srcImage->dataOrder != dstImage->dataOrder)" },
          { ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage), PXK_StsBadArg,
            "(nChSrcCoi != nChDstCoi)" },
          { srcImage->nChannels != dstImage->nChannels, PXK_StsBadArg,
            "(srcImage->nChannels != dstImage->nChannels)" } });
    if (!isGood) return;
    OwnWork work;
    // The two texts differ in their operator; callers know them so.
    if (!ownBeginWork(work, OWN_HERE,
                      { { srcImage, "(srcImage->tileInfo->tileData != ((void*)(0)))" },
                        { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } }))
        return;
    ownRunAbs(work);
}
