"""The databases' programs and their requests at a real gateway with the QuickBooks stand-in: what
docs/database.md promises. The items' own source is carried out."""

import re
import shutil
import threading

import pytest

from basic import Machine
from company import saved
from system import ROOT

pytestmark = pytest.mark.posix_only("the items are carried out on this side of the wire only")

AM, VM = "\xfe", "\xfd"
SAMPLE = ROOT / "samples" / "sample.qbw"


@pytest.fixture
def shop(gateway):
    """A gateway with the sample company, over TCP and through files."""
    shutil.copy(SAMPLE, gateway.company_file)
    gateway.write_settings(Communication_Folder="1")
    shutil.copy(ROOT / "samples" / "qbxmlops30.xsd", gateway.folder)
    gateway.start()
    gateway.wait_for_status("Watching Folder: ")
    yield gateway
    assert gateway.stop() == 0, gateway.errors


@pytest.fixture
def machine():
    made = Machine(speed=4)
    yield made
    made.close()


def where(shop):
    return f"127.0.0.1{AM}{shop.port}{AM}60"


def answers(shop, through_files=False):
    if through_files:
        return ["F", str(shop.process_folder), str(shop.response_folder)]
    return ["", str(shop.port)]


def customers(shop):
    """ListID -> full name, as the company file has them."""
    text = saved(shop.company_file)
    found = re.findall(r"<Customer>(.*?)</Customer>", text, re.S)
    return {re.search("<ListID>(.*?)<", one)[1]: re.search("<FullName>(.*?)<", one)[1] for one in found}


# -- OSTREL.TEST

@pytest.mark.parametrize("through_files", [False, True])
def test_the_test_program_says_that_all_is_well(shop, machine, through_files):
    machine.answers = answers(shop, through_files)

    printed = machine.run("OSTREL.TEST")

    assert "Product       QuickBooks Premier Edition 2008" in printed
    assert "Status        0 Info Status OK" in printed
    assert printed.endswith("VERDICT: all is well.\n")


def test_the_test_program_says_what_to_do(gateway, machine):
    machine.answers = ["", str(gateway.port)]

    printed = machine.run("OSTREL.TEST")

    assert "Error -1: No connection" in printed and "Is the gateway running" in printed
    assert printed.endswith("VERDICT: not well yet. See the lines above.\n")


def test_a_failure_of_quickbooks_is_told_with_its_cure(gateway, machine):
    gateway.company_file.unlink()
    gateway.start()
    machine.answers = ["", str(gateway.port)]

    printed = machine.run("OSTREL.TEST")

    assert "Error 1027: You must Test the Quickbooks Connection" in printed
    assert "What to do: Is the path in QBFILENAME:" in printed and "carried out" not in printed
    assert gateway.stop() == 0


# -- the examples

@pytest.mark.parametrize("through_files", [False, True])
def test_customers_come_into_a_file(shop, machine, through_files):
    machine.answers = answers(shop, through_files)
    machine.files["OSTREL.CUSTOMERS"] = file = {}

    printed = machine.run("OSTREL.DEMO.CUSTOMERS")

    expected = customers(shop)
    assert len(expected) > 10 and f"{len(expected)} customers written" in printed
    assert {key: record.split(AM)[0].replace("'", "&apos;") for key, record in file.items()} == expected
    assert all(re.fullmatch(r"-?\d+\.\d\d", record.split(AM)[3]) for record in file.values())


