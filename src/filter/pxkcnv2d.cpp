// Two-dimensional convolution.
#include "frame/ownreport.h"
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

// The first fault of the kernels, as the text to report, or null. All are looked at for null before any is opened.
template <class Kernel>
static const char* ownKernelsFault(Kernel* const* kernel, int32_t nKernels, int32_t combineMethod)
{
    if (kernel == nullptr) return "kernel==0";
    if (nKernels <= 0 || nKernels > ownMostKernels) return "(nKernels<=0 || nKernels>10)";
    if (nKernels > 1 && (combineMethod < PXK_CONV_SUM || combineMethod > PXK_CONV_MIN)) return "Inadmissible method";
    for (int32_t k = 0; k < nKernels; ++k) {
        if (kernel[k] == nullptr) return "kernel[i]==0";
    }
    for (int32_t k = 0; k < nKernels; ++k) {
        if (ownBadKernel(kernel[k])) return "Bad kernel structure";
    }
    return nullptr;
}

template <class Kernel>
static void ownConvolution(const OwnSite& site, OwnConvImages images, Kernel* const* kernel, int32_t nKernels,
                           int32_t combineMethod, bool isFloat)
{
    if (!ownGoodConvHeaders(site, images)) return;
    const char* fault = ownKernelsFault(kernel, nKernels, combineMethod);
    if (fault == nullptr) fault = ownConvImagesFault(images, isFloat);
    if (fault != nullptr) return ownReport(site, PXK_StsBadArg, fault);
    OwnConvWork work;
    if (!ownBeginConvWork(site, images, work)) return;
    OwnCorrelation correlations[ownMostKernels];
    for (int32_t k = 0; k < nKernels; ++k) correlations[k] = ownCorrelationOf(kernel[k]);
    OwnConvPlan plan = {};
    if (!ownPlanConvolution(plan, images.srcImage->depth, correlations, nKernels, combineMethod)) {
        return ownReport(site, PXK_StsNoMem, "Allocation failure");
    }
    const auto engine = [&](const OwnBand& band) { return ownConvolveBand(band, plan); };
    ownRunConvWork(site, work, plan.margins, ownBandEngine(engine));
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
