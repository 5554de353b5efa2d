/* SPDX-License-Identifier: BSD-2-Clause */
// Picture files for programs: bitmaps through the library, PNG and JPEG where libpng and libjpeg were found.
#pragma once

#include <pxk/pxk.h>

#include <cstddef>
#include <memory>
#include <string>

// Regions, masks and tile records are never an image's own here.
struct ReleaseImage {
    void operator()(PxkImage* image) const { pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA); }
};
using ImagePtr = std::unique_ptr<PxkImage, ReleaseImage>;

// A picture as three channels BGR in pixel order, top row first; alpha over white. Null with the reason in `why`. No
// more is made of a file than it can hold, however large a picture it claims.
ImagePtr readPicture(const std::string& path, std::string& why);
ImagePtr readPictureBytes(const void* bytes, size_t length, std::string& why);

// The same pixels, in any order and of 1 or 8 bits, one, three or four channels, as three channels BGR in pixel order,
// top row first. Null: out of memory.
ImagePtr toColour(const PxkImage& image);

// Sample (x, y, c) of an image of depth 1U (as 0 or 255) or 8U, in any order; y counts from the picture's top row.
uint8_t sampleAt(const PxkImage& image, int32_t x, int32_t y, int32_t c);

// The end of the names of files that writePicture writes: ".png", or ".bmp" without libpng.
extern const char* const pictureSuffix;

// Writes an image of depth 1U, or 8U with one, three or four channels. False with the reason in `why`.
bool writePicture(const std::string& path, PxkImage& image, std::string& why);
