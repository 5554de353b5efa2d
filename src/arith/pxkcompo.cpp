// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>

#include "frame/ownpixels.h"
#include "ownblend.h"
#include "owndyadic.h"

// A composition behind its checks. Without alpha channels the alphas are rows of one value.
struct OwnComposition {
    int32_t type;
    bool isPremultiplied;
    bool isConstant;
    int32_t alphaA;
    int32_t alphaB;
};

// One row of samples: sources a and b, their alphas, result.
template <class T> using OwnCompositeRow = void (*)(const T*, const T*, const T*, const T*, T*, ptrdiff_t);

template <class T, int32_t TYPE, bool IS_PREMULTIPLIED>
static void ownCompositeRow(const T* a, const T* b, const T* alphaA, const T* alphaB, T* d, ptrdiff_t n)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        if constexpr (IS_PREMULTIPLIED) {
            d[i] = ownBlendPremultiplied<TYPE, T>(a[i], b[i], alphaA[i], alphaB[i]);
        } else {
            d[i] = ownBlendPlain<TYPE, T>(a[i], b[i], alphaA[i], alphaB[i]);
        }
    }
}

template <class T, bool IS_PREMULTIPLIED> static OwnCompositeRow<T> ownCompositeRowOf(int32_t type)
{
    switch (type) {
    case PXK_COMPOSITE_OVER: return ownCompositeRow<T, PXK_COMPOSITE_OVER, IS_PREMULTIPLIED>;
    case PXK_COMPOSITE_IN: return ownCompositeRow<T, PXK_COMPOSITE_IN, IS_PREMULTIPLIED>;
    case PXK_COMPOSITE_OUT: return ownCompositeRow<T, PXK_COMPOSITE_OUT, IS_PREMULTIPLIED>;
    case PXK_COMPOSITE_ATOP: return ownCompositeRow<T, PXK_COMPOSITE_ATOP, IS_PREMULTIPLIED>;
    case PXK_COMPOSITE_XOR: return ownCompositeRow<T, PXK_COMPOSITE_XOR, IS_PREMULTIPLIED>;
    default: return ownCompositeRow<T, PXK_COMPOSITE_PLUS, IS_PREMULTIPLIED>;
    }
}

// What happens to the rows of a call.
template <class T> struct OwnCompositeRows {
    OwnCompositeRow<T> colour;
    OwnCompositeRow<T> alpha;
    bool isConstant;
    // Constant alphas as rows: longer ones are taken in pieces.
    static constexpr ptrdiff_t mostConstant = 1024;
    alignas(64) T constantA[mostConstant];
    alignas(64) T constantB[mostConstant];
};

// Rows of `count` colours of a, of b and of the destination, each with its alpha behind it (sources: unless constant,
// destination: if wanted). In place the alphas are read for the last time when the result's is written.
template <class T>
static void ownCompositeSamples(const OwnCompositeRows<T>& how, uint8_t* const* rows, int32_t count, bool writesAlpha,
                                ptrdiff_t n)
{
    const auto row = [rows](int32_t k) { return reinterpret_cast<T*>(rows[k]); };
    const int32_t firstOfB = how.isConstant ? count : count + 1;
    const int32_t firstResult = 2 * firstOfB;
    const ptrdiff_t most = how.isConstant ? how.mostConstant : n;
    for (ptrdiff_t start = 0; start < n; start += most) {
        const ptrdiff_t samples = std::min(most, n - start);
        const T* const alphaA = how.isConstant ? how.constantA : row(count) + start;
        const T* const alphaB = how.isConstant ? how.constantB : row(firstOfB + count) + start;
        for (int32_t c = 0; c < count; ++c) {
            how.colour(row(c) + start, row(firstOfB + c) + start, alphaA, alphaB, row(firstResult + c) + start,
                       samples);
        }
        if (writesAlpha) how.alpha(alphaA, alphaB, alphaA, alphaB, row(firstResult + count) + start, samples);
    }
}

// Which channels of the destination are written: under a channel of interest that one alone.
struct OwnCompositeTargets {
    bool colours;
    bool alpha;
};

static OwnCompositeTargets ownCompositeTargets(const PxkImage* dstImage)
{
    const int32_t coi = ownChannelOfInterest(dstImage);
    if (dstImage->alphaChannel == 0) return { true, false };
    return { coi != dstImage->alphaChannel, coi == 0 || coi == dstImage->alphaChannel };
}

