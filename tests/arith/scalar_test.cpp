// Arithmetic and logic with a constant against the model, refusals, tiles that can't be had, constants that make one
// operation another.
#include <functional>

#include "reference/scalar.h"
#include "support/cases.h"
#include "support/reports.h"

namespace {

// ---- the operations ------------------------------------------------------------------------------------------------

struct Constant {
    int32_t integer;
    float real;
};

using Call = std::function<void(PxkImage*, PxkImage*, const Constant&)>;

Call withInteger(void (*operation)(PxkImage*, PxkImage*, int32_t))
{
    return [=](PxkImage* s, PxkImage* d, const Constant& c) { operation(s, d, c.integer); };
}

Call withFloat(void (*operation)(PxkImage*, PxkImage*, float))
{
    return [=](PxkImage* s, PxkImage* d, const Constant& c) { operation(s, d, c.real); };
}

// Any flip that is not 0 counts.
Call differenceFrom()
{
    return [](PxkImage* s, PxkImage* d, const Constant& c) {
        const int32_t flips[] = { 1, -1, 256, INT32_MIN };
        pxkSubtractS(s, d, c.integer, flips[static_cast<uint32_t>(c.integer) % 4]);
    };
}

Call floatDifference(int32_t flip)
{
    return [=](PxkImage* s, PxkImage* d, const Constant& c) { pxkSubtractSFP(s, d, c.real, flip); };
}

Call alone(void (*operation)(PxkImage*, PxkImage*))
{
    return [=](PxkImage* s, PxkImage* d, const Constant&) { operation(s, d); };
}

struct Operation {
    const char* name; // under which it reports
    Scalar model;
    Call call;
    const char* nullText = nullptr; // where a null source has one of its own

