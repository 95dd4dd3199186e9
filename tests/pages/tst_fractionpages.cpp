#include "fractionappearance.h"
#include "fractionvalues.h"
#include "propertypagedialog.h"

#include "ambient.h"
#include "automationerror.h"
#include "fractioni.h"
#include "messagesink.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <string>
#include <vector>

using kelfractionint::fractionappearance;
using kelfractionint::fractioni;
using kelfractionint::fractionvalues;
using kelfractionint::propertypage;
using kelfractionint::propertypagedialog;

namespace {

// The property names a control notified, in order, leaving out those it changed by itself.
QStringList names(const QSignalSpy &spy, const QStringList &written)
{
    QStringList result;
    for (const QList<QVariant> &arguments : spy) {
        if (written.contains(arguments.at(0).toString()))
            result << arguments.at(0).toString();
    }
    return result;
}

QStringList valueof(const fractioni &control)
{
    return {control.Wholepartvalue(), control.Numeratorvalue(), control.Denominatorvalue()};
}

int raisednumber(const std::function<void()> &call)
{
    try {
        call();
    } catch (const modfracglobal::automationerror &error) {
        return error.number();
    }
    return 0;
}

} // namespace

class tst_fractionpages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void layout_data();
    void layout();
    void taborder();

    void writeorder();
    void valuesload();
    void valuesapply_data();
    void valuesapply();
    void valuesfirstonly();

    void appearanceload_data();
    void appearanceload();
    void appearancemixedselection();
    void appearanceconflict_data();
    void appearanceconflict();

    void latebinding();
    void dialog();

private:
    QLineEdit *box(QWidget *page, const char *name) { return page->findChild<QLineEdit *>(QLatin1String(name)); }
    QCheckBox *check(QWidget *page, const char *name) { return page->findChild<QCheckBox *>(QLatin1String(name)); }

    std::vector<std::string> m_messages;
};

void tst_fractionpages::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    modfracglobal::setmessagesink([this](const std::string &text) { m_messages.push_back(text); });
}

void tst_fractionpages::init()
{
    m_messages.clear();
}

void tst_fractionpages::cleanupTestCase()
{
    modfracglobal::setmessagesink({});
}

void tst_fractionpages::layout_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QRect>("twips");

    const auto row = [](const char *page, const char *name, const char *caption, QRect twips) {
        QTest::addRow("%s", name) << QString::fromLatin1(page) << QString::fromLatin1(name)
                                  << QString::fromLatin1(caption) << twips;
    };
    row("values", "lblnumeratorvalue", "numeratorvalue:", {90, 120, 2700, 240});
    row("values", "txtnumeratorvalue", "", {90, 370, 2700, 330});
    row("values", "lbldenominatorvalue", "denominatorvalue:", {90, 770, 2700, 240});
    row("values", "txtdenominatorvalue", "", {90, 1020, 2700, 330});
    row("values", "lblwholepartvalue", "wholepartvalue:", {90, 1420, 2700, 240});
    row("values", "txtwholepartvalue", "", {90, 1670, 2700, 330});
    row("appearance", "chkfractionslash", "Fractionslash", {90, 120, 1956, 285});
    row("appearance", "chkuserresizeable", "Userresizeable", {120, 770, 1860, 285});
    row("appearance", "chkborderstyle", "Borderstyle", {120, 1440, 1812, 252});
    row("appearance", "chkWholepartLocked", "WholepartLocked", {3240, 120, 2052, 372});
    row("appearance", "chkforcesign", "Forcesign", {120, 2640, 1812, 372});
    row("appearance", "chkautoreplace", "Autoreplace", {120, 1920, 1692, 372});
    row("appearance", "Chknumeratorlocked", "NumeratorLocked", {3240, 720, 2052, 372});
    row("appearance", "ChkdenominatorLocked", "DenominatorLocked", {3240, 1440, 2052, 372});
}

