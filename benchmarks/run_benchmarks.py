#!/usr/bin/env python3
"""Times `kestrix` against plain copies of the same XML and prints the figures as Markdown.

Builds nothing: the programs are searched for in the build folder. All programs run in turn,
round after round, so that a slow spell of the machine meets all of them; figures are medians.
The bars can be kept as JSON, of which `barpicture.py` makes a picture.
"""
import argparse
import collections
import filecmp
import json
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

MIDDLE_GRAPHS = 250  # about 8.6 MB
LARGE_GRAPHS = 2500  # about 86 MB
SMALL_NODES = 27     # one graph of so many nodes is about 20 kB

# Bars and goals.
CPU_RATIO = 0.35, 0.20
MEMORY_PER_BYTE = 2.7, 2.0
LINEARITY = 1.03, 1.00
ONE_CALL_RATIO = 0.16, 0.12
TWO_WORKERS_RATIO = 0.65, 0.55
OLD_CPU_RATIO = 0.40, 0.20
OLD_MEMORY_RATIO = 0.35, 0.20
STARTUP_RATIO = 1.20, 1.10
TENFOLD_RATIO = 12.0, 10.5 # of ten times as many edits, or an edit of ten times the graph
PLAIN_EDIT = 2.5, 1.5      # microseconds of one of EDITED_NODES edits that set a value
OLDEST_VERSION = b"1.0.1.3000"
HEAD_SIZE = 2000  # bytes of a package in which its versions stand
EDITED_NODES = 10000
PLAIN_EDIT_ROW = "set-default-value"
MAX_MICROSECONDS = 40.0  # of one of EDITED_NODES edits
# The rows of `editgraph`.
EDITS = {
    "build": "controllers of a graph",
    "build-instances": "controllers of instances",
    "lookup": "two lookups for each node",
    "connect": "one output connected to each node",
    "connect-list": "entries of a list input",
    "freeze": "one input frozen in each node",
    "freeze-all": "inputs frozen, each read by a node",
    "freeze-shared": "inputs frozen, each read by two nodes",
    "freeze-unread": "inputs frozen that nothing reads",
    "add-tweak-input": "inputs of values added",
    "add-input-node": "input nodes added",
    "add-output-node": "output nodes added",
    "remove-input": "inputs removed",
    "remove-output-node": "output nodes removed",
    "remove-scattered-nodes": "half of the nodes removed in one edit, here and there",
    "thin-inputs": "every second input removed",
    "scatter-inputs": "inputs removed here and there",
    "thin-outputs": "every second output node removed",
    "scatter-outputs": "output nodes removed here and there",
    "thin-nodes": "every second node removed, fed by one output",
    "scatter-nodes": "such nodes removed here and there",
    "thin-targets": "every second input of one output disconnected",
    "scatter-targets": "such inputs disconnected here and there",
    "thin-entries": "every second entry of a list input disconnected",
    "scatter-entries": "entries disconnected here and there",
    "rename-input": "inputs renamed",
    "rename-output": "outputs renamed",
    "set-default-value": "default values set",
    "describe-input": "inputs described anew",
    "add-graph": "graphs added",
    "add-resource": "resources added",
    "add-instance": "instances added",
    "add-output-of-one-instance": "outputs added, with one instance",
    "add-input-of-one-instance": "inputs added, with one instance",
    "rename-input-of-one-instance": "inputs renamed, with one instance",
    "rename-output-of-one-instance": "outputs renamed, with one instance",
    "remove-output-of-one-instance": "outputs removed, with one instance that feeds a node each",
    "rename-output-of-instances": "an output renamed, with as many instances",
    "one-output-of-instances": "an output added, with as many instances",
    "one-input-of-instances": "an input added, with as many instances",
    "specialize": "outputs and inputs of a specialized filter",
}
OWN_NAMES = 4000           # elements by which one package names itself
MAX_OWN_NAMES_CPU = 0.2    # seconds
MAX_OWN_NAMES_MEMORY = 30  # megabytes
LIBRARY_PACKAGES = 400     # of a library, and twice as many of a larger one
LIBRARY_DEPENDENCIES = 10  # of each package
MAX_DOUBLE_RATIO = 2.3     # of a library of twice the packages
MESH_PACKAGES = 200        # that all name each other
MAX_MESH_CPU = 1.0         # seconds

