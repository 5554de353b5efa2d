/* SPDX-License-Identifier: BSD-2-Clause */
// Real images of a few long columns to packed spectra and back, with the bits of ownpacked.h: the spectra of sixteen
// rows hold sixteen neighbours of each column, and columns are transformed one by one.
#pragma once

#include "ownpacked.h"

using OwnFloatPacking = OwnPacking<float, OwnRealPlan, OwnLinePlan>;

constexpr int32_t OWN_MOST_NARROW = 8;

// Column x of a plane as its first row.
inline OwnFloatPlane ownColumnPlane(const OwnFloatPlane& plane, int32_t x)
{
    OwnFloatPlane column = plane;
    column.view.first += x * plane.view.pixelStep;
    std::swap(column.view.pixelStep, column.view.rowStep);
    return column;
}

inline bool ownIsNarrow(const OwnFloatPacking& packing, const OwnFloatPlane& source, const OwnFloatPlane& destination)
{
    return packing.width <= OWN_MOST_NARROW && packing.loneTurns != nullptr && packing.edges.loneTurns != nullptr
        && ownHasWholeSteps(source.view) && ownHasWholeSteps(destination.view);
}

// Complex column k between the passes. Column 0 holds both edges as its parts.
inline OwnLoneLine ownNarrowColumn(const OwnFloatPacking& packing, int32_t k)
{
    return ownLoneLine(packing.height, packing.blocks + k * 2 * ownLonePart(packing.height));
}

inline void ownRowsToColumns(const OwnFloatPacking& packing, const OwnFloatPlane& source)
{
    const OwnRealPlan& plan = packing.rows;
    for (int32_t y = 0; y < packing.height;) {
        const float* group = ownLoadSpectra(packing, source, y);
        for (int32_t batch = 0; batch < plan.layout.batches && y < packing.height; ++batch, y += OWN_LANES)
            for (int32_t k = 0; k < plan.points; ++k, group += OWN_GROUP) {
                const OwnLoneLine column = ownNarrowColumn(packing, k);
                memcpy(column.re + y, group, OWN_LANES * sizeof(float));
                memcpy(column.im + y, group + OWN_LANES, OWN_LANES * sizeof(float));
            }
    }
}

inline void ownColumnsToRows(const OwnFloatPacking& packing, const OwnFloatPlane& destination)
{
    const OwnRealPlan& plan = packing.rows;
    for (int32_t y = 0; y < packing.height;) {
        float* group = packing.data;
        for (int32_t batch = 0; batch < plan.layout.batches; ++batch) {
            const int32_t row = ownBatchRow(packing, y, batch);
            for (int32_t k = 0; k < plan.points; ++k, group += OWN_GROUP) {
                const OwnLoneLine column = ownNarrowColumn(packing, k);
                memcpy(group, column.re + row, OWN_LANES * sizeof(float));
                memcpy(group + OWN_LANES, column.im + row, OWN_LANES * sizeof(float));
            }
        }
        y = ownStoreSpectra(packing, y, destination);
    }
}

inline void ownScaleValues(float* values, int32_t n, float factor)
{
    for (ptrdiff_t i = 0; i < n; ++i) values[i] *= factor;
}

// The parts of an edge's spectrum, the first point apart, lie in the image in turn.
inline void ownStoreNarrowEdge(const OwnFloatPacking& packing, const float* values,
                               const OwnPartFactors<float>& factors, const OwnFloatPlane& column)
{
    const ptrdiff_t points = packing.edges.points;
    ownRealToLoneSpectrum(packing.edges, values, packing.data, packing.spare);
    const OwnLoneLine spectrum = ownLoneLine(packing.edges.points, packing.data);
    packing.spare[0] = spectrum.re[0] * factors.re;
    packing.spare[2 * points - 1] = spectrum.im[0] * factors.re;
    for (ptrdiff_t k = 1; k < points; ++k) {
        packing.spare[2 * k - 1] = spectrum.re[k] * factors.re;
        packing.spare[2 * k] = spectrum.im[k] * factors.im;
    }
    ownStoreValues(column, 0, 0, packing.height, packing.spare);
}

