#!/usr/bin/env python3
"""Writes docs/performance.md and its charts from what the benchmarks have measured.

Usage: bench/report.py DOCS-FOLDER STAGES.json PEERS.json...
       bench/report.py --right DOCS-FOLDER RIGHT.json

The parts of the comparison may come from several files. What was not measured is left out. With --right only the
section "Fast and right" is replaced, and all else of the document stays as it is.
"""

import json
import math
import os
import re
import statistics
import subprocess
import sys

PLUGIN = "plugin"
LIBRARIES = ["libxml2", "xalan", "pugixml"]
TITLES = {
    "pointer-walk": "pointer walk",
    "plugin": "plug-in",
    "libxml2": "libxml2",
    "xalan": "Xalan-C",
    "pugixml": "pugixml",
    "xerces": "bare scan",
    "plugin-untraced": "plug-in without trace statements",
}
COLOURS = {
    "pointer-walk": "#8c8c8c",
    "xerces": "#8c8c8c",
    "plugin": "#1f6fb4",
    "libxml2": "#d98a1f",
    "xalan": "#b4453a",
    "pugixml": "#4f9a4a",
}
RIGHT_BEGIN = "<!-- fast and right: begin -->"
RIGHT_END = "<!-- fast and right: end -->"
RIGHT_TEXT = """\
A reader is only worth its speed when its answers are right. Each program gets the small documents of
`bench/right/documents.py`: well-formed ones in many encodings, with references, entities, default values and line ends
of all kinds, and malformed ones. A well-formed document is read rightly when the program prints exactly the values that
XML 1.0 (or 1.1, where the document declares it) demands; a malformed one is refused rightly when the program reports an
error and prints no value. The instructions are those of the whole process (callgrind; work inside the system's kernel
is not counted) for one query, `//item[@id='x500']/@name`, on a configuration document of 16 MB.

What xmlvalue gets wrong is listed there as `KNOWN`, with the reasons; the test `right_documents` fails on any other.

xmlvalue keeps elements and attributes only, so every expression asks for attributes. xmllint (`--noent --dtdattr`),
xmlstarlet (`sel`) and pugixml (a small program, default options) keep text as well. pugixml does not claim to read
document types or to check well-formedness in full.
"""


class Measurements:
    """Values by part, row, peer and metric, rows and peers in the order of their measuring."""

    def __init__(self, entries):
        self.values = {(e["part"], e["row"], e["peer"], e["metric"]): e["value"] for e in entries}
        self.order = {}
        for entry in entries:
            self.order.setdefault(entry["part"], [])
            if entry["row"] not in self.order[entry["part"]]:
                self.order[entry["part"]].append(entry["row"])

    def rows(self, part):
        return self.order.get(part, [])

    def get(self, part, row, peer, metric):
        return self.values.get((part, row, peer, metric))

    def ratio(self, part, row, peer, base, metric):
        above = self.get(part, row, peer, metric)
        below = self.get(part, row, base, metric)
        return above / below if above is not None and below else None


def number(value, unit=""):
    if value is None:
        return "–"
    digits = 0 if value >= 100 else 1 if value >= 10 else 2 if value >= 0.1 else 3
    return f"{value:,.{digits}f}{unit}"


def time(nanoseconds):
    if nanoseconds is None:
        return "–"
    for limit, unit in ((1e3, "ns"), (1e6, "µs"), (1e9, "ms")):
        if nanoseconds < limit:
            return number(nanoseconds / limit * 1e3, " " + unit)
    return number(nanoseconds / 1e9, " s")


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" + "---:|" * (len(head) - 1)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines) + "\n"


def code(expression):
    return "`" + expression.replace("|", "\\|") + "`"


def titles(peers):
    return [TITLES[peer] for peer in peers]


def ratio_rows(data, part, peers, base, metric, label=code):
    """Rows of multiples of the base, followed by the base's own time."""
    rows = []
    for row in data.rows(part):
        cells = [number(data.ratio(part, row, peer, base, metric)) for peer in peers]
        rows.append([label(row), *cells, time(data.get(part, row, base, metric))])
    return rows


# --- Targets --------------------------------------------------------------------------------------


