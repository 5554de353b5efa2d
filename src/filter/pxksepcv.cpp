// Separable convolution: a kernel of one row, then one of one column.
#include <algorithm>
#include <limits>
#include <type_traits>

#include "frame/owndepth.h"
#include "frame/ownivdep.h"
#include "frame/ownround.h"
#include "ownconvwork.h"
#include "ownkernel.h"

// One axis of a separable convolution; without a kernel a single coefficient of 1.
template <class Value> struct OwnAxis {
    const Value* values;
    int32_t count;
    int32_t anchor;
    int32_t shift;
};

template <class Value> static constexpr Value ownOne = 1;

static OwnAxis<int32_t> ownAxisOf(const PxkConvKernel* kernel, int32_t PxkConvKernel::*anchor)
{
    if (kernel == nullptr) return { &ownOne<int32_t>, 1, 0, 0 };
    const int32_t shift = std::min(std::max(kernel->nShiftR, 0), 31);
    return { kernel->values, kernel->nCols * kernel->nRows, kernel->*anchor, shift };
}

static OwnAxis<float> ownAxisOf(const PxkConvKernelFP* kernel, int32_t PxkConvKernelFP::*anchor)
{
    if (kernel == nullptr) return { &ownOne<float>, 1, 0, 0 };
    return { kernel->values, kernel->nCols * kernel->nRows, kernel->*anchor, 0 };
}

// Integers whose sums of either pass cannot leave 32 bits, whatever the samples.
static bool ownFitsIntegers(const OwnAxis<int32_t>& rows, const OwnAxis<int32_t>& columns, int32_t depth)
{
    if (depth == PXK_DEPTH_32S) return false;
    const OwnRange range = ownDepthRange(depth);
    double low = range.low;
    double high = range.high;
    for (const OwnAxis<int32_t>* axis : { &rows, &columns }) {
        double sumLow = 0;
        double sumHigh = 0;
        for (int32_t i = 0; i < axis->count; ++i) {
            const double value = axis->values[i];
            sumLow += value > 0 ? value * low : value * high;
            sumHigh += value > 0 ? value * high : value * low;
        }
        if (sumLow < INT32_MIN || sumHigh > INT32_MAX) return false;
        low = sumLow;
        high = sumHigh; // a shift only brings it closer to 0 or to -1
    }
    return true;
}

// Double sums that stand for integers are rounded at the end only; a shift is a division that goes to minus infinity.
template <class Sum> static Sum ownShifted(Sum sum, int32_t shift)
{
    if constexpr (std::is_same<Sum, int32_t>::value) {
        return sum >> shift;
    } else if constexpr (std::is_same<Sum, double>::value) {
        return shift == 0 ? sum : __builtin_floor(sum / static_cast<double>(int64_t { 1 } << shift));
    } else {
        return sum;
    }
}

template <class T, class Sum> static T ownStored(Sum sum)
{
    if constexpr (std::is_floating_point<T>::value) {
        return static_cast<T>(sum);
    } else {
        constexpr Sum low = std::numeric_limits<T>::min();
        constexpr Sum high = std::numeric_limits<T>::max();
        const Sum limited = sum < low ? low : (sum > high ? high : sum);
        if constexpr (std::is_same<Sum, int32_t>::value) {
            return static_cast<T>(limited);
        } else {
            return static_cast<T>(ownRoundEven(limited));
        }
    }
}

// Adds up `count` rows or shifted copies of a row, one after the other, into sums.
template <class From, class Value, class Sum, class At>
static void ownAxisSums(const OwnAxis<Value>& axis, const At& at, Sum* sums, ptrdiff_t n)
{
    for (int32_t k = 0; k < axis.count; ++k) {
        const From* const from = at(k);
        const Sum value = static_cast<Sum>(axis.values[k]);
        if (k == 0) {
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < n; ++i) sums[i] = value * static_cast<Sum>(from[i]);
        } else {
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < n; ++i) sums[i] += value * static_cast<Sum>(from[i]);
        }
    }
    if (axis.shift == 0) return;
    const int32_t shift = axis.shift;
    for (ptrdiff_t i = 0; i < n; ++i) sums[i] = ownShifted(sums[i], shift);
}

