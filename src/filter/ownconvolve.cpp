// SPDX-License-Identifier: BSD-2-Clause
#include "ownconvolve.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "frame/owndepth.h"
#include "frame/ownivdep.h"
#include "frame/ownlimit.h"
#include "ownsums.h"
#include "pxk/pxk.h"

// Rows are computed in chunks, so that sums and sources stay in the first-level cache.
static constexpr ptrdiff_t ownChunk = 1024;

// Chunks of whole vectors, of which compilers leave no remainder to scalar code; the last one begins inside the one
// before. Rows below a vector are a chunk of their own.
static ptrdiff_t ownChunkOf(ptrdiff_t width)
{
    constexpr ptrdiff_t vector = 32;
    const auto partOf = [width](ptrdiff_t n) { return ((width + n - 1) / n + vector - 1) & -vector; };
    const ptrdiff_t fewest = width / ownChunk + 1;
    return partOf(fewest) <= width || width < vector ? partOf(fewest) : partOf(fewest + 1);
}

// ---- planning ------------------------------------------------------------------------------------------------------

// What a kernel's sums can reach over the depth's range. In double precision, where they cannot overflow.
struct OwnSumRange {
    double low;
    double high;
    bool hasWideValues;   // coefficients beyond 16 bits
    bool hasWideProducts; // single products beyond 16 bits
};

static OwnSumRange ownSumRange(const OwnCorrelation& kernel, OwnRange samples)
{
    OwnSumRange range = {};
    const int64_t count = static_cast<int64_t>(kernel.nCols) * kernel.nRows;
    for (int64_t i = 0; i < count; ++i) {
        const double value = kernel.values[i];
        const double atHigh = value * samples.high;
        const double atLow = value * samples.low;
        range.hasWideValues = range.hasWideValues || value < -32768 || value > 32767;
        const double high = value > 0 ? atHigh : atLow;
        const double low = value > 0 ? atLow : atHigh;
        if (value == 0) continue;
        range.high += high;
        range.low += low;
        range.hasWideProducts = range.hasWideProducts || high > 32767 || low < -32768;
    }
    return range;
}

static OwnSums ownChooseSums(const OwnSumRange& range)
{
    if (range.hasWideValues) return OwnSums::SINGLE;
    if (range.low > -32768 && range.high < 32767 && !range.hasWideProducts) return OwnSums::NARROW;
    const bool fits32 = range.low > -2147483648.0 && range.high < 2147483647.0;
    return fits32 ? OwnSums::WIDE : OwnSums::SINGLE;
}

// 8-bit samples: the taps from `start` on whose sum fits 16 bits, at least one. 0: a product does not.
static int32_t ownGroupLength(const OwnTap* taps, int32_t count, OwnRange samples)
{
    int64_t low = 0;
    int64_t high = 0;
    for (int32_t k = 0; k < count; ++k) {
        const int64_t value = taps[k].value;
        high += value * (value > 0 ? samples.high : samples.low);
        low += value * (value > 0 ? samples.low : samples.high);
        if (high > INT16_MAX || low < INT16_MIN) return k;
    }
    return count;
}

// Tells each tap how many of the following ones, itself included, are summed in 16 bits with it. False: some cannot be.
static bool ownPlanGroups(OwnTap* taps, int32_t count, OwnRange samples)
{
    for (int32_t start = 0; start < count; start += taps[start].group) {
        taps[start].group = ownGroupLength(taps + start, count - start, samples);
        if (taps[start].group == 0) return false;
    }
    return true;
}

