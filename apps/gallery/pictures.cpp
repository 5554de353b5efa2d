#include "pictures.h"

#include <algorithm>
#include <cmath>

namespace gallery {

static uint8_t* rowOf(const PxkImage& image, int32_t y)
{
    return static_cast<uint8_t*>(image.imageData) + static_cast<ptrdiff_t>(y) * image.widthStep;
}

static void setBit(uint8_t* row, int32_t x)
{
    row[x / 8] = static_cast<uint8_t>(row[x / 8] | 0x80 >> x % 8);
}

// Fills a three-channel picture with gray levels.
template <class Level> static Image drawLevels(int32_t width, int32_t height, Level level)
{
    Image image = makeImage(3, PXK_DEPTH_8U, width, height, 0);
    for (int32_t y = 0; image && y < height; ++y) {
        uint8_t* row = rowOf(*image, y);
        for (int32_t x = 0; x < width; ++x) std::fill_n(row + 3 * x, 3, level(x, y));
    }
    return image;
}

// The mean of a box of one channel.
static uint8_t boxMean(const PxkImage& image, int32_t x0, int32_t x1, int32_t y0, int32_t y1, int32_t c)
{
    int64_t sum = 0;
    for (int32_t y = y0; y < y1; ++y)
        for (int32_t x = x0; x < x1; ++x) sum += sampleAt(image, x, y, c);
    const int64_t n = static_cast<int64_t>(x1 - x0) * (y1 - y0);
    return static_cast<uint8_t>((sum + n / 2) / n);
}

Image makeImage(int32_t nChannels, int32_t depth, int32_t width, int32_t height, int32_t fill, int32_t dataOrder,
                int32_t alphaChannel)
{
    const char* const model = nChannels == 1 ? "GRAY" : nChannels == 4 ? "RGBA" : "RGB";
    const char* const sequence = nChannels == 1 ? "G\0\0" : nChannels == 4 ? "BGRA" : "BGR";
    Image image(pxkCreateImageHeader(nChannels, alphaChannel, depth, model, sequence, dataOrder, 0, 32, width, height,
                                     nullptr, nullptr, nullptr, nullptr));
    if (!image) return nullptr;
    if (depth == PXK_DEPTH_32F)
        pxkAllocateImageFP(image.get(), 1, static_cast<float>(fill));
    else
        pxkAllocateImage(image.get(), 1, fill);
    if (!image->imageData) return nullptr;
    return image;
}

uint8_t sampleAt(const PxkImage& image, int32_t x, int32_t y, int32_t c)
{
    const uint8_t* row = rowOf(image, image.origin == 0 ? y : image.height - 1 - y);
    if (image.depth == PXK_DEPTH_1U) return row[x / 8] & 0x80 >> x % 8 ? 255 : 0;
    if (image.dataOrder == PXK_DATA_ORDER_PIXEL) return row[static_cast<ptrdiff_t>(x) * image.nChannels + c];
    return row[static_cast<ptrdiff_t>(c) * image.height * image.widthStep + x];
}

Image toColour(const PxkImage& image)
{
    Image colour = makeImage(3, PXK_DEPTH_8U, image.width, image.height, 0);
    for (int32_t y = 0; colour && y < image.height; ++y) {
        uint8_t* out = rowOf(*colour, y);
        for (int32_t x = 0; x < image.width; ++x)
            for (int32_t c = 0; c < 3; ++c) *out++ = sampleAt(image, x, y, image.nChannels < 3 ? 0 : c);
    }
    return colour;
}

Image toPlanes(const PxkImage& colour)
{
    Image planes = makeImage(3, PXK_DEPTH_8U, colour.width, colour.height, 0, PXK_DATA_ORDER_PLANE);
    for (int32_t y = 0; planes && y < 3 * colour.height; ++y)
        for (int32_t x = 0; x < colour.width; ++x)
            rowOf(*planes, y)[x] = sampleAt(colour, x, y % colour.height, y / colour.height);
    return planes;
}

Image toGray(const PxkImage& colour)
{
    Image gray = makeImage(1, PXK_DEPTH_8U, colour.width, colour.height, 0);
    for (int32_t y = 0; gray && y < colour.height; ++y) {
        const uint8_t* in = rowOf(colour, y);
        uint8_t* out = rowOf(*gray, y);
        // Rec. 601 weights of blue, green and red in 256ths.
        for (int32_t x = 0; x < colour.width; ++x, in += 3)
            out[x] = static_cast<uint8_t>((29 * in[0] + 150 * in[1] + 77 * in[2] + 128) >> 8);
    }
    return gray;
}

Image fitTo(const PxkImage& colour, int32_t width, int32_t height)
{
    Image fitted = makeImage(3, PXK_DEPTH_8U, width, height, 0);
    // The part of the source with the wanted shape.
    const auto part = [](int32_t side, int32_t across, int32_t wanted, int32_t wantedAcross) {
        const int64_t fitting = std::max<int64_t>(1, static_cast<int64_t>(across) * wanted / wantedAcross);
        return static_cast<int32_t>(std::min<int64_t>(side, fitting));
    };
    const int32_t w = part(colour.width, colour.height, width, height);
    const int32_t h = part(colour.height, colour.width, height, width);
    const int32_t left = (colour.width - w) / 2, top = (colour.height - h) / 2;
    const auto edge = [](int32_t i, int32_t from, int32_t to) {
        return static_cast<int32_t>(static_cast<int64_t>(i) * from / to);
    };
    for (int32_t y = 0; fitted && y < height; ++y) {
        const int32_t y0 = top + edge(y, h, height);
        const int32_t y1 = std::max(y0 + 1, top + edge(y + 1, h, height));
        uint8_t* out = rowOf(*fitted, y);
        for (int32_t x = 0; x < width; ++x) {
            const int32_t x0 = left + edge(x, w, width);
            const int32_t x1 = std::max(x0 + 1, left + edge(x + 1, w, width));
            for (int32_t c = 0; c < 3; ++c) *out++ = boxMean(colour, x0, x1, y0, y1, c);
        }
    }
    return fitted;
}

Image makeRamp(int32_t width, int32_t height)
{
    return drawLevels(width, height, [=](int32_t x, int32_t) {
        return static_cast<uint8_t>(static_cast<int64_t>(x) * 255 / std::max(1, width - 1));
    });
}

Image makeRings(int32_t width, int32_t height)
{
    // The phase grows with the square of the distance: 8 rings up to half the shorter side.
    const double half = std::min(width, height) / 2.0;
    const double turns = 8.0 * 2.0 * 3.14159265358979 / (half * half);
    return drawLevels(width, height, [=](int32_t x, int32_t y) {
        const double dx = x + 0.5 - width / 2.0, dy = y + 0.5 - height / 2.0;
        return static_cast<uint8_t>(127.5 + 127.0 * std::cos(turns * (dx * dx + dy * dy)));
    });
}

Image makeEllipse(int32_t width, int32_t height)
{
    Image mask = makeImage(1, PXK_DEPTH_1U, width, height, 0);
    const double a = width * 0.36, b = height * 0.45;
    for (int32_t y = 0; mask && y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const double dx = (x + 0.5 - width / 2.0) / a, dy = (y + 0.5 - height / 2.0) / b;
            if (dx * dx + dy * dy <= 1.0) setBit(rowOf(*mask, y), x);
        }
    return mask;
}

Image makeInk(const PxkImage& gray, int32_t level)
{
    Image ink = makeImage(1, PXK_DEPTH_1U, gray.width, gray.height, 0);
    for (int32_t y = 0; ink && y < gray.height; ++y)
        for (int32_t x = 0; x < gray.width; ++x)
            if (sampleAt(gray, x, y, 0) < level) setBit(rowOf(*ink, y), x);
    return ink;
}

} // namespace gallery
