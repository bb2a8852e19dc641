"""Starts the real gateway program in a folder of its own and speaks to it from outside."""

import os
import pathlib
import signal
import socket
import subprocess
import threading
import time

from system import PROGRAMS, as_known, command, program_file

ATTRIBUTE_MARK = b"\xfe"
END_OF_DATA = b"\x1f"
LONGEST_VALUE = 99  # characters of a value in the settings file
LIMIT = 30  # seconds that anything may take before a test gives up

COMPANY = """<?xml version="1.0" encoding="UTF-8"?>
<Company name="Harbor Street Supply" product="QuickBooks Premier Edition 2008" majorVersion="18"
         minorVersion="0" country="US">
  {behaviour}
</Company>
"""


def wait_until(condition, what, limit=LIMIT):
    """Polls until the condition holds and returns its value; fails with `what` after the limit, a
    text or what makes it then."""
    end = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        assert time.monotonic() < end, f"not within {limit} s: {what() if callable(what) else what}"
        time.sleep(0.01)


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Client:
    """One database connection."""

    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=LIMIT)
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.received = b""

    def send(self, data):
        self.socket.sendall(data)

    def read_frame(self):
        """Everything up to the next end-of-data mark, without it."""
        while END_OF_DATA not in self.received:
            piece = self.socket.recv(1 << 20)
            assert piece, f"connection closed after {self.received[:200]!r}"
            self.received += piece
        frame, self.received = self.received.split(END_OF_DATA, 1)
        return frame

    def is_closed_by_gateway(self):
        """Waits for the end of the connection; data still on its way is passed over."""
        try:
            while self.socket.recv(1 << 20):
                pass
        except ConnectionResetError:
            pass
        return True

    def ask(self, text):
        """Sends one request and returns header and body of the response, both as bytes."""
        self.send(text.encode("cp1252") if isinstance(text, str) else text)
        self.send(END_OF_DATA)
        header, _, body = self.read_frame().partition(ATTRIBUTE_MARK)
        return header, body

    def close(self):
        self.socket.close()

    def reset(self):
        """Leaves without a word: the gateway sees a reset."""
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class Gateway:
    """The program with its settings file, company file and folders below `folder`."""

    PROGRAM = "ostrel-server"

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        source = program_file(self.PROGRAM)
        self.program = self.folder / source.name
        self.settings_file = self.folder / "osl.ini"
        self.company_file = self.folder / "harbor.qbw"
        self.history = self.folder / "history"
        self.process_folder = self.folder / "process"
        self.response_folder = self.folder / "response"
        self.port = free_port()
        self.instance = self.folder  # of those that have the same, only one runs at a time
        self.environment = {}  # what it is told besides
        self.process = None
        self.lines = []
        self.errors = []
        self.clients = []
        self.reading = threading.Event()  # cleared: nobody reads what it prints
        self.reading.set()
        os.link(source, self.program) if self._same_device(source) else self._copy(source)
        self.write_company()
        self.write_settings()

    def _same_device(self, source):
        return source.stat().st_dev == self.folder.stat().st_dev

    def _copy(self, source):
        self.program.write_bytes(source.read_bytes())
        self.program.chmod(0o755)

    # -- what it is given -------------------------------------------------------------------------

    def write_company(self, content="", **behaviour):
        attributes = " ".join(f'{name}="{value}"' for name, value in behaviour.items())
        self.company_file.write_text(
            COMPANY.format(behaviour=f"<Behaviour {attributes}/>{content}")
        )

    def write_settings(self, **changes):
        """Keys are SECTION_KEY: Communication_BlockSize=5. Paths are written as the program knows
        them."""
        keys = {
            "General_ProcessPath": self.process_folder,
            "General_ResponsePath": self.response_folder,
            "General_HistPath": self.history,
            "General_History": "0",
            "General_ValidateXML": "1",
            "General_StatusPath": self.folder / "status",
            "Quickbooks_FileName": self.company_file,
            "Quickbooks_DisconnectTimeout": "300",
            "Communication_Type": "0",
            "Communication_Folder": "0",
            "Communication_Socket": "1",
            "Communication_SocketPort": self.port,
            "Communication_BlockSize": "10000",
        }
        keys.update(changes)
        for value in keys.values():
            assert not isinstance(value, pathlib.Path) or len(as_known(value)) <= LONGEST_VALUE, (
                f"{value} is longer than a setting may be: run the tests with a shorter TMPDIR"
            )
        text = ""
        for section in ("General", "Quickbooks", "Communication"):
            text += f"[{section}]\r\n"
            for name, value in keys.items():
                of, key = name.split("_", 1)
                if of == section and value is not None:
                    text += f"{key}={as_known(value)}\r\n"
        self.settings_file.write_bytes(text.encode("cp1252"))

    # -- its life ---------------------------------------------------------------------------------

    def spawn(self, *arguments, preexec=None):
        """Starts it without waiting for anything. Paths among the arguments are given as paths."""
        environment = dict(os.environ, OSTREL_INSTANCE=str(self.instance), LC_ALL="C.UTF-8",
                           **self.environment)
        self.process = subprocess.Popen(
            command(self.program, *arguments),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=environment,
            preexec_fn=preexec,
        )
        for stream, lines in ((self.process.stdout, self.lines), (self.process.stderr, self.errors)):
            threading.Thread(target=self._collect, args=(stream, lines), daemon=True).start()
        return self

    def _collect(self, stream, lines):
        self.reading.wait()
        for line in stream:
            lines.append(line.decode("utf-8").rstrip("\r\n"))

    def start(self, *arguments, preexec=None):
        self.spawn("-ini", self.settings_file, *arguments, preexec=preexec)
        self.wait_for_status(f"Listenning on Socket {self.port}")
        return self

    def start_watching(self, preexec=None, **changes):
        """Starts it with the folder transport on, beside TCP unless the changes say otherwise."""
        self.write_settings(**{"Communication_Folder": "1", **changes})
        self.spawn("-ini", self.settings_file, preexec=preexec)
        self.wait_for_status("Watching Folder: ")
        return self

    def status_lines(self):
        return list(self.lines)

    def has_status(self, text, count=1):
        return sum(text in line for line in self.status_lines()) >= count

    def wait_for_status(self, text, count=1, limit=LIMIT):
        def seen():
            return self.has_status(text, count) or self.process.poll() is not None

        def missing():
            return f"status line {text!r}; seen: {self.status_lines()} {self.errors}"

        wait_until(seen, missing, limit)
        wait_until(lambda: self.has_status(text, count), missing, 2)

    def wait_for_exit(self):
        return self.process.wait(LIMIT)

    def stop(self, with_signal=signal.SIGINT):
        """Ends it as a user does, with Ctrl-C on either system, and returns its exit code."""
        if self.process is None:
            return 0
        if self.process.poll() is None:
            self.process.send_signal(with_signal)
        return self.wait_for_exit()

    def kill(self):
        self.reading.set()
        for client in self.clients:
            client.close()
        if self.process is not None and self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    # -- talking to it ----------------------------------------------------------------------------

    def connect(self):
        client = Client(self.port)
        self.clients.append(client)
        return client

    def ask(self, text):
        """One request on a connection of its own."""
        with self.connect() as client:
            return client.ask(text)

    def toggle_comm_log(self):
        self.process.send_signal(signal.SIGUSR1)

    def comm_log(self):
        path = self.history / "Comm.log"
        return path.read_bytes().decode("cp1252") if path.exists() else ""

    # -- how it is doing --------------------------------------------------------------------------

    def cpu_seconds(self):
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def open_files(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def memory(self):
        """Bytes in use, shared ones included."""
        pages = int(pathlib.Path(f"/proc/{self.process.pid}/statm").read_text().split()[1])
        return pages * os.sysconf("SC_PAGE_SIZE")


def qbxml(messages, on_error="continueOnError", version="3.0"):
    """A request with prolog, qbXML instruction and envelope around the messages."""
    return (
        f'<?xml version="1.0"?><?qbxml version="{version}"?>'
        f'<QBXML><QBXMLMsgsRq onError="{on_error}">{messages}</QBXMLMsgsRq></QBXML>'
    )


def customer_add(name, request_id="1"):
    return (
        f'<CustomerAddRq requestID="{request_id}"><CustomerAdd><Name>{name}</Name>'
        "</CustomerAdd></CustomerAddRq>"
    )


CUSTOMER_QUERY = '<CustomerQueryRq requestID="7"/>'
