// SPDX-License-Identifier: BSD-2-Clause
#include "ownfixedlines.h"

#include <algorithm>
#include <cstring>

#include "frame/ownivdep.h"
#include "ownangle.h"

static int32_t ownAdd(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

static int32_t ownLess(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// x t + y u over 2^14, x and y without their lowest bits: halves are multiplied apart, and one shift ends the sum.
static int32_t ownDot(int32_t x, int32_t t, int32_t y, int32_t u)
{
    const uint32_t high = static_cast<uint32_t>((x >> 16) * t) + static_cast<uint32_t>((y >> 16) * u);
    const int32_t low = ((x & 0xFFFF) >> 1) * t + ((y & 0xFFFF) >> 1) * u;
    return static_cast<int32_t>(high * 4 + static_cast<uint32_t>(low >> 13));
}

// The square root of 1/2.
static int32_t ownHalved(int32_t x)
{
    return ownDot(x, 11585, 0, 0);
}

struct OwnFixedPoint {
    int32_t re;
    int32_t im;
};

static OwnFixedPoint operator+(OwnFixedPoint a, OwnFixedPoint b)
{
    return { ownAdd(a.re, b.re), ownAdd(a.im, b.im) };
}

static OwnFixedPoint operator-(OwnFixedPoint a, OwnFixedPoint b)
{
    return { ownLess(a.re, b.re), ownLess(a.im, b.im) };
}

// Times cosine - i sine.
static OwnFixedPoint operator*(OwnFixedPoint a, OwnFixedTurn turn)
{
    return { ownDot(a.re, turn.cosine, a.im, turn.sine), ownDot(a.re, -turn.sine, a.im, turn.cosine) };
}

static OwnFixedPoint ownLoad(const int32_t* group)
{
    return { group[0], group[OWN_LANES] };
}

static void ownStore(OwnFixedPoint value, int32_t* group)
{
    group[0] = value.re;
    group[OWN_LANES] = value.im;
}

enum class OwnTurning { NONE, EIGHTH, ANY };

// Four points a quarter of the block apart; the results lie in bit-reversed order.
template <OwnTurning turning> static void ownFourFixed(int32_t* from, ptrdiff_t quarter, const OwnFixedTurn (&turns)[3])
{
    int32_t *a = from, *b = a + quarter, *c = b + quarter, *d = c + quarter;
    OWN_IVDEP
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        const OwnFixedPoint va = ownLoad(a + lane), vb = ownLoad(b + lane), vc = ownLoad(c + lane),
                            vd = ownLoad(d + lane);
        const OwnFixedPoint even = va + vc, evenLess = va - vc, odd = vb + vd;
        const OwnFixedPoint back = { ownLess(vb.im, vd.im), ownLess(vd.re, vb.re) }; // the odd difference times -i
        const OwnFixedPoint one = evenLess + back, two = even - odd, three = evenLess - back;
        ownStore(even + odd, a + lane);
        if constexpr (turning == OwnTurning::NONE) {
            ownStore(two, b + lane);
            ownStore(one, c + lane);
            ownStore(three, d + lane);
        } else if constexpr (turning == OwnTurning::EIGHTH) {
            ownStore({ two.im, ownLess(0, two.re) }, b + lane);
            ownStore({ ownHalved(ownAdd(one.re, one.im)), ownHalved(ownLess(one.im, one.re)) }, c + lane);
            ownStore({ ownHalved(ownLess(three.im, three.re)), ownHalved(ownLess(0, ownAdd(three.re, three.im))) },
                     d + lane);
        } else {
            ownStore(two * turns[1], b + lane);
            ownStore(one * turns[0], c + lane);
            ownStore(three * turns[2], d + lane);
        }
    }
}

static void ownTwoFixed(int32_t* a)
{
    int32_t* b = a + OWN_GROUP;
    OWN_IVDEP
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        const OwnFixedPoint va = ownLoad(a + lane), vb = ownLoad(b + lane);
        ownStore(va + vb, a + lane);
        ownStore(va - vb, b + lane);
    }
}

