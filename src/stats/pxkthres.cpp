// SPDX-License-Identifier: BSD-2-Clause
#include <limits>

#include "frame/ownconversion.h"

static bool ownIsMaskTurned(const PxkImage* image)
{
    return image->maskROI != nullptr && image->origin != image->maskROI->origin;
}

static bool ownGoodThreshold(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, int32_t threshold)
{
    const int32_t depth = srcImage->depth;
    const bool isUnlikeOrder =
        srcImage->dataOrder != dstImage->dataOrder && srcImage->nChannels != 1 && dstImage->nChannels != 1;
    return ownPassed(
        site,
        { { depth == PXK_DEPTH_32F, PXK_StsBadArg, "(srcImage->depth == 32)" },
          { dstImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "(dstImage->depth == 32)" },
          { depth == PXK_DEPTH_1U, PXK_StsBadArg, "(srcImage->depth == 1)" },
          { isUnlikeOrder, PXK_StsBadArg,
            "((srcImage->dataOrder != dstImage->dataOrder)&& "
            "((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))" },
          { srcImage->origin != dstImage->origin, PXK_StsBadArg, "(srcImage->origin != dstImage->origin)" },
          { ownIsMaskTurned(srcImage), PXK_StsBadArg, "(srcImage->origin != srcImage->maskROI->origin)" },
          { ownIsMaskTurned(dstImage), PXK_StsBadArg, "(dstImage->origin != dstImage->maskROI->origin)" },
          { depth == PXK_DEPTH_8S && threshold > 127, PXK_StsBadArg,
            "((srcImage->depth == (0x80000000| 8)) && (Threshold > 127))" },
          { depth == PXK_DEPTH_8S && threshold < -128, PXK_StsBadArg,
            "((srcImage->depth == (0x80000000| 8)) && (Threshold < -128))" },
          { depth == PXK_DEPTH_8U && threshold > 255, PXK_StsBadArg, "((srcImage->depth == 8) && (Threshold > 255))" },
          { depth == PXK_DEPTH_8U && threshold < 0, PXK_StsBadArg, "((srcImage->depth == 8) && (Threshold < 0))" },
          { depth == PXK_DEPTH_16S && threshold > 32767, PXK_StsBadArg,
            "((srcImage->depth == (0x80000000|16)) && (Threshold > 32767))" },
          { depth == PXK_DEPTH_16S && threshold < -32768, PXK_StsBadArg,
            "((srcImage->depth == (0x80000000|16)) && (Threshold < -32768))" },
          { depth == PXK_DEPTH_16U && threshold > 65535, PXK_StsBadArg,
            "((srcImage->depth == 16) && (Threshold > 65535))" },
          { depth == PXK_DEPTH_16U && threshold < 0, PXK_StsBadArg, "((srcImage->depth == 16) && (Threshold < 0))" } });
}

// Low and high are the ends of the destination's range; one-bit pixels are bytes here.
template <class S, class D>
static void ownRunThreshold(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, int32_t threshold)
{
    const D low = std::numeric_limits<D>::min();
    const D high = dstImage->depth == PXK_DEPTH_1U ? 1 : std::numeric_limits<D>::max();
    const S level = static_cast<S>(threshold); // inside the range: checked
    const auto reaches = [=](S sample) { return sample >= level ? high : low; };
    (void)ownRunDepthsAs<S, D>(site, srcImage, dstImage, reaches);
}

void pxkThreshold(PxkImage* srcImage, PxkImage* dstImage, int32_t Threshold)
{
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    const OwnSite site = OWN_HERE;
    if (!ownGoodThreshold(site, srcImage, dstImage, Threshold)) return;
    if (ownProcessedChannels(srcImage) == 0 || ownProcessedChannels(dstImage) == 0) return; // nothing but alpha
    const int32_t dstDepth = dstImage->depth == PXK_DEPTH_1U ? PXK_DEPTH_8U : dstImage->depth;
    ownForIntegerDepths(srcImage->depth, dstDepth, [&](auto src, auto dst) {
        using S = typename decltype(src)::Sample;
        using D = typename decltype(dst)::Sample;
        ownRunThreshold<S, D>(site, srcImage, dstImage, Threshold);
    });
}
