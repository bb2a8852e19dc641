"""The window program's life: start, window, icon, second start, ends."""

import pytest

from gateway import CUSTOMER_QUERY, END_OF_DATA, LIMIT, qbxml, wait_until
from window import (
    MARK,
    SC_MINIMIZE,
    SW_HIDE,
    SW_SHOWMINIMIZED,
    TITLE,
    VK_DOWN,
    VK_RETURN,
    WM_CLOSE,
    WM_ENDSESSION,
    WM_QUERYENDSESSION,
    WM_SYSCOMMAND,
    Dialog,
    for_a_while,
)

pytestmark = pytest.mark.window

ADD, MODIFY, DELETE = "0", "1", "2"
NO_PREVIOUS = (
    "Windows is unable to find a previous instance of Ostrel Server, but still things there is one "
    "running.  Please Reboot your system"
)


def test_it_starts_with_its_window_open_and_answers(shown):
    assert shown.is_visible()
    assert shown.caption() == TITLE
    assert shown.main_window().iconic == "0"
    assert b"<CustomerQueryRs" in shown.ask(qbxml(CUSTOMER_QUERY))[1]


def test_the_window_holds_the_list_and_the_notice(shown):
    controls = Dialog(shown.driver, shown.main_window()).controls()

    assert [control.kind.lower() for control in controls] == ["listbox", "static"]
    assert controls[1].text == (
        "This program should be running at all times.  If this program is not running, then the "
        "MultiValue database will not be able to update Quickbooks."
    )


def test_the_icon_is_added_with_message_icon_and_tip(program):
    program.spawn("-ini", program.settings_file)

    added = wait_until(program.driver.tray_operations, "the icon")[0]

    assert (added.operation, added.flags, added.message, added.tip) == (ADD, "7", "512", TITLE)
    assert added.window == program.tray_window()
    assert program.stop() == 0
    assert program.driver.tray_operations()[-1].operation == DELETE


@pytest.mark.parametrize("show", [SW_SHOWMINIMIZED, SW_HIDE])
def test_started_minimised_it_lives_in_the_notification_area_only(program, show):
    program.start(show=show)

    assert for_a_while(lambda: not program.is_visible())
    program.tray(0x203)
    program.wait_until_visible()
    assert program.main_window().iconic == "0"
    assert program.stop() == 0


def test_the_close_box_hides_the_window_and_the_gateway_goes_on(shown):
    shown.close_box()

    shown.wait_until_visible(False)
    assert b"<CloseQBRs" in shown.ask("CLOSEQB:")[1]


def test_minimising_hides_the_window_and_it_comes_back_normal(shown):
    shown.driver.post(shown.window(), WM_SYSCOMMAND, SC_MINIMIZE)
    shown.wait_until_visible(False)

    shown.tray(0x203)

    shown.wait_until_visible()
    assert shown.main_window().iconic == "0"


def test_the_hide_command_hides_it_and_keeps_one_icon(shown):
    shown.driver.tray_operations()

    shown.hide()

    assert {one.operation for one in shown.driver.tray_operations()} <= {MODIFY}


@pytest.mark.parametrize("code", [0x203, 0x206])
def test_a_double_click_on_the_icon_brings_the_window_back_to_the_front(shown, code):
    shown.hide()

    for one in (0x201, 0x202, code, 0x202):
        shown.tray(one)

    shown.wait_until_visible()
    wait_until(lambda: shown.driver.ask("foreground")[0] == shown.window(), "the front")


def open_tray_menu(program):
    program.tray(0x204)
    return program.read_menu(wait_until(program.open_popup, "the icon's menu"))


def test_the_icons_menu(shown):
    items = open_tray_menu(shown)

    assert [(item.caption, item.grey, item.default) for item in items] == [
        ("&Open", False, True),
        ("-", False, False),
        ("&Close", False, False),
    ]
    shown.close_menu(shown.tray_window())


