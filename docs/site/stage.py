"""Lays the pages out as Sphinx wants them, and makes the site of them.

The pages stay as a repository shows them. For the site their list in docs/index.md becomes the table
of contents, links to what the site has not become plain text, and pages are added that are made of
the programs' own texts.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys

import markdown
import programs
import reference
from pages import DOCS, Page, guide_pages
from sandbox import ROOT, Sandbox

# Chapters of the table of contents whose pages are made, with the pages behind those that are listed
MADE = {"The process file": reference.page_names, "Programs": programs.page_names}


def version():
    text = (ROOT / "CMakeLists.txt").read_text()
    return re.search(r"project\(zelmo VERSION ([\d.]+)", text)[1]


def site_name(path):
    """Where a page stands in the site, without its ending, or None."""
    if path == ROOT / "README.md":
        return "readme"
    if path == ROOT / "CONTRIBUTING.md" or path == ROOT / "CHANGELOG.md":
        return path.stem.lower()
    if DOCS in path.parents and path.suffix == ".md":
        return str(path.relative_to(DOCS).with_suffix(""))
    return None


def staged(path, text):
    """A page's text for the site."""
    here = (DOCS / (site_name(path) + ".md")).parent
    lines, fence = [], None
    for line in text.split("\n"):
        match = markdown.FENCE.match(line)
        if match and fence is None:
            fence = match[1]
            words = match[2].split()
            line = line if not words else line[:line.index(match[1])] + fence + words[0]
        elif match and line.strip() == fence:
            fence = None
        elif fence is None:
            if re.match(r"^<!-- .* -->$", line):
                continue
            line = re.sub(r"(!?)\[((?:[^\[\]]|\[[^\]]*\])*)\]\(([^()\s:]+)\)",
                          lambda link: staged_link(link, path, here), line)
        lines.append(line)
    return "\n".join(lines)


def staged_link(link, path, here):
    name, mark, anchor = link[3].partition("#")
    if not name:
        return link[0]
    target = (path.parent / name).resolve()
    if link[1]:
        return f"![{link[2]}]({os.path.relpath(target, here)})"
    other = site_name(target)
    if other:
        return f"[{link[2]}]({os.path.relpath(DOCS / other, here)}.md{mark}{anchor})"
    return link[2]


def table_of_contents(index):
    """The index with a hidden table of contents: the links of its chapters in their order."""
    lines, chapters = [], {}
    for line in index.split("\n"):
        heading = re.match(r"^## (.*)", line)
        link = re.match(r"^- \[.*\]\(([^()]+\.md)\)$", line)
        if heading:
            chapter = chapters.setdefault(heading[1], [])
        if link:
            chapter.append(str(pathlib.PurePath(link[1]).with_suffix("")))
    chapters.setdefault("Programs", [])
    for title, pages in chapters.items():
        names = pages + (MADE[title]() if title in MADE else [])
        lines += ["", "```{toctree}", ":hidden:", f":caption: {title}", ""] + names + ["```"]
    return index + "\n".join(lines) + "\n"


def lay_out(build, source, pictures):
    shutil.rmtree(source, ignore_errors=True)
    shutil.copytree(DOCS / "images", source / "images")
    for name in ("conf.py", "guide.css"):
        shutil.copy(DOCS / "site" / name, source)
    for path in guide_pages():
        text = staged(path, path.read_text())
        target = source / (site_name(path) + ".md")
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(table_of_contents(text) if path == DOCS / "index.md" else text)
    if pictures:
        for path in guide_pages():
            with Sandbox(build) as sandbox:
                failures = Page(path, sandbox, pictures_to=source).run().failures
            if failures:
                raise ValueError("\n".join(failures))
    programs.write_pages(build, source)
    reference.write_pages(build, source)


def make_site(build, pictures=True):
    """The site in BUILD/guide/html; warnings are errors."""
    source, site = build / "guide/source", build / "guide/html"
    lay_out(build, source, pictures)
    done = subprocess.run(["sphinx-build", "-q", "-W", "--keep-going", "-E", "-b", "html", "-d",
                           build / "guide/doctrees", source, site],
                          env=dict(os.environ, ZELMO_VERSION=version()), check=False)
    if done.returncode == 0:
        print(f"The guide is {site / 'index.html'}")
    return done.returncode


if __name__ == "__main__":
    sys.exit("guide.py makes the site")
