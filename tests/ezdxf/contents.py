# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Drawings with blocks, polylines, attributes, viewports and groups on ten layers."""

import ezdxf

NAMES = [f"L{number}ä" for number in range(10)]


def add_contents(space, shift, is_old):
    """One entity of each kind on some layer, its parts on others."""
    layer = lambda number: {"layer": NAMES[(number + shift) % len(NAMES)]}
    space.add_line((0, 0), (1, 1), layer(0)).set_xdata("ACAD", [(1000, "x"), (1003, NAMES[0])])
    space.add_circle((0, 0), 1, layer(1))
    polyline = space.add_polyline2d([(0, 0), (1, 1), (2, 0)], dxfattribs=layer(2))
    polyline.vertices[1].dxf.layer = layer(3)["layer"]
    if shift % 3 == 0:
        polyline.seqend.dxf.layer = layer(4)["layer"]
    insert = space.add_blockref("Leaf", (0, 0), layer(3))
    for number in range(shift % 3):
        insert.add_attrib(f"TAG{number}", "x", (0, 0), layer(5 + shift % 2 * number))
    space.add_text("grün", dxfattribs=layer(6))
    if not is_old:
        space.add_lwpolyline([(0, 0), (1, 1)], dxfattribs=layer(7))
        space.add_mtext("x", layer(8)).set_bg_color(3)
        space.add_hatch(3, dxfattribs=layer(9)).paths.add_polyline_path([(0, 0), (1, 0), (1, 1)])


def write(file, version):
    doc = ezdxf.new(version)
    doc.linetypes.add("Dashed", [1, 0.5, -0.5])
    for name in NAMES[:8]:  # the others are there by their entities alone
        doc.layers.add(name)
    doc.layers.get(NAMES[1]).description = "about it"
    doc.layers.get(NAMES[2]).rgb = (1, 2, 3)
    doc.layers.get(NAMES[3]).dxf.linetype = "Dashed"
    doc.blocks.new("Leaf").add_line((0, 0), (1, 1), {"layer": NAMES[4]})
    for number in range(4):
        block = doc.blocks.new(f"Block{number}")
        block.block.dxf.layer = block.endblk.dxf.layer = NAMES[number]
        add_contents(block, number, version == "R12")
    space = doc.modelspace()
    for number in range(20):
        add_contents(space, number, version == "R12")
    if version != "R12":
        doc.groups.new("Some").extend(list(space)[:9])
        for number in range(2):
            viewport = doc.layout("Layout1").add_viewport((0, 0), (1, 1), (0, 0), 1)
            viewport.dxf.layer = NAMES[number]
            viewport.frozen_layers = NAMES[number:number + 2]
        space.set_redraw_order([(entity.dxf.handle, "FF") for entity in list(space)[:5]])
    doc.saveas(file)
