#include "scriptroutines.h"

#include "scripthost.h"

#include "modfracglobal.h"

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace kelfractionint::scriptroutines {

namespace {

using namespace modfracglobal;

// A wrong argument, reported as a TypeError naming the routine and the argument.
struct wrongargument
{
    int number;
    QString detail;
};

class arguments
{
public:
    arguments(QJSEngine &engine, const QString &routine, const QJSValue &args)
        : m_engine(engine)
        , m_routine(routine)
        , m_args(args)
    {
    }

    QJSValue at(int index) const { return m_args.property(quint32(index)); }

    [[noreturn]] void refuse(int index, const QString &expected, int number = 13) const
    {
        throw wrongargument{number, QStringLiteral("modfracglobal.%1: argument %2 must be %3")
                                        .arg(m_routine)
                                        .arg(index + 1)
                                        .arg(expected)};
    }

    std::string text(int index) const
    {
        const QJSValue v = at(index);
        if (!v.isString() && !v.isNumber())
            refuse(index, QStringLiteral("a text"));
        return v.toString().toStdString();
    }

    std::int32_t integer(int index) const { return integerof(at(index), index); }

    double number(int index) const
    {
        const QJSValue v = at(index);
        if (!v.isNumber())
            refuse(index, QStringLiteral("a number"));
        return v.toNumber();
    }

    FractionText record(int index) const { return recordof(at(index), index); }

    FractionList records(int index) const
    {
        const QJSValue v = at(index);
        if (!v.isArray())
            refuse(index, QStringLiteral("an array of records"));
        FractionList list;
        const int length = v.property(QStringLiteral("length")).toInt();
        for (int i = 0; i < length; ++i)
            list.push_back(recordof(v.property(quint32(i)), index));
        return list;
    }

    LongList longs(int index) const
    {
        const QJSValue v = at(index);
        if (!v.isArray())
            refuse(index, QStringLiteral("an array of integers"));
        LongList list;
        const int length = v.property(QStringLiteral("length")).toInt();
        for (int i = 0; i < length; ++i)
            list.push_back(integerof(v.property(quint32(i)), index));
        return list;
    }

    QJSValue result(const FractionResult &record) const
    {
        return record ? recordvalue(*record) : m_engine.newArray(0);
    }

    QJSValue result(const FractionList &list) const
    {
        QJSValue array = m_engine.newArray(quint32(list.size()));
        for (std::size_t i = 0; i < list.size(); ++i)
            array.setProperty(quint32(i), recordvalue(list[i]));
        return array;
    }

    QJSValue result(const LongList &list) const
    {
        QJSValue array = m_engine.newArray(quint32(list.size()));
        for (std::size_t i = 0; i < list.size(); ++i)
            array.setProperty(quint32(i), list[i]);
        return array;
    }

    QJSValue result(const std::string &text) const { return QJSValue(QString::fromStdString(text)); }

    // The routine changed a list it was given by reference: so does the script's array.
    template<typename List>
    void writeback(int index, const List &list) const
    {
        QJSValue target = at(index);
        const QJSValue source = result(list);
        const quint32 length = quint32(list.size());
        target.setProperty(QStringLiteral("length"), length);
        for (quint32 i = 0; i < length; ++i)
            target.setProperty(i, source.property(i));
    }

private:
    QJSValue recordvalue(const FractionText &record) const
    {
        QJSValue array = m_engine.newArray(3);
        for (quint32 i = 0; i < 3; ++i)
            array.setProperty(i, QString::fromStdString(record[i]));
        return array;
    }

    FractionText recordof(const QJSValue &v, int index) const
    {
        if (!v.isArray() || v.property(QStringLiteral("length")).toInt() != 3)
            refuse(index, QStringLiteral("a record (an array of three strings)"));
        FractionText record;
        for (quint32 i = 0; i < 3; ++i) {
            const QJSValue part = v.property(i);
            if (!part.isString() && !part.isNumber())
                refuse(index, QStringLiteral("a record (an array of three strings)"));
            record[i] = part.toString().toStdString();
        }
        return record;
    }

    std::int32_t integerof(const QJSValue &v, int index) const
    {
        if (!v.isNumber() || std::isnan(v.toNumber()))
            refuse(index, QStringLiteral("an integer"));
        const double d = std::nearbyint(v.toNumber());
        if (!(d >= std::numeric_limits<std::int32_t>::min() && d <= std::numeric_limits<std::int32_t>::max()))
            refuse(index, QStringLiteral("within the 32-bit range"), 6);
        return static_cast<std::int32_t>(d);
    }

    QJSEngine &m_engine;
    QString m_routine;
    QJSValue m_args;
};

struct routine
{
    const char *name;
    int count;
    std::function<QJSValue(const arguments &)> run;
};

const std::vector<routine> &routines()
{
    static const std::vector<routine> table = {
        {"partvalue", 1, [](const arguments &a) { return QJSValue(partvalue(a.text(0))); }},
        {"parttext", 1, [](const arguments &a) { return a.result(parttext(a.integer(0))); }},
        {"isemptypart", 1, [](const arguments &a) { return QJSValue(isemptypart(a.text(0))); }},
        {"isemptyfraction", 1, [](const arguments &a) { return QJSValue(isemptyfraction(a.record(0))); }},
        {"decimalcount", 1, [](const arguments &a) { return QJSValue(decimalcount(a.text(0))); }},
        {"haspercentsign", 1, [](const arguments &a) { return QJSValue(haspercentsign(a.text(0))); }},
        {"hasdecimalsep", 1, [](const arguments &a) { return QJSValue(hasdecimalsep(a.text(0))); }},
        {"removezeros", 1, [](const arguments &a) { return a.result(removezeros(a.longs(0))); }},
        {"minindex", 1, [](const arguments &a) { return QJSValue(minindex(a.longs(0))); }},
        {"modbymin", 1,
         [](const arguments &a) {
             LongList list = a.longs(0);
             const LongList result = modbymin(list);
             a.writeback(0, list);
             return a.result(result);
         }},
        {"listgcd", 1,
         [](const arguments &a) {
             LongList list = a.longs(0);
             const std::int32_t result = listgcd(list);
             a.writeback(0, list);
             return QJSValue(result);
         }},
        {"listlcm", 1,
         [](const arguments &a) {
             LongList list = a.longs(0);
             const std::int32_t result = listlcm(list);
             a.writeback(0, list);
             return QJSValue(result);
         }},
        {"strreduce", 1, [](const arguments &a) { return a.result(strreduce(a.record(0))); }},
        {"strfractomixed", 1, [](const arguments &a) { return a.result(strfractomixed(a.record(0))); }},
        {"strexpand", 2, [](const arguments &a) { return a.result(strexpand(a.record(0), a.integer(1))); }},
        {"strmixedtofrac", 1, [](const arguments &a) { return a.result(strmixedtofrac(a.record(0))); }},
        {"strinvert", 1, [](const arguments &a) { return a.result(strinvert(a.record(0))); }},
        {"straddfractions", 1, [](const arguments &a) { return a.result(straddfractions(a.records(0))); }},
        {"strmultiplyfractions", 1,
         [](const arguments &a) {
             FractionList list = a.records(0);
             const FractionResult result = strmultiplyfractions(list);
             a.writeback(0, list);
             return a.result(result);
         }},
        {"strdividefractions", 1,
         [](const arguments &a) {
             FractionList list = a.records(0);
             const FractionResult result = strdividefractions(list);
             a.writeback(0, list);
             return a.result(result);
         }},
        {"strfractodecimal", 2,
         [](const arguments &a) { return a.result(strfractodecimal(a.record(0), a.integer(1))); }},
        {"strdecimaltofrac", 1, [](const arguments &a) { return a.result(strdecimaltofrac(a.record(0))); }},
        {"strparsefraction", 1, [](const arguments &a) { return a.result(strparsefraction(a.text(0))); }},
        {"strformatfraction", 1, [](const arguments &a) { return a.result(strformatfraction(a.record(0))); }},
        {"strapproximate", 2,
         [](const arguments &a) { return a.result(strapproximate(a.record(0), a.integer(1))); }},
        {"texttolong", 1, [](const arguments &a) { return QJSValue(texttolong(a.text(0))); }},
        {"texttodouble", 1, [](const arguments &a) { return QJSValue(texttodouble(a.text(0))); }},
        {"doubletotext", 1, [](const arguments &a) { return a.result(doubletotext(a.number(0))); }},
        {"roundtodecimals", 2,
         [](const arguments &a) { return QJSValue(roundtodecimals(a.number(0), a.integer(1))); }},
        {"isnumerictext", 1, [](const arguments &a) { return QJSValue(isnumerictext(a.text(0))); }},
    };
    return table;
}

} // namespace

QStringList names()
{
    QStringList list;
    for (const routine &r : routines())
        list << QString::fromLatin1(r.name);
    return list;
}

QJSValue call(scripthost &host, const QString &name, const QJSValue &args)
{
    for (const routine &r : routines()) {
        if (name != QLatin1String(r.name))
            continue;
        const int given = args.property(QStringLiteral("length")).toInt();
        if (given != r.count) {
            host.throwautomation(450, QStringLiteral("Wrong number of arguments or invalid property assignment"),
                                 QStringLiteral("modfracglobal.%1 takes %2 argument(s), %3 given")
                                     .arg(name)
                                     .arg(r.count)
                                     .arg(given));
            return {};
        }
        try {
            return r.run(arguments(host.engine(), name, args));
        } catch (const wrongargument &wrong) {
            const automationerror error(wrong.number);
            host.throwautomation(wrong.number, QString::fromStdString(error.description()), wrong.detail);
        } catch (const automationerror &error) {
            host.throwautomation(error.number(), QString::fromStdString(error.description()));
        } catch (const std::exception &error) {
            host.throwautomation(51, QStringLiteral("Internal error"), QString::fromLocal8Bit(error.what()));
        }
        return {};
    }
    host.throwautomation(438, QStringLiteral("Object doesn't support this property or method"),
                         QStringLiteral("modfracglobal has no routine %1").arg(name));
    return {};
}

} // namespace kelfractionint::scriptroutines
