// SPDX-License-Identifier: BSD-2-Clause
// Morphology
// Square windows on bits, gray and colour; the last argument is the reach in pixels.
#include "exhibit.h"

// Dilate
// On bits: ink grows by two pixels.
EXHIBIT(morphology_dilate, PAIR(writing))
{
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkDilate(writing, out, 2);
    STOP;
}

// Erode
// Ink shrinks by one pixel: only the middle of thick strokes stays.
EXHIBIT(morphology_erode, PAIR(writing))
{
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkErode(writing, out, 1);
    STOP;
}

// Open
// Erode, then dilate: specks and thin lines go.
EXHIBIT(morphology_open, PAIR(writing))
{
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkOpen(writing, out, 1);
    STOP;
}

// Close
// Dilate, then erode: gaps fill.
EXHIBIT(morphology_close, PAIR(writing))
{
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkClose(writing, out, 3);
    STOP;
}

// Erode in colour
// Minimum of 7 by 7.
EXHIBIT(morphology_erode_colour, PICTURE)
{
    START;
    pxkErode(photo, out, 3);
    STOP;
}

// Open in colour
// Bright details smaller than 7 by 7 go, the rest stays.
EXHIBIT(morphology_open_colour, PICTURE)
{
    START;
    pxkOpen(photo, out, 3);
    STOP;
}

// Edges by morphology
// Dilated less eroded.
EXHIBIT(morphology_edges, PICTURE)
{
    PxkImage* low = newImage(3, PXK_DEPTH_8U, w, h);
    START;
    pxkDilate(photo, out, 1);
    pxkErode(photo, low, 1);
    pxkSubtract(out, low, out);
    STOP;
}
