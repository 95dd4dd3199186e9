#include "scripthost.h"

#include "scriptpropertybag.h"
#include "scriptroutines.h"

#include "fractioni.h"
#include "fractionidispatch.h"
#include "messageboxsink.h"
#include "typelibrary.h"

#include <QCoreApplication>
#include <QFont>
#include <QJSValueIterator>
#include <QPixmap>
#include <QTextStream>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace kelfractionint {

namespace {

// Arrays a script passes hold at most this many elements; a collection's reading stops at its
// first item that is no control, so the controls placed bound it.
constexpr int maxarrayitems = 1 << 20;
// Event handlers that assign the value may raise events within each other this deep.
constexpr int maxeventdepth = 64;
// Values a script passes nest at most this deep (a font in an array in a collection needs three).
constexpr int maxvaluedepth = 64;

// The script side of the host: controls are proxies that route every member of the interface
// through the dispatch table by its dispatch id, so that scripts bind exactly as containers do.
// Assigning a name the control lacks throws 438 instead of making a script-only property.
const char *prelude = R"JS(
(function (host) {
    'use strict';
    const global = this;
    const members = host.membertable();
    const events = host.eventnames().concat(['propertychanged']);
    // A control's proxy answers this key with its control: finding a control is one lookup,
    // whatever the number of controls (a WeakMap of proxies is searched entry by entry).
    const targetkey = Symbol('control');
    // Event handlers that change the value raise events again; past this depth the delivery
    // stops and the outermost call throws 28 once.
    const maxdepth = host.eventdepthlimit();
    let depth = 0;
    let overflowed = false;

    function istarget(value) {
        return value !== null && typeof value === 'object' && value[targetkey] !== undefined;
    }

    function count(value) {
        let n;
        try {
            n = value.Count;
        } catch (e) {
            if (e !== null && typeof e === 'object' && e.number !== undefined)
                throw e;
            host.fail(13, 'reading the collection\'s Count failed: ' + e);
        }
        if (!Number.isInteger(n) || n < 0)
            host.fail(13, 'a collection\'s Count must be a whole number, not ' + String(n));
        return n;
    }

    function unwrap(value) {
        if (typeof value === 'symbol')
            host.fail(13, 'a Symbol is no value');
        if (value === null || typeof value !== 'object')
            return value;
        if (istarget(value))
            return value[targetkey];
        if (Array.isArray(value)) {
            if (value.length > host.maxitems())
                host.fail(6, 'an array of ' + value.length + ' elements is more than ' + host.maxitems());
            const items = new Array(value.length);
            for (let i = 0; i < value.length; ++i)
                items[i] = unwrap(value[i]);
            return items;
        }
        if ('Count' in value) {
            // A collection: 1-based Item(i) as in Basic, or items by 0-based index. Count is read
            // once, as an automation client reads it. Reading stops at the first item that is no
            // control, which the operation then refuses.
            const n = count(value);
            const items = [];
            for (let i = 0; i < n; ++i) {
                let item;
                try {
                    item = typeof value.Item === 'function' ? value.Item(i + 1) : value[i];
                } catch (e) {
                    if (e !== null && typeof e === 'object' && e.number !== undefined)
                        throw e;
                    host.fail(13, 'reading item ' + (i + 1) + ' of the collection failed: ' + e);
                }
                items.push(unwrap(item));
                if (!istarget(item))
                    break;
            }
            return items;
        }
        return value;
    }

    // A stopped recursion of handlers is the outermost call's error, once; a call from the top
    // of the script starts without one, whatever an earlier call left behind.
    function settle(outcome) {
        if (outcome.error !== undefined)
            throw outcome.error;
        if (overflowed && depth === 0) {
            overflowed = false;
            host.fail(28, 'event handlers changed the value ' + maxdepth + ' times within each other');
        }
        return outcome.value;
    }

    function outermost(run) {
        if (depth === 0)
            overflowed = false;
        return settle(run());
    }

    function call(target, dispid, kind, args) {
        return outermost(() => {
            const outcome = host.invoke(target, dispid, kind, args.map(unwrap));
            for (const [index, value] of outcome.refs) {
                const original = args[index];
                if (Array.isArray(original) && Array.isArray(value)) {
                    // Element by element: spreading a long array would overflow the engine's stack.
                    original.length = value.length;
                    for (let i = 0; i < value.length; ++i)
                        original[i] = value[i];
                }
            }
            return outcome;
        });
    }

    // A signal whose handlers run within the depth bound.
    function boundedsignal(signal) {
        const wrappers = new Map();
        return {
            connect(handler) {
                const wrapper = function (...args) {
                    if (overflowed)
                        return;
                    if (depth >= maxdepth) {
                        overflowed = true;
                        return;
                    }
                    ++depth;
                    try {
                        handler.apply(this, args);
                    } finally {
                        --depth;
                    }
                };
                wrappers.set(handler, wrapper);
                signal.connect(wrapper);
            },
            disconnect(handler) {
                const wrapper = wrappers.get(handler);
                if (wrapper !== undefined) {
                    wrappers.delete(handler);
                    signal.disconnect(wrapper);
                }
            }
        };
    }

    function makecontrol(target) {
        const methods = {};
        const signals = {};
        const proxy = new Proxy({}, {
            get(unused, name) {
                if (name === targetkey)
                    return target;
                if (typeof name !== 'string')
                    return undefined;
                const member = Object.prototype.hasOwnProperty.call(members, name) ? members[name] : undefined;
                if (member) {
                    if (member.method !== undefined) {
                        if (!methods[name])
                            methods[name] = function (...args) { return call(target, member.method, 'method', args); };
                        return methods[name];
                    }
                    return call(target, member.get, 'get', []);
                }
                if (events.includes(name)) {
                    if (!signals[name])
                        signals[name] = boundedsignal(target[name]);
                    return signals[name];
                }
                switch (name) {
                case 'WriteProperties':
                case 'ReadProperties':
                    return bag => outermost(() => host.bagcall(target, name, unwrap(bag)));
                case 'objectName': return target.objectName;
                // Additions of the control, reached by name only: they have no dispatch ids.
                case 'approximate':
                case 'fractiontext':
                case 'loadfractiontext':
                    if (!methods[name])
                        methods[name] = (...args) => outermost(() => host.invokebyname(target, name, args));
                    return methods[name];
                case 'toString': return () => '[fractioni ' + target.objectName + ']';
                }
                return undefined;
            },
            set(unused, name, value) {
                const member = Object.prototype.hasOwnProperty.call(members, name) ? members[name] : undefined;
                if (!member || member.method !== undefined)
                    host.raise(438, String(name));
                const kind = member.let !== undefined ? 'let' : member.set !== undefined ? 'set' : 'let';
                call(target, member.get, kind, [value]);
                return true;
            },
            has(unused, name) {
                return Object.prototype.hasOwnProperty.call(members, name) || events.includes(name);
            },
            deleteProperty(unused, name) {
                host.raise(438, String(name));
                return false;
            },
            defineProperty(unused, name) {
                // A property defined on a control would hide its member from later reads.
                host.raise(438, String(name));
                return false;
            }
        });
        return proxy;
    }

    function show(value) {
        if (typeof value === 'string')
            return value;
        if (Array.isArray(value))
            return JSON.stringify(value);
        return String(value);
    }

    global.createfraction = function (bag) {
        return outermost(() => ({value: host.createfraction(bag === undefined ? null : unwrap(bag))}));
    };
    global.createpropertybag = function () { return host.createpropertybag(); };
    global.messages = function () { return host.messages(); };
    global.print = function (...values) { host.print(values.map(show).join(' ')); };
    global.savepicture = function (control, file) { return host.savepicture(unwrap(control), file); };
    global.dispinvoke = function (control, dispid, kind, ...args) {
        return call(unwrap(control), dispid, kind, args);
    };
    global.typelibrary = function () { return host.typelibrary(); };
    const routines = {};
    for (const name of host.routine('', []))
        routines[name] = function (...args) { return host.routine(name, args); };
    global.modfracglobal = Object.freeze(routines);
    return makecontrol;
})
)JS";

} // namespace