// Lists the taps of a kernel from `taps` on. Integer sums leave zeros out; single-precision ones multiply them too.
static void ownPlanKernel(OwnConvPlan& plan, const OwnCorrelation& kernel, OwnTap* taps, OwnKernelPlan& made)
{
    made.taps = taps;
    made.shift = std::min(std::max(kernel.shift, 0), 31);
    made.sums = OwnSums::SINGLE;
    if (kernel.values != nullptr && plan.depth != PXK_DEPTH_32S) {
        const OwnSumRange range = ownSumRange(kernel, ownDepthRange(plan.depth));
        made.sums = ownChooseSums(range);
        made.isUnsigned16 = made.sums == OwnSums::WIDE && range.low >= 0 && range.high <= 65535;
    }
    for (int32_t y = 0; y < kernel.nRows; ++y) {
        for (int32_t x = 0; x < kernel.nCols; ++x) {
            const int64_t i = static_cast<int64_t>(y) * kernel.nCols + x;
            OwnTap tap = { plan.margins.top - kernel.anchorY + y, plan.margins.left - kernel.anchorX + x, 0, 0, 0 };
            if (kernel.values != nullptr) {
                tap.value = kernel.values[i];
                tap.valueFP = static_cast<float>(tap.value);
            } else {
                tap.valueFP = kernel.valuesFP[i];
            }
            if (made.sums == OwnSums::SINGLE || tap.value != 0) taps[made.count++] = tap;
        }
    }
    const bool isByte = ownDepthBits(plan.depth) <= 8;
    made.hasGroups =
        isByte && made.sums != OwnSums::SINGLE && ownPlanGroups(taps, made.count, ownDepthRange(plan.depth));
    const auto isFirstValue = [taps](const OwnTap& tap) { return tap.value == taps[0].value; };
    made.isBox = made.sums != OwnSums::SINGLE && made.count == kernel.nCols * kernel.nRows
        && std::all_of(taps, taps + made.count, isFirstValue);
}

// A single dense kernel of 3 x 3 or 5 x 5 whose result is stored as it is.
static void ownPlanSquare(OwnConvPlan& plan)
{
    OwnSquare& square = plan.square;
    const OwnKernelPlan& kernel = plan.kernels[0];
    square.sums = OwnSquareSums::NONE;
    square.side = plan.margins.left + 1 + plan.margins.right;
    square.shift = kernel.shift;
    const bool isSquare = square.side == plan.margins.top + 1 + plan.margins.bottom;
    const bool isPlain = plan.method != PXK_CONV_SUMSQ && plan.method != PXK_CONV_SUMSQROOT;
    if (plan.nKernels != 1 || !isSquare || !isPlain || (square.side != 3 && square.side != 5)) return;
    for (int32_t k = 0; k < square.side * square.side; ++k) {
        square.values[k] = 0;
        square.valuesFP[k] = 0;
    }
    for (int32_t k = 0; k < kernel.count; ++k) {
        const OwnTap& tap = kernel.taps[k];
        square.values[tap.row * square.side + tap.column] = tap.value;
        square.valuesFP[tap.row * square.side + tap.column] = tap.valueFP;
    }
    if (plan.depth == PXK_DEPTH_32F) {
        square.sums = OwnSquareSums::SINGLE;
    } else if (kernel.sums != OwnSums::SINGLE) {
        square.sums = ownChooseSquareSums(square, plan.depth);
    }
}

bool ownPlanConvolution(OwnConvPlan& plan, int32_t depth, const OwnCorrelation* kernels, int32_t nKernels,
                        int32_t method)
{
    plan.depth = depth;
    plan.method = method;
    plan.nKernels = nKernels;
    int64_t count = 0;
    for (int32_t k = 0; k < nKernels; ++k) {
        const OwnCorrelation& kernel = kernels[k];
        plan.margins.left = std::max(plan.margins.left, kernel.anchorX);
        plan.margins.top = std::max(plan.margins.top, kernel.anchorY);
        plan.margins.right = std::max(plan.margins.right, kernel.nCols - kernel.anchorX - 1);
        plan.margins.bottom = std::max(plan.margins.bottom, kernel.nRows - kernel.anchorY - 1);
        count += static_cast<int64_t>(kernel.nCols) * kernel.nRows;
    }
    plan.taps = ownBuffer<OwnTap>(count);
    if (plan.taps == nullptr) return false;
    OwnTap* next = plan.taps.get();
    for (int32_t k = 0; k < nKernels; ++k) {
        ownPlanKernel(plan, kernels[k], next, plan.kernels[k]);
        next += static_cast<int64_t>(kernels[k].nCols) * kernels[k].nRows;
    }
    ownPlanSquare(plan);
    return true;
}