    bool isFloat() const { return std::string(name).find("FP") != std::string::npos; }
    bool isAbs() const { return model == Scalar::ABS; }
    int32_t aDepth() const { return isFloat() ? PXK_DEPTH_32F : PXK_DEPTH_16S; }
};

const char* const nullSource = "srcImage==0";
const Operation add = { "pxkAddS", Scalar::ADD, withInteger(pxkAddS), nullSource };
const Operation subtract = { "pxkSubtractS", Scalar::SUBTRACT,
                             [](PxkImage* s, PxkImage* d, const Constant& c) { pxkSubtractS(s, d, c.integer, 0); } };
const Operation subtractFrom = { "pxkSubtractS", Scalar::SUBTRACT_FROM, differenceFrom() };
const Operation multiply = { "pxkMultiplyS", Scalar::MULTIPLY, withInteger(pxkMultiplyS), nullSource };
const Operation bitAnd = { "pxkAndS", Scalar::AND, withInteger(pxkAndS) };
const Operation bitOr = { "pxkOrS", Scalar::OR, withInteger(pxkOrS) };
const Operation bitXor = { "pxkXorS", Scalar::XOR, withInteger(pxkXorS) };
const Operation shiftLeft = { "pxkLShiftS", Scalar::SHIFT_LEFT, withInteger(pxkLShiftS), nullSource };
const Operation shiftRight = { "pxkRShiftS", Scalar::SHIFT_RIGHT, withInteger(pxkRShiftS) };
const Operation invert = { "pxkXorS", Scalar::NOT, alone(pxkNot) };
const Operation magnitude = { "pxkAbs", Scalar::ABS, alone(pxkAbs), nullSource };
const Operation square = { "pxkSquare", Scalar::SQUARE, alone(pxkSquare) };
const Operation addFloat = { "pxkAddSFP", Scalar::ADD, withFloat(pxkAddSFP), nullSource };
const Operation subtractFloat = { "pxkSubtractSFP", Scalar::SUBTRACT, floatDifference(0), nullSource };
const Operation subtractFromFloat = { "pxkSubtractSFP", Scalar::SUBTRACT_FROM, floatDifference(256), nullSource };
const Operation multiplyFloat = { "pxkMultiplySFP", Scalar::MULTIPLY, withFloat(pxkMultiplySFP), nullSource };

const std::vector<Operation> integerOperations = { add,   subtract, subtractFrom, multiply,   bitAnd,
                                                   bitOr, bitXor,   shiftLeft,    shiftRight, invert };
const std::vector<Operation> floatOperations = { addFloat, subtractFloat, subtractFromFloat, multiplyFloat };

std::vector<Operation> allOperations()
{
    std::vector<Operation> all = integerOperations;
    all.insert(all.end(), { magnitude, square });
    all.insert(all.end(), floatOperations.begin(), floatOperations.end());
    return all;
}

// Around the ends of all depths' ranges, their doubles and the widths of samples; 32-bit patterns.
std::vector<int32_t> integerConstants()
{
    std::vector<int32_t> constants = { INT32_MIN, INT32_MIN + 1, INT32_MAX, INT32_MAX - 1, 0x55AA33C1, -0x12345678 };
    for (const int32_t magnitude :
         { 0, 3, 7, 15, 31, 77, 127, 181, 255, 300, 510, 600, 4097, 32767, 46340, 65535, 70000, 131070, 1 << 24 }) {
        for (int32_t near = -1; near <= 1; ++near) {
            constants.push_back(magnitude + near);
            constants.push_back(-magnitude - near);
        }
    }
    return constants;
}

Constant anyConstant(const Case& c)
{
    const std::vector<int32_t> constants = integerConstants();
    const float reals[] = { 0.0f, 1.0f, -1.0f, 0.1f, -2.5e7f, 3.0e38f, 1e-40f };
    Random random(c.seed ^ 0x5CA1A2);
    const int32_t integer = constants[static_cast<size_t>(random.below(static_cast<int32_t>(constants.size())))];
    return { random.oneIn(2) ? random.below(40) : integer, random.oneOf(reals) };
}

void runModel(const Operation& op, const Scene& scene, const Constant& c)
{
    modelScalar(op.model, scene[0], scene[1], op.isFloat() ? double(c.real) : double(c.integer));
}

// ---- results -------------------------------------------------------------------------------------------------------

void expectModel(const Operation& op, Axes axes, uint64_t seed)
{
    axes.places = { InPlace::NO, InPlace::NO, InPlace::FIRST };
    axes.masks = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.seed = seed;
    startReports();
    forEachCase(axes, [&](const Case& c) {
        SCOPED_TRACE(op.name);
        const Constant constant = anyConstant(c);
        SCOPED_TRACE("constant " + std::to_string(constant.integer) + " or " + std::to_string(constant.real));
        const Scene got = makeScene(c, 2);
        const Scene want = got.copy();
        runModel(op, want, constant);
        op.call(got[0], got[1], constant);
        EXPECT_TRUE(sameScene(want, got));
        expectNoReports();
    });
}

const std::vector<int32_t> integerDepths = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S,
                                             PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };

TEST(Scalar, matchesModelAtIntegerDepths)
{
    Axes axes;
    axes.depths = integerDepths;
    axes.count = 900;
    uint64_t seed = 1;
    for (const Operation& op : integerOperations) expectModel(op, axes, seed++);
    axes.orders.push_back(Order::MIXED);
    expectModel(subtract, axes, seed++);
    expectModel(subtractFrom, axes, seed);
}

TEST(Scalar, matchesModelAtFloatDepth)
{
    Axes axes;
    axes.depths = { PXK_DEPTH_32F };
    axes.count = 300;
    uint64_t seed = 50;
    for (const Operation& op : floatOperations) expectModel(op, axes, seed++);
}

