#include "ownlines.h"

#include <cstring>
#include <utility>

#include "frame/ownbuffer.h"
#include "frame/ownivdep.h"
#include "ownangle.h"
#include "ownbutterfly.h"

// A prime factor up to this goes through a pass of its own, whose cost grows with its square; the convolution of larger
// ones costs like two or three transforms of twice the length.
constexpr int32_t ownLargestRadix = 127;

// Real and imaginary parts of a point, as offsets: exchanging both turns the transform's sign around.
struct OwnParts {
    ptrdiff_t re;
    ptrdiff_t im;
};

template <size_t... I>
inline void ownLoadLegs(OwnPoint (&v)[sizeof...(I)], const float* re, const float* im, ptrdiff_t leg,
                        std::index_sequence<I...>)
{
    ((v[I] = { re[static_cast<ptrdiff_t>(I) * leg], im[static_cast<ptrdiff_t>(I) * leg] }), ...);
}

template <size_t... I>
inline void ownTurnLegs(OwnPoint (&v)[sizeof...(I) + 1], const float* turns, std::index_sequence<I...>)
{
    ((v[I + 1] = v[I + 1] * OwnPoint { turns[2 * I], turns[2 * I + 1] }), ...);
}

template <size_t... I>
inline void ownStoreLegs(const OwnPoint (&v)[sizeof...(I)], float* re, float* im, ptrdiff_t leg,
                         std::index_sequence<I...>)
{
    ((re[static_cast<ptrdiff_t>(I) * leg] = v[I].re), ...);
    ((im[static_cast<ptrdiff_t>(I) * leg] = v[I].im), ...);
}

// The transforms of one group: `run` of them side by side. A group of index 0 has turns of 1, which are left out.
template <int Radix, bool Turned>
static void ownRunGroup(const float* __restrict from, ptrdiff_t fromLeg, float* __restrict to, ptrdiff_t run,
                        const float* __restrict turns, OwnParts parts)
{
    constexpr auto legs = std::make_index_sequence<Radix> {};
    const ptrdiff_t toLeg = run * OWN_GROUP;
    for (ptrdiff_t i = 0; i < run; ++i, from += OWN_GROUP, to += OWN_GROUP) {
        const float *fromRe = from + parts.re, *fromIm = from + parts.im;
        float *toRe = to + parts.re, *toIm = to + parts.im;
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            OwnPoint v[Radix];
            ownLoadLegs(v, fromRe + lane, fromIm + lane, fromLeg, legs);
            ownButterfly(v);
            if constexpr (Turned) ownTurnLegs(v, turns, std::make_index_sequence<Radix - 1> {});
            ownStoreLegs(v, toRe + lane, toIm + lane, toLeg, legs);
        }
    }
}

// Decimation in frequency, sorted as it goes: points group + leg * groups become points group * radix + leg, each of
// them `run` neighbours.
template <int Radix> static void ownRunPass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    const ptrdiff_t run = pass.run, fromStep = run * OWN_GROUP, fromLeg = fromStep * pass.groups;
    ownRunGroup<Radix, false>(from, fromLeg, to, run, nullptr, parts);
    const float* turns = pass.turns;
    for (int32_t group = 1; group < pass.groups; ++group) {
        from += fromStep;
        to += fromStep * Radix;
        turns += 2 * (Radix - 1);
        ownRunGroup<Radix, true>(from, fromLeg, to, run, turns, parts);
    }
}

// Sums and differences of legs that lie opposite each other, in place of both: re, im of the sum, re, im of the
// difference.
static void ownFoldLegs(const float* from, ptrdiff_t fromLeg, int32_t radix, OwnParts parts, float* folded)
{
    for (int32_t leg = 1; leg <= radix / 2; ++leg, folded += 2 * OWN_GROUP) {
        const float *a = from + leg * fromLeg, *b = from + (radix - leg) * fromLeg;
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            folded[lane] = a[parts.re + lane] + b[parts.re + lane];
            folded[OWN_LANES + lane] = a[parts.im + lane] + b[parts.im + lane];
            folded[2 * OWN_LANES + lane] = a[parts.re + lane] - b[parts.re + lane];
            folded[3 * OWN_LANES + lane] = a[parts.im + lane] - b[parts.im + lane];
        }
    }
}

