// SPDX-License-Identifier: BSD-2-Clause
// The exported conversions between colour models.
#include "owncolor.h"

void pxkRGB2HSV(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertFromRgb(OWN_HERE, { srcImage, dstImage }, ownHsvModel);
}

void pxkHSV2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownHsvModel);
}

void pxkRGB2HLS(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertFromRgb(OWN_HERE, { srcImage, dstImage }, ownHlsModel);
}

void pxkHLS2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownHlsModel);
}

void pxkRGB2XYZ(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertFromRgb(OWN_HERE, { srcImage, dstImage }, ownXyzModel);
}

void pxkXYZ2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownXyzModel);
}

void pxkRGB2LUV(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertFromRgb(OWN_HERE, { srcImage, dstImage }, ownLuvModel);
}

void pxkLUV2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownLuvModel);
}

void pxkRGB2YUV(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertFromRgb(OWN_HERE, { srcImage, dstImage }, ownYuvModel);
}

void pxkYUV2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownYuvModel);
}

void pxkRGB2YCrCb(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertFromRgb(OWN_HERE, { srcImage, dstImage }, ownYcrcbModel);
}

void pxkYCrCb2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownYcrcbModel);
}

void pxkYCC2RGB(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToRgb(OWN_HERE, { srcImage, dstImage }, ownYccModel);
}

void pxkColorToGray(PxkImage* srcImage, PxkImage* dstImage)
{
    ownConvertToGray(OWN_HERE, { srcImage, dstImage });
}

void pxkGrayToColor(PxkImage* srcImage, PxkImage* dstImage, float weightR, float weightG, float weightB)
{
    ownConvertFromGray(OWN_HERE, { srcImage, dstImage }, weightR, weightG, weightB);
}
