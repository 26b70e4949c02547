#!/usr/bin/python3
"""Runs cases of the command line that are written down as text: run_cases.py PROGRAM FILE...

A file of cases (cases/*.txt, each one test of CTest) has these lines:

    # a comment
    == Name of a case
    picture a.png 8x6 ff0000     a PNG; its pixels repeat the colours given, rrggbb or rrggbbaa, 3*ff0000 for three
    $ dibkit info a.png          a line for bash; `dibkit` is the program under test
    > a.png                      a line expected on standard output
    ! dibkit: ...                a line expected on standard error
    = 1                          the expected exit status, else 0
    < 400 MiB                    the most memory that the command may take; sanitizers take more

A case runs in an empty folder of its own and ends at the first thing that is not as expected. What precedes the first
case is done before each. Expectations follow the command that they belong to: its output is exactly the lines given, in
which * matches any characters, and a line `...` any lines. Without such lines it prints nothing.

Commands for what bash has no short word for:

    show, times, changes FILE    what a picture or an animation shows, read without the program; shown.py tells how
    stored FILE OFFSET [COUNT]   bytes of a file, in hexadecimal
    screencast FRAMES SIZE FILE  a GIF like the recording of a screen
    photograph KIND SIZE FILE    a PNG or JPEG of a large size: png, jpeg
    poke FILE OFFSET BYTES       overwrites bytes of a file, written as for printf: '\\xff\\0'
    on_terminal COLUMNS COMMAND  tells what progress it shows on a terminal of so many columns
    interrupted MS COMMAND...    Ctrl-C after MS milliseconds of work
    unprivileged COMMAND...      without root's right to open and change everything
"""

import fcntl
import os
import pty
import re
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(os.path.join(HERE, "../support"))
from picture_files import png_of

TOOLS = r"""
show() { "$PYTHON" "$HERE/shown.py" show "$1"; }
times() { "$PYTHON" "$HERE/shown.py" times "$1"; }
changes() { "$PYTHON" "$HERE/shown.py" changes "$1"; }
stored() { od -An -v -tx1 -w64 -j "$2" ${3:+-N "$3"} "$1" | sed 's/^ //'; }
screencast() { "$PYTHON" "$HERE/screencast.py" "$@"; }
photograph() { "$PYTHON" "$HERE/photograph.py" "$@"; }
poke() { printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none; }
interrupted() { "$PYTHON" "$HERE/run_cases.py" --interrupted "$@"; }
on_terminal() { "$PYTHON" "$HERE/run_cases.py" --on-terminal "$@"; }
unprivileged() { if [ "$(id -u)" = 0 ]; then setpriv --bounding-set -all --inh-caps -all "$@"; else "$@"; fi; }
"""


def write_picture(path, size, runs):
    width, height = map(int, size.split("x"))
    colours = []
    for run in runs:
        count, _, colour = run.rpartition("*")
        colours += [colour] * int(count or 1)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(png_of(width, [colours[i % len(colours)] for i in range(width * height)]))


class Command:
    """A line for bash and what is expected of it."""

    def __init__(self, line):
        self.line, self.out, self.err, self.status, self.memory = line, [], [], 0, None

    def expect(self, mark, text):
        if mark == ">":
            self.out.append(text)
        elif mark == "!":
            self.err.append(text)
        elif mark == "=":
            self.status = int(text)
        else:
            self.memory = int(text.removesuffix(" MiB"))

    def complaint(self, folder):
        """Runs the line; nothing, or what was not as expected."""
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            shell = subprocess.Popen(["bash", "-c", TOOLS + self.line], cwd=folder, stdout=out, stderr=err,
                                     stdin=subprocess.DEVNULL)
            _, status, usage = os.wait4(shell.pid, 0)
            out.seek(0)
            err.seek(0)
            got = out.read().decode(), err.read().decode(), os.waitstatus_to_exitcode(status)
        wrong = []
        for name, wanted, given in ("standard output", self.out, got[0]), ("standard error", self.err, got[1]):
            if not pattern_of(wanted).fullmatch(given):
                wrong.append(f"{name} is\n{given}    instead of\n" + "".join(line + "\n" for line in wanted))
        if got[2] != self.status:
            wrong.append(f"exit status {got[2]} instead of {self.status}\n{got[1]}")
        if self.memory and not os.environ.get("DIBKIT_SANITIZED") and usage.ru_maxrss > self.memory * 1024:
            wrong.append(f"took {usage.ru_maxrss // 1024} MiB")
        return "".join(f"  $ {self.line}\n    {what}" for what in wrong)


