// SPDX-License-Identifier: BSD-2-Clause
#include "support/compare.h"

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
