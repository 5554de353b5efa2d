/* SPDX-License-Identifier: BSD-2-Clause */
// Model of the run-length codes: a decoder that follows a stream pixel by pixel.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace model {

struct Decoded {
    std::string fault; // what is mismatched, or empty
    std::vector<uint8_t> rows;
    size_t consumed = 0;
};

// Rows from the bottom. `isOdd`: the stream begins at an odd address.
inline Decoded decodeRle(bool isRle8, int32_t width, int32_t height, const std::vector<uint8_t>& s, bool isOdd)
{
    const int64_t perByte = isRle8 ? 1 : 2, step = ((width + perByte - 1) / perByte + 3) / 4 * 4;
    Decoded d;
    d.rows.assign(step * height, 0);
    size_t at = 0;
    int64_t x = 0, y = 0, place = 0; // of the next pixel, counted in pixels from the first row's start
    bool isOutside = false;
    // Whole bytes are taken, so half of the last one may go to the pixel behind, which need not lie inside.
    const auto pixels = [&](int64_t count, const auto& byteOf) {
        for (int64_t i = 0; i < (count + perByte - 1) / perByte * perByte; ++i) {
            const int64_t byte = (place + i) / perByte, value = byteOf(i / perByte);
            const bool isHigh = (place + i) % 2 == 0, takesHigh = i % 2 == 0;
            if (byte >= step * height) {
                isOutside |= i < count;
            } else if (isRle8) {
                d.rows[byte] = static_cast<uint8_t>(value);
            } else {
                const int64_t half = takesHigh ? value >> 4 : value & 15;
                d.rows[byte] =
                    static_cast<uint8_t>(isHigh ? (d.rows[byte] & 15) | half << 4 : (d.rows[byte] & 0xF0) | half);
            }
        }
        x += count;
        place += count;
    };
    while (d.fault.empty()) {
        if (x > width || y > height || isOutside) {
            d.fault = "biHeight or biWidth";
            break;
        }
        const int32_t first = s[at++];
        if (first != 0) {
            const uint8_t value = s[at++];
            pixels(first, [value](int64_t) { return value; });
        } else if (s[at] == 0) {
            if (x != width) d.fault = "biWidth";
            ++at;
            ++y;
            x = 0;
            place = y * step * perByte;
        } else if (s[at] == 1) {
            if (y != height && y != height - 1) d.fault = "biHeight";
            d.consumed = at + 1;
            return d;
        } else if (s[at] == 2) {
            const int32_t dx = s[at + 1], dy = s[at + 2];
            const int64_t byte = place / perByte + dy * step + (isRle8 ? dx : dx / 2 + (x % 2 != dx % 2 ? 1 : 0));
            x += dx;
            y += dy;
            place = byte * perByte + x % perByte;
            if (x > width || y > height) d.fault = "bad Delta";
        } else {
            const int32_t count = s[at++];
            pixels(count, [&](int64_t i) { return s[at + i]; });
            at += isRle8 ? count : (count + 1) / 2;
            if ((at + isOdd) % 2 != 0) ++at;
        }
    }
    return d;
}

} // namespace model
