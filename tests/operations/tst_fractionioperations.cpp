// The computing methods of the control: conversions of its own value, with and without
// Autoreplace, and the arithmetic on other controls and on collections of them.
#include "../control/testsupport.h"

#include "automationerror.h"
#include "fractioni.h"
#include "messagesink.h"

#include <QSignalSpy>
#include <QTest>

#include <climits>
#include <functional>
#include <memory>

using kelfractionint::fractioni;
using testsupport::events;
using testsupport::value;

namespace {

// A collection in the manner of a host's: a Count and items indexed from 0.
class fractioncollection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Count READ Count)

public:
    explicit fractioncollection(QList<QObject *> items) : m_items(std::move(items)) {}
    int Count() const { return int(m_items.size()); }
    Q_INVOKABLE QObject *Item(int index) const { return m_items.value(index); }

private:
    QList<QObject *> m_items;
};

// Something that looks like a collection but holds no Item method.
class countonly : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Count READ Count)

public:
    int Count() const { return 1; }
};

// A late-bound operand that is not a control: it is read through its properties by name.
class fakeoperand : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Wholepartvalue MEMBER m_whole)
    Q_PROPERTY(QString Numeratorvalue MEMBER m_numer)
    Q_PROPERTY(QString Denominatorvalue MEMBER m_denom)

public:
    fakeoperand(QString whole, QString numer, QString denom)
        : m_whole(std::move(whole)), m_numer(std::move(numer)), m_denom(std::move(denom))
    {
    }

private:
    QString m_whole, m_numer, m_denom;
};

using operation = std::function<QStringList(fractioni &)>;

// The control's conversions by name, with their one argument where they take one.
operation conversion(const QString &name, int argument)
{
    if (name == QLatin1String("reduce"))
        return [](fractioni &c) { return c.reduce(); };
    if (name == QLatin1String("fractomixed"))
        return [](fractioni &c) { return c.fractomixed(); };
    if (name == QLatin1String("expand"))
        return [argument](fractioni &c) { return c.expand(argument); };
    if (name == QLatin1String("mixedtofrac"))
        return [](fractioni &c) { return c.mixedtofrac(); };
    if (name == QLatin1String("invert"))
        return [](fractioni &c) { return c.invert(); };
    if (name == QLatin1String("fractodecimal"))
        return [argument](fractioni &c) { return c.fractodecimal(argument); };
    if (name == QLatin1String("decimaltofrac"))
        return [](fractioni &c) { return c.decimaltofrac(); };
    if (name == QLatin1String("fractopercent"))
        return [argument](fractioni &c) { return c.fractopercent(argument); };
    if (name == QLatin1String("percenttofrac"))
        return [](fractioni &c) { return c.percenttofrac(); };
    return {};
}

// A control showing \a whole \a numer / \a denom. The texts are placed in algebraic mode, so
// that the test can also set up texts that typing would refuse (a lone "%", "5%3").
std::unique_ptr<fractioni> makefraction(const QString &whole, const QString &numer, const QString &denom,
                                        bool autoreplace = false)
{
    auto control = std::make_unique<fractioni>();
    control->setFracType(fractioni::fracAlgebraic);
    QStringList record{whole, numer, denom};
    control->loadfraction(record);
    control->setFracType(fractioni::fracnumeric);
    control->setAutoreplace(autoreplace);
    return control;
}

int errornumber(const std::function<void()> &call)
{
    try {
        call();
    } catch (const modfracglobal::automationerror &error) {
        return error.number();
    }
    return 0;
}

} // namespace

class tst_fractionioperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void conversions_data();
    void conversions();
    void autoreplaceloads_data();
    void autoreplaceloads();
    void failedconversions_data();
    void failedconversions();
    void numerdenomgcd_data();
    void numerdenomgcd();
    void numerdenomgcdofletters();

    void collections_data();
    void collections();
    void collectionitemsconvertthemselves();
    void badcollections_data();
    void badcollections();

    void twocontrols();
    void intofraction();
    void dividefractions_data();
    void dividefractions();
    void divisionbyemptydivisor();

