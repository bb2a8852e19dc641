"""The tool with which a user tries the gateway."""

import os
import pathlib
import shutil
import socket
import subprocess
import threading
import time
import xml.etree.ElementTree as ElementTree

import pytest

from gateway import LIMIT, CUSTOMER_QUERY, customer_add, free_port, qbxml, wait_until
from system import ROOT, UNDER_WINE, as_known, command, program_file

SEND = program_file("ostrel-send")


def send(*arguments, stdin=b""):
    """Paths among the arguments are given as paths."""
    return subprocess.run(
        command(SEND, *arguments), input=stdin, capture_output=True, timeout=2 * LIMIT
    )


def lines(output):
    """What was printed, whatever the system's line break is."""
    return output.replace(b"\r\n", b"\n")


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


class FolderPlayer:
    """A gateway's place is taken by a thread that takes one request file and then does what the test
    wants with its name: each response is put there, and the next once it has been fetched."""

    def __init__(self, folder, *responses):
        self.process = folder / "process"
        self.response = folder / "response"
        self.process.mkdir()
        self.response.mkdir()
        self.responses = responses
        self.request = None
        self.seen = set()
        self.thread = threading.Thread(target=self._serve, daemon=True)

    def send(self, *arguments, stdin=b""):
        """Sends through these folders and returns once both sides have ended."""
        self.thread.start()
        result = send("--folder", self.process, self.response, *arguments, stdin=stdin)
        self.thread.join(LIMIT)
        return result

    def left_behind(self):
        return [path.name for folder in (self.process, self.response) for path in folder.iterdir()]

    def _request_file(self):
        names = os.listdir(self.process)
        self.seen.update(names)
        return next((self.process / name for name in names if name.endswith(".osl")), None)

    def _serve(self):
        path = wait_until(self._request_file, "a request file")
        self.request = path.read_bytes()
        path.unlink()
        response = self.response / path.name
        for content in self.responses:
            wait_until(lambda: not response.exists(), "the response is fetched")
            part = response.with_suffix(".part")
            part.write_bytes(content)
            part.rename(response)


def test_a_response_is_printed_with_exit_code_0(running):
    result = send("--port", running.port, "CLOSEQB:")

    assert result.returncode == 0, result.stderr
    assert b"<CloseQBRet>OK</CloseQBRet>" in result.stdout
    assert b"\x1f" not in result.stdout and b"\xfe" not in result.stdout


def test_a_request_from_a_file(running, tmp_path):
    request = tmp_path / "request.xml"
    request.write_text(qbxml(CUSTOMER_QUERY))

    result = send("--port", running.port, f"@{as_known(request)}")

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


def test_no_response_in_time_is_exit_code_3():
    with Listener(b"", then_close=False) as silent:
        result = send("--port", silent.port, "--timeout", "1", "CLOSEQB:")

    assert result.returncode == 3 and result.stderr


def test_a_connection_that_ends_before_the_response_is_exit_code_2():
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
    result = send(f"@{as_known(tmp_path / 'nothing.xml')}")

    assert result.returncode == 64 and b"nothing.xml" in result.stderr


def test_help_shows_examples():
    result = send("--help")

    assert result.returncode == 0 and b"QUICKBOOKSINFO" in result.stdout


def test_line_breaks_travel_as_attribute_marks():
    with Listener(b"8\xfe<a>\xfe</a>\x1f") as listener:
        result = send("--port", listener.port, "--header", "MY.ROUTINE", "-", stdin=b"<a>\r\n<b/>\n</a>")

    assert listener.request == b"MY.ROUTINE\xfe<a>\xfe<b/>\xfe</a>\x1f"
    assert lines(result.stdout) == b"<a>\n</a>\n"


def test_raw_prints_every_byte_as_it_came():
    with Listener(b"8\xfe<a>\xfe</a>\x1f") as listener:
        result = send("--port", listener.port, "--raw", "X")

    assert result.stdout == b"8\xfe<a>\xfe</a>\x1f"


