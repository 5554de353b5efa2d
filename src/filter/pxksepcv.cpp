// SPDX-License-Identifier: BSD-2-Clause
// Separable convolution: a kernel of one row, then one of one column.
#include <algorithm>
#include <type_traits>

#include "frame/owndepth.h"
#include "frame/ownlimit.h"
#include "ownconvwork.h"
#include "ownkernel.h"

// One axis of a separable convolution; without a kernel a single coefficient of 1.
template <class Value> struct OwnKernelAxis {
    const Value* values;
    int32_t count;
    int32_t anchor;
    int32_t shift;
};

template <class Value> static constexpr Value ownOne = 1;

static OwnKernelAxis<int32_t> ownAxisOf(const PxkConvKernel* kernel, int32_t PxkConvKernel::*anchor)
{
    if (kernel == nullptr) return { &ownOne<int32_t>, 1, 0, 0 };
    const int32_t shift = std::min(std::max(kernel->nShiftR, 0), 31);
    return { kernel->values, kernel->nCols * kernel->nRows, kernel->*anchor, shift };
}

static OwnKernelAxis<float> ownAxisOf(const PxkConvKernelFP* kernel, int32_t PxkConvKernelFP::*anchor)
{
    if (kernel == nullptr) return { &ownOne<float>, 1, 0, 0 };
    return { kernel->values, kernel->nCols * kernel->nRows, kernel->*anchor, 0 };
}

