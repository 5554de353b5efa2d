/* SPDX-License-Identifier: BSD-2-Clause */
// Real images to packed spectra and back, for any arithmetic: lines of it are described by a plan for real lines, a
// plan for complex ones, and a plane that brings values to samples.
//
// Between the passes over rows and over columns the spectra of the rows lie in blocks of sixteen columns, row after
// row: what the columns' transforms take as lines side by side. Column 0 holds the real spectra k = 0 as its real and,
// for even widths, k = W / 2 as its imaginary parts.
#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "frame/ownivdep.h"
#include "ownlonelines.h"
#include "ownplanelines.h"
#include "owntables.h"

template <class Value, class RealPlan, class LinePlan> struct OwnPacking {
    int32_t width;
    int32_t height;
    RealPlan rows;
    RealPlan edges; // columns 0 and W / 2
    const LinePlan* columns;
    const float* loneTurns; // of columns, see ownlonelines.h; null where they go sixteen at a time only
    int64_t blockRows;      // of a block of columns; those behind the last one fill up a square
    Value* blocks;
    Value* data; // lines of a pass, and room for their transforms
    Value* spare;
    static constexpr bool hasLoneLines = std::is_same<RealPlan, OwnRealPlan>::value;
};

// Values of a block of columns.
template <class Packing> ptrdiff_t ownBlockValues(const Packing& packing)
{
    return static_cast<ptrdiff_t>(packing.blockRows * OWN_GROUP);
}

// Takes the memory; the plans are there. False: no memory.
template <class Value, class RealPlan, class LinePlan>
[[nodiscard]] bool ownTakeMemory(OwnTransformCaches& caches, OwnPacking<Value, RealPlan, LinePlan>& packing)
{
    int64_t rows = ownRealValues(packing.rows);
    packing.blockRows = ownPadded(packing.height);
    if constexpr (OwnPacking<Value, RealPlan, LinePlan>::hasLoneLines) {
        if (ownGoesAlone(packing.rows, packing.height)) rows = ownLoneValues(*packing.rows.lines);
        if (ownGoesAlone(packing.rows, packing.height % OWN_LANES)) packing.blockRows = packing.height;
    }
    const int64_t columns = std::max(ownRealValues(packing.edges), ownSpareValues(*packing.columns));
    const int64_t lines = std::max(rows, columns) + OWN_LANES * OWN_GROUP; // squares stand out over the last column
    const int64_t blocks = ownPadded(packing.rows.points) * packing.blockRows * 2;
    packing.blocks =
        static_cast<Value*>(ownWorkMemory(caches, (blocks + 2 * lines) * static_cast<int64_t>(sizeof(Value))));
    packing.data = packing.blocks + blocks;
    packing.spare = packing.data + lines;
    return packing.blocks != nullptr;
}

// Moves sixteen columns of sixteen rows of spectra between lines of rows and a block of columns.
template <class Value> void ownTurnSpectra(const Value* from, Value* to)
{
    ownTransposeFrom(from, OWN_GROUP, to, OWN_GROUP);
    ownTransposeFrom(from + OWN_LANES, OWN_GROUP, to + OWN_LANES, OWN_GROUP);
}

// The spectra of rows y to y + 15, of all batches.
template <class Packing, class Plane> auto* ownLoadSpectra(const Packing& packing, const Plane& source, int32_t y)
{
    const auto& plan = packing.rows;
    for (int32_t batch = 0; batch < plan.layout.batches; ++batch)
        ownLoadLines(source, packing.width, packing.height, y + batch * static_cast<int32_t>(OWN_LANES),
                     packing.data + batch * OWN_LANES, plan.layout.step);
    return ownRealToSpectra(plan, packing.data, packing.spare);
}

// A row by itself, where few are left.
template <class Packing, class Plane> void ownLoneRowToBlocks(const Packing& packing, const Plane& source, int32_t y)
{
    const float* values = ownRowInPlace(source, y);
    if (values == nullptr) {
        ownLoadValues(source, 0, y, packing.width, packing.spare);
        values = packing.spare;
    }
    ownRealToLoneSpectrum(packing.rows, values, packing.data, packing.spare);
    const OwnLoneLine line = ownLoneLine(packing.rows.points, packing.data);
    for (ptrdiff_t k = 0; k < packing.rows.points; k += OWN_LANES) {
        float* group = packing.blocks + k / OWN_LANES * ownBlockValues(packing) + y * OWN_GROUP;
        memcpy(group, line.re + k, OWN_LANES * sizeof(float));
        memcpy(group + OWN_LANES, line.im + k, OWN_LANES * sizeof(float));
    }
}

