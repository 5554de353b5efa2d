// SPDX-License-Identifier: BSD-2-Clause
#include "pxk/pxk.h"

void pxkNot(PxkImage* srcImage, PxkImage* dstImage)
{
    pxkXorS(srcImage, dstImage, -1);
}
