// SPDX-License-Identifier: BSD-2-Clause
// Bit reduction: checks, and the way from source to destination.
#include <cstring>

#include "frame/ownbits.h"
#include "frame/ownbuffer.h"
#include "frame/owndepth.h"
#include "frame/ownpixelorder.h"
#include "frame/ownwork.h"
#include "ownreduc.h"

// ---- checks --------------------------------------------------------------------------------------------------------

enum class OwnModel { COLOUR, GRAY, OTHER };

static OwnModel ownModelOf(const PxkImage* image)
{
    const OwnSequence sequence = ownSequenceOf(image);
    const bool isOrdered = sequence == OwnSequence::RGB || sequence == OwnSequence::BGR;
    if (ownIsWord(image->colorModel, "RGB") && isOrdered) return OwnModel::COLOUR;
    const bool isGray = ownIsWord(image->colorModel, "Gray") || ownIsWord(image->colorModel, "GRAY");
    return isGray && image->channelSeq[0] == 'G' ? OwnModel::GRAY : OwnModel::OTHER;
}

static bool ownGoodReduction(const OwnSite& site, const PxkImage* src, const PxkImage* dst, int32_t jitterType,
                             int32_t ditherType)
{
    const bool isDithered = ditherType != PXK_DITHER_NONE;
    const bool isUnlike =
        src->nChannels != dst->nChannels || src->dataOrder != dst->dataOrder || src->origin != dst->origin;
    return ownPassed(
        site,
        { { src->roi != nullptr || dst->roi != nullptr, PXK_StsBadArg, "src & dst roi must be NULL" },
          { isUnlike, PXK_StsBadArg,
            "(src->nChannels != dst->nChannels)||(src->dataOrder != dst->dataOrder)||(src->origin != dst->origin)" },
          { jitterType != 0 && isDithered && dst->depth == PXK_DEPTH_1U, PXK_StsBadArg,
            "Jittering is incompatible with dithering operation for 1U destination image" },
          { isDithered && ownModelOf(src) == OwnModel::OTHER, PXK_StsBadArg,
            "colorModel, (channelSeq)  must be RGB,(RGB,BGR) or GRAY,(G) when dithering mode is set on" } });
}

// What a stage objects to, reported under the stage's name.
struct OwnStageFault {
    const char* stage;
    const char* text; // null: no objection
};

static bool ownIsDitherDepth(int32_t depth)
{
    return depth == PXK_DEPTH_8U || depth == PXK_DEPTH_16U;
}

static OwnStageFault ownReductionFault(int32_t srcDepth, int32_t dstDepth, bool isJittered)
{
    const char* const stage = isJittered ? "ownjitter_rect" : "ownReduceBits";
    const bool isServed =
        dstDepth == PXK_DEPTH_1U || (ownIsDitherDepth(dstDepth) && dstDepth <= ownDepthBits(srcDepth));
    const char* text = nullptr;
    switch (srcDepth) {
    case PXK_DEPTH_32S:
        text = isJittered ? "Error output depth for 32S input. Conversion to 16U,8U,1U is valid now"
                          : "Error output depth. 32S to 16U,8U,1U conversion is valid now";
        break;
    case PXK_DEPTH_16U:
        text = isJittered ? "Error output depth for 16U input. Conversion to 8U,1U is valid now"
                          : "Error output depth. 16U to 8U,1U conversion is valid now";
        break;
    case PXK_DEPTH_8U: text = "Error output depth. 8U to 1U conversion is valid now"; break;
    default:
        return { stage,
                 isJittered ? "Error output depth for 8U input. Conversion to 1U is valid now"
                            : "Error input depth. 32S,16U,8U input is valid now" };
    }
    return { stage, isServed ? nullptr : text };
}

static bool ownIsDiffusion(int32_t ditherType)
{
    return ditherType == PXK_DITHER_FS || ditherType == PXK_DITHER_JJN || ditherType == PXK_DITHER_STUCKI;
}

