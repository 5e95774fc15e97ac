#!/usr/bin/env python3
"""Compares the tables of other languages with the texts in the sources: check_texts.py [ROOT] [--missing]

Every literal in translated(...), translatedCount(...) and marked(...) below common/ and standalone/, the words of
verdicts and the titles of checks in common/quality/, and each of the module's sentences about a command, is a key of
strings/<language>/client.txt, and every key that the module looks up one of GENOSTAT.txt. A finding is a text without a
translation, a translation of a text that no source has, and one whose {1} to {9} differ from the
text's. --missing prints lines for client.txt instead. The status is 1 if there is any finding.
"""
import ast
import pathlib
import re
import sys

CALL = re.compile(r"\b(translated|translatedCount|marked)\(")
PIECE = re.compile(r'"(?:[^"\\\n]|\\.)*"|//[^\n]*|\'(?:[^\'\\]|\\.)\'|[^"\'/]+|.', re.S)
TEXT_ARGUMENTS = {"translated": (0,), "translatedCount": (1, 2), "marked": (0,)}
PLACE = re.compile(r"\{[1-9]\}")


def arguments(text, begin):
    """The arguments of the call whose parenthesis opens before `begin`, each as a list of its pieces at the
    call's own level: literals and ';' for everything that separates them."""
    depth, found = 0, [[]]
    for match in PIECE.finditer(text, begin):
        piece = match.group()
        if piece.startswith("//"):
            continue
        if piece.startswith('"'):
            # A condition, as in translated(many ? "a" : "b"), may compare literals in parentheses only.
            if depth == 0:
                found[-1].append(piece)
            continue
        for c in piece if not piece.startswith("'") else "":
            if c in "([{":
                depth += 1
            elif c in ")]}":
                if depth == 0:
                    return found
                depth -= 1
            elif c == "," and depth == 0:
                found.append([])
            elif not c.isspace() and depth == 0 and (not found[-1] or found[-1][-1] != ";"):
                found[-1].append(";")
    return found


def decoded(literal):
    # "\xC3\x84" is UTF-8, byte by byte.
    text = ast.literal_eval(literal)
    return text.encode("latin-1").decode() if literal.isascii() else text


def literals(pieces):
    """Neighbouring literals are one text."""
    texts, joined = [], None
    for piece in pieces + [";"]:
        if piece != ";":
            joined = (joined or "") + decoded(piece)
        elif joined is not None:
            texts.append(joined)
            joined = None
    return texts


def source_texts(root):
    """Text -> where it stands first."""
    texts = {}
    for path in sorted(path for room in ("common", "standalone") for path in (root / room).rglob("*")):
        if path.suffix not in {".cpp", ".h"} or "node_modules" in path.parts:
            continue
        source = path.read_text(encoding="utf-8")
        for call in CALL.finditer(source):
            line_begin = source.rfind("\n", 0, call.start()) + 1
            if "//" in source[line_begin:call.start()]:
                continue
            found = arguments(source, call.end())
            if call.group(1) == "marked" and len(found) != 1:
                continue  # another function of that name, such as marked(cell, "a")
            place = f"{path.relative_to(root).as_posix()}:{source.count(chr(10), 0, call.start()) + 1}"
            for index in TEXT_ARGUMENTS[call.group(1)]:
                for text in literals(found[index]) if index < len(found) else []:
                    texts.setdefault(text, place)
    return texts


def check_texts(root):
    """What verdicts and checks are called."""
    name = "common/quality/checks.h"
    source = (root / name).read_text(encoding="utf-8")
    words = re.search(r'kVerdictWords = \{"", ([^}]*)\}', source).group(1)
    texts = re.findall(r'"([^"]+)"', words) + re.findall(r'^    \{"\w+", "([^"]+)", ', source, re.M)
    return dict.fromkeys(texts, name)


def command_errors(root):
    """The module's own sentences about its command, which the host shows in the user's language."""
    name = "entry/record/genomic_parser_exception.cpp"
    source = (root / name).read_text(encoding="utf-8")
    begin = source.index("kTexts = {") + len("kTexts = {")
    found = arguments(source, begin) + [[literal] for literal in re.findall(r': ("[A-Z][^"]*");', source)]
    return {text: name for pieces in found for text in literals(pieces)}


def module_texts(root):
    """What the module looks up: its words, and why an analysis failed."""
    texts = {}
    words = (root / "entry/record/texts.h").read_text(encoding="utf-8").split("// Diagnostics on")[0]
    reasons = (root / "errors/error_templates.cpp").read_text(encoding="utf-8")
    for place, source, pattern in (("entry/record/texts.h", words.split("// Keys", 1)[1], r'= ("[^"]*")'),
                                   ("errors/error_templates.cpp", reasons, r'\{("[^"]+"), "')):
        for literal in re.findall(pattern, source):
            texts[ast.literal_eval(literal)] = place
    return texts


def unescape(text):
    return re.sub(r"\\(.)", lambda m: {"n": "\n", "t": "\t"}.get(m.group(1), m.group(1)), text)


def escape(text):
    text = text.replace("\\", "\\\\").replace("\n", "\\n").replace("\t", "\\t")
    return "\\" + text if text.startswith("#") else text


def table(path, escaped):
    rows, faults = {}, []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith("#") or not line.strip():
            continue
        place = f"{path.parent.name}/{path.name}:{number}"
        key, tab, text = line.partition("\t")
        if not tab or not text:
            faults.append(f"strings/{place}: no translation")
        key, text = (unescape(key), unescape(text)) if escaped else (key, text)
        if key in rows:
            faults.append(f"strings/{place}: a second time {key!r}")
        rows[key] = (text, f"strings/{place}")
    return rows, faults


def findings(wanted, rows):
    for text, place in wanted.items():
        if text not in rows:
            yield f"{place}: no translation of {text!r}"
        elif sorted(set(PLACE.findall(text))) != sorted(set(PLACE.findall(rows[text][0]))):
            yield f"{rows[text][1]}: other values than in {text!r}"
    for text, (_, place) in rows.items():
        if text not in wanted:
            yield f"{place}: no source says {text!r}"


def main() -> int:
    options = [argument for argument in sys.argv[1:] if argument.startswith("--")]
    root = pathlib.Path(next((a for a in sys.argv[1:] if not a.startswith("--")), "."))
    texts = source_texts(root) | check_texts(root) | command_errors(root)
    found = []
    for folder in sorted(path for path in (root / "strings").iterdir() if path.is_dir()):
        client, faults = table(folder / "client.txt", True)
        module, more_faults = table(folder / "GENOSTAT.txt", False)
        if "--missing" in options:
            print("\n".join(escape(text) + "\t" for text in texts if text not in client))
            continue
        found += faults + more_faults
        found += findings(texts, client)
        found += findings(module_texts(root), module)
    if "--missing" in options:
        return 0
    print("\n".join(found) if found else f"texts: no finding in {len(texts)}")
    return 1 if found or not texts else 0


sys.exit(main())
