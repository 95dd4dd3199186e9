// The control's automation surface: the members and events of its dispatch interface with their
// ids, late-bound calls and their argument conversions, and the type library listing.
#include "../control/testsupport.h"

#include "fractioni.h"
#include "fractionidispatch.h"
#include "messageboxsink.h"
#include "typelibrary.h"

#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>

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

// The interface as containers have bound to it: member, dispatch id and kinds, in the order of
// the function table. None of it may ever change.
struct member
{
    qint32 dispid;
    const char *name;
    const char *kinds; // g(et), l(et), s(et), m(ethod)
};
constexpr member interface[]{
    {0x6803001b, "Numeratorvalue", "gl"}, {0x6803001a, "Denominatorvalue", "gl"}, {0x68030019, "Wholepartvalue", "gl"},
    {0x60030031, "fracsize", "m"}, {0x68030018, "Fractionslash", "gl"}, {-501, "Backcolor", "gl"},
    {0x68030017, "Userresizeable", "gl"}, {0x68030016, "Borderstyle", "gl"}, {0x68030013, "Negforecolor", "gl"},
    {0x68030012, "Posforecolor", "gl"}, {0x60030039, "changesign", "m"}, {0x6003003a, "loadfraction", "m"},
    {0x6003003e, "getsign", "m"}, {0x68030011, "Forcesign", "gl"}, {0x6003003f, "reduce", "m"},
    {0x60030040, "fractomixed", "m"}, {0x60030041, "expand", "m"}, {0x60030042, "mixedtofrac", "m"},
    {0x60030044, "addfractions", "m"}, {0x60030045, "invert", "m"}, {0x60030046, "multiplyfractions", "m"},
    {0x60030047, "dividefractions", "m"}, {0x60030048, "fractodecimal", "m"}, {0x60030049, "decimaltofrac", "m"},
    {0x6003004a, "fractopercent", "m"}, {0x6003004b, "percenttofrac", "m"}, {0x6003004c, "clearfraction", "m"},
    {0x6003004d, "subtractfractions", "m"}, {0x6003004e, "addtwofractions", "m"},
    {0x6003004f, "multiplytwofractions", "m"}, {0x60030050, "addintofraction", "m"},
    {0x60030051, "subtractintofraction", "m"}, {0x60030052, "divideintofraction", "m"},
    {0x60030053, "multiplyintofraction", "m"}, {0x68030010, "Wholepartbackcolor", "gl"},
    {0x6803000f, "Numeratorbackcolor", "gl"}, {0x6803000e, "Denominatorbackcolor", "gl"},
    {0x6803000d, "Numerdenomgcd", "g"}, {0x6803000c, "Autoreplace", "gl"}, {0x6803000b, "Font", "gs"},
    {0x60030055, "Refreshfraction", "m"}, {0x6803000a, "Container", "gs"}, {0x68030009, "hWnd", "g"},
    {0x68030008, "Picture", "g"}, {0x68030007, "Wholeallowedchars", "gl"}, {0x60030058, "wholecharallowed", "m"},
    {0x68030006, "Fracpartvisible", "gl"}, {0x68030005, "WholepartLocked", "gl"}, {0x68030004, "NumeratorLocked", "gl"},
    {0x68030003, "DenominatorLocked", "gl"}, {0x68030002, "FracType", "gl"}, {0x68030001, "Numerallowedchars", "gl"},
    {0x68030000, "Denomallowedchars", "gl"},
};
// The events, dispatch ids 1 to 7.
const QStringList eventnames{"fractionvaluechanged", "wholepartclick", "denominatorclick", "numeratorclick",
                             "separatorclick", "insidenotcontentclick", "MouseDown"};

// One line per member row: "dispid kind name".
QStringList expectedrows()
{
    QStringList rows;
    for (const member &m : interface) {
        for (const char *k = m.kinds; *k; ++k)
            rows << QStringLiteral("%1 %2 %3").arg(m.dispid).arg(QLatin1Char(*k)).arg(QLatin1String(m.name));
    }
    return rows;
}

