#!/usr/bin/env python3
"""Estimates how long 'ksx batch' takes for a large library on 1 to 1,000 machines.

The graph of dependencies is made up: most packages need none but presets, and the sizes of the
other components follow a power law. The costs are options, whose defaults were measured on one
machine: see docs/batch.md.
"""

import argparse
import heapq
import random

NODES = (1, 10, 100, 1000)


def parse():
    parser = argparse.ArgumentParser(description=__doc__)
    option = parser.add_argument
    option("--packages", type=int, default=1_000_000)
    option("--alone", type=float, default=0.6, help="share of packages that need presets alone")
    option("--slope", type=float, default=1.5, help="exponent of the sizes of components")
    option("--largest", type=int, default=5_000, help="packages of the largest component")
    option("--cores", type=int, default=4, help="processes of a machine")
    option("--tasks", type=int, default=4, help="shards for each machine")
    option("--package", type=float, default=0.00051, help="seconds of a package, syncs included")
    option("--process", type=float, default=0.00002, help="seconds more for each component")
    option("--start", type=float, default=3.3e-6, help="seconds of a task for each package planned")
    option("--line", type=int, default=220, help="bytes of the plan for each package")
    option("--bytes", type=int, default=20_000, help="bytes of a package")
    option("--server", type=float, default=2e9, help="bytes a second of the file server")
    option("--seed", type=int, default=1)
    return parser.parse_args()


def component_sizes(options):
    """The numbers of packages of the components, the largest first."""
    chance = random.Random(options.seed)
    sizes = [1] * int(options.packages * options.alone)
    left = options.packages - len(sizes)
    while left > 0:
        size = min(int(1 + chance.paretovariate(options.slope)), options.largest, left)
        sizes.append(size)
        left -= size
    return sorted(sizes, reverse=True)


def packed(loads, bins):
    """The loads of each bin, the largest first and each to the bin that has the least."""
    heap = [(0.0, number) for number in range(bins)]
    contents = [[] for _ in range(bins)]
    for load in loads:
        total, number = heapq.heappop(heap)
        contents[number].append(load)
        heapq.heappush(heap, (total + load, number))
    return contents


def end_of(loads, workers):
    """When workers that take loads in their order are done."""
    ends = [0.0] * min(workers, max(len(loads), 1))
    for load in loads:
        heapq.heappush(ends, heapq.heappop(ends) + load)
    return max(ends)


def estimate(options, loads, nodes):
    """The seconds of the run, and of what bounds it."""
    tasks = nodes * options.tasks
    start = options.start * options.packages
    shards = [start + end_of(shard, options.cores) for shard in packed(loads, tasks)]
    computing = end_of(sorted(shards, reverse=True), nodes)
    moved = 2 * options.bytes * options.packages + options.line * options.packages * tasks
    bounds = {"packages": sum(loads) / nodes / options.cores, "largest component": max(loads),
              "starts of tasks": start * options.tasks, "file server": moved / options.server}
    return max(computing, bounds["file server"]), bounds


def main():
    options = parse()
    loads = [options.process + options.package * size for size in component_sizes(options)]
    print(f"{options.packages} packages, {len(loads)} components, {options.cores} processes and "
          f"{options.tasks} shards a machine")
    print(f"{'machines':>8} {'wall s':>9} {'speedup':>8}  largest bounds, in seconds")
    first = None
    for nodes in NODES:
        wall, bounds = estimate(options, loads, nodes)
        first = first or wall
        names = sorted(bounds, key=bounds.get, reverse=True)
        told = ", ".join(f"{name} {bounds[name]:.1f}" for name in names)
        print(f"{nodes:8} {wall:9.1f} {first / wall:8.1f}  {told}")


if __name__ == "__main__":
    main()
