"""qbXML in, qbXML out: how requests may arrive and how responses are framed."""

import pytest

from company import saved
from gateway import ATTRIBUTE_MARK, CUSTOMER_QUERY, END_OF_DATA, customer_add, qbxml

ENVELOPE = '<QBXML><QBXMLMsgsRq onError="stopOnError">%s</QBXMLMsgsRq></QBXML>' % CUSTOMER_QUERY
INSTRUCTION = '<?qbxml version="3.0"?>'
PROLOG = '<?xml version="1.0"?>'


@pytest.mark.parametrize(
    "request_text",
    [
        PROLOG + INSTRUCTION + ENVELOPE,
        INSTRUCTION + ENVELOPE,
        "CUSTOMER.LIST\r\n" + PROLOG + INSTRUCTION + ENVELOPE,
        "CUSTOMER.LIST\r\n" + INSTRUCTION + ENVELOPE,
        "CUSTOMER.LIST\u00fe" + PROLOG + "\u00fe" + INSTRUCTION + "\u00fe" + ENVELOPE,
    ],
    ids=["whole", "no prolog", "header", "header, no prolog", "attribute marks"],
)
def test_every_form_of_request_is_answered(running, request_text):
    header, body = running.ask(request_text)

    assert b'<CustomerQueryRs requestID="7" statusCode="1"' in body
    assert int(header) == len(body) + 2


def test_pieces_are_put_together_in_order(running):
    request = qbxml(CUSTOMER_QUERY).encode()
    with running.connect() as client:
        for start in range(0, len(request), 40):
            client.send(request[start : start + 40])

        header, body = client.ask("")

    assert b"<CustomerQueryRs" in body and int(header) == len(body) + 2


def test_single_bytes_are_put_together(running):
    with running.connect() as client:
        for byte in qbxml(CUSTOMER_QUERY).encode():
            client.send(bytes([byte]))

        _, body = client.ask("")

    assert b"<CustomerQueryRs" in body


def test_what_follows_the_end_mark_in_the_same_piece_is_lost(running):
    with running.connect() as client:
        client.send(b"CLOSEQB:" + END_OF_DATA + b"garbage that must not reach the next request")
        assert b"<CloseQBRs" in client.read_frame()

        _, body = client.ask("QBFILENAME:next.qbw")

    assert b"<QBFileName>next.qbw</QBFileName>" in body


def test_one_connection_asks_again_and_again(running):
    with running.connect() as client:
        for number in range(25):
            _, body = client.ask(f"QBFILENAME:books{number}.qbw")

            assert f"<QBFileName>books{number}.qbw<".encode() in body


def test_an_empty_request_is_refused_by_quickbooks(gateway):
    gateway.write_settings(General_ValidateXML="0")
    gateway.start()

    assert gateway.ask("") == (b"ERROR: 1024", b"")
    assert gateway.stop() == 0


def test_characters_outside_seven_bits_reach_quickbooks(running):
    running.ask(qbxml(customer_add("Caf\u00e9 M\u00fcller \u20ac")))

    _, body = running.ask(qbxml(CUSTOMER_QUERY))

    assert b"<Name>Caf&#233; M&#252;ller &#8364;</Name>" in body


def test_characters_outside_seven_bits_come_back_as_they_went(running):
    name = "Caf\u00e9 M\u00fcller \u20ac.qbw".encode("cp1252")

    _, body = running.ask(b"QBFILENAME:" + name)

    assert b"<QBFileName>" + name + b"</QBFileName>" in body


TWO_LINES = '<CustomerAddRq><CustomerAdd><Name>Two</Name><Notes>one&#13;&#10;two</Notes></CustomerAdd></CustomerAddRq>'


def test_a_line_break_becomes_an_attribute_mark(running):
    header, body = running.ask(qbxml(TWO_LINES))

    assert b"<Notes>one" + ATTRIBUTE_MARK + b"two</Notes>" in body
    # The header counts the response before line breaks are replaced.
    assert int(header) == len(body) + 2 + body.count(ATTRIBUTE_MARK)


def test_a_line_break_across_a_block_edge_stays_as_it_is(gateway):
    gateway.write_settings(Communication_BlockSize="1")
    gateway.start()

    header, body = gateway.ask(qbxml(TWO_LINES))

    assert b"<Notes>one\r\ntwo</Notes>" in body
    assert int(header) == len(body) + 2
    assert gateway.stop() == 0


@pytest.mark.parametrize("change", [-1, 0, 1])
def test_a_response_of_about_one_block_arrives_whole(gateway, change):
    reply = b"<QBXML><QBXMLMsgsRs><QBFileNameRs"
    gateway.start()
    _, expected = gateway.ask("QBFILENAME:x")
    gateway.stop()
    gateway.lines.clear()

    gateway.write_settings(Communication_BlockSize=len(expected) + change)
    gateway.start()
    header, body = gateway.ask("QBFILENAME:x")

    assert body == expected and body.startswith(reply) and int(header) == len(body) + 2
    assert gateway.stop() == 0


@pytest.mark.parametrize("size", ["0", "-5"])
def test_a_block_size_below_one_counts_as_the_default(gateway, size):
    gateway.write_settings(Communication_BlockSize=size)
    gateway.start()

    header, body = gateway.ask(qbxml(CUSTOMER_QUERY))

    assert b"<CustomerQueryRs" in body and int(header) == len(body) + 2
    assert gateway.stop() == 0


def test_what_was_added_is_in_the_company_file(running):
    running.ask(qbxml(customer_add("Ridgeway Joinery")))

    assert "Ridgeway Joinery" in saved(running.company_file)
    _, body = running.ask(qbxml(customer_add("Ridgeway Joinery", "2")))
    assert b'requestID="2" statusCode="3100"' in body