TEST(Scalar, squareAndMagnitudeMatchModel)
{
    Axes axes;
    axes.count = 900;
    expectModel(square, axes, 70);
    axes.depths = { PXK_DEPTH_8S, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    expectModel(magnitude, axes, 71);
}

// Every sample of 8 and 16 bits, and samples of 32 bits near all ends, meets constants near all ends.
PicturePtr pictureOfAllSamples(int32_t depth)
{
    PicturePtr picture = Picture::make(PictureSpec(depth, 256, depthBits(depth) == 8 ? 1 : 256));
    if (depth == PXK_DEPTH_32S) return picture; // random, rich in extremes
    for (int32_t i = 0; i < picture->spec.width * picture->spec.height; ++i) {
        picture->setBits(i % 256, i / 256, 0, static_cast<uint32_t>(i));
    }
    return picture;
}

TEST(Scalar, everySampleMeetsConstantsNearAllEnds)
{
    const std::vector<int32_t> constants = integerConstants();
    startReports();
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S }) {
        const PicturePtr source = pictureOfAllSamples(depth), got = source->copy();
        std::vector<Operation> operations = { add, subtract, subtractFrom, multiply, shiftLeft, shiftRight, square };
        if ((depth & PXK_DEPTH_SIGN) != 0) operations.push_back(magnitude);
        // Beyond 8 bits each operation takes another third of the constants.
        const size_t stride = source->spec.height == 1 ? 1 : 3;
        for (size_t k = 0; k < operations.size(); ++k) {
            const Operation& op = operations[k];
            for (size_t i = k % stride; i < constants.size(); i += stride) {
                op.call(*source, *got, { constants[i], 0 });
                for (int32_t at = 0; at < source->spec.width * source->spec.height; ++at) {
                    const uint32_t sample = source->rowBits(0, at / 256, at % 256);
                    ASSERT_EQ(got->rowBits(0, at / 256, at % 256), scalarSample(op.model, depth, sample, constants[i]))
                        << op.name << ", " << depthName(depth) << ", sample " << sample << ", constant "
                        << constants[i];
                }
            }
        }
    }
    expectNoReports();
}

TEST(Scalar, workedNumbers)
{
    struct Known {
        int32_t depth;
        double sample;
        std::function<void(PxkImage*)> call;
        double result;
    };
    const Known known[] = {
        { PXK_DEPTH_8U, 250, [](PxkImage* p) { pxkAddS(p, p, 5); }, 255 },
        { PXK_DEPTH_16U, 65535, [](PxkImage* p) { pxkAddS(p, p, -70000); }, 0 },
        { PXK_DEPTH_16S, -32768, [](PxkImage* p) { pxkAddS(p, p, INT32_MAX); }, 32767 },
        { PXK_DEPTH_16S, 32767, [](PxkImage* p) { pxkAddS(p, p, INT32_MIN); }, -32768 },
        { PXK_DEPTH_32S, -5, [](PxkImage* p) { pxkAddS(p, p, INT32_MIN); }, INT32_MIN },
        { PXK_DEPTH_8U, 255, [](PxkImage* p) { pxkSubtractS(p, p, 300, 0); }, 0 },
        { PXK_DEPTH_8U, 0, [](PxkImage* p) { pxkSubtractS(p, p, 600, 1); }, 255 },
        { PXK_DEPTH_32S, 0, [](PxkImage* p) { pxkSubtractS(p, p, INT32_MIN, 0); }, INT32_MAX },
        { PXK_DEPTH_1U, 1, [](PxkImage* p) { pxkSubtractS(p, p, 1, 1); }, 0 },
        { PXK_DEPTH_1U, 0, [](PxkImage* p) { pxkOrS(p, p, 2); }, 0 },
        { PXK_DEPTH_8U, 1, [](PxkImage* p) { pxkMultiplyS(p, p, INT32_MAX); }, 255 },
        { PXK_DEPTH_8U, 200, [](PxkImage* p) { pxkMultiplyS(p, p, -3); }, 0 },
        { PXK_DEPTH_32S, 65536, [](PxkImage* p) { pxkMultiplyS(p, p, -65536); }, INT32_MIN },
        { PXK_DEPTH_8U, 255, [](PxkImage* p) { pxkRShiftS(p, p, 8); }, 0 },
        { PXK_DEPTH_8S, -1, [](PxkImage* p) { pxkRShiftS(p, p, 3); }, -1 },
        { PXK_DEPTH_32S, -7, [](PxkImage* p) { pxkRShiftS(p, p, 1000); }, -1 },
        { PXK_DEPTH_32S, 7, [](PxkImage* p) { pxkLShiftS(p, p, -1); }, 0 },
        { PXK_DEPTH_16S, -32768, [](PxkImage* p) { pxkAbs(p, p); }, 32767 },
        { PXK_DEPTH_8S, -128, [](PxkImage* p) { pxkSquare(p, p); }, 127 },
        { PXK_DEPTH_16U, 0x00FF, [](PxkImage* p) { pxkNot(p, p); }, 0xFF00 },
    };
    startReports();
    for (const Known& k : known) {
        const PicturePtr picture = Picture::make(PictureSpec(k.depth, 37, 3));
        picture->setAll(k.sample);
        k.call(*picture);
        for (int32_t x = 0; x < 37; ++x) {
            EXPECT_EQ(picture->number(x, 2), k.result) << "case " << &k - known << ", column " << x;
        }
    }
    expectNoReports();
}

