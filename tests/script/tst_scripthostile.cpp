// Scripts that attack the host: each ends in a numbered error the script can catch, in bounded
// time, and the host lives on.
#include "scripthost.h"

#include "hostnumbers.h"

#include <QLocale>
#include <QTest>

using kelfractionint::scripthost;

class tst_scripthostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        modfracglobal::setnumberlocale({".", ","});
    }

    void caught_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("expected");
        QTest::newRow("symbol assigned") << "f.Numeratorvalue = Symbol()" << "13 Type mismatch 1";
        QTest::newRow("symbol by dispatch id") << "dispinvoke(f, 0x6803001b, 'let', Symbol())" << "13 Type mismatch 1";
        QTest::newRow("symbol in a bag") << "createpropertybag().WriteProperty('x', Symbol(), 1)" << "13 Type mismatch 1";
        QTest::newRow("symbol in a record") << "f.loadfraction(['1', Symbol(), '2'])" << "13 Type mismatch 1";
        QTest::newRow("sparse record of 2^31-1") << "var a = []; a.length = 2147483647; f.loadfraction(a)"
                                                 << "6 Overflow 1";
        QTest::newRow("Count of -1") << "f.addfractions({Count: -1})" << "13 Type mismatch 1";
        QTest::newRow("Count of NaN") << "f.addfractions({Count: NaN})" << "13 Type mismatch 1";
        QTest::newRow("Count of Infinity") << "f.addfractions({Count: Infinity})" << "13 Type mismatch 1";
        QTest::newRow("Count of 2.5") << "f.addfractions({Count: 2.5})" << "13 Type mismatch 1";
        QTest::newRow("Count that throws") << "f.addfractions({get Count() { throw new Error('no'); }})"
                                           << "13 Type mismatch 1";
        QTest::newRow("item that throws") << "f.addfractions({Count: 2, Item(i) { throw 'no'; }})"
                                          << "13 Type mismatch 1";
        QTest::newRow("property defined on a control")
            << "Object.defineProperty(f, 'Numeratorvalue', {value: '3'})"
            << "438 Object doesn't support this property or method 1";
        // Read once, as an automation client reads it: one item, the control itself.
        QTest::newRow("Count growing while read")
            << "var n = 0; print(f.addfractions({get Count() { return ++n; }, Item(i) { return f; }}))"
            << "none 1";
        QTest::newRow("handlers assigning twice")
            << "f.fractionvaluechanged.connect(function () { ++calls; f.Numeratorvalue = '2'; f.Numeratorvalue = '3'; });"
               "f.Numeratorvalue = '5'"
            << "28 Out of stack space 65";
    }

    void caught()
    {
        QFETCH(QString, script);
        QFETCH(QString, expected);
        scripthost host;
        QStringList printed;
        host.setoutput([&printed](const QString &line) { printed.append(line); });
        const QJSValue result = host.evaluate(
            QStringLiteral("var f = createfraction(), calls = 1, outcome = 'none';"
                           "try { %1 } catch (e) { outcome = e.number + ' ' + e.description; }"
                           "outcome + ' ' + calls")
                .arg(script));
        QVERIFY2(!result.isError(), qPrintable(scripthost::errortext(result)));
        QCOMPARE(result.toString(), expected);
        // The host goes on: the control still answers.
        QCOMPARE(host.evaluate(QStringLiteral("f.getsign()")).toString(), QStringLiteral("+"));
    }

    void longrecordwrittenback()
    {
        scripthost host;
        const QJSValue result = host.evaluate(QStringLiteral(
            "var f = createfraction(), a = [];"
            "for (var i = 0; i < 700000; ++i) a.push(' ' + i);"
            "f.loadfraction(a); a.length + ' ' + a[1] + ' ' + a[699999] + ' ' + f.Numeratorvalue"));
        QVERIFY2(!result.isError(), qPrintable(scripthost::errortext(result)));
        QCOMPARE(result.toString(), QStringLiteral("700000 1  699999 1"));
    }
};

QTEST_MAIN(tst_scripthostile)
#include "tst_scripthostile.moc"
