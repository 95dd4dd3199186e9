# The engine through Python: records as lists of three str, None for no result, errors through
# the message sink, lists passed by reference changed in place.
import sys

import pytest

from kelfractionint import AutomationError, modfracglobal as m


@pytest.mark.parametrize("routine, args, expected, message", [
    ("strreduce", (["", "6", "8"],), ["", "3", "4"], None),
    ("strreduce", (("", "6", "8"),), ["", "3", "4"], None),
    ("straddfractions", ([["1", "1", "2"], ("", "1", "3")],), ["", "11", "6"], None),
    ("straddfractions", ([],), None, "Subscript out of range"),
    ("strparsefraction", ("1⅔",), ["1", "2", "3"], None),
    ("strformatfraction", (["-1", "2", "3"],), "-1 2/3", None),
    ("strapproximate", (["3.14159", "", ""], 1000), ["3", "16", "113"], None),
    ("parttext", (-42,), "-42", None),
    ("partvalue", ("x",), 0, "Type mismatch"),
], ids=lambda value: value if isinstance(value, str) else None)
def test_routines(pinned, routine, args, expected, message):
    assert getattr(m, routine)(*args) == expected
    assert pinned == ([message] if message else [])


@pytest.mark.parametrize("routine, argument, result, after", [
    ("listlcm", [-4, 6], 12, [4, 6]),
    ("modbymin", [7, 3], [1, 3], [1, 3]),
    ("strmultiplyfractions", [["1", "1", "2"], ["", "1", "3"]], ["", "3", "6"], [["", "3", "2"], ["", "1", "3"]]),
])
def test_lists_passed_by_reference_change_in_place(routine, argument, result, after):
    assert getattr(m, routine)(argument) == result
    assert argument == after
    frozen = tuple(after)
    getattr(m, routine)(frozen)
    assert frozen == tuple(after)


@pytest.mark.parametrize("routine, args", [
    ("strreduce", (["", "1", "2", "3"],)),
    ("strreduce", ("abc",)),
    ("strreduce", (["", 1, "2"],)),
    ("listgcd", ([2 ** 31],)),
    ("strmultiplyfractions", ([["", "1"]],)),
])
def test_malformed_arguments_raise_typeerror(routine, args):
    with pytest.raises(TypeError):
        getattr(m, routine)(*args)


@pytest.mark.parametrize("call, number", [
    (lambda: m.texttolong("3e10"), 6),
    (lambda: m.roundtodecimals(1.5, -1), 5),
])
def test_number_rules_raise_automation_errors(call, number):
    with pytest.raises(AutomationError) as raised:
        call()
    assert raised.value.number == number


def test_number_locale_and_sink(pinned, monkeypatch):
    comma = m.numberlocale()
    comma.decimal, comma.grouping = ",", "."
    m.setnumberlocale(comma)
    assert m.currentnumberlocale().decimal == ","
    assert m.texttodouble("1.234,5") == 1234.5
    failures = []

    def failing(text):
        failures.append(text)
        raise ValueError(text)

    unraisable = []
    monkeypatch.setattr(sys, "unraisablehook", unraisable.append)
    m.setmessagesink(failing)
    assert m.strparsefraction("abc") is None
    assert failures == ["Type mismatch"]
    assert unraisable[0].exc_type is ValueError
