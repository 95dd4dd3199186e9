#include "fractionidispatch.h"

#include "ambient.h"
#include "fractioni.h"
#include "hostnumbers.h"

#include <QPointer>

#include <QFont>
#include <QMetaType>
#include <QPixmap>
#include <QStringList>
#include <QVariantMap>

#include <cfloat>
#include <iterator>
#include <cmath>
#include <limits>
#include <string>

namespace kelfractionint {

// The getters that late-bound callers see failing, while Qt's own readers of the properties
// (style sheets, designers) see values.
struct dispatchaccess
{
    static QVariant container(const fractioni &control)
    {
        // Reading the container fails every time in run mode, also after it was set; hosts rely
        // on the error.
        if (ambient::usermode(&control))
            throw modfracglobal::automationerror(modfracglobal::errnum::objectnotset);
        return QVariant::fromValue<QObject *>(nullptr);
    }
    static qint32 numerdenomgcd(const fractioni &control) { return control.checkednumerdenomgcd(); }
};

namespace {

namespace errors {
constexpr int overflow = 6;
constexpr int typemismatch = 13;
constexpr int objectnotset = 91;
constexpr int notsupported = 438;
constexpr int argumentnotoptional = 449;
constexpr int wrongarguments = 450;
} // namespace errors

// Automation's wording of the dispatch errors; the rest are the engine's standard descriptions.
std::string dispatchdescription(int number)
{
    switch (number) {
    case errors::notsupported:
        return "Object doesn't support this property or method";
    case errors::argumentnotoptional:
        return "Argument not optional";
    case errors::wrongarguments:
        return "Wrong number of arguments or invalid property assignment";
    }
    return modfracglobal::automationerror::standarddescription(number);
}

// Raised by the converters below; dispinvoke names the member and the argument.
struct badargument
{
    int number;
    int index;
    QString expected;
};

[[noreturn]] void refuse(int number, int index, const char *expected)
{
    throw badargument{number, index, QString::fromLatin1(expected)};
}

bool isnothing(const QVariant &v)
{
    if (v.metaType().id() == QMetaType::Nullptr)
        return true;
    return (v.metaType().flags() & QMetaType::PointerToQObject) && !v.value<QObject *>();
}

QObject *objectof(const QVariant &v)
{
    if (v.metaType().flags() & QMetaType::PointerToQObject)
        return v.value<QObject *>();
    return nullptr;
}

bool isintegral(const QVariant &v)
{
    switch (v.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isfloating(const QVariant &v)
{
    return v.metaType().id() == QMetaType::Double || v.metaType().id() == QMetaType::Float;
}

bool isboolean(const QVariant &v)
{
    return v.metaType().id() == QMetaType::Bool;
}

bool isstring(const QVariant &v)
{
    return v.metaType().id() == QMetaType::QString;
}

// A number as automation reads it: booleans are -1 and 0, text goes through the host's number
// rules, an absent value (Empty) is 0.
double numberof(const QVariantList &args, int index, const char *expected)
{
    const QVariant &v = args.at(index);
    if (!v.isValid())
        return 0;
    if (isboolean(v))
        return v.toBool() ? -1 : 0;
    if (isintegral(v) || isfloating(v)) {
        const double d = v.toDouble();
        if (std::isnan(d))
            refuse(errors::typemismatch, index, expected);
        return d;
    }
    if (isstring(v)) {
        try {
            return modfracglobal::texttodouble(v.toString().toStdString());
        } catch (const modfracglobal::automationerror &e) {
            refuse(e.number(), index, expected);
        }
    }
    refuse(errors::typemismatch, index, expected);
}

QString tostring(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (!v.isValid() || isstring(v))
        return v.toString();
    if (isboolean(v))
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (isintegral(v))
        return v.toString();
    if (isfloating(v) && std::isfinite(v.toDouble()))
        return QString::fromStdString(modfracglobal::doubletotext(v.toDouble()));
    refuse(errors::typemismatch, index, "a String");
}

bool tobool(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (isstring(v)) {
        const QString text = v.toString().trimmed();
        if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return false;
    }
    return numberof(args, index, "a Boolean") != 0;
}

qint32 tolong(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (isintegral(v)) {
        bool ok = false;
        const qlonglong n = v.toLongLong(&ok);
        if (!ok || n < std::numeric_limits<qint32>::min() || n > std::numeric_limits<qint32>::max())
            refuse(errors::overflow, index, "a Long");
        return static_cast<qint32>(n);
    }
    // Rounded half to even, as automation converts to Long.
    const double d = std::nearbyint(numberof(args, index, "a Long"));
    if (!(d >= std::numeric_limits<qint32>::min() && d <= std::numeric_limits<qint32>::max()))
        refuse(errors::overflow, index, "a Long");
    return static_cast<qint32>(d);
}

float tosingle(const QVariantList &args, int index)
{
    const double d = numberof(args, index, "a Single");
    if (!(std::fabs(d) <= FLT_MAX))
        refuse(errors::overflow, index, "a Single");
    return static_cast<float>(d);
}

// OLE_COLOR: an unsigned 32-bit value that Basic callers also write as a negative Long.
quint32 tocolor(const QVariantList &args, int index)
{
    const double d = std::nearbyint(numberof(args, index, "an OLE_COLOR"));
    if (!(d >= std::numeric_limits<qint32>::min() && d <= std::numeric_limits<quint32>::max()))
        refuse(errors::overflow, index, "an OLE_COLOR");
    return static_cast<quint32>(static_cast<qint64>(d));
}

// A font, or a map with the font object's properties (Name, Size, Bold, Italic, Underline,
// Strikethrough, Weight) applied over \a base.
QFont tofont(const QVariantList &args, int index, const QFont &base)
{
    const QVariant &v = args.at(index);
    if (v.metaType().id() == QMetaType::QFont)
        return v.value<QFont>();
    if (isnothing(v))
        refuse(errors::objectnotset, index, "a Font object");
    if (v.metaType().id() != QMetaType::QVariantMap)
        refuse(errors::typemismatch, index, "a Font object");
    const QVariantMap map = v.toMap();
    QFont font = base;
    QVariantList field{QVariant()};
    auto read = [&](const char *key, auto convert, auto apply) {
        const auto it = map.constFind(QString::fromLatin1(key));
        if (it == map.constEnd())
            return;
        field[0] = *it;
        try {
            apply(convert(field, 0));
        } catch (badargument &bad) {
            bad.index = index;
            bad.expected = QStringLiteral("a Font object (%1)").arg(QString::fromLatin1(key));
            throw;
        }
    };
    read("Name", tostring, [&](const QString &name) { font.setFamily(name); });
    read("Size", tosingle, [&](float size) {
        if (!(size > 0))
            refuse(errors::typemismatch, 0, "");
        font.setPointSizeF(size);
    });
    read("Weight", tolong, [&](qint32 weight) {
        font.setWeight(QFont::Weight(qBound(100, weight, 900)));
    });
    read("Bold", tobool, [&](bool bold) { font.setBold(bold); });
    read("Italic", tobool, [&](bool italic) { font.setItalic(italic); });
    read("Underline", tobool, [&](bool underline) { font.setUnderline(underline); });
    read("Strikethrough", tobool, [&](bool strike) { font.setStrikeOut(strike); });
    return font;
}

QObject *toobject(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (isnothing(v))
        return nullptr;
    if (QObject *object = objectof(v))
        return object;
    refuse(errors::typemismatch, index, "an Object");
}

fractioni *tocontrol(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (isnothing(v))
        refuse(errors::objectnotset, index, "a fractioni");
    if (auto *control = qobject_cast<fractioni *>(objectof(v)))
        return control;
    refuse(errors::typemismatch, index, "a fractioni");
}

// The collection of controls for addfractions and multiplyfractions: a list, or an object with
// Count and indexed items; reading its items is the control's business.
QVariant tocollection(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (isnothing(v))
        refuse(errors::objectnotset, index, "a collection of fractioni");
    if (objectof(v) || v.metaType().id() == QMetaType::QVariantList
        || v.metaType().id() == QMetaType::QStringList || v.canConvert<QList<QObject *>>())
        return v;
    refuse(errors::typemismatch, index, "a collection of fractioni");
}

QStringList tostringarray(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (v.metaType().id() == QMetaType::QStringList)
        return v.toStringList();
    if (v.metaType().id() != QMetaType::QVariantList)
        refuse(errors::typemismatch, index, "an array of String");
    const QVariantList items = v.toList();
    QStringList texts;
    for (qsizetype i = 0; i < items.size(); ++i) {
        try {
            texts.append(tostring(items, int(i)));
        } catch (badargument &bad) {
            bad.index = index;
            bad.expected = QStringLiteral("an array of String");
            throw;
        }
    }
    return texts;
}

// A Variant passes as it is, except that a list of texts becomes the QStringList the allowed
// sets are kept in.
QVariant tovariant(const QVariantList &args, int index)
{
    const QVariant &v = args.at(index);
    if (v.metaType().id() != QMetaType::QVariantList)
        return v;
    QStringList texts;
    for (const QVariant &item : v.toList()) {
        if (!isstring(item))
            return v;
        texts.append(item.toString());
    }
    return texts;
}

QVariant controlresult(fractioni *control)
{
    return QVariant::fromValue<QObject *>(control);
}

// The caller's array receives the trimmed texts, also when the load then fails.
QVariant loadfractionbyreference(fractioni &control, QVariantList &args)
{
    QStringList strarr = tostringarray(args, 0);
    QPointer<fractioni> alive(&control);
    fractioni *result = control.loadfraction(strarr);
    args[0] = strarr;
    return alive ? controlresult(result) : QVariant();
}

// The interface's table, in the order of its function table.
const dispmember members[] = {
    {"Numeratorvalue", invokekind::get, 0x6803001b, {}, 0, automationtype::string,
     "numerical value of numerator",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Numeratorvalue(); }},
    {"Numeratorvalue", invokekind::let, 0x6803001b, {{"value", automationtype::string, false}}, 1, automationtype::none,
     "numerical value of numerator",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setNumeratorvalue(tostring(a, 0)); return {}; }},
    {"Denominatorvalue", invokekind::get, 0x6803001a, {}, 0, automationtype::string,
     "Numerical value of denominator",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Denominatorvalue(); }},
    {"Denominatorvalue", invokekind::let, 0x6803001a, {{"value", automationtype::string, false}}, 1, automationtype::none,
     "Numerical value of denominator",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setDenominatorvalue(tostring(a, 0)); return {}; }},
    {"Wholepartvalue", invokekind::get, 0x68030019, {}, 0, automationtype::string,
     "numerical value of wholepart of fraction",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Wholepartvalue(); }},
    {"Wholepartvalue", invokekind::let, 0x68030019, {{"value", automationtype::string, false}}, 1, automationtype::none,
     "numerical value of wholepart of fraction",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setWholepartvalue(tostring(a, 0)); return {}; }},
    {"fracsize", invokekind::method, 0x60030031, {{"fracwidth", automationtype::single, false}, {"fracheight", automationtype::single, false}}, 2, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.fracsize(tosingle(a, 0), tosingle(a, 1)); return {}; }},
    {"Fractionslash", invokekind::get, 0x68030018, {}, 0, automationtype::boolean,
     "True gives a slash as separator between numerator and denominator, False gives a horizontal sperator",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Fractionslash(); }},
    {"Fractionslash", invokekind::let, 0x68030018, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "True gives a slash as separator between numerator and denominator, False gives a horizontal sperator",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setFractionslash(tobool(a, 0)); return {}; }},
    {"Backcolor", invokekind::get, -501, {}, 0, automationtype::olecolor,
     "backcolor of fractioncontrol",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Backcolor(); }},
    {"Backcolor", invokekind::let, -501, {{"value", automationtype::olecolor, false}}, 1, automationtype::none,
     "backcolor of fractioncontrol",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setBackcolor(tocolor(a, 0)); return {}; }},
    {"Userresizeable", invokekind::get, 0x68030017, {}, 0, automationtype::boolean,
     "True means fraction control is resizable at runtime, False control can only be resized at designtime ",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Userresizeable(); }},
    {"Userresizeable", invokekind::let, 0x68030017, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "True means fraction control is resizable at runtime, False control can only be resized at designtime ",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setUserresizeable(tobool(a, 0)); return {}; }},
    {"Borderstyle", invokekind::get, 0x68030016, {}, 0, automationtype::borderstyle,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return qint32(c.Borderstyle()); }},
    {"Borderstyle", invokekind::let, 0x68030016, {{"value", automationtype::borderstyle, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setBorderstyle(fractioni::fracBorderstyle(tolong(a, 0))); return {}; }},
    {"Negforecolor", invokekind::get, 0x68030013, {}, 0, automationtype::olecolor,
     "Forecolor for negative fractions",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Negforecolor(); }},
    {"Negforecolor", invokekind::let, 0x68030013, {{"value", automationtype::olecolor, false}}, 1, automationtype::none,
     "Forecolor for negative fractions",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setNegforecolor(tocolor(a, 0)); return {}; }},
    {"Posforecolor", invokekind::get, 0x68030012, {}, 0, automationtype::olecolor,
     "Forecolor for positive fractions",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Posforecolor(); }},
    {"Posforecolor", invokekind::let, 0x68030012, {{"value", automationtype::olecolor, false}}, 1, automationtype::none,
     "Forecolor for positive fractions",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setPosforecolor(tocolor(a, 0)); return {}; }},
    {"changesign", invokekind::method, 0x60030039, {}, 0, automationtype::control,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return controlresult(c.changesign()); }},
    {"loadfraction", invokekind::method, 0x6003003a, {{"strarr", automationtype::stringarray, true}}, 1, automationtype::control,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return loadfractionbyreference(c, a); }},
    {"getsign", invokekind::method, 0x6003003e, {}, 0, automationtype::string,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.getsign(); }},
    {"Forcesign", invokekind::get, 0x68030011, {}, 0, automationtype::boolean,
     "Always shows a plus- or minussign for positive/neagative fractions",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Forcesign(); }},
    {"Forcesign", invokekind::let, 0x68030011, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "Always shows a plus- or minussign for positive/neagative fractions",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setForcesign(tobool(a, 0)); return {}; }},
    {"reduce", invokekind::method, 0x6003003f, {}, 0, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.reduce(); }},
    {"fractomixed", invokekind::method, 0x60030040, {}, 0, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.fractomixed(); }},
    {"expand", invokekind::method, 0x60030041, {{"lngexpander", automationtype::longint, false}}, 1, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.expand(tolong(a, 0)); }},
    {"mixedtofrac", invokekind::method, 0x60030042, {}, 0, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.mixedtofrac(); }},
    {"addfractions", invokekind::method, 0x60030044, {{"objfracs", automationtype::object, true}}, 1, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.addfractions(tocollection(a, 0)); }},
    {"invert", invokekind::method, 0x60030045, {}, 0, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.invert(); }},
    {"multiplyfractions", invokekind::method, 0x60030046, {{"objfracs", automationtype::object, true}}, 1, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.multiplyfractions(tocollection(a, 0)); }},
    {"dividefractions", invokekind::method, 0x60030047, {{"dividend", automationtype::control, true}, {"divisor", automationtype::control, true}}, 2, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.dividefractions(tocontrol(a, 0), tocontrol(a, 1)); }},
    {"fractodecimal", invokekind::method, 0x60030048, {{"noofdecimals", automationtype::longint, false}}, 1, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.fractodecimal(tolong(a, 0)); }},
    {"decimaltofrac", invokekind::method, 0x60030049, {}, 0, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.decimaltofrac(); }},
    {"fractopercent", invokekind::method, 0x6003004a, {{"noofdecimals", automationtype::longint, false}}, 1, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.fractopercent(tolong(a, 0)); }},
    {"percenttofrac", invokekind::method, 0x6003004b, {}, 0, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.percenttofrac(); }},
    {"clearfraction", invokekind::method, 0x6003004c, {}, 0, automationtype::control,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return controlresult(c.clearfraction()); }},
    {"subtractfractions", invokekind::method, 0x6003004d, {{"minuend", automationtype::control, true}, {"minutor", automationtype::control, true}}, 2, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.subtractfractions(tocontrol(a, 0), tocontrol(a, 1)); }},
    {"addtwofractions", invokekind::method, 0x6003004e, {{"frac1", automationtype::control, true}, {"frac2", automationtype::control, true}}, 2, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.addtwofractions(tocontrol(a, 0), tocontrol(a, 1)); }},
    {"multiplytwofractions", invokekind::method, 0x6003004f, {{"frac1", automationtype::control, true}, {"frac2", automationtype::control, true}}, 2, automationtype::stringarray,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.multiplytwofractions(tocontrol(a, 0), tocontrol(a, 1)); }},
    {"addintofraction", invokekind::method, 0x60030050, {{"resultfrac", automationtype::control, true}, {"addendfrac", automationtype::control, true}}, 2, automationtype::control,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return controlresult(c.addintofraction(tocontrol(a, 0), tocontrol(a, 1))); }},
    {"subtractintofraction", invokekind::method, 0x60030051, {{"resultfrac", automationtype::control, true}, {"minutorfrac", automationtype::control, true}}, 2, automationtype::control,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return controlresult(c.subtractintofraction(tocontrol(a, 0), tocontrol(a, 1))); }},
    {"divideintofraction", invokekind::method, 0x60030052, {{"resultfrac", automationtype::control, true}, {"divisorfrac", automationtype::control, true}}, 2, automationtype::control,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return controlresult(c.divideintofraction(tocontrol(a, 0), tocontrol(a, 1))); }},
    {"multiplyintofraction", invokekind::method, 0x60030053, {{"resultfrac", automationtype::control, true}, {"multiplierfrac", automationtype::control, false}}, 2, automationtype::control,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return controlresult(c.multiplyintofraction(tocontrol(a, 0), tocontrol(a, 1))); }},
    {"Wholepartbackcolor", invokekind::get, 0x68030010, {}, 0, automationtype::olecolor,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Wholepartbackcolor(); }},
    {"Wholepartbackcolor", invokekind::let, 0x68030010, {{"value", automationtype::olecolor, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setWholepartbackcolor(tocolor(a, 0)); return {}; }},
    {"Numeratorbackcolor", invokekind::get, 0x6803000f, {}, 0, automationtype::olecolor,
     "Backcolor of numeratorpart ",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Numeratorbackcolor(); }},
    {"Numeratorbackcolor", invokekind::let, 0x6803000f, {{"value", automationtype::olecolor, false}}, 1, automationtype::none,
     "Backcolor of numeratorpart ",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setNumeratorbackcolor(tocolor(a, 0)); return {}; }},
    {"Denominatorbackcolor", invokekind::get, 0x6803000e, {}, 0, automationtype::olecolor,
     "Backcolor of denominatorpart ",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Denominatorbackcolor(); }},
    {"Denominatorbackcolor", invokekind::let, 0x6803000e, {{"value", automationtype::olecolor, false}}, 1, automationtype::none,
     "Backcolor of denominatorpart ",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setDenominatorbackcolor(tocolor(a, 0)); return {}; }},
    {"Numerdenomgcd", invokekind::get, 0x6803000d, {}, 0, automationtype::longint,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return dispatchaccess::numerdenomgcd(c); }},
    {"Autoreplace", invokekind::get, 0x6803000c, {}, 0, automationtype::boolean,
     "True means conversion operations on fractions automatically replace content in fraction.",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Autoreplace(); }},
    {"Autoreplace", invokekind::let, 0x6803000c, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "True means conversion operations on fractions automatically replace content in fraction.",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setAutoreplace(tobool(a, 0)); return {}; }},
    {"Font", invokekind::get, 0x6803000b, {}, 0, automationtype::font,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return QVariant::fromValue(c.Font()); }},
    {"Font", invokekind::set, 0x6803000b, {{"value", automationtype::font, true}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setFont(tofont(a, 0, c.Font())); return {}; }},
    {"Refreshfraction", invokekind::method, 0x60030055, {}, 0, automationtype::none,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { c.Refreshfraction(); return {}; }},
    {"Container", invokekind::get, 0x6803000a, {}, 0, automationtype::object,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return dispatchaccess::container(c); }},
    {"Container", invokekind::set, 0x6803000a, {{"value", automationtype::object, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setContainer(toobject(a, 0)); return {}; }},
    {"hWnd", invokekind::get, 0x68030009, {}, 0, automationtype::longint,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.hWnd(); }},
    {"Picture", invokekind::get, 0x68030008, {}, 0, automationtype::picture,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return QVariant::fromValue(c.Picture()); }},
    {"Wholeallowedchars", invokekind::get, 0x68030007, {}, 0, automationtype::variant,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Wholeallowedchars(); }},
    {"Wholeallowedchars", invokekind::let, 0x68030007, {{"value", automationtype::variant, true}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setWholeallowedchars(tovariant(a, 0)); return {}; }},
    {"wholecharallowed", invokekind::method, 0x60030058, {{"testchar", automationtype::string, true}}, 1, automationtype::boolean,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { return c.wholecharallowed(tostring(a, 0)); }},
    {"Fracpartvisible", invokekind::get, 0x68030006, {}, 0, automationtype::boolean,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Fracpartvisible(); }},
    {"Fracpartvisible", invokekind::let, 0x68030006, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setFracpartvisible(tobool(a, 0)); return {}; }},
    {"WholepartLocked", invokekind::get, 0x68030005, {}, 0, automationtype::boolean,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.WholepartLocked(); }},
    {"WholepartLocked", invokekind::let, 0x68030005, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setWholepartLocked(tobool(a, 0)); return {}; }},
    {"NumeratorLocked", invokekind::get, 0x68030004, {}, 0, automationtype::boolean,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.NumeratorLocked(); }},
    {"NumeratorLocked", invokekind::let, 0x68030004, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setNumeratorLocked(tobool(a, 0)); return {}; }},
    {"DenominatorLocked", invokekind::get, 0x68030003, {}, 0, automationtype::boolean,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.DenominatorLocked(); }},
    {"DenominatorLocked", invokekind::let, 0x68030003, {{"value", automationtype::boolean, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setDenominatorLocked(tobool(a, 0)); return {}; }},
    {"FracType", invokekind::get, 0x68030002, {}, 0, automationtype::fractype,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return qint32(c.FracType()); }},
    {"FracType", invokekind::let, 0x68030002, {{"value", automationtype::fractype, false}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setFracType(fractioni::fractiontype(tolong(a, 0))); return {}; }},
    {"Numerallowedchars", invokekind::get, 0x68030001, {}, 0, automationtype::variant,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Numerallowedchars(); }},
    {"Numerallowedchars", invokekind::let, 0x68030001, {{"value", automationtype::variant, true}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setNumerallowedchars(tovariant(a, 0)); return {}; }},
    {"Denomallowedchars", invokekind::get, 0x68030000, {}, 0, automationtype::variant,
     "",
     [](fractioni &c, QVariantList &) -> QVariant { return c.Denomallowedchars(); }},
    {"Denomallowedchars", invokekind::let, 0x68030000, {{"value", automationtype::variant, true}}, 1, automationtype::none,
     "",
     [](fractioni &c, QVariantList &a) -> QVariant { c.setDenomallowedchars(tovariant(a, 0)); return {}; }},
};

