// SPDX-License-Identifier: BSD-2-Clause
// Box blur: the mean of a rectangular window, at a cost that hardly depends on its size.
#include <cstring>

#include "frame/owndepth.h"
#include "ownfloatblur.h"
#include "ownrectfilter.h"
#include "ownsums.h"

// The mean of n samples counted from the lowest one is floor((2 sum + n) / (2 n)): the nearest integer, halves upward,
// which holds for the samples themselves too.

// 8-bit samples, 3 to 256 of them: sum + n / 2 stays in 16 bits. Division by n as a product with a reciprocal of 17
// bits whose highest one is left out (Granlund and Montgomery, Division by invariant integers, 1994). The last shift is
// a product too: compilers shift 16-bit samples by a variable in 32 bits.
struct OwnMeanTiny {
    using Sum = uint16_t;
    static constexpr int64_t fewest = 3;
    static constexpr int64_t most = 256;
    uint16_t half;
    uint16_t factor;
    uint16_t last;
    explicit OwnMeanTiny(int64_t n)
        : half(static_cast<uint16_t>(n / 2))
    {
        int32_t bits = 0; // of n - 1
        while ((int64_t { 1 } << bits) < n) ++bits;
        factor = static_cast<uint16_t>(65536 * ((int64_t { 1 } << bits) - n) / n + 1);
        last = static_cast<uint16_t>(1 << (17 - bits));
    }
    static uint16_t highProduct(uint16_t a, uint16_t b)
    {
        return static_cast<uint16_t>(static_cast<uint32_t>(a) * b >> 16);
    }
    uint16_t operator()(uint16_t sum) const
    {
        const uint16_t dividend = static_cast<uint16_t>(sum + half);
        const uint16_t high = highProduct(dividend, factor);
        const uint16_t rest = static_cast<uint16_t>(dividend - high);
        return highProduct(static_cast<uint16_t>(high + static_cast<uint16_t>(rest >> 1)), last);
    }
};

// 8-bit samples, up to 8191 of them. Half a part more than 2 sum + n, exact in single precision, is at least n / (4 n)
// parts of 1 away from the next quotient: more than both roundings of a quotient below 256 are off by.
struct OwnMeanSmall {
    using Sum = uint32_t;
    static constexpr int64_t most = 8191;
    float half;
    float inverse;
    explicit OwnMeanSmall(int64_t n)
        : half(static_cast<float>(n) + 0.5f)
        , inverse(1.0f / static_cast<float>(2 * n))
    {
    }
    int32_t operator()(uint32_t sum) const
    {
        return static_cast<int32_t>((static_cast<float>(static_cast<int32_t>(2 * sum)) + half) * inverse);
    }
};

// As long as 2 sum + n fits 31 bits: the quotient of single precision is off by at most one, which the remainder tells.
// Sums behind a row's end may be of any size; they are not stored, and wrap.
struct OwnMeanNarrow {
    using Sum = uint32_t;
    uint32_t n;
    float inverse;
    explicit OwnMeanNarrow(int64_t count)
        : n(static_cast<uint32_t>(count))
        , inverse(1.0f / static_cast<float>(2 * count))
    {
    }
    int32_t operator()(uint32_t sum) const
    {
        const int32_t dividend = static_cast<int32_t>(2 * sum + n);
        const int32_t quotient = static_cast<int32_t>(static_cast<float>(dividend) * inverse);
        const int32_t rest = static_cast<int32_t>(2 * sum + n - static_cast<uint32_t>(quotient) * 2 * n);
        return quotient + static_cast<int32_t>(rest >= static_cast<int32_t>(2 * n)) - static_cast<int32_t>(rest < 0);
    }
};

// The bits of 2^52 in double precision: added to them, a smaller integer becomes the double of its sum with 2^52.
constexpr uint64_t ownBigBits = 0x4330000000000000u;
constexpr double ownBig = 4503599627370496.0;

static inline double ownDoubleOf(uint64_t bits)
{
    double value;
    memcpy(&value, &bits, sizeof value);
    return value;
}