Usage = collections.namedtuple("Usage", "wall cpu memory")  # seconds, seconds, bytes


class Failure(Exception):
    """A program failed, or its output is not what it must be."""


def run(command, log, expected=0):
    """Runs one process to its end, without a shell, and answers what it used.

    The peak memory of a child is never below that of this script, whose pages the child still
    shares when it starts.
    """
    actions = [
        (os.POSIX_SPAWN_OPEN, 0, os.devnull, os.O_RDONLY, 0),
        (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0),
        (os.POSIX_SPAWN_OPEN, 2, log, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644),
    ]
    start = time.perf_counter()
    pid = os.posix_spawn(command[0], command, os.environ, file_actions=actions)
    _, status, used = os.wait4(pid, 0)
    wall = time.perf_counter() - start
    code = os.waitstatus_to_exitcode(status)
    if code != expected:
        with open(log, encoding="utf-8", errors="replace") as text:
            raise Failure(f"{' '.join(command[:6])} ended with {code}: {text.read(2000).strip()}")
    return Usage(wall, used.ru_utime + used.ru_stime, used.ru_maxrss * 1024)


def median(usages):
    return Usage(*(statistics.median(column) for column in zip(*usages)))


def total(usages):
    return Usage(sum(u.wall for u in usages), sum(u.cpu for u in usages),
                 max(u.memory for u in usages))


def check_size(output, source):
    """A copy has about the size of what it was made from."""
    if not os.path.isfile(output):
        raise Failure(f"{output} was not written")
    size, expected = os.path.getsize(output), os.path.getsize(source)
    if not 0.8 * expected <= size <= 1.25 * expected:
        raise Failure(f"{output} has {size} bytes, its source {expected}")


def find_programs(build_dir):
    wanted = {"kestrix", "generatepackage", "xmlpump", "emptyqt", "pugixmlcopy", "domcopy",
              "editgraph"}
    found = {}
    for folder, _, files in os.walk(build_dir):
        for name in wanted.intersection(files):
            path = os.path.join(os.path.abspath(folder), name)
            if os.access(path, os.X_OK):
                found.setdefault(name, path)
    missing = wanted - set(found) - {"pugixmlcopy"}
    if missing:
        raise Failure(f"not found in {build_dir}: {', '.join(sorted(missing))}")
    xmllint = shutil.which("xmllint")
    if xmllint:
        found["xmllint"] = xmllint
    return found


def table(title, head, rows):
    print(f"\n## {title}\n")
    print("| " + " | ".join(head) + " |")
    print("|" + "|".join(["---"] + ["---:"] * (len(head) - 1)) + "|")
    for row in rows:
        print("| " + " | ".join(row) + " |")


def verdict(value, bar):
    return "met" if value <= bar else "**missed**"


def megabytes(size):
    return size / 1e6


