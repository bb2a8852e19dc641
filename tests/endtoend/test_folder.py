"""Requests in files: how they may come, and what is left behind."""

import os

import pytest

from company import saved
from folder import SlowWriter, ask, put, requests_waiting, response_file, wait_for_response
from gateway import CUSTOMER_QUERY, customer_add, qbxml, wait_until

CLOSE_RESPONSE = (
    b"<QBXML>\r\n"
    b"   <QBXMLMsgsRs>\r\n"
    b'      <CloseQBRs requestID="99" statusCode="0" statusSeverity="Info" statusMessage="Status OK">\r\n'
    b"         <CloseQBRet>OK</CloseQBRet>\r\n"
    b"      </CloseQBRs>\r\n"
    b"   </QBXMLMsgsRs>\r\n"
    b"</QBXML>\r\n"
)


@pytest.fixture
def watching(gateway):
    """A gateway that watches its folder and listens; it must end orderly and leave the folders
    clean."""
    gateway.start_watching()
    yield gateway
    assert gateway.stop() == 0, gateway.errors
    assert requests_waiting(gateway) == []
    assert list(gateway.response_folder.glob("*.part")) == []


def test_a_response_is_laid_out_with_indentation(watching):
    assert ask(watching, "close.osl", "CLOSEQB:") == CLOSE_RESPONSE


def test_a_response_of_quickbooks_is_laid_out_with_indentation(watching):
    response = ask(watching, "query.osl", qbxml(CUSTOMER_QUERY))

    assert response == (
        b'<?xml version="1.0" ?>\r\n'
        b"<QBXML>\r\n"
        b"   <QBXMLMsgsRs>\r\n"
        b'      <CustomerQueryRs requestID="7" statusCode="1" statusSeverity="Info" '
        b'statusMessage="A query request did not find a matching object in QuickBooks" />\r\n'
        b"   </QBXMLMsgsRs>\r\n"
        b"</QBXML>\r\n"
    )


def test_an_error_response_is_two_lines(gateway):
    gateway.write_company(beginSessionError="0x80040408")
    gateway.start_watching()

    assert ask(gateway, "query.osl", qbxml(CUSTOMER_QUERY)) == (
        b"ERROR 1032\r\n"
        b"You must Test the Quickbooks Connection from the Ostrel server before you can interact "
        b"with the Quickbooks data.\r\n"
    )
    assert gateway.stop() == 0


def test_an_error_without_text_is_two_lines(gateway):
    gateway.start_watching(General_ValidateXML="0")

    assert ask(gateway, "bad.osl", "no xml at all") == b"ERROR 1024\r\n\r\n"
    assert gateway.stop() == 0


def test_files_waiting_at_start_are_all_answered(gateway):
    gateway.process_folder.mkdir()
    names = [f"early{number}.osl" for number in range(7)]
    for name in names:
        put(gateway, name, "CLOSEQB:")

    gateway.start_watching()

    for name in names:
        assert wait_for_response(gateway, name) == CLOSE_RESPONSE
    assert requests_waiting(gateway) == []
    assert gateway.stop() == 0


def test_a_file_written_slowly_is_taken_when_it_is_complete(watching):
    prolog, envelope = qbxml(CUSTOMER_QUERY).split("?><Q")
    with SlowWriter(watching.process_folder / "slow.osl") as writer:
        writer.write(prolog + "?>")
        watching.wait_for_status("Request file slow.osl waits: it cannot be read")
        writer.write("<Q" + envelope)
        assert response_file(watching, "slow.osl") is None
        writer.close()

    assert b"<CustomerQueryRs" in wait_for_response(watching, "slow.osl")


@pytest.mark.posix_only("Wine is told nothing of who else has a file open")
def test_a_file_written_slowly_by_who_takes_no_lock_is_taken_when_it_is_complete(watching):
    prolog, envelope = qbxml(CUSTOMER_QUERY).split("?><Q")
    with (watching.process_folder / "slow.osl").open("w") as file:
        watching.wait_for_status("Request file slow.osl waits: it cannot be read")
        print(prolog + "?>", file=file, flush=True)
        assert b"<CloseQBRs" in ask(watching, "other.osl", "CLOSEQB:")
        assert response_file(watching, "slow.osl") is None
        file.write("<Q" + envelope)

    assert b"<CustomerQueryRs" in wait_for_response(watching, "slow.osl")


