/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * A tiled image has no pixels of its own: a function of the caller delivers them, tile by tile.
 *
 * The picture here is 30000 by 20000 pixels, 600 MB if it were in memory. Its tiles are computed when they are asked
 * for, and only the few under the region are.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

enum { tileSide = 64 };

typedef struct Counts {
    int asked, held;
} Counts;

static unsigned char sampleOf(int x, int y)
{
    return (unsigned char)(x / 100 + y / 100);
}

static void* makeTile(int xIndex, int yIndex)
{
    unsigned char* tile = malloc(tileSide * tileSide);
    int i;
    for (i = 0; tile && i < tileSide * tileSide; ++i)
        tile[i] = sampleOf(xIndex * tileSide + i % tileSide, yIndex * tileSide + i / tileSide);
    return tile;
}

/* The library may hold several tiles at once, so each one gets memory of its own until it is given back. */
static int32_t deliverTile(PxkImage* image, int32_t xIndex, int32_t yIndex, int32_t mode)
{
    Counts* counts = image->userTag;
    PxkTileInfo* info = image->tileInfo;

    if (mode == PXK_TILE_RELEASE) {
        free(info->tileData);
        --counts->held;
        return 0;
    }
    /* This picture can't be written: null refuses. */
    info->tileData = mode == PXK_TILE_READ ? makeTile(xIndex, yIndex) : NULL;
    if (info->tileData) {
        ++counts->asked;
        ++counts->held;
    }
    return 0;
}

int main(void)
{
    Counts counts = { 0, 0 };
    PxkROI window = { 0, 15000, 10000, 200, 100 };
    PxkTileInfo* tiles = pxkCreateTileInfo(deliverTile, 0, tileSide, tileSide);
    PxkImage *huge, *part;
    unsigned char first;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);

    huge = pxkCreateImageHeader(1, 0, PXK_DEPTH_8U, "GRAY", "G\0\0", PXK_DATA_ORDER_PIXEL, 0, 4, 30000, 20000, &window,
                                NULL, &counts, tiles);
    part = pxkCreateImageHeader(1, 0, PXK_DEPTH_8U, "GRAY", "G\0\0", PXK_DATA_ORDER_PIXEL, 0, 4, 200, 100, NULL, NULL,
                                NULL, NULL);
    pxkAllocateImage(part, 1, 0);
    if (!huge || !part || !part->imageData) return EXIT_FAILURE;

    pxkCopy(huge, part);
    first = ((unsigned char*)part->imageData)[0];
    printf("first sample %d, %d tiles asked for, %d still held\n", first, counts.asked, counts.held);

    pxkDeallocate(huge, PXK_FREE_HEADER | PXK_FREE_TILE);
    pxkDeallocate(part, PXK_FREE_HEADER | PXK_FREE_DATA);
    return pxkGetErrStatus() < 0 || first != sampleOf(15000, 10000) || counts.held ? EXIT_FAILURE : EXIT_SUCCESS;
}
