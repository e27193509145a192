#!/usr/bin/env python3
"""Every relative link of every Markdown file leads to a file that is there, and to its anchor."""

from __future__ import annotations

import re
import sys
import urllib.parse
from pathlib import Path
from typing import Iterator

from markdown import ROOT, anchors, documents, shown, taken_apart

LINK = re.compile(r"\[(?:[^]\\]|\\.)*\]\(<?([^)\s>]+)>?(?: \"[^\"]*\")?\)")


def links(path: Path) -> Iterator[str]:
    prose, _ = taken_apart(path.read_text(encoding="utf-8"))
    for line in prose:
        if line.startswith("    "):
            continue
        # Code in a link's text stays; elsewhere it holds no links.
        yield from LINK.findall(re.sub(r"(?<!\[)`[^`]*`(?!\])", "", line))


def trouble_with(path: Path, link: str) -> str:
    target, _, anchor = urllib.parse.unquote(link).partition("#")
    led_to = (path.parent / target).resolve() if target else path
    if not led_to.exists():
        return "there is no such file"
    if not led_to.is_relative_to(ROOT):
        return "leads out of the project"
    if anchor:
        prose, _ = taken_apart(led_to.read_text(encoding="utf-8"))
        if anchor not in anchors(prose):
            return "there is no such anchor"
    return ""


def main() -> int:
    count = 0
    troubles = 0
    for path in documents():
        for link in links(path):
            if re.match(r"[a-z]+:", link):
                continue
            count += 1
            trouble = trouble_with(path, link)
            if trouble:
                troubles += 1
                print(f"{shown(path)}: {link}: {trouble}")
    print(f"{count} links, {troubles} that lead nowhere")
    return 1 if troubles or not count else 0


if __name__ == "__main__":
    sys.exit(main())
