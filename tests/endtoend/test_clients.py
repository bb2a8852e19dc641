"""Many clients, and clients that leave."""

import pathlib
import random
import resource
import select
import signal
import socket
import time

import pytest

from gateway import (
    ATTRIBUTE_MARK,
    CUSTOMER_QUERY,
    END_OF_DATA,
    LIMIT,
    Client,
    qbxml,
    wait_until,
)


def request_of(number):
    return f"QBFILENAME:client{number}.qbw".encode()


def response_of(number):
    return f"<QBFileName>client{number}.qbw</QBFileName>".encode()


@pytest.mark.parametrize("count", [12, 50])
def test_interleaved_clients_each_get_their_own_response(running, count):
    clients = [running.connect() for _ in range(count)]
    pieces = []
    for number in range(count):
        data = request_of(number) + END_OF_DATA
        cut = 1 + number % (len(data) - 2)
        pieces.append([data[:cut], data[cut:]])
    order = [number for number in range(count) for _ in range(2)]
    random.Random(count).shuffle(order)

    for number in order:
        clients[number].send(pieces[number].pop(0))

    for number, client in enumerate(clients):
        assert response_of(number) in client.read_frame()


def begin_to_connect(port):
    connection = socket.socket()
    connection.setblocking(False)
    connection.connect_ex(("127.0.0.1", port))
    return connection


def test_clients_that_come_at_the_same_moment_are_all_served(running):
    connections = [begin_to_connect(running.port) for _ in range(150)]

    for number, connection in enumerate(connections):
        connection.settimeout(LIMIT)
        select.select([], [connection], [], LIMIT)
        connection.sendall(request_of(number) + END_OF_DATA)

    for number, connection in enumerate(connections):
        received = b""
        while not received.endswith(END_OF_DATA):
            received += connection.recv(4096) or pytest.fail(f"connection {number} was closed")
        assert response_of(number) in received
        connection.close()


def leaves_after_connecting(running):
    running.connect().close()


def leaves_inside_a_request(running):
    client = running.connect()
    client.send(b"QBFILENAME:never-finis")
    client.close()


def leaves_with_a_request_queued(running):
    client = running.connect()
    client.send(request_of(1) + END_OF_DATA)
    client.close()


def resets_with_a_request_queued(running):
    client = running.connect()
    client.send(request_of(1) + END_OF_DATA)
    client.reset()


def resets_inside_a_request(running):
    client = running.connect()
    client.send(b"QBFILENAME:never-finis")
    client.reset()


def leaves_after_the_header(running):
    client = running.connect()
    client.send(request_of(1) + END_OF_DATA)
    assert client.socket.recv(1)
    client.reset()


def leaves_after_the_response(running):
    client = running.connect()
    client.ask(request_of(1))
    client.close()


STAGES = [
    leaves_after_connecting,
    leaves_inside_a_request,
    leaves_with_a_request_queued,
    resets_with_a_request_queued,
    resets_inside_a_request,
    leaves_after_the_header,
    leaves_after_the_response,
]


@pytest.mark.parametrize("leave", STAGES)
def test_a_client_that_leaves_disturbs_nobody(running, leave):
    stays = running.connect()
    stays.send(b"QBFILE")

    for _ in range(3):
        leave(running)

    _, body = stays.ask(b"NAME:client7.qbw")
    assert response_of(7) in body


def test_a_client_that_leaves_while_its_response_is_sent_disturbs_nobody(gateway):
    gateway.write_settings(Communication_BlockSize="1")
    gateway.start()
    leaver = gateway.connect()
    leaver.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
    assert leaver.socket.recv(1)
    leaver.reset()

    assert response_of(3) in gateway.ask(request_of(3))[1]
    assert gateway.stop() == 0


def test_the_request_of_a_client_that_left_is_not_answered_to_the_next(running):
    for number in range(15):
        gone = running.connect()
        gone.send(request_of(100 + number) + END_OF_DATA)
        gone.reset()

    with running.connect() as client:
        _, body = client.ask(request_of(1))

    assert response_of(1) in body


@pytest.mark.posix_only("Wine's five waiting connections: each one too many costs seconds")
def test_five_thousand_connections_opened_and_dropped(running):
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    for round_of_ten in range(500):
        batch = [Client(running.port) for _ in range(10)]
        for number, client in enumerate(batch):
            client.reset() if number % 2 else client.close()
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))

    assert response_of(9) in running.ask(request_of(9))[1]


