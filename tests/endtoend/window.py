"""The window program, seen and worked from outside through the driver (tests/driver)."""

import collections
import select
import shutil
import subprocess
import time

from gateway import LIMIT, Gateway, wait_until
from system import as_known, command, program_file

MARK = "Ostrel_APPLICATION"
TITLE = "Ostrel Server - MultiValue QuickBooks Gateway"

WM_CLOSE, WM_QUERYENDSESSION, WM_ENDSESSION = 0x10, 0x11, 0x16
WM_CANCELMODE, WM_KEYDOWN, WM_SYSCHAR, WM_COMMAND, WM_SYSCOMMAND = 0x1F, 0x100, 0x106, 0x111, 0x112
SC_MINIMIZE, SC_CLOSE = 0xF020, 0xF060
BM_CLICK = 0xF5
VK_RETURN, VK_ESCAPE, VK_DOWN = 0x0D, 0x1B, 0x28
SW_HIDE, SW_SHOWMINIMIZED = 0, 2
TRAY_MESSAGE, TRAY_ICON = 0x200, 1
ID_OK, ID_CANCEL = 1, 2
FILE_NAME = 1148  # the file dialog's field

Window = collections.namedtuple("Window", "handle kind visible iconic enabled title")
Control = collections.namedtuple("Control", "handle id kind visible enabled text")
MenuItem = collections.namedtuple("MenuItem", "level id grey checked default separator caption")
TrayOperation = collections.namedtuple("TrayOperation", "operation window id flags message tip")

ESCAPES = {"\\": "\\\\", "\t": "\\t", "\n": "\\n", "\r": "\\r"}
MEANINGS = {escape[1]: meaning for meaning, escape in ESCAPES.items()}


class DriverError(Exception):
    pass


def escaped(value):
    return "".join(ESCAPES.get(letter, letter) for letter in as_known(value))


def unescaped(field):
    letters = iter(field)
    return "".join(MEANINGS[next(letters)] if letter == "\\" else letter for letter in letters)


def quoted(argument):
    return f'"{argument}"' if " " in argument else argument


class Driver:
    """The program of that name, which runs as long as the tests do."""

    def __init__(self):
        self.process = subprocess.Popen(
            command(program_file("ostrel-driver")), stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )
        assert self.ask("marked", MARK)[0] == "0", "a gateway runs already; only one can"
        self.ask("tray")  # from here on it is what programs find as the shell

    def ask(self, *fields):
        """The fields of the answer, as texts."""
        line = "\t".join(escaped(field) for field in fields)
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()
        readable, _, _ = select.select([self.process.stdout], [], [], LIMIT)
        assert readable, f"no answer to {fields}"
        answer = self.process.stdout.readline().decode().rstrip("\r\n")
        outcome, *answered = map(unescaped, answer.split("\t"))
        if outcome != "ok":
            raise DriverError(f"{fields}: {answered}")
        return answered

    def rows(self, shape, *fields):
        """The same, of which every few make one of that shape."""
        width = len(shape._fields)
        answered = self.ask(*fields)
        return [shape(*answered[i : i + width]) for i in range(0, len(answered), width)]

    def post(self, window, message, wparam=0, lparam=0):
        self.ask("post", window, message, wparam, lparam)

    def send(self, window, message, wparam=0, lparam=0):
        return int(self.ask("send", window, message, wparam, lparam)[0])

    def run(self, program, *arguments):
        """Runs it to its end and returns its exit code."""
        return self.start(program, *arguments).wait(LIMIT)

    def start(self, program, *arguments, show=-1):
        """Paths among the arguments are given as paths."""
        line = " ".join(quoted(as_known(one)) for one in [program, *arguments])
        return StartedProgram(self, self.ask("start", line, program.parent, show)[0])

    def tray_operations(self):
        """What was told to the notification area since the last time."""
        return self.rows(TrayOperation, "tray")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        try:
            self.process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process.stdout.close()


class StartedProgram:
    def __init__(self, driver, number):
        self.driver = driver
        self.pid = number

    def poll(self):
        """The exit code; None while it runs."""
        code = self.driver.ask("exitcode", self.pid)
        return int(code[0]) if code else None

    def wait(self, limit):
        wait_until(lambda: self.poll() is not None, "the program's end", limit)
        return self.poll()

    def kill(self):
        self.driver.ask("kill", self.pid)


