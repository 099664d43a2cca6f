#!/usr/bin/env python3
"""Finds the parts of the host's API and of Qt that the plug-in uses, and checks that they are allowed.

    plugin_api.py --build BUILD check     compares them with docs/openmaya-checklist.md and qt-newer-than-5.6.txt
    plugin_api.py --build BUILD list      prints every host class, function and value that plugin/ uses
    plugin_api.py --build BUILD update    adds missing rows to the checklist, to be completed by hand, and drops
                                          rows that are no longer used

BUILD is a configured build folder, whose compile commands tell how the plug-in is compiled. Parses every file as C++14;
the only host headers are those in lightbox/include/maya. Needs clang's Python bindings (Debian: python3-clang); without
them "check" ends with status 77.
"""

import argparse
import concurrent.futures
import hashlib
import json
import pathlib
import re
import shlex
import subprocess
import sys

try:
    from clang import cindex
    from clang.cindex import CursorKind
except ImportError:
    print(f"{sys.executable} has no Python bindings of clang; Debian's python3-clang is for /usr/bin/python3")
    sys.exit(77)

SOURCE = pathlib.Path(__file__).resolve().parent.parent
PLUGIN = SOURCE / "plugin"
HOST = SOURCE / "lightbox/include/maya"
CHECKLIST = SOURCE / "docs/openmaya-checklist.md"
NEWER_QT = SOURCE / "tools/qt-newer-than-5.6.txt"
FUNCTIONS = (CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR, CursorKind.FUNCTION_DECL,
             CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE)
TYPES = (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL, CursorKind.ENUM_DECL, CursorKind.TYPEDEF_DECL,
         CursorKind.TYPE_ALIAS_DECL, CursorKind.CLASS_TEMPLATE)

ARRAYS = {"MString": "MStringArray", "int": "MIntArray", "double": "MDoubleArray", "unsigned long": "MCallbackIdArray",
          "MCallbackId": "MCallbackIdArray"}
# Newer in name only: the same line means the same to Qt 5.6.
SAME_IN_OLDER_QT = {"QThread::wait(QDeadlineTimer)",  # wait() without an argument, which waits for ever
                    # split() without a behaviour, and a QLatin1String that becomes a QString on the way
                    "QString::split(QChar,Qt::SplitBehavior,Qt::CaseSensitivity)",
                    "QStringList::contains(QLatin1String,Qt::CaseSensitivity)"}


def library():
    """Returns the folder of clang's own headers, of any installed version."""
    for clang in ("clang-14", "clang", "clang-15", "clang-16", "clang-19"):
        try:
            folder = subprocess.run([clang, "-print-resource-dir"], capture_output=True, text=True, check=True)
            return folder.stdout.strip()
        except (OSError, subprocess.CalledProcessError):
            continue
    # The bindings bring libclang and its headers, but not the program.
    for folder in sorted(pathlib.Path("/usr/lib").glob("llvm-*/lib/clang/*")):
        if (folder / "include/stddef.h").exists():
            return str(folder)
    print("The headers of clang are not installed (libclang-common-14-dev)")
    sys.exit(77)


# --- naming -------------------------------------------------------------------------------------------------------


def qualified(cursor):
    names = []
    inner = None
    while cursor and cursor.kind != CursorKind.TRANSLATION_UNIT:
        # The values of an enum without "class" are named without it.
        is_open = (cursor.kind == CursorKind.ENUM_DECL and inner is not None and not cursor.is_scoped_enum())
        inner = cursor
        if cursor.spelling and not is_open:
            names.insert(0, re.sub(r"<.*", "", cursor.spelling) if cursor.kind == CursorKind.CONSTRUCTOR
                         else cursor.spelling)
        cursor = cursor.semantic_parent
    return "::".join(names)


def default_of(argument):
    """The text of an argument's default value, or an empty one."""
    tokens = [token.spelling for token in argument.get_tokens()]
    return "".join(tokens[tokens.index("=") + 1:]) if "=" in tokens else ""


def signature(cursor):
    """Returns the name of a host function, class or value as in the checklist."""
    name = qualified(cursor)
    if cursor.kind not in FUNCTIONS:
        return name
    arguments = []
    for argument in cursor.get_arguments():
        default = default_of(argument)
        spelled = argument.type.spelling + (f" {argument.spelling}" if argument.spelling else "")
        arguments.append(spelled.replace("* ", "*").replace("& ", "&") + (f"={default}" if default else ""))
    result = ""
    if cursor.kind not in (CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR, CursorKind.CONVERSION_FUNCTION):
        result = cursor.result_type.spelling + " "
    return (("static " if cursor.is_static_method() else "") + result + f"{name}({', '.join(arguments)})" +
            (" const" if cursor.is_const_method() else ""))