// From bit-reversed to natural order.
static void ownSortLines(int32_t* data, int32_t n)
{
    for (int32_t i = 1, reversed = 0; i < n; ++i) {
        int32_t bit = n / 2;
        for (; (reversed & bit) != 0; bit /= 2) reversed -= bit;
        reversed += bit;
        if (i < reversed)
            std::swap_ranges(data + i * OWN_GROUP, data + (i + 1) * OWN_GROUP, data + reversed * OWN_GROUP);
    }
}

// Decimation in frequency in place, exponent negative; n is a power of two, the turns are those of `tableLength`.
static void ownFastLines(int32_t* data, int32_t n, const OwnFixedTurn* turns, int32_t tableLength)
{
    int32_t block = n;
    for (; block >= 4; block /= 4) {
        const ptrdiff_t quarter = block / 4, step = tableLength / block;
        for (int32_t start = 0; start < n; start += block) {
            int32_t* from = data + start * OWN_GROUP;
            for (ptrdiff_t j = 0; j < quarter; ++j, from += OWN_GROUP) {
                const OwnFixedTurn three[3] = { turns[j * step], turns[2 * j * step], turns[3 * j * step] };
                if (j == 0)
                    ownFourFixed<OwnTurning::NONE>(from, quarter * OWN_GROUP, three);
                else if (2 * j == quarter)
                    ownFourFixed<OwnTurning::EIGHTH>(from, quarter * OWN_GROUP, three);
                else
                    ownFourFixed<OwnTurning::ANY>(from, quarter * OWN_GROUP, three);
            }
        }
    }
    if (block == 2)
        for (int32_t start = 0; start < n; start += 2) ownTwoFixed(data + start * OWN_GROUP);
    ownSortLines(data, n);
}

static void ownDirectLines(const OwnFixedPlan& plan, const int32_t* from, int32_t* to)
{
    for (int32_t k = 0; k < plan.n; ++k, to += OWN_GROUP) {
        int32_t sums[OWN_GROUP] = {};
        const int32_t* group = from;
        for (int32_t m = 0, index = 0; m < plan.n; ++m, group += OWN_GROUP) {
            const OwnFixedTurn turn = plan.turns[index];
            index = index < plan.n - k ? index + k : index + k - plan.n;
            OWN_IVDEP
            for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane)
                ownStore(ownLoad(sums + lane) + ownLoad(group + lane) * turn, sums + lane);
        }
        memcpy(to, sums, sizeof sums);
    }
}

static void ownConjugate(int32_t* data, int64_t groups)
{
    for (int64_t i = 0; i < groups; ++i, data += OWN_GROUP)
        for (ptrdiff_t lane = OWN_LANES; lane < OWN_GROUP; ++lane) data[lane] = ownLess(0, data[lane]);
}

int32_t* ownTransformLines(const OwnFixedPlan& plan, int32_t* data, int32_t* spare, OwnSign sign)
{
    if (plan.n == 1) return data; // a product with 1 would lose the lowest bit
    int32_t* result = plan.isFast ? data : spare;
    if (sign == OwnSign::PLUS) ownConjugate(data, plan.n);
    if (plan.isFast)
        ownFastLines(data, plan.n, plan.turns, plan.n);
    else
        ownDirectLines(plan, data, spare);
    if (sign == OwnSign::PLUS) ownConjugate(result, plan.n);
    return result;
}

// The values of the first and the last line of a real transform: a + b and a - b.
static void ownSplitFirst(int32_t* z)
{
    for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
        const int32_t a = z[lane], b = z[OWN_LANES + lane];
        z[lane] = ownAdd(a, b);
        z[OWN_LANES + lane] = ownLess(a, b);
    }
}

