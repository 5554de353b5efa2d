// SPDX-License-Identifier: BSD-2-Clause
#include "frame/owncontext.h"

#include "frame/ownbuffer.h"
#include "platform/ownplatform.h"
#ifdef PXK_LEVELS
#include "platform/ownprocessor.h"
#endif

// Written at process attach and detach only.
static uint32_t ownSlot = OWN_NO_SLOT;

// `context` is zeroed already.
static void ownInitContext(PxkContext* context)
{
    if (context == nullptr) return;
    context->handler = pxkGuiBoxReport;
}

static PxkContext* ownMakeContext()
{
    PxkContext* context = static_cast<PxkContext*>(ownAllocateZeroed(sizeof(PxkContext)));
    ownInitContext(context);
    if (context != nullptr && !ownSetSlotValue(ownSlot, context)) {
        ownFreeZeroed(context);
        return nullptr;
    }
    return context;
}

static PxkContext* ownPresentContext()
{
    return static_cast<PxkContext*>(ownSlotValue(ownSlot));
}

PxkContext* ownThreadContext()
{
    PxkContext* context = ownPresentContext();
    if (context == nullptr) context = ownMakeContext();
    if (context == nullptr) ownFatalExit("PXKib. Problem to allocate memory for TLS PXK context.");
    return context;
}

bool ownProcessAttach()
{
#ifdef PXK_LEVELS
    ownTakeLevel(ownProcessorLevel());
#endif
    ownSlot = ownTakeSlot();
    return ownSlot != OWN_NO_SLOT && ownThreadAttach();
}

bool ownThreadAttach()
{
    return ownMakeContext() != nullptr;
}

void ownThreadDetach()
{
    if (ownSlot == OWN_NO_SLOT) return;
    PxkContext* context = ownPresentContext();
    if (context == nullptr) return;
    ownReleaseTransform(context->fourier);
    ownReleaseTransform(context->cosine);
    pxkFree(context->memory.block); // a call is under way where it was not released before
    // What else ends with the thread may still call the library, and then gets a new context. Emptying a slot that
    // holds a value takes no memory, so it does not fail.
    if (ownSetSlotValue(ownSlot, nullptr)) ownFreeZeroed(context);
}

void ownProcessDetach()
{
    if (ownSlot == OWN_NO_SLOT) return;
    ownThreadDetach();
    ownGiveSlotBack(ownSlot);
    ownSlot = OWN_NO_SLOT;
}

void ownReleaseTransform(OwnTransformCaches& caches)
{
    for (OwnTransformTable& table : caches.tables) pxkFree(table.block);
    pxkFree(caches.work);
    caches = {};
    ownReleaseMemory();
}
