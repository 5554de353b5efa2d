# SPDX-License-Identifier: BSD-2-Clause
"""Makes the guides' pictures from the photographs of the tests: pictures.py LIBRARY PHOTOS FOLDER

LIBRARY is libpxk.so, PHOTOS the folder tests/photos. Needs Pillow (Debian package python3-pil).
"""
import ctypes
import os
import sys

from PIL import Image


class PxkImage(ctypes.Structure):
    _fields_ = ([(name, ctypes.c_int32) for name in
                 ("headerSize", "headerVersion", "nChannels", "alphaChannel", "depth")] +
                [("colorModel", ctypes.c_char * 4), ("channelSeq", ctypes.c_char * 4)] +
                [(name, ctypes.c_int32) for name in ("dataOrder", "origin", "align", "width", "height")] +
                [(name, ctypes.c_void_p) for name in ("roi", "maskROI", "userTag", "tileInfo")] +
                [("imageSize", ctypes.c_int32), ("imageData", ctypes.c_void_p), ("widthStep", ctypes.c_int32),
                 ("borderMode", ctypes.c_int32 * 4), ("borderConst", ctypes.c_int32 * 4),
                 ("imageDataBase", ctypes.c_void_p)])


def header_of(width, height, channels, depth, samples=None):
    step = (width * channels * depth + 31) // 32 * 4
    block = ctypes.create_string_buffer(step * height)
    if samples is not None:
        row = width * channels
        for y in range(height):
            block[y * step:y * step + row] = samples[y * row:(y + 1) * row]
    image = PxkImage(ctypes.sizeof(PxkImage), 0, channels, 0, depth, b"GRAY" if channels == 1 else b"RGB",
                     b"G" if channels == 1 else b"RGB", 0, 0, 4, width, height)
    image.imageSize, image.widthStep, image.imageData = step * height, step, ctypes.addressof(block)
    image.block = block
    return image


def picture_of(image):
    size = (image.width, image.height)
    if image.depth == 1:
        return Image.frombytes("1", size, image.block.raw, "raw", "1", image.widthStep)
    mode = "L" if image.nChannels == 1 else "RGB"
    return Image.frombytes(mode, size, image.block.raw, "raw", mode, image.widthStep)


def header_from(picture):
    return header_of(*picture.size, len(picture.getbands()), 8, picture.tobytes())


def sheet(rows, mode, gap=6):
    """Pictures side by side, rows of equal height each, on white."""
    width = len(rows[0]) * (rows[0][0].width + gap) - gap
    height = sum(row[0].height + gap for row in rows) - gap
    page, top = Image.new(mode, (width, height), "white"), 0
    for row in rows:
        for k, picture in enumerate(row):
            page.paste(picture, (k * (picture.width + gap), top))
        top += row[0].height + gap
    return page


def dithers(pxk, photos):
    photo = Image.open(os.path.join(photos, "camera-gray8.bmp")).convert("L").crop((150, 40, 310, 200))
    pictures = [photo.convert("L")]
    for way in (1, 2, 4, 8, 16):  # PXK_DITHER_...
        bits = header_of(*photo.size, 1, 1)
        pxk.pxkReduceBits(ctypes.byref(header_from(photo)), ctypes.byref(bits), 0, way, 0)
        pictures.append(picture_of(bits).convert("L"))
    return sheet([pictures[:3], pictures[3:]], "L")


def interpolations(pxk, photos):
    photo = Image.open(os.path.join(photos, "astronaut-24.bmp")).convert("RGB")
    eyes = photo.crop((180, 90, 220, 130))
    text = Image.open(os.path.join(photos, "text-1bit.bmp")).convert("RGB").crop((0, 0, 400, 170))
    enlarged, reduced = [], []
    for way in (0, 1, 2):  # PXK_INTER_NN, LINEAR, CUBIC
        enlarged.append(header_of(160, 160, 3, 8))
        pxk.pxkResize(ctypes.byref(header_from(eyes)), ctypes.byref(enlarged[-1]), 4, 1, 4, 1, way)
    for way in (0, 1, 3):  # PXK_INTER_NN, LINEAR, SUPER
        reduced.append(header_of(160, 68, 3, 8))
        pxk.pxkDecimate(ctypes.byref(header_from(text)), ctypes.byref(reduced[-1]), 2, 5, 2, 5, way)
    return sheet([[picture_of(image) for image in row] for row in (enlarged, reduced)], "RGB")


def main():
    library, photos, folder = sys.argv[1:]
    pxk = ctypes.CDLL(library)
    pxk.pxkSetErrMode(2)  # PXK_ErrModeSilent
    os.makedirs(folder, exist_ok=True)
    dithers(pxk, photos).quantize(64).save(os.path.join(folder, "dithers.png"), optimize=True)
    interpolations(pxk, photos).quantize(96).save(os.path.join(folder, "interpolations.png"), optimize=True)
    if pxk.pxkGetErrStatus() < 0:
        sys.exit("the library refused a call")


main()
