"""The manual page and the completion against the command itself: each command and each option that
its --help tells stands in both, where it belongs, and they tell of no other.

words_test.py TOOL ROOT
"""

import pathlib
import re
import shutil
import subprocess
import sys

tool, root = sys.argv[1], pathlib.Path(sys.argv[2])
faults = []


def help_of(command):
    result = subprocess.run([tool, *command, "--help"], capture_output=True, text=True,
                            encoding="utf-8", check=True)
    return result.stdout


def section_of(text, title):
    """The lines below a heading of a help text, down to the next empty one."""
    found = re.search(rf"^{title}:\n((?:.+\n)*)", text, re.MULTILINE)
    return found.group(1) if found else ""


def subcommands_of(text):
    return re.findall(r"^  ([a-z]\w*)", section_of(text, "Subcommands"), re.MULTILINE)


def options_of(text):
    return set(re.findall(r"^  (?:-\w,)?(--[a-z0-9-]+)", section_of(text, "Options"),
                          re.MULTILINE))


def walk(command=()):
    """Each command with its options and the commands of its own."""
    text = help_of(command)
    own = subcommands_of(text)
    yield command, options_of(text), own
    for name in own:
        yield from walk((*command, name))


def manual_items(page, commands):
    """The entry of each command in the manual page; one that is no command goes by its line."""
    items = {}
    for entry in re.split(r"^\.It Cm ", page, flags=re.MULTILINE)[1:]:
        words = entry.split("\n")[0].split()
        named = [tuple(words[:count]) for count in (2, 1) if tuple(words[:count]) in commands]
        items[named[0] if named else tuple(words)] = re.split(r"^\.S[sh] ", entry,
                                                              flags=re.MULTILINE)[0]
    return items


def flags_of(text):
    return {"-" + flag for flag in re.findall(r"\bFl (-[a-z0-9-]+)", text)}


def check_manual(commands):
    page = (root / "packaging/kvarta16.1").read_text(encoding="utf-8")
    told = {command for command, _, own in commands if command and not own}
    items = manual_items(page, told)
    for command in sorted(set(items) ^ told):
        faults.append(f"only one of the manual page and the tool has the command {' '.join(command)}")
    general = flags_of(page[:page.index(".Ss Statutory tables")])
    if general != commands[0][1]:
        faults.append(f"general options: {commands[0][1]} and in the manual page {general}")
    for command, options, _ in commands:
        if command in items:
            for option in sorted((options - {"--help"}) ^ flags_of(items[command])):
                faults.append(f"only one of the manual page and the tool has {' '.join(command)} {option}")
    check_environment(page)
    check_rendering()


def check_environment(page):
    """What of the environment the library and the tool read by names of their own."""
    told = set(re.findall(r"^\.It Ev (KVARTA16_\w+)", page, re.MULTILINE))
    read = set()
    for source in [*root.glob("src/**/*.cpp"), *root.glob("tools/**/*.cpp")]:
        read |= set(re.findall(r'"(KVARTA16_[A-Z0-9_]+)"', source.read_text(encoding="utf-8")))
    for name in sorted(told ^ read):
        faults.append(f"only one of the manual page and the sources has the variable {name}")


def check_rendering():
    if not shutil.which("groff"):
        print("groff is not here: the manual page is not rendered")
        return
    page = root / "packaging/kvarta16.1"
    result = subprocess.run(["groff", "-mdoc", "-Tutf8", "-P-cbou", "-wall", str(page)],
                            capture_output=True, text=True, encoding="utf-8")
    if result.returncode or result.stderr:
        faults.append("groff of the manual page: " + result.stderr)
    if "\nEXIT STATUS\n" not in result.stdout:
        faults.append("the rendered manual page has no EXIT STATUS")


def check_completion(commands):
    script = root / "packaging/kvarta16.bash"
    for command, options, own in commands:
        words = subprocess.run(["bash", "-c", 'source "$0" && _kvarta16_words "$1"', str(script),
                                "/".join(command)], capture_output=True, text=True, check=True)
        offered, wanted = set(words.stdout.split()), options | set(own)
        for word in sorted(offered ^ wanted):
            faults.append(f"completion of \"{' '.join(command)}\": {word} is in one of the two alone")
    whole = subprocess.run(
        ["bash", "-c", 'source "$0"; COMP_WORDS=(kvarta16 db cl); COMP_CWORD=2; _kvarta16; '
         'echo "${COMPREPLY[*]}"; complete -p kvarta16', str(script)],
        capture_output=True, text=True)
    if whole.stdout.splitlines()[:1] != ["clean"] or "_kvarta16" not in whole.stdout:
        faults.append("completing \"kvarta16 db cl\": " + whole.stdout + whole.stderr)


all_commands = list(walk())
if len(all_commands) < 30:
    faults.append(f"only {len(all_commands)} commands found")
check_manual(all_commands)
check_completion(all_commands)
for fault in faults:
    print(fault, file=sys.stderr)
print(f"{len(all_commands)} commands, {len(faults)} faults")
sys.exit(1 if faults else 0)