scripthost::scripthost(QObject *parent)
    : QObject(parent)
    , m_form(std::make_unique<QWidget>())
    , m_capture(std::make_unique<messagecapture>())
    , m_output([](const QString &line) {
        QTextStream out(stdout);
        out << line << '\n';
    })
{
    m_form->setObjectName(QStringLiteral("form"));
    m_form->setWindowTitle(QStringLiteral("fractionscript"));
    m_form->resize(320, 240);
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    QJSValue install = m_engine.evaluate(QString::fromUtf8(prelude), QStringLiteral("<prelude>"));
    m_makecontrol = install.call({m_engine.newQObject(this)});
    Q_ASSERT(m_makecontrol.isCallable());
}

scripthost::~scripthost()
{
    // Events posted to the controls are delivered first: each object destroyed with events
    // pending searches the whole queue for them.
    QCoreApplication::sendPostedEvents();
    m_scriptcontrols.clear();
    m_makecontrol = QJSValue();
    m_form.reset();
}

QJSValue scripthost::evaluate(const QString &code, const QString &filename)
{
    return m_engine.evaluate(code, filename);
}

namespace {

// Where a script error happened: the first frame of its stack that lies in the script rather
// than in the host's prelude, as "file:line".
QString scriptlocation(const QJSValue &error)
{
    const QStringList frames = error.property(QStringLiteral("stack")).toString().split(QLatin1Char('\n'));
    for (const QString &frame : frames) {
        const QString location = frame.mid(frame.lastIndexOf(QLatin1Char('@')) + 1);
        const qsizetype colon = location.lastIndexOf(QLatin1Char(':'));
        if (location.isEmpty() || colon < 0 || location.contains(QLatin1String("%3Cprelude%3E")))
            continue;
        const QUrl url(location.left(colon));
        const QString file = url.isLocalFile() ? url.toLocalFile() : QUrl::fromPercentEncoding(url.path().toUtf8());
        return QStringLiteral("%1:%2").arg(file, location.mid(colon + 1));
    }
    return {};
}

} // namespace

