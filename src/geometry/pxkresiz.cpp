// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownreport.h"
#include "ownrescale.h"

void pxkResize(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst, int32_t ySrc,
               int32_t interpolate)
{
    if (interpolate == PXK_INTER_SUPER) {
        if (xDst > xSrc || yDst > ySrc) {
            OWN_REPORT(PXK_StsBadArg, "(interpolate == PXK_INTER_SUPER) && (xDst > xSrc || yDst > ySrc)");
        }
        pxkDecimate(srcImage, dstImage, xDst, xSrc, yDst, ySrc, interpolate);
    } else {
        ownScaleEndToEnd(OWN_HERE, srcImage, dstImage, { xDst, xSrc }, { yDst, ySrc }, interpolate);
    }
    if (pxkGetErrStatus() < 0) OWN_REPORT(PXK_StsBackTrace, "");
}
