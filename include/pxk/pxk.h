/**
 * pxk: operations on two-dimensional images, with a plain C interface.
 *
 * Every operation works on one picture of an image, the PxkImage header: 1, 8, 16 or 32 bits a channel, signed,
 * unsigned or float; channels interleaved or in planes; pixels in memory, or delivered tile by tile through a function
 * of the caller; restricted by a rectangular region, a channel of interest and a one-bit mask image.
 *
 * What holds for all operations
 * - Pointers to records are the caller's and stay the caller's. Nothing is freed but what a comment says.
 * - An operation that fails reports through pxkError: a status, its own name, a message (mostly the failed condition),
 *   file and line. The report goes to the thread's handler; the caller reads the outcome with pxkGetErrStatus.
 *   The status is never cleared on entry: store 0 with pxkSetErrStatus before a call whose outcome you want to read.
 * - "Incorrect Image" is the report for a header that pxkCheckImageHeader refuses, with the status of that check.
 * - A region that misses its image, or an empty mask, makes an operation return with nothing done and no report.
 * - Each image keeps its own region offset. The work is the smallest width and the smallest height of all regions and
 * of the mask, taken axis by axis, and pixel (i, j) of the work is pixel (xOffset + i, yOffset + j) of each image.
 * - Processed channels are all but alpha, or the one that the region's channel of interest names (which may be alpha).
 * - Two threads may work at the same time on different headers, never on one header.
 */
#ifndef PXK_PXK_H
#define PXK_PXK_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32) && !defined(PXK_STATIC) && !defined(PXK_BUILD)
#define PXK_API __declspec(dllimport)
#elif defined(__GNUC__) && !defined(_WIN32)
#define PXK_API __attribute__((visibility("default")))
#else
#define PXK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Constants */

/** Flag of the signed integer depths. */
#define PXK_DEPTH_SIGN ((int32_t)0x80000000u)
/** Depths: bits a channel. 32 is always float, and there is no unsigned 32-bit depth. */
#define PXK_DEPTH_1U 1
#define PXK_DEPTH_8U 8
#define PXK_DEPTH_16U 16
#define PXK_DEPTH_32F 32
#define PXK_DEPTH_8S (PXK_DEPTH_SIGN | 8)
#define PXK_DEPTH_16S (PXK_DEPTH_SIGN | 16)
#define PXK_DEPTH_32S (PXK_DEPTH_SIGN | 32)

/** Data orders: channels interleaved within a row, or each channel a whole plane. */
#define PXK_DATA_ORDER_PIXEL 0
#define PXK_DATA_ORDER_PLANE 1

/** Sides of an image, bits of a mask for pxkSetBorderMode. */
#define PXK_SIDE_TOP 1
#define PXK_SIDE_BOTTOM 2
#define PXK_SIDE_LEFT 4
#define PXK_SIDE_RIGHT 8

/** What lies beyond an image's edge: a constant, the edge sample, the image mirrored (edge doubled) or repeated. */
#define PXK_EDGE_CONST 0
#define PXK_EDGE_CLAMP 1
#define PXK_EDGE_MIRROR 2
#define PXK_EDGE_WRAP 3

/** What pxkDeallocate releases, bits of a mask. */
#define PXK_FREE_HEADER 1
#define PXK_FREE_DATA 2
#define PXK_FREE_ROI 4
#define PXK_FREE_TILE 8
#define PXK_FREE_MASK 16

/** What the library wants of a tile, the last argument of a PxkTileCallBack. */
#define PXK_TILE_READ 1
#define PXK_TILE_WRITE 2
#define PXK_TILE_RELEASE 4

/** Alpha composition: the fractions Fa of image a and Fb of image b. */
#define PXK_COMPOSITE_OVER 0 /**< 1, 1 - alphaA */
#define PXK_COMPOSITE_IN 1   /**< alphaB, 0 */
#define PXK_COMPOSITE_OUT 2  /**< 1 - alphaB, 0 */
#define PXK_COMPOSITE_ATOP 3 /**< alphaB, 1 - alphaA */
#define PXK_COMPOSITE_XOR 4  /**< 1 - alphaB, 1 - alphaA */
#define PXK_COMPOSITE_PLUS 5 /**< 1, 1 */

/** Error modes: the error ends the application, is the caller's to handle, or is not shown at all. */
#define PXK_ErrModeLeaf 0
#define PXK_ErrModeParent 1
#define PXK_ErrModeSilent 2

