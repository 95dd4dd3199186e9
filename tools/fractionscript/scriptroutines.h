#pragma once

#include <QJSValue>
#include <QString>
#include <QStringList>

namespace kelfractionint {

class scripthost;

/*!
 * The engine's routines for scripts, under their own names: records are arrays of three strings
 * (an unallocated record is the empty array), lists of records arrays of records, integer lists
 * arrays of numbers. Routines that change a list they are given change the script's array too.
 * Wrong arguments throw a TypeError; the host number rules throw their automation errors.
 */
namespace scriptroutines {

QStringList names();
QJSValue call(scripthost &host, const QString &name, const QJSValue &args);

} // namespace scriptroutines
} // namespace kelfractionint
