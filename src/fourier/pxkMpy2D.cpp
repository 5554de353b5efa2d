// SPDX-License-Identifier: BSD-2-Clause
#include <type_traits>

#include "frame/owndepth.h"
#include "frame/ownivdep.h"
#include "frame/ownlimit.h"
#include "frame/ownplane.h"
#include "frame/ownregion.h"
#include "frame/ownreport.h"

static float ownFinished(float value)
{
    return ownOneNaN(value);
}

template <class Work> static Work ownFinished(Work value)
{
    return value;
}

// a b + c d. 32-bit sums of 8 and 16-bit samples wrap.
template <class Work> static Work ownProductSum(Work a, Work b, Work c, Work d)
{
    if constexpr (std::is_integral<Work>::value) {
        return static_cast<Work>(static_cast<uint32_t>(a * b) + static_cast<uint32_t>(c * d));
    } else {
        return ownFinished(a * b + c * d);
    }
}

// One channel of the three images.
struct OwnSpectra {
    OwnView a;
    OwnView b;
    OwnView product;
    int32_t depth;
    int32_t channel;
};

// Complex values, real and imaginary part in turn, that are multiplied at a time: both factors are read before the
// product is written, which may lie over them.
constexpr int32_t ownPairsAtOnce = 128;

// n complex values side by side in row y, from column x on.
template <class Work> static void ownMultiplyAcross(const OwnSpectra& spectra, int32_t x, int32_t y, int32_t n)
{
    Work a[2 * ownPairsAtOnce], b[2 * ownPairsAtOnce], product[2 * ownPairsAtOnce];
    ownLoadPlaneRow(spectra.a, spectra.depth, spectra.channel, x, y, 2 * n, a);
    ownLoadPlaneRow(spectra.b, spectra.depth, spectra.channel, x, y, 2 * n, b);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        product[2 * i] = ownProductSum(a[2 * i], b[2 * i], -a[2 * i + 1], b[2 * i + 1]);
        product[2 * i + 1] = ownProductSum(a[2 * i], b[2 * i + 1], a[2 * i + 1], b[2 * i]);
    }
    ownStorePlaneRow(spectra.product, spectra.depth, spectra.channel, x, y, 2 * n, product);
}

// A real value.
template <class Work> static void ownMultiplyOne(const OwnSpectra& spectra, int32_t x, int32_t y)
{
    Work a, b;
    ownLoadPlaneRow(spectra.a, spectra.depth, spectra.channel, x, y, 1, &a);
    ownLoadPlaneRow(spectra.b, spectra.depth, spectra.channel, x, y, 1, &b);
    const Work product = ownFinished(a * b);
    ownStorePlaneRow(spectra.product, spectra.depth, spectra.channel, x, y, 1, &product);
}

// A column that is packed downward: a real value, complex ones, and a real one again for even heights.
template <class Work> static void ownMultiplyDown(const OwnSpectra& spectra, int32_t x, int32_t height)
{
    ownMultiplyOne<Work>(spectra, x, 0);
    for (int32_t y = 1; y + 1 < height; y += 2) {
        Work a[2], b[2];
        for (int32_t part = 0; part < 2; ++part) {
            ownLoadPlaneRow(spectra.a, spectra.depth, spectra.channel, x, y + part, 1, a + part);
            ownLoadPlaneRow(spectra.b, spectra.depth, spectra.channel, x, y + part, 1, b + part);
        }
        const Work product[2] = { ownProductSum(a[0], b[0], -a[1], b[1]), ownProductSum(a[0], b[1], a[1], b[0]) };
        for (int32_t part = 0; part < 2; ++part)
            ownStorePlaneRow(spectra.product, spectra.depth, spectra.channel, x, y + part, 1, product + part);
    }
    if (height % 2 == 0) ownMultiplyOne<Work>(spectra, x, height - 1);
}