// As long as 2 sum + n fits 63 bits: the same in double precision, with conversions that every processor has as
// vectors.
struct OwnMeanWide {
    using Sum = uint64_t;
    static constexpr int64_t most = 1 << 29;
    uint64_t n;
    double inverse;
    explicit OwnMeanWide(int64_t count)
        : n(static_cast<uint64_t>(count))
        , inverse(1.0 / static_cast<double>(count))
    {
    }
    uint64_t operator()(uint64_t sum) const
    {
        const double high = ownDoubleOf(ownBigBits | sum >> 32) - ownBig;
        const double low = ownDoubleOf(ownBigBits | (sum & UINT32_MAX)) - ownBig;
        const double shifted = (high * 4294967296.0 + low) * inverse + ownBig;
        uint64_t quotient;
        memcpy(&quotient, &shifted, sizeof quotient);
        quotient -= ownBigBits;
        const int64_t rest = static_cast<int64_t>(2 * sum + n - quotient * 2 * n);
        return quotient + static_cast<uint64_t>(rest >= static_cast<int64_t>(2 * n)) - static_cast<uint64_t>(rest < 0);
    }
};

// Any window.
struct OwnMeanExact {
    using Sum = uint64_t;
    uint64_t n;
    explicit OwnMeanExact(int64_t count)
        : n(static_cast<uint64_t>(count))
    {
    }
    uint64_t operator()(uint64_t sum) const { return sum / n + (sum % n >= n - sum % n ? 1 : 0); }
};

template <class T, class Mean> static bool ownMeanBand(const OwnBand& band, const OwnRectFilter& filter)
{
    const Mean made(static_cast<int64_t>(filter.nCols) * filter.nRows);
    using Sum = typename Mean::Sum;
    const auto store = [&](const Sum* sums, T* out, ptrdiff_t width) {
        const Mean mean = made;
        using Value = decltype(mean(Sum {}));
        constexpr Value lowest = static_cast<Value>(std::numeric_limits<T>::min());
        ownInBlocks<ownBlockOf<T>>(
            width, [&](ptrdiff_t i) { out[i] = static_cast<T>(static_cast<Value>(mean(sums[i]) + lowest)); });
    };
    return ownWindowSums<T, Sum>(band, filter.nCols, filter.nRows, store);
}

static bool ownBlurBand(const OwnBand& band, const OwnRectFilter& filter)
{
    const int32_t depth = filter.srcImage->depth;
    if (depth == PXK_DEPTH_32F) return ownFloatBlurBand(band, filter.nCols, filter.nRows);
    const int64_t n = static_cast<int64_t>(filter.nCols) * filter.nRows;
    return ownForIntegerDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if constexpr (sizeof(T) <= 2) {
            constexpr int64_t most = INT32_MAX / (2 * ((int64_t { 1 } << 8 * sizeof(T)) - 1) + 1);
            if constexpr (sizeof(T) == 1) {
                const bool isTiny = n >= OwnMeanTiny::fewest && n <= OwnMeanTiny::most;
                if (isTiny) return ownMeanBand<T, OwnMeanTiny>(band, filter);
                if (n <= OwnMeanSmall::most) return ownMeanBand<T, OwnMeanSmall>(band, filter);
            }
            if (n <= most) return ownMeanBand<T, OwnMeanNarrow>(band, filter);
        }
        if (n <= OwnMeanWide::most) return ownMeanBand<T, OwnMeanWide>(band, filter);
        return ownMeanBand<T, OwnMeanExact>(band, filter);
    });
}

void pxkBlur(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY)
{
    const OwnRectFilter filter = { srcImage, dstImage, nCols, nRows, anchorX, anchorY };
    if (!ownGoodRectFilter(OWN_HERE, filter, { true, false, PXK_DEPTH_1U, "srcImage->depth==1" })) return;
    // Float sums are formed in blocks that begin where a band does.
    const OwnRectRows rows = { OwnBitRows::AS_BYTES, srcImage->depth == PXK_DEPTH_32F };
    ownRunRectFilter(filter, rows, [&](const OwnBand& band) { return ownBlurBand(band, filter); });
}