private:
    QStringList m_messages;
};

void tst_fractionioperations::init()
{
    testsupport::pinlocale();
    m_messages.clear();
    modfracglobal::setmessagesink([this](const std::string &text) { m_messages << QString::fromStdString(text); });
}

void tst_fractionioperations::cleanup()
{
    modfracglobal::setmessagesink({});
}

void tst_fractionioperations::conversions_data()
{
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("argument");
    QTest::addColumn<QStringList>("result");

    const QString dot = QStringLiteral(".");
    const QString comma = QStringLiteral(",");
    QTest::newRow("6/8 reduces to 3/4") << dot << QStringList{"", "6", "8"} << "reduce" << 0
                                        << QStringList{"", "3", "4"};
    QTest::newRow("-1 6/8 keeps its whole part") << dot << QStringList{"-1", "6", "8"} << "reduce" << 0
                                                 << QStringList{"-1", "3", "4"};
    QTest::newRow("7/3 to mixed") << dot << QStringList{"", "7", "3"} << "fractomixed" << 0
                                  << QStringList{"2", "1", "3"};
    QTest::newRow("1/2 expanded by 3") << dot << QStringList{"", "1", "2"} << "expand" << 3
                                       << QStringList{"", "3", "6"};
    QTest::newRow("expand by 0 changes nothing") << dot << QStringList{"", "1", "2"} << "expand" << 0
                                                 << QStringList{"", "1", "2"};
    QTest::newRow("2 1/2 to improper") << dot << QStringList{"2", "1", "2"} << "mixedtofrac" << 0
                                       << QStringList{"", "5", "2"};
    QTest::newRow("1 1/2 inverted") << dot << QStringList{"1", "1", "2"} << "invert" << 0
                                    << QStringList{"", "2", "3"};
    QTest::newRow("-3/4 inverted keeps the sign") << dot << QStringList{"-", "3", "4"} << "invert" << 0
                                                  << QStringList{"-", "4", "3"};
    QTest::newRow("1 1/3 to two decimals") << dot << QStringList{"1", "1", "3"} << "fractodecimal" << 2
                                           << QStringList{"1.33", "", ""};
    QTest::newRow("-5/8 ties to even") << dot << QStringList{"-", "5", "8"} << "fractodecimal" << 2
                                       << QStringList{"-0.62", "", ""};
    QTest::newRow("1/3 to decimals with a comma") << comma << QStringList{"", "1", "3"} << "fractodecimal" << 3
                                                  << QStringList{"0,333", "", ""};
    QTest::newRow("1/3 to an absurd count of decimals") << dot << QStringList{"", "1", "3"} << "fractodecimal"
                                                       << INT_MAX << QStringList{"0.333333333333333", "", ""};
    QTest::newRow("1/3 as percent to an absurd count") << dot << QStringList{"", "1", "3"} << "fractopercent"
                                                       << INT_MAX << QStringList{"33.3333333333333%", "", ""};
    QTest::newRow("2.75 to a fraction") << dot << QStringList{"2.75", "", ""} << "decimaltofrac" << 0
                                        << QStringList{"2", "75", "100"};
    QTest::newRow("0,125 to a fraction with a comma") << comma << QStringList{"0,125", "", ""} << "decimaltofrac"
                                                      << 0 << QStringList{"", "125", "1000"};
    QTest::newRow("1/3 is 33% at two decimals") << dot << QStringList{"", "1", "3"} << "fractopercent" << 2
                                                << QStringList{"33%", "", ""};
    QTest::newRow("-1 1/4 as percent") << dot << QStringList{"-1", "1", "4"} << "fractopercent" << 2
                                       << QStringList{"-125%", "", ""};
    QTest::newRow("whole 3 as percent") << dot << QStringList{"3", "", ""} << "fractopercent" << 0
                                        << QStringList{"300%", "", ""};
    QTest::newRow("2/3 as percent with a comma") << comma << QStringList{"", "2", "3"} << "fractopercent" << 4
                                                 << QStringList{"66,67%", "", ""};
    QTest::newRow("12.5% to a fraction") << dot << QStringList{"12.5%", "", ""} << "percenttofrac" << 0
                                         << QStringList{"", "125", "1000"};
    QTest::newRow("-150% to a fraction") << dot << QStringList{"-150%", "", ""} << "percenttofrac" << 0
                                         << QStringList{"-1", "5", "10"};
    QTest::newRow("no percent sign, no result") << dot << QStringList{"12", "1", "2"} << "percenttofrac" << 0
                                                << QStringList{};
}

