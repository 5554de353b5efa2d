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

struct PxkContext {
    int32_t status; // the last one stored
    int32_t mode;   // PXK_ErrMode... or whatever was stored
    PxkErrorCallBack handler;
    OwnTransformCaches fourier;
    OwnTransformCaches cosine;
};

// There is one of these functions for all processor levels.
extern "C" {

// The calling thread's own, made on first access if the thread began before the library did. Never fails: without
// memory for it the process ends.
PxkContext* ownThreadContext();

// Frees what a transform keeps, as at the end of its thread; the next one builds its tables anew.
void ownReleaseTransform(OwnTransformCaches& caches);

} // extern "C"

inline PxkContext& ownContext()
{
    return *ownThreadContext();
}
