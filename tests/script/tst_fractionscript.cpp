#include "../control/testsupport.h"
#include "scripthost.h"

#include <QProcess>
#include <QTemporaryDir>

using namespace kelfractionint;

struct command { QStringList args; int code; QString out, err; };
Q_DECLARE_METATYPE(command)

class tst_fractionscript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testsupport::pinlocale(); QVERIFY(m_runtime.isValid()); }

    void commandline_data()
    {
        QTest::addColumn<command>("row");
        const auto row = [](const char *name, const QStringList &args, int code, const char *out, const char *err) {
            QTest::newRow(name) << command{args, code, QString::fromUtf8(out), QString::fromUtf8(err)};
        };
        // The README's examples, run as a user runs them.
        row("value example", {KEL_SCRIPT_EXAMPLES "/value.js"}, 0, "4 1 7\n[\"\",\"3\",\"4\"]\n2\n3/4\n", "");
        row("events example", {KEL_SCRIPT_EXAMPLES "/events.js"}, 0,
            "+ [\"4\",\"1\",\"7\"] -> - [\"-4\",\"1\",\"7\"]\n [\"-4\",\"1\",\"7\"] -> - [\"-4\",\"1\",\"7\"]\n", "");
        row("arithmetic example", {KEL_SCRIPT_EXAMPLES "/arithmetic.js"}, 0,
            "[\"\",\"5\",\"6\"]\n[\"\",\"1\",\"6\"]\n3/4\nerror 11 Division by zero\n", "");
        row("bag example", {KEL_SCRIPT_EXAMPLES "/bag.js"}, 0, "[\"Wholepartvalue\",\"Fractionslash\"]\n-2 1 7 false\n", "");
        row("dispatch example", {KEL_SCRIPT_EXAMPLES "/dispatch.js"}, 0,
            "-3\nffff\n        HRESULT Wholepartvalue([out, retval] BSTR*);\n"
            "        HRESULT Wholepartvalue([in] BSTR value);\n[\"0.3333\",\"\",\"\"]\n", "");
        row("every member", {KEL_SCRIPT_TESTS "/everymember.js"}, 0, "every member ran\n", "");
        row("uncaught automation error", {"-e", "createfraction().Wholepartvalue = 'x'"}, 1, "", "error 380: Invalid property value\n");
        row("uncaught script error with its place", {"-e", "print(1);\nnosuchthing()"}, 1, "1\n",
            "ReferenceError: nosuchthing is not defined (<code>:2)\n");
        row("type error with the script's place and the argument's position", {"-e", "createfraction().expand('many')"}, 1, "",
            "TypeError: expand: argument 1 (lngexpander) must be a Long (<code>:1)\n");
        row("record of four texts", {"-e", "modfracglobal.strreduce(['1', '2', '3', '4'])"}, 1, "", "argument 1 must be a record");
        row("smallest Long", {"-e", "print(modfracglobal.parttext(-2147483648))"}, 0, "-2147483648\n", "");
        row("a control as text", {"-e", "print(String(createfraction()).split(' ')[0])"}, 0, "[fractioni\n", "");
        row("picture saved to a file", {"-e", "print(savepicture(createfraction(), 'f.png'))"}, 0, "true\n", "");
        row("no program", {}, 2, "", "usage:");
        row("unknown option", {"--fast", "-e", "1"}, 2, "", "usage:");
        row("missing file", {"/nonexistent/x.js"}, 2, "", "cannot read");
        row("unknown locale", {"--locale", "xx_QQ", "-e", "1"}, 2, "", "unknown locale");
        row("decimal comma", {"--locale", "de_DE", "-e", "print(modfracglobal.doubletotext(2.5))"}, 0, "2,5\n", "");
        // Design mode reports a conflicting setting in a message instead of raising 380.
        const char *conflict = "var f = createfraction(); f.WholepartLocked = true; f.Forcesign = true;";
        row("design mode", {"--design", "-e", conflict + QStringLiteral("print(messages()); print(messages().length)")}, 0,
            "[\"Usereditable and forcesign can't be True simultaneously\"]\n0\n", "");
        row("run mode", {"-e", conflict}, 1, "", "error 380: Invalid property value\n");
    }

    void commandline()
    {
        QFETCH(command, row);
        const auto &[args, code, out, err] = row;
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_runtime.path());
        process.start(QStringLiteral(KEL_SCRIPT_PROGRAM), args);
        QVERIFY(process.waitForFinished(60000));
        const QString error = QString::fromUtf8(process.readAllStandardError());
        QCOMPARE(process.exitCode(), code);
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()), out);
        if (err.endsWith(QLatin1Char('\n')) || err.isEmpty())
            QCOMPARE(error, err);
        else
            QVERIFY2(error.contains(err), qPrintable(error));
    }

    // Scripts run against a control holding 1 2/3. Bad input ends in a numbered error the script
    // can catch, in bounded time, with the value untouched and the host alive. "note" adds what a
    // row looks at besides the error.
    void results_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("expected");
        const QString frame = QStringLiteral(
            "var f = createfraction(), note = '', outcome = 'none'; f.loadfraction(['1', '2', '3']);"
            "try { %1 } catch (e) { outcome = e.name + ' ' + e.number + (e.description ? '' : ' without description'); }"
            "outcome + note + (f.Wholepartvalue + f.Numeratorvalue + f.Denominatorvalue == '123' ? '' : ' changed')");
        const auto row = [&frame](const char *name, const char *code, const char *expected) {
            QTest::newRow(name) << frame.arg(QString::fromUtf8(code)) << QString::fromUtf8(expected);
        };
        row("null control", "f.addtwofractions(f, null)", "Error 91");
        row("collection claiming a huge Count", "f.addfractions({Count: 1e9})", "Error 91");
        row("Count of -1", "f.addfractions({Count: -1})", "TypeError 13");
        row("Count of 0", "f.addfractions({Count: 0})", "Error 9");
        row("Count that throws", "f.addfractions({get Count() { throw new Error('no'); }})", "TypeError 13");
        row("item that throws", "f.addfractions({Count: 2, Item(i) { throw 'no'; }})", "TypeError 13");
        // Read once, as an automation client reads it: one item, the control itself.
        row("Count growing while read", "var n = 0; note = ' ' + f.addfractions({get Count() { return ++n; }, Item(i) { return f; }})", "none ,5,3");
        row("misspelt property", "f.numeratorvalue = '3'", "TypeError 438");
        row("property defined on a control", "Object.defineProperty(f, 'Numeratorvalue', {value: '3'})", "TypeError 438");
        row("symbol assigned", "f.Numeratorvalue = Symbol()", "TypeError 13");
        row("record one beyond the bound", "var a = []; a.length = 1048577; f.loadfraction(a)", "TypeError 6");
        row("unknown kind", "dispinvoke(f, -501, 'put', 1)", "TypeError 5");
        row("engine text that is no number", "modfracglobal.texttolong('x')", "Error 13");
        row("bag that is no bag", "createfraction({})", "TypeError 13");
        row("handlers assigning twice",
            "var calls = 1; f.fractionvaluechanged.connect(function () { ++calls; f.Numeratorvalue = '2'; f.Numeratorvalue = '3'; });"
            "try { f.Numeratorvalue = '5'; } finally { note = ' ' + calls; }", "TypeError 28 65 changed");
        // A refused record is still written back, trimmed.
        row("refused record written back trimmed",
            "var a = [' abc ', ' 1', '2 ']; try { f.loadfraction(a); } finally { note = ' ' + JSON.stringify(a); }", "Error 380 [\"abc\",\"1\",\"2\"]");
        row("700,000 texts written back",
            "var a = []; for (var i = 0; i < 700000; ++i) a.push(' ' + i); f.loadfraction(a);"
            "note = ' ' + a.length + ' ' + a[1] + ' ' + a[699999] + ' ' + f.Numeratorvalue", "none 700000 1  699999 1 changed");
    }

    void results()
    {
        QFETCH(QString, script);
        QFETCH(QString, expected);
        scripthost host;
        const QJSValue result = host.evaluate(script);
        QVERIFY2(!result.isError(), qPrintable(scripthost::errortext(result)));
        QCOMPARE(result.toString(), expected);
        QCOMPARE(host.evaluate(QStringLiteral("createfraction().getsign()")).toString(), QStringLiteral("+"));
    }

    // The host owns its controls: collecting the script's garbage deletes none of them.
    void controlssurvivegarbagecollection()
    {
        scripthost host;
        QVERIFY(!host.evaluate(QStringLiteral("(function () { for (var i = 0; i < 20; ++i) createfraction(); })()")).isError());
        host.engine().collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(host.controls().size(), 20);
    }

private:
    QTemporaryDir m_runtime;
};

QTEST_MAIN(tst_fractionscript)
#include "tst_fractionscript.moc"