// ---- sums ----------------------------------------------------------------------------------------------------------

// Source rows of an output row, from one chunk's first sample on.
struct OwnChunkRows {
    const uint8_t* const* rows;
    ptrdiff_t start;
    ptrdiff_t step;

    template <class T> const T* at(const OwnTap& tap) const
    {
        return reinterpret_cast<const T*>(rows[tap.row]) + start + tap.column * step;
    }
};

template <class Sum> static inline Sum ownTapValue(const OwnTap& tap)
{
    if constexpr (std::is_floating_point<Sum>::value) {
        return tap.valueFP;
    } else {
        return static_cast<Sum>(tap.value);
    }
}

// Products and sums of integers are formed modulo the width of Sum, which holds the whole sum.
template <class Sum, class T> static inline Sum ownProduct(Sum value, T sample)
{
    if constexpr (std::is_floating_point<Sum>::value) {
        return value * static_cast<Sum>(sample);
    } else {
        return static_cast<Sum>(static_cast<uint32_t>(value) * static_cast<uint32_t>(static_cast<Sum>(sample)));
    }
}

template <class Sum> static inline Sum ownSumOf(Sum a, Sum b)
{
    if constexpr (std::is_floating_point<Sum>::value) {
        return a + b;
    } else {
        return static_cast<Sum>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
    }
}

// The sums of N taps, or these added to the sums: so sums are loaded and stored once for all of them.
template <int32_t N, bool IS_FIRST, class T, class Sum>
static void ownAddTaps(const OwnTap* taps, const OwnChunkRows& from, Sum* sums, ptrdiff_t n)
{
    const T* source[N];
    Sum value[N];
    for (int32_t k = 0; k < N; ++k) {
        source[k] = from.at<T>(taps[k]);
        value[k] = ownTapValue<Sum>(taps[k]);
    }
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        Sum sum = ownProduct(value[0], source[0][i]);
        for (int32_t k = 1; k < N; ++k) sum = ownSumOf(sum, ownProduct(value[k], source[k][i]));
        sums[i] = IS_FIRST ? sum : ownSumOf(sums[i], sum);
    }
}

// Taps that are taken together; a smaller batch is the first one, but the last one of floats, whose sums depend on it.
constexpr int32_t ownTapBatch = 9;

template <bool IS_FIRST, class T, class Sum>
static void ownAddSomeTaps(const OwnTap* taps, int32_t count, const OwnChunkRows& from, Sum* sums, ptrdiff_t n)
{
    switch (count) {
    case 9: return ownAddTaps<ownTapBatch, IS_FIRST, T>(taps, from, sums, n);
    case 8: return ownAddTaps<8, IS_FIRST, T>(taps, from, sums, n);
    case 7: return ownAddTaps<7, IS_FIRST, T>(taps, from, sums, n);
    case 6: return ownAddTaps<6, IS_FIRST, T>(taps, from, sums, n);
    case 5: return ownAddTaps<5, IS_FIRST, T>(taps, from, sums, n);
    case 4: return ownAddTaps<4, IS_FIRST, T>(taps, from, sums, n);
    case 3: return ownAddTaps<3, IS_FIRST, T>(taps, from, sums, n);
    case 2: return ownAddTaps<2, IS_FIRST, T>(taps, from, sums, n);
    default: return ownAddTaps<1, IS_FIRST, T>(taps, from, sums, n);
    }
}

