#include "gallery.h"

#include <algorithm>
#include <cmath>

namespace gallery {

static float* floatRow(PxkImage* image, int32_t y)
{
    return reinterpret_cast<float*>(static_cast<uint8_t*>(image->imageData) + ptrdiff_t(y) * image->widthStep);
}

// What element i of a packed line of n values belongs to: a frequency, as its real or its imaginary part.
struct Element {
    int32_t frequency;
    bool isImaginary;
};

static Element elementOf(int32_t i, int32_t n)
{
    if (n % 2 == 0 && i == n - 1) return { n / 2, false };
    return { (i + 1) / 2, i > 0 && i % 2 == 0 };
}

struct Frequency {
    int32_t x, y;
    bool isImaginary;
};

static Frequency frequencyOf(const PxkImage* packed, int32_t x, int32_t y)
{
    const Element across = elementOf(x, packed->width), down = elementOf(y, packed->height);
    if (across.frequency != 0 && 2 * across.frequency != packed->width)
        return { across.frequency, y, across.isImaginary };
    return { across.frequency, down.frequency, down.isImaginary };
}

// 0 at frequency 0, 1 at the highest one along an axis.
static double distanceOf(const PxkImage* packed, const Frequency& at)
{
    const double x = 2.0 * at.x / packed->width, y = 2.0 * std::min(at.y, packed->height - at.y) / packed->height;
    return std::sqrt(x * x + y * y);
}

// The logarithm of the magnitude, frequency 0 in the middle.
static PxkImage* magnitudes(Stage& s, PxkImage* packed)
{
    const int32_t width = packed->width, height = packed->height;
    std::vector<double> squares(size_t(width) * height, 0.0);
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            const Frequency at = frequencyOf(packed, x, y);
            const double value = floatRow(packed, y)[x];
            const int32_t places[2][2] = { { at.x, at.y }, { (width - at.x) % width, (height - at.y) % height } };
            for (int32_t k = 0; k < (places[0][0] == places[1][0] && places[0][1] == places[1][1] ? 1 : 2); ++k)
                squares[size_t((places[k][1] + height / 2) % height) * width + (places[k][0] + width / 2) % width] +=
                    value * value;
        }
    }
    PxkImage* picture = s.like(s.gray);
    const double most = std::log1p(*std::max_element(squares.begin(), squares.end()));
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* row = static_cast<uint8_t*>(picture->imageData) + ptrdiff_t(y) * picture->widthStep;
        for (int32_t x = 0; x < width; ++x) row[x] = uint8_t(255 * std::log1p(squares[size_t(y) * width + x]) / most);
    }
    return picture;
}

static PxkImage* spectrumLike(Stage& s, PxkImage* image)
{
    return s.blank(1, PXK_DEPTH_32F, image->width, image->height);
}

// The packed spectrum of a filter: a real factor for each frequency.
template <class Response> static PxkImage* filterOf(Stage& s, PxkImage* image, const Response& response)
{
    PxkImage* filter = spectrumLike(s, image);
    for (int32_t y = 0; y < image->height; ++y) {
        for (int32_t x = 0; x < image->width; ++x) {
            const Frequency at = frequencyOf(filter, x, y);
            floatRow(filter, y)[x] = at.isImaginary ? 0 : float(response(distanceOf(filter, at)));
        }
    }
    return filter;
}

// Transforms each 8 by 8 block, clears all coefficients (u, v) with u + v from `kept` on, and transforms it back.
static void keepCoefficients(PxkImage* image, PxkImage* cosines, PxkImage* out, int32_t kept)
{
    PxkROI block = { 0, 0, 0, 8, 8 };
    image->roi = cosines->roi = out->roi = &block;
    for (block.yOffset = 0; block.yOffset + 8 <= image->height; block.yOffset += 8) {
        for (block.xOffset = 0; block.xOffset + 8 <= image->width; block.xOffset += 8) {
            pxkDCT2D(image, cosines, PXK_DCT_FORWARD);
            for (int32_t v = 0; v < 8; ++v)
                for (int32_t u = std::max(kept - v, 0); u < 8; ++u)
                    floatRow(cosines, block.yOffset + v)[block.xOffset + u] = 0;
            pxkDCT2D(cosines, out, PXK_DCT_INVERSE);
        }
    }
    image->roi = cosines->roi = out->roi = nullptr;
}

const Exhibit fourierExhibits[] = {
    { "The spectrum", "The logarithm of its magnitude, frequency 0 in the middle.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *spectrum = spectrumLike(s, gray);
          MEASURE(s, pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD));
          s.picture(magnitudes(s, spectrum));
      } },
    { "Low pass", "The spectrum times a bell around frequency 0, and back.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *spectrum = spectrumLike(s, gray), *out = s.like(gray);
          PxkImage* bell = filterOf(s, gray, [](double distance) { return std::exp(-distance * distance / 0.01); });
          SHOW(s, out, pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD); pxkMpyRCPack2D(spectrum, bell, spectrum);
               pxkCcsFft2D(spectrum, out, PXK_FFT_INVERSE));
      } },
    { "High pass", "What the bell takes away, on middle gray.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *spectrum = spectrumLike(s, gray), *details = spectrumLike(s, gray),
                   *out = s.like(gray);
          PxkImage* rest = filterOf(s, gray, [](double distance) { return 1 - std::exp(-distance * distance / 0.01); });
          SHOW(s, out, pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD); pxkMpyRCPack2D(spectrum, rest, spectrum);
               pxkCcsFft2D(spectrum, details, PXK_FFT_INVERSE); pxkAddSFP(details, details, 128.0f);
               pxkScaleFP(details, out, 0.0f, 255.0f));
      } },
    { "A ring", "One band of frequencies, on middle gray.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *spectrum = spectrumLike(s, gray), *details = spectrumLike(s, gray),
                   *out = s.like(gray);
          PxkImage* ring = filterOf(s, gray, [](double distance) { return distance > 0.1 && distance < 0.2 ? 1 : 0; });
          SHOW(s, out, pxkRealFft2D(gray, spectrum, PXK_FFT_FORWARD); pxkMpyRCPack2D(spectrum, ring, spectrum);
               pxkCcsFft2D(spectrum, details, PXK_FFT_INVERSE); pxkAddSFP(details, details, 128.0f);
               pxkScaleFP(details, out, 0.0f, 255.0f));
      } },
    { "Cosine coefficients", "Each block of 8 by 8 keeps 10 of its 64 and is transformed back.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *cosines = spectrumLike(s, gray), *out = s.like(gray);
          SHOW(s, out, keepCoefficients(gray, cosines, out, 4));
      } },
    { "Fewer of them", "3 of 64: the blocks begin to show.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *cosines = spectrumLike(s, gray), *out = s.like(gray);
          SHOW(s, out, keepCoefficients(gray, cosines, out, 2));
      } },
};

const Family fourierFamily = { "fourier", "Fourier and cosine transforms",
                               "Images as sums of waves: transformed, changed wave by wave, transformed back.",
                               fourierExhibits, std::size(fourierExhibits) };

} // namespace gallery