// `isTiledDiffusion`: the errors have to cross tiles.
static OwnStageFault ownDitherFault(OwnModel model, int32_t depth, int32_t ditherType, bool isTiledDiffusion)
{
    const char* const stage = isTiledDiffusion ? "own_dither_tiled_errprop" : "own_dither_rect";
    if (!ownIsDitherDepth(depth)) {
        if (model == OwnModel::COLOUR) return { stage, "Error output depth for color dithering. 16U,8U is valid now" };
        return {
            stage,
            isTiledDiffusion
                ? "Error depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U"
                : "Error output depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => "
                  "1U"
        };
    }
    const bool isKnown = ditherType == PXK_DITHER_NONE || ditherType == PXK_DITHER_BAYER || ownIsDiffusion(ditherType);
    return { stage, isKnown ? nullptr : "Erroneous dither option" };
}

// ---- the work ------------------------------------------------------------------------------------------------------

// A call behind the first checks. The headers are private: all channels count alike, masks do not count.
struct OwnReduction {
    OwnSite site;
    PxkImage source;
    PxkImage destination;
    OwnSize size;
    OwnModel model;
    int32_t jitterType;
    int32_t ditherType;
    int32_t ditherDepth; // a gray image is dithered at its own depth before it becomes one-bit
    OwnLevels levels;
    OwnNoise noise; // where there is jitter

    bool isTiled() const { return source.tileInfo != nullptr || destination.tileInfo != nullptr; }
    bool isJittered() const { return jitterType != 0; }
    bool isDiffused() const { return ownIsDiffusion(ditherType); }
};

static PxkImage ownPlainHeader(const PxkImage* image)
{
    PxkImage plain = *image;
    plain.alphaChannel = 0;
    plain.maskROI = nullptr;
    return plain;
}

// The faults of the stages in their order, found before anything is written.
static OwnStageFault ownFirstStageFault(const OwnReduction& reduction)
{
    const int32_t dstDepth = reduction.destination.depth;
    const int32_t ditherType = reduction.ditherType;
    const OwnStageFault reducing = ownReductionFault(reduction.source.depth, dstDepth, reduction.isJittered());
    if (ditherType == PXK_DITHER_NONE) return reducing;
    const bool isTiledDiffusion = reduction.isTiled() && reduction.isDiffused();
    if (reduction.model == OwnModel::GRAY && dstDepth == PXK_DEPTH_1U) {
        return ownDitherFault(reduction.model, reduction.source.depth, ditherType, false);
    }
    const OwnStageFault dithering = ownDitherFault(reduction.model, dstDepth, ditherType, isTiledDiffusion);
    if (isTiledDiffusion) return dithering.text != nullptr ? dithering : reducing;
    return reducing.text != nullptr ? reducing : dithering;
}

static OwnLevels ownLevelsOf(int32_t bitCount, int32_t dstDepth, int32_t ditherDepth)
{
    const int32_t bits = ownDepthBits(ditherDepth);
    if (bitCount < 0) bitCount = 0;
    if (bitCount > ownDepthBits(dstDepth)) bitCount = ownDepthBits(dstDepth) / 2;
    return { static_cast<int32_t>((INT64_C(1) << bits) - 1), bits - bitCount };
}

// A pair of depths, as types.
template <class T, int32_t DEPTH> struct OwnReductionPair {
    using Source = T;
    using Reduce = OwnReduce<DEPTH>;
    static constexpr int32_t depth = DEPTH;
};

// The pair is one that the checks let through.
template <class F> static void ownForReductionPair(int32_t srcDepth, int32_t dstDepth, F&& onPair)
{
    const auto forSource = [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if (dstDepth == PXK_DEPTH_1U) return onPair(OwnReductionPair<T, PXK_DEPTH_1U> {});
        if constexpr (sizeof(T) >= 2) {
            if (dstDepth == PXK_DEPTH_16U) return onPair(OwnReductionPair<T, PXK_DEPTH_16U> {});
        }
        onPair(OwnReductionPair<T, PXK_DEPTH_8U> {});
    };
    if (srcDepth == PXK_DEPTH_32S) return forSource(OwnSampleTag<int32_t> {});
    if (srcDepth == PXK_DEPTH_16U) return forSource(OwnSampleTag<uint16_t> {});
    forSource(OwnSampleTag<uint8_t> {});
}

