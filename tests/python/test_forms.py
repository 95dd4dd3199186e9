# Forms saved by Qt Designer: loaded with uic.loadUi and compiled as pyuic6 does, both give the
# control with the values and enumerations the form holds.
import io
import pathlib

from PyQt6 import uic
from PyQt6.QtWidgets import QWidget

import kelfractionint

FORM = pathlib.Path(__file__).parents[1] / "designer" / "roundtrip.ui"


def values(control):
    return (type(control), control.FracType(), control.Borderstyle(), control.Wholepartvalue(),
            control.Numeratorvalue(), control.Numeratorbackcolor(), control.Font().pointSize())


def test_a_designer_form_loads_and_compiles(qtbot):
    loaded = uic.loadUi(str(FORM))
    qtbot.addWidget(loaded)
    code = io.StringIO()
    uic.compileUi(str(FORM), code)
    scope = {}
    exec(code.getvalue(), scope)
    compiled = QWidget()
    qtbot.addWidget(compiled)
    scope["Ui_roundtrip"]().setupUi(compiled)
    expected = (kelfractionint.fractioni, kelfractionint.fractioni.fractiontype.fracAlgebraic,
                kelfractionint.fractioni.fracBorderstyle.borderstylefixed, "-x", "2y", 65535, 12)
    for form in (loaded, compiled):
        assert values(form.findChild(kelfractionint.fractioni, "fraction")) == expected
        assert not form.findChild(kelfractionint.fractioni, "folded").Fracpartvisible()
