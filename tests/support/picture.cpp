// SPDX-License-Identifier: BSD-2-Clause
#include "picture.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include "ofthread.h"

// ---- samples -------------------------------------------------------------------------------------------------------

std::string depthName(int32_t depth)
{
    return std::to_string(depthBits(depth)) + (depth < 0 ? "S" : isFloatDepth(depth) ? "F" : "U");
}

double numberOf(int32_t depth, uint32_t bits)
{
    if (isFloatDepth(depth)) {
        float f;
        memcpy(&f, &bits, sizeof f);
        return f;
    }
    const int64_t value = bits;
    return static_cast<double>(value > depthMax(depth) ? value - (int64_t(1) << depthBits(depth)) : value);
}

uint32_t bitsOf(int32_t depth, double number)
{
    if (isFloatDepth(depth)) {
        const float f = static_cast<float>(number);
        uint32_t bits;
        memcpy(&bits, &f, sizeof bits);
        return bits;
    }
    return static_cast<uint32_t>(static_cast<int64_t>(number) & ((int64_t(1) << depthBits(depth)) - 1));
}

// ---- memory --------------------------------------------------------------------------------------------------------

static const size_t guardBytes = 64;
static const uint8_t guardByte = 0xC9;

#ifdef _WIN32
static const size_t pageBytes = 4096;
#else
static const size_t pageBytes = static_cast<size_t>(sysconf(_SC_PAGESIZE));
#endif

