// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "frame/ownconversion.h"
#include "frame/ownround.h"

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

static bool ownGoodLayout(const OwnSite& site, const PxkImage* srcImage, const PxkImage* dstImage)
{
    const bool isOrdered = srcImage->nChannels != 1 && dstImage->nChannels != 1;
    return ownPassed(
        site,
        { { isOrdered && srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg,
            "((srcImage->dataOrder != dstImage->dataOrder)&& "
            "((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))" },
          { srcImage->origin != dstImage->origin, PXK_StsBadArg, "(srcImage->origin != dstImage->origin)" } });
}

int32_t pxkScale(PxkImage* srcImage, PxkImage* dstImage)
{
    const OwnSite site = OWN_HERE;
    if (!ownGoodHeaders(site, { srcImage, dstImage })) return PXK_StsBadArg;
    const bool isGood =
        ownPassed(site,
                  { { srcImage->depth == dstImage->depth, PXK_StsBadArg, "(srcImage->depth == dstImage->depth)" },
                    { srcImage->depth == PXK_DEPTH_1U, PXK_StsBadArg, "(srcImage->depth == 1)" },
                    { srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "(srcImage->depth == 32)" },
                    { dstImage->depth == PXK_DEPTH_1U, PXK_StsBadArg, "(dstImage->depth == 1)" },
                    { dstImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "(dstImage->depth == 32)" } });
    if (!isGood || !ownGoodLayout(site, srcImage, dstImage)) return PXK_StsBadArg;
    return ownForIntegerDepths(srcImage->depth, dstImage->depth, [&](auto src, auto dst) {
        using S = typename decltype(src)::Sample;
        using D = typename decltype(dst)::Sample;
        return ownRunDepthsAs<S, D>(site, srcImage, dstImage, OwnScaleRange<D> {});
    });
}

// ---- integer to float and back -------------------------------------------------------------------------------------

// Range of the integers of type T; both ends are exact in a double.
template <class T> struct OwnIntegerRange {
    static constexpr double low = std::numeric_limits<T>::min();
    static constexpr double high = std::numeric_limits<T>::max();
    static constexpr double width = high - low;
};

// A linear map in double. Its rounding errors are some 2^-51 of the largest product, so it serves as long as the float
// range is not too far from 0 for its width.
struct OwnLine {
    double factor;
    double offset;

    double operator()(double x) const { return x * factor + offset; }
};

template <class D> struct OwnScaleToInteger {
    float minVal;
    float maxVal;
    OwnLine line;

    D operator()(float sample) const
    {
        const float atLeast = sample > minVal ? sample : minVal; // a NaN counts as minVal
        return static_cast<D>(ownRoundEven(line(atLeast < maxVal ? atLeast : maxVal)));
    }
};

// For any range: a float less minVal loses next to nothing. Infinite ends, which make NaNs, give the lowest value.
template <class D> struct OwnScaleDistance {
    double minVal;
    double factor;

    D operator()(float sample) const
    {
        using Range = OwnIntegerRange<D>;
        const double scaled = (sample - minVal) * factor + Range::low;
        const double atLeast = scaled > Range::low ? scaled : Range::low;
        return static_cast<D>(ownRoundEven(atLeast < Range::high ? atLeast : Range::high));
    }
};

// The other way for any range, as a weighted mean of both ends: each is met where the other's weight is 0, however
// unlike their sizes are.
template <class S> struct OwnWeightEnds {
    double minShare; // minVal and maxVal, divided by the integer range
    double maxShare;

    float operator()(S sample) const
    {
        using Range = OwnIntegerRange<S>;
        const double x = sample;
        return static_cast<float>(maxShare * (x - Range::low) + minShare * (Range::high - x));
    }
};

// 8 bits from 0 on, in single precision where that gives what the line gives. A range that is 255 divided by a power of
// two: products are exact.
struct OwnScaleByPower {
    float maxVal;
    float factor;

    uint8_t operator()(float sample) const
    {
        const float atLeast = sample > 0.0f ? sample : 0.0f;
        return static_cast<uint8_t>(ownRoundEven((atLeast < maxVal ? atLeast : maxVal) * factor));
    }
};

// A range that is a power of two: 255 x as 256 x - x, the whole part first. A sum with 1.5 * 2^23 has that part in its
// lowest bits, where every float operation rounds to single precision. All 2^32 floats were compared.
struct OwnScaleByWhole {
    static constexpr bool isExact = FLT_EVAL_METHOD == 0;
    float maxVal;
    float inverse;

    uint8_t operator()(float sample) const
    {
        constexpr float magic = 12582912.0f;
        const float atLeast = sample > 0.0f ? sample : 0.0f;
        const float x = (atLeast < maxVal ? atLeast : maxVal) * inverse;
        const float product = 256.0f * x;
        const float rounded = product + magic;
        const float sum = ((product - (rounded - magic)) - x) + rounded;
        int32_t bits;
        memcpy(&bits, &sum, sizeof bits);
        return static_cast<uint8_t>(bits);
    }
};

// In two steps, of which the first is exact: the factor's highest 16 bits, and the rest.
struct OwnScaleByParts {
    float high;
    float low;

