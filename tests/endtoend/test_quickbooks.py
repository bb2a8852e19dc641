"""QuickBooks that is slow, refuses, or goes idle."""

import resource
import signal
import time

import pytest

from gateway import CUSTOMER_QUERY, END_OF_DATA, customer_add, qbxml

MUST_TEST = (
    b"You must Test the Quickbooks Connection from the Ostrel server before you can interact with "
    b"the Quickbooks data."
)


def test_a_slow_open_sends_the_loading_notice_and_then_the_response(gateway):
    gateway.write_company(beginSessionSeconds="6")
    gateway.start()
    started = time.monotonic()
    with gateway.connect() as client:
        client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)

        assert client.read_frame() == b"ERROR: 99"
        assert 4.5 < time.monotonic() - started < 6
        assert b"<CustomerQueryRs" in client.read_frame()
        # The session is open now: no second notice.
        assert b"<CustomerQueryRs" in client.ask(qbxml(CUSTOMER_QUERY))[1]
    assert gateway.stop() == 0


def test_connections_are_served_while_a_company_file_is_opened(gateway):
    gateway.write_company(beginSessionSeconds="2")
    gateway.start()
    with gateway.connect() as first, gateway.connect() as second:
        first.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
        gateway.wait_for_status("Loading Company file")
        second.send(b"CLOSEQB:" + END_OF_DATA)

        # One request at a time: the close waits its turn and does not cut the open short.
        assert b"<CustomerQueryRs" in first.read_frame()
        assert b"<CloseQBRs" in second.read_frame()
    assert gateway.stop() == 0


def test_an_exit_during_a_request_waits_for_it(gateway):
    gateway.write_company(beginSessionSeconds="2")
    gateway.start()
    with gateway.connect() as client:
        client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
        gateway.wait_for_status("Loading Company file")

        assert gateway.stop() == 0

        assert b"<CustomerQueryRs" in client.read_frame()
    assert gateway.has_status("Disconnecting from Quickbooks")


def test_a_second_exit_gives_the_request_up(gateway):
    gateway.write_company(beginSessionSeconds="600")
    gateway.start()
    with gateway.connect() as client:
        client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
        gateway.wait_for_status("Loading Company file")
        gateway.process.send_signal(signal.SIGINT)
        gateway.wait_for_status("Exit waits for the request in work; exit again to give it up")

        assert gateway.stop() == 0

        assert client.read_frame().startswith(b"ERROR: ")


# Each looks at every customer and finds none.
LONG_WORK = (
    "<CustomerQueryRq><NameFilter><MatchCriterion>Contains</MatchCriterion><Name>none</Name>"
    "</NameFilter></CustomerQueryRq>"
) * 10000


@pytest.mark.posix_only("signals")
@pytest.mark.parametrize("work", ["computing", "reading"])
def test_a_second_exit_ends_long_work_at_once(gateway, work):
    count = 3000 if work == "computing" else 100000
    gateway.write_company("".join(f"<Customer><Name>{i}</Name></Customer>" for i in range(count)))
    gateway.start()
    with gateway.connect() as client:
        client.send(qbxml(LONG_WORK).encode() + END_OF_DATA)
        gateway.wait_for_status(
            "Processing Request" if work == "computing" else "Loading Company file"
        )
        gateway.process.send_signal(signal.SIGTERM)
        gateway.wait_for_status("Exit waits for the request in work; exit again to give it up")
        begun = time.monotonic()

        assert gateway.stop(signal.SIGTERM) == 0

        assert time.monotonic() - begun < 5  # a second, unless much else runs
        assert client.read_frame().startswith(b"ERROR: ")


@pytest.mark.parametrize("number", ["0x80040401", "0x80040408", "0x80040410", "0x8004041A"])
@pytest.mark.parametrize("operation", ["openConnectionError", "beginSessionError"])
def test_a_failed_open_is_told_and_the_next_request_works(gateway, operation, number):
    # The company that is open in QuickBooks: a connection is opened before any is named.
    gateway.company_file = gateway.folder / "sample.qbw"
    gateway.write_settings(Quickbooks_FileName="")
    gateway.write_company(**{operation: number})
    gateway.start()

    header, body = gateway.ask(qbxml(CUSTOMER_QUERY))

    assert header == b"ERROR: %d" % (int(number, 16) - 0x80040000)
    assert body == MUST_TEST
    gateway.wait_for_status("Settings incomplete: run 'Test Connection'.")
    gateway.write_company()
    assert b"<CustomerQueryRs" in gateway.ask(qbxml(CUSTOMER_QUERY))[1]
    assert gateway.stop() == 0


@pytest.mark.parametrize("number", ["0x800706BA", "0x80010108", "0x80020009", "0x80004005"])
def test_a_failure_that_is_not_quickbooks_own_never_looks_like_success(gateway, number):
    gateway.write_company(beginSessionError=number)
    gateway.start()

    header, body = gateway.ask(qbxml(CUSTOMER_QUERY))

    assert header.startswith(b"ERROR: ") and int(header[7:]) > 0 and body == MUST_TEST
    assert gateway.stop() == 0


def test_a_missing_company_file(gateway):
    gateway.company_file.unlink()
    gateway.start()

    assert gateway.ask(qbxml(CUSTOMER_QUERY)) == (b"ERROR: 1027", MUST_TEST)
    assert gateway.stop() == 0


