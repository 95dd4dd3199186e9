// Every member of the control, the delegate and the pages reached the ways Qt reaches them
// (meta-object, queued calls, a script engine, style sheets, signal connections, uic and
// QUiLoader) with hostile values: nothing throws, aborts, hangs or reads freed memory, and every
// error reaches its caller the way that caller expects.
#include "../control/testsupport.h"

#include "fractionappearance.h"
#include "fractiondelegate.h"
#include "fractionvalues.h"
#include "messageboxsink.h"
#include "propertybag.h"
#include "propertypagedialog.h"
#include "ui_hostileform.h"

#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QJSEngine>
#include <QMetaMethod>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QUiLoader>

using kelfractionint::fractioni;
using step = std::function<void(fractioni &)>;
// A case: runs against a control on a shown form and returns what went wrong, or nothing.
using check = std::function<QString(fractioni &, QWidget &form)>;
Q_DECLARE_METATYPE(step)
Q_DECLARE_METATYPE(check)

namespace {

const QList<int> knownerrors{5, 6, 7, 9, 11, 13, 28, 91, 380};

const QVariantList &hostilevalues()
{
    static QObject stranger;
    static const QVariantList values{QVariant(), "abc", QString(2000, u'9'), " -1 ", 16382, 16383, -16383, 32768,
                                     INT_MIN, qQNaN(), 1e300, true, QStringList{"1"}, QVariantList{1, "ab"}, QFont(),
                                     QVariant::fromValue<QObject *>(&stranger), QVariant::fromValue<QObject *>(nullptr)};
    return values;
}

// A failed call's record: a known automation error with its standard description.
bool wellreported(const fractioni &c)
{
    const int n = c.lasterrornumber();
    return n == 0 ? c.lasterrordescription().isEmpty()
                  : knownerrors.contains(n) && c.lasterrordescription().toStdString() == modfracglobal::automationerror::standarddescription(n);
}

// Calls \a method with \a value converted to each parameter's type (its default where it does not
// convert).
void invokewith(QObject *object, const QMetaMethod &method, const QVariant &value, Qt::ConnectionType how)
{
    std::array<QVariant, 2> args;
    std::array<QGenericArgument, 2> generic;
    for (int i = 0; i < std::min(method.parameterCount(), 2); ++i) {
        args[i] = value;
        if (!args[i].convert(method.parameterMetaType(i)))
            args[i] = QVariant(method.parameterMetaType(i));
        generic[i] = QGenericArgument(args[i].typeName(), args[i].constData());
    }
    QVariant result(method.returnMetaType());
    if (how == Qt::QueuedConnection || !result.isValid())
        method.invoke(object, how, generic[0], generic[1]);
    else
        method.invoke(object, how, QGenericReturnArgument(method.typeName(), result.data()), generic[0], generic[1]);
}

// The properties, then the public invokables and slots, of \a object's own class.
template <typename Each>
void sweep(QObject *object, Each each)
{
    const QMetaObject *meta = object->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        each(meta->property(i), QMetaMethod());
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        if (meta->method(i).methodType() != QMetaMethod::Signal && meta->method(i).access() == QMetaMethod::Public)
            each(QMetaProperty(), meta->method(i));
    }
}

QString differs(const QStringList &actual, const QStringList &expected)
{
    return actual == expected ? QString() : actual.join(u'|') + QStringLiteral(" != ") + expected.join(u'|');
}

// What a table cell with the delegate writes back after F2, \a keys typed over the first part
// and Enter.
QStringList delegateedit(const QStringList &cell, const QString &keys)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), cell, Qt::EditRole);
    QTableView table;
    table.setItemDelegate(new kelfractionint::fractiondelegate(&table));
    table.setModel(&model);
    if (!testsupport::shown(&table, true))
        return {"no window"};
    table.setCurrentIndex(model.index(0, 0));
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_F2);
    auto *editor = table.findChild<fractioni *>();
    if (!editor || !QTest::qWaitFor([&] { return editor->isAncestorOf(QApplication::focusWidget()); }))
        return {"no editor"};
    if (!keys.isEmpty()) {
        static_cast<QLineEdit *>(QApplication::focusWidget())->selectAll();
        QTest::keyClicks(static_cast<QWidget *>(nullptr), keys);
    }
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Return);
    return model.data(model.index(0, 0), Qt::EditRole).toStringList();
}

