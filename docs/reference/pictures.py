# SPDX-License-Identifier: BSD-2-Clause
"""Draws the pictures of the reference: pictures.py FOLDER"""
import os
import sys

INK, PALE, ONE, TWO, THREE = "#24292f", "#d0d7de", "#0969da", "#bc4c00", "#1a7f37"
TINTS = {"r": "#ffd7d5", "g": "#d2f4d9", "b": "#cfe4ff"}


class Drawing:
    def __init__(self, width, height, title):
        self.size, self.title, self.items = (width, height), title, []

    def box(self, x, y, width, height, fill="#ffffff", line=INK, dash=""):
        style = f' stroke-dasharray="{dash}"' if dash else ""
        self.items.append(f'<rect x="{x}" y="{y}" width="{width}" height="{height}" fill="{fill}" stroke="{line}"{style}/>')

    def text(self, x, y, text, colour=INK, anchor="middle", size=13):
        self.items.append(
            f'<text x="{x}" y="{y}" fill="{colour}" text-anchor="{anchor}" font-size="{size}">{text}</text>')

    def line(self, x1, y1, x2, y2, colour=INK):
        self.items.append(f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{colour}"/>')

    def write(self, folder, name):
        width, height = self.size
        with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
            file.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
                       f'viewBox="0 0 {width} {height}" font-family="sans-serif">\n<title>{self.title}</title>\n'
                       f'<rect width="{width}" height="{height}" fill="#ffffff"/>\n')
            file.write("\n".join(self.items) + "\n</svg>\n")


def bits():
    """A row of 11 one-bit pixels in four bytes."""
    d = Drawing(700, 150, "A one-bit row")
    row = "10110010011"
    for x in range(16):
        inside = x < len(row)
        d.box(20 + 30 * x, 50, 30, 30, "#ffffff" if inside else "#f0f0f0")
        d.text(35 + 30 * x, 70, row[x] if inside else "", INK)
        d.text(35 + 30 * x, 42, f"{x}" if inside else "", ONE, size=12)
        d.text(35 + 30 * x, 96, str(7 - x % 8), TWO, size=12)
    d.box(500, 50, 180, 30, "#f0f0f0")
    d.text(590, 70, "bytes 2 and 3: padding", size=12)
    d.text(20, 20, "pixel x", ONE, "start")
    d.text(80, 20, "lies in bit 7 - x % 8", TWO, "start")
    d.text(215, 20, "of byte x / 8; a row of 11 pixels with align 4 has a widthStep of 4", INK, "start")
    for byte in (0, 1):
        d.line(22 + 240 * byte, 108, 258 + 240 * byte, 108)
        d.text(140 + 240 * byte, 126, f"byte {byte}: 0x{int((row + '00000')[8 * byte:8 * byte + 8], 2):02X}")
    return d, "bits.svg"


def orders():
    """Three channels in pixel order and in planes."""
    d = Drawing(700, 250, "Pixels and planes")
    d.text(20, 22, "PXK_DATA_ORDER_PIXEL, channelSeq BGR", INK, "start")
    for y in range(2):
        for x in range(12):
            c = "bgr"[x % 3]
            d.box(20 + 34 * x, 34 + 30 * y, 34, 30, TINTS[c])
            d.text(37 + 34 * x, 54 + 30 * y, f"{c}{x // 3}{y}", size=12)
        d.box(428, 34 + 30 * y, 34, 30, "#f0f0f0")
    d.line(20, 104, 462, 104, ONE)
    d.text(241, 120, "widthStep: from row to row, here with padding", ONE, size=12)
    d.text(480, 54, "b20: blue of pixel", INK, "start", 12)
    d.text(480, 70, "x = 2, y = 0", INK, "start", 12)
    d.text(20, 152, "PXK_DATA_ORDER_PLANE", INK, "start")
    for k, c in enumerate("bgr"):
        for y in range(2):
            for x in range(4):
                d.box(20 + 34 * x + 220 * k, 164 + 30 * y, 34, 30, TINTS[c])
                d.text(37 + 34 * x + 220 * k, 184 + 30 * y, f"{c}{x}{y}", size=12)
            d.box(156 + 220 * k, 164 + 30 * y, 34, 30, "#f0f0f0")
        d.text(105 + 220 * k, 242, f"at {k} height widthStep" if k else "at imageData", ONE, size=12)
    return d, "orders.svg"


