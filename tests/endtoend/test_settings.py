"""Start-up: the settings file, the switches, the single instance, and how it all ends."""

import signal
import socket

import pytest

from gateway import CUSTOMER_QUERY, Gateway, qbxml, wait_until

NOT_FOUND = "Unable to find the osl.ini file needed."


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

    gateway.wait_for_status(value)

    assert gateway.process.poll() is None  # the window stays loaded
    assert not gateway.has_status("Listenning")
    assert any(key.split("_")[1] in line for line in gateway.lines)
    assert gateway.stop() in (0, 1)


@pytest.mark.parametrize("port", ["70000", "-1"])
def test_a_port_out_of_range_is_told(gateway, port):
    gateway.write_settings(Communication_SocketPort=port)
    gateway.spawn("-ini", gateway.settings_file)

    wait_until(lambda: gateway.errors, "the message")
    assert gateway.errors == [f"Unable to start the Socket Server on Port {port}"]
    assert gateway.stop() == 0


def test_a_port_that_is_taken_is_told_and_the_program_goes_on(gateway):
    with socket.socket() as other:
        other.bind(("", gateway.port))
        other.listen()
        gateway.spawn("-ini", gateway.settings_file)

        wait_until(lambda: gateway.errors, "the message")
        assert gateway.errors == [f"Unable to start the Socket Server on Port {gateway.port}"]
        assert gateway.process.poll() is None
    assert gateway.stop() == 0


def test_socket_switched_off_listens_to_nobody(gateway):
    gateway.write_settings(Communication_Socket="0")
    gateway.spawn("-ini", gateway.settings_file)
    gateway.wait_for_status("Ostrel Server")  # the opening line

    with pytest.raises(ConnectionRefusedError):
        gateway.connect()
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
    [signal.SIGINT, pytest.param(signal.SIGTERM, marks=pytest.mark.posix_only("a signal"))],
)
def test_both_signals_end_the_session_and_close_the_sockets(gateway, ending):
    gateway.start()
    gateway.ask(qbxml(CUSTOMER_QUERY))

    assert gateway.stop(ending) == 0

    assert gateway.has_status("Disconnecting from Quickbooks")
    assert gateway.has_status("Closing Quickbooks.")
    with pytest.raises(ConnectionRefusedError):
        gateway.connect()


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
