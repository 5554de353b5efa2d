// Warps: affine, bilinear and perspective, rotation and shear.
#include <cmath>
#include <cstring>

#include "frame/ownprecision.h"
#include "owndegrees.h"
#include "ownturn.h"
#include "ownwarp.h"

// ---- checks --------------------------------------------------------------------------------------------------------

// What the images of a warp must agree in. Every fault is reported.
static int32_t ownWarpFault(const OwnSite& site, const PxkImage* srcImage, const PxkImage* dstImage)
{
    const bool isOneOrder = srcImage->depth == PXK_DEPTH_1U || (srcImage->nChannels == 1 && dstImage->nChannels == 1);
    const bool isRefused = (srcImage->depth & PXK_DEPTH_SIGN) != 0 || srcImage->depth == PXK_DEPTH_32F;
    return ownEveryFault(
        site,
        { { srcImage->depth != dstImage->depth, PXK_StsBadArg, "srcImage->depth != dstImage->depth" },
          { srcImage->origin != dstImage->origin, PXK_StsBadArg, "srcImage->origin != dstImage->origin" },
          { !isOneOrder && srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg,
            "srcImage->dataOrder != dstImage->dataOrder" },
          { isRefused, PXK_StsBadArg, "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)" },
          { srcImage == dstImage, PXK_StsBadArg, "This function is not in-place function" } });
}

// Everything that is checked before the stored status is. `shape` are the checks of the transform's arguments.
static bool ownGoodWarp(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage,
                        std::initializer_list<OwnCheck> shape, int32_t interpolate)
{
    const int32_t kind = interpolate & ~PXK_WARP_SMOOTH_EDGE;
    const bool isBadKind = kind != PXK_INTER_NN && kind != PXK_INTER_LINEAR && kind != PXK_INTER_CUBIC;
    const int32_t headerFault = ownEveryHeaderFault(site, { srcImage, dstImage });
    if (srcImage == nullptr || dstImage == nullptr) return false;
    const int32_t faults[] = {
        headerFault, ownWarpFault(site, srcImage, dstImage), ownEveryFault(site, shape),
        ownEveryFault(site,
                      { { isBadKind, PXK_StsBadArg,
                          "interpolate != PXK_INTER_NN && interpolate != PXK_INTER_LINEAR && interpolate != "
                          "PXK_INTER_CUBIC" } })
    };
    for (const int32_t fault : faults) {
        if (fault != PXK_StsOk) return false;
    }
    return pxkGetErrStatus() >= 0;
}

// Checks of channels, and of the region that the transform starts from or leads to.
static bool ownGoodRegion(const OwnSite& site, const PxkImage* srcImage, const PxkImage* dstImage, bool isDestination)
{
    const OwnSize size = ownRegionSize(isDestination ? dstImage : srcImage);
    const char* const text = isDestination ? "dstImage Rectangle ROI is degenerate to length or point"
                                           : "srcImage Rectangle ROI is degenerate to length or point";
    return ownPassed(site,
                     { { ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage), PXK_StsBadArg,
                         "Number of processed channels of srcImage != Number of processed channels of dstImage" },
                       { size.isEmpty(), PXK_StsBadArg, "Bad rect ROI" },
                       { size.width < 2 || size.height < 2, PXK_StsBadArg, text } });
}

// ---- affine --------------------------------------------------------------------------------------------------------

static bool ownAreFinite(const double* values, int32_t n)
{
    for (int32_t i = 0; i < n; ++i) {
        if (!std::isfinite(values[i])) return false;
    }
    return true;
}

static void ownWarpAffine(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const OwnAffine& transform,
                          int32_t interpolate)
{
    const OwnDoublePrecision precision;
    if (!ownGoodWarp(site, srcImage, dstImage, {}, interpolate)) return;
    const double* const c = transform.c;
    const bool isRegular = ownAreFinite(c, 6) && fabs(c[4] * c[0] - c[3] * c[1]) > 0.0000001;
    if (!ownPassed(site, { { !isRegular, PXK_StsBadArg, "Determinant of transform matrix == 0.0" } })) return;
    if (!ownGoodRegion(site, srcImage, dstImage, false)) return;
    OwnBounds bounds;
    if (!ownRegionBounds(srcImage, bounds)) return;
    const OwnQuad quad = ownQuadOf(transform, bounds);
    if (ownQuadFault(quad) != nullptr) return; // so far away that its corners fall together
    const OwnShape shape = ownShapeOf(quad);
    const OwnAffine inverse = ownInverse(transform);
    OwnWarp warp = { site,
                     srcImage,
                     dstImage,
                     ownRegionRect(srcImage),
                     OwnInterpolation::NEAREST,
                     &shape,
                     false,
                     true,
                     {},
                     ownRealMapOf(inverse),
                     nullptr };
    warp.interpolation =
        ownInterpolationFor(interpolate & ~PXK_WARP_SMOOTH_EDGE, srcImage->depth, ownRegionSize(srcImage));
    warp.isSmooth = (interpolate & PXK_WARP_SMOOTH_EDGE) != 0 && srcImage->depth != PXK_DEPTH_1U;
    warp.fixed = ownFixedMapOf(inverse, warp.interpolation == OwnInterpolation::NEAREST ? 32768 : 0);
    OwnRightTurn turn;
    if (ownTurnOf(transform, turn) && ownCanTurn(turn, srcImage->depth)) warp.turn = &turn;
    ownRunWarp(warp);
}

