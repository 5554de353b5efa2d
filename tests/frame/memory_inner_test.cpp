// SPDX-License-Identifier: BSD-2-Clause
// Operations under shortage of memory: what they say, and that nothing is lost.
#include "frame/owncontext.h"
#include "support/alloc_failure.h"
#include "support/operations.h"

using Reports = std::vector<Report>;

TEST(Memory, headersAndBlocks)
{
    startReports();
    forEachFailingAllocation([](int64_t n) {
        PxkImage* const image =
            pxkCreateImageHeader(1, 0, PXK_DEPTH_8U, "GRAY", "G   ", 0, 0, 4, 8, 8, nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(image == nullptr, n == 1);
        if (image == nullptr) return;
        pxkAllocateImage(image, 1, 3);
        EXPECT_EQ(image->imageData == nullptr, n == 2);
        EXPECT_EQ(image->imageDataBase == nullptr, n == 2);
        pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
    });
    expectNoReports();
}

TEST(Memory, clone)
{
    static const char* const texts[] = { "Not enough memory to allocate header for clone image",
                                         "Not enough memory to allocate roi for clone image",
                                         "Not enough memory to allocate imageData for clone image" };
    for (const int32_t depth : { PXK_DEPTH_16S, PXK_DEPTH_32F }) {
        const PicturePtr p = Picture::make(PictureSpec { depth }.region(1, 1, 2, 2));
        p->header.imageDataBase = pxkMalloc(8); // which is not the clone's
        const PicturePtr want = p->copy();
        forEachFailingAllocation([&](int64_t n) {
            startReports();
            PxkImage* const clone = pxkCloneImage(*p);
            EXPECT_EQ(recordedReports(),
                      n == 0 ? Reports() : Reports({ { PXK_StsNoMem, "pxkCloneImage", texts[n - 1] } }));
            EXPECT_EQ(clone == nullptr, n != 0);
            pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
        });
        EXPECT_TRUE(samePicture(*want, *p));
        pxkFree(p->header.imageDataBase);
    }
}

// Every allocation of every operation of the table fails once. The call ends as the row states, or does without.
class OperationsMemory : public ::testing::TestWithParam<std::string> { };

INSTANTIATE_TEST_SUITE_P(All, OperationsMemory, ::testing::ValuesIn(operationNames()),
                         [](const auto& info) { return info.param; });

// What is kept for later calls is no loss.
static void forgetTables()
{
    ownReleaseTransform(ownContext().fourier);
    ownReleaseTransform(ownContext().cosine);
}

static void expectEndings(const Operation& op, const Trial& trial, const Case& c)
{
    const Scene old = op.scene(c), complete = old.copy();
    const Numbers n = trial.numbers.empty() ? op.numbersOf(c, old) : trial.numbers;
    SCOPED_TRACE(c.text());
    const Ending masksNotJoined({ { PXK_StsNoMem, trial.func, "Out of memory" } });
    ASSERT_EQ(op.run(complete, n), Ending());
    int64_t count = 0;
    const auto runFailing = [&](int64_t failing, bool laterToo) {
        const Scene got = old.copy();
        forgetTables();
        failAllocation(failing, laterToo);
        const Ending ending = op.run(got, n);
        count = allocationsSince();
        if (!laterToo) { // the next call finds nothing that the failure left behind
            EXPECT_EQ(op.run(old.copy(), n), Ending());
        }
        forgetTables();
        EXPECT_EQ(blocksLeft(), 0) << "allocation " << failing;
        failAllocation(0);
        const bool isComplete = ending == Ending() && sameScene(complete, got, BITS);
        const bool isStated = ending == op.noMemory(trial.func, 0, got) || (op.isPointwise && ending == masksNotJoined);
        EXPECT_TRUE(isComplete || (failing != 0 && isStated)) << "allocation " << failing << ": " << ending;
        EXPECT_TRUE(isComplete || isPartOf(old, complete, got, op.keepsTiles)) << "allocation " << failing;
    };
    runFailing(0, false);
    const int64_t most = count;
    for (int64_t failing = 1; failing <= most && !::testing::Test::HasFailure(); ++failing) {
        for (const bool laterToo : { false, true }) runFailing(failing, laterToo);
    }
}

TEST_P(OperationsMemory, endsAsStated)
{
    const Operation& op = operationNamed(GetParam());
    if (!op.noMemory) return; // it has a test of its own
    for (const Trial& trial : op.trialsOf()) {
        for (uint64_t seed = 1; seed <= 4; ++seed) {
            Case c = op.plainCase(seed);
            c.depth = trial.depth;
            c.masks = seed % 2 == 0 && op.hasMasks ? ALL_IMAGES : 0;
            c.tiling = seed > 2 ? ALL_IMAGES : 0;
            expectEndings(op, trial, c);
        }
    }
}
