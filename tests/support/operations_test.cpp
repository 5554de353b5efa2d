// SPDX-License-Identifier: BSD-2-Clause
// Every row of the table of operations, and every row of the tables of refusals.
#include "operations.h"

#include <set>

#include "reference/frame.h"

class Operations : public ::testing::TestWithParam<std::string> {
protected:
    const Operation& op = operationNamed(GetParam());
    const size_t count = op.images.size();

    Scene plainScene(uint64_t seed = 1) const { return op.scene(op.plainCase(seed)); }
    // The call does nothing, or is refused.
    void expectNothing(const Scene& got, const Numbers& n, const Ending& ending) const
    {
        for (const PicturePtr& image : got.images) image->freeze();
        const Scene want = got.copy();
        EXPECT_EQ(op.run(got, n), ending);
        EXPECT_TRUE(sameScene(want, got, BITS));
        for (const PicturePtr& image : got.images) EXPECT_TRUE(image->storage->calls.empty());
    }
    void expectModel(const Case& c, const Scene& got) const;
};

INSTANTIATE_TEST_SUITE_P(All, Operations, ::testing::ValuesIn(operationNames()),
                         [](const auto& info) { return info.param; });

void Operations::expectModel(const Case& c, const Scene& got) const
{
    op.expectModel(got, op.numbersOf(c, got));
    if (c.tiling == 0) return;
    std::vector<Picture*> images;
    std::set<const Storage*> written;
    for (const PicturePtr& image : got.images) images.push_back(image.get());
    for (size_t k = count - op.nWritten; k < count; ++k) written.insert(images[k]->storage.get());
    const CommonSize size = commonSize(images);
    for (const Picture* image : images) {
        const Window window = windowOf(*image);
        EXPECT_TRUE(!op.isPointwise || image->askedOnlyInside(window.x, window.y, size.width, size.height));
        const auto& calls = image->storage->calls;
        EXPECT_TRUE(
            written.count(image->storage.get()) != 0
            || std::none_of(calls.begin(), calls.end(), [](const TileCall& t) { return t.mode == PXK_TILE_WRITE; }));
    }
}

TEST_P(Operations, matchModel)
{
    forEachCase(op.axes, [&](const Case& c) { expectModel(c, op.scene(c)); });
}

// Rows longer than any block that is taken at a time; for windows several bands.
TEST_P(Operations, matchModelOnLargeImages)
{
    for (const int32_t depth : op.axes.depths) {
        for (const ImageSet masks : { ImageSet(0), ALL_IMAGES }) {
            Case c = op.plainCase(7 + masks);
            c.depth = depth;
            c.region = masks == 0 ? Region::WHOLE : Region::INNER;
            c.masks = op.hasMasks ? masks : 0;
            c.width = depth == PXK_DEPTH_1U ? 70001 : 3001;
            c.height = 2;
            if (!op.isPointwise) c.width = depth == PXK_DEPTH_1U ? 3001 : 1501;
            if (!op.isPointwise) c.height = depth == PXK_DEPTH_8U && masks == 0 ? 220 : 9;
            SCOPED_TRACE(c.text());
            expectModel(c, op.scene(c));
            if (depth != PXK_DEPTH_1U || !op.hasRegions) continue;
            c.masks = 0; // the same bit of a byte in all images
            const Scene aligned = op.scene(c);
            for (const PicturePtr& image : aligned.images) image->setRegion(3, 0, INT32_MAX, 2, image->roi.coi);
            expectModel(c, aligned);
        }
    }
}

// All pairs of samples at 8 bits, all samples at 16, some at 32, with a few numbers.
TEST_P(Operations, matchModelAtEverySample)
{
    for (const int32_t depth : op.axes.depths) {
        const bool isWide = depthBits(depth) > 8;
        if (!op.isPointwise || depth == PXK_DEPTH_1U || depth == PXK_DEPTH_32F || (isWide && count == 3)) continue;
        for (uint64_t seed = 1; seed <= (op.numbers == nullptr ? 1 : isWide ? 8 : 16); ++seed) {
            Case c = op.plainCase(seed);
            c.depth = depth;
            c.region = Region::WHOLE;
            c.width = c.height = 256;
            const Scene got = op.scene(c);
            SCOPED_TRACE(c.text());
            for (size_t k = 0; k < std::max<size_t>(count - 1, 1); ++k) {
                for (uint32_t i = 0; i < 65536; ++i) {
                    for (int32_t channel = 0; channel < got[k].spec.channels; ++channel) {
                        const bool isFirst = (k + uint32_t(channel)) % 2 == 0;
                        const uint32_t near = (i >> 3) * 0x80008u + (i & 7) - 3; // where 32 bits are cut to 16 or 8
                        const uint32_t wide = depth == PXK_DEPTH_32S ? near : i;
                        got[k].setBits(i % 256, i / 256, channel, isWide ? wide : isFirst ? i % 256 : i / 256);
                    }
                }
            }
            op.expectModel(got, op.numbersOf(c, got));
        }
    }
}

