/* SPDX-License-Identifier: BSD-2-Clause */
// Comparison of a picture with the expected one, which is a copy taken before the call with the model's result in it.
#pragma once

#include <gtest/gtest.h>

#include "picture.h"

// How far samples may lie apart. Exact: NaNs are equal to each other; BITS: their bits count too.
struct Tolerance {
    double absolute = 0;
    double relative = 0; // of the expected number
    bool isBitwise = false;
};
const Tolerance EXACT = {};
const Tolerance BITS = { 0, 0, true };

// All samples of the whole image agree; otherwise the first difference and a map of the differing pixels.
::testing::AssertionResult sameSamples(const Picture& want, const Picture& got, const Tolerance& tolerance = EXACT);

// Headers, guards, row padding, bits beside one-bit rows, tiles beyond the image and the mask are as before, and the
// tile protocol was kept. Samples are not looked at.
::testing::AssertionResult nothingElseChanged(const Picture& want, const Picture& got);

// Both of the above.
::testing::AssertionResult samePicture(const Picture& want, const Picture& got, const Tolerance& tolerance = EXACT);
