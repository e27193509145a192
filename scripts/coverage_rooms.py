"""Prints how much of each room of src/ the tests reach, from what llvm-cov has exported.

A branch is a condition with its two outcomes; what counts is how many outcomes some test has
taken. A condition that the compiler has decided counts for nothing. What templates make of one
place is one place.
"""

from __future__ import annotations

import argparse
import json
from collections import defaultdict
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent
SRC = ROOT / "src"


class Place(NamedTuple):
    line: int
    column: int
    end_line: int
    end_column: int


class FileCoverage(NamedTuple):
    path: Path
    lines: int
    covered_lines: int
    branches: dict[Place, list[int]]  # how often true, how often false

    def missing(self) -> list[tuple[Place, str]]:
        return [(place, outcome) for place, counts in sorted(self.branches.items())
                for outcome, count in zip(("true", "false"), counts) if count == 0]


def reached(segments: list[list], line: int, column: int) -> bool:
    """Whether the code at a place has run at all: the last region begun before it counts."""
    count = 0
    for at_line, at_column, times, has_count, *_ in segments:
        if (at_line, at_column) > (line, column):
            break
        if has_count:
            count = times
    return count > 0


def read(path: Path) -> list[FileCoverage]:
    files: dict[Path, FileCoverage] = {}
    for entry in json.loads(path.read_text(encoding="utf-8"))["data"][0]["files"]:
        # Headers are seen through the link by which they are included.
        name = Path(entry["filename"]).resolve()
        if SRC not in name.parents:
            continue
        branches = files[name].branches if name in files else defaultdict(lambda: [0, 0])
        for line, column, end_line, end_column, true, false, *_ in entry.get("branches", []):
            # A condition decided by the compiler has neither, though the code around it has run.
            if true or false or not reached(entry["segments"], line, column):
                counts = branches[Place(line, column, end_line, end_column)]
                counts[0] += true
                counts[1] += false
        lines = entry["summary"]["lines"]
        files[name] = FileCoverage(name, lines["count"], lines["covered"], branches)
    return list(files.values())


def room_of(file: FileCoverage) -> str:
    return str(file.path.parent.relative_to(SRC))


def part(covered: int, all_of_them: int) -> str:
    return f"{100 * covered / all_of_them:.1f} %" if all_of_them else "-"


def print_rooms(files: list[FileCoverage]) -> None:
    rooms: dict[str, list[int]] = defaultdict(lambda: [0, 0, 0, 0])
    for file in files:
        outcomes = 2 * len(file.branches)
        sums = (file.lines, file.covered_lines, outcomes, outcomes - len(file.missing()))
        for name in (room_of(file), "all"):
            rooms[name] = [a + b for a, b in zip(rooms[name], sums)]
    print("| room | lines | branches | not taken |\n| --- | --- | --- | --- |")
    for room in sorted(rooms, key=lambda name: (name == "all", name)):
        lines, covered, outcomes, taken = rooms[room]
        print(f"| `{room}` | {part(covered, lines)} of {lines} | {part(taken, outcomes)} "
              f"of {outcomes} | {outcomes - taken} |")


def print_missing(files: list[FileCoverage]) -> None:
    for file in sorted(files):
        if not file.missing():
            continue
        print(f"\n{file.path.relative_to(ROOT)}")
        text = file.path.read_text(encoding="utf-8").splitlines()
        for place, outcome in file.missing():
            print(f"  {place.line}:{place.column} never {outcome}: {text[place.line - 1].strip()}")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("export", type=Path, help="what llvm-cov export has written")
    parser.add_argument("rooms", nargs="*", help="folders of src/; all by default")
    parser.add_argument("--missing", action="store_true", help="list what no test takes")
    arguments = parser.parse_intermixed_args()
    files = [file for file in read(arguments.export)
             if not arguments.rooms or room_of(file) in arguments.rooms]
    print_rooms(files)
    if arguments.missing:
        print_missing(files)


if __name__ == "__main__":
    main()
