// SPDX-License-Identifier: BSD-2-Clause
#include "ownlines.h"

#include <cstring>
#include <utility>

#include "frame/ownivdep.h"
#include "ownbutterfly.h"

template <size_t... I>
inline void ownLoadLegs(OwnComplex (&v)[sizeof...(I)], const float* re, const float* im, ptrdiff_t leg,
                        std::index_sequence<I...>)
{
    ((v[I] = { re[static_cast<ptrdiff_t>(I) * leg], im[static_cast<ptrdiff_t>(I) * leg] }), ...);
}

template <size_t... I> inline void ownTurnLegs(OwnComplex* v, const float* turns, std::index_sequence<I...>)
{
    ((v[I] = v[I] * OwnComplex { turns[2 * I], turns[2 * I + 1] }), ...);
}

template <size_t... I>
inline void ownStoreLegs(const OwnComplex (&v)[sizeof...(I)], float* re, float* im, ptrdiff_t leg,
                         std::index_sequence<I...>)
{
    ((re[static_cast<ptrdiff_t>(I) * leg] = v[I].re), ...);
    ((im[static_cast<ptrdiff_t>(I) * leg] = v[I].im), ...);
}

// Values from a point of a transform to the next one, and from a transform to the next one.
struct OwnStride {
    ptrdiff_t leg;
    ptrdiff_t next;
};

enum class OwnTurned { NONE, OTHERS, ALL }; // OTHERS: all results but the first one

// `count` transforms, each with turns of its own or, where turnStep is 0, all with the same.
template <int Radix, OwnTurned turned>
static void ownRunSteps(const float* __restrict from, OwnStride fromStride, float* __restrict to, OwnStride toStride,
                        ptrdiff_t count, const float* __restrict turns, ptrdiff_t turnStep, OwnParts parts)
{
    constexpr auto legs = std::make_index_sequence<Radix> {};
    for (ptrdiff_t i = 0; i < count; ++i, from += fromStride.next, to += toStride.next, turns += turnStep) {
        const float *fromRe = from + parts.re, *fromIm = from + parts.im;
        float *toRe = to + parts.re, *toIm = to + parts.im;
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            OwnComplex v[Radix];
            ownLoadLegs(v, fromRe + lane, fromIm + lane, fromStride.leg, legs);
            ownButterfly(v);
            if constexpr (turned == OwnTurned::OTHERS)
                ownTurnLegs(v + 1, turns, std::make_index_sequence<Radix - 1> {});
            if constexpr (turned == OwnTurned::ALL) ownTurnLegs(v, turns, legs);
            ownStoreLegs(v, toRe + lane, toIm + lane, toStride.leg, legs);
        }
    }
}

using OwnSteps = void (*)(const float* from, OwnStride fromStride, float* to, OwnStride toStride, ptrdiff_t count,
                          const float* turns, ptrdiff_t turnStep, OwnParts parts);

template <OwnTurned turned> static OwnSteps ownStepsOf(int32_t radix)
{
    switch (radix) {
    case 2: return ownRunSteps<2, turned>;
    case 3: return ownRunSteps<3, turned>;
    case 4: return ownRunSteps<4, turned>;
    case 5: return ownRunSteps<5, turned>;
    case 7: return ownRunSteps<7, turned>;
    default: return ownRunSteps<OWN_LARGEST_BUTTERFLY, turned>;
    }
}

// Decimation in frequency, sorted as it goes: points group + leg * groups become points group * radix + leg, each of
// them `run` neighbours. The turns of group 0 are 1.
static void ownRunPass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    const ptrdiff_t step = pass.run * OWN_GROUP, turnStep = 2 * (pass.radix - 1);
    const OwnStride fromStride = { step * pass.groups, OWN_GROUP }, toStride = { step, OWN_GROUP };
    const OwnSteps plain = ownStepsOf<OwnTurned::NONE>(pass.radix), turned = ownStepsOf<OwnTurned::OTHERS>(pass.radix);
    for (ptrdiff_t group = 0; group < pass.groups; ++group)
        (group == 0 ? plain : turned)(from + group * step, fromStride, to + group * step * pass.radix, toStride,
                                      pass.run, pass.turns + group * turnStep, 0, parts);
}

