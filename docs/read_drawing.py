#!/usr/bin/env python3
"""Reads the drawing out of a Maya ASCII scene, without the plug-in and without a host.

    read_drawing.py SCENE.ma            lists cameras, layers and keyed frames
    read_drawing.py SCENE.ma FOLDER     also writes every frame as FOLDER/CAMERA/INDEX_LAYER/FRAME.png

The drawing is the value of one attribute, `setAttr ".ld" -type "qmLayerData"`, a row of tokens between blanks:

    version (1), master (0 or 1), "active camera", number of cameras, and for each camera:
        "name", number of layers, index of the active layer (-1 for none), and for each layer from the bottom up:
            "name", number of frames, visible (0 or 1), opacity (0 to 1), state (0 animated, 1 static, 2 locked),
            and for each frame in the order of time:
                time, "PNG as hexadecimal text"

A layer "UNKNOWN" with -1 frames ends there. A time is a number of frames, or has a unit ("2sec").
"""

import pathlib
import re
import sys
from collections import namedtuple

Layer = namedtuple("Layer", "name visible opacity state frames")
STATES = ("animated", "static", "locked")
TOKEN = re.compile(r'"((?:[^"\\]|\\.)*)"|([^\s";]+)', re.S)
ESCAPES = {"n": "\n", "t": "\t", "r": "\r"}


class Tokens:
    """The attribute's tokens, one after the other; long ones are not copied more than once."""

    def __init__(self, text, start):
        self.text, self.position = text, start

    def next(self):
        found = TOKEN.search(self.text, self.position)
        if not found or ";" in self.text[self.position:found.start()]:
            sys.exit("The drawing ends too early.")
        self.position = found.end()
        if found.group(1) is None:
            return found.group(2)
        if "\\" not in found.group(1):
            return found.group(1)
        return re.sub(r"\\(.)", lambda escape: ESCAPES.get(escape.group(1), escape.group(1)), found.group(1))

    def number(self):
        return int(self.next())


def read_layer(tokens):
    name, count = tokens.next(), tokens.number()
    if name == "UNKNOWN" and count < 0:
        return None
    visible, opacity, state = tokens.next() == "1", float(tokens.next()), tokens.number()
    frames = []
    for _ in range(count):
        time, image = tokens.next(), bytes.fromhex(tokens.next())
        if image:
            frames.append((time, image))
    return Layer(name, visible, opacity, STATES[state], frames)


def read_drawing(scene):
    """The cameras' names with their layers from the bottom up; None when the scene has no drawing."""
    text = pathlib.Path(scene).read_text(encoding="utf-8", errors="replace")
    value = re.search(r'setAttr\s+"\.(?:ld|layerData)"\s+-type\s+"qmLayerData"', text)
    if not value:
        return None
    tokens = Tokens(text, value.end())
    if tokens.number() != 1:
        sys.exit("The drawing is of another version.")
    tokens.next()  # master
    tokens.next()  # the active camera
    cameras = {}
    for _ in range(tokens.number()):
        name, count, _ = tokens.next(), tokens.number(), tokens.number()
        layers = [read_layer(tokens) for _ in range(count)]
        cameras[name] = [layer for layer in layers if layer]
    return cameras


def file_name(text):
    return re.sub(r"[^\w.-]+", "_", text).strip(".") or "_"


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    cameras = read_drawing(sys.argv[1])
    if cameras is None:
        sys.exit(f"There is no drawing in {sys.argv[1]}.")
    for camera, layers in cameras.items():
        print(camera)
        for index, layer in enumerate(layers):
            shown = "" if layer.visible else ", hidden"
            print(f"  {index} {layer.name}: {layer.state}, {layer.opacity:.0%}{shown}, "
                  f"frames {' '.join(time for time, _ in layer.frames)}")
            if len(sys.argv) == 3:
                folder = pathlib.Path(sys.argv[2], file_name(camera), f"{index}_{file_name(layer.name)}")
                folder.mkdir(parents=True, exist_ok=True)
                for time, image in layer.frames:
                    (folder / f"{file_name(time)}.png").write_bytes(image)


if __name__ == "__main__":
    main()
