#include "gallery.h"

#include "pictures.h"

#include <cstdio>
#include <cstdlib>

namespace gallery {

static std::string reports;

static PxkImage* orEnd(const Image& image)
{
    if (!image) {
        std::fputs("gallery: out of memory\n", stderr);
        std::exit(1);
    }
    return image.get();
}

// Takes off what exhibits hang on an image. Beyond its edge a filter then meets the edge samples.
static void restore(PxkImage* image)
{
    image->roi = nullptr;
    image->maskROI = nullptr;
    pxkSetBorderMode(image, PXK_EDGE_CLAMP, PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT, 0);
}

// The result as it is, without region or mask.
static Image plainCopy(PxkImage* image)
{
    PxkImage plain = *image;
    plain.roi = nullptr;
    plain.maskROI = nullptr;
    return Image(pxkCloneImage(&plain));
}

int32_t keepReport(int32_t status, const char* func, const char* context, const char*, int32_t)
{
    reports += std::string(func ? func : "") + ": " + (context ? context : "") + "\n    status "
        + std::to_string(status) + ", " + pxkErrorStr(status) + '\n';
    return status;
}

std::string takeReports()
{
    std::string taken;
    taken.swap(reports);
    pxkSetErrStatus(PXK_StsOk);
    return taken;
}

Stage::Stage(const Inputs& inputs)
    : photo(inputs.photo.get())
    , gray(inputs.gray.get())
    , other(inputs.other.get())
    , ramp(inputs.ramp.get())
    , rings(inputs.rings.get())
    , ellipse(inputs.ellipse.get())
    , writing(inputs.writing.get())
{
    restoreInputs();
}

Stage::~Stage()
{
    restoreInputs();
}

void Stage::restoreInputs()
{
    for (PxkImage* image : { photo, gray, other, ramp, rings, ellipse, writing }) restore(image);
}

PxkImage* Stage::blank(int32_t nChannels, int32_t depth, int32_t width, int32_t height, int32_t fill, int32_t dataOrder,
                       int32_t alphaChannel)
{
    return adopt(makeImage(nChannels, depth, width, height, fill, dataOrder, alphaChannel));
}

PxkImage* Stage::like(const PxkImage* model, int32_t fill)
{
    return blank(model->nChannels, model->depth, model->width, model->height, fill, model->dataOrder,
                 model->alphaChannel);
}

PxkImage* Stage::clone(PxkImage* image)
{
    return adopt(Image(pxkCloneImage(image)));
}

PxkImage* Stage::adopt(Image image)
{
    owned_.push_back(std::move(image));
    return orEnd(owned_.back());
}

void Stage::picture(PxkImage* image)
{
    if (result.pixels == 0) result.pixels = static_cast<double>(image->width) * image->height;
    result.picture = plainCopy(image);
    orEnd(result.picture);
}

} // namespace gallery
