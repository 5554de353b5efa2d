/* SPDX-License-Identifier: BSD-2-Clause */
// Orthonormal cosine transforms of 8 by 8 values, whose rows lie a step of values apart. Everything is read before
// anything is written; a NaN becomes the one that is stored.
#pragma once

#include <cstddef>

void ownEightForward(const float* from, ptrdiff_t fromStep, float* to, ptrdiff_t toStep);
void ownEightBackward(const float* from, ptrdiff_t fromStep, float* to, ptrdiff_t toStep);
