// Lifecycle of the fraction control: a new control's values, the property bag's 22 keys with
// their defaults and order, round trips through memory and QSettings, and bags with foreign or
// broken values.
#include "fractioni.h"
#include "messageboxsink.h"
#include "propertybag.h"
#include "testsupport.h"
#include "twips.h"

#include <QAccessible>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using kelfractionint::fractioni;
using kelfractionint::memorypropertybag;

namespace {

const QStringList writerorder{
    "Wholepartvalue", "Numeratorvalue", "Denominatorvalue", "Width", "Height", "Fractionslash", "Backcolor",
    "Wholepartbackcolor", "Numeratorbackcolor", "Denominatorbackcolor", "Negforecolor", "Posforecolor",
    "Userresizeable", "Autoreplace", "Forcesign", "Borderstyle", "Font", "Fracpartvisible", "WholepartLocked",
    "NumeratorLocked", "DenominatorLocked", "FracType"};

// Every persisted property except the size, read through the meta-object.
QVariantMap persisted(const fractioni &control)
{
    QVariantMap values;
    for (const QString &key : writerorder) {
        if (key != QLatin1String("Width") && key != QLatin1String("Height"))
            values.insert(key, control.property(key.toLatin1().constData()));
    }
    return values;
}

void changeeverything(fractioni &c)
{
    c.setFracType(fractioni::fracAlgebraic);
    c.setWholepartvalue(QStringLiteral("-x"));
    c.setNumeratorvalue(QStringLiteral("a"));
    c.setDenominatorvalue(QStringLiteral("b"));
    c.setFractionslash(false);
    c.setBackcolor(0x102030);
    c.setWholepartbackcolor(0x405060);
    c.setNumeratorbackcolor(0x708090);
    c.setDenominatorbackcolor(0xA0B0C0);
    c.setNegforecolor(0x00FF00);
    c.setPosforecolor(0x0000FF);
    c.setUserresizeable(true);
    c.setAutoreplace(true);
    c.setForcesign(true);
    c.setBorderstyle(fractioni::borderstylefixed);
    QFont font(QStringLiteral("Serif"));
    font.setPointSize(15);
    font.setBold(true);
    font.setItalic(true);
    c.setFont(font);
    c.setNumeratorLocked(true);
    c.setDenominatorLocked(true);
    c.setWholepartLocked(true);
}

} // namespace

class tst_fractionilifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); }

    void newcontrol();
    void emptybag();
    void defaultsnotstored();
    void roundtrip();
    void settingsroundtrip();
    void brokenbag_data();
    void brokenbag();

private:
    kelfractionint::messagecapture m_messages;
};

void tst_fractionilifecycle::newcontrol()
{
    QWidget form;
    QPalette palette = form.palette();
    palette.setColor(QPalette::Window, QColor(0x33, 0x66, 0x99));
    form.setPalette(palette);
    QFont formfont(QStringLiteral("Serif"));
    formfont.setItalic(true);
    form.setFont(formfont);
    fractioni control(&form);
    QCOMPARE(testsupport::value(control), (QStringList{"4", "1", "7"}));
    QVERIFY(control.Fractionslash());
    QCOMPARE(control.Borderstyle(), fractioni::borderstylenone);
    QCOMPARE(control.Posforecolor(), 0u);
    QCOMPARE(control.Negforecolor(), 255u);
    for (const char *name : {"Backcolor", "Wholepartbackcolor", "Numeratorbackcolor", "Denominatorbackcolor"})
        QCOMPARE(control.property(name).toUInt(), 0x996633u);
    QVERIFY(control.Font().italic());
    QCOMPARE(control.Font().family(), formfont.family());
    QCOMPARE(control.FracType(), fractioni::fracnumeric);
    QVERIFY(control.Fracpartvisible());
    QVERIFY(!control.Userresizeable());
    QVERIFY(control.findChild<QWidget *>(QStringLiteral("lblgrip"))->isHidden());
    // Screen readers find the value in the control's description and the fields by name.
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&control);
    QVERIFY(accessible);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("fraction"));
    QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("4 1/7"));
    control.loadfraction(QStringList{"-2", "1", "4"});
    QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("-2 1/4"));
    QCOMPARE(control.findChild<QLineEdit *>(QStringLiteral("numerator"))->accessibleName(), QStringLiteral("numerator"));
    QCOMPARE(control.findChild<QLineEdit *>(QStringLiteral("wholepart"))->accessibleName(), QStringLiteral("whole part"));
}

void tst_fractionilifecycle::emptybag()
{
    QWidget form;
    QPalette palette = form.palette();
    palette.setColor(QPalette::Window, QColor(0x33, 0x66, 0x99));
    form.setPalette(palette);
    fractioni control(&form);
    control.loadfraction(QStringList{"-9", "", ""});
    memorypropertybag bag;
    control.ReadProperties(bag);
    QCOMPARE(testsupport::value(control), (QStringList{"4", "1", "7"}));
    for (const char *name : {"Backcolor", "Wholepartbackcolor", "Numeratorbackcolor", "Denominatorbackcolor"})
        QCOMPARE(control.property(name).toUInt(), 0xFFFFFFu);
    QVERIFY(m_messages.take().isEmpty());
}

