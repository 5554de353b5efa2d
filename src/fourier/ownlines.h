// Fourier transforms of sixteen lines side by side, in single precision. A point of the lines is a group of sixteen
// real and sixteen imaginary parts, one of each line; lines never mix, so a result does not depend on its neighbours.
#pragma once

#include <cstddef>

#include "owntables.h"

constexpr ptrdiff_t OWN_LANES = 16;
constexpr ptrdiff_t OWN_GROUP = 2 * OWN_LANES; // values of a complex point

struct OwnPass {
    int32_t radix;
    int32_t groups;     // transforms of `radix` points that differ in their turns
    int32_t run;        // neighbouring points that share a turn
    const float* turns; // radix - 1 complex factors for each group; behind them a prime radix from 11 on has its own
};

// Tables of one length. Lengths with a prime factor that is too large for a pass go over a longer convolution.
struct OwnLinePlan {
    int32_t n;
    int32_t passCount;
    OwnPass passes[32];
    const OwnLinePlan* inner; // for the convolution, else null
    const float* chirp;       // n complex factors
    const float* kernel;      // inner->n complex factors, the transform of what is convolved with
};

// Null: no memory, or no free entry. Lives until the caches are released.
const OwnLinePlan* ownLinePlan(OwnTransformCaches& caches, int32_t n);

// Values that `spare` must hold.
int64_t ownSpareValues(const OwnLinePlan& plan);

// Where the result of a transform lies.
bool ownEndsInSpare(const OwnLinePlan& plan);

enum class OwnSign { MINUS, PLUS };

// Transforms n groups without scaling. Returns where the result lies.
float* ownTransformLines(const OwnLinePlan& plan, float* data, float* spare, OwnSign sign);