def qt_signature(cursor):
    """Returns the name of a Qt function (with its argument types), class or value as in qt-newer-than-5.6.txt."""
    name = qualified(cursor)
    if cursor.kind not in FUNCTIONS:
        return name
    types = [argument.type.spelling for argument in cursor.get_arguments()]
    types = [re.sub(r"QFlags<(.*?)>", r"\1", t).replace(" ", "") for t in types]
    return f"{name}({','.join(types)})"


# --- reading the plug-in ------------------------------------------------------------------------------------------


class Unit:
    """One parsed file of the plug-in, and what it uses."""

    def __init__(self, path, arguments):
        self.path = path
        self.host = set()
        self.maybe = set()
        self.qt = set()
        self.faults = []
        self.names_version = False
        index = cindex.Index.create()
        self.unit = index.parse(str(path), args=arguments)
        for problem in self.unit.diagnostics:
            if problem.severity >= cindex.Diagnostic.Error:
                self.faults.append(f"{problem.location.file}:{problem.location.line}: {problem.spelling}")
        self.files = {str(path)}
        for included in self.unit.get_includes():
            name = str(pathlib.Path(included.include.name).resolve())
            if name.startswith(str(SOURCE)):
                self.files.add(name)
            if name == str(HOST / "MFnPlugin.h") and "#define MNoVersionString" not in path.read_text():
                self.names_version = True
        for cursor in self.unit.cursor.get_children():
            if self.is_below(cursor, PLUGIN):
                self.walk(cursor)

    @staticmethod
    def is_below(cursor, folder):
        file = cursor.location.file
        return file is not None and str(pathlib.Path(file.name).resolve()).startswith(str(folder))

    def walk(self, cursor):
        referenced = cursor.referenced
        if referenced is not None and referenced.kind == CursorKind.OVERLOADED_DECL_REF:
            self.note_candidates(referenced)
        elif referenced is not None and in_array(referenced):
            self.note_array(cursor, referenced)
        else:
            self.note(referenced)
        if cursor.kind == CursorKind.CXX_METHOD:
            for overridden in overridden_by(cursor):
                self.note(overridden)
        if cursor.kind in (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL) and not cursor.is_definition():
            outer = cursor.semantic_parent.spelling if cursor.semantic_parent else ""
            if re.match(r"M[A-Z0-9]\w+$", cursor.spelling) and outer in (str(self.path), "MHWRender"):
                self.faults.append(f"{cursor.location.file}:{cursor.location.line}: {cursor.spelling} belongs to the "
                                   "host; include <maya/MApiNamespace.h> instead of declaring it")
        for child in cursor.get_children():
            self.walk(child)

    def note(self, cursor):
        if cursor is None or cursor.kind.is_invalid() or cursor.location.file is None or is_implicit(cursor):
            return
        if cursor.kind not in FUNCTIONS + TYPES + (CursorKind.ENUM_CONSTANT_DECL, CursorKind.FIELD_DECL,
                                                   CursorKind.VAR_DECL):
            return
        file = cursor.location.file.name
        if "/include/maya/" in file:
            if re.search(r"(^|::)M\w|^operator", qualified(cursor)) and cursor.semantic_parent.kind not in FUNCTIONS:
                self.host.add((signature(cursor), pathlib.Path(file).name))
        elif "/Qt" in file or "/qt5/" in file:
            self.qt.add(qt_signature(cursor))


    def note_candidates(self, reference):
        """Notes all candidates of a call in a template. The linked library tells which one was meant."""
        for i in range(cindex.conf.lib.clang_getNumOverloadedDecls(reference)):
            candidate = cindex.conf.lib.clang_getOverloadedDecl(reference, i)
            if candidate.location.file and "/include/maya/" in candidate.location.file.name:
                self.maybe.add((candidate.mangled_name, signature(candidate),
                                pathlib.Path(candidate.location.file.name).name))

    def note_array(self, cursor, referenced):
        """Notes a member of the template that implements the host's array classes, under the array class's name."""
        children = list(cursor.get_children())
        held = re.search(r"ArrayOf<(.*)>", children[0].type.spelling) if children else None
        if held and referenced.kind in FUNCTIONS:
            name = ARRAYS[held.group(1)]
            text = re.sub(r"lightbox::ArrayOf(<.*?>)?::", name + "::", signature(referenced))
            self.host.add((re.sub(r"\bT\b", held.group(1), text), name + ".h"))


def in_array(cursor):
    file = cursor.location.file
    return file is not None and file.name.endswith("/ArrayOf.h")


def is_implicit(cursor):
    """Whether the compiler has declared the function: its location is then that of its class."""
    parent = cursor.semantic_parent
    return cursor.kind in FUNCTIONS and parent is not None and parent.kind in TYPES and \
        cursor.location == parent.location


