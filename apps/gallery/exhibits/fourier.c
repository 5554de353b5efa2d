// SPDX-License-Identifier: BSD-2-Clause
// Fourier and cosine transforms
// Images as sums of waves: transformed, changed wave by wave, transformed back.
#include "exhibit.h"

// The frequency of element i of a packed line of n: 0, then real and imaginary parts in
// turn, at the end n / 2.
static int frequencyOf(int i, int n)
{
    return n % 2 == 0 && i == n - 1 ? n / 2 : (i + 1) / 2;
}

// The logarithm of a packed spectrum's squared magnitude, frequency 0 in the middle.
static PxkImage* newMagnitudes(const PxkImage* spectrum)
{
    PxkImage* power = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* picture = newImage(1, PXK_DEPTH_8U, w, h);
    float least, most;
    int x, y;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            const float part = *floatAt(spectrum, x, y);
            const int k = frequencyOf(x, w),
                      l = k == 0 || 2 * k == w ? frequencyOf(y, h) : y;
            *floatAt(power, (w / 2 + k) % w, (h / 2 + l) % h) += part * part;
            *floatAt(power, (w / 2 + w - k) % w, (h / 2 + h - l) % h) += part * part;
        }
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) *floatAt(power, x, y) = logf(1 + *floatAt(power, x, y));
    pxkMinMaxFP(power, &least, &most);
    pxkScaleFP(power, picture, most / 3, most + 1);
    return picture;
}

// Adds a bell round pixel (0, 0), which reaches over the edges to the other side, times a
// weight.
static void addBell(PxkImage* image, double radius, double weight)
{
    const double scale = weight / (6.283185307179586 * radius * radius);
    int x, y;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            const int dx = x < w - x ? x : w - x, dy = y < h - y ? y : h - y;
            *floatAt(image, x, y) +=
                (float)(scale * exp(-(dx * dx + dy * dy) / (2 * radius * radius)));
        }
}

// The spectrum
// The logarithm of its magnitude, frequency 0 in the middle.
EXHIBIT(fourier_spectrum, PICTURE)
{
    PxkImage* spectrum = newImage(1, PXK_DEPTH_32F, w, h);
    START;
    pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD);
    STOP;
    out = newMagnitudes(spectrum);
}

// The spectrum of writing
// The pen's two directions: strokes that run one way lie across it here.
EXHIBIT(fourier_spectrum_writing, PICTURE)
{
    PxkImage* ink = newImage(1, PXK_DEPTH_8U, writing->width, writing->height);
    PxkImage* page = newImage(1, PXK_DEPTH_8U, w, h);
    PxkImage* spectrum = newImage(1, PXK_DEPTH_32F, w, h);
    pxkBitonalToGray(writing, ink, 0, 255);
    pxkCopy(ink, page);
    START;
    pxkRealFft2D(page, spectrum, PXK_FFT_FORWARD);
    STOP;
    out = newMagnitudes(spectrum);
}

// Low pass
// The spectrum times that of a bell with a radius of 4 pixels, and back.
EXHIBIT(fourier_low_pass, PAIR(gray))
{
    PxkImage* spectrum = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* filter = newImage(1, PXK_DEPTH_32F, w, h);
    addBell(filter, 4, 1);
    pxkRealFft2D(filter, filter, PXK_FFT_FORWARD);
    out = newImage(1, PXK_DEPTH_8U, w, h);
    START;
    pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD);
    pxkMpyRCPack2D(spectrum, filter, spectrum);
    pxkCcsFft2D(spectrum, out, PXK_FFT_INVERSE);
    STOP;
}

