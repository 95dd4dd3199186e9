"""What a screen reader receives from the fraction control over the real AT-SPI stack.

Run by atspi.sh inside a private X server and D-Bus session. Starts the accessibility bus, listens
as a screen reader does (listeners first: Qt sends only the events subscribed when it connects),
starts the form, types "1 2/3" and "-3 1/4" as a user would and checks the names, descriptions,
values, states and events. Exit 77 when the accessibility bus cannot start.
"""
import os
import signal
import subprocess
import sys
import time

FORM = sys.argv[1]
SKIP = 77
CTRL, SHIFT = 37, 50  # X key codes of the left Control and Shift keys in the server's keymap

launcher = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def accessibilitybus():
    """The accessibility bus's address once it answers, or the reason it does not."""
    import dbus
    reason = "no answer"
    for _ in range(50):
        try:
            address = dbus.SessionBus().get_object("org.a11y.Bus", "/org/a11y/bus").GetAddress(
                dbus_interface="org.a11y.Bus")
            dbus.bus.BusConnection(str(address)).close()
            return str(address), None
        except Exception as error:
            reason = str(error)
            time.sleep(0.1)
    return None, reason


address, reason = accessibilitybus()
if address is None:
    # The client library aborts the process without a bus: ask before loading it.
    print("SKIP: the AT-SPI bus cannot start here: %s" % reason)
    launcher.terminate()
    sys.exit(SKIP)
import pyatspi  # noqa: E402
from gi.repository import GLib  # noqa: E402

failures = []
events = []


def check(what, actual, expected):
    if actual != expected:
        failures.append("%s: got %r, expected %r" % (what, actual, expected))


def listen(event):
    try:
        events.append((event.type, event.source.name, event.detail1, event.any_data))
    except Exception:  # the source died meanwhile
        pass


pyatspi.Registry.registerEventListener(
    listen, "object:state-changed:focused", "object:property-change:accessible-description",
    "object:property-change:accessible-value", "object:text-changed")


def pump(seconds=0.25):
    end = time.time() + seconds
    context = GLib.MainContext.default()
    while time.time() < end:
        while context.pending():
            context.iteration(False)
        time.sleep(0.02)


def typed(keys):
    """Types keys: characters, or (keycode, key) for a key held with a modifier."""
    for key in keys:
        if isinstance(key, tuple):
            pyatspi.Registry.generateKeyboardEvent(key[0], None, pyatspi.KEY_PRESS)
            pyatspi.Registry.generateKeyboardEvent(key[1], None, pyatspi.KEY_SYM)
            pyatspi.Registry.generateKeyboardEvent(key[0], None, pyatspi.KEY_RELEASE)
        else:
            pyatspi.Registry.generateKeyboardEvent(key if isinstance(key, int) else ord(key), None, pyatspi.KEY_SYM)
        pump()


def timeout(*_):
    raise TimeoutError("a text lookup never ended")


signal.signal(signal.SIGALRM, timeout)
TAB, UP, LEFT = 0xFF09, 0xFF52, 0xFF51

env = dict(os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_ACCESSIBILITY="1")
form = subprocess.Popen([FORM], env=env)
try:
    app = None
    for _ in range(100):
        pump(0.1)
        app = next((a for a in pyatspi.Registry.getDesktop(0) if a and a.name == os.path.basename(FORM)), None)
        if app and any(e[0] == "object:state-changed:focused" and e[2] == 1 for e in events):
            break
    if app is None:
        raise RuntimeError("the form never appeared on the accessibility bus")
    window = app[0]
    control = next(c for c in window if c.getRoleName() == "panel")

    def focused():
        """Name and text of the object that last received the focus."""
        source = [e for e in events if e[0] == "object:state-changed:focused" and e[2] == 1]
        found = pyatspi.findDescendant(window, lambda o: o.getState().contains(pyatspi.STATE_FOCUSED))
        check("focus event and focused state agree", source[-1][1] if source else None, found.name if found else None)
        return found

    # The cleared control shows its whole part only; the grip (resizing is on) is no child.
    check("control name", control.name, "Amount")
    check("control description", control.description, "zero")
    check("children shown", [c.name for c in control], ["Amount, whole part"])
    field = focused()
    check("first focus", field.name, "Amount, whole part")
    states = field.getState()
    check("focused field states", [states.contains(s) for s in (pyatspi.STATE_EDITABLE, pyatspi.STATE_FOCUSED)],
          [True, True])

    # "1 2/3": space and slash move on, each move announced with the part's name.
    events.clear()
    typed("1 2/3")
    field = focused()
    check("after 1 2/3, focus", field.name, "Amount, denominator")
    check("after 1 2/3, description of the focused field", field.description, "one and two thirds")
    check("moves announced", [e[1] for e in events if e[0] == "object:state-changed:focused" and e[2] == 1],
          ["Amount, numerator", "Amount, denominator"])
    described = [e[1] for e in events if e[0] == "object:property-change:accessible-description"]
    check("the focused field announces the new value", described[-1:], ["Amount, denominator"])
    check("value interface", round(control.queryValue().currentValue, 4), 1.6667)
    check("children shown", [c.name for c in control], ["Amount, whole part", "Amount, numerator", "Amount, denominator"])

    # A refused space leaves the denominator's text untouched: nothing to echo.
    events.clear()
    typed(" ")
    check("a refused space changes no text", [e for e in events if e[0].startswith("object:text-changed")], [])

    # To the spin box and back: the part and its content are heard again.
    typed([TAB])
    check("Tab leaves for the spin box", focused().getRoleName(), "spin button")
    typed([(SHIFT, TAB), UP])
    field = focused()
    check("back in the numerator", (field.name, field.queryText().getText(0, -1)), ("Amount, numerator", "2"))

    # "-3 1/4" over the whole part, selected with Ctrl+A: the sign is spoken.
    typed([LEFT, LEFT, (CTRL, ord("a"))] + list("-3 1/4"))
    field = focused()
    check("after -3 1/4, description", field.description, "minus three and one quarter")
    check("value interface", control.queryValue().currentValue, -3.25)
    whole = control[0].queryText()
    check("the whole part's text gives the minus sign", whole.getText(0, -1), "\u22123")
    # One attribute run over the whole text, and word lookups that end.
    check("attribute run", list(whole.getAttributeRun(0, False)[1:]), [0, 2])
    signal.alarm(5)
    check("word at the sign", whole.getTextAtOffset(0, pyatspi.TEXT_BOUNDARY_WORD_START)[0], "\u22123")
    check("word before the end", whole.getTextBeforeOffset(2, pyatspi.TEXT_BOUNDARY_WORD_START)[0], "")
    signal.alarm(0)
except Exception as error:  # an interface missing, or a lookup that never ended
    failures.append("stopped: %r" % error)
finally:
    form.terminate()
    form.wait()
    launcher.terminate()

for failure in failures:
    print("FAIL: " + failure)
print("%d checks failed" % len(failures) if failures else "PASS: the screen reader's view of the form")
sys.exit(1 if failures else 0)
