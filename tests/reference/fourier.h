// Slow models of the transforms: sums as they are defined, and fixed-point lines one at a time.
#pragma once

#include <cmath>
#include <complex>
#include <functional>
#include <map>
#include <vector>

#include "frame.h"

const double PI = 3.14159265358979323846;

// One channel of the work.
template <class Value> struct Grid {
    Grid(int32_t width, int32_t height)
        : width(width)
        , height(height)
        , values(static_cast<size_t>(width) * height)
    {
    }
    Value& at(int32_t x, int32_t y) { return values[static_cast<size_t>(y) * width + x]; }
    const Value& at(int32_t x, int32_t y) const { return values[static_cast<size_t>(y) * width + x]; }

    int32_t width, height;
    std::vector<Value> values;
};

// Calls change(line) for each row, then for each column.
template <class Value> void forEachLine(Grid<Value>& grid, const std::function<void(std::vector<Value>&)>& change)
{
    for (int32_t y = 0; y < grid.height; ++y) {
        std::vector<Value> line(&grid.at(0, y), &grid.at(0, y) + grid.width);
        change(line);
        for (int32_t x = 0; x < grid.width; ++x) grid.at(x, y) = line[x];
    }
    for (int32_t x = 0; x < grid.width; ++x) {
        std::vector<Value> line;
        for (int32_t y = 0; y < grid.height; ++y) line.push_back(grid.at(x, y));
        change(line);
        for (int32_t y = 0; y < grid.height; ++y) grid.at(x, y) = line[y];
    }
}

// ---- the packed layout ---------------------------------------------------------------------------------------------

struct Frequency {
    int32_t k, l;
    bool isImaginary;
};

inline std::pair<int32_t, bool> packedElement(int32_t i, int32_t n)
{
    const bool isLast = n % 2 == 0 && i == n - 1;
    return { isLast ? n / 2 : (i + 1) / 2, !isLast && i > 0 && i % 2 == 0 };
}

inline Frequency packedPlace(int32_t x, int32_t y, int32_t width, int32_t height)
{
    const auto across = packedElement(x, width), down = packedElement(y, height);
    const bool isEdge = across.first == 0 || 2 * across.first == width;
    return { across.first, isEdge ? down.first : y, isEdge ? down.second : across.second };
}

// ---- sums ----------------------------------------------------------------------------------------------------------

using Spectrum = Grid<std::complex<double>>;

inline void transform(Spectrum& grid, int32_t sign)
{
    forEachLine<std::complex<double>>(grid, [&](std::vector<std::complex<double>>& line) {
        const int64_t n = int64_t(line.size());
        std::vector<std::complex<double>> turns, sums(line.size());
        for (int64_t k = 0; k < n; ++k) turns.push_back(std::polar(1.0, sign * 2 * PI * double(k) / double(n)));
        for (int64_t k = 0; k < n; ++k)
            for (int64_t m = 0; m < n; ++m) sums[k] += line[m] * turns[k * m % n];
        line = sums;
    });
}

inline Grid<double> modelPack(const Grid<double>& values, int32_t sign, double scale)
{
    Spectrum spectrum(values.width, values.height);
    std::copy(values.values.begin(), values.values.end(), spectrum.values.begin());
    transform(spectrum, sign);
    Grid<double> packed(values.width, values.height);
    for (int32_t y = 0; y < values.height; ++y)
        for (int32_t x = 0; x < values.width; ++x) {
            const Frequency at = packedPlace(x, y, values.width, values.height);
            const std::complex<double> value = spectrum.at(at.k, at.l);
            packed.at(x, y) = scale * (at.isImaginary ? value.imag() : value.real());
        }
    return packed;
}

inline Grid<double> modelUnpack(const Grid<double>& packed, int32_t sign, double scale)
{
    const int32_t width = packed.width, height = packed.height;
    Spectrum spectrum(width, height);
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const Frequency at = packedPlace(x, y, width, height);
            const int32_t k = (width - at.k) % width, l = (height - at.l) % height;
            const std::complex<double> part =
                at.isImaginary ? std::complex<double>(0, packed.at(x, y)) : packed.at(x, y);
            spectrum.at(at.k, at.l) += part;
            if (k != at.k || l != at.l) spectrum.at(k, l) += std::conj(part);
        }
    transform(spectrum, sign);
    Grid<double> values(width, height);
    for (size_t i = 0; i < values.values.size(); ++i) values.values[i] = scale * spectrum.values[i].real();
    return values;
}

