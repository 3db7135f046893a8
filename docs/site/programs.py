"""The reference of programs, made from what they say of themselves."""
import os
import subprocess

PROGRAMS = ["zelmo-batch", "zelmo-layout"]


def page_names():
    return [f"programs/{name}" for name in PROGRAMS]


def help_text(build, name):
    return subprocess.run([build / name, "--help"], text=True, check=True, stdout=subprocess.PIPE,
                          env=dict(os.environ, LC_ALL="C.UTF-8")).stdout


def write_pages(build, source):
    (source / "programs").mkdir(parents=True)
    for name in PROGRAMS:
        text = help_text(build, name)
        (source / f"programs/{name}.md").write_text(
            f"# {name}\n\nWhat `{name} --help` says.\n\n```text\n{text.rstrip()}\n```\n")
