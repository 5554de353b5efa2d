/* SPDX-License-Identifier: BSD-2-Clause */
// What the library keeps for a thread between calls.
#pragma once

#include "pxk/pxk.h"

// Tables and work memory of the transforms, blocks of the pxkMalloc family.
constexpr int OWN_TRANSFORM_TABLES = 32;

enum class OwnTableKind { LINES, LONE_LINES, REAL_LINES, FIXED_LINES, COSINE_LINES };

struct OwnTransformTable {
    int32_t length; // of the lines that it serves; the first entry of length 0 ends the list
    OwnTableKind kind;
    void* block;
};

struct OwnTransformCaches {
    OwnTransformTable tables[OWN_TRANSFORM_TABLES];
    int64_t workBytes;
    void* work; // grows only
};

// Memory of the other operations (ownbuffer.h).
constexpr int32_t OWN_KEPT_PIECES = 16;

struct OwnKeptPiece {
    void* first; // null: given back, but others that lie on it are not
    int64_t end; // bytes from the start of the memory
};

struct OwnKeptMemory {
    void* block;
    uint8_t* first; // a multiple of 64
    int64_t size;   // from there on
    int64_t used;
    int64_t wanted; // the most that was in use at one time
    int64_t beside; // bytes that found no room in the block and would have with a larger one
    int32_t nBeside;
    int32_t count;
    OwnKeptPiece pieces[OWN_KEPT_PIECES];

    bool isIdle() const { return count == 0 && nBeside == 0; }
};

struct PxkContext {
    int32_t status; // the last one stored
    int32_t mode;   // PXK_ErrMode... or whatever was stored
    PxkErrorCallBack handler;
    OwnKeptMemory memory;
    OwnTransformCaches fourier;
    OwnTransformCaches cosine;
};

// There is one of these functions for all processor levels.
extern "C" {

// The calling thread's own, made on first access if the thread began before the library did. Never fails: without
// memory for it the process ends.
PxkContext* ownThreadContext();

// Frees what a transform keeps, and the memory of calls, as at the end of the thread; the next one builds its tables
// anew.
void ownReleaseTransform(OwnTransformCaches& caches);

} // extern "C"

inline PxkContext& ownContext()
{
    return *ownThreadContext();
}
