// SPDX-License-Identifier: BSD-2-Clause
// The same library from C++: images that own their pixels, views with regions and masks, failures as exceptions.
#include <pxk/pxk.hpp>

#include <cstdio>
#include <vector>

// The share of a picture that is brighter than `level`, in one channel.
static double brighter(const pxk::View& picture, int level)
{
    const pxk::Image bright(pxk::bits(), picture.width(), picture.height());
    pxk::call(pxkGreaterS, picture, bright, level);
    return pxk::call(pxkNorm, bright, nullptr, PXK_NORM_L1) / (picture.width() * picture.height());
}

int main()
try {
    // Pixels of the program: 64 rows of 64 samples, a ramp from left to right.
    std::vector<unsigned char> samples(64 * 64);
    for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<unsigned char>(i % 64 * 4);
    const pxk::View ramp(samples, pxk::gray(), 64, 64);
    std::printf("%.2f of the ramp is above 127\n", brighter(ramp, 127));

    // Pixels of an image. The right half of its second channel is set, and one row is read.
    const pxk::Image picture(pxk::rgb(), 64, 64, 10);
    pxk::call(pxkSet, picture.region({ 32, 0, 32, 64 }).channel(2), 250);
    int sum = 0;
    for (const unsigned char sample : picture.row<unsigned char>(5)) sum += sample;
    std::printf("a row adds up to %d\n", sum);

    // Unlike channels: refused, and the exception tells what and where.
    try {
        pxk::call(pxkAdd, picture, ramp, picture);
    } catch (const pxk::Error& error) {
        std::printf("%s\n", error.what());
        return sum == 64 * 30 + 32 * 240 && error.status() == PXK_StsBadArg ? 0 : 1;
    }
    return 1;
} catch (const pxk::Error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