def test_a_last_line_without_a_line_break_gets_one(gateway):
    gateway.start_watching(General_History="1")

    request = "MY.ROUTINE\r\n" + qbxml(CUSTOMER_QUERY)
    ask(gateway, "open.osl", request)
    history = wait_until(lambda: list(gateway.history.glob("[0-9]*.txt")), "a history file")[0]

    # The history puts a line break of its own after the request.
    raw_data = f"Raw Data:\r\n{request}\r\n\r\n======".encode()
    assert raw_data in history.read_bytes()
    assert gateway.stop() == 0


@pytest.mark.parametrize("end", ["\r\n", "\n", "\r", ""], ids=["CR LF", "LF", "CR", "none"])
def test_lines_may_end_in_any_way(watching, end):
    request = qbxml(CUSTOMER_QUERY).replace("><", f">{end}<") + end

    assert b'<CustomerQueryRs requestID="7"' in ask(watching, "lines.osl", request)


def test_a_file_in_utf_16(watching):
    request = qbxml(customer_add("Caf\u00e9 M\u00fcller"))

    response = ask(watching, "wide.osl", b"\xff\xfe" + request.encode("utf-16-le"))

    assert b'<CustomerAddRs requestID="1" statusCode="0"' in response
    assert "Caf\u00e9 M\u00fcller" in saved(watching.company_file)


@pytest.mark.parametrize("content", [b"", b"\0" * 5000, bytes(range(256)) * 40, b"<" * 20000])
def test_garbage_is_answered_by_an_error(watching, content):
    assert ask(watching, "garbage.osl", content).startswith(b"ERROR 1024\r\n")


@pytest.mark.parametrize(
    "name",
    [
        "order of today.osl",
        "UPPER.OSL",
        "Mixed.Osl",
        "two.dots.osl",
        "M\u00fcller & S\u00f6hne.osl",
        "\u6ce8\u6587.osl",
        "-.osl",
        "a" * 100 + ".osl",
    ],
)
def test_the_response_has_the_name_of_the_request(watching, name):
    put(watching, name, "CLOSEQB:")

    assert wait_until(lambda: os.listdir(watching.response_folder), "a response")
    assert wait_for_response(watching, name) == CLOSE_RESPONSE


def test_files_of_other_extensions_are_left_alone(watching):
    for name in ("note.txt", "request.osl.bak", "request.osl2", "osl", "request"):
        put(watching, name, "CLOSEQB:")

    assert ask(watching, "request.osl", "CLOSEQB:") == CLOSE_RESPONSE
    assert len(requests_waiting(watching)) == 5 and not any(watching.response_folder.iterdir())
    for name in requests_waiting(watching):
        (watching.process_folder / name).unlink()


def test_a_folder_of_a_requests_name_is_passed_over(watching):
    (watching.process_folder / "a.osl").mkdir()
    (watching.process_folder / "a.osl" / "inner.osl").write_text("CLOSEQB:")

    assert ask(watching, "b.osl", "CLOSEQB:") == CLOSE_RESPONSE
    assert requests_waiting(watching) == ["a.osl"]
    assert not any(watching.response_folder.iterdir())
    (watching.process_folder / "a.osl" / "inner.osl").unlink()
    (watching.process_folder / "a.osl").rmdir()


def test_a_response_left_from_before_is_overwritten(watching):
    stale = watching.response_folder / "again.osl"
    stale.write_bytes(b"of an earlier request, and longer than what comes now" * 1000)

    put(watching, "again.osl", "CLOSEQB:")

    wait_until(lambda: stale.read_bytes() == CLOSE_RESPONSE, "the new response")


def test_two_hundred_files_at_once_are_answered_once_each(watching):
    names = {f"add{number:03}.osl": f"Customer {number:03}." for number in range(200)}
    for name, customer in names.items():
        put(watching, name, qbxml(customer_add(customer)))

    for name, customer in names.items():
        response = wait_for_response(watching, name)
        # A second run of the same request would have been refused: the name exists.
        assert b'statusCode="0"' in response and customer.encode() in response
    assert requests_waiting(watching) == [] and not any(watching.response_folder.iterdir())
    assert saved(watching.company_file).count("<Name>Customer ") == 200


def test_a_long_response_arrives_whole(watching):
    for start in range(0, 1000, 250):
        many = "".join(customer_add(f"Buyer {n:04}", str(n)) for n in range(start, start + 250))
        ask(watching, "many.osl", qbxml(many))

    response = ask(watching, "all.osl", qbxml(CUSTOMER_QUERY))

    assert response.count(b"<Name>Buyer ") == 1000 and response.endswith(b"</QBXML>\r\n")


