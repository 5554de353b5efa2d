/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * A picture that memory can't hold is processed from file to file: both images are tiled, and their tile functions read
 * and write pieces of the files. The library asks for a few tiles at a time, so a few megabytes do for any picture.
 *
 * The files are portable graymaps (PGM). Without arguments the program makes a picture of 8192 by 4096 pixels, 32 MiB,
 * smooths it, and looks at the result; "example_large in.pgm out.pgm" smooths yours.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { tileWidth = 1024, tileHeight = 64 };

/* A gray picture in a file: rows of `width` bytes behind a header. */
typedef struct Picture {
    FILE* file;
    long start;
    int width, height;
    int isFailed;
} Picture;

/* Where a row of a tile lies in the file, and how many of its pixels lie in the picture. */
static int seekRow(const Picture* picture, int xIndex, int y)
{
    const int x = xIndex * tileWidth, rest = picture->width - x;
    if (y >= picture->height) return 0;
    fseek(picture->file, picture->start + (long)y * picture->width + x, SEEK_SET);
    return rest < tileWidth ? rest : tileWidth;
}

/*
 * The library may hold several tiles at once, so each has memory of its own, with its mode in front: what was asked for
 * writing goes back to the file when the library releases it.
 */
static int32_t moveTile(PxkImage* image, int32_t xIndex, int32_t yIndex, int32_t mode)
{
    Picture* picture = (Picture*)image->userTag;
    unsigned char* samples = (unsigned char*)image->tileInfo->tileData;
    int row, columns;

    if (mode == PXK_TILE_RELEASE) {
        for (row = 0; row < tileHeight && samples[-1] == PXK_TILE_WRITE; ++row) {
            columns = seekRow(picture, xIndex, yIndex * tileHeight + row);
            if (fwrite(samples + row * tileWidth, 1, columns, picture->file) != (size_t)columns) picture->isFailed = 1;
        }
        free(samples - 32);
        return 0;
    }
    samples = (unsigned char*)malloc(32 + tileWidth * tileHeight);
    image->tileInfo->tileData = samples ? samples + 32 : NULL; /* null refuses: the operation reports it */
    if (!samples) return 0;
    samples += 32;
    samples[-1] = (unsigned char)mode;
    for (row = 0; row < tileHeight; ++row) {
        columns = seekRow(picture, xIndex, yIndex * tileHeight + row);
        if (fread(samples + row * tileWidth, 1, columns, picture->file) != (size_t)columns) picture->isFailed = 1;
    }
    return 0;
}

static PxkImage* tiledImage(Picture* picture)
{
    PxkTileInfo* tiles = pxkCreateTileInfo(moveTile, 0, tileWidth, tileHeight);
    return pxkCreateImageHeader(1, 0, PXK_DEPTH_8U, "GRAY", "G", PXK_DATA_ORDER_PIXEL, 0, 4, picture->width,
                                picture->height, NULL, NULL, picture, tiles);
}

static int openPicture(Picture* picture, const char* path)
{
    int largest = 0;
    picture->isFailed = 0;
    picture->file = fopen(path, "rb");
    if (!picture->file || fscanf(picture->file, "P5 %d %d %d", &picture->width, &picture->height, &largest) != 3)
        return 0;
    fgetc(picture->file); /* the one blank behind the header */
    picture->start = ftell(picture->file);
    return largest == 255;
}

/* A file of the given size; its bytes are written row by row. */
static int makePicture(Picture* picture, const char* path, int width, int height, int fills)
{
    unsigned char* row = (unsigned char*)calloc(width, 1);
    int x, y;
    picture->file = fopen(path, "w+b");
    if (!picture->file || !row) return 0;
    fprintf(picture->file, "P5\n%d %d\n255\n", width, height);
    picture->start = ftell(picture->file);
    picture->width = width;
    picture->height = height;
    picture->isFailed = 0;
    for (y = 0; y < height; ++y) {
        for (x = 0; x < width && fills; ++x) row[x] = (unsigned char)(x / 32 + y / 32);
        if (fwrite(row, 1, width, picture->file) != (size_t)width) return 0;
    }
    free(row);
    return 1;
}

/* Inside the squares of the picture above, smoothing changes nothing. */
static int isSmooth(Picture* picture)
{
    int x, y;
    for (y = 16; y < picture->height; y += 32) {
        for (x = 16; x < picture->width; x += 1024) {
            fseek(picture->file, picture->start + (long)y * picture->width + x, SEEK_SET);
            if (fgetc(picture->file) != (unsigned char)(x / 32 + y / 32)) return 0;
        }
    }
    return 1;
}

int main(int argc, char** argv)
{
    Picture from, to;
    PxkImage *source, *result;
    int isGood;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    if (argc == 3 ? !openPicture(&from, argv[1]) : !makePicture(&from, "large_in.pgm", 8192, 4096, 1)) {
        fprintf(stderr, "can't read the picture: a binary graymap (P5) of 8 bits is needed\n");
        return EXIT_FAILURE;
    }
    if (!makePicture(&to, argc == 3 ? argv[2] : "large_out.pgm", from.width, from.height, 0)) {
        fprintf(stderr, "can't write the result: is the disk full?\n");
        return EXIT_FAILURE;
    }

    source = tiledImage(&from);
    result = tiledImage(&to);
    if (!source || !result) return EXIT_FAILURE;
    pxkFixedFilter(source, result, PXK_FILTER_GAUSS_3x3);

    isGood = pxkGetErrStatus() == PXK_StsOk && !from.isFailed && !to.isFailed && (argc == 3 || isSmooth(&to));
    printf("%d by %d pixels: %s\n", from.width, from.height, isGood ? "done" : "failed");
    pxkDeallocate(source, PXK_FREE_HEADER | PXK_FREE_TILE);
    pxkDeallocate(result, PXK_FREE_HEADER | PXK_FREE_TILE);
    fclose(from.file);
    fclose(to.file);
    if (argc != 3) {
        remove("large_in.pgm");
        remove("large_out.pgm");
    }
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
