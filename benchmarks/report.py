#!/usr/bin/env python3
"""Writes docs/performance.md and its pictures from what the benchmarks have measured.

usage: report.py RESULTS.json FOLDER
"""

import json
import os
import sys
import textwrap

from goals import WALKS, goals
from plots import bars, lines
from results import (
    MEMORY,
    OURS,
    PEER,
    PEER_AS_IT_COMES,
    SIZES,
    SQL,
    Results,
    factor_text,
    quotient,
    rounded,
    size_text,
    time_text,
)

# Who does an operation, in the order of tables and pictures.
WHO = ((OURS, "Tessera"), (SQL, "SQL"), (MEMORY, "memory pass"), (PEER, "peer"))
NAMES = tuple(name for _, name in WHO)
PEER_PACKAGE = "Debian's `libedata-book1.2-dev`"


def table(header, rows):
    yield "| " + " | ".join(header) + " |"
    yield "|" + "---|" * len(header)
    for row in rows:
        yield "| " + " | ".join(row) + " |"


def wrapped(text, **indents):
    text = " ".join(text.split())
    return textwrap.wrap(text, 120, break_long_words=False, break_on_hyphens=False, **indents)


def bullet(text):
    return wrapped(text, initial_indent="- ", subsequent_indent="  ")


def paragraph(text):
    return wrapped(text) + [""]


# Which operations stand in which table, and what they are called there.

LOOK_UPS = (
    ("identify_hit", "identify somebody"),
    ("identify_miss", "identify nobody"),
    ("identify_short", "identify a short number that many contain"),
    ("identify_contacts_only", "identify among contacts without extension rows"),
    ("identify_after_change", "identify after another process's change"),
    ("name_part", "names by a part"),
    ("name_common_part", "names by a part that many have"),
    ("name_initials", "names by initial consonants"),
    ("name_prefix", "names by their beginning"),
    ("group", "members of a group"),
    ("call_list", "list the call history"),
    ("speed_dial_fill", "fill the speed-dial cache"),
)
FIRST = (
    ("open", "open and close"),
    ("identify_cold", "identify somebody"),
    ("name_part_cold", "names by a part"),
    ("name_prefix_cold", "names by their beginning"),
    ("group_cold", "members of a group"),
    ("process", "a process that identifies somebody (processor time)"),
)
WRITES = (
    ("insert", "insert a record"),
    ("update", "update a record"),
    ("delete", "delete a record"),
    ("delete_all", "delete all"),
    ("speed_dial_set", "set a speed-dial slot"),
    ("speed_dial_flush", "flush the speed-dial cache, 99 slots"),
    ("call_log", "log a call"),
    ("import", "import"),
)
MESSAGES = (
    ("message", "from another process's call to the message"),
    ("message_normal_durability", "the same with normal durability"),
    ("message_drain", "take one of 10,000 waiting messages"),
    ("message_follow", "follow one new contact with categories"),
    ("message_follow_normal_durability", "the same with normal durability"),
)


def comparison(results, operations):
    """Ours beside whoever else was measured."""
    others = [
        (who, title)
        for who, title in WHO[1:]
        if any(results.get(op, who, size) for op, _ in operations for size in (*SIZES, None))
    ]
    header = ["operation", "contacts", "ours", "99 %"]
    for _, title in others:
        header += [title, "ours to it"]
    rows = []
    for operation, title in operations:
        for size in results.sizes(operation) or [None]:
            if all(results.get(operation, who, size) is None for who, _ in WHO):
                continue
            ours = results.get(operation, OURS, size)
            row = [title, "" if size is None else size_text(size), time_text(ours)]
            row.append(time_text(results.get(operation, OURS, size, "p99")))
            for who, _ in others:
                other = results.get(operation, who, size)
                row += [time_text(other), factor_text(quotient(ours, other))]
            rows.append(row)
    return table(header, rows)


def walks(results):
    header = ["table"] + [f"{size_text(size)} rows" for size in SIZES[:3]]
    rows = [[what] + [time_text(results.get(op, OURS, size)) for size in SIZES[:3]] for op, what in WALKS]
    return table(header, rows)


def memory(results):
    def bytes_text(value):
        return "–" if value is None else f"{value:.0f} bytes"

    header = ["contacts", "ours, a contact", "names and numbers alone, packed"]
    rows = [
        [size_text(size)]
        + [bytes_text(results.get("memory", who, size, "bytes_per_contact")) for who in (OURS, MEMORY)]
        for size in SIZES
    ]
    return table(header, rows)


