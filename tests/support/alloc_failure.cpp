#include "alloc_failure.h"

#include <cstdlib>
#include <new>

extern "C" void* __real_malloc(size_t size);
extern "C" void __real_free(void* block);

static int64_t failing, allocations, blocks;

extern "C" void* __wrap_malloc(size_t size)
{
    if (++allocations == failing) return nullptr;
    void* const block = __real_malloc(size);
    if (block != nullptr) ++blocks;
    return block;
}

extern "C" void __wrap_free(void* block)
{
    if (block != nullptr) --blocks;
    __real_free(block);
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

void failAllocation(int64_t n)
{
    failing = n;
    allocations = 0;
    blocks = 0;
}

int64_t allocationsSince()
{
    return allocations;
}

int64_t blocksLeft()
{
    return blocks;
}
