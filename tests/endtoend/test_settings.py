"""Start-up: the settings file, the switches, the single instance, and how it all ends."""

import fcntl
import signal
import socket

import pytest

from gateway import CUSTOMER_QUERY, END_OF_DATA, Gateway, qbxml, wait_until

NOT_FOUND = "Unable to find the osl.ini file needed."
NOTHING_SERVED = "Nothing is served: the program ends"


def test_a_missing_settings_file_is_told_and_ends_the_program(gateway):
    gateway.settings_file.unlink()
    gateway.spawn("-ini", gateway.settings_file)

    assert gateway.wait_for_exit() == 1
    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors == [NOT_FOUND]
    assert gateway.settings_file.read_bytes() == b""  # reading leaves an empty file behind
    assert not gateway.has_status("Listenning")


def test_a_settings_file_that_is_a_folder_is_told(gateway):
    gateway.settings_file.unlink()
    gateway.settings_file.mkdir()
    gateway.spawn("-ini", gateway.settings_file)

    assert gateway.wait_for_exit() == 1
    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors == [NOT_FOUND]


def test_the_settings_file_beside_the_program_is_the_default(gateway):
    gateway.spawn()

    gateway.wait_for_status(f"Listenning on Socket {gateway.port}")
    assert gateway.stop() == 0


def test_a_settings_path_with_blanks(gateway):
    moved = gateway.folder / "my own settings.ini"
    gateway.settings_file.rename(moved)
    gateway.spawn("-ini", moved)

    gateway.wait_for_status(f"Listenning on Socket {gateway.port}")
    assert gateway.stop() == 0


def test_switches_in_capitals_and_with_a_slash(gateway):
    gateway.spawn("/INI", gateway.settings_file, "/DEBUG", "-CommMenu", "False")

    gateway.wait_for_status(f"Listenning on Socket {gateway.port}")
    assert gateway.stop() == 0


@pytest.mark.parametrize(
    "key, value",
    [
        ("Quickbooks_DisconnectTimeout", "soon"),
        ("Quickbooks_DisconnectTimeout", "40000"),
        ("Communication_Type", "D3"),
        ("Communication_SocketPort", "abc"),
        ("Communication_BlockSize", "99999999999"),
    ],
)
def test_a_number_that_is_none_stops_the_start_and_is_told(gateway, key, value):
    gateway.write_settings(**{key: value})
    gateway.spawn("-ini", gateway.settings_file)

    assert gateway.wait_for_exit() == 1
    gateway.wait_for_status(value)
    gateway.wait_for_status(NOTHING_SERVED)
    assert not gateway.has_status("Listenning")
    assert any(key.split("_")[1] in line for line in gateway.lines)


def test_a_start_that_failed_leaves_the_next_one_free(gateway):
    gateway.write_settings(Communication_SocketPort="abc")
    gateway.spawn("-ini", gateway.settings_file)
    assert gateway.wait_for_exit() == 1
    gateway.write_settings()

    gateway.start()

    assert gateway.stop() == 0


@pytest.mark.parametrize("port", ["70000", "-1"])
def test_a_port_out_of_range_is_told(gateway, port):
    gateway.write_settings(Communication_SocketPort=port)
    gateway.spawn("-ini", gateway.settings_file)

    assert gateway.wait_for_exit() == 1
    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors == [f"Unable to start the Socket Server on Port {port}"]


def test_a_port_that_is_taken_ends_a_program_that_serves_nothing_else(gateway):
    with socket.socket() as other:
        other.bind(("", gateway.port))
        other.listen()
        gateway.spawn("-ini", gateway.settings_file)

        assert gateway.wait_for_exit() == 1
    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors == [f"Unable to start the Socket Server on Port {gateway.port}"]


def test_a_port_that_is_taken_is_told_and_the_folder_is_served(gateway):
    gateway.write_settings(Communication_Folder="1")
    with socket.socket() as other:
        other.bind(("", gateway.port))
        other.listen()
        gateway.spawn("-ini", gateway.settings_file)

        gateway.wait_for_status("Watching Folder: ")
        wait_until(lambda: gateway.errors, "the message")
        assert gateway.errors == [f"Unable to start the Socket Server on Port {gateway.port}"]
    assert gateway.stop() == 0


def test_with_nothing_to_serve_it_ends(gateway):
    gateway.write_settings(Communication_Socket="0")
    gateway.spawn("-ini", gateway.settings_file)

    assert gateway.wait_for_exit() == 1
    gateway.wait_for_status(NOTHING_SERVED)


def test_socket_switched_off_listens_to_nobody(gateway):
    gateway.start_watching(Communication_Socket="0")

    with pytest.raises(ConnectionRefusedError):
        gateway.connect()
    assert gateway.stop() == 0


@pytest.mark.parametrize(
    "content, told",
    [
        (b"\xef\xbb\xbf[General]\r\n", "mark of UTF-8"),
        (b"[General]\rHistory=0\r", "end in CR alone"),
        (b"History=0\r\n", "none of the sections"),
    ],
)
def test_a_settings_file_that_cannot_be_understood_is_told(gateway, content, told):
    gateway.settings_file.write_bytes(content)
    gateway.spawn("-ini", gateway.settings_file)

    gateway.wait_for_status(told)


def test_settings_in_unicode_are_read(gateway):
    text = gateway.settings_file.read_bytes().decode("cp1252")
    gateway.settings_file.write_bytes(b"\xff\xfe" + text.encode("utf-16-le"))

    gateway.start()

    assert gateway.stop() == 0


