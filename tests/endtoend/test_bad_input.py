"""Whatever arrives, the gateway goes on and other clients do not notice."""

import contextlib
import random

import pytest

from gateway import CUSTOMER_QUERY, END_OF_DATA, qbxml
from system import UNDER_WINE, as_known

MEGABYTE = 1 << 20


@pytest.fixture
def other(running):
    """A second client that must notice nothing."""
    client = running.connect()
    yield client
    assert b"<CloseQBRs" in client.ask("CLOSEQB:")[1]


@pytest.mark.parametrize(
    "garbage",
    [
        bytes(byte for byte in range(256) if byte != END_OF_DATA[0]),
        b"\0" * 5000,
        random.Random(1).randbytes(20000).replace(END_OF_DATA, b""),
        b"<" * 20000,
        b"<a>" * 20000,
        b"\xfe" * 20000,
        qbxml("\0").encode(),
        qbxml("&lol;").encode(),
    ],
    ids=["all bytes", "NULs", "random", "brackets", "deep", "marks", "NUL inside", "entity"],
)
def test_garbage_is_refused(running, other, garbage):
    header, _ = running.ask(garbage)

    assert header == b"ERROR: 1024"


def test_a_bomb_of_entities_is_refused(running, other):
    layers = "".join(f'<!ENTITY e{n} "{f"&e{n - 1};" * 10}">' for n in range(1, 10))
    bomb = f'<?xml version="1.0"?><!DOCTYPE QBXML [<!ENTITY e0 "ha">{layers}]>'

    header, _ = running.ask(bomb + qbxml("<CustomerQueryRq>&e9;</CustomerQueryRq>")[21:])

    assert header == b"ERROR: 1024"


def test_an_external_entity_is_not_read(running, other):
    secret = running.folder / "secret.txt"
    secret.write_text("top secret")
    address = "file:///" + as_known(secret).replace("\\", "/").lstrip("/")
    request = (
        f'<?xml version="1.0"?><!DOCTYPE QBXML [<!ENTITY s SYSTEM "{address}">]>'
        + qbxml("<CustomerAddRq><CustomerAdd><Name>&s;</Name></CustomerAdd></CustomerAddRq>")[21:]
    )

    header, body = running.ask(request)

    assert b"top secret" not in body
    assert b"top secret" not in running.ask(qbxml(CUSTOMER_QUERY))[1]


def test_a_request_that_is_never_ended_holds_up_nobody(running, other):
    endless = running.connect()
    for _ in range(16):
        endless.send(b"x" * MEGABYTE)

    assert b"<CloseQBRs" in running.ask("CLOSEQB:")[1]


def test_a_request_of_300_megabytes_ends_its_connection_alone(running, other):
    huge = running.connect()
    with contextlib.suppress(ConnectionResetError, BrokenPipeError):
        for _ in range(300):
            huge.send(b"x" * MEGABYTE)
        huge.send(END_OF_DATA)

    # On Windows all texts together may be as long as the longest request would be alone.
    reason = "no memory for its request" if UNDER_WINE else "its request is too long"
    running.wait_for_status(f"ended: {reason}")
    assert huge.is_closed_by_gateway() and huge.received == b""


def test_a_long_request_below_the_limit_is_answered(running, other):
    padding = "<!--" + "x" * (8 * MEGABYTE) + "-->"

    _, body = running.ask(qbxml(padding + CUSTOMER_QUERY))

    assert b"<CustomerQueryRs" in body
