// The computing methods: conversions of the control's own value and arithmetic on other controls.
#include "fractioni.h"

#include "fractioniguard.h"
#include "modfracglobal.h"

#include <QMetaMethod>
#include <QMetaObject>
#include <QSequentialIterable>
#include <QVariant>

#include <functional>
#include <string>
#include <vector>

namespace kelfractionint {

namespace {

using modfracglobal::FractionList;
using modfracglobal::FractionResult;
using modfracglobal::FractionText;
namespace errnum = modfracglobal::errnum;

[[noreturn]] void fail(int number)
{
    throw modfracglobal::automationerror(number);
}

fractioni *required(fractioni *control)
{
    if (!control)
        fail(errnum::objectnotset);
    return control;
}

FractionText torecord(const QStringList &parts)
{
    if (parts.size() < 3)
        fail(errnum::subscript);
    return {parts.at(0).toStdString(), parts.at(1).toStdString(), parts.at(2).toStdString()};
}

QStringList totext(const FractionText &record)
{
    return {QString::fromStdString(record[0]), QString::fromStdString(record[1]),
            QString::fromStdString(record[2])};
}

// An unallocated record is the empty list.
QStringList totext(const FractionResult &result)
{
    return result ? totext(*result) : QStringList();
}

QStringList valueof(const fractioni *control)
{
    return {control->Wholepartvalue(), control->Numeratorvalue(), control->Denominatorvalue()};
}

bool haspercent(const QString &text)
{
    return modfracglobal::haspercentsign(text.toStdString());
}

bool hasdecimal(const QString &text)
{
    return modfracglobal::hasdecimalsep(text.toStdString());
}

// With Autoreplace the result is loaded into the control; an unallocated result then makes
// loadfraction raise 9, as hosts expect from a failed conversion.
QStringList replaceifasked(fractioni *control, QStringList result)
{
    if (control->Autoreplace())
        control->loadfraction(result);
    return result;
}

// The result of an ...intofraction method, always loaded into its first control.
fractioni *loadinto(fractioni *resultfrac, QStringList result)
{
    return resultfrac->loadfraction(result);
}

// ---- Late binding on objects that are not controls of this library ----

QMetaMethod findmethod(const QObject *object, std::initializer_list<const char *> names, int parameters)
{
    const QMetaObject *meta = object->metaObject();
    for (const char *name : names) {
        for (int i = meta->methodCount() - 1; i >= 0; --i) {
            const QMetaMethod method = meta->method(i);
            if (method.name() == name && method.parameterCount() == parameters
                && method.methodType() != QMetaMethod::Signal)
                return method;
        }
    }
    return {};
}

// Calls \a method with at most one argument, converted to the parameter's type; raises 13 when
// the argument does not convert or the call fails.
QVariant invokelate(QObject *object, const QMetaMethod &method, const QVariant &argument = {})
{
    QVariant converted = argument;
    QGenericArgument parameter(nullptr);
    if (method.parameterCount() == 1) {
        const QMetaType type = method.parameterMetaType(0);
        if (type == QMetaType::fromType<QVariant>()) {
            parameter = QGenericArgument("QVariant", &converted);
        } else {
            if (!converted.convert(type))
                fail(errnum::typemismatch);
            parameter = QGenericArgument(type.name(), converted.constData());
        }
    }
    const QMetaType returntype = method.returnMetaType();
    QVariant result;
    bool invoked = false;
    if (returntype == QMetaType::fromType<void>()) {
        invoked = method.invoke(object, Qt::DirectConnection, parameter);
    } else if (returntype == QMetaType::fromType<QVariant>()) {
        invoked = method.invoke(object, Qt::DirectConnection, QGenericReturnArgument("QVariant", &result),
                                parameter);
    } else {
        result = QVariant(returntype);
        invoked = method.invoke(object, Qt::DirectConnection,
                                QGenericReturnArgument(returntype.name(), result.data()), parameter);
    }
    if (!invoked)
        fail(errnum::typemismatch);
    return result;
}

// A property read by name, or failing that a method of that name without arguments.
QVariant readlate(QObject *object, const char *name)
{
    const QVariant value = object->property(name);
    if (value.isValid())
        return value;
    const QMetaMethod method = findmethod(object, {name}, 0);
    if (!method.isValid())
        fail(errnum::typemismatch);
    return invokelate(object, method);
}

QStringList recordlate(QObject *object, const char *name)
{
    const QMetaMethod method = findmethod(object, {name}, 0);
    if (!method.isValid())
        fail(errnum::typemismatch);
    const QVariant result = invokelate(object, method);
    if (!result.canConvert<QStringList>())
        fail(errnum::typemismatch);
    return result.toStringList();
}

// ---- One row of a fraction list ----

// A decimal or percent text in the whole part is converted by the item's own method, which loads
// the converted value into the item when the item's Autoreplace is set; hosts rely on that.
QStringList rowof(fractioni *control)
{
    const QString whole = required(control)->Wholepartvalue();
    if (haspercent(whole))
        return control->percenttofrac();
    if (hasdecimal(whole))
        return control->decimaltofrac();
    return valueof(control);
}

QStringList rowof(QObject *object)
{
    if (auto *control = qobject_cast<fractioni *>(object))
        return rowof(control);
    const QString whole = readlate(object, "Wholepartvalue").toString();
    if (haspercent(whole))
        return recordlate(object, "percenttofrac");
    if (hasdecimal(whole))
        return recordlate(object, "decimaltofrac");
    return {whole, readlate(object, "Numeratorvalue").toString(),
            readlate(object, "Denominatorvalue").toString()};
}

bool holdsobject(const QVariant &value)
{
    return value.metaType().flags().testFlag(QMetaType::PointerToQObject);
}

bool readable(QObject *object, const char *name)
{
    return object->property(name).isValid() || findmethod(object, {name}, 0).isValid();
}

// The operand an item stands for: 91 for nothing, 13 for anything that does not read as a fraction.
QObject *operandof(QObject *object)
{
    if (!object)
        fail(errnum::objectnotset);
    if (!qobject_cast<fractioni *>(object)) {
        for (const char *name : {"Wholepartvalue", "Numeratorvalue", "Denominatorvalue"}) {
            if (!readable(object, name))
                fail(errnum::typemismatch);
        }
    }
    return object;
}

QObject *operandof(const QVariant &item)
{
    if (!item.isValid() || item.isNull())
        fail(errnum::objectnotset);
    if (!holdsobject(item))
        fail(errnum::typemismatch);
    return operandof(item.value<QObject *>());
}

qsizetype countof(const QVariant &count)
{
    bool ok = false;
    const qlonglong value = count.toLongLong(&ok);
    if (!ok)
        fail(errnum::typemismatch);
    return qsizetype(value);
}

// Reads \a count items through \a item, one row each, in the collection's order.
FractionList buildlist(qsizetype count, const std::function<QObject *(qsizetype)> &item)
{
    // An empty collection sizes the list to no rows, which the host refuses.
    if (count < 1)
        fail(errnum::subscript);
    // Every item is checked before the first one converts itself, so that a collection holding
    // something else leaves all controls as they were.
    std::vector<QObject *> operands;
    for (qsizetype i = 0; i < count; ++i)
        operands.push_back(item(i));
    FractionList list;
    for (QObject *operand : operands)
        list.push_back(torecord(rowof(operand)));
    return list;
}

FractionList buildlist(const QList<fractioni *> &controls)
{
    return buildlist(controls.size(), [&controls](qsizetype i) { return operandof(controls.at(i)); });
}

// A collection from a host: a list of controls, a sequence of objects (a script's array), a map
// with "Count" and the items under "0", "1", ... (a script's object), or an object with a `Count`
// property or method and an `Item`, `item` or `at` method taking the index from 0.
FractionList buildlist(const QVariant &objfracs)
{
    if (!objfracs.isValid() || objfracs.isNull())
        fail(errnum::objectnotset);
    if (objfracs.metaType() == QMetaType::fromType<QList<fractioni *>>())
        return buildlist(objfracs.value<QList<fractioni *>>());
    if (holdsobject(objfracs)) {
        QObject *collection = objfracs.value<QObject *>();
        if (!collection)
            fail(errnum::objectnotset);
        // A single control is no collection.
        if (qobject_cast<fractioni *>(collection))
            fail(errnum::typemismatch);
        const qsizetype count = countof(readlate(collection, "Count"));
        const QMetaMethod item = findmethod(collection, {"Item", "item", "at"}, 1);
        if (!item.isValid())
            fail(errnum::typemismatch);
        return buildlist(count, [collection, &item](qsizetype i) {
            return operandof(invokelate(collection, item, QVariant::fromValue(qlonglong(i))));
        });
    }
    if (objfracs.metaType() == QMetaType::fromType<QVariantMap>()) {
        const QVariantMap map = objfracs.toMap();
        if (!map.contains(QStringLiteral("Count")))
            fail(errnum::typemismatch);
        return buildlist(countof(map.value(QStringLiteral("Count"))),
                         [&map](qsizetype i) { return operandof(map.value(QString::number(i))); });
    }
    if (objfracs.canView<QSequentialIterable>() && objfracs.metaType() != QMetaType::fromType<QString>()
        && objfracs.metaType() != QMetaType::fromType<QByteArray>()) {
        const QVariantList items = objfracs.value<QVariantList>();
        return buildlist(items.size(), [&items](qsizetype i) { return operandof(items.at(i)); });
    }
    fail(errnum::typemismatch);
}

// The whole part of the minutor with its sign flipped, for a subtraction done as a sum.
QString flippedsign(const QString &whole)
{
    if (whole.startsWith(QLatin1Char('-')))
        return whole.mid(1);
    if (whole.startsWith(QLatin1Char('+')))
        return QLatin1Char('-') + whole.mid(1);
    return QLatin1Char('-') + whole;
}

} // namespace

// ---- Conversions of the control's own value ----

QStringList fractioni::reduce()
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this, totext(modfracglobal::strreduce(torecord(fractiontoarray(this)))));
    });
}

