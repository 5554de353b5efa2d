/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of arithmetic and logic with a constant.
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
