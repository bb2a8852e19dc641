"""Carries out the databases' items as OpenQM and ScarletDME would, as far as the items go: from the
tree that tools/pick_basic.py makes of their source. What such a system only warns of, or what differs
between dialects, fails here: a variable without a value, a text where a number belongs."""

import dataclasses
import os
import pathlib
import random
import socket
import subprocess
import sys
import time

from system import ROOT

sys.path.insert(0, str(ROOT / "tools"))
sys.dont_write_bytecode = True
import pick_basic  # noqa: E402

ITEMS = ROOT / "clients" / "multivalue" / "OSTREL.BP"
MARKS = {0: "\xfe", 1: "\xfd"}  # attribute, value
TIMED_OUT, REFUSED, CLOSED, UNKNOWN_HOST = 1011, 7005, 7013, 7021  # of STATUS()
NUMERIC = pick_basic.re.compile(r"[-+]?(\d+\.?\d*|\.\d+)")


class Trouble(Exception):
    """A database would stop or warn here."""


class Returned(Exception):
    pass


class Stopped(Exception):
    pass


class Cell:
    """A variable."""

    def __init__(self, value=None):
        self.value = value


# -- values: int, float, str, and whatever a handle is

def is_number(value):
    return isinstance(value, (int, float)) or bool(NUMERIC.fullmatch(value))


def number(value):
    if isinstance(value, (int, float)):
        return value
    if not NUMERIC.fullmatch(value):
        raise Trouble(f"{value[:60]!r} is no number")
    return float(value) if "." in value else int(value)


def text(value):
    if isinstance(value, float):
        return str(int(value)) if value.is_integer() else f"{value:.4f}".rstrip("0")
    return str(value) if isinstance(value, int) else value


def is_true(value):
    return number(value) != 0 if is_number(value) else value != ""


def part(value, start, length):
    start, length = max(1, int(number(start))), int(number(length))
    return text(value)[start - 1 : start - 1 + max(0, length)]


def attribute(value, places):
    for level, place in enumerate(places):
        pieces = text(value).split(MARKS[level])
        place = int(number(place))
        value = pieces[place - 1] if 1 <= place <= len(pieces) else ""
    return value


def replaced(value, places, new, level=0):
    pieces = text(value).split(MARKS[level])
    place = int(number(places[0]))
    assert place > 0
    pieces += [""] * (place - len(pieces))
    rest = places[1:]
    pieces[place - 1] = replaced(pieces[place - 1], rest, new, level + 1) if rest else text(new)
    return MARKS[level].join(pieces)


def index(value, wanted, occurrence):
    value, wanted, at = text(value), text(wanted), -1
    if wanted == "":
        raise Trouble("INDEX of nothing differs between systems")
    for _ in range(int(number(occurrence))):
        at = value.find(wanted, at + 1)
        if at < 0:
            return 0
    return at + 1


def field(value, delimiter, occurrence):
    pieces = text(value).split(text(delimiter))
    occurrence = int(number(occurrence))
    return pieces[occurrence - 1] if 1 <= occurrence <= len(pieces) else ""


def dcount(value, delimiter):
    return text(value).count(text(delimiter)) + 1 if text(value) else 0


def seq(value):
    if value == "":
        raise Trouble("SEQ of nothing")
    return ord(text(value)[0])


def matches(value, pattern):
    assert pattern == "1N0N"
    return int(text(value).isdigit())


def compare(operator, left, right):
    if is_number(left) and is_number(right):
        left, right = number(left), number(right)
    else:
        left, right = text(left), text(right)
    return int({
        "=": left == right, "EQ": left == right, "#": left != right, "NE": left != right,
        "LT": left < right, "GT": left > right, "LE": left <= right, "GE": left >= right,
    }[operator])


@dataclasses.dataclass
class SequentialFile:
    path: pathlib.Path
    at: int = 0


