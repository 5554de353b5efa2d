// SPDX-License-Identifier: BSD-2-Clause
#include "owndibform.h"

#include "frame/ownbuffer.h"
#include "frame/ownimage.h"
#include "owndibrows.h"
#include "ownmedcut.h"
#include "ownrle.h"

// A call of one of the forms.
struct OwnDibCall {
    OwnSite site;
    bool isSep;
    PxkBitmapInfoHeader* dib;
    uint8_t* bits; // null in the plain form
};

// The end of every call that fails further down: there is at least one report. The Sep form returns the status.
static int32_t ownFailDib(const OwnDibCall& call)
{
    if (pxkGetErrStatus() >= 0) ownReport(call.site, PXK_StsInternal, "<unknown>");
    return pxkGetErrStatus();
}

static int32_t ownFailDib(const OwnDibCall& call, int32_t status, const char* text)
{
    ownReport(call.site, status, text);
    return ownFailDib(call);
}

// A condition on the arguments: what the Sep form returns when it does not hold, and its text in both forms.
// All are reported as PXK_StsBadArg.
struct OwnDibTest {
    bool isBad;
    int32_t result;
    const char* plain;
    const char* sep; // null: the same
};

// Reports the first condition that does not hold. 0: all do.
template <int32_t count> static int32_t ownRefuseDib(const OwnDibCall& call, const OwnDibTest (&tests)[count])
{
    for (const OwnDibTest& test : tests) {
        const char* const text = call.isSep && test.sep != nullptr ? test.sep : test.plain;
        if (!ownPassed(call.site, { { test.isBad, PXK_StsBadArg, text } })) return test.result;
    }
    return PXK_StsOk;
}

static bool ownIsRunLength(const PxkBitmapInfoHeader& header)
{
    return header.biCompression == PXK_BI_RLE8 || header.biCompression == PXK_BI_RLE4;
}

// Bitmaps store the bottom row first, or the top row when the height is not positive.
static OwnDibRows ownRowsOfDib(const PxkBitmapInfoHeader& header, uint8_t* bits)
{
    const ptrdiff_t step = static_cast<ptrdiff_t>(ownDibRowBytes(header.biWidth, header.biBitCount, 4));
    if (header.biHeight <= 0) return { bits, step };
    return { bits + (header.biHeight - 1) * step, -step };
}

static OwnDibRows ownRowsOfImage(const PxkImage* image)
{
    const int32_t channels = image->dataOrder == PXK_DATA_ORDER_PIXEL ? image->nChannels : 1;
    const int64_t samples = static_cast<int64_t>(image->width) * channels;
    const ptrdiff_t step = static_cast<ptrdiff_t>(ownDibRowBytes(samples, image->depth, image->align));
    uint8_t* const first = static_cast<uint8_t*>(image->imageData);
    if (image->origin == 0) return { first, step };
    return { first + (image->height - 1) * step, -step };
}

// ---- from a bitmap -------------------------------------------------------------------------------------------------

