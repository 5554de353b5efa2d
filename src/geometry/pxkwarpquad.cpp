// SPDX-License-Identifier: BSD-2-Clause
// What belongs to a warp's transform: quadrangle, bounds, the transform of a quadrangle, and the shifts of a rotation.
#include <cstring>

#include "frame/ownlimit.h"
#include "frame/ownprecision.h"
#include "owndegrees.h"
#include "ownquad.h"

// The quadrangle that a transform makes of an image's region. False: reported.
template <class Transform>
[[nodiscard]] static bool ownFindQuad(const OwnSite& site, PxkImage* image, const void* coeffs, const OwnCheck& result,
                                      OwnQuad& quad)
{
    const OwnDoublePrecision precision;
    if (!ownGoodHeaders(site, { image })) return false;
    OwnBounds bounds;
    const bool isRegion = ownRegionBounds(image, bounds);
    const OwnCheck hasCoeffs = { coeffs == nullptr, PXK_StsBadArg, "coeffs == ((void *)0)" };
    if (!ownPassed(site, { hasCoeffs, result, { !isRegion, PXK_StsBadArg, "Bad rect ROI" } })) return false;
    Transform transform;
    memcpy(transform.c, coeffs, sizeof transform.c);
    quad = ownQuadOf(transform, bounds);
    for (OwnPoint& corner : quad.corners) corner = { ownOneNaN(corner.x), ownOneNaN(corner.y) };
    return true;
}

template <class Transform>
static void ownGetQuad(const OwnSite& site, PxkImage* image, const void* coeffs, double (*quad)[2])
{
    OwnQuad found;
    const OwnCheck hasQuad = { quad == nullptr, PXK_StsBadArg, "quad == ((void *)0)" };
    if (ownFindQuad<Transform>(site, image, coeffs, hasQuad, found)) memcpy(quad, found.corners, sizeof found.corners);
}

template <class Transform>
static void ownGetBound(const OwnSite& site, PxkImage* image, const void* coeffs, double (*bound)[2])
{
    OwnQuad quad;
    const OwnCheck hasBound = { bound == nullptr, PXK_StsBadArg, "bound == ((void *)0)" };
    if (!ownFindQuad<Transform>(site, image, coeffs, hasBound, quad)) return;
    const OwnBounds found = ownBoundsOf(quad);
    bound[0][0] = found.left;
    bound[0][1] = found.top;
    bound[1][0] = found.right;
    bound[1][1] = found.bottom;
}

// What the helper of a transform demands beyond a convex quadrangle, and how it names the image.
struct OwnFitTexts {
    bool isParallelogram;
    const char* degenerate;
};

constexpr OwnFitTexts ownAnyQuad = { false, "image Rectangle ROI is degenerate to length or point" };
constexpr OwnFitTexts ownParallelogram = { true, "srcImage Rectangle ROI is degenerate to length or point" };

template <class Transform>
static void ownGetTransform(const OwnSite& site, PxkImage* image, void* coeffs, const double (*quad)[2],
                            const OwnFitTexts& texts)
{
    const OwnDoublePrecision precision;
    if (!ownGoodHeaders(site, { image })) return;
    if (!ownPassed(site,
                   { { coeffs == nullptr, PXK_StsBadArg, "coeffs == ((void *)0)" },
                     { quad == nullptr, PXK_StsBadArg, "quad == ((void *)0)" } })) {
        return;
    }
    OwnQuad to;
    memcpy(to.corners, quad, sizeof to.corners);
    OwnBounds from = {};
    const bool isRegion = ownRegionBounds(image, from);
    const char* const fault = ownQuadFault(to);
    const bool isSkewed = texts.isParallelogram && !ownIsParallelogram(to);
    const bool isDegenerate = from.right <= from.left || from.bottom <= from.top;
    if (!ownPassed(site,
                   { { fault != nullptr, PXK_StsBadArg, fault },
                     { isSkewed, PXK_StsBadArg, "Quadrangle is not parallelogram" },
                     { !isRegion, PXK_StsBadArg, "Bad rect ROI" },
                     { isDegenerate, PXK_StsBadArg, texts.degenerate } })) {
        return;
    }
    Transform transform;
    ownFitQuad(from, to, transform);
    for (double& number : transform.c) number = ownOneNaN(number);
    memcpy(coeffs, transform.c, sizeof transform.c);
}

// ---- the operations ------------------------------------------------------------------------------------------------

void pxkGetAffineQuad(PxkImage* image, double coeffs[2][3], double quad[4][2])
{
    ownGetQuad<OwnAffine>(OWN_HERE, image, coeffs, quad);
}

void pxkGetAffineBound(PxkImage* image, double coeffs[2][3], double bound[2][2])
{
    ownGetBound<OwnAffine>(OWN_HERE, image, coeffs, bound);
}

void pxkGetAffineTransform(PxkImage* image, double coeffs[2][3], double quad[4][2])
{
    ownGetTransform<OwnAffine>(OWN_HERE, image, coeffs, quad, ownParallelogram);
}

void pxkGetBilinearQuad(PxkImage* image, double coeffs[2][4], double quad[4][2])
{
    ownGetQuad<OwnBilinear>(OWN_HERE, image, coeffs, quad);
}

void pxkGetBilinearBound(PxkImage* image, double coeffs[2][4], double bound[2][2])
{
    ownGetBound<OwnBilinear>(OWN_HERE, image, coeffs, bound);
}

void pxkGetBilinearTransform(PxkImage* image, double coeffs[2][4], double quad[4][2])
{
    ownGetTransform<OwnBilinear>(OWN_HERE, image, coeffs, quad, ownAnyQuad);
}

void pxkGetPerspectiveQuad(PxkImage* image, double coeffs[3][3], double quad[4][2])
{
    ownGetQuad<OwnPerspective>(OWN_HERE, image, coeffs, quad);
}

void pxkGetPerspectiveBound(PxkImage* image, double coeffs[3][3], double bound[2][2])
{
    ownGetBound<OwnPerspective>(OWN_HERE, image, coeffs, bound);
}

void pxkGetPerspectiveTransform(PxkImage* image, double coeffs[3][3], double quad[4][2])
{
    ownGetTransform<OwnPerspective>(OWN_HERE, image, coeffs, quad, ownAnyQuad);
}

void pxkGetRotateShift(double xCenter, double yCenter, double angle, double* xShift, double* yShift)
{
    const OwnDoublePrecision precision;
    OWN_REFUSE_IF(xShift == nullptr || yShift == nullptr, PXK_StsBadArg,
                  "xShift == ((void *)0) || yShift == ((void *)0)");
    const OwnDirection to = ownDirectionOf(angle);
    if (to.quarters == 0) return; // nor is an infinite centre multiplied by 0
    *xShift = ownOneNaN(*xShift + (xCenter - xCenter * to.cosine - yCenter * to.sine));
    *yShift = ownOneNaN(*yShift + (yCenter + xCenter * to.sine - yCenter * to.cosine));
}
