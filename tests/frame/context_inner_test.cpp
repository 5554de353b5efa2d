// A thread's context from the inside, and what happens when memory is short.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>

#include "frame/owncontext.h"
#include "support/alloc_failure.h"

namespace {

void fill(PxkContext& context)
{
    for (int i = 0; i < OWN_FOURIER_ENTRIES; i += 31) { // first and last of every list
        OwnFourierCaches& fourier = context.fourier;
        fourier.work[i] = static_cast<int32_t*>(pxkMalloc(8));
        fourier.workFP[i] = static_cast<float*>(pxkMalloc(8));
        fourier.bitReversal[i] = static_cast<int32_t*>(pxkMalloc(8));
        fourier.twiddleRadix4[i] = static_cast<float*>(pxkMalloc(8));
        fourier.twiddleRadix2[i] = static_cast<float*>(pxkMalloc(8));
        fourier.untangle[i] = static_cast<float*>(pxkMalloc(8));
        fourier.twiddleFixed[i] = static_cast<int16_t*>(pxkMalloc(8));
        fourier.directFP[i] = static_cast<float*>(pxkMalloc(8));
        fourier.direct[i] = static_cast<int16_t*>(pxkMalloc(8));
        fourier.workSize[i] = fourier.workSizeFP[i] = fourier.directSizeFP[i] = fourier.directSize[i] = 2;
    }
    context.dctTable = static_cast<float*>(pxkMalloc(8));
    context.dctTableSize = 2;
    for (; context.dctWeightCount < OWN_DCT_WEIGHTS; ++context.dctWeightCount)
        context.dctWeights[context.dctWeightCount] = static_cast<float*>(pxkMalloc(8));
}

TEST(Context, releaseForgetsEveryTable)
{
    PxkContext& context = ownContext();
    context.status = -5;
    failAllocation(0);
    fill(context);
    EXPECT_GT(blocksLeft(), OWN_DCT_WEIGHTS);
    ownReleaseCaches(context);
    EXPECT_EQ(blocksLeft(), 0);
    const auto* bytes = reinterpret_cast<const unsigned char*>(&context.fourier);
    for (size_t i = 0; i < sizeof context.fourier; ++i) ASSERT_EQ(bytes[i], 0) << i;
    for (const float* weights : context.dctWeights) EXPECT_EQ(weights, nullptr);
    EXPECT_EQ(context.dctWeightCount, 0);
    EXPECT_EQ(context.dctTable, nullptr);
    EXPECT_EQ(context.dctTableSize, -1);
    EXPECT_EQ(pxkGetErrStatus(), -5);
    pxkSetErrStatus(0);
}

TEST(Context, threadsTakeTheirTablesAlong)
{
    PxkContext* first = &ownContext();
    PxkContext* second = nullptr;
    failAllocation(0);
    std::thread([&] {
        second = &ownContext();
        EXPECT_EQ(second, &ownContext());
        EXPECT_EQ(second->dctTableSize, -1);
        fill(*second);
    }).join();
    EXPECT_LE(blocksLeft(), 0); // below 0 where the context itself is a block, taken by calloc and freed
    EXPECT_NE(first, second);
    EXPECT_EQ(first, &ownContext());
}

} // namespace

#ifndef _WIN32

#include <unistd.h>

static bool callocFails;

extern "C" void* __real_calloc(size_t count, size_t size);
extern "C" void* __wrap_calloc(size_t count, size_t size)
{
    return callocFails ? nullptr : __real_calloc(count, size);
}

static void beginThreadWithoutMemory()
{
    std::thread([] {
        callocFails = true;
        pxkGetErrStatus();
    }).join();
}

TEST(ContextDeathTest, processEndsWithoutMemoryForIt)
{
    EXPECT_EXIT(beginThreadWithoutMemory(), testing::ExitedWithCode(1),
                testing::Matcher<const std::string&>("PXKib. Problem to allocate memory for TLS PXK context.\n"));
}

static void reportWithoutMemory()
{
    pxkRedirectError(nullptr);
    pxkSetErrMode(PXK_ErrModeLeaf);
    failAllocation(1);
    _exit(pxkError(PXK_StsBadArg, "f", "c", "a.cpp", 7) == PXK_StsBadArg ? 42 : 99);
}

TEST(ContextDeathTest, boxAsksWithoutMemoryForItsText)
{
    EXPECT_EXIT(
        reportWithoutMemory(), testing::ExitedWithCode(42),
        testing::Matcher<const std::string&>("\nPXK 2.1\nBad argument\n[Y]es, [N]o: No (no terminal to ask)\n"));
}

#endif
