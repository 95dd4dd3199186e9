"""The kelfractionint fraction control for PyQt6 applications.

``fractioni`` is a QWidget that shows, edits and computes exactly with one fraction (a whole
part carrying the sign, a numerator and a denominator, all held as text); ``fractiondelegate``
shows and edits fractions in item views; ``modfracglobal`` is the fraction engine, whose
records are lists of three str (None for no result). A member the control refuses raises
``AutomationError`` with the automation error's ``number`` and ``description``.
"""

import os as _os
import sys as _sys


class AutomationError(RuntimeError):
    """An automation error of the component: ``number`` (380, 11, 9, ...) and its standard
    ``description`` ("Invalid property value", ...)."""

    def __init__(self, number, description):
        super().__init__(number, description)
        self.number = number
        self.description = description

    def __str__(self):
        return f"error {self.number}: {self.description}"


from .kelfractionint import kelfractionint as _classes, modfracglobal  # noqa: E402

fractioni = _classes.fractioni
fractiondelegate = _classes.fractiondelegate
fractionspeechmodel = _classes.fractionspeechmodel
propertybag = _classes.propertybag
memorypropertybag = _classes.memorypropertybag
settingspropertybag = _classes.settingspropertybag
messagecapture = _classes.messagecapture
installmessageboxsink = _classes.installmessageboxsink
ambient = _classes.ambient
propertypage = _classes.propertypage
fractionvalues = _classes.fractionvalues
fractionappearance = _classes.fractionappearance
propertypagedialog = _classes.propertypagedialog
frmAbout = _classes.frmAbout
twipsperpixelx = _classes.twipsperpixelx
twipsperpixely = _classes.twipsperpixely
twipstopixels = _classes.twipstopixels
pixelstotwips = _classes.pixelstotwips
fromoleColor = _classes.fromoleColor
tooleColor = _classes.tooleColor
# kelfractionint.kelfractionint is the C++ namespace, as in kelfractionint::fractioni: compiled
# forms name the control and its enumerations that way.
kelfractionint = _classes

# Forms saved by Qt Designer name the control kelfractionint::fractioni in fractioni.h; the
# widget plugin beside this file tells PyQt6's uic where that class lives.
UIC_PLUGIN_DIR = _os.path.join(_os.path.dirname(__file__), "uic")


def _registeruicplugin():
    try:
        from PyQt6 import uic
    except ImportError:
        return
    if UIC_PLUGIN_DIR not in uic.widgetPluginPath:
        uic.widgetPluginPath.append(UIC_PLUGIN_DIR)


_registeruicplugin()


def _printexception(kind, value, traceback):
    _sys.__excepthook__(kind, value, traceback)


# PyQt6 ends the process when an exception escapes a Python slot while sys.excepthook is the
# default one; with the control's errors raised as exceptions, a slot's error is printed instead.
if _sys.excepthook is _sys.__excepthook__:
    _sys.excepthook = _printexception


def _releasemessagesink():
    # A Python sink must not outlive the interpreter that runs it.
    modfracglobal.setmessagesink(None)


import atexit as _atexit  # noqa: E402

_atexit.register(_releasemessagesink)
