// SPDX-License-Identifier: BSD-2-Clause
// What the table of operations has no room for.
#include "reference/stats.h"

#include "support/reports.h"

namespace {

TEST(Stats, alphaAloneIsMeasuredByMomentsOnly)
{
    startReports();
    const PicturePtr bytes = Picture::make(PictureSpec { PXK_DEPTH_8U, 4, 4 }.withAlpha());
    const PicturePtr reals = Picture::make(PictureSpec { PXK_DEPTH_32F, 4, 4 }.withAlpha());
    for (const PicturePtr& p : { bytes, reals }) {
        p->setAll(2);
        EXPECT_EQ(pxkSpatialMoment(*p, 0, 0), 32);
        EXPECT_EQ(pxkNorm(*p, nullptr, PXK_NORM_L1), 0);
    }
    float low = 7, high = 7;
    EXPECT_EQ(pxkMinMaxFP(*reals, &low, &high), 0);
    EXPECT_EQ(low + high, 14);
    expectNoReports();
}

TEST(Stats, imagesWithoutMassHaveTheirMiddleAsCentre)
{
    startReports();
    const PicturePtr black = Picture::make({ PXK_DEPTH_8U, 6, 4 });
    black->setAll(0);
    PxkMomentState state = {};
    pxkMoments(*black, &state);
    state.moments[2][0].value = 8; // as if there were some
    state.moments[1][0].value = 1;
    EXPECT_EQ(pxkGetCentralMoment(&state, 2, 0), 8 - 2 * 3.0);
    black->setRegion(6, 0, 1, 1);
    pxkMoments(*black, &state);
    EXPECT_EQ(state.moments[2][0].value, 0);
    EXPECT_EQ(state.moments[2][0].scale, 0);
    EXPECT_EQ(pxkCentralMoment(*black, 2, 1), 0);
    expectNoReports();
}

} // namespace