// Handlers that re-enter without end stop within a second; the outermost call fails with 28 and
// keeps what it assigned.
check recursion(bool autoreplace, std::function<void(fractioni &, QWidget &)> handler)
{
    return [=](fractioni &c, QWidget &form) {
        auto *other = new fractioni(&form);
        for (fractioni *each : {&c, other}) {
            each->setAutoreplace(autoreplace);
            QObject::connect(each, &fractioni::fractionvaluechanged, each, [each, &form, handler] { handler(*each, form); });
        }
        QElapsedTimer timer;
        timer.start();
        c.loadfraction(QStringList{"1", "2", "4"});
        other->setBackcolor(0);
        if (timer.elapsed() > 1000 || c.lasterrornumber() != 28 || other->lasterrornumber() != 0)
            return QStringLiteral("%1 ms, error %2").arg(timer.elapsed()).arg(c.lasterrornumber());
        return differs(testsupport::value(c), {"1", "2", "4"});
    };
}

// A handler of \a signal deletes the control (or its form) while the control is at work.
template <typename Signal>
check deletion(Signal signal, bool wholeform, step trigger)
{
    return [=](fractioni &c, QWidget &form) {
        QPointer<fractioni> alive(&c);
        QObject *doomed = wholeform ? static_cast<QObject *>(&form) : &c;
        QObject::connect(&c, signal, &c, [doomed] { delete doomed; });
        trigger(c);
        return alive ? QStringLiteral("still alive") : QString();
    };
}

} // namespace

