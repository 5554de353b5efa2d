// Every byte colour through the conversions; what the table of operations has no room for.
#include "colour_cases.h"
#include "support/reports.h"

// All 16,777,216 of them, 65536 a call.
TEST(Colour, everyByteColourMatchesModel)
{
    for (const Conversion& of : conversions()) {
        if (of.depths[0] != PXK_DEPTH_8U) continue;
        const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 65536, 1, 3, PXK_DATA_ORDER_PLANE));
        const PicturePtr dst = Picture::make(src->spec);
        setWords(of.isToRgb ? *dst : *src, "RGB", "RGB");
        setWords(of.isToRgb ? *src : *dst, of.word, of.word);
        int64_t wrong = 0;
        for (int32_t first = 0; first < 256; ++first) {
            for (int32_t i = 0; i < 65536; ++i) {
                src->row(0, 0)[i] = uint8_t(first);
                src->row(0, 1)[i] = uint8_t(i >> 8);
                src->row(0, 2)[i] = uint8_t(i);
            }
            of.run(*src, *dst);
            for (int32_t i = 0; i < 65536; ++i) {
                const model::Pixel q = of.model(PXK_DEPTH_8U, { double(first), double(i >> 8), double(i & 255) });
                for (int32_t k = 0; k < 3; ++k) wrong += dst->row(0, k)[i] != q[size_t(k)];
            }
        }
        EXPECT_EQ(wrong, 0) << of.name;
    }
}
