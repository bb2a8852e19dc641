"""What the databases' subroutines make of whatever a wire can bring: their own source, carried out
against a server that plays scripts (fault_server.py, tests/data/wire_scripts.json)."""

import threading

import pytest

from basic import Machine
from fault_server import SCRIPTS, FaultServer
from gateway import LIMIT, free_port, wait_until

pytestmark = pytest.mark.posix_only("reads sources only")

AM, VM = "\xfe", "\xfd"
SPEED = 20  # of the database's clock, so that a time-out of two seconds takes a tenth of one
GOOD = [["take"], ["send", "6\xfe<A/>\x1f"], ["hold"]]


@pytest.fixture
def machine():
    made = Machine(speed=SPEED)
    yield made
    made.close()


def ask(machine, port, request="CLOSEQB:", seconds=30):
    """ANSWER, and ERR as a list."""
    where = f"127.0.0.1{AM}{port}{AM}{seconds}"
    _, _, answer, err = machine.call("OSTREL.ASK", where, request, "left over", "left over")
    return answer, err.split(AM)


def is_closed(machine):
    return all(made.fileno() < 0 for made in machine.sockets)


@pytest.mark.parametrize("name", SCRIPTS)
def test_a_script_ends_as_its_table_says(machine, name):
    script = SCRIPTS[name]
    expected = script["expect"]
    with FaultServer(script["steps"], speed=SPEED) as server:
        answer, err = ask(machine, server.port, script["request"], script["seconds"])

        assert (int(err[0]), int(err[2])) == (expected["number"], expected["maybe"]), err
        assert answer == expected.get("answer", answer)
        assert len(answer) == expected.get("answer_size", len(answer))
        assert err[1] == expected.get("text", err[1])
        assert is_closed(machine)
        assert server.requests == [script["request"].encode() + b"\x1f"]
    if expected["number"]:
        assert err[1] and err[3], "each failure says what it is and what to do"


def test_nobody_listens(machine):
    _, err = ask(machine, free_port())

    assert err[0] == "-1" and err[2] == "0" and "running" in err[3]


def test_a_host_that_is_not_there(machine):
    _, _, _, err = machine.call("OSTREL.ASK", f"no-such-host.invalid{AM}4999", "X", "", "")

    assert err.split(AM)[0] == "-1"


@pytest.mark.parametrize("request_text", ["", "<A>\x1f</A>", "\x1f"])
def test_what_must_not_be_sent_is_not(machine, request_text):
    with FaultServer(GOOD) as server:
        answer, err = ask(machine, server.port, request_text)

        assert (answer, err[0], err[2]) == ("", "-4", "0")
        assert server.connections == 0


@pytest.mark.parametrize(
    "request_text, sent",
    [
        ("CLOSEQB:", b"CLOSEQB:"),
        ('<?xml version="1.0"?><A/>', b'<?xml version="1.0"?><A/>'),
        ('<?qbxml version="3.0"?><A/>', b'<?qbxml version="3.0"?><A/>'),
        ("<QBXML/>", b"OSTREL.ASK\xfe<QBXML/>"),
        (" <QBXML/>", b"OSTREL.ASK\xfe <QBXML/>"),
        ("MY.ROUTINE\xfe<QBXML/>", b"MY.ROUTINE\xfe<QBXML/>"),
    ],
)
def test_no_line_of_qbxml_is_lost_as_a_header(machine, request_text, sent):
    with FaultServer(GOOD) as server:
        ask(machine, server.port, request_text)

        assert server.requests == [sent + b"\x1f"]


def test_a_large_request_arrives_whole(machine):
    request = "<?xml version='1.0'?>" + "<A>345678</A>" * 100_000
    with FaultServer(GOOD) as server:
        answer, err = ask(machine, server.port, request)

        assert (answer, err[0]) == ("<A/>", "0")
        assert server.requests == [request.encode() + b"\x1f"]


def test_a_request_that_nobody_takes_is_not_carried_out(machine):
    with FaultServer([["take-some", 1], ["pause", 2000]]) as server:
        _, err = ask(machine, server.port, "<?xml?>" + "x" * 30_000_000, seconds=5)

    assert err[0] in ("-2", "-3") and err[2] == "0"


def test_midnight_does_not_end_the_wait(machine):
    machine.start = 21001 * 86400 - 0.5
    with FaultServer([["take"], ["pause", 100], *GOOD[1:]]) as server:
        assert ask(machine, server.port)[0] == "<A/>"


def test_midnight_does_not_make_the_wait_longer(machine):
    machine.start = 21001 * 86400 - 0.5
    with FaultServer([["take"], ["hold"]]) as server:
        assert ask(machine, server.port, seconds=2)[1][0] == "-3"


# -- one connection for many requests

def connect(machine, port):
    _, err = machine.call("OSTREL.CONNECT", f"127.0.0.1{AM}{port}", "")
    assert err.split(AM)[0] == "0", err


def test_a_kept_connection_serves_again_until_bye(machine):
    with FaultServer(GOOD[:2] * 3 + [["hold"]]) as server:
        connect(machine, server.port)
        answers = [ask(machine, server.port)[0] for _ in range(3)]

        assert answers == ["<A/>"] * 3 and server.connections == 1
        assert not is_closed(machine)
        machine.call("OSTREL.BYE")
        assert is_closed(machine)


def test_a_kept_connection_whose_gateway_has_gone_is_opened_anew(machine):
    with FaultServer(GOOD[:2] + [["close"]], GOOD) as server:
        connect(machine, server.port)
        assert ask(machine, server.port)[0] == "<A/>"
        assert ask(machine, server.port) == ("<A/>", ["0", "", "0", ""])

        assert server.connections == 2


