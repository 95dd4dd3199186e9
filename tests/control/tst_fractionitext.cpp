// Text entry of the fraction control: allowed-character sets, validation by type and locale,
// typing with real focus, the keystroke filter and arrow-key navigation between the fields.
#include "fractioni.h"
#include "messageboxsink.h"
#include "modfracglobal.h"
#include "testsupport.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

using kelfractionint::fractioni;

namespace {
QStringList chars(const char *text)
{
    QStringList list;
    for (const char c : std::string_view(text))
        list.append(QString(QChar(c)));
    return list;
}
} // namespace

class tst_fractionitext : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); }

    void allowedsets_data();
    void allowedsets();
    void wholecharallowed();
    void validation_data();
    void validation();
    void typing();
    void refusedtyping();
    void filter();
    void navigation_data();
    void navigation();

private:
    struct form
    {
        QWidget window;
        fractioni *control = nullptr;
        QLineEdit *field(const char *name) const { return control->findChild<QLineEdit *>(QLatin1String(name)); }
    };
    bool showform(form &f);

    kelfractionint::messagecapture m_messages;
};

bool tst_fractionitext::showform(form &f)
{
    auto *layout = new QVBoxLayout(&f.window);
    f.control = new fractioni(&f.window);
    layout->addWidget(f.control);
    f.window.show();
    f.window.activateWindow();
    return QTest::qWaitForWindowActive(&f.window);
}

void tst_fractionitext::allowedsets_data()
{
    QTest::addColumn<QVariant>("candidate");
    QTest::addColumn<QStringList>("stored");

    QTest::newRow("a b a c is stored as c b a") << QVariant(chars("abac")) << chars("cba");
    QTest::newRow("empty strings count as elements") << QVariant(QStringList{"", "x", ""}) << QStringList{"x", ""};
    QTest::newRow("an element of two characters is ignored") << QVariant(QStringList{"a", "bc"}) << QStringList();
    QTest::newRow("an array without elements is ignored") << QVariant(QStringList()) << QStringList();
    QTest::newRow("Empty is ignored") << QVariant() << QStringList();
    QTest::newRow("a plain string is no array") << QVariant(QStringLiteral("a")) << QStringList();
    QTest::newRow("a list of variants from a script")
        << QVariant(QVariantList{QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("x")}) << chars("yx");
}

void tst_fractionitext::allowedsets()
{
    QFETCH(QVariant, candidate);
    QFETCH(QStringList, stored);

    fractioni control;
    const QStringList defaults = control.Denomallowedchars().toStringList();
    QCOMPARE(defaults.size(), 97);
    QCOMPARE(defaults.first(), QStringLiteral(" "));
    QCOMPARE(defaults.at(95), QString(QChar(127)));
    QCOMPARE(defaults.last(), QString(QChar(8)));

    QSignalSpy changed(&control, &fractioni::propertychanged);
    control.setDenomallowedchars(candidate);
    const QStringList expected = stored.isEmpty() ? defaults : stored;
    QCOMPARE(control.Denomallowedchars().toStringList(), expected);
    QCOMPARE(changed.count(), stored.isEmpty() ? 0 : 1);
    // Only the set assigned changes.
    QCOMPARE(control.Numerallowedchars().toStringList(), defaults);
}

void tst_fractionitext::wholecharallowed()
{
    fractioni control;
    QVERIFY(control.wholecharallowed(QStringLiteral("x")));
    QVERIFY(!control.wholecharallowed(QStringLiteral("\u00e9")));
    control.setWholeallowedchars(chars("12"));
    QVERIFY(control.wholecharallowed(QStringLiteral("1")));
    QVERIFY(!control.wholecharallowed(QStringLiteral("x")));
    QVERIFY(!control.wholecharallowed(QStringLiteral("12")));
    QVERIFY(!control.wholecharallowed(QString()));
    control.setWholeallowedchars(chars("a"));
    QVERIFY(!control.wholecharallowed(QStringLiteral("A")));
}

