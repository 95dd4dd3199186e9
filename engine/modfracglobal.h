#pragma once

#include "automationerror.h"
#include "hostnumbers.h"
#include "messagesink.h"
#include "modfracglobal_export.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/*!
 * The fraction engine: exact arithmetic on fractions held as text. No routine lets an error
 * escape: each reports the error's description through the message sink and returns the result
 * it holds at that moment (0, the empty text, or an unallocated record).
 */
namespace modfracglobal {

/*! A fraction as text: [0] whole part carrying the sign as a leading "-", [1] numerator,
 *  [2] denominator; a zero part is the empty text. */
using FractionText = std::array<std::string, 3>;
/*! A routine's record result; std::nullopt is the unallocated record (no result). */
using FractionResult = std::optional<FractionText>;
/*! A list of fractions, one record a row. */
using FractionList = std::vector<FractionText>;
/*! A list of 32-bit integers; an empty list is the unallocated list. */
using LongList = std::vector<std::int32_t>;

// Record and integer helpers

/*! The magnitude of a part's text as a 32-bit integer: 0 for the empty text, "+" and "-".
 *  Reports 13 for text that is no number and 6 beyond the range, and then gives 0. */
MODFRACGLOBAL_EXPORT std::int32_t partvalue(std::string_view part);
/*! The text of a part: the empty text for 0, otherwise the decimal digits with a leading "-"
 *  when negative. */
MODFRACGLOBAL_EXPORT std::string parttext(std::int32_t value);
/*! True when \a part is the empty text. */
MODFRACGLOBAL_EXPORT bool isemptypart(std::string_view part);
/*! True when all three parts are empty; ("-", "", "") is not empty. */
MODFRACGLOBAL_EXPORT bool isemptyfraction(const FractionText &fraction);
/*! The count of characters after the first "," of \a number, or after its first "." when it
 *  has no ","; 0 without either. Both marks count whatever the number locale says. */
MODFRACGLOBAL_EXPORT std::int32_t decimalcount(std::string_view number);
/*! True when \a text contains "%". */
MODFRACGLOBAL_EXPORT bool haspercentsign(std::string_view text);
/*! True when \a text contains "," or ".". */
MODFRACGLOBAL_EXPORT bool hasdecimalsep(std::string_view text);

/*! The non-zero entries in their order. Reports 9 and gives an empty list when none is left. */
MODFRACGLOBAL_EXPORT LongList removezeros(const LongList &list);
/*! The index of the divisor for one gcd round: the last index at which the list steps down
 *  (entry smaller than its predecessor), or 0. Not the smallest entry. Reports 9 for an empty
 *  list and gives 0. */
MODFRACGLOBAL_EXPORT std::int32_t minindex(const LongList &list);
/*! Replaces every entry except the one at minindex() by its remainder on division by that
 *  entry, in \a list itself, and returns a copy. Reports 11 for a zero divisor and 9 for an
 *  empty list, and then gives an empty list. */
MODFRACGLOBAL_EXPORT LongList modbymin(LongList &list);
/*! The greatest common divisor of the non-zero entries, with the sign of the last remaining
 *  entry; \a list is left unchanged. An all-zero or empty list reports 9 from each step and
 *  gives 0; entries whose rounds never end report 28 and give 0. */
MODFRACGLOBAL_EXPORT std::int32_t listgcd(LongList &list);
/*! The least common multiple of the entries, or -1 when one is 0. Negative entries are made
 *  positive in \a list itself. Reports 6 when the result leaves 32 bits and 9 for an empty list,
 *  and then gives 0. */
MODFRACGLOBAL_EXPORT std::int32_t listlcm(LongList &list);

// Normal forms. Each returns a new record, or std::nullopt after reporting an error.

/*! Numerator and denominator divided by their gcd; the whole part is kept and an improper
 *  fraction stays improper. A record without numerator or denominator comes back unchanged. */
MODFRACGLOBAL_EXPORT FractionResult strreduce(const FractionText &fraction);
/*! The whole part increased by numerator / denominator, the numerator replaced by the
 *  remainder; the denominator is kept even when the remainder is 0. Reports 11 for a zero
 *  denominator, 6 on overflow. */
MODFRACGLOBAL_EXPORT FractionResult strfractomixed(const FractionText &fraction);
/*! Numerator and denominator times \a factor; a factor below 1 leaves the record unchanged.
 *  Reports 6 on overflow. */
MODFRACGLOBAL_EXPORT FractionResult strexpand(const FractionText &fraction, std::int32_t factor);
/*! The improper fraction: the whole part folded into the numerator, element 0 left holding only
 *  the sign; a whole number becomes itself over 1. A whole part holding ",", "." or "%" comes
 *  back unchanged. Reports 6 on overflow. */
MODFRACGLOBAL_EXPORT FractionResult strmixedtofrac(const FractionText &fraction);
/*! The reciprocal as an improper fraction, not reduced. A zero value reports 13 and gives no
 *  result. */
MODFRACGLOBAL_EXPORT FractionResult strinvert(const FractionText &fraction);

// Arithmetic on lists. Results are improper and not reduced.

/*! The sum over the least common multiple of the denominators (an empty denominator counts
 *  as 1). Reports 6 on overflow and 9 for an empty list. */
MODFRACGLOBAL_EXPORT FractionResult straddfractions(const FractionList &fractions);
/*! The product over the product of the denominators; every row of \a fractions is rewritten
 *  into its improper form. Reports 6 on overflow and 9 for an empty list. */
MODFRACGLOBAL_EXPORT FractionResult strmultiplyfractions(FractionList &fractions);
/*! Row 0 times row 1, the divisor already inverted by the caller; an empty row 1 gives the
 *  marker record ("", "", "-"). */
MODFRACGLOBAL_EXPORT FractionResult strdividefractions(FractionList &fractions);

// Decimal and percent conversion

/*! The value as decimal text in element 0, rounded half to even to \a decimals places (the
 *  whole part added after rounding), written by doubletotext(); a record without numerator or
 *  denominator comes back unchanged. Reports 11 for a zero denominator and 5 for negative
 *  \a decimals. */
MODFRACGLOBAL_EXPORT FractionResult strfractodecimal(const FractionText &fraction, std::int32_t decimals);
/*! The decimal number in element 0 as whole part, numerator and 10 to the power of its count
 *  of decimals, not reduced. Only a record with text in element 0 alone and no "%" is
 *  converted. Reports 13 for text that is no number and 6 for ten or more decimals or a whole
 *  part beyond 32 bits. */
MODFRACGLOBAL_EXPORT FractionResult strdecimaltofrac(const FractionText &fraction);

// Fractions as people write them

/*! Reads "3", "-3", "2/3", "-2/3", "1 2/3", "-1 2/3" with blanks around the text and around
 *  the slash, the minus sign U+2212, the fraction slash U+2044 and the vulgar fractions (alone
 *  or after a whole number, as in "1⅔"). Parts are kept as written, not reduced; a zero whole
 *  part or numerator becomes the empty text, a zero denominator stays "0", a leading "+" is
 *  dropped. Reports 13 for anything else (decimal and percent texts included) and 6 for a part
 *  beyond 32 bits, and then gives no result. */
MODFRACGLOBAL_EXPORT FractionResult strparsefraction(std::string_view text);
/*! The text strparsefraction() reads back into \a fraction: "-1 2/3", "2/3", "-2/3", "3";
 *  "0" for the empty value; a whole part without numerator alone ("5" for 5 0/1, which reads
 *  back without its denominator). */
MODFRACGLOBAL_EXPORT std::string strformatfraction(const FractionText &fraction);
/*! The value in English words as people say it: "four and one seventh", "minus three
 *  quarters", "seventeen twelfths", "minus three", "zero" for the empty value. A leading "-" or
 *  "+" is spoken "minus" or "plus". Numbers below one million are spoken in words (British
 *  usage: "one hundred and one"), larger ones stay digits. Denominators from 2 to 20, the round
 *  tens, 100 and 1000 are named ("half", "quarter", "twentieth"); any other, zero included, is
 *  read "over" the number ("five over zero", "one over one hundred and one"). A part that is no
 *  plain number (a decimal or percent whole part, algebraic text) is given as written. A
 *  numerator without a denominator is no fraction part and is not spoken. Reports nothing. */
MODFRACGLOBAL_EXPORT std::string strspeakfraction(const FractionText &fraction);
/*! The fraction nearest to the value whose denominator lies between 1 and \a maxdenominator,
 *  reduced, as a mixed record ("3", "", "1" for a whole number, "", "", "1" for zero); on a tie
 *  the smaller denominator wins. The value is a decimal text alone in element 0 (the host's
 *  separator, read digit by digit: 37 decimals exactly, and whether any further one is not
 *  zero) or a fraction record. Reports 13 for text that is no number, 11 for a zero
 *  denominator, 5 for \a maxdenominator below 1 and 6 for a whole part beyond 32 bits, and then
 *  gives no result. */
MODFRACGLOBAL_EXPORT FractionResult strapproximate(const FractionText &fraction, std::int32_t maxdenominator);

} // namespace modfracglobal