class StandIn:
    """QuickBooks' stand-in in a folder of its own, where a test may open a company in it."""

    NAME = "OstrelSimulator.exe"

    def __init__(self, driver, folder):
        self.driver = driver
        self.program = folder / self.NAME
        self.open_company = folder / "sample.qbw"
        shutil.copy(program_file("OstrelSimulator"), self.program)

    def register(self):
        self.stop()  # one may be left over from tests that were cut short
        assert self.driver.run(self.program, "/regserver") == 0

    def unregister(self):
        assert self.driver.run(self.program, "/unregserver") == 0

    def running(self):
        return self.driver.ask("running", self.NAME)

    def stop(self):
        """Ends it at once, as if QuickBooks had crashed. Harmless when it does not run."""
        if self.running():
            assert self.driver.run(self.program, "/stop") == 0


class Dialog:
    """An open window other than the main one."""

    def __init__(self, driver, window):
        self.driver = driver
        self.window = window
        self.title = window.title

    def controls(self, kind=None):
        rows = self.driver.rows(Control, "children", self.window.handle)
        return [row for row in rows if kind is None or row.kind.lower() == kind]

    def control(self, number):
        return next(row for row in self.controls() if int(row.id) == number)

    def text(self):
        """What a message box says, or what stands in a report."""
        return "".join(row.text for row in self.controls("static") + self.controls("edit"))

    def buttons(self):
        return [row.text.replace("&", "") for row in self.controls("button") if row.visible == "1"]

    def press(self, number):
        """Presses the button of this number, or of this caption."""
        for row in self.controls("button"):
            if number in (int(row.id), row.text.replace("&", "")):
                self.driver.post(row.handle, BM_CLICK)
                return
        raise AssertionError(f"no button {number!r} among {self.buttons()}")

    def write(self, number, text):
        self.driver.ask("settext", self.control(number).handle, text)

    def press_keys(self, *keys):
        """To whatever in it has the focus, which is a button."""
        for key in keys:
            self.driver.post(self.controls("button")[0].handle, WM_KEYDOWN, key)

    def close(self):
        """Its close box."""
        self.driver.post(self.window.handle, WM_CLOSE)


