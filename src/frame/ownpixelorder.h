/* SPDX-License-Identifier: BSD-2-Clause */
// What channelSeq and colorModel say about the channels of a pixel.
#pragma once

#include "pxk/pxk.h"

// The first letters of a word in a header are those of `word`; all four count unless told otherwise, and a shorter word
// ends with a zero.
bool ownIsWord(const char (&field)[4], const char* word, int32_t letters = 4);

// The sequences that are known by all four letters of channelSeq.
enum class OwnSequence { GRAY, BGR, BGRA, RGB, RGBA, OTHER };
OwnSequence ownSequenceOf(const PxkImage* image);

// Channels from 0 of an image whose first three are colours.
struct OwnColourPlaces {
    int32_t red;
    int32_t green;
    int32_t blue;
};

// Red comes first where channelSeq begins with "R", otherwise third.
OwnColourPlaces ownColourPlaces(const PxkImage* image);
