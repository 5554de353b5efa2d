// SPDX-License-Identifier: BSD-2-Clause
// Every fault of a call is reported, in order; transforms that nobody would ask for.
#include <cmath>

#include "support/operations.h"

static void expectTexts(const std::string& func, const std::vector<std::string>& texts,
                        const std::function<void()>& call)
{
    startReports();
    call();
    std::vector<std::string> got;
    for (const Report& report : recordedReports()) got.push_back(report.func + ": " + report.context);
    std::vector<std::string> want;
    for (const std::string& text : texts)
        want.push_back((text.find(": ") == std::string::npos ? func + ": " : "") + text);
    EXPECT_EQ(got, want);
    startReports();
}

TEST(Scale, reportsEveryFault)
{
    const PicturePtr gray = Picture::make(GRAY), wide = Picture::make(RGB_16U), planes = Picture::make(RGB_PLANES);
    const PicturePtr coi = Picture::make(RGB.region(9, 4, 9, 4, 2)), floats = Picture::make(FLOATS);
    const std::string unknown =
        "interpolate != PXK_INTER_NN && interpolate != PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC";
    const std::string depth =
        "srcImage->depth != PXK_DEPTH_1U && srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U";
    wide->header.dataOrder = PXK_DATA_ORDER_PLANE;
    wide->header.origin = 1;
    expectTexts("pxkZoom",
                { "xDst < xSrc || yDst < ySrc", unknown, "srcImage->depth != dstImage->depth", depth,
                  "srcImage->dataOrder != dstImage->dataOrder", "xDst <= 0 || xSrc <= 0", "yDst <= 0 || ySrc <= 0",
                  "" },
                [&] { pxkZoom(*floats, *wide, 0, 1, -1, 0, 3); });
    expectTexts("pxkResize", { "This function isn`t in-plase function", "" },
                [&] { pxkResize(*gray, *gray, 1, 2, 2, 1, PXK_INTER_NN); });
    expectTexts("pxkResize", { "Processed channels of srcImage != Processed channels of dstImage", "" }, [&] {
        pxkResize(*planes, *Picture::make(RGB_PLANES.region(0, 0, 9, 4, 1)), 1, 2, 2, 1, PXK_INTER_NN);
    });
    expectTexts("pxkResize",
                { "(interpolate == PXK_INTER_SUPER) && (xDst > xSrc || yDst > ySrc)", "pxkDecimate: yDst > ySrc", "" },
                [&] { pxkResize(*gray, *Picture::make(GRAY), 1, 2, 2, 1, PXK_INTER_SUPER); });
    expectTexts("pxkDecimate",
                { "srcImage->depth != dstImage->depth", "srcImage->origin != dstImage->origin",
                  "srcImage->dataOrder != dstImage->dataOrder",
                  "srcImage->roi->coi > 0 && dstImage->roi == ((void *)0)",
                  "interpolate != PXK_INTER_NN, PXK_INTER_LINEAR, PXK_INTER_CUBIC or PXK_INTER_SUPER", "xDst <= 0",
                  "xSrc <= 0", "yDst <= 0", "ySrc <= 0", "xDst > xSrc", "yDst > ySrc" },
                [&] { pxkDecimate(*coi, *wide, 0, -1, 0, -1, 4); });
    expectTexts("pxkDecimate", { "srcImage == dstImage", depth },
                [&] { pxkDecimate(*floats, *floats, 1, 1, 1, 1, PXK_INTER_NN); });
    expectTexts("pxkDecimateExt",
                { "(xMaskSize<0||yMaskSize<0)", "((xDst <= 0)||(yDst<=0))", "((xSrc <= 0)||(ySrc<=0))",
                  "(xDst>xSrc||yDst>ySrc)", "(srcImage->depth!=dstImage->depth)",
                  "(srcImage->dataOrder!=dstImage->dataOrder)", "srcImage->roi->xOffset >= srcImage->width",
                  "srcImage->roi->yOffset >= srcImage->height", unknown },
                [&] { pxkDecimateExt(*coi, *wide, 1, 0, 0, 1, PXK_INTER_SUPER, 3, -1); });
    expectTexts("pxkMirror",
                { "(srcImage->depth==32||dstImage->depth==32)", "(srcImage->depth!=dstImage->depth)",
                  "((flipAxis>1)||(flipAxis<-1))", "(nChannelsSrc != nChannelsDst)" },
                [&] { pxkMirror(*floats, *wide, 2); });
    gray->setMask(Picture::make(BITONAL));
    expectTexts("pxkMirror", { "(srcImage==dstImage && srcImage->maskROI != ((void *)0))" },
                [&] { pxkMirror(*gray, *gray, 0); });
}

// Numbers at the ends of what there is neither crash nor write outside the shape.
TEST(Warp, extremeTransformsAreHarmless)
{
    const struct {
        const char* name;
        size_t count; // of numbers in front of flags
        bool hasFlag;
    } rows[] = { { "pxkWarpAffine", 6, false }, { "pxkRotate", 5, false }, { "pxkWarpBilinearQ", 8, true } };
    for (const auto& row : rows) {
        for (uint64_t seed = 1; seed < 9000; ++seed) {
            Random random(seed);
            const int32_t depth = random.oneOf({ PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U });
            const Scene scene = { { Picture::make({ depth, 37, 9 }, random),
                                    Picture::make({ depth, 300, 5 }, random) } };
            Numbers n(row.count);
            for (double& number : n) {
                number = random.oneOf(
                    { 0.0, 1.0, -1.0, 0.5, 1e-7, 1e9, -1e18, 1e300, 1e-300, 300.5, HUGE_VAL, std::nan("") });
            }
            if (row.hasFlag) n.push_back(random.below(2));
            n.push_back(random.oneOf({ 0, 1, 2, 16, 17, 18 }));
            operationNamed(row.name).run(scene, n);
            for (const PicturePtr& picture : scene.images) EXPECT_EQ(picture->headerFault(), "");
        }
    }
}
