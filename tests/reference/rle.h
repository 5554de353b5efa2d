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
    const int64_t step = isRle8 ? (width + 3) / 4 * 4 : ((width + 1) / 2 + 3) / 4 * 4;
    Decoded d;
    d.rows.assign(step * height, 0);
    size_t at = 0;
    int64_t x = 0, y = 0, address = 0;
    bool isOutside = false;
    // A nibble: of the byte at `where`, the high one or the low one. Only real pixels must lie inside.
    const auto nibble = [&](int64_t where, bool isHigh, int32_t value, bool isReal) {
        if (where >= step * height) {
            isOutside |= isReal;
            return;
        }
        uint8_t& byte = d.rows[where];
        byte = static_cast<uint8_t>(isHigh ? (byte & 0x0F) | value << 4 : (byte & 0xF0) | value);
    };
    const auto pixels = [&](int32_t count, auto byteOf) {
        for (int32_t i = 0; isRle8 && i < count; ++i, ++address, ++x) {
            if (address < step * height)
                d.rows[address] = byteOf(i);
            else
                isOutside = true;
        }
        const int64_t end = x + count;
        for (int32_t i = 0; !isRle8 && x < end; ++i, x += 2) {
            const bool isEven = x % 2 == 0, isSecondReal = x + 1 < end;
            nibble(address, isEven, byteOf(i) >> 4, true);
            nibble(isEven ? address : address + 1, !isEven, byteOf(i) & 15, isSecondReal);
            ++address;
        }
        if (!isRle8 && x > end) {
            --x;
            if (x % 2 != 0) --address;
        }
    };
    while (d.fault.empty()) {
        if (x > width || y > height || isOutside) {
            d.fault = "biHeight or biWidth";
            break;
        }
        const int32_t first = s[at++];
        if (first != 0) {
            const uint8_t value = s[at++];
            pixels(first, [value](int32_t) { return value; });
        } else if (s[at] == 0) {
            if (x != width) d.fault = "biWidth";
            ++at;
            ++y;
            x = 0;
            address = y * step;
        } else if (s[at] == 1) {
            if (y != height && y != height - 1) d.fault = "biHeight";
            d.consumed = at + 1;
            return d;
        } else if (s[at] == 2) {
            const int32_t dx = s[at + 1], dy = s[at + 2];
            address += dy * step + (isRle8 ? dx : dx / 2 + (x % 2 != dx % 2 ? 1 : 0));
            x += dx;
            y += dy;
            if (x > width || y > height) d.fault = "bad Delta";
        } else {
            const int32_t count = s[at++];
            pixels(count, [&](int32_t i) { return s[at + i]; });
            at += isRle8 ? count : (count + 1) / 2;
            if ((at + isOdd) % 2 != 0) ++at;
        }
    }
    return d;
}

} // namespace model
