"""What docs/simulator.md says of the QuickBooks stand-in, its examples run in their order."""

import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

import pytest

from gateway import qbxml
from system import ROOT, UNDER_WINE, as_known, command, program_file

sys.path.insert(0, str(ROOT / "tools"))
import message_table

DOCUMENT = (ROOT / "docs" / "simulator.md").read_text(encoding="utf-8")
SCHEMA = ROOT / "samples" / "qbxmlops30.xsd"
BLOCK = re.compile(r"^```xml (company \S+|request|response)\n(.*?)\n```$", re.M | re.S)

ID = r"[0-9A-F]+-\d{10}"
TIME = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d"
ITERATOR = r"\{[0-9A-Fa-f-]{36}\}"
SEQUENCE = r"\d{10}"
# The parts of a response that are different each time.
VOLATILE = re.compile(rf"(?P<time>{TIME})|(?P<iterator>{ITERATOR})|\b(?P<id>{ID})\b|\b(?P<sequence>{SEQUENCE})\b")
SHAPES = {"time": TIME, "iterator": ITERATOR, "id": ID, "sequence": SEQUENCE}


def blocks(kind):
    return [text for name, text in BLOCK.findall(DOCUMENT) if name.split()[0] == kind]


class Values:
    """Which value of this run stands for one of the document's."""

    def __init__(self):
        self.known = {}

    def in_request(self, text):
        return VOLATILE.sub(lambda found: self.known.get(found[0], found[0]), text)

    def match(self, written, line):
        """Whether the line is what the document has written, `...` standing for anything."""
        pattern, new, end = "", [], 0
        for found in VOLATILE.finditer(written):
            pattern += self._literal(written[end : found.start()])
            end = found.end()
            if found[0] in self.known:
                pattern += re.escape(self.known[found[0]])
            else:
                pattern += f"({SHAPES[found.lastgroup]})"
                new.append(None if found.lastgroup == "time" else found[0])
        matched = re.fullmatch(pattern + self._literal(written[end:]), line)
        if matched:
            self.known.update((key, value) for key, value in zip(new, matched.groups()) if key)
        return matched is not None

    @staticmethod
    def _literal(text):
        return re.escape(text).replace(re.escape("..."), ".*")

    def match_run(self, run, lines):
        """All of the run, or nothing is learnt from it."""
        before = dict(self.known)
        if len(run) <= len(lines) and all(map(self.match, run, lines)):
            return True
        self.known = before
        return False


def runs_of(written):
    """The lines that stand together, between those that are "..."."""
    runs = [[]]
    for line in written.split("\n"):
        if line == "...":
            runs.append([])
        else:
            runs[-1].append(line)
    return runs


def require_response(values, written, lines):
    start = 0
    for number, run in enumerate(runs_of(written)):
        places = range(start, len(lines) - len(run) + 1)
        place = next((at for at in places if values.match_run(run, lines[at:])), None)
        assert place is not None, "\n".join(["Not answered:", *run, "In:", *lines[start:]])
        start = place + len(run)


def require_error(written, header, body):
    number, *text = written.split("\n")
    assert header == number, body
    lines = body.split("\r\n")
    for expected, line in zip(text, lines, strict=False):
        if UNDER_WINE and expected.startswith("Reason: "):
            expected = line[: len("Reason: ")]  # Wine's MSXML gives none
            assert line.startswith("Reason: ")
        assert expected == line or line.startswith(expected)
    assert len(lines) >= len(text)


class Reader:
    """Does what the document's blocks say, one after the other."""

    def __init__(self, gateway):
        self.gateway = gateway
        self.client = gateway.connect()
        self.values = Values()
        self.response = None

    def company(self, name, text):
        path = self.gateway.folder / name
        path.write_text(text, encoding="utf-8")
        header, _ = self.client.ask(f"QBFILENAME:{as_known(path)}")
        assert header.isdigit()

    def request(self, _, text):
        text = self.values.in_request(text)
        if not text.startswith("<?"):
            text = qbxml(f"\n{text}\n", on_error="stopOnError", version="13.0")
        header, body = self.client.ask(text)
        self.response = header.decode(), body.decode("cp1252")

    def check(self, written):
        header, body = self.response
        if written.startswith("ERROR: "):
            return require_error(written, header, body)
        assert header.isdigit(), (header, body)
        return require_response(self.values, written, body.replace("\xfe", "\n").split("\n"))


