"""Every menu item of the window program: what it does to the program, its settings file and its
transports."""

import socket

import pytest

import folder
from gateway import CUSTOMER_QUERY, qbxml, wait_until
from system import as_known
from window import (
    FILE_NAME,
    ID_CANCEL,
    ID_OK,
    VK_ESCAPE,
    WM_CLOSE,
    Window,
    WindowProgram,
    for_a_while,
)

pytestmark = pytest.mark.window

FLAVOURS = ["D3/Linux", "D3/NT", "Universe 10 or Geater", "OpenInsight 7.1 and Greater"]
WATCH, SOCKET = "Watch Folder", "Socket"


@pytest.fixture(scope="class")
def looked_at(driver, stand_in, tmp_path_factory):
    """A running program at which tests only look."""
    made = WindowProgram(tmp_path_factory.mktemp("shared"), driver)
    made.start()
    yield made
    made.kill()


# -- texts ----------------------------------------------------------------------------------------


class TestMenuBar:
    """Tests that only look share one program: there can be only one at a time."""

    def test_captions_in_their_order(self, looked_at):
        assert [(item.level, item.caption) for item in looked_at.menu()] == [
            (0, "&File"),
            (1, "&Test Quickbooks Connection"),
            (1, "&Close Quickbooks Connection"),
            (1, "&Hide"),
            (1, "E&xit"),
            (0, "Tools"),
            (1, "Default Quickbooks Database"),
            (1, "Start Quickbooks"),
            (1, "-"),
            (1, "Log History"),
            (0, "&Communications"),
            (1, WATCH),
            (1, SOCKET),
            (1, "-"),
            *((1, flavour) for flavour in FLAVOURS),
            (0, "Help"),
            (1, "About"),
        ]

    def test_the_marks_are_those_of_the_settings(self, looked_at):
        assert looked_at.checked() == [SOCKET]

    def test_opened_without_a_connection_the_file_menu_greys_close(self, looked_at):
        items = looked_at.open_menu("f")
        looked_at.close_menu()

        assert [item.caption for item in items if item.grey] == ["&Close Quickbooks Connection"]

    def test_the_communications_menu_opens_by_its_letter(self, looked_at):
        items = looked_at.open_menu("c")
        looked_at.close_menu()

        assert items[0].caption == WATCH

    def test_about_shows_title_and_version(self, looked_at):
        looked_at.choose("About")
        about = looked_at.dialog("About Ostrel Server")

        lines = about.text().split("\r\n")
        assert lines[0] == "Ostrel Server - MultiValue QuickBooks Gateway"
        assert lines[1].startswith("Version ") and lines[1].count(".") == 2
        about.press("OK")
        looked_at.wait_until_closed(about)

    def test_about_twice_is_one_window(self, looked_at):
        looked_at.choose("About")
        about = looked_at.dialog("About Ostrel Server")
        looked_at.choose("About")

        assert for_a_while(lambda: looked_at.open_titles() == ["About Ostrel Server"])
        about.close()
        looked_at.wait_until_closed(about)


# -- communications -------------------------------------------------------------------------------


def is_watching(program):
    folder.put(program, "probe.osl", qbxml(CUSTOMER_QUERY))
    return b"<CustomerQueryRs" in folder.wait_for_response(program, "probe.osl")


def is_serving(program):
    return b"<CustomerQueryRs" in program.ask(qbxml(CUSTOMER_QUERY))[1]


def wait_for_marks(program, *captions):
    wait_until(lambda: program.checked() == list(captions), lambda: f"marks: {program.checked()}")


def test_socket_off_stops_listening_and_on_starts_it_again(shown):
    shown.choose(SOCKET)

    # Kept: the number does not follow the port.
    shown.wait_for_status("Stop Listenning on Socket 4999")
    wait_for_marks(shown)
    assert shown.refuses_connections()
    assert shown.setting("Type") == "0" and shown.setting("Socket") == "1"

    shown.choose(SOCKET)

    shown.wait_for_status(f"Listenning on Socket {shown.port}", count=2)
    wait_for_marks(shown, SOCKET)
    assert is_serving(shown)


def test_watch_folder_on_watches_and_off_stops_it(shown):
    shown.choose(WATCH)

    shown.wait_for_status("Watching Folder: " + as_known(shown.process_folder).lower())
    wait_for_marks(shown, WATCH, SOCKET)
    assert is_watching(shown) and is_serving(shown)
    # Kept: the menu's choice lasts until the next start; only the flavour is written.
    assert shown.setting("Folder") == "0" and shown.setting("Type") == "0"

    shown.choose(WATCH)

    shown.wait_for_status("Stop Watching Folder: ")
    wait_for_marks(shown, SOCKET)


