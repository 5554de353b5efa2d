#include "ownnormrows.h"

#include <cmath>
#include <cstring>
#include <type_traits>

#include "frame/ownbitcount.h"
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

template <class T> static OwnUnsigned<T> ownLargest(const T* a, const T* b, ptrdiff_t n)
{
    OwnUnsigned<T> largest = 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnUnsigned<T> distance = ownDistance(a[i], b[i]);
        largest = distance > largest ? distance : largest;
    }
    return largest;
}

// Bytes counted from the lowest sample, in the one form in which compilers know the sum of absolute differences.
template <class T> static uint32_t ownByteSum(const T* a, const T* b, ptrdiff_t n)
{
    constexpr uint8_t signBit = std::is_signed<T>::value ? 0x80 : 0;
    uint32_t sum = 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        const uint8_t fromLowestA = static_cast<uint8_t>(static_cast<uint8_t>(a[i]) ^ signBit);
        const uint8_t fromLowestB = static_cast<uint8_t>(static_cast<uint8_t>(b[i]) ^ signBit);
        const int32_t difference = fromLowestA - fromLowestB;
        sum += static_cast<uint32_t>(difference < 0 ? -difference : difference);
    }
    return sum;
}

// 16-bit samples add up within 32 bits in a block, 32-bit ones in 64.
template <class T> static uint64_t ownSum(const T* a, const T* b, ptrdiff_t n)
{
    if constexpr (sizeof(T) == 1) {
        return ownByteSum(a, b, n);
    } else {
        std::conditional_t<sizeof(T) == 2, uint32_t, uint64_t> sum = 0;
        for (ptrdiff_t i = 0; i < n; ++i) sum += ownDistance(a[i], b[i]);
        return sum;
    }
}

// Squares of bytes add up within 31 bits in a block; those of 16-bit distances fit 32 bits.
template <class T> static uint64_t ownSquares(const T* a, const T* b, ptrdiff_t n)
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
            const uint32_t distance = ownDistance(a[i], b[i]);
            sum += distance * distance;
        }
        return sum;
    }
}

// ---- the rows by depth and type
// --------------------------------------------------------------------------------------

template <class T> inline double ownRealDistance(const T* a, const T* b, ptrdiff_t i)
{
    return std::fabs(static_cast<double>(a[i]) - static_cast<double>(b[i]));
}

template <class T, int32_t TYPE>
static void ownMeasure(const uint8_t* rowA, const uint8_t* rowB, ptrdiff_t n, OwnNormTotal& total)
{
    const T* const a = reinterpret_cast<const T*>(rowA);
    const T* const b = reinterpret_cast<const T*>(rowB);
    if constexpr (TYPE == PXK_NORM_L2 && sizeof(T) == 4) {
        const auto square = [=](ptrdiff_t i) {
            const double distance = ownRealDistance(a, b, i);
            return distance * distance;
        };
        total.add(ownJoinTerms(n, square, OwnAddReal {}));
    } else if constexpr (std::is_floating_point<T>::value) {
        const auto distance = [=](ptrdiff_t i) { return ownRealDistance(a, b, i); };
        if constexpr (TYPE == PXK_NORM_INF) total.raise(ownJoinTerms(n, distance, OwnLargerReal {}));
        if constexpr (TYPE == PXK_NORM_L1) total.add(ownJoinTerms(n, distance, OwnAddReal {}));
    } else {
        if constexpr (TYPE == PXK_NORM_INF) total.raise(ownLargest(a, b, n));
        if constexpr (TYPE == PXK_NORM_L1) total.add(ownSum(a, b, n));
        if constexpr (TYPE == PXK_NORM_L2) total.add(ownSquares(a, b, n));
    }
}

static void ownBitsDiffer(const uint8_t* a, const uint8_t* b, ptrdiff_t n, OwnNormTotal& total)
{
    if (total.real == 0) total.raise(memcmp(a, b, static_cast<size_t>(n)) != 0 ? 1 : 0);
}

static void ownAddUnlikeBits(const uint8_t* a, const uint8_t* b, ptrdiff_t n, OwnNormTotal& total)
{
    total.add(ownCountOnes(
        n, [=](ptrdiff_t i, size_t bytes) { return ownLoadWord(a + i, bytes) ^ ownLoadWord(b + i, bytes); }));
}

OwnNormRow ownNormRow(int32_t depth, int32_t type)
{
    OwnNormRow row = type == PXK_NORM_INF ? ownBitsDiffer : ownAddUnlikeBits;
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        row = type == PXK_NORM_INF ? ownMeasure<T, PXK_NORM_INF>
            : type == PXK_NORM_L1  ? ownMeasure<T, PXK_NORM_L1>
                                   : ownMeasure<T, PXK_NORM_L2>;
    });
    return row;
}
