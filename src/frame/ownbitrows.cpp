// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cstring>

#include "ownbits.h"
#include "ownstage.h"

// A stretch of a row of every operand, starting at bit `phase` of a byte of the last one.
struct OwnBitRow {
    const OwnRowFunction* rowFunction;
    int32_t count;
    int32_t nSources;
    OwnBits operands[ownMostViews];
};

// Bits of at most ownStageBytes bytes, through blocks: sources are shifted to the last operand's bit position.
static void ownRunBitBlock(const OwnBitRow& row, ptrdiff_t start, ptrdiff_t n, const OwnBits* mask)
{
    alignas(64) uint8_t stage[ownMostViews][ownStageBytes];
    alignas(64) uint8_t maskBytes[ownStageBytes];
    alignas(64) uint8_t old[ownStageBytes];
    const int32_t phase = static_cast<int32_t>((row.operands[row.count - 1].bit + start % 8) % 8);
    const ptrdiff_t bytes = ownBytesOfBits(phase, n);
    const auto align = [&](const OwnBits& bits, uint8_t* to) {
        const OwnBits at = ownBitsAt(bits, static_cast<int32_t>(start), 0);
        ownAlignBits(at.first, at.bit, to, phase, n);
    };
    uint8_t* blocks[ownMostViews];
    for (int32_t k = 0; k < row.count; ++k) {
        blocks[k] = stage[k];
        if (k < row.nSources || row.rowFunction->updates) align(row.operands[k], stage[k]);
    }
    if (mask != nullptr) align(*mask, maskBytes);
    (*row.rowFunction)(blocks, bytes);
    for (int32_t k = row.nSources; k < row.count; ++k) {
        const OwnBits at = ownBitsAt(row.operands[k], static_cast<int32_t>(start), 0);
        if (mask != nullptr) {
            align(row.operands[k], old);
            ownBlend(old, stage[k], maskBytes, bytes);
        }
        ownStoreBits(mask != nullptr ? old : stage[k], phase, at.first, at.bit, n);
    }
}

// As ownIsShifted of samples, for rows that start at the same bit of a byte.
static bool ownIsShifted(const OwnBitRow& row, ptrdiff_t bytes)
{
    for (int32_t d = row.nSources; d < row.count; ++d) {
        const uintptr_t start = reinterpret_cast<uintptr_t>(row.operands[d].first);
        for (int32_t k = 0; k < d; ++k) {
            const uintptr_t other = reinterpret_cast<uintptr_t>(row.operands[k].first);
            const uintptr_t distance = start > other ? start - other : other - start;
            if (distance != 0 && distance < static_cast<uintptr_t>(bytes)) return true;
        }
    }
    return false;
}

static void ownRunBitRow(const OwnBitRow& row, ptrdiff_t n, const OwnBits* mask)
{
    const int32_t phase = row.operands[row.count - 1].bit;
    bool isAligned = mask == nullptr && !ownIsShifted(row, ownBytesOfBits(phase, n));
    for (int32_t k = 0; k < row.count; ++k) isAligned = isAligned && row.operands[k].bit == phase;
    constexpr ptrdiff_t mostStaged = 8192; // up to here one block is quicker than two around bytes in place
    ptrdiff_t start = 0;
    if (isAligned && ((phase == 0 && n % 8 == 0) || n > mostStaged)) {
        // Whole bytes run in place; bits of the first and last byte go through a block.
        const ptrdiff_t head = std::min<ptrdiff_t>((8 - phase) % 8, n);
        if (head > 0) ownRunBitBlock(row, 0, head, nullptr);
        const ptrdiff_t bytes = (n - head) / 8;
        uint8_t* operands[ownMostViews];
        for (int32_t k = 0; k < row.count; ++k) operands[k] = row.operands[k].first + (head > 0 ? 1 : 0);
        if (bytes > 0) (*row.rowFunction)(operands, bytes);
        start = head + 8 * bytes;
    }
    const ptrdiff_t most = 8 * ownStageBytes - 64;
    while (start < n) {
        const ptrdiff_t count = std::min(n - start, most);
        ownRunBitBlock(row, start, count, mask);
        start += count;
    }
}

// True when rows of whole bytes lie one behind the other, so that they can be run as one.
static bool ownBitRowsTouch(const OwnBitRow& row, const OwnView& view)
{
    bool isTouching = view.width % 8 == 0 && !ownIsShifted(row, view.rowStep * view.height);
    for (int32_t k = 0; k < row.count; ++k) {
        const OwnBits& bits = row.operands[k];
        isTouching = isTouching && bits.bit == 0 && bits.rowStep == view.width / 8;
    }
    return isTouching;
}

// As bytes: these have no more than fits into memory, but pixels may be more than a ptrdiff_t can count.
static void ownRunTouchingRows(const OwnBitRow& row, ptrdiff_t bytes)
{
    uint8_t* operands[ownMostViews];
    for (int32_t k = 0; k < row.count; ++k) operands[k] = row.operands[k].first;
    (*row.rowFunction)(operands, bytes);
}

void ownRunBits(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                const OwnRowFunction& rowFunction)
{
    OwnBitRow row = {};
    row.rowFunction = &rowFunction;
    row.count = count;
    row.nSources = count - nDestinations;
    for (int32_t k = 0; k < count; ++k) row.operands[k] = { views[k].first, views[k].rowStep, views[k].bit };
    const ptrdiff_t width = views[0].width;
    if (mask == nullptr && ownBitRowsTouch(row, views[0])) {
        return ownRunTouchingRows(row, views[0].rowStep * views[0].height);
    }
    for (int32_t y = 0; y < views[0].height; ++y) {
        OwnBits maskRow;
        if (mask != nullptr) maskRow = ownBitsAt(*mask, 0, y);
        ownRunBitRow(row, width, mask != nullptr ? &maskRow : nullptr);
        for (int32_t k = 0; k < count; ++k) row.operands[k].first += row.operands[k].rowStep;
    }
}
