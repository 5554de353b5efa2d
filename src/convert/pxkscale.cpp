#include <algorithm>
#include <limits>

#include "frame/ownround.h"
#include "owndepths.h"

// ---- integer to integer --------------------------------------------------------------------------------------------

// The sample counted from the lowest one of its depth: signed depths turn their sign bit over.
template <class T> inline std::make_unsigned_t<T> ownFromLowest(T sample)
{
    using U = std::make_unsigned_t<T>;
    constexpr U signBit = static_cast<U>(std::numeric_limits<T>::min());
    return static_cast<U>(static_cast<U>(sample) ^ signBit);
}

template <class T> inline T ownAboveLowest(std::make_unsigned_t<T> distance)
{
    using U = std::make_unsigned_t<T>;
    constexpr U signBit = static_cast<U>(std::numeric_limits<T>::min());
    return static_cast<T>(static_cast<U>(distance ^ signBit));
}

// The ends of the range of S land on those of D.
template <class D> struct OwnScaleRange {
    template <class S> D operator()(S sample) const
    {
        using From = std::make_unsigned_t<S>;
        using To = std::make_unsigned_t<D>;
        if constexpr (sizeof(D) >= sizeof(S)) {
            // Widening repeats the bytes: 0x12 becomes 0x1212.
            constexpr To repeat = static_cast<To>(std::numeric_limits<To>::max() / std::numeric_limits<From>::max());
            return ownAboveLowest<D>(static_cast<To>(static_cast<To>(ownFromLowest(sample)) * uint32_t { repeat }));
        } else {
            // Of 16 and 32 bits as signed numbers. What is subtracted has the number's sign and is smaller, so the
            // difference stays in its width.
            using Signed = std::make_signed_t<S>;
            constexpr int32_t narrow = 8 * sizeof(D);
            constexpr int32_t dropped = 8 * (sizeof(S) - sizeof(D));
            const Signed x = ownAboveLowest<Signed>(ownFromLowest(sample));
            const Signed pulled = static_cast<Signed>(x - static_cast<Signed>(x >> narrow));
            return ownAboveLowest<D>(ownFromLowest(static_cast<std::make_signed_t<D>>(pulled >> dropped)));
        }
    }
};

// The first failed check, as the text to report, or null.
static const char* ownLayoutFault(const PxkImage* srcImage, const PxkImage* dstImage)
{
    if (srcImage->dataOrder != dstImage->dataOrder && srcImage->nChannels != 1 && dstImage->nChannels != 1) {
        return "((srcImage->dataOrder != dstImage->dataOrder)&& "
               "((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))";
    }
    return srcImage->origin != dstImage->origin ? "(srcImage->origin != dstImage->origin)" : nullptr;
}

static const char* ownScaleFault(const PxkImage* srcImage, const PxkImage* dstImage)
{
    if (srcImage->depth == dstImage->depth) return "(srcImage->depth == dstImage->depth)";
    if (srcImage->depth == PXK_DEPTH_1U) return "(srcImage->depth == 1)";
    if (srcImage->depth == PXK_DEPTH_32F) return "(srcImage->depth == 32)";
    if (dstImage->depth == PXK_DEPTH_1U) return "(dstImage->depth == 1)";
    if (dstImage->depth == PXK_DEPTH_32F) return "(dstImage->depth == 32)";
    return ownLayoutFault(srcImage, dstImage);
}

int32_t pxkScale(PxkImage* srcImage, PxkImage* dstImage)
{
    if (!ownGoodHeaders(OWN_HERE, { srcImage, dstImage })) return PXK_StsBadArg;
    const char* const fault = ownScaleFault(srcImage, dstImage);
    OWN_REFUSE_IF(fault != nullptr, PXK_StsBadArg, fault, PXK_StsBadArg);
    const OwnSite site = OWN_HERE;
    int32_t status = PXK_StsOk;
    ownForIntegerDepths(srcImage->depth, dstImage->depth, [&](auto src, auto dst) {
        using S = typename decltype(src)::Sample;
        using D = typename decltype(dst)::Sample;
        status = ownRunDepthsAs<S, D>(site, srcImage, dstImage, OwnScaleRange<D> {});
    });
    return status;
}

