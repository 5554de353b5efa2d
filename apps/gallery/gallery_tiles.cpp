#include "gallery.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>

namespace gallery {

// A picture in memory that is handed out in tiles, as a program would that keeps it in a file.
struct TileStore {
    PxkImage* picture;
    bool shadeOdd; // makes the tiles visible: every second one is handed out, or taken back, at half brightness
    int32_t nAsked = 0;
    std::map<void*, int32_t> held = {}; // tiles that are out, and what they were asked for
};

// Copies one tile between the store's picture and the tile's memory, whose rows begin at multiples of 32 bytes.
static void moveTile(const TileStore& store, const PxkTileInfo& info, int32_t xIndex, int32_t yIndex, bool out)
{
    const PxkImage& picture = *store.picture;
    const int32_t x0 = xIndex * info.width, y0 = yIndex * info.height;
    const int32_t w = std::min(info.width, picture.width - x0), h = std::min(info.height, picture.height - y0);
    const ptrdiff_t step = (info.width * 3 + 31) / 32 * 32;
    const int shift = store.shadeOdd && (xIndex + yIndex) % 2 ? 1 : 0;
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* stored = static_cast<uint8_t*>(picture.imageData) + ptrdiff_t(y0 + y) * picture.widthStep + 3 * x0;
        uint8_t* handed = static_cast<uint8_t*>(info.tileData) + y * step;
        for (int32_t i = 0; i < 3 * w; ++i) {
            if (out)
                handed[i] = static_cast<uint8_t>(stored[i] >> shift);
            else
                stored[i] = static_cast<uint8_t>(handed[i] >> shift);
        }
    }
}

static int32_t handTile(PxkImage* image, int32_t xIndex, int32_t yIndex, int32_t mode)
{
    TileStore& store = *static_cast<TileStore*>(image->userTag);
    PxkTileInfo& info = *image->tileInfo;
    if (mode == PXK_TILE_RELEASE) {
        if (store.held[info.tileData] == PXK_TILE_WRITE) moveTile(store, info, xIndex, yIndex, false);
        store.held.erase(info.tileData);
        std::free(info.tileData);
        return 0;
    }
    info.tileData = std::malloc(static_cast<size_t>((info.width * 3 + 31) / 32 * 32) * info.height);
    if (!info.tileData) return 0;
    ++store.nAsked;
    store.held[info.tileData] = mode;
    if (mode == PXK_TILE_READ) moveTile(store, info, xIndex, yIndex, true);
    return 0;
}

static PxkImage* tiledBy(Stage& s, TileStore& store, PxkTileInfo& info)
{
    const PxkImage& like = *store.picture;
    return s.adopt(Image(pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 32, like.width,
                                              like.height, nullptr, nullptr, &store, &info)));
}

const Exhibit exhibits[] = {
    { "Out of tiles",
      "A function of this program hands out tiles of 64 by 64, every second one darker so that they show.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          TileStore store = { photo, true };
          PxkTileInfo info = { handTile, 0, nullptr, 64, 64 };
          PxkImage* tiled = tiledBy(s, store, info);
          SHOW(s, out, pxkCopy(tiled, out));
          s.result.text = std::to_string(store.nAsked) + " tiles asked for";
      } },
    { "A region of tiles", "Only the tiles under the region are asked for, and each is given back.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          TileStore store = { photo, true };
          PxkTileInfo info = { handTile, 0, nullptr, 64, 64 };
          PxkImage* tiled = tiledBy(s, store, info);
          const int32_t w = photo->width / 2, h = photo->height / 2;
          SHOW(s, out, PxkROI part = { 0, w / 2, h / 8, w, h }; tiled->roi = &part; out->roi = &part;
               pxkCopy(tiled, out));
          s.result.text =
              std::to_string(store.nAsked) + " tiles asked for, " + std::to_string(store.held.size()) + " still out";
          s.worked(static_cast<double>(w) * h);
      } },
    { "Into tiles", "The result goes to tiles of 96 by 48; this program darkens every second one as it comes back.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* rings = s.rings;
          TileStore store = { out, true };
          PxkTileInfo info = { handTile, 0, nullptr, 96, 48 };
          PxkImage* tiled = tiledBy(s, store, info);
          MEASURE(s, pxkOr(photo, rings, tiled));
          s.picture(out);
          s.result.text = std::to_string(store.nAsked) + " tiles asked for";
      } },
    { "Tiles of three sizes", "Two sources and the destination are tiled, each in its own way.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          TileStore storeA = { photo, false }, storeB = { s.other, false }, store = { out, false };
          PxkTileInfo infoA = { handTile, 0, nullptr, 64, 64 }, infoB = { handTile, 0, nullptr, 40, 128 },
                      info = { handTile, 0, nullptr, 128, 32 };
          PxkImage *photoTiles = tiledBy(s, storeA, infoA), *otherTiles = tiledBy(s, storeB, infoB);
          PxkImage* outTiles = tiledBy(s, store, info);
          MEASURE(s, pxkAdd(photoTiles, otherTiles, outTiles));
          s.picture(out);
          s.result.text = std::to_string(storeA.nAsked) + " + " + std::to_string(storeB.nAsked) + " tiles read, "
              + std::to_string(store.nAsked) + " written";
      } },
};

const Family tilesFamily = { "tiles", "Tiles",
                             "Pictures that are not in memory: the library asks for a tile, works on it and gives it "
                             "back. The times include this program's tile function.",
                             exhibits, std::size(exhibits) };

} // namespace gallery
