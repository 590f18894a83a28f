# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Writes and reads drawings through an independent DXF library.

layers.py write FILE COUNT   writes a drawing of COUNT layers in all combinations of states, which
                             opens with a sheet, and prints, as JSON, the row of 13 strings that
                             each layer should give there and in model space
layers.py read FILE          prints, as JSON, what each layer of the drawing holds, and which have
                             entities on them
"""

import json
import sys

import ezdxf
from ezdxf.colors import DXF_DEFAULT_COLORS, int2rgb, rgb2int

NAMES = {1: "red", 2: "yellow", 3: "green", 4: "cyan", 5: "blue", 6: "magenta", 7: "white"}
LINETYPES = ["Continuous", "DASHED", "CENTER"]
WEIGHTS = {-3: "Default", 0: "0.00 mm", 25: "0.25 mm", 70: "0.70 mm", 211: "2.11 mm"}
STATES = 64


def flag(value):
    return "true" if value else "false"


def add_layer(doc, number):
    """Lets the low bits of the number choose the state, the rest the colour and the line."""
    name = f"Ebene {number:05} \u00e4\u00f6 \u4e2d"
    off, frozen, locked, unplotted, vp_frozen, true_color = (number >> bit & 1 for bit in range(6))
    cycle = number // STATES
    index = cycle % 108 + 1  # programs differ about some of the dark ones beyond
    rgb = (number % 256, number // 256 % 256, 77)
    linetype = LINETYPES[cycle % len(LINETYPES)]
    weight = list(WEIGHTS)[cycle % len(WEIGHTS)]
    description = f"about {number}" if number % 3 == 0 else ""

    layer = doc.layers.add(name, color=index, linetype=linetype, lineweight=weight)
    if true_color:
        layer.dxf.true_color = rgb2int(rgb)
    if off:
        layer.off()
    if locked:
        layer.lock()
    if unplotted:
        layer.dxf.plot = 0
    layer.dxf.flags |= frozen | vp_frozen << 1
    if description:
        layer.description = description

    color = ",".join(map(str, rgb)) if true_color else NAMES.get(index, f"Color {index}")
    shown = rgb if true_color else int2rgb(DXF_DEFAULT_COLORS[index])
    return ["false", name, flag(not off), flag(not frozen), flag(not locked),
            f"ll*{color};{','.join(map(str, shown))}", linetype, WEIGHTS[weight],
            f"Color-{index}", flag(not unplotted), flag(vp_frozen), "false", description]


def write(file, count):
    doc = ezdxf.new("R2010")
    for name, pattern in (("DASHED", [0.75, 0.5, -0.25]), ("CENTER", [2, 1.25, -0.25, 0.25, -0.25])):
        doc.linetypes.add(name, pattern)
    rows = [add_layer(doc, number) for number in range(count)]
    viewport = doc.layout("Layout1").add_viewport((100, 100), (150, 150), (0, 0), 100)
    viewport.frozen_layers = [row[1] for row in rows[::3]]
    doc.header["$TILEMODE"] = 0
    doc.saveas(file)
    on_sheet = [[*row[:11], flag(number % 3 == 0), *row[12:]] for number, row in enumerate(rows)]
    print(json.dumps({"model": {row[1]: row for row in rows},
                      "sheet": {row[1]: row for row in on_sheet}}))


def read(file):
    doc = ezdxf.readfile(file)
    layers = {layer.dxf.name: [layer.is_on(), layer.is_frozen(), layer.is_locked(),
                               bool(layer.dxf.plot), layer.dxf.flags, abs(layer.dxf.color),
                               layer.dxf.get("true_color"), layer.dxf.linetype,
                               layer.dxf.lineweight, layer.description]
              for layer in doc.layers}
    used = sorted({entity.dxf.layer for entity in doc.chain_layouts_and_blocks()})
    if errors := [error.message for error in doc.audit().errors]:
        sys.exit("\n".join(errors))
    print(json.dumps({"layers": layers, "used": used, "current": doc.header["$CLAYER"]}))


if __name__ == "__main__":
    if sys.argv[1] == "write":
        write(sys.argv[2], int(sys.argv[3]))
    else:
        read(sys.argv[2])
