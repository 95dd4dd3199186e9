#pragma once

#include "fractioni_export.h"

#include "automationerror.h"

#include <QMetaObject>
#include <QString>
#include <QStringView>
#include <QVariant>
#include <QVariantList>

#include <functional>
#include <optional>
#include <span>

namespace kelfractionint {

class fractioni;

/*!
 * The automation surface of fractioni as a container binds to it: the members of the dispatch
 * interface `_fractioni` with their dispatch ids, kinds, parameters and help strings, the events
 * of `__fractioni`, and late-bound calls by dispatch id. The type library listing is generated
 * from the same table (typelibrary.h).
 */

/*! How a member is reached: read a property, assign it by value, assign it by reference, call. */
enum class invokekind { get, let, set, method };

/*! The automation types of the interface. */
enum class automationtype {
    none,        //!< no value (a property assignment, a method without result)
    string,      //!< String
    boolean,     //!< Boolean
    integer,     //!< Integer (16-bit)
    longint,     //!< Long (32-bit)
    single,      //!< Single
    olecolor,    //!< OLE_COLOR
    borderstyle, //!< fracBorderstyle
    fractype,    //!< fractiontype
    font,        //!< Font object
    picture,     //!< Picture object
    object,      //!< Object
    control,     //!< a fractioni
    stringarray, //!< array of String in the layout whole part, numerator, denominator
    variant,     //!< Variant
};

struct dispparameter
{
    const char *name;
    automationtype type;
    bool byreference;
};

struct dispmember
{
    const char *name;
    invokekind kind;
    qint32 dispid;
    dispparameter parameters[2];
    int parametercount;
    automationtype result;
    const char *helpstring; //!< "" where the member has none
    /*! Converts \a args and calls the member on \a control; by-reference arguments are written
     *  back into \a args. */
    QVariant (*call)(fractioni &control, QVariantList &args);

    std::span<const dispparameter> params() const
    {
        return {parameters, static_cast<std::size_t>(parametercount)};
    }
};

struct dispevent
{
    const char *name;
    qint32 dispid;
    dispparameter parameters[8];
    int parametercount;

    std::span<const dispparameter> params() const
    {
        return {parameters, static_cast<std::size_t>(parametercount)};
    }
};

/*!
 * An argument that a member cannot take, found before the member runs: 13 "Type mismatch", 6
 * "Overflow", 91 for a missing control, 449 "Argument not optional", 450 "Wrong number of
 * arguments or invalid property assignment". detail() names the member and the argument.
 */
class FRACTIONI_EXPORT argumenterror : public modfracglobal::automationerror
{
public:
    argumenterror(int number, const QString &detail);
    QString detail() const { return m_detail; }

private:
    QString m_detail;
};

/*!
 * While one lives, members of the controls leave their errors in the record only (no script
 * exception): the caller raises them itself, as dispinvoke does. Late-bound callers that reach
 * members by name (the script host) use it.
 */
class FRACTIONI_EXPORT automationcall
{
public:
    automationcall();
    ~automationcall();
    automationcall(const automationcall &) = delete;
    automationcall &operator=(const automationcall &) = delete;
};

/*! The members of `_fractioni` in the order of the interface (a Get and its Let or Set are two
 *  rows sharing one dispatch id). */
FRACTIONI_EXPORT std::span<const dispmember> fractionimembers();
/*! The events of `__fractioni`, dispatch ids 1 to 7. */
FRACTIONI_EXPORT std::span<const dispevent> fractionievents();

/*! The row of \a dispid with \a kind, or nullptr. */
FRACTIONI_EXPORT const dispmember *finddispmember(qint32 dispid, invokekind kind);
/*! The row of the member named \a name (exact spelling) with \a kind, or nullptr. */
FRACTIONI_EXPORT const dispmember *finddispmember(QStringView name, invokekind kind);
/*! The dispatch id of a member or event name, matched without regard to case as automation
 *  clients do; nothing for an unknown name. */
FRACTIONI_EXPORT std::optional<qint32> dispidofname(QStringView name);

/*! "get", "let", "set", "method". */
FRACTIONI_EXPORT QString invokekindname(invokekind kind);
FRACTIONI_EXPORT std::optional<invokekind> invokekindfromname(QStringView name);
/*! The type's name as the interface spells it ("String", "Long", "fractioni", ...). */
FRACTIONI_EXPORT QString automationtypename(automationtype type);

/*!
 * Calls the member \a dispid of \a control the way \a kind says, with \a args (a Get takes none,
 * a Let or Set one). Arguments are converted as automation converts them (numbers and numeric
 * text to numbers, numbers to text, controls from QObject pointers); by-reference arguments are
 * written back into \a args. The result is invalid for members without one; controls come back as
 * QObject pointers, records as QStringList.
 *
 * Raises automationerror 438 for an unknown id or a method called as a property, 450 for a
 * property reached with a kind it lacks or too many arguments, argumenterror for a missing or
 * unconvertible argument, and whatever the member itself raises; 91 for a null \a control.
 */
FRACTIONI_EXPORT QVariant dispinvoke(fractioni *control, qint32 dispid, invokekind kind, QVariantList &args);

/*! Connects \a handler to the event \a dispid of \a control; the handler receives the event's
 *  arguments as copies. Raises 438 for an id that is no event. */
FRACTIONI_EXPORT QMetaObject::Connection connectevent(fractioni *control, qint32 dispid,
                                                      std::function<void(const QVariantList &)> handler);

} // namespace kelfractionint