// Float arithmetic stores one NaN, whichever came in; what moves numbers keeps their bits.
TEST_P(Operations, storeOneNaN)
{
    static const std::set<std::string> moving = { "pxkCopy", "pxkCopy_gray", "pxkExchange", "pxkAbs" };
    const auto& depths = op.axes.depths;
    if (std::find(depths.begin(), depths.end(), PXK_DEPTH_32F) == depths.end() || moving.count(op.name) != 0) return;
    Case c = op.plainCase();
    c.depth = PXK_DEPTH_32F;
    const Scene got = op.scene(c);
    for (size_t k = 0; k < std::max<size_t>(count - 1, 1); ++k) {
        got[k].forEachSample([&](int32_t x, int32_t y, int32_t channel) {
            got[k].setBits(x, y, channel, (x + y + channel) % 2 == 0 ? 0x7FC12345 : 0xFFC00001);
        });
    }
    const Numbers n = op.numbersOf(c, got);
    const PicturePtr before = got[count - 1].copy();
    EXPECT_EQ(op.run(got, n), Ending());
    if (got[count - 1].spec.depth != PXK_DEPTH_32F) return;
    got[count - 1].forEachSample([&](int32_t x, int32_t y, int32_t channel) {
        const uint32_t bits = got[count - 1].bits(x, y, channel);
        EXPECT_TRUE(bits == before->bits(x, y, channel) || bits == 0x7FC00000 || (bits & 0x7FFFFFFF) <= 0x7F800000)
            << std::hex << bits;
    });
}

// The k-th tile of one image, k growing until the call succeeds.
TEST_P(Operations, refusedTilesAreReported)
{
    if (!op.refusedTile) return; // it takes no tiles
    int32_t refusals = 0;
    for (const Trial& trial : op.trialsOf()) {
        for (uint64_t seed = 1; seed <= 6; ++seed) {
            Case c = op.plainCase(seed);
            c.depth = trial.depth;
            c.masks = seed % 2 == 0 && op.hasMasks ? ALL_IMAGES : 0;
            c.tiling = seed % 3 != 0 ? ALL_IMAGES : 1u << seed / 3 % count;
            const Scene old = op.scene(c), complete = old.copy();
            const Numbers n = trial.numbers.empty() ? op.numbersOf(c, old) : trial.numbers;
            SCOPED_TRACE(c.text() + ", numbers " + ::testing::PrintToString(n));
            ASSERT_EQ(op.run(complete, n), Ending());
            for (size_t k = 0; k < count; ++k) {
                for (int32_t refused = 1; old[k].isTiled() && !HasFailure(); ++refused) {
                    const Scene got = old.copy();
                    got[k].storage->refuseAt = refused;
                    const Ending ending = op.run(got, n);
                    if (got[k].storage->refuseAt != 0) break;
                    ++refusals;
                    EXPECT_EQ(ending, op.refusedTile(trial.func, k, got)) << op.images[k] << ", tile " << refused;
                    EXPECT_TRUE(isPartOf(old, complete, got, op.keepsTiles)) << op.images[k] << ", tile " << refused;
                    int32_t asked = 0;
                    for (const TileCall& call : got[k].storage->calls) asked += call.mode != PXK_TILE_RELEASE;
                    EXPECT_TRUE(op.keepsTiles || asked == refused) << op.images[k];
                }
            }
        }
    }
    EXPECT_GT(refusals, 5);
}

TEST_P(Operations, emptyWorkIsNothing)
{
    Case c = op.plainCase();
    for (const ImageSet tiling : { ImageSet(0), ALL_IMAGES }) {
        c.tiling = tiling;
        for (size_t k = 0; k < count; ++k) {
            const Scene missed = op.scene(c), masked = op.scene(c);
            const Numbers n = op.numbersOf(c, missed);
            SCOPED_TRACE(op.images[k]);
            if (op.hasRegions) {
                missed[k].setRegion(missed[k].spec.width, 0, 4, 4, missed[k].roi.coi);
                expectNothing(missed, n, op.missed);
                missed[k].setRegion(0, missed[k].spec.height + 5, 4, 4, missed[k].roi.coi);
                expectNothing(missed, n, op.missed);
            }
            if (op.hasMasks) {
                masked[k].setMask(Picture::make(PictureSpec { PXK_DEPTH_1U, 9, 9 }.region(9, 0, 4, 4)));
                expectNothing(masked, n, Ending());
            }
        }
    }
}

TEST_P(Operations, nullImagesAreRefused)
{
    if (!op.nullImage) return;
    for (size_t k = 0; k < count; ++k) {
        Scene s = plainScene(), want = s.copy();
        const Numbers n = op.numbersOf(op.plainCase(), s);
        s.images[k] = nullptr;
        EXPECT_EQ(op.run(s, n), op.nullImage(op.func, k, s)) << op.images[k];
        s.images[k] = want.images[k];
        EXPECT_TRUE(sameScene(want, s, BITS));
    }
}

