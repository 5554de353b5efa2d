// SPDX-License-Identifier: BSD-2-Clause
// Colour twist by floats.
#include "frame/ownblockrows.h"
#include "frame/ownlimit.h"
#include "owntwist.h"

static void ownTwistRowFP(uint8_t* const* rows, ptrdiff_t n, const float* twist)
{
    float w[3][4];
    for (int32_t k = 0; k < 12; ++k) w[k / 4][k % 4] = twist[k];
    ownRunBlocks<float, 3, 6>(rows, n, [&](float* const* of, ptrdiff_t count) {
        const float *const first = of[0], *const second = of[1], *const third = of[2];
        float* const results[3] = { of[3], of[4], of[5] };
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; ++i) {
            const float a = first[i], b = second[i], c = third[i];
            for (int32_t k = 0; k < 3; ++k)
                results[k][i] = ownOneNaN(w[k][0] * a + w[k][1] * b + w[k][2] * c + w[k][3]);
        }
    });
}

static OwnCheck ownTwistFailureFP(const OwnTwistImages& images, const float* twist)
{
    const PxkImage *const src = images.src, *const dst = images.dst;
    const OwnCheck failure = ownFirstFailure({
        { twist == nullptr, PXK_StsBadArg, "(TwistFP == ((void*)(0)))" },
        { src->depth != PXK_DEPTH_32F || dst->depth != PXK_DEPTH_32F, PXK_StsBadArg,
          "((srcImage->depth != 32)|| (dstImage->depth != 32))" },
        { src->dataOrder != dst->dataOrder, PXK_StsBadArg, "(srcImage->dataOrder != dstImage->dataOrder)" },
        { src->origin != dst->origin, PXK_StsBadArg, "(srcImage->origin != dstImage->origin)" },
    });
    return failure.fails ? failure : ownTwistChannelFailure(images);
}

int32_t pxkColorTwistFP(PxkImage* srcImage, PxkImage* dstImage, const float* TwistFP)
{
    const OwnTwistImages images = { srcImage, dstImage };
    OwnCheck failure = ownHeaderFailure(images);
    if (!failure.fails) failure = ownTwistFailureFP(images, TwistFP);
    if (failure.fails) return ownRefused(OWN_HERE, failure);
    return ownRunTwist(OWN_HERE, images, [&](uint8_t* const* rows, ptrdiff_t n) { ownTwistRowFP(rows, n, TwistFP); });
}
