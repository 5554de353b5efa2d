// Numbers that are rounded to 53 bits once. The x87 rounds a result to 64 bits when it computes it and to 53 when it is
// stored, unless its control word says otherwise; other processors compute doubles as they are stored.
#pragma once

#include <cfloat>
#include <cstdint>

// Stands in front of what computes doubles that a caller sees, and gives the caller's control word back.
struct OwnDoublePrecision {
#if FLT_EVAL_METHOD == 2 && defined(__i386__)
    OwnDoublePrecision()
    {
        __asm__ volatile("fnstcw %0" : "=m"(before) : : "memory");
        take(static_cast<uint16_t>((before & ~0x300) | 0x200));
    }
    ~OwnDoublePrecision()
    {
        take(before);
    }
    OwnDoublePrecision(const OwnDoublePrecision&) = delete;
    OwnDoublePrecision& operator=(const OwnDoublePrecision&) = delete;

private:
    static void take(uint16_t word)
    {
        __asm__ volatile("fldcw %0" : : "m"(word) : "memory");
    }
    uint16_t before;
#else
    OwnDoublePrecision() { } // no unused variable
#endif
};
