/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of the transforms: sums as they are defined, and fixed-point lines one at a time.
#pragma once

#include <cmath>
#include <functional>
#include <map>
#include <vector>

#include "frame.h"

const double PI = 3.14159265358979323846;

// Each row, or each column, becomes change(line, its number).
template <class Value, class F> void changeLines(Grid<Value>& grid, bool areRows, const F& change)
{
    for (int32_t k = 0; k < (areRows ? grid.height : grid.width); ++k) {
        std::vector<Value> line(size_t(areRows ? grid.width : grid.height));
        const auto at = [&](size_t i) -> Value& { return areRows ? grid.at(int32_t(i), k) : grid.at(k, int32_t(i)); };
        for (size_t i = 0; i < line.size(); ++i) line[i] = at(i);
        const std::vector<Value> changed = change(line, k);
        for (size_t i = 0; i < line.size(); ++i) at(i) = changed[i];
    }
}

// ---- the packed layout ---------------------------------------------------------------------------------------------

// A part of a value of the spectrum.
struct Frequency {
    int32_t k, l;
    bool isImaginary;

    template <class T> auto& partOf(Grid<T>& spectrum) const
    {
        return isImaginary ? spectrum.at(k, l).im : spectrum.at(k, l).re;
    }
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

// Calls visit(x, y, what lies there).
template <class F> void forEachPacked(int32_t width, int32_t height, const F& visit)
{
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) visit(x, y, packedPlace(x, y, width, height));
}

// ---- lines ---------------------------------------------------------------------------------------------------------

// Complex numbers: of doubles, or of integers of 32 bits that wrap, whose sums may be formed in 64 bits, since they are
// cut where they are shifted or stored.
template <class T> struct Complex {
    T re, im;
    friend Complex operator+(Complex a, Complex b) { return { a.re + b.re, a.im + b.im }; }
    friend Complex operator-(Complex a, Complex b) { return { a.re - b.re, a.im - b.im }; }
};
using Fixed = Complex<int64_t>;
template <class T> using Line = std::vector<Complex<T>>;

template <class T> Complex<T> conjugate(Complex<T> a)
{
    return { a.re, -a.im };
}

inline int32_t wrapped(int64_t value)
{
    return int32_t(uint32_t(value));
}

// x t + y u, products without the lowest bits of x and y, over 2^14.
inline int64_t fixedSum(int64_t x, int64_t t, int64_t y = 0, int64_t u = 0)
{
    return ((wrapped(x) & ~1) * t + (wrapped(y) & ~1) * u) >> 14;
}

// a times a turn backward.
inline Complex<double> turned(Complex<double> a, Complex<double> turn)
{
    return { a.re * turn.re + a.im * turn.im, a.im * turn.re - a.re * turn.im };
}
inline Fixed turned(Fixed a, Fixed turn)
{
    return { fixedSum(a.re, turn.re, a.im, turn.im), fixedSum(a.re, -turn.im, a.im, turn.re) };
}

// Cosine and sine of k n-ths of a turn.
template <class T> const Line<T>& turnsOf(size_t n)
{
    static std::map<size_t, Line<T>> tables;
    Line<T>& table = tables[n];
    const auto factor = [](double v) { return T(std::is_integral<T>::value ? 16384 * v + (v < 0 ? -1e-8 : 1e-8) : v); };
    for (size_t k = table.size(); k < n; ++k) {
        const double angle = 2 * PI * double(k) / double(n);
        table.push_back({ factor(std::cos(angle)), factor(std::sin(angle)) });
    }
    return table;
}

template <class T> Line<T> directLine(const Line<T>& x)
{
    const Line<T>& turns = turnsOf<T>(x.size());
    Line<T> sums(x.size());
    for (size_t k = 0; k < x.size(); ++k)
        for (size_t m = 0; m < x.size(); ++m) sums[k] = sums[k] + turned(x[m], turns[k * m % x.size()]);
    return sums;
}