QStringList fractioni::fractomixed()
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this, totext(modfracglobal::strfractomixed(torecord(fractiontoarray(this)))));
    });
}

QStringList fractioni::expand(qint32 lngexpander)
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this,
                              totext(modfracglobal::strexpand(torecord(fractiontoarray(this)), lngexpander)));
    });
}

QStringList fractioni::mixedtofrac()
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this, totext(modfracglobal::strmixedtofrac(torecord(fractiontoarray(this)))));
    });
}

QStringList fractioni::invert()
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this, totext(modfracglobal::strinvert(torecord(fractiontoarray(this)))));
    });
}

QStringList fractioni::fractodecimal(qint32 noofdecimals)
{
    return guarded([&]() -> QStringList {
        return replaceifasked(
            this, totext(modfracglobal::strfractodecimal(torecord(fractiontoarray(this)), noofdecimals)));
    });
}

QStringList fractioni::approximate(qint32 maxdenominator)
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this,
                              totext(modfracglobal::strapproximate(torecord(fractiontoarray(this)), maxdenominator)));
    });
}

QStringList fractioni::decimaltofrac()
{
    return guarded([&]() -> QStringList {
        return replaceifasked(this, totext(modfracglobal::strdecimaltofrac(torecord(fractiontoarray(this)))));
    });
}