def undefined_names(library):
    """Returns the mangled names that a library imports."""
    listed = subprocess.run(["nm", "-D", "--undefined-only", str(library)], capture_output=True, text=True, check=True)
    return {line.split()[-1].split("@")[0] for line in listed.stdout.splitlines()}


def overridden_by(cursor):
    """The methods of base classes that this one overrides."""
    from ctypes import POINTER, byref, c_uint
    found, count = POINTER(cindex.Cursor)(), c_uint()
    call = cindex.conf.lib.clang_getOverriddenCursors
    call.argtypes = [cindex.Cursor, POINTER(POINTER(cindex.Cursor)), POINTER(c_uint)]
    call(cursor, byref(found), byref(count))
    result = []
    for i in range(count.value):
        base = found[i]
        base._tu = cursor._tu
        result.append(base)
    return result


def digest(files):
    hashed = hashlib.sha256()
    for name in sorted(files):
        hashed.update(name.encode())
        hashed.update(pathlib.Path(name).read_bytes() if pathlib.Path(name).exists() else b"")
    return hashed.hexdigest()


def read_unit(job):
    """Returns what one file uses, from the cache if neither the file nor its includes have changed."""
    path, arguments, store = job
    kept = store / (str(path.relative_to(PLUGIN)).replace("/", "-") + ".json")
    tool = str(pathlib.Path(__file__).resolve())
    if kept.exists():
        known = json.loads(kept.read_text())
        if known["arguments"] == arguments and known["digest"] == digest(known["files"]):
            return known
    unit = Unit(path, arguments)
    files = sorted(unit.files | {tool})
    known = {"arguments": arguments, "files": files, "digest": digest(files), "host": sorted(unit.host),
             "maybe": sorted(unit.maybe), "qt": sorted(unit.qt), "faults": sorted(set(unit.faults)), "names_version": unit.names_version,
             "path": str(path)}
    kept.write_text(json.dumps(known))
    return known


def compiled_files(build):
    """Returns the plug-in's files with their compile commands. A file in a unity build has the command of its unit."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        file = pathlib.Path(entry["file"])
        if not file.exists():
            continue
        together = re.findall(r'^#include "(.+\.cpp)"', file.read_text(), re.MULTILINE) if "Unity" in file.parts else []
        for path in [pathlib.Path(name) for name in together] or [file]:
            if path.is_relative_to(PLUGIN):
                yield path, entry["command"]


def read_plugin(build):
    resources = library()
    plugin = build / "bin/plug-ins/vellix2.so"
    if not plugin.exists():
        sys.exit(f"{plugin} is not there; build it first")
    store = build / "plugin-api"
    store.mkdir(exist_ok=True)
    jobs = []
    for path, command in compiled_files(build):
        words = shlex.split(command)
        kept = [word for i, word in enumerate(words)
                if re.match(r"-(D|I|std=|fPIC)", word) or word == "-isystem" or words[i - 1] == "-isystem"]
        if "-std=c++14" not in kept:
            sys.exit(f"{path} is not compiled as C++14")
        jobs.append((path, kept + ["-resource-dir", resources, "-x", "c++"], store))
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        units = list(pool.map(read_unit, sorted(jobs), chunksize=4))
    linked = undefined_names(plugin)
    for unit in units:
        unit["host"] += [[text, header] for mangled, text, header in unit["maybe"] if mangled in linked]
    return units


# --- the checklist ------------------------------------------------------------------------------------------------


def page_of(name, header):
    """The address of a class's page in the published reference of the 2018 generation."""
    owner = re.match(r"(?:static )?(?:[\w&*<> ]+? )?((?:MHWRender::)?\w+)", name)
    owner = ("MHWRender::" if "MHWRender::" in name.split("(")[0] else "") + header[:-2]
    owner = re.sub(r"([A-Z])", lambda m: "_" + m.group(1).lower(), owner.replace("::", "_1_1")).lstrip("_")
    return f"https://help.autodesk.com/cloudhelp/2018/ENU/Maya-SDK/cpp_ref/class_{owner}.html"