template <class Packing, class Plane>
void ownBlocksToLoneRow(const Packing& packing, const Plane& destination, int32_t y)
{
    const OwnLoneLine line = ownLoneLine(packing.rows.points, packing.data);
    for (ptrdiff_t k = 0; k < packing.rows.points; k += OWN_LANES) {
        const float* group = packing.blocks + k / OWN_LANES * ownBlockValues(packing) + y * OWN_GROUP;
        memcpy(line.re + k, group, OWN_LANES * sizeof(float));
        memcpy(line.im + k, group + OWN_LANES, OWN_LANES * sizeof(float));
    }
    ownLoneSpectrumToReal(packing.rows, packing.data, packing.spare);
    ownStoreValues(destination, 0, y, packing.width, packing.spare);
}

template <class Packing, class Plane> void ownRowsToBlocks(const Packing& packing, const Plane& source)
{
    const auto& plan = packing.rows;
    const int32_t height = packing.height;
    for (int32_t y = 0; y < height;) {
        if constexpr (Packing::hasLoneLines)
            if (ownGoesAlone(plan, height - y)) {
                ownLoneRowToBlocks(packing, source, y++);
                continue;
            }
        auto* spectra = ownLoadSpectra(packing, source, y);
        memset(spectra + plan.layout.batches * plan.points * OWN_GROUP, 0, OWN_LANES * OWN_GROUP * sizeof *spectra);
        for (int32_t batch = 0; batch < plan.layout.batches && y < height; ++batch, y += OWN_LANES) {
            for (int32_t k = 0; k < plan.points; k += OWN_LANES)
                ownTurnSpectra(spectra + k * OWN_GROUP,
                               packing.blocks + k / OWN_LANES * ownBlockValues(packing) + y * OWN_GROUP);
            spectra += plan.points * OWN_GROUP;
        }
    }
}

// The first row of a batch; the second batch is the first one again, where it has no rows.
template <class Packing> int32_t ownBatchRow(const Packing& packing, int32_t y, int32_t batch)
{
    const int32_t row = y + batch * static_cast<int32_t>(OWN_LANES);
    return row < packing.height ? row : y;
}

// The rows of which packing.data holds the spectra, from y on: the row behind them.
template <class Packing, class Plane>
int32_t ownStoreSpectra(const Packing& packing, int32_t y, const Plane& destination)
{
    const auto& plan = packing.rows;
    const auto* lines = ownSpectraToReal(plan, packing.data, packing.spare);
    for (int32_t batch = 0; batch < plan.layout.batches && y < packing.height; ++batch, y += OWN_LANES)
        ownStoreLines(lines + batch * OWN_LANES, plan.layout.step, packing.width, packing.height, y, destination);
    return y;
}

template <class Packing, class Plane> void ownBlocksToRows(const Packing& packing, const Plane& destination)
{
    const auto& plan = packing.rows;
    const int32_t height = packing.height;
    for (int32_t y = 0; y < height;) {
        if constexpr (Packing::hasLoneLines)
            if (ownGoesAlone(plan, height - y)) {
                ownBlocksToLoneRow(packing, destination, y++);
                continue;
            }
        for (int32_t batch = 0; batch < plan.layout.batches; ++batch) {
            const int32_t row = ownBatchRow(packing, y, batch);
            for (int32_t k = 0; k < plan.points; k += OWN_LANES)
                ownTurnSpectra(packing.blocks + k / OWN_LANES * ownBlockValues(packing) + row * OWN_GROUP,
                               packing.data + (batch * plan.points + k) * OWN_GROUP);
        }
        y = ownStoreSpectra(packing, y, destination);
    }
}

// What the parts of a packed spectrum are multiplied by on their way between lines and image.
template <class Value> struct OwnPartFactors {
    Value re;
    Value im;
};

inline float ownTimes(float value, float factor)
{
    return value * factor;
}

inline int32_t ownTimes(int32_t value, int32_t factor)
{
    return static_cast<int32_t>(static_cast<uint32_t>(value) * static_cast<uint32_t>(factor));
}

// Column x of an edge in the packing, k = 0 or k = W / 2.
template <class Packing> int32_t ownEdgeColumn(const Packing& packing, int32_t edge)
{
    return edge == 0 ? 0 : packing.width - 1;
}

template <class Packing> int32_t ownEdgeCount(const Packing& packing)
{
    return packing.width % 2 == 0 ? 2 : 1;
}

