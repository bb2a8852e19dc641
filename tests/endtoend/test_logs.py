"""What the gateway leaves on disk: history, communication log, status file."""

import os
import re

import pytest

from gateway import CUSTOMER_QUERY, customer_add, qbxml, wait_until

DATE = r"\d{1,2}/\d{1,2}/\d{4} \d{1,2}:\d\d:\d\d [AP]M"
RULE = "=" * 60


def history_files(gateway):
    return sorted(gateway.history.glob("[0-9]*.txt")) if gateway.history.exists() else []


def test_each_request_leaves_a_history_file(gateway):
    gateway.write_settings(General_History="1")
    gateway.start()
    gateway.ask("LIST.CUSTOMERS\r\n" + qbxml(CUSTOMER_QUERY))

    path = wait_until(lambda: history_files(gateway), "a history file")[0]
    lines = path.read_bytes().decode("cp1252").split("\r\n")

    assert re.fullmatch(r"\d{1,2}0\d{1,2}0\d{4}\d{5,6}[AP]M\.txt", path.name)
    assert re.fullmatch(r"Version: \d+\.\d+\.\d+", lines[0])
    assert lines[1:7] == [
        "Communication Type:0",
        "Socket:True",
        "Folder:False",
        RULE,
        "Raw Data:",
        "LIST.CUSTOMERS",
    ]
    # A prolog without the blank before its end counts as a start tag and indents what follows.
    assert "            <CustomerQueryRq requestID=\"7\"/>" in lines
    assert re.fullmatch("Start: " + DATE, lines[-2])
    assert re.fullmatch("End:" + DATE, lines[-1])
    gateway.wait_for_status(f"Creating Log File: {path.name}")
    assert gateway.stop() == 0


def test_each_request_of_a_second_has_a_history_file_when_asked_for(gateway):
    gateway.write_settings(General_History="1", General_HistoryEach="1")
    gateway.start()
    with gateway.connect() as client:
        for number in range(20):
            client.ask(f"R{number}\r\n" + qbxml(CUSTOMER_QUERY))

    # In the order of their names in the status lines, each tells of its own request.
    names = [
        line.split(": ", 1)[1]
        for line in wait_until(
            lambda: [one for one in gateway.status_lines() if "Creating Log File: " in one][19:]
            and [one for one in gateway.status_lines() if "Creating Log File: " in one],
            "the lines",
        )
    ]
    assert len(set(names)) == 20
    for number, name in enumerate(names):
        path = gateway.history / name
        wait_until(path.exists, name)
        assert f"\r\nR{number}\r\n".encode() in path.read_bytes()
    assert gateway.stop() == 0


def test_no_history_unless_it_is_switched_on(running):
    running.ask(qbxml(CUSTOMER_QUERY))

    assert history_files(running) == []


def test_commands_that_do_not_reach_quickbooks_leave_no_history(gateway):
    gateway.write_settings(General_History="1")
    gateway.start()

    gateway.ask("CLOSEQB:")
    gateway.ask("QBFILENAME:x")

    assert history_files(gateway) == []
    assert gateway.stop() == 0


@pytest.mark.posix_only("SIGUSR1 switches the communication log")
def test_the_communication_log_follows_a_request(running):
    os.makedirs(running.history, exist_ok=True)
    running.toggle_comm_log()
    wait_until(lambda: "----> Comm Log enabled <-----" in running.comm_log(), "the opening line")

    running.ask("QBFILENAME:a.qbw")

    wait_until(lambda: "Results: " in running.comm_log(), "the response in the log")
    lines = [line.split("\t", 1)[1] for line in running.comm_log().splitlines()]
    assert lines[0] == "----> Comm Log enabled <-----"
    assert re.fullmatch(r"Version: \d+\.\d+\.\d+", lines[1])
    assert lines[2:5] == ["Communication Type:0", "Socket:True", "Folder:False"]
    of_socket = [line.split("\t", 1)[1] for line in lines if line.startswith("Socket 1\t")]
    assert "Resize socket Storage Array: 11" in of_socket
    assert any(re.fullmatch(r"Storage Array Position: \d+", line) for line in of_socket)
    assert "Looking for End of data: 0" in of_socket or "Looking for End of data: 17" in of_socket
    assert "Adds to Process Queue" in of_socket
    assert all(re.match(DATE + "\t", line) for line in running.comm_log().splitlines())


@pytest.mark.posix_only("SIGUSR1 switches the communication log")
def test_status_lines_reach_the_communication_log_with_their_socket(running):
    os.makedirs(running.history, exist_ok=True)
    running.toggle_comm_log()
    running.ask(qbxml(CUSTOMER_QUERY))

    wait_until(lambda: "Request Processed" in running.comm_log(), "the status in the log")

    assert "\tSocket 1\tQBXML Status: Openning Connection\r\n" in running.comm_log()


@pytest.mark.posix_only("SIGUSR1 switches the communication log")
def test_the_communication_log_switched_off_stays_silent(running):
    os.makedirs(running.history, exist_ok=True)
    running.toggle_comm_log()
    wait_until(lambda: "Folder:" in running.comm_log(), "the opening lines")
    running.toggle_comm_log()
    before = running.comm_log()

    running.ask("CLOSEQB:")

    assert running.comm_log() == before and "Disabled" not in before


def test_the_status_file_tells_the_last_failure(gateway):
    gateway.write_company(processRequestError="0x80040402")
    gateway.start()

    gateway.ask(qbxml(CUSTOMER_QUERY))

    status = gateway.folder / "status" / "status.txt"
    lines = wait_until(lambda: status.exists() and status.read_text().splitlines(), "a status file")
    assert re.fullmatch(DATE, lines[0])
    assert gateway.stop() == 0


@pytest.mark.posix_only("SIGUSR1 switches the communication log")
def test_logs_that_cannot_be_written_hold_up_no_request(gateway):
    gateway.history.write_text("a file where the folder should be")
    gateway.write_settings(General_History="1")
    gateway.spawn("-ini", gateway.settings_file)
    gateway.wait_for_status(f"Listenning on Socket {gateway.port}")
    gateway.toggle_comm_log()

    assert b"statusCode" in gateway.ask(qbxml(customer_add("Still Here")))[1]
    assert gateway.stop() == 0


@pytest.mark.posix_only("a limit on file sizes is set")
def test_a_full_disk_under_the_logs_is_told_and_holds_up_no_request(gateway):
    # A limit on file sizes stands for the full disk: every write behind it fails.
    import resource
    import signal

    def full_disk():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0))

    gateway.write_settings(General_History="1")
    gateway.history.mkdir()
    gateway.start(preexec=full_disk)
    gateway.toggle_comm_log()

    _, body = gateway.ask(qbxml(CUSTOMER_QUERY))

    assert b"<CustomerQueryRs" in body
    gateway.wait_for_status("Comm.log")
    assert gateway.stop() == 0
