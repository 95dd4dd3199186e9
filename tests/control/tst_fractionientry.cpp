// Fractions as people type, paste and copy them into the control, with real focus.
#include "fractioni.h"
#include "testsupport.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using kelfractionint::fractioni;

namespace {

struct form
{
    QWidget window;
    fractioni *control = new fractioni(&window);

    bool show()
    {
        window.resize(240, 120);
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
    QLineEdit *field(const QString &name) const { return control->findChild<QLineEdit *>(name); }
};

void type(const QString &text)
{
    for (const QChar c : text)
        QTest::keyClick(static_cast<QWidget *>(nullptr), c.toLatin1());
}

} // namespace

class tst_fractionientry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); }

    void typing_data()
    {
        QTest::addColumn<bool>("cleared");
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QStringList>("value");
        QTest::addColumn<QString>("focus");
        QTest::addColumn<bool>("algebraic");
        const auto row = [](const char *name, bool cleared, const char *start, const char *keys, const QStringList &value,
                            const char *focus, bool algebraic = false) {
            QTest::newRow(name) << cleared << start << keys << value << focus << algebraic;
        };
        row("mixed number into a cleared control", true, "wholepart", "1 2/3", {"1", "2", "3"}, "denominator");
        row("negative mixed number", true, "wholepart", "-3 1/4", {"-3", "1", "4"}, "denominator");
        row("slash replaces the denominator", false, "numerator", "5/8", {"4", "15", "8"}, "denominator");
        row("a decimal whole part keeps its space", true, "wholepart", "2.5 ", {"2.5", "", "1"}, "wholepart");
        // Algebraic texts may hold spaces and slashes: they are typed, not moves.
        row("an algebraic slash is typed", false, "numerator", "5/8", {"4", "15/8", "7"}, "numerator", true);
    }

    void typing()
    {
        QFETCH(bool, cleared);
        QFETCH(QString, start);
        QFETCH(QString, keys);
        QFETCH(QStringList, value);
        QFETCH(QString, focus);
        QFETCH(bool, algebraic);
        form f;
        QVERIFY(f.show());
        if (algebraic)
            f.control->setFracType(fractioni::fracAlgebraic);
        if (cleared) {
            f.control->clearfraction();
            // A click brings back the hidden whole part with the focus.
            QTest::mouseClick(f.control, Qt::LeftButton, {}, QPoint(2, 2));
        } else {
            f.field(start)->setFocus();
            QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_End);
        }
        QTRY_COMPARE(QApplication::focusWidget(), f.field(start));
        type(keys);
        QCOMPARE(testsupport::value(*f.control), value);
        QCOMPARE(QApplication::focusWidget(), f.field(focus));
    }

    void paste_data()
    {
        QTest::addColumn<QString>("clipboard");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QStringList>("value");
        QTest::addColumn<bool>("loaded");
        QTest::newRow("fraction into the numerator") << "2/3" << "numerator" << "ctrl+v" << QStringList{"", "2", "3"}
                                                     << true;
        QTest::newRow("mixed number into the whole part") << " -1 2/3 " << "wholepart" << "shift+insert"
                                                          << QStringList{"-1", "2", "3"} << true;
        QTest::newRow("vulgar fraction from the menu") << "1\u2154" << "denominator" << "menu"
                                                       << QStringList{"1", "2", "3"} << true;
        QTest::newRow("a plain number pastes as text") << "25" << "numerator" << "ctrl+v"
                                                       << QStringList{"4", "25", "7"} << false;
        QTest::newRow("a decimal pastes as text") << "2.5" << "wholepart" << "ctrl+v" << QStringList{"2.5", "1", "7"}
                                                  << false;
    }

    void paste()
    {
        QFETCH(QString, clipboard);
        QFETCH(QString, field);
        QFETCH(QString, how);
        QFETCH(QStringList, value);
        QFETCH(bool, loaded);
        form f;
        QVERIFY(f.show());
        QApplication::clipboard()->setText(clipboard);
        QLineEdit *target = f.field(field);
        target->setFocus();
        target->selectAll();
        QSignalSpy spy(f.control, &fractioni::fractionvaluechanged);
        if (how == QLatin1String("ctrl+v")) {
            QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_V, Qt::ControlModifier);
        } else if (how == QLatin1String("shift+insert")) {
            QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Insert, Qt::ShiftModifier);
        } else {
            QContextMenuEvent menuevent(QContextMenuEvent::Keyboard, QPoint(1, 1), target->mapToGlobal(QPoint(1, 1)));
            QApplication::sendEvent(target, &menuevent);
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu);
            const QString paste = QStringLiteral("\t") + QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText);
            const QList<QAction *> actions = menu->actions();
            auto action = std::find_if(actions.begin(), actions.end(), [&](QAction *a) { return a->text().endsWith(paste); });
            QVERIFY(action != actions.end());
            (*action)->trigger();
            menu->close();
        }
        QCOMPARE(testsupport::value(*f.control), value);
        if (loaded) {
            // Exactly the events of loading the record, none from inserting the text first.
            fractioni reference;
            QSignalSpy expected(&reference, &fractioni::fractionvaluechanged);
            reference.loadfraction(value);
            QCOMPARE(testsupport::events(spy), testsupport::events(expected));
        }
    }

    void copywithoutselection()
    {
        form f;
        QVERIFY(f.show());
        f.control->setWholepartvalue(QStringLiteral("-2"));
        f.field(QStringLiteral("numerator"))->setFocus();
        f.field(QStringLiteral("numerator"))->deselect();
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("-2 1/7"));
        // With a selection, the selection is copied as usual.
        f.field(QStringLiteral("numerator"))->selectAll();
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("1"));
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
};

QTEST_MAIN(tst_fractionientry)
#include "tst_fractionientry.moc"
