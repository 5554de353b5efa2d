// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownregion.h"
#include "frame/ownreport.h"
#include "ownfixedlines.h"
#include "ownnarrow.h"

// The words of the checks for one of the two images.
struct OwnFourierTexts {
    const char* missing;
    const char* alphaNotLast;
    const char* alphaWithoutRegion;
    const char* alphaOutsideInterest;
    const char* oneBit;
    const char* tiled;
};

#define OWN_FOURIER_TEXTS(IMAGE)                                                                                       \
    {                                                                                                                  \
        IMAGE "==0", IMAGE "->alphaChannel > 0 && " IMAGE "->alphaChannel != " IMAGE "->nChannels",                    \
            IMAGE "->alphaChannel == 1 && " IMAGE "->roi == 0",                                                        \
            IMAGE "->alphaChannel == 1 && " IMAGE "->roi->coi != 1", IMAGE "->depth == 1",                             \
            IMAGE "->imageData == ((void*)(0))"                                                                        \
    }

static bool ownGoodFourierImage(const OwnSite& site, PxkImage* image, const OwnFourierTexts& texts)
{
    if (!ownPassed(site, { { image == nullptr, PXK_StsBadArg, texts.missing } }) || !ownGoodHeaders(site, { image }))
        return false;
    const int32_t alpha = image->alphaChannel;
    const bool isAlphaAlone = image->nChannels == 1 && alpha == 1;
    return ownPassed(
        site,
        { { alpha > 0 && alpha != image->nChannels, PXK_StsBadArg, texts.alphaNotLast },
          { isAlphaAlone && image->roi == nullptr, PXK_StsBadArg, texts.alphaWithoutRegion },
          { isAlphaAlone && image->roi != nullptr && image->roi->coi != 1, PXK_StsBadArg, texts.alphaOutsideInterest },
          { image->depth == PXK_DEPTH_1U, PXK_StsBadArg, texts.oneBit },
          { image->imageData == nullptr, PXK_StsBadArg, texts.tiled } });
}

static bool ownGoodFourierChannels(const OwnSite& site, const PxkImage* source, const PxkImage* destination)
{
    const bool sourceHasCoi = ownChannelOfInterest(source) > 0;
    const bool destinationHasCoi = ownChannelOfInterest(destination) > 0;
    const int32_t sourceColours = source->nChannels - (source->alphaChannel != 0);
    const int32_t destinationColours = destination->nChannels - (destination->alphaChannel != 0);
    return ownPassed(site,
                     { { !sourceHasCoi && !destinationHasCoi && sourceColours != destinationColours, PXK_StsBadArg,
                         "(srcImage->nChannels - (srcImage->alphaChannel != 0)) != (dstImage->nChannels - "
                         "(dstImage->alphaChannel != "
                         "0))" },
                       { sourceHasCoi && !destinationHasCoi && destinationColours != 1, PXK_StsBadArg,
                         "(dstImage->nChannels - (dstImage->alphaChannel != 0)) != (srcImage->roi->coi > 0)" },
                       { !sourceHasCoi && destinationHasCoi && sourceColours != 1, PXK_StsBadArg,
                         "(srcImage->nChannels - (srcImage->alphaChannel != 0)) != (dstImage->roi->coi > 0)" } });
}

static bool ownGoodFourierCall(const OwnSite& site, PxkImage* source, PxkImage* destination, int32_t flags)
{
    constexpr OwnFourierTexts sourceTexts = OWN_FOURIER_TEXTS("srcImage");
    constexpr OwnFourierTexts destinationTexts = OWN_FOURIER_TEXTS("dstImage");
    const bool isForward = (flags & PXK_FFT_FORWARD) != 0, isInverse = (flags & PXK_FFT_INVERSE) != 0;
    const bool wantsBoth = (flags & PXK_FFT_USE_INT) != 0 && (flags & PXK_FFT_USE_FLOAT) != 0;
    return ownPassed(site,
                     { { !isForward && !isInverse, PXK_StsBadArg, "(flags & 1) == 0 && (flags & 2 ) == 0" },
                       { isForward && isInverse, PXK_StsBadArg, "(flags & 1) != 0 && (flags & 2 ) != 0" },
                       { wantsBoth, PXK_StsBadArg, "(flags & 32) != 0 && (flags & 16 ) != 0" } })
        && ownGoodFourierImage(site, source, sourceTexts) && ownGoodFourierImage(site, destination, destinationTexts)
        && ownGoodFourierChannels(site, source, destination);
}

enum class OwnFourier { REAL_TO_PACKED, PACKED_TO_REAL };

// What a call asks for, once its arguments are checked.
struct OwnFourierCall {
    OwnFourier kind;
    const PxkImage* source;
    const PxkImage* destination;
    OwnSize size;
    int32_t flags;
};

// The transforms have a negative exponent towards the packed spectrum and a positive one back; the other signs are
// those of the conjugate spectrum.
static bool ownTurnsSign(const OwnFourierCall& call)
{
    return ((call.flags & PXK_FFT_FORWARD) != 0) != (call.kind == OwnFourier::REAL_TO_PACKED);
}

static bool ownScales(const OwnFourierCall& call)
{
    return (call.flags & PXK_FFT_INVERSE) != 0 && (call.flags & PXK_FFT_NOSCALE) == 0;
}

static float ownScaleFactor(const OwnSize& size)
{
    return static_cast<float>(1.0 / (static_cast<double>(size.width) * size.height));
}

