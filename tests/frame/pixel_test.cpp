// SPDX-License-Identifier: BSD-2-Clause
// What the table of operations has no room for: results of the handler, a ring image without memory, the counter.
#include "support/picture.h"
#include "support/reports.h"

TEST(Pixel, resultOfAFailureIsTheHandlers)
{
    startReports();
    pxkRedirectError([](int32_t, const char*, const char*, const char*, int32_t) { return int32_t(4711); });
    uint8_t pixel[4];
    EXPECT_EQ(pxkGetPixel(*Picture::make({}), -1, 0, pixel), 4711);
    EXPECT_EQ(pxkPutPixel(nullptr, 0, 0, pixel), 4711);
    startReports();
}

TEST(Rings, tooLarge)
{
    startReports();
    EXPECT_EQ(pxkCreateImageJaehne(PXK_DEPTH_32S, 65536, 65536), nullptr);
    EXPECT_EQ(recordedReports().back(),
              (Report { -4, "pxkCreateImageJaehne", "Not enough memory to allocate header for ImageJaehne" }));
    startReports();
}

TEST(Counter, goesOn)
{
    const uint64_t start = pxkGetKestriumCounter();
    uint64_t now = start;
    for (int32_t i = 0; i < 100000000 && now == start; ++i) now = pxkGetKestriumCounter();
    EXPECT_GT(now, start);
}
