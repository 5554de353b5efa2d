// SPDX-License-Identifier: BSD-2-Clause
// Rotation, warps and remapping on 512 x 512 and 2048 x 2048 pixels.
#include <functional>

#include "benchsupport.h"

namespace {

using Warp = std::function<void(PxkImage*, PxkImage*)>;

const char* const interpolations[] = { "Nearest", "Linear", "Cubic" };

void registerWarp(const std::string& name, const std::vector<int32_t>& depths, const Warp& warp)
{
    for (const int32_t depth : depths) {
        for (const int32_t nChannels : { 1, 3 }) {
            if (depth == PXK_DEPTH_1U && nChannels > 1) continue;
            for (const int32_t side : { 512, 2048 }) {
                const std::string full =
                    name + "/" + benchDepthName(depth) + (nChannels > 1 ? "x3/" : "/") + std::to_string(side);
                benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& state) {
                    const BenchImage a = benchImage(depth, side, side, nChannels),
                                     b = benchImage(depth, side, side, nChannels);
                    benchRun(state, int64_t(side) * side, int64_t(a->imageSize) * 2, [&] { warp(a.get(), b.get()); });
                });
            }
        }
    }
}

Warp rotation(double angle, int32_t interpolate)
{
    return [=](PxkImage* a, PxkImage* b) {
        const double centre = (a->width - 1) / 2.0;
        double xShift = 0, yShift = 0;
        pxkGetRotateShift(centre, centre, angle, &xShift, &yShift);
        pxkRotate(a, b, angle, xShift, yShift, interpolate);
    };
}

// The destination from a quadrangle somewhat inside the source, or the source on such a quadrangle.
template <class Call> Warp quadWarp(Call call, int32_t warpFlag, int32_t interpolate)
{
    return [=](PxkImage* a, PxkImage* b) {
        const double s = a->width;
        double quad[4][2] = {
            { 0.1 * s, 0.05 * s }, { 0.9 * s, 0.1 * s }, { 0.95 * s, 0.9 * s }, { 0.02 * s, 0.8 * s }
        };
        call(a, b, quad, warpFlag, interpolate);
    };
}

// A swirl that stays inside the source.
void registerRemap(int32_t interpolate)
{
    static std::map<int32_t, std::pair<BenchImage, BenchImage>> maps;
    const auto fill = [](int32_t side) {
        std::pair<BenchImage, BenchImage>& pair = maps[side];
        if (pair.first != nullptr) return;
        pair = { benchImage(PXK_DEPTH_32F, side, side), benchImage(PXK_DEPTH_32F, side, side) };
        for (int32_t y = 0; y < side; ++y) {
            float* const xs =
                reinterpret_cast<float*>(static_cast<char*>(pair.first->imageData) + y * pair.first->widthStep);
            float* const ys =
                reinterpret_cast<float*>(static_cast<char*>(pair.second->imageData) + y * pair.second->widthStep);
            for (int32_t x = 0; x < side; ++x) {
                const float u = float(x) / float(side) - 0.5f, v = float(y) / float(side) - 0.5f;
                const float turn = 0.5f - (u * u + v * v);
                xs[x] = float(side) * (0.5f + 0.7f * (u + turn * v));
                ys[x] = float(side) * (0.5f + 0.7f * (v - turn * u));
            }
        }
    };
    registerWarp(std::string("remap") + interpolations[interpolate], { PXK_DEPTH_8U, PXK_DEPTH_16U },
                 [=](PxkImage* a, PxkImage* b) {
                     fill(a->width);
                     pxkRemap(a, maps[a->width].first.get(), maps[a->width].second.get(), b, interpolate);
                 });
}

void registerAll()
{
    for (const int32_t k : { PXK_INTER_NN, PXK_INTER_LINEAR, PXK_INTER_CUBIC }) {
        registerWarp(std::string("rotate30") + interpolations[k], { PXK_DEPTH_8U, PXK_DEPTH_16U }, rotation(30, k));
        registerRemap(k);
    }
    registerWarp("rotate30Nearest", { PXK_DEPTH_1U }, rotation(30, PXK_INTER_NN));
    for (const int32_t angle : { 0, 90, 180, 270 }) {
        registerWarp("rotate" + std::to_string(angle), { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U },
                     rotation(angle, PXK_INTER_NN));
    }
    for (const int32_t flag : { 0, 1 }) {
        const std::string text = std::to_string(flag) + "Linear";
        registerWarp("perspective" + text, { PXK_DEPTH_8U }, quadWarp(pxkWarpPerspectiveQ, flag, PXK_INTER_LINEAR));
        registerWarp("bilinear" + text, { PXK_DEPTH_8U }, quadWarp(pxkWarpBilinearQ, flag, PXK_INTER_LINEAR));
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
}