# Pictures

PANELS = (
    ("identify_hit", "identify somebody"),
    ("identify_miss", "identify nobody"),
    ("name_part", "names by a part"),
    ("name_initials", "names by initials"),
    ("name_prefix", "names by their beginning"),
    ("group", "members of a group"),
)
# Those of one record; the others would need an axis of their own.
BARS = tuple((op, title) for op, title in WRITES if op not in ("import", "delete_all", "speed_dial_flush"))


def whole_time_text(nanoseconds):
    """Of a power of ten, without a fraction."""
    number, unit = time_text(nanoseconds).split()
    return f"{number.split('.')[0]} {unit}"


def look_ups_picture(results):
    panels = []
    for operation, title in PANELS:
        series = {
            name: [(size, results.get(operation, who, size)) for size in SIZES if results.get(operation, who, size)]
            for who, name in WHO
        }
        panels.append((title, series))
    return lines("Look-ups by the number of contacts (median)", NAMES, panels, whole_time_text)


def writes_picture(results, size):
    groups = [
        (title, {name: results.get(op, who, size) for who, name in WHO if results.get(op, who, size)})
        for op, title in BARS
    ]
    return bars(f"Writes among {size_text(size)} contacts, fully durable (median)", NAMES, groups, time_text)


# The document


def machine(context):
    processor = context.get("processor") or "a processor that does not say its name"
    load = context.get("load_avg") or []
    peer = f"{PEER_PACKAGE} {context['peer']}" if context.get("peer") else "none was installed"
    # In every repetition the date is the beginning of the run.
    return [
        ["Date", context["date"][:10]],
        ["Processor", f"{processor}, {context['num_cpus']} cores"],
        ["System", context.get("system", "–")],
        ["File system of the stores", context.get("file_system") or "unknown"],
        ["Load when it began", ", ".join(f"{value:.2f}" for value in load) or "–"],
        ["Tessera", context.get("tessera", "–")],
        ["Compiler", context.get("compiler", "–")],
        ["SQLite", context.get("sqlite", "–")],
        ["ICU", context.get("icu", "–")],
        ["Peer", peer],
    ]


def times_text(count):
    return {1: "once", 2: "twice"}.get(count, f"{count} times")


def peer_note(results):
    size = 65_000
    indexed, as_it_comes = (results.get("identify_hit", who, size) for who in (PEER, PEER_AS_IT_COMES))
    if indexed is None or as_it_comes is None:
        return ""
    ours = results.get("identify_hit", OURS, size)
    return f"""How fast the peer finds a number depends on how it was set up. Goals and tables take it with an index on
        the numbers ({time_text(indexed)} at 65,000). As it comes, without one, it takes {time_text(as_it_comes)},
        {factor_text(quotient(as_it_comes, ours))} what ours takes."""


