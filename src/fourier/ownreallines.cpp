// SPDX-License-Identifier: BSD-2-Clause
#include "ownreallines.h"

#include "frame/ownivdep.h"
#include "ownangle.h"
#include "ownpairs.h"

// For k from 0 to n / 4.
static const float* ownRealTurns(OwnTransformCaches& caches, int32_t n)
{
    float* turns = static_cast<float*>(ownTable(caches, OwnTableKind::REAL_LINES, n));
    if (turns != nullptr) return turns;
    const int64_t count = n / 4 + 1;
    turns = static_cast<float*>(
        ownNewTable(caches, OwnTableKind::REAL_LINES, n, count * OWN_PAIR_TURNS * static_cast<int64_t>(sizeof(float))));
    if (turns == nullptr) return nullptr;
    for (int64_t k = 0; k < count; ++k) {
        const OwnTurn turn = ownTurn(k, n);
        float* to = turns + k * OWN_PAIR_TURNS;
        to[0] = static_cast<float>(turn.cosine);
        to[1] = static_cast<float>(turn.sine);
        to[2] = static_cast<float>(0.5 * turn.cosine);
        to[3] = static_cast<float>(0.5 - 0.5 * turn.sine);
    }
    return turns;
}

bool ownRealPlan(OwnTransformCaches& caches, int32_t n, OwnRealPlan& plan)
{
    const bool isEven = n % 2 == 0;
    plan.n = n;
    plan.points = n / 2 + (isEven ? 0 : 1);
    plan.layout = isEven ? OwnRealLayout { OWN_LANES, 1 } : OwnRealLayout { OWN_GROUP, 2 };
    plan.lines = ownLinePlan(caches, isEven ? n / 2 : n);
    plan.turns = isEven ? ownRealTurns(caches, n) : nullptr;
    plan.loneTurns = nullptr;
    return plan.lines != nullptr && (plan.turns != nullptr || !isEven);
}

int64_t ownRealValues(const OwnRealPlan& plan)
{
    const int64_t spare = ownSpareValues(*plan.lines),
                  spectra = static_cast<int64_t>(plan.points + 1) * plan.layout.batches * OWN_GROUP;
    return spare > spectra ? spare : spectra;
}

static OwnComplex ownLoadPoint(const float* group)
{
    return { group[0], group[OWN_LANES] };
}

static void ownStorePoint(OwnComplex point, float* group)
{
    group[0] = point.re;
    group[OWN_LANES] = point.im;
}

// S(0) and S(n / 2) from the first point, and the reverse times 2.
static void ownSplitFirst(float* z)
{
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        const OwnComplex first = ownLoadPoint(z + lane);
        ownStorePoint({ first.re + first.im, first.re - first.im }, z + lane);
    }
}

using OwnPairStep = void (*)(OwnComplex& first, OwnComplex& last, const float* turns);

template <OwnPairStep step> static void ownRunPairs(const OwnRealPlan& plan, float* z)
{
    const ptrdiff_t half = plan.n / 2;
    for (ptrdiff_t k = 1; k < half - k; ++k) {
        float *a = z + k * OWN_GROUP, *b = z + (half - k) * OWN_GROUP;
        const float* turns = plan.turns + k * OWN_PAIR_TURNS;
        const float four[OWN_PAIR_TURNS] = { turns[0], turns[1], turns[2], turns[3] };
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            OwnComplex first = ownLoadPoint(a + lane), last = ownLoadPoint(b + lane);
            step(first, last, four);
            ownStorePoint(first, a + lane);
            ownStorePoint(last, b + lane);
        }
    }
}

// From the transform z of pairs of values to the spectrum of the line, in place.
static void ownUntangle(const OwnRealPlan& plan, float* z)
{
    const ptrdiff_t half = plan.n / 2;
    ownSplitFirst(z);
    ownRunPairs<ownUntanglePair>(plan, z);
    if (half % 2 != 0) return;
    float* middle = z + half / 2 * OWN_GROUP + OWN_LANES;
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) middle[lane] = -middle[lane];
}

// The reverse, times 2, for the positive exponent.
static void ownTangle(const OwnRealPlan& plan, float* z)
{
    const ptrdiff_t half = plan.n / 2;
    ownSplitFirst(z);
    ownRunPairs<ownTanglePair>(plan, z);
    if (half % 2 != 0) return;
    float* middle = z + half / 2 * OWN_GROUP;
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        middle[lane] = 2 * middle[lane];
        middle[OWN_LANES + lane] = -2 * middle[OWN_LANES + lane];
    }
}

// Two batches of spectra out of the transform of both as real and imaginary parts.
static void ownSeparate(const OwnRealPlan& plan, const float* z, float* spectra)
{
    float* second = spectra + plan.points * OWN_GROUP;
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        spectra[lane] = z[lane];
        second[lane] = z[OWN_LANES + lane];
        spectra[OWN_LANES + lane] = second[OWN_LANES + lane] = 0;
    }
    for (ptrdiff_t k = 1; k < plan.points; ++k) {
        const float *a = z + k * OWN_GROUP, *b = z + (plan.n - k) * OWN_GROUP;
        float *toA = spectra + k * OWN_GROUP, *toB = second + k * OWN_GROUP;
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            const float aRe = 0.5f * a[lane], aIm = 0.5f * a[OWN_LANES + lane];
            const float bRe = 0.5f * b[lane], bIm = 0.5f * b[OWN_LANES + lane];
            toA[lane] = aRe + bRe;
            toA[OWN_LANES + lane] = aIm - bIm;
            toB[lane] = aIm + bIm;
            toB[OWN_LANES + lane] = bRe - aRe;
        }
    }
}

static void ownJoin(const OwnRealPlan& plan, const float* spectra, float* z)
{
    const float* second = spectra + plan.points * OWN_GROUP;
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        z[lane] = spectra[lane];
        z[OWN_LANES + lane] = second[lane];
    }
    for (ptrdiff_t k = 1; k < plan.points; ++k) {
        const float *a = spectra + k * OWN_GROUP, *b = second + k * OWN_GROUP;
        float *to = z + k * OWN_GROUP, *mirrored = z + (plan.n - k) * OWN_GROUP;
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            const float aRe = a[lane], aIm = a[OWN_LANES + lane], bRe = b[lane], bIm = b[OWN_LANES + lane];
            to[lane] = aRe - bIm;
            to[OWN_LANES + lane] = aIm + bRe;
            mirrored[lane] = aRe + bIm;
            mirrored[OWN_LANES + lane] = bRe - aIm;
        }
    }
}

float* ownRealToSpectra(const OwnRealPlan& plan, float* data, float* spare)
{
    float* z = ownTransformLines(*plan.lines, data, spare, OwnSign::MINUS);
    if (plan.layout.batches == 1) {
        ownUntangle(plan, z);
        return z;
    }
    float* spectra = z == data ? spare : data;
    ownSeparate(plan, z, spectra);
    return spectra;
}

float* ownSpectraToReal(const OwnRealPlan& plan, float* data, float* spare)
{
    if (plan.layout.batches == 1) {
        ownTangle(plan, data);
        return ownTransformLines(*plan.lines, data, spare, OwnSign::PLUS);
    }
    ownJoin(plan, data, spare);
    return ownTransformLines(*plan.lines, spare, data, OwnSign::PLUS);
}
