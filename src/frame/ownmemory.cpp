// SPDX-License-Identifier: BSD-2-Clause
// The memory of a thread's calls: a block kept from call to call, whose pieces lie on each other like a stack.
#include <algorithm>

#include "ownbuffer.h"
#include "owncontext.h"
#include "ownpoison.h"

// Beyond it a piece is a block of its own, freed at the end of its call.
static constexpr int64_t ownMostKept = 1024 * 1024;

// A piece and at least as many bytes behind it, which belong to nobody: there a sanitizer sees steps behind its end.
static constexpr int64_t ownPieceGap = 64;

static int64_t ownPieceRoom(int64_t bytes)
{
    return (bytes + ownPieceGap + 63) & ~int64_t { 63 };
}

// Between calls the block becomes as large as the last ones needed. False: out of memory; the next call asks for no
// more than it needs.
static bool ownGrow(OwnKeptMemory& kept)
{
    pxkFree(kept.block);
    const int64_t size = kept.wanted;
    kept = {};
    kept.block = pxkMalloc(static_cast<int32_t>(size + 63));
    if (kept.block == nullptr) return false;
    kept.first = reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(kept.block) + 63) & ~uintptr_t { 63 });
    kept.size = kept.wanted = size;
    ASAN_POISON_MEMORY_REGION(kept.first, static_cast<size_t>(size));
    return true;
}

void* ownTakeMemory(int64_t bytes)
{
    if (bytes < 0 || bytes > INT32_MAX) return nullptr;
    OwnKeptMemory& kept = ownContext().memory;
    if (kept.isIdle() && kept.size < kept.wanted && !ownGrow(kept)) return nullptr;
    const int64_t room = ownPieceRoom(bytes);
    uint8_t* piece = kept.first + kept.used;
    if (kept.count < OWN_KEPT_PIECES && room <= kept.size - kept.used) {
        kept.used += room;
        kept.pieces[kept.count++] = { piece, kept.used };
        ASAN_UNPOISON_MEMORY_REGION(piece, static_cast<size_t>(bytes));
    } else {
        piece = static_cast<uint8_t*>(pxkMalloc(static_cast<int32_t>(bytes)));
        if (piece == nullptr) return nullptr;
        ++kept.nBeside;
        if (room <= ownMostKept) kept.beside += room;
    }
    kept.wanted = std::max(kept.wanted, std::min(kept.used + kept.beside, ownMostKept));
    return piece;
}

void ownGiveMemoryBack(void* memory)
{
    OwnKeptMemory& kept = ownContext().memory;
    int32_t k = kept.count - 1;
    while (k >= 0 && kept.pieces[k].first != memory) --k;
    if (k < 0) {
        pxkFree(memory);
        if (--kept.nBeside == 0) kept.beside = 0;
        return;
    }
    kept.pieces[k].first = nullptr;
    while (kept.count > 0 && kept.pieces[kept.count - 1].first == nullptr) --kept.count;
    kept.used = kept.count > 0 ? kept.pieces[kept.count - 1].end : 0;
    ASAN_POISON_MEMORY_REGION(kept.first + kept.used, static_cast<size_t>(kept.size - kept.used));
}

void ownReleaseMemory()
{
    OwnKeptMemory& kept = ownContext().memory;
    if (!kept.isIdle()) return;
    pxkFree(kept.block);
    kept = {};
}
