// The computing methods of the control: conversions of its own value, with and without
// Autoreplace, and the arithmetic on other controls and on collections of them.
#include "../control/testsupport.h"

#include "fractionidispatch.h"
#include "messageboxsink.h"

#include <memory>

using kelfractionint::fractioni;
using testsupport::errornumber;
using testsupport::events;
using testsupport::value;
using rows = QList<QStringList>;

namespace {

// A host's collection: a Count and items indexed from 0.
class fractioncollection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Count READ Count)

public:
    explicit fractioncollection(QObjectList items) : m_items(std::move(items)) {}
    int Count() const { return int(m_items.size()); }
    Q_INVOKABLE QObject *Item(int index) const { return m_items.value(index); }

private:
    QObjectList m_items;
};

// An operand that is no control, read by its property names.
class foreignoperand : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Wholepartvalue MEMBER m_whole)
    Q_PROPERTY(QString Numeratorvalue MEMBER m_numer)
    Q_PROPERTY(QString Denominatorvalue MEMBER m_denom)

    QString m_whole = QStringLiteral("2"), m_numer = QStringLiteral("1"), m_denom = QStringLiteral("2");
};

// A control showing \a record, placed in algebraic mode so that texts typing would refuse (a lone
// "%", "5%3") can be set up too; a "+" whole part sets Forcesign.
std::unique_ptr<fractioni> fraction(QStringList record, bool autoreplace = false)
{
    auto control = std::make_unique<fractioni>();
    control->setFracType(fractioni::fracAlgebraic);
    control->setForcesign(record.at(0).startsWith(QLatin1Char('+')));
    control->loadfraction(record);
    control->setFracType(fractioni::fracnumeric);
    control->setAutoreplace(autoreplace);
    return control;
}

// Runs the method \a name of \a c as a container does, through the dispatch table, with as many of
// \a args as the method takes.
QStringList call(fractioni &c, const QString &name, QVariantList args)
{
    const qint32 id = *kelfractionint::dispidofname(name);
    args.resize(kelfractionint::finddispmember(id, kelfractionint::invokekind::method)->parametercount);
    return kelfractionint::dispinvoke(&c, id, kelfractionint::invokekind::method, args).toStringList();
}

QVariant object(QObject *item) { return QVariant::fromValue(item); }

// A conversion of the control's own value; with Autoreplace (\a loads not empty), the events of
// the load in evs() notation.
struct conversion { QStringList before, result; QString name, message; int argument, error; QString loads; };

// A method on two controls \a a and \a b; \a result is what it returns or, for the methods
// that load it into \a a, what \a a shows afterwards.
struct twooperands { QString name, message, decimal; QStringList a, b, result, bafter; bool autoreplace; int error; };

} // namespace

Q_DECLARE_METATYPE(conversion)
Q_DECLARE_METATYPE(twooperands)

class tst_fractionioperations : public QObject
{
    Q_OBJECT

    kelfractionint::messagecapture m_messages;

private Q_SLOTS:
    void init() { testsupport::pinlocale(); m_messages.take(); }

    void conversions_data()
    {
        QTest::addColumn<conversion>("c");
        const auto row = [](const char *name, QStringList before, const char *method, int argument, QStringList result,
                            int error = 0, const char *message = "", const char *loads = "") {
            QTest::newRow(name) << conversion{before, result, method, message, argument, error, loads};
        };
        const char *noload = ";"; // Autoreplace set, nothing loaded
        row("expand by 0 changes nothing", {"", "1", "2"}, "expand", 0, {"", "1", "2"});
        // A failure the engine reports returns nothing; an unallocated result cannot be loaded (9).
        row("0/0 cannot reduce in place", {"", "0", "0"}, "reduce", 0, {}, 9, "Division by zero", noload);
        row("negative count of decimals", {"", "1", "3"}, "fractodecimal", -1, {}, 0, "Invalid procedure call or argument");
        row("empty value as percent", {"", "", ""}, "fractopercent", 2, {}, 13);
        row("lone percent sign", {"%", "", ""}, "percenttofrac", 0, {}, 13, "", noload);
        // A load assigns whole part, numerator and denominator in turn, one event each.
        row("6/8 reduced in place", {"", "6", "8"}, "reduce", 0, {"", "3", "4"}, 0, "",
            "+ _ 6 8 > + _ 6 8; + _ 6 8 > + _ 3 8; + _ 3 8 > + _ 3 4");
        row("50% back to a fraction in place", {"50%", "", ""}, "percenttofrac", 0, {"", "5", "10"}, 0, "",
            "+ 50% _ _ > 0 _ _ _; 0 _ _ _ > 0 _ 5 _; + _ 5 _ > + _ 5 10");
    }

