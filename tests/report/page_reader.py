"""Reads a page as docs/report-format.md describes it, with nothing of the program's own."""
import array
import base64
import hashlib
import html.parser
import json
import re
import sys
import zlib


class Elements(html.parser.HTMLParser):
    """The page's elements as browsers find them."""

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.scripts = []   # (attributes, text)
        self.styles = []
        self.metas = []
        self.title = ""
        self.tags = []
        self._open = None

    def handle_starttag(self, tag, attrs):
        self.tags.append(tag)
        attributes = dict(attrs)
        if tag == "meta":
            self.metas.append(attributes)
        if tag in ("script", "style", "title"):
            self._open = [tag, attributes, ""]

    def handle_data(self, data):
        if self._open:
            self._open[2] += data

    def handle_endtag(self, tag):
        if self._open and self._open[0] == tag:
            _, attributes, text = self._open
            if tag == "script":
                self.scripts.append((attributes, text))
            elif tag == "style":
                self.styles.append(text)
            else:
                self.title = text
            self._open = None


def digest(text):
    """What a content policy calls a text."""
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"


def undo_zigzag(code):
    return (code >> 1) ^ -(code & 1)


def decode_field(planes, count, columns, base):
    """A field of its four byte planes: a list of whole numbers."""
    field = [0] * count
    low, second, third, high = (planes[i * count:(i + 1) * count] for i in range(4))
    for i in range(count):
        code = low[i] | second[i] << 8 | third[i] << 16 | high[i] << 24
        if base is not None:
            expected = base[i]
        elif i % columns:
            expected = field[i - 1]
        else:
            expected = field[i - columns] if i else 0
        field[i] = expected + undo_zigzag(code)
    return array.array("l", field)


class PageFile:
    """A page: `run`, what it tells, and `fields`, in quanta."""

    def __init__(self, path):
        with open(path, encoding="utf-8", newline="") as file:
            self.text = file.read()
        self.elements = Elements()
        self.elements.feed(self.text)
        self.elements.close()
        by_id = {attributes.get("id"): text for attributes, text in self.elements.scripts}
        self.run = json.loads(by_id["run"])
        self.data = base64.b64decode(by_id["data"], validate=True)
        self.columns = len(self.run["grid"]["x"])
        self.rows = len(self.run["grid"]["y"])
        self.fields = self._decode_fields()

    def bytes_of(self, place):
        return self.data[place["offset"]:place["offset"] + place["length"]]

    def _decode_fields(self):
        fields = []
        count = self.columns * self.rows
        for chunk in self.run["chunks"]:
            planes = zlib.decompress(self.bytes_of(chunk))
            assert len(planes) == 4 * count * len(chunk["fields"]), "a chunk's length"
            for i, field in enumerate(chunk["fields"]):
                base = field["base"]
                assert -1 <= base < len(fields), "a base comes before its field"
                fields.append(decode_field(planes[4 * count * i:4 * count * (i + 1)], count,
                                           self.columns, None if base < 0 else fields[base]))
        return fields

    def policy(self):
        """The content policy as {directive: sources}."""
        content = next(meta["content"] for meta in self.elements.metas
                       if meta.get("http-equiv") == "Content-Security-Policy")
        parts = [re.split(r"\s+", part.strip()) for part in content.split(";")]
        return {part[0]: part[1:] for part in parts}


def main():
    """What a page is made of, for people."""
    page = PageFile(sys.argv[1])
    pictures = sum(step[kind]["length"] for step in page.run["steps"]
                   for kind in ("picture", "thumbnail") if step[kind])
    chunks = sum(chunk["length"] for chunk in page.run["chunks"])
    print(f"{len(page.text)} bytes, {len(page.run['steps'])} steps, {page.columns} x {page.rows} "
          f"cells, {len(page.fields)} fields in {chunks} bytes, pictures {pictures} bytes")


if __name__ == "__main__":
    main()
