// SPDX-License-Identifier: BSD-2-Clause
#include <cfloat>
#include <cmath>

#include "frame/ownlimit.h"
#include "frame/ownmeasure.h"
#include "frame/ownprecision.h"
#include "ownmomentrows.h"

// ---- spatial moments -----------------------------------------------------------------------------------------------

// One channel to measure: that of a one-channel image, even if it is alpha, or the channel of interest.
static bool ownHasOneChannel(const PxkImage* image)
{
    return image->nChannels == 1 || ownChannelOfInterest(image) != 0;
}

static void ownClearMoments(PxkMomentState& state)
{
    for (int32_t m = 0; m < 4; ++m) {
        for (int32_t n = 0; m + n < 4; ++n) state.moments[m][n] = { 0, 0 };
    }
}

static void ownSetScales(PxkMomentState& state, OwnSize size)
{
    const double nx = 1.0 / size.width;
    const double ny = 1.0 / size.height;
    double xScale = 1;
    for (int32_t m = 0; m < 4; ++m) {
        double scale = xScale;
        for (int32_t n = 0; m + n < 4; ++n) {
            state.moments[m][n].scale = scale;
            scale *= ny;
        }
        xScale *= nx;
    }
}

// Adds part of row y.
static void ownAddRow(PxkMomentState& state, const OwnRowMoments& row, int32_t y)
{
    for (int32_t m = 0; m < 4; ++m) {
        double term = row.sums[m];
        for (int32_t n = 0; m + n < 4; ++n) {
            state.moments[m][n].value += term;
            term *= y;
        }
    }
}

void pxkMoments(PxkImage* image, PxkMomentState* state)
{
    const OwnDoublePrecision precision;
    OWN_REFUSE_BAD_HEADERS(image);
    const OwnSite site = OWN_HERE;
    if (!ownPassed(site,
                   { { !ownHasOneChannel(image), PXK_StsBadArg, "Only one channel can be proceed" },
                     { state == nullptr, PXK_StsBadArg, "state==0" } })) {
        return;
    }
    PxkImage measured = *image;
    if (image->nChannels == 1) measured.alphaChannel = 0;
    PxkMomentState result;
    ownClearMoments(result);
    OwnWork work;
    work.nDestinations = 0;
    if (ownOpenWork(work, site, { { &measured, "(image->tileInfo->tileData == NULL)" } }) != PXK_StsOk) return;
    if (!work.area.size.isEmpty()) {
        ownSetScales(result, work.area.size);
        const OwnMomentRow addRow = ownMomentRow(image->depth);
        const auto addStretch = [&](const OwnSampleStretch& stretch) {
            OwnRowMoments row = {};
            addRow(stretch.rows[0], stretch.n, stretch.x, row);
            ownAddRow(result, row, stretch.y);
        };
        if (!ownMeasureSamples(work, OwnSamplesCount::EACH, addStretch)) return;
    }
    for (int32_t m = 0; m < 4; ++m) {
        for (int32_t n = 0; m + n < 4; ++n) {
            state->moments[m][n] = { result.moments[m][n].scale, ownOneNaN(result.moments[m][n].value) };
        }
    }
}

// ---- accessors -----------------------------------------------------------------------------------------------------

static bool ownGoodOrder(const OwnSite& site, const PxkMomentState* state, int32_t m, int32_t n)
{
    const bool isIllegal = m < 0 || m > 3 || n < 0 || n > 3 || m + n > 3;
    return ownPassed(
        site,
        { { isIllegal, PXK_StsBadArg, "Illegal order of moment" }, { state == nullptr, PXK_StsBadArg, "state==0" } });
}

// The middle of the processed area serves as the centre of an image without mass.
static double ownCentre(const PxkMomentState& state, const PxkMoment& first)
{
    const double mass = state.moments[0][0].value;
    if (std::fabs(mass) > DBL_MIN) return first.value / mass;
    return first.scale != 0 ? 0.5 / first.scale : 0; // no area either
}

// The binomials of (x - xb)^m (y - yb)^n, each with its spatial moment.
static double ownCentralMoment(const PxkMomentState& state, int32_t m, int32_t n)
{
    const OwnDoublePrecision precision;
    static constexpr double binomials[4][4] = { { 1 }, { 1, 1 }, { 1, 2, 1 }, { 1, 3, 3, 1 } };
    const double xb = ownCentre(state, state.moments[1][0]);
    const double yb = ownCentre(state, state.moments[0][1]);
    double sum = 0;
    double xPower = 1; // (-xb)^(m - i)
    for (int32_t i = m; i >= 0; --i) {
        double power = xPower; // times (-yb)^(n - j)
        for (int32_t j = n; j >= 0; --j) {
            sum += binomials[m][i] * binomials[n][j] * power * state.moments[i][j].value;
            power *= -yb;
        }
        xPower *= -xb;
    }
    return sum;
}

double pxkGetSpatialMoment(PxkMomentState* state, int32_t m, int32_t n)
{
    return ownGoodOrder(OWN_HERE, state, m, n) ? state->moments[m][n].value : 0.0;
}

double pxkGetNormalizedSpatialMoment(PxkMomentState* state, int32_t m, int32_t n)
{
    const OwnDoublePrecision precision;
    return ownGoodOrder(OWN_HERE, state, m, n) ? ownOneNaN(state->moments[m][n].value * state->moments[m][n].scale)
                                               : 0.0;
}

double pxkGetCentralMoment(PxkMomentState* state, int32_t m, int32_t n)
{
    return ownGoodOrder(OWN_HERE, state, m, n) ? ownOneNaN(ownCentralMoment(*state, m, n)) : 0.0;
}

double pxkGetNormalizedCentralMoment(PxkMomentState* state, int32_t m, int32_t n)
{
    const OwnDoublePrecision precision;
    return ownGoodOrder(OWN_HERE, state, m, n) ? ownOneNaN(ownCentralMoment(*state, m, n) * state->moments[m][n].scale)
                                               : 0.0;
}

// ---- direct forms --------------------------------------------------------------------------------------------------

// The moments of a refused image are all 0.
static double ownMomentOf(PxkImage* image, int32_t m, int32_t n, double (*moment)(PxkMomentState*, int32_t, int32_t))
{
    PxkMomentState state;
    ownClearMoments(state);
    pxkMoments(image, &state);
    return moment(&state, m, n);
}

double pxkSpatialMoment(PxkImage* image, int32_t m, int32_t n)
{
    return ownMomentOf(image, m, n, pxkGetSpatialMoment);
}

double pxkNormalizedSpatialMoment(PxkImage* image, int32_t m, int32_t n)
{
    return ownMomentOf(image, m, n, pxkGetNormalizedSpatialMoment);
}

double pxkCentralMoment(PxkImage* image, int32_t m, int32_t n)
{
    return ownMomentOf(image, m, n, pxkGetCentralMoment);
}

double pxkNormalizedCentralMoment(PxkImage* image, int32_t m, int32_t n)
{
    return ownMomentOf(image, m, n, pxkGetNormalizedCentralMoment);
}
