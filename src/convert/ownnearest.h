// The entry of a colour table nearest to a colour, for many colours of one picture.
#pragma once

#include "frame/ownbuffer.h"

// The colour cube is cut into cells of 8 by 8 by 8 colours. Of a cell that is asked for the first time all entries are
// noted that are nearest to some colour in it, so most colours need a few distances instead of one an entry.
struct OwnNearest {
    const uint8_t* table;      // four bytes an entry: blue, green, red, reserved
    int64_t count;             // entries, 1 or more
    bool isGrayExact[256];     // entry g is the gray g, in a table of 256
    OwnBuffer<uint32_t> cells; // by cell: first candidate in the low half, their number in the high half; 0: not asked
    OwnBuffer<uint32_t> candidates; // blue, green, red and the low eight bits of the index, in the order of indices
    int32_t candidateCount;
};

// Without memory for cells and candidates, or with more entries than they take, every search walks the table.
void ownPrepareNearest(OwnNearest* nearest, const uint8_t* table, int64_t count);

// The low eight bits of the index of the entry with the least sum of squared differences, the lowest index among
// equals. In a table of 256 a gray that stands at its own index is found there, whatever else is equal. `color`: blue,
// green and red from the lowest byte on; the topmost byte is not looked at.
uint8_t ownFindNearestColor(OwnNearest* nearest, uint32_t color);
