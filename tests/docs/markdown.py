"""What the tests of the documents share: the project's Markdown files, taken apart."""

from __future__ import annotations

import re
from dataclasses import dataclass
from pathlib import Path
from typing import Iterator

ROOT = Path(__file__).resolve().parents[2]


def documents() -> list[Path]:
    """Every Markdown file of the project but those of a build."""
    return [path for path in sorted(ROOT.rglob("*.md"))
            if not path.relative_to(ROOT).parts[0].startswith((".", "build"))]


def shown(path: Path) -> str:
    return path.relative_to(ROOT).as_posix()


@dataclass
class Block:
    """A fenced block of code; `before` is the last line above it that is not empty."""

    language: str
    lines: list[str]
    before: str


def taken_apart(text: str) -> tuple[list[str], list[Block]]:
    """The lines outside of the fenced blocks, and the blocks."""
    prose: list[str] = []
    blocks: list[Block] = []
    block: Block | None = None
    before = ""
    for line in text.splitlines():
        if block is None and line.startswith("```"):
            block = Block(line[3:].strip(), [], before)
        elif block is not None and line.rstrip() == "```":
            blocks.append(block)
            block = None
        elif block is not None:
            block.lines.append(line)
        else:
            prose.append(line)
            before = line.strip() or before
    if block is not None:
        raise ValueError("a block of code without an end")
    return prose, blocks


def headings(prose: list[str]) -> Iterator[tuple[int, str]]:
    for line in prose:
        found = re.match(r"(#{1,6}) +(.*?)\s*$", line)
        if found:
            yield len(found[1]), found[2]


def anchors(prose: list[str]) -> set[str]:
    """The anchors that a page has: its own, and those that renderers make of headings."""
    found = set(re.findall(r'<a id="([^"]+)">', "\n".join(prose)))
    for _, title in headings(prose):
        plain = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", title).lower()
        slug = re.sub(r"[^\w\- ]", "", plain).replace(" ", "-")
        number = 0
        while (candidate := f"{slug}-{number}" if number else slug) in found:
            number += 1
        found.add(candidate)
    return found
