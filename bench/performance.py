#!/usr/bin/python3
# SPDX-License-Identifier: BSD-2-Clause
"""Writes docs/performance.md and its pictures from one run.

usage: bench/performance.py [--rows FOLDER | FILTER ...]

Builds the library (preset release) and bench/peers, runs the peers, C++ and Python, and measures how time grows with
windows and pictures. --rows takes the rows of an earlier run from its folder (build/performance) instead of measuring;
with a FILTER only cases whose "group/name size" contains one of the texts are run, to try things out.

Packages: libvips-dev libfftw3-dev libleptonica-dev libpixman-1-dev libyuv-dev libzimg-dev libhalide14-0-dev
python3-numpy python3-scipy python3-pil python3-skimage. Leave the machine alone while it runs: some ten minutes.
"""
import csv
import ctypes
import math
import os
import random
import re
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
ROWS = os.path.join(ROOT, "build", "performance")
DOCS = os.path.join(ROOT, "docs")
PICTURES = os.path.join(DOCS, "performance")
LIBRARY = os.path.join(ROOT, "build", "release", "lib", "libpxk.so")
PARTS = ("peers.tsv", "peers-python.tsv", "growth.tsv")
SIZES = ("2048x2048", "512x512")
AHEAD = 1.1  # a peer counts as ahead from here on

TITLES = {
    "copy": "Copy", "set": "Set", "arith": "Arithmetic and logic", "depth": "Threshold and depth",
    "conv": "Convolution", "rank": "Rank filters", "morph": "Morphology", "fft": "Fourier transform",
    "dct": "Cosine transform", "resize": "Resize", "warp": "Rotation, mirror, remap", "colour": "Colour",
    "dither": "Dither", "palette": "Palette", "stats": "Statistics",
}


# ---- one run -------------------------------------------------------------------------------------------------------

def run(command, **more):
    print("==", " ".join(command), flush=True)
    subprocess.run(command, check=True, cwd=ROOT, **more)


def measure(filters):
    os.makedirs(ROWS, exist_ok=True)
    run(["cmake", "--preset", "release", "-DPXK_BUILD_PEERS=ON"])
    run(["cmake", "--build", "--preset", "release", "--target", "pxk", "peers"])
    environment = dict(os.environ, PXK_LIB=LIBRARY, PEERS_WISDOM=os.path.join(ROWS, "wisdom"))
    run([os.path.join(ROOT, "build", "release", "bin", "peers"), "-o", os.path.join(ROWS, PARTS[0])] + filters,
        env=environment)
    run(["/usr/bin/python3", os.path.join("bench", "peers", "peers.py"), "-o", os.path.join(ROWS, PARTS[1])] + filters,
        env=environment)
    measure_growth()


# ---- how time grows ------------------------------------------------------------------------------------------------

def least_time(call, seconds=0.08):
    """The least time of many calls: growth is a matter of the code, not of what else the machine does."""
    best, end = math.inf, time.perf_counter() + seconds
    call()
    while time.perf_counter() < end:
        start = time.perf_counter()
        call()
        best = min(best, time.perf_counter() - start)
    return best


