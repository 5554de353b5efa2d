/* SPDX-License-Identifier: BSD-2-Clause */
// Run-length coded bits of a bitmap: BI_RLE8 and BI_RLE4.
#pragma once

#include "frame/ownbuffer.h"

// Expands the bits into a block of uncompressed rows, the bottom row first; pixels that the stream skips are 0. Null
// after a report. Nothing but the stream itself says where it ends; no more than (2 biWidth + 2) (biHeight + 1) + 260
// bytes of it are read when zeros follow it.
OwnBuffer<uint8_t> ownDecompressRLE(PxkBitmapInfoHeader* dib);
OwnBuffer<uint8_t> ownDecompressRLESep(PxkBitmapInfoHeader* dibHeader, const uint8_t* dibData);

// Codes uncompressed bits in place and stores biSizeImage. A code that is not shorter than the bits is dropped:
// biCompression becomes 0, which is a success too. 1 or 0, in the Sep form 0 or PXK_StsNoMem after a report.
int32_t ownCompressRLE(PxkBitmapInfoHeader* dib);
int32_t ownCompressRLESep(PxkBitmapInfoHeader* dibHeader, uint8_t* dibData);
