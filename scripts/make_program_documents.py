#!/usr/bin/env python3
"""Makes of what a program says of itself (--help, --version) its manual page and its completion for
bash: make_program_documents.py PROGRAM FOLDER DATE writes PROGRAM.1.gz and PROGRAM
into the folder. DATE stands at the page's foot.
"""
import dataclasses
import gzip
import pathlib
import re
import subprocess
import sys
import textwrap

LINE = 78  # characters of a manual page's source


@dataclasses.dataclass
class Entry:
    names: list   # "-o", "--output", or the one name of a positional argument
    form: str     # of its value; empty for a flag
    text: str


@dataclasses.dataclass
class Help:
    description: str
    usage: str
    positionals: list
    options: list
    footer: str


def entries(lines):
    """The entries of a section: a name and a form, with the text in the 31st column or the next line."""
    found = []
    for line in lines:
        head = re.match(r" {2}(\S+)(?: (\S+))?(?: {2,}(.*))?$", line)
        if head and not line.startswith("   "):
            name, form, text = head.group(1), head.group(2) or "", head.group(3) or ""
            found.append(Entry(name.split(","), form, text))
        elif line.strip() and found:
            found[-1].text = (found[-1].text + " " + line.strip()).strip()
    return found


def read_help(program):
    """What the program tells of itself. Fails where that is not understood."""
    text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    sections = {"": []}
    section = ""
    for line in text.splitlines():
        if line in ("Positionals:", "Options:"):
            section = line[:-1]
        elif line.startswith("Usage: "):
            section = "usage"
            sections[section] = [line[len("Usage: "):]]
            continue
        elif section == "Options" and line and not line.startswith(" "):
            section = "footer"
        sections.setdefault(section, []).append(line)
    told = Help(" ".join(sections[""]).strip(), sections["usage"][0],
                entries(sections.get("Positionals", [])[1:]), entries(sections["Options"][1:]),
                " ".join(sections.get("footer", [])).strip())
    for positional in told.positionals:
        positional.form = ""  # "REQUIRED": the usage tells that
    for entry in told.options:
        if not entry.text or not all(re.fullmatch(r"--?[a-z-]+", name) for name in entry.names):
            raise ValueError(f"{program} --help: {entry} is not understood")
    return told


def roff(text):
    """A piece of a line as the formatter takes it: nothing in it is a command."""
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq")
    return re.sub(r"^\.", r"\\&.", text, flags=re.M)


def paragraph(text):
    """A text in short lines, each sentence on lines of its own, as manual pages have them."""
    wrapped = textwrap.TextWrapper(LINE - 10, break_on_hyphens=False, break_long_words=False)
    sentences = re.split(r"(?<=[a-z)][.]) (?=[A-Z])", text)
    return "\n".join(roff(line) for sentence in sentences for line in wrapped.wrap(sentence))


def name_line(told):
    first = told.description.split(". ")[0].split(": ")[0].rstrip(".:")
    first = re.sub(r", step by step,.*", "", first)
    return first[0].lower() + first[1:]


def exit_statuses(footer):
    """What stands behind "Exit status:", by number; empty where there is no such footer."""
    match = re.match(r"Exit status: (.*)\.$", footer)
    return re.findall(r"(\d) (.*?)(?:, (?=\d )|$)", match.group(1)) if match else []


