// SPDX-License-Identifier: BSD-2-Clause
#include "alloc_failure.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>

#include <pxk/pxk.h>

#include "frame/ownbuffer.h"

extern "C" void* __real_malloc(size_t size);
extern "C" void __real_free(void* block);

static int64_t failing, allocations, blocks;
static bool laterFail;

extern "C" void* __wrap_malloc(size_t size)
{
    if (++allocations == failing || (laterFail && allocations > failing)) return nullptr;
    void* const block = __real_malloc(size);
    if (block != nullptr) ++blocks;
    return block;
}

extern "C" void __wrap_free(void* block)
{
    if (block != nullptr) --blocks;
    __real_free(block);
}

// Blocks of the library have spare bytes for callers that run over; the library itself must not write there.
// AddressSanitizer sees that alone.
extern "C" void* __real_pxkMalloc(int32_t length);
extern "C" void __real_pxkFree(void* block);

static std::map<void*, int32_t>& lengths()
{
    static std::map<void*, int32_t> all;
    return all;
}

extern "C" void* __wrap_pxkMalloc(int32_t length)
{
    void* const block = __real_pxkMalloc(length);
#ifndef __SANITIZE_ADDRESS__
    if (block != nullptr) {
        memset(static_cast<char*>(block) + length, 0x5A, 33);
        lengths()[block] = length;
    }
#endif
    return block;
}

extern "C" void __wrap_pxkFree(void* block)
{
    const auto at = lengths().find(block);
    if (at != lengths().end()) {
        const char* const end = static_cast<char*>(block) + at->second;
        EXPECT_TRUE(std::all_of(end, end + 33, [](char byte) { return byte == 0x5A; }))
            << "written behind a block of " << at->second << " bytes";
        lengths().erase(at);
    }
    __real_pxkFree(block);
}

#ifdef _WIN32
// The C++ library is linked statically there and would take part: the tests' own memory must neither count nor fail.
void* operator new(size_t size)
{
    void* const block = __real_malloc(size != 0 ? size : 1);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept
{
    __real_free(block);
}
void operator delete(void* block, size_t) noexcept
{
    __real_free(block);
}
#endif

// What a thread keeps for later calls is neither there before nor a loss.
void failAllocation(int64_t n, bool laterToo)
{
    ownReleaseMemory();
    failing = n;
    laterFail = laterToo;
    allocations = 0;
    blocks = 0;
}

int64_t allocationsSince()
{
    return allocations;
}

int64_t blocksLeft()
{
    ownReleaseMemory();
    return blocks;
}
