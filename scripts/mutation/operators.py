"""Mutants of a C++ source: each changes one line, and nothing that is no code."""

import hashlib
import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""
      (?P<none> \s+ | //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*
              | R"(?P<delimiter>[^()\\\s]{0,16})\(.*?\)(?P=delimiter)" )
    | (?P<string> "(?:[^"\\\n]|\\.)*" )
    | (?P<char>   '(?:[^'\\\n]|\\.)*' )
    | (?P<number> \d[\w.']* )
    | (?P<word>   [A-Za-z_]\w* )
    | (?P<mark>   \+\+ | -- | && | \|\| | -> | :: | << | >> | [-<>=!+*/%&|^]= | . )
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

# Statements with one of these words write to the log, state what must hold anyway, or only save time.
LEFT_ALONE = re.compile(
    r"\b(DiagnosticLog|Q_ASSERT\w*|static_assert|assert|using|template|reserve)\b"
)

# Marks that have a blank on both sides: others are parts of types, or signs.
BINARY = {
    "==": ("comparison", "!="),
    "!=": ("comparison", "=="),
    "<": ("comparison", "<="),
    "<=": ("comparison", "<"),
    ">": ("comparison", ">="),
    ">=": ("comparison", ">"),
    "&&": ("logic", "||"),
    "||": ("logic", "&&"),
    "+": ("arithmetic", "-"),
    "-": ("arithmetic", "+"),
    "*": ("arithmetic", "/"),
    "/": ("arithmetic", "*"),
    "%": ("arithmetic", "*"),
    "&": ("arithmetic", "|"),
    "|": ("arithmetic", "&"),
    "+=": ("arithmetic", "-="),
    "-=": ("arithmetic", "+="),
    "|=": ("arithmetic", "&="),
    "&=": ("arithmetic", "|="),
}
ANYWHERE = {"++": ("arithmetic", "--"), "--": ("arithmetic", "++")}
WORDS = {"true": ("boolean", "false"), "false": ("boolean", "true")}

CALL = re.compile(r"(?:emit |Q_EMIT |delete |throw )?[^\s=(]+\(.*\);|delete [^;]*;")
ASSIGNMENT = re.compile(
    r"[^\s=(]+(?:\([^=]*\)[^\s=]*)? (?:[-+*/|&]|<<|>>)?= (?!default;|delete;).*;"
)
COUNTING = re.compile(r"(?:\+\+|--)[^\s;]+;")
JUMP = re.compile(r"(?:break|continue|return);")


@dataclass(frozen=True)
class Mutant:
    path: str  # below the root of the sources
    line: int  # the first line is 1
    operator: str
    before: str
    after: str
    nth: int  # among the equal lines of the file

    @property
    def key(self):
        """Stays the same while other lines change and when the file moves to another folder."""
        name = self.path.rsplit("/", 1)[-1]
        text = "\0".join((name, self.before, str(self.nth), self.after))
        return hashlib.sha256(text.encode()).hexdigest()[:16]

    def apply(self, text):
        lines = text.split("\n")
        assert lines[self.line - 1] == self.before
        lines[self.line - 1] = self.after
        return "\n".join(lines)

    def diff(self):
        return f"{self.path}:{self.line} [{self.operator}]\n- {self.before.strip()}\n+ {self.after.strip()}"


@dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int


def tokens_of(text):
    found = (Token(m.lastgroup, m.group(), m.start(), m.end()) for m in TOKEN.finditer(text))
    return [token for token in found if token.kind not in ("none", "delimiter")]


def statements_of(tokens):
    """Splits at semicolons and braces, which end the statement that they are in."""
    statement = []
    for token in tokens:
        statement.append(token)
        if token.text in ";{}":
            yield statement
            statement = []
    if statement:
        yield statement


def number_changes(text):
    octal = re.fullmatch(r"0([0-7]+)", text)
    if octal:
        yield f"0{int(octal[1], 8) + 1:o}"
        return
    whole = re.fullmatch(r"(\d+)([uUlL]*)", text)
    if whole:
        value, suffix = int(whole[1]), whole[2]
        yield f"{value + 1}{suffix}"
        if value > 0:
            yield f"{value - 1}{suffix}"
        return
    broken = re.fullmatch(r"(\d+)(\.\d*[fF]?)", text)
    if broken:
        yield f"{int(broken[1]) + 1}{broken[2]}"


def token_changes(text, token, previous):
    """Yields (operator, replacement) for one token."""
    spaced = text[token.start - 1 : token.start].isspace() and text[token.end : token.end + 1].isspace()
    if token.kind == "mark":
        if token.text in ANYWHERE:
            yield ANYWHERE[token.text]
        elif token.text in BINARY and spaced:
            yield BINARY[token.text]
        elif token.text == "!":
            yield "condition", ""
    elif token.kind == "word" and token.text in WORDS:
        yield WORDS[token.text]
    elif token.kind == "number":
        for change in number_changes(token.text):
            yield "number", change
    elif token.kind == "string" and (previous is None or previous.text != "extern"):
        yield "string", token.text[:-1] + '~"'


def closing(text, start):
    """The place behind the parenthesis that closes the one at `start`; None on another line."""
    depth = 0
    for token in TOKEN.finditer(text, start):
        if token.lastgroup == "mark":
            depth += {"(": 1, ")": -1}.get(token.group(), 0)
            if depth == 0:
                return token.end()
        if "\n" in token.group():
            return None
    return None


def condition_changes(text, statement):
    for token, following in zip(statement, statement[1:]):
        if token.text not in ("if", "while") or following.text != "(":
            continue
        end = closing(text, following.start)
        condition = text[following.start + 1 : end - 1] if end else ""
        if condition and not re.search(r"[^=!<>]=[^=]|;", condition):
            yield "condition", following.start, end, f"(!({condition}))"


def line_bounds(text, place):
    start = text.rfind("\n", 0, place) + 1
    end = text.find("\n", place)
    return start, len(text) if end < 0 else end


def statement_changes(text, statement):
    """Yields (operator, start, end, replacement) for a last statement that is on one line."""
    if statement[-1].text != ";":
        return
    line_start, line_end = line_bounds(text, statement[-1].start)
    own = [token for token in statement if token.start >= line_start]
    start, end = own[0].start, own[-1].end
    before = statement[-len(own) - 1].text if len(own) < len(statement) else ";"
    if text[line_start:start].strip() or before not in (";", ")", "else", ":", "emit"):
        return
    code = text[start:end]
    if code.count("(") != code.count(")"):
        return
    if JUMP.fullmatch(code):
        yield "jump", start, end, ";"
    elif own[0].text == "return":
        value = code[len("return ") : -1]
        if value not in ("{}", "nullptr", "true", "false"):
            yield "return", start, end, "return {};"
            yield "return", start, end, f"return !({value});"
    elif CALL.fullmatch(code) or ASSIGNMENT.fullmatch(code) or COUNTING.fullmatch(code):
        yield "statement", start, end, ";"


def changes_of(text):
    """Yields (operator, start, end, replacement) for all mutants of a source."""
    for statement in statements_of(tokens_of(text)):
        if LEFT_ALONE.search(" ".join(token.text for token in statement)):
            continue
        previous = None
        for token in statement:
            for operator, replacement in token_changes(text, token, previous):
                yield operator, token.start, token.end, replacement
            previous = token
        yield from condition_changes(text, statement)
        yield from statement_changes(text, statement)


def mutants_of(path, text):
    """Returns the mutants of a source by line."""
    lines = text.split("\n")
    seen = {}
    nth = []
    for line in lines:
        nth.append(seen.get(line, 0))
        seen[line] = nth[-1] + 1
    found = {}
    for operator, start, end, replacement in changes_of(text):
        number = text.count("\n", 0, start)
        line_start, line_end = line_bounds(text, start)
        if end > line_end:
            continue
        after = text[line_start:start] + replacement + text[end:line_end]
        mutant = Mutant(path, number + 1, operator, lines[number], after, nth[number])
        found.setdefault(number + 1, []).append(mutant)
    return found
