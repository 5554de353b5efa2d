// SPDX-License-Identifier: BSD-2-Clause
#include "platform/ownprocessor.h"

#include <cstdint>

#include <cpuid.h>

struct OwnLeaf {
    uint32_t a, b, c, d;
};

// Zeros where the processor does not know the leaf.
static OwnLeaf ownLeaf(uint32_t leaf)
{
    OwnLeaf registers = {};
    __get_cpuid_count(leaf, 0, &registers.a, &registers.b, &registers.c, &registers.d);
    return registers;
}

static constexpr bool ownHasBits(uint32_t value, uint32_t bits)
{
    return (value & bits) == bits;
}

// Which registers the operating system saves when it changes threads.
__attribute__((target("xsave"))) static uint32_t ownSavedRegisters()
{
    return static_cast<uint32_t>(__builtin_ia32_xgetbv(0));
}

OwnLevel ownProcessorLevel()
{
    constexpr uint32_t avxRegisters = 0x6;     // 128 and 256 bits
    constexpr uint32_t avx512Registers = 0xE6; // and masks and 512 bits
    const uint32_t basic = ownLeaf(1).c;
    const uint32_t further = ownLeaf(7).b;
    const uint32_t extended = ownLeaf(0x80000001).c;
    const bool hasVectors = ownHasBits(basic, bit_OSXSAVE | bit_AVX | bit_FMA | bit_F16C | bit_MOVBE | bit_POPCNT)
        && ownHasBits(further, bit_AVX2 | bit_BMI | bit_BMI2) && ownHasBits(extended, bit_LZCNT);
    if (!hasVectors || !ownHasBits(ownSavedRegisters(), avxRegisters)) return OwnLevel::BASELINE;
    const bool hasWide = ownHasBits(further, bit_AVX512F | bit_AVX512BW | bit_AVX512CD | bit_AVX512DQ | bit_AVX512VL);
    return hasWide && ownHasBits(ownSavedRegisters(), avx512Registers) ? OwnLevel::V4 : OwnLevel::V3;
}
