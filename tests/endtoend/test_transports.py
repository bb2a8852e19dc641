"""Which transports run, and both at once."""

import select
import socket
import statistics
import threading
import time

import pytest

from folder import ask, put, requests_waiting, response_file, wait_for_response
from gateway import CUSTOMER_QUERY, END_OF_DATA, LIMIT, qbxml, wait_until
from system import UNDER_WINE, as_known


def is_listening(gateway):
    try:
        return b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    except ConnectionRefusedError:
        return False


# Flavour, then the keys Folder and Socket, then whether the folder is watched and TCP served.
RULES = [
    ("0", "0", "0", False, False),
    ("0", "0", "1", False, True),
    ("0", "1", "0", True, False),
    ("0", "1", "1", True, True),
    ("1", "1", "0", False, True),
    ("2", "1", "0", False, True),
    ("3", "1", "0", False, True),
    ("4", "0", "1", True, False),
]


@pytest.mark.parametrize("flavour, folder, tcp, watches, listens", RULES)
def test_the_flavour_decides_which_transports_run(gateway, flavour, folder, tcp, watches, listens):
    gateway.write_settings(
        Communication_Type=flavour, Communication_Folder=folder, Communication_Socket=tcp
    )
    gateway.process_folder.mkdir()
    put(gateway, "a.osl", "CLOSEQB:")
    gateway.spawn("-ini", gateway.settings_file)
    gateway.wait_for_status("Ostrel Server")  # the opening line
    if listens:
        gateway.wait_for_status(f"Listenning on Socket {gateway.port}")
    if watches:
        # The file class turns folder names to lower case.
        gateway.wait_for_status(f"Watching Folder: {as_known(gateway.process_folder).lower()}")
        assert b"<CloseQBRs" in wait_for_response(gateway, "a.osl")

    assert is_listening(gateway) == listens
    if watches or listens:
        assert gateway.stop() == 0
    else:
        assert gateway.wait_for_exit() == 1  # there is nothing to do
    assert gateway.has_status("Watching Folder") == watches
    assert requests_waiting(gateway) == ([] if watches else ["a.osl"])


def test_a_port_that_is_taken_leaves_the_folder_transport_running(gateway):
    with socket.socket() as other:
        other.bind(("", gateway.port))
        other.listen()
        gateway.start_watching()

        assert gateway.errors == [f"Unable to start the Socket Server on Port {gateway.port}"]
        assert b"<CloseQBRs" in ask(gateway, "a.osl", "CLOSEQB:")
    assert gateway.stop() == 0


def test_both_folders_are_made_at_start(gateway):
    gateway.process_folder = gateway.folder / "deep" / "er" / "in"
    gateway.response_folder = gateway.folder / "deep" / "er" / "out"

    gateway.start_watching()

    assert b"<CloseQBRs" in ask(gateway, "a.osl", "CLOSEQB:")
    assert gateway.stop() == 0


class Side(threading.Thread):
    """One of those that ask at the same time; what went wrong is kept for the test."""

    def __init__(self, ask_once, name, count):
        super().__init__(daemon=True)
        self.ask_once, self.label, self.count = ask_once, name, count
        self.wrong = []
        self.done = 0
        self.start()

    def run(self):
        try:
            for number in range(self.count):
                company = f"{self.label}-{number}.qbw"
                response = self.ask_once(f"{self.label}-{number}", f"QBFILENAME:{company}")
                if f"<QBFileName>{company}</QBFileName>".encode() not in response:
                    self.wrong.append((company, response))
                self.done += 1
        except Exception as problem:  # told by the test, on its own thread
            self.wrong.append(problem)


def test_responses_of_both_transports_are_never_crossed(gateway):
    gateway.start_watching()
    clients = [gateway.connect() for _ in range(5)]

    def by_file(name, text):
        return ask(gateway, name + ".osl", text)

    def by_socket(client):
        return lambda name, text: client.ask(text)[1]

    sides = [Side(by_file, f"file{n}", 40) for n in range(5)]
    sides += [Side(by_socket(client), f"tcp{n}", 8) for n, client in enumerate(clients)]
    for side in sides:
        side.join(2 * LIMIT)

    assert [side.wrong for side in sides if side.wrong] == []
    assert [side.done for side in sides] == [40] * 5 + [8] * 5
    assert requests_waiting(gateway) == []
    assert gateway.stop() == 0


def test_a_file_waits_while_a_socket_request_is_in_work(gateway):
    gateway.write_company(beginSessionSeconds="2")
    gateway.start_watching()
    with gateway.connect() as client:
        client.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
        gateway.wait_for_status("Loading Company file")

        assert b"<CloseQBRs" in ask(gateway, "a.osl", "CLOSEQB:")

        has_been_answered, _, _ = select.select([client.socket], [], [], 0)
        assert has_been_answered and b"<CustomerQueryRs" in client.read_frame()
    assert gateway.stop() == 0


def test_a_socket_request_waits_while_a_file_is_in_work(gateway):
    gateway.write_company(beginSessionSeconds="2")
    gateway.start_watching()
    put(gateway, "a.osl", qbxml(CUSTOMER_QUERY))
    gateway.wait_for_status("Loading Company file")

    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]

    assert b"<CustomerQueryRs" in response_file(gateway, "a.osl")
    assert gateway.stop() == 0


def test_a_flood_of_files_does_not_starve_a_socket_client(gateway):
    flood = 200 if UNDER_WINE else 1000
    gateway.process_folder.mkdir()
    for number in range(flood):
        put(gateway, f"flood{number:04}.osl", "CLOSEQB:")
    gateway.start_watching()
    gateway.wait_for_status("Listenning")

    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    waiting = len(requests_waiting(gateway))

    assert waiting > 0, "the flood was over before the client was answered"
    wait_until(lambda: requests_waiting(gateway) == [], "all files taken", 2 * LIMIT)
    assert gateway.stop() == 0
    assert len(list(gateway.response_folder.iterdir())) == flood


def median_of_a_response(gateway):
    times = []
    with gateway.connect() as client:
        for _ in range(15):
            begin = time.monotonic()
            client.ask("CLOSEQB:")
            times.append(time.monotonic() - begin)
    return statistics.median(times)


def test_a_socket_request_is_answered_as_quickly_while_a_folder_is_watched(gateway):
    gateway.start()
    alone = median_of_a_response(gateway)
    assert gateway.stop() == 0

    gateway.start_watching()
    beside = median_of_a_response(gateway)
    assert gateway.stop() == 0

    assert beside < 1.5 * alone + 0.02, (alone, beside)


def test_a_folder_that_is_watched_idle_takes_no_time(gateway):
    gateway.start_watching()
    ask(gateway, "a.osl", "CLOSEQB:")
    before = gateway.cpu_seconds()

    # Three seconds in which nothing is there to be told.
    with pytest.raises(AssertionError, match="not within"):
        gateway.wait_for_status("anything at all", limit=3)

    assert gateway.cpu_seconds() - before < 0.15
    assert gateway.stop() == 0