def test_open_in_the_icons_menu_brings_the_window_back(shown):
    shown.hide()
    open_tray_menu(shown)

    shown.press_keys(shown.tray_window(), VK_DOWN, VK_RETURN)

    shown.wait_until_visible()


def test_close_in_the_icons_menu_ends_the_program(program):
    program.start()
    program.hide()
    open_tray_menu(program)

    program.press_keys(program.tray_window(), VK_DOWN, VK_DOWN, VK_RETURN)

    assert program.wait_for_exit() == 0


def test_requests_are_answered_while_the_icons_menu_is_open(shown):
    open_tray_menu(shown)

    assert b"<CustomerQueryRs" in shown.ask(qbxml(CUSTOMER_QUERY))[1]

    assert shown.open_popup() is not None
    shown.close_menu(shown.tray_window())


def test_the_icon_comes_back_when_the_shell_has_started_again(shown):
    shown.driver.tray_operations()
    started = shown.driver.ask("message", "TaskbarCreated")[0]

    shown.driver.post(shown.tray_window(), started)

    again = wait_until(shown.driver.tray_operations, "the icon")[0]
    assert (again.operation, again.flags, again.tip) == (ADD, "7", TITLE)


def start_again(program):
    """A second start; its exit code."""
    return program.driver.run(program.program, "-ini", program.settings_file)


def test_a_second_start_brings_the_hidden_window_forward_and_ends(shown):
    shown.hide()

    assert start_again(shown) == 0

    shown.wait_until_visible()
    wait_until(lambda: shown.driver.ask("foreground")[0] == shown.window(), "the front")
    assert shown.process.poll() is None


def test_a_second_start_leaves_only_one_that_listens(shown):
    assert start_again(shown) == 0

    assert shown.driver.ask("running", shown.program.name) == [shown.process.pid]
    assert b"<CloseQBRs" in shown.ask("CLOSEQB:")[1]


def test_a_second_start_that_finds_no_window_says_so(program):
    program.driver.ask("mutex-hold", "Ostrel_APPLICATION_MUTEX")
    try:
        program.spawn("-ini", program.settings_file)

        assert program.answer_message() == NO_PREVIOUS

        assert program.wait_for_exit() == 1
    finally:
        program.driver.ask("mutex-release")


def test_it_can_be_started_again_as_soon_as_it_has_unloaded(program):
    for _ in range(3):
        program.start()
        program.choose("E&xit")
        wait_until(lambda: program.driver.ask("marked", MARK)[0] == "0", "the end of the mark")
        earlier = program.process

        program.start()

        assert earlier.wait(LIMIT) == 0
        assert program.stop() == 0


def test_after_its_end_it_can_be_started_again(program):
    program.start()
    assert program.stop() == 0

    program.start()

    assert program.stop() == 0


# -- switches -------------------------------------------------------------------------------------


def test_the_settings_file_may_be_named_with_blanks_in_its_path(program):
    named = program.folder / "a folder" / "my settings.ini"
    named.parent.mkdir()
    program.settings_file.rename(named)
    program.settings_file = named

    program.start()

    assert program.stop() == 0


def test_without_a_switch_it_takes_the_file_beside_the_program(program):
    program.spawn()

    program.wait_for_status(f"Listenning on Socket {program.port}")

    assert program.stop() == 0


DEBUG_TOOLS = ["Settings", "Log Communication", "Test Request"]


@pytest.mark.parametrize("switch", ["-debug", "/DEBUG"])
def test_the_debug_switch_shows_four_tools_and_says_so_in_the_caption(program, switch):
    program.start(switch)

    assert program.caption() == TITLE + " (Debugging)"
    items = program.menu()
    captions = [item.caption for item in items]
    tools = items[captions.index("Tools") + 1 : captions.index("&Communications")]
    assert [item.caption for item in tools] == [
        "Settings",
        "Default Quickbooks Database",
        "Start Quickbooks",
        "-",
        "Log History",
        "Log Communication",
        "-",
        "Test Request",
    ]
    assert program.stop() == 0


