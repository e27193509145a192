#!/usr/bin/env python3
"""Writes the reference pages, docs/reference/, a page for each class.

    scripts/reference.py --tool build/release/bin/kvarta16           writes the pages
    scripts/reference.py --tool build/release/bin/kvarta16 --check   fails where they differ

Names, order, passing and defaults of the members come from the catalogue that the tool prints; the
words come from the comments of the class headers; the examples are the files of docs/examples/. A
member without a comment and a class without an example are errors.
"""

from __future__ import annotations

import argparse
import difflib
import json
import re
import subprocess
import sys
import unicodedata
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any, Iterable, Iterator, Optional

ROOT = Path(__file__).resolve().parent.parent
PAGES = ROOT / "docs" / "reference"
EXAMPLES = ROOT / "docs" / "examples"
VALUE_HEADER = ROOT / "src" / "frame" / "value.h"
PRIVATE_CLASSES = ("ClsCzyśćBazęDAO", "B_WinWer")
# A declaration that is longer gets a line for each parameter.
LONGEST_DECLARATION = 88
RENEWING = "to renew them: scripts/reference.py --tool PATH-OF-kvarta16"

INSTANCING = {
    "global": "global: each thread has one instance, made at its first use; C++ callers also have "
              "the members by their bare names in `kvarta16::bare`",
    "creatable": "creatable: a caller creates its own objects",
    "private": "private: in no type library; reached by its header, by `kvarta16 rpc` and by "
               "`kvarta16 call`",
}
KINDS = {"method": "", "property get": "property, read", "property let": "property, write",
         "event": "event"}


class Trouble(Exception):
    """What the pages cannot be made of, for the person who has to put it right."""


# ---- Class headers ----------------------------------------------------------------------------


@dataclass
class Comment:
    """A comment of a header, and the names of all that it stands above."""

    lines: list[str]
    names: list[str] = field(default_factory=list)


@dataclass
class Declaration:
    name: str
    text: str
    comment: Optional[Comment]
    # What a comment with an empty line behind it says of all that follows.
    common: list[Comment]


def banner_of(source: str) -> list[str]:
    """The comment at the head of a file, without its marks."""
    lines = []
    for line in source.splitlines():
        if not line.startswith("//"):
            break
        lines.append(line[2:].removeprefix(" "))
    return lines


def class_body(source: str, name: str) -> list[str]:
    """The public lines of a class."""
    start = re.search(rf"^class (?:\w+ )?{re.escape(name)}(?: final)? \{{$", source, re.MULTILINE)
    if start is None:
        raise Trouble(f"no class {name} in its header")
    body = source[start.end():]
    body = body[:body.index("\n};")]
    private = re.search(r"^ *private:$", body, re.MULTILINE)
    return (body[:private.start()] if private else body).splitlines()


def without_body(declaration: str) -> str:
    """A declaration as a line, its body and what only the compiler reads taken off."""
    text = " ".join(declaration.split())
    text = text.replace("[[nodiscard]] ", "").replace("KVARTA16_EXPORT ", "")
    inline = re.search(r"\)(?: const)?(?: noexcept)? (\{.*)$", text)
    return text[:inline.start(1)].rstrip() + ";" if inline else text


def name_of(declaration: str) -> str:
    """What a declaration declares; "" for types, constructors and operators."""
    if re.search(r"^enum\b|\boperator\b|~|= (?:default|delete);", declaration):
        return ""
    function = re.search(r"(\w+)\(", declaration)
    if function and not declaration.startswith("std::function"):
        return function[1]
    variable = re.search(r"(\w+)(?: = [^;]*)?;$", declaration)
    if variable is None:
        raise Trouble(f"not understood: {declaration}")
    return variable[1]