static OwnAffine ownAffineFrom(const double coeffs[2][3])
{
    OwnAffine transform;
    memcpy(transform.c, coeffs, sizeof transform.c);
    return transform;
}

void pxkWarpAffine(PxkImage* srcImage, PxkImage* dstImage, double coeffs[2][3], int32_t interpolate)
{
    OWN_REFUSE_IF(coeffs == nullptr, PXK_StsBadArg, "coeffs == ((void *)0)");
    ownWarpAffine(OWN_HERE, srcImage, dstImage, ownAffineFrom(coeffs), interpolate);
}

void pxkRotate(PxkImage* srcImage, PxkImage* dstImage, double angle, double xShift, double yShift, int32_t interpolate)
{
    const OwnDoublePrecision precision;
    const OwnDirection to = ownDirectionOf(angle);
    double coeffs[2][3] = { { to.cosine, to.sine, xShift }, { -to.sine, to.cosine, yShift } };
    OwnRightTurn turn;
    const bool isTiled = (srcImage != nullptr && srcImage->tileInfo != nullptr)
        || (dstImage != nullptr && dstImage->tileInfo != nullptr);
    if (isTiled || !ownTurnOf(ownAffineFrom(coeffs), turn))
        return pxkWarpAffine(srcImage, dstImage, coeffs, interpolate);
    ownWarpAffine(OWN_HERE, srcImage, dstImage, ownAffineFrom(coeffs), interpolate);
}

void pxkShear(PxkImage* srcImage, PxkImage* dstImage, double xShear, double yShear, double xShift, double yShift,
              int32_t interpolate)
{
    const OwnDoublePrecision precision;
    double coeffs[2][3] = { { 1, xShear, xShift }, { yShear, 1, yShift } };
    pxkWarpAffine(srcImage, dstImage, coeffs, interpolate);
}

// ---- bilinear and perspective --------------------------------------------------------------------------------------

// The part of an image that the interpolation of positions inside a quadrangle can touch, or the nearest part of it.
static OwnRect ownRectAround(const OwnQuad& quad, const PxkImage* image)
{
    const OwnBounds bounds = ownBoundsOf(quad);
    constexpr double reach = 3;  // pixels that the widest interpolation takes beside a position
    constexpr int32_t least = 4; // pixels that it needs
    const auto place = [](double low, double high, int32_t size, int32_t& start, int32_t& count) {
        const double last = size - 1.0;
        const auto held = [last](double value) { return value > 0 ? (value < last ? value : last) : 0; };
        const int32_t first = static_cast<int32_t>(held(floor(low) - reach));
        const int32_t end = static_cast<int32_t>(held(ceil(high) + reach));
        start = end - first + 1 < least ? std::max(0, std::min(first, size - least)) : first;
        count = std::max(end, std::min(start + least, size) - 1) - start + 1;
    };
    OwnRect rect;
    place(bounds.left, bounds.right, image->width, rect.x, rect.width);
    place(bounds.top, bounds.bottom, image->height, rect.y, rect.height);
    return rect;
}

static OwnRealMap ownBackward(const OwnBilinear&, const OwnBounds& bounds, const OwnQuad& quad)
{
    return ownInverseBilinear(bounds, quad);
}

static OwnRealMap ownBackward(const OwnPerspective& transform, const OwnBounds&, const OwnQuad&)
{
    return ownRealMapOf(ownInverse(transform));
}

