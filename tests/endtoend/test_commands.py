"""The gateway's own one-line commands, as a database sends them."""

import xml.etree.ElementTree as ElementTree

import pytest

from gateway import ATTRIBUTE_MARK, CUSTOMER_QUERY, qbxml
from system import as_known


def test_quickbooksinfo_names_file_classification_and_product_in_this_order(running):
    header, body = running.ask("QUICKBOOKSINFO")

    text = body.decode("cp1252")
    assert int(header) == len(body) + 2
    file_at = text.index(f"<QBFileName>{as_known(running.company_file)}</QBFileName>")
    block = "<OstrelServer><ProductCode>2</ProductCode><ProductYear>2008</ProductYear></OstrelServer>"
    assert file_at < text.index(block) < text.index("<ProductName>QuickBooks Premier Edition 2008")
    reply = ElementTree.fromstring(text).find("QBXMLMsgsRs/HostQueryRs")
    assert reply.get("requestID") == "99" and reply.get("statusCode") == "0"


def test_closeqb_answers_and_closes_the_session(running):
    running.ask("QUICKBOOKSINFO")

    header, body = running.ask("CLOSEQB:")

    expected = (
        b'<QBXML><QBXMLMsgsRs><CloseQBRs requestID="99" statusCode="0" statusSeverity="Info" '
        b'statusMessage="Status OK"><CloseQBRet>OK</CloseQBRet></CloseQBRs></QBXMLMsgsRs></QBXML>'
    )
    assert body == expected and int(header) == len(expected) + 2
    running.wait_for_status("Closing Quickbooks.")


def test_closeqb_without_a_session_answers_all_the_same(running):
    _, body = running.ask("CLOSEQB:")

    assert b"<CloseQBRet>OK</CloseQBRet>" in body
    assert not running.has_status("Closing Quickbooks.")


def test_openqb_pins_the_session_open_until_closeqb(gateway):
    gateway.write_settings(Quickbooks_DisconnectTimeout="1")
    gateway.start()
    gateway.ask("OPENQB:")
    gateway.ask(qbxml(CUSTOMER_QUERY))

    # The idle time passes three times over and nothing is closed.
    with pytest.raises(AssertionError, match="not within"):
        gateway.wait_for_status("Closing Quickbooks.", limit=3)

    gateway.ask("CLOSEQB:")
    gateway.wait_for_status("Closing Quickbooks.")
    gateway.ask(qbxml(CUSTOMER_QUERY))
    gateway.wait_for_status("Closing Quickbooks.", count=2)
    assert gateway.stop() == 0


def test_qbfilename_selects_another_company(running):
    other = running.folder / "Other Books.QBW"
    other.write_text(running.company_file.read_text().replace("2008", "Enterprise"))

    _, body = running.ask(f"QBFILENAME: {as_known(other)}".encode() + ATTRIBUTE_MARK + b"ignored")

    assert f"<QBFileName>{as_known(other)}</QBFileName>".encode() in body
    _, info = running.ask("QUICKBOOKSINFO")
    assert f"<QBFileName>{as_known(other)}</QBFileName>".encode() in info
    assert b"<ProductCode>2</ProductCode><ProductYear>0</ProductYear>" in info


def test_qbfilename_default_in_any_case_takes_the_name_of_the_settings_file(running):
    running.ask("QBFILENAME:/elsewhere/books.qbw")

    _, body = running.ask("QBFILENAME:dEfAuLt")

    assert f"<QBFileName>{as_known(running.company_file)}</QBFileName>".encode() in body


def test_a_keyword_counts_wherever_it_stands(running):
    _, body = running.ask(qbxml("<!-- OPENQB: -->" + CUSTOMER_QUERY))

    assert b"<HostQueryRs " in body and b"<CustomerQueryRs" not in body


def test_qbfilename_wins_over_every_other_keyword(running):
    _, body = running.ask("OPENQB: CLOSEQB: QUICKBOOKSINFO QBFILENAME:books.qbw")

    assert b"<QBFileNameRs " in body