void tst_fractionioperations::conversions()
{
    QFETCH(QString, decimal);
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(int, argument);
    QFETCH(QStringList, result);
    testsupport::pinlocale(decimal == QLatin1String(",") ? "," : ".", decimal == QLatin1String(",") ? "." : ",");

    auto control = makefraction(before.at(0), before.at(1), before.at(2));
    const QStringList shown = value(*control);
    QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);

    QCOMPARE(conversion(name, argument)(*control), result);
    // Without Autoreplace the control keeps what it shows.
    QCOMPARE(value(*control), shown);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_messages, QStringList());
}

void tst_fractionioperations::autoreplaceloads_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("argument");
    QTest::addColumn<QList<QStringList>>("expected");

    // Each load assigns whole part, numerator and denominator in turn, one event each.
    QTest::newRow("6/8 reduced in place")
        << QStringList{"", "6", "8"} << "reduce" << 0
        << QList<QStringList>{{"+", "", "6", "8", "+", "", "6", "8"},
                              {"+", "", "6", "8", "+", "", "3", "8"},
                              {"+", "", "3", "8", "+", "", "3", "4"}};
    QTest::newRow("-7/3 to mixed in place")
        << QStringList{"-", "7", "3"} << "fractomixed" << 0
        << QList<QStringList>{{"-", "-", "7", "3", "-", "-2", "7", "3"},
                              {"-", "-2", "7", "3", "-", "-2", "1", "3"},
                              {"-", "-2", "1", "3", "-", "-2", "1", "3"}};
    // The empty numerator first sets the denominator to 1, in an event of its own.
    QTest::newRow("1/4 as percent in place")
        << QStringList{"", "1", "4"} << "fractopercent" << 2
        << QList<QStringList>{{"+", "", "1", "4", "+", "25%", "1", "4"},
                              {"+", "25%", "1", "4", "+", "25%", "1", "1"},
                              {"+", "25%", "1", "1", "+", "25%", "", "1"},
                              {"+", "25%", "", "1", "+", "25%", "", ""}};
    QTest::newRow("50% back to a fraction in place")
        << QStringList{"50%", "", ""} << "percenttofrac" << 0
        << QList<QStringList>{{"+", "50%", "", "", "0", "", "", ""},
                              {"0", "", "", "", "0", "", "5", ""},
                              {"+", "", "5", "", "+", "", "5", "10"}};
}

void tst_fractionioperations::autoreplaceloads()
{
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(int, argument);
    QFETCH(QList<QStringList>, expected);

    auto control = makefraction(before.at(0), before.at(1), before.at(2), true);
    QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);
    const QStringList result = conversion(name, argument)(*control);

    QCOMPARE(events(spy), expected);
    // The control shows the result as loaded (a denominator cannot outlive its numerator).
    QStringList shown = result;
    if (shown.at(1).isEmpty())
        shown[2].clear();
    QCOMPARE(value(*control), shown);
}

