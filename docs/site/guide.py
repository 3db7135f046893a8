#!/usr/bin/env python3
"""The guide: docs/ as a site, and whether everything on its pages is so.

    guide.py check  --build DIR [PAGE...]   runs what stands on the pages (default: all), compares
    guide.py update --build DIR [PAGE...]   writes the pages' outputs and pictures anew into docs/
    guide.py site   --build DIR             makes all pictures and the site in DIR/guide/html

DIR is a build folder with the programs, zelmo-print-manual and the examples.
"""
import argparse
import concurrent.futures
import pathlib
import sys

import stage
from pages import ROOT, Page, guide_pages
from sandbox import Sandbox

MOST_LEFT_OUT = 12  # blocks that are not run, in the whole guide


def run_pages(build, pages, update=False, pictures_to=None):
    def run(path):
        with Sandbox(build) as sandbox:
            return Page(path, sandbox, update, pictures_to).run()
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        return list(pool.map(run, pages))


def tell(done):
    for page in done:
        for reason in page.left_out:
            print(f"not run: {reason}")
    failures = [failure for page in done for failure in page.failures]
    print("\n".join(failures))
    left_out = sum(len(page.left_out) for page in done)
    print(f"{len(done)} pages, {sum(page.count for page in done)} blocks and pictures, "
          f"{left_out} not run, {len(failures)} failures")
    return 1 if failures or left_out > MOST_LEFT_OUT else 0


def chosen_pages(names):
    """Pages by their names in docs/ without the ending, or whole folders; README is one."""
    if not names:
        return guide_pages()
    pages = []
    for name in names:
        place = ROOT / "docs" / name
        pages += sorted(place.rglob("*.md")) if place.is_dir() else \
            [ROOT / f"{name}.md" if name.isupper() else place.with_suffix(".md")]
    return pages


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("task", choices=["check", "update", "site"])
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--keep-pictures", action="store_true",
                        help="the site has the pages' pictures as they are in docs/")
    parser.add_argument("--except", dest="left_out", action="append", default=[])
    parser.add_argument("pages", nargs="*")
    wanted = parser.parse_intermixed_args()
    if wanted.task == "site":
        return stage.make_site(wanted.build.resolve(), not wanted.keep_pictures)
    left_out = chosen_pages(wanted.left_out) if wanted.left_out else []
    pages = [page for page in chosen_pages(wanted.pages) if page not in left_out]
    return tell(run_pages(wanted.build, pages, wanted.task == "update"))


if __name__ == "__main__":
    sys.exit(main())