// Four interleaved lines of a quarter of the length, whose inputs are what a butterfly makes of four quarters.
inline Line<int64_t> fastLine(const Line<int64_t>& x)
{
    const size_t n = x.size(), quarter = n / 4;
    if (n == 1) return x;
    if (n == 2) return { x[0] + x[1], x[0] - x[1] };
    const auto quarterBack = [](Fixed a) { return Fixed { a.im, -a.re }; };
    const auto eighthBack = [](Fixed a) {
        return Fixed { fixedSum(a.re + a.im, 11585), fixedSum(a.im - a.re, 11585) };
    };
    Line<int64_t> parts[4], result(n);
    for (size_t j = 0; j < quarter; ++j) {
        const Fixed a = x[j], b = x[j + quarter], c = x[j + 2 * quarter], d = x[j + 3 * quarter];
        const Fixed back = quarterBack(b - d);
        const Fixed out[4] = { a + c + (b + d), a - c + back, a + c - (b + d), a - c - back };
        const Fixed eighths[4] = { out[0], eighthBack(out[1]), quarterBack(out[2]), eighthBack(quarterBack(out[3])) };
        for (size_t r = 0; r < 4; ++r) {
            parts[r].push_back(r * j == 0       ? out[r]
                                   : 8 * j == n ? eighths[r]
                                                : turned(out[r], turnsOf<int64_t>(n)[r * j]));
        }
    }
    for (size_t r = 0; r < 4; ++r) {
        const Line<int64_t> part = fastLine(parts[r]);
        for (size_t q = 0; q < quarter; ++q) result[4 * q + r] = part[q];
    }
    return result;
}

template <class T> bool isFast(const Line<T>& line)
{
    return std::is_integral<T>::value && line.size() >= 4 && (line.size() & (line.size() - 1)) == 0;
}

// The sums with a negative exponent, or a positive one.
template <class T> Line<T> complexLine(Line<T> x, bool isPlus)
{
    if (x.size() == 1) return x;
    if (isPlus) std::transform(x.begin(), x.end(), x.begin(), conjugate<T>);
    if constexpr (std::is_integral<T>::value) x = isFast(x) ? fastLine(x) : directLine(x);
    if constexpr (!std::is_integral<T>::value) x = directLine(x);
    if (isPlus) std::transform(x.begin(), x.end(), x.begin(), conjugate<T>);
    return x;
}

// Between the spectrum of a line of n reals and that of n / 2 pairs of them: S(0) to S(n / 2) is made from pairs, or
// gives twice those of the pairs.
inline Line<int64_t> untangled(const Line<int64_t>& x, size_t n, bool isBack)
{
    const size_t half = n / 2;
    Line<int64_t> result(n);
    const auto part = [&](size_t k) { return isBack ? x[k] : Fixed { wrapped(x[k].re) >> 1, wrapped(x[k].im) >> 1 }; };
    for (size_t k = 1; k < n / 4; ++k) {
        const Fixed even = part(k) + conjugate(part(half - k)), odd = part(k) - conjugate(part(half - k));
        const Fixed side = conjugate(turned({ odd.im, odd.re }, turnsOf<int64_t>(n)[n - k]));
        result[k] = isBack ? even - side : even + side;
        result[half - k] = conjugate(isBack ? even + side : even - side);
    }
    result[half].re = x[0].re - x[0].im;
    result[0] = { x[0].re + (isBack ? x[half].re : x[0].im), isBack ? x[0].re - x[half].re : 0 };
    result[n / 4] = isBack ? x[n / 4] + x[n / 4] : conjugate(x[n / 4]);
    return result;
}

// S(0) to S(n / 2) of a line of reals; the ends are plain and alternating sums.
template <class T> Line<T> spectrumOfReals(const Line<T>& x)
{
    const size_t n = x.size();
    if constexpr (std::is_integral<T>::value) {
        Line<T> pairs;
        for (size_t j = 0; j + 1 < n; j += 2) pairs.push_back({ x[j].re, x[j + 1].re });
        if (isFast(x)) return untangled(fastLine(pairs), n, false);
    }
    Line<T> s = directLine(x);
    s[0] = {};
    if (n % 2 == 0) s[n / 2] = {};
    for (size_t m = 0; m < n; ++m) {
        s[0].re += x[m].re;
        if (n % 2 == 0) s[n / 2].re += m % 2 == 0 ? x[m].re : -x[m].re;
    }
    return s;
}

// And back, with a positive exponent.
template <class T> Line<T> realsOfSpectrum(Line<T> s)
{
    const size_t n = s.size();
    Line<T> x;
    for (size_t k = 1; 2 * k < n; ++k) s[k] = conjugate(s[k]);
    if constexpr (std::is_integral<T>::value) {
        if (isFast(s)) {
            Line<T> pairs = untangled(s, n, true);
            pairs.resize(n / 2);
            for (const Fixed& pair : fastLine(pairs)) x.insert(x.end(), { { pair.re, 0 }, { pair.im, 0 } });
            return x;
        }
    }
    const T first = s[0].re, middle = n % 2 == 0 ? s[n / 2].re : 0;
    s[0] = {};
    std::fill(s.begin() + int64_t(n + 1) / 2, s.end(), Complex<T> {});
    for (const auto& sum : directLine(s)) {
        x.push_back({ first + (x.size() % 2 == 0 ? middle : -middle) + 2 * sum.re, 0 });
    }
    return x;
}

// ---- images --------------------------------------------------------------------------------------------------------

