"""A folder in which the commands of the guide run as on a reader's machine: the programs, the
examples beside them, and the script `run` of the project with the build left out."""
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = ["zelmo-batch", "zelmo-layout", "zelmo-study"]
LONGEST = 200  # seconds of a command; some hundred times what it should take

# Where only the success of a command counts, its grid and its pictures are the smallest.
WRAPPER = """#!/usr/bin/python3 -IS
import os, sys
words = sys.argv[1:]
if os.environ.get("ZELMO_GUIDE_SMALL") and "--help" not in words and "--version" not in words:
    words = [word for word in words if word != "--smooth"]
    for option, value in (("--columns", "200"), ("--width", "320")):
        if option in words:
            words[words.index(option) + 1] = value
        elif option == "--columns" or not {"--no-pictures", "--check"} & set(words):
            words += [option, value]
    # Folders are named after the second in which they are made, and here one holds several runs.
    if not {"-o", "--output", "--check", "--no-pictures"} & set(words):
        words += ["--output", "run-" + str(os.getpid())]
os.execv(%r, [%r] + words)
"""


class Failure(Exception):
    pass


class Sandbox:
    def __init__(self, build):
        self.build = pathlib.Path(build).resolve()
        self._temp = tempfile.TemporaryDirectory(prefix="zelmo-guide-")
        self.folder = pathlib.Path(self._temp.name)
        self._lay_out()
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", NO_COLOR="1")
        self.environment["HOME"] = str(self.folder)
        self.environment["PATH"] = f"{self.folder / 'bin'}:{os.environ['PATH']}"

    def _lay_out(self):
        for name in ("bin", "scripts", "build/release"):
            (self.folder / name).mkdir(parents=True)
        for program in PROGRAMS:
            wrapper = self.folder / "bin" / program
            wrapper.write_text(WRAPPER % ((str(self.build / program),) * 2) if program == "zelmo-batch"
                               else f"#!/bin/sh\nexec '{self.build / program}' \"$@\"\n")
            wrapper.chmod(0o755)
            (self.folder / "build/release" / program).symlink_to(wrapper)
        (self.folder / "build/release/examples").symlink_to(self.build / "examples")
        for name in ("examples", "editors"):
            (self.folder / name).symlink_to(ROOT / name)
        for file in (self.build / "examples").iterdir():
            if file.is_file():
                shutil.copy(file, self.folder)
        shutil.copy(ROOT / "run", self.folder)
        (self.folder / "scripts/build.sh").write_text("#!/bin/sh\n")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._temp.cleanup()

    def run(self, command, small=False, status=0, stopped_after=None):
        """What a shell's command wrote, standard error included. `stopped_after` so many seconds
        one that would go on is ended as by Ctrl-C."""
        environment = dict(self.environment, **({"ZELMO_GUIDE_SMALL": "1"} if small else {}))
        with subprocess.Popen(["sh", "-c", f"exec {command}" if stopped_after else command],
                              cwd=self.folder, env=environment, text=True, errors="replace",
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT) as process:
            try:
                said, _ = process.communicate(timeout=stopped_after or LONGEST)
            except subprocess.TimeoutExpired:
                process.send_signal(signal.SIGINT if stopped_after else signal.SIGKILL)
                said, _ = process.communicate()
                if not stopped_after:
                    raise Failure(f"{command}\ntook more than {LONGEST} s") from None
        if process.returncode != status:
            raise Failure(f"{command}\nended with {process.returncode}, not {status}:\n{said}")
        return said

    def picture(self, command, suffix):
        """The picture that a command makes: in the file $PICTURE if that is named, else the only
        one of its kind in the folder that zelmo-batch is told."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder, prefix="picture-"))
        if "$PICTURE" in command:
            made = folder / f"picture{suffix}"
            self.run(command.replace("$PICTURE", str(made)))
            return made
        self.run(f"{command} --quiet --no-notes --output '{folder}'")
        made = sorted(folder.glob(f"*{suffix}"))
        if len(made) != 1:
            raise Failure(f"{command}\nmade {len(made)} pictures, not one")
        return made[0]
