/* SPDX-License-Identifier: BSD-2-Clause */
/* Bitmap files in and out, for programs and examples; usable from C and C++. */
#ifndef PXK_BITMAPFILE_H
#define PXK_BITMAPFILE_H

#include <pxk/pxk.h>

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A bitmap file in memory, and the image made of it. All pointers live until releaseBitmap. */
typedef struct BitmapFile {
    PxkImage* image;          /**< what pxkTranslateDIB makes of it; may point into this record's memory */
    PxkBitmapInfoHeader* dib; /**< header and colour table; 1, 4 and 8 bits: the full table, black behind the entries */
    void* bits;               /**< not always right behind the table */
    void* blocks[3];          /**< the memory */
} BitmapFile;

/**
 * Reads a file, or a file's bytes. Stores 0 as the library's status first; what the library reports then goes into the
 * result and not to the thread's handler. Returns null and fills `file`, or returns why it could not, in words that
 * last until the thread's next call, and leaves nothing to release. Bytes may be released after the call.
 *
 * Headers have 12, 40, 52, 56, 64, 108 or 124 bytes; `dib` has 40, with the field masks of 16 and 32 bits behind it.
 * More entries in the colour table than an index can name are not looked at. Run-length bits must be long enough for
 * the picture: two bytes name 255 pixels at most. Pictures that skip most of their pixels are refused with those that
 * only claim to be large.
 */
const char* readBitmap(BitmapFile* file, const char* path);
const char* readBitmapBytes(BitmapFile* file, const void* bytes, size_t length);

/** Releases image and memory. */
void releaseBitmap(BitmapFile* file);

/**
 * Writes an image of one channel as 1 bit (depth 1) or 8 bits gray (depth 8U or 16U), one of three or four channels as
 * 24 bits. Returns null, or why it could not, with status and reports as in reading.
 */
const char* writeBitmap(PxkImage* image, const char* path);

#ifdef __cplusplus
}
#endif
#endif
