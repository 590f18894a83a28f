# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Writes and reads entities through an independent DXF library.

entities.py write FILE VERSION [LAYOUT]
                                writes a drawing with entities of many kinds, with and without
                                properties of their own, and prints what "read" would; with a layout
                                as other programs have it: the properties of every third entity stand
                                among what its class adds, those of another third both there and
                                before
entities.py read FILE...        prints, as JSON and for each file, its linetypes, how many groups of
                                code 0 it has and its entities by the number of such groups before
                                them: layer, colour, true colour, lineweight, linetype, the codes of
                                properties that stand there twice, and a digest of everything else
                                that is in the record
"""

import hashlib
import json
import sys

import ezdxf
from ezdxf.lldxf.extendedtags import ExtendedTags
from ezdxf.lldxf.tagger import ascii_tags_loader
from ezdxf.lldxf.tags import group_tags

OWN = {6, 8, 62, 370, 420, 430}
NO_ENTITIES = {"SECTION", "ENDSEC", "BLOCK", "ENDBLK", "SEQEND", "EOF"}


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


def read(file):
    doc = ezdxf.readfile(file)
    if errors := [error.message for error in doc.audit().errors]:
        sys.exit("\n".join(errors))
    entities, section = {}, ""
    with open(file, encoding=doc.output_encoding, errors="surrogateescape", newline="\n") as stream:
        records = list(group_tags(ascii_tags_loader(stream, skip_comments=False)))
    for number, tags in enumerate(records):
        if tags[0].value == "SECTION":
            section = tags[1].value
        if section not in ("BLOCKS", "ENTITIES") or tags[0].value in NO_ENTITIES:
            continue
        parts = ExtendedTags(tags)
        codes = [tag.code for part in parts.subclasses for tag in part if tag.code in OWN]
        doubled = sorted({code for code in codes if codes.count(code) > 1})
        others = [[tag for tag in part if tag.code not in OWN] for part in parts.subclasses]
        rest = [*others, *parts.appdata, *parts.xdata, *(parts.embedded_objects or [])]
        dxf = doc.entitydb[parts.get_handle()].dxf
        entities[f"{number:06}"] = [dxf.layer, dxf.get("color", 256), dxf.get("true_color", -1),
                            dxf.get("lineweight", -1), dxf.get("linetype", "ByLayer").lower(),
                            doubled, hashlib.md5(repr(rest).encode(errors="replace")).hexdigest()]
        if "color_name" in dxf.all_existing_dxf_attribs():
            entities[f"{number:06}"].append(dxf.color_name)
    linetypes = [linetype.dxf.name for linetype in doc.linetypes]
    return {"linetypes": linetypes, "records": len(records), "entities": entities}


if sys.argv[1] == "write":
    write(*sys.argv[2:])
    print(json.dumps(read(sys.argv[2])))
else:
    print(json.dumps({file: read(file) for file in sys.argv[2:]}))
