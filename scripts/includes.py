"""Reads the #include lines of C++ sources and finds the files they mean."""

import re
from dataclasses import dataclass
from pathlib import Path

SUFFIXES = {".h", ".cpp"}

# A comment, or a text that only looks as if it held one; the second kind is kept.
TOKEN = re.compile(r"//[^\n]*|/\*.*?\*/|\"(?:\\.|[^\"\\\n])*\"|'(?:\\.|[^'\\\n])*'", re.DOTALL)
INCLUDE = re.compile(r"^[ \t]*#[ \t]*include[ \t]*([\"<])([^\">\n]+)[\">]", re.MULTILINE)


@dataclass(frozen=True)
class Include:
    line: int
    name: str
    quoted: bool


def without_comments(text):
    """The text with its comments blanked out; every line keeps its number."""

    def blank(match):
        token = match.group()
        return "\n" * token.count("\n") + " " if token[0] == "/" else token

    return TOKEN.sub(blank, text)


def includes_of(path):
    """The #include lines of a file, in order."""
    text = without_comments(Path(path).read_text(encoding="utf-8", errors="replace"))
    found, line, place = [], 1, 0
    for match in INCLUDE.finditer(text):
        line += text.count("\n", place, match.start(2))
        place = match.start(2)
        found.append(Include(line, match.group(2), match.group(1) == '"'))
    return found


def sources_under(folder):
    """Every header and source file under a folder, sorted."""
    return sorted(path for path in Path(folder).rglob("*") if path.suffix in SUFFIXES)


def resolve(include, includer, root):
    """The file under root that an include means, or None; beside the includer comes first."""
    places = [includer.parent, root] if include.quoted else [root]
    for place in places:
        path = (place / include.name).resolve()
        if path.is_file() and path.is_relative_to(root.resolve()):
            return path
    return None
