/* SPDX-License-Identifier: BSD-2-Clause */
// Weighted sums of bytes in lanes of 16 bits, twice as many of which fit a vector as of 32.
#pragma once

#include <cstdint>
#include <initializer_list>

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
    constexpr OwnSplitWeights parts = ownSplitWeights({ { FIRST, SECOND, THIRD }, CONSTANT, SHIFT }, { LOW, HIGH });
    static_assert(parts.low.shift != 0, "no split of these weights fits 16 bits");
    constexpr OwnWeights whole = parts.whole, high = parts.high, low = parts.low;
    const auto sum = [=](const OwnWeights& w) { return w.of[0] * a + w.of[1] * b + w.of[2] * c + w.constant; };
    const int16_t carry = static_cast<int16_t>(static_cast<int16_t>(sum(low)) >> low.shift);
    const int16_t rest = static_cast<int16_t>(static_cast<int16_t>(sum(high) + carry) >> high.shift);
    return static_cast<int16_t>(sum(whole) + rest);
}
