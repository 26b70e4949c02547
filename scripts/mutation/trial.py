"""The build of the unchanged sources, and the trial of one mutant against it.

A mutant's file is compiled from a copy in a folder of its own, which the compiler searches before src/; every object
that includes it is compiled again and linked before the library. Nothing else is built, and nothing has to be undone."""

import collections
import json
import math
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import time

from mutation import places

MEMORY = 2 << 30  # bytes that a test program may use
SIGXCPU = 24


class Broken(Exception):
    """The mutant does not compile or link."""


class Program:
    """A test program: the command that links it, and the objects of the library that go into it."""

    def __init__(self, target, build, tests):
        self.target, self.tests = target, tests
        self.name = pathlib.Path(target).name
        commands = build.output("ninja", "-t", "commands", "-s", target).split(" && ")
        self.link = shlex.split(next(command for command in commands if f" -o {target} " in command))
        self.members = set(re.findall(r"\.a\)([\w.]+\.o)", build.output(*self.link, "-Wl,-t,-t")))
        begin = time.monotonic()
        if self.run(build.folder / target, seconds=60):
            sys.exit(f"mutate: {self.name} fails before anything is changed")
        self.seconds = time.monotonic() - begin
        self.limit = 3 + math.ceil(5 * self.seconds)

    def run(self, executable, seconds):
        """The exit status; out of time is counted in seconds of the processor, so that a busy machine changes nothing."""
        limits = ["prlimit", f"--cpu={seconds}:{seconds + 1}", f"--as={MEMORY}", "--core=0"]
        command = [*limits, executable, "--gtest_brief=1", "--gtest_fail_fast"]
        try:
            return subprocess.run(command, cwd=self.tests, capture_output=True, timeout=20 * seconds).returncode
        except subprocess.TimeoutExpired:
            return -SIGXCPU

    def holds(self, target):
        return target in self.link or (target.startswith("src/") and pathlib.Path(target).name in self.members)


class Build:
    """The unchanged sources, built: how each object is compiled, which files include which, and the test programs."""

    def __init__(self, top, folder, jobs):
        self.top, self.folder = top, folder
        configure = ["cmake", "-S", top, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1"]
        configure += ["-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DDIBKIT_SHARED=OFF"]
        configure += ["-DDIBKIT_TOOLS=OFF", "-DDIBKIT_EXAMPLES=OFF"]
        for command in (configure, ["ninja", "-C", folder, f"-j{jobs}"]):
            built = subprocess.run(command, capture_output=True, text=True)
            if built.returncode:
                sys.exit(f"{built.stdout}{built.stderr}mutate: the unchanged sources do not build")
        entries = json.loads((folder / "compile_commands.json").read_text())
        commands = [shlex.split(entry["command"]) for entry in entries]
        self.commands = {command[command.index("-o") + 1]: command for command in commands}
        self.includers = collections.defaultdict(set)  # by file: the objects that it goes into
        for line in self.output("ninja", "-t", "deps").splitlines():
            if line and not line.startswith(" "):
                target = line.split(":")[0]
            elif line and target in self.commands:
                self.includers[(folder / line.strip()).resolve()].add(target)
        targets = self.output("ninja", "-t", "targets", "all")
        tests = re.findall(r"^(\S*/test_\w+): CXX_EXECUTABLE_LINKER", targets, re.M)
        self.programs = sorted((Program(test, self, top / "tests") for test in tests), key=lambda one: one.seconds)

    def output(self, *command):
        return subprocess.run(command, cwd=self.folder, check=True, capture_output=True, text=True).stdout


class Trial:
    """One mutant, tried in a folder: what it changes is compiled, and one test program after the other linked and run."""

    def __init__(self, build, mutant, folder):
        self.build, self.mutant, self.folder = build, mutant, folder
        self.objects = {}  # by target: the changed object, or None where the change makes no difference
        shutil.rmtree(folder, ignore_errors=True)
        self.copy = folder / mutant.file.relative_to(build.top)
        self.copy.parent.mkdir(parents=True)
        self.copy.write_text(places.mutated(mutant))

    def verdict(self, room):
        """killed, out of time (killed too), survived, uncompiled, or same code: the compiler makes no difference."""
        try:
            for program in sorted(self.build.programs, key=lambda one: one.name != f"test_{room}"):
                if how := self.killed_by(program):
                    return how
        except Broken:
            return "uncompiled"
        return "survived" if any(self.objects.values()) or not self.objects else "same code"

    def killed_by(self, program):
        targets = sorted(target for target in self.build.includers[self.mutant.file] if program.holds(target))
        changed = {target: made for target in targets if (made := self.compiled(target))}
        if not changed:
            return None
        executable = self.folder / program.name
        link = [changed.get(word, word) for word in program.link]
        link[link.index(program.target)] = str(executable)
        library = next(i for i, word in enumerate(link) if word.endswith(".a"))
        link[library:library] = [made for target, made in changed.items() if target not in program.link]
        self.make(link)
        status = program.run(executable, program.limit)
        executable.unlink()
        return ("out of time" if status == -SIGXCPU else "killed") if status else None

    def compiled(self, target):
        if target not in self.objects:
            made = self.folder / target
            made.parent.mkdir(parents=True, exist_ok=True)
            instead = {target: str(made), str(self.mutant.file): str(self.copy)}
            command = [instead.get(word, word) for word in self.build.commands[target]]
            first = next(i for i, word in enumerate(command) if word.startswith("-I"))
            self.make([*command[:first], f"-I{self.folder / 'src'}", *command[first:]])
            same = made.read_bytes() == (self.build.folder / target).read_bytes()
            self.objects[target] = None if same else str(made)
        return self.objects[target]

    def make(self, command):
        if subprocess.run(command, cwd=self.build.folder, capture_output=True).returncode:
            raise Broken
