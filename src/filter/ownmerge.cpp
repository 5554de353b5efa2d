// SPDX-License-Identifier: BSD-2-Clause
#include "ownmerge.h"

#include <algorithm>

#include "frame/ownscratch.h"

// A value is a row of the window, or one that an exchange makes.
struct OwnMergeValue {
    int32_t lastUse; // the exchange that reads it last; -1: none
    int32_t row;     // where it lies
};

// A value seen from a window's first column, or none: larger than every sample.
struct OwnMergeItem {
    int32_t value;
    int32_t shift;
};

static constexpr int32_t ownNoValue = -1;

// Sorted items, the smallest first.
struct OwnMergeList {
    OwnMergeItem* items;
    int32_t count;
};

class OwnMerger {
public:
    OwnMerger(int32_t nCols, int32_t nRows)
        : nCols_(nCols)
        , nRows_(nRows)
    {
    }

    [[nodiscard]] bool run(OwnMergePlan& plan)
    {
        // Before those that nobody needs are left out, windows of up to ownMostMerged samples take at most 23.6
        // exchanges a sample.
        const int64_t most = int64_t { 24 } * nCols_ * nRows_;
        values_ = scratch_.take<OwnMergeValue>(nRows_ + 2 * most);
        exchanges_ = scratch_.take<OwnExchange>(most);
        free_ = scratch_.take<int32_t>(nRows_ + 2 * most);
        if (values_ == nullptr || exchanges_ == nullptr || free_ == nullptr) return false;
        for (nValues_ = 0; nValues_ < nRows_; ++nValues_) values_[nValues_] = { -1, nValues_ };
        int32_t middle = ownNoValue;
        if (!build(middle)) return false;
        dropUnneeded(middle);
        placeRows();
        plan.exchanges = ownBuffer<OwnExchange>(count_);
        if (plan.exchanges == nullptr) return false;
        std::copy_n(exchanges_, count_, plan.exchanges.get());
        plan.count = count_;
        plan.nRows = nPlaced_;
        plan.result = values_[middle].row;
        return true;
    }

private:
    // Batcher's odd-even merge. Items that are none move as the exchange would move them, at no cost.
    void exchangeItems(OwnMergeItem& low, OwnMergeItem& high, int32_t beyond)
    {
        if (high.value == ownNoValue) return;
        if (low.value == ownNoValue) return std::swap(low, high);
        exchanges_[count_++] = { { low.value, low.shift }, { high.value, high.shift }, nValues_, nValues_ + 1, beyond };
        low = { nValues_, 0 };
        high = { nValues_ + 1, 0 };
        values_[nValues_] = values_[nValues_ + 1] = { -1, -1 };
        nValues_ += 2;
    }

    // The steps of the network that join sorted halves of `half` items.
    void mergeHalves(OwnMergeItem* items, int32_t size, int32_t half, int32_t beyond)
    {
        for (int32_t k = half; k >= 1; k /= 2) {
            for (int32_t j = k % half; j + k < size; j += 2 * k) {
                for (int32_t i = 0; i < k && i + j + k < size; ++i) {
                    if ((i + j) / (2 * half) != (i + j + k) / (2 * half)) continue;
                    exchangeItems(items[i + j], items[i + j + k], beyond);
                }
            }
        }
    }

    static int32_t sizeFor(int32_t count)
    {
        int32_t size = 1;
        while (size < count) size *= 2;
        return size;
    }

    OwnMergeItem* takeItems(int32_t size)
    {
        OwnMergeItem* const items = scratch_.take<OwnMergeItem>(size);
        if (items != nullptr) std::fill_n(items, size, OwnMergeItem { ownNoValue, 0 });
        return items;
    }

    [[nodiscard]] bool sortColumn(OwnMergeList& list)
    {
        const int32_t size = sizeFor(nRows_);
        list = { takeItems(size), nRows_ };
        if (list.items == nullptr) return false;
        for (int32_t i = 0; i < nRows_; ++i) list.items[i] = { i, 0 };
        for (int32_t half = 1; half < size; half *= 2) mergeHalves(list.items, size, half, nCols_ - 1);
        return true;
    }

