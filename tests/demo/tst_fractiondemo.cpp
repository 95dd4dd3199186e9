// The demo application's window driven as a user drives it: typing into the fields, clicking the
// operations, the property pages, saving and reopening the form, pictures and the scripted tour.
#include "../control/testsupport.h"

#include "demowindow.h"
#include "scriptedrun.h"

#include "fractioni.h"
#include "frmabout.h"
#include "propertypagedialog.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using kelfractionint::demowindow;
using kelfractionint::fractioni;

namespace {

QStringList value(const fractioni *control)
{
    return testsupport::value(*control);
}

QLineEdit *field(fractioni *control, const char *name)
{
    return control->findChild<QLineEdit *>(QLatin1String(name));
}

// Every persisted property of a control, by name.
QVariantMap persisted(const fractioni *control)
{
    QVariantMap values;
    const QMetaObject *meta = control->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (property.isStored() && property.isWritable())
            values.insert(QLatin1String(property.name()), property.read(control));
    }
    values.insert(QStringLiteral("size"), control->size());
    return values;
}

QStringList matching(const QStringList &lines, const QString &part)
{
    return lines.filter(part);
}

} // namespace

class tst_fractiondemo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void typingraisesandlogsevents();
    void operations_data();
    void operations();
    void selectionfollowsfocusandclicks();
    void errorsbecomemessages_data();
    void errorsbecomemessages();
    void keyboardreachesoperations_data();
    void keyboardreachesoperations();
    void everyinputhasanaccessiblename();
    void tabordergoesthroughtheform();
    void pageseditselectedcontrol();
    void savedformreopensidentically();
    void pictures();
    void scriptedtour();

private:
    QAbstractButton *button(const char *name) const
    {
        return window->findChild<QAbstractButton *>(QLatin1String(name));
    }
    QAction *action(const char *name) const { return window->findChild<QAction *>(QLatin1String(name)); }

    std::unique_ptr<demowindow> window;
};

void tst_fractiondemo::initTestCase()
{
    testsupport::pinlocale();
}

void tst_fractiondemo::init()
{
    window = std::make_unique<demowindow>();
    window->logmessages();
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
}

void tst_fractiondemo::cleanup()
{
    window.reset();
}

void tst_fractiondemo::typingraisesandlogsevents()
{
    fractioni *first = window->first();
    QSignalSpy spy(first, &fractioni::fractionvaluechanged);
    kelfractionint::scriptedrun::typeinto(field(first, "numerator"), QStringLiteral("36"));

    // Selecting all and typing replaces the 1 with 3, then 36: one event per keystroke.
    const QList<QStringList> expected = {
        {"+", "4", "1", "7", "+", "4", "3", "7"},
        {"+", "4", "3", "7", "+", "4", "36", "7"},
    };
    QCOMPARE(testsupport::events(spy), expected);
    QCOMPARE(matching(window->loglines(), QStringLiteral("fractionvaluechanged")),
             QStringList({R"(first: fractionvaluechanged "+" "4" "1" "7" -> "+" "4" "3" "7")",
                          R"(first: fractionvaluechanged "+" "4" "3" "7" -> "+" "4" "36" "7")"}));
    QCOMPARE(window->selected(), first);
}