TEST_P(Operations, badHeadersAreRefused)
{
    if (!op.badHeader) return; // it looks at no headers
    for (size_t k = 0; k < count; ++k) {
        const Scene s = plainScene();
        const Numbers n = op.numbersOf(op.plainCase(), s);
        SCOPED_TRACE(op.images[k]);
        for (size_t later = k + 1; later < count && !op.goesOn; ++later) s[later].header.origin = 2;
        s[k].header.align = 5;
        expectNothing(s, n, op.badHeader(op.func, PXK_StsBadAlign));
    }
}

TEST_P(Operations, staleStatus)
{
    const Scene got = plainScene(), want = got.copy();
    const Numbers n = op.numbersOf(op.plainCase(), got);
    Arguments arguments;
    for (const PicturePtr& image : got.images) arguments.images.push_back(*image);
    arguments.numbers = n;
    startReports();
    pxkSetErrStatus(-77);
    op.call(arguments);
    EXPECT_EQ(pxkGetErrStatus(), op.stale == Stale::CLEARED ? 0 : -77);
    EXPECT_EQ(recordedReports(), op.staleReports);
    startReports();
    if (op.stale != Stale::STOPS) op.model(want, n, got);
    EXPECT_TRUE(sameScene(want, got, op.tolerance));
}

// Which result they give is not promised; a row that fits one block gives that of a source apart.
TEST_P(Operations, regionsOfOneImageMayOverlap)
{
    const bool isInPlaceAllowed = op.axes.places.back() != InPlace::NO;
    if (count != 2 || !op.isPointwise || !isInPlaceAllowed) return;
    for (const int32_t depth : op.axes.depths) {
        for (uint64_t seed = 1; seed <= 20; ++seed) {
            Case c = op.plainCase(seed);
            c.depth = depth;
            c.region = Region::WHOLE;
            c.width = 200;
            c.height = 1;
            Scene s = op.scene(c);
            if (s[0].spec.depth != s[1].spec.depth) return;
            Random random(seed);
            const int32_t shift = random.oneOf({ 1, 2, 5, 8, 16, 40 }), from = random.below(2) * shift;
            s.images[1] = s.images[0]->otherHeader();
            s[0].setRegion(from, 0, 100, 1);
            s[1].setRegion(shift - from, 0, 100, 1);
            const Numbers n = op.numbersOf(c, s);
            const Scene apart = { { s.images[0]->copy(), s.images[1]->copy() } };
            op.model(apart, n, s);
            EXPECT_EQ(op.run(s, n), Ending());
            EXPECT_TRUE(samePicture(apart[1], s[1], op.tolerance)) << depthName(depth) << " shifted by " << shift;
        }
    }
}

// As a channel of interest it is one of the product.
TEST(LoneAlpha, isNothingToProcess)
{
    for (const char* name :
         { "pxkCopy", "pxkExchange", "pxkSet", "pxkAdd", "pxkAddS", "pxkErode", "pxkClose", "pxkMinFilter",
           "pxkMedianFilter", "pxkBlur", "pxkWarpAffine", "pxkRotate", "pxkThreshold_8U" }) {
        const Operation& op = operationNamed(name);
        Scene got;
        for (size_t k = 0; k < op.images.size(); ++k) got.images.push_back(Picture::make(GRAY.withAlpha(), k + 1));
        const Scene want = got.copy();
        EXPECT_EQ(op.run(got, op.numbersOf(Case(), got)), Ending()) << name;
        EXPECT_TRUE(sameScene(want, got, BITS)) << name;
    }
}

// ---- refusals ------------------------------------------------------------------------------------------------------

TEST(Refusals, areReportedAndChangeNothing)
{
    for (const RefusalsOf& table : refusals()) {
        const Operation& op = operationNamed(table.operation);
        for (const Refusal& row : table.rows) {
            SCOPED_TRACE(table.operation + ": " + row.text);
            Scene got;
            for (size_t k = 0; k < row.images.size(); ++k) {
                const bool isNull = row.images[k].width == 0;
                got.images.push_back(isNull ? nullptr : Picture::make(row.images[k], k + 1));
            }
            if (row.spoil) row.spoil(got);
            Scene want;
            for (const PicturePtr& image : got.images)
                want.images.push_back(image != nullptr ? image->copy() : nullptr);
            const std::string func = row.func.empty() ? op.func : row.func;
            EXPECT_EQ(op.run(got, row.numbers), Ending({ { row.status, func, row.text } }));
            for (size_t k = 0; k < got.images.size(); ++k) {
                EXPECT_TRUE(got.images[k] == nullptr || samePicture(want[k], got[k], BITS));
            }
        }
    }
}

TEST(Refusals, ofOtherCalls)
{
    for (const RefusedCall& row : refusedCalls()) {
        SCOPED_TRACE(row.report);
        startReports();
        row.call();
        expectReports({ row.report });
    }
}
