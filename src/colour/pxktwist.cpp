// Colour twist by integers.
#include <algorithm>
#include <limits>

#include "frame/ownbuffer.h"
#include "frame/ownivdep.h"
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
    OwnBuffer<PxkColorTwist> twist = ownBuffer<PxkColorTwist>(1);
    OWN_REFUSE_IF(twist == nullptr, PXK_StsNoMem, "matrix_is_not_allocated", nullptr);
    ownFillTwist(twist[0], data, scalingValue);
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

// True when no sum of samples leaves 32 bits.
template <class T> static bool ownIsSmallTwist(const OwnTwist& twist)
{
    const auto magnitude = [](int64_t value) { return value < 0 ? -value : value; };
    int64_t largest = 0;
    for (const int64_t(&row)[4] : twist.weights) {
        const int64_t weights = magnitude(row[0]) + magnitude(row[1]) + magnitude(row[2]);
        largest = std::max(largest, weights * std::numeric_limits<T>::max() + magnitude(row[3]));
    }
    return largest < INT32_MAX;
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
    const T* const first = reinterpret_cast<const T*>(rows[0]);
    const T* const second = reinterpret_cast<const T*>(rows[1]);
    const T* const third = reinterpret_cast<const T*>(rows[2]);
    T* const results[3] = { reinterpret_cast<T*>(rows[3]), reinterpret_cast<T*>(rows[4]),
                            reinterpret_cast<T*>(rows[5]) };
    Sum w[3][4];
    for (int32_t k = 0; k < 12; ++k) w[k / 4][k % 4] = static_cast<Sum>(twist.weights[k / 4][k % 4]);
    // A limit beyond 32-bit sums is none.
    const int64_t most = std::is_integral<Sum>::value ? INT32_MAX : INT64_MAX;
    const OwnTwistEnds<T, Sum> ends = { static_cast<Sum>(std::min(twist.low, most)),
                                        static_cast<Sum>(std::min(twist.high, most)),
                                        Sum(1) / static_cast<Sum>(INT64_C(1) << twist.shift), twist.shift,
                                        twist.offset };
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const Sum a = first[i], b = second[i], c = third[i];
        for (int32_t k = 0; k < 3; ++k) {
            const Sum sum = w[k][0] * a + w[k][1] * b + w[k][2] * c + w[k][3];
            results[k][i] = HAS_OFFSET ? ends.sampleOf(sum) : ends.sampleOfPlain(sum);
        }
    }
}

template <class T, class Sum>
static int32_t ownTwistAs(const OwnSite& site, const OwnTwistImages& images, const OwnTwist& twist)
{
    const auto row = twist.offset != 0 ? ownTwistRow<T, Sum, true> : ownTwistRow<T, Sum, false>;
    return ownRunTwist(site, images, [&](uint8_t* const* rows, ptrdiff_t n) { row(rows, n, twist); });
}

template <class T>
static int32_t ownTwistSamples(const OwnSite& site, const OwnTwistImages& images, const PxkColorTwist& record,
                               int32_t offset)
{
    const OwnTwist twist = ownTwistOf<T>(record, offset);
    return ownIsSmallTwist<T>(twist) ? ownTwistAs<T, int32_t>(site, images, twist)
                                     : ownTwistAs<T, double>(site, images, twist);
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