QStringList fractioni::fractopercent(qint32 noofdecimals)
{
    return guarded([&]() -> QStringList {
        const FractionResult decimal = modfracglobal::strfractodecimal(torecord(fractiontoarray(this)), noofdecimals);
        // The engine has already reported why there is no decimal; there is no element 0 to scale.
        if (!decimal)
            fail(errnum::subscript);
        FractionText record = *decimal;
        // Rounded twice, as a decimal and then as a percentage, so one third at two decimals is 33%;
        // hosts rely on it.
        double percent = modfracglobal::texttodouble(record[0]) * 100;
        percent = modfracglobal::roundtodecimals(percent, noofdecimals);
        record[0] = modfracglobal::doubletotext(percent) + "%";
        return replaceifasked(this, totext(record));
    });
}

QStringList fractioni::percenttofrac()
{
    return guarded([&]() -> QStringList {
        const QString whole = m_wholepart;
        if (!whole.endsWith(QLatin1Char('%')))
            return {};
        if (m_denominator.isEmpty() && !m_numerator.isEmpty())
            return {};
        const double value = modfracglobal::texttodouble(whole.chopped(1).toStdString()) / 100;
        const FractionText decimal{modfracglobal::doubletotext(value), std::string(), std::string()};
        return replaceifasked(this, totext(modfracglobal::strdecimaltofrac(decimal)));
    });
}

qint32 fractioni::Numerdenomgcd() const
{
    // Read by style sheets and form designers: a getter never fails, so parts that are no
    // numbers have no gcd here.
    try {
        return checkednumerdenomgcd();
    } catch (const modfracglobal::automationerror &) {
        return -1;
    }
}

qint32 fractioni::checkednumerdenomgcd() const
{
    if (m_numerator.isEmpty() || m_denominator.isEmpty())
        return -1;
    try {
        modfracglobal::LongList parts{modfracglobal::texttolong(m_numerator.toStdString()),
                                      modfracglobal::texttolong(m_denominator.toStdString())};
        return modfracglobal::listgcd(parts);
    } catch (const modfracglobal::automationerror &) {
        // A form designer reads every property to show it: at design time parts that are no
        // numbers (algebraic mode) have no gcd to show instead of an error.
        if (!usermode())
            return -1;
        throw;
    }
}