class HeaderReader:
    """Reads declarations with their comments.

    A comment belongs to the declarations right below it, up to an empty line or the next comment.
    One with an empty line behind it is about all that follows, up to the next of its kind or to a
    line "// ---- title ---". A comment at the end of a line is that declaration's own.
    """

    def __init__(self) -> None:
        self.declarations: list[Declaration] = []
        self._comment: Optional[Comment] = None
        self._common: list[Comment] = []
        self._unfinished = ""

    def read(self, lines: Iterable[str]) -> list[Declaration]:
        for line in lines:
            self._take(line.strip(), line)
        if self._unfinished:
            raise Trouble(f"a declaration without an end: {self._unfinished}")
        return self.declarations

    def _take(self, stripped: str, line: str) -> None:
        if self._unfinished:
            self._take_code(stripped)
        elif not stripped:
            self._end_run()
        elif stripped.startswith("// ----"):
            self._end_run()
            self._common = []
        elif stripped.startswith("//"):
            self._take_comment(line.split("//", 1)[1].removeprefix(" "))
        elif stripped not in ("public:",):
            self._take_code(stripped)

    def _end_run(self) -> None:
        if self._comment is not None and not self._comment.names:
            self._common = [self._comment]
        self._comment = None

    def _take_comment(self, text: str) -> None:
        if self._comment is None or self._comment.names:
            self._comment = Comment([])
        self._comment.lines.append(text)

    def _take_code(self, code: str) -> None:
        code, _, trailing = code.partition("  // ")
        self._unfinished = f"{self._unfinished} {code}".strip()
        text = self._unfinished
        whole = text.endswith((";", "}")) and text.count("{") == text.count("}")
        if not whole or text.count("(") != text.count(")"):
            return
        self._unfinished = ""
        declaration = without_body(text)
        name = name_of(declaration)
        if not name:
            self._comment = None
            return
        own = trailing[:1].upper() + trailing[1:]
        comment = Comment([own]) if own else self._comment
        if comment is not None and name not in comment.names:
            comment.names.append(name)
        for common in self._common:
            if name not in common.names:
                common.names.append(name)
        self.declarations.append(Declaration(name, declaration, comment, list(self._common)))


def header_of(name: str) -> Path:
    """The header that has the table of a class."""
    for path in sorted((ROOT / "src").glob("*/*.h")):
        if f"\nstruct ClassTable<{name}> " in path.read_text(encoding="utf-8"):
            return path
    raise Trouble(f"no header has the table of {name}")


# ---- Markdown ---------------------------------------------------------------------------------


def ascii_name(name: str) -> str:
    """A name without Polish letters, for files and anchors."""
    plain = name.translate(str.maketrans("łŁ", "lL"))
    return unicodedata.normalize("NFD", plain).encode("ascii", "ignore").decode("ascii")


def code_block(language: str, lines: Iterable[str]) -> list[str]:
    return [f"```{language}", *lines, "```", ""]


def cell(text: str) -> str:
    return text.replace("|", "\\|")


class Prose:
    """Turns the text of comments into Markdown, names of members of the page into links."""

    def __init__(self, members: Iterable[str], language: str = "text") -> None:
        # Names that could as well be plain words are left alone.
        self._members = {name for name in members if re.search(r"[a-z][A-Z]|\w\d|_", name)}
        self._language = language

    def render(self, lines: list[str]) -> list[str]:
        page: list[str] = []
        for indented, group in self._groups(lines):
            if indented:
                page += code_block(self._language, (line[2:] for line in group))
            else:
                page += [*(self._line(line) for line in group), ""]
        return page

    @staticmethod
    def _groups(lines: list[str]) -> Iterator[tuple[bool, list[str]]]:
        """Paragraphs, and blocks of indented lines with the empty lines inside them."""
        group: list[str] = []
        indented = False
        for line in lines:
            if not line and not indented:
                if group:
                    yield False, group
                group = []
                continue
            is_indented = line.startswith("  ") if line else indented
            if is_indented != indented and group:
                yield indented, "\n".join(group).rstrip().split("\n")
                group = []
            indented = is_indented
            group.append(line)
        if "".join(group):
            yield indented, "\n".join(group).rstrip().split("\n")

    def _line(self, line: str) -> str:
        parts = re.split(r"(`[^`]*`)", line)
        text = "".join(part if part.startswith("`") else self._plain(part) for part in parts)
        # Nothing but prose: no list or heading begins where a line happens to.
        text = re.sub(r"^([-+>#=~])", r"\\\1", text)
        return re.sub(r"^(\d+)([.)]) ", r"\1\\\2 ", text)

    def _plain(self, text: str) -> str:
        return re.sub(r"\w+|[^\w]", self._token, text)

    def _token(self, found: re.Match[str]) -> str:
        token = found[0]
        if token in self._members:
            return f"[`{token}`](#{ascii_name(token)})"
        return re.sub(r"([\\*_<>\[\]`])", r"\\\1", token)


