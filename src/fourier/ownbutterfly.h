/* SPDX-License-Identifier: BSD-2-Clause */
// Fourier transforms of 2 to 8 points, with a negative exponent, the points in registers.
#pragma once

struct OwnComplex {
    float re;
    float im;
};

inline OwnComplex operator+(OwnComplex a, OwnComplex b)
{
    return { a.re + b.re, a.im + b.im };
}

inline OwnComplex operator-(OwnComplex a, OwnComplex b)
{
    return { a.re - b.re, a.im - b.im };
}

inline OwnComplex operator*(float factor, OwnComplex a)
{
    return { factor * a.re, factor * a.im };
}

inline OwnComplex operator*(OwnComplex a, OwnComplex b)
{
    return { a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re };
}

// a times -i.
inline OwnComplex ownQuarterBack(OwnComplex a)
{
    return { a.im, -a.re };
}

// From sum and difference parts of a mirrored pair of results: middle -+ i side.
inline void ownMirrored(OwnComplex middle, OwnComplex side, OwnComplex& first, OwnComplex& last)
{
    first = { middle.re + side.im, middle.im - side.re };
    last = { middle.re - side.im, middle.im + side.re };
}

inline void ownButterfly(OwnComplex (&v)[2])
{
    const OwnComplex a = v[0], b = v[1];
    v[0] = a + b;
    v[1] = a - b;
}

inline void ownButterfly(OwnComplex (&v)[3])
{
    constexpr float sine = 0.866025404f; // of a third of a turn
    const OwnComplex a = v[0], sum = v[1] + v[2];
    const OwnComplex side = sine * (v[1] - v[2]);
    v[0] = a + sum;
    ownMirrored(a - 0.5f * sum, side, v[1], v[2]);
}

inline void ownFour(OwnComplex& a, OwnComplex& b, OwnComplex& c, OwnComplex& d)
{
    const OwnComplex even = a + c, evenLess = a - c, odd = b + d, oddLess = ownQuarterBack(b - d);
    a = even + odd;
    b = evenLess + oddLess;
    c = even - odd;
    d = evenLess - oddLess;
}

inline void ownButterfly(OwnComplex (&v)[4])
{
    ownFour(v[0], v[1], v[2], v[3]);
}

inline void ownButterfly(OwnComplex (&v)[5])
{
    constexpr float cos1 = 0.309016994f, cos2 = -0.809016994f; // of one and two fifths of a turn
    constexpr float sin1 = 0.951056516f, sin2 = 0.587785252f;
    const OwnComplex a = v[0], sum1 = v[1] + v[4], sum2 = v[2] + v[3], less1 = v[1] - v[4], less2 = v[2] - v[3];
    v[0] = a + (sum1 + sum2);
    ownMirrored(a + (cos1 * sum1 + cos2 * sum2), sin1 * less1 + sin2 * less2, v[1], v[4]);
    ownMirrored(a + (cos2 * sum1 + cos1 * sum2), sin2 * less1 - sin1 * less2, v[2], v[3]);
}

inline void ownButterfly(OwnComplex (&v)[7])
{
    // Of one, two and three sevenths of a turn.
    constexpr float cos1 = 0.623489802f, cos2 = -0.222520934f, cos3 = -0.900968868f;
    constexpr float sin1 = 0.781831482f, sin2 = 0.974927912f, sin3 = 0.433883739f;
    const OwnComplex a = v[0], sum1 = v[1] + v[6], sum2 = v[2] + v[5], sum3 = v[3] + v[4];
    const OwnComplex less1 = v[1] - v[6], less2 = v[2] - v[5], less3 = v[3] - v[4];
    v[0] = a + (sum1 + sum2 + sum3);
    ownMirrored(a + (cos1 * sum1 + cos2 * sum2 + cos3 * sum3), sin1 * less1 + sin2 * less2 + sin3 * less3, v[1], v[6]);
    ownMirrored(a + (cos2 * sum1 + cos3 * sum2 + cos1 * sum3), sin2 * less1 - sin3 * less2 - sin1 * less3, v[2], v[5]);
    ownMirrored(a + (cos3 * sum1 + cos1 * sum2 + cos2 * sum3), sin3 * less1 - sin1 * less2 + sin2 * less3, v[3], v[4]);
}

inline void ownButterfly(OwnComplex (&v)[8])
{
    constexpr float half = 0.707106781f; // square root of 1/2
    ownFour(v[0], v[2], v[4], v[6]);
    ownFour(v[1], v[3], v[5], v[7]);
    const OwnComplex odd0 = v[1], odd2 = ownQuarterBack(v[5]);
    const OwnComplex odd1 = half * OwnComplex { v[3].re + v[3].im, v[3].im - v[3].re };
    const OwnComplex odd3 = half * OwnComplex { v[7].im - v[7].re, -v[7].re - v[7].im };
    const OwnComplex even0 = v[0], even1 = v[2], even2 = v[4], even3 = v[6];
    v[0] = even0 + odd0;
    v[1] = even1 + odd1;
    v[2] = even2 + odd2;
    v[3] = even3 + odd3;
    v[4] = even0 - odd0;
    v[5] = even1 - odd1;
    v[6] = even2 - odd2;
    v[7] = even3 - odd3;
}
