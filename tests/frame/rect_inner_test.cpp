// Rectangles of images: every pixel against the border rule, the order of tile calls, and what happens on failures.
#include <cstring>

#include <gtest/gtest.h>

#include "frame/ownrect.h"
#include "reference/border.h"
#include "support/alloc_failure.h"
#include "support/picture.h"

namespace {

const int32_t depths[] = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                           PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };

int32_t expectedStep(const PictureSpec& spec, int32_t width)
{
    const int64_t samples = int64_t(width) * (spec.order == PXK_DATA_ORDER_PLANE ? 1 : spec.channels);
    const int64_t bytes = (samples * depthBits(spec.depth) + 7) / 8;
    return static_cast<int32_t>((bytes + spec.align - 1) / spec.align * spec.align);
}

uint32_t fetchedBits(const OwnFetched& fetched, const PictureSpec& spec, int32_t x, int32_t y, int32_t c)
{
    const bool isPlane = spec.order == PXK_DATA_ORDER_PLANE;
    const int64_t step = expectedStep(spec, fetched.rect.width);
    const uint8_t* const row = fetched.pixels.get() + ((isPlane ? int64_t(c) * fetched.rect.height : 0) + y) * step;
    const int64_t sample = isPlane ? x : int64_t(x) * spec.channels + c;
    if (spec.depth == PXK_DEPTH_1U) return row[x / 8] >> (7 - x % 8) & 1;
    const int32_t bytes = depthBits(spec.depth) / 8;
    uint32_t bits = 0;
    memcpy(&bits, row + sample * bytes, static_cast<size_t>(bytes));
    return bits;
}

void expectFetch(const PicturePtr& picture, const OwnRect& rect)
{
    const PxkImage& image = picture->header;
    SCOPED_TRACE(testing::Message() << depthName(image.depth) << " order " << image.dataOrder << " channels "
                                    << image.nChannels << " size " << image.width << "x" << image.height << " tiles "
                                    << picture->spec.tileWidth << " modes " << image.borderMode[0]
                                    << image.borderMode[1] << image.borderMode[2] << image.borderMode[3] << " rect "
                                    << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height);
    picture->freeze();
    const OwnFetched fetched = ownFetch(*picture, rect.x, rect.y, rect.width, rect.height);
    ASSERT_NE(fetched.pixels, nullptr);
    EXPECT_EQ(fetched.block.rowStep, expectedStep(picture->spec, rect.width));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(fetched.pixels.get()) % 32, 0u);
    for (int32_t c = 0; c < image.nChannels; ++c) {
        for (int32_t y = 0; y < rect.height; ++y) {
            for (int32_t x = 0; x < rect.width; ++x) {
                const uint32_t want = modelBorderBits(*picture, int64_t(rect.x) + x, int64_t(rect.y) + y, c);
                ASSERT_EQ(fetchedBits(fetched, picture->spec, x, y, c), want) << "at " << x << "," << y << "," << c;
            }
        }
    }
    EXPECT_EQ(picture->headerFault(), "");
    EXPECT_EQ(picture->tileFault(), "");
}

// From several periods before an axis of n pixels to several behind it.
void randomSpan(Random& random, int32_t n, int32_t* start, int32_t* extent)
{
    *start = random.between(-3 * n - 20, 3 * n + 20);
    *extent = random.oneIn(3) ? random.between(1, 5 * n + 40) : random.between(1, 12);
}

void setBorders(Random& random, PxkImage& image)
{
    const bool isUniform = random.oneIn(2);
    for (int32_t side = 0; side < 4; ++side) {
        image.borderMode[side] = isUniform && side > 0 ? image.borderMode[0] : random.below(8); // two bits count
        image.borderConst[side] = random.oneIn(2) ? static_cast<int32_t>(random.next()) : random.between(0, 3);
    }
}

PictureSpec randomSpec(Random& random, int32_t depth, int32_t order, bool isTiled)
{
    const int32_t extents[] = { 1, 2, 3, 7, 8, 9, 17, 33 };
    const int32_t counts[] = { 1, 2, 3, 4, 5 };
    const int32_t aligns[] = { 4, 8, 16, 32 };
    PictureSpec spec(depth, random.oneOf(extents), random.oneOf(extents), 1, order);
    if (depth != PXK_DEPTH_1U) spec.channels = random.oneOf(counts);
    spec.hasAlpha = random.oneIn(3);
    spec.aligned(random.oneOf(aligns));
    if (isTiled) return spec.tiled(8 * random.between(1, 2), 8 * random.between(1, 2));
    spec.extraStep = spec.align * random.below(3);
    return spec;
}

} // namespace

TEST(Rect, matchesModel)
{
    Random random(11);
    for (const int32_t depth : depths) {
        for (int32_t variant = 0; variant < 4; ++variant) {
            for (int32_t i = 0; i < 60; ++i) {
                const PictureSpec spec = randomSpec(random, depth, variant % 2, variant / 2 == 1);
                const PicturePtr picture = Picture::make(spec, random);
                setBorders(random, picture->header);
                OwnRect rect;
                randomSpan(random, spec.width, &rect.x, &rect.width);
                randomSpan(random, spec.height, &rect.y, &rect.height);
                expectFetch(picture, rect);
                if (HasFatalFailure()) return;
            }
        }
    }
}

