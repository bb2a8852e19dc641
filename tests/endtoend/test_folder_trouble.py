"""Request files that cannot be taken and responses that cannot be written: nothing is lost, each
trouble is told once, and all others go on."""

import contextlib
import os
import shutil
import time

import pytest

from company import saved
from folder import SlowWriter, ask, put, requests_waiting, response_file, wait_for_response
from gateway import CUSTOMER_QUERY, customer_add, qbxml, wait_until
from limits import disk_full_after, permissions_count
from system import UNDER_WINE, as_known

SEVERAL_LOOKS = 5  # seconds; one look every two


def told(gateway, name):
    return [line for line in list(gateway.lines) if name in line]


def keeps_waiting(gateway, name):
    """The request is told of once and left where it is, look after look."""
    gateway.wait_for_status(f"Request file {name} waits: ")
    with pytest.raises(AssertionError, match="not within"):
        wait_until(
            lambda: len(told(gateway, name)) != 1 or name not in requests_waiting(gateway),
            "a second line",
            SEVERAL_LOOKS,
        )
    return told(gateway, name)[0]


def test_a_file_locked_by_its_writer_waits_and_holds_up_no_other(gateway):
    gateway.start_watching()
    with SlowWriter(gateway.process_folder / "locked.osl") as writer:
        writer.write("CLOSEQB:")
        assert "it cannot be read" in keeps_waiting(gateway, "locked.osl")
        for number in range(10):
            assert b"<CloseQBRs" in ask(gateway, f"other{number}.osl", "CLOSEQB:")
        assert len(told(gateway, "locked.osl")) == 1
        writer.close()

    assert b"<CloseQBRs" in wait_for_response(gateway, "locked.osl")
    assert gateway.stop() == 0


@pytest.mark.posix_only("Wine's server opens files with its own user's rights")
def test_a_file_that_cannot_be_read_waits(gateway):
    gateway.start_watching(preexec=permissions_count)
    secret = gateway.process_folder / "secret.new"
    secret.write_text("CLOSEQB:")
    secret.chmod(0)
    secret.rename(gateway.process_folder / "secret.osl")

    assert "it cannot be read" in keeps_waiting(gateway, "secret.osl")
    assert b"<CloseQBRs" in ask(gateway, "other.osl", "CLOSEQB:")

    (gateway.process_folder / "secret.osl").chmod(0o600)
    assert b"<CloseQBRs" in wait_for_response(gateway, "secret.osl")
    assert gateway.stop() == 0


def make_undeletable(gateway, name):
    """Windows does not delete a read-only file, other systems nothing from a read-only folder."""
    (gateway.process_folder / name if UNDER_WINE else gateway.process_folder).chmod(0o555)


def make_deletable(gateway, name):
    (gateway.process_folder / name if UNDER_WINE else gateway.process_folder).chmod(0o755)


def test_a_file_that_cannot_be_deleted_is_not_carried_out(gateway):
    gateway.process_folder.mkdir()
    put(gateway, "forever.osl", qbxml(customer_add("Once Only")))
    make_undeletable(gateway, "forever.osl")
    gateway.start_watching(preexec=permissions_count)

    try:
        assert "it cannot be deleted" in keeps_waiting(gateway, "forever.osl")
        assert "Once Only" not in saved(gateway.company_file)
        assert response_file(gateway, "forever.osl") is None
    finally:
        make_deletable(gateway, "forever.osl")

    assert b'statusCode="0"' in wait_for_response(gateway, "forever.osl")
    assert saved(gateway.company_file).count("<Name>Once Only<") == 1
    assert gateway.stop() == 0


def test_a_response_folder_that_is_missing_is_made_again(gateway):
    gateway.start_watching()
    shutil.rmtree(gateway.response_folder)

    assert b"<CloseQBRs" in ask(gateway, "a.osl", "CLOSEQB:")
    assert gateway.stop() == 0


def test_a_response_folder_that_goes_during_a_request_is_made_again(gateway):
    gateway.write_company(processRequestSeconds="2")
    gateway.start_watching()
    put(gateway, "a.osl", qbxml(CUSTOMER_QUERY))
    gateway.wait_for_status("Processing Request")

    shutil.rmtree(gateway.response_folder, ignore_errors=UNDER_WINE)

    assert wait_for_response(gateway, "a.osl")
    assert gateway.stop() == 0