// The row pass over all rows of the band, then the column pass over its results.
template <class T, class Sum, class Value>
static bool ownSeparateBand(const OwnBand& band, const OwnAxis<Value>& rows, const OwnAxis<Value>& columns)
{
    const ptrdiff_t n = band.width;
    const ptrdiff_t stride = (n + 15) & ~static_cast<ptrdiff_t>(15);
    const int64_t height = static_cast<int64_t>(band.height) + columns.count - 1;
    const OwnBuffer<Sum> buffer = ownBuffer<Sum>((height + 1) * stride);
    if (buffer == nullptr) return false;
    Sum* const passed = buffer.get();
    Sum* const sums = passed + static_cast<ptrdiff_t>(height) * stride;
    for (int64_t y = 0; y < height; ++y) {
        const auto at = [&](int32_t k) {
            return reinterpret_cast<const T*>(band.rows[y]) + static_cast<ptrdiff_t>(k) * band.step;
        };
        ownAxisSums<T>(rows, at, passed + static_cast<ptrdiff_t>(y) * stride, n);
    }
    for (int32_t y = 0; y < band.height; ++y) {
        const auto at = [&](int32_t k) { return passed + (static_cast<ptrdiff_t>(y) + k) * stride; };
        ownAxisSums<Sum>(columns, at, sums, n);
        T* const out = reinterpret_cast<T*>(band.out[y]);
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) out[i] = ownStored<T>(sums[i]);
    }
    return true;
}

template <class Kernel> static bool ownGoodAxes(const OwnSite& site, const Kernel* xKernel, const Kernel* yKernel)
{
    const auto isBad = [](const Kernel* kernel) { return kernel != nullptr && ownBadKernel(kernel); };
    return ownPassed(site,
                     { { xKernel == nullptr && yKernel == nullptr, PXK_StsBadArg, "(xKernel == 0) && (yKernel == 0)" },
                       { isBad(xKernel) || isBad(yKernel), PXK_StsBadArg, "Bad kernel structure" },
                       { xKernel != nullptr && xKernel->nRows != 1, PXK_StsBadArg, "(xKernel->nRows != 1)" },
                       { yKernel != nullptr && yKernel->nCols != 1, PXK_StsBadArg, "(yKernel->nCols != 1)" } });
}

template <class T, class Value>
static bool ownSeparateDepth(const OwnBand& band, const OwnAxis<Value>& rows, const OwnAxis<Value>& columns,
                             int32_t depth)
{
    if constexpr (std::is_floating_point<Value>::value) {
        return ownSeparateBand<T, float>(band, rows, columns);
    } else {
        if (ownFitsIntegers(rows, columns, depth)) return ownSeparateBand<T, int32_t>(band, rows, columns);
        return ownSeparateBand<T, double>(band, rows, columns);
    }
}

template <class Kernel>
static void ownSeparable(const OwnSite& site, const OwnConvImages& images, const Kernel* xKernel, const Kernel* yKernel)
{
    constexpr bool isFloat = std::is_same<Kernel, PxkConvKernelFP>::value;
    OwnConvWork work;
    if (!ownGoodConvHeaders(site, images) || !ownGoodConvImages(site, images, isFloat)
        || !ownGoodAxes(site, xKernel, yKernel) || !ownBeginConvWork(site, images, work))
        return;
    const auto rows = ownAxisOf(xKernel, &Kernel::anchorX);
    const auto columns = ownAxisOf(yKernel, &Kernel::anchorY);
    const int32_t depth = images.srcImage->depth;
    const auto engine = [&](const OwnBand& band) {
        bool isGood = false;
        if constexpr (isFloat) {
            isGood = ownSeparateDepth<float>(band, rows, columns, depth);
        } else {
            ownForDepth(depth == PXK_DEPTH_1U ? PXK_DEPTH_8U : depth, [&](auto tag) {
                using T = typename decltype(tag)::Sample;
                if constexpr (!std::is_floating_point<T>::value)
                    isGood = ownSeparateDepth<T>(band, rows, columns, depth);
            });
        }
        if (depth == PXK_DEPTH_1U) ownLimitBits(band);
        return isGood;
    };
    const OwnMargins margins = { rows.anchor, columns.anchor, rows.count - rows.anchor - 1,
                                 columns.count - columns.anchor - 1 };
    ownRunConvWork(site, work, margins, engine);
}

void pxkConvolveSep2D(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernel* xKernel, PxkConvKernel* yKernel)
{
    ownSeparable(OWN_HERE, { srcImage, dstImage }, xKernel, yKernel);
}

void pxkConvolveSep2DFP(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernelFP* xKernel, PxkConvKernelFP* yKernel)
{
    ownSeparable(OWN_HERE, { srcImage, dstImage }, xKernel, yKernel);
}