inline Grid<double> modelCosine(Grid<double> grid, bool isForward)
{
    forEachLine<double>(grid, [&](std::vector<double>& line) {
        const size_t n = line.size();
        std::vector<double> sums(n);
        for (size_t u = 0; u < n; ++u)
            for (size_t i = 0; i < n; ++i) {
                const double factor = std::sqrt((u == 0 ? 1.0 : 2.0) / double(n))
                    * std::cos(double((2 * i + 1) * u % (4 * n)) * PI / double(2 * n));
                sums[isForward ? u : i] += factor * line[isForward ? i : u];
            }
        line = sums;
    });
    return grid;
}

// Value by value; `multiply` is the product in the depth's arithmetic.
inline void modelMultiplySpectra(const Grid<double>& a, const Grid<double>& b, bool wraps, Grid<double>& product)
{
    std::map<std::pair<int32_t, int32_t>, std::array<double, 4>> values;
    const auto forEach = [&](const std::function<void(int32_t x, int32_t y, std::array<double, 4>&, bool)>& visit) {
        for (int32_t y = 0; y < a.height; ++y)
            for (int32_t x = 0; x < a.width; ++x) {
                const Frequency at = packedPlace(x, y, a.width, a.height);
                visit(x, y, values[{ at.k, at.l }], at.isImaginary);
            }
    };
    forEach([&](int32_t x, int32_t y, std::array<double, 4>& v, bool isImaginary) {
        v[isImaginary] = a.at(x, y);
        v[2 + isImaginary] = b.at(x, y);
    });
    forEach([&](int32_t x, int32_t y, std::array<double, 4>& v, bool isImaginary) {
        const double sum = isImaginary ? v[0] * v[3] + v[1] * v[2] : v[0] * v[2] - v[1] * v[3];
        product.at(x, y) = wraps ? double(int32_t(uint32_t(int64_t(sum)))) : sum;
    });
}

// ---- fixed point ---------------------------------------------------------------------------------------------------

struct Fixed {
    int32_t re = 0, im = 0;
};

inline int32_t wrapped(int64_t value)
{
    return int32_t(uint32_t(value));
}
inline Fixed operator+(Fixed a, Fixed b)
{
    return { wrapped(int64_t(a.re) + b.re), wrapped(int64_t(a.im) + b.im) };
}
inline Fixed operator-(Fixed a, Fixed b)
{
    return { wrapped(int64_t(a.re) - b.re), wrapped(int64_t(a.im) - b.im) };
}
inline Fixed conjugate(Fixed a)
{
    return { a.re, wrapped(-int64_t(a.im)) };
}

// x t + y u, products without the lowest bits of x and y, over 2^14.
inline int32_t fixedSum(int32_t x, int64_t t, int32_t y = 0, int64_t u = 0)
{
    return wrapped(((int64_t(x) & ~1) * t + (int64_t(y) & ~1) * u) >> 14);
}

inline std::pair<int64_t, int64_t> fixedTurn(int64_t k, size_t n)
{
    static std::map<size_t, std::vector<std::pair<int64_t, int64_t>>> tables;
    std::vector<std::pair<int64_t, int64_t>>& table = tables[n];
    const auto truncated = [](double v) { return int64_t(16384 * v + (v < 0 ? -1e-8 : 1e-8)); };
    for (size_t i = table.size(); i < n; ++i) {
        const double angle = 2 * PI * double(i) / double(n);
        table.push_back({ truncated(std::cos(angle)), truncated(std::sin(angle)) });
    }
    return table[size_t(k) % n];
}

inline Fixed turned(Fixed a, int64_t k, size_t n, bool isEighth) // by a negative angle
{
    const auto turn = fixedTurn(k, n);
    if (isEighth && 8 * k == int64_t(n))
        return { fixedSum(wrapped(int64_t(a.re) + a.im), 11585), fixedSum(wrapped(int64_t(a.im) - a.re), 11585) };
    if (isEighth && 4 * k == int64_t(n)) return { a.im, wrapped(-int64_t(a.re)) };
    if (isEighth && 8 * k == int64_t(3 * n))
        return { fixedSum(wrapped(int64_t(a.im) - a.re), 11585), fixedSum(wrapped(-int64_t(a.im) - a.re), 11585) };
    return { fixedSum(a.re, turn.first, a.im, turn.second), fixedSum(a.re, -turn.second, a.im, turn.first) };
}

inline bool isFastLength(size_t n)
{
    return n >= 4 && (n & (n - 1)) == 0;
}

