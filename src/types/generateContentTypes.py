#!/usr/bin/env python3
"""Checks data/content-types.txt and writes it as constant C++ data.

    generateContentTypes.py TABLE OUTPUT.cpp SIZES.h

The format of the table is described at its head. Every fault is reported as
`TABLE:LINE: what is wrong`, all faults of the file at once, and the exit status is 1.
"""
import re
import sys
from dataclasses import dataclass, field

IDENTIFIER = re.compile(r"[A-Za-z0-9][A-Za-z0-9.+_-]*\Z")
EXTENSION = re.compile(r"[a-z0-9_+!~#$&@%^{}()'=-][a-z0-9_.+!~#$&@%^{}()'=-]*\Z")
MIME_TYPE = re.compile(r"[a-z0-9.+-]+/[a-z0-9.+_-]+\Z")
ROOTS = {"public.item", "public.content"}


@dataclass
class Declaration:
    line: int
    identifier: str
    parents: list
    extensions: list
    mime_types: list
    os_types: list
    description: str


@dataclass
class Tag:
    """An extension, MIME type or file type code, with the types that declare it."""
    declared: list = field(default_factory=list)
    preferred: list = field(default_factory=list)

    def ordered(self):
        return self.preferred + [d for d in self.declared if d not in self.preferred]


class Faults:
    def __init__(self, path):
        self.path, self.texts = path, []

    def add(self, line, text):
        self.texts.append(f"{self.path}:{line}: {text}")

    def stop_if_any(self):
        if self.texts:
            sys.exit("\n".join(self.texts))


def codes(text):
    """The quoted four-character codes of a field, each with its star if it has one."""
    return re.findall(r"\*?'[^']{4}'", text), re.sub(r"\*?'[^']{4}'", "", text).strip()


def read(path, faults):
    declarations = []
    with open(path, encoding="utf-8") as source:
        for number, line in enumerate(source, 1):
            line = line.rstrip("\n")
            if not line.strip() or line.startswith("#"):
                continue
            fields = [part.strip() for part in line.split("|")]
            if len(fields) != 6:
                faults.add(number, f"{len(fields)} fields instead of 6")
                continue
            os_types, rest = codes(fields[4])
            if rest:
                faults.add(number, f"file type codes are four characters in quotes, not {rest}")
            declarations.append(Declaration(number, fields[0], fields[1].split(),
                                            fields[2].split(), fields[3].split(), os_types,
                                            fields[5]))
    return declarations


def check_line(declaration, faults):
    line = declaration.line
    if not IDENTIFIER.match(declaration.identifier):
        faults.add(line, f"no identifier: '{declaration.identifier}'")
    if declaration.identifier.startswith("dyn."):
        faults.add(line, "dynamic identifiers cannot be declared")
    if not declaration.description:
        faults.add(line, "no description")
    if not declaration.parents and declaration.identifier not in ROOTS:
        faults.add(line, f"{declaration.identifier} conforms to nothing")
    for names, pattern, what in ((declaration.extensions, EXTENSION, "extension"),
                                 (declaration.mime_types, MIME_TYPE, "MIME type")):
        for name in names:
            if not pattern.match(name.removeprefix("*")):
                faults.add(line, f"no lower-case {what}: '{name}'")


def number_types(declarations, faults):
    numbers, folded = {}, {}
    for number, declaration in enumerate(declarations, 1):
        other = folded.setdefault(declaration.identifier.lower(), declaration)
        if other is not declaration:
            faults.add(declaration.line,
                       f"{declaration.identifier} is declared in line {other.line} too")
        numbers[declaration.identifier] = number
    for declaration in declarations:
        for parent in declaration.parents:
            if parent not in numbers:
                faults.add(declaration.line,
                           f"{declaration.identifier} conforms to unknown {parent}")
    return numbers


