"""The window program and QuickBooks behind COM: connection test, idle close, slow and lost ones."""

import pytest

from cures import CURES
from gateway import CUSTOMER_QUERY, END_OF_DATA, qbxml, wait_until
from system import as_known
from window import FILE_NAME, ID_OK, for_a_while

pytestmark = pytest.mark.window

TEST = "&Test Quickbooks Connection"
CLOSE = "&Close Quickbooks Connection"
QUESTION = "Do you want to set a Default Quickbooks Database?"
AGAIN = "Please Start Quickbooks manually, and then run the test again."
STATUS, VALIDATION = "Quickbooks Connection Status:", "Quickbooks Validation Error:"
PERMISSION = (
    "This application does not have permission to access this QuickBooks company data file. The "
    "QuickBooks administrator can grant access permission through the Integrated Application "
    "preferences"
)
LOGIN = (
    "This application is not allowed to log into this QuickBooks company data file automatically. "
    "The QuickBooks administrator can grant permission for automatic login through the Integrated "
    "Application preferences"
)
UNABLE_TO_START = (
    "Unable to Start Quickbooks. Verify the QB Database file path, or start Quickbooks"
)


def is_answered(program):
    return b"<CustomerQueryRs" in program.ask(qbxml(CUSTOMER_QUERY))[1]


def close_is_grey(program):
    items = program.open_menu("f")
    program.close_menu()
    return next(item.grey for item in items if item.caption == CLOSE)


# -- connection test ------------------------------------------------------------------------------


def test_a_connection_that_works_is_reported(shown):
    shown.choose(TEST)

    report = shown.dialog(STATUS)

    lines = report.text().split("\r\n")
    assert lines[0] == "Ostrel is functioning correctly."
    assert lines[1].startswith("Quickbooks QuickBooks Premier Edition 2008")
    assert report.buttons() == ["Copy", "OK"]
    report.press("OK")
    shown.wait_until_closed(report)


@pytest.mark.parametrize(
    ("failure", "message"),
    [
        ("0x8004041A", PERMISSION + "\r\nQB Database: {file}\r\n\r\n" + AGAIN),
        ("0x8004041D", LOGIN + "\r\nQB Database: {file}\r\n\r\n" + AGAIN),
        ("0x80040420", AGAIN),
        ("0x80040416", UNABLE_TO_START + "\r\nQB Database: {file}"),
        (
            "0x80004005",
            "Unable to Open the Quickbooks Database, or it is the wrong version.\r\n"
            " QB FileName: {file}",
        ),
        (
            "0x8004040A",
            "Company File open does not match the Company file we are trying to update.\r\n"
            "QB Database: {file}",
        ),
        ("0x80040424", "Unknown Error: 1060\r\nError 1060 1060 "),
    ],
)
def test_each_failure_has_its_message(program, failure, message):
    program.write_company(beginSessionError=failure)
    program.start()

    program.choose(TEST)

    said = program.answer_message()
    expected = message.format(file=as_known(program.company_file))
    prescribed, _, cure = said.rpartition("\r\n\r\n")
    assert prescribed == expected or (
        expected.startswith("Unknown") and prescribed.startswith(expected)
    )
    assert cure == CURES[2 if failure == "0x80004005" else int(failure, 16) - 0x80040000]
    assert close_is_grey(program)
    assert program.stop() == 0


def test_without_the_request_processor_the_installation_is_called_corrupt(program, stand_in):
    stand_in.unregister()
    try:
        program.start()
        program.choose(TEST)
        assert program.answer_message() == (
            "Invalid or Corrupted Install.  Missing the Quickbooks SDK.\r\n\r\n" + CURES[3]
        )
        assert program.ask(qbxml(CUSTOMER_QUERY))[0].startswith(b"ERROR: ")
    finally:
        stand_in.register()

    # Installed while the program runs: no new start is needed.
    assert is_answered(program)
    assert program.stop() == 0


def test_a_version_that_is_not_told_is_a_validation_error(program):
    program.write_company(processRequestError="0x80040400")
    program.start()

    program.choose(TEST)

    lines = program.dialog(VALIDATION).text().split("\r\n")
    assert lines[0] == "Unable to determane the Version of Quickbooks you are using."
    assert program.stop() == 0


@pytest.fixture
def without_file(program):
    program.write_settings(Quickbooks_FileName="")
    program.start()
    yield program
    assert program.stop() == 0


def test_cancel_ends_the_test_before_it_begins(without_file):
    without_file.choose(TEST)

    assert without_file.answer_message("Cancel") == QUESTION

    assert for_a_while(lambda: not without_file.has_status("Openning Connection"))


def test_no_goes_on_with_the_company_that_is_open(without_file, stand_in):
    stand_in.open_company.write_bytes(without_file.company_file.read_bytes())
    try:
        without_file.choose(TEST)
        assert without_file.answer_message("No") == QUESTION

        report = without_file.dialog(STATUS)
        assert report.text().startswith("Ostrel is functioning correctly.")
    finally:
        stand_in.open_company.unlink()


