// Box blur: the mean of a rectangular window, at a cost that does not depend on its height and hardly on its width.
#include <algorithm>

#include "frame/owndepth.h"
#include "ownrectfilter.h"
#include "ownrowblocks.h"
#include "ownsums.h"

// floor((2 sum + n) / (2 n)): the nearest integer, halves upward, for negative sums too. The quotient of single
// precision is off by at most one, which the remainder tells; all numbers are integers below 2^24.
struct OwnMeanNarrow {
    using Sum = int32_t;
    int32_t n;
    float inverse;
    explicit OwnMeanNarrow(int64_t count)
        : n(static_cast<int32_t>(count))
        , inverse(1.0f / static_cast<float>(2 * count))
    {
    }
    int32_t operator()(int32_t sum) const
    {
        const int32_t dividend = 2 * sum + n;
        const int32_t quotient = static_cast<int32_t>(static_cast<float>(dividend) * inverse);
        const int32_t rest = dividend - quotient * 2 * n;
        return quotient + static_cast<int32_t>(rest >= 2 * n) - static_cast<int32_t>(rest < 0);
    }
};

// The same for integers below 2^53, in double precision.
struct OwnMeanWide {
    using Sum = int64_t;
    double n;
    double inverse;
    explicit OwnMeanWide(int64_t count)
        : n(2.0 * static_cast<double>(count))
        , inverse(1.0 / n)
    {
    }
    int32_t operator()(int64_t sum) const
    {
        const double dividend = 2.0 * static_cast<double>(sum) + n / 2;
        const double quotient = static_cast<double>(static_cast<int32_t>(dividend * inverse));
        const double rest = dividend - quotient * n;
        return static_cast<int32_t>(quotient) + static_cast<int32_t>(rest >= n) - static_cast<int32_t>(rest < 0);
    }
};

// Any 32-bit samples and any window.
struct OwnMeanExact {
    using Sum = int64_t;
    int64_t n;
    explicit OwnMeanExact(int64_t count)
        : n(count)
    {
    }
    int32_t operator()(int64_t sum) const
    {
        const int64_t quotient = sum / n;
        const int64_t rest = sum % n;
        const int64_t floor = quotient - (rest < 0 ? 1 : 0);
        const int64_t above = rest < 0 ? rest + n : rest; // 0 to n - 1
        return static_cast<int32_t>(floor + (above >= n - above ? 1 : 0));
    }
};

template <class T, class Mean> static bool ownMeanBand(const OwnBand& band, const OwnRectFilter& filter)
{
    const Mean mean(static_cast<int64_t>(filter.nCols) * filter.nRows);
    using Sum = typename Mean::Sum;
    const auto store = [mean](const Sum* sums, T* out, ptrdiff_t width) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < width; ++i) out[i] = static_cast<T>(mean(sums[i]));
    };
    return ownWindowSums<T, Sum>(band, filter.nCols, filter.nRows, store);
}

// Windows of floats: sums of a window's end in one block of columns and its start in the next, so that no sample
// outside a window touches its sum.
struct OwnFloatSums {
    using Source = float;
    using Value = double;
    ptrdiff_t width;
    ptrdiff_t step;
    const OwnRectFilter& filter;
    struct {
        double operator()(double a, double b) const { return a + b; }
    } op;

    ptrdiff_t length() const { return width + (filter.nCols - 1) * step; }

    void reduce(double* row, uint8_t* to) const
    {
        float* const out = reinterpret_cast<float*>(to);
        double* const starts = row + length();
        const ptrdiff_t block = filter.nCols * step;
        const ptrdiff_t n = length();
        for (ptrdiff_t first = 0; first < n; first += block) {
            const ptrdiff_t end = std::min(first + block, n);
            for (ptrdiff_t i = first; i < end; ++i) starts[i] = i < first + step ? row[i] : starts[i - step] + row[i];
            for (ptrdiff_t i = end - step - 1; i >= first; --i) row[i] += row[i + step];
        }
        const double count = static_cast<double>(filter.nCols) * filter.nRows;
        for (ptrdiff_t first = 0; first < width; first += block) {
            const ptrdiff_t end = std::min(first + block, width);
            for (ptrdiff_t i = first; i < end; ++i) {
                const double sum = i < first + step ? row[i] : row[i] + starts[i + block - step];
                out[i] = static_cast<float>(sum / count);
            }
        }
    }
};

static bool ownBlurBand(const OwnBand& band, const OwnRectFilter& filter)
{
    const int32_t depth = filter.srcImage->depth;
    if (depth == PXK_DEPTH_32F) {
        return ownRunBlocks(band, OwnFloatSums { band.width, band.step, filter, {} }, filter.nRows);
    }
    const int64_t n = static_cast<int64_t>(filter.nCols) * filter.nRows;
    bool isGood = false;
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if constexpr (sizeof(T) == 1) {
            constexpr int64_t mostNarrow = (1 << 24) / 513; // (2 255 + 1) n stays below 2^24
            isGood = n <= mostNarrow ? ownMeanBand<T, OwnMeanNarrow>(band, filter)
                                     : ownMeanBand<T, OwnMeanWide>(band, filter);
        } else if constexpr (sizeof(T) == 2) {
            isGood = ownMeanBand<T, OwnMeanWide>(band, filter);
        } else {
            isGood = ownMeanBand<T, OwnMeanExact>(band, filter);
        }
    });
    return isGood;
}

void pxkBlur(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY)
{
    const OwnRectFilter filter = { srcImage, dstImage, nCols, nRows, anchorX, anchorY };
    if (!ownGoodRectFilter(OWN_HERE, filter, { true, false, PXK_DEPTH_1U, "srcImage->depth==1" })) return;
    // Float sums are formed in blocks that begin where a band does.
    const OwnRectRows rows = { OwnBitRows::AS_BYTES, srcImage->depth == PXK_DEPTH_32F };
    ownRunRectFilter(filter, rows, [&](const OwnBand& band) { return ownBlurBand(band, filter); });
}
