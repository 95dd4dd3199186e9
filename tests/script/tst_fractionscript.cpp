#include "scripthost.h"

#include "fractioni.h"
#include "fractionidispatch.h"

#include "hostnumbers.h"

#include <QFile>
#include <QImage>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace kelfractionint;

namespace {

struct outcome
{
    int code;
    QString out;
    QString err;
};

} // namespace

class tst_fractionscript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        modfracglobal::setnumberlocale({".", ","});
        QVERIFY(m_runtime.isValid());
    }

    // The README's examples, run by the program as a user runs them.
    void examples_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("expected");
        QTest::newRow("value") << "value.js" << "4 1 7\n[\"\",\"3\",\"4\"]\n2\n3/4\n";
        QTest::newRow("events") << "events.js"
                                << "+ [\"4\",\"1\",\"7\"] -> - [\"-4\",\"1\",\"7\"]\n"
                                   " [\"-4\",\"1\",\"7\"] -> - [\"-4\",\"1\",\"7\"]\n";
        QTest::newRow("arithmetic") << "arithmetic.js"
                                    << "[\"\",\"5\",\"6\"]\n[\"\",\"1\",\"6\"]\n3/4\nerror 11 Division by zero\n";
        QTest::newRow("bag") << "bag.js"
                             << "[\"Wholepartvalue\",\"Fractionslash\"]\n-2 1 7 false\n";
        QTest::newRow("dispatch") << "dispatch.js"
                                  << "-3\nffff\n        HRESULT Wholepartvalue([out, retval] BSTR*);\n"
                                     "        HRESULT Wholepartvalue([in] BSTR value);\n[\"0.3333\",\"\",\"\"]\n";
    }

    void examples()
    {
        QFETCH(QString, file);
        QFETCH(QString, expected);
        const outcome run = program({QStringLiteral(KEL_SCRIPT_EXAMPLES "/") + file});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.code, 0);
        QCOMPARE(run.out, expected);
    }

    void everymemberbyname()
    {
        const QString path = QStringLiteral(KEL_SCRIPT_TESTS "/everymember.js");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString script = QString::fromUtf8(file.readAll());
        for (const dispmember &member : fractionimembers())
            QVERIFY2(script.contains(QLatin1Char('.') + QLatin1String(member.name)), member.name);
        const outcome run = program({path});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.code, 0);
        QCOMPARE(run.out, QStringLiteral("every member ran\n"));
    }

    void commandline_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::newRow("uncaught automation error")
            << QStringList{"-e", "createfraction().Wholepartvalue = 'x'"} << 1 << "" << "error 380: Invalid property value\n";
        QTest::newRow("uncaught script error with its place")
            << QStringList{"-e", "print(1);\nnosuchthing()"} << 1 << "1\n" << "ReferenceError: nosuchthing is not defined (<code>:2)\n";
        QTest::newRow("type error with the script's place and the argument's position")
            << QStringList{"-e", "createfraction().expand('many')"} << 1 << ""
            << "TypeError: expand: argument 1 (lngexpander) must be a Long (<code>:1)\n";
        QTest::newRow("missing control") << QStringList{"-e", "createfraction().addtwofractions(null, null)"} << 1 << ""
                                         << "error 91: Object variable or With block variable not set\n";
        QTest::newRow("record of four texts") << QStringList{"-e", "modfracglobal.strreduce(['1', '2', '3', '4'])"} << 1
                                              << "" << "argument 1 must be a record";
        QTest::newRow("smallest Long") << QStringList{"-e", "print(modfracglobal.parttext(-2147483648))"} << 0
                                       << "-2147483648\n" << "";
        QTest::newRow("a control as text") << QStringList{"-e", "print(String(createfraction()).split(' ')[0])"} << 0
                                           << "[fractioni\n" << "";
        QTest::newRow("no program") << QStringList{} << 2 << "" << "usage:";
        QTest::newRow("unknown option") << QStringList{"--fast", "-e", "1"} << 2 << "" << "usage:";
        QTest::newRow("two programs") << QStringList{"-e", "1", "x.js"} << 2 << "" << "usage:";
        QTest::newRow("missing file") << QStringList{"/nonexistent/x.js"} << 2 << "" << "cannot read";
        QTest::newRow("unknown locale") << QStringList{"--locale", "xx_QQ", "-e", "1"} << 2 << "" << "unknown locale";
        QTest::newRow("decimal comma") << QStringList{"--locale", "de_DE", "-e", "print(modfracglobal.doubletotext(2.5))"}
                                       << 0 << "2,5\n" << "";
        QTest::newRow("decimal point") << QStringList{"--locale", "C", "-e", "print(modfracglobal.doubletotext(2.5))"}
                                       << 0 << "2.5\n" << "";
        // Design mode reports a conflicting setting in a message instead of raising 380.
        QTest::newRow("design mode")
            << QStringList{"--design", "-e", "var f = createfraction(); f.WholepartLocked = true; f.Forcesign = true;"
                                             "print(messages()); print(messages().length)"}
            << 0 << "[\"Usereditable and forcesign can't be True simultaneously\"]\n0\n" << "";
        QTest::newRow("run mode")
            << QStringList{"-e", "var f = createfraction(); f.WholepartLocked = true; f.Forcesign = true;"} << 1 << ""
            << "error 380: Invalid property value\n";
    }

    void commandline()
    {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        const outcome run = program(args);
        QCOMPARE(run.code, code);
        QCOMPARE(run.out, out);
        if (err.endsWith(QLatin1Char('\n')) || err.isEmpty())
            QCOMPARE(run.err, err);
        else
            QVERIFY2(run.err.contains(err), qPrintable(run.err));
    }

    // Bad input ends in a clear error and leaves the controls' values alone.
    void badinput_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("number");
        QTest::newRow("text for a Long") << "f.expand('many')" << "TypeError" << 13;
        QTest::newRow("absurd factor") << "f.expand(1e15)" << "TypeError" << 6;
        QTest::newRow("missing argument") << "f.fracsize(100)" << "TypeError" << 449;
        QTest::newRow("too many arguments") << "f.getsign(1)" << "TypeError" << 450;
        QTest::newRow("null control") << "f.addtwofractions(f, null)" << "Error" << 91;
        QTest::newRow("undefined control") << "f.subtractfractions(undefined, f)" << "TypeError" << 13;
        QTest::newRow("plain object for a control") << "f.dividefractions({}, f)" << "TypeError" << 13;
        QTest::newRow("null collection") << "f.addfractions(null)" << "Error" << 91;
        QTest::newRow("number as a collection") << "f.multiplyfractions(5)" << "TypeError" << 13;
        QTest::newRow("collection holding a number") << "f.addfractions([f, 3])" << "Error" << 13;
        QTest::newRow("collection claiming a huge Count") << "f.addfractions({Count: 1e9})" << "Error" << 91;
        QTest::newRow("misspelt property") << "f.numeratorvalue = '3'" << "TypeError" << 438;
        QTest::newRow("assigning a method") << "f.reduce = 1" << "TypeError" << 438;
        QTest::newRow("read-only property") << "f.Numerdenomgcd = 3" << "Error" << 450;
        QTest::newRow("rejected whole part") << "f.Wholepartvalue = '1/2'" << "Error" << 380;
        QTest::newRow("short record") << "f.loadfraction(['1'])" << "Error" << 9;
        QTest::newRow("record that is no array") << "f.loadfraction('1 2 3')" << "TypeError" << 13;
        QTest::newRow("unknown dispatch id") << "dispinvoke(f, 42, 'get')" << "Error" << 438;
        QTest::newRow("unknown kind") << "dispinvoke(f, -501, 'put', 1)" << "TypeError" << 5;
        QTest::newRow("dispinvoke on nothing") << "dispinvoke(null, -501, 'get')" << "Error" << 91;
        QTest::newRow("record of the wrong size") << "modfracglobal.strreduce(['1', '2'])" << "TypeError" << 13;
        QTest::newRow("engine text that is no number") << "modfracglobal.texttolong('x')" << "Error" << 13;
        QTest::newRow("picture of nothing") << "savepicture(null, 'x.png')" << "Error" << 91;
        QTest::newRow("bag that is no bag") << "createfraction({})" << "TypeError" << 13;
    }

    void badinput()
    {
        QFETCH(QString, code);
        QFETCH(QString, name);
        QFETCH(int, number);
        scripthost host;
        QVERIFY(!host.evaluate(QStringLiteral("var f = createfraction(); f.loadfraction(['1', '2', '3'])")).isError());
        const QJSValue error = host.evaluate(code);
        QVERIFY2(error.isError(), qPrintable(code));
        QCOMPARE(error.property(QStringLiteral("name")).toString(), name);
        QCOMPARE(error.property(QStringLiteral("number")).toInt(), number);
        QVERIFY(!error.property(QStringLiteral("description")).toString().isEmpty());
        fractioni *f = host.controls().value(0);
        QVERIFY(f);
        QCOMPARE((QStringList{f->Wholepartvalue(), f->Numeratorvalue(), f->Denominatorvalue()}),
                 (QStringList{"1", "2", "3"}));
    }

    // Scripts that end in a result: hostile ones end in a numbered error the script can catch,
    // in bounded time, with the host alive; records passed by reference are written back; bags
    // restore controls without the new-control values.
    void results_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("expected");
        const QString caught = QStringLiteral("var f = createfraction(), calls = 1, outcome = 'none';"
                                              "try { %1 } catch (e) { outcome = e.number + ' ' + e.description; }"
                                              "outcome + ' ' + calls");
        const auto row = [&caught](const char *name, const char *code, const char *expected) {
            QTest::newRow(name) << caught.arg(QLatin1String(code)) << QString::fromLatin1(expected);
        };
        row("symbol assigned", "f.Numeratorvalue = Symbol()", "13 Type mismatch 1");
        row("symbol by dispatch id", "dispinvoke(f, 0x6803001b, 'let', Symbol())", "13 Type mismatch 1");
        row("symbol in a bag", "createpropertybag().WriteProperty('x', Symbol(), 1)", "13 Type mismatch 1");
        row("symbol in a record", "f.loadfraction(['1', Symbol(), '2'])", "13 Type mismatch 1");
        row("sparse record of 2^31-1", "var a = []; a.length = 2147483647; f.loadfraction(a)", "6 Overflow 1");
        row("Count of -1", "f.addfractions({Count: -1})", "13 Type mismatch 1");
        row("Count of 0", "f.addfractions({Count: 0})", "9 Subscript out of range 1");
        row("record one beyond the bound", "var a = []; a.length = 1048577; f.loadfraction(a)", "6 Overflow 1");
        row("Count of 2.5", "f.addfractions({Count: 2.5})", "13 Type mismatch 1");
        row("Count of NaN", "f.addfractions({Count: NaN})", "13 Type mismatch 1");
        row("Count that throws", "f.addfractions({get Count() { throw new Error('no'); }})", "13 Type mismatch 1");
        row("item that throws", "f.addfractions({Count: 2, Item(i) { throw 'no'; }})", "13 Type mismatch 1");
        row("property defined on a control", "Object.defineProperty(f, 'Numeratorvalue', {value: '3'})",
            "438 Object doesn't support this property or method 1");
        // Read once, as an automation client reads it: one item, the control itself.
        row("Count growing while read", "var n = 0; print(f.addfractions({get Count() { return ++n; }, Item(i) { return f; }}))",
            "none 1");
        row("handlers assigning twice",
            "f.fractionvaluechanged.connect(function () { ++calls; f.Numeratorvalue = '2'; f.Numeratorvalue = '3'; });"
            "f.Numeratorvalue = '5'",
            "28 Out of stack space 65");
        const QString trimmed = QStringLiteral("var f = createfraction(), a = [' abc ', ' 1', '2 '], n = 0;"
                                               "try { %1 } catch (e) { n = e.number; }"
                                               "n + ' ' + JSON.stringify(a) + ' ' + f.Wholepartvalue + ' ' + f.Numeratorvalue");
        QTest::newRow("refused record written back trimmed, by name")
            << trimmed.arg(QStringLiteral("f.loadfraction(a);")) << "380 [\"abc\",\"1\",\"2\"] 4 1";
        QTest::newRow("refused record written back trimmed, by dispatch id")
            << trimmed.arg(QStringLiteral("dispinvoke(f, 0x6003003a, 'method', a);")) << "380 [\"abc\",\"1\",\"2\"] 4 1";
        QTest::newRow("700,000 texts written back")
            << QStringLiteral("var f = createfraction(), a = []; for (var i = 0; i < 700000; ++i) a.push(' ' + i);"
                              "f.loadfraction(a); a.length + ' ' + a[1] + ' ' + a[699999] + ' ' + f.Numeratorvalue")
            << "700000 1  699999 1";
        const QString restored = QStringLiteral(
            "var b = createpropertybag(); %1 var r = createfraction(b);"
            "JSON.stringify([r.Wholepartvalue, r.Numeratorvalue, r.Denominatorvalue, r.Backcolor])");
        QTest::newRow("a refused saved value restores empty")
            << restored.arg(QStringLiteral("b.WriteProperty('FracType', 7, 0); b.WriteProperty('Numeratorvalue', '3', '1');"))
            << "[\"\",\"\",\"\",16777215]";
        QTest::newRow("an empty bag restores the defaults in white") << restored.arg(QString()) << "[\"4\",\"1\",\"7\",16777215]";
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
        // The host goes on: a control still answers.
        QCOMPARE(host.evaluate(QStringLiteral("createfraction().getsign()")).toString(), QStringLiteral("+"));
    }

    void eventsreachscripts()
    {
        scripthost host;
        const QJSValue result = host.evaluate(QStringLiteral(
            "var seen = []; var f = createfraction();"
            "f.fractionvaluechanged.connect(function () { seen.push(Array.prototype.slice.call(arguments)); });"
            "f.Numeratorvalue = ''; JSON.stringify(seen)"));
        QVERIFY(!result.isError());
        // Clearing the numerator sets the denominator to "1" first: two events in this order.
        QCOMPARE(result.toString(), QStringLiteral(R"([["+","4","1","7","+","4","1","1"],["+","4","1","1","+","4","","1"]])"));
    }

    // The host owns its controls: collecting the script's garbage deletes none of them.
    void controlssurvivegarbagecollection()
    {
        scripthost host;
        QVERIFY(!host.evaluate(QStringLiteral("(function () { for (var i = 0; i < 20; ++i) createfraction(); })()")).isError());
        host.engine().collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(host.controls().size(), 20);
        QVERIFY(!host.evaluate(QStringLiteral("createfraction().addtwofractions(createfraction(), createfraction())")).isError());
        host.engine().collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(host.controls().size(), 23);
    }

    void picturefile()
    {
        scripthost host;
        host.form()->setAttribute(Qt::WA_DontShowOnScreen);
        host.form()->show();
        const QString file = m_runtime.filePath(QStringLiteral("fraction.png"));
        const QJSValue result = host.evaluate(QStringLiteral("savepicture(createfraction(), '%1')").arg(file));
        QVERIFY2(!result.isError(), qPrintable(scripthost::errortext(result)));
        const QImage image(file);
        QVERIFY(!image.isNull());
        QCOMPARE(image.size(), host.controls().value(0)->size() * host.controls().value(0)->devicePixelRatioF());
    }

private:
    outcome program(const QStringList &args)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_runtime.path());
        process.start(QStringLiteral(KEL_SCRIPT_PROGRAM), args);
        if (!process.waitForFinished(60000))
            return {-1, {}, QStringLiteral("timed out")};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QTemporaryDir m_runtime;
};

QTEST_MAIN(tst_fractionscript)
#include "tst_fractionscript.moc"
