"""What the guide's tools see of a page in Markdown: its blocks of code, what comments between the
lines ask for, headings and links.

Comments that ask for something stand on a line of their own:

    <!-- picture images/NAME.png: COMMAND -->   the command that makes the next picture
    <!-- guide: status 3 -->                    the next block's commands end with this status
    <!-- guide: stop after 3 -->                its command would go on, and gets Ctrl-C after 3 s
    <!-- guide: not run, REASON -->             the next block is not run
    <!-- guide: let LAYOUT.gds = array.gds -->  what stands for a word of the page's commands
    <!-- table NAME --> ... <!-- end -->        lines that a tool writes
"""
import collections
import re

Block = collections.namedtuple("Block", "line language words text orders")
Picture = collections.namedtuple("Picture", "line path command")
Let = collections.namedtuple("Let", "line word value")
Link = collections.namedtuple("Link", "line target image")

FENCE = re.compile(r"^ *(```+|~~~+)\s*(.*)$")
COMMENT = re.compile(r"^<!-- (picture|guide:) ?(.*) -->$")
LINK = re.compile(r"(!?)\[(?:[^\[\]]|\[[^\]]*\])*\]\(([^()\s]+)\)")


def parts(text):
    """The blocks, pictures and lets of a page in their order."""
    found, orders, lines = [], [], text.split("\n")
    index = 0
    while index < len(lines):
        comment, fence = COMMENT.match(lines[index]), FENCE.match(lines[index])
        if comment and comment[1] == "picture":
            path, command = comment[2].split(": ", 1)
            found.append(Picture(index + 1, path, command))
        elif comment and comment[2].startswith("let "):
            word, value = comment[2][4:].split(" = ", 1)
            found.append(Let(index + 1, word, value))
        elif comment:
            orders.append(comment[2])
        elif fence:
            end = index + 1
            while not lines[end].strip().startswith(fence[1]):
                end += 1
            words = fence[2].split()
            found.append(Block(index + 1, words[0] if words else "", words[1:],
                               "\n".join(lines[index + 1:end]), orders))
            orders, index = [], end
        index += 1
    if orders:
        raise ValueError(f"a comment without a block behind it: {orders}")
    return found


def prose(text):
    """The lines outside blocks of code, each with its number."""
    fence = None
    for number, line in enumerate(text.split("\n"), 1):
        match = FENCE.match(line)
        if match and fence is None:
            fence = match[1]
        elif match and line.strip() == fence:
            fence = None
        elif fence is None:
            yield number, line


def links(text):
    found = []
    for number, line in prose(text):
        line = re.sub(r"`[^`]*`", "", line)
        # A picture may be a link's text: the inner one is taken first.
        while True:
            match = LINK.search(line)
            if not match:
                break
            found.append(Link(number, match[2], match[1] == "!"))
            line = line[:match.start()] + "x" + line[match.end():]
    return found


def slug(heading):
    """The anchor of a heading, as repositories' pages and the site have it."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "").strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def anchors(text):
    names, counts = set(), collections.Counter()
    for _, line in prose(text):
        match = re.match(r"^#{1,6} (.*)$", line)
        if match:
            name = slug(match[1])
            names.add(f"{name}-{counts[name]}" if counts[name] else name)
            counts[name] += 1
    return names


def replace_table(text, name, rows):
    """The page with other lines between the comments of a table."""
    pattern = re.compile(rf"(<!-- table {re.escape(name)} -->\n).*?(\n<!-- end -->)", re.S)
    if not pattern.search(text):
        raise ValueError(f"no table {name}")
    return pattern.sub(lambda match: match[1] + rows + match[2], text)
