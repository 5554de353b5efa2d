// SPDX-License-Identifier: BSD-2-Clause
// Bitmaps whose header and bits are two blocks.
#include "owndibform.h"

int32_t pxkConvertFromDIBSep(PxkBitmapInfoHeader* dibHeader, void* dibData, PxkImage* image)
{
    OWN_REFUSE_IF(dibHeader == nullptr, PXK_StsBadArg, "( ((void *)0) == dibHeader )", PXK_StsBadArg);
    OWN_REFUSE_IF(dibData == nullptr, PXK_StsBadArg, "( ((void *)0) == dibData )", PXK_StsBadArg);
    OWN_REFUSE_IF(image == nullptr, PXK_StsBadArg, "( ((void *)0) == image )", PXK_StsNullHeader);
    return ownImageFromDib(OWN_HERE, dibHeader, static_cast<uint8_t*>(dibData), image);
}

int32_t pxkConvertToDIBSep(PxkImage* image, PxkBitmapInfoHeader* dibHeader, void* dibData, int32_t dither,
                           int32_t paletteConversion)
{
    if (!ownGoodHeaders(OWN_HERE, { image })) return PXK_StsBadArg;
    OWN_REFUSE_IF(dibHeader == nullptr, PXK_StsBadArg, "( ((void *)0) == dibHeader )", PXK_StsBadArg);
    OWN_REFUSE_IF(dibData == nullptr, PXK_StsBadArg, "( ((void *)0) == dibData )", PXK_StsBadArg);
    return ownDibFromImage(OWN_HERE, image, dibHeader, static_cast<uint8_t*>(dibData), dither, paletteConversion);
}
