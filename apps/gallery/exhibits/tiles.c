// Tiles
// Pictures that are not in memory: the library asks for a tile, works on it and gives it
// back. The times include the tile function.
#include "exhibit.h"

// A picture that is kept as tiles, one behind the other, as a file might keep it.
typedef struct Store {
    PxkImage* image;
    unsigned char* tiles;
    size_t tileBytes;
    int across, down, asked;
} Store;

// The library's way to a tile: here it is handed out where it lies, and nothing is to be
// done when it comes back.
static int32_t handTile(PxkImage* image, int32_t xIndex, int32_t yIndex, int32_t mode)
{
    Store* store = image->userTag;
    if (mode == PXK_TILE_RELEASE) return 0;
    store->asked++;
    image->tileInfo->tileData =
        store->tiles + (size_t)(yIndex * store->across + xIndex) * store->tileBytes;
    return 0;
}

// A black picture like photo, in tiles; rows of a tile begin at multiples of 32 bytes, as
// rows of an image do.
static void openStore(Store* store, int tileWidth, int tileHeight)
{
    PxkTileInfo* info = pxkCreateTileInfo(handTile, 0, tileWidth, tileHeight);
    store->across = (w + tileWidth - 1) / tileWidth;
    store->down = (h + tileHeight - 1) / tileHeight;
    store->tileBytes = (size_t)(3 * tileWidth + 31) / 32 * 32 * tileHeight;
    store->tiles = calloc((size_t)store->across * store->down, store->tileBytes);
    store->image =
        pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 32,
                             w, h, NULL, NULL, store, info);
}

static void closeStore(Store* store)
{
    pxkDeleteTileInfo(store->image->tileInfo);
    pxkDeallocateHeader(store->image);
    free(store->tiles);
}

// Makes the tiles visible: every second one at half brightness.
static void shade(Store* store)
{
    size_t i;
    for (i = 0; i < (size_t)store->across * store->down * store->tileBytes; i++) {
        const int tile = (int)(i / store->tileBytes);
        if ((tile % store->across + tile / store->across) % 2 == 1) store->tiles[i] /= 2;
    }
    store->asked = 0;
}

// Out of tiles
// A function of the program hands out tiles of 64 by 64, every second one darker so that
// they show.
EXHIBIT(tiles_read, PICTURE)
{
    Store store;
    openStore(&store, 64, 64);
    pxkCopy(photo, store.image);
    shade(&store);
    START;
    pxkCopy(store.image, out);
    STOP;
    printf("%d tiles asked for\n", store.asked);
    closeStore(&store);
}

// A region of tiles
// Only the tiles under the region are asked for.
EXHIBIT(tiles_region, PICTURE)
{
    Store store;
    PxkROI part = { 0, w / 4, h / 8, w / 2, h / 2 };
    openStore(&store, 64, 64);
    pxkCopy(photo, store.image);
    shade(&store);
    store.image->roi = &part;
    out->roi = &part;
    START;
    pxkCopy(store.image, out);
    STOP;
    printf("%d of %d tiles asked for\n", store.asked, store.across * store.down);
    closeStore(&store);
}

// Into tiles
// The result goes to tiles of 96 by 48.
EXHIBIT(tiles_write, PICTURE)
{
    Store store;
    openStore(&store, 96, 48);
    store.asked = 0;
    START;
    pxkOr(photo, rings, store.image);
    STOP;
    printf("%d tiles asked for\n", store.asked);
    shade(&store);
    pxkCopy(store.image, out);
    closeStore(&store);
}

// Tiles of three sizes
// Two sources and the destination are tiled, each in its own way.
EXHIBIT(tiles_three, PICTURE)
{
    Store a, b, sum;
    openStore(&a, 64, 64);
    openStore(&b, 40, 128);
    openStore(&sum, 128, 32);
    pxkCopy(photo, a.image);
    pxkCopy(other, b.image);
    a.asked = b.asked = sum.asked = 0;
    START;
    pxkAdd(a.image, b.image, sum.image);
    STOP;
    printf("%d + %d tiles read, %d written\n", a.asked, b.asked, sum.asked);
    pxkCopy(sum.image, out);
    closeStore(&a);
    closeStore(&b);
    closeStore(&sum);
}

// A filter over tiles
// A window crosses the edges of tiles: no seam shows, and the result is that of the picture
// in memory.
EXHIBIT(tiles_filter, PICTURE)
{
    const int sides = PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT;
    PxkImage* whole = newImage(3, PXK_DEPTH_8U, w, h);
    Store store;
    openStore(&store, 64, 64);
    pxkCopy(photo, store.image);
    pxkSetTileInfo(store.image->tileInfo, handTile, 1, 64, 64);
    pxkSetBorderMode(store.image, PXK_EDGE_CLAMP, sides, 0);
    store.asked = 0;
    START;
    pxkBlur(store.image, out, 25, 25, 12, 12);
    STOP;
    pxkBlur(photo, whole, 25, 25, 12, 12);
    printf("%d tiles asked for, largest difference %.0f\n", store.asked,
           pxkNorm(out, whole, PXK_NORM_INF));
    closeStore(&store);
}