template <class Work> static void ownMultiplySpectra(OwnSpectra spectra, const OwnSize& size)
{
    const int32_t pairs = (size.width - 1) / 2;
    for (spectra.channel = 0; spectra.channel < spectra.a.nChannels; ++spectra.channel) {
        ownMultiplyDown<Work>(spectra, 0, size.height);
        if (size.width % 2 == 0) ownMultiplyDown<Work>(spectra, size.width - 1, size.height);
        for (int32_t y = 0; y < size.height; ++y)
            for (int32_t i = 0; i < pairs; i += ownPairsAtOnce)
                ownMultiplyAcross<Work>(spectra, 1 + 2 * i, y, pairs - i < ownPairsAtOnce ? pairs - i : ownPairsAtOnce);
    }
}

static bool ownGoodSpectrumChannels(const OwnSite& site, const PxkImage* image, const char* coiText,
                                    const char* alphaText)
{
    const int32_t coi = ownChannelOfInterest(image), alpha = image->alphaChannel;
    return ownPassed(site,
                     { { coi < 0 || coi > image->nChannels, PXK_StsBadCOI, coiText },
                       { alpha != 0 && alpha != image->nChannels, PXK_StsBadAlphaChannel, alphaText } });
}

static bool ownHasSigns(int32_t depth)
{
    return depth == PXK_DEPTH_8S || depth == PXK_DEPTH_16S || depth == PXK_DEPTH_32S || depth == PXK_DEPTH_32F;
}

static bool ownGoodSpectra(const OwnSite& site, PxkImage* srcA, PxkImage* srcB, PxkImage* dst)
{
    if (!ownGoodHeaders(site, { srcA, srcB, dst })) return false;
    const OwnSize a = ownRegionSize(srcA), b = ownRegionSize(srcB), d = ownRegionSize(dst);
    return ownPassed(site,
                     { { !ownHasSigns(srcA->depth) || !ownHasSigns(srcB->depth), PXK_StsBadDepth,
                         "srcA->depth || srcB->depth == 8U||16U||1U" },
                       { srcA->depth != srcB->depth, PXK_StsBadArg, "(srcA->depth != srcB->depth)" },
                       { srcA->depth != dst->depth, PXK_StsBadArg, "(srcA->depth != dst->depth)" },
                       { a.width != b.width, PXK_StsBadArg, "(width_srcA != width_srcB)" },
                       { a.height != b.height, PXK_StsBadArg, "(height_srcA != height_srcB)" },
                       { a.width != d.width, PXK_StsBadArg, "(width_srcA != width_dst)" },
                       { a.height != d.height, PXK_StsBadArg, "(height_srcA != height_dst)" } })
        && ownGoodSpectrumChannels(site, srcA, "srcA-roi->coi", "srcA->alphaChannel")
        && ownGoodSpectrumChannels(site, srcB, "srcB-roi->coi", "srcB->alphaChannel")
        && ownGoodSpectrumChannels(site, dst, "dst-roi->coi", "dst->alphaChannel")
        && ownPassed(site,
                     { { ownProcessedChannels(srcA) != ownProcessedChannels(srcB)
                             || ownProcessedChannels(srcA) != ownProcessedChannels(dst),
                         PXK_StsBadChannels, "" },
                       { srcA->imageData == nullptr, PXK_StsBadArg, "srcA->imageData == ((void*)(0))" },
                       { srcB->imageData == nullptr, PXK_StsBadArg, "srcB->imageData == ((void*)(0))" },
                       { dst->imageData == nullptr, PXK_StsBadArg, "dst->imageData == ((void*)(0))" } });
}

void pxkMpyRCPack2D(PxkImage* srcA, PxkImage* srcB, PxkImage* dst)
{
    if (!ownGoodSpectra(OWN_HERE, srcA, srcB, dst)) return;
    const OwnSize size = ownRegionSize(dst);
    if (size.isEmpty()) return;
    const OwnSpectra spectra = { ownRegionStart(srcA), ownRegionStart(srcB), ownRegionStart(dst), dst->depth, 0 };
    switch (dst->depth) {
    case PXK_DEPTH_32F: return ownMultiplySpectra<float>(spectra, size);
    case PXK_DEPTH_32S: return ownMultiplySpectra<double>(spectra, size);
    default: return ownMultiplySpectra<int32_t>(spectra, size);
    }
}
