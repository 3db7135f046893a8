#!/usr/bin/env python3
"""Installs a build into a folder and looks at what is there: installation_test.py BUILD VERSION."""
import gzip
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD, VERSION = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2]
PROGRAMS = ["zelmo-batch", "zelmo-layout"]  # those with a command line
HOLDER = tempfile.TemporaryDirectory()
PREFIX = pathlib.Path(HOLDER.name) / "a prefix"
ENVIRONMENT = dict(os.environ, LC_ALL="C.UTF-8", HOME=HOLDER.name)


def run(*words, **options):
    return subprocess.run(words, env=ENVIRONMENT, text=True, capture_output=True, timeout=200,
                          stdin=options.pop("stdin", subprocess.DEVNULL), check=False, **options)


def setUpModule():
    done = run("cmake", "--install", BUILD, "--prefix", PREFIX)
    assert done.returncode == 0, done.stdout + done.stderr


def tearDownModule():
    HOLDER.cleanup()


class Folders(unittest.TestCase):
    def test_are_where_linux_has_them(self):
        for name in ["bin/zelmo", "bin/zelmo-batch", "bin/zelmo-layout", "share/zelmo/colors.txt",
                     "share/zelmo/page.js", "share/man/man1/zelmo.1.gz",
                     "share/bash-completion/completions/zelmo-batch",
                     "share/applications/zelmo.desktop",
                     "share/icons/hicolor/256x256/apps/zelmo.png",
                     "share/vim/vimfiles/syntax/zelmo.vim",
                     "share/org.kde.syntax-highlighting/syntax/zelmo-process.xml",
                     "share/doc/zelmo/guide.txt", "share/doc/zelmo/examples/array.gds",
                     "share/doc/zelmo/copyright", "share/doc/zelmo-batch/copyright",
                     "share/doc/zelmo/third-party-licences.txt"]:
            self.assertTrue((PREFIX / name).is_file(), name)
        folders = {path.name for path in PREFIX.iterdir()}
        self.assertLessEqual(folders - {"bin", "share"}, {"lib"})
        if "lib" in folders:  # of the package for Python, where that is built
            self.assertEqual([path.name for path in (PREFIX / "lib").iterdir()], ["python3"])

    def test_no_file_knows_where_it_was_built(self):
        build = str(BUILD).encode()
        for path in PREFIX.glob("**/*"):
            if path.is_file():
                content = path.read_bytes()
                content = gzip.decompress(content) if path.suffix == ".gz" else content
                self.assertNotIn(build, content, path)

    def test_every_library_has_its_licence_told(self):
        told = (PREFIX / "share/doc/zelmo/third-party-licences.txt").read_text()
        self.assertLessEqual({"GLEW", "Clipper", "fmt", "CLI11", "JSON", "TinyGLTF"},
                             set(re.findall(r"^==== (.*)$", told, flags=re.M)))

    def test_the_desktop_entry_is_valid_and_names_what_is_there(self):
        entry = PREFIX / "share/applications/zelmo.desktop"
        checked = run("desktop-file-validate", entry)
        self.assertEqual((checked.returncode, checked.stdout), (0, ""))
        self.assertIn("Exec=zelmo\n", entry.read_text())
        self.assertIn("Icon=zelmo\n", entry.read_text())


class InstalledPrograms(unittest.TestCase):
    def check_runs(self, programs):
        for program in PROGRAMS:
            self.assertEqual(run(programs / program, "--version").stdout, f"{program} {VERSION}\n")
        example = PREFIX / "share/doc/zelmo/examples/array"
        with tempfile.TemporaryDirectory() as folder:
            done = run(programs / "zelmo-batch", "--quiet", "--columns", "200", "--steps", "last",
                       "-o", "out", "--report", "page.html", f"{example}.gds", f"{example}.txt",
                       cwd=folder)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(len(list(pathlib.Path(folder).glob("out/*.png"))), 1)
            self.assertTrue((pathlib.Path(folder) / "page.html").is_file())

    def test_find_what_they_read_where_they_are_installed(self):
        self.check_runs(PREFIX / "bin")

    def test_find_it_where_they_were_built(self):
        self.check_runs(BUILD)