def laid_out(declaration: str) -> list[str]:
    """A declaration in lines that fit a page."""
    if len(declaration) <= LONGEST_DECLARATION or "(" not in declaration:
        return [declaration]
    head, _, rest = declaration.partition("(")
    parameters, _, tail = rest.rpartition(")")
    # Commas between < and > or parentheses part no parameters.
    parts = re.findall(r"(?:[^,<(]|<[^>]*>|\([^)]*\))+", parameters)
    lines = [f"    {part.strip()}," for part in parts]
    lines[-1] = lines[-1][:-1] + f"){tail}"
    return [head + "(", *lines]


def default_text(value: dict[str, Any]) -> str:
    """The value of an argument that is left out, as the catalogue gives it: {"Long": 0}."""
    (kind, held), = value.items()
    if kind == "String":
        return json.dumps(held, ensure_ascii=False)
    if kind == "Boolean":
        return "true" if held else "false"
    if kind == "Currency":
        return str(held).rstrip("0").rstrip(".")
    return kind.lower() if held is None else str(held)


def parameter_text(parameter: dict[str, Any]) -> str:
    words = "optional " if parameter["optional"] else ""
    words += "by reference " if parameter["passing"] == "reference" else ""
    text = f"{words}{parameter['name']}: {parameter['type']}"
    if parameter["optional"] and "default" in parameter:
        text += f" = {default_text(parameter['default'])}"
    return text


def late_bound(member: dict[str, Any]) -> list[str]:
    """The signature as the catalogue knows it."""
    parameters = [parameter_text(each) for each in member.get("parameters", [])]
    result = f": {member['result']}" if member.get("result") else ""
    name = member["name"]
    if member["kind"] == "property get":
        return [f"{name}{result}"]
    opening = f"{name} = (" if member["kind"] == "property let" else f"{name}("
    line = opening + ", ".join(parameters) + ")" + result
    if len(line) <= LONGEST_DECLARATION:
        return [line]
    lines = [f"    {each}," for each in parameters]
    lines[-1] = f"{lines[-1][:-1]}){result}"
    return [opening, *lines]


# ---- Examples ---------------------------------------------------------------------------------


def example_page(name: str) -> list[str]:
    """The example of a class: its remarks as prose, its lines as they are."""
    path = EXAMPLES / f"{ascii_name(name)}.rpc"
    if not path.is_file():
        raise Trouble(f"{name} has no example: {path.relative_to(ROOT)}")
    page: list[str] = []
    exchange: list[str] = []
    for line in [*path.read_text(encoding="utf-8").splitlines(), "#"]:
        if line.startswith("#"):
            if exchange:
                page += ["", *code_block("text", exchange)]
            exchange = []
            page.append(line.removeprefix("#").strip())
        elif line:
            exchange.append(line)
    return [*page, ""]


# ---- Pages ------------------------------------------------------------------------------------