void tst_fractionitext::validation_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");

    const QString dot = QStringLiteral(".");
    const QString comma = QStringLiteral(",");
    QTest::newRow("whole part minus alone") << 0 << dot << "whole" << "-" << true;
    QTest::newRow("whole part 7%") << 0 << dot << "whole" << "7%" << true;
    QTest::newRow("whole part lone percent") << 0 << dot << "whole" << "%" << false;
    QTest::newRow("whole part trailing minus") << 0 << dot << "whole" << "5-" << false;
    QTest::newRow("whole part abc") << 0 << dot << "whole" << "abc" << false;
    QTest::newRow("whole 2.5 with point") << 0 << dot << "whole" << "2.5" << true;
    QTest::newRow("whole 2,5 with comma") << 0 << comma << "whole" << "2,5" << true;
    QTest::newRow("numerator -3") << 0 << dot << "numer" << "-3" << false;
    QTest::newRow("numerator 0,75 with comma") << 0 << comma << "numer" << "0,75" << true;
    QTest::newRow("denominator x") << 0 << dot << "denom" << "x" << false;
    QTest::newRow("algebraic numerator x") << 1 << dot << "numer" << "x" << true;
    QTest::newRow("algebraic numerator with a character outside the set") << 1 << dot << "numer" << "x\u00e9" << false;
    QTest::newRow("type 7 refuses digits") << 7 << dot << "denom" << "3" << false;
}

void tst_fractionitext::validation()
{
    QFETCH(int, type);
    QFETCH(QString, decimal);
    QFETCH(QString, part);
    QFETCH(QString, text);
    QFETCH(bool, accepted);

    testsupport::pinlocale(decimal == QLatin1String(",") ? "," : ".", decimal == QLatin1String(",") ? "." : ",");
    fractioni control;
    control.setFracType(fractioni::fractiontype(type));
    const QStringList before = testsupport::value(control);
    testsupport::designtime design;
    if (part == QLatin1String("whole"))
        control.setWholepartvalue(text);
    else if (part == QLatin1String("numer"))
        control.setNumeratorvalue(text);
    else
        control.setDenominatorvalue(text);
    const QStringList after = testsupport::value(control);
    QCOMPARE(after != before, accepted);
}

void tst_fractionitext::typing()
{
    form f;
    QVERIFY(showform(f));
    QLineEdit *numerator = f.field("numerator");
    numerator->setFocus();
    QTRY_VERIFY(numerator->hasFocus());
    QSignalSpy spy(f.control, &fractioni::fractionvaluechanged);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_End);
    QTest::keyClicks(static_cast<QWidget *>(nullptr), QStringLiteral("52"));
    QCOMPARE(f.control->Numeratorvalue(), QStringLiteral("152"));
    QCOMPARE(testsupport::events(spy),
             (QList<QStringList>{{"+", "4", "1", "7", "+", "4", "15", "7"}, {"+", "4", "15", "7", "+", "4", "152", "7"}}));
    // After typing the caret stands at the end, also after typing in the middle.
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Home);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_3);
    QCOMPARE(f.control->Numeratorvalue(), QStringLiteral("3152"));
    QCOMPARE(numerator->cursorPosition(), 4);
    // The field grows with its text.
    QVERIFY(numerator->width() >= numerator->fontMetrics().horizontalAdvance(QStringLiteral("3152")));
}

void tst_fractionitext::refusedtyping()
{
    form f;
    QVERIFY(showform(f));
    QLineEdit *numerator = f.field("numerator");
    numerator->setFocus();
    QTRY_VERIFY(numerator->hasFocus());
    QSignalSpy spy(f.control, &fractioni::fractionvaluechanged);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Minus);
    QCOMPARE(numerator->text(), QStringLiteral("1"));
    QCOMPARE(testsupport::events(spy),
             (QList<QStringList>{{"+", "4", "1", "7", "+", "4", "1", "7"}, {"+", "4", "1", "7", "+", "4", "1", "7"}}));

    // A letter in the unlocked whole part is refused with 380 in run mode: the value and the
    // field keep what they had, and nothing reaches the host.
    spy.clear();
    QLineEdit *wholepart = f.field("wholepart");
    wholepart->setFocus();
    QTRY_VERIFY(wholepart->hasFocus());
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_End);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Q);
    QCOMPARE(wholepart->text(), QStringLiteral("4"));
    QCOMPARE(f.control->Wholepartvalue(), QStringLiteral("4"));
    QCOMPARE(spy.count(), 0);
    QVERIFY(m_messages.take().isEmpty());
}

