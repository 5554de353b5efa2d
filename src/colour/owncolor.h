// Colour models: what a model is to the frame of the conversions, and what its formulas are written with.
#pragma once

#include <algorithm>
#include <limits>
#include <type_traits>

#include "frame/ownivdep.h"
#include "pxk/pxk.h"

// ---- models --------------------------------------------------------------------------------------------------------

// Converts n pixels: three rows of one channel each, then the three rows of the result, which may be the same ones.
using OwnColourRow = void (*)(uint8_t* const* rows, ptrdiff_t n);

// The rows of one direction. Null: the depth is not taken.
struct OwnColourRows {
    OwnColourRow of8U;
    OwnColourRow of16U;
    OwnColourRow of32S;
    OwnColourRow of32F;
};

struct OwnColourModel {
    const char* word; // in colorModel and channelSeq; three letters
    const char* depthFault;
    OwnColourRows fromRgb;
    OwnColourRows toRgb;
};

extern const OwnColourModel ownHlsModel;
extern const OwnColourModel ownHsvModel;
extern const OwnColourModel ownLuvModel;
extern const OwnColourModel ownXyzModel;
extern const OwnColourModel ownYccModel;
extern const OwnColourModel ownYcrcbModel;
extern const OwnColourModel ownYuvModel;

// ---- formulas ------------------------------------------------------------------------------------------------------

template <class T> struct OwnColour {
    T first;
    T second;
    T third;
};

// The row of a formula: an object whose call turns the three samples of a pixel into three others.
template <class T, class Formula> void ownColourRow(uint8_t* const* rows, ptrdiff_t n)
{
    const T* const first = reinterpret_cast<const T*>(rows[0]);
    const T* const second = reinterpret_cast<const T*>(rows[1]);
    const T* const third = reinterpret_cast<const T*>(rows[2]);
    T* const firstResult = reinterpret_cast<T*>(rows[3]);
    T* const secondResult = reinterpret_cast<T*>(rows[4]);
    T* const thirdResult = reinterpret_cast<T*>(rows[5]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnColour<T> result = Formula {}(first[i], second[i], third[i]);
        firstResult[i] = result.first;
        secondResult[i] = result.second;
        thirdResult[i] = result.third;
    }
}

template <class T, class Formula, class = void> struct OwnTakes : std::false_type {
};
template <class T, class Formula>
struct OwnTakes<T, Formula, std::void_t<decltype(Formula {}(T {}, T {}, T {}))>>
    : std::is_same<decltype(Formula {}(T {}, T {}, T {})), OwnColour<T>> {
};

template <class T, class Formula> constexpr OwnColourRow ownColourRowOrNull()
{
    if constexpr (OwnTakes<T, Formula>::value) {
        return ownColourRow<T, Formula>;
    } else {
        return nullptr;
    }
}

// The rows of a formula that takes some depths: its call is overloaded for their sample types.
template <class Formula> constexpr OwnColourRows ownColourRows()
{
    return { ownColourRowOrNull<uint8_t, Formula>(), ownColourRowOrNull<uint16_t, Formula>(),
             ownColourRowOrNull<int32_t, Formula>(), ownColourRowOrNull<float, Formula>() };
}

template <class T> constexpr T ownTop = std::numeric_limits<T>::max();

// A double as a sample of 32 bits: limited, then truncated toward zero. A NaN counts as the lower limit.
inline int32_t ownTruncate(double value, double low)
{
    const double above = value > low ? value : low;
    return static_cast<int32_t>(above < 2147483647.0 ? above : 2147483647.0);
}

inline int32_t ownTruncateSigned(double value)
{
    return ownTruncate(value, -2147483648.0);
}

inline int32_t ownTruncatePositive(double value)
{
    return ownTruncate(value, 0.0);
}

// The depths that most models take.
constexpr char ownDepthFault32F[] = "Error input depth. 32F, 32S ,16U,8U are valid now";
constexpr char ownDepthFault32S[] = "Error input depth. 32S,16U,8U are valid now";

inline float ownNotNegative(float value)
{
    return value < 0.0f ? 0.0f : value;
}

// The high half of a product: with factors scaled by powers of two, a product and its shift in lanes of 16 bits.
inline uint16_t ownHigh16(uint16_t a, uint16_t b)
{
    return static_cast<uint16_t>(static_cast<uint32_t>(a) * b >> 16);
}

