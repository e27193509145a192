#!/usr/bin/env python3
"""What the documents show of a terminal is what the tool prints.

A block of code in the language "console" holds commands behind "$ " and what they print. The
commands of a document run one after the other in a folder that is empty at first; `kvarta16` is the
tool. With --write its output takes the place of what is written; read what changes.
"""

from __future__ import annotations

import argparse
import difflib
import subprocess
import sys
import tempfile
from pathlib import Path

from markdown import documents, shown
from replay_examples import environment


class Terminal:
    """A folder of its own, and the commands that have been typed there."""

    def __init__(self, tool: Path, base: Path) -> None:
        self.folder = base / "work"
        self.folder.mkdir()
        programs = base / "bin"
        programs.mkdir()
        (programs / "kvarta16").symlink_to(tool)
        self._environment = environment(base)
        self._environment["PATH"] = f"{programs}:{self._environment['PATH']}"

    def output_of(self, command: str) -> list[str]:
        done = subprocess.run(["bash", "-c", command], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, encoding="utf-8",
                              cwd=self.folder, env=self._environment, timeout=60, check=False)
        return done.stdout.splitlines()


def replayed(lines: list[str], terminal: Terminal) -> tuple[list[str], int]:
    """The document with what its commands print now, and how many commands it has."""
    page: list[str] = []
    is_console = False
    count = 0
    for line in lines:
        if line.startswith("```"):
            is_console = line == "```console"
        if not is_console or line.startswith("```"):
            page.append(line)
        elif line.startswith("$ "):
            count += 1
            page += [line, *terminal.output_of(line[2:])]
    return page, count


def main() -> int:
    arguments = argparse.ArgumentParser(description="Checks the terminal sessions of documents.")
    arguments.add_argument("--tool", type=Path, required=True, help="the built command kvarta16")
    arguments.add_argument("--write", action="store_true", help="take over the tool's output")
    given = arguments.parse_args()

    total = 0
    troubles = 0
    for path in documents():
        lines = path.read_text(encoding="utf-8").splitlines()
        if "```console" not in lines:
            continue
        with tempfile.TemporaryDirectory() as base:
            now, count = replayed(lines, Terminal(given.tool.resolve(), Path(base)))
        total += count
        if now != lines and given.write:
            path.write_text("\n".join(now) + "\n", encoding="utf-8")
        elif now != lines:
            troubles += 1
            print("\n".join(difflib.unified_diff(lines, now, shown(path), "the tool's output",
                                                 lineterm="")))
    print(f"{total} commands")
    return 1 if troubles or not total else 0


if __name__ == "__main__":
    sys.exit(main())
