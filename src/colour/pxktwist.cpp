// SPDX-License-Identifier: BSD-2-Clause
// Colour twist by integers.
#include <algorithm>
#include <limits>

#include "frame/ownblockrows.h"
#include "frame/ownbuffer.h"
#include "owntwist.h"

// ---- records -------------------------------------------------------------------------------------------------------

static constexpr int32_t ownMostScaling = 31;

static void ownFillTwist(PxkColorTwist& twist, const int32_t* data, int32_t scalingValue)
{
    std::copy_n(data, 16, twist.data);
    twist.scalingValue = scalingValue;
}

PxkColorTwist* pxkCreateColorTwist(const int32_t* data, int32_t scalingValue)
{
    const bool isBad = scalingValue < 0 || scalingValue > ownMostScaling || data == nullptr;
    OWN_REFUSE_IF(isBad, PXK_StsBadArg, "bad_argument", nullptr);
    OwnRecord<PxkColorTwist> twist = ownRecord<PxkColorTwist>(1);
    OWN_REFUSE_IF(twist == nullptr, PXK_StsNoMem, "matrix_is_not_allocated", nullptr);
    ownFillTwist(*twist, data, scalingValue);
    return twist.release();
}

int32_t pxkSetColorTwist(PxkColorTwist* cTwist, const int32_t* data, int32_t scalingValue)
{
    const OwnCheck failure =
        ownFirstFailure({ { cTwist == nullptr, PXK_StsBadArg, "cTwist==0" },
                          { data == nullptr, PXK_StsBadArg, "(data == 0)" },
                          { scalingValue < 0, PXK_StsBadArg, "(scalingValue < 0)" },
                          { scalingValue > ownMostScaling, PXK_StsBadArg, "(scalingValue > 31)" } });
    if (failure.fails) return ownRefused(OWN_HERE, failure);
    ownFillTwist(*cTwist, data, scalingValue);
    return PXK_StsOk;
}

void pxkDeleteColorTwist(PxkColorTwist* cTwist)
{
    pxkFree(cTwist);
}

// ---- rows ----------------------------------------------------------------------------------------------------------

// A twist as rows of samples take it. Sums are whole numbers below 2^51, over 2^shift: doubles hold them exactly, and
// 32-bit integers where the weights are small.
struct OwnTwist {
    int64_t weights[3][4];
    int32_t shift;
    int32_t offset; // between the largest sample and its negative: further ones give the same saturated image
    int64_t low;    // sums below become 0, before the offset is added
    int64_t high;   // sums above become the largest sample
};

template <class T> static OwnTwist ownTwistOf(const PxkColorTwist& twist, int32_t offset)
{
    constexpr int32_t top = std::numeric_limits<T>::max();
    OwnTwist of = {};
    for (int32_t k = 0; k < 3; ++k) std::copy_n(twist.data + 4 * k, 4, of.weights[k]);
    of.shift = std::min(std::max(twist.scalingValue, 0), ownMostScaling);
    of.offset = std::min(std::max(offset, -top), top);
    of.low = static_cast<int64_t>(std::max(-of.offset, 0)) << of.shift;
    of.high = static_cast<int64_t>(std::min(top, top - of.offset)) << of.shift;
    return of;
}

static int64_t ownMagnitude(int64_t value)
{
    return value < 0 ? -value : value;
}

// What no sum of samples exceeds in magnitude.
template <class T> static int64_t ownLargestSum(const OwnTwist& twist)
{
    int64_t largest = 0;
    for (const int64_t(&row)[4] : twist.weights) {
        const int64_t weights = ownMagnitude(row[0]) + ownMagnitude(row[1]) + ownMagnitude(row[2]);
        largest = std::max(largest, weights * std::numeric_limits<T>::max() + ownMagnitude(row[3]));
    }
    return largest;
}

// True when sums of bytes can be formed in lanes of 16 bits.
static bool ownFitsBytes(const OwnTwist& twist, int64_t largestSum)
{
    bool fits = largestSum < 1 << 24 && twist.shift >= 9;
    for (const int64_t(&row)[4] : twist.weights) {
        for (int32_t c = 0; c < 3; ++c) fits = fits && ownMagnitude(row[c]) <= INT16_MAX;
    }
    return fits;
}

