// SPDX-License-Identifier: BSD-2-Clause
#include "ownplanelines.h"

void ownStoreValues(const OwnFloatPlane& plane, int32_t x, int32_t y, int32_t n, float* from)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) from[i] = ownOneNaN(from[i]);
    ownStorePlaneRow(plane.view, plane.depth, plane.channel, x, y, n, from);
}

void ownLoadValues(const OwnFixedPlane& plane, int32_t x, int32_t y, int32_t n, int32_t* to)
{
    ownLoadPlaneRow(plane.view, plane.depth, plane.channel, x, y, n, to);
    for (int32_t i = 0; i < n; ++i) to[i] = static_cast<int32_t>(static_cast<uint32_t>(to[i]) << OWN_FIXED_BITS);
}

void ownStoreValues(const OwnFixedPlane& plane, int32_t x, int32_t y, int32_t n, int32_t* from)
{
    const int32_t shift = plane.shift;
    const int64_t one = int64_t(1) << shift;
    for (int32_t i = 0; i < n; ++i)
        from[i] = from[i] < 0 && from[i] > -one ? 0 : static_cast<int32_t>(int64_t(from[i]) >> shift);
    const float scale = plane.scale;
    if (scale != 1)
        for (int32_t i = 0; i < n; ++i) from[i] = ownLimitTo<int32_t>(static_cast<float>(from[i]) * scale);
    ownStorePlaneRow(plane.view, plane.depth, plane.channel, x, y, n, from);
}