def test_the_loading_notice_is_told_and_the_response_awaited():
    with Listener(b"ERROR: 99\x1f8\xfe<a></a>\x1f") as listener:
        result = send("--port", listener.port, "X")

    assert result.returncode == 0
    assert b"<a></a>" in result.stdout and b"99" in result.stderr


def test_an_error_response_shows_number_and_text():
    with Listener(b"ERROR: 1046\xfeWhat to do\x1f") as listener:
        result = send("--port", listener.port, "X")

    assert result.returncode == 1
    assert b"1046" in result.stderr and b"What to do" in result.stderr + result.stdout


def test_a_response_outside_seven_bits():
    with Listener("9\u00feCaf\u00e9\x1f".encode("cp1252")) as listener:
        result = send("--port", listener.port, "Caf\u00e9")

    assert listener.request == "Caf\u00e9\x1f".encode("cp1252")
    assert "Caf\u00e9" in result.stdout.decode("utf-8")


# -- through files ---------------------------------------------------------------------------------


def test_folder_response_is_printed_and_its_file_removed(tmp_path):
    player = FolderPlayer(tmp_path, b"<QBXML>\r\n   <A>1</A>\r\n</QBXML>\r\n")

    result = player.send("CLOSEQB:")

    assert result.returncode == 0, result.stderr
    assert lines(result.stdout) == b"<QBXML>\n   <A>1</A>\n</QBXML>\n"
    assert player.request == b"CLOSEQB:\r\n"
    assert player.left_behind() == []


def test_folder_response_is_fetched_at_once(tmp_path):
    player = FolderPlayer(tmp_path, *[b"ERROR 99\r\nLoading Quickbooks\r\n"] * 50, b"<A/>\r\n")
    start = time.monotonic()

    result = player.send("CLOSEQB:")

    assert result.returncode == 0
    assert time.monotonic() - start < 10, "told by the system, not found when looking now and then"


def test_folder_request_has_cr_lf_line_breaks_and_its_header(tmp_path):
    player = FolderPlayer(tmp_path, b"<A/>\r\n")

    player.send("--header", "MY.ROUTINE", "-", stdin=b"<a>\r\n<b/>\n</a>\n")

    assert player.request == b"MY.ROUTINE\r\n<a>\r\n<b/>\r\n</a>\r\n"


def test_folder_request_and_response_are_in_the_code_page(tmp_path):
    player = FolderPlayer(tmp_path, "<A>Caf\u00e9</A>\r\n".encode("cp1252"))

    result = player.send("Caf\u00e9")

    assert player.request == "Caf\u00e9\r\n".encode("cp1252")
    assert lines(result.stdout).decode("utf-8") == "<A>Caf\u00e9</A>\n"


def test_folder_raw_sends_and_prints_every_byte_as_it_is(tmp_path):
    utf16 = b"\xff\xfe" + "Q\r\n".encode("utf-16-le")
    player = FolderPlayer(tmp_path, b"<A>\r\r\n\xfe")

    result = player.send("--raw", "-", stdin=utf16)

    assert player.request == utf16
    assert result.stdout == b"<A>\r\r\n\xfe"


def test_folder_response_that_came_in_lines_is_printed_in_lines(tmp_path):
    player = FolderPlayer(tmp_path, b"<A>\r\r\n   <B>\r\n")

    result = player.send("X")

    assert lines(result.stdout) == b"<A>\n   <B>\n"


def test_folder_error_file_is_exit_code_1(tmp_path):
    player = FolderPlayer(tmp_path, b"ERROR 1046\r\nWhat to do\r\n")

    result = player.send("X")

    assert result.returncode == 1
    assert b"1046" in result.stderr and b"What to do\n" in lines(result.stderr)
    assert result.stdout == b"" and player.left_behind() == []