void tst_fractionioperations::failedconversions_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("argument");
    QTest::addColumn<bool>("autoreplace");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("message");

    const QString overflow = QStringLiteral("Overflow");
    QTest::newRow("0/0 cannot reduce") << QStringList{"", "0", "0"} << "reduce" << 0 << false << 0
                                       << QStringLiteral("Division by zero");
    QTest::newRow("0/0 cannot reduce in place") << QStringList{"", "0", "0"} << "reduce" << 0 << true << 9
                                                << QStringLiteral("Division by zero");
    QTest::newRow("expand beyond 32 bits") << QStringList{"", "3", "4"} << "expand" << INT_MAX << false << 0
                                           << overflow;
    QTest::newRow("expand beyond 32 bits in place") << QStringList{"", "3", "4"} << "expand" << INT_MAX << true
                                                    << 9 << overflow;
    QTest::newRow("negative count of decimals")
        << QStringList{"", "1", "3"} << "fractodecimal" << -1 << false << 0
        << QStringLiteral("Invalid procedure call or argument");
    QTest::newRow("percent with a negative count")
        << QStringList{"", "1", "3"} << "fractopercent" << -1 << false << 9
        << QStringLiteral("Invalid procedure call or argument");
    QTest::newRow("empty value as percent") << QStringList{"", "", ""} << "fractopercent" << 2 << false << 13
                                            << QString();
    QTest::newRow("ten decimals overflow") << QStringList{"0.1234567891", "", ""} << "decimaltofrac" << 0
                                           << false << 0 << overflow;
    QTest::newRow("lone percent sign") << QStringList{"%", "", ""} << "percenttofrac" << 0 << true << 13
                                       << QString();
}

void tst_fractionioperations::failedconversions()
{
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(int, argument);
    QFETCH(bool, autoreplace);
    QFETCH(int, error);
    QFETCH(QString, message);

    auto control = makefraction(before.at(0), before.at(1), before.at(2), autoreplace);
    const QStringList shown = value(*control);
    QSignalSpy spy(control.get(), &fractioni::fractionvaluechanged);

    QStringList result{"untouched"};
    QCOMPARE(errornumber([&] { result = conversion(name, argument)(*control); }), error);
    if (error == 0)
        QCOMPARE(result, QStringList());
    // The engine reports inner failures first; the last report is the operation's own.
    QCOMPARE(m_messages.isEmpty() ? QString() : m_messages.last(), message);
    QCOMPARE(value(*control), shown);
    QCOMPARE(spy.count(), 0);
}

void tst_fractionioperations::numerdenomgcd_data()
{
    QTest::addColumn<QStringList>("record");
    QTest::addColumn<int>("gcd");

    QTest::newRow("12/18") << QStringList{"1", "12", "18"} << 6;
    QTest::newRow("coprime") << QStringList{"", "5", "7"} << 1;
    QTest::newRow("zero numerator") << QStringList{"", "0", "9"} << 9;
    QTest::newRow("empty denominator") << QStringList{"", "3", ""} << -1;
    QTest::newRow("whole number only") << QStringList{"4", "", ""} << -1;
}

void tst_fractionioperations::numerdenomgcd()
{
    QFETCH(QStringList, record);
    QFETCH(int, gcd);
    auto control = makefraction(record.at(0), record.at(1), record.at(2));
    QCOMPARE(control->Numerdenomgcd(), gcd);
    QCOMPARE(control->property("Numerdenomgcd").toInt(), gcd);
}

void tst_fractionioperations::numerdenomgcdofletters()
{
    auto control = makefraction("", "x", "2");
    // Parts that are no numbers raise at run time; a form designer reading them sees -1.
    QCOMPARE(errornumber([&] { control->Numerdenomgcd(); }), 13);
    testsupport::designtime design;
    QCOMPARE(control->Numerdenomgcd(), -1);
}

void tst_fractionioperations::collections_data()
{
    QTest::addColumn<QString>("form");
    QTest::newRow("list of controls") << "list";
    QTest::newRow("array of objects") << "array";
    QTest::newRow("object with Count and Item") << "object";
    QTest::newRow("map with Count") << "map";
    QTest::newRow("list of objects") << "objects";
}