    explicit OwnScaleByParts(double factor)
    {
        int exponent;
        const double mantissa = std::frexp(factor, &exponent);
        high = static_cast<float>(std::ldexp(std::floor(std::ldexp(mantissa, 16)), exponent - 16));
        low = static_cast<float>(factor - high);
    }
    float operator()(uint8_t sample) const
    {
        const float x = sample;
        return x * high + x * low;
    }
    bool isLine(const OwnLine& line) const
    {
        uint8_t samples[256];
        float results[256];
        for (int32_t k = 0; k < 256; ++k) samples[k] = static_cast<uint8_t>(k);
        uint8_t* const rows[2] = { samples, reinterpret_cast<uint8_t*>(results) };
        ownDepthRow<uint8_t, float>(rows, 256, *this);
        bool isSame = true;
        for (int32_t k = 0; k < 256; ++k) isSame = isSame && results[k] == static_cast<float>(line(k));
        return isSame;
    }
};

// True for 2^-64 to 2^64, whose inverses are floats too.
static bool ownIsPower(double value)
{
    int exponent;
    return std::frexp(value, &exponent) == 0.5 && exponent > -64 && exponent <= 65;
}

template <class D>
static int32_t ownScaleToInteger(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, float minVal,
                                 float maxVal)
{
    using Range = OwnIntegerRange<D>;
    const double least = minVal;
    const double factor = Range::width / (maxVal - least);
    const OwnLine line = { factor, Range::low - least * factor };
    if constexpr (std::is_same<D, uint8_t>::value) {
        if (least == 0 && ownIsPower(factor)) {
            const OwnScaleByPower scale = { maxVal, static_cast<float>(factor) };
            return ownRunDepthsAs<float, D>(site, srcImage, dstImage, scale);
        }
        if (least == 0 && ownIsPower(maxVal) && OwnScaleByWhole::isExact) {
            const OwnScaleByWhole scale = { maxVal, 1.0f / maxVal };
            return ownRunDepthsAs<float, D>(site, srcImage, dstImage, scale);
        }
    }
    const double largestProduct = std::max(std::fabs(least), std::fabs(static_cast<double>(maxVal))) * factor;
    if (largestProduct <= 4 * Range::width) { // never for infinite ends
        return ownRunDepthsAs<float, D>(site, srcImage, dstImage, OwnScaleToInteger<D> { minVal, maxVal, line });
    }
    return ownRunDepthsAs<float, D>(site, srcImage, dstImage, OwnScaleDistance<D> { least, factor });
}

template <class S>
static int32_t ownScaleToFloat(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, float minVal, float maxVal)
{
    using Range = OwnIntegerRange<S>;
    const double least = minVal;
    const double most = maxVal;
    const OwnLine line = { (most - least) / Range::width, (least * Range::high - most * Range::low) / Range::width };
    const auto onLine = [line](S sample) { return static_cast<float>(line(sample)); };
    const bool keepsEnds =
        onLine(std::numeric_limits<S>::min()) == minVal && onLine(std::numeric_limits<S>::max()) == maxVal;
    if constexpr (std::is_same<S, uint8_t>::value) {
        const OwnScaleByParts parts(line.factor);
        const bool isSmall = srcImage->width < 64 && srcImage->height < 64; // not worth the comparison
        if (least == 0 && keepsEnds && !isSmall && parts.isLine(line)) {
            return ownRunDepthsAs<S, float>(site, srcImage, dstImage, parts);
        }
    }
    if (keepsEnds) return ownRunDepthsAs<S, float>(site, srcImage, dstImage, onLine);
    return ownRunDepthsAs<S, float>(site, srcImage, dstImage,
                                    OwnWeightEnds<S> { least / Range::width, most / Range::width });
}

static bool ownGoodFloatScale(const OwnSite& site, const PxkImage* srcImage, const PxkImage* dstImage, float minVal,
                              float maxVal)
{
    const bool isFromFloat = srcImage->depth == PXK_DEPTH_32F;
    const bool isToFloat = dstImage->depth == PXK_DEPTH_32F;
    const float range = maxVal - minVal;
    return ownPassed(
               site,
               { { !isFromFloat && !isToFloat, PXK_StsBadArg, "((srcImage->depth != 32)&& (dstImage->depth != 32))" },
                 { isFromFloat && isToFloat, PXK_StsBadArg, "((srcImage->depth == 32)&& (dstImage->depth == 32))" },
                 { srcImage->depth == PXK_DEPTH_1U || dstImage->depth == PXK_DEPTH_1U, PXK_StsBadArg,
                   "((srcImage->depth == 1)|| (dstImage->depth == 1))" } })
        && ownGoodLayout(site, srcImage, dstImage)
        && ownPassed(site, { { range <= 0.0f, PXK_StsBadArg, "((maxVal - minVal) <= 0.0f)" } });
}

int32_t pxkScaleFP(PxkImage* srcImage, PxkImage* dstImage, float minVal, float maxVal)
{
    const OwnSite site = OWN_HERE;
    if (!ownGoodHeaders(site, { srcImage, dstImage }) || !ownGoodFloatScale(site, srcImage, dstImage, minVal, maxVal))
        return PXK_StsBadArg;
    const bool isFromFloat = srcImage->depth == PXK_DEPTH_32F;
    return ownForIntegerDepth(isFromFloat ? dstImage->depth : srcImage->depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        return isFromFloat ? ownScaleToInteger<T>(site, srcImage, dstImage, minVal, maxVal)
                           : ownScaleToFloat<T>(site, srcImage, dstImage, minVal, maxVal);
    });
}
