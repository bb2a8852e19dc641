"""Reads BASIC as the MultiValue databases have it: the part that all dialects share, and what each
dialect's transport may use besides. Makes a tree of an item, or says what is wrong with it.

The tables below are the part that is shared. Each word in them is documented for UniVerse, UniData,
D3, jBASE and OpenQM; what is not in them is a fault, also where one dialect has it."""

import dataclasses
import re

LINE = 79  # characters; editors of terminals show no more
NAME = 30  # characters of a variable or label

# How many values each takes, at least and at most.
FUNCTIONS = {
    "CHANGE": (3, 3), "CHAR": (1, 1), "DATE": (0, 0), "DCOUNT": (2, 2), "FIELD": (3, 3),
    "INDEX": (3, 3), "INT": (1, 1), "LEN": (1, 1), "NUM": (1, 1), "RND": (1, 1), "SEQ": (1, 1),
    "SPACE": (1, 1), "TIME": (0, 0), "TRIM": (1, 1),
}
STATEMENTS = {
    "BEGIN", "CALL", "CRT", "EQU", "FOR", "GOSUB", "IF", "INPUT", "LOCK", "LOOP", "OPEN", "PROMPT",
    "READ", "READU", "RELEASE", "RETURN", "SLEEP", "STOP", "SUBROUTINE", "UNLOCK", "WRITE",
}
OPERATORS = {"AND", "OR", "MATCHES", "EQ", "NE", "LT", "GT", "LE", "GE"}
PARTS = {"CASE", "DO", "ELSE", "END", "FROM", "NEXT", "ON", "REPEAT", "STEP", "THEN", "TO", "UNTIL",
         "WHILE"}
# Words that mean something in one dialect or another, and so are no names of variables.
RESERVED = (FUNCTIONS.keys() | STATEMENTS | OPERATORS | PARTS | set(
    "ABORT ABS ALL ALPHA ASSIGN ASSIGNED AT BREAK BY CAPTURING CAT CATALOG CHAIN CLASS CLEAR CLOSE "
    "COL1 COL2 COMMON COMPARE CONTINUE CONVERT COS COUNT CREATE DATA DEBUG DEL DELETE DISPLAY "
    "DOWNCASE EBCDIC ECHO ENTER EOF EQUATE ERROR ERRMSG EXECUTE EXIT EXP EXTRACT FILE FILELOCK FIND "
    "FIX FLUSH FMT FOOTING FUNCTION GARBAGECOLLECT GET GETX GO GOTO GROUP HEADING HUSH ICONV IN "
    "INCLUDE INMAT INPUTERR INS INSERT KEY LEFT LET LEVEL LN LOCAL LOCATE LOCKED LOWER MAT MATCH "
    "MAXIMUM MESSAGE MINIMUM MOD MSLEEP NAP NEG NOT NULL OBJECT OCONV OFF OUT PAGE PERFORM PRECISION "
    "PRINT PRINTER PRIVATE PROCREAD PROCWRITE PROGRAM PROPERTY PUBLIC PUT PWR QUOTE RAISE READNEXT "
    "REM REMOVE REPLACE RESET REWIND RIGHT ROLLBACK RQM SEEK SELECT SENTENCE SET SETTING SIN "
    "SOUNDEX SPOOLER SQRT SSELECT START STATUS STORAGE STR SUBSTRINGS SUM SWAP SYSTEM TAN TIMEDATE "
    "TIMEOUT TOTAL TRANS TRANSACTION TRY UNASSIGNED UPCASE USING VOID WAIT WEOF WITH XLATE".split()))

