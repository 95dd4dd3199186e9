// Crossing between exact fractions and decimal numbers: the only floating-point part of the engine.

#include "modfracglobal.h"

#include "engineinternal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace modfracglobal {

using namespace detail;

namespace {

/*
 * Writes the host text of whole + rounded / 10^decimals, the sum as strfractodecimal computes it
 * in a double, straight from the integers when that text is exact: at most 15 significant digits
 * and not so small that it takes an exponent. The double then lies within one unit in the last
 * place of the decimal value, well inside the half unit of the 15th digit, so its shortest text
 * with 15 digits is that decimal. Returns false, writing nothing, when the double's own text is
 * needed.
 */
bool writeexactdecimal(std::string &target, bool negative, std::uint32_t whole, double rounded,
                       std::int32_t decimals)
{
    static constexpr std::uint64_t powers[] = {1ull,
                                               10ull,
                                               100ull,
                                               1000ull,
                                               10000ull,
                                               100000ull,
                                               1000000ull,
                                               10000000ull,
                                               100000000ull,
                                               1000000000ull,
                                               10000000000ull,
                                               100000000000ull,
                                               1000000000000ull,
                                               10000000000000ull,
                                               100000000000000ull};
    constexpr std::uint64_t limit = 1000000000000000ull; // 15 digits
    if (decimals < 0 || decimals > 14 || !(rounded >= 0 && rounded < 4503599627370496.0))
        return false;
    const std::uint64_t scale = powers[decimals];
    if (whole > (limit - 1) / scale)
        return false;
    const std::uint64_t total = whole * scale + static_cast<std::uint64_t>(rounded);
    if (total >= limit)
        return false;
    const std::uint64_t integral = total / scale;
    std::uint64_t fraction = total % scale;
    // Below 10^-4 the text takes an exponent.
    if (integral == 0 && fraction != 0 && fraction * 10000 < scale)
        return false;

    char digits[24];
    char *end = std::to_chars(digits, digits + sizeof digits, integral).ptr;
    if (fraction == 0) {
        target.clear();
        if (negative)
            target.push_back('-');
        target.append(digits, end);
        return true;
    }
    std::int32_t places = decimals;
    while (fraction % 10 == 0) {
        fraction /= 10;
        --places;
    }
    target.clear();
    if (negative)
        target.push_back('-');
    target.append(digits, end);
    target += decimalseparator();
    end = std::to_chars(digits, digits + sizeof digits, fraction).ptr;
    target.append(std::size_t(places) - std::size_t(end - digits), '0');
    target.append(digits, end);
    return true;
}

enum class plainreading { exact, digits, other };

/*
 * Reads a plain decimal text: an optional minus, digits and perhaps the locale's decimal separator
 * ("." or ",") with digits after it. For a whole part within 32 bits and at most nine decimals it
 * gives exact and the parts that the double read from the text yields:
 * - up to 15 significant digits the number lies within a tenth of its last decimal place of that
 *   double, so the double's whole part and rounded decimals are the digits themselves;
 * - beyond, the double is the whole part plus the decimals rounded half to even to the double's
 *   spacing at that size, computed here in integers; its decimals are then scaled and rounded as
 *   the double's way does.
 * Any other plain text gives digits and its count of decimals; any other text gives other, and
 * both take the double's way.
 */
plainreading readplaindecimal(std::string_view text, std::int32_t &whole, std::int32_t &numerator,
                              std::int32_t &denominator, std::int32_t &decimals)
{
    const std::string &separator = decimalseparator();
    if (separator.size() != 1 || (separator[0] != '.' && separator[0] != ','))
        return plainreading::other;
    std::size_t i = !text.empty() && text[0] == '-' ? 1 : 0;
    std::uint64_t integral = 0; // stops growing beyond 32 bits
    std::uint64_t fraction = 0; // the first nine decimals
    std::size_t digits = 0;
    std::size_t places = 0;
    bool point = false;
    for (; i < text.size(); ++i) {
        const unsigned digit = static_cast<unsigned char>(text[i]) - unsigned('0');
        if (digit <= 9) {
            ++digits;
            if (point) {
                if (++places <= 9)
                    fraction = fraction * 10 + digit;
            } else if (integral <= 0xFFFFFFFFu) {
                integral = integral * 10 + digit;
            }
        } else if (text[i] == separator[0] && !point && digits > 0) {
            point = true;
        } else {
            return plainreading::other;
        }
    }
    if (digits == 0 || (point && places == 0))
        return plainreading::other;
    decimals = static_cast<std::int32_t>(std::min<std::size_t>(places, 2147483647u));
    if (places > 9 || integral > 2147483647u)
        return plainreading::digits;
    static constexpr std::uint32_t powers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000,
                                               100000000, 1000000000};
    const std::uint64_t scale = powers[places];
    whole = static_cast<std::int32_t>(integral);
    numerator = static_cast<std::int32_t>(fraction);
    denominator = static_cast<std::int32_t>(scale);
    if (integral * scale + fraction < 1000000000000000ull)
        return plainreading::exact;