@dataclass
class Entry:
    """A member on its page."""

    info: dict[str, Any]
    declarations: list[Declaration]

    @property
    def name(self) -> str:
        return str(self.info["name"])

    @property
    def anchor(self) -> str:
        return ascii_name(self.name) + ("-write" if self.info["kind"] == "property let" else "")


def of_this_kind(declaration: Declaration, kind: str) -> bool:
    """Whether a declaration is the reading or the writing of a property; a variable is both."""
    if kind in ("method", "event") or "(" not in declaration.text:
        return True
    takes_nothing = "()" in declaration.text
    return takes_nothing if kind == "property get" else not takes_nothing


def entries_of(infos: list[dict[str, Any]], declarations: list[Declaration],
               owner: str) -> list[Entry]:
    entries = []
    for info in infos:
        found = [each for each in declarations
                 if each.name == info["name"] and of_this_kind(each, info["kind"])]
        if not found:
            raise Trouble(f"{owner}.{info['name']} is not declared in the header")
        if all(each.comment is None for each in found):
            raise Trouble(f"{owner}.{info['name']} has no comment in the header")
        entries.append(Entry(info, found))
    return entries


def listed(names: list[str]) -> str:
    """`A`, `B` and `C`, each a link."""
    links = [f"[`{name}`](#{ascii_name(name)})" for name in names]
    return links[0] if len(links) == 1 else ", ".join(links[:-1]) + " and " + links[-1]


def common_page(entries: list[Entry], prose: Prose) -> list[str]:
    """What the header says of several members at once."""
    page: list[str] = []
    told: list[Comment] = []
    shown = {entry.name for entry in entries}
    for declaration in (each for entry in entries for each in entry.declarations):
        for common in declaration.common:
            if common in told:
                continue
            told.append(common)
            names = [name for name in common.names if name in shown]
            page += [f'<a id="common-{len(told)}"></a>', "", f"**For {listed(names)}**", ""]
            page += prose.render(common.lines)
    return ["## Common to several members", "", *page] if page else []


def commons_in_order(entries: list[Entry]) -> list[Comment]:
    order: list[Comment] = []
    for entry in entries:
        for declaration in entry.declarations:
            order += [each for each in declaration.common if each not in order]
    return order


def member_page(entry: Entry, commons: list[Comment], prose: Prose) -> list[str]:
    kind = KINDS[entry.info["kind"]]
    title = f"### {entry.name}" + (f" ({kind})" if kind else "")
    page = [f'<a id="{entry.anchor}"></a>', "", title, ""]
    page += code_block("cpp", (line for each in entry.declarations for line in laid_out(each.text)))
    page += code_block("text", entry.info.get("line") or late_bound(entry.info))
    told: list[Comment] = []
    for declaration in entry.declarations:
        comment = declaration.comment
        if comment is None or comment in told:
            continue
        told.append(comment)
        if len(comment.names) > 1:
            page += [f"For {listed(comment.names)}:", ""]
        page += prose.render(comment.lines)
    numbers = sorted({commons.index(common) + 1 for each in entry.declarations
                      for common in each.common})
    for number in numbers:
        page += [f"What holds for it and its sisters stands [above](#common-{number}).", ""]
    return page


def members_table(entries: list[Entry]) -> list[str]:
    page = ["| member | result |", "| --- | --- |"]
    for entry in entries:
        kind = KINDS[entry.info["kind"]]
        label = f"[`{entry.name}`](#{entry.anchor})" + (f" ({kind})" if kind else "")
        page.append(f"| {label} | {cell(entry.info.get('result') or '')} |")
    return [*page, ""]


def stamp(header: Path) -> str:
    sources = f"the catalogue, {header.relative_to(ROOT)} and docs/examples"
    return f"<!-- Generated by scripts/reference.py from {sources}: changes belong there. -->"


