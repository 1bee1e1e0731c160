"""Figures of programs that do the same work, side by side."""

import os
import statistics

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RELEASE = os.path.join(ROOT, "build", "release")
OURS = "ours"

#: What all programs have to agree on, by how the metric ends, and to so many parts. That they find
#: as much: here what shows in no pixel's middle is not there.
AGREED = {
    "checksum": 1e-3,
    "_covered_pixels": 2e-3,
    "_covered_x": 1e-3,
    "_covered_y": 1e-3,
    "_found": 3e-2,
}


def note(text):
    print("# " + text, flush=True)


def inTurn(programs, rounds):
    """The programs of all rounds; each round begins with another one."""
    for i in range(rounds):
        first = i % len(programs)
        yield from programs[first:] + programs[:first]


class Figures:
    """Figures of programs, several of each, in the order in which they came first.

    A program is "NAME", or "NAME, WAY" where a library has several ways to do the same.
    """

    def __init__(self):
        self.values = {}  # (workload, n, metric) -> program -> values

    def add(self, key, program, value):
        self.values.setdefault(key, {}).setdefault(program, []).append(value)

    def medians(self, key):
        return {name: statistics.median(each) for name, each in self.values[key].items()}

    def checkAgreement(self):
        """Takes out what all have to agree on, with a line where they don't."""
        for key in list(self.values):
            tolerances = [AGREED[end] for end in AGREED if key[2].endswith(end)]
            if not tolerances:
                continue
            medians = self.medians(key)
            del self.values[key]
            expected = medians.get(OURS)
            for name, value in medians.items():
                if expected and abs(value - expected) > tolerances[0] * abs(expected):
                    note("%s %s: %s has %.9g and not %.9g" % (key[0], key[2], name, value, expected))

    def rows(self):
        """(workload, n, metric, program, median, ratio or None), this project's before others.

        The quickest of several ways is marked as the best one.
        """
        for key in self.values:
            medians = self.medians(key)
            ours = [name for name in medians if name.startswith(OURS)]
            for name in ours:
                yield key + (name, medians[name], None)
            for name, value in medians.items():
                if name in ours:
                    continue
                label = name + self._mark(name, medians)
                if not ours:
                    yield key + (label, value, None)
                for each in ours:
                    pair = label if len(ours) == 1 else "%s to %s" % (each, label)
                    yield key + (pair, value, medians[each] / value if value else None)

    @staticmethod
    def _mark(name, medians):
        library = name.split(", ")[0]
        ways = [value for each, value in medians.items() if each.split(", ")[0] == library]
        return " (best)" if len(ways) > 1 and medians[name] == min(ways) else ""
