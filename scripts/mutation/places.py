"""Where a source file can be changed by one token, and what the token can become."""

import collections
import hashlib
import re

# Binary operators count only between spaces, where clang-format writes them: what has none is a template's bracket, a
# pointer or a sign. Comments, strings, characters, the preprocessor, attributes and template arguments are passed over.
TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|^[ ]*\#(?:\\\n|[^\n])*|\[\[.*?\]\]|\bstatic_assert\(.*?;|=\ 0;
            |\btemplate\ <[^\n]*|\b\w+<(?:[^<>;{}()]|<[^<>;{}()]*>)*>)
      |(?P<number>\b\d(?:[\w.']|(?<=[eE])[-+])*)
      |(?P<character>'(?:\\.|[^'\\\n])+')
      |(?P<word>\w+)
      |(?P<operator><=>|<<=|>>=|->|\+\+|--|<<|>>|&&|\|\||[-+*/%&|^<>=!]=|[^\s\w])""",
    re.X | re.S | re.M,
)
BINARY = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "<<": [">>"], ">>": ["<<"],
    "&": ["|"], "|": ["&"], "^": ["&"], "&&": ["||"], "||": ["&&"], "?": ["== 0 ?"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "<<=": [">>="], ">>=": ["<<="],
    "&=": ["|="], "|=": ["&="], "^=": ["|="],
}
PREFIX = {"!": [""], "~": [""], "-": [""], "++": ["--"], "--": ["++"]}
WORDS = {"true": ["false"], "false": ["true"], "break": ["continue"], "continue": ["break"]}
CALLS = {"min": ["max"], "max": ["min"], "floor": ["ceil"], "ceil": ["floor"]}
# A call on a line of its own whose result nobody uses.
CALL_STATEMENT = re.compile(r"(?<=[;{})]\n)[ ]+(?P<call>(?!return\b)[\w.:>-]+\([^\n]*\));$", re.M)

Mutant = collections.namedtuple("Mutant", "file start end old new id")


def neighbours(number):
    """The numbers beside a constant, written as it is."""
    if match := re.fullmatch(r"(0[xX][\da-fA-F']+|\d[\d']*)([uUlLzZ]*)", number):
        digits, suffix = match[1].replace("'", ""), match[2]
        base, write = (16, hex) if digits[:2] in ("0x", "0X") else (10, str)
        return [write(value) + suffix for value in (int(digits, base) + 1, int(digits, base) - 1) if value >= 0]
    if match := re.fullmatch(r"(\d[\d']*\.[\d']*(?:[eE][-+]?\d+)?)([fF]?)", number):
        return [repr(float(match[1].replace("'", "")) + 1) + match[2]]
    return []


def replacements(text, token):
    old, before, after = token[0], text[token.start() - 1], text[token.end() : token.end() + 1]
    if token.lastgroup == "number":
        return neighbours(old)
    if token.lastgroup == "word":
        return WORDS.get(old) or (CALLS.get(old, []) if after == "(" else [])
    if token.lastgroup != "operator":
        return []
    if before.isspace() and after.isspace():
        return BINARY.get(old, [])
    return PREFIX.get(old, []) if before in " ([{" or old in ("++", "--") else []


def mutants_of(file, seen):
    """A list of variants for each place. A mutant is known by its line before and after, not by where the line is;
    seen counts equal ones in all files."""
    text = file.read_text()
    places = [(token.start(), token.end(), replacements(text, token)) for token in TOKEN.finditer(text)]
    places += [(call.start("call"), call.end("call"), [""]) for call in CALL_STATEMENT.finditer(text)]
    result = []
    for start, end, news in sorted(place for place in places if place[2]):
        begin, stop = text.rfind("\n", 0, start) + 1, text.find("\n", end)
        variants = []
        for new in news:
            content = f"{text[begin:stop].strip()}\n{(text[begin:start] + new + text[end:stop]).strip()}"
            seen[content] += 1
            identity = hashlib.sha1(f"{content}\n{seen[content]}".encode()).hexdigest()[:10]
            variants.append(Mutant(file, start, end, text[start:end], new, identity))
        result.append(variants)
    return result


def mutated(mutant):
    text = mutant.file.read_text()
    return text[: mutant.start] + mutant.new + text[mutant.end :]


def described(mutant, top):
    text = mutant.file.read_text()
    line = text.count("\n", 0, mutant.start)
    place = f"{mutant.file.relative_to(top)}:{line + 1}"
    return f"{mutant.id} {place}: {mutant.old} -> {mutant.new or '(nothing)'}    in    {text.splitlines()[line].strip()}"


def code_lines(file):
    return sum(1 for line in file.read_text().splitlines() if line.strip() and not line.lstrip().startswith("//"))
