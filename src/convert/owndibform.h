/* SPDX-License-Identifier: BSD-2-Clause */
// What the plain and the Sep form of a bitmap conversion share: all but the tests for null.
#pragma once

#include "frame/ownreport.h"

// `bits` is null in the plain form, whose bits stand behind the colour table. `site` is the exported function.
// Both return what the Sep form does.
int32_t ownImageFromDib(const OwnSite& site, PxkBitmapInfoHeader* dib, uint8_t* bits, PxkImage* image);
int32_t ownDibFromImage(const OwnSite& site, const PxkImage* image, PxkBitmapInfoHeader* dib, uint8_t* bits,
                        int32_t dither, int32_t paletteConversion);
