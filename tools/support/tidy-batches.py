#!/usr/bin/env python3
"""Runs clang-tidy over many sources at once: tidy-batches.py [-j JOBS] BUILD FILE…

Most of the time of clang-tidy goes into the headers, which it reads and matches anew for every
source. So sources are included into one, a batch, and checked together. A batch may not compile
where two of them use a name each for itself, and what is found in one may come from another: a
source that anything is found in is put into a smaller batch, in the end alone, and only then is
the finding told. Exits with 1 when there are findings.
"""

import argparse
import concurrent.futures
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
        commands = {entry["file"]: flags_of(entry["command"]) for entry in json.load(file)}
    wanted = [name for name in given.files if name in commands]
    batches = Batches(given.build, commands)
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