/** Status codes. Texts come from pxkErrorStr. A fault of a mask image is the code of the header less 100. */
#define PXK_StsOk 0
#define PXK_StsBackTrace (-1)
#define PXK_StsInternal (-3)
#define PXK_StsNoMem (-4)
#define PXK_StsBadArg (-5)
#define PXK_StsBadFunc (-6)
#define PXK_StsNoConv (-7)
#define PXK_StsAutoTrace (-8)
#define PXK_StsNullHeader (-9)
#define PXK_StsBadImageSize (-10)
#define PXK_StsBadRoiOffset (-11)
#define PXK_StsBadDataPointers (-12)
#define PXK_StsBadWidthStep (-13)
#define PXK_StsBadColorModel (-14)
#define PXK_StsBadChannels (-15)
#define PXK_StsBadChannels1U (-16)
#define PXK_StsBadDepth (-17)
#define PXK_StsBadAlphaChannel (-18)
#define PXK_StsBadDataOrder (-19)
#define PXK_StsBadOrigin (-20)
#define PXK_StsBadAlign (-21)
#define PXK_StsNullCallBack (-22)
#define PXK_StsBadTileSize (-23)
#define PXK_StsBadCOI (-24)
#define PXK_StsBadRoiSize (-25)
#define PXK_StsMaskTiled (-26)
#define PXK_StsMaskBadImageSize (-110)
#define PXK_StsMaskBadRoiOffset (-111)
#define PXK_StsMaskBadDataPointers (-112)
#define PXK_StsMaskBadWidthStep (-113)
#define PXK_StsMaskBadColorModel (-114)
#define PXK_StsMaskBadChannels (-115)
#define PXK_StsMaskBadDepth (-117)
#define PXK_StsMaskBadAlphaChannel (-118)
#define PXK_StsMaskBadDataOrder (-119)
#define PXK_StsMaskBadOrigin (-120)
#define PXK_StsMaskBadAlign (-121)
#define PXK_StsMaskBadCOI (-124)
#define PXK_StsMaskBadRoiSize (-125)

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Records */

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
typedef int32_t (*PxkTileCallBack)(PxkImage* image, int32_t xIndex, int32_t yIndex, int32_t mode);

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

/** The version of the library. */
typedef struct PxkLibVersion {
    int32_t major;
    int32_t minor;
    int32_t build;
    const char* fileName;
    const char* versionText;
    const char* buildText;
    const char* buildDate;
    const char* linkage;
} PxkLibVersion;

/**
 * Takes a report: the status, the name of the reporting function, the failed condition or a message, source file and
 * line. Its result becomes the result of pxkError.
 */
typedef int32_t (*PxkErrorCallBack)(int32_t status, const char* func, const char* context, const char* file,
                                    int32_t line);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Status and reports. All of it is per thread; a new thread starts with status 0, PXK_ErrModeLeaf and the box.
 */

/** The status that this thread stored last: 0, or the first failure since 0 was stored. */
PXK_API int32_t pxkGetErrStatus(void);

/** Stores any status, unchecked, and calls no handler. */
PXK_API void pxkSetErrStatus(int32_t status);

/** This thread's error mode. */
PXK_API int32_t pxkGetErrMode(void);

/** Stores any mode, unchecked: PXK_ErrModeLeaf, PXK_ErrModeParent, PXK_ErrModeSilent, or a value the caller's handler
 * knows. */
PXK_API void pxkSetErrMode(int32_t mode);

/** Makes `handler` this thread's report handler, null for pxkGuiBoxReport, and returns the one before. */
PXK_API PxkErrorCallBack pxkRedirectError(PxkErrorCallBack handler);

/**
 * Stores `status` and hands the report to the handler, in every mode. PXK_StsBackTrace and PXK_StsAutoTrace are handed
 * on but not stored, so that the first failure of a chain stays. A status of 0 is stored and nothing else happens.
 * Returns what the handler returns; 0 for status 0. Texts may be null.
 */
PXK_API int32_t pxkError(int32_t status, const char* func, const char* context, const char* file, int32_t line);

/** A constant text for any status, never null: "Unknown error or status code" where there is none of its own. */
PXK_API const char* pxkErrorStr(int32_t status);

/** Handler: ends the process with exit code 1 in PXK_ErrModeLeaf, whatever the status; otherwise returns `status`. */
PXK_API int32_t pxkNulDevReport(int32_t status, const char* func, const char* context, const char* file, int32_t line);

/**
 * Handler: writes the report to the standard-error stream, unless the mode is PXK_ErrModeSilent. In PXK_ErrModeLeaf it
 * then ends the process with exit code 1. Otherwise returns `status`.
 */
PXK_API int32_t pxkStdErrReport(int32_t status, const char* func, const char* context, const char* file, int32_t line);

/**
 * Handler, the default one: shows the report in a modal box, which asks in PXK_ErrModeLeaf whether to end the
 * application (Yes, No) and in PXK_ErrModeParent whether to go on (OK, Cancel). Yes and Cancel end the process with
 * exit code 1. Every other answer, and every other mode, returns `status`. Where there are no boxes the question goes
 * to the terminal, if standard input and standard error are one; without a terminal the text goes to standard error and
 * the process goes on.
 */
PXK_API int32_t pxkGuiBoxReport(int32_t status, const char* func, const char* context, const char* file, int32_t line);

/** The version record, the same at every call. */
PXK_API const PxkLibVersion* pxkGetLibVersion(void);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Memory, headers, regions and tile records */

/**
 * Takes `length` items of 1 (pxkMalloc), 2 (pxkwMalloc), 4 (pxkiMalloc, pxksMalloc) or 8 bytes (pxkdMalloc). The block
 * starts at a multiple of 32 bytes, is not cleared, and has at least 33 spare bytes behind it. Give it back with
 * pxkFree. Null when out of memory or when `length` is negative or too large; nothing is reported.
 */
PXK_API void* pxkMalloc(int32_t length);
PXK_API void* pxkwMalloc(int32_t length);
PXK_API void* pxkiMalloc(int32_t length);
PXK_API void* pxksMalloc(int32_t length);
PXK_API void* pxkdMalloc(int32_t length);