void tst_fractionioperations::collections()
{
    QFETCH(QString, form);
    auto a = makefraction("1", "1", "2");
    auto b = makefraction("", "1", "3");
    auto c = makefraction("-", "1", "4");
    const QList<fractioni *> controls{a.get(), b.get(), c.get()};

    fractioncollection collection({a.get(), b.get(), c.get()});
    QVariant objfracs;
    if (form == QLatin1String("list"))
        objfracs = QVariant::fromValue(controls);
    else if (form == QLatin1String("array"))
        objfracs = QVariantList{QVariant::fromValue<QObject *>(a.get()), QVariant::fromValue<QObject *>(b.get()),
                                QVariant::fromValue<QObject *>(c.get())};
    else if (form == QLatin1String("objects"))
        objfracs = QVariant::fromValue(QList<QObject *>{a.get(), b.get(), c.get()});
    else if (form == QLatin1String("object"))
        objfracs = QVariant::fromValue<QObject *>(&collection);
    else
        objfracs = QVariantMap{{"Count", 3},
                               {"0", QVariant::fromValue<QObject *>(a.get())},
                               {"1", QVariant::fromValue<QObject *>(b.get())},
                               {"2", QVariant::fromValue<QObject *>(c.get())}};

    fractioni host;
    // 1 1/2 + 1/3 - 1/4 over the least common multiple, improper and unreduced.
    QCOMPARE(host.addfractions(objfracs), (QStringList{"", "19", "12"}));
    // 3/2 * 1/3 * -1/4, no common factor removed.
    QCOMPARE(host.multiplyfractions(objfracs), (QStringList{"-", "3", "24"}));
    QCOMPARE(host.addfractions(controls), (QStringList{"", "19", "12"}));
    // The operands keep their values.
    QCOMPARE(value(*a), (QStringList{"1", "1", "2"}));
    QCOMPARE(value(*c), (QStringList{"-", "1", "4"}));
}

void tst_fractionioperations::collectionitemsconvertthemselves()
{
    testsupport::pinlocale(",", ".");
    // Decimal and percent items are converted by their own methods, which load the result into
    // the item when the item's Autoreplace is set.
    auto decimal = makefraction("0,5", "", "", true);
    auto quarter = makefraction("", "1", "4");
    auto percent = makefraction("50%", "", "", false);
    fractioni host;

    QSignalSpy decimalspy(decimal.get(), &fractioni::fractionvaluechanged);
    QCOMPARE(host.addfractions(QList<fractioni *>{decimal.get(), quarter.get()}), (QStringList{"", "15", "20"}));
    QCOMPARE(value(*decimal), (QStringList{"", "5", "10"}));
    QCOMPARE(decimalspy.count(), 3);

    QSignalSpy percentspy(percent.get(), &fractioni::fractionvaluechanged);
    QCOMPARE(host.multiplyfractions(QList<fractioni *>{percent.get(), quarter.get()}),
             (QStringList{"", "5", "40"}));
    QCOMPARE(value(*percent), (QStringList{"50%", "", ""}));
    QCOMPARE(percentspy.count(), 0);

    // An item that is not a control is read by name like any other.
    fakeoperand foreign("2", "1", "2");
    QCOMPARE(host.addfractions(QVariantList{QVariant::fromValue<QObject *>(&foreign),
                                            QVariant::fromValue<QObject *>(quarter.get())}),
             (QStringList{"", "11", "4"}));
}

void tst_fractionioperations::badcollections_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("error");

    QTest::newRow("nothing") << 0 << 91;
    QTest::newRow("a list holding a number") << 1 << 13;
    QTest::newRow("a list holding no control") << 2 << 91;
    QTest::newRow("an empty list") << 3 << 9;
    QTest::newRow("a single control") << 4 << 13;
    QTest::newRow("an object without items") << 5 << 13;
    QTest::newRow("a text") << 6 << 13;
    QTest::newRow("an object that is no fraction") << 7 << 13;
    QTest::newRow("a percent item without a result") << 8 << 9;
}