static int32_t ownTestFrom(const OwnDibCall& call, const PxkImage* image)
{
    const PxkBitmapInfoHeader dib = ownLoadDib(call.dib);
    const auto alignIs = [image](int32_t align) { return image->align == align; };
    const OwnDibTest tests[] = {
        { image->alphaChannel < 0, PXK_StsBadAlphaChannel, "( image->alphaChannel < 0 )", nullptr },
        { image->nChannels < image->alphaChannel, PXK_StsBadAlphaChannel, "( image->nChannels < image->alphaChannel )",
          nullptr },
        { image->dataOrder != 0 && image->dataOrder != 1, PXK_StsBadDataOrder,
          "( (image->dataOrder != 0) && (image->dataOrder != 1) )", nullptr },
        { image->origin != 0 && image->origin != 1, PXK_StsBadOrigin,
          "( (image->origin != 0) && (image->origin != 1) )", nullptr },
        { !alignIs(4) && !alignIs(8) && !alignIs(16) && !alignIs(32), PXK_StsBadAlign,
          "( (image->align != 4) && (image->align != 8) && (image->align != 16) && (image->align != 32) )", nullptr },
        { image->height <= 0, PXK_StsBadImageSize, "(image->height <= 0)", nullptr },
        { image->width <= 0, PXK_StsBadImageSize, "(image->width <= 0)", nullptr },
        { image->imageSize <= 0, PXK_StsBadImageSize, "(image->imageSize <= 0)", nullptr },
        { image->widthStep <= 0, PXK_StsBadWidthStep, "(image->widthStep <= 0)", nullptr },
        { dib.biSize != sizeof dib, PXK_StsBadArg, "(dib->biSize != sizeof(BITMAPINFOHEADER))",
          "(dibHeader->biSize != sizeof(BITMAPINFOHEADER))" },
        { dib.biPlanes != 1, PXK_StsBadArg, "(dib->biPlanes != 1)", "(dibHeader->biPlanes != 1)" },
        { dib.biCompression > PXK_BI_BITFIELDS, PXK_StsBadArg,
          "(dib->biCompression != 0) && (dib->biCompression != 1) && (dib->biCompression != 2) && "
          "(dib->biCompression != 3)",
          "( ( dibHeader->biCompression != 0 ) && ( dibHeader->biCompression != 1 ) && "
          "( dibHeader->biCompression != 2 ) && ( dibHeader->biCompression != 3 ) )" },
        { dib.biBitCount != 8 && dib.biCompression == PXK_BI_RLE8, PXK_StsBadArg,
          "(dib->biBitCount != 8) && (dib->biCompression == 1)",
          "(dibHeader->biBitCount != 8) && (dibHeader->biCompression == 1)" },
        { dib.biBitCount != 4 && dib.biCompression == PXK_BI_RLE4, PXK_StsBadArg,
          "(dib->biBitCount != 4) && (dib->biCompression == 2)",
          "(dibHeader->biBitCount != 4) && (dibHeader->biCompression == 2)" },
        { dib.biHeight < 0 && ownIsRunLength(dib), PXK_StsBadArg,
          "(dib->biHeight < 0) && ( (dib->biCompression == 1) || (dib->biCompression == 2) )",
          "(dibHeader->biHeight < 0) && ( (dibHeader->biCompression == 1) || (dibHeader->biCompression == 2) )" },
    };
    return ownRefuseDib(call, tests);
}

// An image whose header says nothing that could be true has no pixels either.
static bool ownFitsImage(const PxkImage* image)
{
    const int64_t rowBytes = ownRowStep(image->dataOrder, image->depth, image->align, image->nChannels, image->width);
    return ownImageSize(image->dataOrder, image->nChannels, image->height, rowBytes) <= INT32_MAX;
}

// Reports what the choice of stages found. False: nothing can be converted.
static bool ownCanConvert(const OwnDibCall& call, OwnDibChoice choice)
{
    if (choice == OwnDibChoice::BAD_SEQUENCE) ownReport(call.site, PXK_StsBadColorModel, "image->channelSeq unsupport");
    if (choice == OwnDibChoice::BAD_MASK) ownReport(call.site, PXK_StsBadArg, "Bit-field mask is zero");
    return choice == OwnDibChoice::SERVED;
}

// In the plain form the failed stream is told twice, by the decoder and here.
static int32_t ownFailStream(const OwnDibCall& call)
{
    if (!call.isSep || pxkGetErrStatus() >= 0)
        ownReport(call.site, PXK_StsInternal, "Impossible to decompress RLE DIB");
    return ownFailDib(call);
}

static int32_t ownFillImage(const OwnDibCall& call, PxkImage* image)
{
    const PxkBitmapInfoHeader header = ownLoadDib(call.dib);
    OwnDibConversion conversion = {};
    if (!ownCanConvert(call, ownChooseFromDib(&conversion, call.dib, image))) return ownFailDib(call);
    if (!ownFitsImage(image)) return ownFailDib(call);
    if (image->imageData == nullptr) pxkAllocateImage(image, 1, 0);
    if (image->imageData == nullptr)
        return ownFailDib(call, PXK_StsNoMem, "Not enough memory to allocate data for destination image");
    uint8_t* bits = call.isSep ? call.bits : ownDibBits(call.dib);
    if (bits == nullptr) return ownFailDib(call);
    OwnBuffer<uint8_t> decoded;
    if (ownIsRunLength(header)) {
        decoded = call.isSep ? ownDecompressRLESep(call.dib, bits) : ownDecompressRLE(call.dib);
        if (!decoded) return ownFailStream(call);
        bits = decoded.get();
    }
    ownConvertRows(conversion, ownRowsOfDib(header, bits), ownRowsOfImage(image), header.biWidth, ownDibHeight(header));
    return PXK_StsOk;
}

int32_t ownImageFromDib(const OwnSite& site, PxkBitmapInfoHeader* dib, uint8_t* bits, PxkImage* image)
{
    const OwnDibCall call = { site, bits != nullptr, dib, bits };
    const int32_t refused = ownTestFrom(call, image);
    if (refused != PXK_StsOk) return refused;
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    if (image->width < header.biWidth || image->height < ownDibHeight(header))
        return ownFailDib(call, PXK_StsBadImageSize, "Image size is too small");
    return ownFillImage(call, image);
}

