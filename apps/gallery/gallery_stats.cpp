#include "gallery.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <numeric>

namespace gallery {

// A bin for each level of 8U.
struct LevelTable {
    LevelTable() { std::iota(keys.begin(), keys.end(), 0); }

    std::array<int32_t, 257> keys, values = {};
    PxkLUT lut = { 257, keys.data(), values.data(), nullptr, 0 };
};

// A table for each channel of blue, green and red.
struct ColourTables {
    LevelTable tables[3];
    PxkLUT* lut[3] = { &tables[0].lut, &tables[1].lut, &tables[2].lut };
};

// Bars in the channels' colours over black; where they overlap the colours add up.
static PxkImage* draw(Stage& s, const LevelTable* tables, int32_t count)
{
    constexpr int32_t width = 512, height = 320;
    PxkImage* const chart = s.blank(3, PXK_DEPTH_8U, width, height, 24);
    std::vector<int32_t> counts;
    for (int32_t k = 0; k < count; ++k) counts.insert(counts.end(), tables[k].values.begin(), tables[k].values.end());
    std::sort(counts.begin(), counts.end(), std::greater<int32_t>());
    const int64_t most = std::max(counts[static_cast<size_t>(2 * count)], 1); // a few bars are cut off at the top
    for (int32_t c = 0; c < 3; ++c) {
        const LevelTable& table = tables[count == 1 ? 0 : c];
        for (int32_t x = 0; x < width; ++x) {
            const int64_t level = table.values[static_cast<size_t>(x / 2)];
            const int64_t bar = std::min<int64_t>(level * (height - 8) / most, height);
            for (int64_t y = height - 1; y >= height - bar; --y)
                static_cast<uint8_t*>(chart->imageData)[y * chart->widthStep + 3 * x + c] = 220;
        }
    }
    return chart;
}

// The photo with its tones in the middle third of the range, so that there is something to stretch.
static PxkImage* faded(Stage& s)
{
    PxkImage* const image = s.clone(s.photo);
    uint8_t* const bytes = static_cast<uint8_t*>(image->imageData);
    std::transform(bytes, bytes + image->imageSize, bytes, [](uint8_t b) { return static_cast<uint8_t>(80 + b / 3); });
    return image;
}

static void showMoments(Stage& s, PxkImage* bits)
{
    PxkMomentState state;
    MEASURE(s, pxkMoments(bits, &state));
    const double mass = pxkGetSpatialMoment(&state, 0, 0);
    char text[400];
    std::snprintf(text, sizeof text,
                  "mass              %12.0f pixels\ncentre of mass    %12.3f, %.3f\n"
                  "central moments   %12.4g  x x\n                  %12.4g  x y\n                  %12.4g  y y\n"
                  "of order three    %12.4g  x x x\n                  %12.4g  y y y\n",
                  mass, pxkGetSpatialMoment(&state, 1, 0) / mass, pxkGetSpatialMoment(&state, 0, 1) / mass,
                  pxkGetCentralMoment(&state, 2, 0), pxkGetCentralMoment(&state, 1, 1),
                  pxkGetCentralMoment(&state, 0, 2), pxkGetCentralMoment(&state, 3, 0),
                  pxkGetCentralMoment(&state, 0, 3));
    s.worked(static_cast<double>(bits->width) * bits->height);
    s.result.text = text;
}

static void showNorms(Stage& s, PxkImage* a, PxkImage* b)
{
    double largest, sum, root, relative;
    MEASURE(s, largest = pxkNorm(a, b, PXK_NORM_INF); sum = pxkNorm(a, b, PXK_NORM_L1);
            root = pxkNorm(a, b, PXK_NORM_L2); relative = pxkNorm(a, b, PXK_NORM_L2_REL));
    const double pixels = static_cast<double>(a->width) * a->height;
    char text[300];
    std::snprintf(text, sizeof text,
                  "largest difference          %10.0f\nmean difference             %10.3f a sample\n"
                  "root of the squares' sum    %10.1f\nthe same, relative          %10.4f\n",
                  largest, sum / (3 * pixels), root, relative);
    s.worked(4 * pixels);
    s.result.text = text;
}

const Exhibit exhibits[] = {
    { "A histogram", "The levels of the gray picture, 256 bins drawn as bars by this program.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage* gray = s.gray;
          LevelTable table;
          PxkLUT* lut = &table.lut;
          MEASURE(s, pxkComputeHisto(gray, &lut));
          s.worked(static_cast<double>(gray->width) * gray->height);
          s.picture(draw(s, &table, 1));
      } },
    { "Before", "A faded photo: its tones were pressed into the middle third by this program.",
      [](Stage& s, PxkImage*, PxkImage* out) {
          PxkImage* image = faded(s);
          SHOW(s, out, pxkCopy(image, out));
      } },
    { "Its histogram", "Blue, green and red, each counted into a table of its own by one call.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage* image = faded(s);
          ColourTables colour;
          PxkLUT** lut = colour.lut;
          MEASURE(s, pxkComputeHisto(image, lut));
          s.worked(static_cast<double>(image->width) * image->height);
          s.picture(draw(s, colour.tables, 3));
      } },
    { "Equalised", "Every level becomes its share of the counts: all tones are used about equally often.",
      [](Stage& s, PxkImage*, PxkImage* out) {
          PxkImage* image = faded(s);
          ColourTables colour;
          PxkLUT** lut = colour.lut;
          SHOW(s, out, pxkComputeHisto(image, lut); pxkHistoEqualize(image, out, lut));
      } },
    { "The histogram afterwards", "Spread over the whole range; the sums of the bars rise evenly.",
      [](Stage& s, PxkImage*, PxkImage* out) {
          PxkImage* image = faded(s);
          ColourTables colour;
          PxkLUT** lut = colour.lut;
          pxkComputeHisto(image, lut);
          pxkHistoEqualize(image, out, lut);
          MEASURE(s, pxkComputeHisto(out, lut));
          s.worked(static_cast<double>(out->width) * out->height);
          s.picture(draw(s, colour.tables, 3));
      } },
    { "Contrast stretch", "Two keys and a slope: level 80 becomes 0, each further one three more.",
      [](Stage& s, PxkImage*, PxkImage* out) {
          PxkImage* image = faded(s);
          int32_t keys[] = { 80, 166 }, values[] = { 0, 0 }, slopes[] = { 3, 0 };
          PxkLUT ramp = { 2, keys, values, slopes, 1 };
          PxkLUT* lut[] = { &ramp, &ramp, &ramp };
          SHOW(s, out, pxkContrastStretch(image, out, lut));
      } },
    { "Posterised", "The same operation without slopes: four steps.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          int32_t keys[] = { 0, 64, 128, 192, 256 }, values[] = { 0, 85, 170, 255, 255 };
          PxkLUT steps = { 5, keys, values, nullptr, 0 };
          PxkLUT* lut[] = { &steps, &steps, &steps };
          SHOW(s, out, pxkContrastStretch(photo, out, lut));
      } },
    { "Threshold", "Each channel by itself: eight colours remain.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkThreshold(photo, out, 128)); } },
    { "Threshold to one bit", "The way from gray to black and white without dithering.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkThreshold(gray, bits, 110));
      } },
    { "Moments", "Of the ellipse, a one-bit picture: its area, its centre, and how it lies around it.",
      [](Stage& s, PxkImage*, PxkImage*) { showMoments(s, s.ellipse); } },
    { "Norms", "How far the photo and the second picture lie apart, over all samples of all channels.",
      [](Stage& s, PxkImage* photo, PxkImage*) { showNorms(s, photo, s.other); } },
};

const Family statsFamily = { "stats", "Statistics and maps of levels",
                             "Histograms and what is made of them, threshold, moments and norms.", exhibits,
                             std::size(exhibits) };

} // namespace gallery
