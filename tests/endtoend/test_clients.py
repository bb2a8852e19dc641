"""Many clients, and clients that leave."""

import random
import resource

import pytest

from gateway import CUSTOMER_QUERY, END_OF_DATA, Client, qbxml, wait_until


def request_of(number):
    return f"QBFILENAME:client{number}.qbw".encode()


def answer_of(number):
    return f"<QBFileName>client{number}.qbw</QBFileName>".encode()


@pytest.mark.parametrize("count", [12, 50])
def test_interleaved_clients_each_get_their_own_answer(running, count):
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
        assert answer_of(number) in client.read_frame()


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


def leaves_after_the_answer(running):
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
    leaves_after_the_answer,
]


@pytest.mark.parametrize("leave", STAGES)
def test_a_client_that_leaves_disturbs_nobody(running, leave):
    stays = running.connect()
    stays.send(b"QBFILE")

    for _ in range(3):
        leave(running)

    _, body = stays.ask(b"NAME:client7.qbw")
    assert answer_of(7) in body


def test_a_client_that_leaves_while_its_answer_is_sent_disturbs_nobody(gateway):
    gateway.write_settings(Communication_BlockSize="1")
    gateway.start()
    leaver = gateway.connect()
    leaver.send(qbxml(CUSTOMER_QUERY).encode() + END_OF_DATA)
    assert leaver.socket.recv(1)
    leaver.reset()

    assert answer_of(3) in gateway.ask(request_of(3))[1]
    assert gateway.stop() == 0


def test_the_request_of_a_client_that_left_is_not_answered_to_the_next(running):
    for number in range(15):
        gone = running.connect()
        gone.send(request_of(100 + number) + END_OF_DATA)
        gone.reset()

    with running.connect() as client:
        _, body = client.ask(request_of(1))

    assert answer_of(1) in body


@pytest.mark.posix_only("Wine's five waiting connections: each one too many costs seconds")
def test_five_thousand_connections_opened_and_dropped(running):
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    for round_of_ten in range(500):
        batch = [Client(running.port) for _ in range(10)]
        for number, client in enumerate(batch):
            client.reset() if number % 2 else client.close()
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))

    assert answer_of(9) in running.ask(request_of(9))[1]


@pytest.mark.posix_only("Wine's five waiting connections: each one too many costs seconds")
def test_a_thousand_idle_connections_leave_the_gateway_idle(running):
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    clients = [running.connect() for _ in range(1000)]

    assert answer_of(1) in clients[999].ask(request_of(1))[1]
    assert answer_of(2) in clients[0].ask(request_of(2))[1]

    for client in clients:
        client.close()
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
    assert answer_of(3) in running.ask(request_of(3))[1]


def test_a_closed_gateway_closes_its_connections(gateway):
    gateway.start()
    client = gateway.connect()
    client.ask(request_of(1))

    assert gateway.stop() == 0

    assert wait_until(client.is_closed_by_gateway, "the end of the connection")