// Long one-bit rows pass through blocks, and every pair of bit positions takes its own shift.
TEST(Rect, longRowsOfBits)
{
    Random random(12);
    for (int32_t mode = 0; mode < 4; ++mode) {
        const PicturePtr picture = Picture::make(PictureSpec(PXK_DEPTH_1U, 40003, 2), random);
        for (int32_t side = 0; side < 4; ++side) picture->header.borderMode[side] = mode;
        for (int32_t x = -9; x <= 9; x += 3) {
            expectFetch(picture, { x, -1, 40003, 4 });
            expectFetch(picture, { x - 40003, 0, 100001, 1 });
        }
    }
}

TEST(Rect, coordinatesAtTheEndsOfTheirRange)
{
    Random random(13);
    const int32_t ends[] = { INT32_MIN, INT32_MIN + 3, INT32_MAX - 5, INT32_MAX };
    for (int32_t tiled = 0; tiled < 2; ++tiled) {
        PictureSpec spec(PXK_DEPTH_16S, 4, 8, 2);
        if (tiled == 1) spec.tiled(8, 8);
        const PicturePtr picture = Picture::make(spec, random);
        for (int32_t mode = 0; mode < 4; ++mode) {
            pxkSetBorderMode(*picture, mode, 15, -5);
            for (const int32_t x : ends) {
                for (const int32_t y : ends) {
                    const OwnFetched fetched = ownFetch(*picture, x, y, 1, 1);
                    ASSERT_NE(fetched.pixels, nullptr);
                    // Sizes are powers of two, so periods divide 2^32: the model may start nearer.
                    const int32_t nearX = x < 0 ? x - INT32_MIN - 16 : x - INT32_MAX + 15;
                    const int32_t nearY = y < 0 ? y - INT32_MIN - 16 : y - INT32_MAX + 15;
                    EXPECT_EQ(fetchedBits(fetched, spec, 0, 0, 1), modelBorderBits(*picture, nearX, nearY, 1))
                        << mode << " " << x << " " << y;
                }
            }
        }
    }
}

namespace {

struct Call {
    int32_t x, y, mode;
};

void expectCalls(const Picture& picture, std::initializer_list<Call> want)
{
    const std::vector<TileCall>& calls = picture.storage->calls;
    ASSERT_EQ(calls.size(), want.size());
    size_t i = 0;
    for (const Call& call : want) {
        EXPECT_TRUE(calls[i].x == call.x && calls[i].y == call.y && calls[i].mode == call.mode)
            << "call " << i << ": " << calls[i].x << "," << calls[i].y << " mode " << calls[i].mode;
        ++i;
    }
}

PicturePtr tiledPicture(int32_t width, int32_t height, int32_t mode)
{
    const PicturePtr picture = Picture::make(PictureSpec(PXK_DEPTH_8U, width, height).tiled(16, 8));
    for (int32_t side = 0; side < 4; ++side) picture->header.borderMode[side] = mode;
    return picture;
}

} // namespace

TEST(RectTiles, oneTileIsAskedOnce)
{
    const PicturePtr picture = tiledPicture(40, 20, PXK_EDGE_CONST);
    EXPECT_NE(ownFetch(*picture, 17, 9, 15, 7).pixels, nullptr);
    expectCalls(*picture, { { 1, 1, 1 }, { 1, 1, 4 } });
}

TEST(RectTiles, aRowIsHeldTogetherAndReleasedInReverse)
{
    const PicturePtr picture = tiledPicture(40, 20, PXK_EDGE_CONST);
    EXPECT_NE(ownFetch(*picture, 5, 6, 40, 5).pixels, nullptr);
    expectCalls(*picture,
                { { 0, 0, 1 },
                  { 1, 0, 1 },
                  { 2, 0, 1 },
                  { 2, 0, 4 },
                  { 1, 0, 4 },
                  { 0, 0, 4 },
                  { 0, 1, 1 },
                  { 1, 1, 1 },
                  { 2, 1, 1 },
                  { 2, 1, 4 },
                  { 1, 1, 4 },
                  { 0, 1, 4 } });
}

TEST(RectTiles, mirroredBandsWalkBackward)
{
    const PicturePtr picture = tiledPicture(40, 20, PXK_EDGE_MIRROR);
    EXPECT_NE(ownFetch(*picture, -20, -10, 20, 10).pixels, nullptr);
    expectCalls(
        *picture,
        { { 1, 1, 1 }, { 0, 1, 1 }, { 0, 1, 4 }, { 1, 1, 4 }, { 1, 0, 1 }, { 0, 0, 1 }, { 0, 0, 4 }, { 1, 0, 4 } });
}