/** Gives back a block of the pxkMalloc family; null is ignored. */
PXK_API void pxkFree(void* block);

/**
 * Makes a header without pixels, border mode PXK_EDGE_CONST with 0 on all sides. `colorModel` and `channelSeq` are four
 * bytes each, copied as they are. `roi`, `maskROI` and `tileInfo` are held by pointer and stay the caller's. Returns
 * null after reporting "Incorrect data-ins" with, in this order of tests: -10 (width or height below 1), -15 (nChannels
 * below 1), -16 (not one channel at depth 1), -14 (a null text), -17 (depth), -18 (alphaChannel neither 0 nor
 * nChannels), -19 (dataOrder), -20 (origin neither 0 nor 1), -21 (align), -10 (pixels, or a tile, of 2^31 bytes or
 * more), -117, -26 or the status less 100 (mask not of depth 1, tiled, or bad). Returns null without a report when out
 * of memory.
 */
PXK_API PxkImage* pxkCreateImageHeader(int32_t nChannels, int32_t alphaChannel, int32_t depth, const char* colorModel,
                                       const char* channelSeq, int32_t dataOrder, int32_t origin, int32_t align,
                                       int32_t width, int32_t height, PxkROI* roi, PxkImage* maskROI, void* userTag,
                                       PxkTileInfo* tileInfo);

/**
 * Allocates the pixels of an integer image, and with `doFill` not 0 fills rows and padding with `fillValue`, cut to the
 * depth's bits. Reports -5 for a null image, one that has imageData or tileInfo, or depth 32F ("( image->depth == 32
 * )"), and "Incorrect data-ins" as pxkCreateImageHeader does. When out of memory, imageData stays null and nothing is
 * reported. The pixels are the header's: release them with pxkDeallocate or pxkDeallocateImage.
 */
PXK_API void pxkAllocateImage(PxkImage* image, int32_t doFill, int32_t fillValue);

/** The same for an image of depth 32F; any other depth reports -5 "( image->depth != 32 )". */
PXK_API void pxkAllocateImageFP(PxkImage* image, int32_t doFill, float fillValue);

/**
 * Releases what `flag` says (PXK_FREE_...), in the order region, mask (with its header, pixels, region and tile record,
 * but not its own mask), tile record, pixels, header, and sets the released pointers to null. Pixels that the library
 * did not allocate (imageDataBase null) are left alone, imageData with them. A null image is ignored.
 */
PXK_API void pxkDeallocate(PxkImage* image, int32_t flag);

/** pxkDeallocate with PXK_FREE_HEADER: the header alone. */
PXK_API void pxkDeallocateHeader(PxkImage* image);

/** Releases the pixels that the library allocated, and clears imageData in any case. `image` must not be null. */
PXK_API void pxkDeallocateImage(PxkImage* image);

/** Makes a region record from unchecked values; null when out of memory. Release it with pxkDeleteROI. */
PXK_API PxkROI* pxkCreateROI(int32_t coi, int32_t xOffset, int32_t yOffset, int32_t width, int32_t height);

/** Stores the values in `roi`, unchecked; null is ignored. */
PXK_API void pxkSetROI(PxkROI* roi, int32_t coi, int32_t xOffset, int32_t yOffset, int32_t width, int32_t height);

/** Releases a region record; null is ignored. */
PXK_API void pxkDeleteROI(PxkROI* roi);

/** Makes a tile record with tileData null; null when out of memory. Release it with pxkDeleteTileInfo. */
PXK_API PxkTileInfo* pxkCreateTileInfo(PxkTileCallBack callBack, int32_t id, int32_t width, int32_t height);

/** Stores the values in `tileInfo` and sets tileData to null; a null record is ignored. */
PXK_API void pxkSetTileInfo(PxkTileInfo* tileInfo, PxkTileCallBack callBack, int32_t id, int32_t width, int32_t height);

/** Releases a tile record; null is ignored. */
PXK_API void pxkDeleteTileInfo(PxkTileInfo* tileInfo);

/**
 * Tests a header as every operation does on entry. Returns 0, or stores and returns the first failure without a report:
 * -9 null; -12 imageData and tileInfo both null or both set; -10 imageSize below 1 (in memory); -13 widthStep below 1
 * (in memory); -10 width or height below 1; -15, -16 nChannels; -17 depth; -18 alphaChannel; -19 dataOrder; -20 origin;
 * -21 align; -10 an image of 2^31 bytes or more; -117, -26 or status less 100 for the mask; -22 no callBack, -23 tile
 * size; -24 coi, -25 size, -11 negative offset of the region. A region that reaches outside the image passes.
 */
PXK_API int32_t pxkCheckImageHeader(PxkImage* image);

/**
 * Makes a copy of an image with its own pixels and region, and without mask, tag and tile record. The clone of a tiled
 * image has pixels for the whole image, not initialised. Reports "Incorrect Image", or -4 with a message that says what
 * could not be allocated, and returns null. Release the clone with pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA
 * | PXK_FREE_ROI).
 */
PXK_API PxkImage* pxkCloneImage(PxkImage* image);

/**
 * Stores a border mode and its constant, cut to the depth's range, for every side whose bit is set in `sides`. The mode
 * is not checked. For depth 32F the constant is an integer too, and the top side's serves all four sides.
 */
