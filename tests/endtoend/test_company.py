"""Company files and their journals, when the process that writes them does not live to close them."""

import re
import subprocess
import threading

import pytest

from company import journal_of
from gateway import CUSTOMER_QUERY, Gateway, customer_add, free_port, qbxml, wait_until
from system import command, program_file


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


# Enough for an invoice; each of its lines becomes eleven elements.
SHOP = """
  <Account><Name>Owed</Name><AccountType>AccountsReceivable</AccountType></Account>
  <Account><Name>Sales</Name><AccountType>Income</AccountType></Account>
  <SalesTaxCode><Name>Tax</Name><IsTaxable>true</IsTaxable></SalesTaxCode>
  <ItemService><Name>Work</Name><SalesTaxCodeRef><FullName>Tax</FullName></SalesTaxCodeRef>
    <SalesOrPurchase><Desc>By the hour</Desc><Price>1.00</Price>
      <AccountRef><FullName>Sales</FullName></AccountRef></SalesOrPurchase></ItemService>
  <Customer><Name>Abbott</Name></Customer>
"""
LINE = "<InvoiceLineAdd><ItemRef><FullName>Work</FullName></ItemRef></InvoiceLineAdd>"


def invoice_add(lines):
    return (
        "<InvoiceAddRq><InvoiceAdd><CustomerRef><FullName>Abbott</FullName></CustomerRef>"
        f"{LINE * lines}</InvoiceAdd></InvoiceAddRq>"
    )


def test_an_invoice_too_long_to_be_read_again_is_refused_and_costs_nothing_else(gateway):
    gateway.write_company(SHOP)
    gateway.start()
    gateway.ask(qbxml(customer_add("Before")))
    with gateway.connect() as client:
        client.socket.settimeout(300)
        _, body = client.ask(qbxml(invoice_add(92000)))
        assert b'statusCode="3180"' in body and b"more than can be saved at once" in body
    gateway.ask(qbxml(customer_add("Behind")))
    gateway.kill()

    start_again(gateway)

    assert names_in(gateway) == ["Abbott", "Before", "Behind"]
    assert b"did not find" in gateway.ask(qbxml("<InvoiceQueryRq/>"))[1]
    assert gateway.stop() == 0


def test_a_damaged_record_is_left_out_and_named_and_costs_nothing_else(gateway):
    gateway.start()
    for name in ("One", "Two", "Three"):
        gateway.ask(qbxml(customer_add(name)))
    gateway.kill()
    journal = journal_of(gateway.company_file)
    journal.write_bytes(journal.read_bytes().replace(b"<Name>Two<", b"<Name>Twp<"))

    done = check(gateway.company_file)
    assert done.returncode == 1
    assert re.search(r"record 3 of the journal, at byte \d+, is left out: it is damaged", done.stdout)
    start_again(gateway)
    assert names_in(gateway) == ["One", "Three"]
    gateway.ask(qbxml(customer_add("Four")))
    assert gateway.stop() == 0

    assert check(gateway.company_file).returncode == 0
    kept = list(gateway.folder.glob("harbor.qbw.journal-*"))
    assert len(kept) == 1 and "Twp" in kept[0].read_text()


def check(company_file):
    program = program_file("ostrel-company")
    return subprocess.run(
        command(program, "--check", company_file), capture_output=True, text=True, timeout=60
    )


@pytest.fixture
def other(gateway):
    """A second gateway, on the company file of the first."""
    folder = gateway.folder / "other"
    folder.mkdir()
    made = Gateway(folder)
    made.company_file = gateway.company_file
    made.write_settings()
    yield made
    made.kill()


def test_a_company_that_is_open_is_not_checked(gateway):
    gateway.start()
    gateway.ask(qbxml(customer_add("First")))

    done = check(gateway.company_file)
    assert done.returncode == 2 and "is open in QuickBooks" in done.stderr

    assert gateway.stop() == 0
    assert check(gateway.company_file).returncode == 0


@pytest.mark.posix_only("on Windows one gateway runs in a logon session")
def test_a_company_is_open_in_one_process_at_a_time(gateway, other):
    gateway.start()
    gateway.ask(qbxml(customer_add("First")))
    other.start()

    assert other.ask(qbxml(customer_add("Second")))[0] == b"ERROR: 1051"

    gateway.kill()
    assert b'statusCode="0"' in other.ask(qbxml(customer_add("Second")))[1]
    assert names_in(other) == ["First", "Second"]
    assert other.stop() == 0
    assert check(gateway.company_file).returncode == 0
    assert not list(gateway.folder.glob("*.lock"))


@pytest.mark.posix_only("on Windows the lock is of a logon session")
def test_one_gateway_runs_on_a_machine_unless_asked_otherwise(gateway, other):
    gateway.start()
    other.instance = gateway.instance
    other.spawn("-ini", other.settings_file)

    assert other.wait_for_exit() == 1
    wait_until(lambda: any("previous instance" in line for line in other.errors), "the reason")
    assert gateway.stop() == 0
