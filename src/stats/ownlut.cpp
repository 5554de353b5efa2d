// SPDX-License-Identifier: BSD-2-Clause
#include "ownlut.h"

// The first fault, as the text to report, or null.
static const char* ownTableFault(const PxkLUT* table, int32_t levels)
{
    if (table == nullptr) return "lut[k]==0";
    if (table->key == nullptr) return "lut[k]->key==0";
    if (table->value == nullptr) return "lut[k]->value==0";
    if (table->num < 2) return "lut[k]->num < 2";
    if (table->key[0] < 0) return "lut[k]->key[0] < 0";
    if (table->key[table->num - 1] > levels) return "lut[k]->key[lut[k]->num-1] > histSize";
    int32_t falls = 0;
    for (int32_t i = 0; i + 1 < table->num; ++i) falls |= table->key[i] > table->key[i + 1];
    return falls != 0 ? "lut[k]->key[i] > lut[k]->key[i+1]" : nullptr;
}

bool ownGoodTables(const OwnSite& site, PxkLUT* const* lut, int32_t count, int32_t levels)
{
    for (int32_t k = 0; k < count; ++k) {
        const char* const fault = ownTableFault(lut[k], levels);
        if (!ownPassed(site, { { fault != nullptr, PXK_StsBadArg, fault } })) return false;
    }
    return true;
}
