/* SPDX-License-Identifier: BSD-2-Clause */
/**
 * @file
 * @brief pxk: operations on two-dimensional images, with a plain C interface.
 *
 * Every operation works on one picture of an image, the PxkImage header: 1, 8, 16 or 32 bits a channel, signed,
 * unsigned or float; channels interleaved or in planes; pixels in memory, or delivered tile by tile through a function
 * of the caller; restricted by a rectangular region, a channel of interest and a one-bit mask image.
 *
 * What holds for all operations stands next, then a group for each family.
 */
#ifndef PXK_PXK_H
#define PXK_PXK_H

#include <stddef.h>
#include <stdint.h>

/** @cond */
#if defined(_WIN32) && !defined(PXK_STATIC) && !defined(PXK_BUILD)
#define PXK_API __declspec(dllimport)
#elif defined(__GNUC__) && !defined(_WIN32)
#define PXK_API __attribute__((visibility("default")))
#else
#define PXK_API
#endif
/** @endcond */

/** The calling convention of the library's functions, and of those that it calls: whatever a compiler's default is. */
#ifdef _WIN32
#define PXK_CALL __cdecl
#else
#define PXK_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_rules Rules for all operations
 *
 * - Pointers to records are the caller's and stay the caller's. Nothing is freed but what a comment says.
 * - An operation that fails reports through pxkError: a status, its own name, a message (mostly the failed condition),
 *   file and line. The report goes to the thread's handler; the caller reads the outcome with pxkGetErrStatus.
 *   The status is never cleared on entry: store 0 with pxkSetErrStatus before a call whose outcome you want to read.
 * - "Incorrect Image" is the report for a header that pxkCheckImageHeader refuses, with the status of that check.
 * - A region that misses its image, or an empty mask, makes an operation return with nothing done and no report.
 * - Each image keeps its own region offset. The work is the smallest width and the smallest height of all regions and
 *   of the mask, taken axis by axis, and pixel (i, j) of the work is pixel (xOffset + i, yOffset + j) of each image.
 * - Processed channels are all but alpha, or the one that the region's channel of interest names (which may be alpha).
 * - Two threads may work at the same time on different headers, never on one header. Where both write to one block of
 *   pixels, or one writes what the other reads, no byte may be common to both: an operation may read and write back
 *   what it leaves as it is, between the first and the last pixel of each row of its region, such as pixels that a mask
 *   leaves out, channels that are not processed in pixel order, the other pixels in the first and last byte of one-bit
 *   rows, and the padding of rows where it works on whole images.
 * - A call takes up to 128 KiB of its thread's stack, besides what the tile function and the report handler take.
 * - Each thread keeps memory for the buffers of its next calls, at most 1 MiB, until it ends, or until a call of the
 *   Fourier or cosine transform with PXK_FFT_FREE or PXK_DCT_FREE.
 */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_image Images
 *
 * An image is a PxkImage header, which tells where the samples lie and what they mean, and its pixels, in memory or
 * delivered in tiles by a function of the caller. A PxkROI limits operations to a part of it, a mask image to some of
 * its pixels.
 * @{
 */

/** @name Depths
 * Bits a channel. 32 is always float, and there is no unsigned 32-bit depth.
 * @{ */
#define PXK_DEPTH_SIGN ((int32_t)0x80000000u) /**< flag of the signed integer depths */
#define PXK_DEPTH_1U 1                        /**< bits, eight a byte, the first pixel highest; one channel */
#define PXK_DEPTH_8U 8                        /**< 0 to 255 */
#define PXK_DEPTH_16U 16                      /**< 0 to 65535 */
#define PXK_DEPTH_32F 32                      /**< IEEE 754 single precision */
#define PXK_DEPTH_8S (PXK_DEPTH_SIGN | 8)     /**< -128 to 127 */
#define PXK_DEPTH_16S (PXK_DEPTH_SIGN | 16)   /**< -32768 to 32767 */
#define PXK_DEPTH_32S (PXK_DEPTH_SIGN | 32)   /**< -2147483648 to 2147483647 */
/** @} */

/** @name Data orders
 * @{ */
#define PXK_DATA_ORDER_PIXEL 0 /**< channels interleaved within a row */
#define PXK_DATA_ORDER_PLANE 1 /**< each channel a whole plane, one behind the other */
/** @} */

/** @name Sides of an image
 * Bits of a mask for pxkSetBorderMode.
 * @{ */
#define PXK_SIDE_TOP 1    /**< rows above the first one */
#define PXK_SIDE_BOTTOM 2 /**< rows below the last one */
#define PXK_SIDE_LEFT 4   /**< columns before the first one */
#define PXK_SIDE_RIGHT 8  /**< columns behind the last one */
/** @} */

/** @name Border modes
 * What lies beyond an image's edge, for operations that look there. Of a row a b c d:
 * @{ */
#define PXK_EDGE_CONST 0  /**< a constant k of that side: k k k | a b c d | k k k */
#define PXK_EDGE_CLAMP 1  /**< the edge sample: a a a | a b c d | d d d */
#define PXK_EDGE_MIRROR 2 /**< the image mirrored, edge doubled: c b a | a b c d | d c b */
#define PXK_EDGE_WRAP 3   /**< the image repeated: b c d | a b c d | a b c */
/** @} */

/** @name What pxkDeallocate releases
 * Bits of a mask.
 * @{ */
#define PXK_FREE_HEADER 1 /**< the header itself */
#define PXK_FREE_DATA 2   /**< pixels that pxkAllocateImage took */
#define PXK_FREE_ROI 4    /**< the region record */
#define PXK_FREE_TILE 8   /**< the tile record */
#define PXK_FREE_MASK 16  /**< the mask image, with its header, pixels, region and tile record */
/** @} */

/** @name Modes of a tile function
 * What the library wants of a tile, the last argument of a PxkTileCallBack.
 * @{ */
#define PXK_TILE_READ 1    /**< its samples */
#define PXK_TILE_WRITE 2   /**< its samples, which will be changed */
#define PXK_TILE_RELEASE 4 /**< nothing any more: it is given back */
/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** The header of an image: see struct PxkImage. */
typedef struct PxkImage PxkImage;

/** A region of an image: part of its pixels, and all its channels or one. */
typedef struct PxkROI {
    int32_t coi;     /**< channel of interest, counted from 1; 0 means all channels but alpha */
    int32_t xOffset; /**< first column, 0 or more */
    int32_t yOffset; /**< first row, 0 or more */
    int32_t width;   /**< columns, 1 or more; what reaches past the image is cut off */
    int32_t height;  /**< rows, likewise */
} PxkROI;

/**
 * Delivers and takes back tiles of an image whose pixels are not in memory.
 *
 * Tile (xIndex, yIndex) covers the columns from xIndex times tileInfo->width on, and the rows likewise. Its memory has
 * the layout of a whole image of the tile's size with the header's channels, depth, order and align; so has a tile at
 * the right or bottom edge, whose pixels beyond the image are neither read nor written.
 *
 * On PXK_TILE_READ or PXK_TILE_WRITE the function stores the address of the tile's first pixel in
 * image->tileInfo->tileData, or null when it can't. A tile asked for reading is not written; one asked for writing may
 * be read too. The library may hold several tiles at once. On PXK_TILE_RELEASE, tileData holds the pointer that was
 * handed out for that tile. `image` is the caller's header or a private copy with the same tileInfo; nothing in it may
 * be changed. The result is ignored. The function runs on the calling thread, inside the operation.
 */
typedef int32_t(PXK_CALL* PxkTileCallBack)(PxkImage* image, int32_t xIndex, int32_t yIndex, int32_t mode);

/** How a tiled image is reached. */
typedef struct PxkTileInfo {
    PxkTileCallBack callBack; /**< the caller's tile function */
    int32_t id;               /**< for the caller; never read by the library */
    void* tileData;           /**< the current tile's first pixel, stored by callBack */
    int32_t width;            /**< columns of every tile, a positive multiple of 8 */
    int32_t height;           /**< rows of every tile, a positive multiple of 8 */
} PxkTileInfo;

/**
 * The image header. Sample (x, y, c), c counted from 0, lies
 * - in pixel order at imageData + y widthStep + (x nChannels + c) sample bytes,
 * - in plane order at imageData + c height widthStep + y widthStep + x sample bytes,
 * - at depth 1 in bit 7 - x % 8 of byte x / 8 of its row.
 */
struct PxkImage {
    int32_t headerSize;     /**< sizeof(PxkImage): 112 where pointers have four bytes */
    int32_t headerVersion;  /**< 0 */
    int32_t nChannels;      /**< channels a pixel, alpha included; 1 at depth 1 */
    int32_t alphaChannel;   /**< 0 for none, otherwise nChannels: alpha is the last channel */
    int32_t depth;          /**< one of PXK_DEPTH_... */
    char colorModel[4];     /**< such as "RGB", not terminated when full */
    char channelSeq[4];     /**< such as "BGR" */
    int32_t dataOrder;      /**< PXK_DATA_ORDER_... */
    int32_t origin;         /**< 0: the first stored row is the top one; 1: it is the bottom one */
    int32_t align;          /**< rows start at multiples of it: 4, 8, 16 or 32 bytes */
    int32_t width;          /**< pixels a row */
    int32_t height;         /**< rows */
    PxkROI* roi;            /**< null means the whole image and all channels but alpha */
    PxkImage* maskROI;      /**< null, or a one-bit image in memory: pixels change where its bit is 1 */
    void* userTag;          /**< for the caller; never read by the library */
    PxkTileInfo* tileInfo;  /**< null for an image in memory */
    int32_t imageSize;      /**< bytes of pixel data */
    void* imageData;        /**< first pixel; null for a tiled image */
    int32_t widthStep;      /**< bytes from one row to the next */
    int32_t borderMode[4];  /**< PXK_EDGE_... for top, bottom, left and right */
    int32_t borderConst[4]; /**< constants for PXK_EDGE_CONST, in the same order, integers at every depth */
    void* imageDataBase;    /**< the block that pxkAllocateImage took; null when the pixels are the caller's */
};

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_status Status and reports
 *
 * A call that fails stores a status and hands a report to a handler. Status, mode and handler belong to the thread; a
 * new thread starts with status 0, PXK_ErrModeLeaf and pxkGuiBoxReport.
 * @{
 */

/** @name Error modes
 * What the library's report handlers do.
 * @{ */
#define PXK_ErrModeLeaf 0   /**< an error ends the application, or asks whether to */
#define PXK_ErrModeParent 1 /**< it is the caller's to handle */
#define PXK_ErrModeSilent 2 /**< it is not shown at all */
/** @} */

/** @name Status codes
 * With the texts that pxkErrorStr gives. A fault of a mask image is the code of the header less 100.
 * @{ */
/** "No Error": nothing has failed */
#define PXK_StsOk 0
/** "Backtrace": a report that names the caller of what has failed; not stored */
#define PXK_StsBackTrace (-1)
/** "Internal error (bad state)": what should work did not */
#define PXK_StsInternal (-3)
/** "Out of memory": no memory, or for some operations a tile that was refused */
#define PXK_StsNoMem (-4)
/** "Bad argument": an argument, mostly told by the failed condition */
#define PXK_StsBadArg (-5)
/** "Unsupported function": not reported by this version */
#define PXK_StsBadFunc (-6)
/** "Iteration convergence failed": not reported by this version */
#define PXK_StsNoConv (-7)
/** "Autotrace call": as PXK_StsBackTrace */
#define PXK_StsAutoTrace (-8)
/** "Null pointer to an image header" */
#define PXK_StsNullHeader (-9)
/** "Incorrect image size": width, height, imageSize, or pixels of 2^31 bytes and more */
#define PXK_StsBadImageSize (-10)
/** "Incorrect offset of ROI of the image": negative, or outside the image */
#define PXK_StsBadRoiOffset (-11)
/** "One from two pointers should be null, and other should be not null, imageData or tileInfo" */
#define PXK_StsBadDataPointers (-12)
/** "Incorrect widthStep of the image": below 1 */
#define PXK_StsBadWidthStep (-13)
/** "Incorrect Color model or channel sequence of the image" */
#define PXK_StsBadColorModel (-14)
/** "Incorrect number of channels in the image": below 1, or unlike numbers */
#define PXK_StsBadChannels (-15)
/** "Number of channels for 1U depth image must be one" */
#define PXK_StsBadChannels1U (-16)
/** "Incorrect depth value in the image header": none of the seven, or one that an operation does not take */
#define PXK_StsBadDepth (-17)
/** "Incorrect alpha channel number in the image header": neither 0 nor nChannels */
#define PXK_StsBadAlphaChannel (-18)
/** "Incorrect data order value in the image header" */
#define PXK_StsBadDataOrder (-19)
/** "Incorrect data origin value in the image header": neither 0 nor 1 */
#define PXK_StsBadOrigin (-20)
/** "Incorrect data alignment value in the image header": not 4, 8, 16 or 32 */
#define PXK_StsBadAlign (-21)
/** "Null pointer to callback function" */
#define PXK_StsNullCallBack (-22)
/** "Incorrect size of the tile": not a positive multiple of 8, or a tile of 2^31 bytes and more */
#define PXK_StsBadTileSize (-23)
/** "Incorrect COI of the image": below 0 or above nChannels */
#define PXK_StsBadCOI (-24)
/** "Incorrect size of ROI in the image header": below 1 */
#define PXK_StsBadRoiSize (-25)
/** "Mask image is taled": a mask must lie in memory */
#define PXK_StsMaskTiled (-26)
/** "Mask. Incorrect image size" */
#define PXK_StsMaskBadImageSize (-110)
/** "Mask. Incorrect offset of ROI of the image" */
#define PXK_StsMaskBadRoiOffset (-111)
/** "Mask. One from two pointers should be null, and other should be not null, imageData or tileInfo" */
#define PXK_StsMaskBadDataPointers (-112)
/** "Mask. Incorrect widthStep of the image" */
#define PXK_StsMaskBadWidthStep (-113)
/** "Mask. Incorrect Color model or channel sequence of the image" */
#define PXK_StsMaskBadColorModel (-114)
/** "Mask. Incorrect number of channels in the image" */
#define PXK_StsMaskBadChannels (-115)
/** "Mask. Incorrect depth value in the image header" */
#define PXK_StsMaskBadDepth (-117)
/** "Mask. Incorrect alpha channel number in the image header" */
#define PXK_StsMaskBadAlphaChannel (-118)
/** "Mask. Incorrect data order value in the image header" */
#define PXK_StsMaskBadDataOrder (-119)
/** "Mask. Incorrect data origin value in the image header" */
#define PXK_StsMaskBadOrigin (-120)
/** "Mask. Incorrect data alignment value in the image header" */
#define PXK_StsMaskBadAlign (-121)
/** "Mask. Incorrect COI of the image" */
#define PXK_StsMaskBadCOI (-124)
/** "Mask. Incorrect size of ROI in the image header" */
#define PXK_StsMaskBadRoiSize (-125)
/** @} */

/** The version of the library. */
typedef struct PxkLibVersion {
    int32_t major;           /**< changes with the interface */
    int32_t minor;           /**< grows with additions */
    int32_t build;           /**< grows with corrections */
    const char* fileName;    /**< of the library */
    const char* versionText; /**< the three numbers, with a "v" in front */
    const char* buildText;   /**< name and purpose */
    const char* buildDate;   /**< day of the release */
    const char* linkage;     /**< how it was linked */
} PxkLibVersion;

/**
 * Takes a report: the status, the name of the reporting function, the failed condition or a message, source file and
 * line. Its result becomes the result of pxkError.
 */
typedef int32_t(PXK_CALL* PxkErrorCallBack)(int32_t status, const char* func, const char* context, const char* file,
                                            int32_t line);

/**
 * The status that this thread stored last. Operations that succeed store nothing (the morphology stores 0 on entry),
 * and a later failure replaces an earlier one, except for reports with PXK_StsBackTrace and PXK_StsAutoTrace, which are
 * not stored.
 */
PXK_API int32_t PXK_CALL pxkGetErrStatus(void);

/** Stores any status, unchecked, and calls no handler. */
PXK_API void PXK_CALL pxkSetErrStatus(int32_t status);

/** This thread's error mode. */
PXK_API int32_t PXK_CALL pxkGetErrMode(void);

/** Stores any mode, unchecked: PXK_ErrModeLeaf, PXK_ErrModeParent, PXK_ErrModeSilent, or a value the caller's handler
 * knows. */
PXK_API void PXK_CALL pxkSetErrMode(int32_t mode);

/** Makes `handler` this thread's report handler, null for pxkGuiBoxReport, and returns the one before. */
PXK_API PxkErrorCallBack PXK_CALL pxkRedirectError(PxkErrorCallBack handler);

/**
 * Stores `status` and hands the report to the handler, in every mode. PXK_StsBackTrace and PXK_StsAutoTrace are handed
 * on but not stored, so that the first failure of a chain stays. A status of 0 is stored and nothing else happens.
 * Returns what the handler returns; 0 for status 0. Texts may be null.
 */
PXK_API int32_t PXK_CALL pxkError(int32_t status, const char* func, const char* context, const char* file,
                                  int32_t line);

/** A constant text for any status, never null: "Unknown error or status code" where there is none of its own. */
PXK_API const char* PXK_CALL pxkErrorStr(int32_t status);

/** Handler: ends the process with exit code 1 in PXK_ErrModeLeaf, whatever the status; otherwise returns `status`. */
PXK_API int32_t PXK_CALL pxkNulDevReport(int32_t status, const char* func, const char* context, const char* file,
                                         int32_t line);

/**
 * Handler: writes the report to the standard-error stream, unless the mode is PXK_ErrModeSilent or the process was
 * started without such a stream. In PXK_ErrModeLeaf it then ends the process with exit code 1. Otherwise returns
 * `status`.
 */
PXK_API int32_t PXK_CALL pxkStdErrReport(int32_t status, const char* func, const char* context, const char* file,
                                         int32_t line);

/**
 * Handler, the default one: shows the report in a modal box, which asks in PXK_ErrModeLeaf whether to end the
 * application (Yes, No) and in PXK_ErrModeParent whether to go on (OK, Cancel). Yes and Cancel end the process with
 * exit code 1. Every other answer, and every other mode, returns `status`. Where there are no boxes the question goes
 * to the terminal, if standard input and standard error are one, and what was typed before it is no answer; without a
 * terminal the text goes to standard error and the process goes on.
 */
PXK_API int32_t PXK_CALL pxkGuiBoxReport(int32_t status, const char* func, const char* context, const char* file,
                                         int32_t line);

/** The version record, the same at every call. */
PXK_API const PxkLibVersion* PXK_CALL pxkGetLibVersion(void);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_memory Headers and memory
 *
 * Headers, pixels, regions and tile records come from here and go back through here, or are plain records of the
 * caller. A block of the pxkMalloc family starts at a multiple of 32 bytes.
 * @{
 */

/**
 * Takes `length` bytes; pxkwMalloc, pxkiMalloc, pxksMalloc and pxkdMalloc take items of 2, 4, 4 and 8 bytes. The block
 * starts at a multiple of 32 bytes, is not cleared, and has at least 33 spare bytes behind it (in builds with
 * AddressSanitizer they must not be touched). Give it back with pxkFree. Null when out of memory or when `length` is
 * negative or too large; nothing is reported.
 */
PXK_API void* PXK_CALL pxkMalloc(int32_t length);
/** pxkMalloc for `length` 16-bit integers. */
PXK_API void* PXK_CALL pxkwMalloc(int32_t length);
/** pxkMalloc for `length` 32-bit integers. */
PXK_API void* PXK_CALL pxkiMalloc(int32_t length);
/** pxkMalloc for `length` floats. */
PXK_API void* PXK_CALL pxksMalloc(int32_t length);
/** pxkMalloc for `length` doubles. */
PXK_API void* PXK_CALL pxkdMalloc(int32_t length);

/** Gives back a block of the pxkMalloc family; null is ignored. */
PXK_API void PXK_CALL pxkFree(void* block);

/**
 * Makes a header without pixels, border mode PXK_EDGE_CONST with 0 on all sides. `colorModel` and `channelSeq` are the
 * first four bytes of the texts, zeros behind a shorter one. `roi`, `maskROI` and `tileInfo` are held by pointer and
 * stay the caller's; `roi` and `tileInfo` are not examined. Returns null after reporting "Incorrect data-ins" with, in
 * this order of tests: -10 (width or height below 1), -15 (nChannels below 1), -16 (not one channel at depth 1), -14 (a
 * null text), -17 (depth), -18 (alphaChannel neither 0 nor nChannels), -19 (dataOrder), -20 (origin neither 0 nor 1),
 * -21 (align), -10 (without tileInfo: pixels of 2^31 bytes or more), -117, -26 or the status less 100 (mask not of
 * depth 1, tiled, or bad). With tileInfo, widthStep and imageSize are 0 where 31 bits can't hold them. Returns null
 * without a report when out of memory.
 */
PXK_API PxkImage* PXK_CALL pxkCreateImageHeader(int32_t nChannels, int32_t alphaChannel, int32_t depth,
                                                const char* colorModel, const char* channelSeq, int32_t dataOrder,
                                                int32_t origin, int32_t align, int32_t width, int32_t height,
                                                PxkROI* roi, PxkImage* maskROI, void* userTag, PxkTileInfo* tileInfo);

/**
 * Allocates the pixels of an integer image, and with `doFill` not 0 fills rows and padding with `fillValue`, cut to the
 * depth's bits. Reports -5 for a null image, one that has imageData or tileInfo, or depth 32F ("( image->depth == 32
 * )"), and "Incorrect data-ins" as pxkCreateImageHeader does. When out of memory, imageData stays null and nothing is
 * reported. The pixels are the header's: release them with pxkDeallocate or pxkDeallocateImage.
 */
PXK_API void PXK_CALL pxkAllocateImage(PxkImage* image, int32_t doFill, int32_t fillValue);

/** The same for an image of depth 32F; any other depth reports -5 "( image->depth != 32 )". */
PXK_API void PXK_CALL pxkAllocateImageFP(PxkImage* image, int32_t doFill, float fillValue);

/**
 * Releases what `flag` says (PXK_FREE_...), in the order region, mask (with its header, pixels, region and tile record,
 * but not its own mask), tile record, pixels, header, and sets the released pointers to null. Pixels that the library
 * did not allocate (imageDataBase null) are left alone, imageData with them. A null image is ignored.
 */
PXK_API void PXK_CALL pxkDeallocate(PxkImage* image, int32_t flag);

/** pxkDeallocate with PXK_FREE_HEADER: the header alone. */
PXK_API void PXK_CALL pxkDeallocateHeader(PxkImage* image);

/** Releases the pixels that the library allocated, and clears imageData in any case. `image` must not be null. */
PXK_API void PXK_CALL pxkDeallocateImage(PxkImage* image);

/** Makes a region record from unchecked values; null when out of memory. Release it with pxkDeleteROI. */
PXK_API PxkROI* PXK_CALL pxkCreateROI(int32_t coi, int32_t xOffset, int32_t yOffset, int32_t width, int32_t height);

/** Stores the values in `roi`, unchecked; null is ignored. */
PXK_API void PXK_CALL pxkSetROI(PxkROI* roi, int32_t coi, int32_t xOffset, int32_t yOffset, int32_t width,
                                int32_t height);

/** Releases a region record; null is ignored. */
PXK_API void PXK_CALL pxkDeleteROI(PxkROI* roi);

/** Makes a tile record with tileData null; null when out of memory. Release it with pxkDeleteTileInfo. */
PXK_API PxkTileInfo* PXK_CALL pxkCreateTileInfo(PxkTileCallBack callBack, int32_t id, int32_t width, int32_t height);

/** Stores the values in `tileInfo` and sets tileData to null; a null record is ignored. */
PXK_API void PXK_CALL pxkSetTileInfo(PxkTileInfo* tileInfo, PxkTileCallBack callBack, int32_t id, int32_t width,
                                     int32_t height);

/** Releases a tile record; null is ignored. */
PXK_API void PXK_CALL pxkDeleteTileInfo(PxkTileInfo* tileInfo);

/**
 * Tests a header as every operation does on entry. Returns 0, or stores and returns the first failure without a report:
 * -9 null; -12 imageData and tileInfo both null or both set; -10 imageSize below 1 (in memory); -13 widthStep below 1
 * (in memory); -10 width or height below 1; -15, -16 nChannels; -17 depth; -18 alphaChannel; -19 dataOrder; -20 origin;
 * -21 align; -10 an image in memory of 2^31 bytes or more; -117, -26 or status less 100 for the mask; -22 no callBack,
 * -23 tile width or height below 1 or no multiple of 8, or a tile of 2^31 bytes or more; -24 coi, -25 size, -11
 * negative offset of the region. A region that reaches outside the image passes. A mask of a mask selects nothing but
 * is tested likewise; the ninth of them, and so every ring of masks, is refused with -112 less 100 for each mask above
 * it.
 */
PXK_API int32_t PXK_CALL pxkCheckImageHeader(PxkImage* image);

/**
 * Makes a copy of an image with its own pixels and region, and without mask, tag and tile record. The padding of rows
 * is copied where widthStep is what pxkAllocateImage makes it, otherwise it is not initialised. The clone of a tiled
 * image has pixels for the whole image, not initialised. Reports "Incorrect Image", or -4 with a message that says what
 * could not be allocated, and returns null. Release the clone with pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA
 * | PXK_FREE_ROI).
 */
PXK_API PxkImage* PXK_CALL pxkCloneImage(PxkImage* image);

/**
 * Stores a border mode and its constant, cut to the depth's range, for every side whose bit is set in `sides`. The mode
 * is not checked. For depth 32F the constant is an integer too, and the top side's serves all four sides.
 */
PXK_API void PXK_CALL pxkSetBorderMode(PxkImage* image, int32_t mode, int32_t sides, int32_t constant);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_copy Copy, set and exchange
 *
 * On the common size of the regions and of the masks of all images; only pixels that all masks select change. These
 * stop silently, after their argument checks, when the stored status is negative.
 *
 * A refused tile is -2 "Error get tile to write" or "Error get tile to read", with the work done so far left in place
 * and no tile held. Where both images are tiled, the first one is read a tile of the second one at a time; when that
 * fails, for a tile, for memory or because a tile function has stored a negative status, the report is -1 with an empty
 * text, which leaves the stored status as it is, maybe 0, and the second image's tile, and those of the first one that
 * were handed out in one row with a refused one, are not released. The same report comes when masks can't be combined,
 * and once more, behind every failure in tiles, from copy and set of one-bit images under a mask.
 * @{
 */

/**
 * Copies the processed channels of the source's region to the destination's. One header given twice: nothing to do.
 * Reports "Incorrect Image"; -5 "srcImage->depth != dstImage->depth", "srcImage->origin != dstImage->origin" and
 * (at other depths than 1, unless both have one channel) "srcImage->dataOrder != dstImage->dataOrder", each that fails;
 * then, where regions and masks leave something to do, -5 "Number of processed channels of srcImage != Number of
 * processed channels of dstImage".
 */
PXK_API void PXK_CALL pxkCopy(PxkImage* srcImage, PxkImage* dstImage);

/**
 * Sets the processed channels to `fillValue`, limited to the depth's range. Reports "Incorrect Image"; -17 "You should
 * use pxkSetFP for this image" at depth 32F.
 */
PXK_API void PXK_CALL pxkSet(PxkImage* image, int32_t fillValue);

/**
 * Sets the processed channels of an image of depth 32F. Reports -5 "dstImage==0"; -17 "You should use pxkSet for this
 * image"; "Incorrect Image" under the name pxkSet and then -1 with an empty text, also for a status that was negative
 * on entry.
 */
PXK_API void PXK_CALL pxkSetFP(PxkImage* image, float fillValue);

/** Exchanges the processed channels of two regions. Reports as pxkCopy does, ImageA as source and ImageB as
 * destination. */
PXK_API void PXK_CALL pxkExchange(PxkImage* ImageA, PxkImage* ImageB);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_pixels Single pixels and the test image
 *
 * One pixel in or out, whatever the image's layout; rings for tests; a clock.
 * @{
 */

/**
 * Copies pixel (x, y) to `pixel`: all samples, alpha included, one behind the other in the depth's type; at depth 1 one
 * byte, 0 or 1. x and y count in the whole image; with origin 1, y counts from the last stored row. Region, channel of
 * interest and mask play no part. A tile is asked for with PXK_TILE_READ and released. Returns 0, or what pxkError
 * returned for a report: "Incorrect Image"; -5 "((x>width-1) || (x<0))", "((y>height-1) || (y<0))", "pixel==0"; -2
 * "Error get tile to read" for a refused tile.
 */
PXK_API int32_t PXK_CALL pxkGetPixel(PxkImage* image, int32_t x, int32_t y, void* pixel);

/**
 * The reverse: copies `pixel` into the image. At depth 1 the lowest bit of its one byte counts. A tile is asked for
 * with PXK_TILE_WRITE; a refused one is reported as -2 "Error get tile to write".
 */
PXK_API int32_t PXK_CALL pxkPutPixel(PxkImage* image, int32_t x, int32_t y, void* pixel);

/**
 * Makes an image of rings that narrow towards the edge: one channel "GRAY", pixel order, align 8. With s the sine of
 * 2 pi ((x - width / 2)^2 + (y - height / 2)^2) / (4 height), halves truncated, unsigned samples are s + 1 scaled to
 * the depth's range and cut, signed ones s scaled and cut, and those of 32F (s + 1) times 0.49999. Returns null after
 * reporting -10 or -17 with its text of pxkErrorStr for a bad size or depth, or -4 "Not enough memory to allocate
 * header for ImageJaehne" or "Not enough memory to allocate imageData for ImageJaehne". Release the image with
 * pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA).
 */
PXK_API PxkImage* PXK_CALL pxkCreateImageJaehne(int32_t depth, int32_t width, int32_t height);

/**
 * The processor's time-stamp counter as it stands, neither scaled nor serialised; on processors without one,
 * nanoseconds of a monotonic clock.
 */
PXK_API uint64_t PXK_CALL pxkGetKestriumCounter(void);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_dyadic Arithmetic and logic of two images
 *
 * Sample by sample on the common size of the regions; only pixels selected by all masks of the three images change. The
 * destination may be a source. These operations run on whatever status is stored. Whole images of one shape are handled
 * in one run with their row padding, so padding of the destination may change; it stays under a region or a mask.
 *
 * All report "Incorrect Image"; -5 "(srcImageA->depth != dstImage->depth)", "(srcImageB->depth != dstImage->depth)",
 * "(nChSrcA != nChDst)", "(nChSrcB != nChDst)"; -4 "Out of memory" when masks can't be combined; -5 with
 * "(srcImageA->tileInfo->tileData == ((void*)(0)))", or the same of another image, for a refused tile.
 * pxkAdd and pxkMultiply also report -5 "srcImageA==0" and, on unlike data orders,
 * "(srcImageA->dataOrder != dstImage->dataOrder)" or the same of srcImageB; the others take images of unlike order.
 * @{
 */

/** a + b limited to the depth's range; plain float addition at 32F. At depth 1 it is pxkOr. */
PXK_API void PXK_CALL pxkAdd(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a - b limited to the depth's range; plain float subtraction at 32F; a and not b at depth 1. */
PXK_API void PXK_CALL pxkSubtract(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a b limited to the depth's range; plain float multiplication at 32F. At depth 1 it is pxkAnd. */
PXK_API void PXK_CALL pxkMultiply(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a and b, bit by bit. 32F reports -5 "This function does not support depth 32F". */
PXK_API void PXK_CALL pxkAnd(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a or b, bit by bit. 32F is refused as by pxkAnd. */
PXK_API void PXK_CALL pxkOr(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** Either a or b, bit by bit. 32F is refused as by pxkAnd. */
PXK_API void PXK_CALL pxkXor(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_scalar Arithmetic and logic with a constant
 *
 * One image and a constant, or one image alone, sample by sample on the common size of both regions; only pixels
 * selected by the masks of both images change. The destination may be the source. Except pxkAbs, these operations run
 * on whatever status is stored. Row padding is treated as by the operations of two images.
 *
 * All report, except where told otherwise: "Incorrect Image"; -5 "(srcImage->depth != dstImage->depth)",
 * "(srcImage->dataOrder != dstImage->dataOrder)" (not pxkSubtractS), "(nChSrc != nChDst)"; -4 "Out of memory" when
 * masks can't be combined; -5 "(srcImage->tileInfo->tileData == ((void*)(0)))" or the same of dstImage for a refused
 * tile. A constant that makes the operation another one makes that one report: pxkAddS at 8 and 16 bits is
 * pxkSubtractS, a shift by 0 is pxkXorS, one that leaves nothing is pxkAndS, as is pxkMultiplyS by 0 or less at 8U and
 * 16U.
 * @{
 */

/**
 * a + value, limited to the depth's range, for any value. At depth 1 it is pxkOrS.
 * Reports -5 "srcImage==0" and, at depth 32F, "For processing depth 32F use function pxkAddSFP".
 */
PXK_API void PXK_CALL pxkAddS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * a - value, or value - a when flip is not 0, limited to the depth's range. At depth 1 the lowest bit of the value
 * counts: a - 0 is a, 1 - a is not a, the other two are 0. Takes images of unlike data order.
 * Reports -5 "For processing depth 32F use function pxkSubtractSFP" at depth 32F.
 */
PXK_API void PXK_CALL pxkSubtractS(PxkImage* srcImage, PxkImage* dstImage, int32_t value, int32_t flip);

/**
 * a times value, limited to the depth's range. At depth 1 it is pxkAndS.
 * Reports -5 "srcImage==0" and, at depth 32F, "For processing depth 32F use function pxkMultiplySFP".
 */
PXK_API void PXK_CALL pxkMultiplyS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * Every sample and the low bits of the value, bit by bit: as many as the depth has, so one at depth 1. Depth 32F
 * reports -5 "This function does not support depth 32F".
 */
PXK_API void PXK_CALL pxkAndS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/** Every sample or the low bits of the value, bit by bit. Otherwise as pxkAndS. */
PXK_API void PXK_CALL pxkOrS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/** Every sample exclusive or the low bits of the value, bit by bit. Otherwise as pxkAndS. */
PXK_API void PXK_CALL pxkXorS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * a + value at depth 32F, in plain float arithmetic. Reports -5 "srcImage==0" and, at any other depth, "For processing
 * this depth use function pxkAddS".
 */
PXK_API void PXK_CALL pxkAddSFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/**
 * a - value, or value - a when flip is not 0, at depth 32F, in plain float arithmetic. Reports -5 "srcImage==0" and, at
 * any other depth, "For processing this depth use function pxkSubtractS".
 */
PXK_API void PXK_CALL pxkSubtractSFP(PxkImage* srcImage, PxkImage* dstImage, float value, int32_t flip);

/**
 * a times value at depth 32F, in plain float arithmetic. Reports -5 "srcImage==0" and, at any other depth, "For
 * processing this depth use function pxkMultiplyS".
 */
PXK_API void PXK_CALL pxkMultiplySFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/**
 * Shifts every sample left by nShift bits; bits that leave the sample are lost, and 0 comes in. A shift by the depth's
 * bits or more, and a negative one, gives 0. Depth 32F reports -5 "This function does not support depth 32F"; a null
 * source -5 "srcImage==0".
 */
PXK_API void PXK_CALL pxkLShiftS(PxkImage* srcImage, PxkImage* dstImage, int32_t nShift);

/**
 * Shifts every sample right by nShift bits: signed ones arithmetically, towards minus infinity. A shift by the depth's
 * bits or more, and a negative one, gives 0, and at signed depths -1 for negative samples. Depth 32F reports -5 "This
 * function does not support depth 32F".
 */
PXK_API void PXK_CALL pxkRShiftS(PxkImage* srcImage, PxkImage* dstImage, int32_t nShift);

/** Inverts every bit: pxkXorS with all bits set, which makes the reports. */
PXK_API void PXK_CALL pxkNot(PxkImage* srcImage, PxkImage* dstImage);

/**
 * The magnitude of every sample; that of the most negative integer is the largest one. Stops silently when the stored
 * status is negative. At 1U, 8U and 16U it is pxkCopy, and a negative status behind it is reported as -1 "pxkCopy is
 * failed". At the other depths both images must have equally many channels as well.
 * Reports -5 "srcImage==0", "dstImage==0" (both when both are null), "(nChSrcCoi != nChDstCoi)", "(srcImage->nChannels
 * != dstImage->nChannels)", and for a refused tile of the source "(srcImage->tileInfo->tileData != ((void*)(0)))".
 */
PXK_API void PXK_CALL pxkAbs(PxkImage* srcImage, PxkImage* dstImage);

/** The square of every sample, limited to the depth's range; at depth 1 the sample itself. */
PXK_API void PXK_CALL pxkSquare(PxkImage* srcImage, PxkImage* dstImage);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_bitmaps Device-independent bitmaps
 *
 * A bitmap is a PxkBitmapInfoHeader of 40 bytes, a colour table of four-byte entries and the bits, in one block; the
 * Sep forms take the bits by a pointer of their own. Colours stand between header and bits as follows: biClrUsed, or
 * 2^biBitCount when that is 0, at 1, 4 and 8 bits a pixel; none at 24 bits, and at 16 and 32 bits without fields; the
 * three masks (red, green, blue) with PXK_BI_BITFIELDS. Rows are multiples of four bytes, the bottom row first, or the
 * top row first when biHeight is negative. The bits of a row's last byte that lie behind the last pixel, and the bytes
 * that fill it up, are neither read nor changed.
 *
 * Only the whole image counts: its region, channel of interest and mask are not looked at, and a tiled image is
 * refused. Rows of the image are taken to have the length that follows from width, align and depth, whatever widthStep
 * says. Images have one channel at depth 1, 8U or 16U, or three or four channels at 8U or 16U, and the channelSeq "G",
 * "GRAY", "BGR", "BGRA", "RGB" or "RGBA", filled up with zero bytes. On a gray word the gray of a colour is (77 red +
 * 151 green + 28 blue) / 256, cut off. A 16-bit sample is 256 times the byte.
 *
 * Nothing tells these functions how long a block is. An uncompressed bitmap is read in its rows only, but nothing ends
 * run-length bits except what they say: put bits from an unknown source into a zero-filled buffer of at least
 * (2 biWidth + 2) (|biHeight| + 1) + 260 bytes, and the decoder cannot read past it, whatever the bits hold.
 * @{
 */

/** @name Values of biCompression
 * @{ */
#define PXK_BI_RGB 0       /**< none */
#define PXK_BI_RLE8 1      /**< run-length coded, 8 bits a pixel, bottom row first */
#define PXK_BI_RLE4 2      /**< run-length coded, 4 bits a pixel, bottom row first */
#define PXK_BI_BITFIELDS 3 /**< three masks tell the bits of red, green and blue, 16 or 32 bits a pixel */
/** @} */

/** @name What pxkConvertToDIB does with the colour table
 * @{ */
#define PXK_PALETTE_KEEP 0   /**< leaves it as it is */
#define PXK_PALETTE_FIXED 1  /**< stores a fixed one */
#define PXK_PALETTE_MEDCUT 2 /**< computes one from the image, by the median cut of Heckbert, 1982 */
/** @} */

/** The header of a bitmap, in the published layout; where the system has a BITMAPINFOHEADER, pointers may be cast. */
typedef struct PxkBitmapInfoHeader {
    uint32_t biSize;         /**< 40 */
    int32_t biWidth;         /**< pixels a row */
    int32_t biHeight;        /**< rows; negative: the top row is stored first */
    uint16_t biPlanes;       /**< 1 */
    uint16_t biBitCount;     /**< bits a pixel: 1, 4, 8, 16, 24 or 32 */
    uint32_t biCompression;  /**< PXK_BI_... */
    uint32_t biSizeImage;    /**< bytes of the bits; only written, when run-length coding succeeds */
    int32_t biXPelsPerMeter; /**< not looked at */
    int32_t biYPelsPerMeter; /**< not looked at */
    uint32_t biClrUsed;      /**< entries of the colour table, 0 for 2^biBitCount; written by the median cut */
    uint32_t biClrImportant; /**< not looked at */
} PxkBitmapInfoHeader;

/**
 * Makes an image of a whole bitmap. Where the image model can describe the bits, the image points into the caller's
 * block, which must then outlive it, and *cloneData becomes 0: 24 bits; 32 bits without fields (four channels); 8 bits
 * without run-length coding and 1 bit when the colour table is a gray ramp, that is entry i of n is the gray
 * i 255 / (n - 1), at least two entries. The samples are the indices as they stand, even when the ramp is short. Such
 * an image is pixel-ordered with align 4. Everything else is converted by pxkConvertFromDIB into an image of its own,
 * in planes with align 32, and *cloneData becomes 1: three channels, or one gray channel when the table is a gray ramp,
 * or four channels for 32 bits with fields. Depth is 8U, or 1 for a one-bit ramp; channels are "G", "BGR" or "BGRA";
 * origin is 0 when biHeight is negative, else 1.
 *
 * The caller owns the image: release it with pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA), which leaves shared
 * bits alone. Returns null after a report: -5 "( dib == ((void *)0) )", "( cloneData == ((void *)0) )",
 * "( dib->biSize != sizeof(BITMAPINFOHEADER) )", "(dib->biPlanes != 1)", a biCompression above 3, run-length coding
 * with another biBitCount than its own or with a negative biHeight (each with the condition as text), "dib->biBitCount
 * is bad"; -4 "Not enough memory to allocate header for destination image" (also for a bitmap of no pixels or of more
 * than 2^31 bytes, then after "Incorrect data-ins"), "Not enough memory to allocate data for destination image"; and -1
 * when the conversion has failed. pxkConvertFromDIB stops silently when the stored status is negative on entry; the
 * result is then a black image.
 */
PXK_API PxkImage* PXK_CALL pxkTranslateDIB(PxkBitmapInfoHeader* dib, int32_t* cloneData);

/**
 * Fills an image from a bitmap. Rows and columns of the bitmap go to the top left of the image, which may be larger;
 * the rest keeps its values. Pixels are allocated, filled with 0, when imageData is null. Fields are cut or shifted up
 * to eight bits, low bits 0. A colour index behind a short table is black. The fourth byte of a table entry goes to
 * alpha; alpha is 0 from 16 and 24 bits.
 *
 * pxkConvertFromDIB stops silently, after its tests for null, when the stored status is negative.
 * pxkConvertFromDIBSep runs on and returns 0 or a status, which is not always the reported one.
 *
 * Reports, in this order, -5 with the failed condition as text (here with what pxkConvertFromDIBSep returns): dib, in
 * the Sep form dibHeader or dibData, null (-5); image null (-9); alphaChannel below 0 or above nChannels (-18);
 * dataOrder (-19); origin (-20); align (-21); height, width, imageSize (-10) or widthStep (-13) below 1; biSize,
 * biPlanes, biCompression, run-length coding with a wrong biBitCount or a negative biHeight (-5). Then, in this order,
 * -10 "Image size is too small"; -3 "<unknown>" for a biBitCount that is not served; -5 "Bit-field mask is zero"; -14
 * "image->channelSeq unsupport"; -3 "<unknown>" for a pair of nChannels and depth that is not served, and for an image
 * of 2^31 bytes or more; -4 "Not enough memory to allocate data for destination image"; for run-length bits the
 * decoder's own report, -4 or -5 under the name ownDecompressRLE or ownDecompressRLESep, behind which pxkConvertFromDIB
 * reports -3 "Impossible to decompress RLE DIB". "<unknown>" is not reported while a negative status is stored.
 */
PXK_API void PXK_CALL pxkConvertFromDIB(PxkBitmapInfoHeader* dib, PxkImage* image);

/** pxkConvertFromDIB with the bits apart from the header. Told there. */
PXK_API int32_t PXK_CALL pxkConvertFromDIBSep(PxkBitmapInfoHeader* dibHeader, void* dibData, PxkImage* image);

/**
 * Fills a bitmap from an image. The header says what is wanted; the block has room for colour table and uncompressed
 * bits. Image and bitmap have the same size.
 *
 * dither: 1 for none; 2, 4, 8 or 16 reduce the image first with pxkReduceBits and this dither type, to 1, 4 or 8 bits
 * (8 for bitmaps of 8 bits and more). paletteConversion, for bitmaps below 16 bits: PXK_PALETTE_KEEP;
 * PXK_PALETTE_FIXED, which stores a gray ramp for one channel and a fixed set of colours otherwise when the table has
 * 2, 16 or 256 entries, else nothing; PXK_PALETTE_MEDCUT, which stores up to 2^biBitCount colours and their number in
 * biClrUsed (and walks the rows by widthStep). In the plain form the bits stand behind the table as it is after this
 * step. A pixel gets the entry with the least sum of squared differences of red, green and blue, the lowest index among
 * equals. Fields of 16 bits are cut to their width; those of 32 bits are shifted only, and without masks the top byte
 * is 0. PXK_BI_RLE8 and PXK_BI_RLE4 code the bits in place and set biSizeImage; bits that would not shrink stay and
 * biCompression becomes 0.
 *
 * Both run on whatever status is stored. pxkConvertToDIBSep returns 0 or a status, which is not always the reported
 * one.
 *
 * Reports "Incorrect Image" (returned as -5), then -5 with the failed condition as text (here with what
 * pxkConvertToDIBSep returns): dib, in the Sep form dibHeader or dibData, null (-5); nChannels (-15); depth (-17);
 * alphaChannel (-18); channels that do not fit alpha (-15); sizes that differ (-10); biSize, biPlanes, biCompression,
 * run-length coding with a wrong biBitCount or a negative biHeight, dither, paletteConversion (-5). Then -3 "Error of
 * creating medcut palette"; -5 "Parameter biBitCount of DIB-image have illegal value", -4 "Not enough memory to
 * allocate header for temporal image" (also three or four channels to one bit with dither) and -3 "Dithering can't be
 * produced" (also on a negative stored status) with dither only; -15 "image->nChannels is bad", -14 "image->channelSeq
 * unsupport", -5 "dib->biBitCount is bad" (Sep: "dibHeader->biBitCount is bad"), -5 "Bit-field mask is zero"; -4 when
 * the encoder is out of memory; -3 "<unknown>" for a tiled image.
 */
PXK_API void PXK_CALL pxkConvertToDIB(PxkImage* image, PxkBitmapInfoHeader* dib, int32_t dither,
                                      int32_t paletteConversion);

/** pxkConvertToDIB with the bits apart from the header. Told there. */
PXK_API int32_t PXK_CALL pxkConvertToDIBSep(PxkImage* image, PxkBitmapInfoHeader* dibHeader, void* dibData,
                                            int32_t dither, int32_t paletteConversion);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_depth Depth conversion
 *
 * Sample by sample on the common size of the regions; only pixels selected by the masks of both images change. Channels
 * that are not processed, row padding and bits beside one-bit rows keep their values. Source and destination have the
 * same number of processed channels. These operations run on whatever status is stored.
 *
 * All return 0, also where there is nothing to do, or a status. All report "Incorrect Image", source before
 * destination; -5 with the failed condition as text, in the order told at each operation, and after those
 * "(srcChannels != dstChannels)"; -4 "Out of memory" when masks can't be combined; -5 with
 * "(srcImage->tileInfo->tileData == NULL)", or the same of dstImage, for a refused tile, with the work done so far left
 * in place. What is reported is returned, except that pxkScale and pxkScaleFP return -5 for an incorrect image.
 * @{
 */

/**
 * Converts between integer depths: values stay what they are, and those beyond the destination's range become its
 * limit. Towards 1U, a bit is 1 where the sample of the one channel read, the channel of interest or that of a
 * one-channel image, is above 0. Equal depths copy. Data orders may differ. Where the origins differ, the rows of the
 * destination are taken from the last row of the common region upward, so that the picture keeps its orientation; masks
 * keep the order of the source's rows. The same header twice: nothing is checked or done.
 *
 * Refuses, in this order: "(srcImage->depth == 32)", "(dstImage->depth == 32)", "(srcImage->height !=
 * dstImage->height)", "(srcImage->width != dstImage->width)"; towards 1U from more than one channel "(srcImage->roi ==
 * 0)", "(srcImage->roi->coi == 0)"; otherwise "srcImage->nChannels != dstImage->nChannels", "((srcImage->depth == 1) &&
 * (srcImage->depth != dstImage->depth))".
 */
PXK_API int32_t PXK_CALL pxkConvert(PxkImage* srcImage, PxkImage* dstImage);

/**
 * Maps the whole range of one integer depth onto the whole range of another, lowest value to lowest, highest to
 * highest. Widening repeats a sample's bytes, as counted from the lowest value: 8U 0x12 becomes 16U 0x1212. Narrowing
 * shifts x - (x >> b) right, x being the sample less the middle of its range and b the destination's bits; so each
 * widening is undone exactly. Sizes need not agree.
 *
 * Refuses, in this order: "(srcImage->depth == dstImage->depth)", "(srcImage->depth == 1)", "(srcImage->depth == 32)",
 * "(dstImage->depth == 1)", "(dstImage->depth == 32)", "((srcImage->dataOrder != dstImage->dataOrder)&&
 * ((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))", "(srcImage->origin != dstImage->origin)".
 */
PXK_API int32_t PXK_CALL pxkScale(PxkImage* srcImage, PxkImage* dstImage);

/**
 * Maps the interval from minVal to maxVal of a 32F image onto the whole range of an integer depth other than 1U, or
 * back, linearly and in double. Towards integers, results are rounded to nearest, halves to even; samples outside the
 * interval give the range's ends, and a NaN the lower one. Sizes need not agree.
 *
 * Refuses, in this order: "((srcImage->depth != 32)&& (dstImage->depth != 32))", "((srcImage->depth == 32)&&
 * (dstImage->depth == 32))", "((srcImage->depth == 1)|| (dstImage->depth == 1))", data orders and origins as pxkScale,
 * "((maxVal - minVal) <= 0.0f)".
 */
PXK_API int32_t PXK_CALL pxkScaleFP(PxkImage* srcImage, PxkImage* dstImage, float minVal, float maxVal);

/**
 * Makes an 8, 16 or 32-bit integer image from a one-bit image: ZeroScale where the bit is 0, OneScale where it is 1.
 * Rows keep their order, whatever the origins.
 *
 * Refuses, in this order: "(srcImage->height != dstImage->height)", "(srcImage->width != dstImage->width)",
 * "(srcImage->nChannels != 1)", "(srcImage->depth != 1)", "(dstImage->depth == 32)", "(dstImage->depth == 1)"; then a
 * level outside the range of depth 8S, 8U, 16S or 16U, such as "((dstImage->depth == (0x80000000| 8)) && (ZeroScale >
 * 127))", "((dstImage->depth == 16) && (OneScale < 0))": ZeroScale too high, too low, then OneScale.
 */
PXK_API int32_t PXK_CALL pxkBitonalToGray(PxkImage* srcImage, PxkImage* dstImage, int32_t ZeroScale, int32_t OneScale);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_comparison Comparison
 *
 * The destination is a one-bit image, ready to be hung on another image as its maskROI: a bit is 1 where the relation
 * holds in all processed channels. A NaN compares false in all of them. Bits outside the region, or under a 0 of the
 * images' masks, keep their value, and so do padding bytes. The sources may be of unlike data order; at depth 1 the
 * destination may be a source. These operations run on whatever status is stored.
 *
 * All report "Incorrect Image"; -5 "(srcImageA->depth != srcImageB->depth)" (two sources), "(dstImage->depth != 1)",
 * "(nChSrcA != nChSrcB)" (two sources), then what the function says; -4 "Out of memory" when masks can't be combined;
 * -5 with "(srcImageA->tileInfo->tileData == ((void*)(0)))", or the same of another image, for a refused tile.
 * @{
 */

/** a < b, on samples of two images of one depth, any of the seven. */
PXK_API void PXK_CALL pxkLess(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a > b, on samples of two images of one depth, any of the seven. */
PXK_API void PXK_CALL pxkGreater(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a = b, on samples of two images of one depth, any of the seven. */
PXK_API void PXK_CALL pxkEqual(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/**
 * a < value at every depth but 32F. The value is taken as it stands, not limited to the depth: 300 is above every 8U
 * sample. 32F reports -5 "For processing depth 32F use function pxkLessSFP".
 */
PXK_API void PXK_CALL pxkLessS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/** a > value. Otherwise as pxkLessS; the text names pxkGreaterSFP. */
PXK_API void PXK_CALL pxkGreaterS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/** a = value. Otherwise as pxkLessS; the text names pxkEqualSFP. */
PXK_API void PXK_CALL pxkEqualS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/** a < value at 32F. Other depths report -5 "For processing this depth use function pxkLessS". */
PXK_API void PXK_CALL pxkLessSFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/** a > value at 32F. Other depths report -5 "For processing this depth use function pxkGreaterS". */
PXK_API void PXK_CALL pxkGreaterSFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/** a = value at 32F. Other depths report -5 "For processing this depth use function pxkEqualS". */
PXK_API void PXK_CALL pxkEqualSFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/**
 * |a - b| is at most `epsilon`; 32F only. The difference is formed in double; that of two equal infinities is no
 * number, so they do not compare equal. Other depths report -5 "(srcImageA->depth != 32)"; then -5 "(epsilon < 0)".
 */
PXK_API void PXK_CALL pxkEqualFPEps(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, float epsilon);

/** |a - value| is at most `epsilon`. Otherwise as pxkEqualFPEps; the text is "(srcImage->depth != 32)". */
PXK_API void PXK_CALL pxkEqualSFPEps(PxkImage* srcImage, PxkImage* dstImage, float value, float epsilon);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_products Scaled products
 *
 * Samples count as fractions from 0 to 1: M, the largest sample of the depth, stands for 1.
 * @{
 */

/**
 * a b / M rounded to nearest; 8U and 16U. Region, channels, masks and tiles as in pxkMultiply, but padding bytes stay
 * as they are. Reports "Incorrect Image"; -5 "(srcImageA->depth != 8) && (srcImageA->depth != 16)"; then depths, data
 * orders and channels as pxkMultiply does.
 */
PXK_API void PXK_CALL pxkMultiplyScale(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/**
 * a value / M rounded to nearest, `value` limited to 0 and M; 8U and 16U. Otherwise as pxkMultiplyScale, with reports
 * of pxkMultiplyS behind "(srcImage->depth != 8) && (srcImage->depth != 16)".
 */
PXK_API void PXK_CALL pxkMultiplySScale(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_alpha Alpha
 *
 * Alpha is the last channel of an image whose alphaChannel is not 0. M is the depth's largest value and stands for
 * opaque. Under a channel of interest only that channel of the destination changes; when it is the alpha channel, it
 * takes the alpha that the whole operation would have left there. Only pixels selected by all masks change. These
 * operations run on whatever status is stored.
 * @{
 */

/** @name Composition
 * The fractions Fa of image a and Fb of image b, after Porter and Duff, Compositing Digital Images, 1984.
 * @{ */
#define PXK_COMPOSITE_OVER 0 /**< a over b: 1, 1 - alphaA */
#define PXK_COMPOSITE_IN 1   /**< a where b is: alphaB, 0 */
#define PXK_COMPOSITE_OUT 2  /**< a where b is not: 1 - alphaB, 0 */
#define PXK_COMPOSITE_ATOP 3 /**< a where b is, over b: alphaB, 1 - alphaA */
#define PXK_COMPOSITE_XOR 4  /**< each where the other is not: 1 - alphaB, 1 - alphaA */
#define PXK_COMPOSITE_PLUS 5 /**< both: 1, 1 */
/** @} */

/**
 * Multiplies colour by alpha in place; 8U, 16U, 32F. With alphaValue below 0 every colour sample is multiplied by its
 * pixel's own alpha, over M and rounded to nearest (32F: alpha from 0 to 1, plain product). With alphaValue from 0 to M
 * (32F: 0 to 255, which stands for 1) colour is multiplied by that constant, and an alpha channel is set to it; above M
 * it counts as M. Reports "Incorrect Image"; -5 "(image->depth != 8) && (image->depth != 16) && (image->depth != 32)",
 * "(image->alphaChannel == 0)" (alphaValue below 0 only), "(image->tileInfo->tileData == ((void*)(0)))".
 */
PXK_API void PXK_CALL pxkPreMultiplyAlpha(PxkImage* image, int32_t alphaValue);

/**
 * Composes a and b: result alpha is alphaA Fa + alphaB Fb with the fractions of compositeType (PXK_COMPOSITE_...), and
 * result colour, premultiplied, is a Fa + b Fb on premultiplied a and b, both limited to M; 8U and 16U. With
 * premultiplied 0 the sources hold plain colour: they are multiplied by their alphas, and the result is divided by its
 * alpha, 0 where that is 0. The whole pixel is computed exactly, with one rounding at the end, to nearest. A
 * destination that has an alpha channel receives the result's alpha. The destination may be a source.
 *
 * Alpha comes from the sources' alpha channels.
 *
 * Reports "Incorrect Image"; -5 with depths and data orders as pxkAdd does, "(srcImageA->depth != 8) &&
 * (srcImageA->depth != 16)", "(srcImageA->alphaChannel == 0)" and "(srcImageB->alphaChannel == 0)" (not from
 * pxkAlphaCompositeC),
 * "(nChSrcA != nChDst)", "(nChSrcB != nChDst)" on the colour channels, "(compositeType < 0) || (compositeType > 5)";
 * -4 "Out of memory" when masks can't be combined; -5 for a refused tile as pxkAdd does.
 */
PXK_API void PXK_CALL pxkAlphaComposite(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage,
                                        int32_t compositeType, int32_t premultiplied);

/**
 * pxkAlphaComposite with the alphas alphaA and alphaB, each limited to 0 and M, whatever the sources hold. Reports as
 * told there.
 */
PXK_API void PXK_CALL pxkAlphaCompositeC(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage,
                                         int32_t compositeType, int32_t alphaA, int32_t alphaB, int32_t premultiplied);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_convolution Convolution, fixed filters and blur
 *
 * Weighted sums of the pixels round each pixel. Beyond the image the border modes of the source hold
 * (pxkSetBorderMode); the edge of a region is none.
 * @{
 */

/** @name How the results of several kernels are combined
 * @{ */
#define PXK_CONV_SUM 0       /**< their sum */
#define PXK_CONV_SUMSQ 1     /**< the sum of their squares */
#define PXK_CONV_SUMSQROOT 2 /**< the square root of the sum of their squares */
#define PXK_CONV_MAX 3       /**< the largest */
#define PXK_CONV_MIN 4       /**< the smallest */
/** @} */

/** A kernel of integers: held reversed, anchors mirrored. Make it with pxkCreateConvKernel. */
typedef struct PxkConvKernel {
    int32_t nCols;   /**< coefficients a row */
    int32_t nRows;   /**< rows */
    int32_t anchorX; /**< nCols - 1 - the caller's anchor */
    int32_t anchorY; /**< nRows - 1 - the caller's anchor */
    int32_t* values; /**< nRows rows of nCols coefficients, in reverse of the caller's order */
    int32_t nShiftR; /**< each sum is shifted right by it, towards minus infinity */
} PxkConvKernel;

/** A kernel of floats, held as a PxkConvKernel is. Make it with pxkCreateConvKernelFP. */
typedef struct PxkConvKernelFP {
    int32_t nCols;   /**< coefficients a row */
    int32_t nRows;   /**< rows */
    int32_t anchorX; /**< nCols - 1 - the caller's anchor */
    int32_t anchorY; /**< nRows - 1 - the caller's anchor */
    float* values;   /**< nRows rows of nCols coefficients, in reverse of the caller's order */
} PxkConvKernelFP;

/**
 * Makes a kernel from nRows rows of nCols coefficients, which are copied. (anchorX, anchorY) is the coefficient that
 * meets the pixel itself. Release it with pxkDeleteConvKernel or pxkDeleteConvKernelFP. Returns null after reporting -5
 * "(values == 0)",
 * "(nRows<=0 || nCols<=0)", "(anchorX<0 ||anchorY<0 ||nRows<=anchorY || nCols<=anchorX)" or -4 "Allocation failure".
 */
PXK_API PxkConvKernel* PXK_CALL pxkCreateConvKernel(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                                    const int32_t* values, int32_t nShiftR);

/** pxkCreateConvKernel from 8-bit signed coefficients. */
PXK_API PxkConvKernel* PXK_CALL pxkCreateConvKernelChar(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                                        const int8_t* values, int32_t nShiftR);

/** pxkCreateConvKernel from floats; there is no shift. */
PXK_API PxkConvKernelFP* PXK_CALL pxkCreateConvKernelFP(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                                        const float* values);

/**
 * Gives back what a kernel was made from; `values` has room for nCols nRows coefficients. Reports -5 "kernel==0",
 * "ownBadKernel((OwnConvKernel*)kernel)", then "nRows==0" and "nCols==0", then "anchorX==0" and "anchorY==0", then
 * "values==0", "nShiftR==0"; a negative stored status ends the call silently behind each pair.
 */
PXK_API void PXK_CALL pxkGetConvKernel(PxkConvKernel* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX,
                                       int32_t* anchorY, int32_t* values, int32_t* nShiftR);

/** pxkGetConvKernel into 8-bit coefficients, of which the low 8 bits are kept. */
PXK_API void PXK_CALL pxkGetConvKernelChar(PxkConvKernel* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX,
                                           int32_t* anchorY, int8_t* values, int32_t* nShiftR);

/** pxkGetConvKernel for a kernel of floats; there is no shift to ask for. */
PXK_API void PXK_CALL pxkGetConvKernelFP(PxkConvKernelFP* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX,
                                         int32_t* anchorY, float* values);

/** Releases a kernel with its coefficients. Reports -5 "kernel==0", "kernel->values==0". */
PXK_API void PXK_CALL pxkDeleteConvKernel(PxkConvKernel* kernel);

/** Releases a kernel of floats. Reports as pxkDeleteConvKernel does. */
PXK_API void PXK_CALL pxkDeleteConvKernelFP(PxkConvKernelFP* kernel);

/**
 * Convolves with one to ten kernels and combines their results per pixel (PXK_CONV_...). With the caller's coefficients
 * K and anchor (ax, ay) a kernel gives the sum over u, v of K[v][u] src(x + ax - u, y + ay - v), shifted right by
 * nShiftR. With one kernel method 1 squares, 2 takes the absolute value, and all others give the plain result. The
 * result is limited to the depth's range; at depth 1U bits count as 0 and 1, and a result above 0 gives 1. Depths 1U,
 * 8U, 8S, 16U, 16S, 32S.
 *
 * Sums are exact in 32-bit integers where coefficients have 16 bits and no sum can leave 32 bits; otherwise, and always
 * at 32S, they are kept in single precision and rounded to nearest even. Sums of squares of kernels whose sums fit 16
 * bits wrap in 32. Beyond the image the border modes hold, constants limited to the depth; the edge of a region is
 * none. Pixels selected by the masks of both images change. Source and destination may be one image.
 *
 * Reports "Incorrect Image"; -11 "Bad ROI offsets" (a region that starts outside its image); -5 "kernel==0",
 * "(nKernels<=0 || nKernels>10)", "Inadmissible method", "kernel[i]==0", "Bad kernel structure", "Uncompatible images"
 * (depths, orders or channels differ), "32F images can be processed only with FP kernel", "FP kernel can be used only
 * for 32F image", "One of the COI is not defined", "No channel to operate"; -4 "Allocation failure", also for a refused
 * tile.
 */
PXK_API void PXK_CALL pxkConvolve2D(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernel** kernel, int32_t nKernels,
                                    int32_t combineMethod);

/**
 * pxkConvolve2D with kernels of floats on images of depth 32F; nothing is limited or rounded. A NaN is stored as
 * 0x7FC00000, whichever one comes in.
 */
PXK_API void PXK_CALL pxkConvolve2DFP(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernelFP** kernel,
                                      int32_t nKernels, int32_t combineMethod);

/**
 * Convolves rows with xKernel (one row) and the result with yKernel (one column); one of the two may be null, which
 * leaves that axis alone. The row kernel's shifted sums are kept in 32 bits without limiting, the column kernel's are
 * limited to the depth. 32S and coefficients whose sums could leave 32 bits are computed in double precision and
 * rounded to nearest even at the end. Images, borders and reports as pxkConvolve2D, then -5 "(xKernel == 0) && (yKernel
 * == 0)", "Bad kernel structure",
 * "(xKernel->nRows != 1)", "(yKernel->nCols != 1)".
 */
PXK_API void PXK_CALL pxkConvolveSep2D(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernel* xKernel,
                                       PxkConvKernel* yKernel);

/** pxkConvolveSep2D with kernels of floats on 32F images, in single precision. A NaN is stored as 0x7FC00000. */
PXK_API void PXK_CALL pxkConvolveSep2DFP(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernelFP* xKernel,
                                         PxkConvKernelFP* yKernel);

/** @name The filters of pxkFixedFilter
 * Coefficients meet the samples as they stand here, rows from the top.
 * @{ */
#define PXK_FILTER_PREWITT_X_3x3 0 /**< -1 0 1 / -1 0 1 / -1 0 1 */
#define PXK_FILTER_PREWITT_Y_3x3 1 /**< -1 -1 -1 / 0 0 0 / 1 1 1 */
#define PXK_FILTER_SOBEL_X_3x3 2   /**< -1 0 1 / -2 0 2 / -1 0 1 */
#define PXK_FILTER_SOBEL_Y_3x3 3   /**< -1 -2 -1 / 0 0 0 / 1 2 1 */
#define PXK_FILTER_LAPLACE_3x3 4   /**< 0 1 0 / 1 -4 1 / 0 1 0 */
#define PXK_FILTER_LAPLACE_5x5 5   /**< 0 0 1 0 0 / 0 1 2 1 0 / 1 2 -16 2 1 / 0 1 2 1 0 / 0 0 1 0 0 */
#define PXK_FILTER_GAUSS_3x3 6     /**< 1 2 1 squared, over 16 */
#define PXK_FILTER_GAUSS_5x5 7     /**< 1 4 6 4 1 squared, over 256 */
#define PXK_FILTER_HIGHPASS_3x3 8  /**< -1 everywhere, 8 in the middle */
#define PXK_FILTER_HIGHPASS_5x5 9  /**< -1 everywhere, 24 in the middle */
#define PXK_FILTER_SHARPEN_3x3 10  /**< -1 everywhere, 16 in the middle, over 8 */
/** @} */

/**
 * Applies a fixed filter, its middle on the pixel, at every depth; integer sums are shifted right, floats multiplied by
 * the power of two, and a NaN is stored as 0x7FC00000. Images, borders and reports as pxkConvolve2D and
 * pxkConvolve2DFP; -5 "(filter < 0) || (filter > 10)".
 */
PXK_API void PXK_CALL pxkFixedFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t filter);

/**
 * The mean of the nCols by nRows window round each pixel, (anchorX, anchorY) as for the rank filters. Integer depths
 * round to nearest, halves upward; 32F is summed in double precision and rounded once, and no sample outside a window
 * touches its mean; a NaN is stored as 0x7FC00000. Source and destination may be one image. Masks, borders and reports
 * as the rank filters; 1U is refused with -5 "srcImage->depth==1", 32F is taken.
 */
PXK_API void PXK_CALL pxkBlur(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                              int32_t anchorY);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_rank Rank filters
 *
 * One sample of the nCols by nRows window round each pixel, chosen by its rank; (anchorX, anchorY) is the window's
 * pixel that the result belongs to, counted from its upper left corner. Depths 1U, 8U, 8S, 16U, 16S, 32S. Beyond the
 * image the border modes hold; the edge of a region is none. Pixels selected by the masks of both images change.
 *
 * All report "Incorrect Image"; -5 "(anchorX>=nCols)||(anchorX<0)", "(anchorY>=nRows)||(anchorY<0)",
 * "(srcImage==dstImage)", "srcImage->depth!=dstImage->depth", "srcImage->depth==32",
 * "srcImage->nChannels!=dstImage->nChannels", "srcImage->alphaChannel!=dstImage->alphaChannel", unless the depth is 1U
 * "srcImage->dataOrder!=dstImage->dataOrder", and "Number of interset channel input and output Image is not equal.".
 * Behind these checks a negative stored status ends the call silently, and so do a shortage of memory and a refused
 * tile, with part of the destination written.
 * @{
 */

/** The largest sample. */
PXK_API void PXK_CALL pxkMaxFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows,
                                   int32_t anchorX, int32_t anchorY);

/** The smallest sample. */
PXK_API void PXK_CALL pxkMinFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows,
                                   int32_t anchorX, int32_t anchorY);

/**
 * The middle sample, of an even number the upper one of the two in the middle. At depth 1U the bit that at least half
 * of the window has, so that a tie gives 1.
 */
PXK_API void PXK_CALL pxkMedianFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows,
                                      int32_t anchorX, int32_t anchorY);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_morphology Morphology
 *
 * One pass of a square window of side 2 nIterations + 1 (it is no loop count) over images of depth 1U, 8U or 16U. The
 * window sees the region and a ring of one sample round it, real samples where the image has them and samples by the
 * border modes beyond the image; everything farther out repeats the ring. Masks of both images limit what is written,
 * not what is read. Source and destination may be one image. The stored status is set to 0 on entry.
 *
 * All report under the name ownMorph: "Incorrect Image"; -5 "Illegal number of of iterations" (below 1), "Illegal image
 * depth", "SRC and DST depth are different", "SRC and DST order are different", "SRC and DST orign are different", "SRC
 * and DST number of channels are different". When memory is short or a tile is refused the status is -4 and nothing is
 * reported.
 * @{
 */

/** The largest sample of the window. */
PXK_API void PXK_CALL pxkDilate(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** The smallest sample of the window. */
PXK_API void PXK_CALL pxkErode(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** Erodes, then dilates the result, whose edge samples are repeated outward. */
PXK_API void PXK_CALL pxkOpen(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** Dilates, then erodes the result, whose edge samples are repeated outward. */
PXK_API void PXK_CALL pxkClose(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_dither Bit reduction and dithering
 *
 * Fewer bits a sample, with noise or dithering that keeps the tone.
 * @{
 */

/** @name Dither types
 * @{ */
#define PXK_DITHER_NONE 1   /**< none */
#define PXK_DITHER_FS 2     /**< error diffusion of Floyd and Steinberg, 1976 */
#define PXK_DITHER_JJN 4    /**< error diffusion of Jarvis, Judice and Ninke, 1976 */
#define PXK_DITHER_STUCKI 8 /**< error diffusion of Stucki, 1981 */
#define PXK_DITHER_BAYER 16 /**< ordered, after Bayer, 1973, with 4 by 4 thresholds */
/** @} */

/**
 * Converts an image to a lower or equal depth, with noise in front and dithering behind where they are asked for: 32S
 * to 16U, 8U, 1U; 16U to 16U, 8U, 1U; 8U to 8U, 1U. Works on the smaller width and height of both images, on all
 * channels, alpha included, each for itself. Masks do not count. The source is never changed; at equal depth it may be
 * the destination. The result does not depend on tiles. Runs on whatever status is stored.
 *
 * The depth falls without rounding: the high bits of a sample, of 32S after adding 2^31; the bit is 1 from 1 (32S),
 * 32768 (16U), 128 (8U) on.
 *
 * jitterType, 0 to 8, is how far noise may move a sample, in steps of 1 / 16 of the range at 8U and 1 / 256 at 16U; at
 * 32S in steps of the result. Samples of the topmost step stay as they are; a sample that would leave the range is only
 * rounded at random, upward when it has few bits below the step. The noise comes from the C runtime's rand: 2048
 * numbers are drawn at each call with a jitterType other than 0. It repeats when srand is given the same seed.
 *
 * ditherType is one of PXK_DITHER_...; all but PXK_DITHER_NONE leave bitCount significant bits in each sample of the
 * destination (of a gray source with a one-bit destination: in the source's samples, which then become bits as above).
 * A negative bitCount is 0, one above the destination's bits is half of them. Levels are multiples of the step and the
 * largest sample: bitCount 1 has the levels 0, 128 and 255 at 8U, so to one-bit images it renders gray 128 as white.
 * With bitCount 0 the levels are 0 and 255, and tone is kept. Errors go from the top row down, always from left to
 * right.
 *
 * Reports -5 "(jitterType<0)||( jitterType >= 9)"; "Incorrect Image"; -5 "src & dst roi must be NULL",
 * "(src->nChannels != dst->nChannels)||(src->dataOrder != dst->dataOrder)||(src->origin != dst->origin)", "Jittering is
 * incompatible with dithering operation for 1U destination image", and with dithering "colorModel, (channelSeq)  must
 * be RGB,(RGB,BGR) or GRAY,(G) when dithering mode is set on" (colorModel "RGB" with channelSeq "RGB" or "BGR", or
 * "Gray" or "GRAY" with a channelSeq that begins with G). Then, -5 under the name of the stage, before anything is
 * written:
 * - ownReduceBits: "Error output depth. 32S to 16U,8U,1U conversion is valid now", "Error output depth. 16U to 8U,1U
 *   conversion is valid now", "Error output depth. 8U to 1U conversion is valid now", "Error input depth. 32S,16U,8U
 *   input is valid now";
 * - ownjitter_rect, the same with noise: "Error output depth for 32S input. Conversion to 16U,8U,1U is valid now",
 *   "Error output depth for 16U input. Conversion to 8U,1U is valid now", "Error output depth. 8U to 1U conversion is
 *   valid now", "Error output depth for 8U input. Conversion to 1U is valid now";
 * - own_dither_rect, for what is to be dithered: "Error output depth for color dithering. 16U,8U is valid now", "Error
 *   output depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U", "Erroneous dither
 *   option"; own_dither_tiled_errprop, where errors cross tiles: the first of them, or "Error depth for gray image
 *   dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U".
 * Error diffusion needs memory for the errors of a few rows, and where an image is tiled for the whole picture as well,
 * at the depth that is dithered, which must be less than 2^31 bytes: the source is read whole before anything is
 * written. Without memory: -4 "no memory for error propagation dithering errors array" (tiled), or "no memory for errr
 * array" under the row kernel's name, such as owncbDither_Gray_Floyd_PX, with nothing written. A refused tile is
 * -5 "(src->tileInfo->tileData == NULL)" or "(dst->tileInfo->tileData == NULL)".
 */
PXK_API void PXK_CALL pxkReduceBits(PxkImage* srcImage, PxkImage* dstImage, int32_t jitterType, int32_t ditherType,
                                    int32_t bitCount);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_colour Colour models
 *
 * Conversions work on the smaller width and height of both images. The source has at least three channels, of which the
 * first three count; the destination has three. Depth, data order and origin agree. Regions must be null; masks and
 * alpha do not count; tiles are served. A conversion from RGB takes one header as source and destination; on the way to
 * RGB the words of the two differ, so pixels are converted in place through two headers. Red is channel 0 where
 * channelSeq of the RGB image begins with "R", otherwise channel 2; the other model's channels come in the order of its
 * name. Each function runs on whatever status is stored.
 *
 * A conversion to a model writes the model's word, zero-filled to four letters, to colorModel and channelSeq of the
 * destination, as soon as the source's words and the regions have been looked at, even if the call fails then.
 *
 * Below, T is the largest sample (255, 65535 or 2147483647), >> is a shift that rounds towards minus infinity, 32S
 * results are cut towards zero, and "limited" is to the range 0 to T. Round trips are RGB to the model and back; their
 * bounds hold for all colours at 8U.
 *
 * Reports, each ending the call: "Incorrect Image"; then -5: "colorModel must be RGB instead of %.4s " and "channelSeq
 * must be RGB or BGR instead of %.4s " (three letters count), of the RGB image; on the way to RGB "src-> colorModel
 * must be %.4s instead of %.4s" and "src-> channelSeq must be %.4s instead of %.4s"; "src & dst roi must be NULL"; YUV:
 * "src1->depth != src2->depth"; "(src->nChannels < 3 ) || (dst->nChannels != 3 ) || (src->depth != dst->depth) ||
 * (src->dataOrder != dst->dataOrder) || (src->origin != dst->origin)"; a depth that is not taken: "Error input depth.
 * 32F, 32S ,16U,8U are valid now" (XYZ, YUV, YCrCb), "Error input depth. 32S,16U,8U are valid now" (HSV, HLS), "Error
 * input depth. 32F is valid now" (LUV), "Error input depth. 8U is valid now" (YCC). A refused tile: "(src->tileInfo->
 * tileData == NULL)" or "(dst->tileInfo->tileData == NULL)", without the break.
 * @{
 */

/**
 * Hue, saturation, value, after Smith, 1978: "HSV", 8U, 16U, 32S. Value is the largest of red, green and blue;
 * saturation T (max - min) / max, or 0 for black; hue the angle from red (0) over green (120) to blue (240) in degrees,
 * 0 without saturation, all cut to integers. 8U stores half the degrees, 0 to 179. At 16U and 32S T / max is rounded to
 * a double before it is multiplied, which may cost a unit. Round trip: within 11 at 8U, 1.7 % of T at 16U.
 */
PXK_API void PXK_CALL pxkRGB2HSV(PxkImage* srcImage, PxkImage* dstImage);
/**
 * The reverse. With f the fraction of hue in its sector of 60 degrees, p the smallest channel and q (falling) or t
 * (rising) the one between. At 8U, f in degrees:
 *
 *     ss = saturation value >> 8
 *     p = value - ss
 *     q = value - (34 ss f >> 11)
 *     t = value - (34 ss (60 - f) >> 11)
 *
 * At 16U and 32S, with k 1.5259e-05 and 5e-10:
 *
 *     p = (T - saturation) k value
 *     q = (T - f saturation) k value
 *     t = (T - (1 - f) saturation) k value
 *
 * 5e-10 is 7 % above 1 / T, so small saturations at 32S are limited. Hue is counted round the circle. Without
 * saturation all channels are the value.
 */
PXK_API void PXK_CALL pxkHSV2RGB(PxkImage* srcImage, PxkImage* dstImage);
/**
 * Hue (as in HSV), lightness, saturation: "HLS", 8U, 16U, 32S. With sum = max + min: lightness is sum >> 1, saturation
 * T (max - min) / sum where sum is at most T, otherwise T (max - min) / (2 T - sum), cut. Round trip: within 10 at
 * 8U, 1.7 % of T at 16U.
 */
PXK_API void PXK_CALL pxkRGB2HLS(PxkImage* srcImage, PxkImage* dstImage);
/**
 * The reverse. m2 = L + m in the lower half of the range and L + saturation - m in the upper one, with m = 258 L
 * saturation >> 16 at 8U and L k saturation at 16U and 32S (k as in HSV); m1 = 2 L - m2. Red takes the angle hue + 120,
 * green hue, blue hue - 120: a channel rises from m1 at 0 to m2 at 60 degrees, stays up to 180, falls to m1 at 240 and
 * stays. At 8U 137 / 8192 stands for one sixtieth.
 */
PXK_API void PXK_CALL pxkHLS2RGB(PxkImage* srcImage, PxkImage* dstImage);
/**
 * CIE XYZ with the primaries and white of ITU-R BT.709: "XYZ", 8U, 16U, 32S, 32F.
 *
 *     X = 0.412453 R + 0.35758 G + 0.180423 B
 *     Y = 0.212671 R + 0.71516 G + 0.072169 B
 *     Z = 0.019334 R + 0.119193 G + 0.950227 B
 *
 * At 8U and 16U with weights of 14 fraction bits, rounded to nearest, and Z limited: it may exceed T by 9 %. 32S is
 * limited in doubles, 32F is not limited. Round trip: within 24 at 8U (within 2 where Z is not limited).
 */
PXK_API void PXK_CALL pxkRGB2XYZ(PxkImage* srcImage, PxkImage* dstImage);
/**
 * The reverse. Integers are limited, 32F is not.
 *
 *     R = 3.240479 X - 1.53715 Y - 0.498535 Z
 *     G = -0.969256 X + 1.875992 Y + 0.041556 Z
 *     B = 0.055648 X - 0.204043 Y + 1.057311 Z
 */
PXK_API void PXK_CALL pxkXYZ2RGB(PxkImage* srcImage, PxkImage* dstImage);
/**
 * Lightness and two differences of chromaticity from white, after CIE 1976: "LUV", 32F, RGB from 0 to 1. With X, Y, Z
 * as above and d = 1 / (X + 15 Y + 3 Z):
 *
 *     L = 116 cbrt(3.0395136778 Y) - 16
 *     U = 13 L (4 d X - 0.19783001)
 *     V = 13 L (9 d Y - 0.46831998)
 *
 * All are 0 where Y is at most 0.00329. Single precision: the cube root is within two units of the last place and the
 * same bits on every processor. Round trip: within 0.007, most of it near black, which comes back as little more than
 * 0.
 */
PXK_API void PXK_CALL pxkRGB2LUV(PxkImage* srcImage, PxkImage* dstImage);
/** The reverse; L nearer to 0 than 0.00001 counts as that, negative results become 0, and there is no upper limit. */
PXK_API void PXK_CALL pxkLUV2RGB(PxkImage* srcImage, PxkImage* dstImage);
/**
 * Luma and two colour differences: "YUV", 8U, 16U, 32S, 32F.
 *
 *     Y = 0.299 R + 0.587 G + 0.114 B
 *     U = -0.146 R - 0.288 G + 0.434 B
 *     V = 0.617 R - 0.517 G - 0.1 B
 *
 * At 8U and 16U with weights of 15 fraction bits and >> 15; then 127 or 32767 is added to U and V, and V is limited.
 * 32S holds signed U and V. Round trip: within 34 at 8U (V of pure colours is limited).
 */
PXK_API void PXK_CALL pxkRGB2YUV(PxkImage* srcImage, PxkImage* dstImage);
/**
 * The reverse. Integers are limited, 32F is not.
 *
 *     R = Y - 0.0009400501 U + 1.135920183 V
 *     G = Y - 0.3959190767 U - 0.5782887929 V
 *     B = Y + 2.041101518 U - 0.001619414 V
 */
PXK_API void PXK_CALL pxkYUV2RGB(PxkImage* srcImage, PxkImage* dstImage);
/**
 * Luma, blue and red less the luma: "YCr", 8U, 16U, 32S, 32F, stored Y, Cb, Cr; weights of ITU-R BT.601.
 *
 *     Y = 0.299 R + 0.587 G + 0.114 B
 *     Cb = -0.1687 R - 0.3313 G + 0.5 B
 *     Cr = 0.5 R - 0.4187 G - 0.0813 B
 *
 * Cb and Cr lie around 128, 32768, 1073741823 or 0.5. At 8U and 16U with weights of 14 fraction bits; Y is rounded, at
 * 8U also Cb = 0.5643 (B - Y) and Cr = 0.7133 (R - Y) of the rounded Y. Round trip: within 2 at 8U, 4 at 16U.
 */
PXK_API void PXK_CALL pxkRGB2YCrCb(PxkImage* srcImage, PxkImage* dstImage);
/**
 * The reverse, with Cb and Cr less their middle. Integers are limited, at 32F negative results become 0.
 *
 *     R = Y + 1.402 Cr
 *     G = Y - 0.344136 Cb - 0.714136 Cr
 *     B = Y + 1.772 Cb
 */
PXK_API void PXK_CALL pxkYCrCb2RGB(PxkImage* srcImage, PxkImage* dstImage);
/**
 * Luma and two chromas of "YCC", 8U, to RGB: three sums, shifted right by 14 and limited to 361, are places in a table
 * of samples: (22256 Y + 29844 C2 + 4088627) for red, (22256 Y + 7050 C1 - 15190 C2 - 3180790) for green, (22256 Y +
 * 36338 C1 + 5668700) for blue. With these constants blue is always 255 and red at least 247.
 */
PXK_API void PXK_CALL pxkYCC2RGB(PxkImage* srcImage, PxkImage* dstImage);

/**
 * Gray of a colour image: 8U to 16U, 8U, 1U; 16U to 16U, 8U, 1U; 32S to 16U, 8U, 1U. (54 R + 183 G + 18 B) >> 8, of 8U
 * to 16U without the shift, of 16U to 8U >> 16; of 32S (109 (R >> 11) + 366 (G >> 11) + 37 (B >> 11)) >> 13, to 8U
 * >> 21. A bit is 1 in the upper half of that range. The weights add up to 255 of 256: white becomes 254 at 8U. Data
 * orders may differ.
 *
 * Reports as above, "colorModel must be GRAY instead of %.4s " ("Gray" and "GRAY" are) and "channelSeq must be G
 * instead of %.4s " (one letter counts) of the gray image behind those of the RGB image; instead of the list of what
 * must agree
 * "(dst-> dataOrder == PXK_DATA_ORDER_PIXEL) && (dst-> nChannels != 1)", "src->origin != dst->origin",
 * "(src->nChannels < 3 )", "Error in-out depth. 32S,16U,8U=> 16U,8U,1U are valid now". No word is written.
 */
PXK_API void PXK_CALL pxkColorToGray(PxkImage* srcImage, PxkImage* dstImage);
/**
 * Colours of a gray image, which are its samples times a weight each: 8U, 16U, 32S to the same depth, 1U to 8U. Weights
 * are cut to 8 fraction bits (8U, and 1U, where a 1 counts as 255) or 15. Where all three are 0 then, they are 54, 183
 * and 18 of 256; at 16U 109, 366 and 37 of 512; at 32S 6968, 23434 and 2364 of 32768. Products keep their low bits:
 * weights beyond 0 to 1 wrap.
 *
 * Reports as pxkColorToGray, with "src-> depth != dst-> depth && src-> depth != 1U", "src-> depth == dst-> depth &&
 * dst-> depth != 8U" (1U to anything but 8U), "(src-> dataOrder == PXK_DATA_ORDER_PIXEL) && (src-> nChannels != 1)",
 * "(src->origin != dst->origin)", "(dst->nChannels < 3 )", "Error input depth. 32S,16U,8U are valid now".
 */
PXK_API void PXK_CALL pxkGrayToColor(PxkImage* srcImage, PxkImage* dstImage, float weightR, float weightG,
                                     float weightB);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_twist Colour twists
 *
 * A matrix of three rows of three factors and a constant, applied to the first three channels of each pixel.
 * @{
 */

/** A matrix of integers over a power of two. Make it with pxkCreateColorTwist. */
typedef struct PxkColorTwist {
    int32_t data[16];     /**< rows of three factors and a constant; the fourth row does not count */
    int32_t scalingValue; /**< 0 to 31: the matrix is data / 2^scalingValue */
} PxkColorTwist;

/**
 * A new record with copies of 16 values, the caller's to delete. Null after -5 "bad_argument" (scalingValue not 0 to
 * 31, data null) or -4 "matrix_is_not_allocated".
 */
PXK_API PxkColorTwist* PXK_CALL pxkCreateColorTwist(const int32_t* data, int32_t scalingValue);
/**
 * Stores 16 values and a scaling value in a record: 0, or what pxkError returns for -5 "cTwist==0", "(data == 0)",
 * "(scalingValue < 0)", "(scalingValue > 31)", and the record as it was.
 */
PXK_API int32_t PXK_CALL pxkSetColorTwist(PxkColorTwist* cTwist, const int32_t* data, int32_t scalingValue);
/** Releases a record; null is ignored. */
PXK_API void PXK_CALL pxkDeleteColorTwist(PxkColorTwist* cTwist);
/**
 * Multiplies the first three channels of each selected pixel, whatever their order, by the matrix and adds its
 * constants and `offset`: 8U, 16U. Sums are exact and cut towards zero before the offset is added. They are limited
 * before: with an offset from 0 on, sums below 0 give 0 (not the offset) and sums above T - offset give T, the largest
 * sample; with a negative one, sums below -offset give 0 and sums above T give T. Offsets beyond T count as T, likewise
 * -T: the image is saturated. Further channels of the destination stay. Masks and regions count, the channel of
 * interest does not. The source may be the destination.
 *
 * 0, or what pxkError returns for the first of: "Incorrect Image" with its status; -5: "cTwist==0";
 * "(srcImage->nChannels < 3)", "((srcImage->alphaChannel != 0) && (srcImage->nChannels < 4))",
 * "((srcImage->alphaChannel != 0) && (srcImage->alphaChannel < srcImage->nChannels))", and the same of dstImage;
 * "(srcImage->depth != dstImage->depth)"; "((srcImage->depth != 8) && (srcImage->depth != 16))"; "(srcImage->dataOrder
 * != dstImage->dataOrder)"; "(srcImage->origin != dstImage->origin)"; "(srcImage->origin !=
 * srcImage->maskROI->origin)",
 * "(dstImage->origin != dstImage->maskROI->origin)"; "(msk == NULL)" where two masks can't be joined for lack of
 * memory. A refused tile is -5 "(srcImage->tileInfo->tileData == NULL)" or "(dstImage->tileInfo->tileData == NULL)".
 */
PXK_API int32_t PXK_CALL pxkApplyColorTwist(PxkImage* srcImage, PxkImage* dstImage, PxkColorTwist* cTwist,
                                            int32_t offset);
/**
 * pxkApplyColorTwist in single precision, without limits: 32F, `TwistFP` holds three rows of three factors and a
 * constant. Reports behind "Incorrect Image": "(TwistFP == ((void*)(0)))"; "((srcImage->depth != 32)|| (dstImage->depth
 * != 32))"; data order and origin as above; channels as above; "(msk == NULL)"; tiles.
 */
PXK_API int32_t PXK_CALL pxkColorTwistFP(PxkImage* srcImage, PxkImage* dstImage, const float* TwistFP);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_levels Histograms, maps of levels and threshold
 *
 * One table for each processed channel, the first one for the first such channel; under a channel of interest the first
 * table alone. Entries for other channels are not looked at. A table with num keys has num - 1 bins: bin k holds the
 * levels from key[k] up to, but not including, key[k + 1]. An image of 8U has 256 levels, one of 16U 65536, one of 1U
 * two.
 *
 * All run on whatever status is stored. All report "Incorrect Image", source before destination, then -5 with the text
 * of the first condition that holds, in the order told at each operation; and then for each table in turn "lut[k]==0",
 * "lut[k]->key==0", "lut[k]->value==0", "lut[k]->num < 2", "lut[k]->key[0] < 0", "lut[k]->key[lut[k]->num-1] >
 * histSize" (a key above the number of levels), "lut[k]->key[i] > lut[k]->key[i+1]". Behind these: -4 "Allocation
 * failure", "Out of memory" when masks can't be combined; -2 "Error get tile to read", "Error get tile to write".
 * @{
 */

/** A table of levels. The caller owns it and what it points to; only pxkComputeHisto writes, to `value`. */
typedef struct PxkLUT {
    int32_t num;             /**< keys, at least 2 */
    int32_t* key;            /**< num levels, none below the one before; from 0 up to the number of levels */
    int32_t* value;          /**< num entries: counts of the bins; for a stretch the levels that the keys map to */
    int32_t* factor;         /**< num slopes of the ramps from key to key; null counts as all 0 */
    int32_t interpolateType; /**< 0: a step from key to key; otherwise a ramp */
} PxkLUT;

/**
 * Counts the samples of a region into the bins of the tables: value[0] to value[num - 2] are set to 0 first, and
 * value[num - 1] stays. Samples outside the keys are not counted, nor are pixels whose mask bit is 0. At depth 1U
 * value[0] becomes the number of zeros and value[1] that of ones, whatever the keys are. A count beyond 2147483647
 * stops there. Depths 1U, 8U, 16U. After a report behind the checks the bins are not complete.
 *
 * Refuses "lut==0", "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)".
 */
PXK_API void PXK_CALL pxkComputeHisto(PxkImage* srcImage, PxkLUT** lut);

/**
 * Maps samples by the tables: a level of bin k becomes value[k], or where interpolateType is not 0, value[k] + (level -
 * key[k]) factor[k]. The result is cut to the sample's width, so it may wrap. Levels below the first key, and from the
 * last one up, stay. Of equal keys the last one counts. Depths 8U, 16U; the same image on both sides is allowed.
 *
 * Refuses "srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U", "srcImage->depth != dstImage->depth",
 * "srcImage->dataOrder != dstImage->dataOrder", "srcImage->origin != dstImage->origin", "Number of processed channels
 * of srcImage != Number of processed channels of dstImage", "lut==0".
 */
PXK_API void PXK_CALL pxkContrastStretch(PxkImage* srcImage, PxkImage* dstImage, PxkLUT** lut);

/**
 * Maps samples by the sums of the counts that the tables hold, such as pxkComputeHisto leaves them: a level becomes its
 * share, the counts up to it over all counts, of the largest level; truncated at 8U, rounded to nearest at 16U. The
 * count of a bin is spread evenly over its levels, the last one takes the remainder; a bin without levels counts for
 * the level at its key. Depths, images and refusals as pxkContrastStretch; then -3 "All values in histogram are zeroes"
 * when the counts of a table add up to 0, with nothing written.
 */
PXK_API void PXK_CALL pxkHistoEqualize(PxkImage* srcImage, PxkImage* dstImage, PxkLUT** lut);

/**
 * Makes each sample at or above Threshold the highest value of the destination's depth, each other one the lowest: 0
 * and 1 at 1U, 0 and 255 at 8U, -128 and 127 at 8S, 0 and 65535 at 16U, -32768 and 32767 at 16S, -2147483648 and
 * 2147483647 at 32S. From 8U, 8S, 16U, 16S or 32S to any integer depth. Regions, channels, masks, padding and what is
 * reported behind the checks as at the depth conversions; runs on whatever status is stored.
 *
 * Reports "Incorrect Image", source before destination, then -5 with the text of the first condition that holds:
 * "(srcImage->depth == 32)", "(dstImage->depth == 32)", "(srcImage->depth == 1)", "((srcImage->dataOrder !=
 * dstImage->dataOrder)&& ((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))", "(srcImage->origin !=
 * dstImage->origin)", "(srcImage->origin != srcImage->maskROI->origin)", "(dstImage->origin !=
 * dstImage->maskROI->origin)", and for a Threshold outside the source's range a text such as "((srcImage->depth == 8)
 * && (Threshold > 255))", "((srcImage->depth == (0x80000000|16)) && (Threshold < -32768))". An image whose one channel
 * is alpha: nothing happens.
 */
PXK_API void PXK_CALL pxkThreshold(PxkImage* srcImage, PxkImage* dstImage, int32_t Threshold);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_moments Moments
 *
 * Sums of samples times powers of their coordinates: area, centre of mass, spread and slant of a shape.
 * @{
 */

/** One spatial moment: of order m in x and n in y. */
typedef struct PxkMoment {
    double scale; /**< w^-m h^-n, where w and h are the width and height that were measured */
    double value; /**< sum of x^m y^n s over all samples s */
} PxkMoment;

/** The moments of a channel up to order 3. Entries with m + n above 3 are not used. */
typedef struct PxkMomentState {
    PxkMoment moments[4][4]; /**< [m][n] */
} PxkMomentState;

/**
 * Computes all spatial moments up to order 3 of one channel: that of a one-channel image, or the channel of interest. x
 * and y are counted from the region's first pixel; pixels whose mask bit is 0 do not count. Every depth; bits are
 * samples of 0 and 1. Row sums of 1, 8 and 16 bits are exact while they stay below 2^53; all else is added in double,
 * in an order that depends only on the sizes of image, tiles and mask. Where there is nothing to measure all scales and
 * values are 0.
 *
 * Reports "Incorrect Image"; -5 "Only one channel can be proceed", "state==0", "(image->tileInfo->tileData == NULL)".
 * After a report the state is as it was.
 */
PXK_API void PXK_CALL pxkMoments(PxkImage* image, PxkMomentState* state);

/**
 * The spatial moment of order m, n out of what pxkMoments filled: the sum of x^m y^n s. Returns 0 after reporting -5
 * "Illegal order of moment" (m or n below 0, m + n above 3), "state==0".
 */
PXK_API double PXK_CALL pxkGetSpatialMoment(PxkMomentState* state, int32_t m, int32_t n);

/** pxkGetSpatialMoment times the entry's scale. */
PXK_API double PXK_CALL pxkGetNormalizedSpatialMoment(PxkMomentState* state, int32_t m, int32_t n);

/**
 * The central moment out of what pxkMoments filled: the sum of (x - xb)^m (y - yb)^n s, where (xb, yb) is the centre of
 * mass, or the middle of the measured area when the mass is 0. Reports as pxkGetSpatialMoment does.
 */
PXK_API double PXK_CALL pxkGetCentralMoment(PxkMomentState* state, int32_t m, int32_t n);

/** pxkGetCentralMoment times the entry's scale. */
PXK_API double PXK_CALL pxkGetNormalizedCentralMoment(PxkMomentState* state, int32_t m, int32_t n);

/** One moment of an image: pxkMoments, then pxkGetSpatialMoment, each with its own reports. 0 when one has failed. */
PXK_API double PXK_CALL pxkSpatialMoment(PxkImage* image, int32_t m, int32_t n);

/** pxkMoments, then pxkGetNormalizedSpatialMoment. 0 when one has failed. */
PXK_API double PXK_CALL pxkNormalizedSpatialMoment(PxkImage* image, int32_t m, int32_t n);

/** pxkMoments, then pxkGetCentralMoment. 0 when one has failed. */
PXK_API double PXK_CALL pxkCentralMoment(PxkImage* image, int32_t m, int32_t n);

/** pxkMoments, then pxkGetNormalizedCentralMoment. 0 when one has failed. */
PXK_API double PXK_CALL pxkNormalizedCentralMoment(PxkImage* image, int32_t m, int32_t n);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_norms Norms and extrema
 * @{
 */

/** @name Norms
 * @{ */
#define PXK_NORM_INF 1     /**< largest of |a - b|, or of |a| */
#define PXK_NORM_L1 2      /**< sum of |a - b|, or of |a| */
#define PXK_NORM_L2 4      /**< square root of the sum of (a - b)^2, or of a^2 */
#define PXK_NORM_INF_REL 9 /**< PXK_NORM_INF of a - b over PXK_NORM_INF of b */
#define PXK_NORM_L1_REL 10 /**< PXK_NORM_L1 of a - b over PXK_NORM_L1 of b */
#define PXK_NORM_L2_REL 12 /**< PXK_NORM_L2 of a - b over PXK_NORM_L2 of b */
/** @} */

/**
 * Measures an image, the difference of two images, or that difference relative to the second one, over all processed
 * channels and all pixels selected by the masks of both. srcImageB may be null, for the norms that are not relative.
 * Every depth; bits are samples of 0 and 1. Integers are added exactly, floats and squares of 32S in double, in an
 * order that depends only on the sizes and row steps of images, tiles and masks. A NaN makes sums NaN, and is never the
 * largest difference.
 *
 * Returns 0 where there is nothing to measure. Returns 0 after a report: "Incorrect Image", for a null srcImageB first
 * -5 "normType unknown"; -5 "(srcImageA->dataOrder!=srcImageB->dataOrder)", "(srcImageA->depth!=srcImageB->depth)",
 * "normType unknown"; -15 "Bad number of channels"; -9 "Null pointer for mask" when masks can't be combined. Returns -1
 * after -5 "Zero divided", where the norm of the second image is 0, and -2 after -2 " ", a refused tile.
 */
PXK_API double PXK_CALL pxkNorm(PxkImage* srcImageA, PxkImage* srcImageB, int32_t normType);

/**
 * Stores the smallest and the largest sample of a 32F image over the region and all processed channels; masks do not
 * count. NaN samples are passed over; both results are a NaN when there are no others. A zero is stored as +0. Returns
 * 0, also with nothing stored when there is nothing to measure; or -5, with nothing stored, after a report: "Incorrect
 * Image" with the status of the header; -5 "((min == ((void*)(0)))||(max == ((void*)(0))))", "(srcImage->depth != 32)",
 * "(srcImage->tileInfo->tileData == NULL)".
 */
PXK_API int32_t PXK_CALL pxkMinMaxFP(PxkImage* srcImage, float* min, float* max);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_scale Changes of scale and mirrors
 *
 * Geometry operations go on after a failed check: one call can give several reports, in the order told, and the last
 * status stands. They stop behind all checks at any negative status, be it an old one. After a null image nothing else
 * is checked.
 *
 * A change of scale by xDst / xSrc and yDst / ySrc takes one-bit images (nearest pixels only), 8U and 16U, in both data
 * orders. Regions keep their own offsets; the work is the smaller of the destination's region and the source's region
 * in its new size, rounded down but at least one pixel each way. The source's mask comes into the new scale by its
 * nearest pixels, bit (0, 0) of its region on the first pixel of the work, and is joined with the destination's. Shared
 * pixels are read before they are written.
 * @{
 */

/** @name Interpolations
 * @{ */
#define PXK_INTER_NN 0     /**< the nearest pixel */
#define PXK_INTER_LINEAR 1 /**< between 2 by 2 pixels */
#define PXK_INTER_CUBIC 2  /**< a polynomial through 4 by 4 pixels */
#define PXK_INTER_SUPER 3  /**< the mean of the box that becomes one pixel */
/** @} */

/**
 * Enlarges: xDst at least xSrc, yDst at least ySrc. The first and last destination pixels lie on the first and last
 * source pixels, so pixel i reads position p = i (w - 1) / (w xDst / xSrc - 1), w being the source's width; by equal
 * factors i itself, and every interpolation copies then.
 *
 * - PXK_INTER_NN: the pixel at p + 0.5, rounded down (a fraction within 0.00001 of the next integer counts as that).
 * - PXK_INTER_LINEAR: weights of 14 bits; 8U keeps 14 bits between row and column and cuts both off, 16U is cut off
 *   once, at the end.
 * - PXK_INTER_CUBIC: Newton's polynomial through four pixels in single precision, limited to the depth's range.
 * A source below 2 pixels wide or high takes PXK_INTER_NN, one below 4 PXK_INTER_LINEAR in place of PXK_INTER_CUBIC.
 *
 * Reports -5 "xDst < xSrc || yDst < ySrc"; "Incorrect Image"; -5 "interpolate != PXK_INTER_NN && interpolate !=
 * PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC", "srcImage->depth != dstImage->depth", "srcImage->depth !=
 * PXK_DEPTH_1U && srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U", "srcImage->dataOrder !=
 * dstImage->dataOrder", "xDst <= 0 || xSrc <= 0", "yDst <= 0 || ySrc <= 0", "This function isn`t in-plase function";
 * -2 "Processed channels of srcImage != Processed channels of dstImage"; -4 "Out of memory", also for a refused source
 * tile; -5 "Error get tile to write". Whatever the cause of a negative status, -1 with an empty text follows.
 */
PXK_API void PXK_CALL pxkZoom(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst,
                              int32_t ySrc, int32_t interpolate);

/**
 * Enlarges or reduces, each axis for itself, like pxkZoom and with its reports but for the first. Reducing by
 * PXK_INTER_SUPER is pxkDecimate, which reports under its own name; for enlarging, -5 "(interpolate == PXK_INTER_SUPER)
 * && (xDst > xSrc || yDst > ySrc)" comes first.
 */
PXK_API void PXK_CALL pxkResize(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst,
                                int32_t ySrc, int32_t interpolate);

/**
 * Reduces: xDst at most xSrc, yDst at most ySrc. PXK_INTER_NN takes pixel i at i xSrc / xDst, plus 0.5 on an axis where
 * xSrc / xDst is no whole number, rounded down. PXK_INTER_SUPER takes the exact mean of the box of xSrc / xDst by ySrc
 * / yDst pixels, parts of pixels by the area they cover, rounded to nearest, halves upward. PXK_INTER_LINEAR and
 * PXK_INTER_CUBIC give what pxkResize gives. One-bit images, sources below 4 pixels wide or high or without a whole
 * pixel in the new size, and whole factors on both axes (but for PXK_INTER_SUPER) take PXK_INTER_NN.
 *
 * Reports "Incorrect Image"; -5 "srcImage == dstImage", "srcImage->depth != dstImage->depth", "srcImage->origin !=
 * dstImage->origin", "srcImage->dataOrder != dstImage->dataOrder", "srcImage->roi->coi > 0 && dstImage->roi->coi == 0",
 * "srcImage->roi->coi > 0 && dstImage->roi == ((void *)0)", the same two with the images exchanged, "interpolate !=
 * PXK_INTER_NN, PXK_INTER_LINEAR, PXK_INTER_CUBIC or PXK_INTER_SUPER", "xDst <= 0", "xSrc <= 0", "yDst <= 0", "ySrc <=
 * 0", "xDst > xSrc", "yDst > ySrc", and the depth; then channels, memory and tiles as pxkZoom.
 */
PXK_API void PXK_CALL pxkDecimate(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst,
                                  int32_t ySrc, int32_t interpolate);

/**
 * Reduces a blurred source: pixels are replaced by the mean of xMaskSize by yMaskSize pixels around them (of an even
 * number, one more to the left or above), rounded to nearest, halves upward, and then decimated. Pixels at the region's
 * edges stand for those beyond. A size of 0 or 1 leaves its axis alone; one-bit images are never blurred. All
 * interpolations but PXK_INTER_SUPER. The images may be one.
 *
 * Reports "Incorrect Image"; -5 "(xMaskSize<0||yMaskSize<0)", "((xDst <= 0)||(yDst<=0))", "((xSrc <= 0)||(ySrc<=0))",
 * "(xDst>xSrc||yDst>ySrc)", "(srcImage->depth!=dstImage->depth)", "(srcImage->dataOrder!=dstImage->dataOrder)",
 * "(srcImage->alphaChannel!=dstImage->alphaChannel)", "srcImage->roi->xOffset >= srcImage->width", "srcImage->roi->
 * yOffset >= srcImage->height" (without the blank), the same two of dstImage, and interpolation and depth as pxkZoom;
 * then channels, memory and tiles as pxkZoom.
 */
PXK_API void PXK_CALL pxkDecimateExt(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst,
                                     int32_t ySrc, int32_t interpolate, int32_t xMaskSize, int32_t yMaskSize);

/**
 * Copies the area, the smaller width and height of both regions, reversed: flipAxis 1 reverses each row, 0 the order of
 * the rows, -1 both. All depths but 32F. The images may be one. A mask selects pixels of the destination; bit (i, j) of
 * a source's mask belongs to destination pixel (i, j) too. The data orders may differ.
 *
 * Reports "Incorrect Image"; -5 "(srcImage==dstImage && srcImage->maskROI != ((void *)0))",
 * "(srcImage->depth==32||dstImage->depth==32)", "(srcImage->depth!=dstImage->depth)", "((flipAxis>1)||(flipAxis<-1))",
 * "(srcImage->depth==1 && srcImage->alphaChannel!=0)", "(dstImage->depth==1 && dstImage->alphaChannel!=0)",
 * "(coiSrc<0||coiSrc>srcImage->nChannels)", "(srcImage->alphaChannel!=0 && srcImage->alphaChannel!=
 * srcImage->nChannels)" (without the blank), "(coiDst<0 || coiDst>dstImage->nChannels)", "(dstImage->alphaChannel!=0 &&
 * dstImage->alphaChannel!=dstImage->nChannels)", "(nChannelsSrc != nChannelsDst)"; -4 "Out of memory", also for a
 * refused source tile; -5 "Error get tile to write".
 */
PXK_API void PXK_CALL pxkMirror(PxkImage* srcImage, PxkImage* dstImage, int32_t flipAxis);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_warps Warps, rotation, shear and remapping
 *
 * Transforms take source coordinates to destination coordinates, both in pixels of the whole image: the first pixel's
 * centre is (0, 0), whatever the regions are. Arrays of coefficients:
 * - affine, 2 by 3: x' = c0 x + c1 y + c2, y' = c3 x + c4 y + c5;
 * - bilinear, 2 by 4: x' = c0 x y + c1 x + c2 y + c3, y' the same from c4 on;
 * - perspective, 3 by 3: x' = (c0 x + c1 y + c2) / (c6 x + c7 y + c8), y' = (c3 x + c4 y + c5) / (c6 x + c7 y + c8).
 *
 * A quadrangle lists its corners as x, y for those of a region, whose last pixels are (x1, y1): (x0, y0), (x1, y0),
 * (x1, y1), (x0, y1). It may go round in either sense.
 *
 * Depths 1U (nearest pixels only), 8U and 16U. The source's region comes to lie in a quadrangle; pixels of the
 * destination's region that lie in it, borders included, are written, the others stay. Only the destination's mask
 * counts. What is outside the source's region is not read: taps that would lie there are held at its edge. A source
 * below 2 pixels wide or high takes nearest pixels, one below 4 linear instead of cubic interpolation.
 *
 * - PXK_INTER_NN: the nearest pixel, half a pixel upward.
 * - PXK_INTER_LINEAR: 8U from positions in 65536ths of a pixel, with 6 fraction bits from row to column; 16U in single
 *   precision from positions in double precision.
 * - PXK_INTER_CUBIC: Newton's polynomial through 4 by 4 pixels, 8U in fixed point with 4 fraction bits.
 * - PXK_WARP_SMOOTH_EDGE may be or-ed in: pixels less than one pixel outside the quadrangle are mixed with the source's
 *   edge, by the share that the source's pixels cover. One-bit images have no such edge.
 *
 * The operations report all that is wrong, in this order, and go on only with a stored status that is not negative:
 * "Incorrect Image" (behind a null image nothing else is checked); -5 "srcImage->depth != dstImage->depth",
 * "srcImage->origin != dstImage->origin", "srcImage->dataOrder != dstImage->dataOrder" (not for one-bit images, nor for
 * one channel on both sides), "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)", "This
 * function is not in-place function"; "warpFlag != 0 && warpFlag != 1", "Quadrangle is degenerate to triangle or length
 * or point" (also where a corner is no number), "Quadrangle is concave"; "interpolate != PXK_INTER_NN && interpolate !=
 * PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC". Then one of: -5 "Determinant of transform matrix == 0.0" (affine
 * coefficients that are no numbers, or a determinant of at most 0.0000001), "Number of processed channels of srcImage
 * != Number of processed channels of dstImage", "Bad rect ROI" (a region that misses its image), "srcImage Rectangle
 * ROI is degenerate to length or point" or the same of dstImage (below 2 pixels wide or high, of the region that
 * belongs to the quadrangle); -4 "Out of memory", also for a refused source tile; -5 "Error get tile to write". Null
 * arrays are refused with -5 and texts such as "coeffs == ((void *)0)".
 * @{
 */

/** Or-ed to an interpolation of a warp: edges fade into what lies round them. */
#define PXK_WARP_SMOOTH_EDGE 16

/** Warps by an affine transform. */
PXK_API void PXK_CALL pxkWarpAffine(PxkImage* srcImage, PxkImage* dstImage, double coeffs[2][3], int32_t interpolate);

/**
 * Warps by a bilinear transform: finds the quadrangle, which is all that counts of the coefficients, and goes on as
 * pxkWarpBilinearQ, under its name. With warpFlag 0 they are applied to the source's region, with 1 to the
 * destination's.
 */
PXK_API void PXK_CALL pxkWarpBilinear(PxkImage* srcImage, PxkImage* dstImage, double coeffs[2][4], int32_t warpFlag,
                                      int32_t interpolate);

/**
 * Warps bilinearly between a region and a quadrangle. warpFlag 0: the source's region to the quadrangle in the
 * destination. 1: the quadrangle in the source, of which parts may lie outside the region and the image (whose edge
 * pixels are then repeated), to all of the destination's region.
 */
PXK_API void PXK_CALL pxkWarpBilinearQ(PxkImage* srcImage, PxkImage* dstImage, double quad[4][2], int32_t warpFlag,
                                       int32_t interpolate);

/** pxkWarpBilinear in perspective, under the name pxkWarpPerspectiveQ. */
PXK_API void PXK_CALL pxkWarpPerspective(PxkImage* srcImage, PxkImage* dstImage, double coeffs[3][3], int32_t warpFlag,
                                         int32_t interpolate);

/** pxkWarpBilinearQ in perspective. */
PXK_API void PXK_CALL pxkWarpPerspectiveQ(PxkImage* srcImage, PxkImage* dstImage, double quad[4][2], int32_t warpFlag,
                                          int32_t interpolate);

/**
 * Turns by `angle` degrees: x' = x cos + y sin + xShift, y' = y cos - x sin + yShift. Any angle; multiples of 90 have
 * exact sines and cosines, and with whole shifts only move pixels. Reports under the name pxkWarpAffine unless pixels
 * are moved between images in memory.
 */
PXK_API void PXK_CALL pxkRotate(PxkImage* srcImage, PxkImage* dstImage, double angle, double xShift, double yShift,
                                int32_t interpolate);

/** Shears: pxkWarpAffine by x' = x + xShear y + xShift, y' = yShear x + y + yShift. */
PXK_API void PXK_CALL pxkShear(PxkImage* srcImage, PxkImage* dstImage, double xShear, double yShear, double xShift,
                               double yShift, int32_t interpolate);

/**
 * Adds to the shifts what makes pxkRotate turn round (xCenter, yCenter); nothing at multiples of 360 degrees. Reports
 * -5 "xShift == ((void *)0) || yShift == ((void *)0)".
 */
PXK_API void PXK_CALL pxkGetRotateShift(double xCenter, double yCenter, double angle, double* xShift, double* yShift);

/**
 * The quadrangle that an affine transform makes of the image's region. No result is written after "Incorrect Image" or
 * -5 "Bad rect ROI".
 */
PXK_API void PXK_CALL pxkGetAffineQuad(PxkImage* image, double coeffs[2][3], double quad[4][2]);

/** The bounds of the quadrangle of pxkGetAffineQuad: { { smallest x, smallest y }, { largest x, largest y } }. */
PXK_API void PXK_CALL pxkGetAffineBound(PxkImage* image, double coeffs[2][3], double bound[2][2]);

/** pxkGetAffineQuad for a bilinear transform. */
PXK_API void PXK_CALL pxkGetBilinearQuad(PxkImage* image, double coeffs[2][4], double quad[4][2]);

/** pxkGetAffineBound for a bilinear transform. */
PXK_API void PXK_CALL pxkGetBilinearBound(PxkImage* image, double coeffs[2][4], double bound[2][2]);

/** pxkGetAffineQuad for a perspective transform. */
PXK_API void PXK_CALL pxkGetPerspectiveQuad(PxkImage* image, double coeffs[3][3], double quad[4][2]);

/** pxkGetAffineBound for a perspective transform. */
PXK_API void PXK_CALL pxkGetPerspectiveBound(PxkImage* image, double coeffs[3][3], double bound[2][2]);

/**
 * The affine transform that takes the image's region to a quadrangle, stored in `coeffs`. No result is written after
 * "Incorrect Image"; -5 "Quadrangle is degenerate to triangle or length or point", "Quadrangle is concave", "Quadrangle
 * is not parallelogram", "Bad rect ROI"; "srcImage Rectangle ROI is degenerate to length or point", a region one pixel
 * wide or high.
 */
PXK_API void PXK_CALL pxkGetAffineTransform(PxkImage* image, double coeffs[2][3], double quad[4][2]);

/**
 * pxkGetAffineTransform for a bilinear transform: any convex quadrangle, and the last text is "image Rectangle ROI is
 * degenerate to length or point".
 */
PXK_API void PXK_CALL pxkGetBilinearTransform(PxkImage* image, double coeffs[2][4], double quad[4][2]);

/** pxkGetBilinearTransform for a perspective transform. */
PXK_API void PXK_CALL pxkGetPerspectiveTransform(PxkImage* image, double coeffs[3][3], double quad[4][2]);

/**
 * Every destination pixel from the source position that two 32F images of one channel hold for it, as coordinates of
 * the whole source. The area is the smallest of the regions of the destination and both maps, each at its own offset. A
 * position before the first or behind the last pixel of the source's region, or one that is no number, leaves the pixel
 * as it is. Nearest pixels: halves to the even coordinate. Otherwise interpolations, taps, depths and masks are those
 * of the warps.
 *
 * Reports all of "Incorrect Image" (srcImage, xMap, yMap, dstImage); -5 "srcImage->depth != dstImage->depth",
 * "srcImage->origin != dstImage->origin", "srcImage->dataOrder != dstImage->dataOrder", "(srcImage->depth &
 * PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)", "xMap->depth != PXK_DEPTH_32F || xMap->nChannels != 1 ||
 * xMap->alphaChannel != 0", the same of yMap, "This function is not in-place function", "interpolate != PXK_INTER_NN &&
 * interpolate != PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC"; then channels, memory and tiles as the warps.
 */
PXK_API void PXK_CALL pxkRemap(PxkImage* srcImage, PxkImage* xMap, PxkImage* yMap, PxkImage* dstImage,
                               int32_t interpolate);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @defgroup pxk_transforms Fourier and cosine transforms
 *
 * A packed spectrum is an image of the same size as the real one of W times H pixels, one real value a pixel. F(k, l)
 * is the complex spectrum at horizontal frequency k and vertical frequency l. A line of M values packs its spectrum S,
 * whose upper half mirrors the lower one, as S(0), Re S(1), Im S(1), Re S(2), Im S(2), ..., and for even M at last
 * S(M/2): M values, as S(0) and S(M/2) are real. Of the image
 * - column 0 holds the packed line F(0, l), element y in row y;
 * - columns 2k - 1 and 2k hold Re F(k, y) and Im F(k, y) in row y, for k from 1 to (W - 1) / 2;
 * - column W - 1 holds the packed line F(W/2, l) if W is even.
 *
 * For even sizes the corners are F(0, 0), F(W/2, 0), F(0, H/2) and F(W/2, H/2). Width 4 and height 4, for instance:
 *
 *     F(0,0)      Re F(1,0)   Im F(1,0)   F(2,0)
 *     Re F(0,1)   Re F(1,1)   Im F(1,1)   Re F(2,1)
 *     Im F(0,1)   Re F(1,2)   Im F(1,2)   Im F(2,1)
 *     F(0,2)      Re F(1,3)   Im F(1,3)   F(2,2)
 * @{
 */

/** @name Flags of the Fourier transforms
 * A direction, scaling, arithmetic; or the release of what a thread keeps.
 * @{ */
#define PXK_FFT_FORWARD 1    /**< negative exponent, not scaled */
#define PXK_FFT_INVERSE 2    /**< positive exponent, scaled by 1 / (W H) */
#define PXK_FFT_NOSCALE 4    /**< the inverse without its scale */
#define PXK_FFT_USE_INT 16   /**< fixed-point arithmetic */
#define PXK_FFT_USE_FLOAT 32 /**< single precision, the default */
#define PXK_FFT_FREE 128     /**< release this thread's tables and memory, and nothing else */
/** @} */

/** @name Flags of the cosine transform
 * @{ */
#define PXK_DCT_FORWARD 1 /**< from samples to coefficients */
#define PXK_DCT_INVERSE 2 /**< from coefficients to samples */
#define PXK_DCT_FREE 8    /**< release this thread's tables and memory, and nothing else */
/** @} */

/**
 * Turns a real image into its packed spectrum; pxkCcsFft2D turns a packed spectrum into the real image.
 *
 * flags has one direction. With PXK_FFT_FORWARD the exponent is -2 pi i (k m / W + l n / H), and nothing is scaled.
 * With PXK_FFT_INVERSE it is positive, and the result is multiplied by 1 / (W H) unless PXK_FFT_NOSCALE is set too. The
 * direction does not choose the function: pxkRealFft2D forward then pxkCcsFft2D inverse, and pxkRealFft2D inverse then
 * pxkCcsFft2D forward, both return the image.
 *
 * Any size: W and H are the smaller width and height of the two regions, cut at the images' edges; each channel is
 * transformed by itself. All depths but one-bit, which may differ, both data orders, images in memory; masks don't
 * count. The images may be one and the same. Integer samples are taken as they are; results are rounded to the nearest
 * integer, halves to the even one, and limited to the destination's range: 32F and 32S hold a spectrum, 8U hardly does.
 *
 * PXK_FFT_USE_INT asks for fixed-point arithmetic, where neither image is 32F: samples times 64 in 32 bits that wrap,
 * 14-bit factors. It fits spectra that stay below 2^25. PXK_FFT_USE_FLOAT, the default, is single precision.
 *
 * Tables and work memory are kept for each thread until it ends, until memory is short, or until PXK_FFT_FREE, with
 * which a call does nothing else and looks at nothing else: pxkRealFft2D(NULL, NULL, PXK_FFT_FREE).
 *
 * Reports -5 and returns: "(flags & 1) == 0 && (flags & 2 ) == 0", "(flags & 1) != 0 && (flags & 2 ) != 0", "(flags &
 * 32)
 * != 0 && (flags & 16 ) != 0"; for srcImage, then for dstImage under its name: "srcImage==0", "Incorrect Image" (with
 * the status of the check), "srcImage->alphaChannel > 0 && srcImage->alphaChannel != srcImage->nChannels", for one
 * channel "srcImage->alphaChannel == 1 && srcImage->roi == 0" and "srcImage->alphaChannel == 1 && srcImage->roi->coi !=
 * 1", "srcImage->depth == 1", "srcImage->imageData == ((void*)(0))" (tiled images); then, with unlike numbers of
 * processed channels, "(srcImage->nChannels - (srcImage->alphaChannel != 0)) != (dstImage->nChannels -
 * (dstImage->alphaChannel != 0))", "(dstImage->nChannels - (dstImage->alphaChannel != 0)) != (srcImage->roi->coi > 0)"
 * or "(srcImage->nChannels - (srcImage->alphaChannel != 0)) != (dstImage->roi->coi > 0)". -4 "No working memory".
 */
PXK_API void PXK_CALL pxkRealFft2D(PxkImage* srcImage, PxkImage* dstImage, int32_t flags);

/** The real image of a packed spectrum. Everything else is told at pxkRealFft2D. */
PXK_API void PXK_CALL pxkCcsFft2D(PxkImage* srcImage, PxkImage* dstImage, int32_t flags);

/**
 * Multiplies two packed spectra as complex numbers, value by value: what a filter in the frequency domain needs.
 *
 * 8S, 16S, 32S or 32F, the same of all images, both data orders, images in memory; the regions have one size, and
 * srcA, srcB and dst may be one image. 8S and 16S are computed in 32-bit integers that wrap and limited to the depth's
 * range; 32S in double, rounded to the nearest integer, halves to the even one, and limited; 32F in single precision.
 *
 * Reports and returns: "Incorrect Image" for srcA, srcB, dst; -17 "srcA->depth || srcB->depth == 8U||16U||1U"; -5
 * "(srcA->depth != srcB->depth)", "(srcA->depth != dst->depth)", "(width_srcA != width_srcB)", "(height_srcA !=
 * height_srcB)", "(width_srcA != width_dst)", "(height_srcA != height_dst)"; for srcA, srcB and dst in turn -24
 * "srcA-roi->coi" for a channel of interest that is none, and -18 "srcA->alphaChannel" for an alpha channel that is not
 * the last one; -15 without a text for unlike numbers of processed channels; -5 "srcA->imageData == ((void*)(0))" and
 * so on for tiled images.
 */
PXK_API void PXK_CALL pxkMpyRCPack2D(PxkImage* srcA, PxkImage* srcB, PxkImage* dst);

/**
 * Cosine transform of each channel of an image or of its region, of W times H pixels, in single precision:
 * Y(u, v) = 2 / sqrt(W H) c(u) c(v) sum of x(i, j) cos((2 i + 1) u pi / (2 W)) cos((2 j + 1) v pi / (2 H)), where c(0)
 * is the square root of 1/2 and every other c is 1. With PXK_DCT_INVERSE its transpose, which is its inverse. With both
 * directions or none nothing happens, and nothing is reported.
 *
 * Any size: the common width and height of the regions. All depths but one-bit, which may differ, images in memory;
 * masks and channels of interest don't count, alpha is left out. Integer results are rounded to the nearest integer,
 * halves to the even one, and limited to the range. 8 by 8 pixels have a way of their own that takes no memory.
 *
 * Tables and work memory are kept for each thread as with pxkRealFft2D, until PXK_DCT_FREE, with which nothing else is
 * looked at.
 *
 * Reports -5 and returns: "src==0", "dst==0"; then nothing at all while a negative status is stored; "\nFunction does
 * not support inplace operation", "\nImages with 1u depth are not processed", "\nAlpha channel may be 0 or number of
 * channels", "Images are not compatible" (unlike numbers of channels or data orders, a region in only one image, or a
 * region that leaves its image), "srcImage->imageData == ((void*)(0))" and "dstImage->imageData == ((void*)(0))" (tiled
 * images). Without memory the destination stays as it is, and nothing is reported.
 */
PXK_API void PXK_CALL pxkDCT2D(PxkImage* srcImage, PxkImage* dstImage, int32_t flags);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/* Sizes, offsets and the ABI are fixed: every field but the pointers has 32 bits. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define PXK_IS_AT(record, field, with4, with8)                                                                         \
    static_assert(offsetof(record, field) == (sizeof(void*) == 4 ? (with4) : (with8)), #record "." #field)
static_assert(sizeof(PxkROI) == 20, "PxkROI");
static_assert(sizeof(PxkImage) == (sizeof(void*) == 4 ? 112 : 144), "PxkImage");
static_assert(sizeof(PxkBitmapInfoHeader) == 40, "PxkBitmapInfoHeader");
static_assert(sizeof(PxkTileInfo) == (sizeof(void*) == 4 ? 20 : 32), "PxkTileInfo");
static_assert(sizeof(PxkMomentState) == 256, "PxkMomentState");
PXK_IS_AT(PxkImage, depth, 16, 16);
PXK_IS_AT(PxkImage, dataOrder, 28, 28);
PXK_IS_AT(PxkImage, height, 44, 44);
PXK_IS_AT(PxkImage, roi, 48, 48);
PXK_IS_AT(PxkImage, maskROI, 52, 56);
PXK_IS_AT(PxkImage, userTag, 56, 64);
PXK_IS_AT(PxkImage, tileInfo, 60, 72);
PXK_IS_AT(PxkImage, imageSize, 64, 80);
PXK_IS_AT(PxkImage, imageData, 68, 88);
PXK_IS_AT(PxkImage, widthStep, 72, 96);
PXK_IS_AT(PxkImage, borderMode, 76, 100);
PXK_IS_AT(PxkImage, borderConst, 92, 116);
PXK_IS_AT(PxkImage, imageDataBase, 108, 136);
PXK_IS_AT(PxkTileInfo, id, 4, 8);
PXK_IS_AT(PxkTileInfo, tileData, 8, 16);
PXK_IS_AT(PxkTileInfo, width, 12, 24);
PXK_IS_AT(PxkTileInfo, height, 16, 28);
PXK_IS_AT(PxkLUT, value, 8, 16);
PXK_IS_AT(PxkLUT, interpolateType, 16, 32);
#undef PXK_IS_AT
#endif

#ifdef __cplusplus
}
#endif
#endif
