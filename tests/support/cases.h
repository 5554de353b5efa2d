/* SPDX-License-Identifier: BSD-2-Clause */
// The product of cases with which an operation meets its model:
//
//     Axes axes;
//     axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16S };
//     forEachCase(axes, [](const Case& c) {
//         Scene got = makeScene(c, 2);                  // source and destination
//         Scene want = got.copy();
//         modelOfOperation(want[0], want[1]);
//         pxkOperation(got[0], got[1]);
//         EXPECT_TRUE(sameScene(want, got));            // samples, and nothing else changed in any image
//     });
//
// Of a product larger than `count` that many cases are taken, evenly spread over all axes. A failing case prints the
// PXK_CASE=number that, as an environment variable, runs it alone; PXK_CASES=number replaces every `count`, and
// PXK_TRACE=1 prints each case before it runs, for crashes.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "compare.h"
#include "picture.h"

// Data order of the images: one for all, or each its own.
enum class Order { PIXEL, PLANE, MIXED };

// WHOLE: no region record, equal sizes. COVER: equal sizes, a region over all of it or more. OWN: no region, unlike
// sizes. INNER: regions at offsets of their own. PAST: regions that reach past the right and bottom edge.
enum class Region { WHOLE, COVER, OWN, INNER, PAST };

// ONE; THREE; ALPHA: four with alpha; COI: a channel of interest of three or six, another in each image; UNLIKE: the
// same number of processed channels, up to five, chosen in different ways.
enum class Channels { ONE, THREE, ALPHA, COI, UNLIKE };

// Which image the destination, the last image, is: one of its own; the first or second one; all images are one; another
// header over the first one's pixels.
enum class InPlace { NO, FIRST, SECOND, ALL, OTHER_HEADER };

// Sets of images: bit k stands for image k. With SHARED all masks are one record, or all tiles have one size.
using ImageSet = uint32_t;
const ImageSet SHARED = 0x100;
const ImageSet ALL_IMAGES = 0xFF;

struct Axes {
    std::vector<int32_t> depths = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                                    PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    std::vector<Order> orders = { Order::PIXEL, Order::PLANE };
    std::vector<Region> regions = { Region::WHOLE, Region::COVER, Region::OWN, Region::INNER, Region::PAST };
    std::vector<Channels> channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI,
                                       Channels::UNLIKE };
    std::vector<ImageSet> masks = { 0, 1, 2, 4, ALL_IMAGES, ALL_IMAGES | SHARED };
    std::vector<ImageSet> tilings = { 0, 1, 2, 4, 5, ALL_IMAGES, ALL_IMAGES | SHARED };
    std::vector<InPlace> places = { InPlace::NO };
    size_t count = 3000;
    uint64_t seed = 1;
};

struct Case {
    int32_t depth = PXK_DEPTH_8U;
    Order order = Order::PIXEL;
    Region region = Region::INNER;
    Channels channels = Channels::ONE;
    ImageSet masks = 0;
    ImageSet tiling = 0;
    InPlace place = InPlace::NO;
    int32_t width = 0, height = 0; // 0: by chance
    uint64_t seed = 1;
    size_t index = 0;

    std::string text() const;
};

void forEachCase(const Axes& axes, const std::function<void(const Case&)>& run);

// The images of one call. Images, masks and pixels may be shared between them.
struct Scene {
    std::vector<PicturePtr> images;

    Picture& operator[](size_t k) const { return *images[k]; }
    Picture& last() const { return *images.back(); }
    Scene copy() const;
};

// Images for the case: sizes from 1 up, unlike offsets and alignments, masks with regions. `adjust` may change what
// image k will be, for instance its depth, before it is made; `nonFinite` lets infinities and NaNs into float images.
Scene makeScene(const Case& c, size_t count, const std::function<void(PictureSpec&, size_t)>& adjust = {},
                bool nonFinite = true);

// samePicture for every image: `want` is the copy with the model's results.
::testing::AssertionResult sameScene(const Scene& want, const Scene& got, const Tolerance& tolerance = EXACT);
