# What the binding adds to the control: errors as exceptions, records in place, signals with
# their arguments, C++-created widgets as their class, ownership, virtuals reaching Python.
import gc
import sys

import pytest
from PyQt6.QtCore import QSize, Qt
from PyQt6.QtGui import QStandardItemModel
from PyQt6.QtWidgets import QHBoxLayout, QLineEdit, QTableView, QWidget

import kelfractionint
from kelfractionint import AutomationError, fractioni


@pytest.mark.parametrize("call, number, description", [
    (lambda f: f.setWholepartvalue("x"), 380, "Invalid property value"),
    (lambda f: f.dividefractions(f, fractioni(f).loadfraction(["", "", ""])), 11, "Division by zero"),
    (lambda f: f.loadfraction(["1", "2"]), 9, "Subscript out of range"),
    (lambda f: f.Container(), 91, "Object variable or With block variable not set"),
    (lambda f: kelfractionint.propertypage.writeproperty(f, "Nosuchproperty", 1), 438,
     "Object doesn't support this property or method"),
])
def test_errors_raise_in_the_caller(fraction, call, number, description):
    with pytest.raises(AutomationError) as raised:
        call(fraction)
    assert (raised.value.number, raised.value.description) == (number, description)
    assert fraction.fractiontext() == "4 1/7"


def test_loadfraction_trims_a_list_in_place_and_returns_the_control(fraction):
    record = [" 1", "3 ", "8"]
    assert fraction.loadfraction(record) is fraction
    assert record == ["1", "3", "8"]
    assert fraction.loadfraction((" 2", "1", "4")) is fraction
    assert (fraction.Wholepartvalue(), fraction.fractiontext()) == ("2", "2 1/4")


def test_signals_carry_their_arguments(fraction, qtbot):
    changes, names, values = [], [], []
    fraction.fractionvaluechanged.connect(lambda *args: changes.append(args))
    fraction.propertychanged.connect(names.append)
    fraction.valueChanged.connect(values.append)
    fraction.changesign()
    fraction.setFractionslash(False)
    assert changes == [("+", "4", "1", "7", "-", "-4", "1", "7"), ("", "-4", "1", "7", "-", "-4", "1", "7")]
    assert "Fractionslash" in names
    assert values == ["-4 1/7"] and fraction.value() == "-4 1/7"
    with qtbot.waitSignal(fraction.MouseDown) as press:
        qtbot.mousePress(fraction, Qt.MouseButton.LeftButton, Qt.KeyboardModifier.ShiftModifier)
    button, shift, x, y = press.args
    assert (button, shift, type(x), type(y)) == (1, 1, float, float)


@pytest.mark.qt_no_exception_capture
def test_an_error_in_a_python_slot_is_printed_not_fatal(fraction, capsys):
    fraction.fractionvaluechanged.connect(lambda *args: fraction.setWholepartvalue("x"))
    fraction.setNumeratorvalue("2")
    assert "error 380: Invalid property value" in capsys.readouterr().err
    assert sys.excepthook is not sys.__excepthook__


def test_children_come_back_as_their_class_and_follow_qt_ownership(form):
    kept = fractioni(form)
    kept.setObjectName("kept")
    loose = fractioni()
    destroyed = []
    loose.destroyed.connect(lambda: destroyed.append(True))
    del kept
    gc.collect()
    found = form.findChild(fractioni, "kept")
    assert type(found) is fractioni and found.parent() is form
    assert type(found.findChild(QLineEdit, "numerator")) is QLineEdit
    del loose
    gc.collect()
    assert destroyed == [True]


class bigfraction(fractioni):
    def sizeHint(self):
        return QSize(320, 90)


class listbag(kelfractionint.propertybag):
    def __init__(self):
        super().__init__()
        self.entries = {}

    def keys(self):
        return list(self.entries)

    def load(self, name):
        return name in self.entries, self.entries.get(name)

    def store(self, name, value):
        self.entries[name] = value

    def remove(self, name):
        self.entries.pop(name, None)


def test_cxx_calls_reach_python_overrides(form):
    layout = QHBoxLayout(form)
    layout.addWidget(bigfraction())
    assert layout.sizeHint().width() >= 320
    bag = listbag()
    source = fractioni(form)
    source.setWholepartvalue("-2")
    source.WriteProperties(bag)
    assert bag.entries["Wholepartvalue"] == "-2"
    assert fractioni(bag, form).fractiontext() == "-2 1/7"


def test_the_delegate_edits_python_lists_in_a_table(form, qtbot):
    model = QStandardItemModel(1, 1)
    model.setData(model.index(0, 0), ["-1", "2", "3"], Qt.ItemDataRole.EditRole)
    view = QTableView(form)
    view.setModel(model)
    view.setItemDelegate(kelfractionint.fractiondelegate(view))
    form.show()
    assert kelfractionint.fractiondelegate.fractionof(model.index(0, 0)) == ["-1", "2", "3"]
    view.edit(model.index(0, 0))
    editor = view.findChild(fractioni)
    assert editor.fractiontext() == "-1 2/3"
    editor.loadfraction(["", "5", "8"])
    qtbot.keyClick(editor.findChild(QLineEdit, "numerator"), Qt.Key.Key_Return)
    assert model.data(model.index(0, 0), Qt.ItemDataRole.EditRole) == ["", "5", "8"]