// Integers whose sums of either pass cannot leave 32 bits, whatever the samples.
static bool ownFitsIntegers(const OwnKernelAxis<int32_t>& rows, const OwnKernelAxis<int32_t>& columns, int32_t depth)
{
    if (depth == PXK_DEPTH_32S) return false;
    const OwnRange range = ownDepthRange(depth);
    double low = range.low;
    double high = range.high;
    for (const OwnKernelAxis<int32_t>* axis : { &rows, &columns }) {
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

// What becomes of a sum: a shift is a division that goes to minus infinity. Double sums stand for integers and are
// rounded at the end only.
template <class Sum> struct OwnShift {
    int32_t shift;
    double scale;
    explicit OwnShift(int32_t bits)
        : shift(bits)
        , scale(1.0 / static_cast<double>(int64_t { 1 } << bits))
    {
    }
    Sum operator()(Sum sum) const
    {
        if constexpr (std::is_same<Sum, int32_t>::value) {
            return sum >> shift;
        } else if constexpr (std::is_same<Sum, double>::value) {
            return __builtin_floor(sum * scale);
        } else {
            return sum;
        }
    }
};

// Adds N products of a coefficient and a row to what is there already, if anything is, one after the other.
template <int32_t N, class From, class Value, class Sum>
static void ownAddProducts(const From* const* rows, const Value* values, const Sum* there, Sum* to, ptrdiff_t n,
                           OwnShift<Sum> end)
{
    const From* row[N];
    Sum value[N];
    for (int32_t k = 0; k < N; ++k) {
        row[k] = rows[k];
        value[k] = static_cast<Sum>(values[k]);
    }
    const auto others = [&](Sum sum, int32_t first, ptrdiff_t i) {
        for (int32_t k = first; k < N; ++k) sum = sum + value[k] * static_cast<Sum>(row[k][i]);
        return end(sum);
    };
    if (there == nullptr) {
        ownInBlocks<ownBlockOf<Sum>>(
            n, [&](ptrdiff_t i) { to[i] = others(value[0] * static_cast<Sum>(row[0][i]), 1, i); });
    } else {
        ownInBlocks<ownBlockOf<Sum>>(n, [&](ptrdiff_t i) { to[i] = others(there[i], 0, i); });
    }
}

constexpr int32_t ownMostProducts = 5;

// Not inlined: so many loops need no copy for each caller.
template <class From, class Value, class Sum>
__attribute__((noinline)) static void ownAddProducts(int32_t count, const From* const* rows, const Value* values,
                                                     const Sum* there, Sum* to, ptrdiff_t n, const OwnShift<Sum>& end)
{
    switch (count) {
    case 1: return ownAddProducts<1>(rows, values, there, to, n, end);
    case 2: return ownAddProducts<2>(rows, values, there, to, n, end);
    case 3: return ownAddProducts<3>(rows, values, there, to, n, end);
    case 4: return ownAddProducts<4>(rows, values, there, to, n, end);
    default: return ownAddProducts<ownMostProducts>(rows, values, there, to, n, end);
    }
}

// The whole sum over an axis, whose k-th coefficient meets row at(k). Sums of some coefficients go from one spare row
// to the other.
template <class From, class Sum, class Value, class At>
static void ownAxisSums(const OwnKernelAxis<Value>& axis, const At& at, Sum* const (&spare)[2], Sum* to, ptrdiff_t n)
{
    const Sum* there = nullptr;
    for (int32_t done = 0; done < axis.count;) {
        const From* rows[ownMostProducts];
        const int32_t count = std::min(axis.count - done, ownMostProducts);
        for (int32_t k = 0; k < count; ++k) rows[k] = at(done + k);
        const Value* const values = axis.values + done;
        done += count;
        const bool isLast = done == axis.count;
        Sum* const next = isLast ? to : (there == spare[0] ? spare[1] : spare[0]);
        ownAddProducts(count, rows, values, there, next, n, OwnShift<Sum>(isLast ? axis.shift : 0));
        there = next;
    }
}

// The row pass over the rows that an output row needs, each once, and the column pass over its results.
template <class T, class Sum, class Value>
static bool ownSeparateBand(const OwnBand& band, const OwnKernelAxis<Value>& rows, const OwnKernelAxis<Value>& columns)
{
    const ptrdiff_t n = band.width;
    const ptrdiff_t stride = ((n + ownBlockBytes - 1) & -ownBlockBytes) + ownBlockBytes;
    Sum* const sums = band.scratch.take<Sum>((static_cast<int64_t>(columns.count) + 3) * stride);
    if (sums == nullptr) return false;
    Sum* const spare[2] = { sums + stride, sums + 2 * stride };
    Sum* const passed = sums + 3 * stride; // as many rows as the column has coefficients, used in turn
    const auto passedRow = [&](int64_t y) { return passed + static_cast<ptrdiff_t>(y % columns.count) * stride; };
    int64_t ready = 0;
    for (int32_t y = 0; y < band.height; ++y) {
        for (; ready < static_cast<int64_t>(y) + columns.count; ++ready) {
            const T* const source = reinterpret_cast<const T*>(band.rows[ready]);
            const auto at = [&](int32_t k) { return source + static_cast<ptrdiff_t>(k) * band.step; };
            ownAxisSums<T>(rows, at, spare, passedRow(ready), n);
        }
        const auto at = [&](int32_t k) -> const Sum* { return passedRow(static_cast<int64_t>(y) + k); };
        ownAxisSums<Sum>(columns, at, spare, sums, n);
        T* const out = reinterpret_cast<T*>(band.out[y]);
        ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
            if constexpr (std::is_floating_point<T>::value) {
                out[i] = ownOneNaN(sums[i]);
            } else {
                out[i] = ownLimitTo<T>(sums[i]);
            }
        });
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
static bool ownSeparateDepth(const OwnBand& band, const OwnKernelAxis<Value>& rows, const OwnKernelAxis<Value>& columns,
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
        // Bits come as bytes, and in rows below a block what lies behind them, any byte, is added along.
        const int32_t bytesDepth = depth == PXK_DEPTH_1U ? PXK_DEPTH_8U : depth;
        bool isGood;
        if constexpr (isFloat) {
            isGood = ownSeparateDepth<float>(band, rows, columns, depth);
        } else {
            isGood = ownForIntegerDepth(bytesDepth, [&](auto tag) {
                return ownSeparateDepth<typename decltype(tag)::Sample>(band, rows, columns, bytesDepth);
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