void tst_fractionitext::filter()
{
    form f;
    QVERIFY(showform(f));
    f.control->setWholeallowedchars(chars("0123456789-\b"));
    QLineEdit *wholepart = f.field("wholepart");
    wholepart->setFocus();
    QTRY_VERIFY(wholepart->hasFocus());
    QSignalSpy returns(wholepart, &QLineEdit::returnPressed);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_End);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_X);
    QCOMPARE(wholepart->text(), QStringLiteral("4"));
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Return);
    QCOMPARE(returns.count(), 0);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_2);
    QCOMPARE(f.control->Wholepartvalue(), QStringLiteral("42"));
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Backspace);
    QCOMPARE(f.control->Wholepartvalue(), QStringLiteral("4"));
}

void tst_fractionitext::navigation_data()
{
    QTest::addColumn<QStringList>("record");
    QTest::addColumn<bool>("fracpartvisible");
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("caret");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<bool>("wholevisible");

    const QStringList mixed{"4", "1", "7"};
    QTest::newRow("Right at the end of the whole part goes to the numerator")
        << mixed << true << "wholepart" << 1 << int(Qt::Key_Right) << "numerator" << true;
    QTest::newRow("Right inside the whole part only moves the caret")
        << QStringList{"45", "1", "7"} << true << "wholepart" << 1 << int(Qt::Key_Right) << "wholepart" << true;
    QTest::newRow("Right stays while the fraction part may not be shown")
        << QStringList{"4", "", ""} << false << "wholepart" << 1 << int(Qt::Key_Right) << "wholepart" << true;
    QTest::newRow("Right from a decimal whole part stays")
        << QStringList{"0.5", "", ""} << true << "wholepart" << 3 << int(Qt::Key_Right) << "wholepart" << true;
    QTest::newRow("Left at the start of the numerator goes to the whole part")
        << mixed << true << "numerator" << 0 << int(Qt::Key_Left) << "wholepart" << true;
    QTest::newRow("Left at the start of the denominator shows a hidden whole part")
        << QStringList{"", "1", "7"} << true << "denominator" << 0 << int(Qt::Key_Left) << "wholepart" << true;
    QTest::newRow("Left inside the numerator only moves the caret")
        << QStringList{"4", "12", "7"} << true << "numerator" << 1 << int(Qt::Key_Left) << "numerator" << true;
    QTest::newRow("Up from the denominator goes to the numerator")
        << mixed << true << "denominator" << 1 << int(Qt::Key_Up) << "numerator" << true;
    QTest::newRow("Up from a percent whole part goes to the numerator")
        << QStringList{"50%", "", ""} << true << "wholepart" << 3 << int(Qt::Key_Up) << "numerator" << true;
    QTest::newRow("Down from the whole part goes to the denominator")
        << mixed << true << "wholepart" << 1 << int(Qt::Key_Down) << "denominator" << true;
    QTest::newRow("Down from a decimal whole part stays")
        << QStringList{"0.5", "", ""} << true << "wholepart" << 3 << int(Qt::Key_Down) << "wholepart" << true;
    QTest::newRow("Down from the numerator goes to the denominator")
        << mixed << true << "numerator" << 1 << int(Qt::Key_Down) << "denominator" << true;
    QTest::newRow("Right at the end of an empty whole part hides it")
        << QStringList{"", "1", "7"} << true << "wholepart" << 0 << int(Qt::Key_Right) << "numerator" << false;
    QTest::newRow("Right in an empty control keeps the focus in the whole part")
        << QStringList{"", "", ""} << true << "wholepart" << 0 << int(Qt::Key_Right) << "wholepart" << true;
}

void tst_fractionitext::navigation()
{
    QFETCH(QStringList, record);
    QFETCH(bool, fracpartvisible);
    QFETCH(QString, start);
    QFETCH(int, caret);
    QFETCH(int, key);
    QFETCH(QString, focus);
    QFETCH(bool, wholevisible);

    form f;
    QVERIFY(showform(f));
    f.control->loadfraction(record);
    if (!fracpartvisible)
        f.control->setFracpartvisible(false);
    QLineEdit *field = f.control->findChild<QLineEdit *>(start);
    field->setVisible(true);
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    field->setCursorPosition(caret);
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key(key));
    QWidget *focused = QApplication::focusWidget();
    QVERIFY(focused);
    QCOMPARE(focused->objectName(), focus);
    QCOMPARE(!f.field("wholepart")->isHidden(), wholevisible);
    if (focus == QLatin1String("numerator") || focus == QLatin1String("denominator")) {
        QVERIFY(!f.field("numerator")->isHidden());
        QVERIFY(!f.field("denominator")->isHidden());
    }
}

QTEST_MAIN(tst_fractionitext)
#include "tst_fractionitext.moc"
