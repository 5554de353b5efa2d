// SPDX-License-Identifier: BSD-2-Clause
#include "ownlonelines.h"

#include <cstring>
#include <utility>

#include "frame/ownivdep.h"
#include "ownpairs.h"
#include "owntranspose.h"

// Shorter lines aren't worth it, and their buffers too small.
constexpr int32_t ownLeastLonePoints = 128;

static ptrdiff_t ownFirstPassPoints(const OwnLinePlan& plan)
{
    return plan.passes[0].radix * static_cast<ptrdiff_t>(plan.passes[0].second);
}

// Sixteen transforms of the first pass fill the lanes, and so do sixteen neighbours that share a turn in the others.
static bool ownCanGoAlone(const OwnRealPlan& plan)
{
    return plan.layout.batches == 1 && plan.points >= ownLeastLonePoints && plan.lines->inner == nullptr
        && ownFirstPassPoints(*plan.lines) % OWN_LANES == 0;
}

// The turns of the first pass in the order in which its results lie.
static void ownFillLoneTurns(const OwnLinePlan& plan, float* turns)
{
    const OwnPass& pass = plan.passes[0];
    const float* from = pass.turns;
    for (ptrdiff_t group = 0; group < pass.groups; ++group)
        for (ptrdiff_t i = 0; i < pass.radix; ++i)
            for (ptrdiff_t j = 0; j < pass.second; ++j, from += 2) {
                const ptrdiff_t point = group * ownFirstPassPoints(plan) + i + pass.radix * j;
                float* to = turns + point / OWN_LANES * OWN_GROUP + point % OWN_LANES;
                to[0] = from[0];
                to[OWN_LANES] = from[1];
            }
}

bool ownAddLoneLines(OwnTransformCaches& caches, OwnRealPlan& plan)
{
    if (!ownCanGoAlone(plan)) return true;
    const int32_t n = plan.lines->n;
    float* turns = static_cast<float*>(ownTable(caches, OwnTableKind::LONE_LINES, n));
    if (turns == nullptr) {
        turns = static_cast<float*>(ownNewTable(caches, OwnTableKind::LONE_LINES, n,
                                                2 * static_cast<int64_t>(n) * static_cast<int64_t>(sizeof(float))));
        if (turns == nullptr) return false;
        ownFillLoneTurns(*plan.lines, turns);
    }
    plan.loneTurns = turns;
    return true;
}

// Sixteen transforms of the first pass, from `group` on, without their turns: the results of one of them lie in groups
// one after the other. The last transforms may be none of the line's, and so are their results.
static void ownRunLoneTransforms(const OwnPass& pass, const OwnLoneLine& line, ptrdiff_t group, float* to, float* spare)
{
    const ptrdiff_t points = static_cast<ptrdiff_t>(pass.radix) * pass.second;
    float *legs = spare, *results = spare + points * OWN_GROUP;
    for (ptrdiff_t leg = 0; leg < points; ++leg) {
        const ptrdiff_t point = leg * pass.groups + group;
        memcpy(legs + leg * OWN_GROUP, line.re + point, OWN_LANES * sizeof(float));
        memcpy(legs + leg * OWN_GROUP + OWN_LANES, line.im + point, OWN_LANES * sizeof(float));
    }
    ownRunAnyPass({ pass.radix, pass.second, 1, 1, pass.turns, pass.innerTurns }, legs, results, { 0, OWN_LANES });
    for (ptrdiff_t leg = 0; leg < points; leg += OWN_LANES)
        for (const ptrdiff_t part : { ptrdiff_t(0), OWN_LANES })
            ownTransposeTo(results + leg * OWN_GROUP + part, OWN_GROUP, to + 2 * leg + part, 2 * points);
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
    const OwnPass& pass = plan.lines->passes[0];
    const ptrdiff_t groupsOfEach = ownFirstPassPoints(*plan.lines) / OWN_LANES;
    for (ptrdiff_t group = 0; group < pass.groups; group += OWN_LANES) {
        ownRunLoneTransforms(pass, line, group, to + group * groupsOfEach * OWN_GROUP, spare);
        const ptrdiff_t first = group > 0 ? group : 1;
        const ptrdiff_t end = group + OWN_LANES < pass.groups ? group + OWN_LANES : pass.groups;
        const ptrdiff_t start = first * groupsOfEach * OWN_GROUP;
        ownMultiplyGroups(to + start, plan.loneTurns + start, (end - first) * groupsOfEach);
    }
}

// In place, with a negative exponent; with exchanged parts it is a positive one.
static void ownTransformLone(const OwnRealPlan& plan, const OwnLoneLine& line, float* data, float* spare)
{
    ownRunFirstLonePass(plan, line, data, spare);
    for (int32_t i = 1; i < plan.lines->passCount; ++i) {
        OwnPass pass = plan.lines->passes[i];
        pass.run /= static_cast<int32_t>(OWN_LANES);
        ownRunAnyPass(pass, data, spare, { 0, OWN_LANES });
        std::swap(data, spare);
    }
    for (ptrdiff_t point = 0; point < plan.points; point += OWN_LANES, data += OWN_GROUP) {
        memcpy(line.re + point, data, OWN_LANES * sizeof(float));
        memcpy(line.im + point, data + OWN_LANES, OWN_LANES * sizeof(float));
    }
}

using OwnPairStep = void (*)(OwnComplex& first, OwnComplex& last, const float* turns);

// All pairs but the first point and the middle one.
template <OwnPairStep step> static void ownRunPairs(const OwnRealPlan& plan, const OwnLoneLine& line)
{
    float *re = line.re, *im = line.im;
    const float* turns = plan.turns;
    const ptrdiff_t points = plan.points;
    OWN_IVDEP
    for (ptrdiff_t k = 1; k < points / 2; ++k) {
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
    ownTransformLone(plan, line, line.im + points, spare);
    ownSplitFirst(line);
    ownRunPairs<ownUntanglePair>(plan, line);
    line.im[points / 2] = -line.im[points / 2];
}

void ownLoneSpectrumToReal(const OwnRealPlan& plan, float* data, float* spare)
{
    const OwnLoneLine line = ownLoneSpectrum(plan, data);
    const ptrdiff_t points = plan.points;
    ownSplitFirst(line);
    ownRunPairs<ownTanglePair>(plan, line);
    line.re[points / 2] *= 2;
    line.im[points / 2] *= -2;
    ownTransformLone(plan, { line.im, line.re }, line.im + points, spare);
    OWN_IVDEP
    for (ptrdiff_t k = 0; k < points; ++k) {
        spare[2 * k] = line.re[k];
        spare[2 * k + 1] = line.im[k];
    }
}

#include <cstdlib>
int ownMostLone()
{
    static int n = getenv("LONE") ? atoi(getenv("LONE")) : 8;
    return n;
}
