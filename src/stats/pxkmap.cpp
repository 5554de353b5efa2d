// SPDX-License-Identifier: BSD-2-Clause
#include "pxkmap.h"

#include <algorithm>
#include <cstring>

#include "frame/ownpixels.h"
#include "ownlut.h"

// Eight loads before eight stores: the compiler must take each store for one that could change the map.
template <class T> static void ownMapRow(const uint8_t* from, uint8_t* to, ptrdiff_t n, const uint8_t* levels)
{
    constexpr ptrdiff_t group = 8;
    const T* const source = reinterpret_cast<const T*>(from);
    const T* const map = reinterpret_cast<const T*>(levels);
    T* const target = reinterpret_cast<T*>(to);
    ptrdiff_t i = 0;
    for (; i + group <= n; i += group) {
        T mapped[group];
        for (ptrdiff_t k = 0; k < group; ++k) mapped[k] = map[source[i + k]];
        memcpy(target + i, mapped, sizeof mapped);
    }
    for (; i < n; ++i) target[i] = map[source[i]];
}

// Channels of a piece from `start` on, as many as are moved together.
static void ownMapChannels(const OwnPiece& piece, int32_t start, int32_t count, int32_t depth, const uint8_t* maps)
{
    const auto mapRow = depth == PXK_DEPTH_8U ? ownMapRow<uint8_t> : ownMapRow<uint16_t>;
    const ptrdiff_t mapBytes = static_cast<ptrdiff_t>(ownLevels(depth)) * ownSampleBytes(depth);
    const auto row = [&](uint8_t* const* rows, ptrdiff_t n) {
        for (int32_t c = 0; c < count; ++c) mapRow(rows[c], rows[count + c], n, maps + (start + c) * mapBytes);
    };
    ownRunPixels({ ownSomeChannels(piece.views[0], start, count), ownSomeChannels(piece.views[1], start, count) }, 1,
                 piece.mask, row);
}

void pxkMap(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const uint8_t* maps)
{
    constexpr int32_t most = 4;
    OwnWork work;
    work.refusedTile = -2;
    if (!ownBeginWork(work, site,
                      { { srcImage, "Error get tile to read" }, { dstImage, "Error get tile to write" } })) {
        return;
    }
    const int32_t nChannels = ownProcessedChannels(srcImage);
    ownSweepPieces(work, [&](const OwnPiece& piece) {
        for (int32_t start = 0; start < nChannels; start += most) {
            ownMapChannels(piece, start, std::min(most, nChannels - start), srcImage->depth, maps);
        }
    });
}
