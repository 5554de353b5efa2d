/* SPDX-License-Identifier: BSD-2-Clause */
// Tiles: the only place that calls a tile function. A tile is asked for before its pixels are touched, and released
// once, under its own indices and with its own pixels in `tileData`, whatever the way out.
#pragma once

#include "ownfunction.h"
#include "ownregion.h"

// The tile's pixels, or null when the tile function refused it; then nothing is held.
[[nodiscard]] void* ownAskTile(PxkImage* image, int32_t column, int32_t row, int32_t mode);
void ownReleaseTile(PxkImage* image, int32_t column, int32_t row, void* data);

// One held tile, or none.
class OwnTile {
public:
    OwnTile() = default;
    OwnTile(const OwnTile&) = delete;
    OwnTile& operator=(const OwnTile&) = delete;
    ~OwnTile() { release(); }

    // Holds the tile with pixel (x, y) of the image: another one is released first, the same one is kept without
    // asking. False: refused; nothing is held.
    [[nodiscard]] bool hold(PxkImage* image, int32_t x, int32_t y, int32_t mode);
    void release();
    // Leaves the tile with its owner unreleased, where that is how an operation ends.
    void leave() { data_ = nullptr; }

    OwnBlock block() const { return ownTileBlock(image_, data_); }

private:
    PxkImage* image_ = nullptr;
    void* data_ = nullptr;
    int32_t column_ = 0;
    int32_t row_ = 0;
};

// How an image's tiles lie over a work area: the place of the work's first pixel in the image. Null tiles: in memory.
struct OwnGrid {
    const PxkTileInfo* tiles;
    int32_t x;
    int32_t y;
    bool isTurned; // the work's first row is the image's last one of the area
};

// Cuts an area into the largest pieces that stay inside one tile of every grid, row by row. False: onPiece ended the
// walk by returning false.
bool ownWalkTiles(OwnSize area, const OwnGrid* grids, int32_t count, OwnFunction<bool(const OwnRect&)> onPiece);

// The same rectangle of pixels, counted from the edges of the tile that it lies in.
OwnRect ownInTile(const PxkTileInfo* tiles, const OwnRect& rect);