// The same sums of floats by one tap at a time, for 8-bit samples: only coefficients beyond 2^23 bring them here, too
// few for loops of their own.
template <class T>
static void ownSumTapsSingly(const OwnTap* taps, int32_t count, const OwnChunkRows& from, float* sums, ptrdiff_t n)
{
    float part[ownChunk];
    for (int32_t done = 0; done < count; done += ownTapBatch) {
        float* const to = done == 0 ? sums : part;
        const int32_t end = std::min(done + ownTapBatch, count);
        ownAddTaps<1, true, T>(taps + done, from, to, n);
        for (int32_t k = done + 1; k < end; ++k) ownAddTaps<1, false, T>(taps + k, from, to, n);
        if (done == 0) continue;
        for (ptrdiff_t i = 0; i < n; ++i) sums[i] += part[i];
    }
}

// Not inlined: so many loops need no copy for each caller.
template <class T, class Sum>
__attribute__((noinline)) static void ownSumTaps(const OwnTap* taps, int32_t count, const OwnChunkRows& from, Sum* sums,
                                                 ptrdiff_t n)
{
    constexpr bool isReal = std::is_floating_point<Sum>::value;
    if (count == 0) std::fill(sums, sums + n, Sum { 0 });
    if constexpr (isReal && sizeof(T) == 1) return ownSumTapsSingly<T>(taps, count, from, sums, n);
    const int32_t rest = count % ownTapBatch;
    const int32_t first = std::min(count, isReal || rest == 0 ? ownTapBatch : rest);
    if (count > 0) ownAddSomeTaps<true, T>(taps, first, from, sums, n);
    for (int32_t done = first; done < count; done += ownTapBatch) {
        if constexpr (isReal) {
            ownAddSomeTaps<false, T>(taps + done, std::min(count - done, ownTapBatch), from, sums, n);
        } else {
            ownAddTaps<ownTapBatch, false, T>(taps + done, from, sums, n);
        }
    }
}

// 8-bit samples: taps are taken in groups whose sums fit 16 bits, and only the groups are added in 32.
template <class T>
static void ownSumGroups(const OwnKernelPlan& kernel, const OwnChunkRows& from, int32_t* sums, ptrdiff_t n)
{
    int16_t part[ownChunk];
    for (int32_t start = 0; start < kernel.count; start += kernel.taps[start].group) {
        ownSumTaps<T>(kernel.taps + start, kernel.taps[start].group, from, part, n);
        if (start == 0) {
            for (ptrdiff_t i = 0; i < n; ++i) sums[i] = part[i];
        } else {
            for (ptrdiff_t i = 0; i < n; ++i) sums[i] += part[i];
        }
    }
}

template <class T>
static void ownSumIntegers(const OwnKernelPlan& kernel, const OwnChunkRows& from, int32_t* sums, ptrdiff_t n)
{
    if (sizeof(T) == 1 && kernel.hasGroups && kernel.count > 0) {
        ownSumGroups<T>(kernel, from, sums, n);
    } else {
        ownSumTaps<T>(kernel.taps, kernel.count, from, sums, n);
    }
    if (kernel.shift == 0) return;
    const int32_t shift = kernel.shift;
    for (ptrdiff_t i = 0; i < n; ++i) sums[i] >>= shift;
}

template <class T>
static void ownSumSingles(const OwnKernelPlan& kernel, const OwnChunkRows& from, float* sums, ptrdiff_t n)
{
    ownSumTaps<T>(kernel.taps, kernel.count, from, sums, n);
    if (kernel.shift == 0 || std::is_floating_point<T>::value) return;
    const int32_t shift = kernel.shift;
    // Sums beyond 32 bits come to its limits before they are shifted.
    for (ptrdiff_t i = 0; i < n; ++i) sums[i] = static_cast<float>(ownLimitReal<int32_t>(sums[i]) >> shift);
}

