/* SPDX-License-Identifier: BSD-2-Clause */
// Pixels of three narrow samples, taken apart and put together by permuted vectors. From a plain loop compilers make a
// chain of permutations of two vectors each, which takes two to three times as long; with wide samples they do well.
//
// 16 bytes are L samples. Place p of the k-th 16 bytes of pixels holds channel (L k + p) modulo 3. L is no multiple of
// 3: so among three of them each channel has every place once, and its sample i is at place (3 i + channel) modulo L.
// Masks bring a channel together, and one permutation brings its samples in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

// Where a processor permutes 16 bytes by one instruction, and the compiler has a word for it.
#if defined(__has_builtin) && (defined(__SSSE3__) || defined(__aarch64__))
#if __has_builtin(__builtin_shufflevector)
#define OWN_HAS_THIRDS
#endif
#endif

// Pixels that are worked on at least.
constexpr ptrdiff_t ownThirdsPixels = 32;

// Splits or joins n pixels of samples of so many bytes. What is read and what is written lie apart.
template <size_t BYTES> void ownSplitThirds(const uint8_t* from, uint8_t* const* rows, ptrdiff_t n);
template <size_t BYTES> void ownJoinThirds(const uint8_t* const* rows, uint8_t* to, ptrdiff_t n);

#ifdef OWN_HAS_THIRDS

// AVX-512 permutes 16-bit samples of two vectors by one instruction, as the loop wants it.
constexpr bool ownHasThirds(size_t sampleBytes)
{
#ifdef __AVX512BW__
    return sampleBytes == 1;
#else
    return sampleBytes <= 2;
#endif
}

// Longer vectors are two such groups of 48 bytes at once.
typedef uint8_t OwnGroup __attribute__((vector_size(16)));
#ifdef __AVX2__
typedef uint8_t OwnGroups __attribute__((vector_size(32)));
#else
typedef OwnGroup OwnGroups;
#endif
using OwnBytesOfGroups = std::make_index_sequence<sizeof(OwnGroups)>;

template <class V> inline V ownLoadVector(const uint8_t* from)
{
    V vector;
    memcpy(&vector, from, sizeof vector);
    return vector;
}

template <class V> inline void ownStoreVector(uint8_t* to, V vector)
{
    memcpy(to, &vector, sizeof vector);
}

// In row r, ones at the places p where p + r is a multiple of 3.
template <size_t BYTES> struct OwnThirdMasks {
    uint8_t rows[3][sizeof(OwnGroups)] = {};
    constexpr OwnThirdMasks()
    {
        for (size_t r = 0; r < 3; ++r) {
            for (size_t j = 0; j < sizeof(OwnGroups); ++j) rows[r][j] = (j % 16 / BYTES + r) % 3 == 0 ? 255 : 0;
        }
    }
};

template <size_t BYTES> struct OwnThirds {
    static constexpr size_t places = 16 / BYTES;
    static constexpr OwnThirdMasks<BYTES> masks {};

    // The channel's samples in vector k, or what the vector takes from the channel.
    template <size_t CHANNEL, size_t K> static OwnGroups share(OwnGroups v)
    {
        return v & ownLoadVector<OwnGroups>(masks.rows[(places * K + 3 - CHANNEL) % 3]);
    }

    template <size_t CHANNEL, size_t... J> static OwnGroups split(const OwnGroups (&v)[3], std::index_sequence<J...>)
    {
        const OwnGroups merged = share<CHANNEL, 0>(v[0]) | share<CHANNEL, 1>(v[1]) | share<CHANNEL, 2>(v[2]);
        return __builtin_shufflevector(
            merged, merged, (J / 16 * 16 + (3 * (J % 16 / BYTES) + CHANNEL) % places * BYTES + J % BYTES)...);
    }

    // The channel's samples at their places: 11 times 3 is 1 modulo 16, 8 and 4.
    template <size_t CHANNEL, size_t... J> static OwnGroups placed(OwnGroups v, std::index_sequence<J...>)
    {
        return __builtin_shufflevector(
            v, v, (J / 16 * 16 + 11 * (J % 16 / BYTES + places - CHANNEL) % places * BYTES + J % BYTES)...);
    }

    template <size_t K> static OwnGroups join(const OwnGroups (&v)[3])
    {
        return share<0, K>(v[0]) | share<1, K>(v[1]) | share<2, K>(v[2]);
    }
};

