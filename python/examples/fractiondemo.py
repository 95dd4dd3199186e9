#!/usr/bin/python3
"""The fraction control from Python: two operands, a result, the operations and an event log.

    /usr/bin/python3 python/examples/fractiondemo.py [--picture OUT.png]

With --picture (or without a display) it types two operands, runs a few operations, writes a
picture of the window and prints its path.
"""
import argparse
import os
import sys

if not (os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")):
    os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")

from PyQt6.QtCore import Qt  # noqa: E402
from PyQt6.QtWidgets import (QApplication, QCheckBox, QGridLayout, QHBoxLayout, QLabel,  # noqa: E402
                             QPlainTextEdit, QPushButton, QSpinBox, QVBoxLayout, QWidget)

import kelfractionint  # noqa: E402
from kelfractionint import AutomationError, fractioni  # noqa: E402


class demowindow(QWidget):
    def __init__(self):
        super().__init__()
        self.setWindowTitle("Fractions in Python")
        self.first, self.second, self.result = fractioni(self), fractioni(self), fractioni(self)
        self.second.loadfraction(["-1", "1", "2"])
        self.selected = self.first
        self.log = QPlainTextEdit(readOnly=True)
        self.places = QSpinBox(minimum=0, maximum=9, value=4)
        self.autoreplace = QCheckBox("Autoreplace")
        self.autoreplace.toggled.connect(lambda on: [c.setAutoreplace(on) for c in self.controls()])

        operands = QGridLayout()
        for column, (caption, control) in enumerate(
                (("first", self.first), ("second", self.second), ("result", self.result))):
            operands.addWidget(QLabel(caption), 0, column, Qt.AlignmentFlag.AlignHCenter)
            operands.addWidget(control, 1, column, Qt.AlignmentFlag.AlignHCenter)
            self.listen(caption, control)
        single = QGridLayout()
        for i, (caption, run) in enumerate([
                ("reduce", fractioni.reduce), ("to mixed", fractioni.fractomixed),
                ("to improper", fractioni.mixedtofrac), ("invert", fractioni.invert),
                ("expand by 2", lambda c: c.expand(2)),
                ("to decimal", lambda c: c.fractodecimal(self.places.value())),
                ("to percent", lambda c: c.fractopercent(self.places.value())),
                ("to fraction", fractioni.decimaltofrac), ("nearest 64th", lambda c: c.approximate(64)),
                ("change sign", lambda c: c.changesign().fractiontext())]):
            single.addWidget(self.button(caption, lambda run=run: run(self.selected)), i // 5, i % 5)
        pair = QHBoxLayout()
        for caption, run in (("+", fractioni.addtwofractions), ("-", fractioni.subtractfractions),
                             ("x", fractioni.multiplytwofractions), (":", fractioni.dividefractions)):
            pair.addWidget(self.button(caption, lambda run=run: self.result.loadfraction(
                run(self.result, self.first, self.second)) and self.result.fractiontext()))
        pair.addWidget(self.autoreplace)
        pair.addWidget(QLabel("decimals"))
        pair.addWidget(self.places)

        layout = QVBoxLayout(self)
        for part in (operands, single, pair):
            layout.addLayout(part)
        layout.addWidget(self.log)
        self.resize(640, 460)

    def controls(self):
        return (self.first, self.second, self.result)

    def write(self, text):
        self.log.appendPlainText(text)

    def listen(self, name, control):
        control.fractionvaluechanged.connect(
            lambda os, ow, on, od, ns, nw, nn, nd:
                self.write(f"{name}: {os} {[ow, on, od]} -> {ns} {[nw, nn, nd]}"))
        control.MouseDown.connect(lambda button, shift, x, y: self.select(name, control))
        for signal in ("wholepartclick", "numeratorclick", "denominatorclick", "separatorclick"):
            getattr(control, signal).connect(lambda signal=signal: self.write(f"{name}: {signal}"))

    def select(self, name, control):
        self.selected = control
        self.write(f"{name} selected")

    def button(self, caption, run):
        button = QPushButton(caption)
        button.clicked.connect(lambda: self.run(caption, run))
        return button

    def run(self, caption, operation):
        try:
            self.write(f"{caption}: {operation()}")
        except AutomationError as error:
            self.write(f"{caption}: {error}")


def scripted(window, picture):
    window.first.loadfractiontext("2 3/8")
    window.second.loadfractiontext("-1/6")
    window.run("reduce", window.first.reduce)
    window.run("+", lambda: window.result.loadfraction(
        window.result.addtwofractions(window.first, window.second)) and window.result.fractiontext())
    window.run("to mixed", lambda: window.result.loadfraction(window.result.fractomixed()).fractiontext())
    empty = fractioni().loadfraction(["", "", ""])
    window.run(":", lambda: window.result.dividefractions(window.first, empty))
    window.first.loadfraction(["0.3125", "", ""])
    window.run("nearest 64th", lambda: window.first.approximate(64))
    window.grab().save(picture)
    print(picture)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--picture", help="run a short scripted session and save a picture")
    args = parser.parse_args()
    app = QApplication(sys.argv)
    kelfractionint.installmessageboxsink()
    window = demowindow()
    window.show()
    if args.picture or os.environ.get("QT_QPA_PLATFORM") == "offscreen":
        kelfractionint.modfracglobal.setmessagesink(lambda text: window.write(f"message: {text}"))
        scripted(window, args.picture or "fractiondemo-python.png")
        return 0
    return app.exec()


if __name__ == "__main__":
    sys.exit(main())