void tst_fractiondemo::operations_data()
{
    QTest::addColumn<QString>("buttonname");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("second");
    QTest::addColumn<bool>("autoreplace");
    QTest::addColumn<QStringList>("result");
    QTest::addColumn<QStringList>("firstafter");

    // Each button reaches its own operation; the "into" ones load the first operand and leave the
    // result alone. An empty "first after" means the first operand keeps its value.
    const QStringList any{"", "1", "2"}, kept, untouched{"4", "1", "7"};
    const auto row = [](const char *button, const QStringList &first, const QStringList &second,
                        const QStringList &result, const QStringList &firstafter, bool autoreplace = false) {
        QTest::newRow(button) << QString::fromLatin1(button) << first << second << autoreplace << result << firstafter;
    };
    row("reducebutton", {"", "6", "8"}, any, {"", "3", "4"}, kept);
    QTest::newRow("reduce in place with Autoreplace") << "reducebutton" << QStringList{"", "6", "8"} << any << true
                                                      << QStringList{"", "3", "4"} << QStringList{"", "3", "4"};
    row("fractomixedbutton", {"", "7", "4"}, any, {"1", "3", "4"}, kept);
    row("mixedtofracbutton", {"1", "1", "2"}, any, {"", "3", "2"}, kept);
    row("expandbutton", {"", "2", "3"}, any, {"", "6", "9"}, kept);
    row("invertbutton", {"", "2", "3"}, any, {"", "3", "2"}, kept);
    row("fractodecimalbutton", {"", "1", "3"}, any, {"0.33", "", ""}, kept);
    row("fractopercentbutton", {"", "1", "3"}, any, {"33%", "", ""}, kept);
    row("decimaltofracbutton", {"0.25", "", ""}, any, {"", "25", "100"}, kept);
    row("percenttofracbutton", {"12.5%", "", ""}, any, {"", "125", "1000"}, kept);
    row("addbutton", {"", "1", "2"}, {"", "1", "3"}, {"", "5", "6"}, kept);
    row("subtractbutton", {"", "1", "2"}, {"", "1", "3"}, {"", "1", "6"}, kept);
    row("multiplybutton", {"", "2", "3"}, {"", "3", "4"}, {"", "6", "12"}, kept);
    row("dividebutton", {"", "1", "2"}, {"", "1", "4"}, {"", "4", "2"}, kept);
    row("addintobutton", {"", "1", "2"}, {"", "1", "3"}, untouched, {"", "5", "6"});
    row("subtractintobutton", {"", "1", "2"}, {"", "1", "3"}, untouched, {"", "1", "6"});
    row("multiplyintobutton", {"", "2", "3"}, {"", "3", "4"}, untouched, {"", "6", "12"});
    row("divideintobutton", {"", "1", "2"}, {"", "1", "4"}, untouched, {"", "4", "2"});
}

void tst_fractiondemo::operations()
{
    QFETCH(QString, buttonname);
    QFETCH(QStringList, first);
    QFETCH(QStringList, second);
    QFETCH(bool, autoreplace);
    QFETCH(QStringList, result);
    QFETCH(QStringList, firstafter);

    window->first()->setFracType(fractioni::fracAlgebraic);
    window->first()->loadfraction(first);
    window->second()->loadfraction(second);
    window->findChild<QSpinBox *>(QStringLiteral("factorbox"))->setValue(3);
    window->findChild<QSpinBox *>(QStringLiteral("decimalsbox"))->setValue(2);
    if (autoreplace)
        kelfractionint::scriptedrun::click(button("autoreplacebox"));
    QCOMPARE(window->first()->Autoreplace(), autoreplace);

    kelfractionint::scriptedrun::click(button(buttonname.toLatin1().constData()));
    QCOMPARE(value(window->result()), result);
    QCOMPARE(value(window->first()), firstafter.isEmpty() ? first : firstafter);
    QCOMPARE(matching(window->loglines(), QStringLiteral("message:")), QStringList());
}

void tst_fractiondemo::selectionfollowsfocusandclicks()
{
    window->second()->loadfraction(QStringList{"", "6", "8"});
    QTest::mouseClick(field(window->second(), "numerator"), Qt::LeftButton);
    QCOMPARE(window->selected(), window->second());
    QVERIFY(window->findChild<QGroupBox *>(QStringLiteral("singlegroup"))->title().contains(QLatin1String("Second")));
    kelfractionint::scriptedrun::click(button("reducebutton"));
    QCOMPARE(value(window->result()), QStringList({"", "3", "4"}));

    // A press on the result's own surface (left of its fields) raises MouseDown and selects it.
    fractioni *result = window->result();
    const QPoint surface(1, result->height() - 2);
    QVERIFY(!result->childAt(surface));
    QTest::mousePress(result, Qt::LeftButton, Qt::NoModifier, surface);
    QTest::mouseRelease(result, Qt::LeftButton, Qt::NoModifier, surface);
    QCOMPARE(window->selected(), result);
    QVERIFY(!matching(window->loglines(), QStringLiteral("result: MouseDown (Button 1, Shift 0")).isEmpty());
}