def test_a_company_file_that_is_not_xml(gateway):
    gateway.company_file.write_bytes(b"\0\1\2 this is not a company")
    gateway.start()

    header, body = gateway.ask(qbxml(CUSTOMER_QUERY))

    assert header.startswith(b"ERROR: 10") and body == MUST_TEST
    assert gateway.stop() == 0


def test_no_company_file_named_and_none_open(gateway):
    gateway.write_settings(Quickbooks_FileName="")
    gateway.start()

    assert gateway.ask(qbxml(CUSTOMER_QUERY)) == (b"ERROR: 1046", MUST_TEST)
    assert gateway.stop() == 0


def test_no_company_file_named_takes_the_one_open_in_quickbooks(gateway):
    gateway.write_settings(Quickbooks_FileName="")
    gateway.company_file.rename(gateway.folder / "sample.qbw")
    gateway.start()

    _, body = gateway.ask("QUICKBOOKSINFO")

    assert b"sample.qbw</QBFileName>" in body
    assert gateway.stop() == 0


SCHEMA = """<?xml version="1.0"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="QBXML"><xs:complexType><xs:sequence>
    <xs:element name="QBXMLMsgsRq"><xs:complexType>
      <xs:sequence><xs:element name="CustomerQueryRq" maxOccurs="unbounded"/></xs:sequence>
      <xs:attribute name="onError" use="required"/>
    </xs:complexType></xs:element>
  </xs:sequence></xs:complexType></xs:element>
</xs:schema>
"""

NO_SUCH_MESSAGE = (
    '<?xml version="1.0"?>\r\n<?qbxml version="3.0"?>\r\n<QBXML>\r\n'
    '<QBXMLMsgsRq onError="stopOnError">\r\n<NoSuchRq/>\r\n</QBXMLMsgsRq>\r\n</QBXML>'
)


def report_of(header, body):
    assert header == b"ERROR: 1024"
    return body.decode("cp1252").split("\r\n")


@pytest.mark.posix_only("Wine's MSXML tells neither reason nor place")
def test_a_request_that_quickbooks_cannot_parse_is_answered_with_a_report(gateway):
    (gateway.folder / "qbxmlops30.xsd").write_text(SCHEMA)
    gateway.start()

    lines = report_of(*gateway.ask(NO_SUCH_MESSAGE))

    assert [line.split(":")[0] for line in lines[:5]] == [
        "Reason",
        "scrText",
        "LinePos",
        "Line",
        "FilePos",
    ]
    assert "NoSuchRq" in lines[0]
    # The qbXML instruction is taken out before validation, its line break stays.
    assert lines[3] == "Line: 5"
    assert lines[5] == "<NoSuchRq/>"
    assert gateway.stop() == 0


@pytest.mark.posix_only("Wine's MSXML tells neither reason nor place")
def test_malformed_xml_is_reported_with_its_place(gateway):
    (gateway.folder / "qbxmlops30.xsd").write_text(SCHEMA)
    gateway.start()

    lines = report_of(*gateway.ask(qbxml("<CustomerQueryRq>")))

    assert lines[0].startswith("Reason: ") and len(lines[0]) > len("Reason: ")
    assert lines[3] == "Line: 1"
    assert gateway.stop() == 0


@pytest.mark.posix_only("Wine's MSXML tells neither reason nor place")
def test_without_the_schema_file_the_report_says_so(gateway):
    gateway.start()

    lines = report_of(*gateway.ask(NO_SUCH_MESSAGE))

    assert "qbxmlops30.xsd" in lines[0]
    assert gateway.stop() == 0


def test_validation_switched_off_leaves_the_error_alone(gateway):
    gateway.write_settings(General_ValidateXML="true")  # only "1" switches it on
    gateway.start()

    assert gateway.ask(NO_SUCH_MESSAGE) == (b"ERROR: 1024", b"")
    assert gateway.stop() == 0


def test_an_unknown_version_is_refused_without_a_report(running):
    assert running.ask(qbxml(CUSTOMER_QUERY, version="99.0")) == (b"ERROR: 1059", b"")


def test_an_idle_session_is_closed_and_opened_again(gateway):
    gateway.write_settings(Quickbooks_DisconnectTimeout="1")
    gateway.start()
    gateway.ask(qbxml(CUSTOMER_QUERY))

    gateway.wait_for_status("Disconnecting from Quickbooks")
    gateway.wait_for_status("Closing Quickbooks.")

    assert b"<CustomerQueryRs" in gateway.ask(qbxml(CUSTOMER_QUERY))[1]
    gateway.wait_for_status("Closing Quickbooks.", count=2)
    assert gateway.stop() == 0


@pytest.mark.posix_only("a limit on file sizes is set")
def test_a_company_file_that_cannot_be_written_is_read_all_the_same(gateway):
    # A limit on file sizes makes every saving fail, for root as well.
    def nothing_can_be_written():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0))

    before = gateway.company_file.read_bytes()
    gateway.start(preexec=nothing_can_be_written)

    _, refused = gateway.ask(qbxml(customer_add("Lost Cause")))
    _, listed = gateway.ask(qbxml(CUSTOMER_QUERY))

    assert b'statusSeverity="Error"' in refused
    assert b'statusCode="1"' in listed and b"Lost Cause" not in listed
    assert gateway.company_file.read_bytes() == before
    assert list(gateway.folder.glob("harbor*")) == [gateway.company_file]
    assert gateway.stop() == 0