def test_a_value_too_long_is_told(gateway):
    gateway.write_settings(Quickbooks_FileName="C:\\" + "x" * 97)
    gateway.start()

    gateway.wait_for_status("FileName is longer than 99 characters and cut: C:\\xxx")
    assert gateway.stop() == 0


def test_a_company_file_name_with_a_control_character_is_refused(gateway):
    gateway.write_settings(Quickbooks_FileName="C:\\a\x1f.qbw")
    gateway.spawn("-ini", gateway.settings_file)

    assert gateway.wait_for_exit() == 1
    gateway.wait_for_status("The company file name holds a control character")


@pytest.mark.posix_only("a file is locked")
def test_the_company_file_stays_when_the_settings_cannot_be_read(gateway):
    gateway.start()
    gateway.ask("QBFILENAME:C:\\mine.qbw")
    with open(gateway.settings_file, "r+b") as settings:
        fcntl.flock(settings, fcntl.LOCK_EX)
        header, text = gateway.ask("QBFILENAME:DEFAULT")
        assert header == b"ERROR: 75" and text.startswith(b"The settings file cannot be read: ")

    assert b"<QBFileName>C:\\mine.qbw<" in gateway.ask("QBFILENAME:C:\\mine.qbw")[1]
    _, text = gateway.ask("QBFILENAME:DEFAULT")
    assert str(gateway.company_file).encode() in text
    assert gateway.stop() == 0


@pytest.mark.parametrize("flavour", ["1", "2", "3"])
def test_a_socket_flavour_overrules_the_socket_key(gateway, flavour):
    gateway.write_settings(Communication_Type=flavour, Communication_Socket="0")
    gateway.start()

    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    assert gateway.stop() == 0


def test_a_second_instance_refuses_to_run(running):
    second = Gateway.__new__(Gateway)
    second.__dict__.update(running.__dict__, lines=[], errors=[], clients=[], process=None)
    second.spawn("-ini", running.settings_file)

    assert second.wait_for_exit() == 1
    wait_until(lambda: second.errors, "the message")
    assert second.errors == [
        "Windows is unable to find a previous instance of Ostrel Server, but still things there is "
        "one running.  Please Reboot your system"
    ]
    assert b"<CloseQBRs" in running.ask("CLOSEQB:")[1]


@pytest.mark.parametrize(
    "ending",
    [
        signal.SIGINT,
        pytest.param(signal.SIGTERM, marks=pytest.mark.posix_only("a signal")),
        pytest.param(getattr(signal, "SIGHUP", None), marks=pytest.mark.posix_only("a signal")),
    ],
)
def test_each_signal_ends_the_session_and_close_the_sockets(gateway, ending):
    gateway.start()
    gateway.ask(qbxml(CUSTOMER_QUERY))

    assert gateway.stop(ending) == 0

    assert gateway.has_status("Disconnecting from Quickbooks")
    assert gateway.has_status("Closing Quickbooks.")
    with pytest.raises(ConnectionRefusedError):
        gateway.connect()


@pytest.mark.posix_only("a signal")
def test_a_terminals_end_is_nothing_to_a_program_that_is_to_outlive_it(gateway):
    gateway.start(preexec=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))

    gateway.process.send_signal(signal.SIGHUP)

    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    assert gateway.process.poll() is None
    assert gateway.stop() == 0


def test_output_that_nobody_reads_stops_nothing(gateway):
    gateway.reading.clear()
    gateway.spawn("-ini", gateway.settings_file)
    for stream in (gateway.process.stdout, gateway.process.stderr):
        fcntl.fcntl(stream, fcntl.F_SETPIPE_SZ, 4096)
    client = wait_until(lambda: try_to_connect(gateway), "the port")

    # Each leaves a status line of 67 bytes.
    for _ in range(100):
        client.send(b"QBFILENAME:\x01" + END_OF_DATA)
        assert client.read_frame().startswith(b"ERROR: 52")

    gateway.reading.set()
    gateway.wait_for_status("Request failed: 52 ", count=100)
    assert gateway.stop() == 0


def test_output_that_nobody_reads_does_not_hold_up_the_end(gateway):
    gateway.reading.clear()
    gateway.spawn("-ini", gateway.settings_file)
    fcntl.fcntl(gateway.process.stdout, fcntl.F_SETPIPE_SZ, 4096)
    client = wait_until(lambda: try_to_connect(gateway), "the port")
    for _ in range(100):
        client.ask("QBFILENAME:\x01")

    assert gateway.stop() == 0


def try_to_connect(gateway):
    try:
        return gateway.connect()
    except ConnectionRefusedError:
        return None


def test_the_port_is_free_again_for_the_next_start(gateway):
    gateway.start()
    client = gateway.connect()
    client.ask("CLOSEQB:")
    assert gateway.stop() == 0
    gateway.lines.clear()

    gateway.start()

    assert b"<CloseQBRs" in gateway.ask("CLOSEQB:")[1]
    assert gateway.stop() == 0


@pytest.mark.parametrize("switch, text", [("--help", "-ini"), ("--version", "Ostrel Server")])
def test_help_and_version(gateway, switch, text):
    gateway.spawn(switch)

    assert gateway.wait_for_exit() == 0
    wait_until(lambda: any(text in line for line in gateway.lines), "the text")


def test_an_unknown_switch_is_told(gateway):
    gateway.spawn("-frobnicate")

    assert gateway.wait_for_exit() == 64
    wait_until(lambda: any("frobnicate" in line for line in gateway.errors), "the message")