@pytest.mark.parametrize(
    ("number", "serves"), [(1, True), (2, True), (3, True), (4, False)], ids=FLAVOURS
)
def test_a_flavour_sets_its_transports_and_is_remembered(shown, number, serves):
    flavour = FLAVOURS[number - 1]

    shown.choose(flavour)

    wait_for_marks(shown, flavour)
    wait_until(lambda: shown.setting("Type") == str(number), "the settings file")
    if serves:
        assert is_serving(shown)
        assert not shown.has_status("Stop Listenning")
    else:
        shown.wait_for_status("Stop Listenning on Socket 4999")
        shown.wait_for_status("Watching Folder: ")
        assert shown.refuses_connections() and is_watching(shown)


def test_a_transport_after_a_flavour_writes_flavour_0(shown):
    shown.choose("D3/NT")
    wait_until(lambda: shown.setting("Type") == "2", "the settings file")

    shown.choose(SOCKET)

    wait_until(lambda: shown.setting("Type") == "0", "the settings file")
    shown.wait_for_status("Stop Listenning on Socket 4999")


def test_a_taken_port_is_told_and_the_mark_is_cleared(program):
    with socket.socket() as taken:
        taken.bind(("0.0.0.0", program.port))
        taken.listen()
        program.spawn("-ini", program.settings_file)

        assert program.answer_message() == (
            f"Unable to start the Socket Server on Port {program.port}"
        )
        wait_for_marks(program)
    program.choose(SOCKET)
    program.wait_for_status(f"Listenning on Socket {program.port}")
    assert program.stop() == 0


# -- tools ----------------------------------------------------------------------------------------


def test_log_history_is_toggled_and_written_to_the_file(shown):
    shown.choose("Log History")
    wait_for_marks(shown, "Log History", SOCKET)
    wait_until(lambda: shown.setting("History") == "1", "the settings file")
    assert shown.history.is_dir()
    shown.ask(qbxml(CUSTOMER_QUERY))
    wait_until(lambda: list(shown.history.glob("*.txt")), "a history file")

    shown.choose("Log History")

    wait_for_marks(shown, SOCKET)
    wait_until(lambda: shown.setting("History") == "0", "the settings file")


def test_log_communication_writes_five_lines_and_no_last_one(program):
    program.history.mkdir()
    program.start("-debug")
    program.choose("Log Communication")
    wait_for_marks(program, "Log Communication", SOCKET)
    wait_until(lambda: program.comm_log().count("\r\n") == 5, program.comm_log)

    program.choose("Log Communication")

    wait_for_marks(program, SOCKET)
    lines = [line.split("\t", 1)[1] for line in program.comm_log().splitlines()]
    assert lines[0] == "----> Comm Log enabled <-----"
    assert lines[2:] == ["Communication Type:0", "Socket:True", "Folder:False"]
    assert program.stop() == 0


def test_start_quickbooks_without_a_file_says_what_to_do(program):
    program.write_settings(Quickbooks_FileName="")
    program.start()

    program.choose("Start Quickbooks")

    assert program.answer_message() == "You must assign a default Quickbooks Database."
    assert program.stop() == 0


def test_a_chosen_company_file_is_used_and_written(shown):
    other = shown.folder / "Other Company.QBW"
    other.write_bytes(shown.company_file.read_bytes())
    shown.choose("Default Quickbooks Database")
    dialog = shown.dialog("Open")

    dialog.write(FILE_NAME, other)
    dialog.press(ID_OK)

    shown.wait_until_closed(dialog)
    wait_until(lambda: shown.setting("FileName") == as_known(other), "the settings file")
    assert b"Other Company.QBW" in shown.ask("QUICKBOOKSINFO")[1]


def test_a_cancelled_choice_changes_nothing(shown):
    before = shown.settings_file.read_bytes()
    shown.choose("Default Quickbooks Database")
    dialog = shown.dialog("Open")

    dialog.press(ID_CANCEL)

    shown.wait_until_closed(dialog)
    assert shown.settings_file.read_bytes() == before


def test_requests_are_answered_while_the_company_file_is_chosen(shown):
    shown.choose("Default Quickbooks Database")
    dialog = shown.dialog("Open")

    assert is_serving(shown)

    dialog.press(ID_CANCEL)