// What both parts of a pair are made of, see ownpairs.h.
struct OwnFixedPair {
    OwnFixedPoint middle;
    OwnFixedPoint side;
};

static OwnFixedPair ownMixPair(OwnFixedPoint a, OwnFixedPoint b, OwnFixedTurn turn)
{
    const int32_t sum = ownAdd(a.im, b.im), less = ownLess(a.re, b.re);
    return { { ownAdd(a.re, b.re), ownLess(a.im, b.im) },
             { ownDot(sum, turn.cosine, less, -turn.sine), ownDot(sum, turn.sine, less, turn.cosine) } };
}

// Factors of one half are shifts of the values.
static void ownUntanglePair(OwnFixedPoint& a, OwnFixedPoint& b, OwnFixedTurn turn)
{
    const auto [middle, side] = ownMixPair({ a.re >> 1, a.im >> 1 }, { b.re >> 1, b.im >> 1 }, turn);
    a = middle + OwnFixedPoint { side.re, ownLess(0, side.im) };
    b = { ownLess(middle.re, side.re), ownLess(0, ownAdd(middle.im, side.im)) };
}

// The reverse, times 2, for the negative exponent.
static void ownTanglePair(OwnFixedPoint& a, OwnFixedPoint& b, OwnFixedTurn turn)
{
    const auto [middle, side] = ownMixPair(a, b, turn);
    a = { ownLess(middle.re, side.re), ownAdd(middle.im, side.im) };
    b = { ownAdd(middle.re, side.re), ownLess(side.im, middle.im) };
}

using OwnFixedPairStep = void (*)(OwnFixedPoint& a, OwnFixedPoint& b, OwnFixedTurn turn);

// All points but the first one and the middle one.
template <OwnFixedPairStep step> static void ownRunPairs(const OwnFixedPlan& plan, int32_t* z)
{
    const ptrdiff_t half = plan.n / 2;
    for (ptrdiff_t k = 1; k < half - k; ++k) {
        const OwnFixedTurn turn = plan.turns[k];
        int32_t *a = z + k * OWN_GROUP, *b = z + (half - k) * OWN_GROUP;
        OWN_IVDEP
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            OwnFixedPoint va = ownLoad(a + lane), vb = ownLoad(b + lane);
            step(va, vb, turn);
            ownStore(va, a + lane);
            ownStore(vb, b + lane);
        }
    }
}

static void ownUntangleFixed(const OwnFixedPlan& plan, int32_t* z)
{
    const ptrdiff_t half = plan.n / 2;
    ownSplitFirst(z);
    ownRunPairs<ownUntanglePair>(plan, z);
    if (half % 2 == 0) ownConjugate(z + half / 2 * OWN_GROUP, 1);
}

static void ownTangleFixed(const OwnFixedPlan& plan, int32_t* z)
{
    ownSplitFirst(z);
    ownRunPairs<ownTanglePair>(plan, z);
    int32_t* middle = z + plan.n / 4 * OWN_GROUP;
    for (ptrdiff_t lane = 0; lane < OWN_GROUP; ++lane) middle[lane] = ownAdd(middle[lane], middle[lane]);
}

static void ownDirectToSpectra(const OwnFixedPlan& plan, const int32_t* from, int32_t* to)
{
    const bool isEven = plan.n % 2 == 0;
    for (int32_t k = 0; k < plan.points; ++k, to += OWN_GROUP) {
        int32_t sums[OWN_GROUP] = {};
        const int32_t* values = from;
        for (int32_t m = 0, index = 0; m < plan.n; ++m, values += OWN_LANES) {
            const OwnFixedTurn turn = plan.turns[index];
            index = index < plan.n - k ? index + k : index + k - plan.n;
            const int32_t sign = !isEven ? 0 : m % 2 == 0 ? 1 : -1;
            for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
                const int32_t x = values[lane];
                // S(0) and S(n / 2) are plain and alternating sums.
                const OwnFixedPoint first = { x, sign == 0 ? 0 : sign > 0 ? x : ownLess(0, x) };
                const OwnFixedPoint other = { ownDot(x, turn.cosine, 0, 0), ownDot(x, -turn.sine, 0, 0) };
                ownStore(ownLoad(sums + lane) + (k == 0 ? first : other), sums + lane);
            }
        }
        memcpy(to, sums, sizeof sums);
    }
}