// How values of the transform are stored: fixed point is shifted, at times also scaled by way of a float.
template <class T> std::function<double(T)> storeOf(int32_t width, int32_t height, bool scales)
{
    const double scale = scales ? 1.0 / width / height : 1;
    if constexpr (!std::is_integral<T>::value) return [=](double value) { return value * scale; };
    const auto log = [](int32_t n) { return (n & (n - 1)) != 0 ? 0 : int32_t(std::lround(std::log2(n))); };
    const bool isShift = scales && log(width) > 0 && log(height) > 0;
    const int32_t shift = 6 + (isShift ? log(width) + log(height) : 0);
    return [=](T value) {
        const int64_t v = wrapped(int64_t(value)), shifted = v < 0 && v > -(int64_t(1) << shift) ? 0 : v >> shift;
        return scales && !isShift ? std::nearbyint(float(shifted) * float(scale)) : double(shifted);
    };
}

// Columns 0 and W / 2 of row spectra are lines of reals.
template <class T> Grid<double> modelPack(const Grid<double>& values, bool isPlus, bool scales)
{
    const int32_t width = values.width, height = values.height;
    Grid<Complex<T>> grid(width, height);
    const T unit = std::is_integral<T>::value ? 64 : 1;
    for (size_t i = 0; i < values.values.size(); ++i) grid.values[i].re = T(values.values[i]) * unit;
    changeLines(grid, true, [](const Line<T>& line, int32_t) { return spectrumOfReals(line); });
    changeLines(grid, false, [&](const Line<T>& line, int32_t k) {
        return k == 0 || 2 * k == width ? spectrumOfReals(line) : complexLine(line, false);
    });
    const auto stored = storeOf<T>(width, height, scales);
    Grid<double> packed(width, height);
    forEachPacked(width, height, [&](int32_t x, int32_t y, const Frequency& at) {
        const T value = at.partOf(grid);
        packed.at(x, y) = stored(at.isImaginary && isPlus ? -value : value);
    });
    return packed;
}

template <class T> Grid<double> modelUnpack(const Grid<double>& packed, bool isPlus, bool scales)
{
    const int32_t width = packed.width, height = packed.height;
    Grid<Complex<T>> grid(width, height);
    forEachPacked(width, height, [&](int32_t x, int32_t y, const Frequency& at) {
        const T part = T(packed.at(x, y)) * (std::is_integral<T>::value ? 64 : 1);
        at.partOf(grid) = at.isImaginary && !isPlus ? -part : part;
    });
    changeLines(grid, false, [&](const Line<T>& line, int32_t k) {
        return k == 0 || 2 * k == width ? realsOfSpectrum(line) : complexLine(line, true);
    });
    changeLines(grid, true, [](const Line<T>& line, int32_t) { return realsOfSpectrum(line); });
    const auto stored = storeOf<T>(width, height, scales);
    Grid<double> values(width, height);
    for (size_t i = 0; i < values.values.size(); ++i) values.values[i] = stored(grid.values[i].re);
    return values;
}

inline Grid<double> modelCosine(Grid<double> grid, bool isForward)
{
    const auto sumsOf = [&](const std::vector<double>& line, int32_t) {
        const size_t n = line.size();
        std::vector<double> sums(n);
        for (size_t u = 0; u < n; ++u)
            for (size_t i = 0; i < n; ++i) {
                const double factor = std::sqrt((u == 0 ? 1.0 : 2.0) / double(n))
                    * std::cos(double((2 * i + 1) * u % (4 * n)) * PI / double(2 * n));
                sums[isForward ? u : i] += factor * line[isForward ? i : u];
            }
        return sums;
    };
    for (const bool areRows : { true, false }) changeLines(grid, areRows, sumsOf);
    return grid;
}

// Value by value; integers of up to 16 bits wrap at 32.
inline Grid<double> modelMultiplySpectra(const Grid<double>& a, const Grid<double>& b, bool wraps)
{
    Grid<Complex<double>> first(a.width, a.height), second = first;
    forEachPacked(a.width, a.height, [&](int32_t x, int32_t y, const Frequency& at) {
        at.partOf(first) = a.at(x, y);
        at.partOf(second) = b.at(x, y);
    });
    Grid<double> product(a.width, a.height);
    forEachPacked(a.width, a.height, [&](int32_t x, int32_t y, const Frequency& at) {
        const Complex<double> p = first.at(at.k, at.l), q = second.at(at.k, at.l);
        const double sum = at.isImaginary ? p.re * q.im + p.im * q.re : p.re * q.re - p.im * q.im;
        product.at(x, y) = wraps ? double(wrapped(int64_t(sum))) : sum;
    });
    return product;
}
