#!/usr/bin/env python3
"""Writes assets/colors.txt from the X Window System's colour database.

    make_colors.py [RGB.TXT] > assets/colors.txt

RGB.TXT is the database in its text form (default: /usr/share/X11/rgb.txt, package x11-common).
Every colour is written as one word, in lower case and with capitals: navajowhite, NavajoWhite.
"""
import re
import sys

# Names that later releases of the database added.
LATER_NAMES = [
    ("Aqua", (0, 255, 255)),
    ("Crimson", (220, 20, 60)),
    ("Fuchsia", (255, 0, 255)),
    ("Indigo", (75, 0, 130)),
    ("Lime", (0, 255, 0)),
    ("Olive", (128, 128, 0)),
    ("RebeccaPurple", (102, 51, 153)),
    ("Silver", (192, 192, 192)),
    ("Teal", (0, 128, 128)),
    ("WebGray", (128, 128, 128)),
    ("WebGreen", (0, 128, 0)),
    ("WebGrey", (128, 128, 128)),
    ("WebMaroon", (128, 0, 0)),
    ("WebPurple", (128, 0, 128)),
    ("X11Gray", (190, 190, 190)),
    ("X11Green", (0, 255, 0)),
    ("X11Grey", (190, 190, 190)),
    ("X11Maroon", (176, 48, 96)),
    ("X11Purple", (160, 32, 240)),
]

# Names of one distribution only.
LOCAL_NAMES = {"debianred"}

HEAD = """\
# Colour names for the -scolor argument of process files.
# A line holds a name, its value in hexadecimal, and red, green and blue from 0 to 255.
# Made by scripts/make_colors.py from the X11 colour database.
"""


def read_database(path):
    """Yields (name, (red, green, blue)) for every line of the database, in its order."""
    with open(path, encoding="ascii") as lines:
        for line in lines:
            match = re.match(r"\s*(\d+)\s+(\d+)\s+(\d+)\s+(\S.*?)\s*$", line)
            if match:
                yield match[4], tuple(int(channel) for channel in match.groups()[:3])


def one_word_colors(entries):
    """Maps each name in lower case to its form with capitals and its value, in first-seen order."""
    colors = {}
    for name, value in entries:
        capitals = "".join(word[0].upper() + word[1:] for word in name.split())
        key = capitals.lower()
        if key in LOCAL_NAMES:
            continue
        known = colors.get(key)
        if known and known[1] != value:
            raise SystemExit(f"make_colors: {name} has two values")
        # "navajo white" and "NavajoWhite" give the same form; "navajowhite" would have fewer capitals.
        if not known or sum(map(str.isupper, capitals)) > sum(map(str.isupper, known[0])):
            colors[key] = (capitals, value)
    return colors


def main():
    path = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/X11/rgb.txt"
    colors = one_word_colors([*read_database(path), *LATER_NAMES])
    print(HEAD, end="")
    for lower, (capitals, (red, green, blue)) in colors.items():
        for name in (lower, capitals):
            print(f"{name} #{red:02X}{green:02X}{blue:02X} {red}, {green}, {blue}")


if __name__ == "__main__":
    main()
