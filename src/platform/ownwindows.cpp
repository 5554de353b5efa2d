// SPDX-License-Identifier: BSD-2-Clause
// The platform on Windows.
#include "platform/ownplatform.h"

#include <cstdio>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

static_assert(OWN_NO_SLOT == TLS_OUT_OF_INDEXES);
static_assert((OWN_BOX_TASK_MODAL | OWN_BOX_STOP | OWN_BOX_OK_CANCEL) == (MB_TASKMODAL | MB_ICONSTOP | MB_OKCANCEL));
static_assert((OWN_BOX_TASK_MODAL | OWN_BOX_STOP | OWN_BOX_YES_NO) == (MB_TASKMODAL | MB_ICONSTOP | MB_YESNO));
static_assert((OWN_BOX_TASK_MODAL | OWN_BOX_INFORMATION | OWN_BOX_OK) == (MB_TASKMODAL | MB_ICONINFORMATION | MB_OK));
static_assert(OWN_BUTTON_OK == IDOK && OWN_BUTTON_CANCEL == IDCANCEL);
static_assert(OWN_BUTTON_YES == IDYES && OWN_BUTTON_NO == IDNO);

static bool ownNotified(DWORD reason)
{
    switch (reason) {
    case DLL_PROCESS_ATTACH: return ownProcessAttach();
    case DLL_THREAD_ATTACH: return ownThreadAttach();
    case DLL_THREAD_DETACH: ownThreadDetach(); return true;
    case DLL_PROCESS_DETACH: ownProcessDetach(); return true;
    default: return true;
    }
}

#ifdef PXK_STATIC

// A program's own notifications come through the callbacks of its thread-local storage directory. They can't refuse: a
// failed attach is made good on first access.
static void NTAPI ownCallback(void*, DWORD reason, void*)
{
    static_cast<void>(ownNotified(reason));
}

// The linker collects the callbacks in the order of their section names; the runtime's own are in XLC and behind. The
// directory, which makes the loader call them, comes with `_tls_used`.
extern "C" const IMAGE_TLS_DIRECTORY _tls_used;
__attribute__((section(".CRT$XLB"), used)) static const PIMAGE_TLS_CALLBACK ownCallbackEntry = ownCallback;
__attribute__((used)) static const void* const ownCallbackDirectory = &_tls_used;

#else

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*)
{
    return ownNotified(reason);
}

#endif

uint32_t ownTakeSlot()
{
    return TlsAlloc();
}

void ownGiveSlotBack(uint32_t slot)
{
    TlsFree(slot);
}

void* ownSlotValue(uint32_t slot)
{
    return TlsGetValue(slot);
}

bool ownSetSlotValue(uint32_t slot, void* value)
{
    return TlsSetValue(slot, value);
}

void* ownAllocateZeroed(size_t bytes)
{
    return LocalAlloc(LMEM_ZEROINIT, bytes);
}

void ownFreeZeroed(void* block)
{
    LocalFree(block);
}

void ownFatalExit(const char* text)
{
    FatalAppExitA(0, text);
    ExitProcess(1); // never reached, but the declaration of the call above doesn't say so
}

void ownWriteError(std::initializer_list<const char*> texts)
{
    for (const char* text : texts) fputs(text, stderr);
    fflush(stderr);
}

OwnDigits ownDigits(int32_t number)
{
    // wsprintfA cuts what it writes at 1024 characters, so it gets numbers alone; texts of any length are joined.
    OwnDigits digits;
    wsprintfA(digits.text, "%d", static_cast<int>(number));
    return digits;
}

uint64_t ownProcessorCounter()
{
    return __builtin_ia32_rdtsc();
}

int32_t ownShowBox(const char* text, const char* title, uint32_t style)
{
    return MessageBoxA(nullptr, text, title, style);
}