void tst_fractionilifecycle::defaultsnotstored()
{
    QWidget form;
    QPalette palette = form.palette();
    palette.setColor(QPalette::Window, Qt::white);
    form.setPalette(palette);
    fractioni control(&form);
    control.fracsize(600, 600);
    memorypropertybag bag;
    control.WriteProperties(bag);
    // Values equal to their defaults are left out; the font is an object and always stored, the
    // size only where it differs from 600 x 600 twips.
    QStringList expected;
    if (std::lround(control.width() * kelfractionint::twipsperpixelx(&control)) != 600)
        expected << QStringLiteral("Width");
    if (std::lround(control.height() * kelfractionint::twipsperpixely(&control)) != 600)
        expected << QStringLiteral("Height");
    expected << QStringLiteral("Font");
    QCOMPARE(bag.keys(), expected);
}

void tst_fractionilifecycle::roundtrip()
{
    fractioni original;
    changeeverything(original);
    memorypropertybag bag;
    original.WriteProperties(bag);
    // Everything but Fracpartvisible (still at its default) is stored, in the writer's order.
    QStringList expected = writerorder;
    expected.removeOne(QStringLiteral("Fracpartvisible"));
    QCOMPARE(bag.keys(), expected);
    QCOMPARE(bag.readproperty(QStringLiteral("FracType")).toInt(), 1);
    QCOMPARE(bag.readproperty(QStringLiteral("Width")).typeId(), QMetaType::Float);

    fractioni restored;
    QSignalSpy spy(&restored, &fractioni::fractionvaluechanged);
    restored.ReadProperties(bag);
    QCOMPARE(persisted(restored), persisted(original));
    QCOMPARE(restored.size(), original.size());
    // The value comes back through the setters, whole part first.
    QVERIFY(spy.count() >= 3);
    QCOMPARE(spy.at(0).at(5).toString(), QStringLiteral("-x"));
    QVERIFY(m_messages.take().isEmpty());
}

void tst_fractionilifecycle::settingsroundtrip()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("form.ini"));
    fractioni original;
    changeeverything(original);
    {
        QSettings settings(path, QSettings::IniFormat);
        kelfractionint::settingspropertybag bag(settings, QStringLiteral("fraction1"));
        original.WriteProperties(bag);
    }
    // A fresh QSettings reads everything back as text.
    QSettings settings(path, QSettings::IniFormat);
    kelfractionint::settingspropertybag bag(settings, QStringLiteral("fraction1"));
    QCOMPARE(bag.keys().size(), writerorder.size() - 1);
    fractioni restored;
    restored.ReadProperties(bag);
    QCOMPARE(persisted(restored), persisted(original));
    QCOMPARE(restored.size(), original.size());
}

void tst_fractionilifecycle::brokenbag_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("kept");

    QTest::newRow("FracType as text") << "FracType" << QVariant(QStringLiteral("algebraic")) << "FracType" << QVariant(0);
    QTest::newRow("FracType beyond 32 bits") << "FracType" << QVariant(1e12) << "FracType" << QVariant(0);
    QTest::newRow("whole part refused by the saved type")
        << "Wholepartvalue" << QVariant(QStringLiteral("abc")) << "Wholepartvalue" << QVariant(QStringLiteral("4"));
    QTest::newRow("numerator as a list")
        << "Numeratorvalue" << QVariant(QStringList{"1", "2"}) << "Numeratorvalue" << QVariant(QStringLiteral("1"));
    QTest::newRow("colour as a word") << "Backcolor" << QVariant(QStringLiteral("red")) << "Backcolor" << QVariant(0xFFFFFFu);
    QTest::newRow("colour beyond 32 bits") << "Posforecolor" << QVariant(1e20) << "Posforecolor" << QVariant(0u);
    QTest::newRow("Borderstyle beyond 16 bits") << "Borderstyle" << QVariant(70000) << "Borderstyle" << QVariant(0);
    QTest::newRow("Fractionslash as a word") << "Fractionslash" << QVariant(QStringLiteral("maybe")) << "Fractionslash" << QVariant(true);
    QTest::newRow("Font as a number") << "Font" << QVariant(12) << "Fracpartvisible" << QVariant(true);
    QTest::newRow("Width not a number") << "Width" << QVariant(QStringLiteral("wide")) << "Fracpartvisible" << QVariant(true);
    QTest::newRow("negative Height") << "Height" << QVariant(-500) << "Fracpartvisible" << QVariant(true);
    QTest::newRow("huge Width") << "Width" << QVariant(1e30) << "Fracpartvisible" << QVariant(true);
    QTest::newRow("huge whole part") << "Wholepartvalue" << QVariant(QString(100000, u'7') + u'x')
                                     << "Wholepartvalue" << QVariant(QStringLiteral("4"));
}

void tst_fractionilifecycle::brokenbag()
{
    QFETCH(QString, key);
    QFETCH(QVariant, stored);
    QFETCH(QString, property);
    QFETCH(QVariant, kept);

    memorypropertybag bag;
    bag.setraw(QStringLiteral("Denominatorvalue"), QStringLiteral("9"));
    bag.setraw(key, stored);
    bag.setraw(QStringLiteral("DenominatorLocked"), true);
    fractioni control;
    control.ReadProperties(bag);
    const QVariant actual = control.property(property.toLatin1().constData());
    if (kept.typeId() == QMetaType::Int)
        QCOMPARE(actual.toInt(), kept.toInt());
    else
        QCOMPARE(actual.toString(), kept.toString());
    // The keys after the broken one are restored all the same.
    QVERIFY(control.DenominatorLocked());
    QCOMPARE(control.Denominatorvalue(), QStringLiteral("9"));
    QVERIFY(control.width() > 0 && control.width() < 20000);
    QVERIFY(m_messages.take().isEmpty());
}

QTEST_MAIN(tst_fractionilifecycle)
#include "tst_fractionilifecycle.moc"
