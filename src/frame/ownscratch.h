/* SPDX-License-Identifier: BSD-2-Clause */
// Memory for the passes of one call, which take it piece by piece and give it back together.
#pragma once

#include <algorithm>

#include "ownbuffer.h"

// Pieces come out of one block. What does not fit there gets a block of its own, and the next round starts with one
// that holds as much as the last round took: small work allocates once, larger work once more, whatever the number of
// rounds.
class OwnScratch {
public:
    OwnScratch() = default;
    OwnScratch(const OwnScratch&) = delete;
    OwnScratch& operator=(const OwnScratch&) = delete;
    ~OwnScratch() { freeBlocks(); }

    // `count` items that start at a multiple of 64 bytes, not cleared. Null: out of memory.
    template <class T> [[nodiscard]] T* take(int64_t count)
    {
        return reinterpret_cast<T*>(takeBytes(count * static_cast<int64_t>(sizeof(T))));
    }

    // All pieces become free.
    void restart()
    {
        if (blocks_ != nullptr && blocks_->next != nullptr) freeBlocks();
        if (blocks_ != nullptr) blocks_->used = 0;
        wanted_ = std::min(std::max(taken_, wanted_), mostBytes);
        taken_ = 0;
    }

private:
    struct Block {
        Block* next;
        uint8_t* first; // a multiple of 64
        int64_t size;
        int64_t used;
    };
    static constexpr int64_t fewBytes = 16 * 1024;
    static constexpr int64_t mostBytes = INT32_MAX - 256;

    uint8_t* takeBytes(int64_t bytes)
    {
        if (bytes < 0 || bytes > mostBytes - 64) return nullptr;
        bytes = (bytes + 63) & ~static_cast<int64_t>(63);
        if ((blocks_ == nullptr || blocks_->size - blocks_->used < bytes) && !addBlock(std::max(bytes, wanted_))) {
            return nullptr;
        }
        uint8_t* const piece = blocks_->first + blocks_->used;
        blocks_->used += bytes;
        taken_ += bytes;
        return piece;
    }

    bool addBlock(int64_t size)
    {
        constexpr int64_t overhead = sizeof(Block) + 63;
        void* const memory = ownTakeMemory(size + overhead);
        if (memory == nullptr) return false;
        Block* const block = static_cast<Block*>(memory);
        const uintptr_t first = (reinterpret_cast<uintptr_t>(block + 1) + 63) & ~static_cast<uintptr_t>(63);
        *block = { blocks_, reinterpret_cast<uint8_t*>(first), size, 0 };
        blocks_ = block;
        return true;
    }

    void freeBlocks()
    {
        while (blocks_ != nullptr) {
            Block* const next = blocks_->next;
            ownGiveMemoryBack(blocks_);
            blocks_ = next;
        }
    }

    Block* blocks_ = nullptr; // the newest first
    int64_t wanted_ = fewBytes;
    int64_t taken_ = 0; // in this round
};
