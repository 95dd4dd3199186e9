#include "fractioni.h"
#include "fractionidispatch.h"
#include "messageboxsink.h"

#include "hostnumbers.h"

#include <QLocale>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <set>

using namespace kelfractionint;
using modfracglobal::automationerror;

namespace {

constexpr qint32 wholepartid = 0x68030019;
constexpr qint32 numeratorid = 0x6803001b;
constexpr qint32 backcolorid = -501;

// The automation error number raised by \a call, or 0 when it raised none.
template<typename Call>
int raised(Call call)
{
    try {
        call();
    } catch (const automationerror &error) {
        return error.number();
    }
    return 0;
}

QStringList valueof(const fractioni &control)
{
    return {control.Wholepartvalue(), control.Numeratorvalue(), control.Denominatorvalue()};
}

} // namespace

class tst_fractionidispatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        modfracglobal::setnumberlocale({".", ","});
        m_capture = std::make_unique<messagecapture>();
    }

    void init()
    {
        m_form = std::make_unique<QWidget>();
        m_control = new fractioni(m_form.get());
        m_form->show();
    }

    void cleanup() { m_form.reset(); }

    // The table must describe the class: every property row a meta-property that can be read or
    // written as its kind says, every method an invokable with as many parameters.
    void tablematchesclass()
    {
        const QMetaObject &meta = fractioni::staticMetaObject;
        const auto members = fractionimembers();
        QCOMPARE(members.size(), std::size_t(77));
        std::set<std::pair<qint32, int>> seen;
        for (const dispmember &member : members) {
            QVERIFY2(seen.insert({member.dispid, int(member.kind)}).second, member.name);
            if (member.kind == invokekind::method) {
                bool found = false;
                for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
                    const QMetaMethod method = meta.method(i);
                    if (method.name() == member.name && method.methodType() == QMetaMethod::Method)
                        found = found || method.parameterCount() == member.parametercount;
                }
                QVERIFY2(found, member.name);
                QCOMPARE(member.dispid & 0xFFFF0000, 0x60030000);
            } else {
                const int index = meta.indexOfProperty(member.name);
                QVERIFY2(index >= 0, member.name);
                const QMetaProperty property = meta.property(index);
                QVERIFY2(member.kind == invokekind::get ? property.isReadable() : property.isWritable(), member.name);
                if (member.dispid != backcolorid)
                    QCOMPARE(member.dispid & 0xFFFF0000, 0x68030000);
                // A Let or Set shares the dispatch id of its Get.
                if (member.kind != invokekind::get)
                    QCOMPARE(finddispmember(member.dispid, invokekind::get)->name, member.name);
            }
        }
        const auto events = fractionievents();
        QCOMPARE(events.size(), std::size_t(7));
        for (const dispevent &event : events) {
            QCOMPARE(event.dispid, qint32(&event - events.data() + 1));
            bool found = false;
            for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
                const QMetaMethod method = meta.method(i);
                found = found || (method.methodType() == QMetaMethod::Signal && method.name() == event.name
                                  && method.parameterCount() == event.parametercount);
            }
            QVERIFY2(found, event.name);
        }
    }

    void helpstringskeptasgiven_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("help");
        QTest::newRow("misspelt separator") << "Fractionslash"
                                            << "True gives a slash as separator between numerator and denominator, "
                                               "False gives a horizontal sperator";
        QTest::newRow("trailing blank") << "Userresizeable"
                                        << "True means fraction control is resizable at runtime, False control can "
                                           "only be resized at designtime ";
        QTest::newRow("trailing blank on a colour") << "Numeratorbackcolor" << "Backcolor of numeratorpart ";
        QTest::newRow("misspelt negative") << "Forcesign"
                                           << "Always shows a plus- or minussign for positive/neagative fractions";
        QTest::newRow("lower-case first word") << "Numeratorvalue" << "numerical value of numerator";
        QTest::newRow("none for the whole part's colour") << "Wholepartbackcolor" << "";
    }

    void helpstringskeptasgiven()
    {
        QFETCH(QString, name);
        QFETCH(QString, help);
        for (invokekind kind : {invokekind::get, invokekind::let}) {
            const dispmember *member = finddispmember(name, kind);
            QVERIFY(member);
            QCOMPARE(QString::fromLatin1(member->helpstring), help);
        }
    }

    void bindsbydispid()
    {
        QSignalSpy changed(m_control, &fractioni::fractionvaluechanged);
        QVariantList args{QStringLiteral("-3")};
        QVERIFY(!dispinvoke(m_control, wholepartid, invokekind::let, args).isValid());
        QCOMPARE(m_control->Wholepartvalue(), QStringLiteral("-3"));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.at(0), (QVariantList{"+", "4", "1", "7", "-", "-3", "1", "7"}));

        QVariantList none;
        QCOMPARE(dispinvoke(m_control, wholepartid, invokekind::get, none).toString(), QStringLiteral("-3"));

        QVariantList colour{0x00C0FFEE};
        dispinvoke(m_control, backcolorid, invokekind::let, colour);
        QCOMPARE(m_control->Backcolor(), 0x00C0FFEEu);
        QCOMPARE(dispinvoke(m_control, backcolorid, invokekind::get, none).toUInt(), 0x00C0FFEEu);
    }

    // Arguments convert as automation converts them.
    void convertsarguments_data()
    {
        QTest::addColumn<qint32>("dispid");
        QTest::addColumn<QVariant>("argument");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("number to a String") << numeratorid << QVariant(12) << QVariant("12");
        QTest::newRow("fraction of a number to a String") << wholepartid << QVariant(2.5) << QVariant("2.5");
        QTest::newRow("numeric text to a Boolean") << qint32(0x68030018) << QVariant("0") << QVariant(false);
        QTest::newRow("True text to a Boolean") << qint32(0x68030018) << QVariant("true") << QVariant(true);
        QTest::newRow("-1 to a Boolean") << qint32(0x6803000c) << QVariant(-1) << QVariant(true);
        QTest::newRow("negative Long to OLE_COLOR") << backcolorid << QVariant(-1) << QVariant(0xFFFFFFFFu);
        QTest::newRow("text to OLE_COLOR") << qint32(0x68030013) << QVariant("65280") << QVariant(0xFF00u);
        QTest::newRow("FracType outside the enumeration is kept") << qint32(0x68030002) << QVariant(7) << QVariant(7);
        QTest::newRow("Empty to a Boolean is False") << qint32(0x68030018) << QVariant() << QVariant(false);
    }

    void convertsarguments()
    {
        QFETCH(qint32, dispid);
        QFETCH(QVariant, argument);
        QFETCH(QVariant, expected);
        QVariantList args{argument};
        dispinvoke(m_control, dispid, invokekind::let, args);
        QVariantList none;
        const QVariant value = dispinvoke(m_control, dispid, invokekind::get, none);
        QCOMPARE(value.toString(), expected.toString());
    }

    // Nothing reaches a member with arguments it cannot take, and the value stays as it was.
    void refusesbadcalls_data()
    {
        QTest::addColumn<qint32>("dispid");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QVariantList>("args");
        QTest::addColumn<int>("number");
        const auto kind = [](invokekind k) { return int(k); };
        const QVariant nothing = QVariant::fromValue<QObject *>(nullptr);
        QObject stranger;
        QTest::newRow("unknown dispatch id") << qint32(0x12345) << kind(invokekind::get) << QVariantList{} << 438;
        QTest::newRow("method read as a property") << qint32(0x6003003f) << kind(invokekind::get) << QVariantList{} << 438;
        QTest::newRow("read-only property assigned") << qint32(0x6803000d) << kind(invokekind::let) << QVariantList{5} << 450;
        QTest::newRow("Font assigned by value") << qint32(0x6803000b) << kind(invokekind::let) << QVariantList{1} << 450;
        QTest::newRow("Let without its value") << wholepartid << kind(invokekind::let) << QVariantList{} << 449;
        QTest::newRow("Get with an argument") << wholepartid << kind(invokekind::get) << QVariantList{1} << 450;
        QTest::newRow("missing second argument") << qint32(0x60030031) << kind(invokekind::method) << QVariantList{100.0} << 449;
        QTest::newRow("text that is no Long") << qint32(0x60030041) << kind(invokekind::method) << QVariantList{"abc"} << 13;
        QTest::newRow("Long beyond range") << qint32(0x60030041) << kind(invokekind::method) << QVariantList{1e12} << 6;
        QTest::newRow("Single beyond range") << qint32(0x60030031) << kind(invokekind::method) << QVariantList{1e300, 1.0} << 6;
        QTest::newRow("list where a String is due") << numeratorid << kind(invokekind::let) << QVariantList{QVariant(QVariantList{1})} << 13;
        QTest::newRow("null control") << qint32(0x6003004e) << kind(invokekind::method) << QVariantList{nothing, nothing} << 91;
        QTest::newRow("text where a control is due") << qint32(0x6003004e) << kind(invokekind::method) << QVariantList{"a", "b"} << 13;
        QTest::newRow("null collection") << qint32(0x60030044) << kind(invokekind::method) << QVariantList{nothing} << 91;
        QTest::newRow("number as a collection") << qint32(0x60030044) << kind(invokekind::method) << QVariantList{3} << 13;
        QTest::newRow("text where a record is due") << qint32(0x6003003a) << kind(invokekind::method) << QVariantList{"1 2 3"} << 13;
        QTest::newRow("Font Set to nothing") << qint32(0x6803000b) << kind(invokekind::set) << QVariantList{nothing} << 91;
        QTest::newRow("Font Set to a number") << qint32(0x6803000b) << kind(invokekind::set) << QVariantList{12} << 13;
    }

    void refusesbadcalls()
    {
        QFETCH(qint32, dispid);
        QFETCH(int, kind);
        QFETCH(QVariantList, args);
        QFETCH(int, number);
        const QStringList before = valueof(*m_control);
        QSignalSpy changed(m_control, &fractioni::fractionvaluechanged);
        QString description;
        try {
            dispinvoke(m_control, dispid, invokekind(kind), args);
            QFAIL("no error raised");
        } catch (const automationerror &error) {
            QCOMPARE(error.number(), number);
            description = QString::fromStdString(error.description());
        }
        QVERIFY(!description.isEmpty());
        QVERIFY(!description.startsWith(QLatin1String("Application-defined")));
        QCOMPARE(valueof(*m_control), before);
        QCOMPARE(changed.size(), 0);
    }

    void nullcontrolraises91()
    {
        QVariantList none;
        QCOMPARE(raised([&] { dispinvoke(nullptr, wholepartid, invokekind::get, none); }), 91);
        QCOMPARE(raised([&] { connectevent(nullptr, 1, [](const QVariantList &) {}); }), 91);
    }

    // loadfraction takes its record by reference: the caller sees the trimmed texts.
    void writesbackbyreference()
    {
        QVariantList args{QVariant(QVariantList{" 1 ", " 2", "3 "})};
        const QVariant result = dispinvoke(m_control, 0x6003003a, invokekind::method, args);
        QCOMPARE(result.value<QObject *>(), m_control);
        QCOMPARE(args.at(0).toStringList(), (QStringList{"1", "2", "3"}));
        QCOMPARE(valueof(*m_control), (QStringList{"1", "2", "3"}));

        QVariantList tooshort{QVariant(QStringList{" 5 "})};
        QCOMPARE(raised([&] { dispinvoke(m_control, 0x6003003a, invokekind::method, tooshort); }), 9);
        QCOMPARE(valueof(*m_control), (QStringList{"1", "2", "3"}));
    }

    void membersreturningthecontrol_data()
    {
        QTest::addColumn<qint32>("dispid");
        QTest::newRow("changesign") << qint32(0x60030039);
        QTest::newRow("clearfraction") << qint32(0x6003004c);
    }

    void membersreturningthecontrol()
    {
        QFETCH(qint32, dispid);
        QVariantList none;
        QCOMPARE(dispinvoke(m_control, dispid, invokekind::method, none).value<QObject *>(), m_control);
    }

    void fontbyobjectproperties()
    {
        QVariantList args{QVariantMap{{"Size", 20}, {"Bold", true}}};
        dispinvoke(m_control, 0x6803000b, invokekind::set, args);
        QVERIFY(qAbs(m_control->Font().pointSizeF() - 20.0) < 0.5);
        QVERIFY(m_control->Font().bold());
        QVariantList badsize{QVariantMap{{"Size", "big"}}};
        QCOMPARE(raised([&] { dispinvoke(m_control, 0x6803000b, invokekind::set, badsize); }), 13);
    }

    void allowedcharsfromalist()
    {
        QVariantList args{QVariant(QVariantList{"1", "2", "-"})};
        dispinvoke(m_control, 0x68030007, invokekind::let, args);
        QStringList chars = m_control->Wholeallowedchars().toStringList();
        chars.sort();
        QCOMPARE(chars, (QStringList{"-", "1", "2"}));
        QVariantList test{"2"};
        QVERIFY(dispinvoke(m_control, 0x60030058, invokekind::method, test).toBool());
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
        QCOMPARE(raised([&] { connectevent(m_control, 8, [](const QVariantList &) {}); }), 438);
    }

    void namesresolvewithoutcase()
    {
        QCOMPARE(dispidofname(u"WHOLEPARTVALUE"), std::optional<qint32>(wholepartid));
        QCOMPARE(dispidofname(u"backcolor"), std::optional<qint32>(backcolorid));
        QCOMPARE(dispidofname(u"mousedown"), std::optional<qint32>(7));
        QVERIFY(!dispidofname(u"Numeratorval"));
    }

private:
    std::unique_ptr<messagecapture> m_capture;
    std::unique_ptr<QWidget> m_form;
    fractioni *m_control = nullptr;
};

QTEST_MAIN(tst_fractionidispatch)
#include "tst_fractionidispatch.moc"
