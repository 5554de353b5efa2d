// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownconversion.h"

// What a level beyond the depth's range is refused with; 32S holds every level.
struct OwnLevelTexts {
    int32_t depth;
    const char* zeroIsHigh;
    const char* zeroIsLow;
    const char* oneIsHigh;
    const char* oneIsLow;
};

static const OwnLevelTexts ownLevelTexts[] = {
    { PXK_DEPTH_8S, "((dstImage->depth == (0x80000000| 8)) && (ZeroScale > 127))",
      "((dstImage->depth == (0x80000000| 8)) && (ZeroScale < -128))",
      "((dstImage->depth == (0x80000000| 8)) && (OneScale > 127))",
      "((dstImage->depth == (0x80000000| 8)) && (OneScale < -128))" },
    { PXK_DEPTH_8U, "((dstImage->depth == 8) && (ZeroScale > 255))", "((dstImage->depth == 8) && (ZeroScale < 0))",
      "((dstImage->depth == 8) && (OneScale > 255))", "((dstImage->depth == 8) && (OneScale < 0))" },
    { PXK_DEPTH_16S, "((dstImage->depth == (0x80000000|16)) && (ZeroScale > 32767))",
      "((dstImage->depth == (0x80000000|16)) && (ZeroScale < -32768))",
      "((dstImage->depth == (0x80000000|16)) && (OneScale > 32767))",
      "((dstImage->depth == (0x80000000|16)) && (OneScale < -32768))" },
    { PXK_DEPTH_16U, "((dstImage->depth == 16) && (ZeroScale > 65535))", "((dstImage->depth == 16) && (ZeroScale < 0))",
      "((dstImage->depth == 16) && (OneScale > 65535))", "((dstImage->depth == 16) && (OneScale < 0))" },
};

static bool ownGoodLevels(const OwnSite& site, int32_t depth, int32_t zeroScale, int32_t oneScale)
{
    const OwnRange range = ownDepthRange(depth);
    for (const OwnLevelTexts& texts : ownLevelTexts) {
        if (texts.depth != depth) continue;
        return ownPassed(site,
                         { { zeroScale > range.high, PXK_StsBadArg, texts.zeroIsHigh },
                           { zeroScale < range.low, PXK_StsBadArg, texts.zeroIsLow },
                           { oneScale > range.high, PXK_StsBadArg, texts.oneIsHigh },
                           { oneScale < range.low, PXK_StsBadArg, texts.oneIsLow } });
    }
    return true;
}

int32_t pxkBitonalToGray(PxkImage* srcImage, PxkImage* dstImage, int32_t ZeroScale, int32_t OneScale)
{
    const OwnSite site = OWN_HERE;
    const int32_t headerFault = ownFirstHeaderFault(site, { srcImage, dstImage });
    if (headerFault != PXK_StsOk) return headerFault;
    const bool isGood =
        ownPassed(site,
                  { { srcImage->height != dstImage->height, PXK_StsBadArg, "(srcImage->height != dstImage->height)" },
                    { srcImage->width != dstImage->width, PXK_StsBadArg, "(srcImage->width != dstImage->width)" },
                    { srcImage->nChannels != 1, PXK_StsBadArg, "(srcImage->nChannels != 1)" },
                    { srcImage->depth != PXK_DEPTH_1U, PXK_StsBadArg, "(srcImage->depth != 1)" },
                    { dstImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "(dstImage->depth == 32)" },
                    { dstImage->depth == PXK_DEPTH_1U, PXK_StsBadArg, "(dstImage->depth == 1)" } });
    if (!isGood || !ownGoodLevels(site, dstImage->depth, ZeroScale, OneScale)) return PXK_StsBadArg;
    return ownForIntegerDepth(dstImage->depth, [&](auto dst) {
        using D = typename decltype(dst)::Sample;
        const D zero = static_cast<D>(ZeroScale);
        const D one = static_cast<D>(OneScale);
        const auto level = [zero, one](uint8_t bit) { return bit != 0 ? one : zero; };
        return ownRunDepthsAs<uint8_t, D>(site, srcImage, dstImage, level);
    });
}