inline uint8_t ownLimitByte(int16_t value)
{
    const int16_t above = value > 0 ? value : int16_t(0);
    return static_cast<uint8_t>(above < 255 ? above : int16_t(255));
}

inline uint16_t ownLimitWord(int32_t value)
{
    const int32_t above = value > 0 ? value : 0;
    return static_cast<uint16_t>(above < 65535 ? above : 65535);
}

// ---- sums of bytes in 16-bit lanes ---------------------------------------------------------------------------------

struct OwnInterval {
    int32_t low;
    int32_t high;
};

// Weights of three samples, a constant, and the shift to the right that follows the sum.
struct OwnWeights {
    int32_t of[3];
    int32_t constant;
    int32_t shift;

    constexpr OwnInterval sumOf(OwnInterval samples) const
    {
        OwnInterval sum = { constant, constant };
        for (const int32_t weight : of) {
            sum.low += weight * (weight < 0 ? samples.high : samples.low);
            sum.high += weight * (weight < 0 ? samples.low : samples.high);
        }
        return sum;
    }
};

// A sum of up to 26 bits, whose value after the shift is small, in parts that fit 16 bits: every weight is
// whole * 2^shift + high * 2^split + low, so that floor(sum / 2^shift) is, exactly,
// whole part + ((high part + (low part >> split)) >> (shift - split)).
struct OwnSplitWeights {
    OwnWeights whole;
    OwnWeights high; // its shift is the one that is left
    OwnWeights low;  // its shift is the split; 0: no split fits
};

constexpr bool ownFits16(int32_t value)
{
    return value >= INT16_MIN && value <= INT16_MAX;
}

constexpr OwnSplitWeights ownSplitAt(const OwnWeights& weights, int32_t split, bool takesWhole)
{
    const auto multiple = [](int32_t value, int32_t shift) { return (value + (1 << shift >> 1)) >> shift; };
    OwnSplitWeights parts = { {}, { {}, 0, weights.shift - split }, { {}, 0, split } };
    for (int32_t k = 0; k < 3; ++k) {
        parts.whole.of[k] = takesWhole ? multiple(weights.of[k], weights.shift) : 0;
        const int32_t rest = weights.of[k] - parts.whole.of[k] * (1 << weights.shift);
        parts.high.of[k] = multiple(rest, split);
        parts.low.of[k] = rest - parts.high.of[k] * (1 << split);
    }
    parts.high.constant = multiple(weights.constant, split);
    parts.low.constant = weights.constant - parts.high.constant * (1 << split);
    return parts;
}

// The split with the fewest products, for samples of an interval.
constexpr OwnSplitWeights ownSplitWeights(const OwnWeights& weights, OwnInterval samples)
{
    for (const bool takesWhole : { false, true }) {
        for (int32_t split = weights.shift - 1; split > 0; --split) {
            const OwnSplitWeights parts = ownSplitAt(weights, split, takesWhole);
            const OwnInterval low = parts.low.sumOf(samples);
            const OwnInterval high = parts.high.sumOf(samples);
            const OwnInterval sum = { high.low + (low.low >> split), high.high + (low.high >> split) };
            if (ownFits16(low.low) && ownFits16(low.high) && ownFits16(sum.low) && ownFits16(sum.high)) return parts;
        }
    }
    return {};
}

// floor((FIRST a + SECOND b + THIRD c + CONSTANT) / 2^SHIFT) for a, b and c from LOW to HIGH.
template <int32_t FIRST, int32_t SECOND, int32_t THIRD, int32_t CONSTANT, int32_t SHIFT, int32_t LOW = 0,
          int32_t HIGH = 255>
inline int16_t ownByteSum(int16_t a, int16_t b, int16_t c)
{
    constexpr OwnSplitWeights parts =
        ownSplitWeights({ { FIRST, SECOND, THIRD }, CONSTANT, SHIFT }, { LOW, HIGH });
    static_assert(parts.low.shift != 0, "no split of these weights fits 16 bits");
    constexpr OwnWeights whole = parts.whole, high = parts.high, low = parts.low;
    const auto sum = [=](const OwnWeights& w) { return w.of[0] * a + w.of[1] * b + w.of[2] * c + w.constant; };
    const int16_t carry = static_cast<int16_t>(static_cast<int16_t>(sum(low)) >> low.shift);
    const int16_t rest = static_cast<int16_t>(static_cast<int16_t>(sum(high) + carry) >> high.shift);
    return static_cast<int16_t>(sum(whole) + rest);
}