def manual_page(name, version, date, told):
    lines = [f'.TH {name.upper()} 1 "{date}" "{version}" "User Commands"', ".SH NAME",
             f"{roff(name)} \\- {roff(name_line(told))}", ".SH SYNOPSIS"]
    words = told.usage.split()
    lines.append(f".B {roff(words[0])}")
    lines += [f".RI [ {roff(word[1:-1])} ]" if word.startswith("[") else f".I {roff(word)}"
              for word in words[1:]]
    lines += [".SH DESCRIPTION", paragraph(told.description)]
    for positional in told.positionals:
        lines += [".TP", f".I {roff(positional.names[0])}", paragraph(positional.text)]
    lines.append(".SH OPTIONS")
    for option in told.options:
        names = ", ".join(f"\\fB{roff(part)}\\fR" for part in option.names)
        form = f" \\fI{roff(option.form)}\\fR" if option.form else ""
        lines += [".TP", names + form, paragraph(option.text)]
    statuses = exit_statuses(told.footer)
    if statuses:
        lines.append(".SH EXIT STATUS")
        for number, meaning in statuses:
            lines += [".TP", f".B {number}", paragraph(meaning)]
    elif told.footer:
        lines += [".SH NOTES", paragraph(told.footer)]
    others = [other for other in ("zelmo", "zelmo-batch", "zelmo-layout") if other != name]
    lines += [".SH SEE ALSO"]
    lines += [f".BR {roff(other)} (1)" + ("," if other != others[-1] else "") for other in others]
    lines += [".PP", "The guide, the reference of process files and examples lie in",
              ".IR /usr/share/doc/zelmo ."]
    return "\n".join(lines) + "\n"


def action(form):
    """What bash offers for a value of this form."""
    if re.fullmatch(r"[a-z]+(\|[a-z]+)+", form):
        return f'COMPREPLY=($(compgen -W "{form.replace("|", " ")}" -- "$word"))'
    if form == "DIR":
        return "_zelmo_files d"
    endings = re.fullmatch(r"(?:FILE|PROCESS)\.([a-z|]+)", form)
    if endings:
        return f"_zelmo_files f '{endings.group(1)}'"
    if form == "FILE":
        return "_zelmo_files f '*'"
    return "COMPREPLY=()"


COMPLETION = """\
# Completion of {name} for bash, made from its --help.
_zelmo_files() {{
    # Folders, and with f the files that have one of these endings.
    local pattern="@(${{2:-}})"
    compopt -o filenames 2> /dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$word")
    [ "$1" = f ] || return 0
    local file
    while IFS= read -r file; do
        [ ! -d "$file" ] || continue
        # shellcheck disable=SC2053
        if [ "${{2:-*}}" = "*" ] || [[ $file == *.$pattern ]]; then COMPREPLY+=("$file"); fi
    done < <(compgen -f -- "$word")
}}

{function}() {{
    local word=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD - 1]}}
    COMPREPLY=()
    # bash takes the "=" of --option=value for a word.
    if [ "$word" = "=" ]; then word=; fi
    if [ "$previous" = "=" ]; then previous=${{COMP_WORDS[COMP_CWORD - 2]}}; fi
    case $previous in
{cases}
    esac
    case $word in
        -*)
            COMPREPLY=($(compgen -W "{words}" -- "$word"))
            ;;
        *)
            _zelmo_files f '{endings}'
            ;;
    esac
}}
complete -F {function} {name}
"""


def completion(name, told):
    cases = []
    for option in told.options:
        if option.form:
            cases += [f"        {' | '.join(option.names)})", f"            {action(option.form)}",
                      "            return", "            ;;"]
    endings = [positional.names[0].split(".")[-1] for positional in told.positionals
               if "." in positional.names[0]]
    words = " ".join(part for option in told.options for part in option.names)
    return COMPLETION.format(name=name, function="_" + name.replace("-", "_"),
                             cases="\n".join(cases), words=words, endings="|".join(endings))


def main():
    program, folder, date = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    version = subprocess.run([program, "--version"], capture_output=True, text=True,
                             check=True).stdout.strip()
    told = read_help(program)
    folder.mkdir(parents=True, exist_ok=True)
    page = manual_page(program.name, version, date, told)
    # No time of its own, so that the same page always is the same file.
    (folder / f"{program.name}.1.gz").write_bytes(gzip.compress(page.encode(), 9, mtime=0))
    (folder / program.name).write_text(completion(program.name, told))


if __name__ == "__main__":
    main()
