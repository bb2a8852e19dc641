"""What may go wrong around the window program: nonsense, missing files, dialogs closed twice."""

import pytest

from gateway import CUSTOMER_QUERY, qbxml, wait_until
from window import WM_CLOSE, WM_COMMAND, for_a_while

pytestmark = pytest.mark.window

NO_SETTINGS = "Unable to find the osl.ini file needed."


def is_answered(program):
    return b"<CustomerQueryRs" in program.ask(qbxml(CUSTOMER_QUERY))[1]


# -- settings file --------------------------------------------------------------------------------


def test_without_its_settings_file_it_says_so_once_and_ends(program):
    program.settings_file.unlink()
    program.spawn("-ini", program.settings_file)

    assert program.answer_message() == NO_SETTINGS

    assert program.wait_for_exit() == 1


def test_a_settings_file_deleted_while_it_runs_does_not_matter_to_requests(shown):
    shown.settings_file.unlink()

    assert is_answered(shown)


def test_a_settings_file_deleted_while_it_runs_is_missed_by_the_history_command(program):
    program.start()
    program.settings_file.unlink()

    program.choose("Log History")

    assert program.answer_message() == NO_SETTINGS
    program.wait_for_exit()


def test_a_settings_file_replaced_while_it_runs_is_written_in_its_place(shown):
    shown.settings_file.unlink()
    shown.write_settings(General_History="0", Communication_Type="3")

    shown.choose("D3/Linux")

    wait_until(lambda: shown.setting("Type") == "1", "the settings file")


def test_a_number_that_is_none_stops_the_start_and_leaves_the_window(program):
    program.write_settings(Quickbooks_DisconnectTimeout="soon")
    program.spawn("-ini", program.settings_file)

    program.wait_for_status("Start-up stopped at qbxml Object")

    program.wait_until_visible()
    assert program.stop() == 0


# -- messages -------------------------------------------------------------------------------------

NONSENSE = [
    (WM_COMMAND, 0xFFFF, 0),
    (WM_COMMAND, 0, 0),
    (WM_COMMAND, 0x00020001, 12345),  # a double click in a window that there is not
    (0x0117, 0x7FFF, 0),  # a menu that there is not is opened
    (0x0112, 0x1234, 0),
    (0x002E, 0x1B, 0),  # keys of a list that there is not
    (0x0005, 99, -1),
    (0x02E0, -1, 0),
    (0x0113, 4711, 0),
    (0x0400, -1, -1),
    (0x8001, 1, 1),
    (0xC0FF, 7, 7),
    (0xFFFF, 0, 0),
]


def test_messages_with_nonsense_change_nothing(shown):
    marks = shown.checked()
    for window in (shown.window(), shown.tray_window(), shown.status_list()):
        for message, wparam, lparam in NONSENSE:
            shown.driver.post(window, message, wparam, lparam)

    assert is_answered(shown)
    assert shown.is_visible() and shown.checked() == marks
    assert shown.open_titles() == []


@pytest.mark.parametrize("code", [0, 0x200, 0x201, 0x205, 0x207, 0x400, 0xFFFF, -1])
def test_codes_of_the_icon_that_mean_nothing_do_nothing(shown, code):
    shown.hide()

    shown.tray(code)

    assert for_a_while(lambda: not shown.is_visible() and shown.open_popup() is None, 0.2)


def test_a_double_click_told_of_another_icon_does_nothing(shown):
    shown.hide()

    shown.driver.post(shown.tray_window(), 0x200, 77, 0x203)

    assert for_a_while(lambda: not shown.is_visible(), 0.2)


def test_a_dialog_closed_twice(shown):
    shown.choose("About")
    about = shown.dialog("About Ostrel Server")

    for _ in range(2):
        about.close()

    shown.wait_until_closed(about)
    shown.choose("About")
    shown.dialog("About Ostrel Server").press("OK")
    assert is_answered(shown)


def test_a_message_box_closed_instead_of_answered(program):
    program.write_settings(Quickbooks_FileName="")
    program.start()
    program.choose("Start Quickbooks")
    box = program.dialog()

    box.close()
    box.close()

    program.wait_until_closed(box)
    assert program.stop() == 0


# -- the window itself ----------------------------------------------------------------------------


def test_the_list_follows_the_windows_size(shown):
    before = shown.driver.ask("place", shown.status_list())

    shown.driver.ask("resize", shown.window(), 800, 600)

    def grown():
        after = shown.driver.ask("place", shown.status_list())
        return int(after[2]) > int(before[2]) and int(after[3]) > int(before[3])

    wait_until(grown, "a larger list")


def test_the_window_does_not_shrink_to_nothing(shown):
    shown.driver.ask("resize", shown.window(), 1, 1)

    width, height = map(int, shown.driver.ask("place", shown.window())[2:])
    assert width >= 300 and height >= 200


LB_GETHORIZONTALEXTENT = 0x0193


def test_lines_longer_than_the_list_can_be_scrolled_to_their_end(program):
    program.write_company(beginSessionError="0x80040421")  # the longest of its sentences
    program.start()
    program.ask(qbxml(CUSTOMER_QUERY))

    program.wait_for_status("You may find it useful to copy the text verbatim to your message window.")

    width = int(program.driver.ask("place", program.status_list())[2])
    assert program.driver.send(program.status_list(), LB_GETHORIZONTALEXTENT) > width
    assert program.stop() == 0
