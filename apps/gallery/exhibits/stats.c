// Statistics and maps of levels
// Histograms and what is made of them, threshold, moments and norms.
#include "exhibit.h"

// A bin for each of 256 levels.
typedef struct Levels {
    int32_t keys[257], counts[257];
    PxkLUT lut;
} Levels;

static PxkLUT* openLevels(Levels* levels)
{
    int i;
    memset(levels, 0, sizeof *levels);
    for (i = 0; i <= 256; i++) levels->keys[i] = i;
    levels->lut.num = 257;
    levels->lut.key = levels->keys;
    levels->lut.value = levels->counts;
    return &levels->lut;
}

// Bars from the bottom of a chart of 512 by 256, in one channel or in all. A level that is
// used as often as all used ones on average gets a quarter of the height.
static void drawBars(PxkImage* chart, const Levels* levels, int coi)
{
    PxkROI bar = { coi, 0, 0, 2, 0 };
    double used = 0, sum = 0;
    int i;
    for (i = 0; i < 256; i++) {
        used += levels->counts[i] > 0;
        sum += levels->counts[i];
    }
    chart->roi = &bar;
    for (i = 0; i < 256; i++) {
        const double height = 64 * levels->counts[i] * used / sum;
        bar.xOffset = 2 * i;
        bar.height = height > 256 ? 256 : (int)height;
        bar.yOffset = 256 - bar.height;
        if (bar.height > 0) pxkSet(chart, 220);
    }
    chart->roi = NULL;
}

// The photo with its tones in the middle third of the range, so that there is something to
// stretch.
static PxkImage* newFaded(void)
{
    PxkImage* faded = newImage(3, PXK_DEPTH_8U, w, h);
    pxkMultiplySScale(photo, faded, 85);
    pxkAddS(faded, faded, 80);
    return faded;
}

// A histogram
// The levels of the gray picture, a bar for each of 256.
EXHIBIT(stats_histogram, PICTURE)
{
    Levels levels;
    PxkLUT* lut = openLevels(&levels);
    START;
    pxkComputeHisto(gray, &lut);
    STOP;
    out = newImage(1, PXK_DEPTH_8U, 512, 256);
    drawBars(out, &levels, 0);
}

// Before
// A faded photo: its tones were pressed into the middle third.
EXHIBIT(stats_faded, PICTURE)
{
    START;
    pxkMultiplySScale(photo, out, 85);
    pxkAddS(out, out, 80);
    STOP;
}

// Its histogram
// Blue, green and red, each counted into a table of its own by one call; where bars overlap
// the colours add up.
EXHIBIT(stats_faded_histogram, PICTURE)
{
    PxkImage* faded = newFaded();
    Levels levels[3];
    PxkLUT* lut[3];
    int c;
    for (c = 0; c < 3; c++) lut[c] = openLevels(&levels[c]);
    START;
    pxkComputeHisto(faded, lut);
    STOP;
    out = newImage(3, PXK_DEPTH_8U, 512, 256);
    for (c = 0; c < 3; c++) drawBars(out, &levels[c], c + 1);
}

// Equalised
// Every level becomes its share of the counts: all tones are used about equally often.
EXHIBIT(stats_equalised, PAIR(stats_faded))
{
    PxkImage* faded = newFaded();
    Levels levels[3];
    PxkLUT* lut[3];
    int c;
    for (c = 0; c < 3; c++) lut[c] = openLevels(&levels[c]);
    START;
    pxkComputeHisto(faded, lut);
    pxkHistoEqualize(faded, out, lut);
    STOP;
}

// The histogram afterwards
// Spread over the whole range; the sums of the bars rise evenly.
EXHIBIT(stats_equalised_histogram, PICTURE)
{
    PxkImage* faded = newFaded();
    PxkImage* equal = newImage(3, PXK_DEPTH_8U, w, h);
    Levels levels[3];
    PxkLUT* lut[3];
    int c;
    for (c = 0; c < 3; c++) lut[c] = openLevels(&levels[c]);
    pxkComputeHisto(faded, lut);
    pxkHistoEqualize(faded, equal, lut);
    START;
    pxkComputeHisto(equal, lut);
    STOP;
    out = newImage(3, PXK_DEPTH_8U, 512, 256);
    for (c = 0; c < 3; c++) drawBars(out, &levels[c], c + 1);
}

