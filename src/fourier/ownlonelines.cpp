// SPDX-License-Identifier: BSD-2-Clause
#include "ownlonelines.h"

#include <cstring>
#include <utility>

#include "frame/ownivdep.h"
#include "ownpairs.h"
#include "owntranspose.h"

// Shorter lines aren't worth it, and their buffers too small.
constexpr int32_t ownLeastLonePoints = 128;

// The results of one transform of the first pass stay together: a cell of so many groups, whose last lanes may be
// unused. The other passes move whole cells.
static ptrdiff_t ownCellPoints(const OwnLinePlan& plan)
{
    return plan.passes[0].radix * static_cast<ptrdiff_t>(plan.passes[0].second);
}

static ptrdiff_t ownCellGroups(const OwnLinePlan& plan)
{
    return (ownCellPoints(plan) + OWN_LANES - 1) / OWN_LANES;
}

static bool ownCanGoAlone(const OwnRealPlan& plan)
{
    return plan.layout.batches == 1 && plan.points >= ownLeastLonePoints && plan.lines->inner == nullptr
        && plan.lines->passes[0].second > 1;
}

// The turns of the first pass in the order in which its results lie.
static void ownFillLoneTurns(const OwnLinePlan& plan, float* turns)
{
    const OwnPass& pass = plan.passes[0];
    const float* from = pass.turns;
    for (ptrdiff_t group = 0; group < pass.groups; ++group, turns += ownCellGroups(plan) * OWN_GROUP)
        for (ptrdiff_t i = 0; i < pass.radix; ++i)
            for (ptrdiff_t j = 0; j < pass.second; ++j, from += 2) {
                const ptrdiff_t leg = i + pass.radix * j;
                float* to = turns + leg / OWN_LANES * OWN_GROUP + leg % OWN_LANES;
                to[0] = from[0];
                to[OWN_LANES] = from[1];
            }
}

bool ownAddLoneLines(OwnTransformCaches& caches, OwnRealPlan& plan)
{
    if (!ownCanGoAlone(plan)) return true;
    const OwnLinePlan& lines = *plan.lines;
    float* turns = static_cast<float*>(ownTable(caches, OwnTableKind::LONE_LINES, lines.n));
    if (turns == nullptr) {
        const int64_t bytes =
            ownCellGroups(lines) * lines.passes[0].groups * OWN_GROUP * static_cast<int64_t>(sizeof(float));
        turns = static_cast<float*>(ownNewTable(caches, OwnTableKind::LONE_LINES, lines.n, bytes));
        if (turns == nullptr) return false;
        memset(turns, 0, static_cast<size_t>(bytes));
        ownFillLoneTurns(lines, turns);
    }
    plan.loneTurns = turns;
    return true;
}

static void ownCopyLanes(const float* from, float* to)
{
    memcpy(to, from, OWN_LANES * sizeof(float));
}

// Sixteen transforms of the first pass, from `group` on, without their turns. The last ones may be none of the line's.
static void ownRunLoneTransforms(const OwnLinePlan& plan, const OwnLoneLine& line, ptrdiff_t group, float* cells,
                                 float* spare)
{
    const OwnPass& pass = plan.passes[0];
    const ptrdiff_t points = ownCellPoints(plan), groups = ownCellGroups(plan);
    float *legs = spare, *results = spare + groups * OWN_LANES * OWN_GROUP;
    for (ptrdiff_t leg = 0; leg < points; ++leg) {
        ownCopyLanes(line.re + leg * pass.groups + group, legs + leg * OWN_GROUP);
        ownCopyLanes(line.im + leg * pass.groups + group, legs + leg * OWN_GROUP + OWN_LANES);
    }
    ownRunAnyPass({ pass.radix, pass.second, 1, 1, pass.turns, pass.innerTurns }, legs, results, { 0, OWN_LANES });
    for (ptrdiff_t i = 0; i < groups; ++i)
        for (const ptrdiff_t part : { ptrdiff_t(0), OWN_LANES })
            ownTransposeTo(results + i * OWN_LANES * OWN_GROUP + part, OWN_GROUP, cells + i * OWN_GROUP + part,
                           groups * OWN_GROUP);
}

static void ownMultiplyGroups(float* groups, const float* factors, ptrdiff_t count)
{
    for (ptrdiff_t i = 0; i < count; ++i, groups += OWN_GROUP, factors += OWN_GROUP) {
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            const OwnComplex value = OwnComplex { groups[lane], groups[OWN_LANES + lane] }
                * OwnComplex { factors[lane], factors[OWN_LANES + lane] };
            groups[lane] = value.re;
            groups[OWN_LANES + lane] = value.im;
        }
    }
}

