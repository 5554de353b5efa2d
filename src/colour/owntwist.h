/* SPDX-License-Identifier: BSD-2-Clause */
// What the colour twists share: the way from images to rows of the first three channels.
#pragma once

#include "frame/ownpixels.h"

struct OwnTwistImages {
    PxkImage* src;
    PxkImage* dst;
};

// The first check that fails, or one that doesn't. Twists return what pxkError returns, so its status is not enough.
OwnCheck ownFirstFailure(std::initializer_list<OwnCheck> checks);

// "Incorrect Image" for the first header that is.
OwnCheck ownHeaderFailure(const OwnTwistImages& images);

inline int32_t ownRefused(const OwnSite& site, const OwnCheck& failure)
{
    return pxkError(failure.status, site.func, failure.text, site.file, site.line);
}

// At least three channels, and an alpha channel only behind them.
OwnCheck ownTwistChannelFailure(const OwnTwistImages& images);

// Runs a row function over the selected pixels: three source rows, three destination rows. The status of the operation.
int32_t ownRunTwist(const OwnSite& site, const OwnTwistImages& images, const OwnRowFunction& row);
