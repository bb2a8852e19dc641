#!/usr/bin/python3
"""Renews the table of messages in docs/simulator.md. What the stand-in does with each message comes
from the program, what that is known by from the comments of its sources:

    build/dev/ostrel-company --messages | tools/message_table.py

A comment "From memory: TxnVoidRq, ListMergeRq." or "Recorded: InvoiceAddRq." in src/simulator, which
ends with a full stop, marks the messages that it names; all others are documented.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENT = ROOT / "docs" / "simulator.md"
HEAD = "| message | what the stand-in does | known by |\n|---|---|---|\n"
TABLE = re.compile(re.escape(HEAD) + r"(?:\|.*\n)*")
REMARK = re.compile(r"// (From memory|Recorded): ((?:[^.\n]|\n *//)*)\.")
KNOWN_BY = {"From memory": "from memory", "Recorded": "recorded answer"}


def sources():
    for path in sorted((ROOT / "src" / "simulator").rglob("*.cpp")):
        yield path.read_text(encoding="utf-8")


def known_by(texts):
    """What each message is known by that is not documented, by its name."""
    return {
        message: KNOWN_BY[mark]
        for text in texts
        for mark, messages in REMARK.findall(text)
        for message in re.findall(r"\w+", messages)
    }


def table(listing, known):
    """The table, of lines "name, tab, what the stand-in does"."""
    rows = [line.split("\t") for line in listing.splitlines()]
    unknown = known.keys() - {message for message, _ in rows}
    if unknown:
        raise ValueError("comments name messages that there are not: " + ", ".join(sorted(unknown)))
    return HEAD + "".join(
        f"| `{message}` | {treatment} | {known.get(message, 'documented')} |\n" for message, treatment in rows
    )


def main():
    new = table(sys.stdin.read(), known_by(sources()))
    text, count = TABLE.subn(lambda _: new, DOCUMENT.read_text(encoding="utf-8"))
    if count != 1:
        sys.exit(f"{DOCUMENT} has no table of messages")
    DOCUMENT.write_text(text, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
