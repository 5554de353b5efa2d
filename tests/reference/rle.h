// Model of the run-length codes: a decoder that follows a stream pixel by pixel, and an encoder for eight bits.
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

// Rows of one byte a pixel, as they are stored.
inline std::vector<uint8_t> encodeRle8(const std::vector<std::vector<uint8_t>>& rows)
{
    std::vector<uint8_t> out;
    const auto pair = [&](size_t a, uint8_t b) { out.insert(out.end(), { static_cast<uint8_t>(a), b }); };
    for (const std::vector<uint8_t>& p : rows) {
        const size_t w = p.size();
        size_t x = 0;
        while (x + 3 < w) {
            if (p[x] == p[x + 1]) {
                size_t n = 2;
                while (x + n < w && p[x + n] == p[x] && n < 255) ++n;
                pair(n, p[x]);
                x += n;
            } else if (p[x + 1] == p[x + 2]) {
                pair(1, p[x++]);
            } else if (p[x + 2] == p[x + 3]) {
                pair(1, p[x++]);
                pair(1, p[x++]);
            } else {
                size_t n = 3;
                const auto opensRun = [&](size_t q) { return q + 2 < w && p[q] == p[q + 1] && p[q] == p[q + 2]; };
                while (x + n < w && n < 255 && !opensRun(x + n)) ++n;
                pair(0, static_cast<uint8_t>(n));
                out.insert(out.end(), p.begin() + x, p.begin() + x + n);
                if (n % 2 != 0) out.push_back(0);
                x += n;
            }
        }
        while (x < w) pair(1, p[x++]);
        pair(0, 0);
    }
    pair(0, 1);
    return out;
}

} // namespace model
