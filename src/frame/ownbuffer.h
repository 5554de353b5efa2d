/* SPDX-License-Identifier: BSD-2-Clause */
// Memory that an operation holds while it runs, given back on every way out.
#pragma once

#include <cstdlib>
#include <memory>

#include "pxk/pxk.h"

struct OwnFreeBlock {
    void operator()(void* block) const { pxkFree(block); }
};

// Items in a block of the pxkMalloc family: 32-byte aligned, not cleared, null when it could not be had.
template <class T> using OwnBuffer = std::unique_ptr<T[], OwnFreeBlock>;

template <class T> [[nodiscard]] inline OwnBuffer<T> ownBuffer(int64_t count)
{
    if (count < 0 || count > INT32_MAX) return nullptr;
    const int64_t bytes = count * static_cast<int64_t>(sizeof(T));
    if (bytes > INT32_MAX) return nullptr;
    return OwnBuffer<T>(static_cast<T*>(pxkMalloc(static_cast<int32_t>(bytes))));
}

struct OwnFreeImage {
    void operator()(PxkImage* image) const { pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA); }
};

// A temporary image: header and pixels are the library's, everything it points at is not.
using OwnTempImage = std::unique_ptr<PxkImage, OwnFreeImage>;
