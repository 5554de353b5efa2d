// Noise in front of a reduction.
#include <cstdlib>

#include "ownreduce.h"

// How a sample of one depth is jittered towards another.
struct OwnJitterRule {
    int64_t guard; // samples from here on stay as they are
    int64_t lowBits;
    int64_t multiplier;
    int64_t bump;
    int32_t stepBits;
    int64_t largest;
};

// The bump of signed samples is one less than a step. Not to be repaired.
static constexpr OwnJitterRule ownJitter8U = { 240, 15, 17, 16, 4, 255 };
static constexpr OwnJitterRule ownJitter16U = { 65280, 255, 257, 256, 8, 65535 };
static constexpr OwnJitterRule ownJitter32STo16U = { 0x7FFF0000, 0xFFFF, 65537, 65535, 16, INT32_MAX };
static constexpr OwnJitterRule ownJitter32STo8U = { 0x7F000000, 0xFFFFFF, 16777217, 0xFFFFFF, 24, INT32_MAX };

void ownDrawNoise(OwnNoise& noise, int32_t jitterType)
{
    noise.amount = jitterType;
    for (uint16_t& number : noise.table) number = static_cast<uint16_t>(rand() & 1023);
    for (uint16_t& number : noise.shuffle) number = static_cast<uint16_t>(rand() & 1023);
}

// The two numbers for a sample: `shift` is for its displacement, `round` decides whether it is bumped.
struct OwnDraw {
    int64_t shift;
    int64_t round;
};

static OwnDraw ownDrawAt(const OwnNoise& noise, uint32_t x, uint32_t y)
{
    return { noise.table[(y + noise.shuffle[y & 1023] + 4 * x) & 1023],
             noise.table[(x + noise.shuffle[x & 1023] + 4 * y) & 1023] };
}

static int64_t ownJittered(int64_t sample, const OwnDraw& draw, int64_t amount, const OwnJitterRule& rule)
{
    if (sample >= rule.guard) return sample;
    const int64_t shift = (((2 * amount * draw.shift + 512) >> 10) - amount) * (INT64_C(1) << rule.stepBits);
    if ((sample & rule.lowBits) <= (draw.round * rule.multiplier) >> 10) sample += rule.bump;
    const int64_t moved = sample + shift;
    return moved >= 0 && moved <= rule.largest ? moved : sample;
}

// Towards one bit the rule is one of fractions with 10 binary places, which 64-bit integers in units of 1 / 1024 hold
// exactly. The result is only asked whether it is at least 1, so 1 and 0 stand for it.
static int32_t ownJitteredToBit(int64_t sample, const OwnDraw& draw, int64_t amount)
{
    constexpr int64_t one = 1024;
    constexpr int64_t largest = INT32_MAX;
    const int64_t shift = (2 * amount * draw.shift + one / 2 - amount * one) * largest;
    if (draw.round * largest >= sample * one) sample += largest;
    const int64_t moved = sample * one + shift;
    const bool isInside = moved >= INT32_MIN * one && moved <= largest * one;
    return (isInside ? moved : sample * one) >= one ? 1 : 0;
}

template <class T>
static void ownJitterBy(const OwnNoise& noise, T* samples, ptrdiff_t n, uint32_t x, uint32_t y,
                        const OwnJitterRule& rule)
{
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnDraw draw = ownDrawAt(noise, x + static_cast<uint32_t>(i), y);
        samples[i] = static_cast<T>(ownJittered(samples[i], draw, noise.amount, rule));
    }
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
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnDraw draw = ownDrawAt(noise, x + static_cast<uint32_t>(i), y);
        samples[i] = ownJitteredToBit(samples[i], draw, noise.amount);
    }
}
