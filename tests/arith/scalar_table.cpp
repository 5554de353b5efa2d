// SPDX-License-Identifier: BSD-2-Clause
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
    const int32_t some = random.oneOf(magnitudes), near = some + random.between(-1, 1);
    const int32_t magnitude = random.oneIn(2) ? random.below(40) : near;
    return { double(random.oneIn(2) ? magnitude : -magnitude) };
}

Numbers anyFloat(const Case&, const Scene&, Random& random)
{
    return { double(random.oneOf({ 0.0f, 1.0f, -1.0f, 0.1f, -2.5e7f, 3.0e38f, 1e-40f })) };
}

using Call = std::function<void(PxkImage*, PxkImage*, double)>;

template <class... Constant> Call of(void (*function)(PxkImage*, PxkImage*, Constant...))
{
    return [=](PxkImage* s, PxkImage* d, double constant) {
        if constexpr (sizeof...(Constant) == 0) function(s, d);
        if constexpr (sizeof...(Constant) == 1) function(s, d, static_cast<Constant>(constant)...);
    };
}

// A null source may have a text of its own. Who reports depends on depth and constant, which `trials` tell: one
// operation is done by another.
Operation operationOf(const std::string& name, Scalar kind, const Call& call, bool isNullOwn,
                      const std::vector<Trial>& trials = {})
{
    Operation op(
        name, { "srcImage", "dstImage" }, [=](const Arguments& a) { call(a[0], a[1], a.numbers[0]); },
        [=](const Scene& s, const Numbers& n) { modelScalar(kind, s[0], s[1], n[0]); });
    const bool isFloat = name.find("FP") != std::string::npos;
    if (kind == Scalar::NOT) op.func = "pxkXorS";
    op.trials = trials;
    op.numbers = isFloat ? anyFloat : anyInteger;
    if (isFloat) {
        op.axes.depths = { PXK_DEPTH_32F };
    } else if (kind != Scalar::SQUARE) {
        op.axes.depths.pop_back();
    }
    if (name == "pxkSubtractS") op.axes.orders.push_back(Order::MIXED);
    op.axes.places = { InPlace::NO, InPlace::NO, InPlace::FIRST };
    op.axes.count = 1200;
    op.axes.seed = 11 + uint64_t(kind);
    if (isNullOwn) op.nullImage = tells({ { PXK_StsBadArg, "srcImage==0" }, { PXK_StsNullHeader, "Incorrect Image" } });
    return op;
}

