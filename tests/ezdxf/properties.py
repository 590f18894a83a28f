# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Writes and reads a drawing whose entities get other properties in between.

properties.py write FILE   two lines and a circle on layer "0", and a line on a locked layer
properties.py read FILE    prints, as JSON, what the file says of each: colour, true colour,
                           lineweight and linetype
"""

import json
import sys

import ezdxf

action, path = sys.argv[1:]
if action == "write":
    doc = ezdxf.new("R2010", setup=True)
    doc.layers.add("Locked").lock()
    space = doc.modelspace()
    space.add_line((0, 0), (100, 0))
    space.add_line((0, 20), (100, 20), dxfattribs={"color": 3})
    space.add_circle((50, 60), 20)
    space.add_line((0, 100), (100, 100), dxfattribs={"layer": "Locked"})
    doc.saveas(path)
    print("{}")
else:
    ATTRIBUTES = {"color": 256, "true_color": -1, "lineweight": -1, "linetype": "ByLayer"}
    print(json.dumps({"entities": [
        [entity.dxf.get(name, default) for name, default in ATTRIBUTES.items()]
        for entity in ezdxf.readfile(path).modelspace()]}))
