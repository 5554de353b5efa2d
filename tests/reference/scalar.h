// Slow models of arithmetic and logic with a constant, and of pixels and rings.
#pragma once

#include <cmath>

#include "reference/arith.h"

enum class Scalar { ADD, SUBTRACT, SUBTRACT_FROM, MULTIPLY, AND, OR, XOR, NOT, SHIFT_LEFT, SHIFT_RIGHT, ABS, SQUARE };

// Constants of integer operations are whole numbers of 32 bits; at depth 1 only their lowest bit counts. All sums and
// products are exact in a double, or so far beyond the range that rounding does not matter.
inline uint32_t scalarSample(Scalar op, int32_t depth, uint32_t sample, double constant)
{
    const double a = numberOf(depth, sample);
    if (isFloatDepth(depth)) {
        switch (op) {
        case Scalar::ADD: return bitsOf(depth, a + constant);
        case Scalar::SUBTRACT: return bitsOf(depth, a - constant);
        case Scalar::SUBTRACT_FROM: return bitsOf(depth, constant - a);
        case Scalar::MULTIPLY: return bitsOf(depth, a * constant);
        case Scalar::SQUARE: return bitsOf(depth, a * a);
        default: return sample & 0x7FFFFFFFu; // the magnitude
        }
    }
    const uint64_t range = uint64_t(1) << depthBits(depth);
    const uint32_t pattern = uint32_t((uint64_t(int64_t(constant)) & (range - 1)));
    const uint32_t shift = uint32_t(int64_t(constant)); // negative shifts are very long ones
    const double c = depth == PXK_DEPTH_1U ? double(pattern) : constant;
    switch (op) {
    case Scalar::ADD: return saturated(depth, a + c);
    case Scalar::SUBTRACT: return saturated(depth, a - c);
    case Scalar::SUBTRACT_FROM: return saturated(depth, c - a);
    case Scalar::MULTIPLY: return saturated(depth, a * c);
    case Scalar::AND: return sample & pattern;
    case Scalar::OR: return sample | pattern;
    case Scalar::XOR: return sample ^ pattern;
    case Scalar::NOT: return uint32_t(~sample & (range - 1));
    case Scalar::SHIFT_LEFT: return shift > 32 ? 0 : uint32_t((uint64_t(sample) << shift) % range);
    case Scalar::SHIFT_RIGHT: return bitsOf(depth, std::floor(a / double(uint64_t(1) << std::min(shift, 63u))));
    case Scalar::ABS: return saturated(depth, std::fabs(a));
    default: return saturated(depth, a * a);
    }
}

inline void modelScalar(Scalar op, Picture& src, Picture& dst, double constant)
{
    const int32_t depth = dst.spec.depth;
    if (isOneBlock(src, dst) && isOneBlock(dst, dst)) {
        forEachPaddingSample(dst, [&](int32_t plane, int32_t y, int32_t s) {
            dst.setRowBits(plane, y, s, scalarSample(op, depth, src.rowBits(plane, y, s), constant));
        });
    }
    forEachSelected({ &src, &dst },
                    [&](const Place* at) { at[1].setBits(scalarSample(op, depth, at[0].bits(), constant)); });
}

// A sample of the ring image at any distance from its centre, before it is cut to a whole number. The sine may be off
// by `sineError`.
inline double ringNumber(int32_t depth, int32_t height, double xDistance, double yDistance, double sineError)
{
    const double radius = xDistance * xDistance + yDistance * yDistance;
    const double sine = std::sin(radius * (6.283185307179586 / (4.0 * height))) + sineError;
    switch (depth) {
    case PXK_DEPTH_1U: return (sine + 1.0) * 0.99999;
    case PXK_DEPTH_8U: return (sine + 1.0) * 127.99999;
    case PXK_DEPTH_8S: return sine * 127.99999;
    case PXK_DEPTH_16U: return (sine + 1.0) * 32767.99999;
    case PXK_DEPTH_16S: return sine * 32767.99999;
    case PXK_DEPTH_32S: return sine * 2147483647.99999;
    default: return (sine + 1.0) * 0.49999;
    }
}