static void ownDirectToReal(const OwnFixedPlan& plan, const int32_t* from, int32_t* to)
{
    for (int32_t m = 0; m < plan.n; ++m, to += OWN_LANES) {
        int32_t sums[OWN_LANES] = {};
        for (int32_t k = 1, index = m; k < plan.points; ++k) {
            const OwnFixedTurn turn = plan.turns[index];
            index = index < plan.n - m ? index + m : index + m - plan.n;
            const int32_t* group = from + k * OWN_GROUP;
            for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane)
                sums[lane] = ownAdd(sums[lane], ownDot(group[lane], turn.cosine, group[OWN_LANES + lane], turn.sine));
        }
        for (ptrdiff_t lane = 0; lane < OWN_LANES; ++lane) {
            const int32_t last = plan.n % 2 != 0 ? 0 : from[OWN_LANES + lane];
            const int32_t ends = m % 2 == 0 ? ownAdd(from[lane], last) : ownLess(from[lane], last);
            to[lane] = ownAdd(ends, ownAdd(sums[lane], sums[lane]));
        }
    }
}

int32_t* ownRealToSpectra(const OwnFixedPlan& plan, int32_t* data, int32_t* spare)
{
    if (!plan.isFast) {
        ownDirectToSpectra(plan, data, spare);
        return spare;
    }
    ownFastLines(data, plan.n / 2, plan.turns, plan.n);
    ownUntangleFixed(plan, data);
    return data;
}

int32_t* ownSpectraToReal(const OwnFixedPlan& plan, int32_t* data, int32_t* spare)
{
    // A positive exponent: the negative one on conjugates. What group 0 holds as imaginary part is a real value.
    ownConjugate(data + OWN_GROUP, plan.points - 1);
    if (!plan.isFast) {
        ownDirectToReal(plan, data, spare);
        return spare;
    }
    ownTangleFixed(plan, data);
    ownFastLines(data, plan.n / 2, plan.turns, plan.n);
    return data;
}

// Values such as 1/2 that double misses by some 1e-16 are not truncated to the integer below.
static int32_t ownFixedFactor(double value)
{
    return static_cast<int32_t>(value * 16384 + (value < 0 ? -1e-9 : 1e-9));
}

bool ownFixedPlan(OwnTransformCaches& caches, int32_t n, OwnFixedPlan& plan)
{
    OwnFixedTurn* turns = static_cast<OwnFixedTurn*>(ownTable(caches, OwnTableKind::FIXED_LINES, n));
    if (turns == nullptr) {
        turns = static_cast<OwnFixedTurn*>(
            ownNewTable(caches, OwnTableKind::FIXED_LINES, n, n * static_cast<int64_t>(sizeof(OwnFixedTurn))));
        if (turns == nullptr) return false;
        for (int32_t k = 0; k < n; ++k) {
            const OwnTurn turn = ownTurn(k, n);
            turns[k] = { ownFixedFactor(turn.cosine), ownFixedFactor(turn.sine) };
        }
    }
    plan = { n, (n + 1) / 2, { OWN_LANES, 1 }, n >= 4 && (n & (n - 1)) == 0, turns };
    return true;
}

int64_t ownSpareValues(const OwnFixedPlan& plan)
{
    return static_cast<int64_t>(plan.n) * OWN_GROUP;
}

int64_t ownRealValues(const OwnFixedPlan& plan)
{
    return ownSpareValues(plan);
}
