// SPDX-License-Identifier: BSD-2-Clause
// A thread's context from the inside, and what happens when memory is short.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

#include "frame/ownbuffer.h"
#include "frame/owncontext.h"
#include "support/alloc_failure.h"

namespace {

void fill(PxkContext& context)
{
    for (OwnTransformCaches* caches : { &context.fourier, &context.cosine }) {
        for (OwnTransformTable& table : caches->tables) table = { 2, OwnTableKind::LINES, pxkMalloc(8) };
        caches->work = pxkMalloc(8);
        caches->workBytes = 8;
    }
}

TEST(Context, releaseForgetsEveryTable)
{
    PxkContext& context = ownContext();
    failAllocation(0);
    fill(context);
    EXPECT_EQ(blocksLeft(), 2 * (OWN_TRANSFORM_TABLES + 1));
    ownReleaseTransform(context.fourier);
    ownReleaseTransform(context.cosine);
    EXPECT_EQ(blocksLeft(), 0);
    const OwnTransformCaches nothing = {};
    EXPECT_EQ(memcmp(&context.fourier, &nothing, sizeof nothing), 0);
}

TEST(Context, threadsTakeTheirTablesAlong)
{
    PxkContext* first = &ownContext();
    PxkContext* second = nullptr;
    failAllocation(0);
    std::thread([&] {
        second = &ownContext();
        EXPECT_EQ(second, &ownContext());
        fill(*second);
    }).join();
    EXPECT_LE(blocksLeft(), 0); // below 0 where the context itself is a block, taken by calloc and freed
    EXPECT_NE(first, second);
    EXPECT_EQ(first, &ownContext());
}

// The first call asks for each buffer, the second for all of them at once, and later ones for none.
TEST(Context, callsTakeTheMemoryOfEarlierOnes)
{
    failAllocation(0);
    for (const int64_t allocations : { 4, 5, 5 }) {
        OwnBuffer<uint8_t> first = ownBuffer<uint8_t>(1000), second = ownBuffer<uint8_t>(50000);
        const OwnBuffer<uint8_t> third = ownBuffer<uint8_t>(10);
        memset(third.get(), 3, 10);
        memset(second.get(), 2, 50000);
        first.reset(); // not the last one
        first = ownBuffer<uint8_t>(1000);
        memset(first.get(), 1, 1000);
        EXPECT_EQ(third[0] * third[9], 9);
        EXPECT_EQ(second[0] * second[49999], 4);
        EXPECT_EQ(allocationsSince(), allocations);
    }
    EXPECT_EQ(blocksLeft(), 0);
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
