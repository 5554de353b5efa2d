// SPDX-License-Identifier: BSD-2-Clause
// The frame of the colour model conversions: checks, model words, and the way from images to rows.
#include "owncolor.h"

#include <cstdio>
#include <cstring>

#include "frame/ownpixels.h"
#include "owngray.h"

// ---- checks --------------------------------------------------------------------------------------------------------

// The text has one place for the word that the header holds instead; `format` has it as %.4s.
static bool ownHasWord(const OwnSite& site, bool has, const char* format, const char (&field)[4])
{
    if (has) return true;
    char text[80];
    snprintf(text, sizeof text, format, field);
    ownReport(site, PXK_StsBadArg, text);
    return false;
}

static bool ownIsRgb(const OwnSite& site, const PxkImage* image)
{
    const bool isModel = ownIsWord(image->colorModel, "RGB", 3);
    const bool isSequence = ownIsWord(image->channelSeq, "RGB", 3) || ownIsWord(image->channelSeq, "BGR", 3);
    return ownHasWord(site, isModel, "colorModel must be RGB instead of %.4s ", image->colorModel)
        && ownHasWord(site, isSequence, "channelSeq must be RGB or BGR instead of %.4s ", image->channelSeq);
}

static bool ownIsGray(const OwnSite& site, const PxkImage* image)
{
    const bool isModel = ownIsWord(image->colorModel, "Gray") || ownIsWord(image->colorModel, "GRAY");
    const bool isSequence = ownIsWord(image->channelSeq, "G", 1);
    return ownHasWord(site, isModel, "colorModel must be GRAY instead of %.4s ", image->colorModel)
        && ownHasWord(site, isSequence, "channelSeq must be G instead of %.4s ", image->channelSeq);
}

static bool ownIsOfModel(const OwnSite& site, const OwnColourModel& model, const PxkImage* image)
{
    const bool isModel = ownIsWord(image->colorModel, model.word, 3);
    const bool isSequence = ownIsWord(image->channelSeq, model.word, 3);
    if (isModel && isSequence) return true; // formatting would be most of a small call
    char modelFormat[64], sequenceFormat[64];
    snprintf(modelFormat, sizeof modelFormat, "src-> colorModel must be %.4s instead of %%.4s", model.word);
    snprintf(sequenceFormat, sizeof sequenceFormat, "src-> channelSeq must be %.4s instead of %%.4s", model.word);
    return ownHasWord(site, isModel, modelFormat, image->colorModel)
        && ownHasWord(site, isSequence, sequenceFormat, image->channelSeq);
}

static bool ownHasNoRegions(const OwnSite& site, const OwnColourImages& images)
{
    return ownPassed(
        site,
        { { images.src->roi != nullptr || images.dst->roi != nullptr, PXK_StsBadArg, "src & dst roi must be NULL" } });
}

static bool ownIsConvertible(const OwnSite& site, const OwnColourModel& model, const OwnColourImages& images)
{
    const PxkImage *const src = images.src, *const dst = images.dst;
    const bool isUnlike = src->nChannels < 3 || dst->nChannels != 3 || src->depth != dst->depth
        || src->dataOrder != dst->dataOrder || src->origin != dst->origin;
    return ownPassed(
        site,
        { { model.hasDepthTest && src->depth != dst->depth, PXK_StsBadArg, "src1->depth != src2->depth" },
          { isUnlike, PXK_StsBadArg,
            "(src->nChannels < 3 ) || (dst->nChannels != 3 ) || (src->depth != dst->depth) || (src->dataOrder != "
            "dst->dataOrder) || (src->origin != dst->origin)" } });
}

// The rows of the depth, or null after a report.
static OwnColourRow ownRowOfDepth(const OwnSite& site, const OwnColourModel& model, const OwnColourRows& rows,
                                  int32_t depth)
{
    OwnColourRow row = nullptr;
    if (depth == PXK_DEPTH_8U) row = rows.of8U;
    if (depth == PXK_DEPTH_16U) row = rows.of16U;
    if (depth == PXK_DEPTH_32S) row = rows.of32S;
    if (depth == PXK_DEPTH_32F) row = rows.of32F;
    if (row == nullptr) ownReport(site, PXK_StsBadArg, model.depthFault);
    return row;
}

// ---- the work ------------------------------------------------------------------------------------------------------

// The channels of an image that a row function takes.
struct OwnChannelPlaces {
    int32_t count;
    int32_t places[3];
};

static constexpr OwnChannelPlaces ownModelPlaces = { 3, { 0, 1, 2 } };
static constexpr OwnChannelPlaces ownGrayPlaces = { 1, { 0 } };

static OwnChannelPlaces ownRgbPlaces(const PxkImage* image)
{
    const OwnColourPlaces places = ownColourPlaces(image);
    return { 3, { places.red, places.green, places.blue } };
}

// A header without what conversions don't consult: the mask, and which channel is alpha.
static PxkImage ownPlainHeader(const PxkImage* image)
{
    PxkImage plain = *image;
    plain.alphaChannel = 0;
    plain.maskROI = nullptr;
    return plain;
}

