#!/usr/bin/env python3
"""generate.py SOURCE TARGET: writes the recorded interface, the .txt files of SOURCE, as the C++ that TARGET includes."""
import pathlib
import re
import sys


def written(line_pattern, cpp):
    """What makes C++ of the lines of a record, each of which has to match the pattern."""
    def write(line):
        match = re.fullmatch(line_pattern, line)
        if not match:
            sys.exit(f"not understood: {line}")
        return cpp(*(group or "" for group in match.groups()))
    return write


def kind(extent, name, cpp_type, right, others):
    groups = re.sub(r" \| (\w+): ([^|]*[^| ])", r"{V::\1, {\2}}, ", others)
    is_extent = "bool isExtent() const override { return true; }" if extent else ""
    return f"struct {name} : Values<{cpp_type}> {{ {name}() : Values({right}, {{{groups}}}) {{}} {is_extent} }};"


def image_kind(name, depths, rule):
    return (f"struct {name} : ImageParameter {{ {name}() : ImageParameter("
            f"{{.depths = {{{depths}}}, {rule.removeprefix(' | ')}}}) {{}} }};")


def image_variants(verdict, headers):
    return "\n".join(f"{{&ImageRule::{verdict}, {', '.join(header.split())}}}," for header in headers.split("|"))


def operation(protected, result, name, kinds):
    door = "Open" if protected else ""
    return f'[] {{ return operation<{result}({kinds})>("{name}", &{door}{name}); }},'


records = {
    "kinds": written(r"(extent )?(\w+) = ([^|{(]+): ([^|]+?)((?: \| \w+: [^|]+)*)", kind),
    "image_kinds": written(r"(\w+): (\d+(?:, \d+)*)( \| .*)?", image_kind),
    "image_variants": written(r"(\w+): (.*)", image_variants),
    "operations": written(r"(protected )?(\w+) ([\w:]+)\((.*)\)", operation),
    "layout": written(r"(.*) = (.*)", "EXPECT_EQ({}, {});".format),
}
source, target = map(pathlib.Path, sys.argv[1:])
for record, write in records.items():
    lines = [line for line in (source / f"{record}.txt").read_text().splitlines() if line and line[0] != "#"]
    (target / f"{record}.inc").write_text("".join(write(line) + "\n" for line in lines))