// A kernel's results in single precision, whatever its sums were formed in.
template <class T>
static void ownSumAsSingles(const OwnKernelPlan& kernel, const OwnChunkRows& from, float* results, ptrdiff_t n)
{
    if constexpr (!std::is_floating_point<T>::value) {
        if (kernel.sums != OwnSums::SINGLE) {
            int32_t sums[ownChunk];
            ownSumIntegers<T>(kernel, from, sums, n);
            for (ptrdiff_t i = 0; i < n; ++i) results[i] = static_cast<float>(sums[i]);
            return;
        }
    }
    ownSumSingles<T>(kernel, from, results, n);
}

// ---- storing -------------------------------------------------------------------------------------------------------

template <class T, class Value> static void ownStoreLimited(const Value* values, T* out, ptrdiff_t n)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        if constexpr (std::is_floating_point<T>::value) {
            out[i] = ownOneNaN(values[i]);
        } else {
            out[i] = ownLimitTo<T>(values[i]);
        }
    }
}

// A single kernel over 8-bit samples whose sums fit 16 bits, signed or not, needs no wider step at all.
template <class T, class Sum>
static void ownConvolveNarrow(const OwnKernelPlan& kernel, const OwnChunkRows& from, T* out, ptrdiff_t n)
{
    Sum sums[ownChunk];
    ownSumTaps<T>(kernel.taps, kernel.count, from, sums, n);
    // The visible range lets the compiler shift in 16 bits; an unsigned sum shifted by 16 is 0.
    const int32_t shift = std::min(kernel.shift, 15) & 15;
    const Sum kept = std::is_unsigned<Sum>::value && kernel.shift > 15 ? 0 : static_cast<Sum>(~Sum { 0 });
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) out[i] = ownLimitInteger<T>(static_cast<Sum>((sums[i] & kept) >> shift));
}

// ---- combining -----------------------------------------------------------------------------------------------------

// Squares of 32-bit integers wrap; sums of squares of several kernels are kept so.
static inline int32_t ownSquare(int32_t value)
{
    return static_cast<int32_t>(static_cast<uint32_t>(value) * static_cast<uint32_t>(value));
}

static inline float ownSquare(float value)
{
    return value * value;
}

static inline int32_t ownWrappingSum(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

static inline float ownWrappingSum(float a, float b)
{
    return a + b;
}

// Joins the next kernel's results to the running ones.
template <class Value>
static void ownCombine(Value* running, const Value* next, int32_t method, bool isFirst, ptrdiff_t n)
{
    const bool isSquared = method == PXK_CONV_SUMSQ || method == PXK_CONV_SUMSQROOT;
    const auto each = [&](auto join) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) running[i] = join(running[i], next[i]);
    };
    if (isFirst && isSquared) return each([](Value, Value b) { return ownSquare(b); });
    if (isFirst) return each([](Value, Value b) { return b; });
    if (isSquared) return each([](Value a, Value b) { return ownWrappingSum(a, ownSquare(b)); });
    if (method == PXK_CONV_MAX) return each([](Value a, Value b) { return a > b ? a : b; });
    if (method == PXK_CONV_MIN) return each([](Value a, Value b) { return a < b ? a : b; });
    each([](Value a, Value b) { return ownWrappingSum(a, b); });
}

// The root of a sum of squares; one that wrapped below zero counts as the smallest value.
static inline int32_t ownRoot(int32_t value)
{
    return value < 0 ? INT32_MIN : ownRoundEven(std::sqrt(static_cast<double>(value)));
}

static inline float ownRoot(float value)
{
    return std::sqrt(value);
}