@pytest.mark.posix_only("Wine's five waiting connections: each one too many costs seconds")
def test_a_thousand_idle_connections_leave_the_gateway_idle(running):
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    clients = [running.connect() for _ in range(1000)]

    assert response_of(1) in clients[999].ask(request_of(1))[1]
    assert response_of(2) in clients[0].ask(request_of(2))[1]

    for client in clients:
        client.close()
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
    assert response_of(3) in running.ask(request_of(3))[1]


def ask_for_much(gateway):
    """A client whose response is far longer than what the system holds for it, and unread."""
    gateway.write_settings(Communication_BlockSize="1000000")
    gateway.write_company(customers(200))
    gateway.start()
    client = gateway.connect()
    client.send(qbxml(CUSTOMER_QUERY * 400).encode() + END_OF_DATA)
    assert client.socket.recv(1, socket.MSG_PEEK)
    return client


def customers(count):
    names = (f"Customer {number} {'of a long street ' * 2}" for number in range(count))
    return "".join(f"<Customer><Name>{name[:41]}</Name></Customer>" for name in names)


WAITS = "Exit waits for responses that are being sent"


def test_an_exit_waits_for_a_response_that_is_being_read(gateway):
    client = ask_for_much(gateway)
    gateway.process.send_signal(signal.SIGINT)
    gateway.wait_for_status(WAITS)

    frame = client.read_frame()

    size, _, body = frame.partition(ATTRIBUTE_MARK)
    assert body.endswith(b"</QBXML>") or b"</QBXML>" in body[-20:]
    assert body.count(b"</CustomerQueryRs>") == 400
    assert int(size) >= len(body)
    assert gateway.wait_for_exit() == 0


def test_an_exit_lets_nobody_connect_while_it_waits(gateway):
    client = ask_for_much(gateway)
    gateway.process.send_signal(signal.SIGINT)
    gateway.wait_for_status(WAITS)

    with pytest.raises(OSError):
        gateway.connect()

    client.read_frame()
    assert gateway.wait_for_exit() == 0


def test_an_exit_does_not_wait_for_ever_for_a_client_that_reads_nothing(gateway):
    ask_for_much(gateway)
    gateway.process.send_signal(signal.SIGINT)

    gateway.wait_for_status(WAITS)

    assert gateway.wait_for_exit() == 0


def test_a_second_exit_gives_up_a_response_that_nobody_reads(gateway):
    ask_for_much(gateway)
    gateway.process.send_signal(signal.SIGINT)
    gateway.wait_for_status(WAITS)
    begun = time.monotonic()

    gateway.process.send_signal(signal.SIGINT)

    assert gateway.wait_for_exit() == 0
    assert time.monotonic() - begun < 4


def test_a_client_with_too_many_requests_is_ended_and_shuts_nobody_out(gateway):
    gateway.write_company(processRequestSeconds="6")
    gateway.start()
    slow = gateway.connect()
    slow.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
    gateway.wait_for_status("Processing Request")
    greedy = gateway.connect()
    begun = time.monotonic()
    try:
        while not gateway.has_status("ended: more than 1000 requests wait"):
            greedy.send(END_OF_DATA)
            assert time.monotonic() - begun < LIMIT
    except (ConnectionResetError, BrokenPipeError):
        pass

    gateway.wait_for_status("ended: more than 1000 requests wait")
    assert b"CustomerQueryRs" in slow.read_frame()
    assert response_of(4) in gateway.ask(request_of(4))[1]


def test_a_gateway_starts_again_while_clients_of_the_last_one_are_still_connected(gateway):
    gateway.start()
    clients = [gateway.connect() for _ in range(3)]
    for number, client in enumerate(clients):
        client.ask(request_of(number))
    assert gateway.stop() == 0
    gateway.lines.clear()

    gateway.start()

    assert response_of(5) in gateway.ask(request_of(5))[1]
    assert gateway.stop() == 0


def test_an_idle_connection_is_probed_after_a_minute(running):
    client = running.connect()
    client.ask(request_of(1))
    ours = client.socket.getsockname()[1]

    def seconds_to_the_probe():
        for line in pathlib.Path("/proc/net/tcp").read_text().splitlines()[1:]:
            _, local, remote, _, _, timer, *_ = line.split()
            if (int(local[-4:], 16), int(remote[-4:], 16)) == (running.port, ours):
                kind, when = timer.split(":")
                # 2: the connection's keep-alive; the unit is 10 ms
                return int(when, 16) / 100 if int(kind, 16) == 2 else 0
        return 0

    assert 30 < wait_until(seconds_to_the_probe, "a probe that is due") <= 61


def test_a_closed_gateway_closes_its_connections(gateway):
    gateway.start()
    client = gateway.connect()
    client.ask(request_of(1))

    assert gateway.stop() == 0

    assert wait_until(client.is_closed_by_gateway, "the end of the connection")
