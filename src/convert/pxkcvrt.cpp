#include <algorithm>
#include <limits>

#include "frame/ownconversion.h"

// The sample limited to the range of D, in its own width: the limits are those ends of both ranges that lie inside.
template <class D> struct OwnSaturate {
    template <class S> D operator()(S sample) const
    {
        using From = std::numeric_limits<S>;
        using To = std::numeric_limits<D>;
        constexpr S least = static_cast<S>(std::max<int64_t>(From::min(), To::min()));
        constexpr S most = static_cast<S>(std::min<int64_t>(From::max(), To::max()));
        return static_cast<D>(std::min(std::max(sample, least), most));
    }
};

struct OwnIsPositive {
    template <class S> uint8_t operator()(S sample) const { return sample > 0; }
};

// The first failed check, as the text to report, or null.
static const char* ownConvertFault(const PxkImage* srcImage, const PxkImage* dstImage)
{
    if (srcImage->depth == PXK_DEPTH_32F) return "(srcImage->depth == 32)";
    if (dstImage->depth == PXK_DEPTH_32F) return "(dstImage->depth == 32)";
    if (srcImage->height != dstImage->height) return "(srcImage->height != dstImage->height)";
    if (srcImage->width != dstImage->width) return "(srcImage->width != dstImage->width)";
    if (dstImage->depth == PXK_DEPTH_1U && srcImage->depth != PXK_DEPTH_1U) {
        if (srcImage->nChannels == 1) return nullptr;
        if (srcImage->roi == nullptr) return "(srcImage->roi == 0)";
        return srcImage->roi->coi == 0 ? "(srcImage->roi->coi == 0)" : nullptr;
    }
    if (srcImage->nChannels != dstImage->nChannels) return "srcImage->nChannels != dstImage->nChannels";
    const bool isFromBits = srcImage->depth == PXK_DEPTH_1U && srcImage->depth != dstImage->depth;
    return isFromBits ? "((srcImage->depth == 1) && (srcImage->depth != dstImage->depth))" : nullptr;
}

int32_t pxkConvert(PxkImage* srcImage, PxkImage* dstImage)
{
    if (srcImage == dstImage) return PXK_StsOk;
    const int32_t headerFault = ownHeaderFault(OWN_HERE, { srcImage, dstImage });
    if (headerFault != PXK_StsOk) return headerFault;
    const char* const fault = ownConvertFault(srcImage, dstImage);
    OWN_REFUSE_IF(fault != nullptr, PXK_StsBadArg, fault, PXK_StsBadArg);
    const OwnSite site = OWN_HERE;
    const bool isTurned = srcImage->origin != dstImage->origin; // the picture keeps its orientation
    if (srcImage->depth == dstImage->depth) {
        const OwnCopyRow copy = { ownSampleBytes(srcImage->depth) };
        return ownRunDepths(site, srcImage, dstImage, ownRowFunction(copy), isTurned);
    }
    int32_t status = PXK_StsOk;
    if (dstImage->depth == PXK_DEPTH_1U) {
        ownForIntegerDepth(srcImage->depth, [&](auto src) {
            using S = typename decltype(src)::Sample;
            status = ownRunDepthsAs<S, uint8_t>(site, srcImage, dstImage, OwnIsPositive {}, isTurned);
        });
        return status;
    }
    ownForIntegerDepths(srcImage->depth, dstImage->depth, [&](auto src, auto dst) {
        using S = typename decltype(src)::Sample;
        using D = typename decltype(dst)::Sample;
        status = ownRunDepthsAs<S, D>(site, srcImage, dstImage, OwnSaturate<D> {}, isTurned);
    });
    return status;
}
