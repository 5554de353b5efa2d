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

// Weights that the compiler is not to know: products with constants become shifts and sums, several of which cost more
// than one product.
class OwnHiddenWeights {
public:
    explicit OwnHiddenWeights(const OwnWeights& weights)
    {
        for (int32_t k = 0; k < 3; ++k) {
            const volatile int16_t hidden = static_cast<int16_t>(weights.of[k]);
            of_[k] = hidden;
        }
    }

    // The weighted sum, `known` being the same weights: those of 0 take no product.
    int16_t sum(const OwnWeights& known, int16_t a, int16_t b, int16_t c) const
    {
        int32_t sum = known.constant;
        if (known.of[0] != 0) sum += of_[0] * a;
        if (known.of[1] != 0) sum += of_[1] * b;
        if (known.of[2] != 0) sum += of_[2] * c;
        return static_cast<int16_t>(sum);
    }

private:
    int16_t of_[3];
};

// floor((FIRST a + SECOND b + THIRD c + CONSTANT) / 2^SHIFT) for a, b and c from LOW to HIGH. Made once a row.
template <int32_t FIRST, int32_t SECOND, int32_t THIRD, int32_t CONSTANT, int32_t SHIFT, int32_t LOW = 0,
          int32_t HIGH = 255>
class OwnByteSum {
public:
    int16_t operator()(int16_t a, int16_t b, int16_t c) const
    {
        const int16_t carry = static_cast<int16_t>(low_.sum(parts.low, a, b, c) >> parts.low.shift);
        const int16_t sum = static_cast<int16_t>(high_.sum(parts.high, a, b, c) + carry);
        return static_cast<int16_t>(whole_.sum(parts.whole, a, b, c) + (sum >> parts.high.shift));
    }

private:
    static constexpr OwnSplitWeights parts =
        ownSplitWeights({ { FIRST, SECOND, THIRD }, CONSTANT, SHIFT }, { LOW, HIGH });
    static_assert(parts.low.shift != 0, "no split of these weights fits 16 bits");
    OwnHiddenWeights whole_ { parts.whole };
    OwnHiddenWeights high_ { parts.high };
    OwnHiddenWeights low_ { parts.low };
};