// Results k and radix - k of a direct sum; `factors` holds a cosine and a sine for each pair of legs.
static void ownSumLegs(const float* __restrict first, const float* __restrict folded, const float* __restrict factors,
                       int32_t pairs, OwnParts parts, const OwnPoint (&turns)[2], float* __restrict to,
                       float* __restrict mirrored)
{
    OWN_IVDEP
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        OwnPoint middle = { 0, 0 }, side = { 0, 0 };
        for (ptrdiff_t j = 0; j < pairs; ++j) {
            const float* pair = folded + j * 2 * OWN_GROUP + lane;
            middle = middle + factors[2 * j] * OwnPoint { pair[0], pair[OWN_LANES] };
            side = side + factors[2 * j + 1] * OwnPoint { pair[2 * OWN_LANES], pair[3 * OWN_LANES] };
        }
        middle = middle + OwnPoint { first[parts.re + lane], first[parts.im + lane] };
        OwnPoint a, b;
        ownMirrored(middle, side, a, b);
        a = a * turns[0];
        b = b * turns[1];
        to[parts.re + lane] = a.re;
        to[parts.im + lane] = a.im;
        mirrored[parts.re + lane] = b.re;
        mirrored[parts.im + lane] = b.im;
    }
}

static void ownSumAllLegs(const float* first, const float* folded, int32_t pairs, OwnParts parts, float* to)
{
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        OwnPoint sum = { 0, 0 };
        for (ptrdiff_t j = 0; j < pairs; ++j) {
            const float* pair = folded + j * 2 * OWN_GROUP + lane;
            sum = sum + OwnPoint { pair[0], pair[OWN_LANES] };
        }
        to[parts.re + lane] = sum.re + first[parts.re + lane];
        to[parts.im + lane] = sum.im + first[parts.im + lane];
    }
}

// A pass of any odd prime radix, by direct sums.
static void ownRunDirectPass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    alignas(64) float folded[ownLargestRadix / 2 * 2 * OWN_GROUP];
    const int32_t radix = pass.radix, pairs = radix / 2;
    const ptrdiff_t step = pass.run * OWN_GROUP, fromLeg = step * pass.groups;
    const float* factors = pass.turns + 2 * (radix - 1) * static_cast<ptrdiff_t>(pass.groups);
    for (int32_t group = 0; group < pass.groups; ++group) {
        const float* turns = pass.turns + 2 * (radix - 1) * static_cast<ptrdiff_t>(group);
        for (int32_t i = 0; i < pass.run; ++i) {
            const float* first = from + (static_cast<ptrdiff_t>(group) * pass.run + i) * OWN_GROUP;
            float* result = to + (static_cast<ptrdiff_t>(group) * radix * pass.run + i) * OWN_GROUP;
            ownFoldLegs(first, fromLeg, radix, parts, folded);
            ownSumAllLegs(first, folded, pairs, parts, result);
            for (int32_t k = 1; k <= pairs; ++k) {
                const float *a = turns + 2 * (k - 1), *b = turns + 2 * (radix - k - 1);
                const OwnPoint both[2] = { { a[0], a[1] }, { b[0], b[1] } };
                ownSumLegs(first, folded, factors + 2 * pairs * static_cast<ptrdiff_t>(k - 1), pairs, parts, both,
                           result + k * step, result + (radix - k) * step);
            }
        }
    }
}

static void ownRunAnyPass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    switch (pass.radix) {
    case 2: return ownRunPass<2>(pass, from, to, parts);
    case 3: return ownRunPass<3>(pass, from, to, parts);
    case 4: return ownRunPass<4>(pass, from, to, parts);
    case 5: return ownRunPass<5>(pass, from, to, parts);
    case 7: return ownRunPass<7>(pass, from, to, parts);
    case 8: return ownRunPass<8>(pass, from, to, parts);
    default: return ownRunDirectPass(pass, from, to, parts);
    }
}

// Multiplies each group of `from` by the factor of its index.
static void ownMultiplyLines(const float* from, const float* factors, int32_t n, OwnParts parts, float* to)
{
    for (int32_t i = 0; i < n; ++i, from += OWN_GROUP, to += OWN_GROUP) {
        const float factorRe = factors[2 * i], factorIm = factors[2 * i + 1];
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            const float re = from[parts.re + lane], im = from[parts.im + lane];
            to[parts.re + lane] = re * factorRe - im * factorIm;
            to[parts.im + lane] = re * factorIm + im * factorRe;
        }
    }
}

