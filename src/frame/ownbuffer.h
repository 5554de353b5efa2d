/* SPDX-License-Identifier: BSD-2-Clause */
// Memory that an operation holds while it runs, given back on every way out.
#pragma once

#include <cstdlib>
#include <memory>

#include "pxk/pxk.h"

// There is one of these functions for all processor levels.
extern "C" {

// Memory for the time of a call: 32-byte aligned, not cleared, null when it could not be had. Mostly a piece of a block
// that the thread keeps from call to call. Given back by the same thread, in any order.
[[nodiscard]] void* ownTakeMemory(int64_t bytes);
void ownGiveMemoryBack(void* memory);

// Frees what the thread keeps, unless a call of it is under way.
void ownReleaseMemory();

} // extern "C"

struct OwnGiveBack {
    void operator()(void* memory) const { ownGiveMemoryBack(memory); }
};

// Items in such memory.
template <class T> using OwnBuffer = std::unique_ptr<T[], OwnGiveBack>;

template <class T> [[nodiscard]] inline OwnBuffer<T> ownBuffer(int64_t count)
{
    if (count > INT32_MAX) return nullptr;
    return OwnBuffer<T>(static_cast<T*>(ownTakeMemory(count * static_cast<int64_t>(sizeof(T)))));
}

// Records that outlive the call: blocks of the pxkMalloc family, which their owner gives back to pxkFree.
struct OwnFreeBlock {
    void operator()(void* block) const { pxkFree(block); }
};
template <class T> using OwnRecord = std::unique_ptr<T, OwnFreeBlock>;

template <class T> [[nodiscard]] inline OwnRecord<T> ownRecord(int64_t count)
{
    const int64_t bytes = count <= INT32_MAX ? count * static_cast<int64_t>(sizeof(T)) : INT64_MAX;
    return OwnRecord<T>(bytes <= INT32_MAX ? static_cast<T*>(pxkMalloc(static_cast<int32_t>(bytes))) : nullptr);
}

struct OwnFreeImage {
    void operator()(PxkImage* image) const { pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA); }
};

// A temporary image: header and pixels are the library's, everything it points at is not.
using OwnTempImage = std::unique_ptr<PxkImage, OwnFreeImage>;