def all_ancestors(declarations, numbers, faults):
    """By type: its ancestors, breadth first, so that the nearest come first."""
    by_name = {declaration.identifier: declaration for declaration in declarations}
    result = {}
    for declaration in declarations:
        seen, queue = [], list(declaration.parents)
        while queue:
            name = queue.pop(0)
            if name not in seen:
                seen.append(name)
                queue.extend(by_name[name].parents)
        if declaration.identifier in seen:
            faults.add(declaration.line, f"{declaration.identifier} conforms to itself (a cycle)")
        result[declaration.identifier] = [numbers[name] for name in seen]
    return result


def collect_tags(declarations, numbers, attribute, what, faults):
    tags = {}
    for declaration in declarations:
        names = [name.removeprefix("*") for name in getattr(declaration, attribute)]
        for name in names:
            if names.count(name) > 1:
                faults.add(declaration.line, f"{what} {name} stands there twice")
        for name in getattr(declaration, attribute):
            tag = tags.setdefault(name.removeprefix("*"), Tag())
            tag.declared.append(numbers[declaration.identifier])
            if name.startswith("*"):
                tag.preferred.append(numbers[declaration.identifier])
    for name, tag in tags.items():
        lines = ", ".join(str(declarations[number - 1].line) for number in tag.declared)
        if len(tag.declared) > 1 and len(tag.preferred) != 1:
            faults.add(declarations[tag.declared[0] - 1].line,
                       f"{what} {name} is declared in lines {lines}: exactly one of them "
                       f"must be marked as preferred (*{name})")
        if len(tag.declared) == 1 and tag.preferred:
            faults.add(declarations[tag.declared[0] - 1].line,
                       f"{what} {name} has one type only and needs no star")
    return dict(sorted(tags.items()))


def fnv(text):
    value = 2166136261
    for unit in text.lower().encode():
        value = ((value ^ unit) * 16777619) & 0xFFFFFFFF
    return value


def slots(names):
    """Hash table of 1-based numbers, at most half full."""
    size = 16
    while size < 2 * len(names):
        size *= 2
    table = [0] * size
    for number, name in enumerate(names, 1):
        place = fnv(name) & (size - 1)
        while table[place]:
            place = (place + 1) & (size - 1)
        table[place] = number
    return table


class Emitter:
    """Interns texts and number lists and writes the arrays that refer to them."""

    def __init__(self):
        self.pieces, self.text_size, self.texts = [], 0, {}
        self.numbers, self.lists = [0], {(): 0}

    def text(self, value):
        if value not in self.texts:
            self.texts[value] = self.text_size
            self.pieces.append(value)
            self.text_size += len(value.encode("utf-16-le")) // 2 + 1
        return f"{{{self.texts[value]}, {len(value.encode('utf-16-le')) // 2}}}"

    def list(self, values):
        values = tuple(values)
        if values not in self.lists:
            self.lists[values] = len(self.numbers)
            self.numbers.extend(values)
        return f"{{{self.lists[values]}, {len(values)}}}"


def units(text):
    """The UTF-16 code units and the closing 0: longer than a literal may portably be."""
    data = (text + "\0").encode("utf-16-le")
    return [data[i] | data[i + 1] << 8 for i in range(0, len(data), 2)]


def array(declaration, entries, per_line=16):
    rows = [", ".join(map(str, entries[i:i + per_line]))
            for i in range(0, len(entries), per_line)]
    return f"const {declaration} = {{\n" + ",\n".join(rows) + "};\n"


def conformance_rows(declarations, ancestors):
    words = (len(declarations) + 64) // 64
    rows = ["0"] * words
    for number, declaration in enumerate(declarations, 1):
        bits = 1 << number
        for ancestor in ancestors[declaration.identifier]:
            bits |= 1 << ancestor
        rows += [hex(bits >> (64 * word) & 0xFFFFFFFFFFFFFFFF) for word in range(words)]
    return rows


