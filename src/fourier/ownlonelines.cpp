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

static bool ownCanGoAlone(const OwnLinePlan& plan)
{
    return plan.n >= ownLeastLonePoints && plan.inner == nullptr && plan.passes[0].second > 1;
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

bool ownLoneTurns(OwnTransformCaches& caches, const OwnLinePlan& plan, const float*& turns)
{
    turns = nullptr;
    if (!ownCanGoAlone(plan)) return true;
    float* table = static_cast<float*>(ownTable(caches, OwnTableKind::LONE_LINES, plan.n));
    if (table == nullptr) {
        const int64_t bytes =
            ownCellGroups(plan) * plan.passes[0].groups * OWN_GROUP * static_cast<int64_t>(sizeof(float));
        table = static_cast<float*>(ownNewTable(caches, OwnTableKind::LONE_LINES, plan.n, bytes));
        if (table == nullptr) return false;
        memset(table, 0, static_cast<size_t>(bytes));
        ownFillLoneTurns(plan, table);
    }
    turns = table;
    return true;
}

int64_t ownLoneValues(const OwnLinePlan& plan)
{
    // Sixteen cells may stand out over the last one. The first pass needs room for two of its steps.
    const int64_t cells = (plan.passes[0].groups + OWN_LANES) * ownCellGroups(plan) * OWN_GROUP;
    const int64_t steps = 2 * ownCellGroups(plan) * OWN_LANES * OWN_GROUP;
    return 2 * ownLonePart(plan.n) + (cells > steps ? cells : steps);
}

bool ownAddLoneLines(OwnTransformCaches& caches, OwnRealPlan& plan)
{
    return plan.layout.batches > 1 || ownLoneTurns(caches, *plan.lines, plan.loneTurns);
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
static void ownRunFirstLonePass(const OwnLinePlan& plan, const float* turns, const OwnLoneLine& line, float* to,
                                float* spare)
{
    const ptrdiff_t count = plan.passes[0].groups, groups = ownCellGroups(plan);
    for (ptrdiff_t cell = 0; cell < count; cell += OWN_LANES) {
        ownRunLoneTransforms(plan, line, cell, to + cell * groups * OWN_GROUP, spare);
        const ptrdiff_t first = cell > 0 ? cell : 1, end = cell + OWN_LANES < count ? cell + OWN_LANES : count;
        const ptrdiff_t start = first * groups * OWN_GROUP;
        ownMultiplyGroups(to + start, turns + start, (end - first) * groups);
    }
}

// Out of cells, one after the other: what a copy leaves behind a cell's points is overwritten by the next cell, or lies
// behind the line.
static void ownLeaveCells(const OwnLinePlan& plan, const float* cells, float* to)
{
    const ptrdiff_t points = ownCellPoints(plan), groups = ownCellGroups(plan);
    for (ptrdiff_t start = 0; start < plan.n; start += points)
        for (ptrdiff_t i = 0; i < groups; ++i, cells += OWN_GROUP) ownCopyLanes(cells, to + start + i * OWN_LANES);
}

void ownTransformLoneLine(const OwnLinePlan& plan, const float* loneTurns, float* data, float* spare, OwnSign sign)
{
    const OwnLoneLine line = ownLoneLine(plan.n, data);
    // Exchanged parts turn the sign around.
    const OwnLoneLine turned = sign == OwnSign::MINUS ? line : OwnLoneLine { line.im, line.re };
    float *from = data + 2 * ownLonePart(plan.n), *to = spare;
    ownRunFirstLonePass(plan, loneTurns, turned, from, to);
    for (int32_t i = 1; i < plan.passCount; ++i) {
        OwnPass pass = plan.passes[i];
        pass.run = static_cast<int32_t>(pass.run / ownCellPoints(plan) * ownCellGroups(plan));
        ownRunAnyPass(pass, from, to, { 0, OWN_LANES });
        std::swap(from, to);
    }
    ownLeaveCells(plan, from, turned.re);
    ownLeaveCells(plan, from + OWN_LANES, turned.im);
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
    const OwnLoneLine line = ownLoneLine(plan.points, data);
    const ptrdiff_t points = plan.points;
    OWN_IVDEP
    for (ptrdiff_t k = 0; k < points; ++k) {
        line.re[k] = values[2 * k];
        line.im[k] = values[2 * k + 1];
    }
    ownTransformLoneLine(*plan.lines, plan.loneTurns, data, spare, OwnSign::MINUS);
    ownSplitFirst(line);
    ownRunPairs<ownUntanglePair>(plan, line);
    if (points % 2 == 0) line.im[points / 2] = -line.im[points / 2];
    for (float* part : { line.re, line.im }) memset(part + points, 0, OWN_LANES * sizeof(float));
}

void ownLoneSpectrumToReal(const OwnRealPlan& plan, float* data, float* spare)
{
    const OwnLoneLine line = ownLoneLine(plan.points, data);
    const ptrdiff_t points = plan.points;
    ownSplitFirst(line);
    ownRunPairs<ownTanglePair>(plan, line);
    if (points % 2 == 0) {
        line.re[points / 2] *= 2;
        line.im[points / 2] *= -2;
    }
    ownTransformLoneLine(*plan.lines, plan.loneTurns, data, spare, OwnSign::PLUS);
    OWN_IVDEP
    for (ptrdiff_t k = 0; k < points; ++k) {
        spare[2 * k] = line.re[k];
        spare[2 * k + 1] = line.im[k];
    }
}