// ---- refusals ------------------------------------------------------------------------------------------------------

// The depths of both images, order and channels of the destination (the source has one channel in pixel order), a
// fault of the header, and what is reported.
struct Faults {
    int32_t sourceDepth, destinationDepth;
    int32_t order = PXK_DATA_ORDER_PIXEL, channels = 1;
    bool isSourceBad = false, isDestinationBad = false, isDestinationNull = false;
};

void expectRefusal(const Operation& op, const Faults& faults, const std::vector<Report>& expected)
{
    SCOPED_TRACE(std::string(op.name) + ", " + depthName(faults.sourceDepth));
    Scene got;
    got.images = { Picture::make(PictureSpec(faults.sourceDepth, 9, 4)),
                   Picture::make(PictureSpec(faults.destinationDepth, 9, 4, faults.channels, faults.order), 2) };
    if (faults.isSourceBad) got[0].header.align = 5;
    if (faults.isDestinationBad) got[1].header.dataOrder = 2;
    got[0].freeze();
    got[1].freeze();
    const Scene want = got.copy();
    startReports();
    op.call(got[0], faults.isDestinationNull ? nullptr : static_cast<PxkImage*>(got[1]), { 3, 3.0f });
    expectReports(expected);
    EXPECT_TRUE(sameSamples(want[1], got[1]));
    EXPECT_TRUE(nothingElseChanged(want[1], got[1]));
}

TEST(Scalar, argumentsAreRefusedInOrder)
{
    const int32_t plane = PXK_DATA_ORDER_PLANE;
    for (const Operation& op : allOperations()) {
        const bool hasOrder = op.name != std::string("pxkSubtractS");
        const int32_t depth = op.aDepth(), other = PXK_DEPTH_32S;
        const char* const channels = op.isAbs() ? "(nChSrcCoi != nChDstCoi)" : "(nChSrc != nChDst)";
        expectRefusal(op, { depth, other, plane, 2, true, true }, { { -21, op.name, "Incorrect Image" } });
        expectRefusal(op, { depth, other, plane, 2, false, true }, { { -19, op.name, "Incorrect Image" } });
        expectRefusal(op, { depth, other, plane, 2 }, { { -5, op.name, "(srcImage->depth != dstImage->depth)" } });
        expectRefusal(op, { depth, depth, plane, 2 },
                      { { -5, op.name, hasOrder ? "(srcImage->dataOrder != dstImage->dataOrder)" : channels } });
        expectRefusal(op, { depth, depth, PXK_DATA_ORDER_PIXEL, 2 }, { { -5, op.name, channels } });
        if (!op.isAbs()) {
            expectRefusal(op, { depth, depth, PXK_DATA_ORDER_PIXEL, 1, false, false, true },
                          { { -9, op.name, "Incorrect Image" } });
        }
    }
}

