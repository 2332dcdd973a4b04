"""Finds the places of a C++ source that a mutant can be made of, and makes files of mutants.

Nothing here parses C++: it relies on the format that clang-format gives the sources, such as blanks
around binary operators alone. What it gets wrong does not compile, and is counted as that.
"""

import dataclasses
import re

ARITHMETIC = {"+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "&": ["|"], "|": ["&"],
              "^": ["|"], "<<": [">>"], ">>": ["<<"]}
COMPARISONS = {"<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
               "==": ["!="], "!=": ["=="]}
LOGIC = {"&&": ["||"], "||": ["&&"]}
BINARY = {**ARITHMETIC, **COMPARISONS, **LOGIC}
ASSIGNMENTS = {f"{sign}=": [f"{others[0]}="] for sign, others in ARITHMETIC.items()}

BINARY_TOKEN = re.compile(r"(?<=[\w)\]}] )(<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^<>])(?=\s)")
ASSIGNMENT_TOKEN = re.compile(r"(?<= )(<<=|>>=|[-+*/%&|^]=)(?= )")
STEP_TOKEN = re.compile(r"\+\+|--")
NOT_TOKEN = re.compile(r"!(?!=)")
NUMBER_TOKEN = re.compile(
    r"(?<![\w.'])(0[xX][0-9a-fA-F']+|\d[\d']*(?:\.\d+)?)([uUlLfF]*)(?![\w.'])")
TRUTH_TOKEN = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"\b(?:if|while) \(")
HIDDEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<!\w)\'(?:\\.|[^\'\\\n])+\'|^[ \t]*#(?:\\\n|[^\n])*',
    re.DOTALL | re.MULTILINE)
NO_VECTORS = re.compile(r"^#if HWY_TARGET == HWY_SCALAR$.*?^#else$", re.DOTALL | re.MULTILINE)
NO_STATEMENT = re.compile(
    r"(const|constexpr|static|using|auto|typedef|case|default|public|private|else|struct|class|"
    r"template|friend|extern|namespace|return\b(?!;))\b|\[\[|\(void\)")
DECLARATION = re.compile(
    r"(?!(?:delete|throw|return|if|while|for|do)\b)[A-Za-z_][\w:]*(<.*>)?[\s*&]+[A-Za-z_]\w*\s*"
    r"(\[.*\])?\s*(=(?!=)|;|\{|\()")
UNTOUCHED_LINE = re.compile(
    r"\bassert\(|\bstatic_assert\b|\boperator|\bHWY_\w+\(|\[\[|^\s*template\b")


@dataclasses.dataclass
class Mutant:
    """One change: the bytes [start, end) of `file` become `text`."""

    file: str
    start: int
    end: int
    text: str
    kind: str
    number: int = 0
    line: int = 0
    body: tuple = None  # of the function around it, if the mutant can be one body of many

    def apply(self, source):
        return source[:self.start] + self.text + source[self.end:]


def hide(source):
    """The source with blanks for what no mutant is made of: comments, texts, the preprocessor."""
    def blank(match):
        return re.sub(r"[^\n]", " ", match.group(0))
    return HIDDEN.sub(blank, NO_VECTORS.sub(blank, source))


def closing(text, opening_at):
    """Where the bracket at `opening_at` is closed."""
    pairs = {"(": ")", "{": "}"}
    opening = text[opening_at]
    depth = 0
    for i in range(opening_at, len(text)):
        depth += (text[i] == opening) - (text[i] == pairs[opening])
        if depth == 0:
            return i
    raise ValueError("a bracket is never closed")


def function_bodies(code):
    """The braces around each function's body, and whether the function is constexpr."""
    bodies = []
    head_start = i = 0
    while i < len(code):
        if code[i] in ";}":
            head_start = i + 1
        elif code[i] == "{":
            head = re.sub(r"template <[^\n]*>\n", "", code[head_start:i]).strip()
            if re.search(r"\b(namespace|class|struct|union|enum)\b[^()]*$", head):
                head_start = i + 1
            elif "(" in head and re.search(r"(\)|\bconst|\bnoexcept|\boverride|\}|-> [\w:<>*& ]+)$",
                                           head):
                end = closing(code, i)
                bodies.append((i, end, "constexpr" in head))
                i = end
                head_start = end + 1
            else:
                i = closing(code, i)  # braces of an initialiser
        i += 1
    return bodies


def number_choices(match):
    digits, suffix = match.group(1).replace("'", ""), match.group(2)
    if "." in digits:
        return [f"{float(digits) + 1}{suffix}", f"0.0{suffix}"]
    value = int(digits, 0)
    return [f"{other}{suffix}" for other in dict.fromkeys([value + 1, value - 1, 0])
            if other not in (value, -1)]


