"""Clients that never pause: everybody is served beside them, and what nobody asked for goes on."""

import contextlib
import os
import signal
import socket
import threading

import pytest

from folder import put, wait_for_response
from gateway import CUSTOMER_QUERY, END_OF_DATA, LIMIT, Client, qbxml, wait_until
from system import UNDER_WINE
from test_clients import ask_for_much

ASKERS = 10
ENOUGH = 100 if UNDER_WINE else 400  # responses to one of them


class Asker(threading.Thread):
    """Sends its next request as soon as the response to the last one is there."""

    def __init__(self, gateway, request="CLOSEQB:"):
        super().__init__(daemon=True)
        self.client, self.request = gateway.connect(), request
        self.responses = 0
        self.ended = threading.Event()
        self.problem = None

    def run(self):
        try:
            while not self.ended.is_set():
                assert b"<CloseQBRs" in self.client.ask(self.request)[1]
                self.responses += 1
        except Exception as problem:  # told by the test, on its own thread
            self.problem = problem


@contextlib.contextmanager
def asking(gateway, count=ASKERS):
    """While so many clients ask without pause."""
    askers = [Asker(gateway) for _ in range(count)]
    for asker in askers:
        asker.start()
    wait_until(lambda: all(asker.responses for asker in askers), "a response to each")
    yield askers
    problems = [asker.problem for asker in askers if asker.problem]
    for asker in askers:
        asker.ended.set()
    for asker in askers:
        asker.join()
    assert problems == []


def test_clients_that_never_pause_get_equal_shares(running):
    with asking(running) as askers:
        wait_until(lambda: max(asker.responses for asker in askers) >= ENOUGH, "many responses")
        shares = [asker.responses for asker in askers]

    assert 2 * min(shares) >= max(shares), shares


def test_a_new_client_is_served_beside_those_that_never_pause(running):
    with asking(running) as askers:
        served = [asker.responses for asker in askers]
        for _ in range(10):
            assert b"<CloseQBRs" in running.ask("CLOSEQB:")[1]
        turns = max(asker.responses - before for asker, before in zip(askers, served))

    # It connects anew each time, which the others do not; but it waits for none of them twice.
    assert turns < 500, turns


def test_a_file_is_served_beside_clients_that_never_pause(gateway):
    gateway.start_watching()
    with asking(gateway) as askers:
        put(gateway, "a.osl", "CLOSEQB:")
        before = sum(asker.responses for asker in askers)
        assert b"<CloseQBRs" in wait_for_response(gateway, "a.osl")
        meanwhile = sum(asker.responses for asker in askers) - before

        assert meanwhile < 10_000, meanwhile
    assert gateway.stop() == 0


def test_timers_go_on_beside_clients_that_never_pause(gateway):
    gateway.start_watching()
    with asking(gateway, 5):
        gateway.process_folder.rename(gateway.folder / "gone")
        gateway.wait_for_status("The process folder is gone")
        gateway.process_folder.mkdir()  # only the look every two seconds finds it
        put(gateway, "a.osl", "CLOSEQB:")
        assert b"<CloseQBRs" in wait_for_response(gateway, "a.osl")
    assert gateway.stop() == 0


def test_an_exit_is_heard_beside_clients_that_never_pause(gateway):
    gateway.start()
    askers = [Asker(gateway) for _ in range(ASKERS)]
    for asker in askers:
        asker.start()
    wait_until(lambda: all(asker.responses for asker in askers), "a response to each")

    assert gateway.stop() == 0

    for asker in askers:
        asker.join(LIMIT)
        assert not asker.is_alive()


@pytest.mark.posix_only("processor time is read as Linux tells it")
def test_a_request_that_waits_for_another_costs_no_time(gateway):
    gateway.write_company(beginSessionSeconds="2")
    gateway.start()
    slow, waiting = gateway.connect(), gateway.connect()
    slow.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
    gateway.wait_for_status("Loading Company file")
    waiting.send(b"CLOSEQB:" + END_OF_DATA)
    before = gateway.cpu_seconds()

    assert b"<CustomerQueryRs" in slow.read_frame()
    used = gateway.cpu_seconds() - before

    assert b"<CloseQBRs" in waiting.read_frame()
    assert used < 0.5, used  # of the two seconds
    assert gateway.stop() == 0


def flood_of_empty_requests(gateway, ended):
    with gateway.connect() as client:
        client.socket.settimeout(0.1)
        while not ended.is_set():
            with contextlib.suppress(TimeoutError):
                client.socket.sendall(END_OF_DATA * 20)
            with contextlib.suppress(TimeoutError):
                client.socket.recv(1 << 16)


def flood_of_garbage(gateway, ended):
    while not ended.is_set():
        with Client(gateway.port) as client, contextlib.suppress(ConnectionError):
            for _ in range(20):
                client.send(os.urandom(1000).replace(END_OF_DATA, b"") + END_OF_DATA)
                client.read_frame()


def flood_of_single_bytes(gateway, ended):
    clients = [gateway.connect() for _ in range(20 if UNDER_WINE else 200)]
    while not ended.is_set():
        for client in clients:
            client.send(b"x")


def flood_of_connections(gateway, ended):
    while not ended.is_set():
        with contextlib.suppress(OSError):
            Client(gateway.port).reset()


@pytest.mark.parametrize(
    "flood",
    [flood_of_empty_requests, flood_of_garbage, flood_of_single_bytes, flood_of_connections],
)
def test_a_flood_shuts_nobody_out(running, flood):
    ended = threading.Event()
    with running.connect() as good:
        flooding = threading.Thread(target=flood, args=(running, ended), daemon=True)
        flooding.start()
        for _ in range(20 if UNDER_WINE else 100):
            assert b"<CloseQBRs" in good.ask("CLOSEQB:")[1]
        ended.set()
        flooding.join(LIMIT)
    assert not flooding.is_alive()


@pytest.mark.posix_only("memory is read as Linux tells it")
def test_clients_that_never_read_delay_nobody(gateway):
    first = ask_for_much(gateway)
    silent = [first] + [gateway.connect() for _ in range(4)]
    for client in silent[1:]:
        client.send(qbxml(CUSTOMER_QUERY * 400).encode() + END_OF_DATA)
        assert client.socket.recv(1, socket.MSG_PEEK)
    held = gateway.memory()

    with asking(gateway) as askers:
        wait_until(lambda: min(asker.responses for asker in askers) >= 20, "responses to all")

    assert gateway.memory() < held + (64 << 20)  # their queues are their own responses, no more
    for client in silent:
        assert client.read_frame().count(b"<CustomerRet>") == 200 * 400
    gateway.process.send_signal(signal.SIGINT)
    assert gateway.wait_for_exit() == 0
