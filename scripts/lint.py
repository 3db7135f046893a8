#!/usr/bin/env python3
"""Checks formatting and lint, and fails on either: clang-format for every source file, clang-tidy
with the checks of .clang-tidy for the sources of the rooms (not for tests, benchmarks, examples).

    scripts/lint.py            everything
    scripts/lint.py FILE...    these sources only

What clang-tidy looks at is what the presets `release` and `windows` compile, so both are to be
configured first. A source that passed is not looked at again until it, a header of the project that
it includes, its compiler's command line or the checks change; build/lint keeps the record.
"""
import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import sys

import rooms

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FORMAT = "clang-format-14"
TIDY = "clang-tidy-14"
PRESETS = ["release", "windows"]
# A finding, with its file and its check.
FINDING = re.compile(r"^(/[^:]+):\d+:\d+: (?:warning|error): .*\[([^\]]+)\]$")


def output_of(*command):
    """What a command prints, its errors among it, and its exit status."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False)
    return done.stdout, done.returncode


def check_format(paths):
    """Prints what clang-format would change; returns whether that is nothing."""
    output, status = output_of(FORMAT, "--dry-run", "--Werror", *paths)
    print(output, end="")
    return status == 0


def room_sources():
    """{path: (folder of its compile commands, command)} of all sources of the rooms."""
    sources = {}
    for preset in PRESETS:
        folder = os.path.join(ROOT, "build", preset)
        with open(os.path.join(folder, "compile_commands.json"), encoding="utf-8") as file:
            entries = json.load(file)
        for entry in entries:
            path = os.path.relpath(entry["file"], ROOT)
            # Kernels are compiled twice; clang takes what is for wide lanes only from the build.
            if rooms.room_of(path, rooms.ROOMS) and "-DZELMO_WIDE_LANES" not in entry["command"]:
                sources.setdefault(path, (preset, entry))
    return sources


def windows_headers():
    """What tells clang-tidy where the Windows compiler has its headers of the C++ library."""
    output, _ = output_of("x86_64-w64-mingw32-g++-posix", "-E", "-x", "c++", "-v", "/dev/null")
    folders = re.findall(r"^ (/\S*/include/c\+\+\S*)$", output, re.MULTILINE)
    return ["--extra-arg=-isystem" + os.path.normpath(folder) for folder in folders]


def own_includes(path, known):
    """Adds a file and all of the project's that it includes, however far, to the known ones."""
    if path in known:
        return known
    known.add(path)
    for _, own, _ in rooms.read_includes(ROOT, path):
        target = rooms.resolve(ROOT, path, own) if own else None
        if target:
            own_includes(target, known)
    return known


def digest(path, entry, setting):
    """What stands for everything that a source's findings depend on."""
    total = hashlib.sha256(repr((setting, entry["command"])).encode())
    for part in sorted(own_includes(path, set())):
        with open(os.path.join(ROOT, part), "rb") as file:
            total.update(repr((part, file.read())).encode())
    return total.hexdigest()


def findings(path, preset, extra):
    """The findings in the project's own files, as clang-tidy prints them; or why it ended."""
    output, status = output_of(TIDY, "--quiet", "-p", os.path.join(ROOT, "build/lint", preset),
                               *extra, os.path.join(ROOT, path))
    blocks = []
    for line in output.splitlines():
        match = FINDING.match(line)
        if match:
            own = os.path.normpath(match.group(1)).startswith(ROOT + os.sep)
            blocks.append((own or match.group(2).startswith("clang-diagnostic-error"), []))
        if blocks:
            blocks[-1][1].append(line)
    own = ["\n".join(lines) for wanted, lines in blocks if wanted]
    if status != 0 and not blocks:
        own.append(f"{path}: {TIDY} ended with status {status}\n{output}")
    return own


def write_commands(sources):
    """One command for each source, where a build has two."""
    for preset in PRESETS:
        folder = os.path.join(ROOT, "build/lint", preset)
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "compile_commands.json"), "w", encoding="utf-8") as file:
            json.dump([entry for used, entry in sources.values() if used == preset], file)


def check_lint(wanted):
    """Prints the findings of clang-tidy, each once; returns whether there are none."""
    sources = room_sources()
    write_commands(sources)
    extra = {"release": [], "windows": windows_headers()}
    with open(os.path.join(ROOT, ".clang-tidy"), encoding="utf-8") as file:
        setting = file.read() + output_of(TIDY, "--version")[0]
    stamps = os.path.join(ROOT, "build/lint/passed")
    os.makedirs(stamps, exist_ok=True)

    def check_source(path):
        preset, entry = sources[path]
        stamp = os.path.join(stamps, digest(path, entry, setting))
        if os.path.exists(stamp):
            return []
        found = findings(path, preset, extra[preset])
        if not found:
            open(stamp, "w", encoding="utf-8").close()
        return found

    paths = sorted(path for path in sources if not wanted or path in wanted)
    seen = set()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for found in pool.map(check_source, paths):
            for finding in found:
                if finding not in seen:
                    print(finding, flush=True)
                seen.add(finding)
    print(f"lint: {len(paths)} sources, {len(seen)} findings")
    return not seen


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.
                                     RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*", metavar="FILE")
    options = parser.parse_args()
    wanted = {os.path.relpath(os.path.abspath(path), ROOT) for path in options.files}
    formatted = check_format([os.path.join(ROOT, path) for path
                              in sorted(wanted) or rooms.project_files(ROOT, (".h", ".cpp"))])
    linted = check_lint(wanted)
    return 0 if formatted and linted else 1


if __name__ == "__main__":
    sys.exit(main())
