#!/usr/bin/env python3
"""Shows Doxygen the comments of a header as documentation: the house writes plain ones.

A comment in lines of its own belongs to what follows, and one behind code to that line. The comment
at the head of a file is about the file. Two blanks more inside a comment mean an example.
"""

import re
import sys


def is_comment(line):
    return line.lstrip().startswith("// ") or line.strip() == "//"


def documented(lines):
    """Yields the lines with the marks that Doxygen looks for."""
    at = 0
    while at < len(lines) and is_comment(lines[at]):
        at += 1
    yield "/** \\file"
    yield from (escaped(line.lstrip()[3:]) for line in lines[:at])
    yield "*/"
    for line in lines[at:]:
        if is_comment(line):
            indent, text = re.match(r"(\s*)//(.*)", line).groups()
            yield f"{indent}///{escaped(text)}"
        else:
            yield re.sub(r"([;,{])(\s*)// (.*)$",
                         lambda match: f"{match[1]}{match[2]}///< {escaped(match[3])}", line)


def escaped(text):
    """The text with what Doxygen and Markdown would take for marks of their own."""
    if text.startswith("     "):
        return text  # an example
    return re.sub(r"[@#<>\\%]", lambda match: "\\" + match[0], text)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        print("\n".join(documented(file.read().splitlines())))


if __name__ == "__main__":
    main()
