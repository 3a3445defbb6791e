#!/usr/bin/env python3
"""Walks over all nodes of a package and what feeds them, twice, as walkgraphs does in C++.

    PYTHONPATH=build/release/python/lib/python3.11/dist-packages \\
        python3 benchmarks/walk_graphs.py PACKAGE"""

import sys
import time

import kestrix


def walk(package):
    nodes = connections = total = 0
    for graph in package.graphs:
        for node in graph.nodes:
            nodes += 1
            for connector in node.inputs:
                for source in connector.sources:
                    connections += 1
                    total += source.node.uid
    return nodes, connections, total


def main():
    with kestrix.Session() as session:
        package = session.open(sys.argv[1], dependencies=False)
        for which in ("first", "second"):
            begin = time.process_time()
            nodes, connections, total = walk(package)
            seconds = time.process_time() - begin
            print(f"{which}: {nodes} nodes, {connections} connections, sum {total}, {seconds:.3f} s")


if __name__ == "__main__":
    main()