def test_customers_come_page_by_page(shop, machine):
    state, found, pages = "", [], 0
    while state != "END":
        *_, state, answer, err = machine.call(
            "OSTREL.PAGE", where(shop), "CustomerQuery", "", 5, state, "", ""
        )
        assert err.startswith("0"), err
        found += re.findall("<CustomerRet>.<ListID>(.*?)<", answer, re.S)
        pages += 1

    assert sorted(found) == sorted(customers(shop)) and pages == -(-len(found) // 5)


def run_invoice(shop, machine, order):
    machine.answers = [*answers(shop), order]
    return machine.run("OSTREL.DEMO.INVOICE")


def test_an_order_is_booked_once_however_often_it_is_run(shop, machine):
    machine.files["OSTREL.ORDERS"] = orders = {}

    first = run_invoice(shop, machine, "NEW")
    booked = orders["1001"].split(AM)[5]
    again = run_invoice(shop, machine, "1001")
    orders["1001"] = AM.join(orders["1001"].split(AM)[:5])  # the response was lost, say
    lost = run_invoice(shop, machine, "1001")

    assert f"Order 1001 is booked: {booked}" in first
    assert "is booked already" in again and f"was booked before: {booked}" in lost
    assert orders["1001"].split(AM)[5] == booked
    assert saved(shop.company_file).count("<RefNumber>1001</RefNumber>") == 1


def test_an_order_that_quickbooks_refuses_is_not_booked(shop, machine):
    machine.files["OSTREL.ORDERS"] = orders = {
        "1002": AM.join(["Nobody", "14764", "Claw hammer 16 oz", "1", "2.00"])
    }

    printed = run_invoice(shop, machine, "1002")

    assert "QuickBooks: 3140" in printed and len(orders["1002"].split(AM)) == 5


def test_payments_come_back_and_replace_themselves(shop, machine):
    machine.files["OSTREL.PAYMENTS"] = file = {}
    for _ in range(2):
        machine.answers = answers(shop)
        printed = machine.run("OSTREL.DEMO.PAYMENTS")
        assert "QuickBooks:" not in printed and "Error" not in printed, printed

    assert int(file.pop("LAST.RUN")) == 21000
    ids = re.findall(r"<ReceivePayment>\s*<TxnID>(.*?)<", saved(shop.company_file))
    assert sorted(file) == sorted(ids) and len(ids) >= 3
    assert all(re.fullmatch(r"\d{4}-\d\d-\d\d", record.split(AM)[1]) for record in file.values())
    assert any(len(record.split(AM)) == 6 for record in file.values()), "with the invoices paid"


# -- many messages, two companies

def adds(names):
    return AM.join(f"<CustomerAddRq><CustomerAdd><Name>{name}</Name></CustomerAdd></CustomerAddRq>"
                   for name in names)


def test_many_messages_have_one_result_each(shop, machine):
    names = [f"Quince {number}" for number in range(7)]
    names[3] = names[2]  # refused: the name is in use

    _, _, _, results, err = machine.call("OSTREL.BATCH", where(shop), adds(names), 3, "", "")

    results = [line.split(VM) for line in results.split(AM)]
    assert err.startswith("0") and [line[0] for line in results] == ["0"] * 3 + ["3100"] + ["0"] * 3
    known = customers(shop)
    assert [known.get(line[3]) for line in results] == names[:3] + [None] + names[4:]
    assert all(line[4] for line in results if line[0] == "0")


def test_messages_one_of_which_is_empty_are_not_sent(shop, machine):
    _, _, _, results, err = machine.call("OSTREL.BATCH", where(shop), f"<A/>{AM}{AM}<B/>", 3, "", "")

    assert (results, err[:2]) == ("", "-4")


def company_file(shop, name):
    path = shop.folder / f"{name}.qbw"
    path.write_text(f'<Company name="{name}" product="QuickBooks Pro 2008" majorVersion="18"/>')
    return str(path)


def test_two_sessions_never_get_each_others_books(shop):
    locks, wrong = {}, []
    files = [company_file(shop, "one"), company_file(shop, "two")]

    def session(file):
        machine = Machine(speed=20)
        machine.locks = locks
        for _ in range(8):
            *_, answer, err = machine.call(
                "OSTREL.COMPANY", where(shop), file, "QUICKBOOKSINFO", "", "")
            if f"<QBFileName>{file}<" not in answer:
                wrong.append((file, answer, err))
        machine.close()

    threads = [threading.Thread(target=session, args=(file,)) for file in files]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(60)

    assert wrong == []


def test_a_lock_that_another_session_keeps_is_told(shop, machine):
    machine.locks[49] = "another session"

    *_, answer, err = machine.call(
        "OSTREL.COMPANY", f"127.0.0.1{AM}{shop.port}{AM}3", "x.qbw", "QUICKBOOKSINFO", "", "")

    assert (answer, err[:2]) == ("", "-4")
    assert not any("x.qbw" in line for line in shop.status_lines())


def test_fields_come_back_as_they_were_sent(shop, machine):
    name = "CLOSEQB: Caf\xe9 \x93Smith & Sons\x94 \x80"
    field = machine.call("OSTREL.ESC", name)[0]
    add = (f"<CustomerAddRq><CustomerAdd><Name>Quince</Name><CompanyName>{field}</CompanyName>"
           "</CustomerAdd></CustomerAddRq>")

    _, _, _, results, _ = machine.call("OSTREL.BATCH", where(shop), add, "", "", "")
    request = f"<CustomerQueryRq><ListID>{results.split(VM)[3]}</ListID></CustomerQueryRq>"
    wrapped = machine.call("OSTREL.WRAP", request, "3.0", "", "")[3]
    answer = machine.call("OSTREL.ASK", where(shop), wrapped, "", "")[2]
    value = machine.call("OSTREL.TAG", answer, "CompanyName", 1, "")[3]

    assert machine.call("OSTREL.TEXT", value, "", "")[1] == name


def test_a_kept_connection_outlives_the_gateway(shop, machine):
    machine.call("OSTREL.CONNECT", where(shop), "")
    assert machine.call("OSTREL.ASK", where(shop), "CLOSEQB:", "", "")[3].startswith("0")
    assert shop.stop() == 0
    shop.lines.clear()
    shop.start()

    err = machine.call("OSTREL.ASK", where(shop), "CLOSEQB:", "", "")[3]

    assert err.startswith("0"), err
