// SPDX-License-Identifier: BSD-2-Clause
#include "ownsplit.h"

#include "owndepth.h"
#include "ownivdep.h"
#include "ownthirds.h"

// ---- loops ---------------------------------------------------------------------------------------------------------

// The channels of a pixel are read and written in one turn of the loop: so the compiler moves whole pixels and permutes
// them, instead of gathering single samples.
template <class T, int32_t UNIT, int32_t COUNT>
static void ownSplitBy(const uint8_t* from, uint8_t* const* rows, ptrdiff_t n)
{
    const T* const s = reinterpret_cast<const T*>(from);
    T* const first = reinterpret_cast<T*>(rows[0]);
    T* const second = reinterpret_cast<T*>(rows[1]);
    T* const third = reinterpret_cast<T*>(COUNT > 2 ? rows[2] : nullptr);
    T* const fourth = reinterpret_cast<T*>(COUNT > 3 ? rows[3] : nullptr);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        first[i] = s[i * UNIT];
        second[i] = s[i * UNIT + 1];
        if constexpr (COUNT > 2) third[i] = s[i * UNIT + 2];
        if constexpr (COUNT > 3) fourth[i] = s[i * UNIT + 3];
    }
}

template <class T, int32_t COUNT> static void ownJoinBy(const uint8_t* const* rows, uint8_t* to, ptrdiff_t n)
{
    T* const d = reinterpret_cast<T*>(to);
    const T* const first = reinterpret_cast<const T*>(rows[0]);
    const T* const second = reinterpret_cast<const T*>(rows[1]);
    const T* const third = reinterpret_cast<const T*>(COUNT > 2 ? rows[2] : nullptr);
    const T* const fourth = reinterpret_cast<const T*>(COUNT > 3 ? rows[3] : nullptr);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        d[i * COUNT] = first[i];
        d[i * COUNT + 1] = second[i];
        if constexpr (COUNT > 2) d[i * COUNT + 2] = third[i];
        if constexpr (COUNT > 3) d[i * COUNT + 3] = fourth[i];
    }
}

// ---- the choice ----------------------------------------------------------------------------------------------------

bool ownCanSplit(int32_t unitSamples, int32_t count)
{
    return count > 1 && unitSamples <= 4 && (count == unitSamples || (unitSamples == 4 && count == 3));
}

void ownSplitPixels(const uint8_t* from, int32_t unitSamples, int32_t sampleBytes, uint8_t* const* rows, int32_t count,
                    ptrdiff_t n)
{
    ownForSampleBytes(sampleBytes, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if (unitSamples == 2) return ownSplitBy<T, 2, 2>(from, rows, n);
        if constexpr (ownHasThirds(sizeof(T))) {
            if (unitSamples == 3 && n >= ownThirdsPixels) return ownSplitThirds<sizeof(T)>(from, rows, n);
        }
        if (unitSamples == 3) return ownSplitBy<T, 3, 3>(from, rows, n);
        if (count == 3) return ownSplitBy<T, 4, 3>(from, rows, n);
        ownSplitBy<T, 4, 4>(from, rows, n);
    });
}

void ownJoinPixels(const uint8_t* const* rows, int32_t count, int32_t sampleBytes, uint8_t* to, ptrdiff_t n)
{
    ownForSampleBytes(sampleBytes, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if (count == 2) return ownJoinBy<T, 2>(rows, to, n);
        if constexpr (ownHasThirds(sizeof(T))) {
            if (count == 3 && n >= ownThirdsPixels) return ownJoinThirds<sizeof(T)>(rows, to, n);
        }
        if (count == 3) return ownJoinBy<T, 3>(rows, to, n);
        ownJoinBy<T, 4>(rows, to, n);
    });
}
