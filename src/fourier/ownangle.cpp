// SPDX-License-Identifier: BSD-2-Clause
#include "ownangle.h"

// Taylor's series on an eighth of a turn, where the terms left out are below 1e-18.
static OwnTurn ownSmallTurn(double angle)
{
    const double square = angle * angle;
    double cosine = 1, sine = 1;
    for (int k = 18; k > 0; k -= 2) {
        cosine = 1 - cosine * square / (k * (k - 1));
        sine = 1 - sine * square / (k * (k + 1));
    }
    return { cosine, sine * angle };
}

OwnTurn ownTurn(int64_t k, int64_t n)
{
    constexpr double eighth = 0.78539816339744830962; // pi / 4
    const int64_t eighths = (k % n + n) % n * 8;
    const int64_t octant = eighths / n, rest = eighths % n;
    // Odd octants are measured back from their end.
    OwnTurn turn =
        ownSmallTurn(eighth * static_cast<double>(octant % 2 == 0 ? rest : n - rest) / static_cast<double>(n));
    if ((octant + 1) / 2 % 2 != 0) turn = { turn.sine, turn.cosine };
    if (octant >= 2 && octant < 6) turn.cosine = -turn.cosine;
    if (octant >= 4) turn.sine = -turn.sine;
    return turn;
}
