// The generated test image, rings that narrow towards the edge, and the processor's counter.
#include <cstring>

#include "ownbuffer.h"
#include "owndepth.h"
#include "ownreport.h"
#include "ownsine.h"
#include "platform/ownplatform.h"

// A sample from a sine. The factors stop short of the limits, so that no cut value can leave the range. Conversion to
// an integer cuts toward 0, whatever the processor's rounding mode.
static float ownRingSample(double sine, float)
{
    return static_cast<float>((sine + 1.0) * 0.49999);
}
static uint8_t ownRingSample(double sine, uint8_t)
{
    return static_cast<uint8_t>((sine + 1.0) * 127.99999);
}
static int8_t ownRingSample(double sine, int8_t)
{
    return static_cast<int8_t>(sine * 127.99999);
}
static uint16_t ownRingSample(double sine, uint16_t)
{
    return static_cast<uint16_t>((sine + 1.0) * 32767.99999);
}
static int16_t ownRingSample(double sine, int16_t)
{
    return static_cast<int16_t>(sine * 32767.99999);
}
static int32_t ownRingSample(double sine, int32_t)
{
    return static_cast<int32_t>(sine * 2147483647.99999);
}
static bool ownRingSample(double sine, bool)
{
    return static_cast<int32_t>((sine + 1.0) * 0.99999) != 0;
}

// The image is symmetrical about its centre, as far as both sides reach: a sine serves up to four pixels. On an even
// side the low half is longer by one.
struct OwnRings {
    int32_t width, height;
    double step; // phase for each unit of the squared radius

    int32_t xCentre() const { return width / 2; }
    int32_t yCentre() const { return height / 2; }

    double sine(int64_t xDistance, int64_t yDistance) const
    {
        return ownSine(static_cast<double>(xDistance * xDistance + yDistance * yDistance) * step);
    }
};

template <class T> static void ownFillRingRow(const OwnRings& rings, int32_t distance, uint8_t* row)
{
    T* const samples = reinterpret_cast<T*>(row);
    const int32_t centre = rings.xCentre();
    for (int32_t i = 0; i <= centre; ++i) {
        const T sample = ownRingSample(rings.sine(i, distance), T {});
        samples[centre - i] = sample;
        if (centre + i < rings.width) samples[centre + i] = sample;
    }
}

// Bits are only set: the row is clear.
template <> void ownFillRingRow<bool>(const OwnRings& rings, int32_t distance, uint8_t* row)
{
    const int32_t centre = rings.xCentre();
    for (int32_t i = 0; i <= centre; ++i) {
        if (!ownRingSample(rings.sine(i, distance), true)) continue;
        row[(centre - i) / 8] |= static_cast<uint8_t>(0x80 >> (centre - i) % 8);
        if (centre + i < rings.width) row[(centre + i) / 8] |= static_cast<uint8_t>(0x80 >> (centre + i) % 8);
    }
}

template <class T> static void ownFillRings(PxkImage* image)
{
    const OwnRings rings = { image->width, image->height, 6.283185307179586 / (4.0 * image->height) };
    uint8_t* const data = static_cast<uint8_t*>(image->imageData);
    const ptrdiff_t step = image->widthStep;
    const int32_t centre = rings.yCentre();
    for (int32_t i = 0; i <= centre; ++i) {
        uint8_t* const row = data + (centre - i) * step;
        ownFillRingRow<T>(rings, i, row);
        if (i > 0 && centre + i < image->height) memcpy(data + (centre + i) * step, row, static_cast<size_t>(step));
    }
}

PxkImage* pxkCreateImageJaehne(int32_t depth, int32_t width, int32_t height)
{
    OWN_REFUSE_IF(width < 1 || height < 1, PXK_StsBadImageSize, pxkErrorStr(PXK_StsBadImageSize), nullptr);
    OWN_REFUSE_IF(!ownIsDepth(depth), PXK_StsBadDepth, pxkErrorStr(PXK_StsBadDepth), nullptr);
    OwnTempImage image(pxkCreateImageHeader(1, 0, depth, "GRAY", "GRAY", PXK_DATA_ORDER_PIXEL, 0, 8, width, height,
                                            nullptr, nullptr, nullptr, nullptr));
    OWN_REFUSE_IF(image == nullptr, PXK_StsNoMem, "Not enough memory to allocate header for ImageJaehne", nullptr);
    if (depth == PXK_DEPTH_32F) {
        pxkAllocateImageFP(image.get(), 1, 0.0f);
    } else {
        pxkAllocateImage(image.get(), 1, 0);
    }
    OWN_REFUSE_IF(image->imageData == nullptr, PXK_StsNoMem, "Not enough memory to allocate imageData for ImageJaehne",
                  nullptr);
    if (depth == PXK_DEPTH_1U) {
        ownFillRings<bool>(image.get());
    } else {
        ownForDepth(depth, [&](auto tag) { ownFillRings<typename decltype(tag)::Sample>(image.get()); });
    }
    return image.release();
}

uint64_t pxkGetKestriumCounter(void)
{
    return ownProcessorCounter();
}
