"""The databases' helpers: escapes, tags, status, dates. Their own source is carried out."""

import time
import xml.etree.ElementTree as ElementTree

import pytest

from basic import Machine

pytestmark = pytest.mark.posix_only("reads sources only")

AM, VM = "\xfe", "\xfd"


@pytest.fixture(scope="module")
def machine():
    return Machine()


def escaped(machine, text):
    return machine.call("OSTREL.ESC", text)[0]


def decoded(machine, xml, marks=""):
    return machine.call("OSTREL.TEXT", xml, "", marks)[1]


# -- escapes

def test_every_character_becomes_what_unicode_calls_it(machine):
    undefined = (129, 141, 143, 144, 157)  # Windows-1252 has no letters there
    for code in [9, 10, 13, *range(32, 251)]:
        element = ElementTree.fromstring(f"<A>{escaped(machine, chr(code))}</A>")
        expected = chr(code) if code in undefined or code < 128 else bytes([code]).decode("cp1252")

        assert element.text == expected, code


def test_what_is_sent_is_plain_ascii(machine):
    every = "".join(map(chr, range(32, 251)))

    assert all(" " <= letter <= "~" for letter in escaped(machine, every))


@pytest.mark.parametrize("code", [0, 8, 11, 31, 251, 252, 253, 254, 255])
def test_marks_and_control_characters_are_refused(machine, code):
    assert escaped(machine, f"Smith{chr(code)}Sons") == "\x1f"


def test_a_refused_field_is_never_sent(machine):
    field = escaped(machine, "Smith\xfdSons")
    err = machine.call("OSTREL.ASK", "", f"<Name>{field}</Name>", "", "")[3]

    assert err.startswith("-4")


def test_the_caller_says_what_a_mark_becomes(machine):
    marks = f"{AM}&#252;{AM} {AM}&#10;"

    _, _, xml, err = machine.call("OSTREL.ESCAPE", "M\xfcller\xfd&\xfeSons", marks, "", "")

    assert (xml, err[0]) == ("M&#252;ller &amp;&#10;Sons", "0")


@pytest.mark.parametrize("word", ["QBFILENAME:", "QUICKBOOKSINFO", "OPENQB:", "CLOSEQB:"])
def test_command_words_in_data_are_no_commands(machine, word):
    field = escaped(machine, f"{word} Ltd")

    assert word not in field and ElementTree.fromstring(f"<A>{field}</A>").text == f"{word} Ltd"


def test_the_way_back_gives_the_same_field(machine):
    every = "".join(map(chr, [9, 10, 13, *range(32, 251)]))

    assert decoded(machine, escaped(machine, every)) == every


@pytest.mark.parametrize(
    "xml, text",
    [
        ("&#x20AC;&#xe9;&#233;", "\x80\xe9\xe9"),
        ("&#252;", "&#252;"),
        ("&#254;", "&#254;"),
        ("&#960;&#x3C0;", "&#960;&#x3C0;"),
        ("&#31;&#0;&#xFFFFFFF;", "&#31;&#0;&#xFFFFFFF;"),
        ("&nbsp;&;&#;&#x;&#xG1; & AT&T", "&nbsp;&;&#;&#x;&#xG1; & AT&T"),
        ("&amp;lt;", "&lt;"),
        ("a &lt; b &gt; &quot;&apos;&amp;", "a < b > \"'&"),
        ("", ""),
    ],
)
def test_entities_become_characters_and_never_marks(machine, xml, text):
    assert decoded(machine, xml) == text


def test_the_caller_says_what_stands_for_the_letters_that_are_marks(machine):
    marks = AM.join(["u", "ue", "y", "th", "y"])

    assert decoded(machine, "M&#252;ller&#xFE;&#255;", marks) == "Muellerthy"


def test_a_field_may_be_decoded_in_its_own_place(machine):
    from basic import Cell

    cell = Cell("a &amp; b")
    machine.call("OSTREL.TEXT", cell, cell, "")

    assert cell.value == "a & b"


# -- tags

