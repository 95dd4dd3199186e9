# Shared set-up of the Python binding tests: offscreen, pinned number rules, captured messages.
import os

os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")

import pytest  # noqa: E402

import kelfractionint  # noqa: E402
from kelfractionint import modfracglobal  # noqa: E402


@pytest.fixture(autouse=True)
def pinned(qapp):
    # The C locale's separators; messages collected instead of shown.
    modfracglobal.setnumberlocale(modfracglobal.numberlocale())
    messages = []
    modfracglobal.setmessagesink(messages.append)
    yield messages
    modfracglobal.setmessagesink(None)


@pytest.fixture
def form(qtbot):
    from PyQt6.QtWidgets import QWidget
    widget = QWidget()
    qtbot.addWidget(widget)
    return widget


@pytest.fixture
def fraction(form):
    return kelfractionint.fractioni(form)