template <class T>
static void ownCompositePiece(const OwnWork& work, const OwnPiece& piece, const OwnCompositeRows<T>& how)
{
    // Three colours fit with all alphas; more of them take several rounds, the last one with the result's alpha.
    constexpr int32_t mostColours = 3;
    const OwnCompositeTargets targets = ownCompositeTargets(work.image(2));
    const int32_t nColours = targets.colours ? piece.views[2].nChannels : 0;
    for (int32_t start = 0; start < std::max(nColours, 1); start += mostColours) {
        const int32_t count = std::min(mostColours, nColours - start);
        const bool writesAlpha = targets.alpha && start + count == nColours;
        const auto channelsOf = [&](int32_t k, bool hasAlpha) {
            OwnPixelChannels channels = ownSomeChannels(piece.views[k], start, count);
            if (hasAlpha) ownAddChannel(channels, ownAlphaPlace(work.image(k)));
            return channels;
        };
        ownRunPixels({ channelsOf(0, !how.isConstant), channelsOf(1, !how.isConstant), channelsOf(2, writesAlpha) }, 1,
                     piece.mask,
                     [&](uint8_t* const* rows, ptrdiff_t n) { ownCompositeSamples(how, rows, count, writesAlpha, n); });
    }
}

template <class T> static void ownRunComposition(const OwnWork& work, const OwnComposition& composition)
{
    OwnCompositeRows<T> how;
    how.alpha = ownCompositeRowOf<T, true>(composition.type);
    how.colour = composition.isPremultiplied ? how.alpha : ownCompositeRowOf<T, false>(composition.type);
    how.isConstant = composition.isConstant;
    const OwnRange range = { 0, ownLargest<T> };
    std::fill_n(how.constantA, how.mostConstant, static_cast<T>(ownLimit(composition.alphaA, range)));
    std::fill_n(how.constantB, how.mostConstant, static_cast<T>(ownLimit(composition.alphaB, range)));
    ownSweepPieces(work, [&](const OwnPiece& piece) { ownCompositePiece<T>(work, piece, how); });
}

static bool ownGoodComposition(const OwnSite& site, const OwnDyadic& images, const OwnComposition& composition)
{
    if (!ownGoodFormats(site, images, OwnOrders::MUST_AGREE)) return false;
    const PxkImage* const a = images.srcImageA;
    const bool isAlphaRead = !composition.isConstant;
    const bool isType = composition.type >= PXK_COMPOSITE_OVER && composition.type <= PXK_COMPOSITE_PLUS;
    return ownPassed(site,
                     { { a->depth != PXK_DEPTH_8U && a->depth != PXK_DEPTH_16U, PXK_StsBadArg,
                         "(srcImageA->depth != 8) && (srcImageA->depth != 16)" },
                       { isAlphaRead && a->alphaChannel == 0, PXK_StsBadArg, "(srcImageA->alphaChannel == 0)" },
                       { isAlphaRead && images.srcImageB->alphaChannel == 0, PXK_StsBadArg,
                         "(srcImageB->alphaChannel == 0)" } })
        && ownGoodChannels(site, images)
        && ownPassed(site, { { !isType, PXK_StsBadArg, "(compositeType < 0) || (compositeType > 5)" } });
}

static void ownComposite(const OwnSite& site, const OwnDyadic& images, const OwnComposition& composition)
{
    if (!ownGoodHeaders(site, { images.srcImageA, images.srcImageB, images.dstImage })) return;
    OwnWork work;
    if (!ownGoodComposition(site, images, composition) || !ownOpenDyadic(work, site, images)) return;
    ownForScaled(work.depth(), [&](auto tag) { ownRunComposition<typename decltype(tag)::Sample>(work, composition); });
}

void pxkAlphaComposite(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, int32_t compositeType,
                       int32_t premultiplied)
{
    ownComposite(OWN_HERE, { srcImageA, srcImageB, dstImage }, { compositeType, premultiplied != 0, false, 0, 0 });
}

void pxkAlphaCompositeC(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, int32_t compositeType,
                        int32_t alphaA, int32_t alphaB, int32_t premultiplied)
{
    ownComposite(OWN_HERE, { srcImageA, srcImageB, dstImage },
                 { compositeType, premultiplied != 0, true, alphaA, alphaB });
}
