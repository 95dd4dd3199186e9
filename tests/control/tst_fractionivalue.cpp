// Value properties of the fraction control: stored texts, colours, and the exact order and
// arguments of every fractionvaluechanged raised by the setters and methods.
#include "fractioni.h"
#include "messageboxsink.h"
#include "modfracglobal.h"
#include "testsupport.h"

#include <QLineEdit>
#include <QTest>

#include <functional>

using kelfractionint::fractioni;
using step = std::function<void(fractioni &)>;
Q_DECLARE_METATYPE(step)

namespace {
QStringList ev(const char *os, const char *ow, const char *on, const char *od, const char *ns, const char *nw,
               const char *nn, const char *nd)
{
    return {QString::fromUtf8(os), QString::fromUtf8(ow), QString::fromUtf8(on), QString::fromUtf8(od),
            QString::fromUtf8(ns), QString::fromUtf8(nw), QString::fromUtf8(nn), QString::fromUtf8(nd)};
}

void load(fractioni &f, const char *w, const char *n, const char *d)
{
    QStringList record{QString::fromUtf8(w), QString::fromUtf8(n), QString::fromUtf8(d)};
    f.loadfraction(record);
}
} // namespace

class tst_fractionivalue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testsupport::pinlocale(); }

    void events_data();
    void events();
    void runtimewholepartrejected();
    void forcesignwhilelocked();
    void loadfractionrecord();
    void signandcolours_data();
    void signandcolours();

private:
    kelfractionint::messagecapture m_messages;
};

