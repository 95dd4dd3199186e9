// Every member of the control, the delegate and the pages reached the ways Qt reaches them
// (meta-object, queued calls, a script engine, style sheets, signal connections, uic and
// QUiLoader) with hostile values: nothing throws, aborts, hangs or reads freed memory, and every
// error is reported the way its caller expects.
#include "../control/testsupport.h"

#include "fractionappearance.h"
#include "fractiondelegate.h"
#include "fractioni.h"
#include "fractionidispatch.h"
#include "fractionvalues.h"
#include "propertypagedialog.h"
#include "messageboxsink.h"
#include "propertybag.h"
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

#include <limits>

using kelfractionint::fractioni;
using setup = std::function<void(fractioni &)>;
using action = std::function<void(fractioni &, QWidget &form)>;
Q_DECLARE_METATYPE(setup)
Q_DECLARE_METATYPE(action)

namespace {

const QVariantList &hostilevalues()
{
    static QObject stranger;
    static const QVariantList values{QVariant(), QStringLiteral("abc"), QString(2000, u'9'), QStringLiteral(" -1 "),
                                     16382, 16383, -16383, 32768, std::numeric_limits<qint32>::min(),
                                     std::numeric_limits<double>::quiet_NaN(), 1e300, true,
                                     QStringList{QStringLiteral("1")}, QVariantList{1, QStringLiteral("ab")},
                                     QFont(), QVariant::fromValue<QObject *>(&stranger),
                                     QVariant::fromValue<QObject *>(nullptr)};
    return values;
}

// The record a failed call leaves: a known automation error with its standard description.
bool wellreported(const fractioni &control)
{
    const int number = control.lasterrornumber();
    if (number == 0)
        return control.lasterrordescription().isEmpty();
    static const QList<int> known{5, 6, 7, 9, 11, 13, 28, 91, 380};
    return known.contains(number)
        && control.lasterrordescription().toStdString() == modfracglobal::automationerror::standarddescription(number);
}

// Calls \a method with \a value converted to each parameter's type (the type's default where it
// does not convert).
void invokewith(QObject *object, const QMetaMethod &method, const QVariant &value, Qt::ConnectionType how)
{
    std::array<QVariant, 2> args;
    std::array<QGenericArgument, 2> generic;
    for (int i = 0; i < method.parameterCount() && i < 2; ++i) {
        args[i] = value;
        if (!args[i].convert(method.parameterMetaType(i)))
            args[i] = QVariant(method.parameterMetaType(i));
        generic[i] = QGenericArgument(args[i].typeName(), args[i].constData());
    }
    QVariant result(method.returnMetaType());
    if (how == Qt::QueuedConnection || method.returnMetaType() == QMetaType::fromType<void>())
        method.invoke(object, how, generic[0], generic[1]);
    else
        method.invoke(object, how, QGenericReturnArgument(method.typeName(), result.data()), generic[0], generic[1]);
}

// The members of \a object's own class (not its Qt bases): properties, then invokables and slots.
template <typename Each>
void sweep(QObject *object, Each each)
{
    const QMetaObject *meta = object->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        each(meta->property(i), QMetaMethod());
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Signal && method.access() == QMetaMethod::Public)
            each(QMetaProperty(), method);
    }
}

} // namespace

