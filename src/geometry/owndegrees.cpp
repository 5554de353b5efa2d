#include "owndegrees.h"

#include <cmath>

// Taylor series for angles up to an eighth of a turn, to the last term above half a unit in the last place of 1. The C
// library's functions may differ in the last bit from system to system and from processor to processor, and where a
// position lies in the middle between two pixels, a last bit decides.
static double ownSineTail(double square)
{
    double sum = 0;
    for (int32_t k = 17; k >= 3; k -= 2) sum = (sum + 1) * -square / (k * (k - 1));
    return sum; // sine is angle + angle * tail
}

static double ownCosineTail(double square)
{
    double sum = 0;
    for (int32_t k = 18; k >= 4; k -= 2) sum = (sum + 1) * -square / (k * (k - 1));
    return (sum + 1) * -square / 2; // cosine is 1 + tail
}

OwnDirection ownDirectionOf(double degrees)
{
    const double turned = fmod(degrees, 360); // exact, as is the rest to the nearest right angle
    const double nearest = nearbyint(turned / 90);
    const double rest = turned - 90 * nearest;
    if (!(fabs(rest) <= 45)) return { rest, rest, -1 };
    // The factor to radians in two parts, of which the first has 26 bits, so that its product with 27 bits is exact.
    constexpr double high = 0x1.1df46ap-6;
    constexpr double low = 0x1.294e9c8ae0ec6p-33;
    const double restHigh = static_cast<double>(static_cast<float>(rest));
    const double angle = restHigh * high;
    const double correction = restHigh * low + (rest - restHigh) * (high + low);
    const double whole = angle + correction;
    const double lost = (angle - whole) + correction;
    const double square = whole * whole;
    const double sine = whole + (whole * ownSineTail(square) + lost);
    const double cosine = 1 + (ownCosineTail(square) - whole * lost);
    const int32_t quarter = static_cast<int32_t>(nearest) & 3;
    const int32_t quarters = rest == 0 ? quarter : -1;
    switch (quarter) {
    case 0: return { cosine, sine, quarters };
    case 1: return { -sine, cosine, quarters };
    case 2: return { -cosine, -sine, quarters };
    default: return { sine, -cosine, quarters };
    }
}
