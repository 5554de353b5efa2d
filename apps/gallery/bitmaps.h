// Bitmap files in and out, as the gallery wants them.
#pragma once

#include "gallery.h"

#include <string>

namespace gallery {

// Any bitmap that the library takes, as three channels BGR in pixel order, top row first. Null with the reason in
// `why`.
Image readPicture(const std::string& path, std::string& why);

// Writes an image of depth 1U, or 8U with one, three or four channels. False with the reason in `why`.
bool writePicture(const std::string& path, PxkImage& image, std::string& why);

} // namespace gallery