// Four interleaved lines of a quarter of the length, whose inputs are what a butterfly makes of four quarters.
inline std::vector<Fixed> fixedFast(const std::vector<Fixed>& x)
{
    const size_t n = x.size(), quarter = n / 4;
    if (n == 1) return x;
    if (n == 2) return { x[0] + x[1], x[0] - x[1] };
    std::vector<Fixed> parts[4], result(n);
    for (size_t j = 0; j < quarter; ++j) {
        const Fixed a = x[j], b = x[j + quarter], c = x[j + 2 * quarter], d = x[j + 3 * quarter], less = b - d;
        const Fixed back = { less.im, wrapped(-int64_t(less.re)) };
        const Fixed out[4] = { a + c + (b + d), a - c + back, a + c - (b + d), a - c - back };
        for (size_t r = 0; r < 4; ++r) {
            parts[r].push_back(r * j == 0 ? out[r] : turned(out[r], int64_t(r * j), n, 8 * j == n));
        }
    }
    for (size_t r = 0; r < 4; ++r) {
        const std::vector<Fixed> part = fixedFast(parts[r]);
        for (size_t q = 0; q < quarter; ++q) result[4 * q + r] = part[q];
    }
    return result;
}

inline std::vector<Fixed> fixedLine(std::vector<Fixed> x, bool isPlus)
{
    if (x.size() == 1) return x;
    const auto conjugateAll = [&](std::vector<Fixed>& line) {
        for (Fixed& value : line) value = isPlus ? conjugate(value) : value;
    };
    conjugateAll(x);
    std::vector<Fixed> result(x.size());
    if (isFastLength(x.size()))
        result = fixedFast(x);
    else
        for (size_t k = 0; k < x.size(); ++k)
            for (size_t m = 0; m < x.size(); ++m) {
                const auto turn = fixedTurn(int64_t(k * m), x.size());
                result[k] = result[k]
                    + Fixed { fixedSum(x[m].re, turn.first, x[m].im, turn.second),
                              fixedSum(x[m].re, -turn.second, x[m].im, turn.first) };
            }
    conjugateAll(result);
    return result;
}

// S(0) to S(n / 2) of a real line, and back with a positive exponent.
inline std::vector<Fixed> fixedSpectrum(const std::vector<int32_t>& x)
{
    const size_t n = x.size();
    std::vector<Fixed> s(n / 2 + 1);
    if (!isFastLength(n)) {
        for (size_t m = 0; m < n; ++m)
            for (size_t k = 0; k <= n / 2; ++k) {
                const auto turn = fixedTurn(int64_t(k * m), n);
                const bool isReal = k == 0 || 2 * k == n;
                const int32_t sign = k != 0 && m % 2 != 0 ? -1 : 1;
                s[k] = s[k]
                    + (isReal ? Fixed { wrapped(sign * int64_t(x[m])), 0 }
                              : Fixed { fixedSum(x[m], turn.first), fixedSum(x[m], -turn.second) });
            }
        return s;
    }
    std::vector<Fixed> z;
    for (size_t j = 0; j < n; j += 2) z.push_back({ x[j], x[j + 1] });
    z = fixedFast(z);
    s[0].re = wrapped(int64_t(z[0].re) + z[0].im);
    s[n / 2].re = wrapped(int64_t(z[0].re) - z[0].im);
    s[n / 4] = conjugate(z[n / 4]);
    for (size_t k = 1; k < n / 4; ++k) {
        const Fixed a = { z[k].re >> 1, z[k].im >> 1 }, b = { z[n / 2 - k].re >> 1, z[n / 2 - k].im >> 1 };
        const auto turn = fixedTurn(int64_t(k), n);
        const Fixed even = a + conjugate(b), odd = a - conjugate(b);
        const Fixed side = { fixedSum(odd.im, turn.first, odd.re, -turn.second),
                             wrapped(-int64_t(fixedSum(odd.im, turn.second, odd.re, turn.first))) };
        s[k] = even + side;
        s[n / 2 - k] = conjugate(even - side);
    }
    return s;
}

inline std::vector<int32_t> fixedReal(std::vector<Fixed> s, size_t n)
{
    std::vector<int32_t> x;
    for (size_t k = 1; 2 * k < n; ++k) s[k] = conjugate(s[k]);
    if (!isFastLength(n)) {
        for (size_t m = 0; m < n; ++m) {
            int64_t sum = 0;
            for (size_t k = 1; 2 * k < n; ++k) {
                const auto turn = fixedTurn(int64_t(k * m), n);
                sum += 2 * int64_t(fixedSum(s[k].re, turn.first, s[k].im, turn.second));
            }
            x.push_back(wrapped(sum + s[0].re + (n % 2 == 0 ? (m % 2 == 0 ? 1 : -1) * int64_t(s[n / 2].re) : 0)));
        }
        return x;
    }
    std::vector<Fixed> z(n / 2);
    z[0] = { wrapped(int64_t(s[0].re) + s[n / 2].re), wrapped(int64_t(s[0].re) - s[n / 2].re) };
    z[n / 4] = s[n / 4] + s[n / 4];
    for (size_t k = 1; k < n / 4; ++k) {
        const auto turn = fixedTurn(int64_t(k), n);
        const Fixed even = s[k] + conjugate(s[n / 2 - k]), odd = s[k] - conjugate(s[n / 2 - k]);
        const int32_t re = fixedSum(odd.im, turn.first, odd.re, -turn.second),
                      im = fixedSum(odd.im, turn.second, odd.re, turn.first);
        z[k] = { wrapped(int64_t(even.re) - re), wrapped(int64_t(even.im) + im) };
        z[n / 2 - k] = { wrapped(int64_t(even.re) + re), wrapped(int64_t(im) - even.im) };
    }
    for (const Fixed& value : fixedFast(z)) x.insert(x.end(), { value.re, value.im });
    return x;
}