// All kernels of a call on one chunk, with running results in Value.
template <class T, class Value>
static void ownConvolveSeveral(const OwnConvPlan& plan, const OwnChunkRows& from, T* out, ptrdiff_t n)
{
    Value running[ownChunk];
    Value next[ownChunk];
    for (int32_t k = 0; k < plan.nKernels; ++k) {
        const OwnKernelPlan& kernel = plan.kernels[k];
        if constexpr (std::is_floating_point<Value>::value) {
            ownSumAsSingles<T>(kernel, from, next, n);
        } else {
            ownSumIntegers<T>(kernel, from, next, n);
        }
        ownCombine(running, next, plan.method, k == 0, n);
    }
    if (plan.method == PXK_CONV_SUMSQROOT) {
        for (ptrdiff_t i = 0; i < n; ++i) running[i] = ownRoot(running[i]);
    }
    ownStoreLimited(running, out, n);
}

// With a single kernel the methods are the square, the absolute value, and otherwise the plain result.
template <class Value> static void ownApplyMethod(Value* values, int32_t method, ptrdiff_t n)
{
    if (method == PXK_CONV_SUMSQ) ownCombine(values, values, method, true, n);
    if (method != PXK_CONV_SUMSQROOT) return;
    for (ptrdiff_t i = 0; i < n; ++i) values[i] = values[i] < 0 ? -values[i] : values[i];
}

template <class T> static void ownConvolveOne(const OwnConvPlan& plan, const OwnChunkRows& from, T* out, ptrdiff_t n)
{
    const OwnKernelPlan& kernel = plan.kernels[0];
    if constexpr (!std::is_floating_point<T>::value) {
        // Squares of sums beyond 16 bits would wrap; they are limited instead, which single precision does.
        const bool isSquareWide = plan.method == PXK_CONV_SUMSQ && kernel.sums == OwnSums::WIDE;
        if (kernel.sums != OwnSums::SINGLE && !isSquareWide) {
            int32_t sums[ownChunk];
            ownSumIntegers<T>(kernel, from, sums, n);
            ownApplyMethod(sums, plan.method, n);
            return ownStoreLimited(sums, out, n);
        }
    }
    float sums[ownChunk];
    ownSumAsSingles<T>(kernel, from, sums, n);
    ownApplyMethod(sums, plan.method, n);
    ownStoreLimited(sums, out, n);
}

// ---- bands ---------------------------------------------------------------------------------------------------------

template <class T> static void ownConvolveChunk(const OwnConvPlan& plan, const OwnChunkRows& from, T* out, ptrdiff_t n)
{
    const OwnKernelPlan& first = plan.kernels[0];
    if constexpr (sizeof(T) == 1) {
        const bool isPlain = plan.nKernels == 1 && plan.method != PXK_CONV_SUMSQ && plan.method != PXK_CONV_SUMSQROOT;
        if (isPlain && first.sums == OwnSums::NARROW) return ownConvolveNarrow<T, int16_t>(first, from, out, n);
        if (isPlain && first.isUnsigned16) return ownConvolveNarrow<T, uint16_t>(first, from, out, n);
    }
    if (plan.nKernels == 1) return ownConvolveOne<T>(plan, from, out, n);
    if constexpr (!std::is_floating_point<T>::value) {
        bool isNarrow = true;
        for (int32_t k = 0; k < plan.nKernels; ++k) isNarrow = isNarrow && plan.kernels[k].sums == OwnSums::NARROW;
        if (isNarrow) return ownConvolveSeveral<T, int32_t>(plan, from, out, n);
    }
    ownConvolveSeveral<T, float>(plan, from, out, n);
}

