// What a host sees at the edges of the value: listeners that change the value, controls restored
// from a bag, editing keys in a filtered whole part and the picture of an empty control.
#include "fractioni.h"
#include "propertybag.h"
#include "testsupport.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using kelfractionint::fractioni;
using kelfractionint::memorypropertybag;

class tst_fractionirestore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); }

    void listenerschangingthevalue();
    void restoredcontrol_data();
    void restoredcontrol();
    void numberintextkey();
    void editingkeysinwholepart_data();
    void editingkeysinwholepart();
    void fontwithoutfamily_data();
    void fontwithoutfamily();
    void damagedentrycountsasabsent();
    void longvaluekeptwhole();
    void emptycontrolshowsnoseparator_data();
    void emptycontrolshowsnoseparator();
};

void tst_fractionirestore::listenerschangingthevalue()
{
    fractioni control;
    QList<QStringList> first, second;
    QString ownwhole;
    bool reassigned = false;
    connect(&control, &fractioni::fractionvaluechanged, &control,
            [&](const QString &os, const QString &ow, const QString &on, const QString &od, const QString &ns,
                const QString &nw, const QString &nn, const QString &nd) {
                first.append({os, ow, on, od, ns, nw, nn, nd});
                if (!reassigned) {
                    reassigned = true;
                    control.setWholepartvalue(QStringLiteral("9"));
                    ownwhole = nw;
                }
            });
    connect(&control, &fractioni::fractionvaluechanged, &control,
            [&](const QString &os, const QString &ow, const QString &on, const QString &od, const QString &ns,
                const QString &nw, const QString &nn, const QString &nd) {
                second.append({os, ow, on, od, ns, nw, nn, nd});
            });

    control.changesign();
    // The listener's own argument still reads what was raised, after it assigned "9".
    QCOMPARE(ownwhole, QStringLiteral("-4"));
    // The second listener sees the nested event first, then the outer ones unchanged.
    const QStringList changed{"+", "4", "1", "7", "-", "-4", "1", "7"};
    const QStringList nested{"-", "-4", "1", "7", "+", "9", "1", "7"};
    const QStringList summary{"", "9", "1", "7", "+", "9", "1", "7"};
    QCOMPARE(second, (QList<QStringList>{nested, changed, summary}));
}

void tst_fractionirestore::restoredcontrol_data()
{
    QTest::addColumn<QVariantMap>("keys");
    QTest::addColumn<QStringList>("value");
    QTest::addColumn<quint32>("backcolor");
    const QString e;
    QTest::newRow("a type outside the list refuses the saved value")
        << QVariantMap{{"FracType", 7}, {"Wholepartvalue", "5"}} << QStringList{e, e, e} << 0xFFFFFFu;
    QTest::newRow("algebraic parts outside the sets are refused")
        << QVariantMap{{"FracType", 1}, {"Wholepartvalue", "\u00e9"}, {"Numeratorvalue", "\u00e9"},
                       {"Denominatorvalue", "\u00e9"}}
        << QStringList{e, e, e} << 0xFFFFFFu;
    QTest::newRow("no colour keys give white on a grey form") << QVariantMap{} << QStringList{"4", "1", "7"} << 0xFFFFFFu;
    QTest::newRow("saved colour") << QVariantMap{{"Backcolor", 0x00FF00}} << QStringList{"4", "1", "7"} << 0x00FF00u;
}

void tst_fractionirestore::restoredcontrol()
{
    QFETCH(QVariantMap, keys);
    QFETCH(QStringList, value);
    QFETCH(quint32, backcolor);
    QWidget form;
    QPalette grey = form.palette();
    grey.setColor(QPalette::Window, QColor(0x80, 0x80, 0x80));
    form.setPalette(grey);
    memorypropertybag bag;
    for (auto it = keys.cbegin(); it != keys.cend(); ++it)
        bag.setraw(it.key(), it.value());

    fractioni restored(bag, &form);
    QCOMPARE(testsupport::value(restored), value);
    QCOMPARE(restored.Backcolor(), backcolor);
    // A new control on the same form still takes its value and the form's colour.
    fractioni fresh(&form);
    QCOMPARE(testsupport::value(fresh), (QStringList{"4", "1", "7"}));
    QCOMPARE(fresh.Backcolor(), 0x808080u);
}

void tst_fractionirestore::numberintextkey()
{
    testsupport::pinlocale(",", ".");
    memorypropertybag bag;
    bag.setraw(QStringLiteral("Wholepartvalue"), 2.5);
    bag.setraw(QStringLiteral("Numeratorvalue"), 3);
    fractioni restored(bag);
    QCOMPARE(restored.Wholepartvalue(), QStringLiteral("2,5"));
    QCOMPARE(restored.Numeratorvalue(), QStringLiteral("3"));
}

