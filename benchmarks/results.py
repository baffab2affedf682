"""What a run of the benchmarks has measured, and how its figures are written."""

import math
import statistics

OURS, SQL, MEMORY, PEER, PEER_AS_IT_COMES = "ours", "sql", "memory", "peer", "peer_as_it_comes"
SIZES = (1_000, 10_000, 65_000, 1_000_000)


class Results:
    """The medians of a run's repetitions."""

    def __init__(self, run):
        self.context = run["context"]
        self.failures = []
        self.repetitions = 1
        self._values = {}
        for entry in run["benchmarks"]:
            if entry.get("run_type") != "iteration":
                continue
            if entry.get("error_occurred"):
                self.failures.append(f"{entry['name']}: {entry.get('error_message', 'failed')}")
                continue
            operation, who, size = self._parts(entry["name"])
            self.repetitions = max(self.repetitions, entry.get("repetitions", 1))
            for counter in ("p50", "p99", "bytes_per_contact", "us_since_commit"):
                self._add(entry, counter, (operation, who, size, counter))
                # The floor's, where it took turns with the phone book.
                self._add(entry, f"{SQL}_{counter}", (operation, SQL, size, counter))

    def _add(self, entry, counter, key):
        if counter in entry:
            self._values.setdefault(key, []).append(entry[counter])

    @staticmethod
    def _parts(name):
        """An operation, who does it, and on how many contacts (None where that plays no part)."""
        operation, who, *rest = name.split("/")
        return operation, who, next((int(part) for part in rest if part.isdigit()), None)

    def get(self, operation, who, size=None, counter="p50"):
        """None when it was not measured."""
        values = self._values.get((operation, who, size, counter))
        return None if values is None else statistics.median(values)

    def sizes(self, operation):
        return sorted({size for op, _, size, _ in self._values if op == operation and size is not None})


def rounded(value):
    """Three significant digits."""
    if value == 0:
        return "0"
    digits = max(0, 2 - math.floor(math.log10(abs(value))))
    return f"{value:,.{digits}f}"


def time_text(nanoseconds):
    if nanoseconds is None:
        return "–"
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{rounded(nanoseconds / size)} {unit}"
    return f"{rounded(nanoseconds)} ns"


def quotient(left, right):
    return None if left is None or right is None or right == 0 else left / right


def factor_text(factor):
    return "–" if factor is None else f"{rounded(factor)}×"


def size_text(size):
    return f"{size:,}"
