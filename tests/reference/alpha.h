/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of scaled products and alpha composition: fractions as integer numerators over powers of the largest
// sample M, all below 2^49, with one division at the end.
#pragma once

#include "reference/frame.h"

// above / below rounded to nearest, half up.
inline uint64_t roundedQuotient(uint64_t above, uint64_t below)
{
    return (2 * above + below) / (2 * below);
}

inline uint32_t scaledProduct(uint64_t a, uint64_t b, uint64_t largest)
{
    return uint32_t(roundedQuotient(a * b, largest));
}

inline uint64_t largestOf(const Picture& p)
{
    return uint64_t(depthMax(p.spec.depth));
}
inline bool isRestricted(const Picture& p)
{
    return p.header.roi != nullptr && p.roi.coi > 0;
}
inline int32_t alphaOf(const Picture& p)
{
    return p.header.alphaChannel - 1;
}

inline void modelMultiplyScale(Picture& a, Picture& b, Picture& dst)
{
    forEachSelected({ &a, &b, &dst },
                    [&](const Place* at) { at[2].setBits(scaledProduct(at[0].bits(), at[1].bits(), largestOf(dst))); });
}

// `value` is limited to 0 and M.
inline void modelMultiplySScale(Picture& a, Picture& dst, int64_t value)
{
    const int64_t limited = std::min(std::max<int64_t>(value, 0), depthMax(dst.spec.depth));
    forEachSelected({ &a, &dst }, [&](const Place* at) {
        at[1].setBits(scaledProduct(at[0].bits(), uint64_t(limited), largestOf(dst)));
    });
}

// The channels that an operation with alpha writes: the processed ones and alpha, or the one of interest.
inline std::vector<int32_t> writtenChannels(const Picture& p)
{
    const Window window = windowOf(p);
    std::vector<int32_t> channels;
    for (int32_t c = 0; c < window.channels; ++c) channels.push_back(window.firstChannel + c);
    if (!isRestricted(p) && alphaOf(p) >= 0) channels.push_back(alphaOf(p));
    return channels;
}

inline void modelPreMultiplyAlpha(Picture& image, int64_t alphaValue)
{
    const bool isFloat = isFloatDepth(image.spec.depth);
    const int64_t largest = isFloat ? 255 : depthMax(image.spec.depth);
    const double constant = double(std::min(alphaValue, largest));
    const uint32_t constantBits = bitsOf(image.spec.depth, isFloat ? constant / 255 : constant);
    const Window window = windowOf(image);
    forEachSelectedPixel({ &image }, [&](int32_t i, int32_t j) {
        const int32_t x = window.at(i, j).x, y = window.at(i, j).y;
        const uint32_t alpha = alphaValue < 0 ? image.bits(x, y, alphaOf(image)) : constantBits;
        for (const int32_t c : writtenChannels(image)) {
            if (c == alphaOf(image)) {
                image.setBits(x, y, c, alpha);
            } else if (isFloat) {
                image.setNumber(x, y, c, image.number(x, y, c) * numberOf(image.spec.depth, alpha));
            } else {
                image.setBits(x, y, c, scaledProduct(image.bits(x, y, c), alpha, largestOf(image)));
            }
        }
    });
}

struct Composition {
    int32_t type;
    bool isPremultiplied;
    bool isConstant;
    int64_t alphaA, alphaB; // of the constant form
};

// Samples of one pixel's images and the result's: all as numerators over M.
inline uint64_t compositeSample(const Composition& how, uint64_t largest, uint64_t a, uint64_t b, uint64_t alphaA,
                                uint64_t alphaB, bool isAlpha)
{
    const uint64_t one = largest;
    const uint64_t table[6][2] = {
        { one, one - alphaA },          { alphaB, 0 }, { one - alphaB, 0 }, { alphaB, one - alphaA },
        { one - alphaB, one - alphaA }, { one, one }
    };
    const uint64_t fa = table[how.type][0], fb = table[how.type][1];
    const auto sum = [&](uint64_t x, uint64_t y, uint64_t most) { return std::min(x * fa + y * fb, most); };
    const uint64_t alpha = sum(alphaA, alphaB, one * one); // over M M, limited to 1
    if (isAlpha) return roundedQuotient(alpha, largest);
    if (how.isPremultiplied) return roundedQuotient(sum(a, b, one * one), largest);
    // Plain colour takes its own alpha on the way in, and gives it back on the way out.
    return alpha == 0 ? 0 : roundedQuotient(sum(a * alphaA, b * alphaB, one * one * one), alpha);
}

inline void modelAlphaComposite(Picture& a, Picture& b, Picture& dst, const Composition& how)
{
    const Window windowA = windowOf(a), windowB = windowOf(b), window = windowOf(dst);
    const auto alphaOr = [&](const Place& at, int64_t constant) {
        const int64_t limited = std::clamp<int64_t>(constant, 0, depthMax(at.picture->spec.depth));
        return how.isConstant ? uint64_t(limited) : uint64_t(at.picture->bits(at.x, at.y, alphaOf(*at.picture)));
    };
    forEachSelectedPixel({ &a, &b, &dst }, [&](int32_t i, int32_t j) {
        const uint64_t alphaA = alphaOr(windowA.at(i, j), how.alphaA), alphaB = alphaOr(windowB.at(i, j), how.alphaB);
        std::vector<uint64_t> results; // all are found before one is written: dst may be a source
        const std::vector<int32_t> channels = writtenChannels(dst);
        for (int32_t c = 0; c < int32_t(channels.size()); ++c) {
            const bool isAlpha = channels[size_t(c)] == alphaOf(dst);
            const uint64_t sampleA = isAlpha ? 0 : windowA.at(i, j, c).bits();
            const uint64_t sampleB = isAlpha ? 0 : windowB.at(i, j, c).bits();
            results.push_back(compositeSample(how, largestOf(dst), sampleA, sampleB, alphaA, alphaB, isAlpha));
        }
        const Place to = window.at(i, j);
        for (size_t c = 0; c < channels.size(); ++c) dst.setBits(to.x, to.y, channels[c], uint32_t(results[c]));
    });
}