void tst_fractiondemo::errorsbecomemessages_data()
{
    QTest::addColumn<QString>("buttonname");
    QTest::addColumn<QStringList>("second");
    QTest::addColumn<int>("factor");
    QTest::addColumn<QString>("message");

    // Raised by the control to the host, which shows it like the component's own messages.
    QTest::newRow("dividing by an empty fraction") << "dividebutton" << QStringList{"", "", ""} << 2
                                                   << "message: Error 11: Division by zero";
    // Found by the engine, which reports it itself and returns what it holds.
    QTest::newRow("expanding beyond 32 bits") << "expandbutton" << QStringList{"", "1", "2"} << 1000
                                              << "message: Overflow";
}

void tst_fractiondemo::errorsbecomemessages()
{
    QFETCH(QString, buttonname);
    QFETCH(QStringList, second);
    QFETCH(int, factor);
    QFETCH(QString, message);

    window->first()->loadfraction(QStringList{"", "2000000000", "3"});
    window->second()->loadfraction(second);
    window->findChild<QSpinBox *>(QStringLiteral("factorbox"))->setValue(factor);
    kelfractionint::scriptedrun::click(button(buttonname.toLatin1().constData()));
    QCOMPARE(matching(window->loglines(), QStringLiteral("message:")), QStringList{message});
    QCOMPARE(value(window->first()), QStringList({"", "2000000000", "3"}));
}

void tst_fractiondemo::keyboardreachesoperations_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QStringList>("result");
    QTest::addColumn<QStringList>("first");

    const int alt = Qt::AltModifier;
    const int ctrlshift = Qt::ControlModifier | Qt::ShiftModifier;
    const QStringList firstvalue = {"", "6", "8"};
    const QStringList untouched = {"4", "1", "7"};
    QTest::newRow("Alt+R reduces") << int(Qt::Key_R) << alt << QStringList{"", "3", "4"} << firstvalue;
    QTest::newRow("Alt+A adds") << int(Qt::Key_A) << alt << QStringList{"", "14", "8"} << firstvalue;
    QTest::newRow("Ctrl+Shift+A adds into first") << int(Qt::Key_A) << ctrlshift << untouched
                                                  << QStringList{"", "14", "8"};
}

void tst_fractiondemo::keyboardreachesoperations()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QStringList, result);
    QFETCH(QStringList, first);

    window->first()->loadfraction(QStringList{"", "6", "8"});
    window->second()->loadfraction(QStringList{"", "1", "1"});
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    // A shortcut presses the button visibly and releases it a moment later.
    QTRY_COMPARE(value(window->result()), result);
    QTRY_COMPARE(value(window->first()), first);
}

void tst_fractiondemo::everyinputhasanaccessiblename()
{
    int inputs = 0;
    for (const QWidget *widget : window->centralWidget()->findChildren<QWidget *>()) {
        if (qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QSpinBox *>(widget)
            || qobject_cast<const fractioni *>(widget)) {
            QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
            ++inputs;
        }
    }
    QCOMPARE(inputs, 28);
}

