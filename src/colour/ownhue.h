/* SPDX-License-Identifier: BSD-2-Clause */
// Hue, which HSV and HLS share: degrees around the circle of red (0), green (120) and blue (240).
#pragma once

#include "ownformula.h"

// Hue is the magnitude of offset + 60 * difference / range; the range is that of the three samples.
template <class Real> struct OwnHue {
    Real largest;
    Real smallest;
    Real difference;
    Real offset;

    Real range() const { return static_cast<Real>(largest - smallest); }
};

// Green and blue, then red and the larger of them, change places so that the first is the largest. Where two are the
// largest, both ways give the same hue.
template <class Real> inline OwnHue<Real> ownHueOf(Real r, Real g, Real b)
{
    const Real larger = std::max(g, b), smaller = std::min(g, b);
    const Real ofRed = g < b ? Real(-360) : Real(0), ofOther = g < b ? Real(240) : Real(-120);
    const Real second = std::min(r, larger);
    return { std::max(r, larger), std::min(second, smaller), static_cast<Real>(second - smaller),
             r < larger ? ofOther : ofRed };
}

template <class Real> inline Real ownMagnitude(Real value)
{
    return value < 0 ? -value : value;
}

// ---- rows of bytes -------------------------------------------------------------------------------------------------

// What becomes of the largest and the smallest sample of a pixel, which is all but hue that HSV and HLS differ in.
struct OwnByteTone {
    uint8_t tone;
    int16_t base; // saturation is 255 * range / base; at least 1 where there is a range
};

struct OwnToneRows {
    int32_t tone;
    int32_t saturation;
};

constexpr ptrdiff_t ownHueBlock = 512;

// Hue (in steps of two degrees), tone and saturation of a block of whole vectors: the largest and smallest samples in
// lanes of 16 bits, then the quotients in floats. Both quotients take one division, 1 / (range * base). Quotients of
// bytes that are not whole lie at least 1 / 255 below the next whole number, so half of that may be added before they
// are truncated, which outweighs all rounding.
template <class ToneOf>
inline void ownByteHueBlock(uint8_t* const* rows, ptrdiff_t start, ptrdiff_t n, OwnToneRows places)
{
    constexpr float bias = 1.0f / 512;
    alignas(64) int16_t ranges[ownHueBlock], bases[ownHueBlock], differences[ownHueBlock], offsets[ownHueBlock];
    const ptrdiff_t count = n & -ownBlockOf<uint8_t>;
    const uint8_t *const red = rows[0] + start, *const green = rows[1] + start, *const blue = rows[2] + start;
    uint8_t *const hues = rows[3] + start, *const tones = rows[places.tone] + start,
                   *const saturations = rows[places.saturation] + start;
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < count; ++i) {
        const OwnHue<int16_t> hue = ownHueOf<int16_t>(red[i], green[i], blue[i]);
        const OwnByteTone tone = ToneOf {}(hue.largest, hue.smallest);
        ranges[i] = hue.range();
        bases[i] = tone.base;
        differences[i] = static_cast<int16_t>(60 * hue.difference);
        offsets[i] = hue.offset;
        tones[i] = tone.tone;
    }
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < count; ++i) {
        const float range = ranges[i], base = bases[i];
        const float product = range * base;
        const float factor = 1.0f / (product > 1.0f ? product : 1.0f);
        const float degrees = ownMagnitude(differences[i] * base * factor + offsets[i]) + bias;
        differences[i] = static_cast<int16_t>(static_cast<int32_t>(degrees) >> 1);
        ranges[i] = static_cast<int16_t>(static_cast<int32_t>(255.0f * range * range * factor + bias));
    }
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < count; ++i) {
        hues[i] = static_cast<uint8_t>(differences[i]);
        saturations[i] = static_cast<uint8_t>(ranges[i]);
    }
}

template <class ToneOf> void ownByteHueRow(uint8_t* const* rows, ptrdiff_t n, OwnToneRows places)
{
    ownRunBlocks<uint8_t, 3, 6>(rows, n, [&](uint8_t* const* of, ptrdiff_t count) {
        for (ptrdiff_t start = 0; start < count; start += ownHueBlock) {
            ownByteHueBlock<ToneOf>(of, start, std::min(ownHueBlock, count - start), places);
        }
    });
}

// ---- wider samples -------------------------------------------------------------------------------------------------

// A hue beyond the circle is turned back: 0 to 359 degrees.
inline int32_t ownTurned(int32_t hue)
{
    const int32_t rest = hue % 360;
    return rest < 0 ? rest + 360 : rest;
}

// Truncated hue of wider samples; the range may be 0. Exact: the quotient's distance from whole numbers outweighs its
// rounding.
template <class Real> inline int32_t ownWideHue(const OwnHue<Real>& hue)
{
    const Real range = hue.range() > 0 ? hue.range() : Real(1);
    return static_cast<int32_t>(ownMagnitude(hue.difference * Real(60) / range + hue.offset));
}
