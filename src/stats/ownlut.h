/* SPDX-License-Identifier: BSD-2-Clause */
// Tables of the histogram operations.
#pragma once

#include "frame/owndepth.h"
#include "frame/ownreport.h"

// Levels of an unsigned depth of 1, 8 or 16 bits.
inline int32_t ownLevels(int32_t depth)
{
    return 1 << ownDepthBits(depth);
}

// Looks at the tables of `count` channels, one after the other, and reports the first fault. The tables of channels
// behind these, such as alpha, are not touched.
[[nodiscard]] bool ownGoodTables(const OwnSite& site, PxkLUT* const* lut, int32_t count, int32_t levels);