void tst_fractiondemo::tabordergoesthroughtheform()
{
    // Tab from the first operand's whole part visits the fractions part by part, then the toggle
    // and the operations in reading order, then the log, and comes round again.
    QLineEdit *start = field(window->first(), "wholepart");
    start->setFocus(Qt::TabFocusReason);
    QStringList visited;
    do {
        const QWidget *now = QApplication::focusWidget();
        const QWidget *control = now->parentWidget();
        visited.append(qobject_cast<const fractioni *>(control)
                           ? control->objectName() + QLatin1Char('.') + now->objectName()
                           : now->objectName());
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Tab);
    } while (QApplication::focusWidget() != start && visited.size() < 40);

    const QStringList parts = {"wholepart", "numerator", "denominator"};
    QStringList expected;
    for (const char *control : {"first", "second", "result"}) {
        for (const QString &part : parts)
            expected.append(QLatin1String(control) + QLatin1Char('.') + part);
    }
    expected << "autoreplacebox" << "reducebutton" << "fractomixedbutton" << "mixedtofracbutton" << "invertbutton"
             << "expandbutton" << "factorbox" << "changesignbutton" << "clearbutton" << "fractodecimalbutton"
             << "fractopercentbutton" << "decimalsbox" << "decimaltofracbutton" << "percenttofracbutton"
             << "approximatebutton" << "limitbox"
             << "addbutton" << "subtractbutton" << "multiplybutton" << "dividebutton" << "addintobutton"
             << "subtractintobutton" << "multiplyintobutton" << "divideintobutton" << "eventlog"
             << "clearlogbutton";
    QCOMPARE(visited, expected);
}

void tst_fractiondemo::pageseditselectedcontrol()
{
    QTest::mouseClick(field(window->second(), "wholepart"), Qt::LeftButton);
    QCOMPARE(window->selected(), window->second());

    action("actionvaluespage")->trigger();
    auto *dialog = window->findChild<kelfractionint::propertypagedialog *>();
    QVERIFY(dialog);
    QVERIFY(dialog->isVisible());
    QLineEdit *numerator = dialog->findChild<QLineEdit *>(QStringLiteral("txtnumeratorvalue"));
    QCOMPARE(numerator->text(), QStringLiteral("1"));
    numerator->setText(QStringLiteral("5"));
    dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    QVERIFY(QTest::qWaitFor([&] { return !window->findChild<kelfractionint::propertypagedialog *>(); }));
    QCOMPARE(value(window->second()), QStringList({"4", "5", "7"}));
    QCOMPARE(value(window->first()), QStringList({"4", "1", "7"}));

    // Autoreplace set on the appearance page shows in the window's toggle as a mixed state.
    action("actionappearancepage")->trigger();
    dialog = window->findChild<kelfractionint::propertypagedialog *>();
    QVERIFY(dialog);
    dialog->findChild<QCheckBox *>(QStringLiteral("chkautoreplace"))->setChecked(true);
    dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    QVERIFY(window->second()->Autoreplace());
    auto *toggle = window->findChild<QCheckBox *>(QStringLiteral("autoreplacebox"));
    QCOMPARE(toggle->checkState(), Qt::PartiallyChecked);
    kelfractionint::scriptedrun::click(toggle);
    QCOMPARE(toggle->checkState(), Qt::Checked);
    QVERIFY(window->first()->Autoreplace() && window->second()->Autoreplace() && window->result()->Autoreplace());

    action("actionabout")->trigger();
    auto *about = window->findChild<kelfractionint::frmAbout *>();
    QVERIFY(about && about->isVisible());
    about->close();
}