REQUEST = 101  # the input box's field


def open_test_request(program):
    program.choose("Test Request")
    return program.dialog(holding="edit")


def test_a_test_request_offers_quickbooksinfo_and_shows_the_response(program):
    program.start("-debug")
    box = open_test_request(program)
    assert box.text() == "Request" + "QUICKBOOKSINFO"

    box.press(ID_OK)

    report = program.dialog("Test Request")
    assert "harbor.qbw</QBFileName>" in report.text()
    report.press("OK")
    program.wait_until_closed(report)
    assert program.stop() == 0


def test_a_test_request_of_ones_own(program):
    program.start("-debug")
    box = open_test_request(program)

    box.write(REQUEST, qbxml(CUSTOMER_QUERY))
    box.press(ID_OK)

    assert "<CustomerQueryRs" in program.dialog("Test Request").text()
    assert program.stop() == 0


def test_a_cancelled_test_request_asks_nothing(program):
    program.start("-debug")
    box = open_test_request(program)

    box.press(ID_CANCEL)

    program.wait_until_closed(box)
    assert for_a_while(lambda: not program.has_status("Processing Request"))
    assert program.stop() == 0


# -- settings editor ------------------------------------------------------------------------------


def open_editor(program):
    """Its process."""
    program.choose("Settings")
    return wait_until(lambda: program.driver.ask("running", "notepad.exe"), "the editor")[0]


def close_editor(program, process):
    window = wait_until(lambda: editor_window(program, process), "the editor's window")
    program.driver.post(window, WM_CLOSE)


def editor_window(program, process):
    rows = program.driver.rows(Window, "windows", process)
    return next((row.handle for row in rows if row.kind == "Notepad"), None)


def test_settings_are_read_again_when_the_editor_is_closed(program):
    program.start("-debug")
    program.ask(qbxml(CUSTOMER_QUERY))
    editor = open_editor(program)

    program.write_settings(General_History="1", Communication_Folder="1")
    assert is_serving(program)
    assert program.checked() == [SOCKET]
    close_editor(program, editor)

    # The transports are not applied anew, the connection is closed.
    program.wait_for_status("Closing Quickbooks.")
    wait_for_marks(program, "Log History", SOCKET)
    assert for_a_while(lambda: not program.has_status("Watching Folder"))
    assert program.stop() == 0


def test_a_killed_editor_counts_as_closed(program):
    program.start("-debug")
    editor = open_editor(program)
    program.write_settings(General_History="1")

    program.driver.ask("kill", editor)

    wait_for_marks(program, "Log History", SOCKET)
    assert program.stop() == 0


def test_an_exit_does_not_wait_for_the_editor(program):
    program.start("-debug")
    editor = open_editor(program)

    assert program.stop() == 0

    program.driver.ask("kill", editor)


def test_the_editor_opens_once(program):
    program.start("-debug")
    editor = open_editor(program)

    program.choose("Settings")

    assert for_a_while(lambda: program.driver.ask("running", "notepad.exe") == [editor])
    program.driver.ask("kill", editor)
    assert program.stop() == 0


# -- status list ----------------------------------------------------------------------------------


def test_the_list_keeps_the_newest_hundred_lines(shown):
    with shown.connect() as client:
        for _ in range(60):
            client.ask(qbxml(CUSTOMER_QUERY))

    lines = shown.status_lines()
    assert len(lines) == 100
    assert not any("Listenning" in line for line in lines)


def test_a_double_click_on_a_log_line_opens_the_history_file(program):
    program.write_settings(General_History="1")
    program.start()
    program.ask(qbxml(CUSTOMER_QUERY))
    path = wait_until(lambda: list(program.history.glob("*.txt")), "a history file")[0]
    program.wait_for_status(f"Creating Log File: {path.name}")

    row = next(i for i, line in enumerate(program.status_lines()) if path.name in line)
    program.driver.ask("doubleclick", program.status_list(), row)

    report = program.dialog("Log File")
    assert report.text() == path.read_bytes().decode("cp1252")
    report.press_keys(VK_ESCAPE)
    program.wait_until_closed(report)
    assert program.stop() == 0


def test_a_double_click_on_any_other_line_opens_nothing(shown):
    row = next(i for i, line in enumerate(shown.status_lines()) if "Listenning" in line)

    shown.driver.ask("doubleclick", shown.status_list(), row)

    assert for_a_while(lambda: shown.open_titles() == [])
