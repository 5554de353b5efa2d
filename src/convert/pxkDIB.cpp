// SPDX-License-Identifier: BSD-2-Clause
// Bitmaps in one block: header, colour table, bits.
#include "frame/ownbuffer.h"
#include "owndib.h"
#include "owndibform.h"

// What an image of a bitmap is like, and whether it can share the bitmap's bits.
struct OwnDibImageForm {
    int32_t nChannels;
    int32_t depth;
    bool isShared;
};

// False: a biBitCount that no bitmap has.
static bool ownFormOfDib(PxkBitmapInfoHeader* dib, OwnDibImageForm* form)
{
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    switch (header.biBitCount) {
    case 1:
        *form = ownDibIsGrayRamp(dib) ? OwnDibImageForm { 1, PXK_DEPTH_1U, true }
                                      : OwnDibImageForm { 3, PXK_DEPTH_8U, false };
        return true;
    case 4: *form = { ownDibIsGrayRamp(dib) ? 1 : 3, PXK_DEPTH_8U, false }; return true;
    case 8:
        *form = ownDibIsGrayRamp(dib) ? OwnDibImageForm { 1, PXK_DEPTH_8U, header.biCompression != PXK_BI_RLE8 }
                                      : OwnDibImageForm { 3, PXK_DEPTH_8U, false };
        return true;
    case 16: *form = { 3, PXK_DEPTH_8U, false }; return true;
    case 24: *form = { 3, PXK_DEPTH_8U, true }; return true;
    case 32: *form = { 4, PXK_DEPTH_8U, header.biCompression != PXK_BI_BITFIELDS }; return true;
    default: return false;
    }
}

static PxkImage* ownHeaderForDib(const PxkBitmapInfoHeader& header, const OwnDibImageForm& form)
{
    struct Words {
        const char* model;
        const char* sequence;
    };
    const Words words = form.nChannels == 1 ? Words { "GRAY", "G\0\0" }
        : form.nChannels == 3               ? Words { "RGB", "BGR" }
                                            : Words { "RGBA", "BGRA" };
    const int64_t height = ownDibHeight(header);
    // No image has 2^31 rows; 0 is refused for it.
    return pxkCreateImageHeader(form.nChannels, form.nChannels == 4 ? 4 : 0, form.depth, words.model, words.sequence,
                                form.isShared ? PXK_DATA_ORDER_PIXEL : PXK_DATA_ORDER_PLANE,
                                header.biHeight < 0 ? 0 : 1, form.isShared ? 4 : 32, header.biWidth,
                                height <= INT32_MAX ? static_cast<int32_t>(height) : 0, nullptr, nullptr, nullptr,
                                nullptr);
}

// The header's sizes are those of the bitmap: both align rows to four bytes.
static PxkImage* ownShareBits(PxkImage* image, PxkBitmapInfoHeader* dib, const PxkBitmapInfoHeader& header)
{
    const bool hasTable = header.biBitCount <= 8;
    image->imageData = hasTable ? ownDibBits(dib) : ownDibTable(dib);
    return image;
}

static PxkImage* ownCopyBits(const OwnSite& site, OwnTempImage image, PxkBitmapInfoHeader* dib)
{
    pxkAllocateImage(image.get(), 1, 0); // a stale status lets nobody fill it
    if (image->imageData == nullptr) {
        ownReport(site, PXK_StsNoMem, "Not enough memory to allocate data for destination image");
        return nullptr;
    }
    const bool isStale = pxkGetErrStatus() < 0;
    pxkConvertFromDIB(dib, image.get());
    if (!isStale && pxkGetErrStatus() < 0) {
        ownReport(site, PXK_StsBackTrace, "");
        return nullptr;
    }
    return image.release();
}

static bool ownGoodTranslation(const OwnSite& site, const PxkBitmapInfoHeader& dib)
{
    const bool isRle8 = dib.biCompression == PXK_BI_RLE8;
    const bool isRle4 = dib.biCompression == PXK_BI_RLE4;
    return ownPassed(
        site,
        { { dib.biSize != sizeof dib, PXK_StsBadArg, "( dib->biSize != sizeof(BITMAPINFOHEADER) )" },
          { dib.biPlanes != 1, PXK_StsBadArg, "(dib->biPlanes != 1)" },
          { dib.biCompression > PXK_BI_BITFIELDS, PXK_StsBadArg,
            "(dib->biCompression != 0) && (dib->biCompression != 1) && (dib->biCompression != 2) && "
            "(dib->biCompression != 3)" },
          { dib.biBitCount != 8 && isRle8, PXK_StsBadArg, "(dib->biBitCount != 8) && (dib->biCompression == 1)" },
          { dib.biBitCount != 4 && isRle4, PXK_StsBadArg, "(dib->biBitCount != 4) && (dib->biCompression == 2)" },
          { dib.biHeight < 0 && (isRle8 || isRle4), PXK_StsBadArg,
            "(dib->biHeight < 0) && ( (dib->biCompression == 1) || (dib->biCompression == 2) )" } });
}

PxkImage* pxkTranslateDIB(PxkBitmapInfoHeader* dib, int32_t* cloneData)
{
    if (!ownPassed(OWN_HERE,
                   { { dib == nullptr, PXK_StsBadArg, "( dib == ((void *)0) )" },
                     { cloneData == nullptr, PXK_StsBadArg, "( cloneData == ((void *)0) )" } }))
        return nullptr;
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    if (!ownGoodTranslation(OWN_HERE, header)) return nullptr;
    OwnDibImageForm form = {};
    OWN_REFUSE_IF(!ownFormOfDib(dib, &form), PXK_StsBadArg, "dib->biBitCount is bad", nullptr);
    OwnTempImage image(ownHeaderForDib(header, form));
    OWN_REFUSE_IF(!image, PXK_StsNoMem, "Not enough memory to allocate header for destination image", nullptr);
    *cloneData = form.isShared ? 0 : 1;
    if (form.isShared) return ownShareBits(image.release(), dib, header);
    return ownCopyBits(OWN_HERE, std::move(image), dib);
}

void pxkConvertFromDIB(PxkBitmapInfoHeader* dib, PxkImage* image)
{
    if (dib == nullptr) OWN_REPORT(PXK_StsBadArg, "dib==0");
    if (image == nullptr) OWN_REPORT(PXK_StsBadArg, "image==0");
    if (pxkGetErrStatus() < 0) return;
    if (dib == nullptr || image == nullptr) return; // the handler has stored another status
    ownImageFromDib(OWN_HERE, dib, nullptr, image);
}

void pxkConvertToDIB(PxkImage* image, PxkBitmapInfoHeader* dib, int32_t dither, int32_t paletteConversion)
{
    OWN_REFUSE_BAD_HEADERS(image);
    OWN_REFUSE_IF(dib == nullptr, PXK_StsBadArg, "dib==0");
    ownDibFromImage(OWN_HERE, image, dib, nullptr, dither, paletteConversion);
}