void tst_fractiondemo::savedformreopensidentically()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("form.ini"));
    window->setformfile(path);

    kelfractionint::scriptedrun::typeinto(field(window->first(), "wholepart"), QStringLiteral("-3"));
    kelfractionint::scriptedrun::typeinto(field(window->first(), "numerator"), QStringLiteral("2"));
    window->second()->setFractionslash(true);
    window->second()->setForcesign(true);
    window->result()->loadfraction(QStringList{"", "7", "12"});
    window->result()->setBorderstyle(fractioni::borderstylefixed);
    window->result()->setAutoreplace(true);
    QFont font = window->first()->Font();
    font.setBold(true);
    window->first()->setFont(font);

    const QVariantMap saved[] = {persisted(window->first()), persisted(window->second()),
                                 persisted(window->result())};
    const QImage pictures[] = {window->first()->Picture().toImage(), window->second()->Picture().toImage(),
                               window->result()->Picture().toImage()};
    action("actionsave")->trigger();
    {
        QSettings settings(path, QSettings::IniFormat);
        QCOMPARE(settings.childGroups(), QStringList({"first", "result", "second"}));
        QCOMPARE(settings.value(QStringLiteral("first/Wholepartvalue")).toString(), QStringLiteral("-3"));
    }

    // Reopened in the same window after changes, and in a new window.
    window->first()->clearfraction();
    window->second()->setFractionslash(false);
    window->result()->setBorderstyle(fractioni::borderstylenone);
    action("actionopen")->trigger();
    demowindow other;
    other.logmessages();
    other.show();
    QVERIFY(other.openform(path));

    for (demowindow *reopened : {window.get(), &other}) {
        const fractioni *controls[] = {reopened->first(), reopened->second(), reopened->result()};
        for (int i = 0; i < 3; ++i) {
            const QVariantMap now = persisted(controls[i]);
            for (auto it = saved[i].begin(); it != saved[i].end(); ++it) {
                const QString what = controls[i]->objectName() + QLatin1Char('.') + it.key();
                QVERIFY2(now.value(it.key()) == it.value(), qPrintable(what));
            }
            QCOMPARE(controls[i]->Picture().toImage(), pictures[i]);
        }
        QCOMPARE(reopened->findChild<QCheckBox *>(QStringLiteral("autoreplacebox"))->checkState(),
                 Qt::PartiallyChecked);
    }

    // The newest window's log receives the messages.
    QVERIFY(!other.openform(dir.filePath(QStringLiteral("missing.ini"))));
    QCOMPARE(matching(other.loglines(), QStringLiteral("message:")).size(), 1);
}

void tst_fractiondemo::pictures()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("first.png"));
    QVERIFY(window->exportpicture(path));
    const QImage exported(path);
    const QImage picture = window->first()->Picture().toImage();
    QCOMPARE(exported.size(), picture.size());
    QCOMPARE(exported.convertToFormat(QImage::Format_ARGB32), picture.convertToFormat(QImage::Format_ARGB32));

    QTest::mouseClick(field(window->second(), "numerator"), Qt::LeftButton);
    action("actioncopypicture")->trigger();
    QCOMPARE(QApplication::clipboard()->image().size(), window->second()->Picture().size());
}

void tst_fractiondemo::scriptedtour()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("shots/demo.png"));
    QVERIFY(kelfractionint::scriptedrun::run(*window, path));
    QCOMPARE(QImage(path).size(), window->grab().size());

    QCOMPARE(value(window->first()), QStringList({"2", "3", "4"}));
    QCOMPARE(value(window->second()), QStringList({"-1", "1", "3"}));
    QCOMPARE(value(window->result()), QStringList({"1", "5", "12"}));
    const QStringList lines = window->loglines();
    QCOMPARE(matching(lines, QStringLiteral("message:")), QStringList());
    // Three typed keys, then the reduced value loaded part by part.
    const QStringList firstevents = matching(lines, QStringLiteral("first: fractionvaluechanged"));
    QCOMPARE(firstevents.size(), 6);
    QCOMPARE(firstevents.first(), QStringLiteral(R"(first: fractionvaluechanged "+" "4" "1" "7" -> "+" "2" "1" "7")"));
    QVERIFY(firstevents.last().endsWith(QLatin1String(R"(-> "+" "2" "3" "4")")));
    QVERIFY(lines.contains(QStringLiteral(R"(result.fractomixed returned "1" "5" "12")")));
}

QTEST_MAIN(tst_fractiondemo)
#include "tst_fractiondemo.moc"
