/* SPDX-License-Identifier: BSD-2-Clause */
// The matrices between red, green and blue of ITU-R BT.709 and the tristimulus values of the CIE, for real numbers.
#pragma once

#include "ownformula.h"

template <class Real> inline OwnColour<Real> ownRgbToXyz(Real r, Real g, Real b)
{
    return { Real(0.412453) * r + Real(0.35758) * g + Real(0.180423) * b,
             Real(0.212671) * r + Real(0.71516) * g + Real(0.072169) * b,
             Real(0.019334) * r + Real(0.119193) * g + Real(0.950227) * b };
}

template <class Real> inline OwnColour<Real> ownXyzToRgb(Real x, Real y, Real z)
{
    return { Real(3.240479) * x - Real(1.53715) * y - Real(0.498535) * z,
             Real(-0.969256) * x + Real(1.875992) * y + Real(0.041556) * z,
             Real(0.055648) * x - Real(0.204043) * y + Real(1.057311) * z };
}
