// SPDX-License-Identifier: BSD-2-Clause
#include "ownpixelorder.h"

#include <cstring>

bool ownIsWord(const char (&field)[4], const char* word, int32_t letters)
{
    return strncmp(field, word, static_cast<size_t>(letters)) == 0;
}

struct OwnSequenceWord {
    char word[4];
    OwnSequence sequence;
};

static constexpr OwnSequenceWord ownSequenceWords[] = {
    { { 'G' }, OwnSequence::GRAY },          { { 'G', 'R', 'A', 'Y' }, OwnSequence::GRAY },
    { { 'B', 'G', 'R' }, OwnSequence::BGR }, { { 'B', 'G', 'R', 'A' }, OwnSequence::BGRA },
    { { 'R', 'G', 'B' }, OwnSequence::RGB }, { { 'R', 'G', 'B', 'A' }, OwnSequence::RGBA },
};

OwnSequence ownSequenceOf(const PxkImage* image)
{
    for (const OwnSequenceWord& known : ownSequenceWords) {
        if (memcmp(image->channelSeq, known.word, sizeof known.word) == 0) return known.sequence;
    }
    return OwnSequence::OTHER;
}

OwnColourPlaces ownColourPlaces(const PxkImage* image)
{
    return image->channelSeq[0] == 'R' ? OwnColourPlaces { 0, 1, 2 } : OwnColourPlaces { 2, 1, 0 };
}
