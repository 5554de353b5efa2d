/* SPDX-License-Identifier: BSD-2-Clause */
// Picture: an image header over guarded pixels, in memory or in tiles, with access to single samples that shares no
// code with the library.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <pxk/pxk.h>

#include "random.h"

// ---- samples -------------------------------------------------------------------------------------------------------

inline int32_t depthBits(int32_t depth)
{
    return static_cast<int32_t>(static_cast<uint32_t>(depth) & 0x7FFFFFFFu);
}
inline bool isFloatDepth(int32_t depth)
{
    return depth == PXK_DEPTH_32F;
}
inline int64_t depthMax(int32_t depth)
{
    return (int64_t(1) << (depthBits(depth) - (depth < 0 ? 1 : 0))) - 1;
}
inline int64_t depthMin(int32_t depth)
{
    return depth < 0 ? -depthMax(depth) - 1 : 0;
}
std::string depthName(int32_t depth);

// A sample's bits as the number they mean; exact in a double at every depth. A NaN need not keep its bits.
double numberOf(int32_t depth, uint32_t bits);
// The bits of a number that the depth can hold; a float is rounded to nearest.
uint32_t bitsOf(int32_t depth, double number);

// ---- memory --------------------------------------------------------------------------------------------------------

// A run of bytes that ends in front of an unreadable page (where there are such pages), between guard bytes.
class Block {
public:
    explicit Block(size_t size);
    ~Block();
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    bool guardsIntact() const;

    uint8_t* data; // a multiple of 32 when `size` is one, otherwise of the largest power of two that divides `size`
    size_t size;

private:
    uint8_t* pages;
};

// What a picture is made from. Tile sizes of 0: in memory. The region record exists when its width is not 0.
struct PictureSpec {
    int32_t depth = PXK_DEPTH_8U, width = 16, height = 8, channels = 1, order = PXK_DATA_ORDER_PIXEL;
    bool hasAlpha = false;
    int32_t align = 4, origin = 0;
    PxkROI roi = { 0, 0, 0, 0, 0 };
    int32_t tileWidth = 0, tileHeight = 0;
    int32_t extraStep = 0; // added to widthStep: a multiple of `align`

    // Others that differ from this one.
    template <class Value> PictureSpec with(Value PictureSpec::*field, Value value) const
    {
        PictureSpec other = *this;
        other.*field = value;
        return other;
    }
    [[nodiscard]] PictureSpec ofDepth(int32_t d) const { return with(&PictureSpec::depth, d); }
    [[nodiscard]] PictureSpec of(int32_t nChannels) const { return with(&PictureSpec::channels, nChannels); }
    [[nodiscard]] PictureSpec withAlpha() const { return with(&PictureSpec::hasAlpha, true); }
    [[nodiscard]] PictureSpec ordered(int32_t o) const { return with(&PictureSpec::order, o); }
    [[nodiscard]] PictureSpec aligned(int32_t bytes) const { return with(&PictureSpec::align, bytes); }
    [[nodiscard]] PictureSpec sized(int32_t w, int32_t h) const
    {
        return with(&PictureSpec::width, w).with(&PictureSpec::height, h);
    }
    [[nodiscard]] PictureSpec tiled(int32_t w, int32_t h) const
    {
        return with(&PictureSpec::tileWidth, w).with(&PictureSpec::tileHeight, h);
    }
    [[nodiscard]] PictureSpec region(int32_t x, int32_t y, int32_t w, int32_t h, int32_t coi = 0) const
    {
        return with(&PictureSpec::roi, PxkROI { coi, x, y, w, h });
    }
};

// ---- tiles ---------------------------------------------------------------------------------------------------------

struct TileCall {
    int32_t x, y, mode;
    int32_t depth = 0; // of the header, at the time of the call
};

class Storage;

// What tileInfo points to. The callback finds the pixels through it, whatever header the library passes.
struct TileRecord {
    PxkTileInfo info;
    Storage* storage;
};

// Each asked tile is a copy with guards of its own: taken back at release when it was asked for writing, compared when
// it was asked for reading only, then poisoned. So writes that come late, or to tiles for reading, are seen.
class Storage {
public:
    explicit Storage(const PictureSpec& spec);
    std::shared_ptr<Storage> copy() const;

    PictureSpec spec;
    int32_t step; // bytes from row to row, in memory or in a tile
    TileRecord tiles;
    int32_t tileColumns = 1, tileRows = 1;
    std::vector<std::unique_ptr<Block>> blocks; // one; or one a tile, row by row

    std::vector<TileCall> calls;     // all calls of the tile function, in order
    std::vector<std::string> faults; // offences against the tile protocol
    int32_t refuseAt = 0;            // this asking call (1 is the first from now) is answered with null
    size_t heldTiles() const { return held.size(); }
    void forgetHeld() { held.clear(); }

