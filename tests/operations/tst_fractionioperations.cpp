// The computing methods of the control: conversions of its own value, with and without
// Autoreplace, and the arithmetic on other controls and on collections of them.
#include "../control/testsupport.h"

#include "automationerror.h"
#include "fractioni.h"
#include "messagesink.h"

#include <QTest>

#include <climits>
#include <functional>
#include <map>
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

// A control showing \a record, placed in algebraic mode so that texts typing would refuse
// (a lone "%", "5%3") can be set up too.
std::unique_ptr<fractioni> fraction(QStringList record, bool autoreplace = false)
{
    auto control = std::make_unique<fractioni>();
    control->setFracType(fractioni::fracAlgebraic);
    control->loadfraction(record);
    control->setFracType(fractioni::fracnumeric);
    control->setAutoreplace(autoreplace);
    return control;
}

QStringList convert(fractioni &c, const QString &name, int argument)
{
    const std::map<QString, std::function<QStringList()>> operations{
        {"reduce", [&] { return c.reduce(); }},
        {"fractomixed", [&] { return c.fractomixed(); }},
        {"expand", [&] { return c.expand(argument); }},
        {"mixedtofrac", [&] { return c.mixedtofrac(); }},
        {"invert", [&] { return c.invert(); }},
        {"fractodecimal", [&] { return c.fractodecimal(argument); }},
        {"decimaltofrac", [&] { return c.decimaltofrac(); }},
        {"fractopercent", [&] { return c.fractopercent(argument); }},
        {"percenttofrac", [&] { return c.percenttofrac(); }},
    };
    return operations.at(name)();
}

QVariant object(QObject *item)
{
    return QVariant::fromValue(item);
}

QVariant objects(const QList<fractioni *> &controls)
{
    QVariantList items;
    for (fractioni *control : controls)
        items.append(object(control));
    return items;
}

} // namespace

class tst_fractionioperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testsupport::pinlocale(); m_messages.clear(); }
    void initTestCase();
    void cleanupTestCase() { modfracglobal::setmessagesink({}); }

    void conversions_data();
    void conversions();
    void autoreplaceloads_data();
    void autoreplaceloads();
    void failedconversions_data();
    void failedconversions();
    void numerdenomgcd();
    void collections_data();
    void collections();
    void itemsconvertthemselves();
    void badcollections_data();
    void badcollections();
    void twocontrols();
    void intofraction();
    void dividefractions_data();
    void dividefractions();

private:
    QStringList m_messages;
};

void tst_fractionioperations::initTestCase()
{
    modfracglobal::setmessagesink([this](const std::string &text) { m_messages << QString::fromStdString(text); });
}

void tst_fractionioperations::conversions_data()
{
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("argument");
    QTest::addColumn<QStringList>("result");
    const auto row = [](const char *name, const char *decimal, const QStringList &before, const char *method,
                        int argument, const QStringList &result) {
        QTest::newRow(name) << decimal << before << method << argument << result;
    };
    row("6/8 reduces to 3/4", ".", {"", "6", "8"}, "reduce", 0, {"", "3", "4"});
    row("-7/3 to mixed", ".", {"-", "7", "3"}, "fractomixed", 0, {"-2", "1", "3"});
    row("expand by 0 changes nothing", ".", {"", "1", "2"}, "expand", 0, {"", "1", "2"});
    row("2 1/2 to improper", ".", {"2", "1", "2"}, "mixedtofrac", 0, {"", "5", "2"});
    row("-3/4 inverted", ".", {"-", "3", "4"}, "invert", 0, {"-", "4", "3"});
    row("-5/8 ties to even", ".", {"-", "5", "8"}, "fractodecimal", 2, {"-0.62", "", ""});
    row("1/3 with a comma", ",", {"", "1", "3"}, "fractodecimal", 3, {"0,333", "", ""});
    row("absurd count of decimals", ".", {"", "1", "3"}, "fractodecimal", INT_MAX, {"0.333333333333333", "", ""});
    row("0,125 with a comma", ",", {"0,125", "", ""}, "decimaltofrac", 0, {"", "125", "1000"});
    row("1/3 is 33% at two decimals", ".", {"", "1", "3"}, "fractopercent", 2, {"33%", "", ""});
    row("2/3 as percent with a comma", ",", {"", "2", "3"}, "fractopercent", 4, {"66,67%", "", ""});
    row("-150% to a fraction", ".", {"-150%", "", ""}, "percenttofrac", 0, {"-1", "5", "10"});
    row("no percent sign, no result", ".", {"12", "1", "2"}, "percenttofrac", 0, {});
}

