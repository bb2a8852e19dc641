"""The tool with which a user tries the gateway."""

import socket
import subprocess
import threading

import pytest

from gateway import PROGRAMS, CUSTOMER_QUERY, Client, free_port, qbxml

SEND = PROGRAMS / "ostrel-send"


def send(*arguments, stdin=b"", cwd=None):
    return subprocess.run(
        [SEND, *map(str, arguments)], input=stdin, capture_output=True, timeout=60, cwd=cwd
    )


class Listener:
    """A gateway's place is taken by a socket that says what the test wants."""

    def __init__(self, reply, then_close=True):
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]
        self.request = b""
        self.reply = reply
        self.then_close = then_close
        self.released = threading.Event()
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()

    def _serve(self):
        connection, _ = self.socket.accept()
        with connection:
            while b"\x1f" not in self.request:
                piece = connection.recv(65536)
                if not piece:
                    return
                self.request += piece
            connection.sendall(self.reply)
            if not self.then_close:
                self.released.wait(30)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.released.set()
        self.thread.join(30)
        self.socket.close()


def test_an_answer_is_printed_with_exit_code_0(running):
    result = send("--port", running.port, "CLOSEQB:")

    assert result.returncode == 0, result.stderr
    assert b"<CloseQBRet>OK</CloseQBRet>" in result.stdout
    assert b"\x1f" not in result.stdout and b"\xfe" not in result.stdout


def test_a_request_from_a_file(running, tmp_path):
    request = tmp_path / "request.xml"
    request.write_text(qbxml(CUSTOMER_QUERY))

    result = send("--port", running.port, f"@{request}")

    assert result.returncode == 0 and b"<CustomerQueryRs" in result.stdout


def test_a_request_from_standard_input(running):
    result = send("--port", running.port, "-", stdin=qbxml(CUSTOMER_QUERY).encode())

    assert result.returncode == 0 and b"<CustomerQueryRs" in result.stdout


def test_a_refused_request_is_exit_code_1(running):
    result = send("--port", running.port, "no xml at all")

    assert result.returncode == 1
    assert b"1024" in result.stderr


def test_nobody_listens_is_exit_code_2():
    result = send("--port", free_port(), "CLOSEQB:")

    assert result.returncode == 2 and result.stderr


def test_an_unknown_host_is_exit_code_2():
    result = send("--host", "no-such-host.invalid", "--timeout", "20", "CLOSEQB:")

    assert result.returncode == 2 and b"no-such-host.invalid" in result.stderr


def test_no_answer_in_time_is_exit_code_3():
    with Listener(b"", then_close=False) as silent:
        result = send("--port", silent.port, "--timeout", "1", "CLOSEQB:")

    assert result.returncode == 3 and result.stderr


def test_a_connection_that_ends_before_the_answer_is_exit_code_2():
    with Listener(b"10\xfehalf an ans") as rude:
        result = send("--port", rude.port, "CLOSEQB:")

    assert result.returncode == 2 and result.stderr


@pytest.mark.parametrize(
    "arguments", [[], ["--port"], ["--port", "many", "X"], ["--nonsense", "X"], ["one", "two"]]
)
def test_wrong_usage_is_exit_code_64(arguments):
    result = send(*arguments)

    assert result.returncode == 64 and b"ostrel-send" in result.stderr


def test_a_request_file_that_is_missing_is_told(tmp_path):
    result = send(f"@{tmp_path / 'nothing.xml'}")

    assert result.returncode == 64 and b"nothing.xml" in result.stderr


def test_help_shows_examples():
    result = send("--help")

    assert result.returncode == 0 and b"QUICKBOOKSINFO" in result.stdout


def test_line_breaks_travel_as_attribute_marks():
    with Listener(b"8\xfe<a>\xfe</a>\x1f") as listener:
        result = send("--port", listener.port, "--header", "MY.ROUTINE", "-", stdin=b"<a>\r\n<b/>\n</a>")

    assert listener.request == b"MY.ROUTINE\xfe<a>\xfe<b/>\xfe</a>\x1f"
    assert result.stdout.replace(b"\r\n", b"\n") == b"<a>\n</a>\n"


def test_raw_prints_every_byte_as_it_came():
    with Listener(b"8\xfe<a>\xfe</a>\x1f") as listener:
        result = send("--port", listener.port, "--raw", "X")

    assert result.stdout == b"8\xfe<a>\xfe</a>\x1f"


def test_the_loading_notice_is_told_and_the_answer_awaited():
    with Listener(b"ERROR: 99\x1f8\xfe<a></a>\x1f") as listener:
        result = send("--port", listener.port, "X")

    assert result.returncode == 0
    assert b"<a></a>" in result.stdout and b"99" in result.stderr


def test_an_error_answer_shows_number_and_text():
    with Listener(b"ERROR: 1046\xfeWhat to do\x1f") as listener:
        result = send("--port", listener.port, "X")

    assert result.returncode == 1
    assert b"1046" in result.stderr and b"What to do" in result.stderr + result.stdout


def test_an_answer_outside_seven_bits():
    with Listener("9\u00feCaf\u00e9\x1f".encode("cp1252")) as listener:
        result = send("--port", listener.port, "Caf\u00e9")

    assert listener.request == "Caf\u00e9\x1f".encode("cp1252")
    assert "Caf\u00e9" in result.stdout.decode("utf-8")