void add(const std::string& name, Scalar kind, const Call& call, bool isNullOwn, const std::vector<Trial>& trials = {})
{
    const Operation op = operationOf(name, kind, call, isNullOwn, trials);
    addOperation(op);
    const PictureSpec gray = GRAY.ofDepth(op.plainDepth()), rgb = gray.of(3),
                      planes = rgb.ordered(PXK_DATA_ORDER_PLANE);
    const char *const channels = "(nChSrc != nChDst)", *const orders = "(srcImage->dataOrder != dstImage->dataOrder)";
    const bool hasOrder = op.func != "pxkSubtractS";
    addRefusals(name,
                { { "(srcImage->depth != dstImage->depth)", { gray, planes.ofDepth(PXK_DEPTH_32S) }, { 3 } },
                  { hasOrder ? orders : channels, { gray, planes }, { 3 } },
                  { channels, { gray, rgb }, { 3 } } });
    if (kind < Scalar::AND || kind > Scalar::SHIFT_RIGHT) return;
    for (const double constant : { 0.0, 3.0, 32.0, -1.0 }) {
        const bool isXor = (kind == Scalar::SHIFT_LEFT || kind == Scalar::SHIFT_RIGHT) && constant == 0;
        Refusal refusal = { "This function does not support depth 32F", { FLOATS, FLOATS }, { constant } };
        if (isXor) refusal.func = "pxkXorS";
        addRefusals(name, { refusal });
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
    const auto subtract = [](PxkImage* s, PxkImage* d, double c) { pxkSubtractS(s, d, int32_t(c), 0); };
    const auto subtractFrom = [](PxkImage* s, PxkImage* d, double c) { // any flip that is not 0 counts
        const int32_t flips[] = { 1, -1, 256, INT32_MIN };
        pxkSubtractS(s, d, int32_t(c), flips[uint32_t(int32_t(c)) % 4]);
    };
    const auto subtractFP = [](PxkImage* s, PxkImage* d, double c) { pxkSubtractSFP(s, d, float(c), 0); };
    const auto subtractFromFP = [](PxkImage* s, PxkImage* d, double c) { pxkSubtractSFP(s, d, float(c), 256); };
    const int32_t bits = PXK_DEPTH_1U, bytes = PXK_DEPTH_8U, words = PXK_DEPTH_16U, signedWords = PXK_DEPTH_16S;
    add("pxkAddS", Scalar::ADD, of(pxkAddS), true,
        { { signedWords, { 5 }, "pxkSubtractS" }, { PXK_DEPTH_32S, { 5 }, "pxkAddS" }, { bits, { 1 }, "pxkOrS" } });
    add("pxkSubtractS", Scalar::SUBTRACT, subtract, false,
        { { bytes, { 77 }, "pxkSubtractS" }, { bytes, { 300 }, "pxkSubtractS" } });
    add("pxkSubtractS_from", Scalar::SUBTRACT_FROM, subtractFrom, false, { { bits, { 1 }, "pxkSubtractS" } });
    add("pxkMultiplyS", Scalar::MULTIPLY, of(pxkMultiplyS), true,
        { { words, { 3 }, "pxkMultiplyS" }, { words, { -3 }, "pxkAndS" } });
    add("pxkAndS", Scalar::AND, of(pxkAndS), false, { { PXK_DEPTH_8S, { 0 }, "pxkAndS" } });
    add("pxkOrS", Scalar::OR, of(pxkOrS), false);
    add("pxkXorS", Scalar::XOR, of(pxkXorS), false);
    add("pxkLShiftS", Scalar::SHIFT_LEFT, of(pxkLShiftS), true,
        { { signedWords, { 2 }, "pxkLShiftS" }, { signedWords, { 0 }, "pxkXorS" } });
    add("pxkRShiftS", Scalar::SHIFT_RIGHT, of(pxkRShiftS), false,
        { { signedWords, { 40 }, "pxkRShiftS" }, { words, { 16 }, "pxkAndS" }, { words, { 15 }, "pxkRShiftS" } });
    add("pxkNot", Scalar::NOT, of(pxkNot), false, { { bytes, { 0 }, "pxkXorS" } });
    add("pxkSquare", Scalar::SQUARE, of(pxkSquare), false);
    add("pxkAddSFP", Scalar::ADD, of(pxkAddSFP), true);
    add("pxkSubtractSFP", Scalar::SUBTRACT, subtractFP, true);
    add("pxkSubtractSFP_from", Scalar::SUBTRACT_FROM, subtractFromFP, true);
    add("pxkMultiplySFP", Scalar::MULTIPLY, of(pxkMultiplySFP), true);
    addDepths("pxkAddS", "pxkAddSFP");
    addDepths("pxkSubtractS", "pxkSubtractSFP");
    addDepths("pxkMultiplyS", "pxkMultiplySFP");

    Operation magnitude = operationOf("pxkAbs", Scalar::ABS, of(pxkAbs), true);
    magnitude.axes.depths = { PXK_DEPTH_8S, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    magnitude.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    magnitude.stale = Stale::STOPS;
    magnitude.nullImage = tells({ { PXK_StsBadArg, "srcImage==0" }, { PXK_StsBadArg, "dstImage==0" } });
    magnitude.refusedTile = tells({ { PXK_StsBadArg, "(srcImage->tileInfo->tileData != ((void*)(0)))" },
                                    { PXK_StsBadArg, "(dstImage->tileInfo->tileData == ((void*)(0)))" } });
    addOperation(magnitude);
    addRefusals(
        "pxkAbs",
        { { "(srcImage->depth != dstImage->depth)", { GRAY_8S, RGB_PLANES }, { 0 } },
          { "(srcImage->dataOrder != dstImage->dataOrder)", { GRAY_8S, RGB_PLANES.ofDepth(PXK_DEPTH_8S) }, { 0 } },
          { "(nChSrcCoi != nChDstCoi)", { GRAY_8S, RGB_8S }, { 0 } },
          { "(srcImage->nChannels != dstImage->nChannels)", { RGB_8S.region(0, 0, 9, 4, 2), GRAY_8S }, { 0 } } });
});

} // namespace