class Benchmarks:
    def __init__(self, programs, folder, arguments):
        self.programs = programs
        self.folder = folder
        self.runs = arguments.runs
        self.startup_runs = arguments.startup_runs
        self.packages = arguments.packages
        self.log = os.path.join(folder, "errors.txt")
        self.output_dir = os.path.join(folder, "output")
        self.bars = []

    def bar(self, name, value, limit, goal=None):
        self.bars.append({"figure": name, "value": round(value, 3), "bar": limit, "goal": goal})

    def generate(self, name, graphs, *options):
        path = os.path.join(self.folder, name + ".obl")
        run([self.programs["generatepackage"], str(graphs), path, *options], self.log)
        return path

    def update_command(self, *inputs, name="{inputName}_updated"):
        return [self.programs["kestrix"], "update", *inputs, "--output-path", self.output_dir,
                "--output-name", name]

    def copy_commands(self, source):
        """The programs that copy `source`, by label; all but kestrix write `copy.obl`."""
        target = os.path.join(self.output_dir, "copy.obl")
        commands = {
            "kestrix update": self.update_command(source, name="copy"),
            "(a) xmlpump": [self.programs["xmlpump"], source, target],
        }
        if "xmllint" in self.programs:
            commands["(b) xmllint"] = [self.programs["xmllint"], "--output", target, source]
        if "pugixmlcopy" in self.programs:
            commands["(c) pugixml"] = [self.programs["pugixmlcopy"], source, target]
        return commands, target

    def empty_output(self):
        shutil.rmtree(self.output_dir, ignore_errors=True)
        os.mkdir(self.output_dir)

    def time_copies(self, source):
        commands, target = self.copy_commands(source)
        usages = {label: [] for label in commands}
        for _ in range(self.runs):
            for label, command in commands.items():
                self.empty_output()
                usages[label].append(run(command, self.log))
                check_size(target, source)
                if label == "kestrix update" and not filecmp.cmp(source, target, shallow=False):
                    print("Note: `kestrix update` changed bytes of "
                          f"{os.path.basename(source)}.", file=sys.stderr)
        return {label: median(list_) for label, list_ in usages.items()}

    def report_copies(self, source, medians):
        size = os.path.getsize(source)
        reference = medians["(a) xmlpump"]
        rows = [[label, f"{used.wall:.3f}", f"{used.cpu:.3f}", f"{used.wall / reference.wall:.2f}",
                 f"{used.cpu / reference.cpu:.2f}", f"{used.memory / 2**20:.1f}",
                 f"{used.memory / size:.2f}"] for label, used in medians.items()]
        table(f"One file of {megabytes(size):.1f} MB, {self.runs} runs",
              ["Program", "wall s", "cpu s", "wall / (a)", "cpu / (a)", "peak MiB",
               "peak bytes per byte"], rows)

    def files(self):
        middle, large = self.generate("middle", MIDDLE_GRAPHS), self.generate("large", LARGE_GRAPHS)
        results = {source: self.time_copies(source) for source in (middle, large)}
        for source, medians in results.items():
            self.report_copies(source, medians)

        size = os.path.getsize(large)
        growth = size / os.path.getsize(middle)
        small_used, used = results[middle]["kestrix update"], results[large]["kestrix update"]
        self.bar(f"cpu of update of {megabytes(size):.0f} MB / cpu of (a)",
                 used.cpu / results[large]["(a) xmlpump"].cpu, *CPU_RATIO)
        self.bar(f"peak memory of update of {megabytes(size):.0f} MB, bytes per byte",
                 used.memory / size, *MEMORY_PER_BYTE)
        sizes = f"{megabytes(size):.0f} MB / {megabytes(size / growth):.1f} MB"
        self.bar(f"cpu per MB, {sizes}", used.cpu / small_used.cpu / growth, *LINEARITY)
        self.old_file(large)
        os.remove(large)

    def old_file(self, current):
        """Takes `current` back to the oldest version, beside a load and save with a DOM."""
        if "domcopy" not in self.programs:
            return
        old = os.path.join(self.folder, "old.obl")
        with open(current, "rb") as source, open(old, "wb") as target:
            head = source.read(HEAD_SIZE)
            target.write(re.sub(rb'(<formatVersion v=")[^"]*"/><updaterVersion v="[^"]*"/>',
                                rb'\g<1>' + OLDEST_VERSION + b'"/>', head))
            shutil.copyfileobj(source, target)
        copy = os.path.join(self.output_dir, "copy.obl")
        commands = {"kestrix update": self.update_command(old, name="copy"),
                    "(e) domcopy": [self.programs["domcopy"], old, copy]}
        usages = {label: [] for label in commands}
        for _ in range(self.runs):
            for label, command in commands.items():
                self.empty_output()
                usages[label].append(run(command, self.log))
                check_size(copy, old)
        medians = {label: median(list_) for label, list_ in usages.items()}
        used, reference = medians["kestrix update"], medians["(e) domcopy"]
        size = megabytes(os.path.getsize(old))
        table(f"The same of the oldest version, {size:.1f} MB, {self.runs} runs",
              ["Program", "wall s", "cpu s", "cpu / (e)", "peak MiB"],
              [[label, f"{one.wall:.3f}", f"{one.cpu:.3f}", f"{one.cpu / reference.cpu:.2f}",
                f"{one.memory / 2**20:.1f}"] for label, one in medians.items()])
        self.bar(f"cpu of update of {size:.0f} MB of the oldest version / cpu of (e)",
                 used.cpu / reference.cpu, *OLD_CPU_RATIO)
        self.bar("peak memory of the same / (e)", used.memory / reference.memory,
                 *OLD_MEMORY_RATIO)
        os.remove(old)

    def check_many(self, sources):
        for source in sources:
            stem = os.path.splitext(os.path.basename(source))[0]
            check_size(os.path.join(self.output_dir, stem + "_updated.obl"), source)

    def many_packages(self):
        sources = [self.generate(f"package{i}", 1, "--nodes", str(SMALL_NODES), "--seed", str(i))
                   for i in range(1, self.packages + 1)]
        together, on_one_core, apart = [], [], []
        for _ in range(self.runs):
            self.empty_output()
            together.append(run(self.update_command(*sources), self.log))
            self.check_many(sources)
            self.empty_output()
            on_one_core.append(run(["/usr/bin/taskset", "-c", "0", *self.update_command(*sources)],
                                   self.log))
            self.check_many(sources)
            self.empty_output()
            apart.append(total([run(self.update_command(source), self.log)
                                for source in sources]))
            self.check_many(sources)
        one, alone, each = median(together), median(on_one_core), median(apart)
        mean = sum(map(os.path.getsize, sources)) / len(sources)
        calls = len(sources)
        table(f"{calls} packages of {mean / 1e3:.1f} kB on the average, {self.runs} runs",
              ["Calls", "wall s", "cpu s", "peak MiB"],
              [[name, f"{used.wall:.3f}", f"{used.cpu:.3f}", f"{used.memory / 2**20:.1f}"]
               for name, used in (("1 call", one), ("1 call on one core", alone),
                                  (f"{calls} calls", each))])
        self.bar(f"{calls} packages in one call / in {calls} calls, cpu", one.cpu / each.cpu,
                 *ONE_CALL_RATIO)
        self.bar(f"{calls} packages in one call on {len(os.sched_getaffinity(0))} cores / on 1, "
                 "wall", one.wall / alone.wall, *TWO_WORKERS_RATIO)

    def startup(self):
        commands = {"kestrix --help": [self.programs["kestrix"], "--help"],
                    "(d) emptyqt": [self.programs["emptyqt"]]}
        usages = {label: [] for label in commands}
        for _ in range(self.startup_runs):
            for label, command in commands.items():
                usages[label].append(run(command, self.log))
        medians = {label: median(list_) for label, list_ in usages.items()}
        table(f"Start-up, {self.startup_runs} runs", ["Program", "wall ms", "cpu ms"],
              [[label, f"{used.wall * 1e3:.2f}", f"{used.cpu * 1e3:.2f}"]
               for label, used in medians.items()])
        used, reference = medians["kestrix --help"], medians["(d) emptyqt"]
        self.bar("start-up / (d), cpu", used.cpu / reference.cpu, *STARTUP_RATIO)

    def library(self, folder, count, dependencies):
        """Writes packages that name others of the same folder; answers the first.

        `dependencies` gives the numbers of the packages that package `i` names.
        """
        os.mkdir(os.path.join(self.folder, folder))
        paths = [self.generate(os.path.join(folder, f"p{i}"), 0, "--seed", str(i), *(
            word for j in dependencies(i) for word in ("--dependency", f"p{j}.obl")))
                 for i in range(count)]
        return paths[0]

    def time_update(self, source):
        usages = []
        for _ in range(self.runs):
            self.empty_output()
            usages.append(run(self.update_command(source), self.log))
        return median(usages)

    def dependencies(self):
        own = self.generate("own", 0, *["--dependency", "?himself"] * OWN_NAMES)
        sources = {f"one package, {OWN_NAMES} times itself": own}
        for count in (LIBRARY_PACKAGES, 2 * LIBRARY_PACKAGES):
            sources[f"{count} packages, {LIBRARY_DEPENDENCIES} dependencies each"] = self.library(
                f"library{count}", count,
                lambda i, count=count: [(i + 1 + 7 * j) % count
                                        for j in range(LIBRARY_DEPENDENCIES)])
        sources[f"{MESH_PACKAGES} packages that name each other"] = self.library(
            "mesh", MESH_PACKAGES, lambda i: [j for j in range(MESH_PACKAGES) if j != i])
        medians = {label: self.time_update(source) for label, source in sources.items()}
        table(f"Dependencies, {self.runs} runs", ["Input", "wall s", "cpu s", "peak MiB"],
              [[label, f"{used.wall:.3f}", f"{used.cpu:.3f}", f"{used.memory / 2**20:.1f}"]
               for label, used in medians.items()])
        itself, small, large, mesh = medians.values()
        self.bar("one package that names itself, cpu s", itself.cpu, MAX_OWN_NAMES_CPU)
        self.bar("the same, peak MB", megabytes(itself.memory), MAX_OWN_NAMES_MEMORY)
        self.bar("a library of twice the packages, cpu", large.cpu / small.cpu, MAX_DOUBLE_RATIO)
        self.bar("packages that name each other, cpu s", mesh.cpu, MAX_MESH_CPU)

    def edit(self, kind, count):
        """Cpu seconds of an edit, as the program that runs it has measured them."""
        return statistics.median(
            float(subprocess.run([self.programs["editgraph"], kind, str(count)], check=True,
                                 capture_output=True, text=True).stdout)
            for _ in range(self.runs))

    def edits(self):
        rows, ratios, costs = [], {}, {}
        for kind, label in EDITS.items():
            small, large = (self.edit(kind, EDITED_NODES * factor) for factor in (1, 10))
            per_edit = small / EDITED_NODES * 1e6
            rows.append([label, f"{small:.3f}", f"{large:.3f}", f"{per_edit:.1f}",
                         f"{large / small:.1f}"])
            ratios[label] = large / small
            costs[label] = per_edit
        table(f"Edits, {self.runs} runs",
              ["Edit", f"{EDITED_NODES}, s", f"{EDITED_NODES * 10}, s", "microseconds each",
               "ratio"], rows)
        slowest, costliest = max(ratios, key=ratios.get), max(costs, key=costs.get)
        over = sum(ratio > TENFOLD_RATIO[0] for ratio in ratios.values())
        print(f"\n{over} of {len(ratios)} rows have a ratio above {TENFOLD_RATIO[0]:g}.")
        self.bar(f"edits, ten times as many, the worst kind ({slowest})", ratios[slowest],
                 *TENFOLD_RATIO)
        self.bar(f"microseconds of an edit, the worst kind ({costliest})", costs[costliest],
                 MAX_MICROSECONDS)
        self.bar("microseconds of a plain edit", costs[EDITS[PLAIN_EDIT_ROW]], *PLAIN_EDIT)

    def report_bars(self):
        table("Bars", ["Figure", "value", "bar", "result", "goal"],
              [[bar["figure"], f"{bar['value']:.2f}", f"{bar['bar']:g}",
                verdict(bar["value"], bar["bar"]),
                "" if bar["goal"] is None else
                f"{bar['goal']:g}, {verdict(bar['value'], bar['goal'])}"] for bar in self.bars])

    def keep_bars(self, path):
        with open(path, "w", encoding="utf-8") as target:
            json.dump(self.bars, target, indent=2)
            target.write("\n")


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build-dir", required=True, help="where the programs were built")
    parser.add_argument("--runs", type=int, default=5, help="runs of each program (%(default)s)")
    parser.add_argument("--startup-runs", type=int, default=40,
                        help="runs of each program that only starts (%(default)s)")
    parser.add_argument("--packages", type=int, default=1000,
                        help="number of small packages (%(default)s)")
    parser.add_argument("--work-dir",
                        help="folder for a temporary folder of inputs and outputs, 500 MB at most")
    parser.add_argument("--json", help="file to which the bars are written")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    try:
        programs = find_programs(arguments.build_dir)
        with tempfile.TemporaryDirectory(prefix="kestrix-", dir=arguments.work_dir) as folder:
            benchmarks = Benchmarks(programs, folder, arguments)
            benchmarks.files()
            benchmarks.many_packages()
            benchmarks.startup()
            benchmarks.edits()
            benchmarks.dependencies()
            benchmarks.report_bars()
            if arguments.json:
                benchmarks.keep_bars(arguments.json)
    except Failure as failure:
        print(f"Error! {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
