// A tile function that answers null at its k-th call, k growing until the operation succeeds.
#pragma once

#include "cases.h"
#include "reports.h"

// A point-wise operation on a scene, and its model. `names` are the arguments that the scene's images are given as.
struct PointwiseCall {
    const char* func;
    std::vector<std::string> names;
    std::function<void(Scene&)> run;
    std::function<void(Scene&)> model;
    std::string nullWord = "((void*)(0))"; // as its texts call a null pointer
};

// Every sample is the old or the new one, and nothing else changed: what was written before the refusal stays.
inline ::testing::AssertionResult isPartOf(const Picture& old, const Picture& complete, const Picture& got)
{
    for (int32_t y = 0; y < got.spec.height; ++y) {
        for (int32_t x = 0; x < got.spec.width; ++x) {
            for (int32_t c = 0; c < got.spec.channels; ++c) {
                const uint32_t bits = got.bits(x, y, c);
                if (bits == old.bits(x, y, c) || bits == complete.bits(x, y, c)) continue;
                return ::testing::AssertionFailure()
                    << "sample (x " << x << ", y " << y << ", channel " << c << ") is neither the old nor the new one";
            }
        }
    }
    return nothingElseChanged(old, got);
}

inline void expectEachRefusedTileReported(const Scene& scene, const PointwiseCall& call)
{
    const Scene old = scene.copy();
    Scene complete = scene.copy();
    call.model(complete);
    for (size_t k = 0; k < scene.images.size(); ++k) {
        if (!scene[k].isTiled()) continue;
        SCOPED_TRACE(std::string(call.func) + ", tiles of " + call.names[k]);
        for (int32_t refused = 1; !::testing::Test::HasFailure(); ++refused) {
            Scene got = scene.copy();
            got[k].storage->refuseAt = refused;
            startReports();
            call.run(got);
            if (recordedReports().empty()) {
                EXPECT_GT(refused, 1);
                EXPECT_TRUE(sameScene(complete, got));
                break;
            }
            expectReports({ { PXK_StsBadArg, call.func,
                              "(" + call.names[k] + "->tileInfo->tileData == " + call.nullWord + ")" } });
            for (size_t image = 0; image < scene.images.size(); ++image) {
                EXPECT_TRUE(isPartOf(old[image], complete[image], got[image])) << "refused call " << refused;
            }
        }
    }
}