// Bluestein's way: k m = (k k + m m - (k - m)(k - m)) / 2, so the sum is a convolution between two multiplications.
static float* ownTransformByChirp(const OwnLinePlan& plan, float* data, float* spare, OwnParts parts)
{
    const OwnLinePlan& inner = *plan.inner;
    float* other = spare + inner.n * OWN_GROUP;
    ownMultiplyLines(data, plan.chirp, plan.n, parts, spare);
    memset(spare + plan.n * OWN_GROUP, 0, static_cast<size_t>((inner.n - plan.n) * OWN_GROUP) * sizeof(float));
    const OwnSign sign = parts.re == 0 ? OwnSign::MINUS : OwnSign::PLUS;
    float* spectrum = ownTransformLines(inner, spare, other, sign);
    ownMultiplyLines(spectrum, plan.kernel, inner.n, parts, spectrum);
    float* rest = spectrum == spare ? other : spare;
    const float* convolved =
        ownTransformLines(inner, spectrum, rest, sign == OwnSign::MINUS ? OwnSign::PLUS : OwnSign::MINUS);
    ownMultiplyLines(convolved, plan.chirp, plan.n, parts, data);
    return data;
}

float* ownTransformLines(const OwnLinePlan& plan, float* data, float* spare, OwnSign sign)
{
    const OwnParts parts = sign == OwnSign::MINUS ? OwnParts { 0, OWN_LANES } : OwnParts { OWN_LANES, 0 };
    if (plan.inner != nullptr) return ownTransformByChirp(plan, data, spare, parts);
    for (int32_t i = 0; i < plan.passCount; ++i) {
        ownRunAnyPass(plan.passes[i], data, spare, parts);
        std::swap(data, spare);
    }
    return data;
}

int64_t ownSpareValues(const OwnLinePlan& plan)
{
    return (plan.inner != nullptr ? 2 * static_cast<int64_t>(plan.inner->n) : plan.n) * OWN_GROUP;
}

bool ownEndsInSpare(const OwnLinePlan& plan)
{
    return plan.passCount % 2 != 0; // 0 for a convolution
}

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

static int64_t ownFactorPairs(int32_t radix)
{
    return radix > 8 ? static_cast<int64_t>(radix / 2) * (radix / 2) : 0;
}

static float* ownFillPass(OwnPass& pass, float* turns)
{
    pass.turns = turns;
    for (int32_t group = 0; group < pass.groups; ++group)
        for (int32_t leg = 1; leg < pass.radix; ++leg, turns += 2)
            ownPutTurn(turns, static_cast<int64_t>(group) * leg, static_cast<int64_t>(pass.groups) * pass.radix);
    if (ownFactorPairs(pass.radix) == 0) return turns;
    for (int64_t k = 1; k <= pass.radix / 2; ++k)
        for (int64_t leg = 1; leg <= pass.radix / 2; ++leg, turns += 2) {
            const OwnTurn turn = ownTurn(k * leg, pass.radix);
            turns[0] = static_cast<float>(turn.cosine);
            turns[1] = static_cast<float>(turn.sine);
        }
    return turns;
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

static const OwnLinePlan* ownPassPlan(OwnTransformCaches& caches, int32_t n, const OwnFactors& factors)
{
    int64_t values = 0;
    int32_t rest = n;
    for (int32_t i = 0; i < factors.count; ++i) {
        const int32_t radix = factors.radices[i];
        rest /= radix;
        values += 2 * (static_cast<int64_t>(rest) * (radix - 1) + ownFactorPairs(radix));
    }
    OwnLinePlan* plan = ownNewPlan(caches, n, values);
    if (plan == nullptr) return nullptr;
    plan->passCount = factors.count;
    float* turns = reinterpret_cast<float*>(plan + 1);
    for (int32_t i = 0, run = 1; i < factors.count; ++i) {
        OwnPass& pass = plan->passes[i];
        pass.radix = factors.radices[i];
        pass.run = run;
        run *= pass.radix;
        pass.groups = n / run;
        turns = ownFillPass(pass, turns);
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
    return factors.largest <= ownLargestRadix ? ownPassPlan(caches, n, factors) : ownChirpPlan(caches, n);
}