    // Here the whole part is at least 1: the double's spacing is 2^(exponent - 52).
    __extension__ using wide = unsigned __int128;
    const int shift = 52 - (std::bit_width(static_cast<std::uint32_t>(integral)) - 1);
    const wide scaled = wide(fraction) << shift;
    auto steps = static_cast<std::uint64_t>(scaled / scale);
    const auto rest = static_cast<std::uint64_t>(scaled % scale);
    if (rest * 2 > scale || (rest * 2 == scale && (steps & 1) != 0))
        ++steps;
    // Rounded up to the next whole number: left to the double's way.
    if ((steps >> shift) != 0)
        return plainreading::digits;
    const double part = double(steps) / double(std::uint64_t(1) << shift);
    return roundlong(part * double(scale), numerator) == 0 ? plainreading::exact : plainreading::digits;
}

} // namespace

FractionResult strfractodecimal(const FractionText &fraction, std::int32_t decimals)
{
    FractionResult result;
    guarded([&] {
        if (fraction[1].empty() || fraction[2].empty()) {
            result = fraction;
            return;
        }
        const std::int32_t w = partmagnitude(fraction[0]);
        const std::int32_t n = partmagnitude(fraction[1]);
        const std::int32_t d = partmagnitude(fraction[2]);
        if (d == 0) {
            report(errnum::divisionbyzero);
            return;
        }
        if (decimals < 0) {
            report(errnum::invalidcall);
            return;
        }
        double x = double(n) / double(d);
        FractionText &decimal = result.emplace();
        if (decimals <= 14) {
            const double scaled = roundhalfeven(x * powerof10(decimals));
            if (writeexactdecimal(decimal[0], isnegative(fraction), std::uint32_t(w), scaled, decimals))
                return;
        }
        x = roundtodecimals(x, decimals);
        // The whole part is added after rounding, so it is never rounded itself.
        x += double(w);
        decimal[0] = isnegative(fraction) ? "-" + doubletotext(std::fabs(x)) : doubletotext(x);
    });
    return result;
}

FractionResult strdecimaltofrac(const FractionText &fraction)
{
    FractionResult result;
    guarded([&] {
        if (!fraction[1].empty() || !fraction[2].empty() || fraction[0].empty()) {
            result = fraction;
            return;
        }
        std::int32_t w = 0;
        std::int32_t n = 0;
        std::int32_t d = 0;
        std::int32_t k = 0;
        const plainreading plain = readplaindecimal(fraction[0], w, n, d, k);
        if (plain == plainreading::exact) {
            FractionText &converted = result.emplace();
            writepart(converted[1], n);
            writepart(converted[2], d);
            writewhole(converted[0], fraction, w);
            return;
        }
        if (plain == plainreading::other && haspercentsign(fraction[0])) {
            result = fraction;
            return;
        }
        double x = 0;
        if (const int error = readdouble(fraction[0], x); error != 0) {
            report(error);
            return;
        }
        const double integral = std::trunc(x);
        const double part = x - integral;
        // The number's text is read by the locale but its decimals are counted after either
        // mark; hosts rely on the two readings being independent ("2,5" in a "." locale).
        if (plain == plainreading::other)
            k = decimalcount(fraction[0]);
        const double scale = k > 308 ? HUGE_VAL : powerof10(k);
        int error = roundlong(std::fabs(integral), w);
        if (error == 0)
            error = roundlong(part * scale, n);
        if (error == 0)
            error = roundlong(scale, d);
        if (error != 0) {
            report(error);
            return;
        }
        FractionText &converted = result.emplace();
        writepart(converted[1], checkedabs(n));
        writepart(converted[2], d);
        writewhole(converted[0], fraction, w);
    });
    return result;
}

} // namespace modfracglobal
