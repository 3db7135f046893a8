"""Options that the guide names in its sentences and tables are options that there are, and the changelog
begins with the version that is built.

    check_words.py BUILD
"""
import pathlib
import re
import sys

import markdown
import programs
import stage
from pages import ROOT, guide_pages

# Pages about the code name options of other programs.
OTHERS = {"CONTRIBUTING.md", "architecture.md", "day-in-the-code.md"}


def known_options(build):
    texts = [programs.help_text(build, name) for name in programs.PROGRAMS]
    texts += [(ROOT / name).read_text() for name in ("run", "test")]
    texts += [path.read_text() for path in (ROOT / "web").glob("*/*.mjs")]
    return set(re.findall(r"--[a-z][a-z-]+", " ".join(texts))) | {"--component"}  # of cmake


def main():
    known, wrong, count = known_options(pathlib.Path(sys.argv[1]).resolve()), [], 0
    for page in guide_pages():
        if page.name in OTHERS:
            continue
        for number, line in markdown.prose(page.read_text()):
            for code in re.findall(r"`([^`]*)`", line):
                for option in re.findall(r"(?:^|[ |(])(--[a-z][a-z-]+)", code):
                    count += 1
                    if option not in known:
                        wrong.append(f"{page.relative_to(ROOT)}:{number}: {option}")
    newest = re.search(r"^## (\S+)", (ROOT / "CHANGELOG.md").read_text(), re.M)[1]
    if newest != stage.version():
        wrong.append(f"CHANGELOG.md begins with {newest}, and the version is {stage.version()}")
    print("\n".join(wrong) or f"{count} mentions of options that there are")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
