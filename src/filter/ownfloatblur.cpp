// SPDX-License-Identifier: BSD-2-Clause
#include "ownfloatblur.h"

#include <algorithm>
#include <cstring>

#include "frame/ownlimit.h"

// A window is the end of one block of columns and the start of the next, and the same down the rows: so no sample
// outside a window touches its sum, and the cost does not depend on the window.
struct OwnFloatBlur {
    const OwnBand& band;
    int32_t nCols;
    int32_t nRows;
    double* tails;  // sums from a sample to the end of its block of columns
    double* starts; // sums from the start of a block to a sample

    ptrdiff_t length() const { return band.width + static_cast<ptrdiff_t>(nCols - 1) * band.step; }
    const float* source(int64_t y) const { return reinterpret_cast<const float*>(band.rows[y]); }

    void convert(const float* from, double* to) const
    {
        const ptrdiff_t n = length();
        for (ptrdiff_t i = 0; i < n; ++i) to[i] = static_cast<double>(from[i]);
    }

    template <class Value> void add(const Value* a, const double* b, double* to) const
    {
        const ptrdiff_t n = length();
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) to[i] = static_cast<double>(a[i]) + b[i];
    }

    // COUNT blocks of `pixels` pixels each, from sample `first` on. Each sum waits for the one before, so that those of
    // several blocks take turns.
    template <int32_t COUNT> void sumBlocks(const double* row, ptrdiff_t first, ptrdiff_t pixels) const
    {
        const ptrdiff_t step = band.step;
        const ptrdiff_t block = pixels * step;
        for (ptrdiff_t channel = 0; channel < step; ++channel) {
            const double* const from = row + first + channel;
            double* const start = starts + first + channel;
            double* const tail = tails + first + channel;
            double up[COUNT];
            double down[COUNT];
            for (int32_t k = 0; k < COUNT; ++k) {
                start[k * block] = up[k] = from[k * block];
                tail[(k + 1) * block - step] = down[k] = from[(k + 1) * block - step];
            }
            for (ptrdiff_t i = step; i < block; i += step) {
                for (int32_t k = 0; k < COUNT; ++k) {
                    start[k * block + i] = up[k] = up[k] + from[k * block + i];
                    const ptrdiff_t mirrored = (k + 1) * block - step - i;
                    tail[mirrored] = down[k] = from[mirrored] + down[k];
                }
            }
        }
    }

    void sumRow(const double* row) const
    {
        const ptrdiff_t block = nCols * static_cast<ptrdiff_t>(band.step);
        const ptrdiff_t n = length();
        ptrdiff_t first = 0;
        for (; first + 4 * block <= n; first += 4 * block) sumBlocks<4>(row, first, nCols);
        for (; first + 2 * block <= n; first += 2 * block) sumBlocks<2>(row, first, nCols);
        for (; first + block <= n; first += block) sumBlocks<1>(row, first, nCols);
        if (first < n) sumBlocks<1>(row, first, (n - first) / band.step);
    }

    void storeRow(const double* row, int32_t y) const
    {
        sumRow(row);
        float* const out = reinterpret_cast<float*>(band.out[y]);
        const ptrdiff_t step = band.step;
        const ptrdiff_t block = nCols * step;
        const double count = static_cast<double>(nCols) * nRows;
        for (ptrdiff_t first = 0; first < band.width; first += block) {
            const ptrdiff_t whole = std::min(first + step, static_cast<ptrdiff_t>(band.width));
            const ptrdiff_t end = std::min(first + block, static_cast<ptrdiff_t>(band.width));
            for (ptrdiff_t i = first; i < whole; ++i) out[i] = ownOneNaN(static_cast<float>(tails[i] / count));
            const double* const behind = starts + block - step;
            for (ptrdiff_t i = whole; i < end; ++i) {
                out[i] = ownOneNaN(static_cast<float>((tails[i] + behind[i]) / count));
            }
        }
    }

    // `ends` has room for as many rows as a block of output rows.
    void runBlock(int32_t y, int32_t count, double* start, double* window, double* ends, ptrdiff_t stride) const
    {
        // Rows that every window of the block holds are joined without being kept apart.
        double* end = ends + (count - 1) * stride;
        convert(source(static_cast<int64_t>(y) + nRows - 1), end);
        for (int32_t k = nRows - 2; k >= 0; --k) {
            double* const next = ends + std::min(k, count - 1) * stride;
            add(source(static_cast<int64_t>(y) + k), end, next);
            end = next;
        }
        storeRow(ends, y);
        for (int32_t k = 1; k < count; ++k) {
            const float* const entering = source(static_cast<int64_t>(y) + nRows + k - 1);
            if (k == 1) convert(entering, start);
            if (k > 1) add(entering, start, start);
            add(ends + k * stride, start, window);
            storeRow(window, y + k);
        }
    }
};

bool ownFloatBlurBand(const OwnBand& band, int32_t nCols, int32_t nRows)
{
    OwnFloatBlur blur = { band, nCols, nRows, nullptr, nullptr };
    const ptrdiff_t stride = (blur.length() + 7) & ~static_cast<ptrdiff_t>(7);
    const int32_t block = std::min(nRows, band.height);
    double* const buffer = band.scratch.take<double>((static_cast<int64_t>(block) + 4) * stride);
    if (buffer == nullptr) return false;
    blur.tails = buffer;
    blur.starts = buffer + stride;
    for (int64_t y = 0; y < band.height; y += nRows) {
        const int32_t count = static_cast<int32_t>(std::min<int64_t>(nRows, band.height - y));
        blur.runBlock(static_cast<int32_t>(y), count, buffer + 2 * stride, buffer + 3 * stride, buffer + 4 * stride,
                      stride);
    }
    return true;
}
