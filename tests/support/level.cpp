// SPDX-License-Identifier: BSD-2-Clause
// Takes the processor level that PXK_TEST_LEVEL names, for the whole program.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/ownprocessor.h"

static const bool isTaken = [] {
    const char* const name = getenv("PXK_TEST_LEVEL");
    if (name == nullptr) return false;
    const OwnLevel level = strcmp(name, "v4") == 0 ? OwnLevel::V4
        : strcmp(name, "v3") == 0                  ? OwnLevel::V3
                                                   : OwnLevel::BASELINE;
    if (level > ownProcessorLevel()) {
        printf("This processor has no level %s.\n", name);
        exit(0);
    }
    ownTakeLevel(level);
    return true;
}();
