"""The source tree as the house checks see it: its files, their directives and their includes."""

import re
import sys
from pathlib import Path

SOURCE_FOLDERS = ("src", "sim", "tests", "bench", "fuzz")
SOURCE_ENDINGS = (".h", ".cpp")

_COMMENT_OR_LITERAL = re.compile(
    r"""
      //[^\n]* | /\*.*?\*/
    | R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"
    | "(?:\\.|[^"\\\n])*"
    | (?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'   # not the quote between the digits of a number
    """,
    re.DOTALL | re.VERBOSE,
)
_INCLUDE = re.compile(r'#\s*include\s*(["<])([^">]+)[">]')


def root_from_arguments():
    """The tree named on the command line, else the one that this script lies in."""
    return Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]


def source_files(root):
    """Every source and header file of the tree, sorted."""
    return sorted(
        path
        for folder in SOURCE_FOLDERS
        for path in (root / folder).rglob("*")
        if path.suffix in SOURCE_ENDINGS and path.is_file()
    )


def without_comments(text):
    """C++ text with its comments, raw strings and characters blanked; the lines keep their numbers."""

    def blank(match):
        found = match.group()
        return found if found.startswith('"') else "\n" * found.count("\n") or " "

    return _COMMENT_OR_LITERAL.sub(blank, text)


def directives(path):
    """(line number, text) of every preprocessor directive, comments blanked and continued lines joined."""
    lines = without_comments(path.read_text(encoding="utf-8")).split("\n")
    number = 0
    while number < len(lines):
        first, line = number, lines[number]
        while line.endswith("\\") and number + 1 < len(lines):
            number += 1
            line = line[:-1] + lines[number]
        if line.lstrip().startswith("#"):
            yield first + 1, line.strip()
        number += 1


def includes(path):
    """(line number, name, quoted) of every include of the file."""
    for number, line in directives(path):
        match = _INCLUDE.match(line)
        if match:
            yield number, match.group(2), match.group(1) == '"'


def resolve(root, includer, name):
    """The file of the tree that an include means, or None when it lies outside."""
    for folder in (includer.parent, root / "src", root):
        candidate = (folder / name).resolve()
        if candidate.is_file() and candidate.is_relative_to(root):
            return candidate
    return None


def closure(root, source):
    """`source` and every file of the tree that it includes, directly or through another."""
    found, waiting = set(), [source]
    while waiting:
        path = waiting.pop()
        if path in found:
            continue
        found.add(path)
        targets = (resolve(root, path, name) for _, name, _ in includes(path))
        waiting.extend(target for target in targets if target)
    return found


def report(name, complaints):
    """Prints the complaints and ends the process with the check's exit code."""
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    print(f"{name}: {len(complaints)} complaint(s)" if complaints else f"{name}: clean")
    sys.exit(1 if complaints else 0)