PXK_API void pxkSetBorderMode(PxkImage* image, int32_t mode, int32_t sides, int32_t constant);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Copy, set and exchange. These stop silently, after their argument checks, when the stored status is negative.
 */

/**
 * Copies the processed channels of the source's region to the destination's. One header given twice: nothing to do.
 * Reports "Incorrect Image"; -5 "srcImage->depth != dstImage->depth", "srcImage->origin != dstImage->origin" and
 * (unless both have one channel) "srcImage->dataOrder != dstImage->dataOrder", each that fails; -5 "Number of processed
 * channels of srcImage
 * != Number of processed channels of dstImage".
 */
PXK_API void pxkCopy(PxkImage* srcImage, PxkImage* dstImage);

/**
 * Sets the processed channels to `fillValue`, limited to the depth's range. Reports "Incorrect Image"; -17 "You should
 * use pxkSetFP for this image" at depth 32F.
 */
PXK_API void pxkSet(PxkImage* image, int32_t fillValue);

/**
 * Sets the processed channels of an image of depth 32F. Reports -5 "dstImage==0"; -17 "You should use pxkSet for this
 * image"; "Incorrect Image" under the name pxkSet and then -1 with an empty text, also for a status that was negative
 * on entry.
 */
PXK_API void pxkSetFP(PxkImage* image, float fillValue);

/** Exchanges the processed channels of two regions. Reports as pxkCopy does, ImageA as source and ImageB as
 * destination. */
PXK_API void pxkExchange(PxkImage* ImageA, PxkImage* ImageB);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Pixels and the generated test image */

/**
 * Copies pixel (x, y) to `pixel`: all samples, alpha included, one behind the other in the depth's type; at depth 1 one
 * byte, 0 or 1. x and y count in the whole image; with origin 1, y counts from the last stored row. Region, channel of
 * interest and mask play no part. A tile is asked for with PXK_TILE_READ and released. Returns 0, or what pxkError
 * returned for a report: "Incorrect Image"; -5 "((x>width-1) || (x<0))", "((y>height-1) || (y<0))", "pixel==0"; -2
 * "Error get tile to read" for a refused tile.
 */
PXK_API int32_t pxkGetPixel(PxkImage* image, int32_t x, int32_t y, void* pixel);

/**
 * The reverse: copies `pixel` into the image. At depth 1 the lowest bit of its one byte counts. A tile is asked for
 * with PXK_TILE_WRITE; a refused one is reported as -2 "Error get tile to write".
 */
PXK_API int32_t pxkPutPixel(PxkImage* image, int32_t x, int32_t y, void* pixel);

/**
 * Makes an image of rings that narrow towards the edge: one channel "GRAY", pixel order, align 8. With s the sine of
 * 2 pi ((x - width / 2)^2 + (y - height / 2)^2) / (4 height), halves truncated, unsigned samples are s + 1 scaled to
 * the depth's range and cut, signed ones s scaled and cut, and those of 32F (s + 1) times 0.49999. Returns null after
 * reporting -10 or -17 with its text of pxkErrorStr for a bad size or depth, or -4 "Not enough memory to allocate
 * header for ImageJaehne" or "Not enough memory to allocate imageData for ImageJaehne". Release the image with
 * pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA).
 */
PXK_API PxkImage* pxkCreateImageJaehne(int32_t depth, int32_t width, int32_t height);

/**
 * The processor's time-stamp counter as it stands, neither scaled nor serialised; on processors without one,
 * nanoseconds of a monotonic clock.
 */
PXK_API uint64_t pxkGetKestriumCounter(void);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Arithmetic and logic of two images
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
 */

