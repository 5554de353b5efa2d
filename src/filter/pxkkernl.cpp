// SPDX-License-Identifier: BSD-2-Clause
// Making, reading and releasing convolution kernels.
#include "frame/ownreport.h"
#include "ownkernel.h"

// The record with room for its coefficients, or null after a report.
template <class Kernel, class Value>
static Kernel* ownCreateKernel(const OwnSite& site, int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                               const Value* values)
{
    const bool isOutside = anchorX < 0 || anchorY < 0 || nRows <= anchorY || nCols <= anchorX;
    if (!ownPassed(site,
                   { { values == nullptr, PXK_StsBadArg, "(values == 0)" },
                     { nRows <= 0 || nCols <= 0, PXK_StsBadArg, "(nRows<=0 || nCols<=0)" },
                     { isOutside, PXK_StsBadArg, "(anchorX<0 ||anchorY<0 ||nRows<=anchorY || nCols<=anchorX)" } }))
        return nullptr;
    using Stored = std::remove_pointer_t<decltype(Kernel::values)>;
    const int64_t count = static_cast<int64_t>(nCols) * nRows;
    OwnRecord<Kernel> kernel = ownRecord<Kernel>(1);
    OwnRecord<Stored> stored = ownRecord<Stored>(count);
    if (kernel == nullptr || stored == nullptr) {
        ownReport(site, PXK_StsNoMem, "Allocation failure");
        return nullptr;
    }
    for (int64_t i = 0; i < count; ++i) stored.get()[i] = values[count - 1 - i];
    *kernel = {};
    kernel->nCols = nCols;
    kernel->nRows = nRows;
    kernel->anchorX = nCols - 1 - anchorX;
    kernel->anchorY = nRows - 1 - anchorY;
    kernel->values = stored.release();
    return kernel.release();
}

PxkConvKernel* pxkCreateConvKernel(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                   const int32_t* values, int32_t nShiftR)
{
    PxkConvKernel* const kernel = ownCreateKernel<PxkConvKernel>(OWN_HERE, nCols, nRows, anchorX, anchorY, values);
    if (kernel != nullptr) kernel->nShiftR = nShiftR;
    return kernel;
}

PxkConvKernel* pxkCreateConvKernelChar(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                       const int8_t* values, int32_t nShiftR)
{
    PxkConvKernel* const kernel = ownCreateKernel<PxkConvKernel>(OWN_HERE, nCols, nRows, anchorX, anchorY, values);
    if (kernel != nullptr) kernel->nShiftR = nShiftR;
    return kernel;
}

PxkConvKernelFP* pxkCreateConvKernelFP(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY,
                                       const float* values)
{
    return ownCreateKernel<PxkConvKernelFP>(OWN_HERE, nCols, nRows, anchorX, anchorY, values);
}

// Where a kernel's parts go.
struct OwnKernelParts {
    int32_t* nCols;
    int32_t* nRows;
    int32_t* anchorX;
    int32_t* anchorY;
    void* values;
};

// Sizes and anchors go in pairs: both of a pair report, then the status decides.
template <class Kernel> static bool ownGoodParts(const OwnSite& site, const Kernel* kernel, const OwnKernelParts& parts)
{
    const auto arePresent = [&](std::initializer_list<OwnCheck> pair) {
        return ownEveryFault(site, pair) == PXK_StsOk && pxkGetErrStatus() >= 0;
    };
    return ownPassed(site, { { kernel == nullptr, PXK_StsBadArg, "kernel==0" } })
        && ownPassed(site, { { ownBadKernel(kernel), PXK_StsBadArg, "ownBadKernel((OwnConvKernel*)kernel)" } })
        && arePresent({ { parts.nRows == nullptr, PXK_StsBadArg, "nRows==0" },
                        { parts.nCols == nullptr, PXK_StsBadArg, "nCols==0" } })
        && arePresent({ { parts.anchorX == nullptr, PXK_StsBadArg, "anchorX==0" },
                        { parts.anchorY == nullptr, PXK_StsBadArg, "anchorY==0" } })
        && ownPassed(site, { { parts.values == nullptr, PXK_StsBadArg, "values==0" } });
}

template <class Value, class Kernel> static void ownGiveParts(const Kernel* kernel, const OwnKernelParts& parts)
{
    *parts.nCols = kernel->nCols;
    *parts.nRows = kernel->nRows;
    *parts.anchorX = kernel->nCols - 1 - kernel->anchorX;
    *parts.anchorY = kernel->nRows - 1 - kernel->anchorY;
    const int64_t count = static_cast<int64_t>(kernel->nCols) * kernel->nRows;
    Value* const values = static_cast<Value*>(parts.values);
    for (int64_t i = 0; i < count; ++i) values[i] = static_cast<Value>(kernel->values[count - 1 - i]);
}

template <class Value>
static void ownGetIntegerKernel(const OwnSite& site, const PxkConvKernel* kernel, const OwnKernelParts& parts,
                                int32_t* nShiftR)
{
    if (!ownGoodParts(site, kernel, parts)) return;
    if (nShiftR == nullptr) return ownReport(site, PXK_StsBadArg, "nShiftR==0");
    ownGiveParts<Value>(kernel, parts);
    *nShiftR = kernel->nShiftR;
}

void pxkGetConvKernel(PxkConvKernel* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX, int32_t* anchorY,
                      int32_t* values, int32_t* nShiftR)
{
    ownGetIntegerKernel<int32_t>(OWN_HERE, kernel, { nCols, nRows, anchorX, anchorY, values }, nShiftR);
}

void pxkGetConvKernelChar(PxkConvKernel* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX, int32_t* anchorY,
                          int8_t* values, int32_t* nShiftR)
{
    ownGetIntegerKernel<int8_t>(OWN_HERE, kernel, { nCols, nRows, anchorX, anchorY, values }, nShiftR);
}

void pxkGetConvKernelFP(PxkConvKernelFP* kernel, int32_t* nCols, int32_t* nRows, int32_t* anchorX, int32_t* anchorY,
                        float* values)
{
    const OwnKernelParts parts = { nCols, nRows, anchorX, anchorY, values };
    if (ownGoodParts(OWN_HERE, kernel, parts)) ownGiveParts<float>(kernel, parts);
}

template <class Kernel> static void ownDeleteKernel(const OwnSite& site, Kernel* kernel)
{
    if (kernel == nullptr) return ownReport(site, PXK_StsBadArg, "kernel==0");
    if (kernel->values == nullptr) return ownReport(site, PXK_StsBadArg, "kernel->values==0");
    pxkFree(kernel->values);
    pxkFree(kernel);
}

void pxkDeleteConvKernel(PxkConvKernel* kernel)
{
    ownDeleteKernel(OWN_HERE, kernel);
}

void pxkDeleteConvKernelFP(PxkConvKernelFP* kernel)
{
    ownDeleteKernel(OWN_HERE, kernel);
}
