// Fractions as people type, paste and copy them into the control, and the arrow keys between its
// fields, with real focus.
#include "messageboxsink.h"
#include "testsupport.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QRegularExpression>

using kelfractionint::fractioni;
using testsupport::form;
using step = std::function<void(fractioni &)>;
struct typed { step setup; QString start, keys, value, focus, shown, events; };
struct pasted { QString clipboard, field, keys, value; bool loaded; const char *locked; };
Q_DECLARE_METATYPE(typed)
Q_DECLARE_METATYPE(pasted)

namespace {

// Types \a keys on whatever has the focus; "{Name}" is a named key such as {Home} or {Ctrl+V}.
void type(const QString &keys)
{
    static const QRegularExpression token(QStringLiteral("\\{([\\w+]+)\\}|."));
    for (auto it = token.globalMatch(keys); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (m.hasCaptured(1)) {
            const QKeyCombination named = QKeySequence::fromString(m.captured(1))[0];
            QTest::keyClick(static_cast<QWidget *>(nullptr), named.key(), named.keyboardModifiers());
        } else {
            QTest::keyClick(static_cast<QWidget *>(nullptr), m.captured(0).at(0).toLatin1());
        }
    }
}

} // namespace

class tst_fractionientry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); m_messages.take(); }

    void typing_data()
    {
        // The focus starts at the end of the field \a start, or where a click on the control's
        // corner puts it. Values and events are in evs() notation; \a shown names the fields shown
        // (w, n, d); "*" leaves events or fields unchecked.
        QTest::addColumn<typed>("row");
        const auto row = [](const char *name, step setup, const char *start, const QString &keys, const QString &value,
                            const char *focus, const char *events = "*", const char *shown = "*") {
            QTest::newRow(name) << typed{setup, start, keys, value, focus, shown, events};
        };
        // Arrow keys leave the value as it was loaded.
        const auto arrow = [&row](const char *name, const char *record, const char *start, const char *keys, const char *focus,
                                  const char *shown = "wnd", bool fracpartvisible = true) {
            row(name, [=](fractioni &c) { c.loadfraction(testsupport::rec(record)); c.setFracpartvisible(fracpartvisible); },
                start, keys, record, focus, "", shown);
        };
        const step none = [](fractioni &) {}, cleared = [](fractioni &c) { c.clearfraction(); };
        const step algebraic = [](fractioni &c) { c.setFracType(fractioni::fracAlgebraic); };
        row("mixed number into a cleared control", cleared, "click", "1 2/3", "1 2 3", "denominator");
        row("slash replaces the denominator", none, "numerator", "5/8", "4 15 8", "denominator");
        row("a decimal whole part keeps its space", cleared, "click", "2.5 ", "2.5 _ 1", "wholepart");
        // Algebraic texts may hold spaces and slashes: they are typed, not moves.
        row("an algebraic slash is typed", algebraic, "numerator", "5/8", "4 15/8 7", "numerator");
        row("one event per key, and the caret goes to the end", none, "numerator", "5{Home}39", "4 3159 7", "numerator",
            "+ 4 1 7 > + 4 15 7; + 4 15 7 > + 4 315 7; + 4 315 7 > + 4 3159 7");
        row("a refused minus raises two events without change", none, "numerator", "-", "4 1 7", "numerator",
            "+ 4 1 7 > + 4 1 7; + 4 1 7 > + 4 1 7");
        row("a letter the whole part refuses reaches the host as nothing", none, "wholepart", "q", "4 1 7", "wholepart", "");
        // A selection outlives the release of its keys, and what is typed next replaces it.
        const step load12 = [](fractioni &c) { c.loadfraction(testsupport::rec("4 12 7")); };
        row("Ctrl+A then a digit replaces the part", load12, "numerator", "{Ctrl+A}9", "4 9 7", "numerator");
        row("Shift+Home then a digit replaces the part", load12, "numerator", "{Shift+Home}9", "4 9 7", "numerator");
        row("Tab into the denominator selects it for the next digit", none, "numerator", "{Tab}3", "4 1 3", "denominator");
        // The next widget on the form must not receive the focus, nor the next key.
        const step neighbour = [](fractioni &c) { (new QLineEdit(c.parentWidget()))->show(); };
        row("Backspace over the last numerator digit keeps the focus in the control", neighbour, "numerator",
            "{Backspace}3", "43 _ 1", "wholepart");
        row("a space refused by the denominator never shows in it", none, "denominator", " ", "4 1 7", "denominator",
            "+ 4 1 7 > + 4 1 7");
        arrow("Right at the end of the whole part goes to the numerator", "4 1 7", "wholepart", "{Right}", "numerator");
        // A second press at the end leaves the field: the first only brought the caret there.
        arrow("Right inside the whole part only moves the caret", "45 1 7", "wholepart", "{Left}{Right}", "wholepart");
        arrow("Right stays while the fraction part may not be shown", "4 _ _", "wholepart", "{Right}", "wholepart", "w", false);
        arrow("Right from a decimal whole part stays", "0.5 _ _", "wholepart", "{Right}", "wholepart");
        arrow("Right at the end of an empty whole part hides it", "_ 1 7", "wholepart", "{Right}", "numerator", "nd");
        arrow("Right in an empty control keeps the focus in the whole part", "_ _ _", "wholepart", "{Right}", "wholepart");
        arrow("Left at the start of the numerator goes to the whole part", "4 1 7", "numerator", "{Home}{Left}", "wholepart");
        arrow("Left at the start of the denominator shows a hidden whole part", "_ 1 7", "denominator", "{Home}{Left}",
              "wholepart");
        arrow("Left inside the numerator only moves the caret", "4 12 7", "numerator", "{Left}{Left}", "numerator");
        arrow("Up from the denominator goes to the numerator", "4 1 7", "denominator", "{Up}", "numerator");
        arrow("Up from a percent whole part goes to the numerator", "50% _ _", "wholepart", "{Up}", "numerator");
        arrow("Down from the whole part goes to the denominator", "4 1 7", "wholepart", "{Down}", "denominator");
        arrow("Down from a decimal whole part stays", "0.5 _ _", "wholepart", "{Down}", "wholepart");
        arrow("Down from the numerator goes to the denominator", "4 1 7", "numerator", "{Down}", "denominator");
    }

    void typing()
    {
        QFETCH(typed, row);
        const auto &[setup, start, keys, value, focus, shown, events] = row;
        form f;
        QVERIFY(f.show());
        setup(*f.control);
        if (start == QLatin1String("click")) {
            // A click brings back the hidden whole part with the focus.
            QTest::mouseClick(f.control, Qt::LeftButton, {}, QPoint(2, 2));
        } else {
            f.field(start)->show();
            f.field(start)->setFocus();
            type(QStringLiteral("{End}"));
        }
        QTRY_VERIFY(f.control->isAncestorOf(QApplication::focusWidget()));
        QSignalSpy spy(f.control, &fractioni::fractionvaluechanged);
        type(keys);
        QCOMPARE(testsupport::value(*f.control), testsupport::rec(value));
        QCOMPARE(QApplication::focusWidget(), f.field(focus));
        if (events != QLatin1String("*"))
            QCOMPARE(testsupport::events(spy), testsupport::evs(events));
        // Every field shows its part, whole.
        const QList<QLineEdit *> fields = f.control->findChildren<QLineEdit *>();
        for (qsizetype i = 0; i < fields.size(); ++i) {
            QCOMPARE(fields[i]->text(), testsupport::value(*f.control).at(i));
            QVERIFY(fields[i]->width() >= fields[i]->fontMetrics().horizontalAdvance(fields[i]->text()));
            if (shown != QLatin1String("*"))
                QCOMPARE(fields[i]->isVisible(), shown.contains(QLatin1String("wnd").at(i)));
        }
        QVERIFY(m_messages.take().isEmpty());
    }

    void paste_data()
    {
        QTest::addColumn<pasted>("row"); // no keys: Paste from the field's menu
        const auto row = [](const char *name, const QString &clipboard, const char *field, const char *keys, const char *value,
                            bool loaded, const char *locked = "") {
            QTest::newRow(name) << pasted{clipboard, field, keys, value, loaded, locked};
        };
        row("fraction into the numerator", "2/3", "numerator", "{Ctrl+V}", "_ 2 3", true);
        row("mixed number into the whole part", " -1 2/3 ", "wholepart", "{Shift+Ins}", "-1 2 3", true);
        row("vulgar fraction from the menu", "1\u2154", "denominator", "", "1 2 3", true);
        row("a plain number pastes as text", "25", "numerator", "{Ctrl+V}", "4 25 7", false);
        row("a decimal pastes as text", "2.5", "wholepart", "{Ctrl+V}", "2.5 1 7", false);
        // A pasted fraction changes no locked part.
        row("a fraction with a locked whole part", "-7 1/2", "numerator", "{Ctrl+V}", "4 1 7", false, "WholepartLocked");
        row("a fraction that keeps a locked part", "-7 1/2", "wholepart", "{Ctrl+V}", "-7 1 2", false, "NumeratorLocked");
    }

    void paste()
    {
        QFETCH(pasted, row);
        const auto &[clipboard, field, keys, value, loaded, locked] = row;
        form f;
        QVERIFY(f.show());
        if (*locked)
            f.control->setProperty(locked, true);
        QApplication::clipboard()->setText(clipboard);
        QLineEdit *target = f.field(field);
        target->setFocus();
        target->selectAll();
        QSignalSpy spy(f.control, &fractioni::fractionvaluechanged);
        if (keys.isEmpty()) {
            QContextMenuEvent menuevent(QContextMenuEvent::Keyboard, QPoint(1, 1), target->mapToGlobal(QPoint(1, 1)));
            QApplication::sendEvent(target, &menuevent);
            QVERIFY(QApplication::activePopupWidget());
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_P); // the menu's "&Paste"
        }
        type(keys);
        QCOMPARE(testsupport::value(*f.control), testsupport::rec(value));
        if (loaded) {
            // Exactly the events of loading the record, none from inserting the text first.
            fractioni reference;
            QSignalSpy expected(&reference, &fractioni::fractionvaluechanged);
            reference.loadfraction(testsupport::rec(value));
            QCOMPARE(testsupport::events(spy), testsupport::events(expected));
        }
    }

    void copywithoutselection()
    {
        form f;
        QVERIFY(f.show());
        f.control->setWholepartvalue(QStringLiteral("-2"));
        f.field(QStringLiteral("numerator"))->setFocus();
        type(QStringLiteral("{End}{Ctrl+C}"));
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("-2 1/7"));
        // With a selection, the selection is copied as usual.
        f.field(QStringLiteral("numerator"))->selectAll();
        type(QStringLiteral("{Ctrl+C}"));
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("1"));
    }

    // A key goes to the window's shortcuts unless the field edits with it: a locked field leaves
    // its keys to them, at every press, and a field unlocked again takes them back.
    void shortcuts()
    {
        form f;
        int triggered = 0;
        auto *action = new QAction(&f.window);
        action->setShortcuts({QKeySequence(Qt::Key_5), QKeySequence(Qt::CTRL | Qt::Key_S)});
        f.window.addAction(action);
        connect(action, &QAction::triggered, [&triggered] { ++triggered; });
        QVERIFY(f.show());
        f.field(QStringLiteral("numerator"))->setFocus();
        type(QStringLiteral("{End}55{Ctrl+S}{Ctrl+S}"));
        QCOMPARE(triggered, 2);
        f.control->setNumeratorLocked(true);
        type(QStringLiteral("55"));
        QCOMPARE(triggered, 4);
        f.control->setNumeratorLocked(false);
        type(QStringLiteral("5"));
        QCOMPARE(triggered, 4);
        QCOMPARE(f.control->Numeratorvalue(), QStringLiteral("1555"));
    }

    void textandapproximation()
    {
        fractioni control;
        QVERIFY(!control.loadfractiontext(QStringLiteral("1.5")));
        QCOMPARE(testsupport::value(control), (QStringList{"4", "1", "7"}));
        QVERIFY(control.loadfractiontext(QStringLiteral("-\u00BD")));
        QCOMPARE(control.fractiontext(), QStringLiteral("-1/2"));
        control.loadfraction(QStringList{"3.14159", "", ""});
        QCOMPARE(control.approximate(113), (QStringList{"3", "16", "113"}));
        QCOMPARE(control.Wholepartvalue(), QStringLiteral("3.14159"));
        control.setAutoreplace(true);
        control.approximate(7);
        QCOMPARE(control.fractiontext(), QStringLiteral("3 1/7"));
    }

private:
    kelfractionint::messagecapture m_messages;
};

QTEST_MAIN(tst_fractionientry)
#include "tst_fractionientry.moc"
