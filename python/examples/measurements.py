#!/usr/bin/python3
"""A cut list of lengths in inches in a QTableView: the fractions shown and edited in place by
fractiondelegate, their decimals through the engine and the running sum to the nearest 64th.

    /usr/bin/python3 python/examples/measurements.py [--rows N] [--picture OUT.png]

With --picture (or without a display) it edits one cell, writes a picture of the window and
prints its path.
"""
import argparse
import itertools
import os
import sys
from fractions import Fraction

if not (os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")):
    os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")

from PyQt6.QtCore import QAbstractTableModel, QModelIndex, Qt, pyqtSignal  # noqa: E402
from PyQt6.QtTest import QTest  # noqa: E402
from PyQt6.QtWidgets import QApplication, QLabel, QLineEdit, QTableView, QVBoxLayout, QWidget  # noqa: E402

from kelfractionint import fractiondelegate, fractioni, modfracglobal  # noqa: E402

EDIT, DISPLAY = Qt.ItemDataRole.EditRole, Qt.ItemDataRole.DisplayRole


def record(value):
    """A non-negative Fraction as the engine's mixed record."""
    return modfracglobal.strfractomixed(["", str(value.numerator), str(value.denominator)])


class measurementmodel(QAbstractTableModel):
    totalchanged = pyqtSignal(str)

    def __init__(self, rows):
        super().__init__()
        sizes = itertools.cycle((Fraction(37, 8), Fraction(12), Fraction(5, 16), Fraction(93, 64)))
        self.lengths = [next(sizes) + row % 7 for row in range(rows)]
        self.sums = list(itertools.accumulate(self.lengths))

    def rowCount(self, parent=QModelIndex()):
        return 0 if parent.isValid() else len(self.lengths)

    def columnCount(self, parent=QModelIndex()):
        return 0 if parent.isValid() else 3

    def headerData(self, section, orientation, role=DISPLAY):
        if orientation == Qt.Orientation.Horizontal and role == DISPLAY:
            return ("length", "decimal", "running sum")[section]
        return super().headerData(section, orientation, role)

    def flags(self, index):
        editable = Qt.ItemFlag.ItemIsEditable if index.column() == 0 else Qt.ItemFlag.NoItemFlags
        return super().flags(index) | editable

    def data(self, index, role=DISPLAY):
        if role not in (EDIT, DISPLAY):
            return None
        value = self.lengths[index.row()]
        if index.column() == 0:
            return record(value) if role == EDIT else modfracglobal.strformatfraction(record(value))
        if index.column() == 1:
            return modfracglobal.strfractodecimal(record(value), 4)[0]
        return self.totaltext(index.row())

    def totaltext(self, row=-1):
        total = self.sums[row]
        nearest = modfracglobal.strapproximate(["", str(total.numerator), str(total.denominator)], 64)
        return modfracglobal.strformatfraction(nearest)

    def setData(self, index, value, role=EDIT):
        parsed = value if isinstance(value, list) else modfracglobal.strparsefraction(str(value))
        if index.column() != 0 or not parsed or parsed[0].startswith("-") or not parsed[2]:
            return False
        whole, numerator, denominator = (int(part or 0) for part in parsed)
        self.lengths[index.row()] = whole + Fraction(numerator, int(denominator) or 1)
        start = self.sums[index.row() - 1] if index.row() else 0
        self.sums[index.row():] = list(itertools.accumulate(self.lengths[index.row():], initial=start))[1:]
        self.dataChanged.emit(index, self.index(len(self.lengths) - 1, 2))
        self.totalchanged.emit(self.totaltext())
        return True


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rows", type=int, default=10000)
    parser.add_argument("--picture", help="edit one cell and save a picture")
    args = parser.parse_args()
    app = QApplication(sys.argv)
    modfracglobal.setnumberlocale(modfracglobal.numberlocale())
    window = QWidget()
    window.setWindowTitle("Measurements")
    model = measurementmodel(args.rows)
    table = QTableView()
    table.setModel(model)
    table.setItemDelegateForColumn(0, fractiondelegate(table))
    total = QLabel(f"total: {model.totaltext()}")
    model.totalchanged.connect(lambda text: total.setText(f"total: {text}"))
    layout = QVBoxLayout(window)
    layout.addWidget(table)
    layout.addWidget(total)
    window.resize(460, 360)
    window.show()
    if args.picture or os.environ.get("QT_QPA_PLATFORM") == "offscreen":
        table.edit(model.index(2, 0))
        editor = table.findChild(fractioni)
        editor.loadfraction(["1", "3", "4"])
        QTest.keyClick(editor.findChild(QLineEdit, "numerator"), Qt.Key.Key_Return)
        picture = args.picture or "measurements-python.png"
        window.grab().save(picture)
        print(picture)
        return 0
    return app.exec()


if __name__ == "__main__":
    sys.exit(main())
