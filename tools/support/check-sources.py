"""Compares files that must agree: check-sources.py [BUILD_FOLDER]

- the ids of texts used under src/ and those of every data/translations/*.ts;
- with a build folder: each *Test.cpp, *Bench.cpp and *Fuzz.cpp on disk and those that its
  compilation database holds, for the kinds that this build has.
"""

import json
import re
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
USED_ID = re.compile(r'\b(?:qtTrId|QT_TRID_NOOP)\s*\(\s*"([^"]+)"')
# An id made of a fixed beginning and a value: translated(QByteArray("KPTypeName: ") + type).
FAMILY = re.compile(r'"(\w+: )"\s*\+')
PLACEHOLDER = re.compile(r"%(?:L?\d+|n)")
faults = []


def used_ids():
    """Each id that the sources name, with one place where; and the beginnings of families."""
    used, families = {}, set()
    for path in sorted(ROOT.glob("src/**/*")):
        if path.suffix in (".cpp", ".h"):
            source = path.read_text(encoding="utf-8")
            families.update(FAMILY.findall(source))
            for id_ in USED_ID.findall(source):
                used.setdefault(id_, path.relative_to(ROOT))
    return used, tuple(families)


def texts(path, families):
    """id -> the set of placeholders of its text, of one .ts file; members of families left out."""
    found = {}
    for message in ElementTree.parse(path).iter("message"):
        id_, translation = message.get("id"), message.find("translation")
        forms = [form.text or "" for form in translation.iter("numerusform")]
        forms = forms or [translation.text or ""]
        if id_ in found:
            faults.append(f"{path.name}: {id_} stands twice")
        if translation.get("type") or not all(form.strip() for form in forms):
            faults.append(f"{path.name}: {id_} is not translated")
        if bool(message.get("numerus")) != (translation.find("numerusform") is not None):
            faults.append(f"{path.name}: {id_} needs numerus=\"yes\" and <numerusform>, or neither")
        # One form may name the number in words, so the forms are looked at together.
        found[id_] = set(PLACEHOLDER.findall(" ".join(forms)))
    if list(found) != sorted(found):
        first = next(a for a, b in zip(found, sorted(found)) if a != b)
        faults.append(f"{path.name}: not in order of the ids, from {first} on")
    return {id_: found[id_] for id_ in found if not id_.startswith(families)}


def check_texts():
    used, families = used_ids()
    english = texts(ROOT / "data/translations/murn_en.ts", families)
    for id_ in sorted(used.keys() - english.keys()):
        faults.append(f"{used[id_]}: {id_} is not in murn_en.ts")
    for id_ in sorted(english.keys() - used.keys()):
        faults.append(f"murn_en.ts: {id_} is used nowhere under src/")
    for path in sorted(ROOT.glob("data/translations/*.ts")):
        translated = texts(path, families) if path.name != "murn_en.ts" else english
        for id_ in sorted(translated.keys() ^ english.keys()):
            faults.append(f"{path.name}: {id_} is missing here or in murn_en.ts")
        for id_ in sorted(translated.keys() & english.keys()):
            if translated[id_] != english[id_]:
                faults.append(f"{path.name}: {id_} has other placeholders than murn_en.ts")


def check_built(build):
    database = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    built = {Path(entry["file"]).resolve() for entry in database}
    for folder, kind in (("tests", "Test"), ("bench", "Bench"), ("fuzz", "Fuzz")):
        on_disk = set((ROOT / folder).glob(f"**/*{kind}.cpp"))
        if on_disk & built:
            for path in sorted(on_disk - built):
                faults.append(f"{path.relative_to(ROOT)} is built by no target")


check_texts()
if len(sys.argv) > 1:
    check_built(Path(sys.argv[1]))
print("\n".join(faults))
sys.exit(1 if faults else 0)
