// SPDX-License-Identifier: BSD-2-Clause
#include "owntables.h"

void* ownTable(const OwnTransformCaches& caches, OwnTableKind kind, int32_t length)
{
    for (const OwnTransformTable& table : caches.tables)
        if (table.length == length && table.kind == kind) return table.block;
    return nullptr;
}

static void* ownBlock(int64_t bytes)
{
    return bytes <= INT32_MAX ? pxkMalloc(static_cast<int32_t>(bytes)) : nullptr;
}

void* ownNewTable(OwnTransformCaches& caches, OwnTableKind kind, int32_t length, int64_t bytes)
{
    for (OwnTransformTable& table : caches.tables) {
        if (table.length != 0) continue;
        void* block = ownBlock(bytes);
        if (block != nullptr) table = { length, kind, block };
        return block;
    }
    return nullptr;
}

void* ownWorkMemory(OwnTransformCaches& caches, int64_t bytes)
{
    constexpr uintptr_t alignment = 64;
    const int64_t needed = bytes + static_cast<int64_t>(alignment);
    if (caches.workBytes < needed) {
        pxkFree(caches.work);
        caches.work = ownBlock(needed);
        caches.workBytes = caches.work != nullptr ? needed : 0;
        if (caches.work == nullptr) return nullptr;
    }
    const uintptr_t address = reinterpret_cast<uintptr_t>(caches.work);
    return reinterpret_cast<void*>((address + alignment - 1) / alignment * alignment);
}