QString scripthost::errortext(const QJSValue &error)
{
    const QJSValue number = error.property(QStringLiteral("number"));
    const QString name = error.property(QStringLiteral("name")).toString();
    if (number.isNumber() && name != QLatin1String("TypeError")) {
        return QStringLiteral("error %1: %2")
            .arg(number.toInt())
            .arg(error.property(QStringLiteral("description")).toString());
    }
    const QString location = scriptlocation(error);
    return location.isEmpty() ? error.toString() : QStringLiteral("%1 (%2)").arg(error.toString(), location);
}

void scripthost::setoutput(std::function<void(const QString &)> output)
{
    m_output = std::move(output);
}

QList<fractioni *> scripthost::controls() const
{
    QList<fractioni *> list;
    for (const auto &control : m_controls) {
        if (control)
            list.append(control);
    }
    return list;
}

QJSValue scripthost::automationerrorobject(int number, const QString &description, const QString &detail)
{
    QJSValue error = m_engine.newErrorObject(detail.isEmpty() ? QJSValue::GenericError : QJSValue::TypeError,
                                             detail.isEmpty() ? description : detail);
    error.setProperty(QStringLiteral("number"), number);
    error.setProperty(QStringLiteral("description"), description);
    return error;
}

void scripthost::throwautomation(int number, const QString &description, const QString &detail)
{
    m_engine.throwError(automationerrorobject(number, description, detail));
}

void scripthost::fail(int number, const QString &detail)
{
    throwautomation(number, QString::fromStdString(modfracglobal::automationerror::standarddescription(number)),
                    detail);
}

int scripthost::maxitems() const
{
    return maxarrayitems;
}

int scripthost::eventdepthlimit() const
{
    return maxeventdepth;
}

void scripthost::raise(int number, const QString &name)
{
    const argumenterror error(number, name);
    throwautomation(number, QString::fromStdString(error.description()),
                    QStringLiteral("fractioni has no member %1 to assign").arg(name));
}

QJSValue scripthost::scriptcontrol(fractioni *control)
{
    if (!control)
        return QJSValue(QJSValue::NullValue);
    auto it = m_scriptcontrols.find(control);
    if (it != m_scriptcontrols.end())
        return *it;
    // The host keeps every control; the script engine must never collect one.
    QJSEngine::setObjectOwnership(control, QJSEngine::CppOwnership);
    QJSValue proxy = m_makecontrol.call({m_engine.newQObject(control)});
    m_scriptcontrols.insert(control, proxy);
    // The control itself is the connection's context: thousands of connections to the host would
    // make each control's destruction search them all.
    connect(control, &QObject::destroyed, control, [this, control] { m_scriptcontrols.remove(control); });
    return proxy;
}

