"""C++ source as a list of tokens, each with the kind of braces around it."""

import re
from collections import namedtuple

PATTERN = re.compile(
    r"""
    (?P<comment> //[^\n]* | /\*.*?\*/ )
  | (?P<directive> ^[ \t]*\#(?:[^\n\\]|\\.)* )
  | (?P<string> (?:u8|[uUL])?R"(?P<delimiter>[^(\s]*)\(.*?\)(?P=delimiter)" | (?:u8|[uUL])?"(?:[^"\\\n]|\\.)*" )
  | (?P<character> (?:u8|[uUL])?'(?:[^'\\\n]|\\.)*' )
  | (?P<number> \.?\d(?:[eEpP][+-]|['\w.])* )
  | (?P<word> [A-Za-z_]\w* )
  | (?P<symbol> <=>|<<=|>>=|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|\S )
""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

# `spaced` is true if there is white space on both sides, as the formatter puts it around binary operators only. `scope`
# is the innermost scope around the token.
Token = namedtuple("Token", "kind text start spaced scope")

# `kind` is "namespace", "class", "enum", "function", "block" or "value", which is a braced list of values; `result` is
# what the header of the function around it has before its parameters, or its trailing return type.
Scope = namedtuple("Scope", "kind result")

BLOCK_STATEMENTS = ("if", "for", "while", "switch", "else", "do", "try", "catch", "}")


def without_nested(texts):
    """The texts that are not inside parentheses."""
    depth, outside = 0, []
    for text in texts:
        depth -= text == ")"
        if depth == 0:
            outside.append(text)
        depth += text == "("
    return outside


def result_of(header):
    """The trailing return type of a function's header, else what is before its parameters."""
    outside = without_nested(header)
    if "->" in outside:
        return " ".join(outside[outside.index("->") + 1 :])
    words = [text for text in header if text not in ("static", "constexpr", "inline", "virtual", "explicit")]
    if words[:2] == ["[", "["]:
        words = words[words.index("]") + 2 :]
    return " ".join(words[: words.index("(")])


def scope_of(header, outer):
    """The scope that an opening brace begins, by the texts of the tokens before it."""
    outside = without_nested(header)
    last = header[-1] if header else ""
    is_in_function = outer.kind in ("function", "block") or (outer.kind == "value" and outer.result)
    if "namespace" in outside:
        return Scope("namespace", "")
    if "enum" in outside:
        return Scope("enum", "")
    if {"class", "struct", "union"} & set(outside) and "=" not in outside:
        return Scope("class", "")
    begins_statement = not header or header[0] in BLOCK_STATEMENTS or last == ":"
    if is_in_function and begins_statement and last in ("", ")", "else", "do", "try", ":"):
        return Scope("block", outer.result)
    if "[" in header and (last in (")", "]", "mutable") or header[-2:-1] == ["->"]) and (
        is_in_function or outer.kind == "value" or "=" in outside
    ):
        return Scope("function", header[-1] if header[-2:-1] == ["->"] else "a lambda")
    if not is_in_function and outer.kind != "value" and "(" in header and "=" not in outside:
        if last in (")", "}", "const", "noexcept", "override", "final") or "->" in outside:
            return Scope("function", result_of(header))
    return Scope("value", outer.result if is_in_function else "")


def tokens_of(source):
    """The tokens of a file, without comments and preprocessor directives."""
    tokens, scopes, headers = [], [Scope("namespace", "")], [[]]
    for match in PATTERN.finditer(source):
        kind, text, start = match.lastgroup, match[0], match.start()
        if kind in ("comment", "directive"):
            continue
        if kind == "delimiter":
            kind = "string"
        if text == "}" and len(scopes) > 1:
            closed = scopes.pop()
            headers.pop()
            if closed.kind == "value":
                headers[-1].append(text)
            else:
                headers[-1] = []
        spaced = source[start - 1 : start].isspace() and source[match.end() : match.end() + 1].isspace()
        tokens.append(Token(kind, text, start, spaced, scopes[-1]))
        if text == "{":
            scopes.append(scope_of(headers[-1], scopes[-1]))
            headers.append([])
        elif text == ";" and headers[-1].count("(") <= headers[-1].count(")"):
            headers[-1] = []
        elif text != "}":
            headers[-1].append(text)
    return tokens