const dispevent events[] = {
    {"fractionvaluechanged", 1,
     {{"oldsign", automationtype::string, true}, {"oldwhole", automationtype::string, true},
      {"oldnumer", automationtype::string, true}, {"olddenom", automationtype::string, true},
      {"newsign", automationtype::string, true}, {"newwhole", automationtype::string, true},
      {"newnumer", automationtype::string, true}, {"newdenom", automationtype::string, true}},
     8},
    {"wholepartclick", 2, {}, 0},
    {"denominatorclick", 3, {}, 0},
    {"numeratorclick", 4, {}, 0},
    {"separatorclick", 5, {}, 0},
    {"insidenotcontentclick", 6, {}, 0},
    {"MouseDown", 7,
     {{"Button", automationtype::integer, true}, {"Shift", automationtype::integer, true},
      {"X", automationtype::single, true}, {"Y", automationtype::single, true}},
     4},
};

bool hasdispid(qint32 dispid)
{
    for (const dispmember &member : members) {
        if (member.dispid == dispid)
            return true;
    }
    return false;
}

} // namespace

argumenterror::argumenterror(int number, const QString &detail)
    : automationerror(number, dispatchdescription(number))
    , m_detail(detail)
{
}

std::span<const dispmember> fractionimembers()
{
    return members;
}