fractioni *scripthost::controlof(const QJSValue &value, const char *function)
{
    if (auto *control = qobject_cast<fractioni *>(value.toQObject()))
        return control;
    if (value.isNull() || value.isUndefined()) {
        throwautomation(91, QStringLiteral("Object variable or With block variable not set"));
    } else {
        throwautomation(13, QStringLiteral("Type mismatch"),
                        QStringLiteral("%1: %2 is not a fractioni").arg(QLatin1String(function), value.toString()));
    }
    return nullptr;
}

QJSValue scripthost::toscript(const QVariant &value)
{
    if (!value.isValid())
        return QJSValue(QJSValue::UndefinedValue);
    if (value.metaType().flags() & QMetaType::PointerToQObject) {
        QObject *object = value.value<QObject *>();
        if (auto *control = qobject_cast<fractioni *>(object))
            return scriptcontrol(control);
        return object ? m_engine.newQObject(object) : QJSValue(QJSValue::NullValue);
    }
    switch (value.metaType().id()) {
    case QMetaType::QFont: {
        const QFont font = value.value<QFont>();
        QJSValue object = m_engine.newObject();
        object.setProperty(QStringLiteral("Name"), font.family());
        object.setProperty(QStringLiteral("Size"), font.pointSizeF());
        object.setProperty(QStringLiteral("Bold"), font.bold());
        object.setProperty(QStringLiteral("Italic"), font.italic());
        object.setProperty(QStringLiteral("Underline"), font.underline());
        object.setProperty(QStringLiteral("Strikethrough"), font.strikeOut());
        object.setProperty(QStringLiteral("Weight"), int(font.weight()));
        return object;
    }
    case QMetaType::QPixmap: {
        const QPixmap picture = value.value<QPixmap>();
        QJSValue object = m_engine.newObject();
        object.setProperty(QStringLiteral("Width"), picture.width());
        object.setProperty(QStringLiteral("Height"), picture.height());
        object.setProperty(QStringLiteral("Type"), picture.isNull() ? 0 : 1);
        return object;
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        const QVariantList items = value.toList();
        QJSValue array = m_engine.newArray(quint32(items.size()));
        for (qsizetype i = 0; i < items.size(); ++i)
            array.setProperty(quint32(i), toscript(items.at(i)));
        return array;
    }
    case QMetaType::UInt:
        return QJSValue(double(value.toUInt()));
    default:
        return m_engine.toScriptValue(value);
    }
}

QVariant scripthost::fromscript(const QJSValue &value, int depth)
{
    // A cyclic or very deep value would take the host's stack with it.
    if (depth > maxvaluedepth) {
        fail(28, QStringLiteral("a value nested more than %1 levels deep (or cyclic)").arg(maxvaluedepth));
        return {};
    }
    if (value.isUndefined())
        return {};
    if (value.isNull())
        return QVariant::fromValue<QObject *>(nullptr);
    if (value.isQObject())
        return QVariant::fromValue(value.toQObject());
    if (value.isBool())
        return value.toBool();
    if (value.isNumber())
        return value.toNumber();
    if (value.isString())
        return value.toString();
    if (!value.isObject()) {
        // What is left is a Symbol, which no automation value stands for (and which Qt cannot
        // convert).
        fail(13, QStringLiteral("a Symbol is no value"));
        return {};
    }
    if (value.isArray()) {
        // The length is checked before any element is read: a sparse array may claim 2^32 - 1.
        const double length = value.property(QStringLiteral("length")).toNumber();
        if (!(length <= maxarrayitems)) {
            fail(6, QStringLiteral("an array of %1 elements is more than %2").arg(length).arg(maxarrayitems));
            return {};
        }
        QVariantList items;
        items.reserve(qsizetype(length));
        for (quint32 i = 0; i < quint32(length) && !m_engine.hasError(); ++i)
            items.append(fromscript(value.property(i), depth + 1));
        return items;
    }
    if (value.isCallable() || value.isDate() || value.isRegExp() || value.isError())
        return value.toVariant();
    // A plain object (a font, for instance): its own properties, each converted the same way.
    QVariantMap properties;
    QJSValueIterator it(value);
    while (it.hasNext() && !m_engine.hasError()) {
        it.next();
        properties.insert(it.name(), fromscript(it.value(), depth + 1));
    }
    return properties;
}