class tst_boundary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); m_messages.take(); }

    void members_data()
    {
        QTest::addColumn<step>("state");
        QTest::addColumn<QString>("caller");
        const QList<std::pair<const char *, step>> states{
            {"new control", [](fractioni &) {}},
            {"Autoreplace on", [](fractioni &c) { c.setAutoreplace(true); }},
            {"FracType 7", [](fractioni &c) { c.setFracType(fractioni::fractiontype(7)); }},
            {"locked parts", [](fractioni &c) { c.setWholepartLocked(true); c.setNumeratorLocked(true); c.setDenominatorLocked(true); }},
            {"Forcesign", [](fractioni &c) { c.setForcesign(true); }},
            {"empty value", [](fractioni &c) { c.clearfraction(); }},
            {"algebraic parts", [](fractioni &c) { c.setFracType(fractioni::fracAlgebraic); c.loadfraction(QStringList{"x", "y", "z"}); }},
        };
        for (const auto &[name, state] : states) {
            for (const char *caller : {"meta-object", "queued", "script"})
                QTest::addRow("%s, %s", name, caller) << state << QString::fromLatin1(caller);
        }
    }

    // Each property written and read, and each invokable called, with every hostile value.
    void members()
    {
        QFETCH(step, state);
        QFETCH(QString, caller);
        QWidget form;
        QPointer<fractioni> control = new fractioni(&form);
        state(*control);
        if (caller == QLatin1String("script")) {
            QJSEngine engine;
            QJSEngine::setObjectOwnership(control, QJSEngine::CppOwnership);
            engine.globalObject().setProperty("f", engine.newQObject(control));
            QStringList names;
            sweep(control, [&](const QMetaProperty &p, const QMetaMethod &m) {
                names << QString::fromLatin1(p.isValid() ? QByteArray(p.name()) : m.name() + "()");
            });
            engine.globalObject().setProperty("names", engine.toScriptValue(names));
            engine.globalObject().setProperty("known", engine.toScriptValue(knownerrors));
            // The members' errors carry a known number; the engine's own carry none.
            const QJSValue stray = engine.evaluate(R"(
                const cyclic = {}; cyclic.self = cyclic;
                const values = [undefined, null, 'abc', '9'.repeat(2000), 16383, -32769, 2 ** 31, NaN, true, ['1'], {},
                                cyclic, Symbol('s'), f];
                const stray = [];
                JSON.stringify(f);
                for (const name of names) for (const v of values) {
                    try { if (name.endsWith('()')) f[name.slice(0, -2)](v, v); else f[name] = v; }
                    catch (e) { if (e.number !== undefined && !known.includes(e.number)) stray.push(name + ': ' + e); }
                    if (!name.endsWith('()')) void f[name];
                }
                stray.join('; '))");
            QVERIFY2(!stray.isError() && stray.toString().isEmpty(), qPrintable(stray.toString()));
        } else {
            const auto how = caller == QLatin1String("queued") ? Qt::QueuedConnection : Qt::DirectConnection;
            sweep(control, [&](const QMetaProperty &p, const QMetaMethod &m) {
                for (const QVariant &value : hostilevalues()) {
                    if (p.isValid() && how == Qt::DirectConnection)
                        p.write(control, value);
                    else if (m.isValid())
                        invokewith(control, m, value, how);
                    QVERIFY(control && wellreported(*control));
                }
                for (int i = 0; i < control->metaObject()->propertyCount(); ++i)
                    control->metaObject()->property(i).read(control);
            });
            QCoreApplication::processEvents();
        }
        QVERIFY(control && wellreported(*control));
    }

    void cases_data()
    {
        QTest::addColumn<check>("run");
        // A script engine that reached the control through newQObject gets the error's number;
        // a C++ call made while no script runs leaves the engine alone.
        const auto script = [](const char *code, int number, step state = [](fractioni &) {}) {
            return check([=](fractioni &c, QWidget &) {
                QJSEngine engine;
                QJSEngine::setObjectOwnership(&c, QJSEngine::CppOwnership);
                engine.globalObject().setProperty("f", engine.newQObject(&c));
                state(c);
                const int got = engine.evaluate(QStringLiteral("try { %1; 0 } catch (e) { e.number }").arg(code)).toInt();
                c.setWholepartvalue("abc");
                return got == number && engine.evaluate("1 + 1").toInt() == 2 ? QString() : QString::number(got);
            });
        };
        QTest::newRow("script: refused whole part") << script("f.Wholepartvalue = 'abc'", 380);
        QTest::newRow("script: short record") << script("f.loadfraction(['1'])", 9);
        QTest::newRow("script: approximate with Autoreplace")
            << script("f.approximate(0)", 9, [](fractioni &c) { c.setAutoreplace(true); });
        QTest::newRow("recursion: the same value written back")
            << recursion(false, [](fractioni &c, QWidget &) { c.setWholepartvalue(c.Wholepartvalue()); });
        QTest::newRow("recursion: reduce with Autoreplace") << recursion(true, [](fractioni &c, QWidget &) { c.reduce(); });
        QTest::newRow("recursion: two controls setting each other") << recursion(false, [](fractioni &c, QWidget &form) {
            for (fractioni *other : form.findChildren<fractioni *>())
                other->setNumeratorvalue(c.Numeratorvalue());
        });
        const auto keys = [](const char *field, QKeySequence sequence) {
            return [=](fractioni &c) { QTest::keySequence(testsupport::field(&c, field), sequence); };
        };
        const auto changed = &fractioni::fractionvaluechanged;
        QTest::newRow("deleted after a keystroke") << deletion(changed, false, keys("numerator", Qt::Key_5));
        QTest::newRow("deleted pasting a fraction") << deletion(changed, true, keys("numerator", QKeySequence::Paste));
        QTest::newRow("deleted emptying the numerator") << deletion(changed, true, [](fractioni &c) { c.setNumeratorvalue(""); });
        QTest::newRow("deleted clicking the whole part") << deletion(&fractioni::wholepartclick, false, [](fractioni &c) {
            QTest::mouseClick(testsupport::field(&c, "wholepart"), Qt::LeftButton);
        });
        QTest::newRow("deleted pressing the surface") << deletion(&fractioni::MouseDown, true, [](fractioni &c) {
            QTest::mousePress(&c, Qt::LeftButton, {}, QPoint(1, 1));
        });
        QTest::newRow("deleted reporting an error")
            << deletion(&fractioni::errorreported, true, [](fractioni &c) { c.setWholepartvalue("abc"); });
        // The delegate writes a cell back only when the user changed a value its editor holds.
        const auto cell = [](QStringList value, const char *keys, QStringList written) {
            return check([=](fractioni &, QWidget &) { return differs(delegateedit(value, keys), written); });
        };
        QTest::newRow("delegate: F2 and Enter") << cell({"+2", "1", "4"}, "", {"+2", "1", "4"});
        QTest::newRow("delegate: a refused whole part") << cell({"abc", "1", "2"}, "5", {"abc", "1", "2"});
        QTest::newRow("delegate: 200,000 digits") << cell({"", "1", QString(200000, u'7')}, "", {"", "1", QString(200000, u'7')});
    }

    void cases()
    {
        QFETCH(check, run);
        QGuiApplication::clipboard()->setText("1 2/3");
        auto *form = new QWidget;
        QPointer<QWidget> formalive(form);
        auto *control = new fractioni(form);
        QVERIFY(testsupport::shown(form));
        const QString failure = run(*control, *form);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete formalive;
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
    }

    // Qt reads properties for style sheets, runs slots for buttons, and builds forms with uic and
    // QUiLoader: none of them meets an error, and a refused value keeps the new control's.
    void qtcallers()
    {
        QWidget form;
        Ui::hostileform ui;
        ui.setupUi(&form);
        QCOMPARE(testsupport::value(*ui.refused), (QStringList{"4", "1", "7"}));
        QVERIFY(!ui.lockedfirst->Forcesign());
        ui.refused->setFracType(fractioni::fracAlgebraic);
        ui.refused->loadfraction(QStringList{"a", "b", "c"});
        ui.lockedfirst->setFracType(fractioni::fractiontype(7));
        auto *button = new QPushButton(&form);
        connect(button, &QPushButton::clicked, ui.lockedfirst, &fractioni::clearfraction);
        connect(button, &QPushButton::clicked, ui.lockedfirst, &fractioni::Refreshfraction);
        form.setStyleSheet("*[Container=\"x\"] { color: red } *[Numerdenomgcd=\"1\"] { color: blue }");
        QVERIFY(testsupport::shown(&form));
        button->click();
        QVERIFY(wellreported(*ui.lockedfirst));

        QFile file(KEL_TEST_HOSTILEFORM);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray xml = file.readAll().replace("<property name=\"Forcesign\">",
                                                "<property name=\"Borderstyle\"><number>16383</number></property>"
                                                "<property name=\"Forcesign\">");
        QBuffer buffer(&xml);
        const qsizetype widgets = QApplication::allWidgets().size();
        QUiLoader loader;
        std::unique_ptr<QWidget> loaded(loader.load(&buffer));
        QVERIFY(loaded && loaded->findChild<fractioni *>("lockedfirst")->Borderstyle() == 0);
        loaded.reset();
        QCOMPARE(QApplication::allWidgets().size(), widgets);
        // A saved border the layout cannot hold is refused, so that later calls still succeed.
        kelfractionint::memorypropertybag bag;
        bag.writeproperty("Borderstyle", 16383, 0);
        fractioni restored(bag);
        restored.setNumeratorvalue("2");
        QCOMPARE(restored.lasterrornumber(), 0);

        // The delegate's properties, and the pages on controls that refuse their values or are gone.
        kelfractionint::fractiondelegate delegate;
        kelfractionint::propertypagedialog dialog;
        dialog.addpage(new kelfractionint::fractionvalues);
        dialog.addpage(new kelfractionint::fractionappearance);
        auto *gone = new fractioni;
        dialog.setSelectedControls({ui.refused, ui.lockedfirst, gone});
        delete gone;
        for (QObject *object : QObjectList{&delegate, dialog.pages().at(0), dialog.pages().at(1)}) {
            sweep(object, [&](const QMetaProperty &p, const QMetaMethod &) {
                for (const QVariant &value : hostilevalues())
                    p.write(object, value);
            });
        }
        dialog.applybutton()->click();
        dialog.accept();
    }

    void longtexts_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<QString>("text");
        QTest::newRow("2,000,000 letters") << 9 << QString(2000000, u'x');
        QTest::newRow("2,000 digits at 200 pt") << 200 << QString(2000, u'7');
    }

    // A long text costs what a line edit showing it costs, and little more.
    void longtexts()
    {
        QFETCH(int, points);
        QFETCH(QString, text);
#ifdef __SANITIZE_ADDRESS__
        QSKIP("timings mean nothing in an instrumented build");
#endif
        QWidget form;
        auto *control = new fractioni(&form);
        control->setFracType(fractioni::fracAlgebraic);
        control->setFont(QFont(control->Font().family(), points));
        QVERIFY(testsupport::shown(&form));
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), QStringList{"", text, text}, Qt::EditRole);
        QTableView table;
        table.setItemDelegate(new kelfractionint::fractiondelegate(&table));
        table.setModel(&model);
        QLineEdit alone;
        alone.setMaxLength(INT_MAX);
        alone.setFont(control->Font());
        QList<qint64> times;
        QElapsedTimer timer;
        for (const std::function<void()> &work : std::initializer_list<std::function<void()>>{
                 [&] { control->setDenominatorvalue(text), control->grab(); }, [&] { table.grab(); },
                 [&] { alone.resize(control->size()), alone.setText(text), alone.grab(); }}) {
            timer.start();
            work();
            times << timer.elapsed();
        }
        QCOMPARE(control->Denominatorvalue(), text);
        // Generous on purpose: a shared machine slows one run more than another, while measuring
        // the whole text costs seconds to minutes.
        QVERIFY2(std::max(times[0], times[1]) < 4 * times[2] + 1500, qPrintable(QDebug::toString(times)));
    }

private:
    kelfractionint::messagecapture m_messages;
};

QTEST_MAIN(tst_boundary)
#include "tst_boundary.moc"
