/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of the comparisons: numbers of any depth are exact in a double.
#pragma once

#include <functional>

#include "reference/frame.h"

// Takes a number of image a, and one of image b or the constant.
using NumberRelation = std::function<bool(double, double)>;

// The destination's bit is 1 where the relation holds in every channel. Without image b every sample meets `value`.
inline void modelCompare(Picture& a, Picture* b, Picture& dst, const NumberRelation& relation, double value = 0)
{
    const Window first = windowOf(a), second = windowOf(b != nullptr ? *b : a), to = windowOf(dst);
    forEachSelectedPixel({ &a, second.picture, &dst }, [&](int32_t i, int32_t j) {
        bool holds = true;
        for (int32_t c = 0; c < first.channels; ++c) {
            const double other = b != nullptr ? second.at(i, j, c).number() : value;
            holds = holds && relation(first.at(i, j, c).number(), other);
        }
        to.at(i, j).setBits(holds ? 1 : 0);
    });
}
