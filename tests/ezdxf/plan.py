# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Writes a drawing of many like layers, of which W001 is the current one.

plan.py FILE COUNT   layers W000, W001 and so on, each with a line on it, and in a block another one
"""

import json
import sys

import ezdxf

doc = ezdxf.new("R2010", setup=True)
block = doc.blocks.new("PART")
for number in range(int(sys.argv[2])):
    name = f"W{number:03}"
    doc.layers.add(name)
    doc.modelspace().add_line((0, number), (100, number), dxfattribs={"layer": name})
    block.add_line((0, number), (1, number), dxfattribs={"layer": name})
doc.modelspace().add_blockref("PART", (200, 0))
doc.header["$CLAYER"] = "W001"
doc.saveas(sys.argv[1])
print(json.dumps({}))
