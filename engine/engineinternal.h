#pragma once

// Internal to the engine: checked 32-bit arithmetic and the shared error handling of its routines.

#include "modfracglobal.h"

#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace modfracglobal::detail {

[[noreturn]] inline void raise(int number)
{
    throw automationerror(number);
}

/*! Shows the standard description of \a number, as a routine does for an error it catches;
 *  used where a routine detects the error itself and needs no unwinding to reach its handler. */
inline void report(int number)
{
    showmessage(automationerror::standarddescription(number));
}

inline std::int32_t checkedadd(std::int32_t a, std::int32_t b)
{
    std::int32_t r;
    if (__builtin_add_overflow(a, b, &r))
        raise(errnum::overflow);
    return r;
}

inline std::int32_t checkedsub(std::int32_t a, std::int32_t b)
{
    std::int32_t r;
    if (__builtin_sub_overflow(a, b, &r))
        raise(errnum::overflow);
    return r;
}

inline std::int32_t checkedmul(std::int32_t a, std::int32_t b)
{
    std::int32_t r;
    if (__builtin_mul_overflow(a, b, &r))
        raise(errnum::overflow);
    return r;
}

inline std::int32_t checkedabs(std::int32_t a)
{
    if (a == std::numeric_limits<std::int32_t>::min())
        raise(errnum::overflow);
    return a < 0 ? -a : a;
}

inline std::int32_t checkeddiv(std::int32_t a, std::int32_t b)
{
    if (b == 0)
        raise(errnum::divisionbyzero);
    if (b == -1)
        return checkedsub(0, a);
    return a / b;
}

inline std::int32_t checkedmod(std::int32_t a, std::int32_t b)
{
    if (b == 0)
        raise(errnum::divisionbyzero);
    // The remainder by -1 is 0; computing it would trap for the smallest value.
    if (b == -1)
        return 0;
    return a % b;
}

/*
 * Runs one engine routine's body: an error raised inside is reported through the message sink
 * and goes no further, so that the routine returns whatever result it holds at that moment.
 */
template <typename Body>
void guarded(Body &&body)
{
    try {
        body();
    } catch (const automationerror &error) {
        showmessage(error.description());
    } catch (const std::bad_alloc &) {
        report(errnum::outofmemory);
    } catch (const std::length_error &) {
        report(errnum::outofmemory);
    }
}

} // namespace modfracglobal::detail

namespace modfracglobal::detail {

/*! listgcd of the two entries, without building a list when both are non-negative and not
 *  both zero (the common case of reducing a fraction). */
std::int32_t pairgcd(std::int32_t a, std::int32_t b);
/*! The host number rules without exceptions: each returns 0 or the error number. */
int readlong(std::string_view text, std::int32_t &value);
int readdouble(std::string_view text, double &value);
/*! The decimal separator in force. */
const std::string &decimalseparator();
/*! 10 to the power \a exponent, exact up to 10^22. */
double powerof10(std::int32_t exponent);

/*! The signed numerator and the denominator of an improper form, when they are known. */
struct improperparts
{
    std::int32_t numerator = 0;
    std::int32_t denominator = 0;
    bool known = false;
};
/*! strmixedtofrac() written into \a target, which may be \a fraction itself; \a parts receives
 *  the numbers written (unknown when the record came back as it was). Returns false, with
 *  \a target untouched, after reporting an error. */
bool improperinto(const FractionText &fraction, FractionText &target, improperparts &parts);
/*! Sets \a target to parttext(\a value), without a temporary string. */
void writepart(std::string &target, std::int32_t value);
/*! Sets \a target to the whole part \a magnitude written with the sign of \a source: "-" followed
 *  by parttext(\a magnitude) when \a source is negative, else parttext(\a magnitude). */
void writewhole(std::string &target, const FractionText &source, std::int32_t magnitude);
/*! \a value rounded to an integer, a tie going to the even neighbour. */
inline double roundhalfeven(double value)
{
    // Adding and removing 2^52 leaves no fraction bits, and the default rounding mode rounds
    // half to even; beyond 2^52 every double is an integer already.
    constexpr double shift = 4503599627370496.0;
    if (!(value > -shift && value < shift))
        return value;
    return value >= 0 ? (value + shift) - shift : (value - shift) + shift;
}
/*! \a real rounded half to even into \a value; 6 when it leaves the 32-bit range, else 0. */
inline int roundlong(double real, std::int32_t &value)
{
    const double rounded = roundhalfeven(real);
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0))
        return errnum::overflow;
    value = static_cast<std::int32_t>(rounded);
    return 0;
}
/*! partvalue() of a part written the usual way, an optional sign and one to ten digits within
 *  the 32-bit range: its magnitude, or -1 when the text needs the full reading (and perhaps a
 *  message). */
inline std::int32_t plainpartvalue(std::string_view part)
{
    std::size_t i = !part.empty() && (part[0] == '-' || part[0] == '+') ? 1 : 0;
    const std::size_t digits = part.size() - i;
    if (digits == 0 || digits > 10)
        return -1;
    std::uint64_t value = 0;
    for (; i < part.size(); ++i) {
        const unsigned digit = static_cast<unsigned char>(part[i]) - unsigned('0');
        if (digit > 9)
            return -1;
        value = value * 10 + digit;
    }
    return value <= 2147483647u ? static_cast<std::int32_t>(value) : -1;
}
/*! partvalue(), reading the usual part inline. */
inline std::int32_t partmagnitude(std::string_view part)
{
    if (part.empty())
        return 0;
    const std::int32_t value = plainpartvalue(part);
    return value >= 0 ? value : partvalue(part);
}
/*! True when the record's whole part begins with "-". */
bool isnegative(const FractionText &fraction);

} // namespace modfracglobal::detail
