"""What a database application does that speaks to the gateway through its two folders."""

import subprocess

from gateway import LIMIT, wait_until
from system import UNDER_WINE, command, program_file


def put(gateway, name, text):
    """Puts a request whole: written beside under another name and renamed in."""
    beside = gateway.process_folder / (name + ".new")
    beside.write_bytes(text.encode("cp1252") if isinstance(text, str) else text)
    beside.rename(gateway.process_folder / name)


def response_file(gateway, name):
    """The content of the response file; None while there is none."""
    try:
        return (gateway.response_folder / name).read_bytes()
    except FileNotFoundError:
        return None


def wait_for_response(gateway, name, limit=LIMIT):
    """Waits for the response, takes it away and returns its content."""
    response = wait_until(
        lambda: response_file(gateway, name),
        lambda: f"response {name}; seen: {gateway.lines} {gateway.errors}",
        limit,
    )
    (gateway.response_folder / name).unlink()
    return response


def ask(gateway, name, text):
    put(gateway, name, text)
    return wait_for_response(gateway, name)


def requests_waiting(gateway):
    """Everything there is in the process folder, names that are no requests included."""
    return sorted(entry.name for entry in gateway.process_folder.iterdir())


class SlowWriter:
    """Another program that holds a file open for itself while it writes it line by line."""

    def __init__(self, path):
        # Only Windows creates and locks a file in one step, and only there an open one keeps its name.
        opened = path if UNDER_WINE else path.with_name(path.name + ".new")
        self.process = subprocess.Popen(
            command(program_file("slow-writer"), opened),
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )
        self._expect(b"open")
        opened.rename(path)

    def _expect(self, word):
        assert self.process.stdout.readline().strip() == word

    def write(self, line):
        """Returns when the line is in the file."""
        self.process.stdin.write(line.encode("cp1252") + b"\n")
        self.process.stdin.flush()
        self._expect(b"written")

    def close(self):
        """Returns when the file is released."""
        self.process.stdin.close()
        assert self.process.wait(LIMIT) == 0

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.process.stdout.close()