void tst_fractionpages::layout()
{
    QFETCH(QString, page);
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QRect, twips);

    std::unique_ptr<propertypage> host;
    if (page == QLatin1String("values"))
        host = std::make_unique<fractionvalues>();
    else
        host = std::make_unique<fractionappearance>();
    QCOMPARE(host->windowTitle(), QStringLiteral("fraction") + page);

    QWidget *child = host->findChild<QWidget *>(name);
    QVERIFY2(child, qPrintable(name));
    if (auto *label = qobject_cast<QLabel *>(child))
        QCOMPARE(label->text(), caption);
    else if (auto *button = qobject_cast<QCheckBox *>(child))
        QCOMPARE(button->text(), caption);

    const double perpixel = 1440.0 / host->logicalDpiX();
    const QRect expected(qRound(twips.x() / perpixel), qRound(twips.y() / perpixel), qRound(twips.width() / perpixel),
                         qRound(twips.height() / perpixel));
    QCOMPARE(child->pos(), expected.topLeft());
    QCOMPARE(child->height(), expected.height());
    QVERIFY(child->width() >= expected.width());
    QVERIFY(child->width() >= child->sizeHint().width());
}

void tst_fractionpages::taborder()
{
    fractionvalues values;
    fractionappearance appearance;
    const auto chain = [](QWidget *page, const QStringList &names) {
        QWidget *current = page->findChild<QWidget *>(names.first());
        for (qsizetype i = 1; i < names.size(); ++i) {
            do
                current = current->nextInFocusChain();
            while (current->focusPolicy() == Qt::NoFocus);
            if (current->objectName() != names.at(i))
                return current->objectName() + QStringLiteral(" instead of ") + names.at(i);
        }
        return QString();
    };
    QCOMPARE(chain(&values, {QStringLiteral("txtnumeratorvalue"), QStringLiteral("txtdenominatorvalue"),
                             QStringLiteral("txtwholepartvalue")}),
             QString());
    QCOMPARE(chain(&appearance,
                   {QStringLiteral("chkfractionslash"), QStringLiteral("chkuserresizeable"),
                    QStringLiteral("chkborderstyle"), QStringLiteral("chkWholepartLocked"),
                    QStringLiteral("chkforcesign"), QStringLiteral("chkautoreplace"),
                    QStringLiteral("Chknumeratorlocked"), QStringLiteral("ChkdenominatorLocked")}),
             QString());
}

void tst_fractionpages::writeorder()
{
    // The controls' change notifications show the order of a page's writes.
    fractioni first, second;
    QSignalSpy firstwrites(&first, &fractioni::propertychanged);
    QSignalSpy secondwrites(&second, &fractioni::propertychanged);
    fractionvalues values;
    values.setSelectedControls({&first, &second});
    values.ApplyChanges();
    const QStringList valuewrites{"Wholepartvalue", "Denominatorvalue", "Numeratorvalue"};
    QCOMPARE(names(firstwrites, valuewrites), valuewrites);
    QCOMPARE(secondwrites.count(), 0);

    firstwrites.clear();
    fractionappearance appearance;
    appearance.setSelectedControls({&first, &second});
    appearance.ApplyChanges();
    const QStringList each{"Userresizeable",    "Fractionslash", "WholepartLocked", "NumeratorLocked",
                           "DenominatorLocked", "Forcesign",     "Autoreplace",     "Borderstyle"};
    QCOMPARE(names(firstwrites, each), each);
    QCOMPARE(names(secondwrites, each), each);
}

void tst_fractionpages::valuesload()
{
    fractioni control;
    control.setWholepartvalue(QString());
    control.setNumeratorvalue(QStringLiteral("5"));
    control.setDenominatorvalue(QStringLiteral("9"));

    fractionvalues page;
    QVERIFY(!page.Changed());
    QSignalSpy changed(&page, &propertypage::Changedchanged);
    page.setSelectedControls({&control});
    QCOMPARE(box(&page, "txtwholepartvalue")->text(), QString());
    QCOMPARE(box(&page, "txtnumeratorvalue")->text(), QStringLiteral("5"));
    QCOMPARE(box(&page, "txtdenominatorvalue")->text(), QStringLiteral("9"));
    // A freshly loaded page counts as changed.
    QVERIFY(page.Changed());
    QCOMPARE(changed.count(), 1);

    page.setChanged(false);
    QTest::keyClicks(box(&page, "txtnumeratorvalue"), QStringLiteral("1"));
    QVERIFY(page.Changed());
}

