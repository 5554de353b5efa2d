/* SPDX-License-Identifier: BSD-2-Clause */
// Orthonormal cosine transforms of 8 by 8 values, row after row, in place.
#pragma once

void ownEightForward(float* block);
void ownEightBackward(float* block);