// Element i of the real packing of a line in its spectrum: S(0), then real and imaginary parts in turn; S(n / 2), the
// last one of an even length, lies behind S(0).
inline ptrdiff_t ownPackedElement(int32_t i, int32_t n)
{
    if (n % 2 == 0 && i == n - 1) return OWN_LANES;
    return (i + 1) / 2 * OWN_GROUP + (i % 2 == 0 && i > 0 ? OWN_LANES : 0);
}

template <class Value> Value ownElementFactor(int32_t i, const OwnPartFactors<Value>& factors)
{
    return i % 2 == 0 && i > 0 ? factors.im : factors.re;
}

// Columns 0 and W / 2 of the first block, transformed as real lines.
template <class Packing, class Plane, class Value>
void ownStoreEdges(const Packing& packing, const OwnPartFactors<Value>& factors, const Plane& destination)
{
    const auto& plan = packing.edges;
    memset(packing.data, 0, static_cast<size_t>(plan.n * plan.layout.step) * sizeof(Value));
    for (ptrdiff_t y = 0; y < plan.n; ++y)
        for (ptrdiff_t edge = 0; edge < ownEdgeCount(packing); ++edge)
            packing.data[y * plan.layout.step + edge] = packing.blocks[y * OWN_GROUP + edge * OWN_LANES];
    const Value* spectra = ownRealToSpectra(plan, packing.data, packing.spare);
    for (int32_t edge = 0; edge < ownEdgeCount(packing); ++edge)
        for (int32_t y = 0; y < plan.n; ++y) {
            Value value = ownTimes(spectra[ownPackedElement(y, plan.n) + edge], ownElementFactor(y, factors));
            ownStoreValues(destination, ownEdgeColumn(packing, edge), y, 1, &value);
        }
}

template <class Packing, class Plane, class Value>
void ownLoadEdges(const Packing& packing, const OwnPartFactors<Value>& factors, const Plane& source)
{
    const auto& plan = packing.edges;
    memset(packing.data, 0, static_cast<size_t>(plan.points) * plan.layout.batches * OWN_GROUP * sizeof(Value));
    for (int32_t edge = 0; edge < ownEdgeCount(packing); ++edge)
        for (int32_t y = 0; y < plan.n; ++y) {
            Value value;
            ownLoadValues(source, ownEdgeColumn(packing, edge), y, 1, &value);
            packing.data[ownPackedElement(y, plan.n) + edge] = ownTimes(value, ownElementFactor(y, factors));
        }
    const Value* values = ownSpectraToReal(plan, packing.data, packing.spare);
    for (ptrdiff_t y = 0; y < plan.n; ++y)
        for (ptrdiff_t edge = 0; edge < 2; ++edge)
            packing.blocks[y * OWN_GROUP + edge * OWN_LANES] = values[y * plan.layout.step + edge];
}

// Neighbouring blocks whose columns are transformed before rows of them move between blocks and image: so many that
// they stay in the second-level cache, and long pieces of rows are moved. The first block and one that is not full are
// ranges of their own: all columns of the others lie in the image one after the other.
struct OwnBlockRange {
    int32_t first;
    int32_t count;
    bool isInner;
};

constexpr int32_t OWN_MOST_BLOCKS = 16;

template <class Packing> OwnBlockRange ownBlocksFrom(const Packing& packing, int32_t first)
{
    constexpr ptrdiff_t cachedValues = 1 << 17;
    const int32_t all = static_cast<int32_t>(ownPadded(packing.rows.points) / OWN_LANES);
    const int32_t inner = packing.rows.points / static_cast<int32_t>(OWN_LANES) - first;
    if (first == 0 || inner < 1) return { first, all > first ? 1 : 0, false };
    const ptrdiff_t fitting = cachedValues / ownBlockValues(packing);
    const int32_t most = fitting < 1 ? 1 : fitting < OWN_MOST_BLOCKS ? static_cast<int32_t>(fitting) : OWN_MOST_BLOCKS;
    return { first, inner < most ? inner : most, true };
}

// Complex columns of some blocks in the packed image: `n` values of each row from column x on, after `skipped` values,
// which stand for column 0 of the first block.
struct OwnBlockColumns {
    int32_t x;
    int32_t n;
    int32_t skipped;
};

inline OwnBlockColumns ownBlockColumns(const OwnBlockRange& range, int32_t points)
{
    const int32_t lanes = static_cast<int32_t>(OWN_LANES), k = range.first * lanes, skipped = k == 0 ? 2 : 0;
    const int32_t present = points - k < range.count * lanes ? points - k : range.count * lanes;
    return { 2 * k - 1 + skipped, 2 * present - skipped, skipped };
}

