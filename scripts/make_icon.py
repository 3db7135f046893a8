#!/usr/bin/env python3
"""Draws the program's icon: assets/zelmo.ico in seven sizes, and assets/zelmo.png.

The picture is a stack of four films on a wafer, each set back from the one below, seen from above
a corner. Every size is drawn for itself, eight times as large, and scaled down. Needs Pillow
(package python3-pil).
"""
import io
import math
import pathlib
import struct

from PIL import Image, ImageDraw

SIZES = [16, 24, 32, 48, 64, 128, 256]
OVERSAMPLING = 8

# From below: colour, thickness and set-back of each film, in units of the wafer's edge.
FILMS = [
    ((140, 154, 178), 0.20, 0.00),
    ((104, 178, 232), 0.15, 0.17),
    ((236, 88, 74), 0.15, 0.34),
    ((250, 200, 66), 0.15, 0.51),
]
OUTLINE = (32, 38, 52)

# Brightness of the faces that look up, to the left and to the right.
TOP, LEFT, RIGHT = 1.0, 0.80, 0.60


def project(x, y, z):
    """Parallel projection of a point: x runs back to the right, y back to the left, z up."""
    return (x - y) * math.cos(math.radians(30)), (x + y) * math.sin(math.radians(30)) + z


def shade(color, brightness):
    return tuple(round(channel * brightness) for channel in color)


def faces():
    """Yields (corner points, colour) from the back to the front."""
    z = 0.0
    for color, thickness, inset in FILMS:
        low, high, top = inset, 1.0, z + thickness
        yield [(low, high, z), (low, low, z), (low, low, top), (low, high, top)], shade(color, LEFT)
        yield [(low, low, z), (high, low, z), (high, low, top), (low, low, top)], shade(color, RIGHT)
        corners = [(low, low, top), (high, low, top), (high, high, top), (low, high, top)]
        yield corners, shade(color, TOP)
        z = top


def draw_icon(size):
    canvas = size * OVERSAMPLING
    corners_of_all = [project(*corner) for corners, _ in faces() for corner in corners]
    across, up = zip(*corners_of_all)
    left, right, bottom, top = min(across), max(across), min(up), max(up)
    line = max(OVERSAMPLING * 0.75, canvas / 64)
    margin = line / 2 + canvas / 64
    scale = (canvas - 2 * margin) / max(right - left, top - bottom)

    def place(point):
        return (
            canvas / 2 + (point[0] - (left + right) / 2) * scale,
            canvas / 2 - (point[1] - (bottom + top) / 2) * scale,
        )

    image = Image.new("RGBA", (canvas, canvas), (0, 0, 0, 0))
    draw = ImageDraw.Draw(image)

    def outline(points, width):
        closed = points + points[:2]
        draw.line(closed, fill=OUTLINE, width=max(1, round(width)), joint="curve")

    for corners, color in faces():
        points = [place(project(*corner)) for corner in corners]
        draw.polygon(points, fill=color)
        if size >= 32:
            outline(points, line * 0.6)
        else:
            draw.polygon(points, outline=shade(color, 0.75))
    return image.resize((size, size), Image.LANCZOS)


def bitmap_entry(image):
    """The image as an icon's bitmap: 32 bits a pixel from the bottom row up, and an empty mask."""
    width, height = image.size
    header = struct.pack("<IiiHHIIiiII", 40, width, height * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = image.transpose(Image.FLIP_TOP_BOTTOM).tobytes("raw", "BGRA")
    mask_row = (width + 31) // 32 * 4
    return header + pixels + bytes(mask_row * height)


def png_entry(image):
    stream = io.BytesIO()
    image.save(stream, "PNG", optimize=True)
    return stream.getvalue()


def icon_file(images):
    entries = [png_entry(i) if i.width >= 256 else bitmap_entry(i) for i in images]
    offset = 6 + 16 * len(entries)
    head = struct.pack("<HHH", 0, 1, len(entries))
    for image, data in zip(images, entries):
        edge = image.width % 256
        head += struct.pack("<BBBBHHII", edge, edge, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return head + b"".join(entries)


def main():
    assets = pathlib.Path(__file__).resolve().parent.parent / "assets"
    images = [draw_icon(size) for size in SIZES]
    (assets / "zelmo.ico").write_bytes(icon_file(images))
    (assets / "zelmo.png").write_bytes(png_entry(images[-1]))


if __name__ == "__main__":
    main()
