#!/usr/bin/env python3
"""Loads the files of editors/ with the editors that they are for: what they colour in process files,
and what they do with the errors of zelmo-batch. editors_test.py SOURCE_FOLDER BUILD_FOLDER
"""
import html.parser
import json
import os
import pathlib
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv[1]).resolve()
BUILD = pathlib.Path(sys.argv[2]).resolve()
PATIENCE = 120  # seconds, for machines that have much else to do

FAULTY = """\
# A remark
settings -version 4 -N 200
location -x -20 -y -10 -dx 25 -dy 20
gds -cell CROSSBAR
deposition -name A -type oxide -thickness ${T:-500} -color 1 2 3 100
photo -name P -mask_id 1/2,3 -type 1 -res 0.2 -thickness 800 -iso 2
depositoin -name B
 # no remark
dump all of it
stop here
deposition is not read
"""
MENDED = "\n".join(line for line in FAULTY.splitlines()
                   if not line.startswith(("depositoin", " #", "photo"))) + "\n"

# Line, word, and what it is.
PLACES = [
    (1, "remark", "remark"),
    (2, "settings", "command"),
    (2, "-version", "argument"),
    (2, "200", "number"),
    (3, "-20", "number"),
    (4, "CROSSBAR", "value"),
    (5, "-type", "argument"),
    (5, "oxide", "value"),
    (5, "${T:-500}", "variable"),
    (5, "100", "number"),
    (6, "1/2,3", "number"),
    (6, "-iso", "unknown"),
    (7, "depositoin", "unknown"),
    (8, "#", "unknown"),
    (9, "dump", "command"),
    (9, "all", "remark"),
    (10, "stop", "command"),
    (11, "deposition", "remark"),
]


def example_processes():
    """The process files that the project has, all without an error."""
    found = sorted(path for path in (SOURCE / "examples").glob("**/*.txt")
                   if path.name != "CMakeLists.txt")
    assert len(found) >= 8, found
    return found


