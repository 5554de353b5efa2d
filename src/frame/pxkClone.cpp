// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>
#include <cstring>

#include "ownbuffer.h"
#include "ownimage.h"
#include "ownreport.h"

// The block as it is; where the caller's step is not the rule's, the pixels of each row.
static void ownCopyBlock(const PxkImage* source, PxkImage* clone)
{
    const char* from = static_cast<const char*>(source->imageData);
    char* to = static_cast<char*>(clone->imageData);
    if (source->widthStep == clone->widthStep) {
        memcpy(to, from, static_cast<size_t>(std::min(source->imageSize, clone->imageSize)));
        return;
    }
    const int64_t pixelBytes = ownRowStep(source->dataOrder, source->depth, 1, source->nChannels, source->width);
    const size_t rowBytes = static_cast<size_t>(std::min<int64_t>(source->widthStep, pixelBytes));
    const int64_t rows = clone->imageSize / clone->widthStep;
    for (int64_t row = 0; row < rows; ++row) {
        memcpy(to, from, rowBytes);
        from += source->widthStep;
        to += clone->widthStep;
    }
}

PxkImage* pxkCloneImage(PxkImage* image)
{
    const int32_t fault = pxkCheckImageHeader(image);
    OWN_REFUSE_IF(fault != PXK_StsOk, fault, "Incorrect Image", nullptr);
    OwnTempImage clone(pxkCreateImageHeader(image->nChannels, image->alphaChannel, image->depth, image->colorModel,
                                            image->channelSeq, image->dataOrder, image->origin, image->align,
                                            image->width, image->height, nullptr, nullptr, nullptr, nullptr));
    OWN_REFUSE_IF(clone == nullptr, PXK_StsNoMem, "Not enough memory to allocate header for clone image", nullptr);
    *clone = *image;
    clone->imageData = nullptr;
    clone->imageDataBase = nullptr; // the source's own: a failure below must not free it
    clone->headerVersion = 0;
    clone->userTag = nullptr;
    clone->maskROI = nullptr;
    clone->tileInfo = nullptr;
    clone->roi = nullptr;

    OwnRecord<PxkROI> region;
    if (const PxkROI* const roi = image->roi) {
        region.reset(pxkCreateROI(roi->coi, roi->xOffset, roi->yOffset, roi->width, roi->height));
        OWN_REFUSE_IF(region == nullptr, PXK_StsNoMem, "Not enough memory to allocate roi for clone image", nullptr);
    }
    if (image->depth == PXK_DEPTH_32F) {
        pxkAllocateImageFP(clone.get(), 0, 0.0f);
    } else {
        pxkAllocateImage(clone.get(), 0, 0);
    }
    OWN_REFUSE_IF(clone->imageData == nullptr, PXK_StsNoMem, "Not enough memory to allocate imageData for clone image",
                  nullptr);
    if (image->tileInfo == nullptr) ownCopyBlock(image, clone.get());
    clone->roi = region.release();
    return clone.release();
}
