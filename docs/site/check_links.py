"""All links of the guide: files and anchors are there; addresses of the network have their form."""
import re
import sys
import urllib.parse

import markdown
from pages import ROOT, guide_pages


def faults(page):
    text = page.read_text()
    for link in markdown.links(text):
        where = f"{page.relative_to(ROOT)}:{link.line}: {link.target}"
        if re.match(r"^[a-z][a-z0-9+.-]*:", link.target):
            address = urllib.parse.urlsplit(link.target)
            if address.scheme not in ("https", "http") or "." not in address.netloc:
                yield f"{where}: no address of the network"
            continue
        name, _, anchor = link.target.partition("#")
        target = (page.parent / urllib.parse.unquote(name)).resolve() if name else page
        if ROOT not in target.parents or not target.exists():
            yield f"{where}: no such file"
        elif anchor and (target.suffix != ".md" or
                         anchor not in markdown.anchors(target.read_text())):
            yield f"{where}: no such heading"


def main():
    pages = guide_pages()
    found = [fault for page in pages for fault in faults(page)]
    print("\n".join(found) or f"{sum(len(markdown.links(page.read_text())) for page in pages)} "
          f"links of {len(pages)} pages lead somewhere")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
