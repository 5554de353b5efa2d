// SPDX-License-Identifier: BSD-2-Clause
#include "ownsquare.h"

#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "frame/owndepth.h"
#include "frame/ownlimit.h"

// ---- choice --------------------------------------------------------------------------------------------------------

struct OwnReachedSum {
    int32_t low;
    int32_t high;
    bool isIn(int32_t lowest, int32_t highest) const { return low >= lowest && high <= highest; }
};

static OwnReachedSum ownReachedSum(const int32_t* values, int32_t count, OwnRange samples)
{
    OwnReachedSum sum = {};
    for (int32_t k = 0; k < count; ++k) {
        sum.high += values[k] * (values[k] > 0 ? samples.high : samples.low);
        sum.low += values[k] * (values[k] > 0 ? samples.low : samples.high);
    }
    return sum;
}

// Taps of the first half; the others are one more.
static constexpr int32_t ownHalf(int32_t side)
{
    return side * side / 2;
}

// Sums of 16-bit samples fit 32 bits here; integers up to 2^24 are exact in single precision, whatever their order.
static OwnSquareSums ownChooseWideSums(const OwnSquare& square)
{
    int64_t total = 0;
    for (int32_t k = 0; k < square.side * square.side; ++k) total += std::abs(static_cast<int64_t>(square.values[k]));
    return total * UINT16_MAX <= 1 << 24 ? OwnSquareSums::SINGLE : OwnSquareSums::SIGNED32;
}

OwnSquareSums ownChooseSquareSums(const OwnSquare& square, int32_t depth)
{
    if (ownDepthBits(depth) == 16) return ownChooseWideSums(square);
    if (square.shift > 15) return OwnSquareSums::NONE;
    const int32_t count = square.side * square.side;
    const int32_t half = ownHalf(square.side);
    for (int32_t k = 0; k < count; ++k) {
        if (square.values[k] < INT16_MIN || square.values[k] > INT16_MAX) return OwnSquareSums::NONE;
    }
    const OwnRange samples = ownDepthRange(depth);
    const OwnReachedSum one = ownReachedSum(square.values, half, samples);
    const OwnReachedSum two = ownReachedSum(square.values + half, count - half, samples);
    const OwnReachedSum all = { one.low + two.low, one.high + two.high };
    if (all.isIn(INT16_MIN, INT16_MAX)) return OwnSquareSums::SIGNED16;
    if (all.isIn(0, UINT16_MAX)) return OwnSquareSums::UNSIGNED16;
    if (square.shift < 1) return OwnSquareSums::NONE;
    if (one.isIn(0, UINT16_MAX) && two.isIn(0, UINT16_MAX)) return OwnSquareSums::UNSIGNED_HALVES;
    const bool isHalved = one.isIn(INT16_MIN, INT16_MAX) && two.isIn(INT16_MIN, INT16_MAX);
    return isHalved ? OwnSquareSums::SIGNED_HALVES : OwnSquareSums::NONE;
}

// What sums are formed in: integers modulo their width.
template <class Sum> struct OwnSquareWords {
    using Type = std::make_unsigned_t<Sum>;
};
template <> struct OwnSquareWords<float> {
    using Type = float;
};
template <class Sum> using OwnSquareWord = typename OwnSquareWords<Sum>::Type;

// Words of 16 bits would be multiplied as signed integers, beyond which a product may lie.
template <class Word> static inline Word ownTimes(Word a, Word b)
{
    if constexpr (sizeof(Word) == 2) {
        return static_cast<Word>(uint32_t { a } * b);
    } else {
        return a * b;
    }
}

// ---- rows ----------------------------------------------------------------------------------------------------------

// Samples that are summed side by side: two of 8 bits are the halves of a word, which are taken apart and joined again
// where they lie; wider ones are single.
template <class T> constexpr int32_t ownSideBySide = sizeof(T) == 1 ? 2 : 1;

// The lower half of a word is its first sample where bytes are in ascending order.
template <class T, class Word> static inline void ownTakeSamples(const T* from, Word (&samples)[2])
{
    constexpr bool isLowFirst = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
    uint16_t pair;
    memcpy(&pair, from, sizeof pair);
    const uint16_t moved = static_cast<uint16_t>(pair << 8);
    const Word low = static_cast<Word>(std::is_signed<T>::value ? static_cast<int16_t>(moved) >> 8 : pair & 0xFF);
    const Word high = static_cast<Word>(std::is_signed<T>::value ? static_cast<int16_t>(pair) >> 8 : pair >> 8);
    samples[0] = isLowFirst ? low : high;
    samples[1] = isLowFirst ? high : low;
}