class ManualPages(unittest.TestCase):
    def text(self, program):
        return gzip.decompress((PREFIX / f"share/man/man1/{program}.1.gz").read_bytes()).decode()

    def test_please_those_who_check_them(self):
        for program in ["zelmo", *PROGRAMS]:
            lint = subprocess.run(["mandoc", "-T", "lint"], input=self.text(program), text=True,
                                  capture_output=True, check=False)
            self.assertEqual(lint.stdout + lint.stderr, "", program)
            warned = run("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z",
                         PREFIX / f"share/man/man1/{program}.1.gz")
            self.assertEqual((warned.returncode, warned.stderr), (0, ""), program)

    def test_have_every_option_of_the_program_and_its_text(self):
        for program in PROGRAMS:
            shown = subprocess.run(["mandoc", "-T", "ascii", "-O", "width=500"],
                                   input=self.text(program), text=True, capture_output=True,
                                   check=True).stdout
            shown = re.sub(r".\x08", "", shown)
            help_text = run(PREFIX / "bin" / program, "--help").stdout
            options = re.findall(r"^  (-\S+)(?: (\S+))?(?:\n +| {2,})(.*)$", help_text, flags=re.M)
            self.assertGreater(len(options), 8)
            for names, form, text in options:
                names = ", ".join(names.split(",")) + (f" {form}" if form else "")
                # The formatter puts two blanks behind a full stop.
                self.assertRegex(shown, rf"\n {{7}}{re.escape(names)}\n? +")
                self.assertIn(re.sub(r" +", " ", text), re.sub(r" +", " ", shown))
            self.assertIn("EXIT STATUS", shown)

    def test_tell_the_version(self):
        for program in ["zelmo", *PROGRAMS]:
            self.assertIn(f"{VERSION}\"", self.text(program).splitlines()[0])


class Completion(unittest.TestCase):
    """What bash itself offers."""

    def complete(self, *words):
        script = """
            source "$1"; shift
            COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
            "_${1//-/_}" "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
            printf '%s\\n' "${COMPREPLY[@]}"
            complete -p "$1" >&2"""
        with tempfile.TemporaryDirectory() as folder:
            for name in ["chip.gds", "flow.txt", "page.html", "stack.glb", "stack.stl", "my chip.gds"]:
                (pathlib.Path(folder) / name).touch()
            (pathlib.Path(folder) / "folder").mkdir()
            done = run("bash", "--norc", "-c", script, "bash",
                       PREFIX / "share/bash-completion/completions" / words[0], *words, cwd=folder)
        self.assertIn(f"complete -F _{words[0].replace('-', '_')} {words[0]}", done.stderr)
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        return sorted(line for line in done.stdout.splitlines() if line)

    def test_offers_the_options_that_the_programs_have(self):
        for program in PROGRAMS:
            help_text = run(PREFIX / "bin" / program, "--help").stdout
            options = {name for names in re.findall(r"^  (-\S+)", help_text, flags=re.M)
                       for name in names.split(",")}
            self.assertEqual(set(self.complete(program, "-")), options)
        self.assertEqual(self.complete("zelmo-batch", "--no-"), ["--no-notes", "--no-pictures"])

    def test_offers_words_that_an_option_takes(self):
        self.assertEqual(self.complete("zelmo-batch", "--format", ""), ["bmp", "png"])
        self.assertEqual(self.complete("zelmo-batch", "--format", "=", "p"), ["png"])
        self.assertEqual(self.complete("zelmo-batch", "--diagnostics", "g"), ["gcc"])

    def test_offers_files_of_the_right_kind(self):
        self.assertEqual(self.complete("zelmo-batch", ""),
                         ["chip.gds", "flow.txt", "folder", "my chip.gds"])
        self.assertEqual(self.complete("zelmo-layout", "chip.gds", "--process", ""),
                         ["flow.txt", "folder"])
        self.assertEqual(self.complete("zelmo-batch", "--export", "st"), ["stack.glb", "stack.stl"])
        self.assertEqual(self.complete("zelmo-batch", "-o", ""), ["folder"])
        self.assertEqual(self.complete("zelmo-batch", "--cell", ""), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
