// SPDX-License-Identifier: BSD-2-Clause
#include "ownsource.h"

bool OwnSource::holds(const OwnRect& inner) const
{
    return inner.x >= rect.x && inner.y >= rect.y
        && static_cast<int64_t>(inner.x) + inner.width <= static_cast<int64_t>(rect.x) + rect.width
        && static_cast<int64_t>(inner.y) + inner.height <= static_cast<int64_t>(rect.y) + rect.height;
}

OwnView OwnSource::view(const OwnRect& part) const
{
    return ownBlockView(image, block, { part.x - rect.x, part.y - rect.y, part.width, part.height });
}

bool ownReadSource(OwnSource& source, PxkImage* image, const OwnRect& rect, OwnReading reading)
{
    source.image = image;
    if (reading == OwnReading::IN_PLACE && image->tileInfo == nullptr) {
        source.block = ownImageBlock(image);
        source.rect = { 0, 0, image->width, image->height };
        if (source.holds(rect)) return true;
    }
    source.fetched = ownFetch(image, rect.x, rect.y, rect.width, rect.height);
    source.block = source.fetched.block;
    source.rect = rect;
    return source.fetched.pixels != nullptr;
}

bool ownSharePixels(const PxkImage* imageA, const PxkImage* imageB)
{
    if (imageA->tileInfo != nullptr || imageB->tileInfo != nullptr) return imageA->tileInfo == imageB->tileInfo;
    const auto start = [](const PxkImage* image) { return reinterpret_cast<uintptr_t>(image->imageData); };
    const auto end = [&](const PxkImage* image) {
        const int32_t planes = image->dataOrder == PXK_DATA_ORDER_PLANE ? image->nChannels : 1;
        return start(image) + static_cast<uintptr_t>(ownImageBlock(image).planeStep) * static_cast<uintptr_t>(planes);
    };
    return start(imageA) < end(imageB) && start(imageB) < end(imageA);
}