def pattern_of(lines):
    patterns = ["(?:.*\n)*?" if line == "..." else ".*".join(map(re.escape, line.split("*"))) + "\n" for line in lines]
    return re.compile("".join(patterns))


def read_cases(path):
    """Pairs of a name and its steps, which are commands or the words of `picture`."""
    before, cases = [], []
    steps = before
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            mark, _, text = line.rstrip("\n").partition(" ")
            if mark == "==":
                steps = list(before)
                cases.append((text, steps))
            elif mark == "$":
                steps.append(Command(text))
            elif mark == "picture":
                steps.append(text.split())
            elif mark in (">", "!", "=", "<") and steps and isinstance(steps[-1], Command):
                steps[-1].expect(mark, text)
            elif mark and not mark.startswith("#"):
                sys.exit(f"{path}:{number}: not understood: {line}")
    return cases


def run_case(steps):
    with tempfile.TemporaryDirectory(prefix="dibkit-case-") as folder:
        for step in steps:
            if isinstance(step, Command):
                complaint = step.complaint(folder)
                if complaint:
                    return complaint
            else:
                name, size, *colours = step
                write_picture(os.path.join(folder, name), size, colours)
    return ""


def interrupted(milliseconds, *command):
    """Becomes the command's status. A program that is only starting does not catch Ctrl-C yet."""
    child = subprocess.Popen(command, preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL))
    for _ in range(2000):
        with open(f"/proc/{child.pid}/status", encoding="ascii") as status:
            caught = int(re.search(r"SigCgt:\s*(\w+)", status.read())[1], 16)
        if caught >> (signal.SIGINT - 1) & 1:
            break
        time.sleep(0.005)
    time.sleep(int(milliseconds) / 1000)
    child.send_signal(signal.SIGINT)
    return child.wait()


def on_terminal(columns, *command):
    """Becomes the command's status and prints what its bar did. A line is drawn from its first column on."""
    terminal, other_end = pty.openpty()
    fcntl.ioctl(other_end, termios.TIOCSWINSZ, struct.pack("4H", 24, int(columns), 0, 0))
    child = subprocess.Popen(command, stderr=other_end)
    os.close(other_end)
    drawn = b""
    try:
        while part := os.read(terminal, 65536):
            drawn += part
    except OSError:
        pass  # how a terminal ends
    lines = [line.rstrip() for line in re.sub(r"\x1b\[K", "", drawn.decode()).split("\r")]
    steps = [int(line.split()[-1].rstrip("%")) for line in lines if line]
    if not any(lines):
        print("no progress")
    else:
        rising = all(a < b for a, b in zip(steps, steps[1:]))
        print(f"progress in {'many' if len(steps) >= 10 else 'few'} steps that {'rise' if rising else 'rise and fall'}",
              f"from {steps[0]} % to {steps[-1]} %, {max(map(len, lines))} columns wide",
              f"and {'leave something behind' if lines[-1] else 'gone at the end'}")
    return child.wait()


def main(program, *files):
    os.environ.update(PATH=os.path.dirname(os.path.abspath(program)) + ":" + os.environ["PATH"], LC_ALL="C", PYTHON=sys.executable, HERE=HERE)
    count = failed = 0
    for path in files:
        for name, steps in read_cases(path):
            count += 1
            complaint = run_case(steps)
            failed += bool(complaint)
            print(f"FAILED: {name}\n{complaint}" if complaint else f"passed: {name}", flush=True)
    print(f"{count - failed} of {count} cases passed")
    return failed > 0 or count == 0


if __name__ == "__main__":
    if sys.argv[1] == "--interrupted":
        sys.exit(interrupted(*sys.argv[2:]))
    if sys.argv[1] == "--on-terminal":
        sys.exit(on_terminal(*sys.argv[2:]))
    sys.exit(main(*sys.argv[1:]))
