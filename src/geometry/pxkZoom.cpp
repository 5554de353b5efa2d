// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownreport.h"
#include "ownrescale.h"

void pxkZoom(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst, int32_t ySrc,
             int32_t interpolate)
{
    if (xDst < xSrc || yDst < ySrc) OWN_REPORT(PXK_StsBadArg, "xDst < xSrc || yDst < ySrc");
    ownScaleEndToEnd(OWN_HERE, srcImage, dstImage, { xDst, xSrc }, { yDst, ySrc }, interpolate);
    if (pxkGetErrStatus() < 0) OWN_REPORT(PXK_StsBackTrace, "");
}
