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

static const char* ownLevelFault(int32_t depth, int32_t zeroScale, int32_t oneScale)
{
    const OwnRange range = ownDepthRange(depth);
    for (const OwnLevelTexts& texts : ownLevelTexts) {
        if (texts.depth != depth) continue;
        if (zeroScale > range.high) return texts.zeroIsHigh;
        if (zeroScale < range.low) return texts.zeroIsLow;
        if (oneScale > range.high) return texts.oneIsHigh;
        if (oneScale < range.low) return texts.oneIsLow;
    }
    return nullptr;
}

// The first failed check, as the text to report, or null.
static const char* ownBitonalFault(const PxkImage* srcImage, const PxkImage* dstImage)
{
    if (srcImage->height != dstImage->height) return "(srcImage->height != dstImage->height)";
    if (srcImage->width != dstImage->width) return "(srcImage->width != dstImage->width)";
    if (srcImage->nChannels != 1) return "(srcImage->nChannels != 1)";
    if (srcImage->depth != PXK_DEPTH_1U) return "(srcImage->depth != 1)";
    if (dstImage->depth == PXK_DEPTH_32F) return "(dstImage->depth == 32)";
    if (dstImage->depth == PXK_DEPTH_1U) return "(dstImage->depth == 1)";
    return nullptr;
}

int32_t pxkBitonalToGray(PxkImage* srcImage, PxkImage* dstImage, int32_t ZeroScale, int32_t OneScale)
{
    const int32_t headerFault = ownHeaderFault(OWN_HERE, { srcImage, dstImage });
    if (headerFault != PXK_StsOk) return headerFault;
    const char* fault = ownBitonalFault(srcImage, dstImage);
    if (fault == nullptr) fault = ownLevelFault(dstImage->depth, ZeroScale, OneScale);
    OWN_REFUSE_IF(fault != nullptr, PXK_StsBadArg, fault, PXK_StsBadArg);
    const OwnSite site = OWN_HERE;
    int32_t status = PXK_StsOk;
    ownForIntegerDepth(dstImage->depth, [&](auto dst) {
        using D = typename decltype(dst)::Sample;
        const D zero = static_cast<D>(ZeroScale);
        const D one = static_cast<D>(OneScale);
        const auto level = [zero, one](uint8_t bit) { return bit != 0 ? one : zero; };
        status = ownRunDepthsAs<uint8_t, D>(site, srcImage, dstImage, level);
    });
    return status;
}
