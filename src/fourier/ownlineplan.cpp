// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownbuffer.h"
#include "ownangle.h"
#include "ownlines.h"

// The radices of a length's passes; `largest` is its largest prime factor.
struct OwnFactors {
    int32_t count;
    int32_t radices[32];
    int32_t largest;
};

static void ownTakeFactor(OwnFactors& factors, int32_t& n, int32_t radix)
{
    factors.radices[factors.count++] = radix;
    n /= radix;
    const int32_t prime = radix % 2 == 0 ? 2 : radix;
    if (factors.largest < prime) factors.largest = prime;
}

static OwnFactors ownFactors(int32_t n)
{
    OwnFactors factors = {};
    while (n % 8 == 0 && n % 32 != 16) ownTakeFactor(factors, n, 8);
    while (n % 4 == 0) ownTakeFactor(factors, n, 4);
    if (n % 2 == 0) ownTakeFactor(factors, n, 2);
    for (int32_t prime = 3; prime <= n / prime; prime += 2)
        while (n % prime == 0) ownTakeFactor(factors, n, prime);
    if (n > 1) ownTakeFactor(factors, n, n);
    return factors;
}

// The next length from n on with no prime factor above 5.
static int32_t ownSmoothLength(int32_t n)
{
    for (;; ++n)
        if (ownFactors(n).largest <= 5) return n;
}

static void ownPutTurn(float* to, int64_t k, int64_t n)
{
    const OwnTurn turn = ownTurn(k, n);
    to[0] = static_cast<float>(turn.cosine);
    to[1] = static_cast<float>(-turn.sine);
}

// Values of a pass's tables.
static int64_t ownTurnValues(const OwnPass& pass)
{
    return 2 * static_cast<int64_t>(pass.groups) * (pass.second > 1 ? pass.radix * pass.second : pass.radix - 1);
}

static int64_t ownInnerValues(const OwnPass& pass)
{
    if (pass.radix > OWN_LARGEST_BUTTERFLY) return 2 * static_cast<int64_t>(pass.radix / 2) * (pass.radix / 2);
    return 2 * static_cast<int64_t>(pass.radix - 1) * (pass.second - 1);
}

// In the order in which the pass needs them: results i + radix * j, j within i; without the first one in a pass of one
// step.
static void ownFillTurns(const OwnPass& pass, float* turns)
{
    const int64_t points = static_cast<int64_t>(pass.radix) * pass.second, n = pass.groups * points;
    for (int64_t group = 0; group < pass.groups; ++group)
        for (int64_t i = pass.second > 1 ? 0 : 1; i < pass.radix; ++i)
            for (int64_t j = 0; j < pass.second; ++j, turns += 2) ownPutTurn(turns, group * (i + pass.radix * j), n);
}

static void ownFillInnerTurns(const OwnPass& pass, float* turns)
{
    if (pass.radix > OWN_LARGEST_BUTTERFLY) {
        for (int64_t k = 1; k <= pass.radix / 2; ++k)
            for (int64_t leg = 1; leg <= pass.radix / 2; ++leg, turns += 2) ownPutTurn(turns, -k * leg, pass.radix);
        return;
    }
    for (int64_t j = 1; j < pass.second; ++j)
        for (int64_t i = 1; i < pass.radix; ++i, turns += 2) ownPutTurn(turns, i * j, pass.radix * pass.second);
}

static OwnLinePlan* ownNewPlan(OwnTransformCaches& caches, int32_t n, int64_t values)
{
    const int64_t bytes = static_cast<int64_t>(sizeof(OwnLinePlan)) + values * static_cast<int64_t>(sizeof(float));
    OwnLinePlan* plan = static_cast<OwnLinePlan*>(ownNewTable(caches, OwnTableKind::LINES, n, bytes));
    if (plan == nullptr) return nullptr;
    *plan = {};
    plan->n = n;
    return plan;
}

// Two neighbouring radices with butterflies share a pass.
static int32_t ownListPasses(int32_t n, const OwnFactors& factors, OwnPass (&passes)[32])
{
    int32_t count = 0;
    for (int32_t i = 0, run = 1; i < factors.count; ++i, ++count) {
        OwnPass& pass = passes[count];
        pass.radix = factors.radices[i];
        pass.second = 1;
        if (i + 1 < factors.count && factors.radices[i] <= OWN_LARGEST_BUTTERFLY
            && factors.radices[i + 1] <= OWN_LARGEST_BUTTERFLY)
            pass.second = factors.radices[++i];
        pass.run = run;
        run *= pass.radix * pass.second;
        pass.groups = n / run;
    }
    return count;
}