@pytest.mark.posix_only("Wine's server opens files with its own user's rights")
def test_nothing_is_taken_while_the_response_folder_is_read_only(gateway):
    gateway.response_folder.mkdir()
    gateway.response_folder.chmod(0o555)
    gateway.start_watching(preexec=permissions_count)
    put(gateway, "a.osl", qbxml(customer_add("Waits")))

    try:
        assert "its response cannot be written" in keeps_waiting(gateway, "a.osl")
        assert "Waits" not in saved(gateway.company_file)
    finally:
        gateway.response_folder.chmod(0o755)

    assert b'statusCode="0"' in wait_for_response(gateway, "a.osl")
    assert gateway.stop() == 0


def test_nothing_is_taken_while_a_folder_stands_in_the_responses_place(gateway):
    gateway.start_watching()
    (gateway.response_folder / "a.osl").mkdir()
    put(gateway, "a.osl", "CLOSEQB:")

    assert "its response cannot be written" in keeps_waiting(gateway, "a.osl")
    (gateway.response_folder / "a.osl").rmdir()

    assert b"<CloseQBRs" in wait_for_response(gateway, "a.osl")
    assert gateway.stop() == 0


def test_a_response_whose_place_is_held_open_by_its_reader_comes_later(gateway):
    gateway.start_watching()
    place = gateway.response_folder / "a.osl"
    with SlowWriter(place) as reader:
        reader.write("the response of before")
        put(gateway, "a.osl", "CLOSEQB:")
        wait_until(lambda: requests_waiting(gateway) == [], "the request taken")
        assert b"<CloseQBRs" in ask(gateway, "b.osl", "CLOSEQB:")
        reader.close()

    wait_until(lambda: b"<CloseQBRs" in place.read_bytes(), "the new response")
    assert list(gateway.response_folder.glob("*.part")) == []
    assert gateway.stop() == 0


@pytest.mark.posix_only("a limit on file sizes is set")
def test_nothing_is_taken_while_the_disk_is_full(gateway):
    gateway.start_watching(preexec=disk_full_after(0))
    put(gateway, "a.osl", "CLOSEQB:")

    assert "its response cannot be written" in keeps_waiting(gateway, "a.osl")
    assert gateway.stop() == 0
    assert list(gateway.response_folder.iterdir()) == []


@pytest.mark.posix_only("a limit on file sizes is set")
def test_a_disk_that_fills_up_under_a_response_leaves_an_error_file(gateway):
    customers = "".join(
        f"<Customer><ListID>{n}</ListID><Name>Buyer {n}</Name></Customer>" for n in range(300)
    )
    gateway.write_company(customers)
    gateway.start_watching(preexec=disk_full_after(8192))

    response = ask(gateway, "a.osl", qbxml(CUSTOMER_QUERY))

    lines = response.decode("cp1252").split("\r\n")
    assert lines[0].startswith("ERROR ") and "could not be written" in lines[1]
    assert len(response) < 4096 and lines[2:] == [""]
    assert b"<CloseQBRs" in ask(gateway, "b.osl", "CLOSEQB:")
    assert gateway.stop() == 0


def test_the_process_folder_may_go_and_come_back(gateway):
    gateway.start_watching()
    assert b"<CloseQBRs" in ask(gateway, "before.osl", "CLOSEQB:")
    process = gateway.process_folder

    wait_until(lambda: shutil.rmtree(process, ignore_errors=True) or not process.exists(), "no folder")
    gateway.wait_for_status("The process folder is gone: ")
    process.mkdir()
    gateway.wait_for_status("The process folder is back: ")

    begin = time.monotonic()
    for number in range(10):
        assert b"<CloseQBRs" in ask(gateway, f"after{number}.osl", "CLOSEQB:")
    # By notification again, not by ten of the looks that come every two seconds.
    assert time.monotonic() - begin < 10
    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    assert gateway.stop() == 0


@pytest.mark.posix_only("files of this length take Wine minutes")
def test_a_request_of_300_megabytes_is_answered_by_an_error(gateway):
    gateway.start_watching()
    with (gateway.process_folder / "huge.new").open("wb") as file:
        file.truncate(300 << 20)
    (gateway.process_folder / "huge.new").rename(gateway.process_folder / "huge.osl")

    lines = wait_for_response(gateway, "huge.osl").decode("cp1252").split("\r\n")

    assert lines[0].startswith("ERROR ") and "too long" in lines[1]
    assert requests_waiting(gateway) == []
    assert gateway.stop() == 0


def same_folder(gateway):
    return gateway.process_folder


def same_folder_with_a_separator(gateway):
    return as_known(gateway.process_folder) + "\\"


