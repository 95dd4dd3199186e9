#pragma once

#include "fractionabout_export.h"

#include <QList>
#include <QString>

namespace kelfractionint {

/*!
 * The component's string table: its resource strings by number. 1 is the component's name,
 * 4 the maker's contact line, 5 and 6 the separators "," and ".", 102 and 104 the two paragraphs
 * of the About box, 200 to 202 the texts of the messages and errors the control reports.
 */
namespace resstrings {

/*! The string numbered \a id. Raises error 326 when the table has no such string. */
FRACTIONABOUT_EXPORT QString loadresstring(int id);
/*! The numbers of the table, in ascending order. */
FRACTIONABOUT_EXPORT QList<int> ids();

} // namespace resstrings
} // namespace kelfractionint
