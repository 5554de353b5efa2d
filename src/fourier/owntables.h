/* SPDX-License-Identifier: BSD-2-Clause */
// What the transforms keep between calls of a thread, and the trade with it.
#pragma once

#include "frame/owncontext.h"

// The table of a kind for lines of a length, null if it is not there yet.
void* ownTable(const OwnTransformCaches& caches, OwnTableKind kind, int32_t length);

// A block of `bytes` for a table that the caller fills at once. Null: no memory, or no free entry.
void* ownNewTable(OwnTransformCaches& caches, OwnTableKind kind, int32_t length, int64_t bytes);

// Work memory of the call, aligned to the widest vectors, its contents undefined. Null: no memory.
void* ownWorkMemory(OwnTransformCaches& caches, int64_t bytes);

// Runs a transform; where it runs out of memory or entries, frees everything kept and runs it once more. False: no
// memory.
template <class Transform> [[nodiscard]] bool ownWithRetry(OwnTransformCaches& caches, const Transform& transform)
{
    if (transform()) return true;
    ownReleaseTransform(caches);
    if (transform()) return true;
    ownReleaseTransform(caches);
    return false;
}