template <class T> static inline void ownStoreSamples(const T (&samples)[2], T* to)
{
    constexpr bool isLowFirst = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
    const uint16_t low = static_cast<uint16_t>(samples[isLowFirst ? 0 : 1] & 0xFF);
    const uint16_t high = static_cast<uint16_t>(samples[isLowFirst ? 1 : 0]);
    const uint16_t pair = static_cast<uint16_t>(low | high << 8);
    memcpy(to, &pair, sizeof pair);
}

template <class T, class Word> static inline void ownTakeSamples(const T* from, Word (&samples)[1])
{
    samples[0] = static_cast<Word>(*from);
}

template <class T> static inline void ownStoreSamples(const T (&samples)[1], T* to)
{
    *to = samples[0];
}

// Sums in 16 bits of 8-bit samples, in 32 bits of 16-bit ones, or in single precision where that holds them exactly,
// which is quicker than 32-bit products. Each sample is widened once for all ROWS output rows.
template <int32_t K, int32_t ROWS, class T, class Sum, bool IS_HALVED>
static void ownSquareRows(const OwnBand& band, int32_t y, const OwnSquare& square)
{
    using Word = OwnSquareWord<Sum>;
    constexpr int32_t SIDE = ownSideBySide<T>;
    const T* s[K + ROWS - 1];
    T* d[ROWS];
    Word c[K * K];
    for (int32_t r = 0; r < K + ROWS - 1; ++r) s[r] = reinterpret_cast<const T*>(band.rows[y + r]);
    for (int32_t r = 0; r < ROWS; ++r) d[r] = reinterpret_cast<T*>(band.out[y + r]);
    for (int32_t k = 0; k < K * K; ++k) c[k] = static_cast<Word>(square.values[k]);
    // The visible range lets the compiler shift in the width of Sum.
    const int32_t shift = (IS_HALVED ? square.shift - 1 : square.shift) & (sizeof(Sum) == 2 ? 15 : 31);
    const ptrdiff_t step = band.step;
    ownInBlocks<ownBlockOf<T>, SIDE>(band.width, [&](ptrdiff_t i) {
        Word one[ROWS][SIDE] = {};
        Word two[ROWS][SIDE] = {};
#pragma GCC unroll 16
        for (int32_t row = 0; row < K + ROWS - 1; ++row) {
#pragma GCC unroll 16
            for (int32_t x = 0; x < K; ++x) {
                Word samples[SIDE];
                ownTakeSamples(s[row] + i + x * step, samples);
#pragma GCC unroll 16
                for (int32_t r = 0; r < ROWS; ++r) {
                    const int32_t tap = (row - r) * K + x;
                    if (row < r || row - r >= K) continue;
                    Word(&sum)[SIDE] = IS_HALVED && tap >= ownHalf(K) ? two[r] : one[r];
#pragma GCC unroll 2
                    for (int32_t k = 0; k < SIDE; ++k) {
                        sum[k] = static_cast<Word>(sum[k] + ownTimes(c[tap], samples[k]));
                    }
                }
            }
        }
#pragma GCC unroll 16
        for (int32_t r = 0; r < ROWS; ++r) {
            T results[SIDE];
#pragma GCC unroll 2
            for (int32_t k = 0; k < SIDE; ++k) {
                if constexpr (IS_HALVED) {
                    const Sum a = static_cast<Sum>(one[r][k]);
                    const Sum b = static_cast<Sum>(two[r][k]);
                    const Sum mean = static_cast<Sum>((a & b) + (static_cast<Sum>(a ^ b) >> 1));
                    results[k] = ownLimitInteger<T>(static_cast<Sum>(mean >> shift));
                } else {
                    using Integer = std::conditional_t<std::is_floating_point<Sum>::value, int32_t, Sum>;
                    results[k] = ownLimitInteger<T>(static_cast<Integer>(static_cast<Integer>(one[r][k]) >> shift));
                }
            }
            ownStoreSamples(results, d[r] + i);
        }
    });
}

