#!/usr/bin/env python3
"""What the documents quote of the examples is what stands there.

A block of code under the line <!-- quote: FILE --> is all of that file; under
<!-- quote: FILE SECTION --> it is what stands in it between the comments [SECTION] and [/SECTION].
"""

from __future__ import annotations

import difflib
import re
import sys

from markdown import ROOT, documents, shown, taken_apart

MARK = re.compile(r"<!-- quote: (\S+)(?: (\S+))? -->")


def section(text: str, name: str) -> list[str]:
    """The lines of a section, the marks left out; empty where there is none."""
    lines = text.splitlines()
    marks = [[number for number, line in enumerate(lines)
              if re.fullmatch(rf"\s*(?://|#) \[{re.escape(mark)}\]", line)]
             for mark in (name, f"/{name}")]
    if [len(found) for found in marks] != [1, 1]:
        return []
    return lines[marks[0][0] + 1:marks[1][0]]


def main() -> int:
    count = 0
    troubles = 0
    for path in documents():
        text = path.read_text(encoding="utf-8")
        _, blocks = taken_apart(text)
        marked = [(MARK.fullmatch(block.before), block) for block in blocks]
        quotes = [(mark, block) for mark, block in marked if mark]
        if len(quotes) != len(MARK.findall(text)):
            troubles += 1
            print(f"{shown(path)}: a quote without a block of code right below it")
        for mark, block in quotes:
            count += 1
            source = (ROOT / mark[1]).read_text(encoding="utf-8")
            wanted = section(source, mark[2]) if mark[2] else source.splitlines()
            if not wanted or wanted != block.lines:
                troubles += 1
                print(f"{shown(path)} does not quote what stands in {mark[1]} {mark[2] or ''}")
                print("\n".join(difflib.unified_diff(block.lines, wanted, shown(path), mark[1],
                                                     lineterm="")))
    print(f"{count} quotes, {troubles} troubles")
    return 1 if troubles or not count else 0


if __name__ == "__main__":
    sys.exit(main())
