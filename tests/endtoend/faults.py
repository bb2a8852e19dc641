"""One scenario over both transports, during which one call of one system operation fails.

Whatever fails: what was answered as done is in the company, every request that was taken has one
response and a response is its own request's, the next request works, and the gateway ends in order.
A start may fail, with exit code 1 and a word about it."""

import os
import re
import shutil
import signal
import subprocess
import time

from company import saved
from folder import put
from gateway import END_OF_DATA, Client, Gateway, customer_add, qbxml
from system import PROGRAMS, UNDER_WINE, as_known, command, program_file

LIMIT = 20  # seconds that one response or step may take
BETWEEN_TRIES = 0.02

# The errors with which each operation fails: (error, error, ...), "short" for half of what was asked.
# The numbers are the system's own. Writing to standard output is not among them: the scenarios judge
# by its lines.
if UNDER_WINE:
    OPERATIONS = {
        "CreateFileW": (32, 5), "ReadFile": (1117,), "WriteFile": (112,), "FlushFileBuffers": (1117,),
        "SetEndOfFile": (112,), "GetFileSizeEx": (5,), "MoveFileExW": (5, 32), "DeleteFileW": (5,),
        "CreateDirectoryW": (5,), "FindFirstFileW": (5,), "FindNextFileW": (1117,),
        "GetFileAttributesExW": (5,), "GetPrivateProfileStringA": (5,),
        "FindFirstChangeNotificationW": (5,), "FindNextChangeNotification": (6,),
        "CreateMutexW": (8,), "socket": (10024,), "bind": (10048,), "listen": (10048,),
        "accept": (10024, 10055), "WSAAsyncSelect": (10055,), "sendto": (10054, 10055),
        "recvfrom": (10054,), "recv": (10054,), "setsockopt": (10055,), "getsockname": (10055,),
        "getpeername": (10055,), "memory": (8,),
    }
else:
    EINTR, EIO, EAGAIN, ENOMEM, EACCES, EEXIST, EINVAL, EMFILE = 4, 5, 11, 12, 13, 17, 22, 24
    ENOSPC, EADDRINUSE, ECONNABORTED, ECONNRESET, ENOBUFS = 28, 98, 103, 104, 105
    OPERATIONS = {
        "open": (EMFILE, EACCES), "pread": (EIO, "short"), "pwrite": (ENOSPC, "short"),
        "fsync": (EIO,), "ftruncate": (EIO,), "fstat": (EIO,), "fstatat": (EACCES,),
        "stat": (EACCES,), "lstat": (EACCES,), "statx": (EACCES,),
        "flock": (EAGAIN,), "fcntl": (EAGAIN,), "rename": (EACCES,),
        "unlink": (EACCES,), "mkdir": (EACCES,),
        "opendir": (EMFILE,), "readdir": (EIO,), "inotify_init1": (EMFILE,),
        "inotify_add_watch": (ENOSPC,), "read": (EINTR,),
        "epoll_create1": (EMFILE,), "epoll_ctl": (ENOMEM,), "epoll_wait": (EINTR,),
        "pipe2": (EMFILE,), "socket": (EMFILE,),
        "bind": (EADDRINUSE,), "listen": (EADDRINUSE,), "accept4": (EMFILE, ECONNABORTED),
        "sendto": (ECONNRESET, ENOBUFS, "short"),
        "recv": (ECONNRESET,), "recvfrom": (ECONNRESET, "short"),
        "getsockopt": (ENOBUFS,), "setsockopt": (ENOBUFS,), "getsockname": (ENOBUFS,),
        "getpeername": (ENOBUFS,), "getifaddrs": (ENOMEM,), "memory": (ENOMEM,),
    }


class FaultyGateway(Gateway):
    PROGRAM = "ostrel-server-faults"

    def fault_was_made(self):
        return any(line.startswith("fault: ") for line in self.errors)


class Broken(Exception):
    """A promise that was not kept."""


def require(condition, what):
    if not condition:
        raise Broken(what)


def is_done(text, name):
    return b'statusCode="0"' in text and b"<Name>%s</Name>" % name in text


