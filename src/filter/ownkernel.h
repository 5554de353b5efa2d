/* SPDX-License-Identifier: BSD-2-Clause */
// Convolution kernels as they are held: coefficients reversed and anchors mirrored, so that a plain correlation with
// them is the convolution with what the caller gave.
#pragma once

#include "frame/ownbuffer.h"
#include "pxk/pxk.h"

// Works for both kinds of kernel.
template <class Kernel> inline bool ownBadKernel(const Kernel* kernel)
{
    return kernel->nRows <= 0 || kernel->nCols <= 0 || kernel->anchorX < 0 || kernel->anchorX >= kernel->nCols
        || kernel->anchorY < 0 || kernel->anchorY >= kernel->nRows;
}