void tst_fractionioperations::conversions()
{
    QFETCH(QString, decimal);
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(int, argument);
    QFETCH(QStringList, result);
    if (decimal == QLatin1String(","))
        testsupport::pinlocale(",", ".");

    auto control = fraction(before);
    QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);
    QCOMPARE(convert(*control, name, argument), result);
    // Without Autoreplace the control keeps what it shows.
    QCOMPARE(value(*control), before);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_messages, QStringList());
}

void tst_fractionioperations::autoreplaceloads_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<rows>("expected");

    // A load assigns whole part, numerator and denominator in turn, one event each.
    QTest::newRow("6/8 reduced in place") << QStringList{"", "6", "8"} << "reduce"
                                          << rows{{"+", "", "6", "8", "+", "", "6", "8"},
                                                  {"+", "", "6", "8", "+", "", "3", "8"},
                                                  {"+", "", "3", "8", "+", "", "3", "4"}};
    // The empty numerator first sets the denominator to 1, in an event of its own.
    QTest::newRow("1/4 as percent in place") << QStringList{"", "1", "4"} << "fractopercent"
                                             << rows{{"+", "", "1", "4", "+", "25%", "1", "4"},
                                                     {"+", "25%", "1", "4", "+", "25%", "1", "1"},
                                                     {"+", "25%", "1", "1", "+", "25%", "", "1"},
                                                     {"+", "25%", "", "1", "+", "25%", "", ""}};
    QTest::newRow("50% back to a fraction") << QStringList{"50%", "", ""} << "percenttofrac"
                                            << rows{{"+", "50%", "", "", "0", "", "", ""},
                                                    {"0", "", "", "", "0", "", "5", ""},
                                                    {"+", "", "5", "", "+", "", "5", "10"}};
}

void tst_fractionioperations::autoreplaceloads()
{
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(rows, expected);

    auto control = fraction(before, true);
    QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);
    convert(*control, name, 2);
    QCOMPARE(events(spy), expected);
    QCOMPARE(value(*control), expected.last().mid(5));
}

void tst_fractionioperations::failedconversions_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("argument");
    QTest::addColumn<bool>("autoreplace");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QStringList &before, const char *method, int argument,
                        bool autoreplace, int error, const char *message) {
        QTest::newRow(name) << before << method << argument << autoreplace << error << message;
    };
    row("0/0 cannot reduce", {"", "0", "0"}, "reduce", 0, false, 0, "Division by zero");
    // An unallocated result cannot be loaded.
    row("0/0 cannot reduce in place", {"", "0", "0"}, "reduce", 0, true, 9, "Division by zero");
    row("expand beyond 32 bits in place", {"", "3", "4"}, "expand", INT_MAX, true, 9, "Overflow");
    row("negative count of decimals", {"", "1", "3"}, "fractodecimal", -1, false, 0, "Invalid procedure call or argument");
    row("percent of a negative count", {"", "1", "3"}, "fractopercent", -1, false, 9, "Invalid procedure call or argument");
    row("empty value as percent", {"", "", ""}, "fractopercent", 2, false, 13, "");
    row("ten decimals overflow", {"0.1234567891", "", ""}, "decimaltofrac", 0, false, 0, "Overflow");
    row("lone percent sign", {"%", "", ""}, "percenttofrac", 0, true, 13, "");
}

void tst_fractionioperations::failedconversions()
{
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(int, argument);
    QFETCH(bool, autoreplace);
    QFETCH(int, error);
    QFETCH(QString, message);

    auto control = fraction(before, autoreplace);
    QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);
    QStringList result{"untouched"};
    QCOMPARE(errornumber([&] { result = convert(*control, name, argument); }), error);
    if (error == 0)
        QCOMPARE(result, QStringList());
    // The engine reports inner failures first; the last report is the operation's own.
    QCOMPARE(m_messages.isEmpty() ? QString() : m_messages.last(), message);
    QCOMPARE(value(*control), before);
    QCOMPARE(spy.count(), 0);
}