// ---- to a bitmap ---------------------------------------------------------------------------------------------------

static bool ownIsDither(int32_t dither)
{
    return dither == 1 || dither == 2 || dither == 4 || dither == 8 || dither == 16;
}

static int32_t ownTestTo(const OwnDibCall& call, const PxkImage* image, int32_t dither, int32_t paletteConversion)
{
    const PxkBitmapInfoHeader dib = ownLoadDib(call.dib);
    const bool hasAlpha = image->alphaChannel != 0;
    const OwnDibTest tests[] = {
        { image->nChannels <= 0 || image->nChannels > 4, PXK_StsBadChannels,
          "(image->nChannels <= 0 || image->nChannels > 4)", nullptr },
        { image->depth != PXK_DEPTH_1U && image->depth != PXK_DEPTH_8U && image->depth != PXK_DEPTH_16U,
          PXK_StsBadDepth, "( (image->depth != 1) && (image->depth != 8) && (image->depth != 16) )", nullptr },
        { hasAlpha && image->alphaChannel != 4, PXK_StsBadAlphaChannel,
          "(image->alphaChannel != 0 && image->alphaChannel != 4)", nullptr },
        { hasAlpha && image->nChannels != 4, PXK_StsBadChannels, "(image->nChannels != 4)", nullptr },
        { !hasAlpha && image->nChannels != 3 && image->nChannels != 1, PXK_StsBadChannels,
          "(image->nChannels != 3 && image->nChannels != 1)", nullptr },
        { image->width != dib.biWidth || image->height != ownDibHeight(dib), PXK_StsBadImageSize,
          "(image->width != dib->biWidth || image->height != abs(dib->biHeight))",
          "( image->width != dibHeader->biWidth || image->height != abs(dibHeader->biHeight) )" },
        { dib.biSize != sizeof dib, PXK_StsBadArg, "(dib->biSize != sizeof(BITMAPINFOHEADER))",
          "(dibHeader->biSize != sizeof(BITMAPINFOHEADER))" },
        { dib.biPlanes != 1, PXK_StsBadArg, "(dib->biPlanes != 1)", "(dibHeader->biPlanes != 1)" },
        { dib.biCompression > PXK_BI_BITFIELDS, PXK_StsBadArg,
          "(dib->biCompression != 0) && (dib->biCompression != 1) && (dib->biCompression != 2) && "
          "(dib->biCompression != 3)",
          "(dibHeader->biCompression != 0) && (dibHeader->biCompression != 1) && (dibHeader->biCompression != 2) && "
          "(dibHeader->biCompression != 3)" },
        { dib.biBitCount != 8 && dib.biCompression == PXK_BI_RLE8, PXK_StsBadArg,
          "(dib->biBitCount != 8) && (dib->biCompression == 1)",
          "( (dibHeader->biBitCount != 8) && (dibHeader->biCompression == 1) )" },
        { dib.biBitCount != 4 && dib.biCompression == PXK_BI_RLE4, PXK_StsBadArg,
          "(dib->biBitCount != 4) && (dib->biCompression == 2)",
          "( (dibHeader->biBitCount != 4) && (dibHeader->biCompression == 2) )" },
        { dib.biHeight < 0 && ownIsRunLength(dib), PXK_StsBadArg,
          "(dib->biHeight < 0) && ( (dib->biCompression == 1) || (dib->biCompression == 2) )",
          "( (dibHeader->biHeight < 0) && ((dibHeader->biCompression == 1) || (dibHeader->biCompression == 2)) )" },
        { !ownIsDither(dither), PXK_StsBadArg,
          "(dither != 1 && dither != 2 && dither != 4 && dither != 8 && dither != 16)",
          "( dither != 1 && dither != 2 && dither != 4 && dither != 8 && dither != 16 )" },
        { paletteConversion < 0 || paletteConversion > 2, PXK_StsBadArg,
          "(paletteConversion != 0 && paletteConversion != 1 && paletteConversion != 2)",
          "( paletteConversion != 0 && paletteConversion != 1 && paletteConversion != 2 )" },
    };
    return ownRefuseDib(call, tests);
}

