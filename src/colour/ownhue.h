// Hue, which HSV and HLS share: degrees around the circle of red (0), green (120) and blue (240).
#pragma once

#include "ownformula.h"

// Hue is offset + 60 * difference / range, never negative; the range is that of the three samples.
template <class Real> struct OwnHue {
    Real difference;
    Real offset;
};

template <class Real> inline OwnHue<Real> ownHueOf(Real r, Real g, Real b, Real largest)
{
    const bool isRed = r == largest, isGreen = g == largest;
    const Real fromRed = g < b ? Real(360) : Real(0);
    const Real otherDifference = isGreen ? b - r : r - g;
    const Real otherOffset = isGreen ? Real(120) : Real(240);
    return { isRed ? g - b : otherDifference, isRed ? fromRed : otherOffset };
}

// The quotients of an 8U pixel, hue in degrees and 255 * range / base, take one division: this is 1 / (range * base).
// Quotients of bytes that are not whole lie at least 1 / 255 below the next whole number, so half of that may be added
// before they are truncated, which outweighs all rounding.
constexpr float ownQuotientBias = 1.0f / 512;

inline float ownByteFactor(float range, float base)
{
    const float product = range * base;
    return 1.0f / (product > 1.0f ? product : 1.0f);
}

inline uint8_t ownByteHue(const OwnHue<float>& hue, float base, float factor) // in steps of two degrees
{
    const float degrees = 60.0f * hue.difference * base * factor + hue.offset + ownQuotientBias;
    return static_cast<uint8_t>(static_cast<int32_t>(degrees) >> 1);
}

inline uint8_t ownByteSaturation(float range, float factor)
{
    return static_cast<uint8_t>(static_cast<int32_t>(255.0f * range * range * factor + ownQuotientBias));
}

// A hue beyond the circle is turned back: 0 to 359 degrees.
inline int32_t ownTurned(int32_t hue)
{
    const int32_t rest = hue % 360;
    return rest < 0 ? rest + 360 : rest;
}

// Truncated hue of wider samples; the range may be 0. Exact: the quotient's distance from whole numbers outweighs its
// rounding.
template <class Real> inline int32_t ownWideHue(Real r, Real g, Real b, Real largest, Real range)
{
    const OwnHue<Real> hue = ownHueOf(r, g, b, largest);
    return static_cast<int32_t>(hue.difference * Real(60) / (range > 0 ? range : Real(1)) + hue.offset);
}