def same_folder_in_capitals(gateway):
    return as_known(gateway.process_folder).upper()


def same_folder_by_a_detour(gateway):
    return as_known(gateway.process_folder) + "\\..\\" + gateway.process_folder.name


def same_folder_by_a_link(gateway):
    link = gateway.folder / "link"
    link.symlink_to(gateway.process_folder, target_is_directory=True)
    return link


@pytest.mark.parametrize(
    "said",
    [
        same_folder,
        same_folder_with_a_separator,
        same_folder_in_capitals,
        same_folder_by_a_detour,
        same_folder_by_a_link,
    ],
)
def test_one_folder_for_requests_and_responses_is_refused(gateway, said):
    gateway.process_folder.mkdir()
    put(gateway, "a.osl", "CLOSEQB:")
    gateway.write_settings(Communication_Folder="1", General_ResponsePath=said(gateway))
    gateway.spawn("-ini", gateway.settings_file)

    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors[0].startswith("Unable to watch the folder")
    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    assert not gateway.has_status("Watching Folder") and requests_waiting(gateway) == ["a.osl"]
    assert gateway.stop() == 0


# -- killed -------------------------------------------------------------------------------------------

GATEWAY_ENDED = (
    b"ERROR 58\r\n"
    b"the gateway ended while this request was in work; it may have been carried out\r\n"
)


def killed_while_it_works(gateway, name="a.osl"):
    """A gateway that has taken the request, and is no more."""
    gateway.write_company(processRequestSeconds="30")
    gateway.start_watching()
    put(gateway, name, qbxml(CUSTOMER_QUERY))
    gateway.wait_for_status("Processing Request")
    gateway.kill()
    gateway.write_company()
    gateway.lines.clear()


def left_over(gateway):
    return sorted(
        entry.name for entry in gateway.response_folder.iterdir() if entry.suffix != ".osl"
    )


def test_a_request_in_work_when_the_gateway_is_killed_gets_an_error(gateway):
    killed_while_it_works(gateway)
    assert left_over(gateway) == ["a.osl.part"]

    gateway.start_watching()

    assert wait_for_response(gateway, "a.osl") == GATEWAY_ENDED
    assert left_over(gateway) == []
    assert gateway.has_status("Request file a.osl was in work when the gateway ended")
    assert gateway.stop() == 0


def test_it_gets_its_error_at_a_start_without_the_folder_transport_too(gateway):
    killed_while_it_works(gateway)

    gateway.write_settings()
    gateway.start()

    assert wait_for_response(gateway, "a.osl") == GATEWAY_ENDED
    assert gateway.stop() == 0


def test_a_request_that_was_not_deleted_yet_is_carried_out(gateway):
    gateway.process_folder.mkdir()
    gateway.response_folder.mkdir()
    (gateway.response_folder / "a.osl.part").write_bytes(b" " * 4096)
    put(gateway, "a.osl", "CLOSEQB:")

    gateway.start_watching()

    assert b"<CloseQBRs" in wait_for_response(gateway, "a.osl")
    assert left_over(gateway) == [] and not gateway.has_status("was in work")
    assert gateway.stop() == 0


@contextlib.contextmanager
def in_use(gateway, place):
    """A place that nothing can be put in: Windows keeps a file there that somebody reads, other
    systems a folder. It is there when the request has been taken."""
    if UNDER_WINE:
        with SlowWriter(place) as reader:
            reader.write("the response of before")
            yield
    else:
        gateway.wait_for_status("Processing Request")
        place.mkdir()
        yield
        place.rmdir()


def test_a_finished_response_without_a_place_survives_a_kill(gateway):
    gateway.write_company(processRequestSeconds="2")
    gateway.start_watching()
    put(gateway, "a.osl", qbxml(customer_add("Finished")))
    with in_use(gateway, gateway.response_folder / "a.osl"):
        gateway.wait_for_status("waits: it cannot be put in place")
        gateway.kill()
        assert "a.osl.done" in left_over(gateway)

    gateway.start_watching()

    wait_until(lambda: b"Finished" in (response_file(gateway, "a.osl") or b""), "the response")
    assert b'<CustomerAddRs requestID="1" statusCode="0"' in wait_for_response(gateway, "a.osl")
    assert left_over(gateway) == []
    assert gateway.stop() == 0


