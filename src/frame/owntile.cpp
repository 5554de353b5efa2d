// SPDX-License-Identifier: BSD-2-Clause
#include "owntile.h"

#include <algorithm>

void* ownAskTile(PxkImage* image, int32_t column, int32_t row, int32_t mode)
{
    image->tileInfo->callBack(image, column, row, mode);
    return image->tileInfo->tileData;
}

void ownReleaseTile(PxkImage* image, int32_t column, int32_t row, void* data)
{
    image->tileInfo->tileData = data;
    image->tileInfo->callBack(image, column, row, PXK_TILE_RELEASE);
}

bool OwnTile::hold(PxkImage* image, int32_t x, int32_t y, int32_t mode)
{
    const int32_t column = x / image->tileInfo->width;
    const int32_t row = y / image->tileInfo->height;
    if (data_ != nullptr && image_ == image && column_ == column && row_ == row) return true;
    release();
    image_ = image;
    column_ = column;
    row_ = row;
    data_ = ownAskTile(image, column, row, mode);
    return data_ != nullptr;
}

void OwnTile::release()
{
    if (data_ == nullptr) return;
    ownReleaseTile(image_, column_, row_, data_);
    data_ = nullptr;
}

// The largest piece from (x, y) on that stays inside one tile of each grid.
static OwnSize ownPieceSize(OwnSize area, const OwnGrid* grids, int32_t count, int32_t x, int32_t y)
{
    OwnSize size = { area.width - x, area.height - y };
    for (int32_t k = 0; k < count; ++k) {
        const PxkTileInfo* const tiles = grids[k].tiles;
        if (tiles == nullptr) continue;
        size.width = std::min(size.width, tiles->width - (grids[k].x + x) % tiles->width);
        const int32_t rowsBelow = tiles->height - (grids[k].y + y) % tiles->height;
        const int32_t rowsAbove = (grids[k].y + area.height - 1 - y) % tiles->height + 1;
        size.height = std::min(size.height, grids[k].isTurned ? rowsAbove : rowsBelow);
    }
    return size;
}

bool ownWalkTiles(OwnSize area, const OwnGrid* grids, int32_t count, OwnFunction<bool(const OwnRect&)> onPiece)
{
    if (area.isEmpty()) return true;
    for (OwnRect piece = {}; piece.y < area.height; piece.y += piece.height) {
        for (piece.x = 0; piece.x < area.width; piece.x += piece.width) {
            const OwnSize size = ownPieceSize(area, grids, count, piece.x, piece.y);
            piece.width = size.width;
            piece.height = size.height;
            if (!onPiece(piece)) return false;
        }
    }
    return true;
}

OwnRect ownInTile(const PxkTileInfo* tiles, const OwnRect& rect)
{
    return { rect.x % tiles->width, rect.y % tiles->height, rect.width, rect.height };
}