class Scenario:
    """The gateway, started with its fault; `done` are the customers that were answered as added."""

    def __init__(self, folder, fault=None, error=None):
        folder.mkdir(parents=True)
        self.gateway = FaultyGateway(folder)
        self.counts_file = folder / "counts"
        self.gateway.environment["OSTREL_FAULT_COUNTS"] = as_known(self.counts_file)
        if fault:
            self.gateway.environment["OSTREL_FAULT"] = f"{fault}:{error}"
        self.gateway.write_settings(Communication_Folder="1", General_History="1",
                                    Communication_BlockSize="200")
        shutil.copy(PROGRAMS / "qbxmlops30.xsd", folder)
        self.done = []
        self.tried = 0
        self.serves_tcp = self.serves_folder = False

    # -- one request ------------------------------------------------------------------------------

    def next_name(self):
        self.tried += 1
        return f"Quince{self.tried:03}"

    def judge(self, text, name, what):
        """Whether the response says that this customer was added; an error is a response as well."""
        others = [n for n in re.findall(rb"Quince\d+", text) if n != name.encode()]
        require(not others, f"{what} {name}: the response of another request: {text[:300]!r}")
        if text.startswith(b"ERROR"):
            return False
        require(b'requestID="%s"' % name.encode() in text, f"{what} {name}: no response: {text!r}")
        if is_done(text, name.encode()):
            self.done.append(name)
            return True
        return False

    def connect(self):
        try:
            return Client(self.gateway.port)
        except OSError as error:
            raise Broken(f"no connection: {error}; {self.gateway.status_lines()}") from None

    def ask_tcp(self, name, pieces=1):
        """True: done; False: an error, or the connection was ended."""
        with self.connect() as client:
            client.socket.settimeout(LIMIT)
            request = qbxml(customer_add(name, name)).encode()
            size = -(-len(request) // pieces)
            try:
                for begin in range(0, len(request), size):
                    client.send(request[begin:begin + size])
                client.send(END_OF_DATA)
                return self.judge(client.read_frame(), name, "tcp")
            except TimeoutError:
                raise Broken(f"tcp {name}: no response and no end") from None
            except (OSError, AssertionError):
                return False  # the connection was ended

    def ask_folder(self, name):
        file = f"{name}.osl"
        response = self.gateway.response_folder / file
        put(self.gateway, file, qbxml(customer_add(name, name)))
        end = time.monotonic() + LIMIT
        while not response.exists():
            self.require_running()
            require(time.monotonic() < end, f"folder {name}: no response; "
                    f"taken: {not (self.gateway.process_folder / file).exists()}")
            time.sleep(BETWEEN_TRIES)
        text = response.read_bytes()
        response.unlink()
        return self.judge(text, name, "folder")

    def require_running(self):
        code = self.gateway.process.poll()
        require(code is None, f"ended with {code}: {self.gateway.lines} {self.gateway.errors}")

    # -- its parts --------------------------------------------------------------------------------

    def start(self):
        """False when the start failed, in order."""
        gateway = self.gateway
        gateway.spawn("-ini", gateway.settings_file)
        end = time.monotonic() + LIMIT
        while True:
            code = gateway.process.poll()
            if code is not None:
                time.sleep(0.1)  # the last lines are on their way
                require(code == 1, f"the start ended with {code}: {gateway.lines} {gateway.errors}")
                require(gateway.fault_was_made(), f"no start: {gateway.errors}")
                told = gateway.lines + [e for e in gateway.errors if not e.startswith("fault: ")]
                require(told, "a start failed without a word")
                return False
            if self.has_begun():
                return True
            require(time.monotonic() < end, f"the start hangs: {gateway.status_lines()}")
            time.sleep(BETWEEN_TRIES)

    def has_begun(self):
        """Whether each way in is open or was said not to be."""
        told = self.gateway.status_lines() + self.gateway.errors
        self.serves_tcp = any("Listenning on Socket" in line for line in told)
        self.serves_folder = any("Watching Folder" in line or "start watching" in line
                                 for line in told)
        without_tcp = any("Unable to start the Socket Server" in line for line in told)
        stopped = any("Start-up stopped" in line for line in told)
        serves = self.serves_tcp or self.serves_folder
        return (stopped and serves) or ((self.serves_tcp or without_tcp) and self.serves_folder)

    def talk(self):
        if not UNDER_WINE:
            self.gateway.toggle_comm_log()
        if self.serves_tcp:
            self.ask_tcp(self.next_name())
            self.interleave()
            self.ask_malformed()
        if self.serves_folder:
            self.ask_folder(self.next_name())
        if self.serves_tcp:
            self.ask_close()
            self.ask_tcp(self.next_name(), pieces=3)
        if self.serves_folder:
            self.ask_folder(self.next_name())

    def interleave(self):
        """Two connections whose requests arrive piece by piece, in turns."""
        names = [self.next_name(), self.next_name()]
        requests = [qbxml(customer_add(name, name)).encode() + END_OF_DATA for name in names]
        clients = [self.connect(), self.connect()]
        try:
            for begin in range(0, max(map(len, requests)), 120):
                for client, request in zip(clients, requests):
                    try:
                        client.send(request[begin:begin + 120])
                    except OSError:
                        pass
            for client, name in zip(clients, names):
                client.socket.settimeout(LIMIT)
                try:
                    self.judge(client.read_frame(), name, "tcp")
                except TimeoutError:
                    raise Broken(f"tcp {name}: no response and no end") from None
                except (OSError, AssertionError):
                    pass
        finally:
            for client in clients:
                client.close()

    def ask_malformed(self):
        self.expect_frame("<?xml version=\"1.0\"?><QBXML><Wrong</QBXML>", b"ERROR")

    def ask_close(self):
        self.expect_frame("CLOSEQB:", b"")

    def expect_frame(self, text, start):
        with self.connect() as client:
            client.socket.settimeout(LIMIT)
            try:
                client.send(text.encode() + END_OF_DATA)
                frame = client.read_frame()
                require(frame.startswith(start), f"{text[:20]}: {frame!r}")
            except TimeoutError:
                raise Broken(f"{text[:20]}: no response and no end") from None
            except (OSError, AssertionError):
                pass

    def require_next_works(self):
        asks = ([self.ask_folder] if self.serves_folder else []) + (
            [self.ask_tcp] if self.serves_tcp else [])
        for ask in asks:
            was_made = self.gateway.fault_was_made()
            if not ask(self.next_name()):
                require(not was_made, f"the request after the failure fails as well: {ask.__name__}")
                require(ask(self.next_name()), f"and the one after it: {ask.__name__}")

    def stop(self):
        self.require_running()
        try:
            code = self.gateway.stop(signal.SIGINT)
        except subprocess.TimeoutExpired:
            raise Broken("does not end") from None
        require(code == 0, f"ended with {code}: {self.gateway.errors}")

    def check_company(self):
        done = subprocess.run(
            command(program_file("ostrel-company"), "--check", self.gateway.company_file),
            capture_output=True, text=True)
        require(done.returncode == 0, f"the company: {done.stdout} {done.stderr}")
        text = saved(self.gateway.company_file)
        lost = [name for name in self.done if f"<Name>{name}</Name>" not in text]
        require(not lost, f"answered and lost: {lost}")
        left = sorted(file.name for file in self.gateway.response_folder.glob("*.osl"))
        require(not left, f"a second response: {left}")

    def check_memory(self):
        report = "\n".join(self.gateway.errors)
        require("Sanitizer" not in report and "runtime error:" not in report, report)

    def run(self):
        """Raises Broken. Whether the fault was made."""
        try:
            if self.start():
                self.talk()
                self.require_next_works()
                self.stop()
                self.check_company()
        except Broken as broken:
            lines = "\n  ".join(self.gateway.status_lines() + self.gateway.errors)
            raise Broken(f"{broken}\n  {lines}") from None
        finally:
            self.gateway.kill()
            self.check_memory()
        return self.gateway.fault_was_made()

    def counts(self):
        """How often each operation was called."""
        lines = self.counts_file.read_text().splitlines()
        return {name: int(calls) for name, calls in map(str.split, lines)}


def counts_of_calls(folder):
    """Of the scenario without a fault."""
    scenario = Scenario(folder)
    scenario.run()
    return scenario.counts()


def positions(calls, count):
    """So many positions of the calls, the first and nearly the last among them."""
    if calls <= count:
        return list(range(1, calls + 1))
    return sorted({1 + round(i * (calls - 1) * 0.98 / max(1, count - 1)) for i in range(count)})


def attempt(folder, operation, call, error):
    """What is wrong, None for nothing."""
    try:
        Scenario(folder, f"{operation}:{call}", error).run()
    except Broken as broken:
        return f"{operation} call {call}, error {error}: {broken}"
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    return None