inline void ownLoadNarrowEdge(const OwnFloatPacking& packing, const OwnFloatPlane& column,
                              const OwnPartFactors<float>& factors, float* values)
{
    const ptrdiff_t points = packing.edges.points;
    const OwnLoneLine spectrum = ownLoneLine(packing.edges.points, packing.data);
    ownLoadValues(column, 0, 0, packing.height, packing.spare);
    spectrum.re[0] = packing.spare[0] * factors.re;
    spectrum.im[0] = packing.spare[2 * points - 1] * factors.re;
    for (ptrdiff_t k = 1; k < points; ++k) {
        spectrum.re[k] = packing.spare[2 * k - 1] * factors.re;
        spectrum.im[k] = packing.spare[2 * k] * factors.im;
    }
    ownLoneSpectrumToReal(packing.edges, packing.data, packing.spare);
    memcpy(values, packing.spare, static_cast<size_t>(packing.height) * sizeof(float));
}

inline void ownPackNarrow(const OwnFloatPacking& packing, const OwnFloatPlane& source,
                          const OwnPartFactors<float>& factors, const OwnFloatPlane& destination)
{
    const int32_t height = packing.height;
    ownRowsToColumns(packing, source);
    for (int32_t edge = 0; edge < ownEdgeCount(packing); ++edge) {
        const OwnLoneLine edges = ownNarrowColumn(packing, 0);
        ownStoreNarrowEdge(packing, edge == 0 ? edges.re : edges.im, factors,
                           ownColumnPlane(destination, ownEdgeColumn(packing, edge)));
    }
    const OwnLoneLine line = ownLoneLine(height, packing.data);
    for (int32_t k = 1; k < packing.rows.points; ++k) {
        memcpy(packing.data, ownNarrowColumn(packing, k).re,
               static_cast<size_t>(2 * ownLonePart(height)) * sizeof(float));
        ownTransformLoneLine(*packing.columns, packing.loneTurns, packing.data, packing.spare, OwnSign::MINUS);
        ownScaleValues(line.re, height, factors.re);
        ownScaleValues(line.im, height, factors.im);
        ownStoreValues(ownColumnPlane(destination, 2 * k - 1), 0, 0, height, line.re);
        ownStoreValues(ownColumnPlane(destination, 2 * k), 0, 0, height, line.im);
    }
}

inline void ownUnpackNarrow(const OwnFloatPacking& packing, const OwnFloatPlane& source,
                            const OwnPartFactors<float>& factors, const OwnFloatPlane& destination)
{
    const int32_t height = packing.height;
    const size_t columnBytes = static_cast<size_t>(2 * ownLonePart(height)) * sizeof(float);
    const OwnLoneLine edges = ownNarrowColumn(packing, 0), line = ownLoneLine(height, packing.data);
    memset(edges.re, 0, columnBytes);
    for (int32_t edge = 0; edge < ownEdgeCount(packing); ++edge)
        ownLoadNarrowEdge(packing, ownColumnPlane(source, ownEdgeColumn(packing, edge)), factors,
                          edge == 0 ? edges.re : edges.im);
    for (int32_t k = 1; k < packing.rows.points; ++k) {
        ownLoadValues(ownColumnPlane(source, 2 * k - 1), 0, 0, height, line.re);
        ownLoadValues(ownColumnPlane(source, 2 * k), 0, 0, height, line.im);
        ownScaleValues(line.re, height, factors.re);
        ownScaleValues(line.im, height, factors.im);
        ownTransformLoneLine(*packing.columns, packing.loneTurns, packing.data, packing.spare, OwnSign::PLUS);
        // Rows that fill up the last sixteen are transformed along with the others.
        for (float* part : { line.re, line.im }) memset(part + height, 0, OWN_LANES * sizeof(float));
        memcpy(ownNarrowColumn(packing, k).re, packing.data, columnBytes);
    }
    ownColumnsToRows(packing, destination);
}
