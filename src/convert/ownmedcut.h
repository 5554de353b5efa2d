/* SPDX-License-Identifier: BSD-2-Clause */
// A colour table from the colours of a picture.
#pragma once

#include "pxk/pxk.h"

// Stores a table of at most 2^biBitCount entries behind the header, and their number in biClrUsed. The picture is read
// whole. 0, with nothing reported, for more than eight bits, an image that is neither gray nor colour in a known
// sequence, or when out of memory; otherwise 1.
int32_t ownMedcutPalette(PxkBitmapInfoHeader* dib, const PxkImage* image);
