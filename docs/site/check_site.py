"""The site as it was made: every link leads to a file and an anchor of it, no page loads anything from
the network, and the search finds words of all pages.

    check_site.py SITE
"""
import html.parser
import pathlib
import re
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.links, self.loads, self.anchors = [], [], set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        if values.get("id"):
            self.anchors.add(values["id"])
        if tag == "a" and values.get("href"):
            self.links.append(values["href"])
        elif tag == "link" and values.get("rel") != "canonical":
            self.loads.append(values.get("href") or "")
        elif tag in ("script", "img", "iframe", "source"):
            self.loads.append(values.get("src") or "")


def faults(site):
    pages = {path: Page(path) for path in sorted(site.rglob("*.html"))}
    for path, page in pages.items():
        for target in page.links + page.loads:
            where = f"{path.relative_to(site)}: {target}"
            if re.match(r"^([a-z]+:|//)", target):
                if target in page.loads and not target.startswith("data:"):
                    yield f"{where} is loaded from elsewhere"
                continue
            name, _, anchor = target.partition("#")
            name = urllib.parse.unquote(name.partition("?")[0])
            other = (path.parent / name).resolve() if name else path
            if not other.exists():
                yield f"{where}: no such file"
            elif anchor and other in pages and anchor not in pages[other].anchors:
                yield f"{where}: no such anchor"
    index = (site / "searchindex.js").read_text()
    for path in pages:
        name = str(path.relative_to(site).with_suffix(""))
        if name not in ("search", "genindex") and f'"{name}"' not in index:
            yield f"{name}: the search does not know it"


def main():
    site = pathlib.Path(sys.argv[1]).resolve()
    found = list(faults(site))
    print("\n".join(found) or f"{len(list(site.rglob('*.html')))} pages hold together")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