// The first transform has no turns, as among sixteen lines: a product with 1 may change the sign of a zero.
static void ownRunFirstLonePass(const OwnRealPlan& plan, const OwnLoneLine& line, float* to, float* spare)
{
    const ptrdiff_t count = plan.lines->passes[0].groups, groups = ownCellGroups(*plan.lines);
    for (ptrdiff_t cell = 0; cell < count; cell += OWN_LANES) {
        ownRunLoneTransforms(*plan.lines, line, cell, to + cell * groups * OWN_GROUP, spare);
        const ptrdiff_t first = cell > 0 ? cell : 1, end = cell + OWN_LANES < count ? cell + OWN_LANES : count;
        const ptrdiff_t start = first * groups * OWN_GROUP;
        ownMultiplyGroups(to + start, plan.loneTurns + start, (end - first) * groups);
    }
}

// Out of cells, one after the other: what stands out over a cell, and over the line, is no point of it.
static void ownLeaveCells(const OwnLinePlan& plan, const float* cells, float* to)
{
    const ptrdiff_t points = ownCellPoints(plan), groups = ownCellGroups(plan);
    for (ptrdiff_t start = 0; start < plan.n; start += points)
        for (ptrdiff_t i = 0; i < groups; ++i, cells += OWN_GROUP) ownCopyLanes(cells, to + start + i * OWN_LANES);
}

// In place, with a negative exponent; with exchanged parts it is a positive one.
static void ownTransformLone(const OwnRealPlan& plan, const OwnLoneLine& line, float* data, float* spare)
{
    const OwnLinePlan& lines = *plan.lines;
    ownRunFirstLonePass(plan, line, data, spare);
    for (int32_t i = 1; i < lines.passCount; ++i) {
        OwnPass pass = lines.passes[i];
        pass.run = static_cast<int32_t>(pass.run / ownCellPoints(lines) * ownCellGroups(lines));
        ownRunAnyPass(pass, data, spare, { 0, OWN_LANES });
        std::swap(data, spare);
    }
    ownLeaveCells(lines, data, line.re);
    ownLeaveCells(lines, data + OWN_LANES, line.im);
}

using OwnPairStep = void (*)(OwnComplex& first, OwnComplex& last, const float* turns);

// All pairs but the first point and the middle one.
template <OwnPairStep step> static void ownRunPairs(const OwnRealPlan& plan, const OwnLoneLine& line)
{
    float *re = line.re, *im = line.im;
    const float* turns = plan.turns;
    const ptrdiff_t points = plan.points;
    OWN_IVDEP
    for (ptrdiff_t k = 1; k < (points + 1) / 2; ++k) {
        OwnComplex first = { re[k], im[k] }, last = { re[points - k], im[points - k] };
        step(first, last, turns + k * OWN_PAIR_TURNS);
        re[k] = first.re;
        im[k] = first.im;
        re[points - k] = last.re;
        im[points - k] = last.im;
    }
}

static void ownSplitFirst(const OwnLoneLine& line)
{
    const float re = line.re[0], im = line.im[0];
    line.re[0] = re + im;
    line.im[0] = re - im;
}

void ownRealToLoneSpectrum(const OwnRealPlan& plan, const float* values, float* data, float* spare)
{
    const OwnLoneLine line = ownLoneSpectrum(plan, data);
    const ptrdiff_t points = plan.points;
    OWN_IVDEP
    for (ptrdiff_t k = 0; k < points; ++k) {
        line.re[k] = values[2 * k];
        line.im[k] = values[2 * k + 1];
    }
    ownTransformLone(plan, line, data + 2 * ownLonePart(plan), spare);
    ownSplitFirst(line);
    ownRunPairs<ownUntanglePair>(plan, line);
    if (points % 2 == 0) line.im[points / 2] = -line.im[points / 2];
    for (float* part : { line.re, line.im }) memset(part + points, 0, OWN_LANES * sizeof(float));
}

void ownLoneSpectrumToReal(const OwnRealPlan& plan, float* data, float* spare)
{
    const OwnLoneLine line = ownLoneSpectrum(plan, data);
    const ptrdiff_t points = plan.points;
    ownSplitFirst(line);
    ownRunPairs<ownTanglePair>(plan, line);
    if (points % 2 == 0) {
        line.re[points / 2] *= 2;
        line.im[points / 2] *= -2;
    }
    ownTransformLone(plan, { line.im, line.re }, data + 2 * ownLonePart(plan), spare);
    OWN_IVDEP
    for (ptrdiff_t k = 0; k < points; ++k) {
        spare[2 * k] = line.re[k];
        spare[2 * k + 1] = line.im[k];
    }
}
