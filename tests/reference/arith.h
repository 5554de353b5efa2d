/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of arithmetic and logic.
#pragma once

#include "reference/frame.h"

// A number as the depth stores it: integers limited to the range, fractions cut off toward zero; floats rounded.
inline uint32_t saturated(int32_t depth, double exact)
{
    if (isFloatDepth(depth)) return bitsOf(depth, exact);
    return bitsOf(depth, std::min(std::max(exact, double(depthMin(depth))), double(depthMax(depth))));
}

enum class Dyadic { ADD, SUBTRACT, MULTIPLY, AND, OR, XOR };

// Sums and products of two floats or two 31-bit numbers are exact in a double or, for the products of large integers,
// so far beyond the range that rounding does not matter; floats round once more to float without harm. One-bit numbers
// need no rule of their own: they saturate at 0 and 1.
inline uint32_t dyadicSample(Dyadic op, int32_t depth, uint32_t a, uint32_t b)
{
    const double x = numberOf(depth, a), y = numberOf(depth, b);
    switch (op) {
    case Dyadic::ADD: return saturated(depth, x + y);
    case Dyadic::SUBTRACT: return saturated(depth, x - y);
    case Dyadic::MULTIPLY: return saturated(depth, x * y);
    case Dyadic::AND: return a & b;
    case Dyadic::OR: return a | b;
    default: return a ^ b;
    }
}

// One of the images of a call without mask: is it taken as one block, padding included?
inline bool isOneBlock(const Picture& p, const Picture& dst)
{
    const Window window = windowOf(p);
    const bool isWhole = window.x == 0 && window.y == 0 && window.width == p.spec.width
        && window.height == p.spec.height && window.channels == p.spec.channels;
    return isWhole && !p.isTiled() && p.mask == nullptr && p.spec.width == dst.spec.width
        && p.spec.height == dst.spec.height && p.header.imageSize == dst.header.imageSize
        && p.spec.align == dst.spec.align && (p.spec.order == dst.spec.order || p.spec.channels == 1);
}

// The padding of whole images in memory is processed with them, taken as samples.
template <class F> void forEachPaddingSample(const Picture& p, F&& visit)
{
    for (int32_t plane = 0; plane < p.planes(); ++plane) {
        for (int32_t y = 0; y < p.spec.height; ++y) {
            for (int32_t s = p.samplesOfRow(); s < p.samplesOfStep(); ++s) visit(plane, y, s);
        }
    }
}

inline void modelDyadic(Dyadic op, Picture& a, Picture& b, Picture& dst)
{
    const int32_t depth = dst.spec.depth;
    if (isOneBlock(a, dst) && isOneBlock(b, dst) && isOneBlock(dst, dst)) {
        forEachPaddingSample(dst, [&](int32_t plane, int32_t y, int32_t s) {
            dst.setRowBits(plane, y, s, dyadicSample(op, depth, a.rowBits(plane, y, s), b.rowBits(plane, y, s)));
        });
    }
    forEachSelected({ &a, &b, &dst },
                    [&](const Place* at) { at[2].setBits(dyadicSample(op, depth, at[0].bits(), at[1].bits())); });
}
