#!/usr/bin/env python3
"""Compares how rightly and at what cost xmlvalue, xmllint, xmlstarlet and pugixml read documents.

Each program reads the documents of documents.py with the options that make it answer with values. A document is read
rightly when the program prints exactly the values that the language demands and succeeds, and refused rightly when the
program reports an error and prints no value. The cost is the number of instructions of the whole process, counted by
valgrind's callgrind, for one query on a configuration document.
"""

import argparse
import json
import os
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # nothing is left in the source tree
import documents

SECONDS = 20  # for one small document
MARK = "[end]"  # after each value of xmlstarlet; occurs in no document
QUERY = "//item[@id='x500']/@name"


class Program:
    """One reader: its command, and how its output becomes values."""

    def __init__(self, name, command, values, refusals=None):
        self.name = name
        self.command = command  # expression, file -> list of arguments
        self.values = values  # bytes of standard output -> list of texts
        self.refusals = refusals  # statuses that report an error; None is every status but 0

    def answer(self, expression, path):
        """The values, or None for a refusal. What is neither comes back as a text that says what happened."""
        try:
            done = subprocess.run(self.command(expression, path), capture_output=True, timeout=SECONDS, check=False)
        except subprocess.TimeoutExpired:
            return f"no answer after {SECONDS} s"
        try:
            values = self.values(done.stdout)
        except ValueError:
            return "output that is not UTF-8"
        if done.returncode == 0:
            return values
        is_refusal = done.returncode > 0 and (self.refusals is None or done.returncode in self.refusals)
        return None if is_refusal and not values else f"status {done.returncode} with {len(values)} values"


def between_nulls(output):
    return output.decode("utf-8").split("\0")[:-1]


def between_marks(output):
    return output.decode("utf-8").split(MARK)[:-1]


def serialised(output):
    """xmllint prints attributes as in a start tag."""
    return [unescaped(value) for value in re.findall(r'[^\s="]+="([^"]*)"', output.decode("utf-8"))]


def unescaped(value):
    """Not html.unescape, which follows the rules of HTML: it drops or replaces some characters."""
    named = {"lt": "<", "gt": ">", "amp": "&", "quot": '"'}
    return re.sub(r"&(?:#x([0-9A-Fa-f]+)|#([0-9]+)|(\w+));", lambda match: named[match[3]] if match[3] else
                  chr(int(match[1], 16) if match[1] else int(match[2])), value)


def programs(folder):
    tool, pugixml = (os.path.join(folder, name) for name in ("xmlvalue", "pugixml_read"))
    xmllint = ["xmllint", "--nonet", "--noent", "--dtdattr", "--xpath"]
    xmlstarlet = ["xmlstarlet", "sel", "-T", "-t", "-m"]
    return [
        Program("xmlvalue", lambda expression, path: [tool, "-0", expression, path], between_nulls, {2}),
        Program("xmllint", lambda expression, path: [*xmllint, expression, path], serialised),
        Program("xmlstarlet", lambda expression, path: [*xmlstarlet, expression, "-v", ".", "-o", MARK, path],
                between_marks),
        Program("pugixml", lambda expression, path: [pugixml, expression, path], between_nulls, {2}),
    ]


def rows():
    """Name, bytes, expression and values of each document; values are None where it is malformed."""
    for name, document, expression, values in documents.GOOD:
        yield name, documents.content(document), expression, values
    for name, document in documents.MALFORMED:
        yield name, documents.content(document), documents.A, None


def failures(program, folder):
    """What the program gets wrong: name of the document -> what happened."""
    wrong = {}
    for name, content, expression, values in rows():
        path = os.path.join(folder, name + ".xml")
        with open(path, "wb") as file:
            file.write(content)
        answer = program.answer(expression, path)
        if answer != values:
            wrong[name] = "refused" if answer is None else answer if isinstance(answer, str) else shortened(answer)
    return wrong


def shortened(values):
    text = ascii(values)
    return text if len(text) <= 70 else text[:70] + "..."


def instructions(program, path, folder):
    """Instructions of the process that answers QUERY, and its values."""
    counts = os.path.join(folder, "callgrind.out")
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=" + counts, "--quiet",
               *program.command(QUERY, path)]
    done = subprocess.run(command, capture_output=True, check=True)
    with open(counts, encoding="utf-8") as file:
        total = re.search(r"^(?:totals|summary):\s*(\d+)", file.read(), re.MULTILINE)
    os.remove(counts)
    return int(total.group(1)), program.values(done.stdout)


def entries(name, wrong, cost, size):
    """What bench/report.py reads of one program."""
    good, malformed = {row[0] for row in documents.GOOD}, {row[0] for row in documents.MALFORMED}
    metrics = {
        "good": len(good),
        "read": len(good - wrong.keys()),
        "malformed": len(malformed),
        "refused": len(malformed - wrong.keys()),
    }
    if cost is not None:
        metrics.update({"instructions": cost, "bytes": size})
    return [{"part": "right", "row": "documents", "peer": name, "metric": metric, "value": value}
            for metric, value in metrics.items()]


def parsed(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", help="where xmlvalue, pugixml_read and write_document are")
    parser.add_argument("--check", action="store_true", help="run xmlvalue only; fail when it differs from KNOWN")
    parser.add_argument("--json", metavar="FILE", help="write the numbers for bench/report.py")
    parser.add_argument("--mb", type=int, default=16, help="size of the document whose reading is counted; 0: none")
    parser.add_argument("--verbose", action="store_true", help="list what each program gets wrong")
    return parser.parse_args(arguments)


def check(program, folder):
    """Whether the program gets wrong exactly what is known of it."""
    wrong = failures(program, folder)
    for name in sorted(wrong.keys() - documents.KNOWN):
        print(f"{name}: {wrong[name]}")
    for name in sorted(documents.KNOWN - wrong.keys()):
        print(f"{name}: right, but listed in KNOWN")
    count = len(list(rows()))
    print(f"{count - len(wrong)} of {count} documents right")
    return wrong.keys() == documents.KNOWN


def compare(options, folder):
    path, size = os.path.join(folder, "configuration.xml"), 0
    if options.mb > 0:
        subprocess.run([os.path.join(options.folder, "write_document"), str(options.mb), path], check=True)
        size = os.path.getsize(path)
    numbers, answers = [], []
    print(f"{'program':<12}{'read':>10}{'refused':>10}{'instructions':>18}")
    for program in programs(options.folder):
        wrong = failures(program, folder)
        cost = None
        if size > 0:
            cost, values = instructions(program, path, folder)
            answers.append(values)
        numbers += entries(program.name, wrong, cost, size)
        value = {entry["metric"]: entry["value"] for entry in numbers if entry["peer"] == program.name}
        print(f"{program.name:<12}{value['read']:>4} of {value['good']}{value['refused']:>5} of {value['malformed']}"
              f"{'-' if cost is None else format(cost, ','):>18}", flush=True)
        if options.verbose:
            for name, what in wrong.items():
                print(f"    {name}: {what}")
    if any(not answer or answer != answers[0] for answer in answers):
        print("the programs answer differently about the configuration document", file=sys.stderr)
        return False
    if options.json:
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump(numbers, file, indent=1)
    return True


def main(arguments):
    options = parsed(arguments)
    with tempfile.TemporaryDirectory() as folder:
        is_good = check(programs(options.folder)[0], folder) if options.check else compare(options, folder)
    return 0 if is_good else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