def test_every_example_is_answered_as_the_document_says(gateway):
    shutil.copy(SCHEMA, gateway.folder)
    gateway.start()
    reader = Reader(gateway)

    for block in BLOCK.finditer(DOCUMENT):
        kind, _, name = block[1].partition(" ")
        line = DOCUMENT.count("\n", 0, block.start()) + 1
        try:
            if kind == "response":
                reader.check(block[2])
            else:
                getattr(reader, kind)(name, block[2])
        except AssertionError as error:
            pytest.fail(f"docs/simulator.md:{line}: {error}")

    assert gateway.stop() == 0


# -- nothing is forgotten; the schema, made from the stand-in's own tables, knows what there is

XS = "{http://www.w3.org/2001/XMLSchema}"
TYPES = {node.get("name"): node for node in ElementTree.parse(SCHEMA).getroot()}


def elements_in(type_name):
    """The names and types of the elements that a type of the schema holds, groups included."""
    for element in TYPES[type_name].iter(XS + "element"):
        yield element.get("name"), element.get("type")
        if element.get("type") in TYPES:
            yield from elements_in(element.get("type"))


def missing_in_requests(names):
    requests = "\n".join(blocks("request"))
    return sorted(name for name in names if not re.search(rf"<{name}[\s/>]", requests))


def messages_as_told():
    told = subprocess.run(
        command(program_file("ostrel-company"), "--messages"), check=True, capture_output=True, timeout=60
    )
    return told.stdout.decode().replace("\r\n", "\n")


def carried_out():
    rows = (row.split("\t") for row in messages_as_told().splitlines())
    return {name for name, treatment in rows if treatment == "carried out"}


def test_the_table_of_messages_is_what_the_program_tells():
    table = message_table.table(messages_as_told(), message_table.known_by(message_table.sources()))

    in_schema = {element.get("name") for element in TYPES["QBXMLMsgsRq"].iter(XS + "element")}
    assert set(re.findall(r"^\| `(\w+)` \|", table, re.M)) == in_schema
    assert len(in_schema) == 232
    assert table in DOCUMENT, "ostrel-company --messages | tools/message_table.py renews the table"


# What the examples are about. A kind that gets its first example gets one for each of its messages.
KINDS = """
    Account Bill Check Class Company CreditMemo Customer CustomerMsg CustomerType Employee Entity
    Estimate Host Invoice Item ItemDiscount ItemInventory ItemNonInventory ItemOtherCharge
    ItemSalesTax ItemService JobType JournalEntry ListDelRq OtherName PaymentMethod PurchaseOrder
    ReceivePayment SalesOrder SalesReceipt SalesRep SalesTaxCode ShipMethod StandardTerms Terms
    TxnDelRq Vendor VendorType
""".split()


# Their queries have filters of their own, which have examples.
ONLY_FOUND = "BuildAssembly PriceLevel ToDo TransferInventory WorkersCompCode".split()


def kind_of(message):
    return re.sub(r"(Add|Mod|Query)Rq$", "", message)


def test_every_message_of_a_kind_with_examples_has_one():
    messages = carried_out()
    shown = {kind_of(name) for name in messages - set(missing_in_requests(messages))}

    assert sorted(set(KINDS) - shown) == []
    # Their records of time are there for a status code.
    shown -= {"TimeTracking", *ONLY_FOUND}
    assert missing_in_requests(n for n in messages if kind_of(n) in shown) == []


def filters_of(query):
    return {name for name, _ in elements_in(query)}


def queries():
    """Those of lists and transactions that are carried out; others are told of where they belong."""
    found = (name for name in carried_out() if re.search("(?<!Report)QueryRq$", name))
    return {name for name in found if filters_of(name) & {"ListID", "TxnID"}}