XML = (
    f'<QBXML>{AM}<CustomerRet>{AM}<Name>One</Name>{AM}<NameSuffix>x</NameSuffix>{AM}<Name/>{AM}'
    f'</CustomerRet>{AM}<CustomerRetired/>{AM}<CustomerRet><Name a="1">Two</Name></CustomerRet>'
)


@pytest.mark.parametrize(
    "name, n, text",
    [("Name", 1, "One"), ("Name", 2, ""), ("Name", 3, "Two"), ("Name", 4, ""), ("Nam", 1, ""),
     ("NameSuffix", 1, "x"), ("Nothing", 1, "")],
)
def test_the_nth_element_of_a_name(machine, name, n, text):
    assert machine.call("OSTREL.TAG", XML, name, n, "")[3] == text


def each(machine, xml, name):
    place, found = "", []
    while True:
        _, _, place, item = machine.call("OSTREL.EACH", xml, name, place, "")
        if item == "":
            return found
        found.append(item)


def test_each_object_once_whatever_its_size_and_place(machine):
    objects = [
        f"<CustomerRet><Name>{number}</Name>{'x' * size}</CustomerRet>"
        for number, size in enumerate([0, 7960, 3, 7970, 16000, 40000, 1, 0, 7999, 12])
    ]
    for shift in range(7900, 8020):
        xml = "y" * shift + f"{AM}<CustomerRetired/>".join(objects) + AM

        assert each(machine, xml, "CustomerRet") == objects


def test_no_object_and_an_object_without_an_end(machine):
    assert each(machine, "", "A") == []
    assert each(machine, "<B/>", "A") == []
    assert each(machine, "<A>1</A><A>2", "A") == ["<A>1</A>"]
    assert each(machine, "<A/><A >2</A >", "A") == ["<A/>"]


def test_the_way_through_a_response_takes_time_by_its_size_only(machine):
    def seconds(count):
        xml = ("<CustomerRet><Name>Quince</Name>" + "x" * 1500 + "</CustomerRet>") * count
        began = time.process_time()
        assert len(each(machine, xml, "CustomerRet")) == count
        return time.process_time() - began

    few, many = min(seconds(200) for _ in range(3)), min(seconds(1600) for _ in range(2))

    assert many < 8 * few * 2.5


# -- status

def status(machine, xml, n=1):
    return tuple(machine.call("OSTREL.STATUS", xml, n, "", "", "")[2:])


RESPONSE = (
    '<QBXML><A requestID="1" statusCode="0" statusSeverity="Info" statusMessage="Status OK">'
    '<Name>fake statusCode="9" statusSeverity="Error"</Name></A>'
    '<B requestID="2" statusCode="3100" statusSeverity="Error" statusMessage="The name &quot;A&amp;B'
    '&quot; is in use."/></QBXML>'
)


def test_the_status_of_each_message(machine):
    assert status(machine, RESPONSE) == ("0", "Info", "Status OK")
    assert status(machine, RESPONSE, 2) == ("3100", "Error", 'The name "A&B" is in use.')
    assert status(machine, RESPONSE, 3) == ("", "", "")
    assert status(machine, "") == ("", "", "")


# -- dates

@pytest.mark.parametrize(
    "day, text",
    [(0, "1967-12-31"), (1, "1968-01-01"), (60, "1968-02-29"), (61, "1968-03-01"),
     (732, "1970-01-01"), (11749, "2000-03-01"), (11748, "2000-02-29"), (14764, "2008-06-02"),
     (24837, "2035-12-31"), (-1, "1967-12-30")],
)
def test_a_date_as_quickbooks_writes_it(machine, day, text):
    assert machine.call("OSTREL.DAY", day, "")[1] == text


# -- what to do

def test_each_known_number_has_a_cause_and_a_cure(machine):
    for number in [-6, -1, 2, 3, 57, *range(1024, 1073), 198330]:
        err = machine.call("OSTREL.ERR", number, "", 1, "")[3].split(AM)

        assert err[0] == str(number) and err[1] and "has no text" not in err[1] and err[3]


def test_an_unknown_number_may_have_been_carried_out(machine):
    assert machine.call("OSTREL.ERR", 4711, "", 1, "")[3].split(AM)[2] == "1"
