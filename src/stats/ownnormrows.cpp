// SPDX-License-Identifier: BSD-2-Clause
#include "ownnormrows.h"

#include <cmath>
#include <cstring>
#include <type_traits>

#include "frame/ownbitcount.h"
#include "frame/ownblockrows.h"
#include "frame/owndepth.h"
#include "ownlanes.h"

// ---- integers ------------------------------------------------------------------------------------------------------

template <class T> using OwnUnsigned = std::make_unsigned_t<T>;

// |a - b|, which needs one bit more than T has and therefore T without its sign.
template <class T> inline OwnUnsigned<T> ownDistance(T a, T b)
{
    const T low = a < b ? a : b;
    const T high = a < b ? b : a;
    return static_cast<OwnUnsigned<T>>(static_cast<OwnUnsigned<T>>(high) - static_cast<OwnUnsigned<T>>(low));
}

// The second row of an image that is measured alone. Sums of bytes take it from memory: compilers have one instruction
// for both rows.
template <class T> struct OwnZeroRow {
    T operator[](ptrdiff_t) const { return 0; }
};

template <class T, class RowB> static OwnUnsigned<T> ownLargest(const T* a, RowB b, ptrdiff_t n)
{
    OwnUnsigned<T> largest = 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnUnsigned<T> distance = ownDistance<T>(a[i], b[i]);
        largest = distance > largest ? distance : largest;
    }
    return largest;
}

// Bytes counted from the lowest sample, in the one form in which compilers know the sum of absolute differences.
// Turning the sign bit would do as well, but GCC 12 then makes signed differences of it for AArch64, and wrong sums.
template <class T> static uint32_t ownByteSum(const T* a, const T* b, ptrdiff_t n)
{
    constexpr int32_t fromLowest = std::is_signed<T>::value ? 128 : 0;
    uint32_t sum = 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const uint8_t fromLowestA = static_cast<uint8_t>(a[i] + fromLowest);
        const uint8_t fromLowestB = static_cast<uint8_t>(b[i] + fromLowest);
        const int32_t difference = fromLowestA - fromLowestB;
        sum += static_cast<uint32_t>(difference < 0 ? -difference : difference);
    }
    return sum;
}

// 16-bit samples add up within 32 bits in a block, 32-bit ones in 64.
template <class T, class RowB> static uint64_t ownSum(const T* a, RowB b, ptrdiff_t n)
{
    if constexpr (sizeof(T) == 1) {
        return ownByteSum(a, b, n);
    } else {
        std::conditional_t<sizeof(T) == 2, uint32_t, uint64_t> sum = 0;
        for (ptrdiff_t i = 0; i < n; ++i) sum += ownDistance<T>(a[i], b[i]);
        return sum;
    }
}

// Squares of bytes add up within 31 bits in a block; those of 16-bit distances fit 32 bits.
template <class T, class RowB> static uint64_t ownSquares(const T* a, RowB b, ptrdiff_t n)
{
    if constexpr (sizeof(T) == 1) {
        int32_t sum = 0;
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int16_t difference = static_cast<int16_t>(a[i] - b[i]);
            sum += difference * difference;
        }
        return static_cast<uint64_t>(sum);
    } else {
        uint64_t sum = 0;
        for (ptrdiff_t i = 0; i < n; ++i) {
            const uint32_t distance = ownDistance<T>(a[i], b[i]);
            sum += distance * distance;
        }
        return sum;
    }
}

// ---- the rows by depth and type ------------------------------------------------------------------------------------

template <class T, int32_t TYPE, class RowB>
static void ownMeasureRows(const T* a, RowB b, ptrdiff_t n, OwnNormTotal& total)
{
    const auto distance = [=](ptrdiff_t i) { return std::fabs(static_cast<double>(a[i]) - static_cast<double>(b[i])); };
    const auto square = [=](ptrdiff_t i) { return distance(i) * distance(i); };
    constexpr bool isReal = std::is_floating_point<T>::value;
    if constexpr (TYPE == PXK_NORM_INF) {
        if constexpr (isReal) total.raise(ownJoinTerms(n, distance, OwnLargerReal {}));
        if constexpr (!isReal) total.raise(ownLargest(a, b, n));
    } else if constexpr (TYPE == PXK_NORM_L1) {
        if constexpr (isReal) total.add(ownJoinTerms(n, distance, OwnAddReal {}));
        if constexpr (!isReal) total.add(ownSum(a, b, n));
    } else {
        if constexpr (sizeof(T) == 4) total.add(ownJoinTerms(n, square, OwnAddReal {}));
        if constexpr (sizeof(T) != 4) total.add(ownSquares(a, b, n));
    }
}

// Sums of reals have an order. Integers are measured in whole blocks: samples that are missing there differ by 0.
template <class T, int32_t TYPE>
static void ownMeasure(const uint8_t* a, const uint8_t* b, ptrdiff_t n, OwnNormTotal& total)
{
    constexpr bool isReal = std::is_floating_point<T>::value || (sizeof(T) == 4 && TYPE == PXK_NORM_L2);
    constexpr bool readsZeros = sizeof(T) == 1 && TYPE != PXK_NORM_INF;
    static const uint8_t zeros[readsZeros ? ownNormBytes : 1] = {};
    if (readsZeros && b == nullptr) b = zeros;
    const T *const first = reinterpret_cast<const T*>(a), *const second = reinterpret_cast<const T*>(b);
    if constexpr (isReal) {
        if (second != nullptr) return ownMeasureRows<T, TYPE>(first, second, n, total);
        ownMeasureRows<T, TYPE>(first, OwnZeroRow<T> {}, n, total);
    } else {
        uint8_t* const rows[2] = { const_cast<uint8_t*>(a), const_cast<uint8_t*>(b) };
        const auto pair = [&](const T* const* of, ptrdiff_t count) {
            ownMeasureRows<T, TYPE>(of[0], of[1], count, total);
        };
        if (readsZeros || b != nullptr) return ownRunBlocks<T, 2, 2>(rows, n, pair);
        if constexpr (!readsZeros) {
            ownRunBlocks<T, 1, 1>(rows, n, [&](const T* const* of, ptrdiff_t count) {
                ownMeasureRows<T, TYPE>(of[0], OwnZeroRow<T> {}, count, total);
            });
        }
    }
}

// Differences of bits are 0 or 1, and so are their squares.
template <int32_t TYPE> static void ownMeasureBits(const uint8_t* a, const uint8_t* b, ptrdiff_t n, OwnNormTotal& total)
{
    if (TYPE == PXK_NORM_INF && total.real == 1) return;
    const auto unlike = [=](ptrdiff_t i, size_t bytes) {
        return ownLoadWord(a + i, bytes) ^ ownLoadWord(b + i, bytes);
    };
    const uint64_t count = b != nullptr ? ownCountOnes(n, unlike) : ownCountOnes(a, n);
    if (TYPE == PXK_NORM_INF) return total.raise(count != 0 ? 1 : 0);
    total.add(count);
}

template <int32_t TYPE> static OwnNormRow ownRowOfType(int32_t depth)
{
    OwnNormRow row = ownMeasureBits<TYPE>;
    ownForDepth(depth, [&](auto tag) { row = ownMeasure<typename decltype(tag)::Sample, TYPE>; });
    return row;
}

OwnNormRow ownNormRow(int32_t depth, int32_t type)
{
    if (type == PXK_NORM_INF) return ownRowOfType<PXK_NORM_INF>(depth);
    return type == PXK_NORM_L1 ? ownRowOfType<PXK_NORM_L1>(depth) : ownRowOfType<PXK_NORM_L2>(depth);
}