void tst_fractionioperations::badcollections()
{
    QFETCH(int, kind);
    QFETCH(int, error);

    auto good = makefraction("", "1", "3", true);
    auto odd = makefraction("5%3", "", "", true);
    countonly counted;
    const QList<QVariant> forms{
        QVariant(),
        QVariantList{QVariant::fromValue<QObject *>(good.get()), 5},
        QVariantList{QVariant::fromValue<QObject *>(good.get()), QVariant::fromValue<QObject *>(nullptr)},
        QVariantList{},
        QVariant::fromValue<QObject *>(good.get()),
        QVariant::fromValue<QObject *>(&counted),
        QStringLiteral("abc"),
        QVariantList{QVariant::fromValue<QObject *>(&counted)},
        QVariant::fromValue(QList<fractioni *>{good.get(), odd.get()}),
    };
    const QStringList goodvalue = value(*good);
    const QStringList oddvalue = value(*odd);

    fractioni host;
    const QStringList hostvalue = value(host);
    QCOMPARE(errornumber([&] { host.addfractions(forms.at(kind)); }), error);
    QCOMPARE(errornumber([&] { host.multiplyfractions(forms.at(kind)); }), error);
    QCOMPARE(value(*good), goodvalue);
    QCOMPARE(value(*odd), oddvalue);
    QCOMPARE(value(host), hostvalue);
    QCOMPARE(m_messages, QStringList());
}

void tst_fractionioperations::twocontrols()
{
    auto five = makefraction("5", "", "");
    auto plustwo = makefraction("2", "", "");
    plustwo->setForcesign(true);
    QCOMPARE(plustwo->Wholepartvalue(), QStringLiteral("+2"));
    auto minushalf = makefraction("-", "1", "2");
    auto third = makefraction("", "2", "3", true);
    fractioni host;
    QSignalSpy spy(five.get(), &fractioni::fractionvaluechanged);

    QCOMPARE(host.subtractfractions(five.get(), plustwo.get()), (QStringList{"", "3", "1"}));
    QCOMPARE(host.subtractfractions(five.get(), minushalf.get()), (QStringList{"", "11", "2"}));
    QCOMPARE(host.subtractfractions(minushalf.get(), third.get()), (QStringList{"-", "7", "6"}));
    QCOMPARE(host.addtwofractions(minushalf.get(), third.get()), (QStringList{"", "1", "6"}));
    QCOMPARE(host.multiplytwofractions(minushalf.get(), third.get()), (QStringList{"-", "2", "6"}));
    // None of these loads its result, whatever Autoreplace says.
    QCOMPARE(spy.count(), 0);
    QCOMPARE(value(*third), (QStringList{"", "2", "3"}));

    QCOMPARE(errornumber([&] { host.subtractfractions(nullptr, third.get()); }), 91);
    QCOMPARE(errornumber([&] { host.addtwofractions(third.get(), nullptr); }), 91);
    QCOMPARE(errornumber([&] { host.multiplytwofractions(nullptr, nullptr); }), 91);
}

void tst_fractionioperations::intofraction()
{
    auto result = makefraction("1", "1", "2");
    auto operand = makefraction("", "1", "3");
    fractioni host;
    QSignalSpy spy(result.get(), &fractioni::fractionvaluechanged);
    QSignalSpy operandspy(operand.get(), &fractioni::fractionvaluechanged);

    QCOMPARE(host.addintofraction(result.get(), operand.get()), result.get());
    QCOMPARE(value(*result), (QStringList{"", "11", "6"}));
    QCOMPARE(events(spy), (QList<QStringList>{{"+", "1", "1", "2", "+", "", "1", "2"},
                                              {"+", "", "1", "2", "+", "", "11", "2"},
                                              {"+", "", "11", "2", "+", "", "11", "6"}}));
    spy.clear();

    QCOMPARE(host.subtractintofraction(result.get(), operand.get()), result.get());
    QCOMPARE(value(*result), (QStringList{"", "9", "6"}));
    QCOMPARE(host.multiplyintofraction(result.get(), operand.get()), result.get());
    QCOMPARE(value(*result), (QStringList{"", "9", "18"}));
    QCOMPARE(host.divideintofraction(result.get(), operand.get()), result.get());
    QCOMPARE(value(*result), (QStringList{"", "27", "18"}));
    QCOMPARE(spy.count(), 9);
    QCOMPARE(operandspy.count(), 0);

    // A result that cannot be computed cannot be loaded; the control keeps its value.
    auto huge = makefraction("", "2147483647", "2");
    QCOMPARE(errornumber([&] { host.multiplyintofraction(result.get(), huge.get()); }), 9);
    QCOMPARE(m_messages, QStringList{"Overflow"});
    QCOMPARE(value(*result), (QStringList{"", "27", "18"}));
    QCOMPARE(errornumber([&] { host.addintofraction(nullptr, operand.get()); }), 91);
}

