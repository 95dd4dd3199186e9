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

// The interface as containers have bound to it: dispatch id, kinds (g Get, l Let, s Set,
// m method) and member, in the order of the function table. None of it may ever change.
const char *const interface[]{
    "6803001b gl Numeratorvalue", "6803001a gl Denominatorvalue", "68030019 gl Wholepartvalue", "60030031 m fracsize",
    "68030018 gl Fractionslash", "fffffe0b gl Backcolor", "68030017 gl Userresizeable", "68030016 gl Borderstyle",
    "68030013 gl Negforecolor", "68030012 gl Posforecolor", "60030039 m changesign", "6003003a m loadfraction",
    "6003003e m getsign", "68030011 gl Forcesign", "6003003f m reduce", "60030040 m fractomixed", "60030041 m expand",
    "60030042 m mixedtofrac", "60030044 m addfractions", "60030045 m invert", "60030046 m multiplyfractions",
    "60030047 m dividefractions", "60030048 m fractodecimal", "60030049 m decimaltofrac", "6003004a m fractopercent",
    "6003004b m percenttofrac", "6003004c m clearfraction", "6003004d m subtractfractions",
    "6003004e m addtwofractions", "6003004f m multiplytwofractions", "60030050 m addintofraction",
    "60030051 m subtractintofraction", "60030052 m divideintofraction", "60030053 m multiplyintofraction",
    "68030010 gl Wholepartbackcolor", "6803000f gl Numeratorbackcolor", "6803000e gl Denominatorbackcolor",
    "6803000d g Numerdenomgcd", "6803000c gl Autoreplace", "6803000b gs Font", "60030055 m Refreshfraction",
    "6803000a gs Container", "68030009 g hWnd", "68030008 g Picture", "68030007 gl Wholeallowedchars",
    "60030058 m wholecharallowed", "68030006 gl Fracpartvisible", "68030005 gl WholepartLocked",
    "68030004 gl NumeratorLocked", "68030003 gl DenominatorLocked", "68030002 gl FracType",
    "68030001 gl Numerallowedchars", "68030000 gl Denomallowedchars",
};
// The events, dispatch ids 1 to 7.
const QStringList eventnames{"fractionvaluechanged", "wholepartclick", "denominatorclick", "numeratorclick",
                             "separatorclick", "insidenotcontentclick", "MouseDown"};

// One line per member row: "dispid kind name".
QStringList expectedrows()
{
    QStringList rows;
    for (const char *member : interface) {
        const QStringList parts = QString::fromLatin1(member).split(QLatin1Char(' '));
        for (const QChar kind : parts.at(1))
            rows << parts.at(0) + QLatin1Char(' ') + kind + QLatin1Char(' ') + parts.at(2);
    }
    return rows;
}

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

    // The dispatch table, the names containers resolve and the signals behind the events agree with
    // the interface above; the type library listing, help texts' misspellings and trailing blanks
    // included, reads byte for byte as containers were built against (print it with
    // fractionscript -e "print(typelibrary())").
    void interfacetable()
    {
        QStringList rows;
        for (const dispmember &m : fractionimembers()) {
            rows << QStringLiteral("%1 %2 %3").arg(quint32(m.dispid), 8, 16, QLatin1Char('0'))
                        .arg(QString(QLatin1Char("glsm"[int(m.kind)])), QLatin1String(m.name));
            QCOMPARE(dispidofname(QString::fromLatin1(m.name).toUpper()), std::optional<qint32>(m.dispid));
        }
        QCOMPARE(rows, expectedrows());
        QList<std::pair<QByteArray, int>> emitted; // the signals: name and number of parameters
        for (int i = fractioni::staticMetaObject.methodOffset(); i < fractioni::staticMetaObject.methodCount(); ++i) {
            if (const QMetaMethod m = fractioni::staticMetaObject.method(i); m.methodType() == QMetaMethod::Signal)
                emitted.append({m.name(), m.parameterCount()});
        }
        for (const dispevent &event : fractionievents()) {
            const int id = int(&event - fractionievents().data()) + 1;
            QCOMPARE(event.dispid, id);
            QCOMPARE(QLatin1String(event.name), eventnames.value(id - 1));
            QVERIFY2(emitted.contains({event.name, event.parametercount}), event.name);
        }
        QCOMPARE(fractionievents().size(), std::size_t(7));
        QCOMPARE(dispidofname(u"mousedown"), std::optional<qint32>(7));
        QVERIFY(!dispidofname(u"Numeratorval"));
        QCOMPARE(QCryptographicHash::hash(typelibrarytext().toUtf8(), QCryptographicHash::Sha256).toHex(),
                 QByteArray("3148f56f42fd031bb8c81ad9840928233b5cc4a12f983967755e3856866345af"));
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
