# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Checks what became of layers and of what lies on them through an independent DXF library.

contents.py write FILE VERSION      writes a drawing with blocks, polylines, attributes, viewports and
                                    groups on ten layers, and prints what "list" would
contents.py list FILE               prints, as JSON, the names of the drawing's layers and the numbers
                                    of its entities: how many groups of code 0 come before each
contents.py check OLD NEW STEP...   prints, as JSON, in what NEW differs from what the steps, such as
                                    "set 12 layer A", "merge A>B", "clear A", "rename A>B", "add A" or
                                    "layer A color 5", should make of OLD, and which errors it has that
                                    OLD has not
"""

import json
import sys

import ezdxf
from ezdxf.lldxf.tagger import ascii_tags_loader
from ezdxf.lldxf.tags import group_tags

NO_ENTITIES = {"SECTION", "ENDSEC", "BLOCK", "ENDBLK", "SEQEND", "EOF"}
NAMES = [f"L{number}ä" for number in range(10)]
APPLICATION = "AcAecLayerStandard"


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


def records(file):
    """All records with the section that each is in; a section's end and its name belong to it."""
    encoding = ezdxf.readfile(file).output_encoding
    with open(file, encoding=encoding, errors="surrogateescape", newline="\n") as stream:
        found = list(group_tags(ascii_tags_loader(stream, skip_comments=False)))
    section = ""
    for tags in found:
        if tags[0].value == "SECTION":
            section = tags[1].value
        yield section, [(tag.code, tag.value) for tag in tags]


def names(file):
    """Those of the layers in the table: the library adds some when it reads."""
    return {own(tags, 2) for _, tags in records(file) if tags[0][1] == "LAYER"}


def own_tags(tags):
    """Where the record's own groups are."""
    in_app = False
    for place, (code, value) in enumerate(tags):
        if code >= 1000:
            return
        if code == 102:
            in_app = value.startswith("{")
        elif not in_app and code != 999:
            yield place


def own(tags, code):
    return next((tags[place][1] for place in own_tags(tags) if tags[place][0] == code), None)


def same(one, other):
    return one is not None and one.casefold() == other.casefold()


class Entity:
    def __init__(self, section, tags):
        self.section, self.tags, self.is_gone = section, tags, False
        self.type = tags[0][1]
        self.owner = None
        self.layer = own(tags, 8) or "0"

    def expected(self, gone_handles):
        places = set(own_tags(self.tags)) if self.section in ("BLOCKS", "ENTITIES") else set()
        for place, (code, value) in enumerate(self.tags):
            if place in places and code == 8:
                yield (8, self.layer)
            elif self.type == "VIEWPORT" and code in (331, 341) and value in gone_handles:
                pass
            else:
                yield (code, value)


class Model:
    def __init__(self, file):
        self.all = [Entity(*record) for record in records(file)]
        self.entities = [entity for entity in self.all if entity.section in ("BLOCKS", "ENTITIES")
                         and entity.type not in ("SECTION", "ENDSEC", "EOF")]
        owner = None
        for entity in self.entities:
            if entity.type in ("POLYLINE", "INSERT"):
                owner = entity
            elif entity.type in ("VERTEX", "ATTRIB", "SEQEND"):
                entity.owner = owner
            else:
                owner = None
        in_table = names(file)
        self.layers = {layer.dxf.name: dict(self.properties(layer), handle=layer.dxf.handle)
                       for layer in ezdxf.readfile(file).layers if layer.dxf.name in in_table}
        for entity in self.entities:
            if self.find(entity.layer) is None:
                self.layers[entity.layer] = self.defaults()
        self.gone_handles = set()

    @staticmethod
    def defaults():
        return {"color": 7, "true": None, "type": "continuous", "weight": -3, "description": ""}

    @staticmethod
    def properties(layer):
        return {"color": layer.color, "true": layer.dxf.get("true_color"),
                "type": layer.dxf.linetype.lower(), "weight": layer.dxf.lineweight,
                "description": layer.description}

    def find(self, name):
        return next((key for key in self.layers if same(key, name)), None)

    def erase(self, name):
        layer = self.layers.pop(name)
        self.gone_handles |= {layer["handle"]} if "handle" in layer else set()

    def parts(self, entity):
        return [part for part in self.entities if part.owner is entity]

    def clear(self, name):
        on_it = [entity for entity in self.entities if same(entity.layer, name)]
        for entity in on_it:
            if entity.type in ("BLOCK", "ENDBLK") or (entity.type == "VIEWPORT"
                                                      and own(entity.tags, 69).strip() == "1"):
                entity.layer = "0"
            elif entity.owner is None:
                for part in [entity, *self.parts(entity)]:
                    part.is_gone = True
        for entity in on_it:
            if entity.owner is None or entity.is_gone:
                continue
            if entity.type != "ATTRIB":
                entity.layer = entity.owner.layer
                continue
            entity.is_gone = True
            *attributes, end = self.parts(entity.owner)
            if all(attribute.is_gone for attribute in attributes):
                end.is_gone = True
                entity.owner.tags = [tag for tag in entity.owner.tags if tag[0] != 66]
        self.entities = [entity for entity in self.entities if not entity.is_gone]
        self.erase(name)

    def step(self, text):
        word, _, rest = text.partition(" ")
        first, _, second = rest.partition(">")
        if word == "add":
            self.layers[rest] = self.defaults()
        elif word == "merge":
            for entity in self.entities:
                if same(entity.layer, first):
                    entity.layer = second
            self.erase(self.find(first))
        elif word == "rename":
            self.layers[second] = self.layers.pop(self.find(first))
            for entity in self.entities:
                if same(entity.layer, first):
                    entity.layer = second
        elif word == "clear":
            self.clear(self.find(rest))
        elif word == "layer":
            name, prop, value = rest.split(" ", 2)
            self.change_layer(self.layers[self.find(name)], prop, value)
        elif word == "set":
            number, _, name = rest.split(" ", 2)
            entity = self.all[int(number)]
            for part in [entity, *self.parts(entity)]:
                if part.type != "ATTRIB" or part is entity:
                    part.layer = name

    @staticmethod
    def change_layer(layer, prop, value):
        layer[prop] = {"true": lambda: int(value, 16), "description": lambda: value,
                       "type": lambda: value.lower()}.get(prop, lambda: int(value))()
        if prop == "color":
            layer["true"] = None
        elif prop == "true":
            layer["color"] = {"FF0000": 1, "010204": 178}[value]

    def section(self, name):
        return [list(entity.expected(self.gone_handles)) for entity in self.all
                if entity.section == name and not entity.is_gone]