class WindowProgram(Gateway):
    """The program with its window, started through the driver; its status lines are those of its
    list, the newest first."""

    PROGRAM = "OstrelServer"

    def __init__(self, folder, driver):
        super().__init__(folder)
        self.driver = driver
        self.handle = None
        self.list_handle = None

    # -- its life ---------------------------------------------------------------------------------

    def spawn(self, *arguments, preexec=None, show=-1):
        self.driver.tray_operations()
        self.process = self.driver.start(self.program, *arguments, show=show)
        self.handle = self.list_handle = None
        return self

    def start(self, *arguments, preexec=None, show=-1):
        self.spawn("-ini", self.settings_file, *arguments, show=show)
        self.wait_for_status(f"Listenning on Socket {self.port}")
        return self.wait_for_load()

    def wait_for_load(self):
        """The icon is the last thing that a start shows but for the window."""
        wait_until(self.driver.tray_operations, "the icon in the notification area")
        return self

    def stop(self, with_signal=None):
        """Ends it by its menu, and returns its exit code."""
        if self.process.poll() is None:
            self.choose("E&xit")
        return self.wait_for_exit()

    def kill(self):
        for client in self.clients:
            client.close()
        if self.process is not None and self.process.poll() is None:
            self.process.kill()
            self.wait_for_exit()

    # -- its windows ------------------------------------------------------------------------------

    def window(self):
        """The main window; found by its mark."""
        if self.handle is None:
            handle, process = self.driver.ask("marked", MARK)
            if process != self.process.pid:
                return None
            self.handle = handle
        return self.handle

    def windows(self):
        return self.driver.rows(Window, "windows", self.process.pid)

    def main_window(self):
        return next(row for row in self.windows() if row.handle == self.window())

    def is_visible(self):
        return self.main_window().visible == "1"

    def wait_until_visible(self, visible=True):
        wait_until(lambda: self.is_visible() == visible, f"visible: {visible}")

    def caption(self):
        return self.main_window().title

    def status_lines(self):
        if self.process.poll() is not None or self.window() is None:
            return []
        try:
            return self.driver.ask("lines", self.status_list())
        except DriverError:
            return []  # the list is changing or going

    def status_list(self):
        if self.list_handle is None:
            controls = Dialog(self.driver, self.main_window()).controls("listbox")
            self.list_handle = controls[0].handle
        return self.list_handle

    def open_titles(self):
        return [row.title for row in self._open_windows()]

    def _open_windows(self):
        return [
            row
            for row in self.windows()
            if row.visible == "1" and row.handle != self.window() and row.title
        ]

    def dialogs(self):
        """What is open beside the main window: titles and texts."""
        if self.process.poll() is not None:
            return []
        dialogs = [Dialog(self.driver, row) for row in self._open_windows()]
        return [(dialog.title, dialog.text()) for dialog in dialogs]

    def dialog(self, title="Ostrel Server", holding=None):
        """Waits for the dialog of this title, of which a control has the class `holding`."""

        def found():
            rows = [row for row in self._open_windows() if row.title == title]
            dialogs = [Dialog(self.driver, row) for row in rows]
            return next((one for one in dialogs if not holding or one.controls(holding)), None)

        return wait_until(found, lambda: f"dialog {title!r}; open: {self.open_titles()}")

    def wait_until_closed(self, dialog):
        wait_until(
            lambda: dialog.window.handle not in [row.handle for row in self._open_windows()],
            f"the end of {dialog.title!r}",
        )

    def answer_message(self, button="OK"):
        """Waits for a message box, presses its button and returns what it said."""
        box = self.dialog()
        text = box.text()
        box.press(button)
        self.wait_until_closed(box)
        return text

    # -- its menus --------------------------------------------------------------------------------

    def read_menu(self, window):
        rows = self.driver.ask("menu", window)
        items = []
        for i in range(0, len(rows), 5):
            level, number, state, separator, caption = rows[i : i + 5]
            state = int(state)
            items.append(
                MenuItem(
                    int(level),
                    int(number),
                    bool(state & 3) and separator == "0",
                    bool(state & 8),
                    bool(state & 0x1000),
                    separator == "1",
                    caption,
                )
            )
        return items

    def menu(self):
        return self.read_menu(self.window())

    def item(self, caption):
        return next(item for item in self.menu() if item.caption == caption)

    def checked(self):
        """The captions of all items with a check mark."""
        return [item.caption for item in self.menu() if item.checked]

    def choose(self, caption):
        """As the user's choice arrives at the window."""
        self.driver.post(self.window(), WM_COMMAND, self.item(caption).id)

    def open_menu(self, letter):
        """By the keyboard: Alt and the letter. Returns its items."""
        self.driver.post(self.window(), WM_SYSCHAR, ord(letter), 1 << 29)
        return self.read_menu(wait_until(self.open_popup, f"the menu of Alt+{letter}"))

    def open_popup(self):
        """The window of the menu that is open; None when there is none."""
        return next(
            (row.handle for row in self.windows() if row.kind == "#32768" and row.visible == "1"),
            None,
        )

    def close_menu(self, owner=None):
        self.driver.post(owner or self.window(), WM_CANCELMODE)
        wait_until(lambda: self.open_popup() is None, "the menu's end")

    # -- its icon ---------------------------------------------------------------------------------

    def tray_window(self):
        return next(row.handle for row in self.windows() if row.kind == "OstrelTrayIcon")

    def tray(self, code):
        """What the shell tells of the icon."""
        self.driver.post(self.tray_window(), TRAY_MESSAGE, TRAY_ICON, code)

    def press_keys(self, window, *keys):
        for key in keys:
            self.driver.post(window, WM_KEYDOWN, key)

    def close_box(self):
        self.driver.post(self.window(), WM_SYSCOMMAND, SC_CLOSE)

    def hide(self):
        self.choose("&Hide")
        self.wait_until_visible(False)

    # -- its settings -----------------------------------------------------------------------------

    def setting(self, key):
        lines = self.settings_file.read_bytes().decode("cp1252").split("\r\n")
        return next((line.split("=", 1)[1] for line in lines if line.startswith(key + "=")), None)

    def refuses_connections(self):
        try:
            self.connect().close()
        except ConnectionRefusedError:
            return True
        return False


def for_a_while(condition, seconds=0.5):
    """Looks again and again whether the condition holds all the time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(0.05)
    return True