def present(values):
    return [value for value in values if value is not None]


def verdict(is_met):
    return "yes" if is_met else "**no**"


class Targets:
    """Rows of the table of targets: what, target, measured, met."""

    def __init__(self, data):
        self.data = data
        self.rows = []

    def at_most(self, what, limit, values, text=None, where=""):
        values = present(values)
        if not values:
            return
        worst = max(values)
        measured = number(min(values)) + " to " + number(worst) if len(values) > 1 else number(worst)
        self.rows.append([what, text or "at most " + number(limit), measured + where, verdict(worst <= limit)])

    def ahead(self, what, part, rows, peer, metric, least=1.0):
        """The peer's time over the plug-in's, row by row."""
        ratios = {row: self.data.ratio(part, row, peer, PLUGIN, metric) for row in rows}
        ratios = {row: ratio for row, ratio in ratios.items() if ratio is not None}
        if not ratios:
            return
        behind = sorted(row for row, ratio in ratios.items() if ratio < least)
        target = f"ahead of {TITLES[peer]}" if least == 1 else f"{number(least)} times ahead of {TITLES[peer]}"
        measured = f"{number(min(ratios.values()))} to {number(max(ratios.values()))} times its speed"
        if behind:
            measured += f"; missed in {len(behind)} of {len(ratios)}"
        self.rows.append([what, target, measured, verdict(not behind)])

    def over(self, part, peer, base, metric):
        return [self.data.ratio(part, row, peer, base, metric) for row in self.data.rows(part)]


def growth_factors(data):
    """Time per element of the largest document divided by that of the smallest, for each query."""
    factors = {}
    for row in data.rows("growth"):
        sizes = sorted((int(peer), value) for (part, r, peer, _), value in data.values.items()
                       if part == "growth" and r == row)
        factors[row] = [value for _, value in sizes], [size for size, _ in sizes]
    return factors


def targets(data):
    rows = Targets(data)
    long_lived, fresh = "cold, long-lived process", "cold, fresh process"
    rows.at_most("cold, long-lived process, over the bare scan", 1.35, rows.over(long_lived, PLUGIN, "xerces", "time"))
    rows.at_most("cold, fresh process, over the bare scan", 1.5, rows.over(fresh, PLUGIN, "xerces", "time"))
    rows.ahead("cold, fresh process", fresh, data.rows(fresh), "libxml2", "time")
    rows.ahead("cold, long-lived process", long_lived, data.rows(long_lived), "xalan", "time", 2)
    rows.ahead("cold, fresh process", fresh, data.rows(fresh), "xalan", "time", 2)
    rows.at_most("1 KB document, over the bare scan", 2, rows.over("small", PLUGIN, "xerces", "time"))
    for row in data.rows("memory"):
        half = data.get("memory", row, "libxml2", "bytes per byte") / 2
        value = data.get("memory", row, PLUGIN, "bytes per byte")
        rows.at_most("memory, bytes per byte of a 16 MB document", half, [value],
                     f"at most half of libxml2's, here {number(half)}")
    for peer in LIBRARIES:
        rows.ahead("warm path queries", "warm", data.rows("warm"), peer, "delivered")
    rows.at_most("warm path queries, over the pointer walk", 4, rows.over("warm", PLUGIN, "pointer-walk", "delivered"))
    rows.ahead("scalar expressions", "scalar", data.rows("scalar"), "libxml2", "delivered")
    rows.at_most("scalar expressions, over pugixml", 2, rows.over("scalar", PLUGIN, "pugixml", "delivered"))
    factors = [values[-1] / values[0] for values, _ in growth_factors(data).values() if len(values) > 1]
    rows.at_most("growth: time per element, 8 times as many elements", 2, factors, "linear: about 1, at most 2")
    rows.at_most("tracing without a sink, instructions", 1.02,
                 rows.over("trace", PLUGIN, "plugin-untraced", "instructions"))
    rows.at_most("tracing without a sink, time", 1.02, rows.over("trace", PLUGIN, "plugin-untraced", "delivered"))
    return table(["what", "target", "measured", "met"], rows.rows).replace("---:", "---")