void tst_fractionirestore::editingkeysinwholepart_data()
{
    // Each step is a key, its modifiers and the text the window system sends with it (X11 sends
    // Delete as "\x7f" and Ctrl+letter as a control character).
    QTest::addColumn<QList<QKeyCombination>>("keys");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("expected");
    const auto ctrl = [](Qt::Key key) { return QKeyCombination(Qt::ControlModifier, key); };
    const auto plain = [](Qt::Key key) { return QKeyCombination(key); };
    QTest::newRow("Delete removes the next digit")
        << QList{plain(Qt::Key_Delete)} << QStringList{"\x7f"} << "23";
    QTest::newRow("select all, then typing replaces")
        << QList{ctrl(Qt::Key_A), plain(Qt::Key_9)} << QStringList{"\x01", "9"} << "9";
    QTest::newRow("cut and paste back")
        << QList{ctrl(Qt::Key_A), ctrl(Qt::Key_X), ctrl(Qt::Key_V)} << QStringList{"\x01", "\x18", "\x16"}
        << "123";
    QTest::newRow("undo a Delete") << QList{plain(Qt::Key_Delete), ctrl(Qt::Key_Z)}
                                   << QStringList{"\x7f", "\x1a"} << "123";
    QTest::newRow("a letter stays refused") << QList{plain(Qt::Key_X)} << QStringList{"x"} << "123";
    QTest::newRow("Enter stays refused") << QList{plain(Qt::Key_Return)} << QStringList{"\r"} << "123";
}

void tst_fractionirestore::editingkeysinwholepart()
{
    QFETCH(QList<QKeyCombination>, keys);
    QFETCH(QStringList, texts);
    QFETCH(QString, expected);
    fractioni control;
    control.setWholeallowedchars(QStringList{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"});
    control.setWholepartvalue(QStringLiteral("123"));
    auto *field = control.findChild<QLineEdit *>(QStringLiteral("wholepart"));
    field->setCursorPosition(0);
    QGuiApplication::clipboard()->clear();
    for (qsizetype i = 0; i < keys.size(); ++i) {
        QKeyEvent press(QEvent::KeyPress, keys[i].key(), keys[i].keyboardModifiers(), texts[i]);
        QApplication::sendEvent(field, &press);
    }
    QCOMPARE(field->text(), expected);
    QCOMPARE(control.Wholepartvalue(), expected);
}

void tst_fractionirestore::fontwithoutfamily_data()
{
    QTest::addColumn<QVariant>("font");
    QTest::addColumn<bool>("restored");
    QFont nameless(QStringLiteral("x"));
    nameless.setFamily(QString());
    QTest::newRow("assigned") << QVariant(nameless) << false;
    QTest::newRow("restored from a font") << QVariant(nameless) << true;
    QTest::newRow("restored from a damaged text") << QVariant(QStringLiteral(",12,-1,5,50,0,0,0,0,0")) << true;
}

void tst_fractionirestore::fontwithoutfamily()
{
    QFETCH(QVariant, font);
    QFETCH(bool, restored);
    memorypropertybag source;
    source.setraw(QStringLiteral("Font"), font);
    std::unique_ptr<fractioni> control(restored ? new fractioni(source) : new fractioni);
    if (!restored)
        control->setFont(font.value<QFont>());
    QVERIFY(!control->Font().family().isEmpty());
    // Saving it works, and what is saved reads back with a family.
    QTemporaryDir dir;
    {
        QSettings settings(dir.filePath(QStringLiteral("form.ini")), QSettings::IniFormat);
        kelfractionint::settingspropertybag bag(settings, QStringLiteral("first"));
        control->WriteProperties(bag);
        settings.sync();
        QCOMPARE(settings.status(), QSettings::NoError);
    }
    QSettings settings(dir.filePath(QStringLiteral("form.ini")), QSettings::IniFormat);
    const kelfractionint::settingspropertybag bag(settings, QStringLiteral("first"));
    QVERIFY(!fractioni(bag).Font().family().isEmpty());
}

void tst_fractionirestore::damagedentrycountsasabsent()
{
    // A string entry whose data claims 2 GB, as a damaged or hostile form file holds it.
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("form.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[first]\nWholepartvalue=@Variant(\\0\\0\\0\\n\\0\\x7f\\xff\\xff\\xfe)\nNumeratorvalue=3\n");
    file.close();
    QSettings settings(file.fileName(), QSettings::IniFormat);
    const kelfractionint::settingspropertybag bag(settings, QStringLiteral("first"));
    QCOMPARE(testsupport::value(fractioni(bag)), (QStringList{"4", "3", "7"}));
}

void tst_fractionirestore::longvaluekeptwhole()
{
    // Longer than a line edit keeps by default: typing at its end loses nothing.
    fractioni control;
    control.setFracType(fractioni::fracAlgebraic);
    control.setNumerallowedchars(QStringList{"a"});
    control.setNumeratorvalue(QString(40000, QLatin1Char('a')));
    auto *field = control.findChild<QLineEdit *>(QStringLiteral("numerator"));
    field->end(false);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QApplication::sendEvent(field, &press);
    QCOMPARE(control.Numeratorvalue().size(), 40001);
}

void tst_fractionirestore::emptycontrolshowsnoseparator_data()
{
    QTest::addColumn<bool>("slash");
    QTest::newRow("slash") << true;
    QTest::newRow("bar") << false;
}

void tst_fractionirestore::emptycontrolshowsnoseparator()
{
    QFETCH(bool, slash);
    fractioni control;
    control.setFractionslash(slash);
    control.show();
    QVERIFY(QTest::qWaitForWindowExposed(&control));
    // Three empty texts: the fields have no width, so the separator has no length.
    control.loadfraction(QStringList{"", "", ""});
    const QImage picture = control.Picture().toImage();
    const QRgb back = picture.pixel(0, 0);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != back)
                QFAIL(qPrintable(QStringLiteral("ink at %1,%2").arg(x).arg(y)));
        }
    }
}

QTEST_MAIN(tst_fractionirestore)
#include "tst_fractionirestore.moc"
