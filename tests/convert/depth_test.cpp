// SPDX-License-Identifier: BSD-2-Clause
// Scaling to and from floats at the ends of ranges, and depths in place.
#include <cfloat>
#include <cmath>

#include "support/compare.h"
#include "support/reports.h"

namespace {

const int32_t wideDepths[] = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };

struct Ends {
    float low, high;
};

double scaledOne(int32_t fromDepth, double x, int32_t toDepth, const Ends& ends)
{
    const PicturePtr from = Picture::make({ fromDepth, 21, 1 }), to = Picture::make({ toDepth, 21, 1 });
    from->setAll(x);
    EXPECT_EQ(pxkScaleFP(*from, *to, ends.low, ends.high), PXK_StsOk);
    for (int32_t i = 1; i < 21; ++i) EXPECT_EQ(to->bits(i, 0, 0), to->bits(0, 0, 0)) << x;
    return to->number(0, 0);
}

// However unlike the sizes of both ends are, or however close together they lie.
TEST(Depth, endsOfTheFloatRangeMeetThoseOfTheIntegers)
{
    const float infinity = HUGE_VALF;
    startReports();
    for (const Ends& ends : { Ends { -1e8f, 1e-30f }, Ends { 1, 1 + FLT_EPSILON }, Ends { -FLT_MAX, FLT_MAX },
                              Ends { 0, FLT_TRUE_MIN }, Ends { -0.3f, 0.1f } }) {
        SCOPED_TRACE(std::to_string(ends.low) + " to " + std::to_string(ends.high));
        for (const int32_t depth : wideDepths) {
            const double low = double(depthMin(depth)), high = double(depthMax(depth));
            EXPECT_EQ(scaledOne(depth, low, PXK_DEPTH_32F, ends), ends.low);
            EXPECT_EQ(scaledOne(depth, high, PXK_DEPTH_32F, ends), ends.high);
            for (const float v : { ends.low, std::nextafter(ends.low, -infinity), -infinity, std::nanf("") })
                EXPECT_EQ(scaledOne(PXK_DEPTH_32F, v, depth, ends), low) << v;
            for (const float v : { ends.high, std::nextafter(ends.high, infinity), infinity })
                EXPECT_EQ(scaledOne(PXK_DEPTH_32F, v, depth, ends), high) << v;
        }
    }
    expectNoReports();
}

// Infinite ends are no refusal; every result is then a sample of the depth, whatever it is.
TEST(Depth, infiniteEnds)
{
    const float infinity = HUGE_VALF;
    startReports();
    for (const Ends& ends : { Ends { -infinity, 0 }, Ends { 0, infinity }, Ends { std::nanf(""), 1 } }) {
        for (const int32_t depth : wideDepths) {
            for (const float v : { 0.0f, FLT_MAX, infinity, -infinity }) {
                EXPECT_EQ(scaledOne(PXK_DEPTH_32F, v, depth, ends), double(depthMin(depth)));
            }
            scaledOne(depth, 3, PXK_DEPTH_32F, ends);
        }
    }
    expectNoReports();
}

// Two headers of one width over the same pixels; one header twice is not even looked at.
TEST(Depth, inPlace)
{
    const PicturePtr picture = Picture::make({ PXK_DEPTH_16U, 256, 9 }), want = picture->copy();
    PxkImage asSigned = picture->header, nothing = {};
    asSigned.depth = PXK_DEPTH_16S;
    for (int32_t i = 0; i < 256 * 9; ++i) {
        want->setBits(i % 256, i / 256, 0, picture->bits(i % 256, i / 256, 0) ^ 0x8000);
    }
    EXPECT_EQ(pxkScale(*picture, &asSigned), PXK_StsOk);
    EXPECT_TRUE(samePicture(*want, *picture));
    EXPECT_EQ(pxkConvert(&nothing, &nothing), PXK_StsOk);
}

} // namespace