// Limits and offsets of sums in the type they are formed in.
template <class T, class Sum> struct OwnTwistEnds {
    Sum low;
    Sum high;
    Sum scale; // of real sums
    int32_t shift;
    int32_t offset;

    int32_t scaled(Sum sum) const
    {
        if constexpr (std::is_integral<Sum>::value) {
            return sum >> shift;
        } else {
            return static_cast<int32_t>(sum * scale);
        }
    }

    T sampleOf(Sum sum) const
    {
        const Sum above = sum > low ? sum : low;
        const int32_t inside = scaled(above < high ? above : high) + offset;
        const int32_t limited = sum > high ? std::numeric_limits<T>::max() : inside;
        return static_cast<T>(sum < low ? 0 : limited);
    }

    // Without an offset the ends are samples themselves.
    T sampleOfPlain(Sum sum) const
    {
        const Sum above = sum > 0 ? sum : 0;
        return static_cast<T>(scaled(above < high ? above : high));
    }
};

template <class T, class Sum, bool HAS_OFFSET>
static void ownTwistRow(uint8_t* const* rows, ptrdiff_t n, const OwnTwist& twist)
{
    Sum w[3][4];
    for (int32_t k = 0; k < 12; ++k) w[k / 4][k % 4] = static_cast<Sum>(twist.weights[k / 4][k % 4]);
    // A limit beyond 32-bit sums is none.
    const int64_t most = std::is_integral<Sum>::value ? INT32_MAX : INT64_MAX;
    const OwnTwistEnds<T, Sum> ends = { static_cast<Sum>(std::min(twist.low, most)),
                                        static_cast<Sum>(std::min(twist.high, most)),
                                        Sum(1) / static_cast<Sum>(INT64_C(1) << twist.shift), twist.shift,
                                        twist.offset };
    ownRunBlocks<T, 3, 6>(rows, n, [&](T* const* of, ptrdiff_t count) {
        const T *const first = of[0], *const second = of[1], *const third = of[2];
        T* const results[3] = { of[3], of[4], of[5] };
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; ++i) {
            const Sum a = first[i], b = second[i], c = third[i];
            for (int32_t k = 0; k < 3; ++k) {
                const Sum sum = w[k][0] * a + w[k][1] * b + w[k][2] * c + w[k][3];
                results[k][i] = HAS_OFFSET ? ends.sampleOf(sum) : ends.sampleOfPlain(sum);
            }
        }
    });
}

// Sums of bytes below 2^24 in lanes of 16 bits. A sample times 2^7 times a weight has its quotient by 2^9 in the high
// half of the product, so the sum of the high halves is at most 3 below the quotient of the whole sum, and the sum of
// the low halves tells by how much. Weights are raised by 2^15, since compilers know high halves of unsigned products
// only; that makes the quotient larger by 2^6 times the sum of the samples.
static void ownTwistByteRow(uint8_t* const* rows, ptrdiff_t n, const OwnTwist& twist)
{
    uint16_t w[3][3], constants[3], constantQuotients[3];
    for (int32_t k = 0; k < 3; ++k) {
        for (int32_t c = 0; c < 3; ++c) w[k][c] = static_cast<uint16_t>(twist.weights[k][c] + 32768);
        constants[k] = static_cast<uint16_t>(twist.weights[k][3]);
        constantQuotients[k] = static_cast<uint16_t>(twist.weights[k][3] >> 9);
    }
    const int32_t shift = (twist.shift - 9) & 15;
    const auto high = [](uint16_t a, uint16_t b) { return static_cast<uint16_t>(static_cast<uint32_t>(a) * b >> 16); };
    ownRunBlocks<uint8_t, 3, 6>(rows, n, [&](uint8_t* const* of, ptrdiff_t count) {
        const uint8_t *const first = of[0], *const second = of[1], *const third = of[2];
        uint8_t* const results[3] = { of[3], of[4], of[5] };
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; ++i) {
            const uint16_t a = first[i], b = second[i], c = third[i];
            const uint16_t a7 = static_cast<uint16_t>(a << 7), b7 = static_cast<uint16_t>(b << 7),
                           c7 = static_cast<uint16_t>(c << 7), raised = static_cast<uint16_t>((a + b + c) << 6);
            for (int32_t k = 0; k < 3; ++k) {
                const uint16_t about = static_cast<uint16_t>(high(a7, w[k][0]) + high(b7, w[k][1]) + high(c7, w[k][2])
                                                             + constantQuotients[k]);
                const uint16_t low = static_cast<uint16_t>(a * w[k][0] + b * w[k][1] + c * w[k][2] + constants[k]);
                const uint16_t missing = static_cast<uint16_t>(((low >> 9) - about) & 127);
                const int16_t quotient = static_cast<int16_t>(about + missing - raised);
                const int16_t sample = static_cast<int16_t>(quotient >> shift);
                const int16_t above = sample > 0 ? sample : int16_t(0);
                results[k][i] = static_cast<uint8_t>(above < 255 ? above : int16_t(255));
            }
        }
    });
}