class tst_boundary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        testsupport::pinlocale();
        m_messages.take();
    }

    void members_data()
    {
        QTest::addColumn<setup>("state");
        QTest::addColumn<QString>("caller");
        const QList<std::pair<const char *, setup>> states{
            {"new control", [](fractioni &) {}},
            {"Autoreplace on", [](fractioni &c) { c.setAutoreplace(true); }},
            {"FracType 7", [](fractioni &c) { c.setFracType(fractioni::fractiontype(7)); }},
            {"locked parts", [](fractioni &c) { c.setWholepartLocked(true); c.setNumeratorLocked(true); c.setDenominatorLocked(true); }},
            {"Forcesign", [](fractioni &c) { c.setForcesign(true); }},
            {"empty value", [](fractioni &c) { c.clearfraction(); }},
            {"algebraic parts", [](fractioni &c) { c.setFracType(fractioni::fracAlgebraic); c.loadfraction(QStringList{"x", "y", "z"}); }},
            {"widest border", [](fractioni &c) { c.setBorderstyle(fractioni::fracBorderstyle(-16382)); }},
        };
        for (const auto &[name, state] : states) {
            for (const char *caller : {"meta-object", "queued", "script"})
                QTest::addRow("%s, %s", name, caller) << state << QString::fromLatin1(caller);
        }
    }

    // Each property written and read, and each invokable called, with every hostile value.
    void members()
    {
        QFETCH(setup, state);
        QFETCH(QString, caller);
        QWidget form;
        QPointer<fractioni> control = new fractioni(&form);
        state(*control);
        if (caller == QLatin1String("script")) {
            QJSEngine engine;
            QJSEngine::setObjectOwnership(control, QJSEngine::CppOwnership);
            engine.globalObject().setProperty(QStringLiteral("f"), engine.newQObject(control));
            QStringList names;
            sweep(control, [&](const QMetaProperty &p, const QMetaMethod &m) {
                names << (p.isValid() ? QString::fromLatin1(p.name()) : QString::fromLatin1(m.name() + "()"));
            });
            engine.globalObject().setProperty(QStringLiteral("names"), engine.toScriptValue(names));
            // Errors of the members carry a known number; the engine's own (a value it cannot
            // convert) carry none.
            const QJSValue stray = engine.evaluate(QStringLiteral(R"(
                const cyclic = {}; cyclic.self = cyclic;
                const values = [undefined, null, 'abc', '9'.repeat(2000), 16383, -32769, 2 ** 31, NaN,
                                true, ['1'], {}, cyclic, Symbol('s'), f];
                const stray = [];
                JSON.stringify(f);
                for (const name of names) {
                    for (const v of values) {
                        try {
                            if (name.endsWith('()')) f[name.slice(0, -2)](v, v); else f[name] = v;
                        } catch (e) {
                            if (e.number !== undefined && ![5, 6, 7, 9, 11, 13, 28, 91, 380].includes(e.number))
                                stray.push(name + ': ' + e);
                        }
                        if (!name.endsWith('()')) void f[name];
                    }
                }
                stray.join('; '))"));
            QVERIFY2(!stray.isError() && stray.toString().isEmpty(), qPrintable(stray.toString()));
        } else {
            const Qt::ConnectionType how = caller == QLatin1String("queued") ? Qt::QueuedConnection : Qt::DirectConnection;
            sweep(control, [&](const QMetaProperty &p, const QMetaMethod &m) {
                for (const QVariant &value : hostilevalues()) {
                    if (!control)
                        return;
                    if (p.isValid() && p.isWritable() && how == Qt::DirectConnection)
                        p.write(control, value);
                    else if (m.isValid())
                        invokewith(control, m, value, how);
                    if (how == Qt::DirectConnection)
                        QVERIFY2(wellreported(*control), qPrintable(QString::number(control->lasterrornumber())));
                }
                for (int i = 0; control && i < control->metaObject()->propertyCount(); ++i)
                    control->metaObject()->property(i).read(control);
            });
            QCoreApplication::processEvents();
        }
        QVERIFY(control);
        QVERIFY(wellreported(*control));
    }

    void scripterrors_data()
    {
        QTest::addColumn<setup>("state");
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("number");
        const setup plain = [](fractioni &) {};
        QTest::newRow("refused whole part") << plain << "f.Wholepartvalue = 'abc'" << 380;
        QTest::newRow("short record") << plain << "f.loadfraction(['1'])" << 9;
        QTest::newRow("container read") << plain << "f.Container" << 0;
        QTest::newRow("approximate with Autoreplace")
            << setup([](fractioni &c) { c.setAutoreplace(true); }) << "f.approximate(0)" << 9;
        QTest::newRow("forced sign on a locked whole part")
            << setup([](fractioni &c) { c.setWholepartLocked(true); }) << "f.Forcesign = true" << 380;
    }

    // A script engine that reached the control through newQObject gets a script exception with
    // the error's number; a C++ call made while no script runs leaves the engine alone.
    void scripterrors()
    {
        QFETCH(setup, state);
        QFETCH(QString, code);
        QFETCH(int, number);
        QJSEngine engine;
        fractioni control;
        QJSEngine::setObjectOwnership(&control, QJSEngine::CppOwnership);
        engine.globalObject().setProperty(QStringLiteral("f"), engine.newQObject(&control));
        state(control);
        const QJSValue result = engine.evaluate(QStringLiteral("try { %1; 0 } catch (e) { e.number }").arg(code));
        QCOMPARE(result.toInt(), number);
        control.setWholepartvalue(QStringLiteral("abc"));
        QCOMPARE(engine.evaluate(QStringLiteral("1 + 1")).toInt(), 2);
    }

    // Qt reads properties for style sheets and runs slots for buttons: neither may meet an error.
    void qtcallers()
    {
        QWidget form;
        auto *letters = new fractioni(&form);
        letters->setFracType(fractioni::fracAlgebraic);
        letters->loadfraction(QStringList{"a", "b", "c"});
        auto *broken = new fractioni(&form);
        broken->setFracType(fractioni::fractiontype(7));
        auto *button = new QPushButton(&form);
        QObject::connect(button, &QPushButton::clicked, broken, &fractioni::clearfraction);
        QObject::connect(button, &QPushButton::clicked, broken, &fractioni::Refreshfraction);
        form.setStyleSheet(QStringLiteral("*[Container=\"x\"] { color: red } "
                                          "kelfractionint--fractioni[Numerdenomgcd=\"1\"] { color: blue }"));
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        button->click();
        QVERIFY(wellreported(*broken));

        // The delegate's properties, and the pages applied to a control that refuses their
        // values and to one that is gone, through the dialog's buttons.
        kelfractionint::fractiondelegate delegate;
        sweep(&delegate, [&](const QMetaProperty &p, const QMetaMethod &) {
            for (const QVariant &value : hostilevalues())
                p.write(&delegate, value);
        });
        kelfractionint::propertypagedialog dialog;
        dialog.addpage(new kelfractionint::fractionvalues);
        dialog.addpage(new kelfractionint::fractionappearance);
        auto *gone = new fractioni;
        dialog.setSelectedControls({letters, broken, gone});
        delete gone;
        for (kelfractionint::propertypage *page : dialog.pages()) {
            sweep(page, [&](const QMetaProperty &p, const QMetaMethod &) {
                for (const QVariant &value : hostilevalues())
                    p.write(page, value);
            });
        }
        dialog.applybutton()->click();
        dialog.accept();
    }

    void pastelock_data()
    {
        QTest::addColumn<QString>("locked");
        QTest::addColumn<QStringList>("value");
        QTest::newRow("locked whole part") << "WholepartLocked" << QStringList{"4", "1", "7"};
        QTest::newRow("locked denominator") << "DenominatorLocked" << QStringList{"4", "1", "7"};
        QTest::newRow("locked part that keeps its value") << "NumeratorLocked" << QStringList{"-7", "1", "2"};
    }

    // A pasted fraction changes no locked part.
    void pastelock()
    {
        QFETCH(QString, locked);
        QFETCH(QStringList, value);
        fractioni control;
        control.setProperty(locked.toLatin1().constData(), true);
        QGuiApplication::clipboard()->setText(QStringLiteral("-7 1/2"));
        const char *target = locked == QLatin1String("NumeratorLocked") ? "wholepart" : "numerator";
        QTest::keySequence(testsupport::field(&control, QLatin1String(target)), QKeySequence::Paste);
        QCOMPARE(testsupport::value(control), value);
    }

    // A form holding values the control refuses loads completely: each refused property keeps
    // the new control's value, and nothing is left behind.
    void forms()
    {
        QWidget host;
        Ui::hostileform ui;
        ui.setupUi(&host);
        QCOMPARE(testsupport::value(*ui.refused), (QStringList{"4", "1", "7"}));
        QVERIFY(!ui.lockedfirst->Forcesign());

        QFile file(QStringLiteral(KEL_TEST_HOSTILEFORM));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray xml = file.readAll();
        xml.replace("<property name=\"Forcesign\">",
                    "<property name=\"Borderstyle\"><number>20000</number></property><property name=\"Forcesign\">");
        QBuffer buffer(&xml);
        const qsizetype widgets = QApplication::allWidgets().size();
        QUiLoader loader;
        std::unique_ptr<QWidget> loaded(loader.load(&buffer));
        QVERIFY2(loaded, qPrintable(loader.errorString()));
        auto *bordered = loaded->findChild<fractioni *>(QStringLiteral("lockedfirst"));
        QVERIFY(bordered);
        QCOMPARE(int(bordered->Borderstyle()), 0);
        loaded.reset();
        QCOMPARE(QApplication::allWidgets().size(), widgets);

        // A stored border the layout cannot hold is refused, so later calls still succeed.
        kelfractionint::memorypropertybag bag;
        bag.writeproperty(QStringLiteral("Borderstyle"), 20000, 0);
        fractioni restored(bag);
        restored.setNumeratorvalue(QStringLiteral("2"));
        QCOMPARE(restored.lasterrornumber(), 0);
        QCOMPARE(restored.Numeratorvalue(), QStringLiteral("2"));
    }

    void recursion_data()
    {
        QTest::addColumn<action>("handler");
        QTest::addColumn<bool>("autoreplace");
        QTest::addColumn<QStringList>("value");
        QTest::newRow("the same value written back")
            << action([](fractioni &c, QWidget &) { c.setWholepartvalue(c.Wholepartvalue()); }) << false
            << QStringList{"1", "2", "4"};
        QTest::newRow("reduce with Autoreplace") << action([](fractioni &c, QWidget &) { c.reduce(); }) << true
                                                 << QStringList{"1", "2", "4"};
        QTest::newRow("two controls setting each other") << action([](fractioni &c, QWidget &form) {
            for (fractioni *other : form.findChildren<fractioni *>())
                other->setNumeratorvalue(c.Numeratorvalue());
        }) << false << QStringList{"1", "2", "4"};
    }

    // Handlers that re-enter without end stop quickly, and the outermost call fails with 28.
    void recursion()
    {
        QFETCH(action, handler);
        QFETCH(bool, autoreplace);
        QFETCH(QStringList, value);
        QWidget form;
        auto *control = new fractioni(&form);
        auto *other = new fractioni(&form);
        for (fractioni *each : {control, other}) {
            each->setAutoreplace(autoreplace);
            connect(each, &fractioni::fractionvaluechanged, each, [each, &form, handler] { handler(*each, form); });
        }
        QElapsedTimer timer;
        timer.start();
        control->loadfraction(QStringList{"1", "2", "4"});
        QVERIFY(timer.elapsed() < 1000);
        QCOMPARE(control->lasterrornumber(), 28);
        QCOMPARE(testsupport::value(*control), value);
        control->clearlasterror();
        other->setBackcolor(0);
        QCOMPARE(other->lasterrornumber(), 0);
    }

    void deletion_data()
    {
        QTest::addColumn<action>("trigger");
        QTest::addColumn<QByteArray>("signal");
        QTest::addColumn<bool>("wholeform");
        const QByteArray changed = SIGNAL(fractionvaluechanged(QString, QString, QString, QString, QString, QString, QString, QString));
        auto type = [](const char *name, QKeySequence keys) {
            return action([name, keys](fractioni &c, QWidget &) {
                QTest::keySequence(testsupport::field(&c, QLatin1String(name)), keys);
            });
        };
        QTest::newRow("after a keystroke") << type("numerator", QKeySequence(Qt::Key_5)) << changed << false;
        QTest::newRow("pasting a fraction") << type("numerator", QKeySequence::Paste) << changed << true;
        QTest::newRow("in loadfraction")
            << action([](fractioni &c, QWidget &) { c.loadfraction(QStringList{"1", "2", "3"}); }) << changed << false;
        QTest::newRow("emptying the numerator")
            << action([](fractioni &c, QWidget &) { c.setNumeratorvalue(QString()); }) << changed << true;
        QTest::newRow("a click on the whole part")
            << action([](fractioni &c, QWidget &) { QTest::mouseClick(testsupport::field(&c, QStringLiteral("wholepart")), Qt::LeftButton); })
            << QByteArray(SIGNAL(wholepartclick())) << false;
        QTest::newRow("a press on the surface")
            << action([](fractioni &c, QWidget &) { QTest::mousePress(&c, Qt::LeftButton, {}, QPoint(1, 1)); })
            << QByteArray(SIGNAL(MouseDown(qint16, qint16, float, float))) << true;
        QTest::newRow("a property change")
            << action([](fractioni &c, QWidget &) { c.setBackcolor(0xFF); }) << QByteArray(SIGNAL(propertychanged(QString))) << false;
        QTest::newRow("reporting an error")
            << action([](fractioni &c, QWidget &) { c.setWholepartvalue(QStringLiteral("abc")); })
            << QByteArray(SIGNAL(errorreported(int, QString))) << true;
    }

    // A handler may delete the control, or its whole form, while the control is still at work.
    void deletion()
    {
        QFETCH(action, trigger);
        QFETCH(QByteArray, signal);
        QFETCH(bool, wholeform);
        QGuiApplication::clipboard()->setText(QStringLiteral("1 2/3"));
        auto *form = new QWidget;
        QPointer<fractioni> control = new fractioni(form);
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form));
        QPointer<QWidget> survivor = wholeform ? nullptr : form;
        m_doomed = wholeform ? static_cast<QObject *>(form) : control.data();
        connect(control, signal.constData(), this, SLOT(deletedoomed()));
        trigger(*control, *form);
        QVERIFY(!control);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete survivor;
    }

    void deletedoomed()
    {
        delete m_doomed.data();
    }

    void delegate_data()
    {
        QTest::addColumn<QStringList>("cell");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QStringList>("written");
        QTest::newRow("F2 and Enter without typing") << QStringList{"2", "1", "4"} << "" << QStringList{"2", "1", "4"};
        QTest::newRow("a whole part the editor refuses") << QStringList{"abc", "1", "2"} << "5" << QStringList{"abc", "1", "2"};
        QTest::newRow("a signed numerator") << QStringList{"2", "-3", "4"} << "" << QStringList{"2", "-3", "4"};
        QTest::newRow("a 200,000-digit denominator") << QStringList{"", "1", QString(200000, u'7')} << ""
                                                      << QStringList{"", "1", QString(200000, u'7')};
        QTest::newRow("an edit is written") << QStringList{"2", "1", "4"} << "3" << QStringList{"3", "1", "4"};
    }

    // The delegate writes a cell back only when the user changed a value its editor holds.
    void delegate()
    {
        QFETCH(QStringList, cell);
        QFETCH(QString, keys);
        QFETCH(QStringList, written);
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), cell, Qt::EditRole);
        QTableView table;
        table.setItemDelegate(new kelfractionint::fractiondelegate(&table));
        table.setModel(&model);
        table.show();
        table.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&table));
        table.setCurrentIndex(model.index(0, 0));
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_F2);
        auto *editor = table.findChild<fractioni *>();
        QVERIFY(editor);
        QTRY_VERIFY(QApplication::focusWidget() && editor->isAncestorOf(QApplication::focusWidget()));
        if (!keys.isEmpty()) {
            static_cast<QLineEdit *>(QApplication::focusWidget())->selectAll();
            QTest::keyClicks(static_cast<QWidget *>(nullptr), keys);
        }
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Return);
        QCOMPARE(model.data(model.index(0, 0), Qt::EditRole).toStringList(), written);
    }

    void longtexts_data()
    {
        QTest::addColumn<setup>("state");
        QTest::addColumn<QString>("part");
        QTest::addColumn<QString>("text");
        QTest::newRow("2,000,000-character algebraic denominator")
            << setup([](fractioni &c) { c.setFracType(fractioni::fracAlgebraic); }) << "Denominatorvalue"
            << QString(2000000, u'x');
        QTest::newRow("2,000-digit denominator at 200 pt") << setup([](fractioni &c) {
            c.setFracType(fractioni::fracAlgebraic);
            QFont big = c.Font();
            big.setPointSize(200);
            c.setFont(big);
        }) << "Denominatorvalue" << QString(2000, u'7');
    }

    // A long text costs what the line edit showing it costs, and little more.
    void longtexts()
    {
        QFETCH(setup, state);
        QFETCH(QString, part);
        QFETCH(QString, text);
        QWidget form;
        auto *control = new fractioni(&form);
        state(*control);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QElapsedTimer timer;
        timer.start();
        control->setProperty(part.toLatin1().constData(), text);
        (void)control->grab();
        const qint64 spent = timer.restart();
        QCOMPARE(control->property(part.toLatin1().constData()).toString(), text);
        // A line edit as large as the control, showing the same text.
        QLineEdit alone;
        alone.setMaxLength(std::numeric_limits<int>::max());
        alone.setFont(control->Font());
        alone.resize(control->size());
        timer.restart();
        alone.setText(text);
        (void)alone.grab();
        const qint64 lineedit = timer.restart();
        QVERIFY2(spent < 3 * lineedit + 200, qPrintable(QStringLiteral("%1 ms, a line edit %2 ms").arg(spent).arg(lineedit)));

        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), QStringList{"", text, text}, Qt::EditRole);
        QTableView table;
        table.setItemDelegate(new kelfractionint::fractiondelegate(&table));
        table.setModel(&model);
        table.show();
        timer.restart();
        (void)table.grab();
        QVERIFY2(timer.elapsed() < 3 * lineedit + 200, qPrintable(QString::number(timer.elapsed())));
    }

private:
    QPointer<QObject> m_doomed;
    kelfractionint::messagecapture m_messages;
};

QTEST_MAIN(tst_boundary)
#include "tst_boundary.moc"
