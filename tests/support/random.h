/* SPDX-License-Identifier: BSD-2-Clause */
// The only source of chance in the tests: the same numbers on every system, from a seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

class Random {
public:
    explicit Random(uint64_t seed)
        : state(seed)
    {
    }

    // SplitMix64, Steele, Lea and Flood 2014.
    uint64_t next()
    {
        uint64_t z = state += 0x9E3779B97F4A7C15u;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    int32_t below(int32_t limit) { return static_cast<int32_t>((next() >> 32) % static_cast<uint32_t>(limit)); }
    int32_t between(int32_t low, int32_t high) { return low + below(high - low + 1); }
    bool oneIn(int32_t n) { return below(n) == 0; }
    template <class T> T oneOf(std::initializer_list<T> items) { return items.begin()[below(int32_t(items.size()))]; }
    template <class T, size_t N> T oneOf(const T (&items)[N]) { return items[below(static_cast<int32_t>(N))]; }

private:
    uint64_t state;
};
