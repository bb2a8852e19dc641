"""Company files and their journals, when the process that writes them does not live to close them."""

import re
import threading

import pytest

from company import journal_of
from gateway import CUSTOMER_QUERY, customer_add, free_port, qbxml


class Adder(threading.Thread):
    """A client that adds customers one after the other until the gateway is gone, and remembers
    which of them it was told are in the company."""

    def __init__(self, gateway, label):
        super().__init__(daemon=True)
        self.client = gateway.connect()
        self.label = label
        self.answered = []
        self.some = threading.Event()

    def run(self):
        try:
            for number in range(100000):
                name = f"{self.label}-{number}"
                _, body = self.client.ask(qbxml(customer_add(name)))
                assert b'statusCode="0"' in body
                self.answered.append(name)
                if number == 5:
                    self.some.set()
        except (OSError, AssertionError):  # the gateway has gone
            self.some.set()


def start_again(gateway):
    """On another port: Windows keeps that of a killed process back for a while."""
    gateway.lines.clear()
    gateway.port = free_port()
    gateway.write_settings()
    gateway.start()


def names_in(gateway):
    _, body = gateway.ask(qbxml(CUSTOMER_QUERY))
    return re.findall(r"<FullName>(.*?)</FullName>", body.decode("cp1252"))


@pytest.mark.parametrize("delay", [0, 0.003, 0.011])
def test_a_killed_process_loses_nothing_that_it_has_answered(gateway, delay):
    answered = []
    for life in range(4):
        start_again(gateway)
        adders = [Adder(gateway, f"life{life}-{index}") for index in range(2)]
        for adder in adders:
            adder.start()
        for adder in adders:
            assert adder.some.wait(30)
        # Wherever in a change this finds it.
        adders[0].join(delay)
        gateway.process.kill()
        gateway.process.wait()
        for adder in adders:
            adder.join(30)
            answered += adder.answered

    start_again(gateway)
    names = names_in(gateway)
    assert len(answered) >= 40
    assert set(answered) <= set(names)
    assert len(set(names)) == len(names)
    assert gateway.stop() == 0


def test_a_journal_is_in_the_company_file_after_an_orderly_end(gateway):
    gateway.start()
    gateway.ask(qbxml(customer_add("Ridgeway Joinery")))
    assert journal_of(gateway.company_file).exists()
    assert gateway.stop() == 0

    assert "Ridgeway Joinery" in gateway.company_file.read_text()
    assert not journal_of(gateway.company_file).exists()


def test_a_company_file_that_was_replaced_takes_nothing_from_its_journal(gateway):
    gateway.start()
    gateway.ask(qbxml(customer_add("Ridgeway Joinery")))
    gateway.kill()
    gateway.write_company("<Customer><Name>Restored</Name></Customer>")

    start_again(gateway)

    assert names_in(gateway) == ["Restored"]
    gateway.ask(qbxml(customer_add("Later")))
    assert names_in(gateway) == ["Later", "Restored"]
    kept = list(gateway.folder.glob("harbor.qbw.journal-*"))
    assert len(kept) == 1 and "Ridgeway Joinery" in kept[0].read_text()
    assert gateway.stop() == 0
