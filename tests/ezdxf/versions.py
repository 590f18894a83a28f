# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Small drawings of each version, with layers that only entities name."""

import ezdxf
import layers

VERSIONS = ["R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"]
KINDS = """3DFACE 3DSOLID ARC_DIMENSION ATTDEF BODY DIMENSION ELLIPSE EXTRUDEDSURFACE HELIX LIGHT
           MESH MPOLYGON PDFUNDERLAY POINT RAY REGION SHAPE SOLID SPLINE SURFACE TOLERANCE TRACE
           WIPEOUT XLINE""".split()


def write(version, file):
    doc = ezdxf.new(version, setup=True)
    doc.layers.add("Wände", color=30, linetype="DASHED")
    doc.layers.add("Doors", color=1).off()
    doc.layers.add("Hidden").freeze()
    doc.layers.get("Wände").description = "load-bearing"
    for number in range(0, 640, 37):
        layers.add_layer(doc, number)
    if version != "R12":
        doc.layers.get("Doors").new_extension_dict().dictionary.add_xrecord("Own")
        doc.layers.get("Hidden").set_xdata("ACAD", [(1000, "x"), (1070, 62)])
    space = doc.modelspace()
    space.add_line((0, 0), (10, 5), dxfattribs={"layer": "Wände"})
    space.add_text("größer", dxfattribs={"layer": "Only in entities"})
    doc.blocks.new("Door").add_circle((0, 0), 1, dxfattribs={"layer": "Only in blocks"})
    for number, kind in enumerate(KINDS if version != "R12" else []):
        properties = {"color": number, "linetype": "DASHED", "lineweight": 25} if number % 2 else {}
        space.new_entity(kind, dict(properties, layer=["Wände", "Doors"][number % 3 % 2]))
    doc.saveas(file)
