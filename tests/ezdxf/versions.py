# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""versions.py FOLDER: writes one drawing per DXF version, named after it, and prints their names."""

import json
import os
import sys

import ezdxf

VERSIONS = ["R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"]


def write(version, file):
    doc = ezdxf.new(version, setup=True)
    doc.layers.add("Wände", color=30, linetype="DASHED")
    doc.layers.add("Doors", color=1).off()
    doc.layers.add("Hidden").freeze()
    doc.layers.get("Wände").description = "load-bearing"
    space = doc.modelspace()
    space.add_line((0, 0), (10, 5), dxfattribs={"layer": "Wände"})
    space.add_text("größer", dxfattribs={"layer": "Only in entities"})
    doc.blocks.new("Door").add_circle((0, 0), 1, dxfattribs={"layer": "Only in blocks"})
    doc.saveas(file)


for name in VERSIONS:
    write(name, os.path.join(sys.argv[1], name + ".dxf"))
print(json.dumps({"versions": VERSIONS}))
