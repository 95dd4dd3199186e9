# What a screen reader receives from the fraction control over the real AT-SPI stack, in a
# private X server and D-Bus session: listens as a screen reader does (first: Qt sends only the
# events subscribed when it connects), starts the form, types "1 2/3" and "-3 1/4" as a user would
# and checks names, descriptions, values, states and events. Exit 77 where the bus cannot start.
import os, signal, subprocess, sys, time  # noqa: E401

try:
    import dbus
    subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], stderr=subprocess.DEVNULL)
    for attempt in range(50):
        try:  # the client library aborts the process without a bus: ask before loading it
            bus = dbus.SessionBus().get_object("org.a11y.Bus", "/org/a11y/bus")
            dbus.bus.BusConnection(str(bus.GetAddress(dbus_interface="org.a11y.Bus"))).close()
            break
        except dbus.DBusException:
            if attempt == 49:
                raise
            time.sleep(0.1)
    import pyatspi
    from gi.repository import GLib
except Exception as error:
    sys.exit(print("SKIP: the AT-SPI bus cannot start here: %s" % error) or 77)

failures, events = [], []
CTRL, ALT, TAB = 37, 64, 0xFF09  # X key codes of the left Control and Alt keys, the Tab key symbol


def typed(keys, held=None):
    # Characters or key symbols, each with the key of code held down; then the events come in.
    for key in keys:
        strokes = [(held, pyatspi.KEY_PRESS), (key, pyatspi.KEY_SYM), (held, pyatspi.KEY_RELEASE)]
        for code, kind in strokes if held else strokes[1:2]:
            pyatspi.Registry.generateKeyboardEvent(ord(code) if isinstance(code, str) else code, None, kind)
        loop = GLib.MainLoop()
        GLib.timeout_add(250, loop.quit)
        loop.run()


def heard(what, expected):
    # The focused object, the parts that received the focus, and the last announcement: a new
    # description of the focused part, then a notification that carries the words.
    found = pyatspi.findDescendant(window, lambda o: o.getState().contains(pyatspi.STATE_FOCUSED))
    actual = ((found.name, found.queryText().getText(0, -1), found.description),
              [e[1] for e in events if e[0].endswith("focused") and e[2] == 1],
              [e[1] for e in events if e[0].endswith("description") or e[0].endswith("showing") and e[2]][-2:])
    if actual != expected:
        failures.append("%s: got %r, expected %r" % (what, actual, expected))
    del events[:]


pyatspi.Registry.registerEventListener(lambda e: events.append((e.type, e.source.name, e.detail1)),
                                       "object:state-changed:focused", "object:state-changed:showing",
                                       "object:property-change:accessible-description",
                                       "object:text-changed")
form = subprocess.Popen([sys.argv[1]], env=dict(os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1"))
signal.signal(signal.SIGALRM, lambda *_: sys.exit("FAIL: the screen reader's calls did not end"))
signal.alarm(40)
try:
    while not any(e[0].endswith("focused") for e in events):
        GLib.MainContext.default().iteration(True)
    events[:] = [e for e in events if e[0].endswith("focused")]  # not the form's widgets shown
    window = next(a for a in pyatspi.Registry.getDesktop(0) if a and a.name == "fractionform")[0]
    control = next(c for c in window if c.getRoleName() == "panel")
    # setFocus reaches the cleared control's only part shown; the grip (resizing is on) is no child.
    heard("focus on a cleared control", (("Amount, whole part", "", "zero"), ["Amount, whole part"], []))
    if (control.name, [c.name for c in control]) != ("Amount", ["Amount, whole part"]):
        failures.append("the control and its children: %r" % [control.name, [c.name for c in control]])
    typed("1 2/3")
    heard("1 2/3", (("Amount, denominator", "3", "one and two thirds"), ["Amount, numerator", "Amount, denominator"],
                    ["Amount, denominator", "one and two thirds"]))
    typed(" ")  # refused by the denominator: no text comes and goes to be echoed, what it takes is said
    if events != [("object:state-changed:showing", "denominator takes digits only", 1)]:
        failures.append("a refused space: %r" % events)
    del events[:]
    typed([TAB])
    typed("a", ALT)  # back from the spin box with the label's mnemonic
    heard("the mnemonic", (("Amount, whole part", "1", "one and two thirds"), ["Price:", "Amount, whole part"], []))
    typed("a", CTRL)
    typed("-3 1/4")
    heard("-3 1/4", (("Amount, denominator", "4", "minus three and one quarter"),
                     ["Amount, numerator", "Amount, denominator"], ["Amount, denominator", "minus three and one quarter"]))
    # The value as a number; the minus sign that speech says, one attribute run over the whole
    # text and word lookups that end.
    whole = control[0].queryText()
    actual = [control.queryValue().currentValue, whole.getText(0, -1), list(whole.getAttributeRun(0, False)[1:]),
              whole.getTextAtOffset(0, pyatspi.TEXT_BOUNDARY_WORD_START)[0],
              whole.getTextBeforeOffset(2, pyatspi.TEXT_BOUNDARY_WORD_START)[0]]
    if actual != [-3.25, "\u22123", [0, 2], "\u22123", ""]:
        failures.append("the whole part's text and the value: %r" % actual)
except Exception as error:  # a missing interface stops the run
    failures.append("stopped: %r" % error)
finally:
    form.terminate()

print("\n".join("FAIL: " + f for f in failures) or "PASS: the screen reader's view of the form")
sys.exit(1 if failures else 0)
