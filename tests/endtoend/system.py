"""The system whose programs are tested: this one, or Windows under Wine. OSTREL_PROGRAMS names their
folder; a Windows program in it decides."""

import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = pathlib.Path(os.environ.get("OSTREL_PROGRAMS", ROOT / "build" / "asan")).resolve()
UNDER_WINE = (PROGRAMS / "ostrel-server.exe").exists()


def program_file(name):
    return PROGRAMS / (name + ".exe" if UNDER_WINE else name)


def command(program, *arguments):
    """What starts the program with these arguments, of which paths are said as it knows them. What
    is started has the program's own process id."""
    start = [ROOT / "tools" / "wine", program] if UNDER_WINE else [program]
    return [*start, *map(as_known, arguments)]


def as_known(value):
    """A path as the programs know it; anything else as text."""
    if UNDER_WINE and isinstance(value, pathlib.Path):
        return "Z:" + str(value).replace("/", "\\")
    return str(value)