def document(results):
    every = list(goals(results))
    met = [goal.verdict() for goal in every]
    yield "# Performance"
    yield ""
    yield from paragraph(
        """What the phone book's operations cost, beside what the same work costs at least and beside a peer, all
        measured in one run on one machine. Ratios are what to look at: times are the machine's. This page is written by
        `script/bench`, prose and all, from what it has measured."""
    )
    yield from table(["", ""], machine(results.context))
    yield ""
    yield "## How it is measured"
    yield ""
    yield from paragraph(
        f"""Each figure is the median of an operation's times, "99 %" their 99th percentile (of fewer than a hundred,
        the longest). Every measurement is made {times_text(results.repetitions)}, and of its figures the median is
        given; importing a million, and the peer's imports, are done once. Where a record, a slot or a call is written,
        the phone book and the SQL beside it take turns, so that both meet the same disk."""
    )
    yield from paragraph(
        """The phone books hold the same people each time, Korean and Latin names in turn, each with a mobile number of
        its own, every third with a home number, a group and an extension row. A million people have contacts only, no
        extension rows: there a record written is a contact and its numbers. The stores are on a disk and fully durable:
        what is written has reached the disk when the call returns. Where the temporary folder is in memory the
        benchmarks refuse to run."""
    )
    yield from bullet(
        """**SQL** is the floor of what is stored: hand-written, prepared SQLite statements on tables of the same rows
        (contact, extension row where there is one) and indexes (name, reduced number, the extension row's contact),
        with the same log, durability and cache, and the same fields fetched. Its names are sorted by code points, which
        is cheaper than by a language's rules, and it keeps no log of changes for others to follow."""
    )
    yield from bullet(
        """**Memory pass** is the floor of a search: one pass over all numbers, or names, or initial consonants, packed
        behind one another, that counts where the key stands."""
    )
    yield from bullet(
        f"""**Peer** is {PEER_PACKAGE}, in process, with a summary of names and numbers that are both indexed. It
        fetches whole cards by a number, and for names only who has them. It is as durable as it is of itself. It has no
        initials; these are compared with its search for a part of a name."""
    )
    yield ""
    if note := peer_note(results):
        yield from paragraph(note)
    yield "## Goals"
    yield ""
    yield from paragraph(f"{met.count('met')} of {len(met)} are met.")
    yield from table(["operation", "goal", "figures", "ratio", ""], [goal.row() for goal in every])
    yield ""
    yield from paragraph("""Where the goal is a limit and not a comparison, the ratio is of the figure to the limit.""")
    yield "## Look-ups"
    yield ""
    yield "![Look-ups by the number of contacts](performance/look-ups.svg)"
    yield ""
    yield from comparison(results, LOOK_UPS)
    yield ""
    yield from paragraph(
        """Somebody's look-up is of another person each time. A short number is one that nobody has, but that stands
        within many numbers. The change by another process is another contact's new number, committed just before."""
    )
    yield "## The first look-up"
    yield ""
    yield from comparison(results, FIRST)
    yield ""
    yield from paragraph(
        """As above, in a program that has just opened the store: nothing is in its memory yet, though the file is in
        the system's. The first search by name reads all contacts."""
    )
    yield "## Writes"
    yield ""
    yield "![Writes](performance/writes.svg)"
    yield ""
    yield from comparison(results, WRITES)
    yield ""
    yield from paragraph(
        """An inserted or deleted record is a contact with two numbers and its extension row; an updated one gets
        another number. A slot that is set writes its own row, the contact and the contact's extension row. A call that
        is logged takes the oldest one's place, and gets its name from the phone book. An import is into a phone book
        that is in use; its records are a contact, its numbers, and of every third an extension row."""
    )
    yield "## Messages"
    yield ""
    yield from comparison(results, MESSAGES)
    yield ""
    since = results.get("message", OURS, None, "us_since_commit")
    if since is not None:
        when = "after the writer's call has returned" if since >= 0 else "before the writer's call returns"
        yield from paragraph(
            f"""From the call includes the commit and its way to the disk. Half of the messages are there
            {rounded(abs(since))} µs {when}, or earlier. The floor is another process that commits the same in SQL and
            then says so by a pipe."""
        )
    yield "## Walking a table by position"
    yield ""
    yield from paragraph("The time of one row, all rows being read in order.")
    yield from walks(results)
    yield ""
    yield "## Memory"
    yield ""
    yield from paragraph(
        """What a program that has just opened a store allocates more when it searches its contacts for the first time,
        and keeps: by the allocator's own account (`mallinfo2`), less what SQLite says it holds (`sqlite3_memory_used`),
        which its page cache of at most 16 MiB is part of. Each is measured in a process of its own."""
    )
    yield from memory(results)
    yield ""
    yield "## To repeat it"
    yield ""
    yield "```sh"
    yield "script/bench                                     # all of it, and this page; TMPDIR names the disk"
    yield "script/bench --benchmark_filter=identify_hit     # some of it"
    yield "```"
    yield ""
    yield from paragraph(
        f"""It takes some eight minutes on two cores; other work on the machine spoils it. The peer takes part where
        {PEER_PACKAGE} is installed."""
    )


def write(path, text):
    with open(path, "w", encoding="utf-8") as out:
        out.write(text)


def main(arguments):
    if len(arguments) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    with open(arguments[0], encoding="utf-8") as source:
        results = Results(json.load(source))
    pictures = os.path.join(arguments[1], "performance")
    os.makedirs(pictures, exist_ok=True)
    write(os.path.join(pictures, "look-ups.svg"), look_ups_picture(results))
    write(os.path.join(pictures, "writes.svg"), writes_picture(results, 65_000))
    write(os.path.join(arguments[1], "performance.md"), "\n".join(document(results)).rstrip() + "\n")
    for failure in results.failures:
        print(f"report.py: {failure}", file=sys.stderr)
    return 1 if results.failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
