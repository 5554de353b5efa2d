// SPDX-License-Identifier: BSD-2-Clause
#include "owncosinelines.h"

#include <cmath>
#include <cstring>

#include "frame/ownivdep.h"
#include "ownangle.h"

// The square root of 1 / n, then for k from 1 to points - 1 cosine and sine of pi k / (2 n), times the square root of 2
// / n.
static const float* ownCosineTurns(OwnTransformCaches& caches, int32_t n, int32_t points)
{
    float* turns = static_cast<float*>(ownTable(caches, OwnTableKind::COSINE_LINES, n));
    if (turns != nullptr) return turns;
    turns = static_cast<float*>(
        ownNewTable(caches, OwnTableKind::COSINE_LINES, n, points * 2 * static_cast<int64_t>(sizeof(float))));
    if (turns == nullptr) return nullptr;
    turns[0] = static_cast<float>(sqrt(1.0 / n));
    const double scale = sqrt(2.0 / n);
    for (int64_t k = 1; k < points; ++k) {
        const OwnTurn turn = ownTurn(k, 4 * static_cast<int64_t>(n));
        turns[2 * k] = static_cast<float>(scale * turn.cosine);
        turns[2 * k + 1] = static_cast<float>(scale * turn.sine);
    }
    return turns;
}

bool ownCosinePlan(OwnTransformCaches& caches, int32_t n, OwnCosinePlan& plan)
{
    if (!ownRealPlan(caches, n, plan.real)) return false;
    plan.turns = ownCosineTurns(caches, n, plan.real.points);
    return plan.turns != nullptr;
}

static void ownCopyLine(const float* from, float* to)
{
    memcpy(to, from, OWN_LANES * sizeof(float));
}

// Value x of a line is value x / 2 of the line that is transformed, counted from its start for even and from its end
// for odd x.
static ptrdiff_t ownSortedPlace(ptrdiff_t x, ptrdiff_t n)
{
    return x % 2 == 0 ? x / 2 : n - 1 - x / 2;
}

// Two mirrored results, or two mirrored points of the spectrum.
static void ownTurnPair(const float* a, const float* b, float cosine, float sine, float* toA, float* toB)
{
    OWN_IVDEP
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        const float valueA = a[lane], valueB = b[lane];
        toA[lane] = valueA * cosine + valueB * sine;
        toB[lane] = valueA * sine - valueB * cosine;
    }
}

static void ownScaleLine(const float* from, float factor, float* to)
{
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) to[lane] = from[lane] * factor;
}

// S(k) = R + i I turned back by a quarter of the k-th part of a half turn holds results k and n - k.
static void ownSpectrumToCosines(const OwnCosinePlan& plan, const float* spectrum, float* to)
{
    const ptrdiff_t n = plan.real.n;
    ownScaleLine(spectrum, plan.turns[0], to);
    if (n % 2 == 0) ownScaleLine(spectrum + OWN_LANES, plan.turns[0], to + n / 2 * OWN_LANES);
    for (ptrdiff_t k = 1; k < plan.real.points; ++k) {
        const float* group = spectrum + k * OWN_GROUP;
        ownTurnPair(group, group + OWN_LANES, plan.turns[2 * k], plan.turns[2 * k + 1], to + k * OWN_LANES,
                    to + (n - k) * OWN_LANES);
    }
}

static void ownCosinesToSpectrum(const OwnCosinePlan& plan, const float* from, float* spectrum)
{
    const ptrdiff_t n = plan.real.n;
    ownScaleLine(from, plan.turns[0], spectrum);
    ownScaleLine(from + n / 2 * OWN_LANES, n % 2 == 0 ? plan.turns[0] : 0, spectrum + OWN_LANES);
    for (ptrdiff_t k = 1; k < plan.real.points; ++k) {
        float* group = spectrum + k * OWN_GROUP;
        ownTurnPair(from + k * OWN_LANES, from + (n - k) * OWN_LANES, 0.5f * plan.turns[2 * k],
                    0.5f * plan.turns[2 * k + 1], group, group + OWN_LANES);
    }
}

float* ownCosineForward(const OwnCosinePlan& plan, const float* const* from, float* first, float* second)
{
    const OwnRealPlan& real = plan.real;
    for (ptrdiff_t batch = 0; batch < real.layout.batches; ++batch)
        for (ptrdiff_t x = 0; x < real.n; ++x)
            ownCopyLine(from[batch] + x * OWN_LANES,
                        second + ownSortedPlace(x, real.n) * real.layout.step + batch * OWN_LANES);
    const float* spectra = ownRealToSpectra(real, second, first);
    float* result = spectra == first ? second : first;
    for (ptrdiff_t batch = 0; batch < real.layout.batches; ++batch)
        ownSpectrumToCosines(plan, spectra + batch * real.points * OWN_GROUP, result + batch * real.n * OWN_LANES);
    return result;
}

float* ownCosineBackward(const OwnCosinePlan& plan, const float* const* from, float* first, float* second)
{
    const OwnRealPlan& real = plan.real;
    for (ptrdiff_t batch = 0; batch < real.layout.batches; ++batch)
        ownCosinesToSpectrum(plan, from[batch], second + batch * real.points * OWN_GROUP);
    const float* sorted = ownSpectraToReal(real, second, first);
    float* result = sorted == first ? second : first;
    for (ptrdiff_t batch = 0; batch < real.layout.batches; ++batch)
        for (ptrdiff_t x = 0; x < real.n; ++x)
            ownCopyLine(sorted + ownSortedPlace(x, real.n) * real.layout.step + batch * OWN_LANES,
                        result + (batch * real.n + x) * OWN_LANES);
    return result;
}

void ownLoneCosineForward(const OwnCosinePlan& plan, const float* values, float* first, float* second)
{
    const ptrdiff_t n = plan.real.n, half = n / 2;
    const float* turns = plan.turns;
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < half; ++x) {
        first[x] = values[2 * x];
        first[n - 1 - x] = values[2 * x + 1];
    }
    ownRealToLoneSpectrum(plan.real, first, second, first);
    const OwnLoneLine spectrum = ownLoneLine(plan.real.points, second);
    first[0] = spectrum.re[0] * turns[0];
    first[half] = spectrum.im[0] * turns[0];
    OWN_IVDEP
    for (ptrdiff_t k = 1; k < half; ++k) {
        const float re = spectrum.re[k], im = spectrum.im[k], cosine = turns[2 * k], sine = turns[2 * k + 1];
        first[k] = re * cosine + im * sine;
        first[n - k] = re * sine - im * cosine;
    }
}

void ownLoneCosineBackward(const OwnCosinePlan& plan, const float* values, float* first, float* second)
{
    const ptrdiff_t n = plan.real.n, half = n / 2;
    const float* turns = plan.turns;
    const OwnLoneLine spectrum = ownLoneLine(plan.real.points, first);
    spectrum.re[0] = values[0] * turns[0];
    spectrum.im[0] = values[half] * turns[0];
    OWN_IVDEP
    for (ptrdiff_t k = 1; k < half; ++k) {
        const float a = values[k], b = values[n - k], cosine = 0.5f * turns[2 * k], sine = 0.5f * turns[2 * k + 1];
        spectrum.re[k] = a * cosine + b * sine;
        spectrum.im[k] = a * sine - b * cosine;
    }
    ownLoneSpectrumToReal(plan.real, first, second);
    OWN_IVDEP
    for (ptrdiff_t x = 0; x < half; ++x) {
        first[2 * x] = second[x];
        first[2 * x + 1] = second[n - 1 - x];
    }
}