static void ownTransformPlane(const OwnFourierCall& call, const OwnFloatPacking& packing, const OwnFloatPlane& source,
                              const OwnPartFactors<float>& factors, const OwnFloatPlane& destination)
{
    const bool isPacked = call.kind == OwnFourier::REAL_TO_PACKED;
    if (ownIsNarrow(packing, source, destination))
        (isPacked ? ownPackNarrow : ownUnpackNarrow)(packing, source, factors, destination);
    else if (isPacked)
        ownPack(packing, source, factors, destination);
    else
        ownUnpack(packing, source, factors, destination);
}

using OwnFixedPacking = OwnPacking<int32_t, OwnFixedPlan, OwnFixedPlan>;

static void ownTransformPlane(const OwnFourierCall& call, const OwnFixedPacking& packing, const OwnFixedPlane& source,
                              const OwnPartFactors<int32_t>& factors, const OwnFixedPlane& destination)
{
    if (call.kind == OwnFourier::REAL_TO_PACKED)
        ownPack(packing, source, factors, destination);
    else
        ownUnpack(packing, source, factors, destination);
}

template <class Packing, class Plane, class Value>
static void ownTransformChannels(const OwnFourierCall& call, const Packing& packing, Plane source, Plane destination,
                                 const OwnPartFactors<Value>& factors)
{
    for (int32_t channel = 0; channel < source.view.nChannels; ++channel) {
        source.channel = destination.channel = channel;
        ownTransformPlane(call, packing, source, factors, destination);
    }
}

static bool ownTransformFloats(OwnTransformCaches& caches, const OwnFourierCall& call)
{
    OwnFloatPlane source = { ownRegionStart(call.source), call.source->depth, 0 };
    OwnFloatPlane destination = { ownRegionStart(call.destination), call.destination->depth, 0 };
    OwnSize size = call.size;
    ownLayColumnsDown(source, destination, size);
    OwnFloatPacking packing = {};
    packing.width = size.width;
    packing.height = size.height;
    packing.columns = ownLinePlan(caches, size.height);
    if (packing.columns == nullptr || !ownRealPlan(caches, size.width, packing.rows)
        || !ownRealPlan(caches, size.height, packing.edges))
        return false;
    if (ownWantsLoneLines(packing.rows.points, size.height % OWN_LANES) && !ownAddLoneLines(caches, packing.rows))
        return false;
    if (size.width <= OWN_MOST_NARROW
        && (!ownAddLoneLines(caches, packing.edges) || !ownLoneTurns(caches, *packing.columns, packing.loneTurns)))
        return false;
    if (!ownTakeMemory(caches, packing)) return false;
    const float scale = ownScales(call) ? ownScaleFactor(call.size) : 1;
    ownTransformChannels(call, packing, source, destination,
                         OwnPartFactors<float> { scale, ownTurnsSign(call) ? -scale : scale });
    return true;
}

static int32_t ownLog2(int32_t n) // 0 unless n is a power of two above 1
{
    if ((n & (n - 1)) != 0) return 0;
    int32_t log = 0;
    while (n > 1 << log) ++log;
    return log;
}

static bool ownTransformIntegers(OwnTransformCaches& caches, const OwnFourierCall& call)
{
    OwnFixedPlan columns = {};
    OwnFixedPacking packing = {};
    packing.width = call.size.width;
    packing.height = call.size.height;
    packing.columns = &columns;
    if (!ownFixedPlan(caches, call.size.width, packing.rows) || !ownFixedPlan(caches, call.size.height, columns))
        return false;
    packing.edges = columns;
    if (!ownTakeMemory(caches, packing)) return false;
    const int32_t logs[2] = { ownLog2(call.size.width), ownLog2(call.size.height) };
    const bool shifts = ownScales(call) && logs[0] > 0 && logs[1] > 0;
    const OwnFixedPlane source = { ownRegionStart(call.source), call.source->depth, 0, 0, 1 };
    const OwnFixedPlane destination = { ownRegionStart(call.destination), call.destination->depth, 0,
                                        OWN_FIXED_BITS + (shifts ? logs[0] + logs[1] : 0),
                                        ownScales(call) && !shifts ? ownScaleFactor(call.size) : 1 };
    ownTransformChannels(call, packing, source, destination,
                         OwnPartFactors<int32_t> { 1, ownTurnsSign(call) ? -1 : 1 });
    return true;
}

static void ownFourierImage(const OwnSite& site, OwnFourier kind, PxkImage* source, PxkImage* destination,
                            int32_t flags)
{
    OwnTransformCaches& caches = ownContext().fourier;
    if ((flags & PXK_FFT_FREE) != 0) return ownReleaseTransform(caches);
    if (!ownGoodFourierCall(site, source, destination, flags)) return;
    const OwnFourierCall call = { kind, source, destination, ownCommonSize({ source, destination }), flags };
    if (call.size.isEmpty()) return;
    const bool isFixed =
        (flags & PXK_FFT_USE_INT) != 0 && source->depth != PXK_DEPTH_32F && destination->depth != PXK_DEPTH_32F;
    if (!ownWithRetry(caches,
                      [&] { return isFixed ? ownTransformIntegers(caches, call) : ownTransformFloats(caches, call); }))
        ownReport(site, PXK_StsNoMem, "No working memory");
}

void pxkRealFft2D(PxkImage* srcImage, PxkImage* dstImage, int32_t flags)
{
    ownFourierImage(OWN_HERE, OwnFourier::REAL_TO_PACKED, srcImage, dstImage, flags);
}

void pxkCcsFft2D(PxkImage* srcImage, PxkImage* dstImage, int32_t flags)
{
    ownFourierImage(OWN_HERE, OwnFourier::PACKED_TO_REAL, srcImage, dstImage, flags);
}
