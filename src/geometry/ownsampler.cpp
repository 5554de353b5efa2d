#include "ownsampler.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "frame/ownivdep.h"
#include "frame/ownlimit.h"
#include "frame/ownsplit.h"

// ---- places of taps ------------------------------------------------------------------------------------------------

// The first of a pixel's taps, and how far the position lies behind the tap that weighs alone at 0: in 65536ths or, for
// 16-bit samples, in pixels.
template <class Part> struct OwnTaps {
    ptrdiff_t offset[ownMostRun]; // bytes from the view's first sample; one-bit: of the row alone
    int32_t column[ownMostRun];
    Part xPart[ownMostRun];
    Part yPart[ownMostRun];
};

constexpr int32_t ownTapsBefore(OwnInterpolation interpolation)
{
    return interpolation == OwnInterpolation::CUBIC ? 1 : 0;
}

constexpr int32_t ownTapsPerAxis(OwnInterpolation interpolation)
{
    return interpolation == OwnInterpolation::NEAREST ? 1 : interpolation == OwnInterpolation::LINEAR ? 2 : 4;
}

static inline int32_t ownHeld(int32_t value, int32_t low, int32_t high)
{
    const int32_t above = value > low ? value : low;
    return above < high ? above : high;
}

// Also for what is no number.
static inline double ownHeld(double value, double high)
{
    const double above = value > 0 ? value : 0;
    return above < high ? above : high;
}

// The pixels of one axis that may be read.
struct OwnExtent {
    int32_t first;
    int32_t count;
    int32_t last() const { return first + (count - 1); }
};

// First taps, counted from the axis' first pixel, and parts of positions that are held inside the axis.
template <OwnInterpolation I>
static void ownPlaceFixed(const int32_t* whole, const int32_t* part, int32_t n, OwnExtent axis, int32_t* taps,
                          int32_t* parts)
{
    constexpr int32_t before = ownTapsBefore(I), after = ownTapsPerAxis(I) - 1 - before;
    const int32_t first = axis.first, last = axis.last(), lastBase = axis.count - 1 - after;
    for (int32_t i = 0; i < n; ++i) {
        const int32_t held = ownHeld(whole[i], first, last) - first;
        const int32_t base = ownHeld(held, before, lastBase);
        taps[i] = base - before;
        if constexpr (I != OwnInterpolation::NEAREST) {
            const bool isBetween = whole[i] >= first && whole[i] < last;
            parts[i] = (held - base) * 65536 + (isBetween ? part[i] : 0);
        }
    }
}

template <OwnInterpolation I, class Part>
static void ownPlaceReal(const double* positions, int32_t n, OwnExtent axis, int32_t* taps, Part* parts)
{
    constexpr int32_t before = ownTapsBefore(I), after = ownTapsPerAxis(I) - 1 - before;
    const double first = axis.first, last = axis.count - 1;
    const int32_t lastBase = axis.count - 1 - after;
    for (int32_t i = 0; i < n; ++i) {
        const double position = ownHeld(positions[i] - first, last);
        if constexpr (std::is_floating_point<Part>::value) {
            constexpr double justBelow = 0.0000001; // positions so near below a pixel belong to it
            const int32_t base = ownHeld(static_cast<int32_t>(position + justBelow), before, lastBase);
            taps[i] = base - before;
            parts[i] = static_cast<Part>(position - base);
        } else {
            const int32_t whole = static_cast<int32_t>(position);
            const int32_t base = ownHeld(whole, before, lastBase);
            taps[i] = base - before;
            parts[i] = (whole - base) * 65536 + static_cast<int32_t>((position - whole) * 65536 + 0.5);
        }
    }
}

static void ownPlaceNearest(const double* positions, int32_t n, OwnExtent axis, OwnTies ties, int32_t* taps)
{
    const double first = axis.first, last = axis.count - 1;
    if (ties == OwnTies::EVEN) { // of the coordinates, wherever the axis starts
        for (int32_t i = 0; i < n; ++i) {
            taps[i] = ownRoundEven(ownHeld(positions[i] - first, last) + first) - axis.first;
        }
    } else {
        for (int32_t i = 0; i < n; ++i) taps[i] = static_cast<int32_t>(ownHeld(positions[i] - first + 0.5, last));
    }
}

// Rows and columns become bytes from the view's first sample.
template <class Part> static void ownOffsets(const OwnView& source, const int32_t* rows, int32_t n, OwnTaps<Part>& taps)
{
    const int32_t rowStep = static_cast<int32_t>(source.rowStep), pixelStep = static_cast<int32_t>(source.pixelStep);
    for (int32_t i = 0; i < n; ++i) {
        const int64_t row = static_cast<int64_t>(rows[i]) * rowStep;
        taps.offset[i] = static_cast<ptrdiff_t>(row + static_cast<int64_t>(taps.column[i]) * pixelStep);
    }
}