// The depths differ between the ways only in the destination, or in the image that takes its place.
static OwnWork ownWorkOf(const OwnReduction& reduction, PxkImage* from, PxkImage* to)
{
    OwnWork work;
    work.site = reduction.site;
    work.operands[0] = { from, "(src->tileInfo->tileData == NULL)" };
    work.operands[1] = { to, "(dst->tileInfo->tileData == NULL)" };
    work.count = 2;
    work.area.size = reduction.size;
    return work;
}

// ---- plain reduction -----------------------------------------------------------------------------------------------

static bool ownReducePlainly(const OwnReduction& reduction, PxkImage* from, PxkImage* to)
{
    const OwnWork work = ownWorkOf(reduction, from, to);
    bool isDone = false;
    ownForReductionPair(from->depth, to->depth, [&](auto pair) {
        using Source = typename decltype(pair)::Source;
        using Reduce = typename decltype(pair)::Reduce;
        const auto row = [](uint8_t* const* rows, ptrdiff_t n) {
            const Source* const source = reinterpret_cast<const Source*>(rows[0]);
            typename Reduce::Sample* const target = reinterpret_cast<typename Reduce::Sample*>(rows[1]);
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < n; ++i) target[i] = Reduce {}(source[i]);
        };
        isDone = ownSweepPieces(work, [&](const OwnPiece& piece) { ownRunViews(piece.views, 2, 1, nullptr, row); });
    });
    return isDone;
}

// ---- jitter and ordered dithering ----------------------------------------------------------------------------------

// Samples that go through the stages together.
static constexpr int32_t ownBlockSamples = 1024;

// Part of a row: the stages on a copy, so that the source survives its noise.
template <class Pair>
static void ownReduceBlock(const OwnReduction& reduction, const typename Pair::Source* from, uint8_t* to, ptrdiff_t n,
                           uint32_t x, uint32_t y)
{
    using Source = typename Pair::Source;
    using Target = typename Pair::Reduce::Sample;
    const bool isOrdered = reduction.ditherType == PXK_DITHER_BAYER;
    Source samples[ownBlockSamples];
    Target results[ownBlockSamples];
    memcpy(samples, from, static_cast<size_t>(n) * sizeof(Source));
    if (reduction.isJittered()) ownJitter(reduction.noise, samples, n, x, y, Pair::depth);
    if constexpr (Pair::depth == PXK_DEPTH_1U && sizeof(Source) <= 2) {
        if (isOrdered) ownDitherOrdered(samples, n, x, y, reduction.levels);
    }
    for (ptrdiff_t i = 0; i < n; ++i) results[i] = typename Pair::Reduce {}(samples[i]);
    if constexpr (Pair::depth == PXK_DEPTH_1U) {
        ownPackBits(results, to, 0, n);
    } else {
        if (isOrdered) ownDitherOrdered(results, n, x, y, reduction.levels);
        memcpy(to, results, static_cast<size_t>(n) * sizeof(Target));
    }
}