#ifdef __AVX2__

using OwnBytesOfGroup = std::make_index_sequence<16>;

template <size_t... J> inline OwnGroups ownGroupsOf(OwnGroup first, OwnGroup second, std::index_sequence<J...>)
{
    return __builtin_shufflevector(first, second, J...);
}

template <size_t FIRST, size_t... J> inline OwnGroup ownHalfOf(OwnGroups v, std::index_sequence<J...>)
{
    return __builtin_shufflevector(v, v, (FIRST + J)...);
}

inline OwnGroups ownLoadGroups(const uint8_t* from)
{
    return ownGroupsOf(ownLoadVector<OwnGroup>(from), ownLoadVector<OwnGroup>(from + 48), OwnBytesOfGroups {});
}

inline void ownStoreGroups(uint8_t* to, OwnGroups v)
{
    ownStoreVector(to, ownHalfOf<0>(v, OwnBytesOfGroup {}));
    ownStoreVector(to + 48, ownHalfOf<16>(v, OwnBytesOfGroup {}));
}

#else

inline OwnGroups ownLoadGroups(const uint8_t* from)
{
    return ownLoadVector<OwnGroups>(from);
}

inline void ownStoreGroups(uint8_t* to, OwnGroups v)
{
    ownStoreVector(to, v);
}

#endif

// Calls each(i) for the first byte of each vector of a channel; the last one begins inside the one before, as a rule.
template <size_t BYTES, class F> inline void ownForGroups(ptrdiff_t n, const F& each)
{
    constexpr ptrdiff_t step = sizeof(OwnGroups);
    const ptrdiff_t last = n * BYTES - step;
    for (ptrdiff_t i = 0; i < last; i += step) each(i);
    each(last);
}

template <size_t BYTES> void ownSplitThirds(const uint8_t* from, uint8_t* const* rows, ptrdiff_t n)
{
    using Thirds = OwnThirds<BYTES>;
    uint8_t *const first = rows[0], *const second = rows[1], *const third = rows[2];
    ownForGroups<BYTES>(n, [=](ptrdiff_t i) {
        const uint8_t* const pixels = from + 3 * i;
        const OwnGroups v[3] = { ownLoadGroups(pixels), ownLoadGroups(pixels + 16), ownLoadGroups(pixels + 32) };
        ownStoreVector(first + i, Thirds::template split<0>(v, OwnBytesOfGroups {}));
        ownStoreVector(second + i, Thirds::template split<1>(v, OwnBytesOfGroups {}));
        ownStoreVector(third + i, Thirds::template split<2>(v, OwnBytesOfGroups {}));
    });
}

template <size_t BYTES> void ownJoinThirds(const uint8_t* const* rows, uint8_t* to, ptrdiff_t n)
{
    using Thirds = OwnThirds<BYTES>;
    const uint8_t *const first = rows[0], *const second = rows[1], *const third = rows[2];
    ownForGroups<BYTES>(n, [=](ptrdiff_t i) {
        const OwnGroups v[3] = { Thirds::template placed<0>(ownLoadVector<OwnGroups>(first + i), OwnBytesOfGroups {}),
                                 Thirds::template placed<1>(ownLoadVector<OwnGroups>(second + i), OwnBytesOfGroups {}),
                                 Thirds::template placed<2>(ownLoadVector<OwnGroups>(third + i), OwnBytesOfGroups {}) };
        ownStoreGroups(to + 3 * i, Thirds::template join<0>(v));
        ownStoreGroups(to + 3 * i + 16, Thirds::template join<1>(v));
        ownStoreGroups(to + 3 * i + 32, Thirds::template join<2>(v));
    });
}

#else

constexpr bool ownHasThirds(size_t)
{
    return false;
}

#endif