void tst_fractionivalue::events_data()
{
    QTest::addColumn<step>("setup");
    QTest::addColumn<bool>("design");
    QTest::addColumn<step>("action");
    QTest::addColumn<QList<QStringList>>("expected");
    QTest::addColumn<QStringList>("after");

    const step none = [](fractioni &) {};
    QTest::newRow("whole part -3 with blanks is stored trimmed")
        << none << false << step([](fractioni &f) { f.setWholepartvalue(QStringLiteral("  -3  ")); })
        << QList<QStringList>{ev("+", "4", "1", "7", "-", "-3", "1", "7")} << QStringList{"-3", "1", "7"};
    QTest::newRow("+4 loses its plus without Forcesign")
        << none << false << step([](fractioni &f) { f.setWholepartvalue(QStringLiteral("+4")); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "7")} << QStringList{"4", "1", "7"};
    QTest::newRow("Forcesign re-assigns the whole part with a plus")
        << none << false << step([](fractioni &f) { f.setForcesign(true); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "+4", "1", "7")} << QStringList{"+4", "1", "7"};
    QTest::newRow("Forcesign turns an empty whole part into plus")
        << step([](fractioni &f) { f.setForcesign(true); }) << false
        << step([](fractioni &f) { f.setWholepartvalue(QString()); })
        << QList<QStringList>{ev("+", "+4", "1", "7", "+", "+", "1", "7")} << QStringList{"+", "1", "7"};
    QTest::newRow("clearing the numerator sets the denominator to 1 first")
        << step([](fractioni &f) { load(f, "", "3", "4"); }) << false
        << step([](fractioni &f) { f.setNumeratorvalue(QString()); })
        << QList<QStringList>{ev("+", "", "3", "4", "+", "", "3", "1"), ev("+", "", "3", "1", "+", "", "", "1")}
        << QStringList{"", "", "1"};
    QTest::newRow("denominator without a numerator stays empty")
        << step([](fractioni &f) { load(f, "2", "", ""); }) << false
        << step([](fractioni &f) { f.setDenominatorvalue(QStringLiteral("5")); })
        << QList<QStringList>{ev("+", "2", "", "", "+", "2", "", "")} << QStringList{"2", "", ""};
    QTest::newRow("numerator -3 is refused: two events without change")
        << none << false << step([](fractioni &f) { f.setNumeratorvalue(QStringLiteral("-3")); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "7"), ev("+", "4", "1", "7", "+", "4", "1", "7")}
        << QStringList{"4", "1", "7"};
    QTest::newRow("refused whole part at design time re-applies the value")
        << none << true << step([](fractioni &f) { f.setWholepartvalue(QStringLiteral("abc")); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "7"), ev("+", "4", "1", "7", "+", "4", "1", "7")}
        << QStringList{"4", "1", "7"};
    QTest::newRow("refused whole part while locked re-applies the value")
        << step([](fractioni &f) { f.setWholepartLocked(true); }) << false
        << step([](fractioni &f) { f.setWholepartvalue(QStringLiteral("5-")); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "7"), ev("+", "4", "1", "7", "+", "4", "1", "7")}
        << QStringList{"4", "1", "7"};
    QTest::newRow("changesign of 2/3 gives the whole part minus and a second event")
        << step([](fractioni &f) { load(f, "", "2", "3"); }) << false
        << step([](fractioni &f) { QCOMPARE(f.changesign(), &f); })
        << QList<QStringList>{ev("+", "", "2", "3", "-", "-", "2", "3"), ev("", "-", "2", "3", "-", "-", "2", "3")}
        << QStringList{"-", "2", "3"};
    QTest::newRow("changesign of -1 1/2 drops the minus")
        << step([](fractioni &f) { load(f, "-1", "1", "2"); }) << false
        << step([](fractioni &f) { f.changesign(); })
        << QList<QStringList>{ev("-", "-1", "1", "2", "+", "1", "1", "2"), ev("", "1", "1", "2", "+", "1", "1", "2")}
        << QStringList{"1", "1", "2"};
    QTest::newRow("changesign of an empty value does nothing")
        << step([](fractioni &f) { f.clearfraction(); f.setNumeratorvalue(QString()); load(f, "", "", ""); })
        << false << step([](fractioni &f) { f.changesign(); }) << QList<QStringList>{}
        << QStringList{"", "", ""};
    QTest::newRow("clearfraction of 1 2/3 clears whole, denominator, numerator")
        << step([](fractioni &f) { load(f, "1", "2", "3"); }) << false
        << step([](fractioni &f) { QCOMPARE(f.clearfraction(), &f); })
        << QList<QStringList>{ev("+", "1", "2", "3", "+", "", "2", "3"), ev("+", "", "2", "3", "+", "", "2", ""),
                              ev("+", "", "2", "", "+", "", "2", "1"), ev("+", "", "2", "1", "+", "", "", "1")}
        << QStringList{"", "", "1"};
    QTest::newRow("FracType 7 refuses even the empty text: clearfraction keeps the value")
        << step([](fractioni &f) { f.setFracType(fractioni::fractiontype(7)); }) << true
        << step([](fractioni &f) { f.clearfraction(); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "7"), ev("+", "4", "1", "7", "+", "4", "1", "7"),
                              ev("+", "4", "1", "7", "+", "4", "1", "7"), ev("+", "4", "1", "7", "+", "4", "1", "7"),
                              ev("+", "4", "1", "7", "+", "4", "1", "7"), ev("+", "4", "1", "7", "+", "4", "1", "7")}
        << QStringList{"4", "1", "7"};
    QTest::newRow("loadfraction while the whole part is locked adds a summary")
        << step([](fractioni &f) { f.setWholepartLocked(true); }) << false
        << step([](fractioni &f) { load(f, " -1", "2 ", " 5 "); })
        << QList<QStringList>{ev("+", "4", "1", "7", "-", "-1", "1", "7"), ev("-", "-1", "1", "7", "-", "-1", "2", "7"),
                              ev("-", "-1", "2", "7", "-", "-1", "2", "5"), ev("+", "4", "1", "7", "-", "-1", "2", "5")}
        << QStringList{"-1", "2", "5"};
    QTest::newRow("loadfraction of a whole number applies the denominator rule")
        << none << false << step([](fractioni &f) { load(f, "3", "", "9"); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "3", "1", "7"), ev("+", "3", "1", "7", "+", "3", "1", "1"),
                              ev("+", "3", "1", "1", "+", "3", "", "1"), ev("+", "3", "", "1", "+", "3", "", "")}
        << QStringList{"3", "", ""};
    QTest::newRow("Negforecolor re-assigns the whole part")
        << none << false << step([](fractioni &f) { f.setNegforecolor(0x00FF00); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "7")} << QStringList{"4", "1", "7"};
    QTest::newRow("hiding the fraction part clears numerator then denominator")
        << none << false << step([](fractioni &f) { f.setFracpartvisible(false); })
        << QList<QStringList>{ev("+", "4", "1", "7", "+", "4", "1", "1"), ev("+", "4", "1", "1", "+", "4", "", "1"),
                              ev("+", "4", "", "1", "+", "4", "", "")}
        << QStringList{"4", "", ""};
    QTest::newRow("Autoreplace and FracType raise no value event")
        << none << false << step([](fractioni &f) { f.setAutoreplace(true); f.setFracType(fractioni::fracAlgebraic); })
        << QList<QStringList>{} << QStringList{"4", "1", "7"};
}

void tst_fractionivalue::events()
{
    QFETCH(step, setup);
    QFETCH(bool, design);
    QFETCH(step, action);
    QFETCH(QList<QStringList>, expected);
    QFETCH(QStringList, after);

    fractioni control;
    setup(control);
    std::optional<testsupport::designtime> designscope;
    if (design)
        designscope.emplace();
    QSignalSpy spy(&control, &fractioni::fractionvaluechanged);
    action(control);
    QCOMPARE(testsupport::events(spy), expected);
    QCOMPARE(testsupport::value(control), after);
    QVERIFY(m_messages.take().isEmpty());
}