/** a + b limited to the depth's range; plain float addition at 32F. At depth 1 it is pxkOr. */
PXK_API void pxkAdd(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a - b limited to the depth's range; plain float subtraction at 32F; a and not b at depth 1. */
PXK_API void pxkSubtract(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** a b limited to the depth's range; plain float multiplication at 32F. At depth 1 it is pxkAnd. */
PXK_API void pxkMultiply(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/** Bitwise and, or, exclusive or. 32F reports -5 "This function does not support depth 32F". */
PXK_API void pxkAnd(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);
PXK_API void pxkOr(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);
PXK_API void pxkXor(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Arithmetic and logic with a constant
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
 */

/**
 * a + value, limited to the depth's range, for any value. At depth 1 it is pxkOrS.
 * Reports -5 "srcImage==0" and, at depth 32F, "For processing depth 32F use function pxkAddSFP".
 */
PXK_API void pxkAddS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * a - value, or value - a when flip is not 0, limited to the depth's range. At depth 1 the lowest bit of the value
 * counts: a - 0 is a, 1 - a is not a, the other two are 0. Takes images of unlike data order.
 * Reports -5 "For processing depth 32F use function pxkSubtractSFP" at depth 32F.
 */
PXK_API void pxkSubtractS(PxkImage* srcImage, PxkImage* dstImage, int32_t value, int32_t flip);

/**
 * a times value, limited to the depth's range. At depth 1 it is pxkAndS.
 * Reports -5 "srcImage==0" and, at depth 32F, "For processing depth 32F use function pxkMultiplySFP".
 */
PXK_API void pxkMultiplyS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * Bitwise and, or, exclusive or of every sample with the low bits of the value: as many as the depth has, so one at
 * depth 1. At depth 32F they report -5 "This function does not support depth 32F".
 */
PXK_API void pxkAndS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);
PXK_API void pxkOrS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);
PXK_API void pxkXorS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * a + value, a - value (value - a when flip is not 0) and a times value at depth 32F, in plain float arithmetic.
 * Report -5 "srcImage==0" and, at any other depth, "For processing this depth use function pxkAddS" (pxkSubtractS,
 * pxkMultiplyS).
 */
PXK_API void pxkAddSFP(PxkImage* srcImage, PxkImage* dstImage, float value);
PXK_API void pxkSubtractSFP(PxkImage* srcImage, PxkImage* dstImage, float value, int32_t flip);
PXK_API void pxkMultiplySFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/**
 * Shifts every sample left by nShift bits; bits that leave the sample are lost, and 0 comes in. A shift by the depth's
 * bits or more, and a negative one, gives 0. Depth 32F reports -5 "This function does not support depth 32F"; a null
 * source -5 "srcImage==0".
 */
PXK_API void pxkLShiftS(PxkImage* srcImage, PxkImage* dstImage, int32_t nShift);

/**
 * Shifts every sample right by nShift bits: signed ones arithmetically, towards minus infinity. A shift by the depth's
 * bits or more, and a negative one, gives 0, and at signed depths -1 for negative samples. Depth 32F reports -5 "This
 * function does not support depth 32F".
 */
PXK_API void pxkRShiftS(PxkImage* srcImage, PxkImage* dstImage, int32_t nShift);

/** Inverts every bit: pxkXorS with all bits set, which makes the reports. */
PXK_API void pxkNot(PxkImage* srcImage, PxkImage* dstImage);

/**
 * The magnitude of every sample; that of the most negative integer is the largest one. Stops silently when the stored
 * status is negative. At 1U, 8U and 16U it is pxkCopy, and a negative status behind it is reported as -1 "pxkCopy is
 * failed". At the other depths both images must have equally many channels as well.
 * Reports -5 "srcImage==0", "dstImage==0" (both when both are null), "(nChSrcCoi != nChDstCoi)", "(srcImage->nChannels
 * != dstImage->nChannels)", and for a refused tile of the source "(srcImage->tileInfo->tileData != ((void*)(0)))".
 */
PXK_API void pxkAbs(PxkImage* srcImage, PxkImage* dstImage);

/** The square of every sample, limited to the depth's range; at depth 1 the sample itself. */
PXK_API void pxkSquare(PxkImage* srcImage, PxkImage* dstImage);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Device-independent bitmaps
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
 */

/** Values of biCompression: none, run-length coded (8 or 4 bits a pixel, bottom row first), masks (16 or 32 bits). */
#define PXK_BI_RGB 0
#define PXK_BI_RLE8 1
#define PXK_BI_RLE4 2
#define PXK_BI_BITFIELDS 3

/** What pxkConvertToDIB does with the colour table: leaves it, stores a fixed one, computes one from the image. */
#define PXK_PALETTE_KEEP 0
#define PXK_PALETTE_FIXED 1
#define PXK_PALETTE_MEDCUT 2

/** The header of a bitmap, in the published layout; where the system has a BITMAPINFOHEADER, pointers may be cast. */
typedef struct PxkBitmapInfoHeader {
    uint32_t biSize;         /**< 40 */
    int32_t biWidth;         /**< pixels a row */
    int32_t biHeight;        /**< rows; negative: the top row is stored first */
    uint16_t biPlanes;       /**< 1 */
    uint16_t biBitCount;     /**< bits a pixel: 1, 4, 8, 16, 24 or 32 */
    uint32_t biCompression;  /**< PXK_BI_... */
    uint32_t biSizeImage;    /**< bytes of the bits; only written, when run-length coding succeeds */
    int32_t biXPelsPerMeter; /**< not looked at, nor is the next one */
    int32_t biYPelsPerMeter;
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
PXK_API PxkImage* pxkTranslateDIB(PxkBitmapInfoHeader* dib, int32_t* cloneData);

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
 * biPlanes, biCompression, run-length coding with a wrong biBitCount or a negative biHeight (-5). Then -10 "Image size
 * is too small", -14 "image->channelSeq unsupport", -4 "Not enough memory to allocate data for destination image", -5
 * "Bit-field mask is zero", -3 "Impossible to decompress RLE DIB" after the decoder's own report, and -3 "<unknown>"
 * for a biBitCount, or a pair of nChannels and depth, that is not served.
 */
PXK_API void pxkConvertFromDIB(PxkBitmapInfoHeader* dib, PxkImage* image);
PXK_API int32_t pxkConvertFromDIBSep(PxkBitmapInfoHeader* dibHeader, void* dibData, PxkImage* image);

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
PXK_API void pxkConvertToDIB(PxkImage* image, PxkBitmapInfoHeader* dib, int32_t dither, int32_t paletteConversion);
PXK_API int32_t pxkConvertToDIBSep(PxkImage* image, PxkBitmapInfoHeader* dibHeader, void* dibData, int32_t dither,
                                   int32_t paletteConversion);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Depth conversion
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
PXK_API int32_t pxkConvert(PxkImage* srcImage, PxkImage* dstImage);

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
PXK_API int32_t pxkScale(PxkImage* srcImage, PxkImage* dstImage);

/**
 * Maps the interval from minVal to maxVal of a 32F image onto the whole range of an integer depth other than 1U, or
 * back, linearly and in double. Towards integers, results are rounded to nearest, halves to even; samples outside the
 * interval give the range's ends, and a NaN the lower one. Sizes need not agree.
 *
 * Refuses, in this order: "((srcImage->depth != 32)&& (dstImage->depth != 32))", "((srcImage->depth == 32)&&
 * (dstImage->depth == 32))", "((srcImage->depth == 1)|| (dstImage->depth == 1))", data orders and origins as pxkScale,
 * "((maxVal - minVal) <= 0.0f)".
 */
PXK_API int32_t pxkScaleFP(PxkImage* srcImage, PxkImage* dstImage, float minVal, float maxVal);

/**
 * Makes an 8, 16 or 32-bit integer image from a one-bit image: ZeroScale where the bit is 0, OneScale where it is 1.
 * Rows keep their order, whatever the origins.
 *
 * Refuses, in this order: "(srcImage->height != dstImage->height)", "(srcImage->width != dstImage->width)",
 * "(srcImage->nChannels != 1)", "(srcImage->depth != 1)", "(dstImage->depth == 32)", "(dstImage->depth == 1)"; then a
 * level outside the range of depth 8S, 8U, 16S or 16U, such as "((dstImage->depth == (0x80000000| 8)) && (ZeroScale >
 * 127))", "((dstImage->depth == 16) && (OneScale < 0))": ZeroScale too high, too low, then OneScale.
 */
PXK_API int32_t pxkBitonalToGray(PxkImage* srcImage, PxkImage* dstImage, int32_t ZeroScale, int32_t OneScale);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Comparison
 *
 * The destination is a one-bit image, ready to be hung on another image as its maskROI: a bit is 1 where the relation
 * holds in all processed channels. A NaN compares false in all of them. Bits outside the region, or under a 0 of the
 * images' masks, keep their value, and so do padding bytes. The sources may be of unlike data order; at depth 1 the
 * destination may be a source. These operations run on whatever status is stored.
 *
 * All report "Incorrect Image"; -5 "(srcImageA->depth != srcImageB->depth)" (two sources), "(dstImage->depth != 1)",
 * "(nChSrcA != nChSrcB)" (two sources), then what the function says; -4 "Out of memory" when masks can't be combined;
 * -5 with "(srcImageA->tileInfo->tileData == ((void*)(0)))", or the same of another image, for a refused tile.
 */

/** a < b, a > b, a = b on samples of two images of one depth, any of the seven. */
PXK_API void pxkLess(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);
PXK_API void pxkGreater(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);
PXK_API void pxkEqual(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);

/**
 * a < value, a > value, a = value at every depth but 32F. The value is taken as it stands, not limited to the depth:
 * 300 is above every 8U sample. 32F reports -5 "For processing depth 32F use function pxkLessSFP", or the same with
 * pxkGreaterSFP, pxkEqualSFP.
 */
PXK_API void pxkLessS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);
PXK_API void pxkGreaterS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);
PXK_API void pxkEqualS(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/**
 * The same at 32F. Other depths report -5 "For processing this depth use function pxkLessS", or the same with
 * pxkGreaterS, pxkEqualS.
 */
PXK_API void pxkLessSFP(PxkImage* srcImage, PxkImage* dstImage, float value);
PXK_API void pxkGreaterSFP(PxkImage* srcImage, PxkImage* dstImage, float value);
PXK_API void pxkEqualSFP(PxkImage* srcImage, PxkImage* dstImage, float value);

/**
 * The absolute difference, of two samples or of a sample and `value`, is at most `epsilon`; 32F only. The difference is
 * formed in double; that of two equal infinities is no number, so they do not compare equal. Other depths report -5
 * "(srcImageA->depth != 32)" or "(srcImage->depth != 32)"; then -5 "(epsilon < 0)".
 */
PXK_API void pxkEqualFPEps(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, float epsilon);
PXK_API void pxkEqualSFPEps(PxkImage* srcImage, PxkImage* dstImage, float value, float epsilon);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Scaled products */

/**
 * a b / M rounded to nearest, M being the depth's largest value, so that samples count as fractions from 0 to 1; 8U and
 * 16U. The second form takes a constant, limited to 0 and M. Region, channels, masks and tiles as in pxkMultiply, but
 * padding bytes stay as they are. Report "Incorrect Image"; -5 "(srcImageA->depth != 8) && (srcImageA->depth != 16)"
 * or "(srcImage->depth != 8) && (srcImage->depth != 16)"; then depths, data orders and channels as pxkMultiply and
 * pxkMultiplyS do.
 */
PXK_API void pxkMultiplyScale(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);
PXK_API void pxkMultiplySScale(PxkImage* srcImage, PxkImage* dstImage, int32_t value);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Alpha
 *
 * Alpha is the last channel of an image whose alphaChannel is not 0. M is the depth's largest value and stands for
 * opaque. Under a channel of interest only that channel of the destination changes; when it is the alpha channel, it
 * takes the alpha that the whole operation would have left there. Only pixels selected by all masks change. These
 * operations run on whatever status is stored.
 */

/**
 * Multiplies colour by alpha in place; 8U, 16U, 32F. With alphaValue below 0 every colour sample is multiplied by its
 * pixel's own alpha, over M and rounded to nearest (32F: alpha from 0 to 1, plain product). With alphaValue from 0 to M
 * (32F: 0 to 255, which stands for 1) colour is multiplied by that constant, and an alpha channel is set to it; above M
 * it counts as M. Reports "Incorrect Image"; -5 "(image->depth != 8) && (image->depth != 16) && (image->depth != 32)",
 * "(image->alphaChannel == 0)" (alphaValue below 0 only), "(image->tileInfo->tileData == ((void*)(0)))".
 */
PXK_API void pxkPreMultiplyAlpha(PxkImage* image, int32_t alphaValue);

/**
 * Composes a and b: result alpha is alphaA Fa + alphaB Fb with the fractions of compositeType (PXK_COMPOSITE_...), and
 * result colour, premultiplied, is a Fa + b Fb on premultiplied a and b, both limited to M; 8U and 16U. With
 * premultiplied 0 the sources hold plain colour: they are multiplied by their alphas, and the result is divided by its
 * alpha, 0 where that is 0. The whole pixel is computed exactly, with one rounding at the end, to nearest. A
 * destination that has an alpha channel receives the result's alpha. The destination may be a source.
 *
 * The first form takes alpha from the sources' alpha channels; the second from alphaA and alphaB, each limited to 0 and
 * M, whatever the sources hold.
 *
 * Report "Incorrect Image"; -5 with depths and data orders as pxkAdd does, "(srcImageA->depth != 8) &&
 * (srcImageA->depth != 16)", "(srcImageA->alphaChannel == 0)" and "(srcImageB->alphaChannel == 0)" (first form only),
 * "(nChSrcA != nChDst)", "(nChSrcB != nChDst)" on the colour channels, "(compositeType < 0) || (compositeType > 5)";
 * -4 "Out of memory" when masks can't be combined; -5 for a refused tile as pxkAdd does.
 */
PXK_API void pxkAlphaComposite(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, int32_t compositeType,
                               int32_t premultiplied);
PXK_API void pxkAlphaCompositeC(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, int32_t compositeType,
                                int32_t alphaA, int32_t alphaB, int32_t premultiplied);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Convolution */

/** How the results of several kernels are combined. */
#define PXK_CONV_SUM 0
#define PXK_CONV_SUMSQ 1
#define PXK_CONV_SUMSQROOT 2
#define PXK_CONV_MAX 3
#define PXK_CONV_MIN 4

/** A kernel of integers: held reversed, anchors mirrored. Make it with pxkCreateConvKernel. */
typedef struct PxkConvKernel {
    int32_t nCols;
    int32_t nRows;
    int32_t anchorX; /**< nCols - 1 - the caller's anchor */
    int32_t anchorY; /**< nRows - 1 - the caller's anchor */
    int32_t* values; /**< nRows rows of nCols coefficients, in reverse of the caller's order */
    int32_t nShiftR; /**< each sum is shifted right by it, towards minus infinity */
} PxkConvKernel;

/** A kernel of floats. */
typedef struct PxkConvKernelFP {
    int32_t nCols;
    int32_t nRows;
    int32_t anchorX;
    int32_t anchorY;
    float* values;
} PxkConvKernelFP;

/**
 * Makes a kernel from nRows rows of nCols coefficients, which are copied. (anchorX, anchorY) is the coefficient that
 * meets the pixel itself. Release it with pxkDeleteConvKernel or pxkDeleteConvKernelFP. Returns null after reporting -5
 * "(values == 0)",
 * "(nRows<=0 || nCols<=0)", "(anchorX<0 ||anchorY<0 ||nRows<=anchorY || nCols<=anchorX)" or -4 "Allocation failure".
 */
PXK_API PxkConvKernel* pxkCreateConvKernel(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                           const int32_t* values, int32_t nShiftR);
/** The same from 8-bit signed coefficients. */
PXK_API PxkConvKernel* pxkCreateConvKernelChar(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                               const int8_t* values, int32_t nShiftR);
/** The same for floats. */
PXK_API PxkConvKernelFP* pxkCreateConvKernelFP(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                               const float* values);

/**
 * Gives back what a kernel was made from; `values` has room for nCols nRows coefficients (the Char form keeps their low
 * 8 bits). Reports -5 "kernel==0", "ownBadKernel((OwnConvKernel*)kernel)", then "nRows==0" and "nCols==0", then
 * "anchorX==0" and "anchorY==0", then "values==0", "nShiftR==0"; a negative stored status ends the call silently behind
 * each pair.
 */
PXK_API void pxkGetConvKernel(PxkConvKernel* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX, int32_t* anchorY,
                              int32_t* values, int32_t* nShiftR);
PXK_API void pxkGetConvKernelChar(PxkConvKernel* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX,
                                  int32_t* anchorY, int8_t* values, int32_t* nShiftR);
PXK_API void pxkGetConvKernelFP(PxkConvKernelFP* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX,
                                int32_t* anchorY, float* values);

/** Release a kernel with its coefficients. Report -5 "kernel==0", "kernel->values==0". */
PXK_API void pxkDeleteConvKernel(PxkConvKernel* kernel);
PXK_API void pxkDeleteConvKernelFP(PxkConvKernelFP* kernel);

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
PXK_API void pxkConvolve2D(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernel** kernel, int32_t nKernels,
                           int32_t combineMethod);

/**
 * The same with kernels of floats on images of depth 32F; nothing is limited or rounded. A NaN is stored as 0x7FC00000,
 * whichever one comes in.
 */
PXK_API void pxkConvolve2DFP(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernelFP** kernel, int32_t nKernels,
                             int32_t combineMethod);

/**
 * Convolves rows with xKernel (one row) and the result with yKernel (one column); one of the two may be null, which
 * leaves that axis alone. The row kernel's shifted sums are kept in 32 bits without limiting, the column kernel's are
 * limited to the depth. 32S and coefficients whose sums could leave 32 bits are computed in double precision and
 * rounded to nearest even at the end. Images, borders and reports as pxkConvolve2D, then -5 "(xKernel == 0) && (yKernel
 * == 0)", "Bad kernel structure",
 * "(xKernel->nRows != 1)", "(yKernel->nCols != 1)".
 */
PXK_API void pxkConvolveSep2D(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernel* xKernel, PxkConvKernel* yKernel);

/** The same with kernels of floats on images of depth 32F, in single precision. A NaN is stored as 0x7FC00000. */
PXK_API void pxkConvolveSep2DFP(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernelFP* xKernel,
                                PxkConvKernelFP* yKernel);

/** The filters of pxkFixedFilter. Coefficients meet the samples as they stand here, rows from the top. */
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

/**
 * Applies a fixed filter, its middle on the pixel, at every depth; integer sums are shifted right, floats multiplied by
 * the power of two, and a NaN is stored as 0x7FC00000. Images, borders and reports as pxkConvolve2D and
 * pxkConvolve2DFP; -5 "(filter < 0) || (filter > 10)".
 */
PXK_API void pxkFixedFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t filter);

/**
 * The mean of the nCols by nRows window round each pixel, (anchorX, anchorY) as for the rank filters. Integer depths
 * round to nearest, halves upward; 32F is summed in double precision and rounded once, and no sample outside a window
 * touches its mean; a NaN is stored as 0x7FC00000. Source and destination may be one image. Masks, borders and reports
 * as the rank filters; 1U is refused with -5 "srcImage->depth==1", 32F is taken.
 */
PXK_API void pxkBlur(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                     int32_t anchorY);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Rank filters
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
 */

/** The largest sample. */
PXK_API void pxkMaxFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                          int32_t anchorY);

