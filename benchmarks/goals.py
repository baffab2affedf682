"""What the phone book is to reach, judged by what was measured."""

from results import MEMORY, OURS, PEER, PEER_AS_IT_COMES, SIZES, SQL, factor_text, quotient, size_text, time_text


class Goal:
    """Something to be reached: figures, each with its limit."""

    def __init__(self, what, limit):
        self.what = what
        self.limit = limit
        self.figures = []
        self.ratios = []
        self.verdicts = []

    def _add(self, figure, ratio, met):
        self.figures.append(figure)
        self.ratios.append(ratio)
        self.verdicts.append(met)
        return self

    def at_most(self, times, ours, other, where=""):
        """`ours` is at most so many times the other."""
        factor = quotient(ours, other)
        figures = f"{where}{time_text(ours)} to {time_text(other)}"
        return self._add(figures, factor_text(factor), None if factor is None else factor <= times)

    def faster(self, times, ours, other, where=""):
        """The other takes at least so many times as long."""
        factor = quotient(other, ours)
        figures = f"{where}{time_text(ours)} to {time_text(other)}"
        return self._add(figures, factor_text(factor), None if factor is None else factor >= times)

    def aside(self, ours, other, where):
        """How many times as long the other takes, which plays no part in the verdict."""
        self.figures.append(f"{where}{time_text(ours)} to {time_text(other)}")
        self.ratios.append(factor_text(quotient(other, ours)))

    def below(self, limit, value, text, where=""):
        met = None if value is None else value < limit
        return self._add(where + ("–" if value is None else text), factor_text(quotient(value, limit)), met)

    def row(self):
        return [self.what, self.limit, "<br>".join(self.figures), "<br>".join(self.ratios), self.verdict()]

    def verdict(self):
        if False in self.verdicts:
            return "**missed**"
        return "not measured" if None in self.verdicts else "met"


WALKS = (
    ("walk_contacts", "contacts"),
    ("walk_extension", "extension rows"),
    ("walk_speed_dial", "speed dial"),
    ("walk_groups", "groups"),
    ("walk_calls", "calls"),
)


def goals(results):
    get = results.get
    full = 65_000
    hit = get("identify_hit", OURS, full)

    exact = Goal("identify somebody, 65,000", "500 times faster than the peer's exact match").faster(
        500, hit, get("identify_hit", PEER, full), "indexed: "
    )
    exact.aside(hit, get("identify_hit", PEER_AS_IT_COMES, full), "as it comes, not judged: ")
    yield exact
    yield Goal("identify somebody, 65,000", "at most 2 times an indexed SQL look-up of the same fields").at_most(
        2, hit, get("identify_hit", SQL, full)
    )
    yield Goal("identify nobody, 65,000", "at most 3 times one pass over the packed numbers").at_most(
        3, get("identify_miss", OURS, full), get("identify_miss", MEMORY, full)
    )
    yield Goal("identify somebody, 1,000,000", "at most 3 times its own cost at 10,000").at_most(
        3, get("identify_contacts_only", OURS, 1_000_000), get("identify_contacts_only", OURS, 10_000)
    )
    names = Goal("names by a part, and by initials, 65,000", "100 times faster than the peer's search for a part")
    for operation, what in (("name_part", "part: "), ("name_initials", "initials: ")):
        names.faster(100, get(operation, OURS, full), get("name_part", PEER, full), what)
    yield names
    insert = Goal("insert a whole record", "at most 1.3 times one SQL transaction of the same rows and indexes")
    for size in SIZES[:3]:
        insert.at_most(1.3, get("insert", OURS, size), get("insert", SQL, size), f"{size_text(size)}: ")
    yield insert
    yield Goal("import, 65,000 lines", "at most 1.5 times SQL inserts in transactions of the same size").at_most(
        1.5, get("import", OURS, full), get("import", SQL, full)
    )
    yield Goal(
        "the first identification after another process's change, 65,000", "at most 1.2 times a warm one"
    ).at_most(1.2, get("identify_after_change", OURS, full), hit)
    process = Goal("open, identify and close as a process", "under 8 ms of processor time at 10,000, 25 ms at 65,000")
    for size, limit in ((10_000, 8e6), (full, 25e6)):
        value = get("process", OURS, size)
        process.below(limit, value, time_text(value), f"{size_text(size)}: ")
    yield process
    memory = Goal("memory", "under 200 bytes a contact beyond SQLite's own")
    for size in SIZES:
        value = get("memory", OURS, size, "bytes_per_contact")
        memory.below(200, value, f"{value or 0:.0f} bytes", f"{size_text(size)}: ")
    yield memory
    walk = Goal("walking a table by position", "a row at 65,000 takes at most 2 times what it takes at 1,000")
    for operation, what in WALKS:
        walk.at_most(2, get(operation, OURS, full), get(operation, OURS, 1_000), f"{what}: ")
    yield walk
