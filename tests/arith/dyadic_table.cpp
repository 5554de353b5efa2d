// SPDX-License-Identifier: BSD-2-Clause
// Arithmetic and logic of two images.
#include "reference/arith.h"
#include "support/operations.h"

namespace {

void add(const char* name, Dyadic kind, void (*function)(PxkImage*, PxkImage*, PxkImage*))
{
    const bool isLogical = kind >= Dyadic::AND;
    const bool needsOneOrder = kind == Dyadic::ADD || kind == Dyadic::MULTIPLY;
    Operation op(
        name, { "srcImageA", "srcImageB", "dstImage" }, [=](const Arguments& a) { function(a[0], a[1], a[2]); },
        [=](const Scene& s, const Numbers&) { modelDyadic(kind, s[0], s[1], s[2]); });
    if (isLogical) op.axes.depths.pop_back();
    if (!needsOneOrder) op.axes.orders.push_back(Order::MIXED);
    op.axes.places = { InPlace::NO, InPlace::NO, InPlace::FIRST, InPlace::SECOND, InPlace::ALL, InPlace::OTHER_HEADER };
    op.axes.count = 4000;
    op.axes.seed = 1 + uint64_t(kind);
    if (needsOneOrder) {
        op.nullImage = tells({ { PXK_StsBadArg, "srcImageA==0" }, { PXK_StsNullHeader, "Incorrect Image" } });
    }
    addOperation(op);
    addRefusals(name,
                { { "(srcImageA->depth != dstImage->depth)", { RGB_16U, RGB_8S, GRAY } },
                  { "(srcImageB->depth != dstImage->depth)", { RGB, RGB_16U, GRAY } },
                  { "(nChSrcA != nChDst)", { RGB, RGB, GRAY } },
                  { "(nChSrcB != nChDst)", { GRAY, RGB, GRAY } } });
    if (needsOneOrder) {
        addRefusals(name,
                    { { "(srcImageA->dataOrder != dstImage->dataOrder)", { RGB_PLANES, RGB_PLANES, GRAY } },
                      { "(srcImageB->dataOrder != dstImage->dataOrder)", { RGB, RGB_PLANES, GRAY } } });
        // One-bit sums and products are logic, and so are their reports.
        addRefusals(name,
                    { { "(srcImageB->depth != dstImage->depth)",
                        { BITONAL, GRAY, BITONAL },
                        {},
                        {},
                        PXK_StsBadArg,
                        kind == Dyadic::ADD ? "pxkOr" : "pxkAnd" } });
    }
    if (isLogical) addRefusals(name, { { "This function does not support depth 32F", { FLOATS, FLOATS, FLOATS } } });
}

const Rows rows([] {
    add("pxkAdd", Dyadic::ADD, pxkAdd);
    add("pxkSubtract", Dyadic::SUBTRACT, pxkSubtract);
    add("pxkMultiply", Dyadic::MULTIPLY, pxkMultiply);
    add("pxkAnd", Dyadic::AND, pxkAnd);
    add("pxkOr", Dyadic::OR, pxkOr);
    add("pxkXor", Dyadic::XOR, pxkXor);
});

} // namespace