def plain(text):
    """Returns a signature without its irrelevant parts: argument names, blanks, the spelling of null."""
    text = re.sub(r"\b(NULL|nullptr|0L)\b", "0", text)
    text = re.sub(r"\b(\d+)\.0f?\b", r"\1", text)
    text = re.sub(r"(?<=[(, ])const (?=(?:unsigned )?[\w:]+ \w+[,)=])", "", text)
    text = re.sub(r"\b(MHWRender|M\w+)::(?=\w+(::| |&|\*|,|\)|=))", "", text) if "(" in text else text
    head, bracket, rest = text.partition("(")
    if not bracket:
        return re.sub(r"\s+", "", text)
    inside, _, tail = rest.rpartition(")")
    arguments = []
    for argument in split(inside):
        declared, equals, default = argument.partition("=")
        declared = declared.strip()
        if re.search(r"[\s&*]\w+(\[\d*\])?$", declared) and not re.search(r"^(const )?(unsigned )?\w+$", declared):
            declared = re.sub(r"(?<=[\s&*])\w+(?=(\[\d*\])?$)", "", declared)
        declared = re.sub(r"\bunsigned$", "unsigned int", declared.strip())
        arguments.append(re.sub(r"\s+", "", declared) + (equals + re.sub(r"\s+", "", default) if equals else ""))
    return re.sub(r"\s+", "", head) + "(" + ",".join(arguments) + ")" + re.sub(r"\s+", "", tail)


def split(inside):
    parts, depth, current = [], 0, ""
    for letter in inside:
        depth += letter in "(<["
        depth -= letter in ")>]"
        if letter == "," and depth == 0:
            parts.append(current)
            current = ""
        else:
            current += letter
    return parts + [current] if current.strip() else parts


def rows():
    """Returns the checklist's rows by signature; a row has the five columns of the table."""
    found = {}
    if CHECKLIST.exists():
        for line in CHECKLIST.read_text().splitlines():
            cells = [cell.strip() for cell in line.strip()[1:-1].split(" | ")]
            if line.startswith("| `") and len(cells) == 5:
                found[cells[0].strip("`")] = cells
    return found


def host_of(units):
    return {name: header for unit in units for name, header in unit["host"]}


def check(units):
    faults = [fault for unit in units for fault in unit["faults"]]
    used, listed = host_of(units), rows()
    for name in sorted(used.keys() - listed.keys()):
        faults.append(f"used, but not in {CHECKLIST.name} (\"update\" adds it): {name}")
    for name in sorted(listed.keys() - used.keys()):
        faults.append(f"in {CHECKLIST.name}, but not used (\"update\" drops it): {name}")
    for name in sorted(used.keys() & listed.keys()):
        _, page, published, source, remark = listed[name]
        published = published.strip("`")
        if not published or source not in ("read", "listed", "known"):
            faults.append(f"not checked yet (\"published as\" or \"from\" is not filled in): {name}")
        elif plain(name) != plain(published) and not remark:
            faults.append(f"differs from the reference: {name} is published as {published}")
    with_version = [unit["path"] for unit in units if unit["names_version"]]
    if len(with_version) != 1:
        faults.append("exactly one file may have the version string of MFnPlugin.h, but these have: " +
                      ", ".join(with_version))
    newer = dict(reversed(line.split("\t")) for line in NEWER_QT.read_text().splitlines())
    for name in sorted({name for unit in units for name in unit["qt"]} - SAME_IN_OLDER_QT):
        if name in newer:
            faults.append(f"Qt {newer[name]}: {name}")
    return faults


HEAD = """# What the plug-in uses of the host's API

This page lists every class, function and value of OpenMaya that `plugin/` uses, with its signature in the published
reference of the 2018 generation. `tools/plugin_api.py` finds them in the compiled code. A test compares the list with the
code, and the two signatures of each row with each other, apart from argument names and the spelling of null.

- **here**: the signature in `lightbox/include/maya`.
- **page**: the class's page in the published reference.
- **published as**: the signature in the published reference.
- **from**: the source of that signature. "read": the published text of this generation, or of a neighbouring one if this
  one was not available. "listed": the published list of the class's members, which gives everything except the return type.
  "known": knowledge of the reference.
- **remark**: why a difference does not matter.

`tools/plugin_api.py --build build/release update` adds rows for newly used functions; complete them by hand.
[How to add a class](developing.md#how-to-add-a-class-of-the-hosts-api) says where its header and its code go.

| here | page | published as | from | remark |
|---|---|---|---|---|
"""


def update(units):
    used, listed = host_of(units), rows()
    text = HEAD
    for name in sorted(used, key=lambda n: (used[n], n)):
        header = used[name]
        cells = listed.get(name, [f"`{name}`", f"[{header[:-2]}]({page_of(name, header)})", "", "", ""])
        text += "| " + " | ".join(cells) + " |\n"
    CHECKLIST.write_text(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, type=pathlib.Path)
    parser.add_argument("action", choices=("check", "list", "update"))
    options = parser.parse_args()
    units = read_plugin(options.build.resolve())
    if options.action == "list":
        print("\n".join(sorted(host_of(units))))
    elif options.action == "update":
        update(units)
    else:
        faults = check(units)
        print("\n".join(faults))
        sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
