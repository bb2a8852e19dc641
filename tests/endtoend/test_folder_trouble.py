"""Request files that cannot be taken and answers that cannot be written: nothing is lost, each
trouble is told once, and all others go on."""

import shutil
import time

import pytest

from company import saved
from folder import SlowWriter, answer_file, ask, put, requests_waiting, wait_for_answer
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

    assert b"<CloseQBRs" in wait_for_answer(gateway, "locked.osl")
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
    assert b"<CloseQBRs" in wait_for_answer(gateway, "secret.osl")
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
        assert answer_file(gateway, "forever.osl") is None
    finally:
        make_deletable(gateway, "forever.osl")

    assert b'statusCode="0"' in wait_for_answer(gateway, "forever.osl")
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

    assert wait_for_answer(gateway, "a.osl")
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

    assert b'statusCode="0"' in wait_for_answer(gateway, "a.osl")
    assert gateway.stop() == 0


def test_nothing_is_taken_while_a_folder_stands_in_the_answers_place(gateway):
    gateway.start_watching()
    (gateway.response_folder / "a.osl").mkdir()
    put(gateway, "a.osl", "CLOSEQB:")

    assert "its response cannot be written" in keeps_waiting(gateway, "a.osl")
    (gateway.response_folder / "a.osl").rmdir()

    assert b"<CloseQBRs" in wait_for_answer(gateway, "a.osl")
    assert gateway.stop() == 0


def test_an_answer_whose_place_is_held_open_by_its_reader_comes_later(gateway):
    gateway.start_watching()
    place = gateway.response_folder / "a.osl"
    with SlowWriter(place) as reader:
        reader.write("the answer of before")
        put(gateway, "a.osl", "CLOSEQB:")
        wait_until(lambda: requests_waiting(gateway) == [], "the request taken")
        assert b"<CloseQBRs" in ask(gateway, "b.osl", "CLOSEQB:")
        reader.close()

    wait_until(lambda: b"<CloseQBRs" in place.read_bytes(), "the new answer")
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
def test_a_disk_that_fills_up_under_an_answer_leaves_an_error_file(gateway):
    customers = "".join(
        f"<Customer><ListID>{n}</ListID><Name>Buyer {n}</Name></Customer>" for n in range(300)
    )
    gateway.write_company(customers)
    gateway.start_watching(preexec=disk_full_after(8192))

    answer = ask(gateway, "a.osl", qbxml(CUSTOMER_QUERY))

    lines = answer.decode("cp1252").split("\r\n")
    assert lines[0].startswith("ERROR ") and "could not be written" in lines[1]
    assert len(answer) < 4096 and lines[2:] == [""]
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

    lines = wait_for_answer(gateway, "huge.osl").decode("cp1252").split("\r\n")

    assert lines[0].startswith("ERROR ") and "too long" in lines[1]
    assert requests_waiting(gateway) == []
    assert gateway.stop() == 0


def same_folder(gateway):
    return gateway.process_folder


def same_folder_with_a_separator(gateway):
    return as_known(gateway.process_folder) + "\\"


def same_folder_in_capitals(gateway):
    return as_known(gateway.process_folder).upper()


@pytest.mark.parametrize(
    "said", [same_folder, same_folder_with_a_separator, same_folder_in_capitals]
)
def test_one_folder_for_requests_and_answers_is_refused(gateway, said):
    gateway.process_folder.mkdir()
    put(gateway, "a.osl", "CLOSEQB:")
    gateway.write_settings(Communication_Folder="1", General_ResponsePath=said(gateway))
    gateway.spawn("-ini", gateway.settings_file)

    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors[0].startswith("Unable to watch the folder")
    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    assert not gateway.has_status("Watching Folder") and requests_waiting(gateway) == ["a.osl"]
    assert gateway.stop() == 0
