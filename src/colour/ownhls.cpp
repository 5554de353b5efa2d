// SPDX-License-Identifier: BSD-2-Clause
// HLS: hue, lightness and saturation.
#include "ownhue.h"

struct OwnByteLightness {
    OwnByteTone operator()(int16_t largest, int16_t smallest) const
    {
        const int16_t sum = static_cast<int16_t>(largest + smallest);
        return { static_cast<uint8_t>(sum >> 1), sum <= 255 ? sum : static_cast<int16_t>(510 - sum) };
    }
};

static void ownHlsByteRow(uint8_t* const* rows, ptrdiff_t n)
{
    ownByteHueRow<OwnByteLightness>(rows, n, { 4, 5 });
}

struct OwnRgbToHls {
    OwnColour<uint16_t> operator()(uint16_t r, uint16_t g, uint16_t b) const
    {
        const OwnColour<int32_t> hls = ofReals<uint16_t>(r, g, b);
        return { static_cast<uint16_t>(hls.first), static_cast<uint16_t>(hls.second),
                 static_cast<uint16_t>(hls.third) };
    }

    OwnColour<int32_t> operator()(int32_t r, int32_t g, int32_t b) const { return ofReals<int32_t>(r, g, b); }

    template <class T> static OwnColour<int32_t> ofReals(double r, double g, double b)
    {
        constexpr double top = ownTop<T>;
        const OwnHue<double> hue = ownHueOf(r, g, b);
        const double sum = hue.largest + hue.smallest;
        const double base = sum <= top ? sum : 2 * top - sum;
        const bool isGray = !(hue.range() > 0 && base > 0);
        const double saturation = (isGray ? 0.0 : hue.range()) * top / (isGray ? 1.0 : base);
        const int32_t degrees = ownWideHue(hue);
        const int32_t largest = static_cast<int32_t>(hue.largest), smallest = static_cast<int32_t>(hue.smallest);
        const int32_t lightness = (largest & smallest) + ((largest ^ smallest) >> 1); // half the sum, within 32 bits
        return { isGray ? 0 : degrees, lightness, ownTruncatePositive(saturation) };
    }
};

// A channel is m1 plus a part of m2 - m1 that rises from 0 to 60 degrees, is whole up to 180, falls up to 240 and is
// nothing from there on: in sixtieths, the smaller one of the angle and 240 less the angle, between 0 and 60.
template <class Real> static inline Real ownSixtieths(Real angle)
{
    const Real falling = 240 - angle;
    const Real part = angle < falling ? angle : falling;
    const Real above = part > 0 ? part : Real(0);
    return above < 60 ? above : Real(60);
}

struct OwnHlsToRgb {
    // 137 / 8192 stands for one sixtieth; sixty of them are the whole of every span below 292.
    OwnColour<uint8_t> operator()(uint8_t hue, uint8_t lightness, uint8_t saturation) const
    {
        const int16_t h = static_cast<int16_t>(2 * hue >= 360 ? 2 * hue - 360 : 2 * hue);
        const int16_t m = static_cast<int16_t>(
            ownHigh16(static_cast<uint16_t>(lightness * 129), static_cast<uint16_t>(2 * saturation)));
        const int16_t m2 = static_cast<int16_t>(lightness + (lightness < 128 ? m : saturation - m));
        const int16_t m1 = static_cast<int16_t>(2 * lightness - m2);
        const uint16_t span = static_cast<uint16_t>((m2 - m1) * 137);
        const auto channel = [=](int16_t angle) {
            const uint16_t part = ownHigh16(span, static_cast<uint16_t>(8 * ownSixtieths<int16_t>(angle)));
            return static_cast<uint8_t>(m1 + part);
        };
        return { channel(static_cast<int16_t>(h <= 240 ? h + 120 : h - 240)), channel(h),
                 channel(static_cast<int16_t>(h < 120 ? h + 240 : h - 120)) };
    }

    OwnColour<uint16_t> operator()(uint16_t hue, uint16_t lightness, uint16_t saturation) const
    {
        const OwnColour<int32_t> rgb = ofWide<uint16_t>(hue, lightness, saturation, 1.5259e-05);
        return { ownLimitWord(rgb.first), ownLimitWord(rgb.second), ownLimitWord(rgb.third) };
    }

    OwnColour<int32_t> operator()(int32_t hue, int32_t lightness, int32_t saturation) const
    {
        return ofWide<int32_t>(hue, lightness, saturation, 5e-10);
    }

    // The scale stands for 1 / top, as in HSV.
    template <class T> static OwnColour<int32_t> ofWide(int32_t hue, int32_t lightness, double saturation, double scale)
    {
        const double l = lightness;
        const double m = l * scale * saturation;
        const double m2 = lightness <= ownTop<T> / 2 ? l + m : l + saturation - m;
        const double m1 = 2 * l - m2;
        const auto channel = [=](int32_t angle) {
            const double part = m1 + (m2 - m1) * ownSixtieths(angle) * 0.0166666667; // of 60 a little more than m2
            const double sample = angle >= 60 && angle < 180 ? m2 : part;
            const double positive = sample > 0 ? sample : 0.0;
            return ownTruncateSigned(saturation == 0 ? l : positive);
        };
        const int32_t h = ownTurned(hue);
        return { channel(h < 240 ? h + 120 : h - 240), channel(h), channel(h < 120 ? h + 240 : h - 120) };
    }
};

const OwnColourModel ownHlsModel = { "HLS", ownDepthFault32S, ownColourRows<OwnRgbToHls>(ownHlsByteRow),
                                     ownColourRows<OwnHlsToRgb>() };
