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
MODFRACGLOBAL_EXPORT std::int32_t partvalue(std::string_view part);
MODFRACGLOBAL_EXPORT std::string parttext(std::int32_t value);
MODFRACGLOBAL_EXPORT bool isemptypart(std::string_view part);
MODFRACGLOBAL_EXPORT bool isemptyfraction(const FractionText &fraction);
MODFRACGLOBAL_EXPORT std::int32_t decimalcount(std::string_view number);
MODFRACGLOBAL_EXPORT bool haspercentsign(std::string_view text);
MODFRACGLOBAL_EXPORT bool hasdecimalsep(std::string_view text);

MODFRACGLOBAL_EXPORT LongList removezeros(const LongList &list);
MODFRACGLOBAL_EXPORT std::int32_t minindex(const LongList &list);
MODFRACGLOBAL_EXPORT LongList modbymin(LongList &list);
MODFRACGLOBAL_EXPORT std::int32_t listgcd(LongList &list);
MODFRACGLOBAL_EXPORT std::int32_t listlcm(LongList &list);

// Normal forms
MODFRACGLOBAL_EXPORT FractionResult strreduce(const FractionText &fraction);
MODFRACGLOBAL_EXPORT FractionResult strfractomixed(const FractionText &fraction);
MODFRACGLOBAL_EXPORT FractionResult strexpand(const FractionText &fraction, std::int32_t factor);
MODFRACGLOBAL_EXPORT FractionResult strmixedtofrac(const FractionText &fraction);
MODFRACGLOBAL_EXPORT FractionResult strinvert(const FractionText &fraction);

// Arithmetic on lists
MODFRACGLOBAL_EXPORT FractionResult straddfractions(const FractionList &fractions);
MODFRACGLOBAL_EXPORT FractionResult strmultiplyfractions(FractionList &fractions);
MODFRACGLOBAL_EXPORT FractionResult strdividefractions(FractionList &fractions);

// Decimal and percent conversion
MODFRACGLOBAL_EXPORT FractionResult strfractodecimal(const FractionText &fraction, std::int32_t decimals);
MODFRACGLOBAL_EXPORT FractionResult strdecimaltofrac(const FractionText &fraction);

} // namespace modfracglobal
