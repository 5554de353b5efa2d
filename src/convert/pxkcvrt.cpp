// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownconversion.h"
#include "frame/ownlimit.h"

template <class D> struct OwnSaturate {
    template <class S> D operator()(S sample) const { return ownLimitInteger<D>(sample); }
};

struct OwnIsPositive {
    template <class S> uint8_t operator()(S sample) const { return sample > 0; }
};

static bool ownIsGoodConversion(const OwnSite& site, const PxkImage* src, const PxkImage* dst)
{
    const bool isSameDepth = src->depth == dst->depth;
    const bool isToBits = dst->depth == PXK_DEPTH_1U && !isSameDepth;
    const bool needsInterest = isToBits && src->nChannels != 1;
    return ownPassed(
        site,
        { { src->depth == PXK_DEPTH_32F, PXK_StsBadArg, "(srcImage->depth == 32)" },
          { dst->depth == PXK_DEPTH_32F, PXK_StsBadArg, "(dstImage->depth == 32)" },
          { src->height != dst->height, PXK_StsBadArg, "(srcImage->height != dstImage->height)" },
          { src->width != dst->width, PXK_StsBadArg, "(srcImage->width != dstImage->width)" },
          { needsInterest && src->roi == nullptr, PXK_StsBadArg, "(srcImage->roi == 0)" },
          { needsInterest && src->roi != nullptr && src->roi->coi == 0, PXK_StsBadArg, "(srcImage->roi->coi == 0)" },
          { !isToBits && src->nChannels != dst->nChannels, PXK_StsBadArg,
            "srcImage->nChannels != dstImage->nChannels" },
          { !isToBits && src->depth == PXK_DEPTH_1U && !isSameDepth, PXK_StsBadArg,
            "((srcImage->depth == 1) && (srcImage->depth != dstImage->depth))" } });
}

int32_t pxkConvert(PxkImage* srcImage, PxkImage* dstImage)
{
    if (srcImage == dstImage) return PXK_StsOk;
    const OwnSite site = OWN_HERE;
    const int32_t headerFault = ownFirstHeaderFault(site, { srcImage, dstImage });
    if (headerFault != PXK_StsOk) return headerFault;
    if (!ownIsGoodConversion(site, srcImage, dstImage)) return PXK_StsBadArg;
    const bool isTurned = srcImage->origin != dstImage->origin; // the picture keeps its orientation
    if (srcImage->depth == dstImage->depth) {
        return ownRunDepths(site, srcImage, dstImage, OwnCopyRow { ownSampleBytes(srcImage->depth) }, isTurned);
    }
    if (dstImage->depth == PXK_DEPTH_1U) {
        return ownForIntegerDepth(srcImage->depth, [&](auto src) {
            using S = typename decltype(src)::Sample;
            return ownRunDepthsAs<S, uint8_t>(site, srcImage, dstImage, OwnIsPositive {}, isTurned);
        });
    }
    return ownForIntegerDepths(srcImage->depth, dstImage->depth, [&](auto src, auto dst) {
        using S = typename decltype(src)::Sample;
        using D = typename decltype(dst)::Sample;
        return ownRunDepthsAs<S, D>(site, srcImage, dstImage, OwnSaturate<D> {}, isTurned);
    });
}