// Top, then left, inside and right, then bottom; each piece of a band asks for its tiles itself.
TEST(RectTiles, bandsFollowEachOther)
{
    const PicturePtr picture = tiledPicture(32, 8, PXK_EDGE_WRAP);
    pxkSetBorderMode(*picture, PXK_EDGE_CLAMP, PXK_SIDE_TOP, 0);
    pxkSetBorderMode(*picture, PXK_EDGE_CONST, PXK_SIDE_BOTTOM, 0);
    EXPECT_NE(ownFetch(*picture, -1, -2, 34, 12).pixels, nullptr);
    expectCalls(*picture,
                { { 0, 0, 1 },
                  { 0, 0, 4 },
                  { 0, 0, 1 },
                  { 1, 0, 1 },
                  { 1, 0, 4 },
                  { 0, 0, 4 },
                  { 1, 0, 1 },
                  { 1, 0, 4 },
                  { 1, 0, 1 },
                  { 1, 0, 4 },
                  { 0, 0, 1 },
                  { 1, 0, 1 },
                  { 1, 0, 4 },
                  { 0, 0, 4 },
                  { 0, 0, 1 },
                  { 0, 0, 4 } });
}

TEST(RectTiles, constantsAskForNothing)
{
    const PicturePtr picture = tiledPicture(32, 8, PXK_EDGE_CONST);
    EXPECT_NE(ownFetch(*picture, -40, 0, 40, 8).pixels, nullptr);
    EXPECT_NE(ownFetch(*picture, 0, 8, 40, 8).pixels, nullptr);
    expectCalls(*picture, {});
}

// The rest of the row is asked for all the same, and no tile of it is released.
TEST(RectTiles, refusal)
{
    const PicturePtr picture = tiledPicture(40, 20, PXK_EDGE_CONST);
    picture->storage->refuseAt = 5;
    EXPECT_EQ(ownFetch(*picture, 5, 6, 30, 5).pixels, nullptr);
    expectCalls(*picture,
                { { 0, 0, 1 },
                  { 1, 0, 1 },
                  { 2, 0, 1 },
                  { 2, 0, 4 },
                  { 1, 0, 4 },
                  { 0, 0, 4 },
                  { 0, 1, 1 },
                  { 1, 1, 1 },
                  { 2, 1, 1 } });
}

TEST(RectTiles, anyRefusalGivesNull)
{
    for (const int32_t mode : { PXK_EDGE_CLAMP, PXK_EDGE_MIRROR, PXK_EDGE_WRAP }) {
        int32_t refused = 0;
        for (bool isGood = false; !isGood; ++refused) {
            const PicturePtr picture = tiledPicture(40, 20, mode);
            picture->storage->refuseAt = refused + 1;
            isGood = ownFetch(*picture, -5, -6, 60, 40).pixels != nullptr;
        }
        EXPECT_GT(refused, 9);
    }
}

TEST(Rect, refusedRectangles)
{
    const PicturePtr picture = Picture::make(PictureSpec(PXK_DEPTH_32S, 8, 8, 3, PXK_DATA_ORDER_PLANE));
    EXPECT_EQ(ownFetch(nullptr, 0, 0, 1, 1).pixels, nullptr);
    EXPECT_EQ(ownFetch(*picture, 0, 0, INT32_MAX, 1).pixels, nullptr);
    EXPECT_EQ(ownFetch(*picture, 0, 0, 1 << 15, 1 << 14).pixels, nullptr); // 2^31 bytes in each of three planes
    EXPECT_EQ(ownFetch(*picture, 0, 0, INT32_MAX / 8, INT32_MAX).pixels, nullptr);
    EXPECT_EQ(ownFetch(*picture, 0, 0, -1, 1).pixels, nullptr);
    EXPECT_EQ(ownFetch(*picture, 0, 0, 1, -1).pixels, nullptr);
    EXPECT_NE(ownFetch(*picture, 0, 0, 0, 3).pixels, nullptr);
    const auto refuses = [&](int32_t PxkImage::*field, int32_t value) {
        PxkImage header = picture->header;
        header.*field = value;
        return ownFetch(&header, 0, 0, 1, 1).pixels == nullptr;
    };
    EXPECT_TRUE(refuses(&PxkImage::dataOrder, 2));
    EXPECT_TRUE(refuses(&PxkImage::depth, 4));
    EXPECT_TRUE(refuses(&PxkImage::align, 2));
}

TEST(Rect, shortMemory)
{
    const PicturePtr picture = tiledPicture(40, 20, PXK_EDGE_MIRROR);
    int32_t runs = 0;
    forEachFailingAllocation([&](int64_t failing) {
        EXPECT_EQ(ownFetch(*picture, -5, 2, 60, 5).pixels == nullptr, failing != 0);
        ++runs;
        picture->storage->calls.clear();
    });
    EXPECT_EQ(runs, 1 + 4); // the buffer, then a list of tiles for each of three pieces
    EXPECT_EQ(picture->tileFault(), "");
}
