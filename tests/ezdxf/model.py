# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""What changes of layers and entities make of a drawing, as an independent DXF library reads it.

A step is a word and what it is about: ["off", "A"], ["unlock", "A"], ["rename", "A", "B"] or the
like; ["layer", "A", "color", "5"] and ["set", "8", "color", "5"] for a layer and for the entity
with that number; ["clear", "A"] for a layer with all that lies on it.
"""

import copy
import re
from types import SimpleNamespace

from ezdxf.entities import factory
from ezdxf.filemanagement import dxf_file_info
from ezdxf.lldxf.extendedtags import ExtendedTags
from ezdxf.lldxf.tagger import ascii_tags_loader

ESCAPE = re.compile(r"\\U\+([0-9A-Fa-f]{4})")
NO_ENTITIES = {"SECTION", "BLOCK", "ENDBLK", "SEQEND", "ENDSEC", "EOF"}
APPLICATION = "AcAecLayerStandard"
INDEX_COLORS = {"FF0000": 1, "00FF00": 3, "010204": 178}
COLOR_CODES = {62, 420, 430}
CODES = {"layer": {8}, "name": {2}, "off": {62}, "freeze": {70}, "lock": {70}, "plot": {290},
         "color": COLOR_CODES, "true": COLOR_CODES, "book": COLOR_CODES, "weight": {370},
         "type": {6}, "description": {1000, 1001}, "all": {6, 8, 62, 370, 420}}
NEW_LAYER = {"off": False, "freeze": False, "lock": False, "plot": True, "flags": 0, "color": 7,
             "true": None, "book": None, "weight": -3, "type": "Continuous", "description": ""}


def layer_of(name, records, properties, is_added=False):
    """@param is_added so that it needs a record; renamed ones do, too"""
    return SimpleNamespace(name=name, records=records, old=properties, now=dict(properties),
                           is_added=is_added)


def same(one, other):
    return one is not None and other is not None and one.casefold() == other.casefold()


class Record:
    """A group of code 0 with what follows it, up to the next one."""

    def __init__(self, section, tags, version):
        self.section, self.tags, self.version = section, tags, version
        self.type = tags[0][1].strip()
        self.dxflib = {}  # properties as that reads them
        self.owner, self.is_gone = None, False
        self.layer = self.own(8) or "0"

    def own_places(self):
        """Of the groups that are no extended data, nor an application's."""
        in_app = False
        for place, (code, value) in enumerate(self.tags):
            if code >= 1000 or code == 101:
                return
            if code == 102:
                in_app = value.startswith("{")
            elif not in_app:
                yield place

    def own(self, code):
        return next((text(self.tags[place][1]) for place in self.own_places()
                     if self.tags[place][0] == code), None)

    def rest(self, codes):
        """All but its own groups of these codes."""
        own, application = set(self.own_places()), ""
        for place, (code, value) in enumerate(self.tags):
            application = value if code == 1001 else application
            if code not in codes or place not in own and application != APPLICATION:
                yield code, text(value)

    def properties(self):
        """As the library reads them."""
        lines = text("".join(f"{code}\n{value}\n" for code, value in self.tags))
        doc = SimpleNamespace(dxfversion=self.version)
        entity = factory.cls(self.type).load(ExtendedTags.from_text(lines), doc)
        dxf = entity.dxf
        get = lambda name, unsaid: dxf.get(name, unsaid) if dxf.is_supported(name) else unsaid
        found = {"true": get("true_color", None), "book": self.own(430)}
        if self.type != "LAYER":
            return dict(found, layer=get("layer", self.layer), color=get("color", 256),
                        weight=get("lineweight", -1), type=get("linetype", "BYLAYER"))
        return dict(found, name=dxf.name, off=entity.is_off(), freeze=entity.is_frozen(),
                    lock=entity.is_locked(), plot=bool(dxf.plot), flags=dxf.flags & ~5,
                    color=abs(dxf.color) or 7, weight=dxf.lineweight, type=dxf.linetype,
                    description=entity.description)

    def differences(self, new, is_table):
        codes = {code for name in self.wanted for code in CODES.get(name, ())}
        if self.type == "TABLE" and is_table and int(new.own(70) or 0) >= int(self.own(70) or 0):
            codes = {70}
        if self.tags == new.tags and not self.wanted:
            pass
        elif list(self.rest(codes)) != list(new.rest(codes)):
            yield f"{self.type}: other groups", f"{self.tags} is {new.tags}"
        elif self.wanted:
            yield from new.compared("", new.properties(), self.properties(), self.wanted)
        if self.dxflib or new.dxflib:
            yield from new.compared("dxflib: ", new.dxflib, self.dxflib, self.wanted)

    def compared(self, reader, found, old, wanted):
        wanted = dict(wanted)
        for name in ["weight", "plot"] if self.version < "AC1015" else []:
            wanted.pop(name, None)
        if "true" in wanted and self.version < "AC1018":
            wanted["true"] = None
        if all(wanted.get(name, old.get(name, 0)) == old.get(name) for name in ("color", "true")):
            wanted.pop("book", None)
        for name in found or old:
            value = found.get(name)
            expected = wanted.get(name, old.get(name))
            is_kept = value == old.get(name) and isinstance(value, str) and same(value, expected)
            if plain(value) != plain(expected) and not is_kept:
                yield f"{reader}{self.type}: {name}", f"{expected} is {value}"


