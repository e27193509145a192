#!/usr/bin/env python3
"""README.md and README.pl.md are twins: the same headings, tables, commands and code."""

from __future__ import annotations

import re
import sys

from markdown import ROOT, Block, headings, taken_apart

TWINS = ("README.md", "README.pl.md")


def without_comments(block: Block) -> list[str]:
    mark = "//" if block.language == "cpp" else "#"
    lines = (re.sub(rf"(^|\s+){mark}(?!include).*$", "", line).rstrip() for line in block.lines)
    return [line for line in lines if line]


def table_rows(prose: list[str]) -> list[str]:
    """The code in the first cell of each row, "" for a row without any."""
    rows = []
    for line in prose:
        if line.startswith("|"):
            first = re.split(r"(?<!\\)\|", line)[1]
            rows.append(" ".join(re.findall(r"`([^`]*)`", first)))
    return rows


def shape(name: str) -> dict[str, object]:
    prose, blocks = taken_apart((ROOT / name).read_text(encoding="utf-8"))
    targets = re.findall(r"\]\(([^)#\s]+)", "\n".join(prose))
    return {
        "levels of the headings": [level for level, _ in headings(prose)],
        "first cells of the tables": table_rows(prose),
        "languages of the code": [block.language for block in blocks],
        "code": [without_comments(block) for block in blocks],
        "links": sorted(target for target in targets if target not in TWINS),
    }


def main() -> int:
    troubles = 0
    for name, other in (TWINS, TWINS[::-1]):
        if f"]({other})" not in (ROOT / name).read_text(encoding="utf-8"):
            troubles += 1
            print(f"{name} has no link to {other}")
    one, two = (shape(name) for name in TWINS)
    for part, of_one in one.items():
        if of_one != two[part]:
            troubles += 1
            print(f"The {part} differ:\n  {TWINS[0]}: {of_one}\n  {TWINS[1]}: {two[part]}")
    return 1 if troubles else 0


if __name__ == "__main__":
    sys.exit(main())