# --- Charts ---------------------------------------------------------------------------------------


def escape(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


class Chart:
    """A drawing of lines of text, bars and polylines."""

    def __init__(self, width, height):
        self.size = width, height
        self.parts = []

    def text(self, x, y, text, anchor="start", size=12, weight="normal"):
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" '
                          f'font-weight="{weight}">{escape(text)}</text>')

    def rectangle(self, x, y, width, height, colour):
        self.parts.append(f'<rect x="{x:.1f}" y="{y:.1f}" width="{max(width, 1):.1f}" height="{height:.1f}" '
                          f'fill="{colour}"/>')

    def line(self, points, colour, width=1.0):
        places = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.parts.append(f'<polyline points="{places}" fill="none" stroke="{colour}" stroke-width="{width}"/>')

    def save(self, path):
        width, height = self.size
        with open(path, "w", encoding="utf-8") as file:
            file.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
                       f'viewBox="0 0 {width} {height}" font-family="sans-serif" fill="#222">\n'
                       f'<rect width="{width}" height="{height}" fill="#ffffff"/>\n')
            file.write("\n".join(self.parts) + "\n</svg>\n")


def bar_chart(path, title, rows, peers, value_of, axis):
    """Bars on a logarithmic axis, one group per row, with a line at 1."""
    values = present(value_of(row, peer) for row in rows for peer in peers)
    if not values:
        return
    low, high = min([*values, 1.0]) * 0.7, max([*values, 1.0]) * 1.5
    left, width, bar, gap = 310, 520, 13, 14
    top = 74
    height = top + len(rows) * (len(peers) * bar + gap) + 40
    chart = Chart(left + width + 80, height)

    def place(value):
        return left + width * (math.log(value) - math.log(low)) / (math.log(high) - math.log(low))

    chart.text(16, 26, title, size=16, weight="bold")
    x = 16
    for peer in peers:
        chart.rectangle(x, 40, 12, 12, COLOURS[peer])
        chart.text(x + 17, 50, TITLES[peer])
        x += 34 + 8 * len(TITLES[peer])
    for power in range(math.floor(math.log10(low)), math.ceil(math.log10(high)) + 1):
        tick = 10.0 ** power
        if low <= tick <= high:
            chart.line([(place(tick), top - 6), (place(tick), height - 34)], "#333333" if tick == 1 else "#dddddd")
            chart.text(place(tick), height - 20, f"{tick:g}", "middle", 11)
    chart.text(left + width, height - 6, axis, "end", 11)
    y = top
    for row in rows:
        chart.text(left - 8, y + len(peers) * bar / 2 + 4, row, "end")
        for peer in peers:
            value = value_of(row, peer)
            if value is not None:
                begin, end = sorted((place(max(low, min(1.0, high))), place(value)))
                chart.rectangle(begin, y, end - begin, bar - 2, COLOURS[peer])
                chart.text(max(begin, end) + 4, y + bar - 4, number(value), size=10)
            y += bar
        y += gap
    chart.save(path)


def growth_chart(path, data):
    """Time per element against the number of elements, one line per query, relative to the smallest document."""
    factors = growth_factors(data)
    if not factors:
        return
    left, top, width, height = 60, 50, 420, 300
    chart = Chart(left + width + 340, top + height + 60)
    chart.text(16, 26, "Time per element, relative to the smallest document", size=16, weight="bold")
    highest = max([2.0] + [value / values[0] for values, _ in factors.values() for value in values]) * 1.1
    steps = max(len(sizes) for _, sizes in factors.values()) - 1
    for tick in range(int(highest) + 1):
        y = top + height * (1 - tick / highest)
        chart.line([(left, y), (left + width, y)], "#333333" if tick == 1 else "#dddddd")
        chart.text(left - 8, y + 4, str(tick), "end", 11)
    sizes = next(iter(factors.values()))[1]
    for index, size in enumerate(sizes):
        chart.text(left + width * index / steps, top + height + 18, f"{size:,}", "middle", 11)
    chart.text(left + width / 2, top + height + 38, "elements in the document", "middle", 11)
    for index, (row, (values, _)) in enumerate(factors.items()):
        colour = f"hsl({index * 360 / len(factors):.0f},60%,42%)"
        chart.line([(left + width * i / steps, top + height * (1 - value / values[0] / highest))
                    for i, value in enumerate(values)], colour, 1.6)
        chart.rectangle(left + width + 20, top + index * 17, 12, 4, colour)
        chart.text(left + width + 38, top + index * 17 + 7, row, size=11)
    chart.save(path)