class Machine:
    """One session of a database. Its clock runs `speed` times as fast as ours, pauses included.
    `transport`: whose OSTREL.IO is used."""

    def __init__(self, transport="QM", items=ITEMS, speed=1, answers=()):
        self.items = {}
        self.folder = items
        self.transport = transport
        self.speed = speed
        self.commons = {}
        self.files = {}
        self.locks = {}  # shared by sessions that are given the same
        self.answers = list(answers)  # what the person types
        self.printed = ""
        self.status = 0
        self.began = time.monotonic()
        self.start = 21000 * 86400 + 43000.0  # noon
        self.sockets = []

    def item(self, name):
        if name not in self.items:
            file = f"OSTREL.IO.{self.transport}" if name == "OSTREL.IO" else name
            source = (self.folder / file).read_text().removesuffix("\n")
            self.items[name] = pick_basic.read_item(file, source)
        return self.items[name]

    def now(self):
        return self.start + (time.monotonic() - self.began) * self.speed

    def sleep(self, seconds):
        time.sleep(seconds / self.speed)

    def call(self, name, *values):
        """Calls a subroutine and returns the values of all its parameters afterwards."""
        cells = [value if isinstance(value, Cell) else Cell(value) for value in values]
        Run(self, name, cells).run()
        return [cell.value for cell in cells]

    def run(self, name):
        """Runs a program and returns what it printed."""
        self.printed = ""
        try:
            Run(self, name, []).run()
        except Stopped:
            pass
        return self.printed

    # -- what the system gives

    def open_socket(self, host, port, flags):
        assert number(flags) == 1
        made = None
        try:
            made = socket.create_connection((text(host), int(number(port))), timeout=30)
            made.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            self.status = 0
            self.sockets.append(made)
        except socket.gaierror:
            self.status = UNKNOWN_HOST
        except OSError:
            self.status = REFUSED
        return made or ""

    def read_socket(self, handle, most, flags, milliseconds):
        assert number(flags) == 1 and number(milliseconds) > 0
        handle.settimeout(max(0.001, number(milliseconds) / 1000 / self.speed))
        try:
            data = handle.recv(int(number(most)))
        except TimeoutError:
            self.status = TIMED_OUT
            return ""
        except OSError:
            data = b""
        self.status = 0 if data else CLOSED
        return data.decode("latin-1")

    def write_socket(self, handle, data, flags, milliseconds):
        assert number(flags) == 1
        handle.settimeout(max(0.001, number(milliseconds) / 1000 / self.speed))
        data, sent = text(data).encode("latin-1"), 0
        self.status = 0
        try:
            while sent < len(data):
                sent += handle.send(data[sent : sent + 65536])
        except TimeoutError:
            self.status = TIMED_OUT
        except OSError:
            self.status = CLOSED
        return sent

    def close(self):
        for made in self.sockets:
            made.close()