void tst_fractionivalue::runtimewholepartrejected()
{
    fractioni control;
    QSignalSpy spy(&control, &fractioni::fractionvaluechanged);
    for (const QString &text : {QStringLiteral("abc"), QStringLiteral("5-"), QStringLiteral("%"), QString(100000, u'9') + u'x'}) {
        try {
            control.setWholepartvalue(text);
            QFAIL("no error raised");
        } catch (const modfracglobal::automationerror &error) {
            QCOMPARE(error.number(), 380);
            QCOMPARE(QString::fromStdString(error.description()), QStringLiteral("Invalid property value"));
        }
    }
    QCOMPARE(spy.count(), 0);
    QCOMPARE(testsupport::value(control), (QStringList{"4", "1", "7"}));
    QCOMPARE(control.findChild<QLineEdit *>(QStringLiteral("wholepart"))->text(), QStringLiteral("4"));
}

void tst_fractionivalue::forcesignwhilelocked()
{
    fractioni control;
    control.setWholepartLocked(true);
    QSignalSpy changed(&control, &fractioni::propertychanged);
    try {
        control.setForcesign(true);
        QFAIL("no error raised");
    } catch (const modfracglobal::automationerror &error) {
        QCOMPARE(error.number(), 380);
    }
    QVERIFY(!control.Forcesign());
    {
        testsupport::designtime design;
        control.setForcesign(true);
    }
    QVERIFY(!control.Forcesign());
    QCOMPARE(m_messages.take(), QStringList{QStringLiteral("Usereditable and forcesign can't be True simultaneously")});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), QStringLiteral("Forcesign"));
}

void tst_fractionivalue::loadfractionrecord()
{
    fractioni control;
    QSignalSpy spy(&control, &fractioni::fractionvaluechanged);
    QStringList shortrecord{QStringLiteral("1"), QStringLiteral("2")};
    try {
        control.loadfraction(shortrecord);
        QFAIL("no error raised");
    } catch (const modfracglobal::automationerror &error) {
        QCOMPARE(error.number(), 9);
    }
    QCOMPARE(spy.count(), 0);

    QStringList record{QStringLiteral(" 2 "), QStringLiteral(" 3"), QStringLiteral("8 "), QStringLiteral("extra")};
    QCOMPARE(control.loadfraction(record), &control);
    QCOMPARE(record, (QStringList{"2", "3", "8", "extra"}));
    QCOMPARE(testsupport::value(control), (QStringList{"2", "3", "8"}));

    // Late-bound callers pass the record through the meta-object.
    fractioni *result = nullptr;
    QStringList lateRecord{QStringLiteral("-5"), QString(), QString()};
    QVERIFY(QMetaObject::invokeMethod(&control, "loadfraction", Q_RETURN_ARG(kelfractionint::fractioni *, result),
                                      Q_ARG(QStringList, lateRecord)));
    QCOMPARE(result, &control);
    QCOMPARE(testsupport::value(control), (QStringList{"-5", "", ""}));
}

void tst_fractionivalue::signandcolours_data()
{
    QTest::addColumn<QStringList>("record");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<bool>("negative");
    QTest::addColumn<QList<bool>>("visible");

    QTest::newRow("empty value has sign 0") << QStringList{"", "", ""} << "0" << false << QList<bool>{true, false, false};
    QTest::newRow("numerator only is positive") << QStringList{"", "1", "2"} << "+" << false << QList<bool>{false, true, true};
    QTest::newRow("negative mixed number") << QStringList{"-2", "1", "2"} << "-" << true << QList<bool>{true, true, true};
    QTest::newRow("lone minus keeps the fraction negative") << QStringList{"-", "1", "2"} << "-" << true << QList<bool>{true, true, true};
}

void tst_fractionivalue::signandcolours()
{
    QFETCH(QStringList, record);
    QFETCH(QString, sign);
    QFETCH(bool, negative);
    QFETCH(QList<bool>, visible);

    fractioni control;
    control.setNegforecolor(0x0000FF);
    control.setPosforecolor(0x00FF00);
    control.loadfraction(record);
    QCOMPARE(control.getsign(), sign);
    const QColor expected = negative ? QColor(255, 0, 0) : QColor(0, 255, 0);
    const QStringList names{QStringLiteral("wholepart"), QStringLiteral("numerator"), QStringLiteral("denominator")};
    for (int i = 0; i < 3; ++i) {
        auto *field = control.findChild<QLineEdit *>(names.at(i));
        QVERIFY(field);
        QCOMPARE(field->palette().color(QPalette::Text), expected);
        QCOMPARE(!field->isHidden(), visible.at(i));
    }
}

QTEST_MAIN(tst_fractionivalue)
#include "tst_fractionivalue.moc"
