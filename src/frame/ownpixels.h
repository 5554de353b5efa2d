/* SPDX-License-Identifier: BSD-2-Clause */
// The road of operations on whole pixels: channels reach a row function as rows of their own, in the order it wants
// them. Pixel-ordered images are taken apart and put together here, whatever the order of their channels.
#pragma once

#include "ownpixelorder.h"
#include "ownwork.h"

// Channels of one view, counted from its first processed one; alpha may lie before it.
struct OwnPixelChannels {
    const OwnView* view;
    int32_t count;
    int32_t channels[ownMostViews];
};

// The channels first, first + 1, ... of a view.
OwnPixelChannels ownSomeChannels(const OwnView& view, int32_t first, int32_t count);

// Adds a channel, for instance alpha.
void ownAddChannel(OwnPixelChannels& pixels, int32_t channel);

// Runs a row function over pixels: one row for each channel of each group, in the order given, sources first; the last
// nDestinations groups are destinations. At most ownMostViews rows.
void ownRunPixels(std::initializer_list<OwnPixelChannels> groups, int32_t nDestinations, const OwnBits* mask,
                  const OwnRowFunction& rowFunction);
