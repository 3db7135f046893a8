"""What keeps a study from running, and the exit statuses of `zelmo-study`."""
import difflib
import enum


class ExitStatus(enum.IntEnum):
    """How the program ends. Scripts rely on these numbers; they are those of zelmo-batch."""

    SUCCESS = 0
    USAGE = 1  # the command line is wrong
    LAYOUT = 2  # the layout did not load
    PROCESS = 3  # the study or the process file was refused
    PICTURE = 4  # a picture or the page could not be made or written
    OTHER = 5
    INTERRUPTED = 130  # by Ctrl-C


class StudyError(Exception):
    """A study that cannot run or go on: one line that names file, place, reason and way out."""

    def __init__(self, text, status=ExitStatus.PROCESS):
        super().__init__(text)
        self.status = status


class Cut(Exception):
    """A study that was ended from outside before all its variants were done."""

    def __init__(self, done, total, signal_number=2):
        super().__init__(f"cut off after {done} of {total} variants: the same command goes on")
        self.done = done
        self.total = total
        self.signal_number = signal_number

    @property
    def status(self):
        """The exit status of a program that a signal ended."""
        return 128 + self.signal_number


def did_you_mean(name, known):
    """Words that tell what is near `name`, or all there is if that is little; may be empty."""
    known = sorted(str(each) for each in known)
    near = difflib.get_close_matches(str(name), known, n=3, cutoff=0.6)
    if near:
        return ": did you mean " + " or ".join(near) + "?"
    if 0 < len(known) <= 16:
        return ": there are " + ", ".join(known)
    return ""