def page_of(title: str, header: Path, facts: list[tuple[str, str]], entries: list[Entry],
            events: list[Entry]) -> str:
    source = header.read_text(encoding="utf-8")
    names = [entry.name for entry in [*entries, *events]]
    prose = Prose(names)
    page = [stamp(header), f"# {title}", "", "[All classes](README.md)", ""]
    page += Prose(names, "cpp").render(banner_of(source))
    page += ["| | |", "| --- | --- |", *(f"| {name} | {cell(text)} |" for name, text in facts), ""]
    page += ["## Members in the order of the interface", "", *members_table(entries)]
    if events:
        page += ["Events:", "", *members_table(events)]
    page += ["## Example", "", *example_page(title)]
    page += common_page(entries, prose)
    page += ["## The members", ""]
    commons = commons_in_order(entries)
    for entry in [*entries, *events]:
        page += member_page(entry, commons, prose)
    text = re.sub(r"\n{3,}", "\n\n", "\n".join(line.rstrip() for line in page))
    return text.rstrip() + "\n"


def class_page(info: dict[str, Any]) -> str:
    name = info["name"]
    header = header_of(name)
    declarations = HeaderReader().read(class_body(header.read_text(encoding="utf-8"), name))
    facts = [("header", f"`<kvarta16/{header.relative_to(ROOT / 'src').as_posix()}>`"),
             ("instancing", INSTANCING[info["instancing"]])]
    if info["class_id"]:
        facts.append(("class", f"`{{{info['class_id'].strip('{}')}}}`"))
        facts.append(("interface",
                      f"`{{{info['interface_id'].strip('{}')}}}` `{info['interface']}`"))
    events = info.get("events")
    if events:
        facts.append(("event interface", f"`{events['interface']}`"))
    raised = [{**each, "kind": "event"} for each in events["events"]] if events else []
    return page_of(name, header, facts, entries_of(info["members"], declarations, name),
                   entries_of(raised, declarations, name))


def value_page(listing: str) -> str:
    """The primitives of the value layer, which are functions and no class."""
    source = VALUE_HEADER.read_text(encoding="utf-8")
    inside = source[source.index("\nnamespace kvarta16 {\n") + len("\nnamespace kvarta16 {\n"):]
    declarations = HeaderReader().read(
        line for line in inside[:inside.index("\n}  // namespace kvarta16")].splitlines())
    infos = []
    for line in (each.strip() for each in listing.splitlines()[1:]):
        if line:
            infos.append({"name": line.partition("(")[0], "kind": "method", "line": [line],
                          "result": line.rpartition(": ")[2]})
    facts = [("header", "`<kvarta16/frame/value.h>`"),
             ("late-bound", "`value.NAME` in `kvarta16 rpc` and `kvarta16 call`")]
    return page_of("value", VALUE_HEADER, facts, entries_of(infos, declarations, "value"), [])


def first_sentence(header: Path) -> str:
    """What a class is for, from the first words of its header."""
    words = []
    for line in banner_of(header.read_text(encoding="utf-8")):
        if not line or line.startswith(" "):
            break
        words.append(line)
    return re.split(r"(?<=\.) ", " ".join(words))[0].rstrip(":")


INDEX_HEAD = """\
<!-- Generated by scripts/reference.py from the catalogue and the headers: changes belong there. -->
# Reference

A page for each class, with every member in the order of its interface: its C++ declaration, its
late-bound signature, and what it does. The values that cross the interface, and the functions on
which all classes rest, are on the page [value](value.md).

How to read a member:

- **By reference** is how a late-bound caller passes an argument. Whether it is written is shown by
  the C++ declaration: a parameter with `&` and no `const` may be, any other is not. `args` of an
  answer of `kvarta16 rpc` are the arguments as they stand after the call.
- **Strict**: a failure passes to the caller; the numbers behind it are those that can come: 5
  a wrong argument, 6 out of range, 9 no such entry, 11 division by zero, 13 a wrong kind of value,
  94 Null. **Tolerant**: a step that fails is passed over. **Guarded**: a failure ends the method,
  and a prepared result comes back. Under all three an argument that cannot be coerced is refused
  before the method starts.
- **Currency** is exact to ten-thousandths, **Date** a count of days since 1899-12-30, **Boolean**
  -1 or 0, **Integer** 16 bits and **Long** 32. Empty, Null and an argument left out are three
  different values of a Variant.

Each example is a session of `kvarta16 rpc`: `>` is a line sent, `<` the line that comes back. The
tests replay them all. To do it by hand in an empty folder, with the path of this project for
FOLDER:

```sh
sed -n 's/^> //p' FOLDER/docs/examples/Kadry.rpc | KVARTA16_REGISTRY=registry.reg kvarta16 rpc
```

"""