static bool ownMakePalette(const OwnDibCall& call, const PxkImage* image, int32_t paletteConversion)
{
    if (ownLoadDib(call.dib).biBitCount >= 16) return true;
    if (paletteConversion == PXK_PALETTE_FIXED) ownSetStandardPalette(call.dib, image->nChannels == 1);
    if (paletteConversion != PXK_PALETTE_MEDCUT || ownMedcutPalette(call.dib, image) != 0) return true;
    ownReport(call.site, PXK_StsInternal, "Error of creating medcut palette");
    return false;
}

// Bits that the reduction leaves significant; 0 for a bitmap that has no such number.
static int32_t ownReducedBits(const PxkBitmapInfoHeader& header)
{
    switch (header.biBitCount) {
    case 1:
    case 4: return header.biBitCount;
    case 8:
    case 16:
    case 24:
    case 32: return 8;
    default: return 0;
    }
}

// The image in the bits of the bitmap. Its region and mask do not count, but the reduction would look at them. Pixels
// that could not be had make it fail, too.
static bool ownReduce(const OwnDibCall& call, const PxkImage* image, PxkImage* reduced, int32_t dither, int32_t bits)
{
    PxkImage source = *image;
    source.roi = nullptr;
    source.maskROI = nullptr;
    pxkAllocateImage(reduced, 0, 0);
    pxkReduceBits(&source, reduced, 0, dither, bits);
    if (pxkGetErrStatus() == PXK_StsOk) return true;
    ownReport(call.site, PXK_StsInternal, "Dithering can't be produced");
    return false;
}

static const char* ownBadBitsText(const OwnDibCall& call)
{
    return call.isSep ? "dibHeader->biBitCount is bad" : "dib->biBitCount is bad";
}

static int32_t ownFillDib(const OwnDibCall& call, const PxkImage* image)
{
    const PxkBitmapInfoHeader header = ownLoadDib(call.dib);
    OwnDibConversion conversion = {};
    OwnNearest nearest;
    const OwnDibChoice choice = ownChooseToDib(&conversion, call.dib, image, &nearest);
    if (choice == OwnDibChoice::BAD_IMAGE) ownReport(call.site, PXK_StsBadChannels, "image->nChannels is bad");
    if (choice == OwnDibChoice::BAD_BITS) ownReport(call.site, PXK_StsBadArg, ownBadBitsText(call));
    if (!ownCanConvert(call, choice)) return ownFailDib(call);
    uint8_t* const bits = call.isSep ? call.bits : ownDibBits(call.dib);
    if (bits == nullptr) return ownFailDib(call);
    ownConvertRows(conversion, ownRowsOfImage(image), ownRowsOfDib(header, bits), image->width, image->height);
    if (!ownIsRunLength(header)) return PXK_StsOk;
    const bool isCoded = call.isSep ? ownCompressRLESep(call.dib, bits) == PXK_StsOk : ownCompressRLE(call.dib) != 0;
    return isCoded ? PXK_StsOk : ownFailDib(call);
}

static int32_t ownFillDibReduced(const OwnDibCall& call, const PxkImage* image, int32_t dither)
{
    const int32_t bits = ownReducedBits(ownLoadDib(call.dib));
    if (bits == 0) {
        ownReport(call.site, PXK_StsBadArg, "Parameter biBitCount of DIB-image have illegal value");
        return PXK_StsBadArg;
    }
    const OwnTempImage reduced(pxkCreateImageHeader(image->nChannels, image->alphaChannel,
                                                    bits == 1 ? PXK_DEPTH_1U : PXK_DEPTH_8U, image->colorModel,
                                                    image->channelSeq, image->dataOrder, image->origin, image->align,
                                                    image->width, image->height, nullptr, nullptr, nullptr, nullptr));
    if (!reduced) {
        ownReport(call.site, PXK_StsNoMem, "Not enough memory to allocate header for temporal image");
        return PXK_StsNoMem;
    }
    if (!ownReduce(call, image, reduced.get(), dither, bits)) return ownFailDib(call);
    return ownFillDib(call, reduced.get());
}

int32_t ownDibFromImage(const OwnSite& site, const PxkImage* image, PxkBitmapInfoHeader* dib, uint8_t* bits,
                        int32_t dither, int32_t paletteConversion)
{
    const OwnDibCall call = { site, bits != nullptr, dib, bits };
    const int32_t refused = ownTestTo(call, image, dither, paletteConversion);
    if (refused != PXK_StsOk) return refused;
    if (image->imageData == nullptr) return ownFailDib(call); // tiled
    if (!ownMakePalette(call, image, paletteConversion)) return ownFailDib(call);
    return dither == 1 ? ownFillDib(call, image) : ownFillDibReduced(call, image, dither);
}