// ---- values between taps -------------------------------------------------------------------------------------------

// 8-bit samples: rows are interpolated to 6 fraction bits, then joined and rounded.
struct OwnLinear8 {
    using Part = int32_t;
    static int32_t row(const uint8_t* taps, int32_t part)
    {
        const int32_t first = taps[0] * 64, rise = taps[1] * 64 - first;
        return first + ((rise * part) >> 16);
    }
    static uint8_t join(const int32_t* rows, int32_t part)
    {
        return static_cast<uint8_t>((rows[0] + (((rows[1] - rows[0]) * part) >> 16) + 32) >> 6);
    }
};

// The cubic through four values at -1, 0, 1 and 2, in Newton's form on the places 0, 1, 2 and -1: exact at 0 and 1. All
// in 4 fraction bits. `sixth` stands for 1 / 6 times the values' factor to 4 fraction bits, as 2^18ths, and -2 sixth +
// rest for -2 / 6; so the two products share one, half of which is added where the whole would pass 31 bits: rows that
// overshoot make twists up to 26604.
static inline int32_t ownCubicOf(int32_t a, int32_t b, int32_t c, int32_t d, int32_t bits, int32_t sixth, int32_t rest,
                                 int32_t part)
{
    const int32_t bend = d - 2 * c + b;
    const int32_t twist = bend - (c - 2 * b + a);
    const int32_t scaled = sixth * twist;
    const int32_t third = ((rest * twist >> 1) - scaled) >> 17;
    const int32_t inner = (bend * (1 << bits) >> 1) + third + ((part * (scaled >> 18)) >> 16);
    const int32_t slope = (c - b) * (1 << bits) + (((part - 65536) * inner) >> 16);
    const int32_t value = b * (1 << bits) + ((part * slope) >> 16);
    const int32_t first = a * (1 << bits), last = d * (1 << bits);
    return part == -65536 ? first : part == 131072 ? last : value;
}

struct OwnCubic8 {
    using Part = int32_t;
    static int32_t row(const uint8_t* taps, int32_t part)
    {
        return ownCubicOf(taps[0], taps[1], taps[2], taps[3], 4, 699050, -1, part); // 16 / 6
    }
    static uint8_t join(const int32_t* rows, int32_t part)
    {
        const int32_t value = ownCubicOf(rows[0], rows[1], rows[2], rows[3], 0, 43691, 1, part);
        return ownLimitInteger<uint8_t>((value + 8) >> 4);
    }
};

// 16-bit samples in single precision, which is finer than a sample by eight bits.
struct OwnLinear16 {
    using Part = float;
    static float between(float first, float second, float part) { return first + (second - first) * part; }
    static float row(const uint16_t* taps, float part) { return between(taps[0], taps[1], part); }
    static uint16_t join(const float* rows, float part)
    {
        return ownLimitReal<uint16_t>(between(rows[0], rows[1], part));
    }
};

struct OwnCubic16 {
    using Part = float;
    static float between(float a, float b, float c, float d, float part)
    {
        const float bend = d - 2 * c + b;
        const float twist = bend - (c - 2 * b + a);
        const float inner = bend * 0.5f + (part - 2) * (twist * (1.0f / 6));
        return b + part * ((c - b) + (part - 1) * inner);
    }
    static float row(const uint16_t* taps, float part) { return between(taps[0], taps[1], taps[2], taps[3], part); }
    static uint16_t join(const float* rows, float part)
    {
        return ownLimitReal<uint16_t>(between(rows[0], rows[1], rows[2], rows[3], part));
    }
};

// Part is the type of a position's part, and of a row's value.
template <class T, OwnInterpolation I> struct OwnMethod;
template <> struct OwnMethod<uint8_t, OwnInterpolation::LINEAR> : OwnLinear8 {
};
template <> struct OwnMethod<uint8_t, OwnInterpolation::CUBIC> : OwnCubic8 {
};
template <> struct OwnMethod<uint16_t, OwnInterpolation::LINEAR> : OwnLinear16 {
};
template <> struct OwnMethod<uint16_t, OwnInterpolation::CUBIC> : OwnCubic16 {
};

// ---- row functions -------------------------------------------------------------------------------------------------

// Taps are brought together for this many pixels, then worked on in vectors.
constexpr int32_t ownTapBlock = 64;

// How far a sample of the size lies above the end of the word that its byte belongs to.
constexpr int32_t ownShiftOf(int32_t byte, int32_t size)
{
    return 8 * (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? byte % 4 : 4 - size - byte % 4);
}