// High pass
// What the bell takes away, on middle gray: the filter is a single 1 less the bell.
EXHIBIT(fourier_high_pass, PICTURE)
{
    PxkImage* spectrum = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* filter = newImage(1, PXK_DEPTH_32F, w, h);
    addBell(filter, 4, -1);
    *floatAt(filter, 0, 0) += 1;
    pxkRealFft2D(filter, filter, PXK_FFT_FORWARD);
    START;
    pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD);
    pxkMpyRCPack2D(spectrum, filter, spectrum);
    pxkCcsFft2D(spectrum, spectrum, PXK_FFT_INVERSE);
    STOP;
    out = newImage(1, PXK_DEPTH_8U, w, h);
    pxkScaleFP(spectrum, out, -128.0f, 127.0f);
}

// A band
// One bell less another: details of about 10 pixels, on middle gray.
EXHIBIT(fourier_band, PICTURE)
{
    PxkImage* spectrum = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* filter = newImage(1, PXK_DEPTH_32F, w, h);
    addBell(filter, 2, 1);
    addBell(filter, 4, -1);
    pxkRealFft2D(filter, filter, PXK_FFT_FORWARD);
    START;
    pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD);
    pxkMpyRCPack2D(spectrum, filter, spectrum);
    pxkCcsFft2D(spectrum, spectrum, PXK_FFT_INVERSE);
    STOP;
    out = newImage(1, PXK_DEPTH_8U, w, h);
    pxkScaleFP(spectrum, out, -64.0f, 63.0f);
}

// Cosine coefficients
// Of the whole picture: few of them are large, and those lie at the top left.
EXHIBIT(fourier_cosines, PICTURE)
{
    PxkImage* cosines = newImage(1, PXK_DEPTH_32F, w, h);
    int x, y;
    START;
    pxkDCT2D(gray, cosines, PXK_DCT_FORWARD);
    STOP;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++)
            *floatAt(cosines, x, y) = logf(1 + fabsf(*floatAt(cosines, x, y)));
    out = newImage(1, PXK_DEPTH_8U, w, h);
    pxkScaleFP(cosines, out, 0.0f, 7.0f);
}

// 10 coefficients of 64
// Each block of 8 by 8 is transformed, keeps its 10 lowest frequencies, and is transformed
// back.
EXHIBIT(fourier_blocks, PAIR(gray))
{
    PxkImage* cosines = newImage(1, PXK_DEPTH_32F, w, h);
    PxkROI block = { 0, 0, 0, 8, 8 };
    int x, y;
    out = newImage(1, PXK_DEPTH_8U, w, h);
    gray->roi = cosines->roi = out->roi = &block;
    START;
    for (block.yOffset = 0; block.yOffset + 8 <= h; block.yOffset += 8)
        for (block.xOffset = 0; block.xOffset + 8 <= w; block.xOffset += 8) {
            pxkDCT2D(gray, cosines, PXK_DCT_FORWARD);
            for (y = 0; y < 8; y++)
                for (x = y < 4 ? 4 - y : 0; x < 8; x++)
                    *floatAt(cosines, block.xOffset + x, block.yOffset + y) = 0;
            pxkDCT2D(cosines, out, PXK_DCT_INVERSE);
        }
    STOP;
}

// 3 of them
// The blocks begin to show.
EXHIBIT(fourier_few, PAIR(gray))
{
    PxkImage* cosines = newImage(1, PXK_DEPTH_32F, w, h);
    PxkROI block = { 0, 0, 0, 8, 8 };
    int x, y;
    out = newImage(1, PXK_DEPTH_8U, w, h);
    gray->roi = cosines->roi = out->roi = &block;
    START;
    for (block.yOffset = 0; block.yOffset + 8 <= h; block.yOffset += 8)
        for (block.xOffset = 0; block.xOffset + 8 <= w; block.xOffset += 8) {
            pxkDCT2D(gray, cosines, PXK_DCT_FORWARD);
            for (y = 0; y < 8; y++)
                for (x = y < 2 ? 2 - y : 0; x < 8; x++)
                    *floatAt(cosines, block.xOffset + x, block.yOffset + y) = 0;
            pxkDCT2D(cosines, out, PXK_DCT_INVERSE);
        }
    STOP;
}