def token_sites(code):
    """Yields (start, end, choices, kind) of each token that can be another."""
    for pattern, table in ((BINARY_TOKEN, BINARY), (ASSIGNMENT_TOKEN, ASSIGNMENTS)):
        for match in pattern.finditer(code):
            sign = match.group(1)
            kind = ("comparison" if sign in COMPARISONS else "logic" if sign in LOGIC
                    else "operator")
            yield match.start(1), match.end(1), table[sign], kind
    for match in STEP_TOKEN.finditer(code):
        yield match.start(), match.end(), ["--" if match.group(0) == "++" else "++"], "operator"
    for match in NUMBER_TOKEN.finditer(code):
        yield match.start(), match.end(), number_choices(match), "constant"
    for match in TRUTH_TOKEN.finditer(code):
        yield match.start(), match.end(), ["false" if match.group(0) == "true" else "true"], \
            "constant"
    for match in NOT_TOKEN.finditer(code):
        yield match.start(), match.end(), [""], "negation"


def condition_sites(source, code):
    for match in CONDITION.finditer(code):
        opening = match.end() - 1
        end = closing(code, opening)
        if ";" not in code[opening:end]:
            yield opening, end + 1, [f"(!{source[opening:end + 1]})"], "negation"


def statement_sites(code):
    """Simple statements that fill one line each."""
    for match in re.finditer(r"^[ \t]+([^\s{}][^\n{}]*;)[ \t]*$", code, re.MULTILINE):
        statement = match.group(1)
        before = code[:match.start()].rstrip()
        is_whole = before[-1:] in (";", "{", "}") and statement.count("(") == statement.count(")")
        if is_whole and not NO_STATEMENT.match(statement) and not DECLARATION.match(statement):
            yield match.start(1), match.end(1), [";"], "statement"


def text_sites(source):
    """The first letter of each text that is not part of an escape or of a format."""
    for match in HIDDEN.finditer(source):
        letter = re.search(r"(?<![\\%])[A-Za-z]", match.group(0))
        if match.group(0)[0] == '"' and letter:
            start = match.start() + letter.start()
            yield start, start + 1, [chr(ord(letter.group(0)) ^ 1)], "text"


def make_mutant(site, text):
    file, start, end, kind, line, body = site
    return Mutant(file, start, end, text, kind, line=line, body=body)


def all_sites(file, source, has_texts=False):
    """All places of a file, each as a function that makes a mutant of it by a random choice."""
    code = hide(source)
    bodies = function_bodies(code)
    sites = sorted([*token_sites(code), *condition_sites(source, code), *statement_sites(code),
                    *(text_sites(source) if has_texts else [])])
    for start, end, choices, kind in sites:
        line_start = source.rfind("\n", 0, start) + 1
        line = source[line_start:source.find("\n", start)]
        body = next((b for b in bodies if b[0] < start < b[1]), None)
        if UNTOUCHED_LINE.search(line) or (kind == "statement" and body is None):
            continue
        switched_body = body[:2] if body is not None and not body[2] else None
        line_number = source.count("\n", 0, start) + 1
        site = (file, start, end, kind, line_number, switched_body)
        yield lambda random, site=site, choices=choices: make_mutant(site, random.choice(choices))


def with_switches(source, mutants, single=None):
    """The source in which each function has one body for each of its mutants, and the own one. Returns
    it with the number of the mutant that each line belongs to. `single` is made once for all."""
    edits = []
    for body in sorted({mutant.body for mutant in mutants}):
        start, end = body
        parts = [("{\n", 0)]
        for mutant in (m for m in mutants if m.body == body):
            changed = (source[start + 1:mutant.start] + mutant.text +
                       source[mutant.end:end])
            parts.append((f"\nif (quorix_chosen_mutant == {mutant.number}) {{\n{changed}\n}} else ",
                          mutant.number))
        parts.append((f"{{\n{source[start + 1:end]}\n}}\n}}", 0))
        edits.append((start, end + 1, parts))
    if single is not None:
        edits.append((single.start, single.end, [(single.text, single.number)]))
    pieces = []
    position = 0
    for start, end, parts in sorted(edits, key=lambda edit: edit[0]):
        pieces += [(source[position:start], 0), *parts]
        position = end
    pieces.append((source[position:], 0))
    owners = [0]
    for text, number in pieces:
        owners[-1] = owners[-1] or number
        owners += [number] * text.count("\n")
    return "".join(text for text, _ in pieces), owners