    void conversions()
    {
        QFETCH(conversion, c);
        const bool autoreplace = !c.loads.isEmpty();
        const rows loads = testsupport::evs(c.loads);

        auto control = fraction(c.before, autoreplace);
        QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);
        QStringList result{"untouched"};
        QCOMPARE(errornumber([&] { result = call(*control, c.name, {c.argument}); }), c.error);
        if (c.error == 0)
            QCOMPARE(result, c.result);
        // The engine reports inner failures first; the last report is the operation's own.
        QCOMPARE(m_messages.messages().isEmpty() ? QString() : m_messages.messages().last(), c.message);
        QCOMPARE(events(spy), loads);
        QCOMPARE(value(*control), loads.isEmpty() ? c.before : loads.last().mid(5));
    }

    void numerdenomgcd()
    {
        QCOMPARE(fraction({"1", "12", "18"})->Numerdenomgcd(), 6);
        QCOMPARE(fraction({"", "0", "9"})->Numerdenomgcd(), 9);
        QCOMPARE(fraction({"", "3", ""})->Numerdenomgcd(), -1);
        QCOMPARE(fraction({"4", "", ""})->Numerdenomgcd(), -1);
        // Parts that are no numbers raise at run time to late-bound callers; Qt's readers (style
        // sheets, a form designer) see -1.
        auto letters = fraction({"", "x", "2"});
        QVariantList none;
        QCOMPARE(errornumber([&] { kelfractionint::dispinvoke(letters.get(), 0x6803000d, kelfractionint::invokekind::get, none); }), 13);
        QCOMPARE(letters->Numerdenomgcd(), -1);
        testsupport::designtime design;
        QCOMPARE(letters->Numerdenomgcd(), -1);
    }

    void collections_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("error");
        const std::pair<const char *, int> cases[]{
            {"list of controls", 0}, {"array of objects", 0}, {"object with Count and Item", 0}, {"map with Count", 0},
            {"nothing", 91}, {"a list holding a number", 13}, {"a list holding no control", 91}, {"an empty list", 9},
            {"a single control", 13}, {"an object without items", 13}, {"a text", 13}, {"a percent item without a result", 9},
        };
        for (int i = 0; i < int(std::size(cases)); ++i)
            QTest::newRow(cases[i].first) << i << cases[i].second;
    }

    void collections()
    {
        QFETCH(int, kind);
        QFETCH(int, error);
        auto a = fraction({"1", "1", "2"});
        auto b = fraction({"", "1", "3"});
        auto c = fraction({"-", "1", "4"});
        // A decimal item that would convert itself: a bad item after it must stop the call first.
        auto good = fraction({"0.5", "", ""}, true);
        auto odd = fraction({"5%3", "", ""}, true);
        fractioncollection collection({a.get(), b.get(), c.get()});
        foreignoperand noitems;
        const QVariant one = object(good.get());
        const QList<QVariant> forms{
            QVariant::fromValue(QList<fractioni *>{a.get(), b.get(), c.get()}),
            QVariantList{object(a.get()), object(b.get()), object(c.get())},
            object(&collection),
            QVariantMap{{"Count", 3}, {"0", object(a.get())}, {"1", object(b.get())}, {"2", object(c.get())}},
            QVariant(), QVariantList{one, 5}, QVariantList{one, object(nullptr)}, QVariantList{}, one,
            object(&noitems), QStringLiteral("abc"), QVariant::fromValue(QList<fractioni *>{odd.get(), good.get()}),
        };

        fractioni host;
        QStringList sum;
        QCOMPARE(errornumber([&] { sum = host.addfractions(forms.at(kind)); }), error);
        // 1 1/2 + 1/3 - 1/4 over the least common multiple.
        if (error == 0)
            QCOMPARE(sum, (QStringList{"", "19", "12"}));
        QCOMPARE(value(*a), (QStringList{"1", "1", "2"}));
        QCOMPARE(value(*good), (QStringList{"0.5", "", ""}));
        QCOMPARE(value(*odd), (QStringList{"5%3", "", ""}));
        QCOMPARE(m_messages.messages(), QStringList());
    }

    void itemsconvertthemselves()
    {
        testsupport::pinlocale(",");
        // Decimal and percent items are converted by their own methods, which load the result into
        // the item when the item's Autoreplace is set.
        auto decimal = fraction({"0,5", "", ""}, true);
        auto quarter = fraction({"", "1", "4"});
        auto percent = fraction({"50%", "", ""});
        fractioni host;
        QSignalSpy decimalspy(decimal.get(), &fractioni::fractionvaluechanged);
        QSignalSpy percentspy(percent.get(), &fractioni::fractionvaluechanged);

        QCOMPARE(host.addfractions(QList<fractioni *>{decimal.get(), quarter.get()}), (QStringList{"", "15", "20"}));
        QCOMPARE(value(*decimal), (QStringList{"", "5", "10"}));
        QCOMPARE(decimalspy.count(), 3);
        QCOMPARE(host.multiplyfractions(QList<fractioni *>{percent.get(), quarter.get()}), (QStringList{"", "5", "40"}));
        QCOMPARE(value(*percent), (QStringList{"50%", "", ""}));
        QCOMPARE(percentspy.count(), 0);

        foreignoperand foreign;
        QCOMPARE(host.addfractions(QVariantList{object(&foreign), object(quarter.get())}), (QStringList{"", "11", "4"}));
    }

    void pairs_data()
    {
        QTest::addColumn<twooperands>("t");
        const auto row = [](const char *name, const char *method, QStringList a, QStringList b, QStringList result,
                            QStringList bafter = {}, bool autoreplace = true, int error = 0, const char *message = "",
                            const char *decimal = ".") {
            QTest::newRow(name) << twooperands{method, message, decimal, a, b, result, bafter, autoreplace, error};
        };
        // None of the methods returning a record loads it anywhere, whatever Autoreplace says.
        row("5 - +2", "subtractfractions", {"5", "", ""}, {"+2", "", ""}, {"", "3", "1"});
        row("5 - -1/2", "subtractfractions", {"5", "", ""}, {"-", "1", "2"}, {"", "11", "2"});
        row("-1/2 * 2/3", "multiplytwofractions", {"-", "1", "2"}, {"", "2", "3"}, {"-", "2", "6"});
        // The divisor shows its converted value afterwards, whatever its Autoreplace says; the
        // dividend is converted for the computation only.
        row("-1 1/2 : 2", "dividefractions", {"-1", "1", "2"}, {"2", "", ""}, {"-", "3", "4"}, {}, false);
        row("by a percent, written back", "dividefractions", {"", "1", "2"}, {"50%", "", ""}, {"", "10", "10"},
            {"", "5", "10"}, false);
        row("by a decimal with a comma, written back", "dividefractions", {"3", "", ""}, {"1,5", "", ""},
            {"", "30", "15"}, {"1", "5", "10"}, false, 0, "", ",");
        row("a percent dividend is converted", "dividefractions", {"25%", "", ""}, {"", "1", "2"}, {"", "50", "100"},
            {}, false);
        row("by an empty divisor", "dividefractions", {"", "1", "2"}, {"", "", ""}, {}, {}, false, 11);
        // The ...intofraction methods load the result into their first operand.
        row("9/6 * 1/3 into the first", "multiplyintofraction", {"", "9", "6"}, {"", "1", "3"}, {"", "9", "18"});
        row("9/18 : 1/3 into the first", "divideintofraction", {"", "9", "18"}, {"", "1", "3"}, {"", "27", "18"});
        row("into the first by an empty divisor", "divideintofraction", {"", "1", "2"}, {"", "", ""}, {"", "1", "2"},
            {}, false, 11);
        // A result that cannot be computed cannot be loaded; the control keeps its value.
        row("overflow into the first", "multiplyintofraction", {"", "27", "18"}, {"", "2147483647", "2"},
            {"", "27", "18"}, {}, true, 9, "Overflow");
    }

    void pairs()
    {
        QFETCH(twooperands, t);
        testsupport::pinlocale(qPrintable(t.decimal));
        auto a = fraction(t.a, t.autoreplace);
        auto b = fraction(t.b, t.autoreplace);
        fractioni host;
        const bool into = t.name.endsWith(QLatin1String("intofraction"));
        QSignalSpy spy(a.get(), &fractioni::fractionvaluechanged);
        QStringList result;
        QCOMPARE(errornumber([&] { result = call(host, t.name, {object(a.get()), object(b.get())}); }), t.error);
        if (!into)
            QCOMPARE(result, t.result);
        QCOMPARE(m_messages.messages(), t.message.isEmpty() ? QStringList() : QStringList{t.message});
        QCOMPARE(value(*a), into ? t.result : t.a);
        QCOMPARE(spy.count(), value(*a) == t.a ? 0 : 3);
        QCOMPARE(value(*b), t.bafter.isEmpty() ? t.b : t.bafter);
    }
};

QTEST_MAIN(tst_fractionioperations)
#include "tst_fractionioperations.moc"
