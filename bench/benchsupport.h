/* SPDX-License-Identifier: BSD-2-Clause */
// What the benchmarks share: images, masks, and the time of memcpy, which every operation is compared with.
#pragma once

#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <pxk/pxk.h>

// ---- images --------------------------------------------------------------------------------------------------------

struct BenchFree {
    void operator()(PxkImage* image) const { pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA); }
};
using BenchImage = std::unique_ptr<PxkImage, BenchFree>;

inline const char* benchDepthName(int32_t depth)
{
    switch (depth) {
    case PXK_DEPTH_1U: return "1U";
    case PXK_DEPTH_8U: return "8U";
    case PXK_DEPTH_8S: return "8S";
    case PXK_DEPTH_16U: return "16U";
    case PXK_DEPTH_16S: return "16S";
    case PXK_DEPTH_32S: return "32S";
    default: return "32F";
    }
}

// Noise; floats lie in 0 to 1, so that no arithmetic slows down on numbers of extreme size.
inline void benchFill(PxkImage* image, uint32_t seed = 1)
{
    uint32_t state = seed * 2654435761u + 1;
    uint32_t* const words = static_cast<uint32_t*>(image->imageData);
    for (int32_t i = 0; i < image->imageSize / 4; ++i) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        const float number = static_cast<float>(state >> 8) * 0x1p-24f;
        if (image->depth == PXK_DEPTH_32F) {
            memcpy(words + i, &number, sizeof number);
        } else {
            words[i] = state;
        }
    }
}

inline BenchImage benchImage(int32_t depth, int32_t width, int32_t height, int32_t nChannels = 1,
                             int32_t dataOrder = PXK_DATA_ORDER_PIXEL, uint32_t seed = 1)
{
    BenchImage image(pxkCreateImageHeader(nChannels, 0, depth, nChannels == 3 ? "RGB" : "GRAY",
                                          nChannels == 3 ? "RGB" : "GRAY", dataOrder, 0, 32, width, height, nullptr,
                                          nullptr, nullptr, nullptr));
    if (depth == PXK_DEPTH_32F) {
        pxkAllocateImageFP(image.get(), 0, 0);
    } else {
        pxkAllocateImage(image.get(), 0, 0);
    }
    benchFill(image.get(), seed);
    return image;
}

enum class BenchMask { NONE, NOISE, ELLIPSE };

inline const char* benchMaskName(BenchMask mask)
{
    return mask == BenchMask::NONE ? "" : mask == BenchMask::NOISE ? "/noise" : "/ellipse";
}

// One-bit images: every pixel selected or not by chance, or those inside the largest ellipse.
inline BenchImage benchMask(BenchMask mask, int32_t width, int32_t height)
{
    if (mask == BenchMask::NONE) return nullptr;
    BenchImage image = benchImage(PXK_DEPTH_1U, width, height);
    if (mask == BenchMask::NOISE) return image;
    uint8_t* const data = static_cast<uint8_t*>(image->imageData);
    memset(data, 0, static_cast<size_t>(image->imageSize));
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            const double dx = (x + 0.5) / width - 0.5, dy = (y + 0.5) / height - 0.5;
            uint8_t* const byte = data + static_cast<ptrdiff_t>(y) * image->widthStep + x / 8;
            if (dx * dx + dy * dy <= 0.25) *byte = static_cast<uint8_t>(*byte | 0x80 >> x % 8);
        }
    }
    return image;
}

// An image whose tiles lie one behind the other in memory. Its tile function only hands out pointers.
class BenchTiles {
public:
    BenchTiles(int32_t depth, int32_t width, int32_t height, int32_t tileSide)
        : rows(benchImage(depth, tileSide,
                          tileSide * ((width + tileSide - 1) / tileSide) * ((height + tileSide - 1) / tileSide)))
        , columns((width + tileSide - 1) / tileSide)
    {
        record.tiles = { callBack, 0, nullptr, tileSide, tileSide };
        record.owner = this;
        image.reset(pxkCreateImageHeader(1, 0, depth, "GRAY", "GRAY", PXK_DATA_ORDER_PIXEL, 0, 32, width, height,
                                         nullptr, nullptr, nullptr, &record.tiles));
    }
    BenchTiles(const BenchTiles&) = delete;
    BenchTiles& operator=(const BenchTiles&) = delete;
    PxkImage* get() const { return image.get(); }

private:
    struct Record {
        PxkTileInfo tiles;
        BenchTiles* owner;
    };
    static int32_t callBack(PxkImage* asked, int32_t x, int32_t y, int32_t mode)
    {
        if (mode == PXK_TILE_RELEASE) return 0;
        const BenchTiles& owner = *reinterpret_cast<Record*>(asked->tileInfo)->owner;
        const ptrdiff_t tileBytes = static_cast<ptrdiff_t>(owner.rows->widthStep) * asked->tileInfo->height;
        asked->tileInfo->tileData = static_cast<uint8_t*>(owner.rows->imageData) + (y * owner.columns + x) * tileBytes;
        return 0;
    }

    BenchImage rows;
    ptrdiff_t columns;
    Record record;
    BenchImage image;
};

// ---- the measure ---------------------------------------------------------------------------------------------------

// Processor time: other programs on the machine do not count.
inline double benchSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Seconds a call, over a fifth of a second.
template <class F> double benchSecondsOf(F&& call)
{
    call();
    int64_t turns = 0;
    const double start = benchSeconds();
    double seconds = 0;
    for (; seconds < 0.2; seconds = benchSeconds() - start) {
        for (int32_t i = 0; i < 8; ++i, ++turns) {
            call();
            benchmark::ClobberMemory();
        }
    }
    return seconds / static_cast<double>(turns);
}

// Seconds that memcpy takes to move this many bytes, half of them read and half written. Measured once for each number.
inline double benchMemcpySeconds(int64_t bytesMoved)
{
    static std::map<int64_t, double> known;
    const auto found = known.find(bytesMoved);
    if (found != known.end()) return found->second;
    const int64_t half = bytesMoved / 2;
    const std::unique_ptr<void, void (*)(void*)> from(pxkMalloc(static_cast<int32_t>(half)), pxkFree);
    const std::unique_ptr<void, void (*)(void*)> to(pxkMalloc(static_cast<int32_t>(half)), pxkFree);
    memset(from.get(), 1, static_cast<size_t>(half));
    return known[bytesMoved] = benchSecondsOf([&] {
               memcpy(to.get(), from.get(), static_cast<size_t>(half));
               benchmark::DoNotOptimize(to.get());
           });
}

// Runs a call until the benchmark has seen enough. Counters: bytes read and written a second, nanoseconds a pixel, and
// the time as a multiple of memcpy's for as many bytes read and written.
template <class F> void benchRun(benchmark::State& state, int64_t pixels, int64_t bytesMoved, F&& call)
{
    const double memcpySeconds = benchMemcpySeconds(bytesMoved);
    pxkSetErrMode(PXK_ErrModeSilent);
    pxkSetErrStatus(PXK_StsOk);
    call();
    if (pxkGetErrStatus() != PXK_StsOk) return state.SkipWithError("the call was refused");
    const double start = benchSeconds();
    for (auto _ : state) {
        call();
        benchmark::ClobberMemory();
    }
    const double seconds = (benchSeconds() - start) / static_cast<double>(state.iterations());
    state.SetBytesProcessed(state.iterations() * bytesMoved);
    state.counters["ns/px"] = seconds * 1e9 / static_cast<double>(pixels);
    state.counters["xMemcpy"] = seconds / memcpySeconds;
}