void tst_fractionioperations::numerdenomgcd()
{
    QCOMPARE(fraction({"1", "12", "18"})->Numerdenomgcd(), 6);
    QCOMPARE(fraction({"", "0", "9"})->Numerdenomgcd(), 9);
    QCOMPARE(fraction({"", "3", ""})->Numerdenomgcd(), -1);
    QCOMPARE(fraction({"4", "", ""})->Numerdenomgcd(), -1);
    // Parts that are no numbers raise at run time; a form designer reading them sees -1.
    auto letters = fraction({"", "x", "2"});
    QCOMPARE(errornumber([&] { letters->Numerdenomgcd(); }), 13);
    testsupport::designtime design;
    QCOMPARE(letters->Numerdenomgcd(), -1);
}

void tst_fractionioperations::collections_data()
{
    QTest::addColumn<QString>("form");
    for (const char *form : {"list of controls", "array of objects", "list of objects", "object with Count and Item",
                             "map with Count"})
        QTest::newRow(form) << form;
}

void tst_fractionioperations::collections()
{
    QFETCH(QString, form);
    auto a = fraction({"1", "1", "2"});
    auto b = fraction({"", "1", "3"});
    auto c = fraction({"-", "1", "4"});
    const QList<fractioni *> controls{a.get(), b.get(), c.get()};
    fractioncollection collection({a.get(), b.get(), c.get()});
    const std::map<QString, QVariant> forms{
        {"list of controls", QVariant::fromValue(controls)},
        {"array of objects", objects(controls)},
        {"list of objects", QVariant::fromValue(QObjectList{a.get(), b.get(), c.get()})},
        {"object with Count and Item", object(&collection)},
        {"map with Count", QVariantMap{{"Count", 3}, {"0", object(a.get())}, {"1", object(b.get())}, {"2",
            object(c.get())}}},
    };

    fractioni host;
    // 1 1/2 + 1/3 - 1/4 over the least common multiple, and the product with no factor removed.
    QCOMPARE(host.addfractions(forms.at(form)), (QStringList{"", "19", "12"}));
    QCOMPARE(host.multiplyfractions(forms.at(form)), (QStringList{"-", "3", "24"}));
    QCOMPARE(value(*a), (QStringList{"1", "1", "2"}));
}

void tst_fractionioperations::itemsconvertthemselves()
{
    testsupport::pinlocale(",", ".");
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

void tst_fractionioperations::badcollections_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("error");
    const std::pair<const char *, int> cases[]{
        {"nothing", 91}, {"a list holding a number", 13}, {"a list holding no control", 91}, {"an empty list", 9},
        {"a single control", 13}, {"an object without items", 13}, {"a text", 13},
            {"a percent item without a result", 9},
    };
    for (int i = 0; i < int(std::size(cases)); ++i)
        QTest::newRow(cases[i].first) << i << cases[i].second;
}

void tst_fractionioperations::badcollections()
{
    QFETCH(int, kind);
    QFETCH(int, error);

    // A decimal item that would convert itself: a bad item after it must stop the call first.
    auto good = fraction({"0.5", "", ""}, true);
    auto odd = fraction({"5%3", "", ""}, true);
    foreignoperand noitems;
    const QVariant one = object(good.get());
    const QList<QVariant> forms{
        QVariant(), QVariantList{one, 5}, QVariantList{one, object(nullptr)}, QVariantList{},
        one, object(&noitems), QStringLiteral("abc"),
        QVariant::fromValue(QList<fractioni *>{odd.get(), good.get()}),
    };

    fractioni host;
    QCOMPARE(errornumber([&] { host.addfractions(forms.at(kind)); }), error);
    QCOMPARE(errornumber([&] { host.multiplyfractions(forms.at(kind)); }), error);
    QCOMPARE(value(*good), (QStringList{"0.5", "", ""}));
    QCOMPARE(value(*odd), (QStringList{"5%3", "", ""}));
    QCOMPARE(m_messages, QStringList());
}

void tst_fractionioperations::twocontrols()
{
    auto five = fraction({"5", "", ""});
    auto plustwo = fraction({"2", "", ""});
    plustwo->setForcesign(true);
    auto minushalf = fraction({"-", "1", "2"});
    auto twothirds = fraction({"", "2", "3"}, true);
    fractioni host;
    QSignalSpy spy(twothirds.get(), &fractioni::fractionvaluechanged);

    QCOMPARE(host.subtractfractions(five.get(), plustwo.get()), (QStringList{"", "3", "1"}));
    QCOMPARE(host.subtractfractions(five.get(), minushalf.get()), (QStringList{"", "11", "2"}));
    QCOMPARE(host.subtractfractions(minushalf.get(), twothirds.get()), (QStringList{"-", "7", "6"}));
    QCOMPARE(host.addtwofractions(minushalf.get(), twothirds.get()), (QStringList{"", "1", "6"}));
    QCOMPARE(host.multiplytwofractions(minushalf.get(), twothirds.get()), (QStringList{"-", "2", "6"}));
    // None of these loads its result, whatever Autoreplace says.
    QCOMPARE(spy.count(), 0);
    QCOMPARE(errornumber([&] { host.subtractfractions(nullptr, twothirds.get()); }), 91);
    QCOMPARE(errornumber([&] { host.multiplytwofractions(twothirds.get(), nullptr); }), 91);
}

