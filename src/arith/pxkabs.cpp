#include "ownsamples.h"
#include "ownscalar.h"

// The first argument fault, as the text to report, or null.
static const char* ownAbsFault(const PxkImage* srcImage, const PxkImage* dstImage)
{
    if (srcImage->depth != dstImage->depth) return "(srcImage->depth != dstImage->depth)";
    if (srcImage->dataOrder != dstImage->dataOrder) return "(srcImage->dataOrder != dstImage->dataOrder)";
    if (ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage)) return "(nChSrcCoi != nChDstCoi)";
    if (srcImage->nChannels != dstImage->nChannels) return "(srcImage->nChannels != dstImage->nChannels)";
    return nullptr;
}

static void ownRunAbs(const OwnWork& work)
{
    ownForDepth(work.operands[0].image->depth, [&](auto tag) {
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
    if (srcImage == nullptr) OWN_REPORT(PXK_StsBadArg, "srcImage==0");
    if (dstImage == nullptr) OWN_REPORT(PXK_StsBadArg, "dstImage==0");
    if (srcImage == nullptr || dstImage == nullptr || pxkGetErrStatus() < 0) return;
    if (srcImage->depth == PXK_DEPTH_1U || srcImage->depth == PXK_DEPTH_8U || srcImage->depth == PXK_DEPTH_16U) {
        pxkCopy(srcImage, dstImage); // these samples have no sign
        if (pxkGetErrStatus() < 0) OWN_REPORT(PXK_StsBackTrace, "pxkCopy is failed");
        return;
    }
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    const char* const fault = ownAbsFault(srcImage, dstImage);
    OWN_REFUSE_IF(fault != nullptr, PXK_StsBadArg, fault);
    OwnWork work;
    // The two texts differ in their operator; callers know them so.
    if (!ownBeginWork(work, OWN_HERE,
                      { { srcImage, "(srcImage->tileInfo->tileData != ((void*)(0)))" },
                        { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } }))
        return;
    ownRunAbs(work);
}