def test_folder_loading_notice_is_told_and_the_response_awaited(tmp_path):
    player = FolderPlayer(tmp_path, b"ERROR 99\r\nLoading Quickbooks\r\n", b"<A/>\r\n")

    result = player.send("X")

    assert result.returncode == 0 and lines(result.stdout) == b"<A/>\n"
    assert b"99" in result.stderr and player.left_behind() == []


def test_folder_request_is_never_seen_in_parts(tmp_path):
    request = "<a>" + "x" * 30_000_000
    player = FolderPlayer(tmp_path, b"<A/>\r\n")

    player.send("-", stdin=request.encode())

    assert player.request == request.encode() + b"\r\n"
    assert len([name for name in player.seen if name.endswith(".osl")]) == 1


@pytest.mark.parametrize("missing", ["process", "response"])
def test_folder_that_is_missing_is_exit_code_2(tmp_path, missing):
    player = FolderPlayer(tmp_path)
    (tmp_path / missing).rmdir()

    result = send("--folder", player.process, player.response, "X")

    assert result.returncode == 2 and missing.encode() in result.stderr
    assert [path for path in tmp_path.rglob("*") if path.is_file()] == []


@pytest.mark.posix_only("a folder that no one can write into")
def test_folder_that_cannot_be_written_is_exit_code_2(tmp_path):
    result = send("--folder", pathlib.Path("/proc"), tmp_path, "X")

    assert result.returncode == 2 and b"/proc" in result.stderr


def test_folder_without_a_response_is_exit_code_3_and_the_request_taken_back(tmp_path):
    player = FolderPlayer(tmp_path)

    result = send("--folder", player.process, player.response, "--timeout", "1", "X")

    assert result.returncode == 3 and b"taken back" in result.stderr
    assert player.left_behind() == []


def test_folder_request_that_was_taken_is_told_with_the_responses_place(tmp_path):
    player = FolderPlayer(tmp_path)

    result = player.send("--timeout", "1", "X")

    assert result.returncode == 3
    assert b"has taken the request" in result.stderr and b"response" in result.stderr


@pytest.mark.parametrize(
    "arguments",
    [["--folder"], ["--folder", "a", "b"], ["--folder", "a", "b", "--port", "4999", "X"]],
)
def test_folder_wrong_usage_is_exit_code_64(arguments):
    result = send(*arguments)

    assert result.returncode == 64 and b"ostrel-send" in result.stderr


@pytest.fixture
def watching(gateway):
    """A gateway that takes request files, and its two folders."""
    gateway.write_settings(Communication_Folder="1")
    gateway.start()
    gateway.wait_for_status("Watching Folder: ")
    yield gateway.folder / "process", gateway.folder / "response"
    assert gateway.stop() == 0, gateway.errors


def test_folder_request_is_answered_by_the_gateway(watching, tmp_path):
    request = tmp_path / "request.xml"
    request.write_text(qbxml(CUSTOMER_QUERY))

    result = send("--folder", *watching, f"@{as_known(request)}")

    assert result.returncode == 0 and b"<CustomerQueryRs" in result.stdout, result.stderr
    assert [path for folder in watching for path in folder.iterdir()] == []


def test_folder_request_that_the_gateway_refuses_is_exit_code_1(watching):
    result = send("--folder", *watching, "no xml at all")

    assert result.returncode == 1 and b"1024" in result.stderr
    assert [path for folder in watching for path in folder.iterdir()] == []


# -- what to do, status, escapes

def test_an_error_of_the_gateway_is_told_with_its_cure():
    with Listener(b"ERROR: 1034\xfe\x1f") as listener:
        result = send("--port", listener.port, "X")

    assert result.returncode == 1
    assert b"What to do: Close it in QuickBooks" in result.stderr


def test_a_connection_that_fails_is_told_with_its_cure():
    result = send("--port", free_port(), "X")

    assert b"What to do: Start the gateway" in result.stderr