def index_page(classes: list[dict[str, Any]]) -> str:
    rows = ["| class | instancing | members | room | what for |", "| --- | --- | --- | --- | --- |"]
    for info in classes:
        header = header_of(info["name"])
        purpose = Prose([]).render([first_sentence(header)])[0]
        rows.append(f"| [`{info['name']}`]({ascii_name(info['name'])}.md) | {info['instancing']} | "
                    f"{len(info['members'])} | `src/{header.parent.name}` | {cell(purpose)} |")
    purpose = Prose([]).render([first_sentence(VALUE_HEADER)])[0]
    rows.append(f"| [`value`](value.md) | functions | 12 | `src/frame` | {cell(purpose)} |")
    return INDEX_HEAD + "\n".join(rows) + "\n"


# ---- The tool and the files -------------------------------------------------------------------


def ask(tool: Path, *arguments: str) -> str:
    done = subprocess.run([str(tool), *arguments], capture_output=True, encoding="utf-8",
                          check=False)
    if done.returncode != 0:
        raise Trouble(f"{tool} {' '.join(arguments)}: {done.stderr.strip()}")
    return done.stdout


def all_pages(tool: Path) -> dict[str, str]:
    classes: list[dict[str, Any]] = json.loads(ask(tool, "catalogue", "--json"))["classes"]
    for name in PRIVATE_CLASSES:
        classes += json.loads(ask(tool, "catalogue", "--json", name))["classes"]
    pages = {f"{ascii_name(info['name'])}.md": class_page(info) for info in classes}
    pages["value.md"] = value_page(ask(tool, "catalogue", "value"))
    pages["README.md"] = index_page(classes)
    return pages


def write(pages: dict[str, str]) -> int:
    PAGES.mkdir(parents=True, exist_ok=True)
    for path in set(PAGES.glob("*.md")) - {PAGES / name for name in pages}:
        path.unlink()
    for name, text in pages.items():
        (PAGES / name).write_text(text, encoding="utf-8")
    return 0


def check(pages: dict[str, str]) -> int:
    differences: list[str] = []
    for name in sorted(set(pages) | {path.name for path in PAGES.glob("*.md")}):
        path = PAGES / name
        kept = path.read_text(encoding="utf-8") if path.is_file() else ""
        differences += difflib.unified_diff(
            kept.splitlines(), pages.get(name, "").splitlines(), f"docs/reference/{name}",
            "as it would be now", lineterm="")
    if differences:
        print("\n".join(differences[:60]))
        print(f"\nThe reference pages are not those of this library; {RENEWING}")
    return 1 if differences else 0


def main() -> int:
    arguments = argparse.ArgumentParser(description="Writes the pages of docs/reference.")
    arguments.add_argument("--tool", type=Path, required=True, help="the built command kvarta16")
    arguments.add_argument("--check", action="store_true",
                           help="write nothing; fail where the pages differ")
    given = arguments.parse_args()
    try:
        pages = all_pages(given.tool)
    except Trouble as trouble:
        print(f"reference.py: {trouble}", file=sys.stderr)
        return 1
    return check(pages) if given.check else write(pages)


if __name__ == "__main__":
    sys.exit(main())
