"""The databases' items are held to what all dialects share, and the check finds each kind of fault."""

import subprocess
import sys

import pytest

from system import ROOT

sys.path.insert(0, str(ROOT / "tools"))
sys.dont_write_bytecode = True
import pick_basic  # noqa: E402

pytestmark = pytest.mark.posix_only("reads sources only")

SOUND = """\
      SUBROUTINE OSTREL.X(GIVEN, RESULT)
* A comment may say what it likes; in lower-case, too.
      EQU AM TO CHAR(254)
      RESULT = ''
      IF GIVEN = '' THEN
         RESULT = 'nothing'
      END ELSE
         GOSUB MAKEIT
      END
      RETURN
MAKEIT:
      MANY = DCOUNT(GIVEN, AM)
      FOR I = 1 TO MANY
         RESULT<I> = GIVEN<I, 1>[1, 3]
      NEXT I
      LOOP
         RESULT := AM
      UNTIL LEN(RESULT) GT 5 DO
      REPEAT
      RETURN
   END"""


def faults(source, name="OSTREL.X", **others):
    sources = {name: source, **{key.replace("_", "."): text for key, text in others.items()}}
    return [f"{of}:{line}: {what}" for of, line, what in pick_basic.faults_of(sources)]


def sound_with(line, instead="      RESULT = ''"):
    assert instead in SOUND
    return SOUND.replace(instead, line, 1)


def test_a_sound_item_has_no_fault():
    assert faults(SOUND) == []


def test_the_items_of_the_product_have_no_fault():
    checked = subprocess.run(
        [ROOT / "tools" / "multivalue", "--check"], capture_output=True, text=True, timeout=60
    )

    assert (checked.returncode, checked.stdout, checked.stderr) == (0, "", "")


def test_what_is_made_of_causes_and_cures_is_up_to_date():
    checked = subprocess.run(
        [ROOT / "tools" / "cures", "--check"], capture_output=True, text=True, timeout=60
    )

    assert (checked.returncode, checked.stdout, checked.stderr) == (0, "", "")


@pytest.mark.parametrize(
    "line, told",
    [
        ("      READSEQ RESULT FROM GIVEN ELSE RETURN", "READSEQ is no statement that all dialects"),
        ("      OSREAD RESULT FROM GIVEN ELSE RETURN", "OSREAD is no statement that all dialects"),
        ("      RESULT = UPCASE(GIVEN)", "UPCASE is no function that all dialects"),
        ("      RESULT = OPEN.SOCKET(GIVEN, 4999, 1)", "OPEN.SOCKET is no function that all"),
        ("      RESULT = INDEX(GIVEN, 'a')", "INDEX takes 3 values, not 2"),
        ("      MESSAGE = ''", "MESSAGE is a word of a dialect"),
        ("      AM = ''", "AM is a constant"),
        ("      result = ''", "lower-case"),
        ("      RESULT = '' ; GIVEN = ''", "one statement a line"),
        ("      RESULT = '\u00fc'", "no plain ASCII"),
        ("      RESULT = ''  ", "blanks at the line's end"),
        ("\tRESULT = ''", "no plain ASCII"),
        ("      RESULT = '" + "x" * 70 + "'", "characters, more than 79"),
        ("      IF GIVEN = '' RESULT = ''", "THEN is missing"),
        ("      IF GIVEN = '' THEN", "END is missing"),
        ("      END", "an END too much"),
        ("      ELSE", "ELSE has nothing to belong to"),
        ("      LOOP WHILE GIVEN = '' DO", "REPEAT is missing"),
        ("      LOOP\n      REPEAT", "neither WHILE nor UNTIL"),
        ("      LOOP WHILE GIVEN = ''\n      REPEAT", "DO is missing"),
        ("      FOR J = 1 TO 3", "is missing"),
        ("      FOR J = 1 TO 3\n      NEXT I", "NEXT I ends FOR J"),
        ("      BEGIN CASE\n         CASE GIVEN = 1\n            RESULT = 1", "is missing"),
        ("      GOSUB NOWHERE", "there is no label NOWHERE"),
        ("      RETURN\nLOST:", "nobody goes to the label LOST"),
        ("      RESULT = 1\nMAKEIT:", "RETURN or STOP is missing before the label"),
        ("      RESULT = NOVALUE", "NOVALUE has no value anywhere"),
        ("      IF LEN(GIVEN) < 3 THEN RETURN", "compare with LT, GT"),
        ("      IF LEN(GIVEN) > 3 THEN RETURN", "compare with LT, GT"),
        ("      RESULT = (GIVEN", "')' is missing"),
        ("      RESULT = 'open", "is not understood"),
        ("      RESULT = GIVEN[1, 2", "']' is missing"),
        ("      CALL OSTREL.NOWHERE(GIVEN)", "there is no subroutine OSTREL.NOWHERE"),
        ("      CALL OSTREL.Y(GIVEN)", "OSTREL.Y takes 2 values, not 1"),
        ("      LOCK 49", "THEN or ELSE is missing"),
        ("      AVERYLONGNAME.THAT.NO.EDITOR.SHOWS = 1", "longer than 30"),
    ],
)
def test_each_kind_of_fault_is_found(line, told):
    other = "      SUBROUTINE OSTREL.Y(A, B)\n      B = A\n      RETURN\n   END"

    found = faults(sound_with(line), OSTREL_Y=other)

    assert any(told in fault for fault in found), found


def test_a_label_that_is_there_twice_is_found():
    twice = SOUND[: SOUND.rindex("   END")] + "MAKEIT:\n      RETURN\n   END"

    assert any("MAKEIT is there twice" in fault for fault in faults(twice))


def test_an_item_without_its_end_is_found():
    assert any("END is missing" in f for f in faults(SOUND[: SOUND.rindex("   END")]))


def test_an_item_under_another_name_is_found():
    assert any("OSTREL.X in the item OSTREL.Z" in f for f in faults(SOUND, name="OSTREL.Z"))


def test_a_transport_may_use_what_its_own_dialect_has_only():
    transport = (
        "      SUBROUTINE OSTREL.IO(A, B)\n      B = OPEN.SOCKET(A, 4999, 1)\n      RETURN\n   END"
    )

    assert faults(transport, name="OSTREL.IO.QM") == []
    assert any("OPEN.SOCKET is no function" in f for f in faults(transport, name="OSTREL.IO.JBASE"))


def test_a_transport_with_other_values_than_the_others_is_found():
    one = "      SUBROUTINE OSTREL.IO(A, B)\n      B = A\n      RETURN\n   END"
    two = one.replace("(A, B)", "(A, B, C)").replace("B = A", "B = A : C")

    found = faults(one, name="OSTREL.IO.QM", OSTREL_IO_JBASE=two)

    assert any("other values than the other transports" in fault for fault in found)