static const OwnLinePlan* ownPassPlan(OwnTransformCaches& caches, int32_t n, const OwnFactors& factors)
{
    OwnPass passes[32] = {};
    const int32_t count = ownListPasses(n, factors, passes);
    int64_t values = 0;
    for (int32_t i = 0; i < count; ++i) values += ownTurnValues(passes[i]) + ownInnerValues(passes[i]);
    OwnLinePlan* plan = ownNewPlan(caches, n, values);
    if (plan == nullptr) return nullptr;
    plan->passCount = count;
    float* turns = reinterpret_cast<float*>(plan + 1);
    for (int32_t i = 0; i < count; ++i) {
        OwnPass& pass = passes[i];
        pass.turns = turns;
        ownFillTurns(pass, turns);
        turns += ownTurnValues(pass);
        pass.innerTurns = turns;
        ownFillInnerTurns(pass, turns);
        turns += ownInnerValues(pass);
        plan->passes[i] = pass;
    }
    return plan;
}

// Transform of `count` points `step` apart by its factors, in double: for the kernels of convolutions, computed once.
static void ownTransformExactly(const OwnTurn* from, int32_t step, int32_t count, const OwnTurn* turns, int32_t n,
                                OwnTurn* to)
{
    if (count == 1) {
        *to = *from;
        return;
    }
    const int32_t radix = count % 2 == 0 ? 2 : count % 3 == 0 ? 3 : 5, part = count / radix;
    for (int32_t leg = 0; leg < radix; ++leg)
        ownTransformExactly(from + leg * step, step * radix, part, turns, n, to + leg * part);
    for (int32_t i = 0; i < part; ++i) {
        OwnTurn legs[5];
        for (int32_t leg = 0; leg < radix; ++leg) legs[leg] = to[leg * part + i];
        for (int32_t k = 0; k < radix; ++k) {
            OwnTurn sum = { 0, 0 };
            for (int32_t leg = 0; leg < radix; ++leg) {
                const OwnTurn& turn = turns[static_cast<int64_t>(leg) * (k * part + i) % count * (n / count)];
                sum.cosine += legs[leg].cosine * turn.cosine + legs[leg].sine * turn.sine;
                sum.sine += legs[leg].sine * turn.cosine - legs[leg].cosine * turn.sine;
            }
            to[k * part + i] = sum;
        }
    }
}

// The conjugate chirp, even around 0, transformed and divided by the length.
static bool ownFillKernel(int32_t n, int32_t length, float* kernel)
{
    const OwnBuffer<OwnTurn> points = ownBuffer<OwnTurn>(3 * static_cast<int64_t>(length));
    if (points == nullptr) return false;
    OwnTurn *chirp = points.get(), *turns = chirp + length, *spectrum = turns + length;
    for (int32_t i = 0; i < length; ++i) {
        turns[i] = ownTurn(i, length);
        chirp[i] = { 0, 0 };
    }
    for (int64_t i = 0; i < n; ++i) {
        chirp[i] = ownTurn(i * i, 2 * static_cast<int64_t>(n));
        if (i > 0) chirp[length - i] = chirp[i];
    }
    ownTransformExactly(chirp, 1, length, turns, length, spectrum);
    for (int32_t i = 0; i < length; ++i) {
        kernel[2 * i] = static_cast<float>(spectrum[i].cosine / length);
        kernel[2 * i + 1] = static_cast<float>(spectrum[i].sine / length);
    }
    return true;
}

static const OwnLinePlan* ownChirpPlan(OwnTransformCaches& caches, int32_t n)
{
    const OwnLinePlan* inner = ownLinePlan(caches, ownSmoothLength(2 * n - 1));
    if (inner == nullptr) return nullptr;
    OwnLinePlan* plan = ownNewPlan(caches, n, 2 * (static_cast<int64_t>(n) + inner->n));
    if (plan == nullptr) return nullptr;
    float *chirp = reinterpret_cast<float*>(plan + 1), *kernel = chirp + 2 * static_cast<ptrdiff_t>(n);
    plan->inner = inner;
    plan->chirp = chirp;
    plan->kernel = kernel;
    for (int64_t i = 0; i < n; ++i) ownPutTurn(chirp + 2 * i, i * i, 2 * static_cast<int64_t>(n));
    return ownFillKernel(n, inner->n, kernel) ? plan : nullptr;
}

const OwnLinePlan* ownLinePlan(OwnTransformCaches& caches, int32_t n)
{
    const void* table = ownTable(caches, OwnTableKind::LINES, n);
    if (table != nullptr) return static_cast<const OwnLinePlan*>(table);
    const OwnFactors factors = ownFactors(n);
    return factors.largest <= OWN_LARGEST_RADIX ? ownPassPlan(caches, n, factors) : ownChirpPlan(caches, n);
}
