// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>

#include "frame/ownpixels.h"
#include "ownscaled.h"

// What a sample is multiplied by. Float alpha runs from 0 to 1, and the product is a plain one.
struct OwnTimesAlpha {
    template <class T> T operator()(T sample, T alpha) const
    {
        if constexpr (ownIsFloat<T>) {
            return ownOneNaN(sample * alpha);
        } else {
            return OwnMultiplyScaled {}(sample, alpha);
        }
    }
};

// What becomes of the channels of a pixel.
struct OwnPreMultiplication {
    bool hasColours;
    bool setsAlpha; // to the constant; without it the pixel's own alpha is the factor, or alpha has no part
    bool isConstant;

    bool needsAlpha() const { return setsAlpha || !isConstant; }
};

template <class T>
static void ownPreMultiplyRows(uint8_t* const* rows, int32_t count, ptrdiff_t n, const OwnPreMultiplication& how,
                               T constant)
{
    T* const alpha = reinterpret_cast<T*>(how.needsAlpha() ? rows[count] : nullptr);
    for (int32_t c = 0; c < count; ++c) {
        T* const d = reinterpret_cast<T*>(rows[c]);
        if (how.isConstant) {
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < n; ++i) d[i] = OwnTimesAlpha {}(d[i], constant);
        } else {
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < n; ++i) d[i] = OwnTimesAlpha {}(d[i], alpha[i]);
        }
    }
    if (how.setsAlpha) std::fill_n(alpha, n, constant);
}

// As many channels at a time as a row function takes, with alpha as the last of them: where it is only read it is
// stored as it was.
template <class T>
static void ownPreMultiplyPiece(const PxkImage* image, const OwnPiece& piece, const OwnPreMultiplication& how,
                                T constant)
{
    const OwnView& view = piece.views[0];
    const int32_t nColours = how.hasColours ? view.nChannels : 0;
    constexpr int32_t most = ownMostViews - 1;
    for (int32_t start = 0; start < std::max(nColours, 1); start += most) {
        const int32_t count = std::min(most, nColours - start);
        OwnPixelChannels channels = ownSomeChannels(view, start, count);
        if (how.needsAlpha()) ownAddChannel(channels, ownAlphaPlace(image));
        const auto row = [&](uint8_t* const* rows, ptrdiff_t n) { ownPreMultiplyRows(rows, count, n, how, constant); };
        ownRunPixels({ channels }, 1, piece.mask, OwnRowFunction(row, true));
    }
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
    const PxkImage* const image = work.image(0);
    const int32_t coi = ownChannelOfInterest(image);
    const bool isConstant = alphaValue >= 0;
    const bool hasColours = coi == 0 ? ownProcessedChannels(image) > 0 : coi != image->alphaChannel;
    const bool setsAlpha = isConstant && image->alphaChannel != 0 && (coi == 0 || coi == image->alphaChannel);
    const OwnPreMultiplication how = { hasColours, setsAlpha, isConstant };
    if (!hasColours && !setsAlpha) return;
    const T constant = isConstant ? ownAlphaSample<T>(alphaValue) : T { 0 };
    ownSweepPieces(work, [&](const OwnPiece& piece) { ownPreMultiplyPiece<T>(image, piece, how, constant); });
}

void pxkPreMultiplyAlpha(PxkImage* image, int32_t alphaValue)
{
    OWN_REFUSE_BAD_HEADERS(image);
    const int32_t depth = image->depth;
    const bool isGood =
        ownPassed(OWN_HERE,
                  { { depth != PXK_DEPTH_8U && depth != PXK_DEPTH_16U && depth != PXK_DEPTH_32F, PXK_StsBadArg,
                      "(image->depth != 8) && (image->depth != 16) && (image->depth != 32)" },
                    { alphaValue < 0 && image->alphaChannel == 0, PXK_StsBadArg, "(image->alphaChannel == 0)" } });
    if (!isGood) return;
    OwnWork work;
    const OwnOperand operand = { image, "(image->tileInfo->tileData == ((void*)(0)))" };
    if (ownOpenWork(work, OWN_HERE, { operand }, OwnLoneAlpha::WORKED_ON) != PXK_StsOk) return;
    if (depth == PXK_DEPTH_32F) return ownPreMultiply<float>(work, alphaValue);
    ownForScaled(depth, [&](auto tag) { ownPreMultiply<typename decltype(tag)::Sample>(work, alphaValue); });
}