void tst_fractionioperations::intofraction()
{
    auto result = fraction({"1", "1", "2"});
    auto third = fraction({"", "1", "3"});
    fractioni host;
    QSignalSpy spy(result.get(), &fractioni::fractionvaluechanged);

    QCOMPARE(host.addintofraction(result.get(), third.get()), result.get());
    QCOMPARE(events(spy), (rows{{"+", "1", "1", "2", "+", "", "1", "2"},
                                {"+", "", "1", "2", "+", "", "11", "2"},
                                {"+", "", "11", "2", "+", "", "11", "6"}}));
    host.subtractintofraction(result.get(), third.get());
    QCOMPARE(value(*result), (QStringList{"", "9", "6"}));
    host.multiplyintofraction(result.get(), third.get());
    QCOMPARE(value(*result), (QStringList{"", "9", "18"}));
    host.divideintofraction(result.get(), third.get());
    QCOMPARE(value(*result), (QStringList{"", "27", "18"}));
    QCOMPARE(value(*third), (QStringList{"", "1", "3"}));

    // A result that cannot be computed cannot be loaded; the control keeps its value.
    auto huge = fraction({"", "2147483647", "2"});
    QCOMPARE(errornumber([&] { host.multiplyintofraction(result.get(), huge.get()); }), 9);
    QCOMPARE(m_messages, QStringList{"Overflow"});
    QCOMPARE(value(*result), (QStringList{"", "27", "18"}));
}

void tst_fractionioperations::dividefractions_data()
{
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QStringList>("dividend");
    QTest::addColumn<QStringList>("divisor");
    QTest::addColumn<QStringList>("quotient");
    QTest::addColumn<QStringList>("divisorafter");
    QTest::addColumn<int>("error");
    const auto row = [](const char *name, const char *decimal, const QStringList &dividend, const QStringList &divisor,
                        const QStringList &quotient, const QStringList &divisorafter, int error = 0) {
        QTest::newRow(name) << decimal << dividend << divisor << quotient << divisorafter << error;
    };
    row("-1 1/2 by 2", ".", {"-1", "1", "2"}, {"2", "", ""}, {"-", "3", "4"}, {"2", "", ""});
    row("by a percent, written back", ".", {"", "1", "2"}, {"50%", "", ""}, {"", "10", "10"}, {"", "5", "10"});
    row("by a decimal with a comma, written back", ",", {"3", "", ""}, {"1,5", "", ""}, {"", "30", "15"}, {"1", "5", "10"});
    row("a percent dividend is converted", ".", {"25%", "", ""}, {"", "1", "2"}, {"", "50", "100"}, {"", "1", "2"});
    row("by an empty divisor", ".", {"", "1", "2"}, {"", "", ""}, {}, {"", "", ""}, 11);
}

void tst_fractionioperations::dividefractions()
{
    QFETCH(QString, decimal);
    QFETCH(QStringList, dividend);
    QFETCH(QStringList, divisor);
    QFETCH(QStringList, quotient);
    QFETCH(QStringList, divisorafter);
    QFETCH(int, error);
    if (decimal == QLatin1String(","))
        testsupport::pinlocale(",", ".");

    auto a = fraction(dividend);
    auto b = fraction(divisor);
    QSignalSpy dividendspy(a.get(), &fractioni::fractionvaluechanged);
    fractioni host;
    QStringList result;
    QCOMPARE(errornumber([&] { result = host.dividefractions(a.get(), b.get()); }), error);
    QCOMPARE(result, quotient);
    QCOMPARE(value(*b), divisorafter);
    // The dividend is converted for the computation only; the error reaches only the caller.
    QCOMPARE(value(*a), dividend);
    QCOMPARE(dividendspy.count(), 0);
    QCOMPARE(m_messages, QStringList());
    if (error)
        QCOMPARE(errornumber([&] { host.divideintofraction(a.get(), b.get()); }), error);
}

QTEST_MAIN(tst_fractionioperations)
#include "tst_fractionioperations.moc"
