"""One line on the terminal: how far a study is, the time that is left, what the workers do."""
import shutil
import sys
import time


def duration(seconds):
    """Seconds in the words of a person."""
    if seconds < 0.95:
        return f"{seconds:.1f} s"
    seconds = int(seconds + 0.5)
    if seconds < 120:
        return f"{seconds} s"
    if seconds < 7200:
        return f"{seconds // 60} min {seconds % 60:02} s"
    if seconds < 172800:
        return f"{seconds // 3600} h {seconds % 3600 // 60:02} min"
    return f"{seconds // 86400} days {seconds % 86400 // 3600} h"


class Progress:
    """Writes to standard error: a line that changes on a terminal, else a line now and then."""

    def __init__(self, total, done, stream=None, quiet=False):
        self.stream = stream or sys.stderr
        self.is_terminal = self.stream.isatty()
        self.quiet = quiet
        self.total, self.done, self.failed = total, done, 0
        self.begun = time.monotonic()
        self.written = -1.0 if self.is_terminal else self.begun
        self.width = 0

    def line(self, left, workers):
        """The line's text. `left`: seconds or None; `workers`: what each does."""
        parts = [f"{self.done} of {self.total} variants"]
        if self.failed:
            parts.append(f"{self.failed} failed")
        parts.append(duration(time.monotonic() - self.begun))
        if left is not None:
            parts.append(f"about {duration(left)} left")
        text = ", ".join(parts)
        return f"{text} | {' | '.join(workers)}" if workers else text

    def show(self, outcomes, left, workers):
        """Takes some outcomes and tells how things stand, if it is time to."""
        self.done += len(outcomes)
        self.failed += sum(1 for each in outcomes if each.error)
        interval = 0.2 if self.is_terminal else 10.0
        if self.quiet or time.monotonic() - self.written < interval:
            return
        self.written = time.monotonic()
        text = self.line(left, workers)
        if self.is_terminal:
            text = text[:max(20, shutil.get_terminal_size().columns - 1)]
            self._write("\r" + text.ljust(self.width))
            self.width = len(text)
        else:
            self._write(text + "\n")

    def end(self):
        """Leaves the terminal's line empty for what comes."""
        if self.is_terminal and not self.quiet:
            self._write("\r" + " " * self.width + "\r")

    def _write(self, text):
        try:
            self.stream.write(text)
            self.stream.flush()
        except (OSError, ValueError):  # nobody listens any more: the study matters
            self.quiet = True
