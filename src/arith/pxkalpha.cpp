#include <algorithm>

#include "frame/ownroads.h"
#include "ownscaled.h"

// What a sample is multiplied by. Float alpha runs from 0 to 1, and the product is a plain one.
struct OwnTimesAlpha {
    template <class T> T operator()(T sample, T alpha) const
    {
        if constexpr (ownIsFloat<T>) {
            return sample * alpha;
        } else {
            return OwnMultiplyScaled {}(sample, alpha);
        }
    }
};

// Every colour channel by the pixel's own alpha, as many channels at a time as a kernel takes.
template <class T> static void ownTimesOwnAlpha(const PxkImage* image, const OwnPatch& patch)
{
    const OwnView& colours = patch.views[0];
    OwnView views[ownMostOperands] = { ownAlphaView(image, colours) };
    constexpr int32_t most = ownMostOperands - 1;
    for (int32_t start = 0; start < colours.nChannels; start += most) {
        const int32_t count = std::min(most, colours.nChannels - start);
        for (int32_t c = 0; c < count; ++c) views[1 + c] = ownChannelView(colours, start + c);
        const auto row = [count](uint8_t* const* rows, ptrdiff_t n) {
            const T* const alpha = reinterpret_cast<const T*>(rows[0]);
            for (int32_t c = 0; c < count; ++c) {
                T* const d = reinterpret_cast<T*>(rows[1 + c]);
                OWN_IVDEP
                for (ptrdiff_t i = 0; i < n; ++i) d[i] = OwnTimesAlpha {}(d[i], alpha[i]);
            }
        };
        ownRunViews(views, 1 + count, count, patch.mask, ownRowKernel(row, true));
    }
}

template <class T> static void ownTimesConstant(const OwnView& view, const OwnBits* mask, T constant)
{
    const auto row = [constant](uint8_t* const* rows, ptrdiff_t n) {
        T* const d = reinterpret_cast<T*>(rows[0]);
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) d[i] = OwnTimesAlpha {}(d[i], constant);
    };
    ownRunViews(&view, 1, 1, mask, ownRowKernel(row, true));
}

template <class T> static void ownSetChannel(const OwnView& view, const OwnBits* mask, T constant)
{
    const auto row = [constant](uint8_t* const* rows, ptrdiff_t n) {
        T* const d = reinterpret_cast<T*>(rows[0]);
        for (ptrdiff_t i = 0; i < n; ++i) d[i] = constant;
    };
    ownRunViews(&view, 1, 1, mask, ownRowKernel(row));
}

// The constant as a sample of alpha: at 32F 255 stands for 1.
template <class T> static T ownAlphaSample(int32_t alphaValue)
{
    if constexpr (ownIsFloat<T>) {
        return static_cast<T>(std::min(alphaValue, 255)) / 255;
    } else {
        return static_cast<T>(std::min<int32_t>(alphaValue, ownLargest<T>));
    }
}

template <class T> static void ownPreMultiply(const OwnWork& work, int32_t alphaValue)
{
    const PxkImage* const image = work.operands[0].image;
    const int32_t coi = image->roi != nullptr ? image->roi->coi : 0;
    const bool hasColours = coi == 0 || coi != image->alphaChannel;
    const bool setsAlpha = image->alphaChannel != 0 && (coi == 0 || coi == image->alphaChannel);
    const auto onPatch = [&](const OwnPatch& patch) {
        if (alphaValue < 0) {
            if (hasColours) ownTimesOwnAlpha<T>(image, patch);
            return;
        }
        const T alpha = ownAlphaSample<T>(alphaValue);
        if (hasColours) ownTimesConstant<T>(patch.views[0], patch.mask, alpha);
        if (setsAlpha) ownSetChannel<T>(ownAlphaView(image, patch.views[0]), patch.mask, alpha);
    };
    ownSweepPatches(work, ownPatchRunner(onPatch));
}

void pxkPreMultiplyAlpha(PxkImage* image, int32_t alphaValue)
{
    OWN_REFUSE_BAD_HEADERS(image);
    const int32_t depth = image->depth;
    OWN_REFUSE_IF(depth != PXK_DEPTH_8U && depth != PXK_DEPTH_16U && depth != PXK_DEPTH_32F, PXK_StsBadArg,
                  "(image->depth != 8) && (image->depth != 16) && (image->depth != 32)");
    OWN_REFUSE_IF(alphaValue < 0 && image->alphaChannel == 0, PXK_StsBadArg, "(image->alphaChannel == 0)");
    OwnWork work;
    if (!ownBeginWork(work, OWN_HERE, { { image, "(image->tileInfo->tileData == ((void*)(0)))" } })) return;
    if (depth == PXK_DEPTH_32F) return ownPreMultiply<float>(work, alphaValue);
    ownForScaled(depth, [&](auto tag) { ownPreMultiply<typename decltype(tag)::Sample>(work, alphaValue); });
}
