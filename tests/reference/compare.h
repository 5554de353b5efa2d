/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of the comparisons: numbers of any depth are exact in a double.
#pragma once

#include <functional>

#include "reference/frame.h"

// Takes a number of image a, and one of image b or the constant.
using NumberRelation = std::function<bool(double, double)>;

inline double numberAt(const Picture& p, int32_t i, int32_t j, int32_t c)
{
    const Window window = windowOf(p);
    return p.number(int32_t(window.x) + i, int32_t(window.y) + j, window.firstChannel + c);
}

// The destination's bit is 1 where the relation holds in every channel. Without image b every sample meets `value`.
inline void modelCompare(Picture& a, Picture* b, Picture& dst, const NumberRelation& relation, double value = 0)
{
    const Window window = windowOf(dst);
    forEachSelectedPixel({ &a, b != nullptr ? b : &a, &dst }, [&](int32_t i, int32_t j) {
        bool holds = true;
        for (int32_t c = 0; c < windowOf(a).channels; ++c) {
            holds = holds && relation(numberAt(a, i, j, c), b != nullptr ? numberAt(*b, i, j, c) : value);
        }
        dst.setBits(int32_t(window.x) + i, int32_t(window.y) + j, 0, holds ? 1 : 0);
    });
}
