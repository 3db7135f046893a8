"""Every source is compiled: its name stands in a build list of its folder or of one above it, as it
is or with a variable for its folder. A test that no list names would never fail."""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

import rooms  # noqa: E402


def lists_above(path):
    """The texts of the build lists of all the project's folders that could name a source."""
    folder = os.path.dirname(path)
    while True:
        name = os.path.join(ROOT, folder, "CMakeLists.txt")
        if os.path.exists(name):
            with open(name, encoding="utf-8") as file:
                yield file.read()
        if not folder:
            return
        folder = os.path.dirname(folder)


def is_named(path, elsewhere):
    stem, extension = os.path.splitext(os.path.basename(path))
    whole = re.compile(r"(?<![\w-])" + re.escape(stem + extension) + r"\b")
    # gl_library_${RENDER_PLATFORM}.cpp
    parts = stem.split("_")
    starts = ["_".join(parts[:n]) + "_${" for n in range(1, len(parts))]
    return any(whole.search(text) or any(start in text for start in starts)
               for text in [*lists_above(path), *elsewhere])


def main():
    sources = rooms.project_files(ROOT, (".cpp",))
    assert len(sources) > 300, "the sources of the project were not found"
    # Tests of several rooms compile these as part of their own.
    shared = []
    for folder, _, names in os.walk(os.path.join(ROOT, "tests")):
        if "CMakeLists.txt" in names:
            with open(os.path.join(folder, "CMakeLists.txt"), encoding="utf-8") as file:
                shared.append(file.read())
    unnamed = [path for path in sources
               if not is_named(path, shared if path.startswith(("tests/support", "tests/plain"))
                               else [])]
    assert not is_named("tests/batch/no_such_source.cpp", [])
    for path in unnamed:
        print(f"{path}: no CMakeLists.txt names it: it is never compiled")
    return 1 if unnamed else 0


if __name__ == "__main__":
    sys.exit(main())