bool hasmethod(const QMetaObject &meta, QMetaMethod::MethodType type, const char *name, int parameters)
{
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == type && method.name() == name && method.parameterCount() == parameters)
            return true;
    }
    return false;
}

} // namespace

class tst_fractionidispatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<messagecapture> m_capture;
    std::unique_ptr<QWidget> m_form;
    fractioni *m_control = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        testsupport::pinlocale();
        m_capture = std::make_unique<messagecapture>();
    }

    void init()
    {
        m_form = std::make_unique<QWidget>();
        m_control = new fractioni(m_form.get());
        m_form->show();
    }

    void cleanup() { m_form.reset(); }

    // The dispatch table, the class behind it and the names containers resolve all agree with
    // the interface above.
    void interfacetable()
    {
        const QMetaObject &meta = fractioni::staticMetaObject;
        QStringList rows;
        for (const dispmember &m : fractionimembers()) {
            const char kind = "glsm"[int(m.kind)];
            rows << QStringLiteral("%1 %2 %3").arg(m.dispid).arg(QLatin1Char(kind)).arg(QLatin1String(m.name));
            if (m.kind == invokekind::method) {
                QVERIFY2(hasmethod(meta, QMetaMethod::Method, m.name, m.parametercount), m.name);
            } else {
                const QMetaProperty property = meta.property(meta.indexOfProperty(m.name));
                QVERIFY2(m.kind == invokekind::get ? property.isReadable() : property.isWritable(), m.name);
            }
            QCOMPARE(dispidofname(QString::fromLatin1(m.name).toUpper()), std::optional<qint32>(m.dispid));
        }
        QCOMPARE(rows, expectedrows());
        QCOMPARE(rows.size(), 77);

        QStringList events;
        for (const dispevent &event : fractionievents()) {
            QCOMPARE(event.dispid, qint32(events.size() + 1));
            QVERIFY2(hasmethod(meta, QMetaMethod::Signal, event.name, event.parametercount), event.name);
            events << QString::fromLatin1(event.name);
        }
        QCOMPARE(events, eventnames);
        QCOMPARE(dispidofname(u"mousedown"), std::optional<qint32>(7));
        QVERIFY(!dispidofname(u"Numeratorval"));
    }

    // Every call converts its arguments as automation does, or raises before it reaches the
    // member and leaves the value as it was. A Let or Set is read back by its Get.
    void calls_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<qint32>("dispid");
        QTest::addColumn<QVariantList>("args");
        QTest::addColumn<QVariant>("expected");
        QTest::addColumn<int>("error");
        const auto row = [](const char *name, invokekind kind, qint32 dispid, QVariantList args, QVariant expected,
                            int error = 0) { QTest::newRow(name) << int(kind) << dispid << args << expected << error; };
        const auto let = invokekind::let, get = invokekind::get, set = invokekind::set, call = invokekind::method;
        const QVariant nothing = QVariant::fromValue<QObject *>(nullptr);
        row("text to a String", let, wholepartid, {"-3"}, "-3");
        row("number to a String", let, numeratorid, {12}, "12");
        row("fraction of a number to a String", let, wholepartid, {2.5}, "2.5");
        row("numeric text to a Boolean", let, 0x68030018, {"0"}, false);
        row("True text to a Boolean", let, 0x68030018, {"true"}, true);
        row("-1 to a Boolean", let, 0x6803000c, {-1}, true);
        row("Empty to a Boolean is False", let, 0x68030018, {QVariant()}, false);
        row("Long to OLE_COLOR", let, backcolorid, {0x00C0FFEE}, 0x00C0FFEEu);
        row("negative Long to OLE_COLOR", let, backcolorid, {-1}, 0xFFFFFFFFu);
        row("text to OLE_COLOR", let, 0x68030013, {"65280"}, 0xFF00u);
        row("FracType outside the enumeration is kept", let, 0x68030002, {7}, 7);
        row("allowed characters from a list", let, 0x68030007, {QVariantList{"1", "2", "-"}}, QStringList{"-", "1", "2"});
        row("changesign returns the control", call, 0x60030039, {}, "control");
        row("clearfraction returns the control", call, 0x6003004c, {}, "control");
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
        row("null collection", call, 0x60030044, {nothing}, {}, 91);
        row("number as a collection", call, 0x60030044, {3}, {}, 13);
        row("text where a record is due", call, loadfractionid, {"1 2 3"}, {}, 13);
        row("short record", call, loadfractionid, {QVariant(QStringList{" 5 "})}, {}, 9);
        row("Font Set to nothing", set, fontid, {nothing}, {}, 91);
        row("Font Set to a number", set, fontid, {12}, {}, 13);
        row("Font Set with a size that is no number", set, fontid, {QVariantMap{{"Size", "big"}}}, {}, 13);
    }

    void calls()
    {
        QFETCH(int, kind);
        QFETCH(qint32, dispid);
        QFETCH(QVariantList, args);
        QFETCH(QVariant, expected);
        QFETCH(int, error);
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
        if (expected == QVariant("control")) {
            QCOMPARE(result.value<QObject *>(), m_control);
        } else if (expected.typeId() == QMetaType::QStringList) {
            QStringList list = result.toStringList();
            list.sort();
            QCOMPARE(list, expected.toStringList());
        } else {
            QCOMPARE(result.toString(), expected.toString());
        }
    }

    void nullcontrolraises91()
    {
        QVariantList none;
        QCOMPARE(errornumber([&] { dispinvoke(nullptr, wholepartid, invokekind::get, none); }), 91);
        QCOMPARE(errornumber([&] { connectevent(nullptr, 1, [](const QVariantList &) {}); }), 91);
    }

    // loadfraction takes its record by reference: the caller sees the trimmed texts.
    void writesbackbyreference()
    {
        QVariantList args{QVariant(QVariantList{" 1 ", " 2", "3 "})};
        QCOMPARE(dispinvoke(m_control, loadfractionid, invokekind::method, args).value<QObject *>(), m_control);
        QCOMPARE(args.at(0).toStringList(), (QStringList{"1", "2", "3"}));
        QCOMPARE(value(*m_control), (QStringList{"1", "2", "3"}));
    }

    void fontbyobjectproperties()
    {
        QVariantList args{QVariantMap{{"Size", 20}, {"Bold", true}}};
        dispinvoke(m_control, fontid, invokekind::set, args);
        QVERIFY(qAbs(m_control->Font().pointSizeF() - 20.0) < 0.5);
        QVERIFY(m_control->Font().bold());
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
        QCOMPARE(received.at(1).size(), 4);
        QCOMPARE(received.at(1).at(0).toInt(), 1);
        QCOMPARE(received.at(1).at(3).toFloat(), 4.5f);
        QCOMPARE(errornumber([&] { connectevent(m_control, 8, [](const QVariantList &) {}); }), 438);
    }

    // The listing declares the interface's members in the table's order with their ids.
    void listingmembers()
    {
        const QString text = typelibrarytext();
        static const QRegularExpression declaration(
            QStringLiteral(R"(\[id\(0x([0-9a-f]{8})\)(, prop(get|putref|put))?[^\]]*\]\n        HRESULT (\w+)\()"));
        QStringList rows;
        for (auto it = declaration.globalMatch(text); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            const QString kind = m.captured(3).isEmpty() ? QStringLiteral("m")
                                 : m.captured(3) == QLatin1String("get") ? QStringLiteral("g")
                                 : m.captured(3) == QLatin1String("put") ? QStringLiteral("l")
                                                                         : QStringLiteral("s");
            rows << QStringLiteral("%1 %2 %3").arg(qint32(m.captured(1).toUInt(nullptr, 16))).arg(kind, m.captured(4));
        }
        QCOMPARE(rows, expectedrows());
        for (const QString &event : eventnames) {
            const QString id = QStringLiteral("[id(0x%1)]\n            void ")
                                   .arg(eventnames.indexOf(event) + 1, 8, 10, QLatin1Char('0'));
            QVERIFY2(text.contains(id + event + QLatin1Char('(')), qPrintable(event));
        }

        // GUIDs are part of the contract: the same text every time, each GUID distinct.
        QCOMPARE(typelibrarytext(), text);
        static const QRegularExpression uuid(QStringLiteral(R"(uuid\(([0-9a-f-]{36})\))"));
        QStringList guids;
        for (auto it = uuid.globalMatch(text); it.hasNext();)
            guids << it.next().captured(1);
        QCOMPARE(guids.size(), 10);
        guids.removeDuplicates();
        QCOMPARE(guids.size(), 10);
    }

    // Lines an object browser or a container author looks for, each as it must read.
    void listinglines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("library") << "library kelfractionint";
        QTest::newRow("help file") << "helpfile(\"Kel0101.hlp\")";
        QTest::newRow("whole part read")
            << "[id(0x68030019), propget, helpstring(\"numerical value of wholepart of fraction\")]\n"
               "        HRESULT Wholepartvalue([out, retval] BSTR*);";
        QTest::newRow("back colour assigned") << "HRESULT Backcolor([in] OLE_COLOR value);";
        QTest::newRow("record by reference")
            << "HRESULT loadfraction([in, out] SAFEARRAY(BSTR)* strarr, [out, retval] _fractioni**);";
        QTest::newRow("multiplier by value")
            << "HRESULT multiplyintofraction([in, out] _fractioni** resultfrac, [in] _fractioni* multiplierfrac, "
               "[out, retval] _fractioni**);";
        QTest::newRow("font by reference") << "HRESULT Font([in, out] Font** value);";
        QTest::newRow("allowed set as Variant by reference") << "HRESULT Denomallowedchars([in, out] VARIANT* value);";
        // Help texts stand as they were given, misspellings and trailing blanks included.
        QTest::newRow("misspelt separator") << "False gives a horizontal sperator\")]\n        HRESULT Fractionslash(";
        QTest::newRow("misspelt negative") << "positive/neagative fractions\")]\n        HRESULT Forcesign(";
        QTest::newRow("trailing blank") << "only be resized at designtime \")]\n        HRESULT Userresizeable(";
        QTest::newRow("trailing blank on a colour") << "helpstring(\"Backcolor of denominatorpart \")";
        QTest::newRow("none for the whole part's colour") << "[id(0x68030010), propput]\n";
        QTest::newRow("border enumeration") << "        borderstylenone = 0,\n        borderstylefixed = 1\n    } fracBorderstyle;";
        QTest::newRow("type enumeration") << "        fracnumeric = 0,\n        fracAlgebraic = 1\n    } fractiontype;";
        QTest::newRow("control class") << "      control\n    ]\n    coclass fractioni {\n"
                                          "        [default] interface _fractioni;\n"
                                          "        [default, source] dispinterface __fractioni;";
        QTest::newRow("value event")
            << "void fractionvaluechanged([in, out] BSTR* oldsign, [in, out] BSTR* oldwhole, [in, out] BSTR* oldnumer, "
               "[in, out] BSTR* olddenom, [in, out] BSTR* newsign, [in, out] BSTR* newwhole, [in, out] BSTR* newnumer, "
               "[in, out] BSTR* newdenom);";
        QTest::newRow("mouse event") << "void MouseDown([in, out] short* Button, [in, out] short* Shift, "
                                        "[in, out] single* X, [in, out] single* Y);";
        for (const char *progid : {"fractioni", "fractionvalues", "fractionappearance"})
            QTest::addRow("%s ProgID", progid) << QStringLiteral("// ProgID: kelfractionint.") + QLatin1String(progid);
        QTest::newRow("interface flags") << "      hidden,\n      dual,\n      nonextensible,\n      oleautomation\n    ]\n"
                                            "    interface _fractioni : IDispatch {";
    }

    void listinglines()
    {
        QFETCH(QString, line);
        QVERIFY2(typelibrarytext().contains(line), qPrintable(line));
    }
};

QTEST_MAIN(tst_fractionidispatch)
#include "tst_fractionidispatch.moc"
