#!/usr/bin/env python3
"""Reads the drawing out of a Maya ASCII scene, without the plug-in and without a host.

    read_drawing.py SCENE.ma            lists cameras, layers and keyed frames
    read_drawing.py SCENE.ma FOLDER     also writes every frame as FOLDER/CAMERA/INDEX_LAYER/FRAME.png

A scene may have several drawing nodes. Read is the drawing of the master, which is the one that is edited; without a
master, the first one. The page pipeline.md has the grammar of a drawing.
"""

import pathlib
import re
import sys
from collections import namedtuple

Drawing = namedtuple("Drawing", "node is_master active_camera cameras")
Layer = namedtuple("Layer", "name visible opacity state frames")
STATES = ("animated", "static", "locked")
ESCAPES = {"n": "\n", "t": "\t", "r": "\r"}
STRING = r'"[^"\\]*(?:\\.[^"\\]*)*"'
# Comments and texts are found too, so that nothing in them is taken for a statement.
STATEMENT = re.compile(
    r'//[^\n]*|/\*.*?\*/'
    r'|\bcreateNode\s+(?P<type>\w+)(?P<flags>(?:\s+(?:' + STRING + r'|[^\s";]+))*)'
    r'|\bsetAttr(?:\s+-\w+(?:\s+(?:on|off|yes|no|\d+))?)*\s+"[^"]*\.(?:ld|layerData)"\s+-type\s+"qmLayerData"(?P<data>)'
    r'|' + STRING, re.S)
NAME = re.compile(r'\s-n(?:ame)?\s+(' + STRING + r'|[^\s";]+)')
TOKEN = re.compile(r'\s+|//[^\n]*|/\*.*?\*/|(' + STRING + r')|([^\s";]+)', re.S)


class EndOfDrawing(Exception):
    """The values have ended, or what follows belongs to a later version."""


def unescaped(literal):
    """The text of a literal with its quotes. A backslash before a line break takes the break out."""
    text = literal[1:-1]
    if "\\" not in text:
        return text
    return re.sub(r"\\(\r\n|.)", lambda found: "" if found[1] in "\r\n" else ESCAPES.get(found[1], found[1]), text,
                  flags=re.S)


class Tokens:
    """The values of a drawing, one after the other; long ones are not copied more than once."""

    def __init__(self, text, start):
        self.text, self.position = text, start

    def next(self):
        while True:
            found = TOKEN.match(self.text, self.position)
            if not found:
                raise EndOfDrawing
            self.position = found.end()
            if found[1] is not None:
                return unescaped(found[1])
            if found[2] is not None:
                return found[2]

    def number(self):
        return int(float(self.next()))

    def flag(self):
        return self.next() in ("1", "on", "yes", "true")


def picture(text):
    """The bytes of a text of hexadecimal digits. Everything else in it does not count."""
    digits = re.sub(r"[^0-9A-Fa-f]+", "", text)
    return bytes.fromhex("0" * (len(digits) % 2) + digits)


def read_layer(tokens, layers):
    """Adds the layer at once, so that one that ends too early keeps the frames before."""
    name, count = tokens.next(), tokens.number()
    if name == "UNKNOWN" and count < 0:
        return
    visible, opacity, state = tokens.flag(), float(tokens.next()), tokens.number()
    frames = []
    state = STATES[state] if 0 <= state < len(STATES) else STATES[0]
    layers.append(Layer(name, visible, opacity, state, frames))
    for _ in range(count):
        time, image = tokens.next(), picture(tokens.next())
        if image:
            frames.append((time, image))


def read_value(node, tokens):
    tokens.next()  # the version, which makes no difference to reading
    is_master, active_camera, cameras = tokens.flag(), tokens.next(), {}
    try:
        for _ in range(tokens.number()):
            # A camera that comes again has its layers on top of those before.
            layers = cameras.setdefault(tokens.next(), [])
            count = tokens.number()
            tokens.next()  # the active layer
            for _ in range(count):
                read_layer(tokens, layers)
    except EndOfDrawing:
        print(f"Not all of the drawing of {shown(node)} can be read.", file=sys.stderr)
    return Drawing(node, is_master, active_camera, cameras)


def read_text(scene):
    """The scene's text. Its codeset stands at its beginning: "UTF-8", or the number of a code page."""
    content = pathlib.Path(scene).read_bytes()
    found = re.search(rb"^//Codeset: *([\w-]+)", content[:4096], re.M)
    codeset = found[1].decode("ascii") if found else "utf-8"
    try:
        return content.decode("cp" + codeset if codeset.isdigit() else codeset, errors="replace")
    except LookupError:
        return content.decode("utf-8", errors="replace")


def read_drawings(scene):
    """All drawings of the scene, in the order of the file."""
    text, node, drawings, position = read_text(scene), "", [], 0
    while True:
        found = STATEMENT.search(text, position)
        if not found:
            return drawings
        position = found.end()
        if found["type"]:
            name = NAME.search(found["flags"])
            node = "" if not name else unescaped(name[1]) if name[1].startswith('"') else name[1]
        elif found["data"] is not None:
            tokens = Tokens(text, position)
            drawings.append(read_value(node, tokens))
            position = tokens.position


def read_drawing(scene):
    """The names of the master's cameras with their layers from the bottom up; None when the scene has no drawing."""
    drawings = read_drawings(scene)
    masters = [drawing for drawing in drawings if drawing.is_master]
    return (masters or drawings)[0].cameras if drawings else None


def shown(text):
    """The text on one line."""
    return re.sub(r"[\x00-\x1f\x7f]", lambda found: repr(found[0])[1:-1], text)


def file_name(text, taken):
    """A name for a file that none of those in `taken` has, also where upper and lower case are the same."""
    name = plain = re.sub(r"[^\w.-]+", "_", text).strip(".")[:60] or "_"
    number = 1
    while name.casefold() in taken:
        number += 1
        name = f"{plain}_{number}"
    taken.add(name.casefold())
    return name


def write_frames(folder, layer):
    folder.mkdir(parents=True, exist_ok=True)
    taken = set()
    for time, image in layer.frames:
        (folder / f"{file_name(time, taken)}.png").write_bytes(image)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    cameras = read_drawing(sys.argv[1])
    if cameras is None:
        sys.exit(f"There is no drawing in {sys.argv[1]}.")
    sys.stdout.reconfigure(encoding="utf-8")
    taken = set()
    for camera, layers in cameras.items():
        folder = file_name(camera, taken)
        print(shown(camera))
        for index, layer in enumerate(layers):
            hidden = "" if layer.visible else ", hidden"
            print(f"  {index} {shown(layer.name)}: {layer.state}, {layer.opacity:.0%}{hidden}, "
                  f"frames {' '.join(time for time, _ in layer.frames)}")
            if len(sys.argv) == 3:
                write_frames(pathlib.Path(sys.argv[2], folder, f"{index}_{file_name(layer.name, set())}"), layer)


if __name__ == "__main__":
    main()