// Pages, the last of which can't be touched.
static uint8_t* mapPages(size_t count)
{
#ifdef _WIN32
    DWORD before;
    void* const map = VirtualAlloc(nullptr, count * pageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (map == nullptr) throw std::bad_alloc();
    VirtualProtect(static_cast<uint8_t*>(map) + (count - 1) * pageBytes, pageBytes, PAGE_NOACCESS, &before);
#else
    void* const map = mmap(nullptr, count * pageBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    mprotect(static_cast<uint8_t*>(map) + (count - 1) * pageBytes, pageBytes, PROT_NONE);
#endif
    return static_cast<uint8_t*>(map);
}

static size_t pagesFor(size_t size)
{
    return (size + guardBytes + pageBytes - 1) / pageBytes;
}

// Mappings are dear, so free ones wait for the next block of as many pages. Each thread has its own, so that a
// sanitizer of threads sees what the library does and not this.
static std::vector<uint8_t*>& freePages(size_t count)
{
    return ofThread<std::map<size_t, std::vector<uint8_t*>>>()[count];
}

Block::Block(size_t size)
    : size(size)
{
    std::vector<uint8_t*>& unused = freePages(pagesFor(size));
    if (unused.empty()) unused.push_back(mapPages(pagesFor(size) + 1));
    pages = unused.back();
    unused.pop_back();
    data = pages + pagesFor(size) * pageBytes - size;
    memset(data - guardBytes, guardByte, guardBytes);
}

Block::~Block()
{
    memset(data, 0xDB, size);
    freePages(pagesFor(size)).push_back(pages);
}

bool Block::guardsIntact() const
{
    return std::all_of(data - guardBytes, data, [](uint8_t byte) { return byte == guardByte; });
}

// ---- tiles ---------------------------------------------------------------------------------------------------------

static int32_t tileCallBack(PxkImage* image, int32_t x, int32_t y, int32_t mode)
{
    Storage& storage = *reinterpret_cast<TileRecord*>(image->tileInfo)->storage;
    storage.calls.push_back({ x, y, mode, image->depth });
    if (mode == PXK_TILE_RELEASE) {
        storage.release(x, y);
    } else {
        storage.ask(image, x, y, mode);
    }
    return -1; // no result may matter
}

static int32_t stepOf(const PictureSpec& spec, int32_t width)
{
    const int32_t samples = spec.order == PXK_DATA_ORDER_PIXEL ? width * spec.channels : width;
    const int32_t bytes = (samples * depthBits(spec.depth) + 7) / 8;
    return (bytes + spec.align - 1) / spec.align * spec.align + spec.extraStep;
}

Storage::Storage(const PictureSpec& spec)
    : spec(spec)
    , step(stepOf(spec, spec.tileWidth != 0 ? spec.tileWidth : spec.width))
    , tiles { { tileCallBack, 7, nullptr, spec.tileWidth, spec.tileHeight }, this }
{
    int32_t rows = spec.height;
    if (spec.tileWidth != 0) {
        tileColumns = (spec.width + spec.tileWidth - 1) / spec.tileWidth;
        tileRows = (spec.height + spec.tileHeight - 1) / spec.tileHeight;
        rows = spec.tileHeight;
    }
    if (spec.order == PXK_DATA_ORDER_PLANE) rows *= spec.channels;
    for (int32_t i = 0; i < tileColumns * tileRows; ++i) {
        blocks.push_back(std::make_unique<Block>(static_cast<size_t>(step * rows)));
    }
}

std::shared_ptr<Storage> Storage::copy() const
{
    auto result = std::make_shared<Storage>(spec);
    for (size_t i = 0; i < blocks.size(); ++i) memcpy(result->blocks[i]->data, blocks[i]->data, blocks[i]->size);
    return result;
}

static std::string tileText(const char* what, int32_t x, int32_t y)
{
    return std::string(what) + " (" + std::to_string(x) + ", " + std::to_string(y) + ")";
}

void Storage::ask(PxkImage* image, int32_t x, int32_t y, int32_t mode)
{
    image->tileInfo->tileData = nullptr;
    if (mode != PXK_TILE_READ && mode != PXK_TILE_WRITE) {
        faults.push_back(tileText(("unknown mode " + std::to_string(mode) + " for tile").c_str(), x, y));
        return;
    }
    if (x < 0 || y < 0 || x >= tileColumns || y >= tileRows) {
        faults.push_back(tileText("no such tile", x, y));
        return;
    }
    if (refuseAt > 0 && --refuseAt == 0) return;
    Held tile = { x, y, nullptr };
    for (const Held& other : held) tile.lent = other.x == x && other.y == y ? other.lent : tile.lent;
    if (tile.lent == nullptr) {
        const Block& home = *blocks[static_cast<size_t>(y * tileColumns + x)];
        tile.lent.reset(new Lent { Block(home.size) });
        memcpy(tile.lent->block.data, home.data, home.size);
    }
    if (mode == PXK_TILE_WRITE) tile.lent->isWritten = true;
    image->tileInfo->tileData = tile.lent->block.data;
    held.push_back(tile);
}

void Storage::release(int32_t x, int32_t y)
{
    const auto at = std::find_if(held.begin(), held.end(), [&](const Held& tile) {
        return tile.x == x && tile.y == y && tile.lent->block.data == tiles.info.tileData;
    });
    if (at == held.end()) {
        faults.push_back(tileText("released without being held, or with another tileData: tile", x, y));
        return;
    }
    const std::shared_ptr<Lent> tile = at->lent;
    held.erase(at);
    if (tile.use_count() > 1) return; // asked for twice, and still held once
    const Block& home = *blocks[static_cast<size_t>(y * tileColumns + x)];
    if (!tile->block.guardsIntact()) faults.push_back(tileText("bytes written in front of or behind tile", x, y));
    if (!tile->isWritten && memcmp(home.data, tile->block.data, home.size) != 0) {
        faults.push_back(tileText("written although asked for reading: tile", x, y));
    }
    if (tile->isWritten) memcpy(home.data, tile->block.data, home.size);
}

// ---- pictures ------------------------------------------------------------------------------------------------------

PicturePtr Picture::make(const PictureSpec& spec, Random& random)
{
    PicturePtr picture(new Picture(spec, std::make_shared<Storage>(spec)));
    fillRandom(*picture, random);
    return picture;
}

PicturePtr Picture::of(const PxkImage& image)
{
    PictureSpec spec = { image.depth, image.width, image.height, image.nChannels, image.dataOrder };
    spec.hasAlpha = image.alphaChannel != 0;
    spec.origin = image.origin;
    const PicturePtr picture = make(spec.aligned(image.align));
    memcpy(picture->header.channelSeq, image.channelSeq, 4);
    for (int32_t row = 0; row < spec.height * picture->planes(); ++row) {
        memcpy(picture->row(row), static_cast<const char*>(image.imageData) + row * image.widthStep,
               size_t(picture->storage->step));
    }
    picture->freeze();
    return picture;
}

Picture::Picture(const PictureSpec& spec, std::shared_ptr<Storage> pixels)
    : spec(spec)
    , header()
    , roi(spec.roi)
    , storage(std::move(pixels))
{
    header.headerSize = sizeof header;
    header.nChannels = spec.channels;
    header.alphaChannel = spec.hasAlpha ? spec.channels : 0;
    header.depth = spec.depth;
    memcpy(header.colorModel, "RGB", 4);
    memcpy(header.channelSeq, "BGR", 4);
    header.dataOrder = spec.order;
    header.origin = spec.origin;
    header.align = spec.align;
    header.width = spec.width;
    header.height = spec.height;
    header.userTag = &storage->tiles;
    // A tiled header need not know these two, so nothing may be taken from them.
    header.widthStep = isTiled() ? 0 : storage->step;
    header.imageSize = isTiled() ? 0 : static_cast<int32_t>(storage->blocks[0]->size);
    aimPointers();
    freeze();
}

void Picture::aimPointers()
{
    header.roi = roi.width != 0 ? &roi : nullptr;
    header.maskROI = mask != nullptr ? &mask->header : nullptr;
    header.tileInfo = isTiled() ? &storage->tiles.info : nullptr;
    header.imageData = isTiled() ? nullptr : storage->blocks[0]->data;
}

PicturePtr Picture::otherHeader()
{
    PicturePtr result(new Picture(spec, storage));
    result->roi = roi;
    result->setMask(mask);
    return result;
}

PicturePtr Picture::copy(Copies& copies)
{
    freeze();
    PicturePtr& result = copies.pictures[this];
    if (result != nullptr) return result;
    std::shared_ptr<Storage>& pixels = copies.storages[storage.get()];
    if (pixels == nullptr) pixels = storage->copy();
    result.reset(new Picture(spec, pixels));
    const PicturePtr picture = result; // the map may grow below
    picture->header = header;
    picture->roi = roi;
    if (mask != nullptr) picture->mask = mask->copy(copies);
    picture->aimPointers();
    picture->freeze();
    return picture;
}

PicturePtr Picture::copy()
{
    Copies copies;
    return copy(copies);
}

void Picture::setMask(PicturePtr maskPicture)
{
    mask = std::move(maskPicture);
    aimPointers();
    freeze();
}

void Picture::setRegion(int32_t x, int32_t y, int32_t width, int32_t height, int32_t coi)
{
    roi = { coi, x, y, width, height };
    aimPointers();
    freeze();
}

uint32_t Picture::Cell::load(int32_t depth) const
{
    uint16_t half;
    uint32_t word;
    switch (depthBits(depth)) {
    case 1: return *at >> (7 - bit) & 1u;
    case 8: return *at;
    case 16: memcpy(&half, at, sizeof half); return half;
    default: memcpy(&word, at, sizeof word); return word;
    }
}

void Picture::Cell::store(int32_t depth, uint32_t bits) const
{
    const int32_t shift = 7 - bit;
    const uint16_t half = static_cast<uint16_t>(bits);
    switch (depthBits(depth)) {
    case 1: *at = static_cast<uint8_t>((*at & ~(1u << shift)) | (bits & 1u) << shift); break;
    case 8: *at = static_cast<uint8_t>(bits); break;
    case 16: memcpy(at, &half, sizeof half); break;
    default: memcpy(at, &bits, sizeof bits);
    }
}

Picture::Cell Picture::cell(int32_t x, int32_t y, int32_t c) const
{
    const Block* block = storage->blocks[0].get();
    int32_t rows = spec.height;
    if (isTiled()) {
        block = storage->blocks[size_t(y / spec.tileHeight * storage->tileColumns + x / spec.tileWidth)].get();
        x %= spec.tileWidth;
        y %= spec.tileHeight;
        rows = spec.tileHeight;
    }
    const bool isPlane = spec.order == PXK_DATA_ORDER_PLANE;
    return cellIn(*block, (isPlane ? c * rows : 0) + y, isPlane ? x : x * spec.channels + c);
}

Picture::Cell Picture::rowCell(int32_t plane, int32_t y, int32_t s) const
{
    return cellIn(*storage->blocks[0], plane * spec.height + y, s);
}

Picture::Cell Picture::cellIn(const Block& block, int32_t row, int32_t s) const
{
    const int32_t firstBit = s * depthBits(spec.depth);
    return { block.data + row * storage->step + firstBit / 8, firstBit % 8 };
}

bool Picture::askedOnlyInside(int64_t x, int64_t y, int64_t width, int64_t height) const
{
    return std::all_of(storage->calls.begin(), storage->calls.end(), [&](const TileCall& call) {
        const int32_t left = call.x * spec.tileWidth, top = call.y * spec.tileHeight;
        return left < x + width && left + spec.tileWidth > x && top < y + height && top + spec.tileHeight > y;
    });
}

std::string Picture::headerFault() const
{
    if (memcmp(&header, &frozenHeader, sizeof header) != 0) return "header changed";
    if (memcmp(&roi, &frozenRoi, sizeof roi) != 0) return "region record changed";
    const PxkTileInfo& tiles = storage->tiles.info;
    const bool isSameTiling = tiles.callBack == tileCallBack && tiles.id == 7 && tiles.width == spec.tileWidth
        && tiles.height == spec.tileHeight;
    return isSameTiling ? "" : "tile record changed";
}

std::string Picture::tileFault() const
{
    if (!storage->faults.empty()) return storage->faults[0];
    return storage->heldTiles() != 0 ? std::to_string(storage->heldTiles()) + " tiles not released" : "";
}

void Picture::setAll(double n)
{
    forEachSample([&](int32_t x, int32_t y, int32_t c) { setNumber(x, y, c, n); });
}

// ---- filling -------------------------------------------------------------------------------------------------------

template <class F> static void fillSamples(Picture& picture, F&& next)
{
    for (int32_t c = 0; c < picture.spec.channels; ++c)
        for (int32_t y = 0; y < picture.spec.height; ++y)
            for (int32_t x = 0; x < picture.spec.width; ++x) picture.setBits(x, y, c, next());
}

static double randomFloat(Random& random, bool nonFinite)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double special[] = { 0.0,     -0.0,          1.0,      -1.0,      FLT_MAX,     -FLT_MAX,
                               FLT_MIN, -FLT_TRUE_MIN, infinity, -infinity, std::nan("") };
    if (random.oneIn(8)) return special[random.below(nonFinite ? 11 : 8)];
    if (random.oneIn(2)) return random.between(-300, 300);
    const double mantissa = random.between(-0x7FFFFFF, 0x7FFFFFF);
    return std::ldexp(mantissa, random.oneIn(4) ? random.between(-130, 90) : random.between(-34, 0));
}

// Padding and tiles beyond the image are never NaN: it may be computed with, and then is compared bit by bit.
static void fillBytes(Picture& picture, Random& random)
{
    const bool isFloat = isFloatDepth(picture.spec.depth);
    for (const auto& block : picture.storage->blocks) {
        for (size_t i = 0; i < block->size; i += 4) { // rows are multiples of four bytes
            if (isFloat) {
                const uint32_t word = bitsOf(PXK_DEPTH_32F, randomFloat(random, false));
                memcpy(block->data + i, &word, sizeof word);
                continue;
            }
            uint32_t word = static_cast<uint32_t>(random.next()); // the same bytes whichever a processor stores first
            for (size_t k = 0; k < 4; ++k, word >>= 8) block->data[i + k] = static_cast<uint8_t>(word);
        }
    }
}

void fillRandom(Picture& picture, Random& random, bool nonFinite)
{
    const int32_t depth = picture.spec.depth;
    fillBytes(picture, random);
    if (isFloatDepth(depth)) {
        fillSamples(picture, [&] { return bitsOf(depth, randomFloat(random, nonFinite)); });
        return;
    }
    if (depthBits(depth) == 1) return;
    const int64_t low = depthMin(depth), high = depthMax(depth);
    const int64_t extremes[] = { 0, 1, high, low, high - 1, low + 1, low != 0 ? -1 : 2, high / 2 };
    fillSamples(picture, [&] {
        if (random.oneIn(4)) return bitsOf(depth, static_cast<double>(random.oneOf(extremes)));
        const int32_t kept = random.between(2, depthBits(depth)); // small magnitudes as often as large ones
        const int64_t value = static_cast<int64_t>(random.next() >> (64 - kept));
        return bitsOf(depth, static_cast<double>(low != 0 ? value - (int64_t(1) << (kept - 1)) : value));
    });
}

void fillRange(Picture& picture, Random& random, double low, double high)
{
    fillBytes(picture, random);
    fillSamples(picture, [&] {
        const double fraction = static_cast<double>(random.next() >> 11) / 9007199254740992.0; // 53 bits
        const double number = low + fraction * (high - low);
        return bitsOf(picture.spec.depth, isFloatDepth(picture.spec.depth) ? number : std::nearbyint(number));
    });
}

void fillMask(Picture& mask, Random& random)
{
    fillBytes(mask, random);
    const int32_t style = random.below(5);
    const int32_t runLength = random.oneOf({ 10, 150 });
    uint32_t bit = 1;
    if (style == 0) return;
    fillSamples(mask, [&] {
        if (style == 1) return random.oneIn(12) ? 0u : 1u;
        if (style == 2) return bit ^= random.oneIn(runLength) ? 1u : 0u;
        return style == 3 ? 1u : random.oneIn(12) ? 1u : 0u;
    });
}