def test_a_gateway_killed_after_its_notice_answers_who_got_it(gateway):
    gateway.write_company(beginSessionSeconds="30")
    gateway.process_folder.mkdir()
    for name in ("first.osl", "second.osl"):
        put(gateway, name, qbxml(CUSTOMER_QUERY))
    gateway.start_watching()
    wait_until(lambda: response_file(gateway, "second.osl"), "the loading notice")
    gateway.kill()
    (gateway.response_folder / "third.osl.note").write_bytes(b"ERROR 9")
    gateway.write_company()

    gateway.start_watching()

    assert wait_for_response(gateway, "first.osl") == GATEWAY_ENDED
    wait_until(
        lambda: b"<CustomerQueryRs" in (response_file(gateway, "second.osl") or b""), "the response"
    )
    assert left_over(gateway) == []
    assert gateway.stop() == 0


# -- names --------------------------------------------------------------------------------------------


@pytest.mark.posix_only("Windows does not tell names by their case")
def test_names_that_differ_in_case_are_different_requests(gateway):
    gateway.process_folder.mkdir()
    names = {"order.osl": "Small", "Order.osl": "Mixed", "ORDER.OSL": "Capital"}
    for name, customer in names.items():
        put(gateway, name, qbxml(customer_add(customer)))

    gateway.start_watching()

    wait_until(lambda: len(list(gateway.response_folder.glob("*.[oO]*"))) == 3, "three responses")
    for name, customer in names.items():
        assert f"<Name>{customer}</Name>".encode() in wait_for_response(gateway, name)
    assert gateway.stop() == 0


@pytest.mark.parametrize("length", [250, 251, 255])
def test_the_longest_names_are_answered(gateway, length):
    name = "n" * (length - 4) + ".osl"
    gateway.start_watching()
    beside = gateway.process_folder / "new"
    beside.write_bytes(b"CLOSEQB:")
    beside.rename(gateway.process_folder / name)

    assert b"<CloseQBRs" in wait_for_response(gateway, name)
    assert left_over(gateway) == []
    assert gateway.stop() == 0


def test_the_longest_name_in_work_when_the_gateway_is_killed_gets_an_error(gateway):
    name = "n" * 246 + ".osl"
    killed_while_it_works(gateway, name)
    (gateway.response_folder / (name + ".part")).rename(gateway.response_folder / ("m" * 251 + ".osp"))

    gateway.start_watching()

    assert wait_for_response(gateway, "m" * 251 + ".osl") == GATEWAY_ENDED
    assert gateway.stop() == 0


@pytest.mark.posix_only("Windows knows no such names")
def test_a_name_that_is_no_text_or_holds_a_backslash_is_told_of_once(gateway):
    gateway.process_folder.mkdir()
    for name in (b"a\\b.osl", b"\xff.osl"):
        with open(os.path.join(os.fsencode(gateway.process_folder), name), "wb") as file:
            file.write(b"CLOSEQB:")

    gateway.start_watching()
    assert b"<CloseQBRs" in ask(gateway, "c.osl", "CLOSEQB:")

    for name in ("a\\b.osl", "\ufffd.osl"):
        (line,) = told(gateway, f"Request file {name}")
        assert line.endswith('waits: its name is no text, or there is a "\\" in it')
    assert gateway.stop() == 0


# -- links --------------------------------------------------------------------------------------------


@pytest.mark.posix_only("Wine makes no links")
def test_a_request_that_is_a_link_is_not_read(gateway):
    gateway.process_folder.mkdir()
    secret = gateway.folder / "secret"
    secret.write_text("the password")
    (gateway.process_folder / "a.osl").symlink_to(secret)
    gateway.start_watching()

    assert "symbolic link" in keeps_waiting(gateway, "a.osl")
    assert b"<CloseQBRs" in ask(gateway, "b.osl", "CLOSEQB:")
    assert secret.read_text() == "the password" and response_file(gateway, "a.osl") is None
    assert gateway.stop() == 0


@pytest.mark.posix_only("Wine makes no links")
@pytest.mark.parametrize("place", ["a.osl", "a.osl.part"])
def test_a_link_in_the_response_folder_is_not_written_to(gateway, place):
    gateway.response_folder.mkdir()
    precious = gateway.folder / "precious"
    precious.write_text("precious")
    (gateway.response_folder / place).symlink_to(precious)
    gateway.start_watching()
    put(gateway, "a.osl", "CLOSEQB:")

    assert "symbolic link" in keeps_waiting(gateway, "a.osl")
    assert precious.read_text() == "precious"
    (gateway.response_folder / place).unlink()
    assert b"<CloseQBRs" in wait_for_response(gateway, "a.osl")
    assert gateway.stop() == 0
