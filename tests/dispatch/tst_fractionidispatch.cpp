// The control's automation surface: the members and events of its dispatch interface with their
// ids, late-bound calls and their argument conversions, and the type library listing.
#include "../control/testsupport.h"

#include "fractionidispatch.h"
#include "messageboxsink.h"
#include "typelibrary.h"

#include <QCryptographicHash>
#include <QMetaMethod>

#include <memory>

using namespace kelfractionint;
using testsupport::errornumber;
using testsupport::value;

namespace {

constexpr qint32 wholepartid = 0x68030019;
constexpr qint32 numeratorid = 0x6803001b;
constexpr qint32 backcolorid = -501;
constexpr qint32 fontid = 0x6803000b;
constexpr qint32 loadfractionid = 0x6003003a;

struct latebound { int kind; qint32 dispid; QVariantList args; QVariant expected; int error; };

} // namespace

Q_DECLARE_METATYPE(latebound)

class tst_fractionidispatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<messagecapture> m_capture;
    std::unique_ptr<QWidget> m_form;
    fractioni *m_control = nullptr;

private Q_SLOTS:
    void initTestCase() { testsupport::pinlocale(); m_capture = std::make_unique<messagecapture>(); }

    void init()
    {
        m_form = std::make_unique<QWidget>();
        m_control = new fractioni(m_form.get());
        m_form->show();
    }

    void cleanup() { m_form.reset(); }

    // The type library listing, written from the dispatch table (every member's id, kind, name and
    // parameters in the table's order, and the events), help texts' misspellings and trailing blanks
    // included, reads byte for byte as containers were built against: none of it may ever change
    // (print it with fractionscript -e "print(typelibrary())"). Containers resolve every name in any
    // case, and each event is a signal of the control with its parameters.
    void interfacetable()
    {
        QCOMPARE(QCryptographicHash::hash(typelibrarytext().toUtf8(), QCryptographicHash::Sha256).toHex(),
                 QByteArray("3148f56f42fd031bb8c81ad9840928233b5cc4a12f983967755e3856866345af"));
        for (const dispmember &m : fractionimembers())
            QCOMPARE(dispidofname(QString::fromLatin1(m.name).toUpper()), std::optional<qint32>(m.dispid));
        QList<std::pair<QByteArray, int>> emitted; // the signals: name and number of parameters
        for (int i = fractioni::staticMetaObject.methodOffset(); i < fractioni::staticMetaObject.methodCount(); ++i) {
            if (const QMetaMethod m = fractioni::staticMetaObject.method(i); m.methodType() == QMetaMethod::Signal)
                emitted.append({m.name(), m.parameterCount()});
        }
        for (const dispevent &event : fractionievents()) {
            QVERIFY2(emitted.contains({event.name, event.parametercount}), event.name);
            QCOMPARE(dispidofname(QString::fromLatin1(event.name).toLower()), std::optional<qint32>(event.dispid));
        }
        QVERIFY(!dispidofname(u"Numeratorval"));
    }

    // Every call converts its arguments as automation does, or raises before it reaches the
    // member and leaves the value as it was. A Let or Set is read back by its Get.
    void calls_data()
    {
        QTest::addColumn<latebound>("row");
        const auto row = [](const char *name, invokekind kind, qint32 dispid, QVariantList args, QVariant expected,
                            int error = 0) { QTest::newRow(name) << latebound{int(kind), dispid, args, expected, error}; };
        const auto let = invokekind::let, get = invokekind::get, set = invokekind::set, call = invokekind::method;
        const QVariant nothing = QVariant::fromValue<QObject *>(nullptr);
        row("number to a String", let, numeratorid, {12}, "12");
        row("fraction of a number to a String", let, wholepartid, {2.5}, "2.5");
        row("numeric text to a Boolean", let, 0x68030018, {"0"}, false);
        row("True text to a Boolean", let, 0x68030018, {"true"}, true);
        row("-1 to a Boolean", let, 0x6803000c, {-1}, true);
        row("Empty to a Boolean is False", let, 0x68030018, {QVariant()}, false);
        row("negative Long to OLE_COLOR", let, backcolorid, {-1}, 0xFFFFFFFFu);
        row("text to OLE_COLOR", let, 0x68030013, {"65280"}, 0xFF00u);
        row("FracType outside the enumeration is kept", let, 0x68030002, {7}, 7);
        row("unknown dispatch id", get, 0x12345, {}, {}, 438);
        row("method read as a property", get, 0x6003003f, {}, {}, 438);
        row("read-only property assigned", let, 0x6803000d, {5}, {}, 450);
        row("Font assigned by value", let, fontid, {1}, {}, 450);
        row("Let without its value", let, wholepartid, {}, {}, 449);
        row("Get with an argument", get, wholepartid, {1}, {}, 450);
        row("missing second argument", call, 0x60030031, {100.0}, {}, 449);
        row("text that is no Long", call, 0x60030041, {"abc"}, {}, 13);
        row("Long beyond range", call, 0x60030041, {1e12}, {}, 6);
        row("Single beyond range", call, 0x60030031, {1e300, 1.0}, {}, 6);
        row("list where a String is due", let, numeratorid, {QVariant(QVariantList{1})}, {}, 13);
        row("null control", call, 0x6003004e, {nothing, nothing}, {}, 91);
        row("text where a control is due", call, 0x6003004e, {"a", "b"}, {}, 13);
        row("text where a record is due", call, loadfractionid, {"1 2 3"}, {}, 13);
        row("short record", call, loadfractionid, {QVariant(QStringList{" 5 "})}, {}, 9);
        row("Font Set to nothing", set, fontid, {nothing}, {}, 91);
        row("Font Set to a number", set, fontid, {12}, {}, 13);
        row("Font Set with a size that is no number", set, fontid, {QVariantMap{{"Size", "big"}}}, {}, 13);
    }

    void calls()
    {
        QFETCH(latebound, row);
        auto [kind, dispid, args, expected, error] = row;
        const QStringList before = value(*m_control);
        QSignalSpy changed(m_control, &fractioni::fractionvaluechanged);
        QVariant result;
        try {
            result = dispinvoke(m_control, dispid, invokekind(kind), args);
            if (invokekind(kind) == invokekind::let || invokekind(kind) == invokekind::set) {
                QVariantList none;
                QVERIFY(!result.isValid());
                result = dispinvoke(m_control, dispid, invokekind::get, none);
            }
        } catch (const modfracglobal::automationerror &raised) {
            QCOMPARE(raised.number(), error);
            const QString description = QString::fromStdString(raised.description());
            QVERIFY(!description.isEmpty() && !description.startsWith(QLatin1String("Application-defined")));
            QCOMPARE(value(*m_control), before);
            QCOMPARE(changed.size(), 0);
            return;
        }
        QCOMPARE(0, error);
        QCOMPARE(result.toString(), expected.toString());
    }

    // loadfraction takes its record by reference: the caller sees the trimmed texts.
    void writesbackbyreference()
    {
        QVariantList args{QVariant(QVariantList{" 1 ", " 2", "3 "})};
        QCOMPARE(dispinvoke(m_control, loadfractionid, invokekind::method, args).value<QObject *>(), m_control);
        QCOMPARE(args.at(0).toStringList(), (QStringList{"1", "2", "3"}));
        QCOMPARE(value(*m_control), (QStringList{"1", "2", "3"}));
    }

    void eventsbydispid()
    {
        QList<QVariantList> received;
        connectevent(m_control, 1, [&](const QVariantList &args) { received.append(args); });
        connectevent(m_control, 7, [&](const QVariantList &args) { received.append(args); });
        m_control->setNumeratorvalue(QStringLiteral("2"));
        Q_EMIT m_control->MouseDown(1, 2, 3.5f, 4.5f);
        QCOMPARE(received.size(), 2);
        QCOMPARE(received.at(0), (QVariantList{"+", "4", "1", "7", "+", "4", "2", "7"}));
        QCOMPARE(QVariant(received.at(1)).toStringList(), (QStringList{"1", "2", "3.5", "4.5"}));
        QCOMPARE(errornumber([&] { connectevent(m_control, 8, [](const QVariantList &) {}); }), 438);
        QCOMPARE(errornumber([&] { connectevent(nullptr, 1, [](const QVariantList &) {}); }), 91);
        QVariantList none;
        QCOMPARE(errornumber([&] { dispinvoke(nullptr, wholepartid, invokekind::get, none); }), 91);
    }
};

QTEST_MAIN(tst_fractionidispatch)
#include "tst_fractionidispatch.moc"
