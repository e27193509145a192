#!/usr/bin/env python3
"""Replays an example of the reference pages against the tool: each answer must be the one written.

    tests/docs/replay_examples.py --tool build/release/bin/kvarta16 docs/examples/aChar.rpc

With --write the answers of this tool take the place of those that are written; read what changes.
"""

from __future__ import annotations

import argparse
import contextlib
import difflib
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from ftp_server import serving

FTP_HOST = "ftp.example.com"
# The port that the client takes where there is a file port21147.txt on drive C.
FTP_PORT = 21147


def environment(folder: Path) -> dict[str, str]:
    """What the tool sees: a folder of its own for everything that it could write."""
    return {
        "PATH": os.environ.get("PATH", ""), "HOME": str(folder), "LC_ALL": "C.UTF-8",
        "TZ": "Europe/Warsaw", "KVARTA16_DRIVES": str(folder / "drives"),
        "KVARTA16_REGISTRY": str(folder / "registry.reg"),
        "KVARTA16_REGISTRY_MACHINE": str(folder / "machine.reg"),
    }


def answers_of(tool: Path, requests: list[str]) -> list[str]:
    """The tool's answers in a folder that holds nothing."""
    with contextlib.ExitStack() as stack:
        base = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        folder = base / "work"
        folder.mkdir()
        text = "\n".join(requests) + "\n"
        address = FTP_HOST
        if FTP_HOST in text:
            address = stack.enter_context(serving(FTP_PORT))
        done = subprocess.run([str(tool), "rpc"], input=text.replace(FTP_HOST, address),
                              capture_output=True, encoding="utf-8", cwd=folder,
                              env=environment(base), timeout=60, check=False)
    if done.returncode != 0:
        sys.exit(f"the tool ended with {done.returncode}: {done.stderr}")
    return done.stdout.replace(address, FTP_HOST).splitlines()


def replayed(lines: list[str], answers: list[str]) -> list[str]:
    """The example with these answers, each behind its request."""
    left = iter(answers)
    page: list[str] = []
    for line in lines:
        if line.startswith("< "):
            continue
        page.append(line)
        if line.startswith("> "):
            page.append(f"< {next(left, 'no answer')}")
    return page + [f"< {answer}" for answer in left]


def main() -> int:
    arguments = argparse.ArgumentParser(description="Replays an example of the reference.")
    arguments.add_argument("--tool", type=Path, required=True, help="the built command kvarta16")
    arguments.add_argument("--write", action="store_true", help="take over the tool's answers")
    arguments.add_argument("example", type=Path)
    given = arguments.parse_args()

    lines = given.example.read_text(encoding="utf-8").splitlines()
    requests = [line[2:] for line in lines if line.startswith("> ")]
    if not requests:
        print(f"{given.example} holds no request")
        return 1
    now = replayed(lines, answers_of(given.tool.resolve(), requests))
    if given.write:
        given.example.write_text("\n".join(now) + "\n", encoding="utf-8")
        return 0
    if now != lines:
        print("\n".join(difflib.unified_diff(lines, now, str(given.example), "the tool's answers",
                                             lineterm="")))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