TEST(Scalar, nullImages)
{
    for (const Operation& op : allOperations()) {
        const PicturePtr image = Picture::make(PictureSpec(op.aDepth()));
        std::vector<Report> refused = { { -9, op.name, "Incorrect Image" } };
        if (op.nullText != nullptr) refused = { { -5, op.name, op.nullText } };
        startReports();
        op.call(nullptr, *image, {});
        expectReports(refused);
        op.call(nullptr, nullptr, {});
        if (op.isAbs()) refused.push_back({ -5, "pxkAbs", "dstImage==0" });
        expectReports(refused);
    }
    pxkAbs(*Picture::make(PictureSpec()), nullptr);
    expectReports({ { -5, "pxkAbs", "dstImage==0" } });
}

// The source's depth decides, whatever else is wrong.
TEST(Scalar, depthsOfOtherOperationsAreRefused)
{
    const auto wrong = [](const char* name, const char* text) { return std::vector<Report> { { -5, name, text } }; };
    const auto expectWrong = [&](const Operation& op, int32_t depth, const char* text) {
        expectRefusal(op, { depth, depth }, wrong(op.name, text));
        expectRefusal(op, { depth, depth, PXK_DATA_ORDER_PLANE, 2, true, true, true }, wrong(op.name, text));
    };
    expectWrong(add, PXK_DEPTH_32F, "For processing depth 32F use function pxkAddSFP");
    expectWrong(subtract, PXK_DEPTH_32F, "For processing depth 32F use function pxkSubtractSFP");
    expectWrong(multiply, PXK_DEPTH_32F, "For processing depth 32F use function pxkMultiplySFP");
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_32S }) {
        expectWrong(addFloat, depth, "For processing this depth use function pxkAddS");
        expectWrong(subtractFloat, depth, "For processing this depth use function pxkSubtractS");
        expectWrong(multiplyFloat, depth, "For processing this depth use function pxkMultiplyS");
    }
}

TEST(Scalar, logicAndShiftsRefuseFloatsBehindTheGeometry)
{
    for (const Operation& op : { bitAnd, bitOr, bitXor, shiftLeft, shiftRight, invert }) {
        for (const int32_t constant : { 0, 3, 32, -1 }) {
            Scene scene;
            scene.images = { Picture::make(PictureSpec(PXK_DEPTH_32F)), Picture::make(PictureSpec(PXK_DEPTH_32F)) };
            startReports();
            op.call(scene[0], scene[1], { constant, 0 });
            ASSERT_EQ(recordedReports().size(), 1u) << op.name;
            EXPECT_EQ(recordedReports()[0].context, "This function does not support depth 32F") << op.name;
            EXPECT_EQ(pxkGetErrStatus(), -5);
            startReports();
            scene[0].setRegion(100, 0, 5, 5);
            op.call(scene[0], scene[1], { constant, 0 });
            expectNoReports();
        }
    }
}

TEST(Scalar, magnitudeWantsEquallyManyChannels)
{
    PicturePtr source = Picture::make(PictureSpec(PXK_DEPTH_16S, 8, 4, 3).region(0, 0, 8, 4, 2));
    PicturePtr destination = Picture::make(PictureSpec(PXK_DEPTH_16S, 8, 4, 1));
    startReports();
    pxkAbs(*source, *destination);
    expectReports({ { -5, "pxkAbs", "(srcImage->nChannels != dstImage->nChannels)" } });
}

