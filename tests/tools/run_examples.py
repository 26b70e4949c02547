#!/usr/bin/python3
"""Runs the examples of the documentation and of every --help: run_examples.py PROGRAM FILE.md...

An example is a line of a code block marked `sh`, or below "Example" in a help, that calls the program. Each runs in a folder of
its own that has sample pictures under the names that it reads, and has to end with status 0.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

# A gallery is made small, and the net has a picture.
TOOLS = """
dibkit() { if [ "$1" = gallery ]; then set -- "$@" --size 24x16; fi; command dibkit "$@"; }
curl() { cat "$SAMPLES/still.png"; }
"""


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def examples(documents):
    """Each line once, in the order in which a reader finds them."""
    commands = re.findall(r"^  (\w+) ", re.split("\nCommands:|\nExample", output("dibkit", "--help"))[1], re.M)
    texts = [output("dibkit", *words, "--help").partition("\nExample")[2] for words in ([], *([c] for c in commands))]
    for document in documents:
        with open(document, encoding="utf-8") as file:
            texts += re.findall(r"^```sh\n(.*?)^```", file.read(), re.M | re.S)
    lines = [line.split(" #")[0].strip() for text in texts for line in text.splitlines()]
    return dict.fromkeys(line for line in lines if re.search(r"(^|[|&] )dibkit ", line))


def complaint(line, samples):
    with tempfile.TemporaryDirectory(prefix="dibkit-example-") as folder:
        reads = re.sub(r"(-o|>) *\S+|dibkit samples.*", "", line) + " here.gif"
        for name in re.findall(r"[\w-]+\.(?:png|jpg|gif)", reads):
            shutil.copy(os.path.join(samples, "animated.gif" if name.endswith("gif") else "still.png"),
                        os.path.join(folder, name))
        result = subprocess.run(["bash", "-c", TOOLS + line], cwd=folder, capture_output=True)
    return "" if result.returncode == 0 else f"exit status {result.returncode}\n{result.stderr.decode()}"


def main(program, *documents):
    os.environ.update(PATH=os.path.dirname(program) + ":" + os.environ["PATH"], LC_ALL="C")
    failed = 0
    with tempfile.TemporaryDirectory(prefix="dibkit-samples-") as samples:
        os.environ["SAMPLES"] = samples
        output("dibkit", "samples", samples, "--size", "60x40")
        pictures = [os.path.join(samples, name) for name in ("lake.png", "dahlia.png")]
        output("dibkit", "transition", *pictures, "-o", os.path.join(samples, "animated.gif"))
        os.rename(pictures[0], os.path.join(samples, "still.png"))
        lines = examples(documents)
        for line in lines:
            wrong = complaint(line, samples)
            failed += bool(wrong)
            print(f"{'FAILED' if wrong else 'passed'}: {line}\n{wrong}", end="", flush=True)
    print(f"{len(lines) - failed} of {len(lines)} examples passed")
    return failed > 0 or len(lines) < 10


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