def plain(value):
    return "BYLAYER" if isinstance(value, str) and same(value, "ByLayer") else value


def text(value):
    """What a text says, which may have escapes."""
    found = ESCAPE.sub(lambda escape: chr(int(escape[1], 16)), value)
    return found.encode("utf-16", "surrogatepass").decode("utf-16", "surrogatepass")


class Drawing:
    """The records of a file, and what steps make of them."""

    def __init__(self, file):
        self.file = file
        with open(file, "rb") as stream:
            self.bytes = stream.read()
        info = dxf_file_info(file)
        self.version, self.encoding = info.version, info.encoding
        self.all, section = [], ""
        with open(file, encoding=self.encoding, errors="surrogateescape") as stream:
            tags = [(code, value) for code, value in ascii_tags_loader(stream, skip_comments=False)]
        self.comments = [value for code, value in tags if code == 999]
        begins = [place for place, tag in enumerate(tags) if tag[0] == 0] + [len(tags)]
        for begin, end in zip(begins, begins[1:]):
            own = [tag for tag in tags[begin:end] if tag[0] != 999]
            if own[0][1].strip() == "SECTION":
                section = own[1][1].strip()
            self.all.append(Record(section, own, self.version))
        self.read()

    def hear(self, dxflib):
        """What another library reads, by the numbers of records; texts as bytes of the file."""
        for number, found in dxflib.items():
            record = self.all[int(number)]
            if any(code in CODES["all"] for code, _ in record.rest(CODES["all"])):
                continue  # it takes the application's groups for the entity's own
            if record.own(370) is None:
                found.pop("weight")
            color, found["color"] = found["color"], abs(found["color"])
            if record.type == "LAYER":
                del found["layer"]
                flags = found["flags"]
                found.update(flags=flags & ~5, freeze=bool(flags & 1), lock=bool(flags & 4), off=color < 0,
                             color=abs(color) or 7)  # as that of a layer is none
            record.dxflib = {
                name: text(value.encode("latin1").decode(self.encoding, "surrogateescape"))
                if isinstance(value, str) else None if (name, value) == ("true", -1) else value
                for name, value in found.items()}

    def read(self):
        for record in self.all:
            record.wanted = {}  # properties that it is to have, by their names
        self.entities = [record for record in self.all if record.section in ("BLOCKS", "ENTITIES")
                         and record.type not in ("SECTION", "ENDSEC")]
        owner = None
        for record in self.entities:
            if record.type in ("POLYLINE", "INSERT"):
                owner = record
            elif record.type in ("VERTEX", "ATTRIB", "SEQEND"):
                record.owner = owner
            else:
                owner = None
        self.linetypes = [record.own(2) for record in self.all if record.type == "LTYPE"]
        self.header = self.variables()
        self.new_layer = dict(NEW_LAYER, type=self.spelled("Continuous"))
        self.layers = {}
        for record in self.all:
            if record.type == "LAYER" and record.section == "TABLES":
                name = self.find(record.own(2)) or record.own(2)
                self.layers.setdefault(name, layer_of(name, [], record.properties()))
                self.layers[name].records.append(record)
        for record in self.entities:
            if self.find(record.layer) is None:
                self.layers[record.layer] = layer_of(record.layer, [], self.new_layer)
        if "0" not in self.layers:
            self.layers["0"] = layer_of("0", [], self.new_layer)
        self.current = self.stored_current = self.find(self.header.get("$CLAYER", ["0"])[0]) or "0"

    def copy(self):
        """One of its own to take steps in."""
        other = copy.copy(self)
        other.all = [copy.copy(record) for record in self.all]
        other.read()
        return other

    def variables(self):
        """Of one that stands twice the last one counts."""
        found, name = {}, ""
        for record in self.all:
            for code, value in record.tags[2:] if record.section == "HEADER" else []:
                if code == 9:
                    name = value.strip()
                    found[f"first {name}"] = found.pop(name, None)
                    found[name] = []
                else:
                    found[name].append(text(value))
        return found

    def spelled(self, linetype):
        return next((name for name in self.linetypes if same(name, linetype)), linetype)

    def find(self, name):
        if name in self.layers:
            return name
        return next((key for key in self.layers if same(key, name)), None)

    def on(self, name):
        return [entity for entity in self.entities if same(entity.layer, name)]

    def parts(self, entity):
        begin = self.entities.index(entity) + 1
        end = begin
        while end < len(self.entities) and self.entities[end].owner is entity:
            end += 1
        return self.entities[begin:end]

    def is_refused(self, step):
        word, name, *rest = step
        is_current, is_zero = same(name, self.current), name == "0"
        if word == "freeze":
            return is_current
        if word in ("add", "rename"):
            namesake = self.find(step[-1])
            is_taken = namesake is not None and (word == "add" or namesake != name)
            return is_taken or is_zero or bool(set('<>/\\":;?*|=') & set(step[-1]))
        if word in ("erase", "clear", "merge"):
            is_used = word == "erase" and bool(self.on(name))
            return is_zero or is_current or is_used or same(name, (rest or [None])[0])
        if word != "set":
            return False
        entity = self.all[int(name)]
        return (entity.type in NO_ENTITIES or entity.is_gone
                or self.layers[self.find(entity.layer)].now["lock"])

    def step(self, step):
        word, name, *rest = step
        if word == "set":
            self.change_entity(self.all[int(name)], *rest)
        elif word == "add":
            self.layers[name] = layer_of(name, [], self.new_layer, True)
        elif word == "current":
            self.current = name
        elif word == "layer":
            self.change(self.layers[name].now, *rest)
        elif word in ("merge", "rename"):
            for entity in self.on(name):
                entity.layer = entity.wanted["layer"] = rest[0]
            if word == "merge":
                self.erase(name)
            elif name != rest[0]:
                self.rename(name, rest[0])
        elif word in ("clear", "erase"):
            self.clear(name)
        else:
            value = not word.startswith("un")
            self.layers[name].now[word if value else word[2:]] = value

    def change(self, now, prop, value):
        if prop == "true":
            now.update(color=INDEX_COLORS[value], true=int(value, 16), book=None)
        elif prop == "color":
            now.update(color=int(value), true=None, book=None)
        else:
            now[prop] = {"type": self.spelled, "weight": int}.get(prop, str)(value)

    def change_entity(self, entity, prop, value):
        self.change(entity.wanted, prop, value)
        for part in [entity, *self.parts(entity)] if prop == "layer" else []:
            if part.type != "ATTRIB" or part is entity:
                part.layer = part.wanted["layer"] = value

    def rename(self, name, new):
        layer = self.layers.pop(name)
        layer.now["name"], layer.name, layer.is_added = new, new, True
        self.layers[new] = layer
        self.current = new if self.current == name else self.current
        self.rewrite_viewports(
            lambda tag: (1003, new) if tag[0] == 1003 and same(text(tag[1]), name) else tag)

    def erase(self, name):
        records = self.layers.pop(name).records
        handles = {record.own(5) for record in records} - {None}
        for record in records:
            record.is_gone = True
        self.rewrite_viewports(lambda tag: None if tag[0] in (331, 341) and tag[1] in handles
                               or tag[0] == 1003 and same(text(tag[1]), name) else tag)
        extensions = {value for record in records for (before, (code, value))
                      in zip(record.tags, record.tags[1:])
                      if code == 360 and before == (102, "{ACAD_XDICTIONARY")}
        for record in self.all if extensions else []:
            if record.section == "OBJECTS" and (record.own(5) in extensions
                                                or record.own(330) in extensions):
                record.is_gone = True
                extensions.add(record.own(5))

    def rewrite_viewports(self, rewrite):
        for record in self.entities:
            if record.type == "VIEWPORT":
                record.tags = [tag for tag in map(rewrite, record.tags) if tag is not None]

    def clear(self, name):
        on_it = self.on(name)
        for entity in on_it:
            is_sheet = entity.type == "VIEWPORT" and (entity.own(69) or "").strip() == "1"
            if entity.type in ("BLOCK", "ENDBLK") or is_sheet:
                entity.layer = entity.wanted["layer"] = "0"
            elif entity.owner is None:
                for part in [entity, *self.parts(entity)]:
                    part.is_gone = True
        for entity in on_it:
            if entity.owner is None or entity.is_gone:
                continue
            if entity.type != "ATTRIB":
                entity.layer = entity.wanted["layer"] = self.find(entity.owner.layer)
                continue
            entity.is_gone = True
            *attributes, end = self.parts(entity.owner)
            if all(attribute.is_gone for attribute in attributes):
                end.is_gone = True
                entity.owner.tags = [tag for tag in entity.owner.tags if tag[0] != 66]
        self.entities = [entity for entity in self.entities if not entity.is_gone]
        self.erase(name)

    def finish(self):
        """Hands what layers are to be to their records.
        @return layers that are to get a record"""
        added = []
        for layer in self.layers.values():
            for record in layer.records[1:]:
                record.wanted = {} if same(record.own(2), layer.name) else {"name": layer.name}
            for record in layer.records[:1]:
                record.wanted = {name: value for name, value in layer.now.items()
                                 if value != layer.old.get(name)
                                 and (name != "type" or not same(value, layer.old[name]))}
            is_current = layer.name == self.current != self.stored_current
            is_unnamed = layer.name != "0" and not self.on(layer.name)
            if not layer.records and (layer.is_added or is_current or is_unnamed
                                      or layer.now != layer.old):
                added.append(dict(layer.now, name=layer.name))
        return added

    def differences(self, new):
        """In what another drawing is not what the steps made of this one: kinds and examples."""
        added = self.finish()
        if self.comments != new.comments:
            yield "comments", ""
        if self.line_ends() != new.line_ends():
            yield "line ends", f"{self.line_ends()} are {new.line_ends()}"
        yield from self.differing_header(new)
        for section in dict.fromkeys(record.section for record in self.all + new.all):
            olds = [record for record in self.all
                    if record.section == section and not record.is_gone]
            news = [record for record in new.all if record.section == section]
            if section == "TABLES" or not olds:
                news = yield from self.take_added(olds, news, added)
            if section == "HEADER":
                continue
            if len(olds) != len(news):
                yield f"number of {section}", f"{len(olds)} are {len(news)}"
            for old, other in zip(olds, news):
                yield from old.differences(other, section == "TABLES")
        if added:
            yield "a LAYER is missing", str(added)

    def differing_header(self, new):
        expected = dict(self.header)
        if self.current != self.stored_current:
            expected["$CLAYER"] = [self.current]
        handles = {int(value, 16) for record in new.all for value in [record.own(5)] if value
                   and record.section in ("TABLES", "BLOCKS", "ENTITIES", "OBJECTS")
                   and record.type != "DIMSTYLE"}
        seed = new.header.get("$HANDSEED", expected.get("$HANDSEED"))
        if seed != expected.get("$HANDSEED") and int(seed[0], 16) > max(handles):
            expected["$HANDSEED"] = seed
        for name in {*expected, *new.header}:
            if expected.get(name) != new.header.get(name):
                yield f"HEADER {name}", f"{expected.get(name)} is {new.header.get(name)}"

    def take_added(self, olds, news, added):
        """Tells of wrong ones among the records that the tables get.
        @return the others"""
        known = {(record.type, record.wanted.get("name", record.own(2))) for record in olds}
        is_in_new, others = False, []
        for record in news:
            name = record.own(2)
            if record.type == "LAYER" and added and ("LAYER", name) not in known:
                layer = next((layer for layer in added if layer["name"] == name), added[0])
                added.remove(layer)
                yield from record.compared("a new ", record.properties(), NEW_LAYER, layer)
                yield from record.compared("dxflib: a new ", record.dxflib, NEW_LAYER, layer)
            elif (record.type, name) not in known and name in ("LAYER", "APPID", APPLICATION):
                is_in_new |= record.type == "TABLE"
            elif is_in_new and record.type == "ENDTAB":
                is_in_new = False
            elif olds or record.type not in ("SECTION", "ENDSEC"):
                others.append(record)
        return others

    def line_ends(self):
        return set(re.findall(rb"\r?\n", self.bytes))
