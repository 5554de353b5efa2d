/* SPDX-License-Identifier: BSD-2-Clause */
/* A stranger's program: calls the library, and is called by it. */
#include <stdio.h>

#include <pxk/pxk.h>

static int nReports;

static int32_t PXK_CALL count(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    nReports += func && context && file && line >= 0;
    return status;
}

int main(void)
{
    const PxkLibVersion* version = pxkGetLibVersion();
    printf("pxk %d.%d.%d\n", (int)version->major, (int)version->minor, (int)version->build);
    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(count);
    return pxkError(PXK_StsNoMem, "main", "no context", "user.c", 1) == PXK_StsNoMem && nReports == 1
            && pxkGetErrStatus() == PXK_StsNoMem
        ? 0
        : 1;
}
