/* SPDX-License-Identifier: BSD-2-Clause */
// What all convolutions share: the checks of their images, and the way through masks, borders and tiles to an engine.
#pragma once

#include "ownwindow.h"

struct OwnConvImages {
    PxkImage* srcImage;
    PxkImage* dstImage;
};

// Headers and region offsets, reported.
[[nodiscard]] bool ownGoodConvHeaders(const OwnSite& site, const OwnConvImages& images);

// Depths and orders, reported.
[[nodiscard]] bool ownGoodConvImages(const OwnSite& site, const OwnConvImages& images, bool isFloat);

// A convolution behind its checks: sizes and masks are found, channels judged. False: nothing to do, or reported.
struct OwnConvWork {
    OwnWindowWork window;
    OwnArea area;
    PxkImage source; // the caller's header with border constants limited to the depth
};

[[nodiscard]] bool ownBeginConvWork(const OwnSite& site, const OwnConvImages& images, OwnConvWork& work);

// Brings the images to the engine. Whatever goes wrong there counts as a shortage of memory, and is reported.
void ownRunConvWork(const OwnSite& site, OwnConvWork& work, const OwnMargins& margins, OwnBandEngine engine);
