// SPDX-License-Identifier: BSD-2-Clause
// Fixed filters: the gradient, Laplace, Gauss, high-pass and sharpening kernels that are in common use.
#include "frame/owndepth.h"
#include "ownconvolve.h"
#include "ownconvwork.h"

struct OwnFixedFilter {
    int32_t filter; // its own index
    int32_t side;
    int32_t shift;
    int32_t values[25];
};

// Coefficients as they meet the samples, rows from the top.
static constexpr OwnFixedFilter ownFixedFilters[] = {
    { PXK_FILTER_PREWITT_X_3x3, 3, 0, { -1, 0, 1, -1, 0, 1, -1, 0, 1 } },
    { PXK_FILTER_PREWITT_Y_3x3, 3, 0, { -1, -1, -1, 0, 0, 0, 1, 1, 1 } },
    { PXK_FILTER_SOBEL_X_3x3, 3, 0, { -1, 0, 1, -2, 0, 2, -1, 0, 1 } },
    { PXK_FILTER_SOBEL_Y_3x3, 3, 0, { -1, -2, -1, 0, 0, 0, 1, 2, 1 } },
    { PXK_FILTER_LAPLACE_3x3, 3, 0, { 0, 1, 0, 1, -4, 1, 0, 1, 0 } },
    { PXK_FILTER_LAPLACE_5x5, 5, 0, { 0, 0, 1, 0, 0, 0, 1, 2, 1, 0, 1, 2, -16, 2, 1, 0, 1, 2, 1, 0, 0, 0, 1, 0, 0 } },
    { PXK_FILTER_GAUSS_3x3, 3, 4, { 1, 2, 1, 2, 4, 2, 1, 2, 1 } },
    { PXK_FILTER_GAUSS_5x5,
      5,
      8,
      { 1, 4, 6, 4, 1, 4, 16, 24, 16, 4, 6, 24, 36, 24, 6, 4, 16, 24, 16, 4, 1, 4, 6, 4, 1 } },
    { PXK_FILTER_HIGHPASS_3x3, 3, 0, { -1, -1, -1, -1, 8, -1, -1, -1, -1 } },
    { PXK_FILTER_HIGHPASS_5x5, 5, 0, { -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 24,
                                       -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1 } },
    { PXK_FILTER_SHARPEN_3x3, 3, 3, { -1, -1, -1, -1, 16, -1, -1, -1, -1 } },
};

static constexpr bool ownIndicesMatch()
{
    int32_t index = 0;
    for (const OwnFixedFilter& entry : ownFixedFilters) {
        if (entry.filter != index++) return false;
    }
    return index == PXK_FILTER_SHARPEN_3x3 + 1;
}
static_assert(ownIndicesMatch());

void pxkFixedFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t filter)
{
    const OwnConvImages images = { srcImage, dstImage };
    if (!ownGoodConvHeaders(OWN_HERE, images)) return;
    OWN_REFUSE_IF(filter < 0 || filter > 10, PXK_StsBadArg, "(filter < 0) || (filter > 10)");
    const bool isFloat = srcImage->depth == PXK_DEPTH_32F;
    OwnConvWork work;
    if (!ownGoodConvImages(OWN_HERE, images, isFloat) || !ownBeginConvWork(OWN_HERE, images, work)) return;

    const OwnFixedFilter& fixed = ownFixedFilters[filter];
    float valuesFP[25];
    for (int32_t i = 0; i < 25; ++i) {
        valuesFP[i] = static_cast<float>(fixed.values[i]) / static_cast<float>(1 << fixed.shift);
    }
    const int32_t middle = fixed.side / 2;
    const OwnCorrelation correlation = { fixed.side, fixed.side, middle, middle, isFloat ? nullptr : fixed.values,
                                         valuesFP,   fixed.shift };
    OwnConvPlan plan = {};
    if (!ownPlanConvolution(plan, srcImage->depth, &correlation, 1, PXK_CONV_SUM)) {
        return OWN_REPORT(PXK_StsNoMem, "Allocation failure");
    }
    ownRunConvWork(OWN_HERE, work, plan.margins, [&](const OwnBand& band) { return ownConvolveBand(band, plan); });
}