@pytest.mark.parametrize(("value", "seen"), [("False", False), ("no", True)])
def test_the_communications_menu_may_be_hidden(program, value, seen):
    program.start("-commmenu", value)

    assert ("&Communications" in [item.caption for item in program.menu()]) == seen
    assert program.stop() == 0


# -- ends -----------------------------------------------------------------------------------------


def begin_slow_request(program, seconds):
    program.write_company(processRequestSeconds=seconds)
    program.start()
    client = program.connect()
    client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
    program.wait_for_status("Processing Request")
    return client


def test_an_exit_during_a_request_waits_for_its_response(program):
    client = begin_slow_request(program, "1")

    program.choose("E&xit")

    program.wait_for_status("Exit waits for the request in work; exit again to give it up")
    assert b"<CustomerQueryRs" in client.read_frame()
    assert program.wait_for_exit() == 0


def test_a_second_exit_gives_the_request_up(program):
    client = begin_slow_request(program, "600")
    program.choose("E&xit")
    program.wait_for_status("Exit waits for the request in work; exit again to give it up")

    program.choose("E&xit")

    assert client.read_frame().startswith(b"ERROR: ")
    assert program.wait_for_exit() == 0


def test_windows_end_closes_the_session_and_ends_it(program, stand_in):
    program.start()
    program.ask(qbxml(CUSTOMER_QUERY))

    assert program.driver.send(program.window(), WM_QUERYENDSESSION) == 1
    assert program.process.poll() is None
    program.driver.send(program.window(), WM_ENDSESSION, 1)

    assert program.wait_for_exit() == 0
    wait_until(lambda: not stand_in.running(), "QuickBooks' end")


def test_windows_end_does_not_wait_for_a_request_that_takes_its_time(program):
    client = begin_slow_request(program, "600")

    program.driver.send(program.window(), WM_QUERYENDSESSION)
    program.driver.post(program.window(), WM_ENDSESSION, 1)

    assert client.read_frame().startswith(b"ERROR: ")
    assert program.wait_for_exit() == 0


def test_windows_end_waits_for_a_request_that_ends_in_time(program):
    client = begin_slow_request(program, "1")

    program.driver.send(program.window(), WM_QUERYENDSESSION)
    program.driver.post(program.window(), WM_ENDSESSION, 1)

    assert b"<CustomerQueryRs" in client.read_frame()
    assert program.wait_for_exit() == 0


def test_windows_is_kept_waiting_until_the_program_has_ended(program):
    client = begin_slow_request(program, "1")
    delaying = next(one for one in program.windows() if one.kind == "OstrelSessionEnd")

    program.driver.send(delaying.handle, WM_ENDSESSION, 1)  # returns when Windows may go on

    assert b"<CustomerQueryRs" in client.read_frame()
    assert program.wait_for_exit() == 0


def test_an_end_of_windows_that_was_called_off_changes_nothing(shown):
    assert shown.driver.send(shown.window(), WM_QUERYENDSESSION) == 1
    shown.driver.send(shown.window(), WM_ENDSESSION, 0)

    assert for_a_while(lambda: shown.process.poll() is None)


def test_another_programs_wish_to_close_it_ends_it(program):
    program.start()

    program.driver.post(program.window(), WM_CLOSE)

    assert program.wait_for_exit() == 0


def test_an_exit_ends_it_with_a_message_box_open(program):
    program.write_settings(Quickbooks_FileName="")
    program.start()
    program.choose("Start Quickbooks")
    program.dialog()

    program.choose("E&xit")

    assert program.wait_for_exit() == 0


def test_an_exit_ends_it_with_the_icons_menu_open(program):
    program.start()
    open_tray_menu(program)

    program.choose("E&xit")

    assert program.wait_for_exit() == 0
