"""Runs what stands on the pages of the guide: every process file, every command, every picture.

A block of code says by its language what becomes of it:

    zelmo            lines of a process file, each of which has to be accepted by itself; with
                     "settings" among them they are a process file
    zelmo FILE.txt   the same as a file, which the commands below it use
    zelmo FILE.txt + lines that are added to it
    sh               commands that have to succeed; their grid is the smallest one
    console          commands behind "$ ", with what they write: a line "..." stands for any lines
    toml FILE        a study, which the commands below it use
    diff             changes of the code, which have to apply to it, all of a page together
    text             anything that is neither
    others           the guide's other tests have to know them
"""
import re
import shlex
import shutil
import subprocess

import markdown
import pixels
from sandbox import ROOT, Failure

DOCS = ROOT / "docs"
OTHER_LANGUAGES = {"json", "cpp", "python", "cmake", "make", "html", "csv", "toml"}
PRELUDE = "settings -version 4 -N 200\nlocation -x 0 -y 0 -dx 4 -dy 2\ngds -cell TRANSISTOR\n"
RUN_NAMES = re.compile(r"^\s*(\$ |zelmo-(batch|layout|study) |\./(run|test)\b)", re.M)


def guide_pages():
    """All pages, those of the guide and the others of the folder, and the README."""
    return [ROOT / name for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md")] + \
        sorted(DOCS.rglob("*.md"))


class Page:
    """A page and the sandbox in which it runs. With `update` outputs and pictures are replaced by
    what is made now."""

    def __init__(self, path, sandbox, update=False, pictures_to=None):
        # With a folder in `pictures_to` nothing but the pictures is made, into that folder.
        self.path, self.sandbox, self.update = path, sandbox, update
        self.pictures_to = pictures_to
        self.text = path.read_text()
        self.lets, self.failures, self.left_out, self.count = {}, [], [], 0
        self.changes = ""

    def run(self):
        for part in markdown.parts(self.text):
            try:
                if isinstance(part, markdown.Let):
                    self.lets[part.word] = part.value
                elif isinstance(part, markdown.Picture):
                    self._picture(part)
                else:
                    self._block(part)
                self.count += 1
            except (Failure, ValueError) as error:
                self.failures.append(f"{self.path.relative_to(ROOT)}:{part.line}: {error}")
        if self.changes:
            self._try_changes()
        if self.update:
            self.path.write_text(self.text)
        return self

    def _try_changes(self):
        done = subprocess.run(["git", "apply", "--check", "-"], cwd=ROOT, input=self.changes,
                              text=True, stderr=subprocess.PIPE, check=False)
        if done.returncode:
            self.failures.append(f"{self.path.relative_to(ROOT)}: the changes do not apply:\n"
                                 f"{done.stderr}")

    def _block(self, block):
        reasons = [order for order in block.orders if order.startswith("not run, ")]
        if reasons:
            self.left_out.append(f"{self.path.relative_to(ROOT)}:{block.line}: {reasons[0][9:]}")
            return
        numbers = {"status": 0, "stop after": None}
        for order in block.orders:
            word, _, value = order.rpartition(" ")
            if word not in numbers:
                raise ValueError(f"unknown order: {order}")
            numbers[word] = int(value)
        status = numbers["status"]
        if block.language == "zelmo":
            self._process(block)
        elif block.language == "toml" and block.words:
            (self.sandbox.folder / block.words[0]).write_text(block.text + "\n")
        elif self.pictures_to:
            return
        elif block.language == "sh":
            for command in self._commands(block.text.split("\n")):
                self.sandbox.run(command, True, status, numbers["stop after"])
        elif block.language == "console":
            self._console(block, status)
        elif block.language == "text":
            if "[OPTIONS]" not in block.text and RUN_NAMES.search(block.text):
                raise ValueError("a text block with a command: it is sh or console")
        elif block.language == "diff":
            self.changes += block.text + "\n"
        elif block.language not in OTHER_LANGUAGES:
            raise ValueError(f"no known language: {block.language or '(none)'}")

    def _commands(self, lines):
        """Lines that end in a backslash go on in the next one."""
        for command in "\n".join(lines).replace("\\\n", " ").split("\n"):
            if command.strip() and not command.startswith("#"):
                yield self._with_lets(command)

    def _with_lets(self, command):
        for word, value in self.lets.items():
            command = re.sub(rf"(?<![\w./]){re.escape(word)}(?![\w.])", value, command)
        return command

    def _process(self, block):
        folder = self.sandbox.folder
        if block.words:
            mode = "a" if block.words[1:] == ["+"] else "w"
            with (folder / block.words[0]).open(mode) as file:
                file.write(block.text + "\n")
            return self._check((folder / block.words[0]).read_text(), "--check")
        if re.search(r"^settings\b", block.text, re.M):
            text = re.sub(r"-cell \S+", "-cell TRANSISTOR", block.text)
            return self._check(text, "--check --window 0,0,4,2 --no-notes")
        for line in block.text.split("\n"):
            if line.strip() and not line.startswith("#"):
                self._check(PRELUDE + self._needed_before(line) + line + "\n",
                            "--check --no-notes")
        return None

    def _check(self, text, options):
        (self.sandbox.folder / "checked.txt").write_text(text)
        cell = re.search(r"^gds -cell (\S+)", text, re.M)
        layout = "guide.gds"
        if cell and cell[1] in ("CROSSBAR", "CMOS_INVERTER", "MICROMOTOR"):
            layout = {"CROSSBAR": "array.gds", "CMOS_INVERTER": "cmos_inverter.gds",
                      "MICROMOTOR": "mems_release.gds"}[cell[1]]
        said = self.sandbox.run(f"zelmo-batch {options} --allow resist-left {layout} checked.txt")
        if "note:" in said:
            raise Failure(f"notes about the process:\n{said}")

    @staticmethod
    def _needed_before(line):
        """The lines without which a line by itself would be refused."""
        needed = "photo -name Any -mask_id 1 -type 0 -res 0 -thickness 1\n" \
            if line.startswith("strip") else ""
        for kind in re.findall(r" -(?:targets|stop)((?: (?!-)\S+)+)", line):
            for name in kind.split():
                needed += f"deposition -name Any{name} -type {name} -thickness 1 -color 0 0 0 0\n"
        return needed

    def _console(self, block, status):
        made, expected, command = [], [], None
        lines = block.text.split("\n")
        starts = [index for index, line in enumerate(lines) if line.startswith("$ ")]
        if not starts or starts[0] != 0:
            raise ValueError("a console block begins with a command behind $")
        for start, end in zip(starts, starts[1:] + [len(lines)]):
            command = self._with_lets(lines[start][2:])
            expected = lines[start + 1:end]
            given = self.sandbox.run(command, status=status).rstrip("\n").split("\n")
            given = [line.rstrip() for line in given]
            pattern = "\n".join(r"[^\0]*?" if line == "..." else re.escape(line.rstrip())
                                for line in expected)
            same = re.fullmatch(pattern, "\n".join(given))
            if not same and not self.update:
                raise Failure(f"{command}\nwrites otherwise now:\n" + "\n".join(given))
            made += [lines[start]] + (expected if same else given)
        if self.update:
            self.text = self.text.replace(block.text, "\n".join(made), 1)

    def _picture(self, picture):
        path = DOCS / picture.path
        if f"]({self._relative(path)})" not in self.text:
            raise ValueError(f"{picture.path} is made and not shown")
        made = self.sandbox.picture(self._with_lets(picture.command), path.suffix)
        if self.pictures_to:
            target = self.pictures_to / picture.path
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(made, target)
        elif not path.exists() or pixels.difference(path, made):
            if not self.update:
                raise Failure(f"{shlex.quote(picture.path)}: "
                              f"{pixels.difference(path, made) if path.exists() else 'not there'}")
            path.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(made, path)

    def _relative(self, path):
        up = "../" * len(self.path.parent.relative_to(DOCS).parts) \
            if DOCS in self.path.parents else "docs/"
        return up + str(path.relative_to(DOCS))