template <class Pair> static void ownReducePiece(const OwnReduction& reduction, const OwnPiece& piece)
{
    using Source = typename Pair::Source;
    const OwnView& from = piece.views[0];
    const OwnView& to = piece.views[1];
    const bool isPixelOrder = reduction.source.dataOrder == PXK_DATA_ORDER_PIXEL;
    const int32_t together = isPixelOrder ? from.nChannels : 1; // in a row
    const ptrdiff_t rowSamples = static_cast<ptrdiff_t>(from.width) * together;
    const uint32_t x = static_cast<uint32_t>(piece.x) * static_cast<uint32_t>(together);
    for (int32_t plane = 0; plane < (isPixelOrder ? 1 : from.nChannels); ++plane) {
        for (int32_t y = 0; y < from.height; ++y) {
            const uint8_t* const source = from.first + plane * from.channelStep + y * from.rowStep;
            uint8_t* const target = to.first + plane * to.channelStep + y * to.rowStep;
            for (ptrdiff_t i = 0; i < rowSamples; i += ownBlockSamples) {
                ownReduceBlock<Pair>(reduction, reinterpret_cast<const Source*>(source) + i,
                                     target + (to.sampleBytes == 0 ? i / 8 : i * to.sampleBytes),
                                     std::min<ptrdiff_t>(ownBlockSamples, rowSamples - i), x + static_cast<uint32_t>(i),
                                     static_cast<uint32_t>(piece.y + y));
            }
        }
    }
}

// Everything but error diffusion. False: a tile was refused, which was reported.
static bool ownReducePoints(const OwnReduction& reduction, PxkImage* from, PxkImage* to)
{
    if (!reduction.isJittered() && reduction.ditherType != PXK_DITHER_BAYER) {
        return ownReducePlainly(reduction, from, to);
    }
    const OwnWork work = ownWorkOf(reduction, from, to);
    bool isDone = false;
    ownForReductionPair(from->depth, to->depth, [&](auto pair) {
        const auto onPiece = [&](const OwnPiece& piece) { ownReducePiece<decltype(pair)>(reduction, piece); };
        isDone = ownSweepPieces(work, onPiece);
    });
    return isDone;
}

// ---- error diffusion -----------------------------------------------------------------------------------------------

static void ownDiffuseImage(const OwnReduction& reduction, const OwnDiffusion& diffusion, const PxkImage* from,
                            const PxkImage* to, uint8_t* memory)
{
    const OwnView source = ownRegionStart(from);
    const OwnView target = ownRegionStart(to);
    if (reduction.source.dataOrder == PXK_DATA_ORDER_PIXEL) return ownDiffuse(diffusion, source, target, memory);
    for (int32_t channel = 0; channel < source.nChannels; ++channel) {
        ownDiffuse(diffusion, ownChannelView(source, channel), ownChannelView(target, channel), memory);
    }
}

static const char* ownRowStageName(const OwnDiffusion& diffusion, OwnModel model)
{
    const bool is8U = diffusion.depth == PXK_DEPTH_8U;
    const bool isFloyd = diffusion.ditherType == PXK_DITHER_FS;
    if (model == OwnModel::COLOUR && diffusion.gap > 1) {
        if (is8U) return isFloyd ? "owncbDither_Floyd_PX" : "owncbDither_S_J_PX";
        return isFloyd ? "ownwbDither_Floyd_PX" : "ownwbDither_S_J_PX";
    }
    if (is8U) return isFloyd ? "owncbDither_Gray_Floyd_PX" : "owncbDither_Gray_S_J_PX";
    return isFloyd ? "ownwbDither_Gray_Floyd_PX" : "ownwbDither_Gray_S_J_PX";
}

// An image in memory of the work's size, for tiled images.
static OwnBuffer<uint8_t> ownMakeStage(const OwnReduction& reduction, PxkImage& stage)
{
    stage = reduction.destination;
    stage.depth = reduction.ditherDepth;
    stage.width = reduction.size.width;
    stage.height = reduction.size.height;
    stage.tileInfo = nullptr;
    const bool isPixelOrder = stage.dataOrder == PXK_DATA_ORDER_PIXEL;
    const int64_t step =
        static_cast<int64_t>(stage.width) * ownSampleBytes(stage.depth) * (isPixelOrder ? stage.nChannels : 1);
    const int64_t rows = static_cast<int64_t>(stage.height) * (isPixelOrder ? 1 : stage.nChannels);
    if (step > INT32_MAX / rows) return nullptr;
    stage.widthStep = static_cast<int32_t>(step);
    OwnBuffer<uint8_t> pixels = ownBuffer<uint8_t>(step * rows);
    stage.imageData = pixels.get();
    return pixels;
}