template <class Packing> void ownTransformBlocks(const Packing& packing, const OwnBlockRange& range, OwnSign sign)
{
    for (int32_t i = 0; i < range.count; ++i) {
        auto* block = packing.blocks + (range.first + i) * ownBlockValues(packing);
        const auto* result = ownTransformLines(*packing.columns, block, packing.spare, sign);
        if (result != block) memcpy(block, result, static_cast<size_t>(packing.height) * OWN_GROUP * sizeof *block);
    }
}

template <class Packing, class Plane, class Value>
void ownStoreColumns(const Packing& packing, const OwnBlockRange& range, const OwnPartFactors<Value>& factors,
                     const Plane& destination)
{
    const OwnBlockColumns columns = ownBlockColumns(range, packing.rows.points);
    if (columns.n < 1) return;
    ownTransformBlocks(packing, range, OwnSign::MINUS);
    const Value factorRe = factors.re, factorIm = factors.im;
    for (int32_t y = 0; y < packing.height; ++y) {
        alignas(64) Value values[OWN_MOST_BLOCKS * OWN_GROUP];
        Value* const row = range.isInner ? ownRowInPlace(destination, y) : nullptr;
        Value* to = row != nullptr ? row + columns.x : values;
        for (int32_t i = 0; i < range.count; ++i, to += OWN_GROUP) {
            const Value* group = packing.blocks + (range.first + i) * ownBlockValues(packing) + y * OWN_GROUP;
            OWN_IVDEP
            OWN_NOT_UNROLLED
            for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
                to[2 * lane] = ownOneNaN(ownTimes(group[lane], factorRe));
                to[2 * lane + 1] = ownOneNaN(ownTimes(group[OWN_LANES + lane], factorIm));
            }
        }
        if (row == nullptr) ownStoreValues(destination, columns.x, y, columns.n, values + columns.skipped);
    }
}

template <class Packing, class Plane, class Value>
void ownLoadColumns(const Packing& packing, const OwnBlockRange& range, const OwnPartFactors<Value>& factors,
                    const Plane& source)
{
    const OwnBlockColumns columns = ownBlockColumns(range, packing.rows.points);
    const Value factorRe = factors.re, factorIm = factors.im;
    alignas(64) Value values[OWN_MOST_BLOCKS * OWN_GROUP] = {};
    for (int32_t y = 0; y < packing.height; ++y) {
        const Value* const row = range.isInner ? ownRowInPlace(source, y) : nullptr;
        if (row == nullptr && columns.n > 0) ownLoadValues(source, columns.x, y, columns.n, values + columns.skipped);
        const Value* from = row != nullptr ? row + columns.x : values;
        for (int32_t i = 0; i < range.count; ++i, from += OWN_GROUP) {
            Value* group = packing.blocks + (range.first + i) * ownBlockValues(packing) + y * OWN_GROUP;
            OWN_IVDEP
            OWN_NOT_UNROLLED
            for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
                group[lane] = ownTimes(from[2 * lane], factorRe);
                group[OWN_LANES + lane] = ownTimes(from[2 * lane + 1], factorIm);
            }
        }
    }
    if (columns.n > 0) ownTransformBlocks(packing, range, OwnSign::PLUS);
    // Rows that fill up the last sixteen are transformed along with the others.
    const ptrdiff_t used = packing.height * OWN_GROUP;
    for (int32_t i = 0; i < range.count; ++i)
        memset(packing.blocks + (range.first + i) * ownBlockValues(packing) + used, 0,
               static_cast<size_t>(ownBlockValues(packing) - used) * sizeof(Value));
}

// Whole transforms of a plane. A destination may be its source: everything is loaded before anything is stored.
template <class Packing, class Plane, class Value>
void ownPack(const Packing& packing, const Plane& source, const OwnPartFactors<Value>& factors,
             const Plane& destination)
{
    ownRowsToBlocks(packing, source);
    ownStoreEdges(packing, factors, destination);
    for (OwnBlockRange range = ownBlocksFrom(packing, 0); range.count > 0;
         range = ownBlocksFrom(packing, range.first + range.count))
        ownStoreColumns(packing, range, factors, destination);
}

template <class Packing, class Plane, class Value>
void ownUnpack(const Packing& packing, const Plane& source, const OwnPartFactors<Value>& factors,
               const Plane& destination)
{
    for (OwnBlockRange range = ownBlocksFrom(packing, 0); range.count > 0;
         range = ownBlocksFrom(packing, range.first + range.count))
        ownLoadColumns(packing, range, factors, source);
    ownLoadEdges(packing, factors, source);
    ownBlocksToRows(packing, destination);
}