QJSValue scripthost::invoke(const QJSValue &control, const QJSValue &dispid, const QJSValue &kind,
                            const QJSValue &args)
{
    auto *target = qobject_cast<fractioni *>(control.toQObject());
    if (!target && !control.isNull() && !control.isUndefined()) {
        throwautomation(13, QStringLiteral("Type mismatch"),
                        QStringLiteral("dispinvoke: %1 is not a fractioni").arg(control.toString()));
        return {};
    }
    const std::optional<invokekind> how = invokekindfromname(kind.toString());
    if (!how) {
        throwautomation(5, QStringLiteral("Invalid procedure call or argument"),
                        QStringLiteral("dispinvoke: the kind must be \"get\", \"let\", \"set\" or \"method\", not \"%1\"")
                            .arg(kind.toString()));
        return {};
    }
    if (!dispid.isNumber() || dispid.toNumber() != double(dispid.toInt())) {
        throwautomation(438, QStringLiteral("Object doesn't support this property or method"),
                        QStringLiteral("dispinvoke: %1 is no dispatch id").arg(dispid.toString()));
        return {};
    }
    QVariantList arguments = fromscript(args).toList();
    if (m_engine.hasError())
        return {};
    // The by-reference arguments as the member left them, for the script to write back.
    auto outcomewith = [&](const QVariant &result) {
        QJSValue outcome = m_engine.newObject();
        outcome.setProperty(QStringLiteral("value"), toscript(result));
        QJSValue refs = m_engine.newArray();
        quint32 count = 0;
        if (const dispmember *member = finddispmember(dispid.toInt(), *how)) {
            for (qsizetype i = 0; i < member->parametercount && i < arguments.size(); ++i) {
                if (!member->parameters[i].byreference)
                    continue;
                QJSValue pair = m_engine.newArray(2);
                pair.setProperty(0, int(i));
                pair.setProperty(1, toscript(arguments.at(i)));
                refs.setProperty(count++, pair);
            }
        }
        outcome.setProperty(QStringLiteral("refs"), refs);
        return outcome;
    };
    try {
        return outcomewith(dispinvoke(target, dispid.toInt(), *how, arguments));
    } catch (const argumenterror &error) {
        // A missing control reads as the automation error it is; other bad arguments as TypeErrors.
        if (error.number() == 91)
            throwautomation(error.number(), QString::fromStdString(error.description()));
        else
            throwautomation(error.number(), QString::fromStdString(error.description()), error.detail());
    } catch (const modfracglobal::automationerror &error) {
        // The member ran: what it wrote into by-reference arguments reaches the script before
        // the error does.
        QJSValue outcome = outcomewith({});
        outcome.setProperty(QStringLiteral("error"),
                            automationerrorobject(error.number(), QString::fromStdString(error.description())));
        return outcome;
    } catch (const std::exception &error) {
        throwautomation(51, QStringLiteral("Internal error"), QString::fromLocal8Bit(error.what()));
    }
    return {};
}

void scripthost::placecontrol(fractioni *control)
{
    // New controls go below the ones already on the form (kept as a running bottom: measuring
    // every child on each creation would make placing n controls cost n squared).
    control->move(8, m_nexttop);
    m_nexttop = control->geometry().bottom() + 9;
    control->setObjectName(QStringLiteral("fractioni%1").arg(++m_created));
    control->show();
    m_controls.append(control);
}

QJSValue scripthost::createfraction(const QJSValue &bag)
{
    const propertybag *source = nullptr;
    if (!bag.isNull() && !bag.isUndefined()) {
        auto *scriptbag = qobject_cast<scriptpropertybag *>(bag.toQObject());
        if (!scriptbag) {
            throwautomation(13, QStringLiteral("Type mismatch"),
                            QStringLiteral("createfraction: %1 is not a property bag").arg(bag.toString()));
            return {};
        }
        source = &scriptbag->bag();
    }
    auto *control = source ? new fractioni(*source, m_form.get()) : new fractioni(m_form.get());
    placecontrol(control);
    return scriptcontrol(control);
}

QJSValue scripthost::createpropertybag()
{
    auto *bag = new scriptpropertybag(this);
    return m_engine.newQObject(bag);
}

QStringList scripthost::messages()
{
    return m_capture->take();
}

void scripthost::print(const QString &line)
{
    m_output(line);
}