void tst_fractionioperations::dividefractions_data()
{
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QStringList>("dividend");
    QTest::addColumn<QStringList>("divisor");
    QTest::addColumn<QStringList>("quotient");
    QTest::addColumn<QStringList>("divisorafter");
    QTest::addColumn<int>("divisorevents");

    QTest::newRow("1/2 by 3/4") << "." << QStringList{"", "1", "2"} << QStringList{"", "3", "4"}
                                << QStringList{"", "4", "6"} << QStringList{"", "3", "4"} << 0;
    QTest::newRow("-1 1/2 by 2") << "." << QStringList{"-1", "1", "2"} << QStringList{"2", "", ""}
                                 << QStringList{"-", "3", "4"} << QStringList{"2", "", ""} << 0;
    QTest::newRow("by a percent, written back") << "." << QStringList{"", "1", "2"} << QStringList{"50%", "", ""}
                                                << QStringList{"", "10", "10"} << QStringList{"", "5", "10"}
                                                << 3;
    QTest::newRow("by a decimal with a comma, written back")
        << "," << QStringList{"3", "", ""} << QStringList{"1,5", "", ""} << QStringList{"", "30", "15"}
        << QStringList{"1", "5", "10"} << 3;
    QTest::newRow("a percent dividend is converted") << "." << QStringList{"25%", "", ""}
                                                     << QStringList{"", "1", "2"} << QStringList{"", "50", "100"}
                                                     << QStringList{"", "1", "2"} << 0;
}

void tst_fractionioperations::dividefractions()
{
    QFETCH(QString, decimal);
    QFETCH(QStringList, dividend);
    QFETCH(QStringList, divisor);
    QFETCH(QStringList, quotient);
    QFETCH(QStringList, divisorafter);
    QFETCH(int, divisorevents);
    testsupport::pinlocale(decimal == QLatin1String(",") ? "," : ".", decimal == QLatin1String(",") ? "." : ",");

    auto a = makefraction(dividend.at(0), dividend.at(1), dividend.at(2));
    auto b = makefraction(divisor.at(0), divisor.at(1), divisor.at(2));
    QSignalSpy dividendspy(a.get(), &fractioni::fractionvaluechanged);
    QSignalSpy divisorspy(b.get(), &fractioni::fractionvaluechanged);
    fractioni host;

    QCOMPARE(host.dividefractions(a.get(), b.get()), quotient);
    QCOMPARE(value(*b), divisorafter);
    QCOMPARE(divisorspy.count(), divisorevents);
    // The dividend is converted for the computation only.
    QCOMPARE(value(*a), dividend);
    QCOMPARE(dividendspy.count(), 0);
}

void tst_fractionioperations::divisionbyemptydivisor()
{
    auto dividend = makefraction("", "1", "2");
    auto empty = makefraction("", "", "");
    QCOMPARE(value(*empty), (QStringList{"", "", ""}));
    fractioni host;
    QSignalSpy spy(dividend.get(), &fractioni::fractionvaluechanged);

    try {
        host.dividefractions(dividend.get(), empty.get());
        QFAIL("an empty divisor divides");
    } catch (const modfracglobal::automationerror &error) {
        QCOMPARE(error.number(), 11);
        QCOMPARE(QString::fromStdString(error.description()), QStringLiteral("Division by zero"));
    }
    // Reported to the caller only, never through a message box.
    QCOMPARE(m_messages, QStringList());
    QCOMPARE(errornumber([&] { host.divideintofraction(dividend.get(), empty.get()); }), 11);
    QCOMPARE(value(*dividend), (QStringList{"", "1", "2"}));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(errornumber([&] { host.dividefractions(dividend.get(), nullptr); }), 91);
}

QTEST_MAIN(tst_fractionioperations)
#include "tst_fractionioperations.moc"