void tst_fractionpages::valuesapply_data()
{
    QTest::addColumn<QStringList>("typed"); // whole part, numerator, denominator
    QTest::addColumn<bool>("designmode");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<int>("error");

    QTest::newRow("unchanged boxes write the same value")
        << QStringList{"4", "1", "7"} << false << QStringList{"4", "1", "7"} << 0;
    QTest::newRow("all three parts replaced")
        << QStringList{"-2", "3", "5"} << false << QStringList{"-2", "3", "5"} << 0;
    QTest::newRow("signed numerator refused silently")
        << QStringList{"4", "-3", "7"} << false << QStringList{"4", "1", "7"} << 0;
    QTest::newRow("bad whole part raises before the others are written")
        << QStringList{"x", "3", "5"} << false << QStringList{"4", "1", "7"} << 380;
    QTest::newRow("bad whole part at design time is refused without error")
        << QStringList{"x", "3", "5"} << true << QStringList{"4", "3", "5"} << 0;
}

void tst_fractionpages::valuesapply()
{
    QFETCH(QStringList, typed);
    QFETCH(bool, designmode);
    QFETCH(QStringList, expected);
    QFETCH(int, error);

    fractioni control;
    kelfractionint::ambient::setdesignmode(&control, designmode);
    fractionvalues page;
    page.setSelectedControls({&control});
    box(&page, "txtwholepartvalue")->setText(typed.at(0));
    box(&page, "txtnumeratorvalue")->setText(typed.at(1));
    box(&page, "txtdenominatorvalue")->setText(typed.at(2));

    QCOMPARE(raisednumber([&] { page.ApplyChanges(); }), error);
    QCOMPARE(valueof(control), expected);
    QVERIFY(m_messages.empty());

    // Loading again shows what the control kept.
    page.setSelectedControls({&control});
    QCOMPARE(box(&page, "txtnumeratorvalue")->text(), expected.at(1));
}

void tst_fractionpages::valuesfirstonly()
{
    fractioni first, second;
    second.setNumeratorvalue(QStringLiteral("2"));
    second.setDenominatorvalue(QStringLiteral("3"));
    fractionvalues page;
    page.setSelectedControls({&first, &second});
    QCOMPARE(box(&page, "txtdenominatorvalue")->text(), QStringLiteral("7"));

    box(&page, "txtdenominatorvalue")->setText(QStringLiteral("8"));
    QSignalSpy events(&second, &fractioni::fractionvaluechanged);
    page.ApplyChanges();
    QCOMPARE(first.Denominatorvalue(), QStringLiteral("8"));
    QCOMPARE(valueof(second), QStringList({"4", "2", "3"}));
    QCOMPARE(events.count(), 0);
}

void tst_fractionpages::appearanceload_data()
{
    QTest::addColumn<int>("border");
    QTest::addColumn<bool>("ticked");

    QTest::newRow("borderstylenone clear") << 0 << false;
    QTest::newRow("borderstylefixed ticked") << 1 << true;
    QTest::newRow("value outside the list clear") << 5 << false;
    QTest::newRow("negative value clear") << -1 << false;
}

void tst_fractionpages::appearanceload()
{
    QFETCH(int, border);
    QFETCH(bool, ticked);

    fractioni control;
    control.setBorderstyle(static_cast<fractioni::fracBorderstyle>(border));
    control.setFractionslash(false);
    control.setNumeratorLocked(true);
    fractionappearance page;
    page.setSelectedControls({&control});
    QCOMPARE(check(&page, "chkborderstyle")->isChecked(), ticked);
    QCOMPARE(check(&page, "chkfractionslash")->isChecked(), false);
    QCOMPARE(check(&page, "Chknumeratorlocked")->isChecked(), true);
    QCOMPARE(check(&page, "chkautoreplace")->isChecked(), false);
    QVERIFY(page.Changed());

    page.ApplyChanges();
    QCOMPARE(int(control.Borderstyle()), ticked ? 1 : 0);
    QCOMPARE(control.Fractionslash(), false);
    QCOMPARE(control.NumeratorLocked(), true);
}

void tst_fractionpages::appearancemixedselection()
{
    fractioni first, second;
    first.setForcesign(true);
    first.setAutoreplace(true);
    fractionappearance page;
    page.setSelectedControls({&first, &second});
    // The last selected control wins; there is no mixed state.
    QCOMPARE(check(&page, "chkforcesign")->checkState(), Qt::Unchecked);
    QCOMPARE(check(&page, "chkautoreplace")->checkState(), Qt::Unchecked);

    check(&page, "chkuserresizeable")->click();
    page.ApplyChanges();
    for (const fractioni *control : {&first, &second}) {
        QCOMPARE(control->Forcesign(), false);
        QCOMPARE(control->Autoreplace(), false);
        QCOMPARE(control->Userresizeable(), true);
    }
}

