// Arithmetic and logic with a constant.
#include "reference/scalar.h"
#include "support/operations.h"

namespace {

// Around the ends of all depths' ranges, their doubles and the widths of samples; 32-bit patterns; shifts.
Numbers anyInteger(const Case&, const Scene&, Random& random)
{
    static const int32_t magnitudes[] = { 0,   3,   7,    15,    31,    77,    127,   181,    255,
                                          300, 510, 4097, 32767, 46340, 65535, 70000, 131070, 1 << 24 };
    if (random.oneIn(8)) return { double(random.oneOf({ INT32_MIN, INT32_MIN + 1, INT32_MAX, 0x55AA33C1 })) };
    const int32_t magnitude = random.oneIn(2) ? random.below(40) : random.oneOf(magnitudes) + random.between(-1, 1);
    return { double(random.oneIn(2) ? magnitude : -magnitude) };
}

Numbers anyFloat(const Case&, const Scene&, Random& random)
{
    return { double(random.oneOf({ 0.0f, 1.0f, -1.0f, 0.1f, -2.5e7f, 3.0e38f, 1e-40f })) };
}

struct Row {
    const char* name;
    Scalar kind;
    std::function<void(PxkImage*, PxkImage*, double)> call;
    bool isNullOwn;            // a null source has a text of its own
    std::vector<Trial> trials; // who reports depends on depth and constant: one operation is done by another
    const char* func = nullptr;
};

std::function<void(PxkImage*, PxkImage*, double)> with(void (*function)(PxkImage*, PxkImage*, int32_t))
{
    return [=](PxkImage* s, PxkImage* d, double constant) { function(s, d, int32_t(constant)); };
}
std::function<void(PxkImage*, PxkImage*, double)> withFloat(void (*function)(PxkImage*, PxkImage*, float))
{
    return [=](PxkImage* s, PxkImage* d, double constant) { function(s, d, float(constant)); };
}
std::function<void(PxkImage*, PxkImage*, double)> without(void (*function)(PxkImage*, PxkImage*))
{
    return [=](PxkImage* s, PxkImage* d, double) { function(s, d); };
}
void subtract(PxkImage* s, PxkImage* d, double constant)
{
    pxkSubtractS(s, d, int32_t(constant), 0);
}
void subtractFrom(PxkImage* s, PxkImage* d, double constant) // any flip that is not 0 counts
{
    const int32_t flips[] = { 1, -1, 256, INT32_MIN };
    pxkSubtractS(s, d, int32_t(constant), flips[uint32_t(int32_t(constant)) % 4]);
}
void subtractFloat(PxkImage* s, PxkImage* d, double constant)
{
    pxkSubtractSFP(s, d, float(constant), 0);
}
void subtractFromFloat(PxkImage* s, PxkImage* d, double constant)
{
    pxkSubtractSFP(s, d, float(constant), 256);
}

Operation operationOf(const Row& row)
{
    Operation op(
        row.name, { "srcImage", "dstImage" }, [call = row.call](const Arguments& a) { call(a[0], a[1], a.numbers[0]); },
        [kind = row.kind](const Scene& s, const Numbers& n) { modelScalar(kind, s[0], s[1], n[0]); });
    const bool isFloat = op.func.find("FP") != std::string::npos;
    const std::string name = row.func != nullptr ? row.func : op.func;
    op.setFunc(name);
    op.trials = row.trials;
    op.numbers = isFloat ? anyFloat : anyInteger;
    if (isFloat) {
        op.axes.depths = { PXK_DEPTH_32F };
    } else if (row.kind != Scalar::SQUARE) {
        op.axes.depths.pop_back();
    }
    if (row.name == std::string("pxkSubtractS")) op.axes.orders.push_back(Order::MIXED);
    op.axes.places = { InPlace::NO, InPlace::NO, InPlace::FIRST };
    op.axes.count = 1200;
    op.axes.seed = 11 + uint64_t(row.kind);
    if (row.isNullOwn) {
        op.nullImage = [name, other = op.nullImage](size_t k) {
            return k == 0 ? Ending({ { PXK_StsBadArg, name, "srcImage==0" } }) : other(k);
        };
    }
    return op;
}

PictureSpec planesOf(int32_t depth)
{
    PictureSpec spec = RGB_PLANES;
    spec.depth = depth;
    return spec;
}

void add(const Row& row)
{
    const Operation op = operationOf(row);
    addOperation(op);
    const bool isFloat = op.axes.depths[0] == PXK_DEPTH_32F;
    const bool hasOrder = op.func != "pxkSubtractS";
    const PictureSpec gray = isFloat ? FLOATS : GRAY;
    PictureSpec rgb = RGB;
    rgb.depth = gray.depth;
    const char* const channels = "(nChSrc != nChDst)";
    addRefusals(row.name,
                { { "(srcImage->depth != dstImage->depth)", { gray, planesOf(PXK_DEPTH_32S) }, { 3 } },
                  { hasOrder ? "(srcImage->dataOrder != dstImage->dataOrder)" : channels,
                    { gray, planesOf(gray.depth) },
                    { 3 } },
                  { channels, { gray, rgb }, { 3 } } });
    if (row.kind >= Scalar::AND && row.kind <= Scalar::SHIFT_RIGHT) {
        for (const double constant : { 0.0, 3.0, 32.0, -1.0 }) {
            const bool isXor = (row.kind == Scalar::SHIFT_LEFT || row.kind == Scalar::SHIFT_RIGHT) && constant == 0;
            addRefusals(row.name,
                        { { "This function does not support depth 32F",
                            { FLOATS, FLOATS },
                            { constant },
                            {},
                            PXK_StsBadArg,
                            isXor ? "pxkXorS" : "" } });
        }
    }
}

// The source's depth decides, whatever else is wrong.
void addDepths(const std::string& integer, const std::string& real)
{
    addRefusals(integer, { { "For processing depth 32F use function " + real, { FLOATS, NO_IMAGE }, { 3 } } });
    for (const PictureSpec& spec : { BITONAL, RGB, GRAY_32S }) {
        addRefusals(real, { { "For processing this depth use function " + integer, { spec, NO_IMAGE }, { 3 } } });
    }
}

const Rows rows([] {
    add({ "pxkAddS",
          Scalar::ADD,
          with(pxkAddS),
          true,
          { { PXK_DEPTH_16S, { 5 }, "pxkSubtractS" },
            { PXK_DEPTH_32S, { 5 }, "pxkAddS" },
            { PXK_DEPTH_1U, { 1 }, "pxkOrS" } } });
    add({ "pxkSubtractS",
          Scalar::SUBTRACT,
          subtract,
          false,
          { { PXK_DEPTH_8U, { 77 }, "pxkSubtractS" }, { PXK_DEPTH_8U, { 300 }, "pxkSubtractS" } } });
    add({ "pxkSubtractS_from",
          Scalar::SUBTRACT_FROM,
          subtractFrom,
          false,
          { { PXK_DEPTH_1U, { 1 }, "pxkSubtractS" } } });
    add({ "pxkMultiplyS",
          Scalar::MULTIPLY,
          with(pxkMultiplyS),
          true,
          { { PXK_DEPTH_16U, { 3 }, "pxkMultiplyS" }, { PXK_DEPTH_16U, { -3 }, "pxkAndS" } } });
    add({ "pxkAndS", Scalar::AND, with(pxkAndS), false, { { PXK_DEPTH_8S, { 0 }, "pxkAndS" } } });
    add({ "pxkOrS", Scalar::OR, with(pxkOrS), false, {} });
    add({ "pxkXorS", Scalar::XOR, with(pxkXorS), false, {} });
    add({ "pxkLShiftS",
          Scalar::SHIFT_LEFT,
          with(pxkLShiftS),
          true,
          { { PXK_DEPTH_16S, { 2 }, "pxkLShiftS" }, { PXK_DEPTH_16S, { 0 }, "pxkXorS" } } });
    add({ "pxkRShiftS",
          Scalar::SHIFT_RIGHT,
          with(pxkRShiftS),
          false,
          { { PXK_DEPTH_16S, { 40 }, "pxkRShiftS" },
            { PXK_DEPTH_16U, { 40 }, "pxkAndS" },
            { PXK_DEPTH_16U, { 16 }, "pxkAndS" },
            { PXK_DEPTH_16U, { 15 }, "pxkRShiftS" } } });
    add({ "pxkNot", Scalar::NOT, without(pxkNot), false, {}, "pxkXorS" });
    add({ "pxkSquare", Scalar::SQUARE, without(pxkSquare), false, { { PXK_DEPTH_16S, { 0 }, "pxkSquare" } } });
    add({ "pxkAddSFP", Scalar::ADD, withFloat(pxkAddSFP), true, {} });
    add({ "pxkSubtractSFP", Scalar::SUBTRACT, subtractFloat, true, {} });
    add({ "pxkSubtractSFP_from", Scalar::SUBTRACT_FROM, subtractFromFloat, true, {} });
    add({ "pxkMultiplySFP", Scalar::MULTIPLY, withFloat(pxkMultiplySFP), true, {} });
    addDepths("pxkAddS", "pxkAddSFP");
    addDepths("pxkSubtractS", "pxkSubtractSFP");
    addDepths("pxkMultiplyS", "pxkMultiplySFP");

    Operation magnitude = operationOf({ "pxkAbs", Scalar::ABS, without(pxkAbs), true, {} });
    magnitude.axes.depths = { PXK_DEPTH_8S, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    magnitude.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    magnitude.stale = Stale::STOPS;
    magnitude.nullImage = [](size_t k) {
        return Ending({ { PXK_StsBadArg, "pxkAbs", k == 0 ? "srcImage==0" : "dstImage==0" } });
    };
    magnitude.refusedTile = [](const std::string& func, size_t k, const Scene&) {
        if (k == 1) return tileText(func, "dstImage", "((void*)(0))");
        return Ending({ { PXK_StsBadArg, func, "(srcImage->tileInfo->tileData != ((void*)(0)))" } });
    };
    addOperation(magnitude);
    PictureSpec oneOfThree = RGB_8S;
    oneOfThree.region(0, 0, 9, 4, 2);
    addRefusals("pxkAbs",
                { { "(srcImage->depth != dstImage->depth)", { GRAY_8S, RGB_PLANES }, { 0 } },
                  { "(srcImage->dataOrder != dstImage->dataOrder)", { GRAY_8S, planesOf(PXK_DEPTH_8S) }, { 0 } },
                  { "(nChSrcCoi != nChDstCoi)", { GRAY_8S, RGB_8S }, { 0 } },
                  { "(srcImage->nChannels != dstImage->nChannels)", { oneOfThree, GRAY_8S }, { 0 } } });
});

} // namespace
