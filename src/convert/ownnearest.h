/* SPDX-License-Identifier: BSD-2-Clause */
// The entry of a colour table nearest to a colour, for the many colours of a picture.
#pragma once

#include "frame/ownbuffer.h"

// The colour cube is cut into cells. For a cell that is asked for the first time all entries are listed that are
// nearest to some colour in it; it is halved in every direction, again and again, where they are more than eight. So a
// colour takes one comparison of up to eight entries instead of one with every entry.
struct OwnNearest {
    const uint8_t* table;      // four bytes an entry: blue, green, red, reserved
    int64_t count;             // entries, 1 or more
    int32_t listed;            // entries of the table in `pool`: of equal ones the first
    bool isGrayExact[256];     // entry g is the gray g, in a table of 256
    OwnBuffer<uint32_t> cells; // by cell, its halves in `pool`; 0: not asked for yet. Null: searches walk the table
    OwnBuffer<uint32_t> pool;  // halves, and lists of entries: blue, green, red and the low eight bits of the index
    int32_t poolUsed;
};

// Without memory, or with a table too large for the lists, every search walks the table.
void ownPrepareNearest(OwnNearest* nearest, const uint8_t* table, int64_t count);

// For each colour the low eight bits of the index of the entry with the least sum of squared differences, the lowest
// index among equals. In a table of 256 a gray that stands at its own index is found there, whatever else is equal.
// `colors`: blue, green and red from the lowest byte on; the topmost byte is not looked at.
void ownFindNearestColors(OwnNearest* nearest, const uint32_t* colors, int32_t count, uint8_t* indices);
