"""The reference of the process file: each command with the program's own table of its arguments, the
limits and messages that the program's reader has for lines that are tried now, and pictures.

    reference.py BUILD    makes and checks all of it but the pictures
"""
import json
import pathlib
import re
import subprocess
import sys

from reference_data import EFFECTS, EXAMPLES, FILES, SEQUENCES, UNREACHABLE, VALUES
from sandbox import ROOT, Sandbox

HEAD = {"settings": "settings -version 4", "location": "location -x 0 -y 0 -dx 4 -dy 2",
        "gds": "gds -cell LINES"}
SECTION = {
    "settings": "settings", "location": "location", "gds": "gds",
    "deposition": "deposition-a-film-grown-over-the-surface",
    "coating": "coating-a-film-that-levels-the-surface",
    "photo": "photo-photoresist-exposed-through-a-mask", "etch": "etch-remove-what-is-exposed",
    "release": "release-remove-materials-wherever-they-are",
    "strip": "strip-remove-all-photoresist", "polish": "polish-level-everything-to-a-plane",
    "implant": "implant-dope-what-is-exposed"}
FILM = "deposition -name Film -type film -thickness 1 -color 0 0 0 0"
PHOTO = "photo -name Any -mask_id 1 -type 0 -res 0 -thickness 1"


def page_names():
    return [f"reference/{command}" for command in EXAMPLES] + ["reference/files"]


def manual(build):
    said = subprocess.run([build / "zelmo-print-manual"], check=True, stdout=subprocess.PIPE)
    return json.loads(said.stdout)


def with_value(line, argument, value):
    """The line with another value of an argument; None leaves the argument out."""
    replaced = "" if value is None else f" {argument} {value}".rstrip()
    made, count = re.subn(rf" {argument}(?=\s|$)(?: (?!-[a-zA-Z])\S+)*", lambda _: replaced, line)
    if count != 1:
        raise ValueError(f"{argument} stands {count} times in: {line}")
    return made


class Trial:
    """One line that is tried, in a file with what it needs in front of it."""

    def __init__(self, command, argument, lines, value, accepted):
        self.command, self.argument, self.value = command, argument, value
        self.lines, self.accepted, self.messages = lines, accepted, []


def trials(rows):
    for command, argument, _, _, usual, _ in rows:
        line = next(line for line in EXAMPLES[command] if f" {argument}" in line + " ")
        good, bad = VALUES.get((command, argument), ([], []))
        for value in good:
            yield Trial(command, argument, [with_value(line, argument, value)], value, True)
        for value in bad + ([None] if usual.startswith("needed") else []):
            yield Trial(command, argument, [with_value(line, argument, value)], value, False)
    for command, argument, lines in SEQUENCES:
        yield Trial(command, argument, lines, "; ".join(lines), False)


def try_all(sandbox, tried):
    """Fills in the messages. Trials have a file each: no error of one touches another."""
    for number, trial in enumerate(tried):
        head = [HEAD[name] for name in HEAD if name != trial.command]
        needed = [FILM] + ([PHOTO] if trial.command == "strip" else [])
        lines = trial.lines + head if trial.command == "settings" else \
            head + trial.lines if trial.command in HEAD else head + needed + trial.lines
        text = "\n".join(lines) + "\n"
        judged = max(at for at, line in enumerate(lines, 1) if line == trial.lines[-1])
        (sandbox.folder / f"trial{number}.txt").write_text(text)
        trial.file, trial.judged = f"trial{number}.txt", judged
    said = read_all(sandbox, [trial.file for trial in tried])
    for trial in tried:
        trial.messages = [text for line, text in said[trial.file] if line == trial.judged]


def read_all(sandbox, files):
    """The errors of process files: pairs of a line and a text for each file."""
    program = sandbox.build / "zelmo-batch"
    commands = [f"echo '=== {file}'\n'{program}' --check --no-notes guide.gds {file}\n"
                for file in files]
    written = "".join(sandbox.run("".join(commands[at:at + 50]) + "true")
                      for at in range(0, len(commands), 50))
    said, current = {}, None
    for line in written.split("\n"):
        match = re.match(r"Error in line (\d+): (.*)", line)
        if line.startswith("=== "):
            current = said.setdefault(line[4:], [])
        elif match and (int(match[1]), match[2]) not in current:
            current.append((int(match[1]), match[2]))
    return said


def source_texts():
    """The texts of all errors that the reader of process files can report."""
    texts = set()
    for path in sorted((ROOT / "process_file").glob("*.cpp")):
        source = re.sub(r"constexpr std::string_view (\w+) =\s*(\"[^;]*\");", "", path.read_text())
        names = dict(re.findall(r"constexpr std::string_view (\w+) =\s*((?:\"(?:[^\"\\]|\\.)*\"\s*)+);",
                                path.read_text()))
        for argument in re.findall(r"ReportError\(\s*state,\s*((?:\"(?:[^\"\\]|\\.)*\"\s*)+|\w+)",
                                   source):
            literal = names.get(argument, argument)
            pieces = re.findall(r"\"((?:[^\"\\]|\\.)*)\"", literal)
            if pieces:
                texts.add("".join(pieces).replace('\\"', '"'))
    return texts


