// SPDX-License-Identifier: BSD-2-Clause
// The texts of the status codes.
#include "pxk/pxk.h"

static constexpr char ownUnknownStatus[] = "Unknown error or status code";

// Faults of a header and of a mask's header share one text, which begins with "Mask. ": the mask's code, the header's
// less 100, gets it whole, the header's gets what follows.
enum class OwnTextUse { PLAIN, PAIR, PAIR_WITHOUT_MASK };

static constexpr int32_t ownMaskDistance = 100;
static constexpr int32_t ownMaskPrefixLength = sizeof "Mask. " - 1;

struct OwnStatusText {
    int32_t status;
    OwnTextUse use;
    const char* text;
};

static constexpr OwnStatusText ownStatusTexts[] = {
    { PXK_StsOk, OwnTextUse::PLAIN, "No Error" },
    { PXK_StsBackTrace, OwnTextUse::PLAIN, "Backtrace" },
    { -2, OwnTextUse::PLAIN, ownUnknownStatus },
    { PXK_StsInternal, OwnTextUse::PLAIN, "Internal error (bad state)" },
    { PXK_StsNoMem, OwnTextUse::PLAIN, "Out of memory" },
    { PXK_StsBadArg, OwnTextUse::PLAIN, "Bad argument" },
    { PXK_StsBadFunc, OwnTextUse::PLAIN, "Unsupported function" },
    { PXK_StsNoConv, OwnTextUse::PLAIN, "Iteration convergence failed" },
    { PXK_StsAutoTrace, OwnTextUse::PLAIN, "Autotrace call" },
    { PXK_StsNullHeader, OwnTextUse::PAIR_WITHOUT_MASK, "Mask. Null pointer to an image header" },
    { PXK_StsBadImageSize, OwnTextUse::PAIR, "Mask. Incorrect image size" },
    { PXK_StsBadRoiOffset, OwnTextUse::PAIR, "Mask. Incorrect offset of ROI of the image" },
    { PXK_StsBadDataPointers, OwnTextUse::PAIR,
      "Mask. One from two pointers should be null, and other should be not null, imageData or tileInfo " },
    { PXK_StsBadWidthStep, OwnTextUse::PAIR, "Mask. Incorrect widthStep of the image" },
    { PXK_StsBadColorModel, OwnTextUse::PAIR, "Mask. Incorrect Color model or channel sequence of the image" },
    { PXK_StsBadChannels, OwnTextUse::PAIR, "Mask. Incorrect number of channels in the image" },
    { PXK_StsBadChannels1U, OwnTextUse::PLAIN, "Number of channels for 1U depth image must be one" },
    { PXK_StsBadDepth, OwnTextUse::PAIR, "Mask. Incorrect depth value in the image header" },
    { PXK_StsBadAlphaChannel, OwnTextUse::PAIR, "Mask. Incorrect alpha channel number in the image header" },
    { PXK_StsBadDataOrder, OwnTextUse::PAIR, "Mask. Incorrect data order value in the image header" },
    { PXK_StsBadOrigin, OwnTextUse::PAIR, "Mask. Incorrect data origin value in the image header" },
    { PXK_StsBadAlign, OwnTextUse::PAIR, "Mask. Incorrect data alignment value in the image header" },
    { PXK_StsNullCallBack, OwnTextUse::PLAIN, "Null pointer to callback function" },
    { PXK_StsBadTileSize, OwnTextUse::PLAIN, "Incorrect size of the tile" },
    { PXK_StsBadCOI, OwnTextUse::PAIR, "Mask. Incorrect COI of the image" },
    { PXK_StsBadRoiSize, OwnTextUse::PAIR, "Mask. Incorrect size of ROI in the image header" },
    { PXK_StsMaskTiled, OwnTextUse::PLAIN, "Mask image is taled" }, // spelled so for all users
};

static constexpr int32_t ownStatusTextCount = sizeof ownStatusTexts / sizeof *ownStatusTexts;

static constexpr bool ownTextsAreInOrder()
{
    for (int32_t i = 0; i < ownStatusTextCount; ++i)
        if (ownStatusTexts[i].status != -i) return false;
    return true;
}
static_assert(ownTextsAreInOrder(), "a text stands at the index that is its status without the sign");

const char* pxkErrorStr(int32_t status)
{
    if (status <= 0 && status > -ownStatusTextCount) {
        const OwnStatusText& entry = ownStatusTexts[-status];
        return entry.use == OwnTextUse::PLAIN ? entry.text : entry.text + ownMaskPrefixLength;
    }
    const int32_t maskFault = status < -ownMaskDistance ? status + ownMaskDistance : 1;
    if (maskFault < 0 && maskFault > -ownStatusTextCount) {
        const OwnStatusText& entry = ownStatusTexts[-maskFault];
        if (entry.use == OwnTextUse::PAIR) return entry.text;
    }
    return ownUnknownStatus;
}
