#!/usr/bin/env python3
"""Draws the bars that `run_benchmarks.py --json` has kept, as an SVG picture.

Every figure is drawn as a part of its bar, which is the same line for all of them: what ends
before the line is met. A short stroke is the goal.
"""
import argparse
import html
import json
import sys

WIDTH, ROW, TOP = 1090, 30, 44  # of the picture, a figure, the head
NAMES, SCALE = 560, 300         # width of the names, length that is a bar
LONGEST = 1.35                  # bars beyond are cut here

STYLE = """
text { font: 13px sans-serif; fill: #222 }
.value { font-weight: bold }
.met { fill: #3a7d44 } .missed { fill: #b5483a }
.bar { stroke: #222; stroke-width: 1.5 } .goal { stroke: #222; stroke-width: 3 }
@media (prefers-color-scheme: dark) {
  text { fill: #ddd } .bar, .goal { stroke: #ddd }
  .met { fill: #6fbf7a } .missed { fill: #e07a6a }
}
"""


def row(number, bar):
    """The lines of one figure."""
    top = TOP + number * ROW
    part = bar["value"] / bar["bar"]
    length = min(part, LONGEST) * SCALE
    kind = "met" if part <= 1 else "missed"
    lines = [
        f'<text x="{NAMES - 10}" y="{top + 17}" text-anchor="end">{html.escape(bar["figure"])}</text>',
        f'<rect class="{kind}" x="{NAMES}" y="{top + 5}" width="{length:.1f}" height="16"/>',
        f'<text class="value" x="{NAMES + LONGEST * SCALE + 8}" y="{top + 17}">'
        f'{bar["value"]:.2f} of {bar["bar"]:g}</text>',
    ]
    if bar["goal"] is not None:
        x = NAMES + bar["goal"] / bar["bar"] * SCALE
        lines.append(f'<path class="goal" d="M{x:.1f} {top + 3}v20"/>')
    return lines


def picture(bars):
    height = TOP + len(bars) * ROW + 12
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
        f'width="{WIDTH}" height="{height}">',
        f"<title>Figures as parts of their bars</title><style>{STYLE}</style>",
        f'<text x="{NAMES + SCALE}" y="24" text-anchor="middle">bar</text>',
    ]
    for number, bar in enumerate(bars):
        lines += row(number, bar)
    lines += [f'<path class="bar" d="M{NAMES + SCALE} 30V{height - 8}"/>', "</svg>"]
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("json", help="what run_benchmarks.py has kept")
    parser.add_argument("svg", help="the picture")
    arguments = parser.parse_args()
    with open(arguments.json, encoding="utf-8") as source:
        bars = json.load(source)
    with open(arguments.svg, "w", encoding="utf-8") as target:
        target.write(picture(bars))


if __name__ == "__main__":
    sys.exit(main())
