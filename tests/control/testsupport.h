#pragma once

#include "ambient.h"
#include "fractioni.h"
#include "hostnumbers.h"

#include <QLocale>
#include <QSignalSpy>
#include <QStringList>

// Shared set-up of the control's tests: a pinned locale, and the events of a spy as rows of
// eight texts.
namespace testsupport {

inline void pinlocale(const char *decimal = ".", const char *grouping = ",")
{
    QLocale::setDefault(QLocale::c());
    modfracglobal::setnumberlocale({decimal, grouping});
}

inline QList<QStringList> events(const QSignalSpy &spy)
{
    QList<QStringList> rows;
    for (const QList<QVariant> &emission : spy) {
        QStringList row;
        for (const QVariant &argument : emission)
            row.append(argument.toString());
        rows.append(row);
    }
    return rows;
}

inline QStringList value(const kelfractionint::fractioni &control)
{
    return {control.Wholepartvalue(), control.Numeratorvalue(), control.Denominatorvalue()};
}

// Puts every control into design mode while alive (a form designer's canvas).
struct designtime
{
    designtime() { kelfractionint::ambient::setdefaultdesignmode(true); }
    ~designtime() { kelfractionint::ambient::setdefaultdesignmode(false); }
};

} // namespace testsupport