def test_no_with_none_open_tells_of_an_empty_file(without_file):
    without_file.choose(TEST)
    without_file.answer_message("No")

    assert without_file.answer_message() == (
        UNABLE_TO_START + "\r\nQB Database: \r\n\r\n" + CURES[1046]
    )


def test_yes_chooses_a_file_first(without_file):
    without_file.choose(TEST)
    without_file.answer_message("Yes")
    dialog = without_file.dialog("Open")

    dialog.write(FILE_NAME, without_file.company_file)
    dialog.press(ID_OK)

    without_file.dialog(STATUS)
    assert without_file.setting("FileName") == as_known(without_file.company_file)


# -- the connection's life ------------------------------------------------------------------------


def test_the_file_menu_closes_an_open_connection(shown):
    assert is_answered(shown)
    assert not close_is_grey(shown)

    shown.choose(CLOSE)

    shown.wait_for_status("Closing Quickbooks.")
    assert close_is_grey(shown)


def test_an_idle_connection_is_closed_and_quickbooks_let_go(program, stand_in):
    program.write_settings(Quickbooks_DisconnectTimeout="1")
    program.start()
    assert is_answered(program)

    program.wait_for_status("Closing Quickbooks.")

    assert program.status_lines()[:2] == ["Closing Quickbooks.", "Disconnecting from Quickbooks"]
    assert is_answered(program)
    assert program.stop() == 0


def test_a_test_keeps_the_connection_for_the_timeout(program):
    program.write_settings(Quickbooks_DisconnectTimeout="1")
    program.start()
    program.choose(TEST)

    program.dialog(STATUS)

    program.wait_for_status("Closing Quickbooks.")
    assert program.stop() == 0


def test_without_a_timeout_it_stays_open(program):
    program.write_settings(Quickbooks_DisconnectTimeout="0")
    program.start()
    assert is_answered(program)

    assert for_a_while(lambda: not program.has_status("Closing Quickbooks."), 2.5)
    assert program.stop() == 0


def test_the_window_goes_on_while_quickbooks_opens_a_company(program):
    program.write_company(beginSessionSeconds="6")
    program.start()
    with program.connect() as client:
        client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
        program.wait_for_status("Loading Company file")

        program.choose("Log History")
        wait_until(lambda: "Log History" in program.checked(), "the check mark")
        program.tray(0x204)
        wait_until(program.open_popup, "the icon's menu")
        program.close_menu(program.tray_window())
        program.close_box()
        program.wait_until_visible(False)
        program.choose(TEST)
        program.wait_for_status("in work")

        assert client.read_frame() == b"ERROR: 99"
        assert b"<CustomerQueryRs" in client.read_frame()
    assert program.stop() == 0


# -- QuickBooks gone ------------------------------------------------------------------------------


def test_quickbooks_ended_in_the_middle_of_a_request_is_told_and_comes_back(program, stand_in):
    program.write_company(processRequestSeconds="600")
    program.start()
    with program.connect() as client:
        client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
        program.wait_for_status("Processing Request")

        stand_in.stop()

        assert client.read_frame().startswith(b"ERROR: ")
    program.wait_for_status("Quickbooks is gone.")
    program.write_company()
    assert is_answered(program)
    assert program.stop() == 0


def test_quickbooks_ended_between_requests_is_found_gone_and_started_again(program, stand_in):
    program.start()
    assert is_answered(program)

    stand_in.stop()

    program.ask(qbxml(CUSTOMER_QUERY))
    program.wait_for_status("Quickbooks is gone.")
    assert is_answered(program)
    assert program.stop() == 0


@pytest.mark.parametrize("number", ["0x800706BA", "0x80010108"])
def test_a_lost_connection_in_a_session_is_an_error_and_the_next_request_works(program, number):
    program.write_company(processRequestError=number)
    program.start()

    assert program.ask(qbxml(CUSTOMER_QUERY))[0].startswith(b"ERROR: ")

    program.write_company()
    assert is_answered(program)
    assert program.stop() == 0


def test_the_report_can_be_copied(shown):
    shown.driver.ask("clipboard-empty")
    shown.choose(TEST)
    report = shown.dialog(STATUS)

    report.press("Copy")

    copied = wait_until(lambda: shown.driver.ask("clipboard")[0], "the clipboard's text")
    lines = copied.split("\r\n")
    assert lines[:2] == ["Ostrel Server:", "=" * 41]
    assert lines[2].startswith("Version: ") and lines[2].count(".") == 2
    assert report.text() in copied


def test_a_clipboard_held_by_another_program_is_told(shown):
    shown.choose(TEST)
    report = shown.dialog(STATUS)
    shown.driver.ask("clipboard-hold")
    try:
        report.press("Copy")
        assert "another program is using the clipboard" in shown.answer_message()
    finally:
        shown.driver.ask("clipboard-release")
