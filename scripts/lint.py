#!/usr/bin/env python3
"""Checks formatting and lint, and fails on either: clang-format for every source file, clang-tidy
with the checks of .clang-tidy for the sources of the rooms (not for tests, benchmarks, examples);
TypeScript's own check of types, ESLint and Prettier for web/.

    scripts/lint.py            everything
    scripts/lint.py FILE...    these sources only

What clang-tidy looks at is what the presets `release` and `windows` compile, so both are to be
configured first. A source that passed is not looked at again until it, a header of the project that
it includes, its compiler's command line or the checks change; build/lint keeps the record.

Sources of a folder are looked at as one: most of the time goes into the headers of the library, and
those are the same for all of them. A source is looked at alone where something was found in it, or
where it does not go together with the others (two of them may use a name for two things).
"""
import argparse
import collections
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
# As many sources are looked at as one, at most: enough to share the headers, few enough for the
# processors to be busy until the end.
TOGETHER = 8
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


def single_sources(entry):
    """The entries of the sources that one of a build compiles as one; else the entry itself."""
    if "/Unity/unity_" not in entry["file"]:
        return [entry]
    with open(entry["file"], encoding="utf-8") as file:
        sources = re.findall(r'^#include "([^"]+)"$', file.read(), re.MULTILINE)
    return [{**entry, "file": source,
             "command": entry["command"].replace(f" -c {entry['file']}", f" -c {source}")
                                        .replace("-Wshadow=local -Wno-restrict", "-Wshadow")}
            for source in sources]


def room_sources():
    """{path: (folder of its compile commands, command)} of all sources of the rooms."""
    sources = {}
    for preset in PRESETS:
        folder = os.path.join(ROOT, "build", preset)
        with open(os.path.join(folder, "compile_commands.json"), encoding="utf-8") as file:
            entries = json.load(file)
        for entry in (each for entry in entries for each in single_sources(entry)):
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


def findings(source, folder, extra):
    """The findings of clang-tidy in the project's own files: a list of (file, text)."""
    output, status = output_of(TIDY, "--quiet", "-p", folder, *extra, source)
    blocks = []
    for line in output.splitlines():
        match = FINDING.match(line)
        if match:
            file = os.path.normpath(match.group(1))
            own = file.startswith(ROOT + os.sep) or match.group(2) == "clang-diagnostic-error"
            blocks.append((own, os.path.relpath(file, ROOT), []))
        if blocks:
            blocks[-1][2].append(line)
    found = [(file, "\n".join(lines)) for own, file, lines in blocks if own]
    if status != 0 and not blocks:
        found.append((source, f"{source}: {TIDY} ended with status {status}\n{output}"))
    return found


class Batch:
    """Sources of one folder and one command line, looked at as one by a source that includes them."""

    def __init__(self, preset, entry, extra):
        self.preset, self.entry, self.extra = preset, entry, extra
        self.paths = []

    def findings(self, paths):
        """The findings in these of its sources together, as a list of (file, text)."""
        name = hashlib.sha256(repr((self.preset, paths)).encode()).hexdigest()[:16]
        folder = os.path.join(ROOT, "build/lint", self.preset, name)
        os.makedirs(folder, exist_ok=True)
        joined = os.path.join(folder, "together.cpp")
        with open(joined, "w", encoding="utf-8") as file:
            file.writelines(f'#include "{os.path.join(ROOT, path)}"\n' for path in paths)
        command = without_files(self.entry) + f" -c {joined}"
        with open(os.path.join(folder, "compile_commands.json"), "w", encoding="utf-8") as file:
            json.dump([{"directory": self.entry["directory"], "file": joined, "command": command}],
                      file)
        return findings(joined, folder, ["--config-file=" + os.path.join(ROOT, ".clang-tidy"),
                                         *self.extra])

    def check(self):
        """The findings in each of its sources: {path: [text]}."""
        if len(self.paths) == 1:
            return {self.paths[0]: [text for _, text in self.findings(self.paths)]}
        found = {file for file, _ in self.findings(self.paths)}
        # What was found in a header may come from any of them.
        alone = [path for path in self.paths if path in found] if found <= set(self.paths) \
            else self.paths
        results = {path: [text for _, text in self.findings([path])] for path in alone}
        rest = [path for path in self.paths if path not in results]
        if rest and alone:
            part = Batch(self.preset, self.entry, self.extra)
            part.paths = rest
            return results | part.check()
        return results | {path: [] for path in rest}


def without_files(entry):
    """A source's compiler command without the source and what comes of it."""
    return re.sub(r" -o \S+", "", entry["command"]).replace(f" -c {entry['file']}", "")


def batches(sources, paths):
    """The sources of these paths in batches that clang-tidy looks at as one."""
    extra = {"release": [], "windows": windows_headers()}
    alike = collections.defaultdict(list)
    for path in paths:
        preset, entry = sources[path]
        together = alike[preset, os.path.dirname(path), without_files(entry)]
        if not together or len(together[-1].paths) == TOGETHER:
            together.append(Batch(preset, entry, extra[preset]))
        together[-1].paths.append(path)
    return [batch for together in alike.values() for batch in together]


def check_lint(wanted):
    """Prints the findings of clang-tidy, each once; returns whether there are none."""
    sources = room_sources()
    with open(os.path.join(ROOT, ".clang-tidy"), encoding="utf-8") as file:
        setting = file.read() + output_of(TIDY, "--version")[0]
    folder = os.path.join(ROOT, "build/lint/passed")
    os.makedirs(folder, exist_ok=True)
    paths = sorted(path for path in sources if not wanted or path in wanted)
    stamps = {path: os.path.join(folder, digest(path, sources[path][1], setting))
              for path in paths}
    stale = [path for path in paths if not os.path.exists(stamps[path])]
    seen = set()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for results in pool.map(Batch.check, batches(sources, stale)):
            for path, found in results.items():
                if not found:
                    open(stamps[path], "w", encoding="utf-8").close()
                for finding in found:
                    if finding not in seen:
                        print(finding, flush=True)
                    seen.add(finding)
    print(f"lint: {len(paths)} sources, {len(seen)} findings")
    return not seen


def check_page(wanted):
    """Prints what is wrong with the page's script; returns whether that is nothing."""
    if wanted and not any(path.startswith("web/") for path in wanted):
        return True
    output, status = output_of("npm", "--prefix", os.path.join(ROOT, "web"), "run", "--silent", "check")
    print(output if status else "lint: the page's script, nothing found", flush=True)
    return status == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.
                                     RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*", metavar="FILE")
    options = parser.parse_args()
    wanted = {os.path.relpath(os.path.abspath(path), ROOT) for path in options.files}
    sources = [path for path in wanted if not path.startswith("web/")]
    formatted = check_format([os.path.join(ROOT, path) for path
                              in sorted(sources) or rooms.project_files(ROOT, (".h", ".cpp"))])
    linted = check_lint(wanted)
    page = check_page(wanted)
    return 0 if formatted and linted and page else 1


if __name__ == "__main__":
    sys.exit(main())
