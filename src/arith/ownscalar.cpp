// SPDX-License-Identifier: BSD-2-Clause
#include "ownscalar.h"

#include <algorithm>
#include <cstring>

bool ownGoodScalarFormats(const OwnSite& site, const PxkImage* srcImage, const PxkImage* dstImage, OwnOrders orders)
{
    const bool mustAgree = orders == OwnOrders::MUST_AGREE;
    return ownPassed(
        site,
        { { srcImage->depth != dstImage->depth, PXK_StsBadArg, "(srcImage->depth != dstImage->depth)" },
          { mustAgree && srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg,
            "(srcImage->dataOrder != dstImage->dataOrder)" },
          { ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage), PXK_StsBadArg, "(nChSrc != nChDst)" } });
}

bool ownGoodScalar(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnOrders orders)
{
    return ownGoodHeaders(site, { srcImage, dstImage }) && ownGoodScalarFormats(site, srcImage, dstImage, orders);
}

bool ownOpenScalar(OwnWork& work, const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage)
{
    return ownBeginWork(work, site,
                        { { srcImage, "(srcImage->tileInfo->tileData == ((void*)(0)))" },
                          { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } });
}

bool ownBeginScalar(OwnWork& work, const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnOrders orders)
{
    return ownGoodScalar(site, srcImage, dstImage, orders) && ownOpenScalar(work, site, srcImage, dstImage);
}

void ownRunFill(const OwnWork& work, int32_t value)
{
    const int32_t depth = work.depth();
    const int32_t bits = ownConstantBits(depth, value);
    ownForSampleBytes(std::max(ownSampleBytes(depth), 1), [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const T sample = static_cast<T>(bits);
        const auto row = [sample](uint8_t* const* rows, ptrdiff_t n) {
            std::fill_n(reinterpret_cast<T*>(rows[1]), n, sample);
        };
        ownRunWork(work, OwnPadding::WORKED_ON, row);
    });
}

void ownRunCopy(const OwnWork& work)
{
    ownRunWork(work, OwnPadding::WORKED_ON, OwnCopyRow { ownSampleBytes(work.depth()) });
}
