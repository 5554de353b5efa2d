#include "owndegrees.h"

#include <cmath>

#include "frame/ownsine.h"

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
    const OwnAngle radians = { whole, (angle - whole) + correction };
    const double sine = ownSineOf(radians), cosine = ownCosineOf(radians);
    const int32_t quarter = static_cast<int32_t>(nearest) & 3;
    const int32_t quarters = rest == 0 ? quarter : -1;
    switch (quarter) {
    case 0: return { cosine, sine, quarters };
    case 1: return { -sine, cosine, quarters };
    case 2: return { -cosine, -sine, quarters };
    default: return { sine, -cosine, quarters };
    }
}