void tst_fractionpages::appearanceconflict_data()
{
    QTest::addColumn<bool>("designmode");
    QTest::newRow("run time raises and stops") << false;
    QTest::newRow("design time shows a message and goes on") << true;
}

void tst_fractionpages::appearanceconflict()
{
    // Forcesign with a locked whole part: the first control keeps what was written before
    // Forcesign; at run time the rest is left untouched.
    QFETCH(bool, designmode);
    fractioni first, second;
    kelfractionint::ambient::setdesignmode(&first, designmode);
    kelfractionint::ambient::setdesignmode(&second, designmode);
    fractionappearance page;
    page.setSelectedControls({&first, &second});
    check(&page, "chkWholepartLocked")->click();
    check(&page, "chkforcesign")->click();
    check(&page, "chkautoreplace")->click();

    QCOMPARE(raisednumber([&] { page.ApplyChanges(); }), designmode ? 0 : 380);
    QCOMPARE(first.WholepartLocked(), true);
    QCOMPARE(first.Forcesign(), false);
    QCOMPARE(first.Autoreplace(), designmode);
    QCOMPARE(second.WholepartLocked(), designmode);
    QCOMPARE(second.Autoreplace(), designmode);
    const std::vector<std::string> conflict(2, "Usereditable and forcesign can't be True simultaneously");
    QCOMPARE(m_messages, designmode ? conflict : std::vector<std::string>());
}

void tst_fractionpages::latebinding()
{
    QObject plain;
    fractioni control;
    QCOMPARE(raisednumber([&] { (void)propertypage::readproperty(&plain, "Wholepartvalue"); }), 438);
    QCOMPARE(raisednumber([&] { propertypage::writeproperty(&control, "Numerdenomgcd", 3); }), 438);
    QCOMPARE(raisednumber([&] { propertypage::writeproperty(&control, "Font", QStringList()); }), 13);

    fractionvalues page;
    auto *gone = new fractioni;
    page.setSelectedControls({gone});
    delete gone;
    QCOMPARE(raisednumber([&] { page.ApplyChanges(); }), 91);
}

void tst_fractionpages::dialog()
{
    fractioni control;
    propertypagedialog dialog;
    auto *values = new fractionvalues;
    auto *appearance = new fractionappearance;
    dialog.addpage(values);
    dialog.addpage(appearance);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Property Pages"));
    QVERIFY(!dialog.applybutton()->isEnabled());

    dialog.setSelectedControls({&control});
    QVERIFY(dialog.applybutton()->isEnabled());
    box(values, "txtnumeratorvalue")->setText(QStringLiteral("6"));
    dialog.applybutton()->click();
    QCOMPARE(control.Numeratorvalue(), QStringLiteral("6"));
    QVERIFY(!dialog.applybutton()->isEnabled());
    QVERIFY(!values->Changed() && !appearance->Changed());

    // A refused Apply keeps the dialog open and the page changed, and says why.
    box(values, "txtwholepartvalue")->setText(QStringLiteral("x"));
    dialog.show();
    dialog.accept();
    QVERIFY(dialog.isVisible());
    QVERIFY(values->Changed());
    QCOMPARE(m_messages, std::vector<std::string>{"Invalid property value"});

    box(values, "txtwholepartvalue")->setText(QStringLiteral("-3"));
    dialog.accept();
    QVERIFY(!dialog.isVisible());
    QCOMPARE(control.Wholepartvalue(), QStringLiteral("-3"));

    // A selection the pages cannot read is reported, and Apply stays off.
    m_messages.clear();
    propertypagedialog empty;
    empty.addpage(new fractionvalues);
    empty.setSelectedControls({});
    QCOMPARE(m_messages, std::vector<std::string>{"Subscript out of range"});
    QVERIFY(!empty.applybutton()->isEnabled());

    // Cancel writes nothing.
    dialog.setSelectedControls({&control});
    box(values, "txtnumeratorvalue")->setText(QStringLiteral("2"));
    dialog.reject();
    QCOMPARE(control.Numeratorvalue(), QStringLiteral("6"));
}

QTEST_MAIN(tst_fractionpages)
#include "tst_fractionpages.moc"
