#!/usr/bin/env python3
"""Runs the fuzzers, and keeps the inputs that reach something of their own.

The build folder has the preset `fuzz` and the target `fuzz_targets`. What a fuzzer has found stays in
the folder `corpus` of the build, so that the next run goes on from there. Inputs that break a promise
stay in the folder `faults`. With --keep the smallest inputs that reach everything are packed into
tests/fuzz/corpus, where an ordinary test reads them."""

import argparse
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import zlib

PROJECT = pathlib.Path(__file__).resolve().parents[2]
KEPT = PROJECT / "tests/fuzz/corpus"
# The bytes that an input may have, and whether the target prints.
TARGETS = {"lanes": (20000, False), "updates": (20000, False), "descriptions": (10000, False),
           "archives": (4000, False), "pictures": (4000, False), "values": (400, True)}
MOST_FAULTS = 5  # of one target, before its time is over
MOST_KEPT = 45000  # bytes of one target, packed
INPUT_SECONDS = 20  # for one input, under the sanitizers
MEMORY = 2048  # MiB
ENVIRONMENT = {"ASAN_OPTIONS": "detect_leaks=0:allocator_may_return_null=1",
               "UBSAN_OPTIONS": "print_stacktrace=1", "QT_LOGGING_RULES": "*=false"}


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("targets", nargs="*", metavar="TARGET", help=f"of {', '.join(TARGETS)}")
    parser.add_argument("--build", type=pathlib.Path, default=PROJECT / "build/fuzz")
    parser.add_argument("--seconds", type=int, default=60, help="for each target")
    parser.add_argument("--seed", type=int, default=0, help="0 for another one each time")
    parser.add_argument("--keep", action="store_true", help="pack what was found")
    arguments = parser.parse_args()
    unknown = set(arguments.targets) - set(TARGETS)
    if unknown:
        parser.error(f"no target is called {', '.join(sorted(unknown))}")
    return arguments


def pack(inputs):
    """All inputs in one text of bytes, as qUncompress() and QDataStream read it."""
    plain = b"".join(struct.pack(">I", len(data)) + data for data in inputs)
    return struct.pack(">I", len(plain)) + zlib.compress(plain, 9)


def unpack(packed):
    plain = zlib.decompress(packed[4:])
    inputs, place = [], 0
    while place < len(plain):
        size = struct.unpack_from(">I", plain, place)[0]
        inputs.append(plain[place + 4:place + 4 + size])
        place += 4 + size
    return inputs


def kept_inputs(target):
    file = KEPT / f"{target}.corpus"
    return unpack(file.read_bytes()) if file.exists() else []


def command(build, target, *options):
    size, prints = TARGETS[target]
    return [str(build / f"fuzz_{target}"), f"-max_len={size}", f"-timeout={INPUT_SECONDS}",
            f"-rss_limit_mb={MEMORY}", "-malloc_limit_mb=8192",
            f"-close_fd_mask={3 if prints else 0}", *options]


def start_folders(build, target):
    """The folder of all that was found so far, with the seeds and the inputs that are kept."""
    found = build / "corpus" / target
    found.mkdir(parents=True, exist_ok=True)
    subprocess.run([build / "fuzzseeds", build / "seeds"], check=True)
    kept = build / "seeds" / target
    for number, data in enumerate(kept_inputs(target)):
        (kept / f"kept{number}").write_bytes(data)
    return [str(found), str(kept)]


def number_in(text, pattern):
    found = re.findall(pattern, text)
    return int(found[-1]) if found else 0


def fuzz(arguments, target):
    """Runs one fuzzer for its time. Returns the inputs that break a promise."""
    folders = start_folders(arguments.build, target)
    faults = arguments.build / "faults" / target
    faults.mkdir(parents=True, exist_ok=True)
    before = set(faults.iterdir())
    begin, runs, reached, reports = time.monotonic(), 0, 0, []
    while len(reports) < MOST_FAULTS:
        left = arguments.seconds - (time.monotonic() - begin)
        if left < 1:
            break
        options = [f"-max_total_time={int(left)}", f"-artifact_prefix={faults}/",
                   "-print_final_stats=1", f"-seed={arguments.seed}"]
        result = subprocess.run(command(arguments.build, target, *options, *folders),
                                capture_output=True, env={**os.environ, **ENVIRONMENT})
        text = result.stderr.decode(errors="replace")
        runs += number_in(text, r"number_of_executed_units: (\d+)")
        reached = max(reached, number_in(text, r"cov: (\d+)"))
        if result.returncode == 0:
            break
        reports.append(text[-6000:])
    found = sorted(set(faults.iterdir()) - before)
    inputs = len(os.listdir(folders[0]))
    print(f"fuzz {target:13} {runs:9} runs {reached:6} places reached {inputs:6} inputs found "
          f"{len(reports):3} faults {time.monotonic() - begin:6.0f} s", flush=True)
    for report in reports:
        print(report)
    for path in found:
        print(f"  see it again: {arguments.build}/fuzz_{target} {path}")
    return reports


def keep(arguments, target):
    """Packs the smallest inputs that reach all that was reached, as far as there is room."""
    folders = start_folders(arguments.build, target)
    with tempfile.TemporaryDirectory() as merged:
        subprocess.run(command(arguments.build, target, "-merge=1", merged, *folders), check=True,
                       capture_output=True, env={**os.environ, **ENVIRONMENT})
        inputs = sorted((path.read_bytes() for path in pathlib.Path(merged).iterdir()),
                        key=lambda data: (len(data), data))
    chosen = []
    for data in inputs:
        if len(pack(chosen + [data])) > MOST_KEPT:
            break
        chosen.append(data)
    KEPT.mkdir(exist_ok=True)
    (KEPT / f"{target}.corpus").write_bytes(pack(chosen))
    print(f"kept {target:13} {len(chosen):5} of {len(inputs):5} inputs, {len(pack(chosen))} bytes")


def main():
    arguments = parse_arguments()
    arguments.build = arguments.build.resolve()
    shutil.rmtree(arguments.build / "seeds", ignore_errors=True)
    targets = arguments.targets or list(TARGETS)
    if arguments.keep:
        for target in targets:
            keep(arguments, target)
        return 0
    return 1 if any([fuzz(arguments, target) for target in targets]) else 0


if __name__ == "__main__":
    sys.exit(main())