// warpFlag 0: the source's region comes to lie in the quadrangle; 1: the quadrangle fills the destination's region.
template <class Transform>
static void ownWarpQuad(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const OwnQuad& quad,
                        int32_t warpFlag, int32_t interpolate)
{
    const OwnDoublePrecision precision;
    const char* const fault = ownQuadFault(quad);
    const bool isGood =
        ownGoodWarp(site, srcImage, dstImage,
                    { { warpFlag != 0 && warpFlag != 1, PXK_StsBadArg, "warpFlag != 0 && warpFlag != 1" },
                      { fault != nullptr, PXK_StsBadArg, fault } },
                    interpolate);
    if (!isGood || !ownGoodRegion(site, srcImage, dstImage, warpFlag != 0)) return;
    OwnBounds bounds;
    if (!ownRegionBounds(warpFlag != 0 ? dstImage : srcImage, bounds)) return;
    Transform transform;
    ownFitQuad(bounds, quad, transform);
    const OwnShape shape = ownShapeOf(quad);
    OwnWarp warp = { site, srcImage, dstImage, {}, OwnInterpolation::NEAREST, nullptr, false, false, {}, {}, nullptr };
    OwnSize size = { srcImage->width, srcImage->height };
    if (warpFlag != 0) {
        warp.taps = ownRectAround(quad, srcImage);
        warp.real = ownRealMapOf(transform);
    } else {
        warp.taps = ownRegionRect(srcImage);
        size = { warp.taps.width, warp.taps.height };
        warp.shape = &shape;
        warp.isSmooth = (interpolate & PXK_WARP_SMOOTH_EDGE) != 0 && srcImage->depth != PXK_DEPTH_1U;
        warp.real = ownBackward(transform, bounds, quad);
    }
    warp.interpolation = ownInterpolationFor(interpolate & ~PXK_WARP_SMOOTH_EDGE, srcImage->depth, size);
    ownRunWarp(warp);
}

static OwnQuad ownQuadFrom(const double quad[4][2])
{
    OwnQuad result;
    memcpy(result.corners, quad, sizeof result.corners);
    return result;
}

// What a transform makes of an image's region. Regions without pixels, which are refused later on, become any
// quadrangle without fault.
template <class Transform> static void ownRegionQuad(const PxkImage* image, const double* coeffs, double quad[4][2])
{
    const OwnDoublePrecision precision;
    OwnBounds bounds = { 0, 0, 1, 1 };
    OwnQuad result = ownCornersOf(bounds);
    if (image != nullptr && ownRegionBounds(image, bounds)) {
        Transform transform;
        memcpy(transform.c, coeffs, sizeof transform.c);
        result = ownQuadOf(transform, bounds);
    }
    memcpy(quad, result.corners, sizeof result.corners);
}

void pxkWarpBilinear(PxkImage* srcImage, PxkImage* dstImage, double coeffs[2][4], int32_t warpFlag, int32_t interpolate)
{
    OWN_REFUSE_IF(coeffs == nullptr, PXK_StsBadArg, "coeffs == ((void *)0)");
    double quad[4][2];
    ownRegionQuad<OwnBilinear>(warpFlag != 0 ? dstImage : srcImage, coeffs[0], quad);
    pxkWarpBilinearQ(srcImage, dstImage, quad, warpFlag, interpolate);
}

void pxkWarpBilinearQ(PxkImage* srcImage, PxkImage* dstImage, double quad[4][2], int32_t warpFlag, int32_t interpolate)
{
    OWN_REFUSE_IF(quad == nullptr, PXK_StsBadArg, "quad == ((void *)0)");
    ownWarpQuad<OwnBilinear>(OWN_HERE, srcImage, dstImage, ownQuadFrom(quad), warpFlag, interpolate);
}

void pxkWarpPerspective(PxkImage* srcImage, PxkImage* dstImage, double coeffs[3][3], int32_t warpFlag,
                        int32_t interpolate)
{
    OWN_REFUSE_IF(coeffs == nullptr, PXK_StsBadArg, "coeffs == ((void *)0)");
    double quad[4][2];
    ownRegionQuad<OwnPerspective>(warpFlag != 0 ? dstImage : srcImage, coeffs[0], quad);
    pxkWarpPerspectiveQ(srcImage, dstImage, quad, warpFlag, interpolate);
}

void pxkWarpPerspectiveQ(PxkImage* srcImage, PxkImage* dstImage, double quad[4][2], int32_t warpFlag,
                         int32_t interpolate)
{
    OWN_REFUSE_IF(quad == nullptr, PXK_StsBadArg, "quad == ((void *)0)");
    ownWarpQuad<OwnPerspective>(OWN_HERE, srcImage, dstImage, ownQuadFrom(quad), warpFlag, interpolate);
}