// Contrast stretch
// Two keys and a slope: level 80 becomes 0, each further one three more.
EXHIBIT(stats_stretch, PAIR(stats_faded))
{
    PxkImage* faded = newFaded();
    int32_t keys[2] = { 80, 166 }, values[2] = { 0, 0 }, slopes[2] = { 3, 0 };
    PxkLUT line = { 2, keys, values, slopes, 1 };
    PxkLUT* lut[3] = { &line, &line, &line };
    START;
    pxkContrastStretch(faded, out, lut);
    STOP;
}

// Posterised
// The same operation without slopes: four steps.
EXHIBIT(stats_posterised, PICTURE)
{
    int32_t keys[5] = { 0, 64, 128, 192, 256 }, values[5] = { 0, 85, 170, 255, 255 };
    PxkLUT steps = { 5, keys, values, NULL, 0 };
    PxkLUT* lut[3] = { &steps, &steps, &steps };
    START;
    pxkContrastStretch(photo, out, lut);
    STOP;
}

// Threshold
// Each channel by itself: eight colours remain.
EXHIBIT(stats_threshold, PICTURE)
{
    START;
    pxkThreshold(photo, out, 128);
    STOP;
}

// Threshold to one bit
// The way from gray to black and white without dithering.
EXHIBIT(stats_threshold_bits, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkThreshold(gray, out, 110);
    STOP;
}

// Moments
// Of the ellipse, a one-bit picture: its area, its centre, and how it lies around it.
EXHIBIT(stats_moments, TEXT)
{
    PxkMomentState state;
    double mass;
    START;
    pxkMoments(ellipse, &state);
    STOP;
    mass = pxkGetSpatialMoment(&state, 0, 0);
    printf("mass              %12.0f pixels\n", mass);
    printf("centre of mass    %12.3f, %.3f\n", pxkGetSpatialMoment(&state, 1, 0) / mass,
           pxkGetSpatialMoment(&state, 0, 1) / mass);
    printf("central moments   %12.5g x x\n", pxkGetCentralMoment(&state, 2, 0));
    printf("                  %12.5g x y\n", pxkGetCentralMoment(&state, 1, 1));
    printf("                  %12.5g y y\n", pxkGetCentralMoment(&state, 0, 2));
    printf("divided by w, h   %12.5g x x\n", pxkGetNormalizedCentralMoment(&state, 2, 0));
    printf("                  %12.5g y y\n", pxkGetNormalizedCentralMoment(&state, 0, 2));
    printf("from the corner   %12.5g x\n", pxkGetNormalizedSpatialMoment(&state, 1, 0));
}

// One moment at a time
// The direct forms measure the picture at each call.
EXHIBIT(stats_moment, TEXT)
{
    double mass, x, spread, share;
    START;
    mass = pxkSpatialMoment(gray, 0, 0);
    x = pxkNormalizedSpatialMoment(gray, 1, 0);
    spread = pxkCentralMoment(gray, 2, 0);
    share = pxkNormalizedCentralMoment(gray, 2, 0);
    STOP;
    printf("sum of all levels %14.0f\n", mass);
    printf("centre of light   %14.4f of the width\n", x / mass);
    printf("spread            %14.3f pixels\n", sqrt(spread / mass));
    printf("                  %14.4f of the width\n", sqrt(share / mass));
}

// Norms
// How far the photo and the second picture lie apart, over all samples of all channels.
EXHIBIT(stats_norms, TEXT)
{
    double largest, sum, root, relative;
    START;
    largest = pxkNorm(photo, other, PXK_NORM_INF);
    sum = pxkNorm(photo, other, PXK_NORM_L1);
    root = pxkNorm(photo, other, PXK_NORM_L2);
    relative = pxkNorm(photo, other, PXK_NORM_L2_REL);
    STOP;
    printf("largest difference          %10.0f\n", largest);
    printf("mean difference             %10.3f a sample\n", sum / (3.0 * w * h));
    printf("root of the squares' sum    %10.1f\n", root);
    printf("the same, relative          %10.4f\n", relative);
}

// Extrema of floats
// The smallest and the largest sample of what a filter without limits leaves.
EXHIBIT(stats_extrema, TEXT)
{
    PxkImage* floats = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* edges = newImage(1, PXK_DEPTH_32F, w, h);
    float least, most;
    pxkScaleFP(gray, floats, 0.0f, 1.0f);
    pxkFixedFilter(floats, edges, PXK_FILTER_SOBEL_X_3x3);
    START;
    pxkMinMaxFP(edges, &least, &most);
    STOP;
    printf("from %.4f to %.4f\n", least, most);
}
