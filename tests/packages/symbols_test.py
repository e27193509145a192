"""What the shared libraries of an installation show: all that the headers mark, and nothing else.

symbols_test.py PREFIX SOURCES
"""

import pathlib
import re
import subprocess
import sys

prefix, sources = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
mark = "KVARTA16_EXPORT"
faults = []


def marked_names():
    """The names of the classes and of the functions that bear the mark, but for those of an
    adapter that is not installed."""
    classes, functions = set(), set()
    for header in sources.glob("**/*.h"):
        adapter = re.search(r"/platform/(\w+)/", str(header))
        if header.name == "export.h" or (
                adapter and not any(library.stem == "libkvarta16_" + adapter.group(1)
                                    for library in libraries)):
            continue
        text = re.sub(r"//.*", "", header.read_text(encoding="utf-8"))
        classes |= set(re.findall(rf"\b(?:class|struct) {mark} (\w+)", text))
        for declaration in re.findall(rf"(?<!class )(?<!struct ){mark} ([^(;]*)\(", text):
            functions.add(declaration.split()[-1].lstrip("&*"))
    return classes, functions


def shown_names(library):
    """Each strong symbol that the library defines and shows, without its namespaces, templates
    and arguments: a function's name, or a class's with its member's."""
    listing = subprocess.run(["nm", "--dynamic", "--demangle", "--defined-only", str(library)],
                             capture_output=True, text=True, encoding="utf-8", check=True)
    for line in listing.stdout.splitlines():
        kind, name = line[17:].split(" ", 1)
        if kind in "TDBR":
            yield name


libraries = sorted(prefix.glob("lib*/**/libkvarta16*.so"))
if not libraries:
    faults.append(f"no shared library below {prefix}")
classes, functions = marked_names()
if len(classes) < 60 or len(functions) < 80:
    faults.append(f"only {len(classes)} classes and {len(functions)} functions found in the headers")

shown_functions, count = set(), 0
for library in libraries:
    for symbol in shown_names(library):
        count += 1
        words = re.sub(r"\(.*", "", symbol.replace("(anonymous namespace)", "unnamed"))
        path = [re.sub(r"\[abi:.*?\]", "", word) for word in words.split("::")]
        if path[0] == "kvarta16" and classes & set(path[1:-1]):
            continue
        if path[0] == "kvarta16" and path[-1] in functions:
            shown_functions.add(path[-1])
            continue
        faults.append(f"{library.name} shows {symbol}")
for name in sorted(functions - shown_functions - {"instance"}):  # a template
    faults.append(f"no library shows {name}, which a header marks")

for fault in faults:
    print(fault, file=sys.stderr)
print(f"{count} symbols in {len(libraries)} libraries, {len(faults)} faults")
sys.exit(1 if faults else 0)