def test_a_late_response_is_never_taken_for_the_next_one(machine):
    late = [["take"], ["send", "6\xfe<A/>\x1f"], ["pause", 20], ["send", "6\xfe<Z/>\x1f"], ["hold"]]
    with FaultServer(late, GOOD) as server:
        connect(machine, server.port)
        assert ask(machine, server.port)[0] == "<A/>"
        wait_until(lambda: server.player.played == 4, "the late one has been sent")
        assert ask(machine, server.port)[0] == "<A/>"


def test_after_a_time_out_the_next_request_has_a_new_connection(machine):
    with FaultServer([["take"], ["hold"]], GOOD) as server:
        connect(machine, server.port)
        assert ask(machine, server.port, seconds=2)[1][0] == "-3"
        assert ask(machine, server.port)[0] == "<A/>"

        assert server.connections == 2


def test_a_connection_that_brings_too_much_is_not_kept(machine):
    too_much = [["take"], ["send", "6\xfe<A/>\x1f6\xfe<Z/>\x1f"], ["hold"]]
    with FaultServer(too_much, GOOD) as server:
        connect(machine, server.port)
        assert ask(machine, server.port)[0] == "<A/>"

        assert is_closed(machine)


def test_another_host_or_port_has_a_connection_of_its_own(machine):
    with FaultServer(GOOD) as one, FaultServer([["take"], ["send", "6\xfe<B/>\x1f"]]) as two:
        connect(machine, one.port)
        assert ask(machine, one.port)[0] == "<A/>"
        assert ask(machine, two.port)[0] == "<B/>"


def test_connect_tells_that_nobody_is_there(machine):
    _, err = machine.call("OSTREL.CONNECT", f"127.0.0.1{AM}{free_port()}", "")

    assert err.split(AM)[0] == "-1"


# -- through files

class Folders:
    """A gateway's place at two folders: takes one request and puts these responses, each once the
    one before has been fetched."""

    def __init__(self, folder, *responses, takes=True):
        self.process, self.response = folder / "process", folder / "response"
        self.process.mkdir()
        self.response.mkdir()
        self.responses = responses
        self.request = None
        self.thread = threading.Thread(target=self.serve, daemon=True)
        if takes:
            self.thread.start()

    def serve(self):
        def waiting():
            return next(iter(self.process.glob("*.OSL")), None)

        path = wait_until(waiting, "a request file")
        self.request = path.read_bytes()
        path.unlink()
        for response in self.responses:
            place = self.response / path.name
            wait_until(lambda: not place.exists(), "the response is fetched")
            draft = self.response / "draft"
            draft.write_bytes(response)
            draft.rename(place)

    def ask(self, machine, request="CLOSEQB:", seconds=30):
        where = f"{self.process}{AM}{self.response}{AM}{seconds}"
        _, _, answer, err = machine.call("OSTREL.ASK", where, request, "", "")
        if self.thread.ident:
            self.thread.join(LIMIT)
        return answer, err.split(AM)

    def left_behind(self):
        return [path.name for folder in (self.process, self.response) for path in folder.iterdir()]


def test_a_response_file_is_fetched_and_taken_away(machine, tmp_path):
    folders = Folders(tmp_path, b"<A>\r\n   <B/>\r\n</A>\r\n")

    answer, err = folders.ask(machine, "<QBXML/>")

    assert (answer, err[0]) == (f"<A>{AM}   <B/>{AM}</A>{AM}", "0")
    assert folders.request == b"OSTREL.ASK\xfe<QBXML/>" and folders.left_behind() == []


def test_a_loading_notice_in_a_file_is_passed_over(machine, tmp_path):
    folders = Folders(tmp_path, b"ERROR 99\r\nLoading Quickbooks\r\n", b"<A/>\r\n")

    answer, err = folders.ask(machine)

    assert (answer, err[0]) == (f"<A/>{AM}", "0") and folders.left_behind() == []


def test_an_error_file_is_an_error(machine, tmp_path):
    folders = Folders(tmp_path, b"ERROR 57\r\nThe disk is full\r\n")

    answer, err = folders.ask(machine)

    assert (answer, err[:3]) == ("The disk is full", ["57", "The disk is full", "1"])


def test_a_response_of_any_size_comes_whole(machine, tmp_path):
    body = b"<A>" + bytes(value for value in range(32, 254)) * 5000 + b"</A>"

    answer, _ = Folders(tmp_path, body).ask(machine)

    assert answer == body.decode("latin-1")


def test_a_request_file_that_nobody_takes_is_taken_back(machine, tmp_path):
    folders = Folders(tmp_path, takes=False)

    _, err = folders.ask(machine, seconds=3)

    assert (err[0], err[2]) == ("-3", "0") and folders.left_behind() == []


def test_a_request_file_that_was_taken_may_have_been_carried_out(machine, tmp_path):
    _, err = Folders(tmp_path).ask(machine, seconds=10)

    assert (err[0], err[2]) == ("-3", "1")


def test_a_folder_that_is_not_there_is_told(machine, tmp_path):
    where = f"{tmp_path}/nothing{AM}{tmp_path}"
    _, _, _, err = machine.call("OSTREL.ASK", where, "CLOSEQB:", "", "")

    assert err.split(AM)[0] == "-6" and err.split(AM)[2] == "0"


def test_what_must_not_be_sent_reaches_no_folder(machine, tmp_path):
    folders = Folders(tmp_path, takes=False)

    assert folders.ask(machine, "a\x1fb")[1][0] == "-4" and folders.left_behind() == []