UNIVERSE = {
    "functions": {"openSocket": (5, 5), "readSocket": (6, 6), "writeSocket": (5, 5),
                  "closeSocket": (1, 1), "getSocketErrorMessage": (2, 2)},
    "statements": {"COMMON", "EXECUTE"},
}
SEQUENTIAL = {"OPENSEQ", "CLOSESEQ", "CREATE", "READBLK", "WRITEBLK"}
DIALECTS = {
    "QM": {
        "functions": {"OPEN.SOCKET": (3, 3), "READ.SOCKET": (4, 4), "WRITE.SOCKET": (4, 4),
                      "STATUS": (0, 0)},
        "statements": {"CLOSE.SOCKET", "COMMON", "OS.EXECUTE"} | SEQUENTIAL,
    },
    "UNIVERSE": {"functions": UNIVERSE["functions"],
                 "statements": UNIVERSE["statements"] | SEQUENTIAL},
    "UNIDATA": {"functions": UNIVERSE["functions"],
                "statements": UNIVERSE["statements"] | {"OSREAD", "OSWRITE", "OSDELETE"}},
    "D3.UNIX": {
        "functions": {"%socket": (3, 3), "%connect": (4, 4), "%read": (3, 3), "%write": (3, 3),
                      "%closesocket": (1, 1), "%alarm": (1, 1), "SYSTEM": (1, 1)},
        "statements": {"CFUNCTION", "INCLUDE"},
    },
    "D3.NT": {
        "functions": {"%socket": (3, 3), "%connect": (4, 4), "%recv": (4, 4), "%send": (4, 4),
                      "%closesocket": (1, 1), "SYSTEM": (1, 1)},
        "statements": {"CFUNCTION", "INCLUDE"},
    },
    "JBASE": {"functions": {"SYSTEM": (1, 1)},
              "statements": {"EXECUTE", "OSREAD", "OSWRITE", "OSDELETE"}},
}


class Fault(Exception):
    def __init__(self, line, text):
        super().__init__(text)
        self.line = line


@dataclasses.dataclass
class Token:
    kind: str  # "name", "number", "text", "sign", "line" (the end of one), "end"
    value: str
    line: int
    touches: bool = False  # no blank stands in front


TOKEN = re.compile(r"""
    (?P<text>'[^']*'|"[^"]*")
  | (?P<number>\d+(?:\.\d+)?)
  | (?P<cast>\(char\ \*\))
  | (?P<name>[@%]?[A-Za-z][A-Za-z0-9.]*)
  | (?P<sign>:=|[-+*/:=\#<>()\[\],])
""", re.VERBOSE)
LABEL = re.compile(r"([A-Za-z][A-Za-z0-9.]*):\s*$")
RAW = re.compile(r"\s+(CFUNCTION|INCLUDE)\s+\S")


def tokens_of(source):
    """Every line but the comments; labels are tokens of their own kind."""
    for number, line in enumerate(source.split("\n"), 1):
        if not line.strip() or line.lstrip()[0] in "*!":
            continue
        label = LABEL.match(line)
        if label:
            yield Token("label", label[1], number)
            continue
        raw = RAW.match(line)
        if raw:
            yield Token("name", raw[1], number)
            yield Token("line", "", number)
            continue
        at = 0
        while at < len(line):
            if line[at] == " ":
                at += 1
                continue
            found = TOKEN.match(line, at)
            if not found:
                raise Fault(number, f"{line[at]!r} is not understood")
            yield Token(found.lastgroup, found[0], number, at > 0 and line[at - 1] != " ")
            at = found.end()
        yield Token("line", "", number)
    yield Token("end", "", source.count("\n") + 1)


# The tree: an expression is (kind, ...), a statement (kind, line, ...), a block a list of statements.

