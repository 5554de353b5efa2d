// SPDX-License-Identifier: BSD-2-Clause
// Noise in front of a reduction.
#include <cstdlib>

#include "frame/ownivdep.h"
#include "ownreduc.h"

// How a sample of one depth is jittered towards another. Products with 32S samples need 64 bits.
template <class Wide> struct OwnJitterRule {
    Wide guard; // samples from here on stay as they are
    Wide lowBits;
    Wide multiplier;
    Wide bump;
    int32_t stepBits;
    Wide largest;
};

// The bump of signed samples is one less than a step. Not to be repaired.
static constexpr OwnJitterRule<int32_t> ownJitter8U = { 240, 15, 17, 16, 4, 255 };
static constexpr OwnJitterRule<int32_t> ownJitter16U = { 65280, 255, 257, 256, 8, 65535 };
static constexpr OwnJitterRule<int64_t> ownJitter32STo16U = { 0x7FFF0000, 0xFFFF, 65537, 65535, 16, INT32_MAX };
static constexpr OwnJitterRule<int64_t> ownJitter32STo8U = { 0x7F000000, 0xFFFFFF, 16777217, 0xFFFFFF, 24, INT32_MAX };

void ownDrawNoise(OwnNoise& noise, int32_t jitterType)
{
    noise.amount = jitterType;
    for (uint16_t& number : noise.table) number = static_cast<uint16_t>(rand() & 1023);
    for (uint16_t& number : noise.shuffle) number = static_cast<uint16_t>(rand() & 1023);
}

// The two numbers for a sample: `shift` is for its displacement, `round` decides whether it is bumped.
struct OwnDraw {
    int32_t shift;
    int32_t round;
};

// The numbers of neighbours in a row, looked up in front of the arithmetic, which then runs in vectors.
struct OwnDraws {
    static constexpr ptrdiff_t most = 64;
    uint16_t shift[most];
    uint16_t round[most];

    void look(const OwnNoise& noise, uint32_t x, uint32_t y, ptrdiff_t n)
    {
        const uint32_t start = y + noise.shuffle[y & 1023];
        for (ptrdiff_t i = 0; i < n; ++i, ++x) {
            shift[i] = noise.table[(start + 4 * x) & 1023];
            round[i] = noise.table[(x + noise.shuffle[x & 1023] + 4 * y) & 1023];
        }
    }
    OwnDraw operator[](ptrdiff_t i) const { return { shift[i], round[i] }; }
};

template <class Wide>
static Wide ownJittered(Wide sample, const OwnDraw& draw, int32_t amount, const OwnJitterRule<Wide>& rule)
{
    const Wide steps = ((2 * amount * draw.shift + 512) >> 10) - amount;
    const bool isBumped = (sample & rule.lowBits) <= (draw.round * rule.multiplier) >> 10;
    const Wide bumped = sample + (isBumped ? rule.bump : 0);
    const Wide moved = bumped + steps * (Wide(1) << rule.stepBits);
    const Wide result = moved >= 0 && moved <= rule.largest ? moved : bumped;
    return sample >= rule.guard ? sample : result;
}

// Towards one bit the rule is one of fractions with 10 binary places, which 64-bit integers in units of 1 / 1024 hold
// exactly. The result is only asked whether it is at least 1, so 1 and 0 stand for it.
static int32_t ownJitteredToBit(int64_t sample, const OwnDraw& draw, int32_t amount)
{
    constexpr int64_t one = 1024;
    constexpr int64_t largest = INT32_MAX;
    const int64_t shift = (2 * amount * draw.shift + 512 - 1024 * amount) * largest;
    if (draw.round * largest >= sample * one) sample += largest;
    const int64_t moved = sample * one + shift;
    const bool isInside = moved >= INT32_MIN * one && moved <= largest * one;
    return (isInside ? moved : sample * one) >= one ? 1 : 0;
}

// Calls onSample(sample, draw, amount) for each sample of a row.
template <class T, class F>
static void ownJitterRow(const OwnNoise& noise, T* samples, ptrdiff_t n, uint32_t x, uint32_t y, F onSample)
{
    const int32_t amount = noise.amount;
    for (ptrdiff_t start = 0; start < n; start += OwnDraws::most) {
        const ptrdiff_t count = std::min(OwnDraws::most, n - start);
        T* const block = samples + start;
        OwnDraws draws;
        draws.look(noise, x + static_cast<uint32_t>(start), y, count);
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; ++i) block[i] = static_cast<T>(onSample(block[i], draws[i], amount));
    }
}

template <class T, class Wide>
static void ownJitterBy(const OwnNoise& noise, T* samples, ptrdiff_t n, uint32_t x, uint32_t y,
                        const OwnJitterRule<Wide>& rule)
{
    ownJitterRow(noise, samples, n, x, y, [rule](Wide sample, const OwnDraw& draw, int32_t amount) {
        return ownJittered(sample, draw, amount, rule);
    });
}

void ownJitter(const OwnNoise& noise, uint8_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, int32_t)
{
    ownJitterBy(noise, samples, n, x, y, ownJitter8U);
}

void ownJitter(const OwnNoise& noise, uint16_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, int32_t)
{
    ownJitterBy(noise, samples, n, x, y, ownJitter16U);
}

void ownJitter(const OwnNoise& noise, int32_t* samples, ptrdiff_t n, uint32_t x, uint32_t y, int32_t toDepth)
{
    if (toDepth == PXK_DEPTH_16U) return ownJitterBy(noise, samples, n, x, y, ownJitter32STo16U);
    if (toDepth == PXK_DEPTH_8U) return ownJitterBy(noise, samples, n, x, y, ownJitter32STo8U);
    ownJitterRow(noise, samples, n, x, y, ownJitteredToBit);
}
