#pragma once

#include "modfracglobal_export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace modfracglobal {

/*!
 * The host's number rules: how text and numbers convert into each other. The decimal and grouping
 * separators follow the system locale by default and can be set at run time. The conversions
 * raise automationerror (13 "Type mismatch" for text that is no number, 6 "Overflow" beyond range,
 * 5 for a negative count of decimals); text is UTF-8.
 */
struct numberlocale
{
    std::string decimal = ".";
    std::string grouping = ",";
};

/*! The separators of the system locale (LC_NUMERIC of the environment). */
MODFRACGLOBAL_EXPORT numberlocale systemnumberlocale();
/*! The separators in force. */
MODFRACGLOBAL_EXPORT numberlocale currentnumberlocale();
/*! Sets the separators in force. An empty decimal separator means "."; a grouping separator
 *  equal to the decimal one is dropped. */
MODFRACGLOBAL_EXPORT void setnumberlocale(const numberlocale &locale);

/*! Text to a 32-bit integer. A number is: blanks (spaces, tabs) around, one leading "+" or "-",
 *  digits with grouping separators among them (ignored; at least one digit first), at most one
 *  decimal separator followed by digits, and an exponent ("E" or "e", a sign, digits). A decimal
 *  text is rounded half to even. Raises 13 for anything else, 6 beyond the 32-bit range. */
MODFRACGLOBAL_EXPORT std::int32_t texttolong(std::string_view text);
/*! Text to a double by the same rules. Raises 13, or 6 beyond the range of a double (a value
 *  too small for a double reads as 0). */
MODFRACGLOBAL_EXPORT double texttodouble(std::string_view text);
/*! A double to a 32-bit integer, rounded half to even. Raises 6 beyond the 32-bit range (and
 *  for a value that is no number). */
MODFRACGLOBAL_EXPORT std::int32_t roundtolong(double value);
/*! The host's text of a double: shortest form with at most 15 significant digits, the locale's
 *  decimal separator, no trailing zeros. */
MODFRACGLOBAL_EXPORT std::string doubletotext(double value);
/*! \a value rounded to \a decimals places, a tie going to the even neighbour. Raises 5 for a
 *  negative count. */
MODFRACGLOBAL_EXPORT double roundtodecimals(double value, std::int32_t decimals);
/*! True when \a text reads as a number by the rules of texttodouble. */
MODFRACGLOBAL_EXPORT bool isnumerictext(std::string_view text);

} // namespace modfracglobal