TEST(Scalar, magnitudeWithoutSignIsACopy)
{
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        Axes axes;
        axes.depths = { depth };
        axes.masks = { 0, 2 };
        axes.tilings = { 0, ALL_IMAGES };
        axes.channels = { Channels::ONE, Channels::UNLIKE };
        startReports();
        forEachCase(axes, [](const Case& c) {
            const Scene got = makeScene(c, 2);
            const Scene want = got.copy();
            modelCopy(want[0], want[1]);
            pxkAbs(got[0], got[1]);
            EXPECT_TRUE(sameScene(want, got));
            expectNoReports();
        });
    }
    PicturePtr source = Picture::make(PictureSpec(PXK_DEPTH_8U, 8, 4, 3));
    PicturePtr destination = Picture::make(PictureSpec(PXK_DEPTH_16U, 8, 4, 3));
    pxkAbs(*source, *destination);
    expectReports({ { -5, "pxkCopy", "srcImage->depth != dstImage->depth" }, { -1, "pxkAbs", "pxkCopy is failed" } });
}

TEST(Scalar, onlyTheMagnitudeStopsOnAStaleStatus)
{
    for (const Operation& op : allOperations()) {
        Scene got;
        got.images = { Picture::make(PictureSpec(op.aDepth())), Picture::make(PictureSpec(op.aDepth())) };
        const Scene want = got.copy();
        const Constant constant = { 5, 5.0f };
        if (!op.isAbs()) runModel(op, want, constant);
        startReports();
        pxkSetErrStatus(-7);
        op.call(got[0], got[1], constant);
        EXPECT_EQ(pxkGetErrStatus(), -7);
        EXPECT_TRUE(recordedReports().empty());
        EXPECT_TRUE(sameScene(want, got)) << op.name;
    }
    startReports();
}

TEST(Scalar, emptyRegionsAndMasksAreSilent)
{
    for (const Operation& op : allOperations()) {
        for (int32_t kind = 0; kind < 3; ++kind) {
            PicturePtr source = Picture::make(PictureSpec(op.aDepth(), 20, 20).tiled(8, 8));
            PicturePtr destination = Picture::make(PictureSpec(op.aDepth(), 20, 20).tiled(16, 8));
            if (kind == 0) source->setRegion(20, 0, 4, 4);
            if (kind == 1) destination->setRegion(0, 25, 4, 4);
            if (kind == 2) source->setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 9, 9).region(9, 0, 3, 3)));
            const PicturePtr before = destination->copy();
            startReports();
            op.call(*source, *destination, { 3, 3.0f });
            expectNoReports();
            EXPECT_TRUE(samePicture(*before, *destination)) << op.name;
            EXPECT_TRUE(source->storage->calls.empty() && destination->storage->calls.empty()) << op.name;
        }
    }
}

// ---- refused tiles -------------------------------------------------------------------------------------------------

// Each sample is the old or the new one, and nothing outside what the destination's tiles held was touched.
bool isPartOf(const Picture& before, const Picture& after, const Picture& now)
{
    for (int32_t y = 0; y < now.spec.height; ++y) {
        for (int32_t x = 0; x < now.spec.width; ++x) {
            for (int32_t c = 0; c < now.spec.channels; ++c) {
                const uint32_t bits = now.bits(x, y, c);
                if (bits != before.bits(x, y, c) && bits != after.bits(x, y, c)) return false;
            }
        }
    }
    return true;
}

