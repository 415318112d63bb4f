"""The mutations that operators make of a C++ source in the house format."""

import itertools
import re

from clang.cindex import CursorKind, Index, TokenKind, TranslationUnit

# What may stand in place of a token.
SWAPS = {
    "==": "!=", "!=": "== <", "<": "<= >=", "<=": "< ==", ">": ">= <=", ">=": "> ==",
    "&&": "||", "||": "&&", "|": "&", "+": "-", "-": "+", "++": "--", "--": "++",
    "true": "false", "false": "true", "break": "continue", "continue": "break",
    "front": "back", "back": "front", "begin": "end", "end": "begin",
    "exception": "bad_exception", "try_emplace": "insert_or_assign",
    "kLanguageKey": "kTypeKey", "kTypeKey": "kLanguageKey",
    "display_value": "string_value", "string_value": "display_value",
    "DuplicateTextBounded": "DuplicateText",
    "QEL_ERROR": "QEL_WARNING", "QEL_WARNING": "QEL_INFO", "QEL_INFO": "QEL_WARNING",
}

FUNCTIONS = (CursorKind.FUNCTION_DECL, CursorKind.FUNCTION_TEMPLATE, CursorKind.CXX_METHOD,
             CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR)
CONDITIONALS = (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.FOR_STMT,
                CursorKind.CONDITIONAL_OPERATOR)


def span(entity):
    return entity.extent.start.offset, entity.extent.end.offset


class Source:
    def __init__(self, path, arguments):
        self.name = path.name
        self.text = path.read_bytes().decode("ascii")  # offsets count bytes
        self.unit = Index.create().parse(
            path, arguments, options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        own = [cursor for cursor in self.unit.cursor.get_children()
               if cursor.location.file and cursor.location.file.name == str(path)]
        self.macros = {span(cursor) for cursor in own
                       if cursor.kind == CursorKind.MACRO_INSTANTIATION}
        self.cursors = [pair for cursor in own for pair in self.walk(cursor, self.unit.cursor)]
        self.definitions = [(*span(cursor), cursor.spelling) for cursor, _ in self.cursors
                            if cursor.kind in (*FUNCTIONS, CursorKind.VAR_DECL)]

    def walk(self, cursor, parent):
        """A cursor and all below it, each with its parent, without what macros are made of."""
        if span(cursor) not in self.macros:
            yield cursor, parent
            for child in cursor.get_children():
                yield from self.walk(child, cursor)

    def definition(self, offset):
        """The outermost function or variable there, "" where there is none."""
        return next((name for start, end, name in self.definitions if start <= offset < end), "")

    def mutations(self):
        """Title and text of each."""
        tokens = self.unit.get_tokens(extent=self.unit.cursor.extent)
        for operator, start, end, new in itertools.chain(
                *map(self.of_token, tokens), *itertools.starmap(self.of_cursor, self.cursors)):
            old = self.text[start:end]
            before = self.text[self.text.rfind("\n", 0, start) + 1:start]
            after = self.text[end:self.text.index("\n", end)]
            line = " ".join(f"{before}«{old} -> {new}»{after}".split())
            # No line moves: log lines have their numbers.
            new += "\n" * (old.count("\n") - new.count("\n"))
            yield (f"{self.name}, {self.definition(start)}, {operator}: {line}",
                   self.text[:start] + new + self.text[end:])

    def of_token(self, token):
        (start, end), old = span(token), token.spelling
        if not self.definition(start):
            return
        if token.kind == TokenKind.LITERAL and old[0].isdigit():
            yield "integer", start, end, str(abs(int(old, 0) - 1))
        if token.kind == TokenKind.LITERAL and old[0] == '"':
            yield "string", start, end, '"X' + old[2:]
        # Blanks stand around an operator that has two operands, and around no other.
        around = self.text[start - 1] + self.text[end]
        if token.kind != TokenKind.PUNCTUATION or old in ("++", "--") or around.isspace():
            for new in SWAPS.get(old, "").split():
                yield "swap", start, end, new

    def of_cursor(self, cursor, parent):
        children = list(cursor.get_children())
        code = [self.text[slice(*span(child))] for child in children]
        if cursor.kind == CursorKind.COMPOUND_STMT:
            # A function that ended without its last return would have no result.
            kept = (CursorKind.DECL_STMT,
                    not parent.kind.is_statement() and CursorKind.RETURN_STMT)
            for start, end in (span(child) for child in children if child.kind not in kept):
                yield "drop", start, end + (self.text[end] == ";"), ""
        if cursor.kind in FUNCTIONS and code and code[-1].startswith("{"):
            start = span(children[-1])[0] + 1
            is_void = cursor.result_type.spelling == "void"
            yield "return", start, start, " return;" if is_void else " return {};"
        if cursor.kind in CONDITIONALS:
            place = 1 if cursor.kind == CursorKind.FOR_STMT else 0
            yield "negate", *span(children[place]), f"!({code[place]})"
        if cursor.kind == CursorKind.CALL_EXPR and cursor.spelling == "calloc":
            yield "zeroes", *span(cursor), f"malloc({code[-2]} * {code[-1]})"
        if cursor.kind == CursorKind.BINARY_OPERATOR:
            between = self.text[span(children[0])[1]:span(children[1])[0]].strip()
            for operand in code if between in ("&&", "||") else ():
                yield "operand", *span(cursor), operand
        if cursor.kind in (CursorKind.VAR_DECL, CursorKind.RETURN_STMT,
                           CursorKind.BINARY_OPERATOR) and children:
            start, end = span(children[-1])
            if re.search(r"([^=!<>]=|return)\s*$", self.text[:start]):
                yield "value", start, end, "{}"
