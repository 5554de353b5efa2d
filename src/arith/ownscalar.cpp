#include "ownscalar.h"

#include <algorithm>
#include <cstring>

bool ownGoodScalar(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnOrders orders)
{
    if (!ownGoodHeaders(site, { srcImage, dstImage })) return false;
    const char* fault = nullptr;
    if (srcImage->depth != dstImage->depth) {
        fault = "(srcImage->depth != dstImage->depth)";
    } else if (orders == OwnOrders::MUST_AGREE && srcImage->dataOrder != dstImage->dataOrder) {
        fault = "(srcImage->dataOrder != dstImage->dataOrder)";
    } else if (ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage)) {
        fault = "(nChSrc != nChDst)";
    }
    if (fault != nullptr) ownReport(site, PXK_StsBadArg, fault);
    return fault == nullptr;
}

bool ownBeginScalar(OwnWork& work, const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnOrders orders)
{
    if (!ownGoodScalar(site, srcImage, dstImage, orders)) return false;
    return ownBeginWork(work, site,
                        { { srcImage, "(srcImage->tileInfo->tileData == ((void*)(0)))" },
                          { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } });
}

void ownRunFill(const OwnWork& work, int32_t value)
{
    const int32_t depth = work.operands[0].image->depth;
    const int32_t bits = ownConstantBits(depth, value);
    ownForSampleBytes(std::max(ownSampleBytes(depth), 1), [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const T sample = static_cast<T>(bits);
        const auto row = [sample](uint8_t* const* rows, ptrdiff_t n) {
            std::fill_n(reinterpret_cast<T*>(rows[1]), n, sample);
        };
        ownRunWork(work, ownRowFunction(row));
    });
}

void ownRunCopy(const OwnWork& work)
{
    const int32_t sampleBytes = std::max(ownSampleBytes(work.operands[0].image->depth), 1);
    const auto row = [sampleBytes](uint8_t* const* rows, ptrdiff_t n) {
        memmove(rows[1], rows[0], static_cast<size_t>(n * sampleBytes));
    };
    ownRunWork(work, ownRowFunction(row));
}
