// SPDX-License-Identifier: BSD-2-Clause
// The thread's status, mode and handler, and the entry that every report goes through.
#include "frame/owncontext.h"

int32_t pxkGetErrStatus(void)
{
    return ownContext().status;
}

void pxkSetErrStatus(int32_t status)
{
    ownContext().status = status;
}

int32_t pxkGetErrMode(void)
{
    return ownContext().mode;
}

void pxkSetErrMode(int32_t mode)
{
    ownContext().mode = mode;
}

PxkErrorCallBack pxkRedirectError(PxkErrorCallBack handler)
{
    PxkContext& context = ownContext();
    const PxkErrorCallBack before = context.handler;
    context.handler = handler != nullptr ? handler : pxkGuiBoxReport;
    return before;
}

int32_t pxkError(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    PxkContext& thread = ownContext();
    if (status != PXK_StsBackTrace && status != PXK_StsAutoTrace) {
        thread.status = status;
        if (status == PXK_StsOk) return PXK_StsOk;
    }
    return thread.handler(status, func, context, file, line);
}