    // Two lists, of which the second one lies `shift` pixels on; the result is needed for `beyond` more pixels.
    [[nodiscard]] bool merge(const OwnMergeList& a, const OwnMergeList& b, int32_t shift, int32_t beyond,
                             OwnMergeList& merged)
    {
        const int32_t half = sizeFor(std::max(a.count, b.count));
        merged = { takeItems(2 * half), a.count + b.count };
        if (merged.items == nullptr) return false;
        std::copy_n(a.items, a.count, merged.items);
        for (int32_t i = 0; i < b.count; ++i) {
            merged.items[half + i] = { b.items[i].value, b.items[i].shift + shift };
        }
        mergeHalves(merged.items, 2 * half, half, beyond);
        return true;
    }

    // Leaves out what cannot be the sample of rank `rank` among all that are left, which are `left`.
    static void dropEnds(OwnMergeList& list, int32_t& rank, int32_t& left)
    {
        const int32_t low = std::max(0, list.count - 1 - (left - 1 - rank));
        const int32_t high = std::min(list.count - 1, rank);
        left -= list.count - (high - low + 1);
        rank -= low;
        list = { list.items + low, high - low + 1 };
    }

    [[nodiscard]] bool build(int32_t& middle)
    {
        OwnMergeList lists[32]; // of 1, 2, 4 and more columns
        int32_t level = 0;
        if (!sortColumn(lists[0])) return false;
        for (; 2 << level <= nCols_; ++level) {
            const int32_t columns = 1 << level;
            if (!merge(lists[level], lists[level], columns, nCols_ - 2 * columns, lists[level + 1])) return false;
        }
        int32_t left = nCols_ * nRows_;
        int32_t rank = left / 2;
        OwnMergeList all = lists[level];
        int32_t columns = 1 << level;
        dropEnds(all, rank, left);
        while (--level >= 0) {
            if ((nCols_ >> level & 1) == 0) continue;
            OwnMergeList next = lists[level];
            dropEnds(next, rank, left);
            OwnMergeList merged;
            if (!merge(all, next, columns, 0, merged)) return false;
            all = merged;
            columns += 1 << level;
            dropEnds(all, rank, left);
        }
        middle = all.items[rank].value;
        return true;
    }

    void dropUnneeded(int32_t middle)
    {
        values_[middle].lastUse = count_;
        int32_t kept = count_;
        for (int32_t e = count_ - 1; e >= 0; --e) {
            OwnExchange exchange = exchanges_[e];
            const bool isLow = values_[exchange.low].lastUse >= 0;
            const bool isHigh = values_[exchange.high].lastUse >= 0;
            if (!isLow && !isHigh) continue;
            --kept;
            for (const int32_t value : { exchange.a.row, exchange.b.row }) {
                int32_t& lastUse = values_[value].lastUse;
                lastUse = std::max(lastUse, kept);
            }
            exchange.low = isLow ? exchange.low : ownNoValue;
            exchange.high = isHigh ? exchange.high : ownNoValue;
            exchanges_[kept] = exchange;
        }
        exchanges_ += kept;
        count_ -= kept;
        for (int32_t v = 0; v < nValues_; ++v) values_[v].lastUse -= kept;
    }

    // Values become rows, which serve again once nobody reads them.
    void placeRows()
    {
        int32_t nFree = 0;
        nPlaced_ = nRows_;
        const auto place = [&](int32_t& value) {
            if (value == ownNoValue) return;
            values_[value].row = nFree > 0 ? free_[--nFree] : nPlaced_++;
            value = values_[value].row;
        };
        for (int32_t e = 0; e < count_; ++e) {
            OwnExchange& exchange = exchanges_[e];
            place(exchange.low);
            place(exchange.high);
            for (OwnRowPlace* const from : { &exchange.a, &exchange.b }) {
                OwnMergeValue& value = values_[from->row];
                from->row = value.row;
                if (value.lastUse != e) continue;
                value.lastUse = -1; // the other row may be the same one
                if (value.row >= nRows_) free_[nFree++] = value.row;
            }
        }
    }

    const int32_t nCols_;
    const int32_t nRows_;
    OwnScratch scratch_;
    OwnMergeValue* values_ = nullptr;
    OwnExchange* exchanges_ = nullptr;
    int32_t* free_ = nullptr;
    int32_t count_ = 0;
    int32_t nValues_ = 0;
    int32_t nPlaced_ = 0;
};

bool ownPlanMerge(OwnMergePlan& plan, int32_t nCols, int32_t nRows)
{
    return OwnMerger(nCols, nRows).run(plan);
}