static void ownRunColours(const OwnSite& site, const OwnColourImages& images, const OwnChannelPlaces& srcPlaces,
                          const OwnChannelPlaces& dstPlaces, const OwnRowFunction& row)
{
    PxkImage src = ownPlainHeader(images.src), dst = ownPlainHeader(images.dst);
    OwnWork work;
    if (!ownBeginWork(work, site,
                      { { &src, "(src->tileInfo->tileData == NULL)" }, { &dst, "(dst->tileInfo->tileData == NULL)" } }))
        return;
    ownSweepPieces(work, [&](const OwnPiece& piece) {
        const auto channels = [&](int32_t k, const OwnChannelPlaces& of) {
            return OwnPixelChannels { &piece.views[k], of.count, { of.places[0], of.places[1], of.places[2] } };
        };
        ownRunPixels({ channels(0, srcPlaces), channels(1, dstPlaces) }, 1, nullptr, row);
    });
}

// ---- operations ----------------------------------------------------------------------------------------------------

static void ownWriteWord(PxkImage* image, const char (&word)[4])
{
    memcpy(image->colorModel, word, sizeof word);
    memcpy(image->channelSeq, word, sizeof word);
}

void ownConvertFromRgb(const OwnSite& site, const OwnColourImages& images, const OwnColourModel& model)
{
    if (!ownGoodHeaders(site, { images.src, images.dst }) || !ownIsRgb(site, images.src)) return;
    if (!ownHasNoRegions(site, images)) return;
    const OwnChannelPlaces rgb = ownRgbPlaces(images.src); // before the word, which may go into the same header
    ownWriteWord(images.dst, model.word);
    if (!ownIsConvertible(site, model, images)) return;
    const OwnColourRow row = ownRowOfDepth(site, model, model.fromRgb, images.src->depth);
    if (row != nullptr) ownRunColours(site, images, rgb, ownModelPlaces, row);
}

void ownConvertToRgb(const OwnSite& site, const OwnColourImages& images, const OwnColourModel& model)
{
    if (!ownGoodHeaders(site, { images.src, images.dst }) || !ownIsRgb(site, images.dst)) return;
    if (!ownIsOfModel(site, model, images.src) || !ownHasNoRegions(site, images)) return;
    if (!ownIsConvertible(site, model, images)) return;
    const OwnColourRow row = ownRowOfDepth(site, model, model.toRgb, images.src->depth);
    if (row != nullptr) ownRunColours(site, images, ownModelPlaces, ownRgbPlaces(images.dst), row);
}

static bool ownIsPixelOrderOfSeveral(const PxkImage* image)
{
    return image->dataOrder == PXK_DATA_ORDER_PIXEL && image->nChannels != 1;
}

void ownConvertToGray(const OwnSite& site, const OwnColourImages& images)
{
    const PxkImage *const src = images.src, *const dst = images.dst;
    if (!ownGoodHeaders(site, { images.src, images.dst }) || !ownIsRgb(site, src) || !ownIsGray(site, dst)) return;
    if (!ownHasNoRegions(site, images)) return;
    const OwnColourRow row = ownColourToGrayRow(src->depth, dst->depth);
    if (!ownPassed(site,
                   { { ownIsPixelOrderOfSeveral(dst), PXK_StsBadArg,
                       "(dst-> dataOrder == PXK_DATA_ORDER_PIXEL) && (dst-> nChannels != 1)" },
                     { src->origin != dst->origin, PXK_StsBadArg, "src->origin != dst->origin" },
                     { src->nChannels < 3, PXK_StsBadArg, "(src->nChannels < 3 )" },
                     { row == nullptr, PXK_StsBadArg, "Error in-out depth. 32S,16U,8U=> 16U,8U,1U are valid now" } }))
        return;
    ownRunColours(site, images, ownRgbPlaces(src), ownGrayPlaces, row);
}

void ownConvertFromGray(const OwnSite& site, const OwnColourImages& images, float red, float green, float blue)
{
    const PxkImage *const src = images.src, *const dst = images.dst;
    if (!ownGoodHeaders(site, { images.src, images.dst }) || !ownIsRgb(site, dst) || !ownIsGray(site, src)) return;
    if (!ownHasNoRegions(site, images)) return;
    const bool isBits = src->depth == PXK_DEPTH_1U;
    if (!ownPassed(
            site,
            { { src->depth != dst->depth && !isBits, PXK_StsBadArg, "src-> depth != dst-> depth && src-> depth != 1U" },
              { isBits && dst->depth != PXK_DEPTH_8U, PXK_StsBadArg,
                "src-> depth == dst-> depth && dst-> depth != 8U" },
              { ownIsPixelOrderOfSeveral(src), PXK_StsBadArg,
                "(src-> dataOrder == PXK_DATA_ORDER_PIXEL) && (src-> nChannels != 1)" },
              { src->origin != dst->origin, PXK_StsBadArg, "(src->origin != dst->origin)" },
              { dst->nChannels < 3, PXK_StsBadArg, "(dst->nChannels < 3 )" },
              { !ownIsGrayDepth(src->depth), PXK_StsBadArg, ownDepthFault32S } }))
        return;
    const OwnGrayWeights weights = ownGrayWeights(src->depth, red, green, blue);
    ownRunColours(site, images, ownGrayPlaces, ownRgbPlaces(dst),
                  [&](uint8_t* const* rows, ptrdiff_t n) { ownGrayToColourRow(src->depth, weights, rows, n); });
}
