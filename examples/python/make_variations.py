#!/usr/bin/env python3
"""Makes variations of a filter: one package for each of several pictures.

    make_variations.py surface_rust.obl surface pictures/*.png --output variations

Each package has one graph, which is named like its picture, and in which the filter works on that
picture. The other inputs of the filter become inputs of the graph, unless --hide-parameters is given.
A picture that fails is named on standard error, and the exit code is 1."""

from __future__ import annotations

import argparse
import pathlib
import sys

import kestrix


def main() -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").partition("\n")[0])
    parser.add_argument("filter", type=pathlib.Path, help="the package of the filter")
    parser.add_argument("input", help="the input of the filter that gets the pictures")
    parser.add_argument("pictures", nargs="+", type=pathlib.Path)
    parser.add_argument("--output", type=pathlib.Path, default=pathlib.Path(),
                        help="the folder of the new packages; the current one if not given")
    parser.add_argument("--hide-parameters", action="store_true",
                        help="give the graph no other inputs")
    parser.add_argument("--presets-path", type=pathlib.Path, help="the presets library")
    arguments = parser.parse_args()

    failed = 0
    for picture in arguments.pictures:
        try:
            arguments.output.mkdir(parents=True, exist_ok=True)
            report = kestrix.specialize(
                arguments.filter, images={arguments.input: picture}, graph_name=picture.stem,
                hide_parameters=arguments.hide_parameters, output_path=arguments.output,
                output_name=f"{arguments.filter.stem}_{picture.stem}",
                presets_path=arguments.presets_path)
            print(*report.saved)
        except (kestrix.CommandError, OSError) as error:
            print(f"{picture}: {error}", file=sys.stderr)
            failed = 1
    return failed


if __name__ == "__main__":
    sys.exit(main())
