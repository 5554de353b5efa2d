#include "frame/owncontext.h"

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
    context->dctTableSize = -1;
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

PxkContext& ownContext()
{
    PxkContext* context = ownPresentContext();
    if (context == nullptr) context = ownMakeContext();
    if (context == nullptr) ownFatalExit("PXKib. Problem to allocate memory for TLS PXK context.");
    return *context;
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
    ownReleaseCaches(*context);
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

template <class T> static void ownFreeTables(T* (&tables)[OWN_FOURIER_ENTRIES])
{
    for (T*& table : tables) {
        pxkFree(table);
        table = nullptr;
    }
}

static void ownForgetSizes(int32_t (&sizes)[OWN_FOURIER_ENTRIES])
{
    for (int32_t& size : sizes) size = 0;
}

void ownReleaseFourier(OwnFourierCaches& caches)
{
    ownFreeTables(caches.work);
    ownForgetSizes(caches.workSize);
    ownFreeTables(caches.workFP);
    ownForgetSizes(caches.workSizeFP);
    ownFreeTables(caches.bitReversal);
    ownFreeTables(caches.twiddleRadix4);
    ownFreeTables(caches.twiddleRadix2);
    ownFreeTables(caches.untangle);
    ownFreeTables(caches.twiddleFixed);
    ownFreeTables(caches.directFP);
    ownForgetSizes(caches.directSizeFP);
    ownFreeTables(caches.direct);
    ownForgetSizes(caches.directSize);
}

void ownReleaseDctWeights(PxkContext& context)
{
    for (int32_t i = 0; i < context.dctWeightCount; ++i) {
        pxkFree(context.dctWeights[i]);
        context.dctWeights[i] = nullptr;
    }
    context.dctWeightCount = 0;
}

void ownReleaseDctTable(PxkContext& context)
{
    pxkFree(context.dctTable);
    context.dctTable = nullptr;
    context.dctTableSize = -1;
}

void ownReleaseCaches(PxkContext& context)
{
    ownReleaseFourier(context.fourier);
    ownReleaseDctWeights(context);
    ownReleaseDctTable(context);
}