def differences(old, new, steps):
    model = Model(old)
    version = ezdxf.readfile(old).dxfversion
    for step in steps:
        model.step(step)
    found = {}
    for section, tags in records(new):
        found.setdefault(section, []).append(tags)
    wrong = []
    for section in found.keys() - {"HEADER", "TABLES"}:
        expected = model.section(section)
        if len(expected) != len(found[section]):
            wrong.append(f"{section}: {len(expected)} records, not {len(found[section])}")
        wrong += [f"{one} is {other}" for one, other in zip(expected, found[section]) if one != other]
    layers = names(new)
    for layer in ezdxf.readfile(new).layers:
        if layer.dxf.name not in layers:
            continue
        expected = model.layers.get(layer.dxf.name)
        if expected is None:
            wrong.append(f"{layer.dxf.name} is there")
            continue
        expected.pop("handle", None)
        if version < "AC1015":
            expected["weight"] = -3
        if version < "AC1018" and layer.dxf.get("true_color") is None:
            expected["true"] = None
        if expected != model.properties(layer):
            wrong.append(f"{layer.dxf.name}: {expected} is {model.properties(layer)}")
    used = {entity.layer for entity in model.entities}
    wrong += [f"{name} is not there" for name in model.layers if name not in layers | used]
    return wrong + differing_headers(old, new) + differing_tables(old, new, model)


def differing_headers(old, new):
    (_, one), *_ = records(old)
    (_, other), *_ = records(new)
    names = [one[place - 1][1] for place, (left, right) in enumerate(zip(one, other)) if left != right]
    wrong = [name for name in names if name not in ("$HANDSEED", "$CLAYER")]
    return wrong if len(one) == len(other) else ["the header"]


def differing_tables(old, new, model):
    """What may differ among the tables is told by the library, but for the rest of each record."""
    changeable = {2, 6, 62, 70, 370, 420, 430, 1000, 1001}
    rests = {}
    for file in (new, old):
        rests[file] = [[tag for tag in tags if tags[0][1] not in ("LAYER", "TABLE")
                        or tag[0] not in changeable]
                       for section, tags in records(file) if section == "TABLES"
                       and own(tags, 5) not in model.gone_handles]
    added = [rest for rest in rests[new] if rest not in rests[old]]
    lost = [rest for rest in rests[old] if rest not in rests[new]]
    wrong = [f"{rest} is new" for rest in added
             if rest[0][1] != "LAYER" and (2, APPLICATION) not in rest]
    return wrong + [f"{rest} is lost" for rest in lost]


def errors(file):
    return [error.message for error in ezdxf.readfile(file).audit().errors]


action, path, *others = sys.argv[1:]
if action == "write":
    write(path, *others)
if action in ("write", "list"):
    numbers = [number for number, (section, tags) in enumerate(records(path))
               if section in ("BLOCKS", "ENTITIES") and tags[0][1] not in NO_ENTITIES]
    print(json.dumps({"layers": list(Model(path).layers), "entities": numbers}))
else:
    new, *steps = others
    old_errors = errors(path)
    print(json.dumps({"differences": differences(path, new, steps)[:20],
                      "errors": [error for error in errors(new) if error not in old_errors]}))