// Taps of C adjacent channels, which are moved as words: those of a pixel in a row of the source fill `nWords`.
template <class T, OwnInterpolation I, int32_t C> struct OwnTapBlock {
    static constexpr int32_t K = ownTapsPerAxis(I);
    static constexpr int32_t size = sizeof(T);
    static constexpr int32_t rowBytes = K * C * size; // even
    static constexpr int32_t nWords = (rowBytes + 3) / 4;
    using Part = typename OwnMethod<T, I>::Part;

    uint32_t words[K][nWords][ownTapBlock];

    // Pixels of just C channels.
    void gather(const OwnView& source, const ptrdiff_t* offsets, int32_t n)
    {
        const uint8_t* const first = source.first;
        const ptrdiff_t rowStep = source.rowStep;
        for (int32_t i = 0; i < n; ++i) {
            const uint8_t* from = first + offsets[i];
            for (int32_t row = 0; row < K; ++row, from += rowStep) {
                for (int32_t w = 0; w < rowBytes / 4; ++w) memcpy(&words[row][w][i], from + 4 * w, 4);
                if constexpr (rowBytes % 4 != 0) {
                    uint16_t rest[2] = {};
                    memcpy(rest, from + rowBytes - 2, 2);
                    memcpy(&words[row][nWords - 1][i], rest, 4);
                }
            }
        }
    }

    // Any pixels.
    void gatherApart(const OwnView& source, const ptrdiff_t* offsets, int32_t n)
    {
        const uint8_t* const first = source.first;
        const ptrdiff_t rowStep = source.rowStep, pixelStep = source.pixelStep;
        for (int32_t i = 0; i < n; ++i) {
            for (int32_t row = 0; row < K; ++row) {
                const uint8_t* const from = first + offsets[i] + row * rowStep;
                T line[nWords * 4 / size];
                for (int32_t k = 0; k < K; ++k) memcpy(line + k * C, from + k * pixelStep, C * size);
                for (int32_t w = 0; w < nWords; ++w) memcpy(&words[row][w][i], line + w * 4 / size, 4);
            }
        }
    }

    template <int32_t CHANNEL> void interpolate(const Part* xPart, const Part* yPart, int32_t n, T* out) const
    {
        using Method = OwnMethod<T, I>;
        OWN_IVDEP
        for (int32_t i = 0; i < n; ++i) {
            Part rows[K];
            for (int32_t row = 0; row < K; ++row) {
                T taps[K];
                for (int32_t k = 0; k < K; ++k) {
                    const int32_t byte = (k * C + CHANNEL) * size;
                    taps[k] = static_cast<T>(words[row][byte / 4][i] >> ownShiftOf(byte, size));
                }
                rows[row] = Method::row(taps, xPart[i]);
            }
            out[i] = Method::join(rows, yPart[i]);
        }
    }
};

template <class T, OwnInterpolation I, int32_t C>
static void ownInterpolate(const OwnView& source, const OwnTaps<typename OwnMethod<T, I>::Part>& places, int32_t n,
                           T* out)
{
    OwnTapBlock<T, I, C> block;
    for (int32_t i = 0; i < n; i += ownTapBlock) {
        const int32_t count = std::min(ownTapBlock, n - i);
        if (source.pixelStep == static_cast<ptrdiff_t>(C * sizeof(T))) {
            block.gather(source, places.offset + i, count);
        } else {
            block.gatherApart(source, places.offset + i, count);
        }
        if constexpr (C == 1) {
            block.template interpolate<0>(places.xPart + i, places.yPart + i, count, out + i);
        } else {
            T samples[C][ownTapBlock];
            uint8_t* rows[C];
            for (int32_t c = 0; c < C; ++c) rows[c] = reinterpret_cast<uint8_t*>(samples[c]);
            block.template interpolate<0>(places.xPart + i, places.yPart + i, count, samples[0]);
            block.template interpolate<1>(places.xPart + i, places.yPart + i, count, samples[1]);
            block.template interpolate<2>(places.xPart + i, places.yPart + i, count, samples[2]);
            if constexpr (C > 3) block.template interpolate<3>(places.xPart + i, places.yPart + i, count, samples[3]);
            ownJoinPixels(rows, C, sizeof(T), reinterpret_cast<uint8_t*>(out + i * C), count);
        }
    }
}

template <class T, int32_t C>
static void ownCopyPixels(const OwnView& source, const OwnTaps<int32_t>& places, int32_t n, T* out)
{
    const uint8_t* const first = source.first;
    for (int32_t i = 0; i < n; ++i) memcpy(out + i * C, first + places.offset[i], C * sizeof(T));
}

static void ownCopyBits(const OwnView& source, const OwnTaps<int32_t>& places, int32_t n, uint8_t* out)
{
    for (int32_t i = 0; i < n; ++i) {
        const int32_t bit = source.bit + places.column[i];
        out[i] = static_cast<uint8_t>(source.first[places.offset[i] + (bit >> 3)] >> (7 - (bit & 7)) & 1);
    }
}

