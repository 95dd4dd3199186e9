#pragma once

#include "fractionabout_export.h"

#include <QString>
#include <QStringList>

namespace kelfractionint::sysinfo {

/*!
 * Starting the system's information tool, and the registry readings it rests on on Windows.
 */

/*! The message shown when no information tool can be started. */
FRACTIONABOUT_EXPORT QString unavailablemessage();

/*! A double-word registry value as text: "&h" followed by the hexadecimal digits of each byte,
 *  highest byte first, each byte written without a leading zero (bytes 1 and 10 give "&h1A"). */
FRACTIONABOUT_EXPORT QString dwordhextext(quint32 value);
/*! The decimal reading of dwordhextext(\a value), as the host reads "&h" text as a number: up to
 *  four digits' worth (FFFF) as a 16-bit signed value, beyond that as a 32-bit signed value. */
FRACTIONABOUT_EXPORT QString dwordtotext(quint32 value);

/*! Programs tried, in this order, on systems without the Windows information tool. */
FRACTIONABOUT_EXPORT QStringList candidateprograms();
/*! The information tool's full path: on Windows from the registry, elsewhere the first candidate
 *  found on the PATH; empty when there is none. */
FRACTIONABOUT_EXPORT QString findprogram();
/*! Starts the information tool (without a shell); when that fails, shows unavailablemessage()
 *  through the message sink. Returns whether a program was started. */
FRACTIONABOUT_EXPORT bool startsysinfo();

} // namespace kelfractionint::sysinfo