    void ask(PxkImage* image, int32_t x, int32_t y, int32_t mode);
    void release(int32_t x, int32_t y);

private:
    struct Lent {
        Block block;
        bool isWritten = false;
    };
    struct Held {
        int32_t x, y;
        std::shared_ptr<Lent> lent;
    };
    std::vector<Held> held;
};

// ---- pictures ------------------------------------------------------------------------------------------------------

class Picture;
using PicturePtr = std::shared_ptr<Picture>;

class Picture {
public:
    static PicturePtr make(const PictureSpec& spec, Random& random); // filled with fillRandom
    static PicturePtr make(const PictureSpec& spec, Random&& random) { return make(spec, random); }
    static PicturePtr make(const PictureSpec& spec, uint64_t seed = 1) { return make(spec, Random(seed)); }
    static PicturePtr of(const PxkImage& image); // a copy of an image in memory, its words included
    PicturePtr otherHeader(); // the same pixels, tile record and mask under a header and region of its own
    // A copy with its own pixels; `copies` keeps what two pictures share (pixels, masks) shared between their copies.
    struct Copies {
        std::map<const void*, std::shared_ptr<Storage>> storages;
        std::map<const void*, PicturePtr> pictures;
    };
    PicturePtr copy(Copies& copies);
    PicturePtr copy();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    void setMask(PicturePtr maskPicture);
    void setRegion(int32_t x, int32_t y, int32_t width, int32_t height, int32_t coi = 0);
    operator PxkImage*() { return &header; }

    // Sample (x, y, c) of the whole image, c from 0. Value: integer depths; number: all depths.
    uint32_t bits(int32_t x, int32_t y, int32_t c) const { return cell(x, y, c).load(spec.depth); }
    void setBits(int32_t x, int32_t y, int32_t c, uint32_t bits) { cell(x, y, c).store(spec.depth, bits); }
    double number(int32_t x, int32_t y, int32_t c = 0) const { return numberOf(spec.depth, bits(x, y, c)); }
    int64_t value(int32_t x, int32_t y, int32_t c = 0) const { return static_cast<int64_t>(number(x, y, c)); }
    void setNumber(int32_t x, int32_t y, int32_t c, double n) { setBits(x, y, c, bitsOf(spec.depth, n)); }
    void setAll(double n);

    template <class F> void forEachSample(F&& visit) const // visit(x, y, c)
    {
        for (int32_t y = 0; y < spec.height; ++y)
            for (int32_t x = 0; x < spec.width; ++x)
                for (int32_t c = 0; c < spec.channels; ++c) visit(x, y, c);
    }

    // In memory: sample `s` of a row of a plane, padding included, which lasts up to samplesOfStep().
    uint8_t* row(int32_t y, int32_t p = 0) const
    {
        return storage->blocks[0]->data + (p * spec.height + y) * storage->step;
    }
    uint32_t rowBits(int32_t p, int32_t y, int32_t s) const { return rowCell(p, y, s).load(spec.depth); }
    void setRowBits(int32_t p, int32_t y, int32_t s, uint32_t bits) { rowCell(p, y, s).store(spec.depth, bits); }
    int32_t planes() const { return spec.order == PXK_DATA_ORDER_PLANE ? spec.channels : 1; }
    int32_t samplesOfRow() const { return spec.width * (spec.channels / planes()); }
    int32_t samplesOfStep() const { return header.widthStep * 8 / depthBits(spec.depth); }

    bool isTiled() const { return spec.tileWidth != 0; }
    // True when every tile asked so far meets this rectangle of the image.
    bool askedOnlyInside(int64_t x, int64_t y, int64_t width, int64_t height) const;
    // Header and region as they are now are what headerFault() compares with.
    void freeze() { frozenHeader = header, frozenRoi = roi; }
    std::string headerFault() const; // a changed field's name, or empty
    std::string tileFault() const;   // the first offence against the tile protocol, or a tile still held, or empty

    PictureSpec spec;
    PxkImage header;
    PxkROI roi;
    PicturePtr mask;
    std::shared_ptr<Storage> storage;

private:
    Picture(const PictureSpec& spec, std::shared_ptr<Storage> storage);
    void aimPointers();
    struct Cell {
        uint8_t* at;
        int32_t bit;
        uint32_t load(int32_t depth) const;
        void store(int32_t depth, uint32_t bits) const;
    };
    Cell cell(int32_t x, int32_t y, int32_t c) const;
    Cell rowCell(int32_t plane, int32_t y, int32_t s) const;
    Cell cellIn(const Block& block, int32_t row, int32_t s) const;
    PxkImage frozenHeader;
    PxkROI frozenRoi;
};

// Random bytes everywhere, padding and tiles beyond the image included; samples over the depth's range with many
// extremes, for floats all magnitudes, and with `nonFinite` infinities and NaNs too.
void fillRandom(Picture& picture, Random& random, bool nonFinite = false);
// Samples from an interval; integers at integer depths.
void fillRange(Picture& picture, Random& random, double low, double high);
// Bits for a mask: one of noise, nearly all ones, long runs, all ones, few ones.
void fillMask(Picture& mask, Random& random);
