"""The folder of a study's results. Rows are written as they come and are there for good; whoever is
cut off at any moment finds every whole row again."""
import csv
import errno
import fcntl
import io
import json
import os
import re

from .errors import ExitStatus, StudyError
from .parameters import text_of
from .study_file import kept_name

ROWS = "results.csv"
FACTS = "study.json"
TIMES = "times.json"


def number_text(value):
    """A measure as it stands in a row; empty where there is none."""
    if value is None:
        return ""
    return repr(value) if isinstance(value, float) else str(value)


def write_file(path, data):
    """Makes a file appear when it is complete, for good. Raises OSError."""
    partial = f"{path}.partial"
    try:
        with open(partial, "wb") as file:
            file.write(data)
            file.flush()
            os.fsync(file.fileno())
        os.replace(partial, path)
    except OSError:
        try:
            os.unlink(partial)
        except OSError:
            pass
        raise
    folder = os.open(os.path.dirname(path) or ".", os.O_RDONLY)
    try:
        os.fsync(folder)
    finally:
        os.close(folder)


def lost(path, error):
    """What is told when something cannot be written."""
    reason = error.strerror or str(error)
    is_full = error.errno in (errno.ENOSPC, errno.EDQUOT, errno.EFBIG)
    way_out = "make room" if is_full else "let it be written to"
    return StudyError(f"{path}: {reason}: nothing that was done is lost; {way_out}, and the same command "
                      "goes on", ExitStatus.OTHER)


class Results:
    """The rows of a study in its folder, one a variant."""

    def __init__(self, study, facts, overwrite=False, retry_errors=False):
        """Opens the folder, repairs what was cut off, and finds what is done already.

        `facts`: what rows depend on, as texts; a folder with others is refused unless `overwrite`.
        """
        self.study = study
        self.header = ["variant", *study.parameters, *[each.name for each in study.measures], "error"]
        self.rows = {}  # variant to its fields
        self.file = self.lock = None
        self.keys = {study.row_key(variant): n for n, variant in enumerate(study.variants, 1)}
        try:
            os.makedirs(study.output, exist_ok=True)
            self.lock = self._take_lock()
            self._check_facts(facts, overwrite)
            self._read(overwrite)
        except OSError as error:
            self.close()
            raise lost(error.filename or study.output, error) from None
        except StudyError:
            self.close()
            raise
        if retry_errors:
            self.rows = {number: row for number, row in self.rows.items() if not row[-1]}
        self._drop_rows_without_files()

    def path(self, name):
        return os.path.join(self.study.output, name)

    def _take_lock(self):
        lock = os.open(self.path(".lock"), os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o644)
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError:
            os.close(lock)
            raise StudyError(f"{self.study.output}: another study writes there: wait for it, or give "
                             "another folder with --output", ExitStatus.OTHER) from None
        return lock

    def _check_facts(self, facts, overwrite):
        path = self.path(FACTS)
        earlier = None
        if os.path.exists(path):
            try:
                with open(path, encoding="utf-8") as file:
                    earlier = json.load(file)["facts"]
            except (ValueError, KeyError, TypeError):
                earlier = None
        if earlier != facts and not overwrite and (earlier is not None or os.path.exists(self.path(ROWS))):
            differ = [name for name in facts if not isinstance(earlier, dict) or earlier.get(name) != facts[name]]
            raise StudyError(f"{self.study.output}: its results are of another study (" + ", ".join(differ)
                             + "): give another folder with --output, or replace them with --overwrite",
                             ExitStatus.USAGE)
        if earlier != facts:
            if overwrite:
                for name in (ROWS, TIMES):
                    if os.path.exists(self.path(name)):
                        os.unlink(self.path(name))
            text = json.dumps({"program": "zelmo-study", "study": self.study.title, "facts": facts}, indent=1)
            write_file(path, (text + "\n").encode())

    def _read(self, overwrite):
        """Takes the rows that are there; a torn last line is cut off."""
        path = self.path(ROWS)
        begin = self._line(self.header)
        data = b""
        if os.path.exists(path) and not overwrite:
            with open(path, "rb") as file:
                data = file.read()
        whole = data[:data.rfind(b"\n") + 1]
        if not whole or (len(whole) < len(begin) and begin.startswith(whole)):
            write_file(path, begin)
        else:
            if not whole.startswith(begin):
                raise StudyError(f"{path}:1: its columns are not those of the study: give another folder "
                                 "with --output, or replace it with --overwrite", ExitStatus.USAGE)
            for number, line in enumerate(whole.decode("utf-8", "replace").splitlines()[1:], 2):
                self._take_row(path, number, line)
            if whole != data:
                with open(path, "r+b") as file:
                    file.truncate(len(whole))
                    os.fsync(file.fileno())
        self.file = os.open(path, os.O_WRONLY | os.O_APPEND | os.O_CLOEXEC)

    def _take_row(self, path, number, line):
        fields = next(csv.reader([line]), [])
        if len(fields) != len(self.header):
            raise StudyError(f"{path}:{number}: {len(fields)} fields for {len(self.header)} columns: the file "
                             "was changed; take the line out, or begin anew with --overwrite")
        variant = self.keys.get(tuple(fields[1:1 + len(self.study.parameters)]))
        if variant is not None:
            self.rows[variant] = [str(variant), *fields[1:]]

    def _drop_rows_without_files(self):
        for kept in self.study.kept:
            for number in kept.variants:
                row = self.rows.get(number)
                if row and not row[-1] and not os.path.exists(self.path(kept_name(kept, self.study, number))):
                    del self.rows[number]

    def _line(self, fields):
        text = io.StringIO()
        csv.writer(text, lineterminator="\n").writerow(fields)
        return text.getvalue().encode("utf-8", "replace")

    def row_of(self, outcome):
        variant = self.study.variants[outcome.number - 1]
        values = [number_text(outcome.values.get(each.name)) for each in self.study.measures]
        error = re.sub(r"[\x00-\x1f\x85\u2028\u2029]+", " / ", outcome.error).strip()
        return [str(outcome.number), *self.study.row_key(variant), *values, error]

    def append(self, outcomes):
        """Writes files and rows of some variants, for good. Raises StudyError where it cannot."""
        lines = b""
        for outcome in outcomes:
            for name, data in outcome.files.items():
                try:
                    write_file(self.path(name), data)
                except OSError as error:
                    raise lost(self.path(name), error) from None
            self.rows[outcome.number] = self.row_of(outcome)
            lines += self._line(self.rows[outcome.number])
        end = os.fstat(self.file).st_size
        try:
            while lines:
                lines = lines[os.write(self.file, lines):]
            os.fsync(self.file)
        except OSError as error:
            for outcome in outcomes:
                self.rows.pop(outcome.number, None)
            try:
                os.ftruncate(self.file, end)  # no half a line for whoever reads it now
            except OSError:
                pass  # it is cut off when the study goes on
            raise lost(self.path(ROWS), error) from None

    def sort(self):
        """Puts the rows in the order of their variants."""
        data = self._line(self.header)
        for number in sorted(self.rows):
            data += self._line(self.rows[number])
        try:
            write_file(self.path(ROWS), data)
        except OSError as error:
            raise lost(self.path(ROWS), error) from None

    def failed(self):
        return sum(1 for row in self.rows.values() if row[-1])

    def close(self):
        for each in (self.file, self.lock):
            if each is not None:
                os.close(each)
        self.file = self.lock = None
