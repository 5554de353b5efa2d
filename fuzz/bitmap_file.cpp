// SPDX-License-Identifier: BSD-2-Clause
// Any bytes as a bitmap file.
#include "bitmapfile.h"
#include "fuzzinput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzzStart();
    BitmapFile file;
    // The size is said in the first part of the file; large pictures take memory and time only.
    int32_t sides[2] = { 0, 0 };
    if (size >= 26) memcpy(sides, data + 18, sizeof sides);
    if (llabs(static_cast<int64_t>(sides[0])) * llabs(static_cast<int64_t>(sides[1])) > fuzzMostBytes) return 0;
    if (readBitmapBytes(&file, data, size) != nullptr) return 0;
    fuzzExpect(file.image != nullptr && file.image->imageData != nullptr);
    releaseBitmap(&file);
    return 0;
}