std::span<const dispevent> fractionievents()
{
    return events;
}

const dispmember *finddispmember(qint32 dispid, invokekind kind)
{
    for (const dispmember &member : members) {
        if (member.dispid == dispid && member.kind == kind)
            return &member;
    }
    return nullptr;
}

const dispmember *finddispmember(QStringView name, invokekind kind)
{
    for (const dispmember &member : members) {
        if (member.kind == kind && name == QLatin1String(member.name))
            return &member;
    }
    return nullptr;
}

std::optional<qint32> dispidofname(QStringView name)
{
    for (const dispmember &member : members) {
        if (name.compare(QLatin1String(member.name), Qt::CaseInsensitive) == 0)
            return member.dispid;
    }
    for (const dispevent &event : events) {
        if (name.compare(QLatin1String(event.name), Qt::CaseInsensitive) == 0)
            return event.dispid;
    }
    return std::nullopt;
}

QString invokekindname(invokekind kind)
{
    switch (kind) {
    case invokekind::get:
        return QStringLiteral("get");
    case invokekind::let:
        return QStringLiteral("let");
    case invokekind::set:
        return QStringLiteral("set");
    case invokekind::method:
        return QStringLiteral("method");
    }
    return {};
}

std::optional<invokekind> invokekindfromname(QStringView name)
{
    for (invokekind kind : {invokekind::get, invokekind::let, invokekind::set, invokekind::method}) {
        if (name == invokekindname(kind))
            return kind;
    }
    return std::nullopt;
}