// The same in two steps: leg second * i + j becomes leg i + radix * j.
static void ownRunDoublePass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    alignas(64) float between[OWN_LARGEST_BUTTERFLY * OWN_LARGEST_BUTTERFLY * OWN_GROUP];
    const ptrdiff_t radix = pass.radix, second = pass.second, points = radix * second;
    const ptrdiff_t step = pass.run * OWN_GROUP, leg = step * pass.groups;
    const OwnStride fromStride = { second * leg, leg }, toStride = { radix * step, step };
    const OwnStride writeStride = { second * OWN_GROUP, OWN_GROUP }, readStride = { OWN_GROUP, second * OWN_GROUP };
    const OwnSteps firstPlain = ownStepsOf<OwnTurned::NONE>(pass.radix);
    const OwnSteps firstTurned = ownStepsOf<OwnTurned::OTHERS>(pass.radix);
    const OwnSteps lastPlain = ownStepsOf<OwnTurned::NONE>(pass.second);
    const OwnSteps lastTurned = ownStepsOf<OwnTurned::ALL>(pass.second);
    for (ptrdiff_t group = 0; group < pass.groups; ++group) {
        const float* turns = pass.turns + 2 * points * group;
        for (ptrdiff_t i = 0; i < pass.run; ++i) {
            const float* start = from + group * step + i * OWN_GROUP;
            float* result = to + group * points * step + i * OWN_GROUP;
            firstPlain(start, fromStride, between, writeStride, 1, nullptr, 0, parts);
            firstTurned(start + leg, fromStride, between + OWN_GROUP, writeStride, second - 1, pass.innerTurns,
                        2 * (radix - 1), parts);
            (group == 0 ? lastPlain : lastTurned)(between, readStride, result, toStride, radix, turns, 2 * second,
                                                  parts);
        }
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
                       int32_t pairs, OwnParts parts, const OwnComplex (&turns)[2], float* __restrict to,
                       float* __restrict mirrored)
{
    OWN_IVDEP
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        OwnComplex middle = { 0, 0 }, side = { 0, 0 };
        for (ptrdiff_t j = 0; j < pairs; ++j) {
            const float* pair = folded + j * 2 * OWN_GROUP + lane;
            middle = middle + factors[2 * j] * OwnComplex { pair[0], pair[OWN_LANES] };
            side = side + factors[2 * j + 1] * OwnComplex { pair[2 * OWN_LANES], pair[3 * OWN_LANES] };
        }
        middle = middle + OwnComplex { first[parts.re + lane], first[parts.im + lane] };
        OwnComplex a, b;
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
        OwnComplex sum = { 0, 0 };
        for (ptrdiff_t j = 0; j < pairs; ++j) {
            const float* pair = folded + j * 2 * OWN_GROUP + lane;
            sum = sum + OwnComplex { pair[0], pair[OWN_LANES] };
        }
        to[parts.re + lane] = sum.re + first[parts.re + lane];
        to[parts.im + lane] = sum.im + first[parts.im + lane];
    }
}

// A pass of any odd prime radix, by direct sums.
static void ownRunDirectPass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    alignas(64) float folded[OWN_LARGEST_RADIX / 2 * 2 * OWN_GROUP];
    const int32_t radix = pass.radix, pairs = radix / 2;
    const ptrdiff_t step = pass.run * OWN_GROUP, fromLeg = step * pass.groups;
    for (int32_t group = 0; group < pass.groups; ++group) {
        const float* turns = pass.turns + 2 * (radix - 1) * static_cast<ptrdiff_t>(group);
        for (int32_t i = 0; i < pass.run; ++i) {
            const float* first = from + (static_cast<ptrdiff_t>(group) * pass.run + i) * OWN_GROUP;
            float* result = to + (static_cast<ptrdiff_t>(group) * radix * pass.run + i) * OWN_GROUP;
            ownFoldLegs(first, fromLeg, radix, parts, folded);
            ownSumAllLegs(first, folded, pairs, parts, result);
            for (int32_t k = 1; k <= pairs; ++k) {
                const float *a = turns + 2 * (k - 1), *b = turns + 2 * (radix - k - 1);
                const OwnComplex both[2] = { { a[0], a[1] }, { b[0], b[1] } };
                ownSumLegs(first, folded, pass.innerTurns + 2 * pairs * static_cast<ptrdiff_t>(k - 1), pairs, parts,
                           both, result + k * step, result + (radix - k) * step);
            }
        }
    }
}

void ownRunAnyPass(const OwnPass& pass, const float* from, float* to, OwnParts parts)
{
    if (pass.radix > OWN_LARGEST_BUTTERFLY) return ownRunDirectPass(pass, from, to, parts);
    if (pass.second > 1) return ownRunDoublePass(pass, from, to, parts);
    ownRunPass(pass, from, to, parts);
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
