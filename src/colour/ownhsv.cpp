// SPDX-License-Identifier: BSD-2-Clause
// HSV: hue, saturation and value.
#include "ownhue.h"

struct OwnByteValue {
    OwnByteTone operator()(int16_t largest, int16_t) const { return { static_cast<uint8_t>(largest), largest }; }
};

static void ownHsvByteRow(uint8_t* const* rows, ptrdiff_t n)
{
    ownByteHueRow<OwnByteValue>(rows, n, { 5, 4 });
}

struct OwnRgbToHsv {
    // The saturation's quotient is rounded before it is multiplied: that may cost a unit, and belongs to the result.
    OwnColour<uint16_t> operator()(uint16_t r, uint16_t g, uint16_t b) const
    {
        const OwnColour<int32_t> hsv = ofReals<uint16_t>(r, g, b);
        return { static_cast<uint16_t>(hsv.first), static_cast<uint16_t>(hsv.second),
                 static_cast<uint16_t>(hsv.third) };
    }

    OwnColour<int32_t> operator()(int32_t r, int32_t g, int32_t b) const { return ofReals<int32_t>(r, g, b); }

    template <class T> static OwnColour<int32_t> ofReals(double r, double g, double b)
    {
        const OwnHue<double> hue = ownHueOf(r, g, b);
        const bool isGray = !(hue.range() > 0 && hue.largest > 0);
        const double saturation = ownTop<T> / (isGray ? 1.0 : hue.largest) * (isGray ? 0.0 : hue.range());
        const int32_t degrees = ownWideHue(hue);
        return { isGray ? 0 : degrees, ownTruncatePositive(saturation), static_cast<int32_t>(hue.largest) };
    }
};

// What the channels of a pixel have: one of them the value, one the smallest, and the third lies between.
template <class T> struct OwnSectorValues {
    T value;
    T between;
    T smallest;
};

// Which channel has which, in the six sectors of 60 degrees: by the distance from the middle of the two sectors where
// red is smallest (sectors 2 and 3), green is the value (1 and 2) and blue is the value (3 and 4).
template <class T> static inline OwnColour<T> ownColourOfSector(T sector, const OwnSectorValues<T>& of)
{
    const auto pick = [&](T middle, T near, T far) {
        const T beyond = static_cast<T>(2 * sector - middle);
        const T distance = static_cast<T>(beyond < 0 ? -beyond : beyond);
        // By masks: from choices of choices the compiler makes branches.
        const T isNear = static_cast<T>(-(distance < 2)), isFar = static_cast<T>(-(distance > 3));
        return static_cast<T>((near & isNear) | (far & isFar) | (of.between & ~(isNear | isFar)));
    };
    return { pick(5, of.smallest, of.value), pick(3, of.value, of.smallest), pick(7, of.value, of.smallest) };
}

struct OwnHsvToRgb {
    // 34 / 2048 stands for one sixtieth. The high half of a product of 16 bits takes the shift by 11.
    OwnColour<uint8_t> operator()(uint8_t hue, uint8_t saturation, uint8_t value) const
    {
        const uint16_t degrees = static_cast<uint16_t>(2 * hue >= 360 ? 2 * hue - 360 : 2 * hue);
        const uint16_t sector = ownHigh16(degrees, 1093); // degrees / 60
        const uint16_t inside = static_cast<uint16_t>(degrees - 60 * sector);
        const uint16_t weight = static_cast<uint16_t>(32 * (sector & 1 ? inside : 60 - inside));
        const uint16_t span = static_cast<uint16_t>(static_cast<uint16_t>(saturation * value) >> 8);
        const uint16_t lost = ownHigh16(static_cast<uint16_t>(34 * span), weight);
        const OwnColour<int16_t> rgb = ownColourOfSector<int16_t>(
            static_cast<int16_t>(sector),
            { value, static_cast<int16_t>(value - lost), static_cast<int16_t>(value - span) });
        return { static_cast<uint8_t>(rgb.first), static_cast<uint8_t>(rgb.second), static_cast<uint8_t>(rgb.third) };
    }

    OwnColour<uint16_t> operator()(uint16_t hue, uint16_t saturation, uint16_t value) const
    {
        const OwnColour<int32_t> rgb = ofWide<uint16_t>(hue, saturation, value, 1.5259e-05);
        return { static_cast<uint16_t>(rgb.first), static_cast<uint16_t>(rgb.second),
                 static_cast<uint16_t>(rgb.third) };
    }

    OwnColour<int32_t> operator()(int32_t hue, int32_t saturation, int32_t value) const
    {
        return ofWide<int32_t>(hue, saturation, value, 5e-10);
    }

    // The scale stands for 1 / top, and is less at 16U and more at 32S, where small saturations take a limit.
    template <class T> static OwnColour<int32_t> ofWide(int32_t hue, double saturation, int32_t value, double scale)
    {
        const double sixths = ownTurned(hue) * 0.0166666667;
        const int32_t sector = static_cast<int32_t>(sixths);
        const double inside = sixths - sector;
        const double weight = sector & 1 ? inside : 1.0 - inside;
        const auto scaled = [=](double w) {
            const double sample = (ownTop<T> - w * saturation) * scale * value;
            return ownTruncateSigned(saturation == 0 ? value : sample);
        };
        return ownColourOfSector<int32_t>(sector, { value, scaled(weight), scaled(1.0) });
    }
};

const OwnColourModel ownHsvModel = { "HSV", ownDepthFault32S, ownColourRows<OwnRgbToHsv>(ownHsvByteRow),
                                     ownColourRows<OwnHsvToRgb>() };
