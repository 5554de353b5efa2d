// SPDX-License-Identifier: BSD-2-Clause
// Two-dimensional convolution.
#include <algorithm>

#include "ownconvolve.h"
#include "ownconvwork.h"
#include "ownkernel.h"

static OwnCorrelation ownCorrelationOf(const PxkConvKernel* kernel)
{
    return { kernel->nCols, kernel->nRows, kernel->anchorX, kernel->anchorY, kernel->values, nullptr, kernel->nShiftR };
}

static OwnCorrelation ownCorrelationOf(const PxkConvKernelFP* kernel)
{
    return { kernel->nCols, kernel->nRows, kernel->anchorX, kernel->anchorY, nullptr, kernel->values, 0 };
}

// All kernels are looked at for null before any is opened.
template <class Kernel>
static bool ownGoodKernels(const OwnSite& site, Kernel* const* kernel, int32_t nKernels, int32_t combineMethod)
{
    const bool isMethod = combineMethod >= PXK_CONV_SUM && combineMethod <= PXK_CONV_MIN;
    if (!ownPassed(site,
                   { { kernel == nullptr, PXK_StsBadArg, "kernel==0" },
                     { nKernels <= 0 || nKernels > ownMostKernels, PXK_StsBadArg, "(nKernels<=0 || nKernels>10)" },
                     { nKernels > 1 && !isMethod, PXK_StsBadArg, "Inadmissible method" } }))
        return false;
    Kernel* const* const end = kernel + nKernels;
    return ownPassed(site, { { std::find(kernel, end, nullptr) != end, PXK_StsBadArg, "kernel[i]==0" } })
        && ownPassed(site,
                     { { std::any_of(kernel, end, ownBadKernel<Kernel>), PXK_StsBadArg, "Bad kernel structure" } });
}

template <class Kernel>
static void ownConvolution(const OwnSite& site, OwnConvImages images, Kernel* const* kernel, int32_t nKernels,
                           int32_t combineMethod, bool isFloat)
{
    OwnConvWork work;
    if (!ownGoodConvHeaders(site, images) || !ownGoodKernels(site, kernel, nKernels, combineMethod)
        || !ownGoodConvImages(site, images, isFloat) || !ownBeginConvWork(site, images, work))
        return;
    OwnCorrelation correlations[ownMostKernels];
    for (int32_t k = 0; k < nKernels; ++k) correlations[k] = ownCorrelationOf(kernel[k]);
    OwnConvPlan plan = {};
    if (!ownPlanConvolution(plan, images.srcImage->depth, correlations, nKernels, combineMethod)) {
        return ownReport(site, PXK_StsNoMem, "Allocation failure");
    }
    work.window.isCostly = nKernels > 1 || !plan.kernels[0].isBox;
    ownRunConvWork(site, work, plan.margins, [&](const OwnBand& band) { return ownConvolveBand(band, plan); });
}

void pxkConvolve2D(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernel** kernel, int32_t nKernels,
                   int32_t combineMethod)
{
    ownConvolution(OWN_HERE, { srcImage, dstImage }, kernel, nKernels, combineMethod, false);
}

void pxkConvolve2DFP(PxkImage* srcImage, PxkImage* dstImage, PxkConvKernelFP** kernel, int32_t nKernels,
                     int32_t combineMethod)
{
    ownConvolution(OWN_HERE, { srcImage, dstImage }, kernel, nKernels, combineMethod, true);
}
