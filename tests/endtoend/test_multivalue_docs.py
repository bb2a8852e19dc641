"""What docs/database.md shows: its programs are carried out, its requests answered, its transcripts
true, all with the sample company at a real gateway."""

import re
import shutil

import pytest


from basic import ITEMS, Machine, pick_basic
from gateway import free_port, qbxml
from system import ROOT

pytestmark = pytest.mark.posix_only("reads a document and its programs")

DOCUMENT = (ROOT / "docs" / "database.md").read_text(encoding="utf-8")
BLOCK = re.compile(r"^```(\S+)(?: ([^\n]+))?\n(.*?)^```$", re.M | re.S)


def blocks(kind):
    """(line, rest of the first line, text, the block that follows)"""
    found = list(BLOCK.finditer(DOCUMENT))
    for block, following in zip(found, [*found[1:], None]):
        if block[1] == kind:
            line = DOCUMENT.count("\n", 0, block.start()) + 1
            yield line, block[2], block[3], following


@pytest.fixture
def shop(gateway):
    shutil.copy(ROOT / "samples" / "sample.qbw", gateway.company_file)
    gateway.start()
    yield gateway
    assert gateway.stop() == 0, gateway.errors


@pytest.fixture
def machine(tmp_path):
    """One to whose items a program of the document can be added."""
    items = tmp_path / "OSTREL.BP"
    shutil.copytree(ITEMS, items)
    made = Machine(items=items)
    yield made
    made.close()


def here(text, gateway):
    """The document's host, port and company file as they are in this run."""
    return (text.replace("'backoffice'", "'127.0.0.1'").replace("4999", str(gateway.port))
            .replace(r"C:\Books\sample.qbw", str(gateway.company_file)))


@pytest.mark.parametrize(
    ("program", "printed"), [(text, after) for _, _, text, after in blocks("basic")],
    ids=[f"line {line}" for line, *_ in blocks("basic")],
)
def test_each_program_is_sound_and_prints_what_is_shown(shop, machine, program, printed):
    program = here(program, shop)
    (machine.folder / "MY.PROGRAM").write_text(program)
    sources = {file.name: file.read_text().removesuffix("\n") for file in machine.folder.iterdir()}

    assert list(pick_basic.faults_of(sources)) == []
    assert printed[1] == "printed"
    assert machine.run("MY.PROGRAM") == here(printed[3], shop)


@pytest.mark.parametrize(
    ("name", "shown"), [(name, text) for _, name, text, _ in blocks("transcript")],
    ids=[name for _, name, *_ in blocks("transcript")],
)
def test_each_transcript_is_what_the_program_prints(shop, machine, name, shown):
    port = str(shop.port)
    if "without a gateway" in name:
        port = str(free_port())
        shown = shown.replace("127.0.0.1 4999", f"127.0.0.1 {port}")
    machine.answers = ["", port]
    machine.files["OSTREL.CUSTOMERS"] = {}

    printed = machine.run(name.split()[0]).replace(f"(Enter: 4999) {port}", "(Enter: 4999) ")

    assert printed == here(shown.replace("(Enter: 4999)", "(ENTER)"), shop).replace(
        "(ENTER)", "(Enter: 4999)")


def test_each_request_is_answered_as_shown(shop):
    count = 0
    for line, kind, text, after in blocks("xml"):
        if kind != "request":
            continue
        _, body = shop.ask(qbxml(text, version="5.0"))
        assert after[2] == "response"
        for expected in after[3].splitlines():
            assert expected in body.decode(), f"docs/database.md:{line}: {body[:500]}"
        count += 1
    assert count >= 3


def test_every_item_is_named():
    names = {file.name for file in ITEMS.iterdir() if not pick_basic.dialect_of(file.name)}

    assert [name for name in sorted(names) if name not in DOCUMENT] == []


def test_every_installer_and_transport_is_named():
    transports = {file.name for file in ITEMS.glob("OSTREL.IO.*")} - {
        "OSTREL.IO.D3.UNIX", "OSTREL.IO.D3.NT"}  # whose installers are pasted
    installers = {"QM.txt", "QM.COMPILE.txt", "UNIVERSE.COMPILE.txt", "UNIDATA.COMPILE.txt",
                  "D3.UNIX.txt", "D3.NT.txt", "JBASE.txt"}

    assert all((ROOT / "clients/multivalue/installers" / name).is_file() for name in installers)
    assert [name for name in sorted(transports | installers) if name not in DOCUMENT] == []


def test_the_compile_lines_shown_are_those_of_the_lists():
    for system in ("QM", "UNIVERSE", "UNIDATA", "D3.UNIX", "JBASE"):
        lines = (ROOT / "clients/multivalue/installers" / f"{system}.COMPILE.txt").read_text()
        ask = [line for line in lines.splitlines() if "OSTREL.ASK" in line]

        assert "\n".join(ask) in DOCUMENT, system
