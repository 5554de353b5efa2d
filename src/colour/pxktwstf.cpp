// Colour twist by floats.
#include "frame/ownivdep.h"
#include "frame/ownlimit.h"
#include "owntwist.h"

static void ownTwistRowFP(uint8_t* const* rows, ptrdiff_t n, const float* twist)
{
    const float* const first = reinterpret_cast<const float*>(rows[0]);
    const float* const second = reinterpret_cast<const float*>(rows[1]);
    const float* const third = reinterpret_cast<const float*>(rows[2]);
    float* const results[3] = { reinterpret_cast<float*>(rows[3]), reinterpret_cast<float*>(rows[4]),
                                reinterpret_cast<float*>(rows[5]) };
    float w[3][4];
    for (int32_t k = 0; k < 12; ++k) w[k / 4][k % 4] = twist[k];
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const float a = first[i], b = second[i], c = third[i];
        for (int32_t k = 0; k < 3; ++k) results[k][i] = ownOneNaN(w[k][0] * a + w[k][1] * b + w[k][2] * c + w[k][3]);
    }
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