/** The smallest sample. */
PXK_API void pxkMinFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                          int32_t anchorY);

/**
 * The middle sample, of an even number the upper one of the two in the middle. At depth 1U the bit that at least half
 * of the window has, so that a tie gives 1.
 */
PXK_API void pxkMedianFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                             int32_t anchorY);

/* ------------------------------------------------------------------------------------------------------------------ */
/**
 * @name Morphology
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
 */

/** The largest sample of the window. */
PXK_API void pxkDilate(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** The smallest sample of the window. */
PXK_API void pxkErode(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** Erodes, then dilates the result, whose edge samples are repeated outward. */
PXK_API void pxkOpen(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/** Dilates, then erodes the result, whose edge samples are repeated outward. */
PXK_API void pxkClose(PxkImage* srcImage, PxkImage* dstImage, int32_t nIterations);

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Colour */

/** Dither types. */
#define PXK_DITHER_NONE 1
#define PXK_DITHER_FS 2     /**< error diffusion of Floyd and Steinberg */
#define PXK_DITHER_JJN 4    /**< error diffusion of Jarvis, Judice and Ninke */
#define PXK_DITHER_STUCKI 8 /**< error diffusion of Stucki */
#define PXK_DITHER_BAYER 16 /**< ordered, with a matrix of 4 by 4 thresholds */

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
 * Error diffusion needs memory: -4 "no memory for error propagation dithering errors array" (tiled), or "no memory for
 * errr array" under the row kernel's name, such as owncbDither_Gray_Floyd_PX, with nothing written. A refused tile is
 * -5 "(src->tileInfo->tileData == NULL)" or "(dst->tileInfo->tileData == NULL)".
 */
PXK_API void pxkReduceBits(PxkImage* srcImage, PxkImage* dstImage, int32_t jitterType, int32_t ditherType,
                           int32_t bitCount);

/* ------------------------------------------------------------------------------------------------------------------ */
/* Sizes, offsets and the ABI are fixed: every field but the pointers has 32 bits. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define PXK_IS_AT(record, field, with4, with8)                                                                         \
    static_assert(offsetof(record, field) == (sizeof(void*) == 4 ? (with4) : (with8)), #record "." #field)
static_assert(sizeof(PxkROI) == 20, "PxkROI");
static_assert(sizeof(PxkImage) == (sizeof(void*) == 4 ? 112 : 144), "PxkImage");
static_assert(sizeof(PxkBitmapInfoHeader) == 40, "PxkBitmapInfoHeader");
static_assert(sizeof(PxkTileInfo) == (sizeof(void*) == 4 ? 20 : 32), "PxkTileInfo");
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
#undef PXK_IS_AT
#endif

#ifdef __cplusplus
}
#endif
#endif
