/* SPDX-License-Identifier: BSD-2-Clause */
// Angles in degrees, with sine and cosine that are the same bits in every build.
#pragma once

#include <cstdint>

struct OwnDirection {
    double cosine;
    double sine;
    int32_t quarters; // 0 to 3 for a multiple of 90 degrees, whose sine and cosine are exact; otherwise -1
};

// Any angle; what is no number gives no numbers.
OwnDirection ownDirectionOf(double degrees);
