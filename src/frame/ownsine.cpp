// SPDX-License-Identifier: BSD-2-Clause
#include "ownsine.h"

#include <cmath>
#include <cstdint>

// Taylor series, to the last term above half a unit in the last place of 1. Factors of the highest power first.
static constexpr double ownSineFactors[] = {
    1.0 / 355687428096000, -1.0 / 1307674368000, 1.0 / 6227020800, -1.0 / 39916800,
    1.0 / 362880,          -1.0 / 5040,          1.0 / 120,        -1.0 / 6
};
static constexpr double ownCosineFactors[] = {
    -1.0 / 6402373705728000, 1.0 / 20922789888000, -1.0 / 87178291200, 1.0 / 479001600,
    -1.0 / 3628800,          1.0 / 40320,          -1.0 / 720,         1.0 / 24
};

static double ownSeries(const double (&factors)[8], double x)
{
    double sum = factors[0];
    for (int32_t k = 1; k < 8; ++k) sum = sum * x + factors[k];
    return sum;
}

double ownSineOf(const OwnAngle& angle)
{
    const double square = angle.value * angle.value;
    const double tail = ownSeries(ownSineFactors, square);
    return angle.value + (angle.value * (tail * square) + angle.lost);
}

double ownCosineOf(const OwnAngle& angle)
{
    const double square = angle.value * angle.value;
    const double tail = ownSeries(ownCosineFactors, square);
    const double half = square / 2, most = 1 - half;
    return most + ((1 - most - half) + (square * square * tail - angle.value * angle.lost));
}

double ownSine(double radians)
{
    constexpr double turn = 0x1.921fb54442d18p2, turnRest = 0x1.1a62633145c07p-52; // 2 pi
    constexpr double quarter = 0x1.921fb544p0, quarterRest = 0x1.0b4611a626331p-34;
    double correction = 0;
    if (!(fabs(radians) < 0x1p20)) {
        const double part = fmod(radians, turn); // exact
        correction = (part - radians) / turn * turnRest;
        radians = part;
    }
    // Products with up to 20 bits are exact, and so is the difference.
    const int64_t quarters = llrint((radians + correction) / (quarter + quarterRest));
    const double nearest = static_cast<double>(quarters);
    const double rest = radians - nearest * quarter;
    correction -= nearest * quarterRest;
    const double value = rest + correction;
    const OwnAngle angle = { value, (rest - value) + correction };
    const double sine = quarters % 2 == 0 ? ownSineOf(angle) : ownCosineOf(angle);
    return (quarters & 2) == 0 ? sine : -sine;
}
