"""The changes of one token or one statement that can be made to a C++ source.

Comments, strings, preprocessor directives, template arguments and declarations are left as they are.
"""

import re
from collections import namedtuple

from .source_tokens import tokens_of

# `old` at the offset `start` of the source is replaced by `new`.
Change = namedtuple("Change", "start old new")

# Operators between two operands. The formatter puts white space around them, and around nothing that looks like them.
BINARY = {
    "<": ("<=", ">"),
    "<=": ("<", ">="),
    ">": (">=", "<"),
    ">=": (">", "<="),
    "==": ("!=",),
    "!=": ("==",),
    "&&": ("||",),
    "||": ("&&",),
    "+": ("-",),
    "-": ("+",),
    "*": ("/",),
    "/": ("*",),
    "%": ("*",),
    "&": ("|",),
    "|": ("&",),
    "<<": (">>",),
    ">>": ("<<",),
    "+=": ("-=",),
    "-=": ("+=",),
    "|=": ("&=",),
    "&=": ("|=",),
    "?": ("&& false ?", "|| true ?"),
}
UNARY = {"++": ("--",), "--": ("++",), "!": ("",)}
WORDS = {
    "true": ("false",),
    "false": ("true",),
    "min": ("max",),
    "max": ("min",),
    "front": ("back",),
    "back": ("front",),
    "continue": ("break",),
}
DROPPED_WORDS = ("break", "return")
ASSIGNMENTS = ("=", "+=", "-=", "|=", "&=", "++", "--", "(", ".", "->", "[")
DECLARATIONS = ("static_assert", "using", "friend", "typedef", "template", "extern")
OTHER_STATEMENTS = ("if", "for", "while", "switch", "do", "else", "try", "catch", "return", "throw", "delete", "new")


def closing(tokens, index):
    """The index of the token that closes the bracket at `index`."""
    depth = 0
    for at in range(index, len(tokens)):
        depth += tokens[at].text in ("(", "{", "[")
        depth -= tokens[at].text in (")", "}", "]")
        if depth == 0:
            return at
    return len(tokens) - 1


def end_of_statement(tokens, index):
    """The index of the semicolon that ends the statement at `index`, or None if the block ends before."""
    at = index
    while at < len(tokens) and tokens[at].text not in (";", ")", "]", "}"):
        at = closing(tokens, at) if tokens[at].text in ("(", "{", "[") else at
        at += 1
    return at if at < len(tokens) and tokens[at].text == ";" else None


def changed_number(text):
    """An integer that is one more or one less; twice a number with a fraction."""
    plain = text.replace("'", "")
    integer = re.fullmatch(r"(0[xX][0-9a-fA-F]+|\d+)([uUlLzZ]*)", plain)
    if integer:
        value = int(integer[1], 0 if integer[1][:2].lower() == "0x" else 10)
        form = "#x" if integer[1][:2].lower() == "0x" else "d"
        return [f"{each:{form}}{integer[2]}" for each in (value + 1, value - 1) if each >= 0]
    fraction = re.fullmatch(r"(\d*\.\d*)([fFlL]*)", plain)
    return [f"{float(fraction[1]) * 2}{fraction[2]}"] if fraction else []


def changed_character(text):
    if text[-3:-1] == "\\0":
        return [text[:-2] + "1'"]
    if text[-3] == "\\":
        return []
    return [f"{text[:-2]}{each}'" for each in (chr(ord(text[-2]) + 1), chr(ord(text[-2]) - 1)) if each not in "'\\"]


def token_changes(tokens, index):
    """The texts that may replace this token."""
    token = tokens[index]
    before = tokens[index - 1].text if index > 0 else ""
    after = tokens[index + 1].text if index + 1 < len(tokens) else ""
    if token.kind == "number":
        is_template_argument = after == ">" and not tokens[index + 1].spaced
        is_pure = before == "=" and after == ";" and tokens[index - 2].text in (")", "const", "noexcept", "override")
        return [] if is_template_argument or is_pure else changed_number(token.text)
    if token.kind == "character":
        return changed_character(token.text)
    if token.kind == "word":
        return WORDS.get(token.text, ()) if token.text in ("true", "false", "continue") or after == "(" else ()
    if token.kind == "symbol":
        return BINARY.get(token.text, ()) if token.spaced else UNARY.get(token.text, ())
    return ()


def condition_changes(source, tokens, index):
    """The changes of the condition of an `if` or `while` at `index`: negated, or forced to one value."""
    if tokens[index].text not in ("if", "while") or tokens[index + 1].text != "(":
        return
    last = closing(tokens, index + 1)
    first = index + 2
    for at in range(first, last):
        if tokens[at].text == ";":
            first = at + 1
    if any(each.text == "=" for each in tokens[first:last]):
        return
    old = source[tokens[first].start : tokens[last].start]
    yield Change(tokens[first].start, old, f"!({old})")
    yield Change(tokens[first].start, old, "false")
    # A loop that never ends is found, but only once the patience is over.
    if tokens[index].text == "if":
        yield Change(tokens[first].start, old, "true")


def return_changes(source, tokens, index):
    """The changes of what the `return` at `index` returns."""
    end = end_of_statement(tokens, index)
    if tokens[index].text != "return" or end is None or end == index + 1:
        return
    old = source[tokens[index + 1].start : tokens[end].start]
    result = tokens[index].scope.result
    if result.split()[:1] == ["bool"] and old not in ("true", "false"):
        yield Change(tokens[index + 1].start, old, f"!({old})")
    if "optional <" in result and old != "std::nullopt":
        yield Change(tokens[index + 1].start, old, "std::nullopt")
    if "_ptr <" in result and old != "nullptr":
        yield Change(tokens[index + 1].start, old, "nullptr")


def is_droppable(tokens, index, end):
    """Whether the statement from `index` up to the semicolon at `end` can be left out and still compile."""
    first = tokens[index]
    if first.text in DROPPED_WORDS:
        return end == index + 1
    if first.text in ("++", "--", "*", "static_cast"):
        return True
    if first.kind != "word" or first.text in OTHER_STATEMENTS or first.text in DECLARATIONS:
        return False
    at = index + 1
    while tokens[at].text == "::":
        at += 2
    return tokens[at].text in ASSIGNMENTS


def statement_changes(source, tokens, index):
    """The statement at `index` left out."""
    before = tokens[index - 1].text if index > 0 else ""
    if tokens[index].scope.kind not in ("function", "block") or before not in (";", "{", "}", ":"):
        return
    if before == ":" and not {"case", "default"} & {each.text for each in tokens[max(0, index - 6) : index]}:
        return
    end = end_of_statement(tokens, index)
    if end is not None and is_droppable(tokens, index, end):
        yield Change(tokens[index].start, source[tokens[index].start : tokens[end].start + 1], "")


def declared(tokens):
    """The indices of all tokens of declarations whose values are fixed when the project is built."""
    indices = set()
    for index, token in enumerate(tokens):
        if token.kind == "word" and token.text in DECLARATIONS:
            end = index
            if token.text == "template" and tokens[index + 1].text == "<":
                while tokens[end].text != ">":
                    end += 1
            else:
                end = end_of_statement(tokens, index) or index
            indices.update(range(index, end + 1))
    return indices


def changes_of(source):
    """All changes of a source, in the order of the source."""
    tokens = tokens_of(source)
    fixed = declared(tokens)
    for index, token in enumerate(tokens):
        if index in fixed:
            continue
        for new in token_changes(tokens, index):
            yield Change(token.start, token.text, new)
        yield from condition_changes(source, tokens, index)
        yield from return_changes(source, tokens, index)
        yield from statement_changes(source, tokens, index)