// Refuses tile k of one image for k = 1, 2, ... until the operation succeeds. The tiles that were held are given back,
// none is asked for behind the refused one.
void refuseEachTile(const Operation& op, const Constant& constant, const Case& c, size_t side, const Report& expected)
{
    const Scene first = makeScene(c, 2, {}, false);
    const Scene after = first.copy();
    runModel(op, after, constant);
    for (int32_t k = 1;; ++k) {
        ASSERT_LT(k, 200);
        const Scene got = first.copy();
        got[side].storage->refuseAt = k;
        startReports();
        op.call(got[0], got[1], constant);
        const bool isRefused = got[side].storage->refuseAt == 0;
        if (!isRefused) {
            expectNoReports();
            EXPECT_TRUE(sameScene(after, got));
            return;
        }
        expectReports({ expected });
        int32_t asked = 0;
        for (const TileCall& call : got[side].storage->calls) asked += call.mode != PXK_TILE_RELEASE;
        EXPECT_EQ(asked, k);
        for (const PicturePtr& image : got.images) EXPECT_EQ(image->tileFault(), "");
        EXPECT_TRUE(isPartOf(first[1], after[1], got[1])) << op.name << ", tile " << k;
        EXPECT_TRUE(samePicture(first[0], got[0]));
    }
}

TEST(Scalar, refusedTiles)
{
    const struct {
        Operation op;
        int32_t depth;
        Constant constant;
        const char* reporter;
    } calls[] = {
        { add, PXK_DEPTH_16S, { 5, 0 }, "pxkSubtractS" }, // at 8 and 16 bits
        { add, PXK_DEPTH_32S, { 5, 0 }, "pxkAddS" },
        { add, PXK_DEPTH_1U, { 1, 0 }, "pxkOrS" },
        { subtract, PXK_DEPTH_8U, { 77, 0 }, "pxkSubtractS" },
        { subtract, PXK_DEPTH_8U, { 300, 0 }, "pxkSubtractS" },
        { subtractFrom, PXK_DEPTH_1U, { 1, 0 }, "pxkSubtractS" },
        { multiply, PXK_DEPTH_16U, { 3, 0 }, "pxkMultiplyS" },
        { multiply, PXK_DEPTH_16U, { -3, 0 }, "pxkAndS" },
        { bitAnd, PXK_DEPTH_8S, { 0, 0 }, "pxkAndS" },
        { bitOr, PXK_DEPTH_8S, { 9, 0 }, "pxkOrS" },
        { bitXor, PXK_DEPTH_8S, { 9, 0 }, "pxkXorS" },
        { shiftLeft, PXK_DEPTH_16S, { 2, 0 }, "pxkLShiftS" },
        { shiftLeft, PXK_DEPTH_16S, { 0, 0 }, "pxkXorS" },
        { shiftRight, PXK_DEPTH_16S, { 40, 0 }, "pxkRShiftS" },
        { shiftRight, PXK_DEPTH_16U, { 40, 0 }, "pxkAndS" },
        { square, PXK_DEPTH_16S, { 0, 0 }, "pxkSquare" },
        { magnitude, PXK_DEPTH_16S, { 0, 0 }, "pxkAbs" },
        { invert, PXK_DEPTH_16S, { 0, 0 }, "pxkXorS" },
        { addFloat, PXK_DEPTH_32F, { 0, 2 }, "pxkAddSFP" },
        { subtractFloat, PXK_DEPTH_32F, { 0, 2 }, "pxkSubtractSFP" },
        { multiplyFloat, PXK_DEPTH_32F, { 0, 2 }, "pxkMultiplySFP" },
    };
    for (const auto& call : calls) {
        SCOPED_TRACE(call.op.name);
        const char* const texts[] = { call.op.isAbs() ? "(srcImage->tileInfo->tileData != ((void*)(0)))"
                                                      : "(srcImage->tileInfo->tileData == ((void*)(0)))",
                                      "(dstImage->tileInfo->tileData == ((void*)(0)))" };
        for (size_t side = 0; side < 2; ++side) {
            for (uint64_t seed = 1; seed <= 4; ++seed) {
                Case c;
                c.depth = call.depth;
                c.masks = seed % 2 == 0 ? ALL_IMAGES : 0;
                c.tiling = seed > 2 ? ALL_IMAGES : 1u << side;
                c.seed = seed;
                refuseEachTile(call.op, call.constant, c, side, { -5, call.reporter, texts[side] });
            }
        }
    }
}

} // namespace
