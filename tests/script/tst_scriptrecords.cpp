// Records a script passes by reference and controls it restores from a bag.
#include "scripthost.h"

#include "hostnumbers.h"

#include <QLocale>
#include <QTest>

using kelfractionint::scripthost;

class tst_scriptrecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        modfracglobal::setnumberlocale({".", ","});
    }

    void results_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("expected");
        const QString refused = QStringLiteral(
            "var f = createfraction(), a = [' abc ', ' 1', '2 '], n = 0;"
            "try { %1 } catch (e) { n = e.number; }"
            "n + ' ' + JSON.stringify(a) + ' ' + f.Wholepartvalue + ' ' + f.Numeratorvalue");
        QTest::newRow("a refused record is trimmed by name")
            << refused.arg(QStringLiteral("f.loadfraction(a);")) << "380 [\"abc\",\"1\",\"2\"] 4 1";
        QTest::newRow("a refused record is trimmed by dispatch id")
            << refused.arg(QStringLiteral("dispinvoke(f, 0x6003003a, 'method', a);"))
            << "380 [\"abc\",\"1\",\"2\"] 4 1";
        const QString restored = QStringLiteral(
            "var b = createpropertybag(); %1 var r = createfraction(b);"
            "JSON.stringify([r.Wholepartvalue, r.Numeratorvalue, r.Denominatorvalue, r.Backcolor])");
        QTest::newRow("a refused saved value restores empty")
            << restored.arg(QStringLiteral("b.WriteProperty('FracType', 7, 0); b.WriteProperty('Numeratorvalue', '3', '1');"))
            << "[\"\",\"\",\"\",16777215]";
        QTest::newRow("an empty bag restores the defaults in white")
            << restored.arg(QString()) << "[\"4\",\"1\",\"7\",16777215]";
    }

    void results()
    {
        QFETCH(QString, script);
        QFETCH(QString, expected);
        scripthost host;
        QPalette grey = host.form()->palette();
        grey.setColor(QPalette::Window, QColor(0x80, 0x80, 0x80));
        host.form()->setPalette(grey);
        const QJSValue result = host.evaluate(script);
        QVERIFY2(!result.isError(), qPrintable(scripthost::errortext(result)));
        QCOMPARE(result.toString(), expected);
    }
};

QTEST_MAIN(tst_scriptrecords)
#include "tst_scriptrecords.moc"