def charts(data, folder):
    os.makedirs(folder, exist_ok=True)

    def over(part, base, metric):
        return lambda row, peer: data.ratio(part, row, peer, base, metric)

    bar_chart(os.path.join(folder, "warm.svg"), "Path queries on a document in memory", data.rows("warm"),
              [PLUGIN, *LIBRARIES], over("warm", "pointer-walk", "delivered"),
              "times the hand-written pointer walk (logarithmic)")
    bar_chart(os.path.join(folder, "scalar.svg"), "Scalar expressions", data.rows("scalar"),
              [PLUGIN, *LIBRARIES], lambda row, peer: data.get("scalar", row, peer, "delivered"),
              "nanoseconds (logarithmic)")
    for name, part in (("cold-long-lived.svg", "cold, long-lived process"), ("cold-fresh.svg", "cold, fresh process")):
        bar_chart(os.path.join(folder, name), part[0].upper() + part[1:], data.rows(part), [PLUGIN, *LIBRARIES],
                  over(part, "xerces", "time"), "times the bare scan of the parser library (logarithmic)")
    bar_chart(os.path.join(folder, "memory.svg"), "Memory with a 16 MB document", data.rows("memory"),
              [PLUGIN, *LIBRARIES], lambda row, peer: data.get("memory", row, peer, "bytes per byte"),
              "bytes per byte of the document (logarithmic)")
    growth_chart(os.path.join(folder, "growth.svg"), data)


# --- The document -----------------------------------------------------------------------------------