def test_no_response_in_time_is_told_with_its_cure():
    with Listener(b"", then_close=False) as silent:
        result = send("--port", silent.port, "--timeout", "1", "X")

    assert b"What to do: Look at QuickBooks' window" in result.stderr


def test_a_request_of_which_nothing_was_left_is_told(gateway):
    shutil.copy(ROOT / "samples" / "qbxmlops30.xsd", gateway.folder)
    gateway.start()

    result = send("--port", gateway.port, "<QBXML/>")

    assert result.returncode == 1
    if not UNDER_WINE:  # Wine's MSXML gives no reason
        assert b"Nothing was left of the request" in result.stderr, result.stderr
    assert gateway.stop() == 0


def test_a_message_that_quickbooks_refuses_is_exit_code_4(running):
    twice = customer_add("Quince") + customer_add("Quince")

    result = send("--port", running.port, "--status", qbxml(twice))

    assert result.returncode == 4 and b"<CustomerAddRs" in result.stdout
    assert b"CustomerAddRs: 3100 " in result.stderr and result.stderr.count(b"CustomerAddRs") == 1


def test_a_request_that_quickbooks_carries_out_is_exit_code_0_with_status(running):
    result = send("--port", running.port, "--status", qbxml(CUSTOMER_QUERY))

    assert (result.returncode, result.stderr) == (0, b"")


def test_without_status_a_refused_message_is_exit_code_0(running):
    twice = customer_add("Quince") + customer_add("Quince")

    assert send("--port", running.port, qbxml(twice)).returncode == 0


def test_connect_only_asks_nothing(running):
    result = send("--port", running.port, "--connect-only")

    assert (result.returncode, result.stdout, result.stderr) == (0, b"", b"")


def test_connect_only_tells_that_nobody_is_there(tmp_path):
    assert send("--port", free_port(), "--connect-only").returncode == 2
    assert send("--folder", tmp_path, tmp_path, "--connect-only").returncode == 0
    assert send("--folder", tmp_path, tmp_path / "no", "--connect-only").returncode == 2


@pytest.mark.parametrize(
    "text, data",
    [
        ("Smith & Sons", b"Smith &amp; Sons"),
        ("Caf\u00e9 \u20ac", b"Caf&#233; &#8364;"),
        ("CLOSEQB: Ltd", b"CLOSEQB&#58; Ltd"),
    ],
)
def test_a_text_is_escaped_as_data(text, data):
    result = send("--escape", text)

    assert (result.returncode, lines(result.stdout)) == (0, data + b"\n")


@pytest.mark.parametrize(
    "given, data",
    [
        ("Caf\u00e9\n".encode(), b"Caf&#233;\n"),
        ("M\u00fcller\n".encode(), b"M&#252;ller\n"),
        (b"Caf\xe9 \x80", b"Caf&#233; &#8364;\n"),
    ],
)
def test_input_is_escaped_in_either_code(given, data):
    result = send("--escape", "-", stdin=given)

    assert (result.returncode, lines(result.stdout)) == (0, data)


@pytest.mark.parametrize("given", [b"one\xfdtwo", b"one\xfe", b"a\x1fb"])
def test_marks_and_control_characters_are_refused(given):
    result = send("--escape", "-", stdin=given)

    assert result.returncode == 64 and not result.stdout


def test_an_escaped_field_comes_back_as_it_was(running):
    field = send("--escape", 'CLOSEQB: <"Quince"> & Sons').stdout.decode().strip()
    add = f"<CustomerAddRq><CustomerAdd><Name>Quince</Name><CompanyName>{field}</CompanyName>"

    result = send("--port", running.port, "--status", qbxml(f"{add}</CustomerAdd></CustomerAddRq>"))

    assert result.returncode == 0
    shown = ElementTree.fromstring(result.stdout.decode("ascii"))
    assert shown.find(".//CompanyName").text == 'CLOSEQB: <"Quince"> & Sons'