// Batches of nine taps are summed by themselves, as larger kernels do.
template <int32_t K, int32_t ROWS> static void ownSquareRowsFP(const OwnBand& band, int32_t y, const OwnSquare& square)
{
    const float* s[K + ROWS - 1];
    float* d[ROWS];
    float c[K * K];
    for (int32_t r = 0; r < K + ROWS - 1; ++r) s[r] = reinterpret_cast<const float*>(band.rows[y + r]);
    for (int32_t r = 0; r < ROWS; ++r) d[r] = reinterpret_cast<float*>(band.out[y + r]);
    for (int32_t k = 0; k < K * K; ++k) c[k] = square.valuesFP[k];
    const ptrdiff_t step = band.step;
    ownInBlocks<ownBlockOf<float>>(band.width, [&](ptrdiff_t i) {
        float sum[ROWS] = {};
        float batch[ROWS] = {};
#pragma GCC unroll 16
        for (int32_t row = 0; row < K + ROWS - 1; ++row) {
#pragma GCC unroll 16
            for (int32_t x = 0; x < K; ++x) {
                const float sample = s[row][i + x * step];
#pragma GCC unroll 16
                for (int32_t r = 0; r < ROWS; ++r) {
                    const int32_t tap = (row - r) * K + x;
                    if (row < r || row - r >= K) continue;
                    const float product = c[tap] * sample;
                    batch[r] = tap % 9 == 0 ? product : batch[r] + product;
                    if (tap % 9 == 8 || tap == K * K - 1) sum[r] = tap < 9 ? batch[r] : sum[r] + batch[r];
                }
            }
        }
#pragma GCC unroll 16
        for (int32_t r = 0; r < ROWS; ++r) d[r][i] = ownOneNaN(sum[r]);
    });
}

// ---- bands ---------------------------------------------------------------------------------------------------------

template <int32_t ROWS, class Many, class One>
static void ownForRowGroups(const OwnBand& band, const Many& many, const One& one)
{
    int32_t y = 0;
    for (; y <= band.height - ROWS; y += ROWS) many(y);
    for (; y < band.height; ++y) one(y);
}

template <int32_t K, class T, class Sum, bool IS_HALVED>
static void ownSquareOf(const OwnBand& band, const OwnSquare& square)
{
    constexpr int32_t ROWS = K == 5 && (IS_HALVED || sizeof(Sum) == 4) ? 2 : 4; // what the registers hold
    ownForRowGroups<ROWS>(
        band, [&](int32_t y) { ownSquareRows<K, ROWS, T, Sum, IS_HALVED>(band, y, square); },
        [&](int32_t y) { ownSquareRows<K, 1, T, Sum, IS_HALVED>(band, y, square); });
}

template <int32_t K> static void ownSquareOfFP(const OwnBand& band, const OwnSquare& square)
{
    constexpr int32_t ROWS = K == 3 ? 4 : 3; // what the registers hold
    ownForRowGroups<ROWS>(
        band, [&](int32_t y) { ownSquareRowsFP<K, ROWS>(band, y, square); },
        [&](int32_t y) { ownSquareRowsFP<K, 1>(band, y, square); });
}

template <int32_t K, class T> static void ownSquareOfSums(const OwnBand& band, const OwnSquare& square)
{
    if constexpr (std::is_floating_point<T>::value) {
        ownSquareOfFP<K>(band, square);
    } else if constexpr (sizeof(T) == 2) {
        if (square.sums == OwnSquareSums::SINGLE) return ownSquareOf<K, T, float, false>(band, square);
        ownSquareOf<K, T, int32_t, false>(band, square);
    } else if constexpr (sizeof(T) == 1) {
        if constexpr (std::is_unsigned<T>::value) { // sums of signed samples are that, unless all of them are 0
            if (square.sums == OwnSquareSums::UNSIGNED16) return ownSquareOf<K, T, uint16_t, false>(band, square);
            if (square.sums == OwnSquareSums::UNSIGNED_HALVES) return ownSquareOf<K, T, uint16_t, true>(band, square);
        }
        if (square.sums == OwnSquareSums::SIGNED16) return ownSquareOf<K, T, int16_t, false>(band, square);
        ownSquareOf<K, T, int16_t, true>(band, square);
    }
}

void ownSquareBand(const OwnBand& band, const OwnSquare& square, int32_t depth)
{
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        square.side == 3 ? ownSquareOfSums<3, T>(band, square) : ownSquareOfSums<5, T>(band, square);
    });
}
