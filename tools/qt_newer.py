#!/usr/bin/env python3
"""Writes tools/qt-newer-than-5.6.txt: what Qt's documentation says was introduced after 5.6.

    qt_newer.py DOC_FOLDER > tools/qt-newer-than-5.6.txt

DOC_FOLDER is where the documentation of Qt 5.15 lies as HTML (Debian: the package qtbase5-doc-html,
/usr/share/qt5/doc). A line is a version, a tab, and a class, a function with the types of its arguments, or a value of
an enum.
"""

import html
import pathlib
import re
import sys

MODULES = ("qtcore", "qtgui", "qtwidgets", "qtnetwork")
NEWER = re.compile(r"5\.(?:[7-9]|1[0-9])\b")


def text_of(fragment):
    return re.sub(r"\s+", " ", html.unescape(re.sub(r"<[^>]*>", "", fragment))).strip()


def functions(page):
    """The functions of a page with the version each was introduced in. Overloads may share what is said of them."""
    together = []
    for section in page.split('<h3 class="fn')[1:]:
        heading, _, rest = section.partition("</h3>")
        together.append(text_of(heading.partition(">")[2]))
        if not text_of(rest):
            continue
        introduced = re.search(r"introduced in Qt (5\.\d+)", text_of(rest))
        if introduced and NEWER.match(introduced.group(1)):
            for signature in together:
                yield introduced.group(1), signature
        together = []


def values(page):
    """Values of enums that say in which version they were added."""
    for row in re.findall(r"<tr><td[^>]*><code>((?:Qt|Q\w+)::\w+)</code></td>(.*?)</tr>", page, re.S):
        added = re.search(r"(?:introduced|added|since)[^.]{0,30}Qt (5\.\d+)", text_of(row[1]), re.I)
        if added and NEWER.match(added.group(1)):
            yield added.group(1), row[0]


def enums(page):
    """Enums that are new as a whole, or have been changed, with their values."""
    for section in page.split('<h3 class="fn"')[1:]:
        heading, _, rest = section.partition("</h3>")
        introduced = re.search(r"This enum was introduced(?: or modified)? in Qt (5\.\d+)", text_of(rest))
        if introduced and NEWER.match(introduced.group(1)):
            for value in re.findall(r"<code>((?:Qt|Q\w+)::\w+)</code></td>", rest):
                yield introduced.group(1), value


def classes(page):
    name = re.search(r"<title>(Q\w+) Class", page)
    since = re.search(r"Since:</td><td[^>]*>\s*Qt (5\.\d+)", page)
    if name and since and NEWER.match(since.group(1)):
        yield since.group(1), name.group(1)


def arguments(signature):
    """ "QString QString::chopped(int len) const" as "QString::chopped(int)"."""
    matched = re.match(r"(?:.*?[\s&*])??((?:\w+::)*(?:operator\W+|~?\w+))\s*\((.*)\)[^)]*$", signature)
    if not matched:
        return None
    types = []
    depth = 0
    current = ""
    for letter in matched.group(2) + ",":
        depth += letter in "<(["
        depth -= letter in ">)]"
        if letter == "," and depth == 0:
            types.append(current)
            current = ""
        else:
            current += letter
    plain = []
    for declared in types:
        declared = declared.split("=")[0].strip()
        # The argument's name goes, unless it is all there is.
        declared = re.sub(r"(?<=[\s&*>])\w+$", "", declared) if re.search(r"[\s&*>]\w+$", declared) else declared
        if declared:
            plain.append(re.sub(r"\s+", "", declared))
    return f"{matched.group(1)}({','.join(plain)})"


def main():
    lines = set()
    for module in MODULES:
        for path in sorted((pathlib.Path(sys.argv[1]) / module).glob("*.html")):
            page = path.read_text(encoding="utf-8", errors="replace")
            for version, name in [*values(page), *enums(page), *classes(page)]:
                lines.add((name, version))
            for version, signature in functions(page):
                name = arguments(signature)
                # Where nothing can be moved, it is copied.
                if name and not re.search(r"operator=\(\w+&&\)", name):
                    lines.add((name, version))
    for name, version in sorted(lines):
        print(f"{version}\t{name}")


main()
