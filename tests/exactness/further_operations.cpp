// SPDX-License-Identifier: BSD-2-Clause
#include "further_operations.h"

#include "support/bitmap.h"

namespace {

template <class Call> Operation operation(const std::string& name, const std::vector<std::string>& images, Call call)
{
    return Operation(name, images, call, [](const Scene&, const Numbers&) {});
}

void find(const double* numbers, size_t count)
{
    found.insert(found.end(), numbers, numbers + count);
}

// ---- warps ---------------------------------------------------------------------------------------------------------

// Corners of a quadrangle, each in its corner of the whole image, in units of 1/64 of its sizes; a flag and an
// interpolation.
Numbers someWarp(const Case&, const Scene& s, Random& random)
{
    Numbers n;
    const double width = s[0].spec.width, height = s[0].spec.height;
    const auto corner = [&](int32_t left, int32_t top) {
        n.push_back(width * (left + random.below(16)) / 64);
        n.push_back(height * (top + random.below(16)) / 64);
    };
    corner(0, 0);
    corner(48, 0);
    corner(48, 48);
    corner(0, 48);
    n.push_back(random.below(2));
    n.push_back(random.oneOf({ 0, 1, 2, 16, 17, 18 }));
    return n;
}

using Points = double (*)[2];

Numbers someParallelogram(const Case& c, const Scene& s, Random& random)
{
    Numbers n = someWarp(c, s, random);
    for (size_t k = 0; k < 2; ++k) n[4 + k] = n[2 + k] + n[6 + k] - n[k];
    return n;
}

// The transform to the corners, what it makes of the region, and the warp by it.
template <size_t Rows, size_t Columns, class Transform, class Quad, class Bound, class Warp>
Operation warpOperation(const std::string& name, Transform transform, Quad quad, Bound bound, Warp warp)
{
    return operation(name, { "srcImage", "dstImage" }, [=](const Arguments& a) {
        Numbers n = a.numbers;
        double coeffs[Rows][Columns] = {}, corners[4][2] = {}, bounds[2][2] = {};
        transform(a[0], coeffs, reinterpret_cast<Points>(n.data()));
        quad(a[0], coeffs, corners);
        bound(a[0], coeffs, bounds);
        find(coeffs[0], Rows * Columns);
        find(corners[0], 8);
        find(bounds[0], 4);
        warp(a, coeffs);
    });
}

void addWarps(std::vector<Operation>& operations)
{
    std::vector<Operation> warps = {
        warpOperation<2, 3>(
            "pxkWarpAffine_helpers", pxkGetAffineTransform, pxkGetAffineQuad, pxkGetAffineBound,
            [](const Arguments& a, double(*coeffs)[3]) { pxkWarpAffine(a[0], a[1], coeffs, a.integer(9)); }),
        warpOperation<2, 4>("pxkWarpBilinear", pxkGetBilinearTransform, pxkGetBilinearQuad, pxkGetBilinearBound,
                            [](const Arguments& a, double(*coeffs)[4]) {
                                pxkWarpBilinear(a[0], a[1], coeffs, a.integer(8), a.integer(9));
                            }),
        warpOperation<3, 3>("pxkWarpPerspective", pxkGetPerspectiveTransform, pxkGetPerspectiveQuad,
                            pxkGetPerspectiveBound,
                            [](const Arguments& a, double(*coeffs)[3]) {
                                pxkWarpPerspective(a[0], a[1], coeffs, a.integer(8), a.integer(9));
                            }),
    };
    for (const auto& [name, warp] : { std::pair("pxkWarpBilinearQ_helpers", &pxkWarpBilinearQ),
                                      std::pair("pxkWarpPerspectiveQ_helpers", &pxkWarpPerspectiveQ) }) {
        warps.push_back(operation(name, { "srcImage", "dstImage" }, [warp = warp](const Arguments& a) {
            Numbers n = a.numbers;
            warp(a[0], a[1], reinterpret_cast<Points>(n.data()), a.integer(8), a.integer(9));
        }));
    }
    warps.push_back(operation("pxkRotate", { "srcImage", "dstImage" }, [](const Arguments& a) {
        double shift[2] = { a.numbers[1], a.numbers[2] };
        const double angle = 10 * a.numbers[0];
        pxkGetRotateShift(a.numbers[3], a.numbers[4], angle, &shift[0], &shift[1]);
        find(shift, 2);
        pxkRotate(a[0], a[1], angle, shift[0], shift[1], a.integer(9));
    }));
    warps.push_back(operation("pxkShear", { "srcImage", "dstImage" }, [](const Arguments& a) {
        pxkShear(a[0], a[1], (a.numbers[0] - 3) / 8, (a.numbers[1] - 2) / 8, a.numbers[2], a.numbers[3], a.integer(9));
    }));
    Operation remap = operation("pxkRemap_positions", { "srcImage", "xMap", "yMap", "dstImage" },
                                [](const Arguments& a) { pxkRemap(a[0], a[1], a[2], a[3], a.integer(9) & 3); });
    remap.scene = [](const Case& c) {
        const Scene scene = makeScene(c, 4, [](PictureSpec& spec, size_t k) {
            if (k != 1 && k != 2) return;
            spec.depth = PXK_DEPTH_32F;
            spec.channels = 1;
            spec.hasAlpha = false;
            spec.roi.coi = 0;
        });
        Random random(c.seed);
        fillRange(scene[1], random, 0, scene[0].spec.width);
        fillRange(scene[2], random, 0, scene[0].spec.height);
        return scene;
    };
    warps.push_back(remap);
    for (Operation& warp : warps) {
        warp.numbers = warp.name == "pxkWarpAffine_helpers" ? someParallelogram : someWarp;
        warp.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
        operations.push_back(warp);
    }
}

// ---- numbers and images that a call makes --------------------------------------------------------------------------

void addMoments(std::vector<Operation>& operations)
{
    Operation op = operation("pxkSpatialMoment", { "image" }, [](const Arguments& a) {
        found = { pxkSpatialMoment(a[0], 1, 2), pxkNormalizedSpatialMoment(a[0], 2, 1), pxkCentralMoment(a[0], 2, 0),
                  pxkNormalizedCentralMoment(a[0], 1, 1) };
    });
    op.axes.channels = { Channels::ONE, Channels::COI };
    operations.push_back(op);
}

// Of an image with one channel.
double sampleAt(PxkImage* image, int32_t x, int32_t y)
{
    uint8_t byte = 0;
    uint16_t word = 0;
    uint32_t longWord = 0;
    switch (depthBits(image->depth)) {
    case 16: pxkGetPixel(image, x, y, &word); return word;
    case 32: pxkGetPixel(image, x, y, &longWord); return longWord;
    default: pxkGetPixel(image, x, y, &byte); return byte;
    }
}

void findSamples(PxkImage* image)
{
    for (int32_t y = 0; y < image->height; ++y) {
        for (int32_t x = 0; x < image->width; ++x) found.push_back(sampleAt(image, x, y));
    }
}

// A call that makes an image of one channel from another's header, or like it.
template <class Make> Operation maker(const std::string& name, Make make)
{
    Operation op = operation(name, { "size" }, [make](const Arguments& a) {
        PxkImage* const image = make(a[0]);
        const int32_t status = pxkGetErrStatus();
        if (image == nullptr) return;
        findSamples(image);
        pxkSetErrStatus(status);
        found.push_back(pxkCheckImageHeader(image));
        pxkDeallocateImage(image);
        pxkDeallocateHeader(image);
    });
    op.axes.masks = op.axes.tilings = { 0 };
    op.axes.channels = { Channels::ONE };
    return op;
}

// With a region of its own.
PxkImage* allocated(const PxkImage* size)
{
    PxkROI* const roi = pxkCreateROI(0, 1, 1, 5, 3);
    pxkSetROI(roi, 0, 0, 1, size->width, 2);
    PxkImage* const image =
        pxkCreateImageHeader(1, 0, size->depth, "GRAY", "G", PXK_DATA_ORDER_PIXEL, size->origin, size->align,
                             size->width, size->height, roi, nullptr, nullptr, nullptr);
    if (size->depth == PXK_DEPTH_32F)
        pxkAllocateImageFP(image, 1, -2.5f);
    else
        pxkAllocateImage(image, 1, -3);
    pxkSetBorderMode(image, PXK_EDGE_MIRROR, PXK_SIDE_TOP, 7);
    pxkErode(image, image, 1);
    image->roi = nullptr;
    pxkDeleteROI(roi);
    return image;
}

void addMakers(std::vector<Operation>& operations)
{
    Operation rings = maker("pxkCreateImageJaehne", [](const PxkImage* size) {
        return pxkCreateImageJaehne(size->depth, size->width, size->height);
    });
    rings.axes.channels = Axes().channels;
    operations.push_back(rings);
    operations.push_back(maker("pxkCloneImage", [](PxkImage* image) { return pxkCloneImage(image); }));
    operations.push_back(maker("pxkAllocateImage", allocated));
}

// What goes into small records comes out of them.
template <class Kernel> using KernelPtr = std::unique_ptr<Kernel, void(PXK_CALL*)(Kernel*)>;

void getKernels(const Arguments& a)
{
    const auto findKernel = [](const int32_t(&parts)[5], const auto& values) {
        found.insert(found.end(), parts, parts + 5);
        found.insert(found.end(), values, values + 6);
    };
    int32_t parts[5] = {}, values[6] = { 1, -2, a[0]->width, a[0]->height, 1 << 20, -7 };
    int8_t chars[6] = { 1, -128, 127, 0, -1, 5 };
    float floats[6] = { 0.5f, -1e30f, 1e-40f, 3, float(a[0]->width), 7 };
    const KernelPtr<PxkConvKernel> ofInts(pxkCreateConvKernel(3, 2, 1, 0, values, 5), pxkDeleteConvKernel),
        ofChars(pxkCreateConvKernelChar(2, 3, 0, 1, chars, 6), pxkDeleteConvKernel);
    const KernelPtr<PxkConvKernelFP> ofFloats(pxkCreateConvKernelFP(6, 1, 5, 0, floats), pxkDeleteConvKernelFP);
    pxkGetConvKernel(ofInts.get(), &parts[0], &parts[1], &parts[2], &parts[3], values, &parts[4]);
    findKernel(parts, values);
    pxkGetConvKernelChar(ofChars.get(), &parts[0], &parts[1], &parts[2], &parts[3], chars, &parts[4]);
    findKernel(parts, chars);
    pxkGetConvKernelFP(ofFloats.get(), &parts[0], &parts[1], &parts[2], &parts[3], floats);
    findKernel(parts, floats);
}

// Tile and colour twist records, the version, blocks of memory.
void getRecords(const Arguments& a)
{
    PxkTileInfo* const tiles = pxkCreateTileInfo(nullptr, 3, 8, 16);
    found.insert(found.end(), { double(tiles->id), double(tiles->width), double(tiles->height) });
    pxkSetTileInfo(tiles, nullptr, 4, a[0]->width, a[0]->height);
    found.insert(found.end(), { double(tiles->id), double(tiles->width), double(tiles->height) });
    pxkDeleteTileInfo(tiles);

    int32_t data[16] = { a[0]->width, -1, 1 << 30 };
    PxkColorTwist* const twist = pxkCreateColorTwist(data, 31);
    data[15] = a[0]->height;
    found.push_back(pxkSetColorTwist(twist, data, 7));
    found.insert(found.end(), twist->data, twist->data + 16);
    found.push_back(twist->scalingValue);
    pxkDeleteColorTwist(twist);

    const PxkLibVersion* const version = pxkGetLibVersion();
    found.insert(found.end(), { double(version->major), double(version->minor), double(version->build) });
    found.push_back(pxkGetKestriumCounter() != 0);
    for (void*(PXK_CALL * take)(int32_t) : { pxkMalloc, pxkwMalloc, pxkiMalloc, pxksMalloc, pxkdMalloc }) {
        void* const block = take(a[0]->width);
        found.push_back(double(uintptr_t(block) % 32));
        pxkFree(block);
    }
}

// What handlers of reports return in silence, the status they leave, and all texts.
void getReports(const Arguments& a)
{
    const int32_t mode = pxkGetErrMode();
    const PxkErrorCallBack old = pxkRedirectError(pxkNulDevReport);
    pxkSetErrMode(PXK_ErrModeSilent);
    for (const PxkErrorCallBack handler : { pxkNulDevReport, pxkStdErrReport, pxkGuiBoxReport }) {
        pxkRedirectError(handler);
        for (const int32_t status : { PXK_StsBackTrace, PXK_StsBadArg, -a[0]->width }) {
            found.push_back(pxkError(status, "func", "context", "file", 1));
            found.push_back(pxkGetErrStatus());
        }
    }
    pxkRedirectError(old);
    pxkSetErrMode(mode);
    for (int32_t status = -250; status < 10; ++status)
        for (const char* text = pxkErrorStr(status); *text != 0; ++text) found.push_back(*text);
    pxkSetErrStatus(-a[0]->height);
}

void addRecords(std::vector<Operation>& operations)
{
    operations.push_back(operation("pxkPutPixel", { "image" }, [](const Arguments& a) {
        uint8_t pixel[32];
        for (int32_t i = 0; i < 3; ++i) {
            memset(pixel, 90 + i, sizeof pixel); // the order of bytes plays no part
            pxkPutPixel(a[0], i, a[0]->height - 1, pixel);
        }
    }));
    for (auto call : { getKernels, getRecords, getReports }) {
        Operation op = operation(call == getKernels       ? "pxkGetConvKernel"
                                     : call == getRecords ? "pxkSetTileInfo"
                                                          : "pxkError",
                                 { "size" }, call);
        op.axes.depths = { PXK_DEPTH_8U };
        op.axes.masks = op.axes.tilings = { 0 };
        op.axes.channels = { Channels::ONE };
        operations.push_back(op);
    }
}

// From the one model that has no way back.
void addYcc(std::vector<Operation>& operations)
{
    Operation op = operation("pxkYCC2RGB", { "src", "dst" }, [](const Arguments& a) { pxkYCC2RGB(a[0], a[1]); });
    op.axes.depths = { PXK_DEPTH_8U };
    op.axes.channels = { Channels::THREE };
    op.axes.masks = { 0 };
    op.scene = [](const Case& c) {
        const Scene s = makeScene(c, 2, [](PictureSpec& spec, size_t) { spec.channels = 3; });
        for (const size_t k : { 0, 1 }) {
            memcpy(s[k].header.colorModel, k == 0 ? "YCC" : "RGB", 4);
            memcpy(s[k].header.channelSeq, k == 0 ? "YCC" : "BGR", 4);
            s[k].freeze();
        }
        return s;
    };
    operations.push_back(op);
}

// Bitmaps of all kinds; grays and colours in both orders.
void addBitmaps(std::vector<Operation>& operations)
{
    for (const bool isTo : { false, true }) {
        Operation op =
            operation(isTo ? "pxkConvertToDIB" : "pxkConvertFromDIB", { "image" }, [isTo](const Arguments& a) {
                Random random(uint64_t(a.numbers[0]));
                const int32_t bits = a.integer(1), height = a[0]->height * a.integer(2);
                const auto header = bitmapHeader(a[0]->width, height, bits, 0, bits == 8 ? 256 : 0);
                const Bitmap bitmap(header, random.oneIn(2), random);
                int32_t isCloned = 0;
                if (!isTo && !bitmap.isSep) {
                    PxkImage* const image = pxkTranslateDIB(bitmap.dib(), &isCloned);
                    if (image != nullptr) found = { double(isCloned), double(image->nChannels), double(image->depth) };
                    pxkDeallocate(image, isCloned != 0 ? PXK_FREE_HEADER | PXK_FREE_DATA : PXK_FREE_HEADER);
                    pxkSetErrStatus(PXK_StsOk);
                }
                const int32_t status =
                    isTo ? convertTo(a[0], bitmap, a.integer(3), a.integer(4)) : convertFrom(bitmap, a[0]);
                for (int32_t i = 0; i < Bitmap::tableWords(header); ++i) found.push_back(bitmap.word(i));
                for (int32_t y = 0; y < a[0]->height; ++y)
                    for (int32_t x = 0; x < a[0]->width; ++x) found.push_back(bitmap.pixel(x, y));
                return status;
            });
        op.scene = [](const Case& c) {
            Random random(c.seed);
            PictureSpec spec { c.depth };
            spec.width = random.between(1, 70);
            spec.height = random.between(1, 9);
            spec.order = int32_t(c.order);
            spec.channels = c.depth == PXK_DEPTH_1U ? 1 : random.oneOf({ 1, 3, 3 });
            return Scene { { Picture::make(spec, random) } };
        };
        op.numbers = [](const Case&, const Scene&, Random& random) {
            return Numbers { double(random.below(1 << 30)), double(random.oneOf({ 1, 4, 8, 16, 24, 32 })),
                             double(random.oneOf({ -1, 1 })), double(random.oneOf({ 1, 1, 2, 4, 8, 16 })),
                             double(random.below(3)) };
        };
        op.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_8U, PXK_DEPTH_16U };
        operations.push_back(op);
    }
}

} // namespace

std::vector<Operation> furtherOperations()
{
    std::vector<Operation> operations;
    addWarps(operations);
    addMoments(operations);
    addMakers(operations);
    addRecords(operations);
    addYcc(operations);
    addBitmaps(operations);
    return operations;
}
