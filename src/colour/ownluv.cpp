// LUV: lightness after CIE 1976, and two differences of chromaticity from white. Single precision.
#include <cstring>

#include "ownxyz.h"

// Of a positive number. The exponent is divided by three for a guess within a few percent, and each of two steps of
// Halley's method cubes the error, so that the last bit of a float is left. Only the four rules of arithmetic: the same
// bits in every build, and a loop over it becomes vectors.
static inline float ownCubeRoot(float x)
{
    constexpr int32_t third = 0x2a5137a0; // two thirds of the exponent's bias, less the guess's mean error
    int32_t bits;
    memcpy(&bits, &x, sizeof bits);
    bits = bits / 3 + third;
    float root;
    memcpy(&root, &bits, sizeof root);
    for (int32_t step = 0; step < 2; ++step) {
        const float cube = root * root * root;
        root += root * ((x - cube) / (cube + cube + x));
    }
    return root;
}

// The chromaticity of white.
constexpr float ownWhiteU = 0.19783001f;
constexpr float ownWhiteV = 0.46831998f;

// The cube root of y / 0.329, which for large numbers does not fit a float: they are divided by the cube of 2^33 first.
static inline float ownLightnessRoot(float y)
{
    constexpr float large = 1.0e30f, cube = 0x1p-99f, side = 0x1p33f;
    const bool isLarge = y > large;
    const float root = ownCubeRoot((isLarge ? y * cube : y) * 3.0395136778f) * (isLarge ? side : 1.0f);
    return y < std::numeric_limits<float>::infinity() ? root : y;
}

struct OwnRgbToLuv {
    OwnColour<float> operator()(float r, float g, float b) const
    {
        const OwnColour<float> xyz = ownRgbToXyz(r, g, b);
        const float x = xyz.first, y = xyz.second, z = xyz.third;
        const bool isDark = y <= 0.00329f;
        const float l = 116.0f * ownLightnessRoot(y) - 16.0f;
        const float d = 1.0f / (x + 15.0f * y + 3.0f * z);
        const float u = (4.0f * d * x - ownWhiteU) * 13.0f * l;
        const float v = (9.0f * d * y - ownWhiteV) * 13.0f * l;
        return { isDark ? 0.0f : l, isDark ? 0.0f : u, isDark ? 0.0f : v };
    }
};

struct OwnLuvToRgb {
    OwnColour<float> operator()(float storedL, float u, float v) const
    {
        const float root = (16.0f + storedL) * 0.00862069f;
        const float y = root * root * root * 0.329f;
        const float l = storedL > -0.00001f && storedL < 0.00001f ? 0.00001f : storedL;
        const float q = 1.0f / (13.0f * l);
        const float a = u * q + ownWhiteU;
        const float b = v * q + ownWhiteV;
        const float x = 9.0f / (4.0f * b) * y * a;
        const float z = (4.0f / (3.0f * a) - 0.33333299f) * x - 5.0f * y;
        const OwnColour<float> rgb = ownXyzToRgb(x, y, z);
        return { ownNotNegative(rgb.first), ownNotNegative(rgb.second), ownNotNegative(rgb.third) };
    }
};

const OwnColourModel ownLuvModel = { "LUV", "Error input depth. 32F is valid now", ownColourRows<OwnRgbToLuv>(),
                                     ownColourRows<OwnLuvToRgb>() };
