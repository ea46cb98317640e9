#!/usr/bin/env python3
"""Runs clang-tidy over many sources at once: tidy-batches.py [-j JOBS] BUILD FILE…

Most of the time of clang-tidy goes into the headers, which it reads and matches anew for every
source. So sources are included into one, a batch, and checked together. A batch may not compile
where two of them use a name each for itself, and what is found in one may come from another: a
source that anything is found in is put into a smaller batch, in the end alone, and only then is
the finding told. Exits with 1 when there are findings.

Sources in which nothing was found are left out the next time, for as long as neither they nor what
they include, their flags, the checks and clang-tidy change. What they include the build knows,
which must be up to date; BUILD/tidy/passed keeps this and can be deleted.
"""

import argparse
import concurrent.futures
import functools
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys

LARGEST = 32
# Not what moc has written, though clang-tidy ends with a fault of it.
FINDING = re.compile(r"^(/[^:\n]+(?<!\.moc)):\d+:\d+: (?:error|warning): .*$", re.MULTILINE)
MADE = re.compile(r"^/[^:\n]+\.moc:\d+:\d+: (?:error|warning): ", re.MULTILINE)


def flags_of(command):
    """What the sources of a batch may share: places, macros, warnings and the dialect."""
    words = iter(shlex.split(command))
    flags = []
    for word in words:
        if word in ("-isystem", "-I", "-D"):
            flags.append((word, next(words)))
        elif word.startswith(("-I", "-D", "-W", "-std=")) and word != "-Werror":
            flags.append((word,))
    return flags


def object_of(command):
    words = shlex.split(command)
    return words[words.index("-o") + 1]


@functools.lru_cache(maxsize=None)
def state_of(path):
    """Of a header of the system its time, of all else the bytes."""
    try:
        if path.startswith("/usr/"):
            facts = os.stat(path)
            return f"{facts.st_size} {facts.st_mtime_ns}"
        with open(path, "rb") as file:
            return hashlib.sha256(file.read()).hexdigest()
    except OSError:
        return "none"


class Passed:
    """What nothing was found in, by a hash of all that clang-tidy sees of it."""

    def __init__(self, build, objects, commands):
        self.commands = commands
        self.objects = objects
        self.includes = {}
        deps = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True,
                              stdout=subprocess.PIPE, text=True).stdout
        for block in deps.split("\n\n"):
            lines = block.strip().split("\n")
            name, _, state = lines[0].partition(": #deps")
            if "VALID" in state:
                self.includes[name] = [os.path.join(build, line.strip()) for line in lines[1:]]
        version = subprocess.run(["clang-tidy", "--version"], check=True,
                                 stdout=subprocess.PIPE, text=True).stdout
        root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
        self.common = version + state_of(os.path.join(root, ".clang-tidy")) + state_of(__file__)
        self.path = os.path.join(build, "tidy", "passed")
        self.keys = set()
        if os.path.exists(self.path):
            with open(self.path, encoding="utf-8") as file:
                self.keys = set(file.read().split())

    def key(self, source):
        """None: the build does not know what it includes."""
        includes = self.includes.get(self.objects[source])
        if includes is None:
            return None
        text = self.common + repr(self.commands[source])
        text += "".join(f"\n{path} {state_of(path)}" for path in [source, *includes]
                        if not path.endswith(".gch"))
        return hashlib.sha256(text.encode()).hexdigest()

    def __contains__(self, source):
        return self.key(source) in self.keys

    def add(self, sources):
        new = {key for key in map(self.key, sources) if key} - self.keys
        self.keys |= new
        with open(self.path, "a", encoding="utf-8") as file:
            file.writelines(f"{key}\n" for key in new)


class Batches:
    def __init__(self, build, commands):
        self.folder = os.path.join(os.path.abspath(build), "tidy")
        self.commands = commands
        self.number = 0
        self.told = set()
        os.makedirs(self.folder, exist_ok=True)

    def check(self, sources):
        """The sources of the batch with findings, and what clang-tidy said."""
        self.number += 1
        folder = os.path.join(self.folder, str(self.number))
        os.makedirs(folder, exist_ok=True)
        flags = {}  # in their order, each once; of a macro the first value
        for source in sources:
            for flag in self.commands[source]:
                flags.setdefault(flag[-1].split("=")[0], flag)
        batch = sources[0]
        if len(sources) > 1:
            batch = os.path.join(folder, "batch.cpp")
            with open(batch, "w", encoding="utf-8") as file:
                file.writelines(f'#include "{source}"\n' for source in sources)
        words = ["clang++", *(word for flag in flags.values() for word in flag),
                 "-Wthread-safety", "-Wno-unknown-warning-option", "-c", batch]
        with open(os.path.join(folder, "compile_commands.json"), "w", encoding="utf-8") as file:
            json.dump([{"directory": folder, "file": batch, "arguments": words}], file)
        run = subprocess.run(
            ["clang-tidy", "--quiet", "-p", folder,
             "--checks=clang-diagnostic-*,-bugprone-suspicious-include", batch],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        found = set(FINDING.findall(run.stdout))
        if not found and (run.returncode == 0 or MADE.search(run.stdout)):
            return [], ""
        # One in a header may be of any of them.
        suspects = [source for source in sources if source in found]
        return suspects or sources, run.stdout

    def tell(self, text):
        text = text.strip()
        if text not in self.told:
            self.told.add(text)
            print(text, flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("-j", "--jobs", type=int, default=os.cpu_count())
    parser.add_argument("build")
    parser.add_argument("files", nargs="+")
    given = parser.parse_args()
    with open(os.path.join(given.build, "compile_commands.json"), encoding="utf-8") as file:
        entries = json.load(file)
    commands = {entry["file"]: flags_of(entry["command"]) for entry in entries}
    batches = Batches(given.build, commands)
    passed = Passed(os.path.abspath(given.build),
                    {entry["file"]: object_of(entry["command"]) for entry in entries}, commands)
    wanted = [name for name in given.files if name in commands and name not in passed]
    faults = 0
    with concurrent.futures.ThreadPoolExecutor(given.jobs) as pool:
        def cut(sources, size):
            return [sources[i:i + size] for i in range(0, len(sources), size)]

        waiting = {}

        def start(sources):
            waiting[pool.submit(batches.check, sources)] = sources

        for batch in cut(wanted, LARGEST):
            start(batch)
        while waiting:
            done, _ = concurrent.futures.wait(waiting,
                                              return_when=concurrent.futures.FIRST_COMPLETED)
            for future in done:
                sources = waiting.pop(future)
                suspects, text = future.result()
                if not suspects:
                    passed.add(sources)
                    continue
                if len(sources) == 1:
                    faults += 1
                    batches.tell(text)
                    continue
                # Those without a finding go on together, the suspects apart from them.
                rest = [source for source in sources if source not in suspects]
                if rest:
                    start(rest)
                for batch in cut(suspects, max(1, min(len(suspects), len(sources) // 2))):
                    start(batch)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
