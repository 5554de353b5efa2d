/* SPDX-License-Identifier: BSD-2-Clause */
/* Needs nothing but the library. Its functions clean up the stack themselves unless they say otherwise. */
#include <pxk/pxk.h>

static int nReports;

static int32_t PXK_CALL count(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    nReports += func && context && file && line >= 0;
    return status;
}

int __cdecl start(void)
{
    PxkROI* roi = pxkCreateROI(1, 2, 3, 4, 5);
    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(count);
    pxkSet((PxkImage*)0, 1);
    if (!roi || roi->height != 5 || nReports != 1 || pxkGetErrStatus() != PXK_StsNullHeader) return 1;
    pxkDeleteROI(roi);
    return pxkGetLibVersion()->build;
}
