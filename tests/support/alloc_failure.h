/* SPDX-License-Identifier: BSD-2-Clause */
// Ordered failures of malloc in the inner tests, which are linked with --wrap=malloc and --wrap=free.
#pragma once

#include <cstdint>

#include <gtest/gtest.h>

// From now on allocations are counted, and the n-th one fails (0: none does), or all from it on.
void failAllocation(int64_t n, bool laterToo = false);
int64_t allocationsSince(); // since failAllocation, the failed one included
int64_t blocksLeft();       // allocated since failAllocation and not freed, less older blocks freed since then

// Runs `call` once for each of its allocations, that one failing (or all from it on), and once undisturbed. `call` gets
// the number of the failing allocation, 0 in the undisturbed run, and must free what it is given. No run may leave a
// block behind.
template <class F> void forEachFailingAllocation(F&& call, bool laterToo = false)
{
    failAllocation(0);
    call(int64_t(0));
    const int64_t count = allocationsSince();
    EXPECT_EQ(blocksLeft(), 0) << "without a failure";
    for (int64_t n = 1; n <= count; ++n) {
        failAllocation(n, laterToo);
        call(n);
        EXPECT_EQ(blocksLeft(), 0) << "allocation " << n << " of " << count << " failing";
    }
    failAllocation(0);
}
