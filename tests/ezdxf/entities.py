# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""entities.py FILE VERSION [LAYOUT]: writes a drawing with entities of many kinds, with and without
properties of their own, and prints how many groups of code 0 it has. With a layout as other
programs have it the properties of every third entity stand among what its class adds, those of
another third both there and before."""

import json
import sys

import ezdxf
from ezdxf.lldxf.tagger import ascii_tags_loader
from ezdxf.lldxf.tags import group_tags

OWN = {6, 8, 62, 370, 420, 430}


def properties(number, version):
    """Lets the bits of the number choose which properties there are."""
    chosen = {"layer": ["0", "Walls", "Loose", "Locked"][number % 4]}
    if number & 4:
        chosen["color"] = number % 7
    if number & 8:
        chosen["linetype"] = ["DASHED", "ByBlock", "Continuous"][number % 3]
    if number & 16 and version != "R12":
        chosen["lineweight"] = [13, -2, -3, 211][number // 4 % 4]
    if number & 32 and version >= "R2004":
        chosen |= {"true_color": number * 1000, "color_name": f"A${number}"}
    return chosen


def add_entity(space, number, attribs, is_old):
    kinds = [lambda: space.add_line((0, 0), (1, 1), attribs),
             lambda: space.add_text("grün", dxfattribs=attribs),
             lambda: space.add_polyline2d([(0, 0), (1, 1)], dxfattribs=attribs),
             lambda: space.add_blockref("Door", (0, 0), attribs)]
    if not is_old:
        kinds += [lambda: space.add_lwpolyline([(0, 0), (1, 1)], dxfattribs=attribs),
                  lambda: space.add_mtext("x", attribs),
                  lambda: space.add_hatch(3, dxfattribs=attribs)]
    entity = kinds[number % len(kinds)]()
    if entity.dxftype() == "INSERT":
        entity.add_attrib("TAG", "x", (0, 0), dxfattribs=attribs)
    if entity.dxftype() == "MTEXT":
        entity.set_bg_color(3)
    if number % 3 == 0:
        entity.set_xdata("ACAD", [(1000, "x"), (1070, 62)])
        if not is_old:
            entity.set_app_data("OVCC", [(62, 3), (8, "X"), (420, 1), (6, "X")])


def misplace(file):
    """Moves or copies the properties of entities behind the second marker of a subclass."""
    with open(file, errors="surrogateescape", newline="\n") as stream:
        records = list(group_tags(ascii_tags_loader(stream, skip_comments=False)))
    lines, section = [], ""
    for number, tags in enumerate(records):
        if tags[0].value == "SECTION":
            section = tags[1].value
        markers = [place for place, tag in enumerate(tags) if tag.code == 100]
        if section in ("BLOCKS", "ENTITIES") and len(markers) > 1 and number % 3:
            own = [tag for tag in tags[markers[0]:markers[1]] if tag.code in OWN]
            head = [tag for tag in tags[:markers[1]] if number % 3 == 1 or tag not in own]
            tags = head + [tags[markers[1]]] + own + tags[markers[1] + 1:]
        lines += [line for tag in tags for line in (f"{tag.code:3}", str(tag.value))]
    with open(file, "w", errors="surrogateescape", newline="\n") as stream:
        stream.write("\n".join(lines) + "\n")


def write(file, version, layout=None):
    doc = ezdxf.new(version)
    for name in ("Dashed", "Öffnung"):
        doc.linetypes.add(name, [1, 0.5, -0.5])
    for name in ("Walls", "Spare"):
        doc.layers.add(name)
    doc.layers.add("Locked").lock()
    door = doc.blocks.new("Door")
    for number in range(64):
        add_entity(doc.modelspace(), number, properties(number, version), version == "R12")
        door.add_circle((0, 0), 1, dxfattribs=properties(number, version))
    if version != "R12":
        doc.layout("Layout1").add_viewport((0, 0), (1, 1), (0, 0), 1)
    doc.saveas(file)
    if layout:
        misplace(file)


if __name__ == "__main__":
    write(*sys.argv[1:])
    with open(sys.argv[1], encoding="latin1") as stream:
        print(json.dumps({"records": stream.read().count("\n  0\n") + 1}))