def write(declarations, numbers, ancestors, tags, out_path, sizes_path):
    extensions, mime_types, os_types = tags
    emit = Emitter()
    extension_numbers = {name: number for number, name in enumerate(extensions, 1)}
    mime_numbers = {name: number for number, name in enumerate(mime_types, 1)}

    def numbered(names, numbers_by_name):
        return emit.list(numbers_by_name[name.removeprefix("*")] for name in names)

    nothing = "{0, 0}"
    types = [f"{{{', '.join([nothing] * 6)}}}"]
    for d in declarations:
        types.append("{" + ", ".join([
            emit.text(d.identifier), emit.text(d.description),
            emit.list(numbers[parent] for parent in d.parents),
            emit.list(ancestors[d.identifier]), numbered(d.extensions, extension_numbers),
            numbered(d.mime_types, mime_numbers)]) + "}")

    def tag_rows(by_name):
        return ["{{0, 0}, {0, 0}}"] + [f"{{{emit.text(name)}, {emit.list(tag.ordered())}}}"
                                       for name, tag in by_name.items()]

    extension_rows, mime_rows = tag_rows(extensions), tag_rows(mime_types)
    os_rows = [f"{{0x{code[1:5].encode('mac_roman').hex()}, {tag.ordered()[0]}}}"
               for code, tag in sorted(os_types.items(),
                                       key=lambda item: item[0][1:5].encode("mac_roman"))]
    tables = {"identifier": slots([d.identifier for d in declarations]),
              "extension": slots(extensions), "mimeType": slots(mime_types)}
    if len(emit.numbers) > 0xFFFF:
        sys.exit("the number lists outgrew their 16-bit offsets")

    with open(out_path, "w", encoding="utf-8") as out:
        out.write('// Made from data/content-types.txt; do not edit.\n'
                  '#include "ContentTypeTable.h"\n\nnamespace ContentTypeTable {\n')
        out.write(array("char16_t text[]", [u for piece in emit.pieces for u in units(piece)], 32))
        out.write(array("quint16 lists[]", emit.numbers))
        out.write(array("Type types[typeCount + 1]", types, 1))
        out.write(array("Tag extensions[extensionCount + 1]", extension_rows, 4))
        out.write(array("Tag mimeTypes[mimeTypeCount + 1]", mime_rows, 4))
        out.write(array("OSType osTypes[osTypeCount]", os_rows, 8))
        out.write(array("quint64 conformance[(typeCount + 1) * wordsPerRow]",
                        conformance_rows(declarations, ancestors), 8))
        for name, table in tables.items():
            out.write(array(f"quint16 {name}Slots[{name}SlotCount]", table))
        out.write("} // namespace ContentTypeTable\n")
    counts = {"typeCount": len(declarations), "extensionCount": len(extensions),
              "mimeTypeCount": len(mime_types), "osTypeCount": len(os_types)}
    counts |= {f"{name}SlotCount": len(table) for name, table in tables.items()}
    with open(sizes_path, "w", encoding="utf-8") as out:
        out.write("// Made from data/content-types.txt; do not edit.\n#pragma once\n\n"
                  "namespace ContentTypeTable {\n")
        out.writelines(f"inline constexpr int {name} = {value};\n"
                       for name, value in counts.items())
        out.write("} // namespace ContentTypeTable\n")


def main(table, out_path, sizes_path):
    faults = Faults(table)
    declarations = read(table, faults)
    for declaration in declarations:
        check_line(declaration, faults)
    numbers = number_types(declarations, faults)
    faults.stop_if_any()
    ancestors = all_ancestors(declarations, numbers, faults)
    tags = [collect_tags(declarations, numbers, attribute, what, faults)
            for attribute, what in (("extensions", "extension"), ("mime_types", "MIME type"),
                                    ("os_types", "file type code"))]
    faults.stop_if_any()
    write(declarations, numbers, ancestors, tags, out_path, sizes_path)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
