// Between rows of samples and lines side by side: squares of sixteen values turned over.
#pragma once

#include <cstddef>

constexpr ptrdiff_t OWN_TILE = 16;

// Four by four values at a time, which compilers keep in vectors.
template <class T> inline void ownTransposeFour(const T* from, ptrdiff_t fromStep, T* to, ptrdiff_t toStep)
{
    T values[4][4];
    for (ptrdiff_t y = 0; y < 4; ++y)
        for (ptrdiff_t x = 0; x < 4; ++x) values[x][y] = from[y * fromStep + x];
    for (ptrdiff_t x = 0; x < 4; ++x)
        for (ptrdiff_t y = 0; y < 4; ++y) to[x * toStep + y] = values[x][y];
}

// Column x of `from` becomes row x of `to`. The rows of one side may lie a power of two apart, where few of them fit
// into the cache at once: each one is finished soon, the source's rows here, the destination's rows below.
template <class T> inline void ownTransposeFrom(const T* from, ptrdiff_t fromStep, T* to, ptrdiff_t toStep)
{
    for (ptrdiff_t y = 0; y < OWN_TILE; y += 4)
        for (ptrdiff_t x = 0; x < OWN_TILE; x += 4)
            ownTransposeFour(from + y * fromStep + x, fromStep, to + x * toStep + y, toStep);
}

template <class T> inline void ownTransposeTo(const T* from, ptrdiff_t fromStep, T* to, ptrdiff_t toStep)
{
    for (ptrdiff_t x = 0; x < OWN_TILE; x += 4)
        for (ptrdiff_t y = 0; y < OWN_TILE; y += 4)
            ownTransposeFour(from + y * fromStep + x, fromStep, to + x * toStep + y, toStep);
}
