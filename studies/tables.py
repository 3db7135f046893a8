"""Reads a table of a study strictly: every key is known, of its kind and within its range."""
from .errors import StudyError, did_you_mean


class Table:
    """A table of the study's file, with its place for errors. What was asked for is remembered."""

    def __init__(self, data, file, place):
        self.data = data
        self.file = file
        self.place = place
        self.asked = set()

    def refuse(self, key, reason):
        """Raises StudyError for a key of this table; an empty one means the table itself."""
        where = f"{self.place} {key}" if self.place and key else self.place or key
        raise StudyError(f"{self.file}: {where}: {reason}" if where else f"{self.file}: {reason}")

    def keys(self):
        self.asked.update(self.data)
        return list(self.data)

    def finish(self):
        """Refuses what nobody asked for."""
        for key in self.data:
            if key not in self.asked:
                self.refuse(key, f"nothing of this name is known here{did_you_mean(key, self.asked)}")

    def _get(self, key, default, kinds, words):
        self.asked.add(key)
        if key not in self.data:
            if default is None:
                self.refuse(key, f"it is missing: give {words}")
            return default
        value = self.data[key]
        if not isinstance(value, kinds) or (isinstance(value, bool) and bool not in kinds):
            self.refuse(key, f"it is {words}, not {value!r}")
        return value

    def text(self, key, default=None):
        return self._get(key, default, (str,), "a text in quotes")

    def number(self, key, default=None):
        value = self._get(key, default, (int, float), "a number")
        if value != value or value in (float("inf"), float("-inf")):
            self.refuse(key, "it is a number without an end")
        return value

    def whole(self, key, least, most, default=None):
        value = self._get(key, default, (int,), f"a whole number from {least} to {most}")
        if value != default and not least <= value <= most:
            self.refuse(key, f"it is a whole number from {least} to {most}, not {value}")
        return value

    def flag(self, key, default=False):
        return self._get(key, default, (bool,), "true or false")

    def list(self, key, default=None):
        return self._get(key, default, (list,), "a list in [ ]")

    def choice(self, key, known, default):
        value = self.text(key, default)
        if value not in known:
            self.refuse(key, f"{value!r} is none of " + ", ".join(known))
        return value

    def place_list(self, key, count):
        """A list of `count` numbers."""
        value = self.list(key)
        numbers = [each for each in value if isinstance(each, (int, float)) and each is not True]
        if len(numbers) != count or len(value) != count:
            self.refuse(key, f"it is a list of {count} numbers, not {value!r}")
        return tuple(float(each) for each in value)

    def table(self, key):
        value = self._get(key, {}, (dict,), "a table")
        return Table(value, self.file, f"[{self.place.strip('[]')}.{key}]" if self.place else f"[{key}]")

    def tables(self, key):
        """The tables of a [[key]]."""
        value = self._get(key, [], (list,), f"tables, each begun by [[{key}]]")
        for each in value:
            if not isinstance(each, dict):
                self.refuse(key, f"it is written as tables, each begun by [[{key}]]")
        return [Table(each, self.file, f"[[{key}]] number {n}") for n, each in enumerate(value, 1)]
