"""Single edits of C++ sources, each one that a person could make by mistake: mutations(text) lists them.

Text-based: a few do not compile, and a few change nothing that runs; both are for the caller to find out.
"""
import dataclasses
import re

TOKENS = re.compile(
    r"""(?P<comment>//[^\n]*|^\s*\#[^\n]*|static_assert\(.*?\);)
      |(?P<text>u?"(?:\\.|[^"\\\n])*")
      |(?P<char>'(?:\\.|[^'\\\n])*')
      |(?P<number>(?<![\w.])-?\d[\w.']*)
      |(?P<word>[A-Za-z_]\w*)
      |(?P<operator>\ (?:<=|>=|<|>|==|!=|&&|\|\||\+=|-=|\+|-|<<|>>|\*|/|%|&|\^)\ |!(?=[\w(*])|\+\+|--)
      |(?P<other>.)""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)
SWAPS = {
    "<": ["<=", ">="], ">": [">=", "<="], "<=": ["<", ">"], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "+=": ["-="], "-=": ["+="], "<<": [">>"], ">>": ["<<"],
    "*": ["+"], "/": ["*"], "%": ["/"], "&": ["|"], "^": ["|"], "++": ["--"], "--": ["++"], "!": [""],
}
# Another process or thread than those of the test could be hit, or a lock is left out, which only sanitizers see.
LEFT_ALONE = re.compile(r"processId_|lock_guard|unique_lock|\b(un)?lock\(")


@dataclasses.dataclass(frozen=True)
class Mutation:
    kind: str
    start: int
    end: int
    new: str

    def apply(self, text: str) -> str:
        return text[: self.start] + self.new + text[self.end :]


def line_at(text: str, position: int) -> str:
    return text[text.rfind("\n", 0, position) + 1 : (text + "\n").find("\n", position)]


def of_tokens(text: str):
    for match in TOKENS.finditer(text):
        kind, token, start, end = match.lastgroup, match.group(), match.start(), match.end()
        if kind == "number" and re.fullmatch(r"-?\d+u?", token):
            value = int(token.rstrip("u"))
            for new in {value + 1, value - 1} | ({0} if value not in (0, 1) else set()):
                yield Mutation("number", start, end, str(new) + ("u" if token.endswith("u") else ""))
        elif kind == "operator":
            core = token.strip()
            for new in SWAPS[core]:
                yield Mutation("comparison" if core in "<= >= == != && || !" else "operator", start, end,
                               token.replace(core, new))
        elif kind == "word" and token in ("true", "false"):
            yield Mutation("true or false", start, end, "false" if token == "true" else "true")
        elif kind in ("text", "char"):
            yield from of_text(kind, token, start)


def of_text(kind: str, token: str, start: int):
    body = token.index(token[-1]) + 1
    units = [m.span() for m in re.finditer(r"\\x[0-9a-f]+|\\.|.", token[body:-1])]
    if not units:
        yield Mutation("text", start + body, start + body, "x")
    elif kind == "char":
        yield Mutation("text", start + body, start + len(token) - 1, "#")
    else:
        # The first, the last and a middle character; each goes or becomes another one.
        for first, last in {units[0], units[-1], units[len(units) // 2]}:
            new = "y" if token[body + first : body + last] == "x" else "x"
            yield Mutation("text", start + body + first, start + body + last, new)
            if len(units) > 1:
                yield Mutation("text", start + body + first, start + body + last, "")


def statements(text: str):
    """(start, end, indent, source) of statements that end in ";", without those in declarations of classes."""
    pattern = re.compile(r"^( +)((?:\w|::|[(*~])[^\n]*(?:\n\1 +[^\n]*)*;)[^\n]*\n", re.MULTILINE)
    for match in pattern.finditer(text):
        if "{" not in match.group(2) or match.group(2).count("{") == match.group(2).count("}"):
            yield match.start(), match.end(), match.group(1), match.group(2)


CALL = re.compile(
    r"(?!return\b|throw\b|using\b|delete\b)(?:\(void\))?[\w:.*>()~-]+(?:\[\w+\])?\s*(?:\(.*\)|[+|-]?= .*);", re.DOTALL
)
DECLARATION = re.compile(r"(?:const |static |constexpr |\[\[|using |friend |explicit |virtual )")


def of_statements(text: str):
    found = list(statements(text))
    for start, end, indent, source in found:
        if CALL.fullmatch(source) and not DECLARATION.match(source):
            yield Mutation("deleted statement", start, end, indent + ";\n")
        guard = re.fullmatch(r"if \((.*)\) (return\b[^;]*|continue|break|throw [^;]*);", source, re.DOTALL)
        if guard:
            yield Mutation("deleted statement", start, end, indent + ";\n")
    for (start, middle, indent, first), (next_start, end, next_indent, second) in zip(found, found[1:]):
        neighbours = middle == next_start and indent == next_indent
        if neighbours and not re.search(r"\b(return|throw|break|friend|using)\b", first + second):
            yield Mutation("order", start, end, text[next_start:end] + text[start:middle])


def of_arguments(text: str):
    """Two neighbouring arguments of a call exchanged."""
    simple = r"[\w.:>&*\"'-]+(?:\(\))?"
    pair = rf"({simple}), ({simple})(?=[,)}}])"
    for match in re.finditer(rf"(?<=[(,{{] ){pair}|(?<=[({{]){pair}", text):
        first, second = [group for group in match.groups() if group is not None]
        if first != second and not re.match(r"\s*(//|#)", line_at(text, match.start())):
            yield Mutation("order", match.start(), match.end(), f"{second}, {first}")


def mutations(text: str) -> list[Mutation]:
    """All edits of a source, in a fixed order, each with its kind."""
    found = {*of_tokens(text), *of_statements(text), *of_arguments(text)}
    kept = [m for m in found if not LEFT_ALONE.search(text[text.rfind("\n", 0, m.start) + 1 :
                                                            max(m.end, text.find("\n", m.start))])]
    return sorted(kept, key=lambda m: (m.start, m.end, m.new))