// ---- Arithmetic on other controls ----

QStringList fractioni::addfractions(const QVariant &objfracs)
{
    return guarded([&]() -> QStringList {
        return totext(modfracglobal::straddfractions(buildlist(objfracs)));
    });
}

QStringList fractioni::addfractions(const QList<fractioni *> &objfracs)
{
    return guarded([&]() -> QStringList {
        return totext(modfracglobal::straddfractions(buildlist(objfracs)));
    });
}

QStringList fractioni::multiplyfractions(const QVariant &objfracs)
{
    return guarded([&]() -> QStringList {
        FractionList list = buildlist(objfracs);
        return totext(modfracglobal::strmultiplyfractions(list));
    });
}

QStringList fractioni::multiplyfractions(const QList<fractioni *> &objfracs)
{
    return guarded([&]() -> QStringList {
        FractionList list = buildlist(objfracs);
        return totext(modfracglobal::strmultiplyfractions(list));
    });
}

QStringList fractioni::subtractfractions(fractioni *minuend, fractioni *minutor)
{
    return guarded([&]() -> QStringList {
        required(minuend);
        required(minutor);
        QStringList subtrahend = valueof(minutor);
        subtrahend[0] = flippedsign(subtrahend.at(0));
        return totext(modfracglobal::straddfractions({torecord(valueof(minuend)), torecord(subtrahend)}));
    });
}

QStringList fractioni::dividefractions(fractioni *dividend, fractioni *divisor)
{
    return guarded([&]() -> QStringList {
        required(dividend);
        required(divisor);
        if (divisor->Numeratorvalue().isEmpty() && divisor->Denominatorvalue().isEmpty()
            && divisor->Wholepartvalue().isEmpty())
            fail(errnum::divisionbyzero);

        const QString divisorwhole = divisor->Wholepartvalue();
        const QStringList converted = rowof(divisor);
        const FractionText divisorrecord = torecord(converted);
        if (haspercent(divisorwhole) || hasdecimal(divisorwhole)) {
            // The divisor shows its converted value afterwards, whatever its Autoreplace says; hosts
            // rely on it.
            divisor->setWholepartvalue(converted.at(0));
            divisor->setNumeratorvalue(converted.at(1));
            divisor->setDenominatorvalue(converted.at(2));
        }
        // The dividend is converted for the computation only; it keeps what it shows.
        const FractionText dividendrecord = torecord(rowof(dividend));

        const FractionResult improperdividend = modfracglobal::strmixedtofrac(dividendrecord);
        const FractionResult improperdivisor = modfracglobal::strmixedtofrac(divisorrecord);
        if (!improperdividend || !improperdivisor)
            return {};
        const FractionResult inverted = modfracglobal::strinvert(*improperdivisor);
        if (!inverted)
            return {};
        FractionList list{*improperdividend, *inverted};
        return totext(modfracglobal::strdividefractions(list));
    });
}

QStringList fractioni::addtwofractions(fractioni *frac1, fractioni *frac2)
{
    return guarded([&]() -> QStringList {
        return addfractions(QList<fractioni *>{required(frac1), required(frac2)});
    });
}

QStringList fractioni::multiplytwofractions(fractioni *frac1, fractioni *frac2)
{
    return guarded([&]() -> QStringList {
        return multiplyfractions(QList<fractioni *>{required(frac1), required(frac2)});
    });
}

fractioni *fractioni::addintofraction(fractioni *resultfrac, fractioni *addendfrac)
{
    return guarded([&]() -> fractioni * {
        return loadinto(resultfrac, addtwofractions(resultfrac, addendfrac));
    });
}

fractioni *fractioni::subtractintofraction(fractioni *resultfrac, fractioni *minutorfrac)
{
    return guarded([&]() -> fractioni * {
        return loadinto(resultfrac, subtractfractions(resultfrac, minutorfrac));
    });
}

fractioni *fractioni::divideintofraction(fractioni *resultfrac, fractioni *divisorfrac)
{
    return guarded([&]() -> fractioni * {
        return loadinto(resultfrac, dividefractions(resultfrac, divisorfrac));
    });
}

fractioni *fractioni::multiplyintofraction(fractioni *resultfrac, fractioni *multiplierfrac)
{
    return guarded([&]() -> fractioni * {
        return loadinto(resultfrac, multiplytwofractions(resultfrac, multiplierfrac));
    });
}

} // namespace kelfractionint