QString automationtypename(automationtype type)
{
    // In the order of automationtype.
    static const char *const names[] = {"",       "String",      "Boolean",      "Integer", "Long",
                                        "Single", "OLE_COLOR",   "fracBorderstyle", "fractiontype", "Font",
                                        "Picture", "Object",     "fractioni",    "String()", "Variant"};
    static_assert(std::size(names) == static_cast<std::size_t>(automationtype::variant) + 1);
    return QString::fromLatin1(names[static_cast<int>(type)]);
}

QVariant dispinvoke(fractioni *control, qint32 dispid, invokekind kind, QVariantList &args)
{
    if (!control)
        throw modfracglobal::automationerror(errors::objectnotset, dispatchdescription(errors::objectnotset));
    const dispmember *member = finddispmember(dispid, kind);
    if (!member) {
        // A property reached with a kind it lacks (a Let of a read-only property, a Let where a
        // Set is due) is an invalid assignment; anything else is not supported at all.
        const bool property = kind != invokekind::method && hasdispid(dispid)
                              && !finddispmember(dispid, invokekind::method);
        const int number = property ? errors::wrongarguments : errors::notsupported;
        throw modfracglobal::automationerror(number, dispatchdescription(number));
    }
    const QString name = QString::fromLatin1(member->name);
    if (args.size() > member->parametercount) {
        throw argumenterror(errors::wrongarguments,
                            QStringLiteral("%1 takes %2 argument(s), %3 given")
                                .arg(name)
                                .arg(member->parametercount)
                                .arg(args.size()));
    }
    if (args.size() < member->parametercount) {
        const dispparameter &missing = member->parameters[args.size()];
        throw argumenterror(errors::argumentnotoptional,
                            QStringLiteral("%1: argument %2 (%3) is missing")
                                .arg(name)
                                .arg(args.size() + 1)
                                .arg(QString::fromLatin1(missing.name)));
    }
    // The member records its error; the caller gets it raised, as automation raises it.
    const QPointer<fractioni> target(control);
    const automationcall scope;
    control->clearlasterror();
    try {
        QVariant result = member->call(*control, args);
        if (target && target->lasterrornumber() != 0)
            throw modfracglobal::automationerror(target->lasterrornumber(),
                                                 target->lasterrordescription().toStdString());
        return result;
    } catch (const badargument &bad) {
        const dispparameter &parameter = member->parameters[bad.index];
        throw argumenterror(bad.number, QStringLiteral("%1: argument %2 (%3) must be %4")
                                            .arg(name)
                                            .arg(bad.index + 1)
                                            .arg(QString::fromLatin1(parameter.name), bad.expected));
    }
}