// ---- integer to float and back -------------------------------------------------------------------------------------

// Distances from minVal are formed first: a float less a float loses next to nothing in double, while v times the
// factor plus one offset would lose the ends of the range where they lie close together.
template <class D> struct OwnScaleToInteger {
    double least;  // minVal
    double factor; // of the integer range to the float range

    // A NaN takes the way of what is below the range, also one that infinite ends bring about.
    D operator()(float sample) const
    {
        constexpr double low = std::numeric_limits<D>::min();
        constexpr double high = std::numeric_limits<D>::max();
        const double scaled = (sample - least) * factor + low;
        const double atLeast = scaled > low ? scaled : low;
        return static_cast<D>(ownRoundEven(atLeast < high ? atLeast : high));
    }
};

// A weighted mean of both ends: each is met where the other's weight is 0, however unlike their sizes are.
template <class S> struct OwnScaleToFloat {
    double least; // minVal and maxVal, divided by the integer range
    double most;

    float operator()(S sample) const
    {
        constexpr double low = std::numeric_limits<S>::min();
        constexpr double high = std::numeric_limits<S>::max();
        const double x = sample;
        return static_cast<float>(most * (x - low) + least * (high - x));
    }
};

static const char* ownScaleFloatFault(const PxkImage* srcImage, const PxkImage* dstImage, float minVal, float maxVal)
{
    const bool isFromFloat = srcImage->depth == PXK_DEPTH_32F;
    const bool isToFloat = dstImage->depth == PXK_DEPTH_32F;
    if (!isFromFloat && !isToFloat) return "((srcImage->depth != 32)&& (dstImage->depth != 32))";
    if (isFromFloat && isToFloat) return "((srcImage->depth == 32)&& (dstImage->depth == 32))";
    if (srcImage->depth == PXK_DEPTH_1U || dstImage->depth == PXK_DEPTH_1U) {
        return "((srcImage->depth == 1)|| (dstImage->depth == 1))";
    }
    const char* const layoutFault = ownLayoutFault(srcImage, dstImage);
    if (layoutFault != nullptr) return layoutFault;
    const float range = maxVal - minVal;
    return range <= 0.0f ? "((maxVal - minVal) <= 0.0f)" : nullptr;
}

int32_t pxkScaleFP(PxkImage* srcImage, PxkImage* dstImage, float minVal, float maxVal)
{
    if (!ownGoodHeaders(OWN_HERE, { srcImage, dstImage })) return PXK_StsBadArg;
    const char* const fault = ownScaleFloatFault(srcImage, dstImage, minVal, maxVal);
    OWN_REFUSE_IF(fault != nullptr, PXK_StsBadArg, fault, PXK_StsBadArg);
    const OwnSite site = OWN_HERE;
    const bool isFromFloat = srcImage->depth == PXK_DEPTH_32F;
    const int32_t depth = isFromFloat ? dstImage->depth : srcImage->depth;
    const double least = minVal;
    const double most = maxVal;
    int32_t status = PXK_StsOk;
    ownForIntegerDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        constexpr double range = static_cast<double>(std::numeric_limits<T>::max()) - std::numeric_limits<T>::min();
        if (isFromFloat) {
            const OwnScaleToInteger<T> scale = { least, range / (most - least) };
            status = ownRunDepthsAs<float, T>(site, srcImage, dstImage, scale);
        } else {
            const OwnScaleToFloat<T> scale = { least / range, most / range };
            status = ownRunDepthsAs<T, float>(site, srcImage, dstImage, scale);
        }
    });
    return status;
}
