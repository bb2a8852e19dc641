"""A gateway's place is taken by a server that plays scripts of tests/data/wire_scripts.json, byte by
byte: for the databases' subroutines. One connection plays one script; the next one begins it again.

    python3 tests/endtoend/fault_server.py PORT SCRIPT    plays it to whoever connects, until Ctrl-C
    python3 tests/endtoend/fault_server.py --list         the scripts, and what OSTREL.ASK makes of each

The steps of a script:
    take           waits for a request, up to its end-of-data mark
    take-some N    reads N bytes of it only
    send TEXT      in one piece; characters are bytes
    bytes TEXT     one byte a piece
    all-bytes      every byte value but 31, in order
    many N TEXT    the text N times
    pause MS       so that what follows comes in another piece
    drip MS TEXT   the text again and again, so many milliseconds apart
    hold           until the client closes the connection
    close, reset   ends the connection, orderly or not
"""

import json
import pathlib
import socket
import struct
import sys
import threading
import time

SCRIPTS = json.loads(
    (pathlib.Path(__file__).resolve().parents[1] / "data" / "wire_scripts.json").read_text()
)
END_OF_DATA = b"\x1f"
ALL_BYTES = bytes(value for value in range(256) if value != 31)


class Player:
    """Plays the steps on one connection."""

    def __init__(self, connection, speed=1):
        self.connection = connection
        self.speed = speed
        self.requests = []
        self.played = 0  # steps

    def play(self, steps):
        for step, *values in steps:
            getattr(self, step.replace("-", "_"))(*values)
            self.played += 1

    def take(self):
        request = b""
        while not request.endswith(END_OF_DATA):
            piece = self.connection.recv(65536)
            if not piece:
                raise ConnectionError("the client has gone")
            request += piece
        self.requests.append(request)

    def take_some(self, count):
        self.requests.append(self.connection.recv(count))

    def send(self, text):
        self.connection.sendall(text.encode("latin-1"))

    def bytes(self, text):
        for value in text.encode("latin-1"):
            self.connection.sendall(bytes([value]))
            time.sleep(0.002)

    def all_bytes(self):
        self.connection.sendall(ALL_BYTES)

    def many(self, count, text):
        self.connection.sendall(text.encode("latin-1") * count)

    def pause(self, milliseconds):
        time.sleep(milliseconds / 1000)

    def drip(self, milliseconds, text):
        while True:
            self.send(text)
            time.sleep(milliseconds / 1000 / self.speed)

    def hold(self):
        while self.connection.recv(65536):
            pass

    def close(self):
        self.connection.close()

    def reset(self):
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.connection.close()


class FaultServer:
    """Serves scripts in the background; `with` ends it. `requests` are those that came, `connections`
    how many were made."""

    def __init__(self, *scripts, port=0, speed=1):
        self.socket = socket.create_server(("127.0.0.1", port))
        self.port = self.socket.getsockname()[1]
        self.scripts = scripts
        self.speed = speed
        self.requests = []
        self.connections = 0
        self.player = None  # of the last connection
        self.thread = threading.Thread(target=self.serve, daemon=True)
        self.thread.start()

    def serve(self):
        while True:
            try:
                connection, _ = self.socket.accept()
            except OSError:
                return
            script = self.scripts[min(self.connections, len(self.scripts) - 1)]
            self.connections += 1
            self.serve_one(connection, script)

    def serve_one(self, connection, script):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.player = player = Player(connection, self.speed)
        player.requests = self.requests
        with connection:
            try:
                player.play(script)
            except OSError:
                pass  # the client has left in the middle, as it should

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.socket.close()
        if self.player:
            try:
                self.player.connection.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass  # it has ended
        self.thread.join(30)


def main(arguments):
    if arguments == ["--list"]:
        for name, script in SCRIPTS.items():
            print(f"{name}: {json.dumps(script['expect'])}")
        return 0
    if len(arguments) != 2 or arguments[1] not in SCRIPTS:
        print(__doc__)
        return 2
    with FaultServer(SCRIPTS[arguments[1]]["steps"], port=int(arguments[0])) as server:
        try:
            server.thread.join()
        except KeyboardInterrupt:
            return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
