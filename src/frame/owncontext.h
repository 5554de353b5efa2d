// What the library keeps for a thread between calls.
#pragma once

#include "pxk/pxk.h"

// Tables and work buffers of the Fourier transforms, blocks of the pxkMalloc family.
constexpr int OWN_FOURIER_ENTRIES = 32;

struct OwnFourierCaches {
    // By slot: buffers in the order in which a call asks for them, with the numbers of values that they hold.
    int32_t workSize[OWN_FOURIER_ENTRIES];
    int32_t* work[OWN_FOURIER_ENTRIES];
    int32_t workSizeFP[OWN_FOURIER_ENTRIES];
    float* workFP[OWN_FOURIER_ENTRIES];
    // By the base-2 logarithm of a length.
    int32_t* bitReversal[OWN_FOURIER_ENTRIES];
    float* twiddleRadix4[OWN_FOURIER_ENTRIES];
    float* twiddleRadix2[OWN_FOURIER_ENTRIES];
    float* untangle[OWN_FOURIER_ENTRIES];
    int16_t* twiddleFixed[OWN_FOURIER_ENTRIES];
    // Searched by length, the first entry of length 0 ends them.
    int32_t directSizeFP[OWN_FOURIER_ENTRIES];
    float* directFP[OWN_FOURIER_ENTRIES];
    int32_t directSize[OWN_FOURIER_ENTRIES];
    int16_t* direct[OWN_FOURIER_ENTRIES];
};

constexpr int OWN_DCT_WEIGHTS = 32; // a power of two up to 2^30 each

struct PxkContext {
    int32_t status; // the last one stored
    int32_t mode;   // PXK_ErrMode... or whatever was stored
    PxkErrorCallBack handler;
    int32_t dctTableSize; // the length that dctTable was built for, -1 for none
    float* dctTable;
    int32_t unused[2];
    int32_t dctWeightCount;
    float* dctWeights[OWN_DCT_WEIGHTS];
    OwnFourierCaches fourier;
};

// There is one of these functions for all processor levels.
extern "C" {

// The calling thread's own, made on first access if the thread began before the library did. Never fails: without
// memory for it the process ends.
PxkContext& ownContext();

// Frees what the transforms keep in a context, as at the end of its thread: Fourier tables and buffers, weights and
// cosine table. The next transform builds its tables anew.
void ownReleaseCaches(PxkContext& context);
void ownReleaseFourier(OwnFourierCaches& caches);
void ownReleaseDctWeights(PxkContext& context);
void ownReleaseDctTable(PxkContext& context);

} // extern "C"