class Pictures:
    """Images of one size, by the library itself."""

    def __init__(self, records, library, width, height):
        self.library, self.made = library, []
        self.records = records
        self.pixels = width * height
        self.size = (width, height)

    def image(self, depth, channels=1):
        width, height = self.size
        bits = depth & 63
        row = (width * channels * bits // 8 + 31) // 32 * 32
        data = ctypes.create_string_buffer(random.Random(1).randbytes(row * height), row * height)
        header = self.records.Image()
        header.headerSize, header.nChannels, header.depth = ctypes.sizeof(header), channels, depth
        header.colorModel, header.channelSeq = (b"GRAY", b"G") if channels == 1 else (b"RGB", b"RGB")
        header.align, header.width, header.height = 32, width, height
        header.widthStep, header.imageSize, header.imageData = row, row * height, ctypes.addressof(data)
        for side in range(4):
            header.borderMode[side] = 1
        self.made.append((header, data))
        return ctypes.byref(header)


def measure_growth():
    print("== growth with windows and pictures", flush=True)
    sys.path.insert(0, os.path.join(ROOT, "bench", "peers"))
    import pxkrecords as records
    library = ctypes.CDLL(LIBRARY)
    integer = ctypes.c_int32

    def window(name, source, target, side):
        return lambda: getattr(library, name)(source, target, integer(side), integer(side), integer(side // 2),
                                              integer(side // 2))

    with open(os.path.join(ROWS, PARTS[2]), "w", encoding="utf-8") as out:
        pictures = Pictures(records, library, 1024, 1024)
        gray, other = pictures.image(8), pictures.image(8)
        for label, name, most in (("box blur", "pxkBlur", 1023), ("maximum", "pxkMaxFilter", 511),
                                  ("median", "pxkMedianFilter", 127)):
            for side in (3, 5, 7, 9, 11, 15, 23, 31, 47, 63, 95, 127, 191, 255, 383, 511, 767, 1023):
                if side <= most:
                    spent = least_time(window(name, gray, other, side))
                    out.write(f"window\t{label}\t{side}\t{spent / pictures.pixels * 1e9:.6g}\n")
        for side in (8, 16, 32, 64, 128, 256, 512, 1024, 2048):
            pictures = Pictures(records, library, side, side)
            gray, other, third = pictures.image(8), pictures.image(8), pictures.image(8)
            calls = {
                "add": lambda: library.pxkAdd(gray, other, third),
                "maximum 3x3": window("pxkMaxFilter", gray, other, 3),
                "box blur 15x15": window("pxkBlur", gray, other, 15),
                "mirror": lambda: library.pxkMirror(gray, other, integer(1)),
            }
            for label, call in calls.items():
                out.write(f"picture\t{label}\t{side}\t{least_time(call, 0.04) / pictures.pixels * 1e9:.6g}\n")


# ---- rows ----------------------------------------------------------------------------------------------------------

class Case:
    """One case at one size: the library and the fastest peer of both parts."""

    def __init__(self, group, name, size):
        self.group, self.name, self.size = group, name, size
        self.library = self.limit = self.peer = self.peer_time = None
        self.ratio = math.inf
        self.note = ""


def read_cases():
    runs, order = {}, []
    for part in PARTS[:2]:
        with open(os.path.join(ROWS, part), encoding="utf-8") as file:
            for row in csv.DictReader(file, delimiter="\t"):
                key = (part, row["group"], row["case"], row["size"])
                runs.setdefault(key, []).append(row)
    cases = {}
    for (_, group, name, size), rows in runs.items():
        own = [row for row in rows if row["contestant"] == "library"]
        peers = [row for row in rows if row["contestant"] != "library"]
        if not own or not peers:
            continue
        best = min(peers, key=lambda row: float(row["median_ns_px"]))
        library = float(own[0]["median_ns_px"])
        ratio = library / float(best["median_ns_px"])
        case = cases.setdefault((group, name, size), Case(group, name, size))
        if (group, name, size) not in order:
            order.append((group, name, size))
        # Ratios hold within a run: the part where the library does worst stands for the case.
        if case.library is None or ratio > case.ratio:
            case.library, case.ratio = library, ratio
            case.limit = library / float(own[0]["limit_ns_px"])
            case.peer, case.peer_time, case.note = best["contestant"], float(best["median_ns_px"]), best["equality"]
    return [cases[key] for key in order]


def read_growth():
    curves = {}
    with open(os.path.join(ROWS, PARTS[2]), encoding="utf-8") as file:
        for line in file:
            kind, label, x, y = line.rstrip("\n").split("\t")
            curves.setdefault(kind, {}).setdefault(label, []).append((int(x), float(y)))
    return curves


# ---- pictures ------------------------------------------------------------------------------------------------------

COLOURS = ("#2a6fb0", "#c2562d", "#3c8c54", "#8a4fa3", "#8c7a1f")
STYLE = ("<style>text{font:13px sans-serif;fill:#333}.grid{stroke:#ccc;stroke-width:1}"
         "@media(prefers-color-scheme:dark){text{fill:#ddd}.grid{stroke:#555}}</style>")


def number(value):
    if value >= 100:
        return f"{value:.0f}"
    return f"{value:.3g}"


def svg(path, width, height, parts):
    with open(path, "w", encoding="utf-8") as out:
        out.write(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
                  f'height="{height}">\n{STYLE}\n' + "\n".join(parts) + "\n</svg>\n")


def draw_curves(path, curves, x_title):
    """Both axes are logarithmic: a line that rises by 45 degrees grows in proportion."""
    width, height, left, right, top, bottom = 760, 400, 60, 150, 20, 50
    points = [point for line in curves.values() for point in line]
    low_x, high_x = min(x for x, _ in points), max(x for x, _ in points)
    low_y = 10 ** math.floor(math.log10(min(y for _, y in points)))
    high_y = 10 ** math.ceil(math.log10(max(y for _, y in points)))

    def place(x, y):
        return (left + math.log(x / low_x) / math.log(high_x / low_x) * (width - left - right),
                height - bottom - math.log(y / low_y) / math.log(high_y / low_y) * (height - top - bottom))

    parts = []
    y = low_y
    while y <= high_y * 1.001:
        at = place(low_x, y)[1]
        parts.append(f'<line class="grid" x1="{left}" y1="{at:.1f}" x2="{width - right}" y2="{at:.1f}"/>')
        parts.append(f'<text x="{left - 6}" y="{at + 4:.1f}" text-anchor="end">{number(y)}</text>')
        y *= 10
    for x in sorted({x for x, _ in points}):
        if x in (3, 8) or (x & (x - 1)) == 0 or ((x + 1) & x) == 0:
            parts.append(f'<text x="{place(x, low_y)[0]:.1f}" y="{height - bottom + 18}" text-anchor="middle">{x}</text>')
    parts.append(f'<text x="{(left + width - right) / 2:.0f}" y="{height - 8}" text-anchor="middle">{x_title}</text>')
    parts.append(f'<text x="{left}" y="{top - 6}">ns a pixel</text>')
    labels = sorted(((place(*line[-1])[1], label) for label, line in curves.items()))
    taken = -math.inf
    for at, label in labels:
        colour = COLOURS[list(curves).index(label) % len(COLOURS)]
        taken = max(at, taken + 16)
        end = place(*curves[label][-1])[0]
        parts.append(f'<text x="{end + 8:.1f}" y="{taken + 4:.1f}" style="fill:{colour}">{label}</text>')
        path_points = " ".join(f"{px:.1f},{py:.1f}" for px, py in (place(*point) for point in curves[label]))
        parts.append(f'<polyline fill="none" stroke="{colour}" stroke-width="2" points="{path_points}"/>')
    svg(path, width, height, parts)


def draw_families(path, families):
    """A bar a family: the geometric mean of library over fastest peer; left of the line the library is faster."""
    left, bar, width = 205, 26, 760
    low, high = 1 / 64, 4
    height = bar * len(families) + 60

    def place(ratio):
        held = min(max(ratio, low), high)
        return left + math.log(held / low) / math.log(high / low) * (width - left - 70)

    parts = []
    for tick in (1 / 64, 1 / 16, 1 / 4, 1, 4):
        at = place(tick)
        parts.append(f'<line class="grid" x1="{at:.1f}" y1="10" x2="{at:.1f}" y2="{height - 45}"/>')
        text = f"1/{round(1 / tick)}" if tick < 1 else f"{tick:g}"
        parts.append(f'<text x="{at:.1f}" y="{height - 28}" text-anchor="middle">{text}</text>')
    parts.append(f'<text x="{place(0.25):.1f}" y="{height - 8}" text-anchor="middle">time over the fastest peer\'s</text>')
    for k, (title, ratio, count) in enumerate(families):
        y = 12 + bar * k
        start, end = sorted((place(1), place(ratio)))
        colour = COLOURS[2] if ratio <= 1 else COLOURS[1]
        parts.append(f'<rect x="{start:.1f}" y="{y}" width="{max(end - start, 1):.1f}" height="{bar - 8}" fill="{colour}"/>')
        parts.append(f'<text x="{left - 8}" y="{y + 14}" text-anchor="end">{title} ({count})</text>')
        parts.append(f'<text x="{max(place(1), end) + 6:.1f}" y="{y + 14}">{number(ratio)}</text>')
    svg(path, width, height, parts)


# ---- the page ------------------------------------------------------------------------------------------------------

def geometric_mean(values):
    return math.exp(sum(math.log(value) for value in values) / len(values))


def output_of(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=False).stdout
    except OSError:
        return ""


def machine():
    processor = output_of("lscpu")

    def field(key):
        found = re.search(rf"^{key}:\s*(.*)$", processor, re.MULTILINE)
        return found.group(1) if found else "?"

    packages = ("libyuv0", "libzimg2", "libpixman-1-0", "libfftw3-single3", "libhalide14-0", "liblept5", "libvips42",
                "python3-numpy", "python3-scipy", "python3-pil", "python3-skimage")
    versions = {name: output_of("dpkg-query", "-W", "-f=${Version}", name).split("-")[0] for name in packages}
    listed = ", ".join(f"{name} {version}" for name, version in versions.items() if version)
    return (f"{field('Model name')}, {field('CPU.s.')} cores, second-level cache {field('L2 cache')}; "
            f"load average at the end {os.getloadavg()[1]:.1f}. {listed}.")


INTRODUCTION = """# Performance

Written by `bench/performance.py` from one run; the same command repeats it on your machine. Nanoseconds a pixel, one
thread, median of interleaved repetitions in one process. `x memcpy` is the multiple of the time that `memcpy` takes, in
the same run, for as many bytes as the operation must read and write. `pxk / peer` below 1 means that pxk is faster.

Peers use the best vectors of the machine: libyuv, zimg and pixman are written for them by hand, FFTW's plans are
measured, Halide's kernels are compiled for this very processor and read a source that was padded beforehand. Where
the work is not quite equal, the last table says so.
"""


def table(cases, tells_family=False):
    lines = ["| Case | Size | pxk, ns/px | x memcpy | fastest peer | ns/px | pxk / peer |", "|---|---|--:|--:|---|--:|--:|"]
    for case in cases:
        name = f"{TITLES.get(case.group, case.group)}: {case.name}" if tells_family else case.name
        lines.append(f"| {name} | {case.size} | {number(case.library)} | {case.limit:.1f} | {case.peer} | "
                     f"{number(case.peer_time)} | {case.ratio:.2f} |")
    return "\n".join(lines) + "\n"


def write_page(cases, curves):
    os.makedirs(PICTURES, exist_ok=True)
    groups = [group for group in dict.fromkeys(case.group for case in cases)]
    families = [(TITLES.get(group, group), geometric_mean([c.ratio for c in cases if c.group == group]),
                 sum(c.group == group for c in cases)) for group in groups]
    draw_families(os.path.join(PICTURES, "families.svg"), families)
    behind = sorted((case for case in cases if case.ratio > AHEAD), key=lambda case: -case.ratio)
    with open(os.path.join(DOCS, "performance.md"), "w", encoding="utf-8") as out:
        out.write(INTRODUCTION)
        out.write(f"\nThe machine: {machine()}\n")
        out.write(f"\n{len(cases)} cases; over the fastest peer of each, geometric mean "
                  f"{geometric_mean([case.ratio for case in cases]):.2f}; a peer is more than 10 % ahead in "
                  f"{len(behind)}.\n\n![By family](performance/families.svg)\n")
        out.write("\n## Where another is ahead\n\n" + table(behind, True))
        if curves:
            draw_curves(os.path.join(PICTURES, "windows.svg"), curves["window"], "side of the window, 8U 1024 x 1024")
            draw_curves(os.path.join(PICTURES, "pictures.svg"), curves["picture"], "side of the picture, 8U")
            out.write("\n## How time grows\n\nWith the window:\n\n![Time and window](performance/windows.svg)\n\n"
                      "With the picture; on the left the price of a call shows:\n\n"
                      "![Time and picture](performance/pictures.svg)\n")
        for group in groups:
            out.write(f"\n## {TITLES.get(group, group)}\n\n" + table([case for case in cases if case.group == group]))
        out.write("\n## How equal the work is\n\n| Case | Beside | |\n|---|---|---|\n")
        seen = set()
        for case in cases:
            key = (case.group, case.name, case.peer)
            if key not in seen:
                out.write(f"| {TITLES.get(case.group, case.group)}, {case.name} | {case.peer} | {case.note} |\n")
            seen.add(key)


def main():
    global ROWS
    filters = sys.argv[1:]
    if filters[:1] in (["-h"], ["--help"]):
        print(__doc__)
        return
    if filters[:1] == ["--rows"]:
        ROWS = os.path.abspath(filters[1])
    else:
        measure(filters)
    growth = os.path.join(ROWS, PARTS[2])
    write_page(read_cases(), read_growth() if os.path.exists(growth) else None)
    print(f"docs/performance.md is written; its rows lie in {os.path.relpath(ROWS, ROOT)}")


if __name__ == "__main__":
    main()
