/* SPDX-License-Identifier: BSD-2-Clause */
// A real line of even length is transformed as complex points, pairs of its values. Points k and n / 2 - k of that
// transform hold those two points of the line's spectrum, and no others do.
#pragma once

#include <cstddef>

#include "ownbutterfly.h"

// Of pair k: cosine and sine of 2 pi k / n, then half the cosine and half of 1 less the sine.
constexpr ptrdiff_t OWN_PAIR_TURNS = 4;

// From the transform to the spectrum.
inline void ownUntanglePair(OwnComplex& first, OwnComplex& last, const float* turns)
{
    const OwnComplex a = first, b = last;
    const float cosine = turns[2], sine = turns[3];
    const float re = (a.im + b.im) * cosine + (a.re - b.re) * sine;
    const float im = (a.im + b.im) * sine - (a.re - b.re) * cosine;
    first = { re + b.re, im - b.im };
    last = { a.re - re, im - a.im };
}

// The reverse, times 2, for the positive exponent.
inline void ownTanglePair(OwnComplex& first, OwnComplex& last, const float* turns)
{
    const OwnComplex a = first, b = last;
    const float cosine = turns[0], sine = turns[1];
    const float re = (a.re - b.re) * sine + (a.im + b.im) * cosine;
    const float im = (a.re - b.re) * cosine - (a.im + b.im) * sine;
    first = { (a.re + b.re) - re, (a.im - b.im) + im };
    last = { (a.re + b.re) + re, im - (a.im - b.im) };
}
