"""Compares files that must agree: check-sources.py [BUILD_FOLDER]

- the ids of texts used under src/ and those of every data/translations/*.ts;
- sentences written into the code below the shell's commands, which people could not read in their
  language, failures told in such sentences, and waits for a fixed time in tests;
- loops over a part of a value that nobody keeps;
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
# Words in a string literal, where no statement says that they are an error's message, a line of
# the log or a database's text.
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
SENTENCE = re.compile(r"(?:^|[\s:;,(])[a-zA-Z']{2,}(?:,? [a-zA-Z'%0-9]+){2,}")
NOT_FOR_PEOPLE = re.compile(r"XPError|malformed|fail\(|\bqC(?:Debug|Info|Warning|Critical)\(|xpLog|"
                            r"static_assert|Q_ASSERT|\b(?:SELECT|PRAGMA|INSERT|CREATE|DELETE|DROP)\b")
# The beginning of a failure's text, which windows show as it is. What was cancelled is not told,
# and a wrong argument is mostly this program's own fault.
FAILURE = re.compile(r"(?:XPError::(?:make|malformed)|\bfail)\(\s*"
                     r"(?!(?:XPError::)?Kind::(?:Cancelled|InvalidArgument)\b)")
TEXT_BY_ID = re.compile(r'qtTrId\(\s*"[^"]*"')
WORDS = re.compile(r"[A-Za-z]{2}")
# Programs beside the window: what they say is translated where it is shown, by its kind.
FAILURES_ELSEWHERE = ("src/platform/importing/", "src/platform/index/",
                      "src/platform/desktop/writer/")
FAILURES_KNOWN = {
    "src/app/KPOpenedUrl.cpp": "the log",
    "src/documents/KPDocPrefs.cpp": "the log",
    "src/platform/base/UserDefaults.cpp": "the log",
    "src/platform/base/XPAliasRecord.cpp": "what does not parse, and where",
    "src/platform/base/XPPropertyListBinaryReader.cpp": "what does not parse, and where",
    "src/platform/base/XPPropertyListBinaryWriter.cpp": "what cannot be written",
    "src/platform/base/XPPropertyListXmlReader.cpp": "what does not parse, and where",
    "src/platform/base/XPPropertyListXmlWriter.cpp": "what cannot be written",
    "src/platform/desktop/XPRecentFiles.cpp": "the log",
}
# The programs of the shell speak English, and say it themselves.
SPEAKS_ENGLISH = ("src/cli/", "src/service/", "src/importer/", "src/scanner/", "src/app/program/")
# Literals that became an error's message in another statement, or texts fixed by a convention.
SENTENCES_KNOWN = {
    "src/app/KPControllerCommands.cpp": "a report for those who make the program",
    "src/documents/KPDocNames.cpp": "a title that stays on the file",
    "src/filing/XPMoveRecovery.cpp": "the log of what was put right",
    "src/platform/base/XPPropertyListBinaryReader.cpp": "errors",
    "src/platform/base/XPPropertyListXmlReader.cpp": "errors",
    "src/platform/base/XPSetting.cpp": "errors, and what the shell says of a setting",
    "src/platform/importing/CagedImporter.cpp": "errors and what the cage lacks",
    "src/platform/importing/ImportAttempts.cpp": "errors",
    "src/platform/importing/ImportProcess.cpp": "errors",
    "src/platform/importing/ImportWorker.cpp": "errors",
    "src/platform/index/content/IndexTextReader.cpp": "errors",
    "src/platform/index/keep/IndexRequests.cpp": "errors",
    "src/platform/index/store/IndexStore.cpp": "errors",
    "src/search/KPSearchStateTexts.cpp": "an id",
    "src/tags/KPTagHealer.cpp": "the log of healings",
    "src/tags/KarvexBackup.cpp": "errors and the log",
    "src/tags/KarvexErrors.cpp": "errors of the convention",
    "src/tags/KarvexMirror.cpp": "the log of what stays as it is",
    "src/tags/KarvexRestore.cpp": "errors",
    "src/types/KPFileTypeNames.cpp": "an id",
}
SLEEP = re.compile(r"\b(?:sleep_for|sleep_until|usleep|nanosleep|qWait)\s*\(|\b[mu]?sleep\(\d")
SLEEPS_KNOWN = {
    "tests/filing/XPFilePromiseTest.cpp": "a source that writes late",
    "tests/platform/index/keep/IndexTestKept.h": "looks again until a condition holds",
    "tests/platform/index/keep/IndexKillTest.cpp": "the moment of the kill, at random",
}
# What is looped over lives as long as its last call's answer, not as long as those before it.
GONE_LOOP = re.compile(r"\bfor \([^;:{}]*[^:]:\s*[^:;{}]*\)\s*"
                       r"(?:\.(?:array|dictionary|string|data)\(\)|->\w+)\s*\)\s")
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


def sources(folder):
    """Each source below the folder as its path in the project and its code without comments."""
    for path in sorted(ROOT.glob(f"{folder}/**/*")):
        if path.suffix in (".cpp", ".h"):
            code = re.sub(r"//.*", "", path.read_text(encoding="utf-8"))
            yield path.relative_to(ROOT).as_posix(), code


def check_sentences():
    for path, code in sources("src"):
        if path.startswith(SPEAKS_ENGLISH) or path in SENTENCES_KNOWN:
            continue
        whole = re.sub(r'"\s*\n\s*"', "", code)
        for statement in re.split(r"[;{}]", whole):
            if not NOT_FOR_PEOPLE.search(statement):
                for text in LITERAL.findall(statement):
                    if SENTENCE.search(text):
                        faults.append(f"{path}: \"{text}\" belongs into the translations")


def arguments(code, start):
    """What stands in the brackets of a call that are open at the place."""
    depth = 1
    for found in re.finditer(r'"(?:[^"\\\n]|\\.)*"|[()]', code[start:]):
        depth += {"(": 1, ")": -1}.get(found[0], 0)
        if depth == 0:
            return code[start:start + found.start()]
    return ""


def check_failures():
    for path, code in sources("src"):
        if path.startswith(SPEAKS_ENGLISH + FAILURES_ELSEWHERE) or path in FAILURES_KNOWN:
            continue
        whole = TEXT_BY_ID.sub("", re.sub(r'"\s*\n\s*"', "", code))
        for found in FAILURE.finditer(whole):
            for text in filter(WORDS.search, LITERAL.findall(arguments(whole, found.end()))):
                faults.append(f"{path}: the failure \"{text}\" belongs into the translations")


def check_waits():
    for path, code in sources("tests"):
        if path not in SLEEPS_KNOWN and SLEEP.search(code):
            faults.append(f"{path}: waits for a time, not for a signal or condition")


def check_loops():
    for folder in ("src", "tests", "bench", "fuzz"):
        for path, code in sources(folder):
            for found in GONE_LOOP.finditer(code):
                faults.append(f"{path}: \"{' '.join(found[0].split())}\" loops over what is gone")


def check_built(build):
    database = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    built = {Path(entry["file"]).resolve() for entry in database}
    for folder, kind in (("tests", "Test"), ("bench", "Bench"), ("fuzz", "Fuzz")):
        on_disk = set((ROOT / folder).glob(f"**/*{kind}.cpp"))
        if on_disk & built:
            for path in sorted(on_disk - built):
                faults.append(f"{path.relative_to(ROOT)} is built by no target")


check_texts()
check_sentences()
check_failures()
check_waits()
check_loops()
if len(sys.argv) > 1:
    check_built(Path(sys.argv[1]))
print("\n".join(faults))
sys.exit(1 if faults else 0)