bool scripthost::savepicture(const QJSValue &control, const QJSValue &file)
{
    fractioni *target = controlof(control, "savepicture");
    if (!target)
        return false;
    if (!file.isString() || file.toString().isEmpty()) {
        throwautomation(13, QStringLiteral("Type mismatch"), QStringLiteral("savepicture: the file name must be a text"));
        return false;
    }
    const QPixmap picture = target->Picture();
    if (picture.isNull() || !picture.save(file.toString())) {
        throwautomation(75, QStringLiteral("Path/File access error"),
                        QStringLiteral("savepicture: cannot write %1").arg(file.toString()));
        return false;
    }
    return true;
}

QString scripthost::typelibrary() const
{
    return typelibrarytext();
}

QJSValue scripthost::membertable()
{
    QJSValue table = m_engine.newObject();
    for (const dispmember &member : fractionimembers()) {
        const QString name = QString::fromLatin1(member.name);
        QJSValue entry = table.property(name);
        if (!entry.isObject()) {
            entry = m_engine.newObject();
            table.setProperty(name, entry);
        }
        entry.setProperty(invokekindname(member.kind), member.dispid);
    }
    return table;
}

QStringList scripthost::eventnames() const
{
    QStringList names;
    for (const dispevent &event : fractionievents())
        names << QString::fromLatin1(event.name);
    return names;
}

QJSValue scripthost::bagcall(const QJSValue &control, const QString &name, const QJSValue &bag)
{
    const QByteArray function = name.toLatin1();
    auto [target, source] = controlandbag(control, bag, function.constData());
    if (!target)
        return {};
    return settled(target, [&] {
        if (name == QLatin1String("ReadProperties"))
            target->ReadProperties(source->bag());
        else
            target->WriteProperties(source->bag());
        return QVariant();
    });
}

QJSValue scripthost::invokebyname(const QJSValue &control, const QString &name, const QJSValue &args)
{
    fractioni *target = controlof(control, name.toLatin1().constData());
    if (!target)
        return {};
    // The members without dispatch ids, with the engine's own conversions of their arguments.
    const int given = args.property(QStringLiteral("length")).toInt();
    const int wanted = name == QLatin1String("fractiontext") ? 0 : 1;
    if (given != wanted) {
        throwautomation(450, QStringLiteral("Wrong number of arguments or invalid property assignment"),
                        QStringLiteral("%1 takes %2 argument(s), %3 given").arg(name).arg(wanted).arg(given));
        return {};
    }
    const QJSValue argument = args.property(0);
    // What is neither a primitive nor an object is a Symbol, which nothing converts.
    if (!argument.isUndefined() && !argument.isNull() && !argument.isBool() && !argument.isNumber()
        && !argument.isString() && !argument.isObject()) {
        fail(13, QStringLiteral("a Symbol is no value"));
        return {};
    }
    const qint32 number = name == QLatin1String("approximate") ? argument.toInt() : 0;
    const QString text = name == QLatin1String("loadfractiontext") ? argument.toString() : QString();
    if (m_engine.hasError())
        return {};
    return settled(target, [&]() -> QVariant {
        if (name == QLatin1String("approximate"))
            return target->approximate(number);
        if (name == QLatin1String("loadfractiontext"))
            return target->loadfractiontext(text);
        return target->fractiontext();
    });
}

QJSValue scripthost::settled(fractioni *target, const std::function<QVariant()> &run)
{
    const QPointer<fractioni> alive(target);
    const automationcall scope;
    target->clearlasterror();
    const QVariant result = run();
    QJSValue outcome = m_engine.newObject();
    outcome.setProperty(QStringLiteral("value"), toscript(result));
    if (alive && alive->lasterrornumber() != 0) {
        outcome.setProperty(QStringLiteral("error"),
                            automationerrorobject(alive->lasterrornumber(), alive->lasterrordescription()));
    }
    return outcome;
}

std::pair<fractioni *, scriptpropertybag *> scripthost::controlandbag(const QJSValue &control, const QJSValue &bag,
                                                                      const char *function)
{
    fractioni *target = controlof(control, function);
    if (!target)
        return {};
    auto *source = qobject_cast<scriptpropertybag *>(bag.toQObject());
    if (!source) {
        throwautomation(13, QStringLiteral("Type mismatch"),
                        QStringLiteral("%1: a property bag is needed").arg(QLatin1String(function)));
        return {};
    }
    return {target, source};
}

QJSValue scripthost::routine(const QString &name, const QJSValue &args)
{
    if (name.isEmpty())
        return m_engine.toScriptValue(scriptroutines::names());
    return scriptroutines::call(*this, name, args);
}

} // namespace kelfractionint