def faults(rows, tried, file_messages):
    """What the reference lacks or what is not as it tells."""
    seen = {text for trial in tried for text in trial.messages} | set(file_messages)
    for command, argument, values, *_ in rows:
        if values and (command, argument) not in VALUES:
            yield f"{command} {argument}: no values to try"
    for known in list(VALUES) + list(EFFECTS):
        if list(known) not in [row[:2] for row in rows]:
            yield f"{known}: no such argument"
    for trial in tried:
        if trial.accepted and trial.messages:
            yield f"{trial.lines[-1]}: refused: {trial.messages}"
        if not trial.accepted and not trial.messages:
            yield f"{trial.lines[-1]}: not refused"
    for text in source_texts():
        pattern = re.sub(r"%[sd]", ".*", re.escape(text).replace(r"\%", "%"))
        if text not in UNREACHABLE and not any(re.fullmatch(pattern, made) for made in seen):
            yield f'the reader\'s text "{text}" is told nowhere'


def checked(build):
    rows = manual(build)
    tried = list(trials(rows))
    with Sandbox(build) as sandbox:
        try_all(sandbox, tried)
        for number, (_, text) in enumerate(FILES):
            (sandbox.folder / f"file{number}.txt").write_text(text)
        files = read_all(sandbox, [f"file{number}.txt" for number in range(len(FILES))])
    texts = [[text for _, text in files[f"file{number}.txt"]] for number in range(len(FILES))]
    wrong = list(faults(rows, tried, [text for file in texts for text in file]))
    return rows, tried, texts, wrong


def shown(value):
    return "left out" if value is None else "no value" if value == "" else f"`{value}`"


def argument_part(row, tried, pictures):
    command, argument, values, unit, usual, meaning = row
    line = next(line for line in EXAMPLES[command] if f" {argument}" in line + " ")
    lines = [f"## {argument}", "", meaning[0].upper() + meaning[1:] + ".", "",
             "| Values | Unit | Default |", "|---|---|---|",
             f"| {values or 'none'} | {unit or 'none'} | {usual} |", "", "```zelmo", line, "```", ""]
    if pictures:
        lines += ["| " + " | ".join(f"![{caption}]({name})" for caption, name in pictures) + " |",
                  "|" + "---|" * len(pictures),
                  "| " + " | ".join(f"`{caption}`" for caption, _ in pictures) + " |", ""]
    return lines + message_part([trial for trial in tried if not trial.accepted])


def message_part(tried):
    told = {}
    for trial in tried:
        for message in trial.messages:
            told.setdefault(message, []).append(shown(trial.value))
    if not told:
        return []
    return ["| Message | For instance |", "|---|---|"] + \
        [f"| {message.replace('|', chr(92) + '|')} | {', '.join(values)} |"
         for message, values in told.items()] + [""]


def draw_effects(build, source):
    """The pictures of effects, each with its caption and its file beside the pages."""
    made = {}
    with Sandbox(build) as sandbox:
        for (command, argument), pictures in EFFECTS.items():
            for number, (caption, steps, options) in enumerate(pictures):
                (sandbox.folder / "effect.txt").write_text(
                    "settings -version 4 -N 300 -angle 30\nlocation -x 0.2 -y 0 -dx 3.2 -dy 2\n"
                    "gds -cell LINES\n" + steps)
                picture = sandbox.picture("zelmo-batch guide.gds effect.txt --steps last "
                                          f"--width 320 --smooth --crop {options}", ".png")
                name = f"{command}{argument}-{number}.png"
                picture.rename(source / "reference" / name)
                made.setdefault((command, argument), []).append((caption, name))
    return made


def write_pages(build, source, with_pictures=True):
    rows, tried, texts, wrong = checked(build)
    if wrong:
        raise ValueError("\n".join(wrong))
    (source / "reference").mkdir(parents=True)
    pictures = draw_effects(build, source) if with_pictures else {}
    for command in EXAMPLES:
        own = [trial for trial in tried if trial.command == command]
        lines = [f"# {command}", "", "All that this command takes, as the programs have it. How it "
                 f"works is told in [the process file](../process-file.md#{SECTION[command]}).", ""]
        lines += message_part([trial for trial in own if not trial.argument])
        for row in rows:
            if row[0] == command:
                lines += argument_part(row, [trial for trial in own if trial.argument == row[1]],
                                       pictures.get((command, row[1])))
        (source / f"reference/{command}.md").write_text("\n".join(lines))
    lines = ["# The file as a whole", ""]
    for (title, text), messages in zip(FILES, texts):
        lines += [f"## {title}", "", "```zelmo", text.strip(), "```", ""]
        lines += [f"- {message}" for message in messages] + [""]
    (source / "reference/files.md").write_text("\n".join(lines))


def main():
    _, tried, _, wrong = checked(pathlib.Path(sys.argv[1]).resolve())
    print("\n".join(wrong) or f"{len(tried)} lines are taken and refused as the reference tells")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