@pytest.mark.posix_only("SIGUSR1 switches the communication log")
def test_the_communication_log_follows_a_file(watching):
    watching.history.mkdir(exist_ok=True)
    watching.toggle_comm_log()
    wait_until(lambda: "Comm Log enabled" in watching.comm_log(), "the opening line")

    ask(watching, "a.osl", "CLOSEQB:")

    wait_until(lambda: "No *.osl files found" in watching.comm_log(), "the empty scan")
    lines = [line.split("\t", 1)[1] for line in watching.comm_log().splitlines()]
    folder_lines = [line for line in lines if line.startswith("Folder Watched\t")]
    process, response = watching.process_folder, watching.response_folder
    changed = f"Folder Watched\tChanged {process}"
    assert folder_lines[:4] == [
        changed,
        f"Folder Watched\tRead {process}\\a.osl",
        f"Folder Watched\tWrite {response}\\a.osl",
        changed,
    ] or folder_lines[:2] == [changed, "Folder Watched\tNo *.osl files found"]
    for what in (f"Read {process}\\a.osl", f"Write {response}\\a.osl"):
        assert folder_lines.count(f"Folder Watched\t{what}") == 1
    assert not any(line.startswith("Socket ") for line in lines)


def test_the_loading_notice_goes_to_the_next_waiting_request(gateway):
    gateway.write_company(beginSessionSeconds="6")
    gateway.process_folder.mkdir()
    for name in ("first.osl", "second.osl"):
        put(gateway, name, qbxml(CUSTOMER_QUERY))

    gateway.start_watching()

    notice = wait_until(lambda: response_file(gateway, "second.osl"), "the loading notice")
    assert notice == b"ERROR 99\r\nLoading Quickbooks\r\n"
    assert response_file(gateway, "first.osl") is None
    assert b"<CustomerQueryRs" in wait_for_response(gateway, "first.osl")
    wait_until(
        lambda: b"<CustomerQueryRs" in (response_file(gateway, "second.osl") or b""), "the response"
    )
    assert gateway.stop() == 0


def test_a_request_that_waits_alone_gets_no_loading_notice(gateway):
    gateway.write_company(beginSessionSeconds="6")
    gateway.start_watching()

    put(gateway, "alone.osl", qbxml(CUSTOMER_QUERY))

    assert b"<CustomerQueryRs" in wait_for_response(gateway, "alone.osl")
    assert not any(gateway.response_folder.iterdir())
    assert gateway.stop() == 0


def test_an_exit_during_a_request_waits_for_its_response(gateway):
    gateway.write_company(processRequestSeconds="2")
    gateway.start_watching()
    put(gateway, "last.osl", qbxml(CUSTOMER_QUERY))
    put(gateway, "too late.osl", qbxml(CUSTOMER_QUERY))
    gateway.wait_for_status("Processing Request")

    assert gateway.stop() == 0

    answered = [path.name for path in gateway.response_folder.iterdir()]
    assert len(answered) == 1 and len(requests_waiting(gateway)) == 1
    assert b"<CustomerQueryRs" in wait_for_response(gateway, answered[0])


def test_what_waits_at_the_end_is_answered_at_the_next_start(gateway):
    gateway.start_watching()
    assert gateway.stop() == 0
    put(gateway, "later.osl", "CLOSEQB:")
    gateway.lines.clear()

    gateway.start_watching()

    assert wait_for_response(gateway, "later.osl") == CLOSE_RESPONSE
    assert gateway.stop() == 0


@pytest.mark.posix_only("counts open files and memory of a process")
def test_two_thousand_files_leave_nothing_open_and_no_memory_taken(gateway, monkeypatch):
    # The sanitizer keeps what is freed; little of it here.
    options = os.environ.get("ASAN_OPTIONS", "")
    monkeypatch.setenv("ASAN_OPTIONS", options + ":quarantine_size_mb=1")
    gateway.start_watching()

    def two_hundred():
        for number in range(200):
            put(gateway, f"n{number}.osl", "CLOSEQB:")
        for number in range(200):
            wait_for_response(gateway, f"n{number}.osl")

    two_hundred()
    files, memory = gateway.open_files(), gateway.memory()
    for _ in range(10):
        two_hundred()

    assert gateway.open_files() == files
    assert gateway.memory() - memory < 8 << 20
    assert gateway.stop() == 0
