// SPDX-License-Identifier: BSD-2-Clause
// Remap: every destination pixel from a source position that two images hold.
#include <algorithm>

#include "frame/ownpieces.h"
#include "frame/ownsource.h"
#include "ownwarp.h"

static int32_t ownRemapFault(const OwnSite& site, const PxkImage* srcImage, const PxkImage* xMap, const PxkImage* yMap,
                             const PxkImage* dstImage, int32_t interpolate)
{
    const auto isNoMap = [](const PxkImage* map) {
        return map->depth != PXK_DEPTH_32F || map->nChannels != 1 || map->alphaChannel != 0;
    };
    const bool isRefused = (srcImage->depth & PXK_DEPTH_SIGN) != 0 || srcImage->depth == PXK_DEPTH_32F;
    const bool isBadKind =
        interpolate != PXK_INTER_NN && interpolate != PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC;
    return ownEveryFault(
        site,
        { { srcImage->depth != dstImage->depth, PXK_StsBadArg, "srcImage->depth != dstImage->depth" },
          { srcImage->origin != dstImage->origin, PXK_StsBadArg, "srcImage->origin != dstImage->origin" },
          { srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg, "srcImage->dataOrder != dstImage->dataOrder" },
          { isRefused, PXK_StsBadArg, "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)" },
          { isNoMap(xMap), PXK_StsBadArg,
            "xMap->depth != PXK_DEPTH_32F || xMap->nChannels != 1 || xMap->alphaChannel != 0" },
          { isNoMap(yMap), PXK_StsBadArg,
            "yMap->depth != PXK_DEPTH_32F || yMap->nChannels != 1 || yMap->alphaChannel != 0" },
          { srcImage == dstImage, PXK_StsBadArg, "This function is not in-place function" },
          { isBadKind, PXK_StsBadArg,
            "interpolate != PXK_INTER_NN && interpolate != PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC" } });
}

// A map's numbers under a piece of the destination.
struct OwnMapRows {
    OwnSource source;
    OwnView view;

    [[nodiscard]] bool read(PxkImage* map, const OwnRect& piece)
    {
        const OwnRect region = ownRegionRect(map);
        const OwnRect rect = { region.x + piece.x, region.y + piece.y, piece.width, piece.height };
        if (!ownReadSource(source, map, rect, OwnReading::IN_PLACE)) return false;
        view = source.view(rect);
        return true;
    }
    const float* row(int32_t y) const { return reinterpret_cast<const float*>(view.first + y * view.rowStep); }
};

enum class OwnInside { NONE, SOME, ALL };

// Positions of n pixels, and which of them lie in the sampler's region; what is no number lies nowhere.
static OwnInside ownMapPositions(const OwnSampler& sampler, const float* x, const float* y, int32_t n, OwnRealRun& run,
                                 uint8_t* isInside)
{
    const double left = sampler.left, right = left + (sampler.source.width - 1);
    const double top = sampler.top, bottom = top + (sampler.source.height - 1);
    int32_t count = 0;
    for (int32_t i = 0; i < n; ++i) {
        const double px = x[i], py = y[i];
        run.x[i] = px;
        run.y[i] = py;
        const int32_t inside = (px >= left) & (px <= right) & (py >= top) & (py <= bottom);
        isInside[i] = static_cast<uint8_t>(inside);
        count += inside;
    }
    return count == 0 ? OwnInside::NONE : count == n ? OwnInside::ALL : OwnInside::SOME;
}

static void ownRemapPiece(const OwnSampler& sampler, const OwnMapRows& xMap, const OwnMapRows& yMap,
                          const OwnDestination& piece)
{
    const OwnRunTarget target(piece);
    OwnRealRun run;
    uint8_t isInside[ownMostRun];
    for (int32_t y = 0; y < piece.rect.height; ++y) {
        for (int32_t x = 0; x < piece.rect.width; x += ownMostRun) {
            const int32_t n = std::min(ownMostRun, piece.rect.width - x);
            const OwnInside inside = ownMapPositions(sampler, xMap.row(y) + x, yMap.row(y) + x, n, run, isInside);
            if (inside == OwnInside::NONE) continue;
            target.write(x, y, n, inside == OwnInside::ALL ? nullptr : isInside,
                         [&](uint8_t* to) { ownSampleReal(sampler, run, n, OwnTies::EVEN, to); });
        }
    }
}

// The work: the destination's, cut to the maps' regions. False: there is nothing to do, or reported.
static bool ownRemapArea(const OwnSite& site, const PxkImage* xMap, const PxkImage* yMap, const PxkImage* dstImage,
                         OwnArea& area)
{
    const OwnStart start = ownFindArea(area, { dstImage });
    if (start == OwnStart::NO_MEMORY) ownReport(site, PXK_StsNoMem, "Out of memory");
    if (start != OwnStart::READY) return false;
    for (const PxkImage* map : { xMap, yMap }) {
        const OwnSize size = ownRegionSize(map);
        area.size.width = std::min(area.size.width, size.width);
        area.size.height = std::min(area.size.height, size.height);
    }
    return !area.size.isEmpty();
}

static void ownRunRemap(const OwnSite& site, PxkImage* srcImage, PxkImage* xMap, PxkImage* yMap, PxkImage* dstImage,
                        int32_t interpolate)
{
    const OwnRect taps = ownRegionRect(srcImage);
    OwnArea area;
    if (taps.width < 1 || taps.height < 1 || !ownRemapArea(site, xMap, yMap, dstImage, area)) return;
    OwnSource source;
    const bool isShared = ownSharePixels(srcImage, dstImage);
    bool isRead = ownReadSource(source, srcImage, taps, isShared ? OwnReading::AS_COPY : OwnReading::IN_PLACE);
    const OwnSampler sampler = { isRead ? source.view(taps) : OwnView {}, taps.x, taps.y,
                                 ownInterpolationFor(interpolate, srcImage->depth, { taps.width, taps.height }) };
    OwnWritten written = OwnWritten::ALL;
    if (isRead) {
        written = ownForPieces(dstImage, area.size, area.mask.bitsOrNull(), [&](const OwnDestination& piece) {
            OwnMapRows xRows, yRows;
            isRead = xRows.read(xMap, piece.rect) && yRows.read(yMap, piece.rect);
            if (!isRead) return false;
            ownForChannels(sampler, piece, [&](const OwnSampler& from, const OwnDestination& to) {
                ownRemapPiece(from, xRows, yRows, to);
            });
            return true;
        });
    }
    if (!isRead) ownReport(site, PXK_StsNoMem, "Out of memory");
    if (written == OwnWritten::TILE_REFUSED) ownReport(site, PXK_StsBadArg, "Error get tile to write");
}

void pxkRemap(PxkImage* srcImage, PxkImage* xMap, PxkImage* yMap, PxkImage* dstImage, int32_t interpolate)
{
    const int32_t headerFault = ownEveryHeaderFault(OWN_HERE, { srcImage, xMap, yMap, dstImage });
    if (srcImage == nullptr || xMap == nullptr || yMap == nullptr || dstImage == nullptr) return;
    const int32_t fault = ownRemapFault(OWN_HERE, srcImage, xMap, yMap, dstImage, interpolate);
    if (headerFault != PXK_StsOk || fault != PXK_StsOk || pxkGetErrStatus() < 0) return;
    OWN_REFUSE_IF(ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage), PXK_StsBadArg,
                  "Number of processed channels of srcImage != Number of processed channels of dstImage");
    ownRunRemap(OWN_HERE, srcImage, xMap, yMap, dstImage, interpolate);
}