class Reader:
    """Reads one item. `dialect`: what it may use besides the shared part, or nothing."""

    def __init__(self, source, dialect=None):
        extra = DIALECTS.get(dialect, {"functions": {}, "statements": set()})
        self.functions = FUNCTIONS | extra["functions"]
        self.statements = STATEMENTS | extra["statements"]
        self.tokens = list(tokens_of(source))
        self.at = 0
        self.name = None
        self.parameters = []
        self.constants = {}
        self.labels = {}  # name -> place in the program
        self.assigned = {}  # variable -> line
        self.used = {}
        self.gosubs = {}
        self.calls = []  # (line, name, values)
        self.shared = []  # variables in COMMON

    # -- tokens

    @property
    def token(self):
        return self.tokens[self.at]

    def take(self):
        token = self.token
        self.at += 1
        return token

    def fault(self, text):
        raise Fault(self.token.line, text)

    def is_sign(self, value):
        return self.token.kind == "sign" and self.token.value == value

    def is_word(self, *words):
        return self.token.kind == "name" and self.token.value in words

    def take_sign(self, value):
        if not self.is_sign(value):
            self.fault(f"{value!r} is missing in front of {self.token.value!r}")
        return self.take()

    def take_word(self, word):
        if not self.is_word(word):
            self.fault(f"{word} is missing in front of {self.token.value!r}")
        return self.take()

    def end_line(self):
        if self.token.kind == "end":
            return
        if self.token.kind != "line":
            self.fault(f"{self.token.value!r} is too much here")
        self.take()

    # -- names

    def variable(self, assigns):
        token = self.take()
        if token.kind != "name":
            raise Fault(token.line, f"a variable is missing in front of {token.value!r}")
        name = token.value
        if name in RESERVED or name in self.functions or name in self.statements:
            raise Fault(token.line, f"{name} is a word of a dialect, no variable")
        if len(name) > NAME:
            raise Fault(token.line, f"{name} is longer than {NAME} characters")
        if assigns and name in self.constants:
            raise Fault(token.line, f"{name} is a constant")
        known = self.assigned if assigns else self.used
        known.setdefault(name, token.line)
        return name

    # -- expressions; AND and OR have one rank, and all of a rank go from left to right

    RANKS = [
        {"AND", "OR"},
        {"=", "#", "EQ", "NE", "LT", "GT", "LE", "GE", "MATCHES"},
        {":"},
        {"+", "-"},
        {"*", "/"},
    ]

    def expression(self, rank=0):
        if rank == len(self.RANKS):
            return self.sign()
        left = self.expression(rank + 1)
        while self.token.kind in ("name", "sign") and self.token.value in self.RANKS[rank]:
            if self.is_sign(":") and self.tokens[self.at + 1].kind in ("line", "label"):
                break  # CRT ... : at the end of a line
            operator = self.take().value
            left = ("operate", operator, left, self.expression(rank + 1))
        if rank == 1 and self.token.kind == "sign" and self.token.value in "<>":
            self.fault("compare with LT, GT, LE, GE and #: < and > are for attributes")
        return left

    def sign(self):
        if self.is_sign("-"):
            self.take()
            return ("negate", self.postfix())
        return self.postfix()

    def postfix(self):
        value = self.primary()
        while self.token.kind == "sign" and self.token.value in "[<":
            if self.is_sign("["):
                self.take()
                start = self.expression()
                self.take_sign(",")
                length = self.expression()
                self.take_sign("]")
                value = ("part", value, start, length)
            elif self.token.touches:
                value = ("attribute", value, *self.places())
            else:
                break
        return value

    def places(self):
        """<attribute> or <attribute, value>"""
        self.take_sign("<")
        places = [self.expression(2)]
        if self.is_sign(","):
            self.take()
            places.append(self.expression(2))
        self.take_sign(">")
        return places

    def primary(self):
        token = self.token
        if token.kind == "cast":
            self.take()
            return self.postfix()
        if token.kind == "number":
            return ("constant", float(self.take().value) if "." in token.value else int(self.take().value))
        if token.kind == "text":
            return ("constant", self.take().value[1:-1])
        if self.is_sign("("):
            self.take()
            value = self.expression()
            self.take_sign(")")
            return value
        if token.kind != "name":
            self.fault(f"a value is missing in front of {token.value!r}")
        if token.value in self.functions and self.tokens[self.at + 1].value == "(":
            return self.function()
        if token.value == "@USERNO":
            self.take()
            return ("user",)
        if self.tokens[self.at + 1].value == "(" and self.tokens[self.at + 1].touches:
            self.fault(f"{token.value} is no function that all dialects have")
        if token.value in self.constants:
            self.take()
            self.used.setdefault(token.value, token.line)
            return self.constants[token.value]
        return ("variable", self.variable(assigns=False))

    def function(self):
        token = self.take()
        values = self.values()
        least, most = self.functions[token.value]
        if not least <= len(values) <= most:
            raise Fault(token.line, f"{token.value} takes {most} values, not {len(values)}")
        for value in values:
            if value[0] == "variable" and token.value[0].islower() | (token.value[0] == "%"):
                self.assigned.setdefault(value[1], token.line)
        return ("function", token.value, values)

    def values(self):
        self.take_sign("(")
        values = []
        while not self.is_sign(")"):
            if values:
                self.take_sign(",")
            values.append(self.expression())
        self.take()
        return values

    # -- statements

    def block(self, *ends):
        """Statements up to one of these words, which is left."""
        statements = []
        while True:
            if self.token.kind == "end":
                self.fault(f"{' or '.join(ends)} is missing")
            if self.token.kind == "label":
                self.fault(f"the label {self.token.value} stands inside a block: "
                           f"{' or '.join(ends)} is missing")
            if self.is_word(*ends):
                return statements
            statements.append(self.statement())
            if not self.is_word(*ends):
                self.end_line()

    def statement(self):
        token = self.token
        if token.kind != "name":
            self.fault(f"{token.value!r} begins no statement")
        word = token.value
        following = self.tokens[self.at + 1]
        if following.kind == "sign" and following.value in ("=", ":=") or (
                following.value == "<" and following.touches and word not in self.statements):
            return self.assignment()
        if word in PARTS:
            self.fault(f"{word} has nothing to belong to")
        if word not in self.statements:
            self.fault(f"{word} is no statement that all dialects have")
        self.take()
        read = getattr(self, "read_" + word.lower().replace(".", "_"))
        return read(token.line)

    def assignment(self):
        line = self.token.line
        name = self.variable(assigns=True)
        places = self.places() if self.is_sign("<") else []
        if self.is_sign(":="):
            self.take()
            self.used.setdefault(name, line)
            return ("append", line, name, self.expression())
        self.take_sign("=")
        return ("assign", line, name, places, self.expression())

    def branch(self, word):
        """What follows THEN or ELSE: the rest of the line, or lines up to END."""
        self.take_word(word)
        if self.token.kind != "line":
            return [self.statement()]
        self.take()
        statements = self.block("END")
        self.take()
        return statements

    def branches(self, needs):
        then = self.branch("THEN") if self.is_word("THEN") else None
        otherwise = self.branch("ELSE") if self.is_word("ELSE") else None
        if then is None and otherwise is None and needs:
            self.fault("THEN or ELSE is missing")
        return then or [], otherwise or []

    def read_if(self, line):
        condition = self.expression()
        if not self.is_word("THEN"):
            self.fault("THEN is missing")
        return ("if", line, condition, *self.branches(True))

    def read_begin(self, line):
        self.take_word("CASE")
        self.end_line()
        cases = []
        while not self.is_word("END"):
            self.take_word("CASE")
            condition = self.expression()
            self.end_line()
            cases.append((condition, self.block("CASE", "END")))
        self.take()
        self.take_word("CASE")
        return ("case", line, cases)

    def read_loop(self, line):
        if self.token.kind == "line":
            self.take()
        before = self.block("WHILE", "UNTIL", "REPEAT")
        if self.is_word("REPEAT"):
            self.fault("the LOOP has neither WHILE nor UNTIL")
        until = self.take().value == "UNTIL"
        condition = self.expression()
        self.take_word("DO")
        self.end_line()
        behind = self.block("REPEAT")
        self.take()
        return ("loop", line, before, until, condition, behind)

    def read_for(self, line):
        name = self.variable(assigns=True)
        self.take_sign("=")
        first = self.expression()
        self.take_word("TO")
        last = self.expression()
        self.end_line()
        body = self.block("NEXT")
        self.take()
        closing = self.take()
        if closing.value != name:
            raise Fault(closing.line, f"NEXT {closing.value} ends FOR {name}")
        return ("for", line, name, first, last, body)

    def read_gosub(self, line):
        token = self.take()
        self.gosubs.setdefault(token.value, line)
        return ("gosub", line, token.value)

    def read_call(self, line):
        name = self.take().value
        values = self.values() if self.is_sign("(") else []
        self.calls.append((line, name, len(values)))
        for value in values:
            if value[0] == "variable":
                self.assigned.setdefault(value[1], line)
        return ("call", line, name, values)

    def read_return(self, line):
        return ("return", line)

    def read_stop(self, line):
        return ("stop", line)

    def read_crt(self, line):
        value = self.expression()
        stays = self.is_sign(":")
        if stays:
            self.take()
        return ("print", line, value, stays)

    def read_input(self, line):
        return ("input", line, self.variable(assigns=True))

    def read_prompt(self, line):
        self.expression()
        return ("nothing", line)

    def read_sleep(self, line):
        return ("sleep", line, self.expression())

    def read_equ(self, line):
        name = self.variable(assigns=False)
        self.used.pop(name)
        self.take_word("TO")
        self.constants[name] = self.expression()
        return ("nothing", line)

    def read_subroutine(self, line):
        self.fault("SUBROUTINE stands in the first line only")

    def read_open(self, line):
        path = self.expression()
        self.take_word("TO")
        name = self.variable(assigns=True)
        return ("open", line, path, name, *self.branches(True))

    def record(self, line, kind):
        name = self.variable(assigns=True)
        self.take_word("FROM")
        file = self.variable(assigns=False)
        self.take_sign(",")
        key = self.expression()
        return (kind, line, name, file, key, *self.branches(True))

    def read_read(self, line):
        return self.record(line, "read")

    def read_readu(self, line):
        return self.record(line, "read")

    def read_write(self, line):
        value = self.expression()
        self.take_word("ON")
        file = self.variable(assigns=False)
        self.take_sign(",")
        return ("write", line, value, file, self.expression())

    def read_release(self, line):
        self.variable(assigns=False)
        self.take_sign(",")
        self.expression()
        return ("nothing", line)

    def read_lock(self, line):
        return ("lock", line, self.expression(), *self.branches(True))

    def read_unlock(self, line):
        return ("unlock", line, self.expression())

    # -- statements of one dialect's transport

    def read_common(self, line):
        self.take_sign("/")
        self.take()
        self.take_sign("/")
        while True:
            name = self.variable(assigns=True)
            self.shared.append(name)
            if not self.is_sign(","):
                return ("nothing", line)
            self.take()

    def read_cfunction(self, line):
        return ("nothing", line)

    def read_include(self, line):
        return ("nothing", line)

    def read_execute(self, line):
        command = self.expression()
        self.take_word("CAPTURING")
        return ("execute", line, command, self.variable(assigns=True))

    def read_os_execute(self, line):
        return ("execute", line, self.expression(), None)

    def read_close_socket(self, line):
        return ("closesocket", line, self.variable(assigns=False))

    def read_openseq(self, line):
        path = self.expression()
        self.take_word("TO")
        return ("openseq", line, path, self.variable(assigns=True), *self.branches(True))

    def read_create(self, line):
        return ("create", line, self.variable(assigns=False), *self.branches(True))

    def read_closeseq(self, line):
        return ("closeseq", line, self.variable(assigns=False))

    def read_readblk(self, line):
        name = self.variable(assigns=True)
        self.take_word("FROM")
        file = self.variable(assigns=False)
        self.take_sign(",")
        return ("readblk", line, name, file, self.expression(), *self.branches(True))

    def read_writeblk(self, line):
        value = self.expression()
        self.take_word("ON")
        return ("writeblk", line, value, self.variable(assigns=False), *self.branches(True))

    def read_osread(self, line):
        name = self.variable(assigns=True)
        self.take_word("FROM")
        return ("osread", line, name, self.expression(), *self.branches(True))

    def read_oswrite(self, line):
        value = self.expression()
        if self.is_word("TO"):  # UniData
            self.take()
            path = self.expression()
            self.take_word("ON")
            self.take()
            return ("oswrite", line, value, path, [], [self.statement()])
        self.take_word("ON")  # jBASE
        return ("oswrite", line, value, self.expression(), *self.branches(True))

    def read_osdelete(self, line):
        return ("osdelete", line, self.expression())

    # -- the item

    def item(self):
        """Its statements in one list; `labels` tells where each label stands in it."""
        if self.is_word("SUBROUTINE"):
            self.heading()
        program = []
        while not self.is_word("END"):
            if self.token.kind == "end":
                self.fault("END is missing at the item's end")
            if self.token.kind == "label":
                self.label(program)
                continue
            program.append(self.statement())
            self.end_line()
        self.take()
        self.end_line()
        if self.token.kind != "end":
            self.fault("something follows the item's END: an END too much")
        if not program or program[-1][0] not in ("return", "stop"):
            self.fault("RETURN or STOP is missing before END")
        self.check_names()
        return program

    def heading(self):
        self.take()
        self.name = self.take().value
        if self.is_sign("("):
            self.take()
            while not self.is_sign(")"):
                if self.parameters:
                    self.take_sign(",")
                self.parameters.append(self.variable(assigns=True))
            self.take()
        self.end_line()

    def label(self, program):
        token = self.take()
        if token.value in self.labels:
            raise Fault(token.line, f"the label {token.value} is there twice")
        if program and program[-1][0] not in ("return", "stop"):
            raise Fault(token.line, f"RETURN or STOP is missing before the label {token.value}")
        self.labels[token.value] = len(program)

    def check_names(self):
        for name, line in self.gosubs.items():
            if name not in self.labels:
                raise Fault(line, f"there is no label {name}")
        for name in self.labels:
            if name not in self.gosubs:
                raise Fault(self.tokens[-1].line, f"nobody goes to the label {name}")
        for name, line in self.used.items():
            if name not in self.assigned and name not in self.constants:
                raise Fault(line, f"{name} has no value anywhere")


