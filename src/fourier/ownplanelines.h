/* SPDX-License-Identifier: BSD-2-Clause */
// One channel of an image as lines side by side: sixteen rows at a time, turned over in squares.
#pragma once

#include <utility>

#include "frame/owndepth.h"
#include "frame/ownivdep.h"
#include "frame/ownlimit.h"
#include "frame/ownplane.h"
#include "frame/ownregion.h"
#include "owntranspose.h"

// Samples as floats.
struct OwnFloatPlane {
    OwnView view;
    int32_t depth;
    int32_t channel;
};

inline void ownLoadValues(const OwnFloatPlane& plane, int32_t x, int32_t y, int32_t n, float* to)
{
    ownLoadPlaneRow(plane.view, plane.depth, plane.channel, x, y, n, to);
}

// Changes the values on the way.
void ownStoreValues(const OwnFloatPlane& plane, int32_t x, int32_t y, int32_t n, float* from);

// Row y where it lies, if all rows hold values as they are, else null.
inline float* ownRowInPlace(const OwnFloatPlane& plane, int32_t y)
{
    constexpr ptrdiff_t valueBytes = sizeof(float);
    const bool isPlain = plane.depth == PXK_DEPTH_32F && plane.view.pixelStep == valueBytes
        && plane.view.rowStep % valueBytes == 0; // a caller's rows may lie any number of bytes apart
    return isPlain
        ? reinterpret_cast<float*>(plane.view.first + plane.channel * plane.view.channelStep + y * plane.view.rowStep)
        : nullptr;
}

// Fraction bits of fixed-point values.
constexpr int32_t OWN_FIXED_BITS = 6;

// Samples as fixed-point values.
struct OwnFixedPlane {
    OwnView view;
    int32_t depth;
    int32_t channel;
    int32_t shift; // of a stored value, its fraction bits included
    float scale;   // of what the shift leaves
};

void ownLoadValues(const OwnFixedPlane& plane, int32_t x, int32_t y, int32_t n, int32_t* to);

// Shifts down; what is left of a negative value above -1 is 0.
void ownStoreValues(const OwnFixedPlane& plane, int32_t x, int32_t y, int32_t n, int32_t* from);

inline int32_t* ownRowInPlace(const OwnFixedPlane&, int32_t)
{
    return nullptr;
}

// Values from one row in place to the next one.
template <class Plane> ptrdiff_t ownRowValues(const Plane& plane)
{
    return plane.view.rowStep / static_cast<ptrdiff_t>(sizeof(*ownRowInPlace(plane, 0)));
}

// Whether rows lie so far apart that a column's samples can be walked.
inline bool ownHasWholeSteps(const OwnView& view)
{
    return view.rowStep % view.sampleBytes == 0;
}

// Makes single columns single rows, whose transforms are the same: a pixel's neighbour lies a row further. Columns of
// an odd length stay, because their partner in a transform is another one than a row's.
template <class Plane> void ownLayColumnsDown(Plane& source, Plane& destination, OwnSize& size)
{
    OwnView &a = source.view, &b = destination.view;
    if (size.width != 1 || size.height % 2 != 0 || !ownHasWholeSteps(a) || !ownHasWholeSteps(b)) return;
    std::swap(size.width, size.height);
    std::swap(a.pixelStep, a.rowStep);
    std::swap(b.pixelStep, b.rowStep);
}

// Columns that are turned over by way of a buffer on the stack.
constexpr int32_t ownStageWidth = 128;

// Rows y to y + 15 as lines: column x of them from `to` + x * step on. Rows from `height` on count as 0. Writes up to
// the next multiple of 16 columns.
template <class Plane, class Value>
void ownLoadLines(const Plane& plane, int32_t width, int32_t height, int32_t y, Value* to, ptrdiff_t step)
{
    const int32_t rows = height - y < OWN_TILE ? height - y : static_cast<int32_t>(OWN_TILE);
    int32_t x = 0;
    if (const Value* direct = rows == OWN_TILE ? ownRowInPlace(plane, y) : nullptr; direct != nullptr)
        for (; x + OWN_TILE <= width; x += OWN_TILE)
            ownTransposeFrom(direct + x, ownRowValues(plane), to + x * step, step);
    while (x < width) {
        alignas(64) Value stage[OWN_TILE * ownStageWidth];
        const int32_t n = width - x < ownStageWidth ? width - x : ownStageWidth;
        for (int32_t row = 0; row < OWN_TILE; ++row) {
            const int32_t loaded = row < rows ? n : 0;
            if (loaded > 0) ownLoadValues(plane, x, y + row, n, stage + row * ownStageWidth);
            for (int32_t i = loaded; i < (n + OWN_TILE - 1) / OWN_TILE * OWN_TILE; ++i)
                stage[row * ownStageWidth + i] = 0;
        }
        for (int32_t i = 0; i < n; i += OWN_TILE) ownTransposeFrom(stage + i, ownStageWidth, to + (x + i) * step, step);
        x += n;
    }
}

inline void ownStoreTile(const float* from, ptrdiff_t fromStep, float* to, ptrdiff_t toStep)
{
    alignas(64) float tile[OWN_TILE * OWN_TILE];
    for (ptrdiff_t x = 0; x < OWN_TILE; ++x)
        for (ptrdiff_t y = 0; y < OWN_TILE; ++y) tile[x * OWN_TILE + y] = ownOneNaN(from[x * fromStep + y]);
    ownTransposeTo(tile, OWN_TILE, to, toStep);
}

inline void ownStoreTile(const int32_t* from, ptrdiff_t fromStep, int32_t* to, ptrdiff_t toStep)
{
    ownTransposeTo(from, fromStep, to, toStep);
}

// The reverse; reads up to the next multiple of 16 columns.
template <class Plane, class Value>
void ownStoreLines(const Value* from, ptrdiff_t step, int32_t width, int32_t height, int32_t y, const Plane& plane)
{
    const int32_t rows = height - y < OWN_TILE ? height - y : static_cast<int32_t>(OWN_TILE);
    int32_t x = 0;
    if (Value* direct = rows == OWN_TILE ? ownRowInPlace(plane, y) : nullptr; direct != nullptr)
        for (; x + OWN_TILE <= width; x += OWN_TILE)
            ownStoreTile(from + x * step, step, direct + x, ownRowValues(plane));
    while (x < width) {
        alignas(64) Value stage[OWN_TILE * ownStageWidth];
        const int32_t n = width - x < ownStageWidth ? width - x : ownStageWidth;
        for (int32_t i = 0; i < n; i += OWN_TILE) ownTransposeTo(from + (x + i) * step, step, stage + i, ownStageWidth);
        for (int32_t row = 0; row < rows; ++row) ownStoreValues(plane, x, y + row, n, stage + row * ownStageWidth);
        x += n;
    }
}
