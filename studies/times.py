"""How long steps take, as far as it is known, and what that makes of those that are left."""
import json

UNKNOWN_STEP = 0.01


class Times:
    """Seconds by step number, and what a variant takes beside its steps."""

    def __init__(self):
        self.steps = {}  # number to [seconds, count]
        self.rest = [0.0, 0]

    def add_steps(self, steps):
        for number, seconds in steps:
            entry = self.steps.setdefault(number, [0.0, 0])
            entry[0] += seconds or 0.0
            entry[1] += 1

    def add_outcome(self, outcome):
        self.add_steps(outcome.steps)
        self.rest[0] += max(0.0, outcome.seconds - sum(seconds or 0.0 for _, seconds in outcome.steps))
        self.rest[1] += 1

    def step(self, number):
        """The mean of a step, or of all where it never ran."""
        if number in self.steps:
            seconds, count = self.steps[number]
            return seconds / count
        count = sum(count for _, count in self.steps.values())
        return sum(seconds for seconds, _ in self.steps.values()) / count if count else UNKNOWN_STEP

    def variant(self):
        """What a variant takes beside its steps."""
        return self.rest[0] / self.rest[1] if self.rest[1] else 0.0

    def of(self, counts, variants):
        """Seconds of one core for so many steps of each number and so many variants."""
        return sum(self.step(number) * count for number, count in counts.items()) + self.variant() * variants

    def to_bytes(self):
        return json.dumps({"steps": self.steps, "variants": self.rest}).encode()

    @staticmethod
    def read(path):
        """Earlier ones, or none."""
        times = Times()
        try:
            with open(path, encoding="utf-8") as file:
                found = json.load(file)
            times.steps = {int(number): [float(entry[0]), int(entry[1])]
                           for number, entry in found["steps"].items() if int(entry[1]) > 0}
            times.rest = [float(found["variants"][0]), int(found["variants"][1])]
        except (OSError, ValueError, KeyError, TypeError, IndexError, AttributeError):
            return Times()
        return times