class Run:
    """One call of an item."""

    def __init__(self, machine, name, cells):
        self.machine = machine
        self.name = name
        self.reader, self.program = machine.item(name)
        if len(cells) != len(self.reader.parameters):
            raise Trouble(f"{name} takes {len(self.reader.parameters)} values")
        self.cells = dict(zip(self.reader.parameters, cells))
        for shared in self.reader.shared:
            self.cells[shared] = machine.commons.setdefault(shared, Cell(0))

    def run(self):
        self.go(0)

    def go(self, at):
        try:
            while True:
                self.do(self.program[at])
                at += 1
        except Returned:
            pass

    def block(self, statements):
        for statement in statements:
            self.do(statement)

    def do(self, statement):
        try:
            getattr(self, "do_" + statement[0])(*statement[2:])
        except Trouble as trouble:
            if not getattr(trouble, "placed", False):
                trouble.args = (f"{self.name}:{statement[1]}: {trouble}",)
                trouble.placed = True
            raise

    def cell(self, name):
        return self.cells.setdefault(name, Cell())

    # -- expressions

    def value(self, expression):
        return getattr(self, "value_" + expression[0])(*expression[1:])

    def value_constant(self, value):
        return value

    def value_variable(self, name):
        value = self.cell(name).value
        if value is None:
            raise Trouble(f"{name} has no value")
        return value

    def value_user(self):
        return os.getpid()

    def value_negate(self, expression):
        return -number(self.value(expression))

    def value_part(self, value, start, length):
        return part(self.value(value), self.value(start), self.value(length))

    def value_attribute(self, value, *places):
        return attribute(self.value(value), [self.value(place) for place in places])

    def value_operate(self, operator, left, right):
        left, right = self.value(left), self.value(right)
        match operator:
            case ":":
                return text(left) + text(right)
            case "+":
                return number(left) + number(right)
            case "-":
                return number(left) - number(right)
            case "*":
                return number(left) * number(right)
            case "/":
                return number(left) / number(right)
            case "AND":
                return int(is_true(left) and is_true(right))
            case "OR":
                return int(is_true(left) or is_true(right))
            case "MATCHES":
                return matches(left, right)
        return compare(operator, left, right)

    def value_function(self, name, values):
        values = [self.value(value) for value in values]
        machine = self.machine
        match name:
            case "CHANGE":
                return text(values[0]).replace(text(values[1]), text(values[2]))
            case "CHAR":
                code = number(values[0])
                if not 0 <= code <= 255:
                    raise Trouble(f"CHAR({code}) is another character")
                return chr(code)
            case "DATE":
                return int(machine.now() // 86400)
            case "TIME":
                return int(machine.now() % 86400)
            case "DCOUNT":
                return dcount(*values)
            case "FIELD":
                return field(*values)
            case "INDEX":
                return index(*values)
            case "INT":
                return int(number(values[0]))
            case "LEN":
                return len(text(values[0]))
            case "NUM":
                return int(values[0] == "" or is_number(values[0]))
            case "RND":
                return random.randrange(number(values[0]))
            case "SEQ":
                return seq(*values)
            case "STATUS":
                return machine.status
            case "OPEN.SOCKET":
                return machine.open_socket(*values)
            case "READ.SOCKET":
                return machine.read_socket(*values)
            case "WRITE.SOCKET":
                return machine.write_socket(*values)
        raise Trouble(f"{name} is not there")

    # -- statements

    def do_nothing(self):
        pass

    def do_assign(self, name, places, expression):
        value = self.value(expression)
        cell = self.cell(name)
        if places:
            if cell.value is None:
                raise Trouble(f"{name} has no value")
            value = replaced(cell.value, [self.value(place) for place in places], value)
        cell.value = value

    def do_append(self, name, expression):
        self.cell(name).value = text(self.value_variable(name)) + text(self.value(expression))

    def do_if(self, condition, then, otherwise):
        self.block(then if is_true(self.value(condition)) else otherwise)

    def do_case(self, cases):
        for condition, statements in cases:
            if is_true(self.value(condition)):
                return self.block(statements)

    def do_loop(self, before, until, condition, behind):
        while True:
            self.block(before)
            if is_true(self.value(condition)) == until:
                return
            self.block(behind)

    def do_for(self, name, first, last, body):
        last = number(self.value(last))
        cell = self.cell(name)
        cell.value = number(self.value(first))
        while cell.value <= last:
            self.block(body)
            cell.value += 1

    def do_gosub(self, label):
        self.go(self.reader.labels[label])

    def do_call(self, name, values):
        cells = [self.cell(value[1]) if value[0] == "variable" else Cell(self.value(value))
                 for value in values]
        Run(self.machine, name, cells).run()

    def do_return(self):
        raise Returned

    def do_stop(self):
        raise Stopped

    def do_print(self, value, stays):
        self.machine.printed += text(self.value(value)) + ("" if stays else "\n")

    def do_input(self, name):
        self.cell(name).value = self.machine.answers.pop(0)
        self.machine.printed += text(self.cell(name).value) + "\n"

    def do_sleep(self, seconds):
        self.machine.sleep(number(self.value(seconds)))

    def take(self, worked, then, otherwise):
        self.block(then if worked else otherwise)

    def do_open(self, path, name, then, otherwise):
        records = self.machine.files.get(self.value(path))
        self.cell(name).value = records
        self.take(records is not None, then, otherwise)

    def do_read(self, name, file, key, then, otherwise):
        record = self.cells[file].value.get(text(self.value(key)))
        if record is not None:
            self.cell(name).value = record
        self.take(record is not None, then, otherwise)

    def do_write(self, value, file, key):
        self.cells[file].value[text(self.value(key))] = text(self.value(value))

    def do_lock(self, which, then, otherwise):
        holder = self.machine.locks.setdefault(self.value(which), self.machine)
        self.take(holder is self.machine, then, otherwise)

    def do_unlock(self, which):
        self.machine.locks.pop(self.value(which))

    def do_closesocket(self, name):
        self.value_variable(name).close()

    def do_execute(self, command, captured):
        done = subprocess.run(["sh", "-c", self.value(command)], capture_output=True, text=True)
        if captured:
            self.cell(captured).value = done.stdout

    def do_openseq(self, path, name, then, otherwise):
        made = SequentialFile(pathlib.Path(self.value(path)))
        self.cell(name).value = made
        self.take(made.path.is_file(), then, otherwise)

    def do_create(self, name, then, otherwise):
        try:
            self.cell(name).value.path.write_bytes(b"")
            worked = True
        except OSError:
            worked = False
        self.take(worked, then, otherwise)

    def do_closeseq(self, name):
        self.value_variable(name)

    def do_readblk(self, name, file, size, then, otherwise):
        opened = self.cells[file].value
        with opened.path.open("rb") as stream:
            stream.seek(opened.at)
            data = stream.read(number(self.value(size)))
        opened.at += len(data)
        self.cell(name).value = data.decode("latin-1")
        self.take(bool(data), then, otherwise)

    def do_writeblk(self, value, file, then, otherwise):
        opened = self.cells[file].value
        with opened.path.open("r+b") as stream:
            stream.seek(opened.at)
            opened.at += stream.write(text(self.value(value)).encode("latin-1"))
        self.take(True, then, otherwise)