// A single kernel of one coefficient is a multiple of the window's sum, which costs the same whatever the window. Sums
// count from the lowest sample: `lowest` is what that adds up to.
template <class T> static bool ownConvolveBox(const OwnBand& band, const OwnConvPlan& plan)
{
    const int32_t nCols = plan.margins.left + 1 + plan.margins.right;
    const int32_t nRows = plan.margins.top + 1 + plan.margins.bottom;
    const OwnKernelPlan& kernel = plan.kernels[0];
    const int32_t value = kernel.taps[0].value;
    const int32_t shift = kernel.shift;
    const bool isPlain = plan.method != PXK_CONV_SUMSQ && plan.method != PXK_CONV_SUMSQROOT;
    if constexpr (std::is_same<T, uint8_t>::value) {
        const int64_t most = static_cast<int64_t>(value) * kernel.count * UINT8_MAX;
        if (isPlain && shift >= 1 && shift <= 15 && value > 0 && most <= UINT16_MAX) {
            const auto store = [value, shift](const uint16_t* sums, uint8_t* out, ptrdiff_t n) {
                const uint16_t factor = static_cast<uint16_t>(value);
                // A shift as a product: compilers shift 16-bit samples by a variable in 32 bits.
                const uint16_t shifted = static_cast<uint16_t>(1 << (16 - shift));
                ownInBlocks<ownBlockOf<uint8_t>>(n, [&](ptrdiff_t i) {
                    const uint16_t sum = static_cast<uint16_t>(sums[i] * factor);
                    const uint16_t high = static_cast<uint16_t>(static_cast<uint32_t>(sum) * shifted >> 16);
                    out[i] = ownLimitInteger<uint8_t>(high);
                });
            };
            return ownWindowSums<uint8_t, uint16_t>(band, nCols, nRows, store);
        }
    }
    const uint32_t lowest = static_cast<uint32_t>(kernel.count) * static_cast<uint32_t>(ownDepthRange(plan.depth).low);
    return ownWindowSums<T, uint32_t>(band, nCols, nRows, [&](const uint32_t* sums, T* out, ptrdiff_t n) {
        ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
            int32_t sum = static_cast<int32_t>((sums[i] + lowest) * static_cast<uint32_t>(value)) >> shift;
            if (plan.method == PXK_CONV_SUMSQ) sum = ownSquare(sum);
            if (plan.method == PXK_CONV_SUMSQROOT) sum = sum < 0 ? -sum : sum;
            out[i] = ownLimitInteger<T>(sum);
        });
    });
}

template <class T> static bool ownConvolveAs(const OwnBand& band, const OwnConvPlan& plan, int32_t depth)
{
    if constexpr (!std::is_floating_point<T>::value) {
        constexpr int32_t fewTaps = 9; // fewer than these are cheaper one by one
        const OwnKernelPlan& kernel = plan.kernels[0];
        const bool isSquareWide = plan.method == PXK_CONV_SUMSQ && kernel.sums == OwnSums::WIDE;
        if (plan.nKernels == 1 && kernel.isBox && kernel.count > fewTaps && !isSquareWide) {
            return ownConvolveBox<T>(band, plan);
        }
    }
    if (plan.square.sums != OwnSquareSums::NONE) {
        ownSquareBand(band, plan.square, depth);
        return true;
    }
    const ptrdiff_t chunk = ownChunkOf(band.width);
    for (int32_t y = 0; y < band.height; ++y) {
        T* const out = reinterpret_cast<T*>(band.out[y]);
        for (ptrdiff_t next = 0; next < band.width; next += chunk) {
            const ptrdiff_t x = std::max<ptrdiff_t>(std::min(next, band.width - chunk), 0);
            const OwnChunkRows from = { band.rows + y, x, band.step };
            ownConvolveChunk<T>(plan, from, out + x, std::min(chunk, band.width));
        }
    }
    return true;
}

bool ownConvolveBand(const OwnBand& band, const OwnConvPlan& plan)
{
    const int32_t depth = plan.depth == PXK_DEPTH_1U ? PXK_DEPTH_8U : plan.depth; // bits come as bytes of 0 and 1
    const bool isGood =
        ownForDepth(depth, [&](auto tag) { return ownConvolveAs<typename decltype(tag)::Sample>(band, plan, depth); });
    if (plan.depth == PXK_DEPTH_1U) ownLimitBits(band);
    return isGood;
}
