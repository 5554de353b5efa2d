#include "bitmaps.h"

#include "bitmapfile.h"
#include "pictures.h"

namespace gallery {

Image readPicture(const std::string& path, std::string& why)
{
    BitmapFile file;
    if (const char* const fault = readBitmap(&file, path.c_str())) {
        why = fault;
        return nullptr;
    }
    Image picture = toColour(*file.image);
    if (!picture) why = "out of memory";
    releaseBitmap(&file);
    return picture;
}

bool writePicture(const std::string& path, PxkImage& image, std::string& why)
{
    const char* const fault = writeBitmap(&image, path.c_str());
    if (fault) why = fault;
    return fault == nullptr;
}

} // namespace gallery