QMetaObject::Connection connectevent(fractioni *control, qint32 dispid,
                                     std::function<void(const QVariantList &)> handler)
{
    if (!control)
        throw modfracglobal::automationerror(errors::objectnotset, dispatchdescription(errors::objectnotset));
    auto fire = [handler = std::move(handler)](QVariantList args) { handler(args); };
    switch (dispid) {
    case 1:
        return QObject::connect(control, &fractioni::fractionvaluechanged, control,
                                [fire](const QString &oldsign, const QString &oldwhole, const QString &oldnumer,
                                       const QString &olddenom, const QString &newsign, const QString &newwhole,
                                       const QString &newnumer, const QString &newdenom) {
                                    fire({oldsign, oldwhole, oldnumer, olddenom, newsign, newwhole, newnumer,
                                          newdenom});
                                });
    case 2:
        return QObject::connect(control, &fractioni::wholepartclick, control, [fire] { fire({}); });
    case 3:
        return QObject::connect(control, &fractioni::denominatorclick, control, [fire] { fire({}); });
    case 4:
        return QObject::connect(control, &fractioni::numeratorclick, control, [fire] { fire({}); });
    case 5:
        return QObject::connect(control, &fractioni::separatorclick, control, [fire] { fire({}); });
    case 6:
        return QObject::connect(control, &fractioni::insidenotcontentclick, control, [fire] { fire({}); });
    case 7:
        return QObject::connect(control, &fractioni::MouseDown, control,
                                [fire](qint16 button, qint16 shift, float x, float y) {
                                    fire({QVariant::fromValue(button), QVariant::fromValue(shift), x, y});
                                });
    }
    throw modfracglobal::automationerror(errors::notsupported, dispatchdescription(errors::notsupported));
}

} // namespace kelfractionint