// Through an image in memory: read whole before anything is written, so that errors cross tiles like any other pixels.
static void ownDiffuseTiled(OwnReduction& reduction, const OwnDiffusion& diffusion, uint8_t* memory)
{
    PxkImage stage;
    const OwnBuffer<uint8_t> pixels = ownMakeStage(reduction, stage);
    if (!pixels || memory == nullptr) {
        return ownReport(reduction.site, PXK_StsNoMem, "no memory for error propagation dithering errors array");
    }
    if (!ownReducePoints(reduction, &reduction.source, &stage)) return;
    PxkImage* const destination = &reduction.destination;
    if (destination->tileInfo == nullptr) return ownDiffuseImage(reduction, diffusion, &stage, destination, memory);
    ownDiffuseImage(reduction, diffusion, &stage, &stage, memory);
    ownReducePlainly(reduction, &stage, destination);
}

static void ownDiffuseReduction(OwnReduction& reduction)
{
    const bool isPixelOrder = reduction.source.dataOrder == PXK_DATA_ORDER_PIXEL;
    const int32_t gap = isPixelOrder ? reduction.source.nChannels : 1;
    const int64_t rowSamples = static_cast<int64_t>(reduction.size.width) * gap;
    const OwnDiffusion diffusion = { reduction.ditherType,  reduction.ditherDepth,
                                     reduction.levels,      static_cast<int32_t>(rowSamples),
                                     reduction.size.height, gap };
    OwnBuffer<uint8_t> memory;
    if (rowSamples <= INT32_MAX) memory = ownBuffer<uint8_t>(ownDiffusionBytes(diffusion));
    if (reduction.isTiled()) return ownDiffuseTiled(reduction, diffusion, memory.get());
    if (!memory) {
        OwnSite stage = reduction.site;
        stage.func = ownRowStageName(diffusion, reduction.model);
        return ownReport(stage, PXK_StsNoMem, "no memory for errr array");
    }
    PxkImage* const source = &reduction.source;
    PxkImage* const destination = &reduction.destination;
    if (source->depth == reduction.ditherDepth && !reduction.isJittered()) {
        return ownDiffuseImage(reduction, diffusion, source, destination, memory.get());
    }
    ownReducePoints(reduction, source, destination); // in memory there is nothing to refuse
    ownDiffuseImage(reduction, diffusion, destination, destination, memory.get());
}

void pxkReduceBits(PxkImage* srcImage, PxkImage* dstImage, int32_t jitterType, int32_t ditherType, int32_t bitCount)
{
    OWN_REFUSE_IF(jitterType < 0 || jitterType >= 9, PXK_StsBadArg, "(jitterType<0)||( jitterType >= 9)");
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    if (!ownGoodReduction(OWN_HERE, srcImage, dstImage, jitterType, ditherType)) return;

    OwnReduction reduction;
    reduction.site = OWN_HERE;
    reduction.source = ownPlainHeader(srcImage);
    reduction.destination = ownPlainHeader(dstImage);
    reduction.size = ownCommonSize({ srcImage, dstImage });
    reduction.model = ownModelOf(srcImage);
    reduction.jitterType = jitterType;
    reduction.ditherType = ditherType;
    const OwnStageFault stageFault = ownFirstStageFault(reduction);
    if (stageFault.text != nullptr) {
        reduction.site.func = stageFault.stage;
        return ownReport(reduction.site, PXK_StsBadArg, stageFault.text);
    }

    const bool isGrayToBits = dstImage->depth == PXK_DEPTH_1U && ditherType != PXK_DITHER_NONE;
    reduction.ditherDepth = isGrayToBits ? srcImage->depth : dstImage->depth;
    reduction.levels = ownLevelsOf(bitCount, dstImage->depth, reduction.ditherDepth);
    if (jitterType != 0) ownDrawNoise(reduction.noise, jitterType);
    if (reduction.isDiffused()) return ownDiffuseReduction(reduction);
    ownReducePoints(reduction, &reduction.source, &reduction.destination);
}