# -- faults of an item and of a folder of items

def dialect_of(name):
    return name.removeprefix("OSTREL.IO.") if name.startswith("OSTREL.IO.") else None


def outside_of_texts(line):
    return re.sub(r"'[^']*'|\"[^\"]*\"", "''", line)


def line_faults(name, source):
    lower = {word for word in DIALECTS.get(dialect_of(name), {"functions": ()})["functions"]
             if word != word.upper()}
    for number, line in enumerate(source.split("\n"), 1):
        if len(line) > LINE:
            yield Fault(number, f"{len(line)} characters, more than {LINE}")
        if line != line.rstrip():
            yield Fault(number, "blanks at the line's end")
        if not all(" " <= letter <= "~" for letter in line):
            yield Fault(number, "a character that is no plain ASCII")
        if line.lstrip()[:1] in ("*", "!"):
            continue
        code = outside_of_texts(line).replace("(char *)", "")
        for word in lower:
            code = code.replace(word + "(", "(")
        if code != code.upper():
            yield Fault(number, "lower-case letters: D3 and older systems know capitals only")
        if ";" in code:
            yield Fault(number, "one statement a line")


def read_item(name, source):
    """The reader of the item and its program. Raises Fault."""
    reader = Reader(source, dialect_of(name))
    program = reader.item()
    wanted = "OSTREL.IO" if dialect_of(name) else name
    if reader.name not in (None, wanted):
        raise Fault(1, f"SUBROUTINE {reader.name} in the item {name}")
    return reader, program


def faults_of(sources):
    """sources: name -> text, of the items of one folder. (name, line, what is wrong) each."""
    readers = {}
    for name, source in sorted(sources.items()):
        yield from ((name, fault.line, str(fault)) for fault in line_faults(name, source))
        if not re.fullmatch(r"[A-Z][A-Z0-9.]*", name):
            yield name, 1, "an item's name is of capitals and dots"
        try:
            readers[name], _ = read_item(name, source)
        except Fault as fault:
            yield name, fault.line, str(fault)
    yield from call_faults(readers)


def call_faults(readers):
    takes = {("OSTREL.IO" if dialect_of(name) else name): len(reader.parameters)
             for name, reader in readers.items() if reader.name}
    for name, reader in readers.items():
        if dialect_of(name) and len(reader.parameters) != takes["OSTREL.IO"]:
            yield name, 1, "takes other values than the other transports"
        for line, called, values in reader.calls:
            if called not in takes:
                yield name, line, f"there is no subroutine {called}"
            elif takes[called] != values:
                yield name, line, f"{called} takes {takes[called]} values, not {values}"