def region():
    """Regions of two images, a mask, and the pixels that change."""
    d = Drawing(700, 290, "Region and mask")
    cell = 16

    def grid(x0, y0, columns, rows, fill):
        for y in range(rows):
            for x in range(columns):
                d.box(x0 + cell * x, y0 + cell * y, cell, cell, fill(x, y), PALE)
        d.box(x0, y0, cell * columns, cell * rows, "none")

    d.text(20, 22, "source", INK, "start")
    grid(20, 32, 11, 9, lambda x, y: TINTS["b"] if 2 <= x < 9 and 1 <= y < 6 else "#ffffff")
    d.box(20 + 2 * cell, 32 + cell, 7 * cell, 5 * cell, "none", ONE)
    d.text(20, 200, "region 2, 1, 7 x 5", ONE, "start", 12)
    mask = ["0110110", "1110111", "0111110", "0011100", "0001000"]
    d.text(255, 22, "mask of the destination", INK, "start")
    grid(255, 32, 7, 5, lambda x, y: "#444444" if mask[y][x] == "1" else "#ffffff")
    d.text(255, 200, "7 x 5 bits; dark: 1", INK, "start", 12)
    d.text(450, 22, "destination", INK, "start")
    grid(450, 32, 14, 10, lambda x, y: TINTS["g"] if 4 <= x < 10 and 3 <= y < 8 and mask[y - 3][x - 4] == "1" else "#ffffff")
    d.box(450 + 4 * cell, 32 + 3 * cell, 6 * cell, 7 * cell, "none", THREE)
    d.text(450, 216, "region 4, 3, 6 x 7", THREE, "start", 12)
    d.text(20, 245, "The work is 6 x 5: the smallest width and the smallest height of both regions and the mask. Each image keeps", INK,
           "start", 12)
    d.text(20, 263, "its own offset: the source's pixel (2, 1) meets bit (0, 0) and the destination's pixel (4, 3). Green pixels change.",
           INK, "start", 12)
    return d, "region.svg"


def borders():
    """The four border modes along a row."""
    d = Drawing(700, 200, "The border modes")
    row = ["a", "b", "c", "d", "e"]
    modes = [("PXK_EDGE_CONST", lambda i: row[i] if 0 <= i < 5 else "k"),
             ("PXK_EDGE_CLAMP", lambda i: row[min(max(i, 0), 4)]),
             ("PXK_EDGE_MIRROR", lambda i: row[[0, 1, 2, 3, 4, 4, 3, 2, 1, 0][i % 10]]),
             ("PXK_EDGE_WRAP", lambda i: row[i % 5])]
    for k, (name, sample) in enumerate(modes):
        y = 20 + 42 * k
        d.text(20, y + 20, name, INK, "start")
        for i in range(-4, 9):
            inside = 0 <= i < 5
            d.box(310 + 30 * i, y, 30, 30, TINTS["b"] if inside else "#ffffff", INK if inside else PALE)
            d.text(325 + 30 * i, y + 20, sample(i))
    d.text(385, 194, "the image", ONE, size=12)
    d.text(615, 40, "k: borderConst", INK, "start", 12)
    return d, "borders.svg"


def spectrum():
    """The packed spectrum of a picture of 6 by 4 pixels."""
    d = Drawing(700, 215, "A packed spectrum")
    for y in range(4):
        for x in range(6):
            if x in (0, 5):
                k = x // 5 * 3
                text = [f"F({k},0)", f"Re F({k},1)", f"Im F({k},1)", f"F({k},2)"][y]
                fill = TINTS["g"] if y in (0, 3) else TINTS["b"]
            else:
                text = f"{'Re' if x % 2 else 'Im'} F({(x + 1) // 2},{y})"
                fill = TINTS["r"] if (x + 1) // 2 == 1 else "#fff3c4"
            d.box(20 + 110 * x, 20 + 36 * y, 110, 36, fill)
            d.text(75 + 110 * x, 43 + 36 * y, text)
    d.text(20, 188, "Width 6, height 4: one real value a pixel. Corners (green) are real; columns 0 and 5 (blue) pack a line of their own;",
           INK, "start", 12)
    d.text(20, 204, "the columns between hold real and imaginary parts of the frequencies 1 and 2, side by side.", INK, "start", 12)
    return d, "spectrum.svg"


def main():
    os.makedirs(sys.argv[1], exist_ok=True)
    for draw in (bits, orders, region, borders, spectrum):
        drawing, name = draw()
        drawing.write(sys.argv[1], name)


main()