inline int32_t fixedStored(int64_t value, int32_t shift, bool isScaled, double scale)
{
    const int64_t shifted = value < 0 && value > -(int64_t(1) << shift) ? 0 : value >> shift;
    return isScaled ? int32_t(std::nearbyint(float(shifted) * float(scale))) : int32_t(shifted);
}

struct FixedEnd {
    int32_t shift;
    bool isScaled; // by way of a float
    double scale;
};

inline FixedEnd fixedEnd(const Grid<double>& grid, bool scales)
{
    const auto log = [](int32_t n) { return (n & (n - 1)) != 0 ? 0 : int32_t(std::lround(std::log2(n))); };
    const bool isShift = scales && log(grid.width) > 0 && log(grid.height) > 0;
    return { 6 + (isShift ? log(grid.width) + log(grid.height) : 0), scales && !isShift,
             1.0 / grid.width / grid.height };
}

inline Grid<double> modelPackFixed(const Grid<double>& values, bool isPlus, bool scales)
{
    const int32_t width = values.width, height = values.height;
    Grid<Fixed> spectrum(width / 2 + 1, height);
    for (int32_t y = 0; y < height; ++y) {
        std::vector<int32_t> row;
        for (int32_t x = 0; x < width; ++x) row.push_back(wrapped(int64_t(values.at(x, y)) * 64));
        const std::vector<Fixed> line = fixedSpectrum(row);
        for (int32_t k = 0; k <= width / 2; ++k) spectrum.at(k, y) = line[k];
    }
    for (int32_t k = 0; k <= width / 2; ++k) {
        std::vector<Fixed> column;
        std::vector<int32_t> real;
        for (int32_t y = 0; y < height; ++y) column.push_back(spectrum.at(k, y));
        for (const Fixed& value : column) real.push_back(value.re);
        const bool isEdge = k == 0 || 2 * k == width;
        column = isEdge ? fixedSpectrum(real) : fixedLine(column, false);
        for (size_t l = 0; l < column.size(); ++l) spectrum.at(k, int32_t(l)) = column[l];
    }
    Grid<double> packed(width, height);
    const FixedEnd end = fixedEnd(values, scales);
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const Frequency at = packedPlace(x, y, width, height);
            const Fixed value = isPlus ? conjugate(spectrum.at(at.k, at.l)) : spectrum.at(at.k, at.l);
            packed.at(x, y) = fixedStored(at.isImaginary ? value.im : value.re, end.shift, end.isScaled, end.scale);
        }
    return packed;
}

inline Grid<double> modelUnpackFixed(const Grid<double>& packed, bool isPlus, bool scales)
{
    const int32_t width = packed.width, height = packed.height;
    Grid<Fixed> spectrum(width / 2 + 1, height);
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const Frequency at = packedPlace(x, y, width, height);
            const int32_t value = wrapped(int64_t(packed.at(x, y)) * 64);
            if (at.isImaginary)
                spectrum.at(at.k, at.l).im = isPlus ? value : wrapped(-int64_t(value));
            else
                spectrum.at(at.k, at.l).re = value;
        }
    for (int32_t k = 0; k <= width / 2; ++k) {
        std::vector<Fixed> column;
        for (int32_t y = 0; y < height; ++y) column.push_back(spectrum.at(k, y));
        const bool isEdge = k == 0 || 2 * k == width;
        if (!isEdge) column = fixedLine(column, true);
        const std::vector<int32_t> real = isEdge ? fixedReal(column, size_t(height)) : std::vector<int32_t>();
        for (int32_t y = 0; y < height; ++y) spectrum.at(k, y) = isEdge ? Fixed { real[y], 0 } : column[y];
    }
    Grid<double> values(width, height);
    const FixedEnd end = fixedEnd(values, scales);
    for (int32_t y = 0; y < height; ++y) {
        std::vector<Fixed> line;
        for (int32_t k = 0; k <= width / 2; ++k) line.push_back(spectrum.at(k, y));
        const std::vector<int32_t> row = fixedReal(line, size_t(width));
        for (int32_t x = 0; x < width; ++x) values.at(x, y) = fixedStored(row[x], end.shift, end.isScaled, end.scale);
    }
    return values;
}