using OwnTwistRow = void (*)(uint8_t* const* rows, ptrdiff_t n, const OwnTwist& twist);

// The fastest row that is exact.
template <class T> static OwnTwistRow ownTwistRowOf(const OwnTwist& twist)
{
    const int64_t largest = ownLargestSum<T>(twist);
    const bool hasOffset = twist.offset != 0;
    if (sizeof(T) == 1 && !hasOffset && ownFitsBytes(twist, largest)) return ownTwistByteRow;
    if (largest < INT32_MAX) return hasOffset ? ownTwistRow<T, int32_t, true> : ownTwistRow<T, int32_t, false>;
    return hasOffset ? ownTwistRow<T, double, true> : ownTwistRow<T, double, false>;
}

template <class T>
static int32_t ownTwistSamples(const OwnSite& site, const OwnTwistImages& images, const PxkColorTwist& record,
                               int32_t offset)
{
    const OwnTwist twist = ownTwistOf<T>(record, offset);
    const OwnTwistRow row = ownTwistRowOf<T>(twist);
    return ownRunTwist(site, images, [&](uint8_t* const* rows, ptrdiff_t n) { row(rows, n, twist); });
}

// ---- the operation -------------------------------------------------------------------------------------------------

static OwnCheck ownTwistFailure(const OwnTwistImages& images, const PxkColorTwist* cTwist)
{
    if (cTwist == nullptr) return { true, PXK_StsBadArg, "cTwist==0" };
    const OwnCheck channels = ownTwistChannelFailure(images);
    if (channels.fails) return channels;
    const PxkImage *const src = images.src, *const dst = images.dst;
    const auto isMaskTurned = [](const PxkImage* image) {
        return image->maskROI != nullptr && image->origin != image->maskROI->origin;
    };
    return ownFirstFailure({
        { src->depth != dst->depth, PXK_StsBadArg, "(srcImage->depth != dstImage->depth)" },
        { src->depth != PXK_DEPTH_8U && src->depth != PXK_DEPTH_16U, PXK_StsBadArg,
          "((srcImage->depth != 8) && (srcImage->depth != 16))" },
        { src->dataOrder != dst->dataOrder, PXK_StsBadArg, "(srcImage->dataOrder != dstImage->dataOrder)" },
        { src->origin != dst->origin, PXK_StsBadArg, "(srcImage->origin != dstImage->origin)" },
        { isMaskTurned(src), PXK_StsBadArg, "(srcImage->origin != srcImage->maskROI->origin)" },
        { isMaskTurned(dst), PXK_StsBadArg, "(dstImage->origin != dstImage->maskROI->origin)" },
    });
}

int32_t pxkApplyColorTwist(PxkImage* srcImage, PxkImage* dstImage, PxkColorTwist* cTwist, int32_t offset)
{
    const OwnTwistImages images = { srcImage, dstImage };
    OwnCheck failure = ownHeaderFailure(images);
    if (!failure.fails) failure = ownTwistFailure(images, cTwist);
    if (failure.fails) return ownRefused(OWN_HERE, failure);
    return srcImage->depth == PXK_DEPTH_8U ? ownTwistSamples<uint8_t>(OWN_HERE, images, *cTwist, offset)
                                           : ownTwistSamples<uint16_t>(OWN_HERE, images, *cTwist, offset);
}