// ---- all channels --------------------------------------------------------------------------------------------------

template <class T, OwnInterpolation I, int32_t C, class Part>
static void ownSampleAdjacent(const OwnView& source, const OwnTaps<Part>& places, int32_t n, T* out)
{
    if constexpr (I == OwnInterpolation::NEAREST) {
        ownCopyPixels<T, C>(source, places, n, out);
    } else {
        ownInterpolate<T, I, C>(source, places, n, out);
    }
}

template <class T, OwnInterpolation I, class Part>
static void ownSampleChannels(const OwnView& source, const OwnTaps<Part>& places, int32_t n, uint8_t* to)
{
    T* const out = reinterpret_cast<T*>(to);
    switch (source.nChannels) {
    case 1: return ownSampleAdjacent<T, I, 1>(source, places, n, out);
    case 3: return ownSampleAdjacent<T, I, 3>(source, places, n, out);
    default: return ownSampleAdjacent<T, I, 4>(source, places, n, out);
    }
}

static void ownSampleNearest(const OwnView& source, const int32_t* rows, OwnTaps<int32_t>& places, int32_t n,
                             uint8_t* to)
{
    ownOffsets(source, rows, n, places);
    switch (source.sampleBytes) {
    case 0: return ownCopyBits(source, places, n, to);
    case 1: return ownSampleChannels<uint8_t, OwnInterpolation::NEAREST>(source, places, n, to);
    default: return ownSampleChannels<uint16_t, OwnInterpolation::NEAREST>(source, places, n, to);
    }
}

template <OwnInterpolation I>
static void ownSampleFixedBy(const OwnSampler& sampler, const OwnFixedRun& run, int32_t n, uint8_t* to)
{
    const OwnView& source = sampler.source;
    OwnTaps<int32_t> places;
    int32_t rows[ownMostRun];
    ownPlaceFixed<I>(run.x, run.xPart, n, { sampler.left, source.width }, places.column, places.xPart);
    ownPlaceFixed<I>(run.y, run.yPart, n, { sampler.top, source.height }, rows, places.yPart);
    if constexpr (I == OwnInterpolation::NEAREST) {
        ownSampleNearest(source, rows, places, n, to);
    } else {
        ownOffsets(source, rows, n, places);
        ownSampleChannels<uint8_t, I>(source, places, n, to);
    }
}

template <class T, OwnInterpolation I>
static void ownSampleRealBy(const OwnSampler& sampler, const OwnRealRun& run, int32_t n, uint8_t* to)
{
    const OwnView& source = sampler.source;
    OwnTaps<typename OwnMethod<T, I>::Part> places;
    int32_t rows[ownMostRun];
    ownPlaceReal<I>(run.x, n, { sampler.left, source.width }, places.column, places.xPart);
    ownPlaceReal<I>(run.y, n, { sampler.top, source.height }, rows, places.yPart);
    ownOffsets(source, rows, n, places);
    ownSampleChannels<T, I>(source, places, n, to);
}

void ownSampleFixed(const OwnSampler& sampler, const OwnFixedRun& run, int32_t n, uint8_t* to)
{
    switch (sampler.interpolation) {
    case OwnInterpolation::NEAREST: return ownSampleFixedBy<OwnInterpolation::NEAREST>(sampler, run, n, to);
    case OwnInterpolation::LINEAR: return ownSampleFixedBy<OwnInterpolation::LINEAR>(sampler, run, n, to);
    default: return ownSampleFixedBy<OwnInterpolation::CUBIC>(sampler, run, n, to);
    }
}

void ownSampleReal(const OwnSampler& sampler, const OwnRealRun& run, int32_t n, OwnTies ties, uint8_t* to)
{
    const OwnView& source = sampler.source;
    if (sampler.interpolation == OwnInterpolation::NEAREST) {
        OwnTaps<int32_t> places;
        int32_t rows[ownMostRun];
        ownPlaceNearest(run.x, n, { sampler.left, source.width }, ties, places.column);
        ownPlaceNearest(run.y, n, { sampler.top, source.height }, ties, rows);
        return ownSampleNearest(source, rows, places, n, to);
    }
    const bool isLinear = sampler.interpolation == OwnInterpolation::LINEAR;
    if (source.sampleBytes == 1) {
        return isLinear ? ownSampleRealBy<uint8_t, OwnInterpolation::LINEAR>(sampler, run, n, to)
                        : ownSampleRealBy<uint8_t, OwnInterpolation::CUBIC>(sampler, run, n, to);
    }
    return isLinear ? ownSampleRealBy<uint16_t, OwnInterpolation::LINEAR>(sampler, run, n, to)
                    : ownSampleRealBy<uint16_t, OwnInterpolation::CUBIC>(sampler, run, n, to);
}