class InFolder(unittest.TestCase):
    """A folder with a layout and a faulty process file of the same name."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        shutil.copy(BUILD / "examples/array.gds", self.folder / "flow.gds")
        (self.folder / "flow.txt").write_text(FAULTY)
        self.environment = dict(os.environ, PATH=f"{BUILD}:{os.environ['PATH']}", LC_ALL="C.UTF-8",
                                HOME=holder.name, XDG_DATA_HOME=holder.name, SHELL="/bin/sh",
                                QT_QPA_PLATFORM="offscreen")

    def run_program(self, *words):
        return subprocess.run(words, cwd=self.folder, env=self.environment, text=True,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=PATIENCE)


class Vim(InFolder):
    KINDS = {"zelmoRemark": "remark", "zelmoRest": "remark", "zelmoCommand": "command",
             "zelmoNumber": "number", "zelmoMask": "number", "zelmoVariable": "variable",
             "zelmoUnknown": "unknown", "zelmoUnknownArgument": "unknown"}

    def vim(self, file, script):
        """Runs a script in Vim, with a file open; what it puts into g:result."""
        path = self.folder / "script.vim"
        path.write_text("let g:result = v:null\ntry\n" + script + "\ncatch\n"
                        "let g:result = v:exception .. ' at ' .. v:throwpoint\nendtry\n"
                        "call writefile([json_encode(g:result)], 'result')\nqall!\n")
        run = self.run_program(
            "vim", "-u", "NONE", "-i", "NONE", "-N", "-n", "-es",
            "--cmd", f"set runtimepath^={SOURCE / 'editors/vim'}",
            "-c", "filetype plugin on", "-c", "syntax on", "-c", f"edit {file}",
            "-c", "source script.vim")
        result = self.folder / "result"
        self.assertTrue(result.exists(), run.stdout + run.stderr)
        return json.loads(result.read_text())

    def kind_of(self, group):
        return "argument" if group.endswith("Argument") and group not in self.KINDS \
            else self.KINDS.get(group, "value")

    def test_knows_process_files_by_their_first_command(self):
        self.assertEqual(self.vim("flow.txt", "let g:result = &filetype"), "zelmo")
        (self.folder / "letter.txt").write_text("Dear settings,\nsettings -version 4\n")
        self.assertEqual(self.vim("letter.txt", "let g:result = &filetype"), "text")

    def test_colours_what_each_word_is(self):
        names = self.vim("flow.txt", """
            let g:result = []
            for s:line in range(1, line('$'))
              call add(g:result, map(range(1, col([s:line, '$']) - 1),
                \\ 'synIDattr(synID(s:line, v:val, 1), "name")'))
            endfor""")
        for line, word, kind in PLACES:
            column = FAULTY.splitlines()[line - 1].index(word)
            found = names[line - 1][column:column + len(word)]
            self.assertEqual({self.kind_of(name) for name in found}, {kind}, (line, word, found))

    def test_finds_no_fault_with_the_examples(self):
        wrong = self.vim("flow.txt", """
            let g:result = []
            for s:process in %s
              execute 'edit' s:process
              for s:line in range(1, line('$'))
                for s:column in range(1, col([s:line, '$']) - 1)
                  let s:name = synIDattr(synIDtrans(synID(s:line, s:column, 1)), 'name')
                  if s:name ==# 'Error'
                    call add(g:result, [s:process, s:line, s:column])
                  endif
                endfor
              endfor
              call add(g:result, &filetype)
            endfor""" % json.dumps([str(process) for process in example_processes()]))
        self.assertEqual(wrong, ["zelmo"] * len(example_processes()))

    LIST = "map(getqflist(), '[bufname(v:val.bufnr), v:val.lnum, v:val.type, v:val.text]')"

    def test_make_lists_errors_and_notes_with_their_lines(self):
        entries = self.vim("flow.txt", f"silent make\nlet g:result = {self.LIST}")
        self.assertEqual(entries[:3], [["flow.txt", 6, "e", "Invalid argument -iso"],
                                       ["flow.txt", 7, "e", "Unknown command"],
                                       ["flow.txt", 8, "e", "Unknown command"]])
        self.assertIn(["flow.txt", 7, "n"], [entry[:3] for entry in entries])
        (self.folder / "flow.txt").write_text(MENDED)
        self.assertEqual(self.vim("flow.txt", f"silent make\nlet g:result = {self.LIST}"), [])

    def test_make_takes_the_layout_that_it_is_told(self):
        (self.folder / "flow.gds").rename(self.folder / "my layout.gds")
        (self.folder / "flow.txt").write_text(MENDED)
        (self.folder / "flow.txt").rename(self.folder / "my flow.txt")
        script = f"compiler zelmo\nsilent make\nlet g:result = {self.LIST}"
        entries = self.vim("my\\ flow.txt", script)
        self.assertEqual([entry[1:3] for entry in entries], [[0, "e"]], entries)
        self.assertIn("no such file", entries[0][3])
        self.assertEqual(
            self.vim("my\\ flow.txt", "let b:zelmo_layout = 'my layout.gds'\n" + script), [])

    def test_watch_lists_what_each_save_gives(self):
        wait = """
            function! Wait(condition)
              let s:end = reltime()
              while !eval(a:condition) && reltimefloat(reltime(s:end)) < %d
                sleep 20m
              endwhile
            endfunction
            """ % PATIENCE
        result = self.vim("flow.txt", wait + """
            let g:result = []
            ZelmoWatch --no-pictures
            call Wait('len(getqflist()) > 0')
            call add(g:result, sort(map(getqflist(), 'v:val.lnum'))[:2])
            call writefile(%s, 'flow.txt')
            call Wait('len(getqflist()) == 0')
            call add(g:result, len(getqflist()))
            call writefile(['nonsense'], 'flow.txt')
            call Wait('get(get(getqflist(), 0, {}), "lnum") == 1')
            call add(g:result, map(getqflist(), 'v:val.lnum')[0])
            ZelmoUnwatch""" % json.dumps(MENDED.splitlines()))
        self.assertEqual(result, [[6, 7, 7], 0, 1])


class Spans(html.parser.HTMLParser):
    """The characters of a highlighted page, each with the style it has, line by line."""

    def __init__(self):
        super().__init__()
        self.inside, self.style, self.lines = False, "", [[]]

    def handle_starttag(self, tag, attributes):
        if tag == "pre":
            self.inside = True
        if tag == "span":
            self.style = dict(attributes)["style"]

    def handle_endtag(self, tag):
        if tag == "pre":
            self.inside = False
        if tag == "span":
            self.style = ""

    def handle_data(self, data):
        for character in data if self.inside else "":
            if character == "\n":
                self.lines.append([])
            else:
                self.lines[-1].append((character, self.style))


class Kate(InFolder):
    def setUp(self):
        super().setUp()
        definitions = self.folder / "org.kde.syntax-highlighting/syntax"
        definitions.mkdir(parents=True)
        shutil.copy(SOURCE / "editors/kate/zelmo-process.xml", definitions)

    def highlight(self, path):
        run = self.run_program("kate-syntax-highlighter", "-s", "Zelmo process", path)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        spans = Spans()
        spans.feed(run.stdout)
        return spans.lines[1:]

    def test_lists_the_definition(self):
        self.assertIn("Zelmo process",
                      self.run_program("kate-syntax-highlighter", "--list").stdout.splitlines())

    def test_colours_what_each_word_is(self):
        lines = self.highlight("flow.txt")
        self.assertEqual(["".join(c for c, _ in line) for line in lines[:11]],
                         FAULTY.splitlines())
        styles = {}
        for line, word, kind in PLACES:
            column = FAULTY.splitlines()[line - 1].find(word)
            found = {style for _, style in lines[line - 1][column:column + len(word)]}
            styles.setdefault(kind, set()).update(found)
        for kind, found in styles.items():
            self.assertEqual(len(found), 1, (kind, found))
        # Arguments and variables have one colour in the usual theme; all else differs.
        different = {kind: found.pop() for kind, found in styles.items() if kind != "variable"}
        self.assertEqual(len(set(different.values())), len(different), different)
        self.assertIn("underline", different["unknown"])

    def test_finds_no_fault_with_the_examples(self):
        # One run for all, since each reads hundreds of other definitions first.
        text = "".join(process.read_text() for process in example_processes())
        (self.folder / "all.txt").write_text(text.replace("\nstop", "\n# stop"))
        lines = self.highlight("all.txt")
        self.assertGreater(len(lines), 500)
        for line in lines:
            self.assertFalse([c for c, style in line if "underline" in style],
                             "".join(c for c, _ in line))

    def test_the_project_has_tasks_that_check_and_watch(self):
        project = json.loads((SOURCE / "editors/kate/.kateproject").read_text())
        tasks = {task["name"]: task["build_cmd"] for task in project["build"]["targets"]}
        (self.folder / "flow.gds").rename(self.folder / "layout.gds")
        (self.folder / "flow.txt").rename(self.folder / "process.txt")
        check = self.run_program("sh", "-c", tasks["check"])
        self.assertEqual(check.returncode, 3)
        self.assertIn("process.txt:7: error: Unknown command\n", check.stderr)
        watch = subprocess.Popen(shlex.split(tasks["watch"]), cwd=self.folder,
                                 env=self.environment, text=True, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE)
        lines = []
        for line in watch.stderr:
            lines.append(line)
            if line.startswith("zelmo-batch: watching"):
                break
        watch.send_signal(signal.SIGINT)
        self.assertEqual(watch.wait(PATIENCE), 3)
        watch.stderr.close()
        self.assertIn("process.txt:7: error: Unknown command\n", lines)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
