// SPDX-License-Identifier: BSD-2-Clause
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
template <class Level> static ImagePtr drawLevels(int32_t width, int32_t height, Level level)
{
    ImagePtr image = makeImage(3, PXK_DEPTH_8U, width, height);
    for (int32_t y = 0; image && y < height; ++y) {
        uint8_t* row = rowOf(*image, y);
        for (int32_t x = 0; x < width; ++x) std::fill_n(row + 3 * x, 3, level(x, y));
    }
    return image;
}

ImagePtr makeImage(int32_t nChannels, int32_t depth, int32_t width, int32_t height, int32_t dataOrder)
{
    const char* const model = nChannels == 1 ? "GRAY" : nChannels == 4 ? "RGBA" : "RGB";
    const char* const sequence = nChannels == 1 ? "G" : nChannels == 4 ? "BGRA" : "BGR";
    ImagePtr image(pxkCreateImageHeader(nChannels, nChannels == 4 ? 4 : 0, depth, model, sequence, dataOrder, 0, 32,
                                        width, height, nullptr, nullptr, nullptr, nullptr));
    if (!image) return nullptr;
    if (depth == PXK_DEPTH_32F)
        pxkAllocateImageFP(image.get(), 1, 0.0f);
    else
        pxkAllocateImage(image.get(), 1, 0);
    return image->imageData ? std::move(image) : nullptr;
}

void clearEdges(PxkImage* image)
{
    pxkSetBorderMode(image, PXK_EDGE_CLAMP, PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT, 0);
}

ImagePtr toGray(const PxkImage& colour)
{
    ImagePtr gray = makeImage(1, PXK_DEPTH_8U, colour.width, colour.height);
    for (int32_t y = 0; gray && y < colour.height; ++y) {
        const uint8_t* in = rowOf(colour, y);
        uint8_t* out = rowOf(*gray, y);
        // Rec. 601 weights of blue, green and red in 256ths.
        for (int32_t x = 0; x < colour.width; ++x, in += 3)
            out[x] = static_cast<uint8_t>((29 * in[0] + 150 * in[1] + 77 * in[2] + 128) >> 8);
    }
    return gray;
}

ImagePtr fitTo(PxkImage& colour, int32_t width, int32_t height)
{
    ImagePtr fitted = makeImage(3, PXK_DEPTH_8U, width, height);
    // The side of the part with the wanted shape.
    const auto part = [](int32_t side, int32_t across, int32_t wanted, int32_t wantedAcross) {
        const int64_t fitting = std::max<int64_t>(1, static_cast<int64_t>(across) * wanted / wantedAcross);
        return static_cast<int32_t>(std::min<int64_t>(side, fitting));
    };
    const int32_t w = part(colour.width, colour.height, width, height);
    const int32_t h = part(colour.height, colour.width, height, width);
    PxkROI middle = { 0, (colour.width - w) / 2, (colour.height - h) / 2, w, h };
    colour.roi = &middle;
    if (fitted && w == width && h == height)
        pxkCopy(&colour, fitted.get());
    else if (fitted)
        pxkResize(&colour, fitted.get(), width, w, height, h,
                  w >= width && h >= height ? PXK_INTER_SUPER : PXK_INTER_CUBIC);
    colour.roi = nullptr;
    return fitted;
}

ImagePtr makeRamp(int32_t width, int32_t height)
{
    return drawLevels(width, height, [=](int32_t x, int32_t) {
        return static_cast<uint8_t>(static_cast<int64_t>(x) * 255 / std::max(1, width - 1));
    });
}

ImagePtr makeRings(int32_t width, int32_t height)
{
    // The phase grows with the square of the distance: 8 rings up to half the shorter side.
    const double half = std::min(width, height) / 2.0;
    const double turns = 8.0 * 2.0 * 3.14159265358979 / (half * half);
    return drawLevels(width, height, [=](int32_t x, int32_t y) {
        const double dx = x + 0.5 - width / 2.0, dy = y + 0.5 - height / 2.0;
        return static_cast<uint8_t>(127.5 + 127.0 * std::cos(turns * (dx * dx + dy * dy)));
    });
}

ImagePtr makeEllipse(int32_t width, int32_t height)
{
    ImagePtr mask = makeImage(1, PXK_DEPTH_1U, width, height);
    const double a = width * 0.36, b = height * 0.45;
    for (int32_t y = 0; mask && y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const double dx = (x + 0.5 - width / 2.0) / a, dy = (y + 0.5 - height / 2.0) / b;
            if (dx * dx + dy * dy <= 1.0) setBit(rowOf(*mask, y), x);
        }
    return mask;
}

ImagePtr makeInk(const PxkImage& gray, int32_t level)
{
    ImagePtr ink = makeImage(1, PXK_DEPTH_1U, gray.width, gray.height);
    for (int32_t y = 0; ink && y < gray.height; ++y)
        for (int32_t x = 0; x < gray.width; ++x)
            if (sampleAt(gray, x, y, 0) < level) setBit(rowOf(*ink, y), x);
    return ink;
}

Detail findDetail(const PxkImage& gray)
{
    constexpr int32_t side = 96, step = 16;
    Detail best = { 0.5, 0.5 };
    int64_t most = -1;
    for (int32_t top = 0; top + side <= gray.height; top += step)
        for (int32_t left = 0; left + side <= gray.width; left += step) {
            int64_t steps = 0;
            for (int32_t y = top + 1; y < top + side; ++y)
                for (int32_t x = left + 1; x < left + side; ++x)
                    steps += std::abs(sampleAt(gray, x, y, 0) - sampleAt(gray, x - 1, y, 0))
                        + std::abs(sampleAt(gray, x, y, 0) - sampleAt(gray, x, y - 1, 0));
            if (steps <= most) continue;
            most = steps;
            best = { (left + side / 2.0) / gray.width, (top + side / 2.0) / gray.height };
        }
    return best;
}

} // namespace gallery