def test_every_filter_has_an_example_or_is_said_to_have_no_effect():
    without = DOCUMENT.split("### Filters without effect\n")[1].split("\n### ")[0]
    without = {
        name
        for names in re.findall(r"^\| (`.*?) \|", without, re.M)
        for name in re.findall(r"`(\w+)`", names)
    }
    filters = {name for query in queries() for name in filters_of(query)}
    source = (ROOT / "src" / "simulator" / "messages" / "Filters.cpp").read_text()
    looked_at = set(re.findall(r'^ *\{"(\w+)", Filter', source, re.M))

    assert {"ListID", "NameFilter", "FromTxnDate", "OwnerID"} <= filters
    assert missing_in_requests(filters - without) == []
    assert {"NameFilter", "PaidStatus"} <= looked_at
    assert sorted(without & looked_at) == []
    assert sorted(without - filters) == []
    assert sorted(name for name in filters if f"`{name}`" not in section("Queries")) == []


def test_every_word_of_a_filter_is_named():
    types = {of for query in queries() for _, of in elements_in(query)}
    words = {
        node.get("value")
        for name in (types | {"metaDataWords", "iteratorWords"}) & TYPES.keys()
        for node in TYPES[name].iter(XS + "enumeration")
    }

    assert {"StartsWith", "LastFiscalYear", "PaidOnly", "MetaDataOnly", "Continue"} <= words
    assert sorted(word for word in words if not re.search(rf"\b{word}\b", DOCUMENT)) == []


def test_every_report_is_named():
    source = (ROOT / "src" / "simulator" / "messages" / "Reports.cpp").read_text()
    made = set(re.findall(r'^ *\{"(\w+)", "', source, re.M))

    assert {"ProfitAndLossStandard", "CustomTxnDetail"} <= made
    assert sorted(name for name in made if f"`{name}`" not in section("Reports")) == []


def section(title):
    return re.search(rf"^## {title}\n(.*?)(?=^## |\Z)", DOCUMENT, re.M | re.S)[1]


def codes_of_the_program():
    source = (ROOT / "src" / "simulator" / "values" / "Status.cpp").read_text()
    return set(re.findall(r"(?:return \{|Convert\(|^ *)\s*(\d+), [k\"t]", source, re.M))


def test_every_status_code_has_an_example():
    listed = set(re.findall(r"^\| (\d+) \|", section("Status codes"), re.M))
    answered = set(re.findall(r'statusCode="(\d+)"', "\n".join(blocks("response"))))

    assert codes_of_the_program() | {"0"} == listed
    assert listed <= answered


def test_the_text_of_every_status_code_is_said_to_be_known_by_something():
    rows = section("Messages").split("| status text | known by |")[1]
    listed = [code for codes in re.findall(r"^\| ([\d, ]+) \|", rows, re.M) for code in codes.split(", ")]

    assert sorted(listed) == sorted(codes_of_the_program())


def test_every_fault_has_an_example():
    faults = section("Behaviour and faults").split("At some calls only")[1]
    knobs = {
        name
        for names in re.findall(r"^\| (`.*?`) \|", faults, re.M)
        for name in re.findall(r"`(\w+)`", names)
    }
    source = (ROOT / "src" / "simulator" / "faults" / "Faults.cpp").read_text()

    assert set(re.findall(r'^ *\{"(\w+)", Read', source, re.M)) == knobs
    companies = "\n".join(blocks("company"))
    assert sorted(knob for knob in knobs if not re.search(rf"<Fault[^>]*\b{knob}=", companies)) == []


def test_every_option_of_ostrel_company_is_named():
    helped = subprocess.run(
        command(program_file("ostrel-company"), "--help"), check=True, capture_output=True, timeout=60
    )
    options = set(re.findall(r"--[a-z]+", helped.stdout.decode()))

    assert {"--customers", "--check"} <= options
    assert sorted(option for option in options if option not in DOCUMENT) == []