def output(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def first_match(path, pattern):
    with open(path, encoding="utf-8") as file:
        match = re.search(pattern, file.read(), re.MULTILINE)
    return match.group(1).strip() if match else ""


def machine():
    cores = os.cpu_count()
    model = first_match("/proc/cpuinfo", r"^model name\s*:\s*(.*)$") or "a processor without a name"
    memory = int(first_match("/proc/meminfo", r"^MemTotal:\s*(\d+)")) / 2**20
    system = first_match("/etc/os-release", r'^PRETTY_NAME="(.*)"$')
    versions = ", ".join(
        f"{name} {output('dpkg-query', '-W', '-f=${Version}', package).split('+')[0].split('-')[0]}"
        for name, package in (("g++", "g++-12"), ("Xerces-C", "libxerces-c-dev"), ("libxml2", "libxml2-dev"),
                              ("pugixml", "libpugixml-dev"), ("Xalan-C", "libxalan-c-dev")))
    return (f"A virtual machine with {cores} cores ({model}) and {memory:.0f} GB of memory, {system}; {versions}. "
            "Everything is built in the release configuration of this project, the libraries as Debian has them. "
            f"The system's load was {os.getloadavg()[1]:.1f} over the last five minutes (with 2 both cores are at work).")


def warm_section(data):
    peers = [PLUGIN, *LIBRARIES]
    text = "Multiples of the hand-written pointer walk, and the walk's own time:\n\n"
    head = ["expression", *titles(peers), "pointer walk"]
    text += table(head, ratio_rows(data, "warm", peers, "pointer-walk", "delivered"))
    text += ("\nHow many times faster the plug-in is when both deliver the values; in brackets, against a library that "
             "leaves the values\nof the nodes unread, which saves it the list:\n\n")
    rows = []
    for row in data.rows("warm"):
        cells = [f"{number(data.ratio('warm', row, peer, PLUGIN, 'delivered'))} "
                 f"({number((data.get('warm', row, peer, 'evaluated') or 0) / data.get('warm', row, PLUGIN, 'delivered'))})"
                 for peer in LIBRARIES]
        rows.append([code(row), *cells, time(data.get("warm", row, PLUGIN, "delivered"))])
    return text + table(["expression", *titles(LIBRARIES), "plug-in"], rows)


def cold_section(data, part, metric="time"):
    peers = [PLUGIN, *LIBRARIES]
    return table(["document", *titles(peers), "bare scan"],
                 ratio_rows(data, part, peers, "xerces", metric, lambda row: row))


def simple_section(data, part, metric, base, form, head):
    peers = [peer for peer in ["xerces", PLUGIN, *LIBRARIES]
             if any(data.get(part, row, peer, metric) is not None for row in data.rows(part))]
    rows = []
    for row in data.rows(part):
        cells = []
        for peer in peers:
            ratio = data.ratio(part, row, peer, base, metric)
            cells.append(f"{form(data.get(part, row, peer, metric))} ({number(ratio)})")
        rows.append([code(row) if part == "scalar" else row, *cells])
    return table([head, *titles(peers)], rows)


def growth_section(data):
    factors = growth_factors(data)
    if not factors:
        return ""
    sizes = next(iter(factors.values()))[1]
    rows = [[row.split(": ")[0] + ": " + code(row.split(": ", 1)[1]), number(values[-1] / values[0]),
             *[number(value, " ns") for value in values]] for row, (values, _) in factors.items()]
    return table(["document and expression", "largest over smallest", *[f"{size:,}" for size in sizes]], rows)


def trace_section(data):
    rows = []
    for row in data.rows("trace"):
        cells = []
        for metric in ("instructions", "delivered"):
            ratio = data.ratio("trace", row, PLUGIN, "plugin-untraced", metric)
            cells.append("–" if ratio is None else f"{(ratio - 1) * 100:+.1f} %")
        rows.append([code(row), *cells, time(data.get("trace", row, PLUGIN, "delivered"))])
    return table(["expression", "instructions", "time", "with trace statements"], rows)


def right_section(data):
    """How many documents each program reads or refuses rightly, and what reading costs it."""
    part, row = "right", "documents"
    base = data.get(part, row, "xmlvalue", "instructions")
    lines = []
    for peer in ("xmlvalue", "xmllint", "xmlstarlet", "pugixml"):
        value = {metric: data.get(part, row, peer, metric)
                 for metric in ("read", "good", "refused", "malformed", "instructions", "bytes")}
        if value["read"] is None:
            continue
        cells = [f"{value['read']} of {value['good']}", f"{value['refused']} of {value['malformed']}"]
        if value["instructions"] is None or base is None:
            cells += ["–"] * 3
        else:
            cells += [number(value["instructions"] / 1e6, " million"), number(value["instructions"] / value["bytes"]),
                      number(value["instructions"] / base)]
        lines.append([peer, *cells])
    if not lines:
        return ""
    return table(["program", "read rightly", "refused rightly", "instructions", "per byte", "over xmlvalue"], lines)


def right_text(data):
    """The section between its marks, or nothing where nothing was measured."""
    rows = right_section(data)
    if not rows:
        return ""
    return (RIGHT_BEGIN + "\n## Fast and right\n\n" + RIGHT_TEXT + "\n" + rows + RIGHT_END + "\n")


def stage_section(stages):
    rows = []
    for entry in stages:
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[entry["time_unit"]]
        rate = "–"
        if "bytes_per_second" in entry:
            rate = number(entry["bytes_per_second"] / 2**20, " MB/s")
        elif "items_per_second" in entry:
            rate = number(1e9 / entry["items_per_second"], " ns per element")
        rows.append([entry["name"].split("/iterations")[0], time(entry["cpu_time"] * scale), rate])
    return table(["stage", "time", "rate"], rows)


def document(data, stages, notes):
    sections = [
        "# Performance\n\nThe speed of the plug-in, compared with the libraries that could be used instead. `make bench` writes this file from\nits measurements; only the text after the targets is written by hand (`bench/notes.md`).\n",
        "## Targets\n\n" + targets(data),
        notes,
        "## Path queries on a document in memory\n\n![chart](performance/warm.svg)\n\n" + warm_section(data),
        "## Scalar expressions\n\nEach run compiles the expression and delivers the result as text. The multiple of pugixml is in brackets.\n\n"
        "![chart](performance/scalar.svg)\n\n" + simple_section(data, "scalar", "delivered", "pugixml", time, "expression"),
        "## Cold: load, one query, free\n\n### In a long-lived process\n\nMultiples of the bare scan, with the parser library "
        "held open.\n\n![chart](performance/cold-long-lived.svg)\n\n" + cold_section(data, "cold, long-lived process"),
        "### In a fresh process\n\nFrom the moment when the libraries are loaded until the document is freed, including initialisation and the "
        "first use of all memory.\n\n![chart](performance/cold-fresh.svg)\n\n" + cold_section(data, "cold, fresh process"),
        "The whole process, including the loading of the libraries by the system's linker:\n\n"
        + cold_section(data, "cold, fresh process", "with loading"),
        "### Small documents\n\nDocuments of 1 KB, from the second one in a process on; in brackets, the multiple of the "
        "bare scan.\n\n" + simple_section(data, "small", "time", "xerces", time, "document"),
        "## Memory\n\nGrowth of the peak of the resident memory, in bytes per byte of the document; in brackets, the multiple of "
        "libxml2's.\n\n![chart](performance/memory.svg)\n\n"
        + simple_section(data, "memory", "bytes per byte", "libxml2", number, "document"),
        "## Growth\n\nTime per element of the document, while the document grows eightfold.\n\n"
        "![chart](performance/growth.svg)\n\n" + growth_section(data),
        "## Tracing\n\nWhat the trace statements add while nobody listens, compared with a build without them: instructions counted "
        "by callgrind, and\nprocessor time (which varies by a few per cent).\n\n" + trace_section(data),
        right_text(data),
        "## Stages\n\nGoogle Benchmark on the engine itself, processor time.\n\n" + stage_section(stages),
        "## The machine\n\n" + machine() + "\n",
        "## How it is measured, and how to repeat it\n\n"
        "```sh\nmake bench\n```\n\n"
        "Each measurement of the comparison runs in a process of its own, and the peers take turns. The values are medians of\n"
        "several runs. All times are processor time of the process, including system calls. Documents are generated from a\n"
        "fixed seed, and the answers of all peers are compared before anything is timed. \"Delivered\" is what a host does: it\n"
        "creates and compiles an expression, evaluates it, and puts its values into a list of wide texts. The other libraries\n"
        "deliver into such a list too. The bare scan is the parser library reading the document with a handler that does\n"
        "nothing. The pointer walk is a hand-written loop per expression over the tree that the plug-in builds. Both are lower\n"
        "bounds. `bench/README.md` says how to measure a part.\n",
    ]
    return "\n".join(section for section in sections if section)


def measurements(files):
    entries = []
    for name in files:
        with open(name, encoding="utf-8") as file:
            entries += json.load(file)
    return Measurements(entries)


def replace_right(docs, files):
    """Writes the section anew in its place; without one, before the stages."""
    path = os.path.join(docs, "performance.md")
    with open(path, encoding="utf-8") as file:
        text = file.read()
    section = right_text(measurements(files))
    if not section:
        sys.exit("report.py: nothing was measured for the section")
    if RIGHT_BEGIN in text:
        before, rest = text.split(RIGHT_BEGIN, 1)
        text = before + section + rest.split(RIGHT_END + "\n", 1)[1]
    else:
        before, after = text.split("## Stages\n", 1)
        text = before + section + "\n## Stages\n" + after
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def main(arguments):
    if arguments and arguments[0] == "--right":
        replace_right(arguments[1], arguments[2:])
        return
    docs, stages_file, *peers_files = arguments
    data = measurements(peers_files)
    with open(stages_file, encoding="utf-8") as file:
        stages = json.load(file)["benchmarks"]
    notes_file = os.path.join(os.path.dirname(os.path.abspath(__file__)), "notes.md")
    notes = ""
    if os.path.exists(notes_file):
        with open(notes_file, encoding="utf-8") as file:
            notes = file.read()
    charts(data, os.path.join(docs, "performance"))
    with open(os.path.join(docs, "performance.md"), "w", encoding="utf-8") as file:
        file.write(document(data, stages, notes))


if __name__ == "__main__":
    main(sys.argv[1:])
