/* SPDX-License-Identifier: BSD-2-Clause */
// One channel of an image as rows of a working type, and back.
#pragma once

#include "ownview.h"

// Samples of any depth but one-bit as float, double or int32_t, without scaling: row y of a channel of the view, from
// pixel x on.
template <class Work>
void ownLoadPlaneRow(const OwnView& view, int32_t depth, int32_t channel, int32_t x, int32_t y, int32_t n, Work* to);

// The reverse, limited to the depth's range; reals are rounded to the nearest integer, halves to the even one, and a
// NaN counts as the lowest sample of an integer depth.
template <class Work>
void ownStorePlaneRow(const OwnView& view, int32_t depth, int32_t channel, int32_t x, int32_t y, int32_t n,
                      const Work* from);
