#include "hostnumbers.h"

#include "automationerror.h"
#include "engineinternal.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace modfracglobal {

namespace {

numberlocale normalized(numberlocale locale)
{
    if (locale.decimal.empty())
        locale.decimal = ".";
    // A grouping separator equal to the decimal one could never be told apart from it.
    if (locale.grouping == locale.decimal)
        locale.grouping.clear();
    return locale;
}

numberlocale &activelocale()
{
    static numberlocale locale = systemnumberlocale();
    return locale;
}

bool isblank(char c)
{
    return c == ' ' || c == '\t';
}

bool isdigit(char c)
{
    return c >= '0' && c <= '9';
}

bool startswith(std::string_view text, std::size_t at, const std::string &prefix)
{
    return !prefix.empty() && text.compare(at, prefix.size(), prefix) == 0;
}

/*
 * One pass over a number text by the host's rules: blanks around, a leading sign, digits with
 * grouping separators in the integer part, one decimal separator, an exponent. The integer part's
 * value is accumulated on the way (saturating) so that plain integers need no second pass; when
 * \a normal is given it receives the number in the form std::from_chars reads.
 */
struct scannednumber
{
    bool negative = false;
    bool plaininteger = true; // no fraction digits, no exponent
    bool intoverflow = false; // the integer part alone is beyond 2^32
    std::uint64_t intvalue = 0;
    int magnitude = 0;        // decimal exponent of the leading significant digit, roughly
    bool allzero = true;
};

class normalwriter
{
public:
    explicit normalwriter(char *buffer)
        : m_buffer(buffer)
    {
    }
    void push_back(char c) { m_buffer[m_size++] = c; }
    std::size_t size() const { return m_size; }

private:
    char *m_buffer;
    std::size_t m_size = 0;
};

// The normal form is never longer than the text plus two characters (a "0" on each side of
// a bare decimal separator).
bool scannumber(std::string_view text, const numberlocale &locale, scannednumber &out,
                normalwriter *normal)
{
    std::size_t i = 0;
    std::size_t end = text.size();
    while (i < end && isblank(text[i]))
        ++i;
    while (end > i && isblank(text[end - 1]))
        --end;
    if (i < end && (text[i] == '+' || text[i] == '-')) {
        out.negative = text[i] == '-';
        ++i;
    }
    if (normal && out.negative)
        normal->push_back('-');

    std::size_t intdigits = 0;
    std::size_t significantint = 0;
    while (i < end) {
        const char c = text[i];
        if (isdigit(c)) {
            ++intdigits;
            if (c != '0' || significantint > 0)
                ++significantint;
            if (!out.intoverflow) {
                out.intvalue = out.intvalue * 10 + std::uint64_t(c - '0');
                if (out.intvalue > 0xFFFFFFFFull)
                    out.intoverflow = true;
            }
            if (normal)
                normal->push_back(c);
            ++i;
            continue;
        }
        if (startswith(text, i, locale.decimal))
            break;
        if (intdigits > 0 && startswith(text, i, locale.grouping)) {
            i += locale.grouping.size();
            continue;
        }
        break;
    }

    std::size_t fracdigits = 0;
    std::size_t leadingfraczeros = 0;
    if (startswith(text, i, locale.decimal)) {
        i += locale.decimal.size();
        if (normal) {
            if (intdigits == 0)
                normal->push_back('0');
            normal->push_back('.');
        }
        while (i < end && isdigit(text[i])) {
            if (text[i] != '0')
                out.allzero = false;
            else if (fracdigits == leadingfraczeros)
                ++leadingfraczeros;
            ++fracdigits;
            if (normal)
                normal->push_back(text[i]);
            ++i;
        }
        if (fracdigits > 0)
            out.plaininteger = false;
        else if (normal)
            normal->push_back('0');
    }
    if (intdigits + fracdigits == 0)
        return false;
    if (significantint > 0)
        out.allzero = false;

    long long exponent = 0;
    if (i < end && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        out.plaininteger = false;
        bool negexp = false;
        if (normal)
            normal->push_back('e');
        if (i < end && (text[i] == '+' || text[i] == '-')) {
            negexp = text[i] == '-';
            if (normal)
                normal->push_back(text[i]);
            ++i;
        }
        std::size_t expdigits = 0;
        while (i < end && isdigit(text[i])) {
            if (exponent < 1000000)
                exponent = exponent * 10 + (text[i] - '0');
            if (normal)
                normal->push_back(text[i]);
            ++expdigits;
            ++i;
        }
        if (expdigits == 0)
            return false;
        if (negexp)
            exponent = -exponent;
    }
    if (i != end)
        return false;

    const long long lead = significantint > 0 ? static_cast<long long>(significantint) - 1
                                              : -static_cast<long long>(leadingfraczeros) - 1;
    const long long magnitude = lead + exponent;
    out.magnitude = magnitude > 100000 ? 100000 : (magnitude < -100000 ? -100000 : int(magnitude));
    return true;
}

} // namespace

namespace detail {

int readdouble(std::string_view text, double &value)
{
    char small[64];
    double parsed = 0;
    const std::string &decimal = activelocale().decimal;
    // With "." as the separator, the texts std::from_chars reads whole (digits, a point, an
    // exponent, a minus) read the same by the host's rules; anything else takes the long way.
    if (decimal == "." && !text.empty() && text.front() != '+') {
        const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), parsed);
        if (ec == std::errc() && ptr == text.data() + text.size() && std::isfinite(parsed)) {
            value = parsed;
            return 0;
        }
    }
    // Digits with one other decimal separator and an optional minus: only the separator needs
    // translating for std::from_chars.
    if (decimal.size() == 1 && !text.empty() && text.size() < sizeof small) {
        std::size_t length = 0;
        std::size_t digits = 0;
        bool point = false;
        bool plain = true;
        for (std::size_t i = 0; i < text.size() && plain; ++i) {
            const char c = text[i];
            if (isdigit(c)) {
                ++digits;
                small[length++] = c;
            } else if (c == decimal.front() && !point && digits > 0 && i + 1 < text.size()) {
                point = true;
                small[length++] = '.';
            } else if (c == '-' && i == 0) {
                small[length++] = c;
            } else {
                plain = false;
            }
        }
        if (plain && digits > 0) {
            const auto [ptr, ec] = std::from_chars(small, small + length, parsed);
            if (ec == std::errc() && ptr == small + length) {
                value = parsed;
                return 0;
            }
        }
    }

    scannednumber scanned;
    std::string large;
    char *buffer = small;
    if (text.size() + 2 > sizeof small) {
        large.resize(text.size() + 2);
        buffer = large.data();
    }
    normalwriter normal(buffer);
    if (!scannumber(text, activelocale(), scanned, &normal))
        return errnum::typemismatch;
    if (scanned.allzero) {
        value = scanned.negative ? -0.0 : 0.0;
        return 0;
    }
    const auto [ptr, ec] = std::from_chars(buffer, buffer + normal.size(), parsed);
    if (ec == std::errc::result_out_of_range) {
        // Too small underflows to zero; too large does not fit a double.
        if (scanned.magnitude > 0)
            return errnum::overflow;
        value = scanned.negative ? -0.0 : 0.0;
        return 0;
    }
    if (ec != std::errc() || ptr != buffer + normal.size())
        return errnum::typemismatch;
    if (!std::isfinite(parsed))
        return errnum::overflow;
    value = parsed;
    return 0;
}

int readlong(std::string_view text, std::int32_t &value)
{
    // Plain digits with an optional sign, the usual content of a fraction's part, need no
    // locale at all.
    if (!text.empty()) {
        const char *begin = text.data() + (text.front() == '+' ? 1 : 0);
        const char *end = text.data() + text.size();
        if (begin != end && (*begin != '-' || begin == text.data())) {
            std::int32_t parsed = 0;
            const auto [ptr, ec] = std::from_chars(begin, end, parsed);
            if (ptr == end) {
                if (ec == std::errc()) {
                    value = parsed;
                    return 0;
                }
                if (ec == std::errc::result_out_of_range)
                    return errnum::overflow;
            }
        }
    }
    scannednumber scanned;
    if (!scannumber(text, activelocale(), scanned, nullptr))
        return errnum::typemismatch;
    if (scanned.plaininteger) {
        const std::uint64_t limit = scanned.negative ? 2147483648ull : 2147483647ull;
        if (scanned.intoverflow || scanned.intvalue > limit)
            return errnum::overflow;
        value = scanned.negative ? static_cast<std::int32_t>(-static_cast<std::int64_t>(scanned.intvalue))
                                 : static_cast<std::int32_t>(scanned.intvalue);
        return 0;
    }
    double real = 0;
    if (const int error = readdouble(text, real))
        return error;
    return roundlong(real, value);
}

const std::string &decimalseparator()
{
    return activelocale().decimal;
}

double powerof10(std::int32_t exponent)
{
    static constexpr double exact[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (exponent >= 0 && exponent <= 22)
        return exact[exponent];
    return std::pow(10.0, exponent);
}

} // namespace detail

numberlocale systemnumberlocale()
{
    numberlocale result;
    result.grouping.clear();
    const char *current = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = current ? current : "C";
    if (std::setlocale(LC_NUMERIC, "")) {
        if (const std::lconv *conv = std::localeconv()) {
            if (conv->decimal_point && *conv->decimal_point)
                result.decimal = conv->decimal_point;
            if (conv->thousands_sep)
                result.grouping = conv->thousands_sep;
        }
        std::setlocale(LC_NUMERIC, saved.c_str());
    }
    // Locales without grouping (C, POSIX) still read the other punctuation mark as one.
    if (result.grouping.empty())
        result.grouping = result.decimal == "," ? "." : ",";
    return normalized(result);
}

numberlocale currentnumberlocale()
{
    return activelocale();
}

void setnumberlocale(const numberlocale &locale)
{
    activelocale() = normalized(locale);
}

std::int32_t texttolong(std::string_view text)
{
    std::int32_t value = 0;
    if (const int error = detail::readlong(text, value))
        throw automationerror(error);
    return value;
}

double texttodouble(std::string_view text)
{
    double value = 0;
    if (const int error = detail::readdouble(text, value))
        throw automationerror(error);
    return value;
}

std::int32_t roundtolong(double value)
{
    std::int32_t result = 0;
    if (const int error = detail::roundlong(value, result))
        throw automationerror(error);
    return result;
}

std::string doubletotext(double value)
{
    if (value == 0)
        return "0";
    char buffer[64];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value,
                                         std::chars_format::general, 15);
    if (ec != std::errc())
        return std::string();
    const std::string &decimal = activelocale().decimal;
    for (char *p = buffer; p != end; ++p) {
        if (*p == 'e')
            *p = 'E';
    }
    if (decimal == ".")
        return std::string(buffer, std::size_t(end - buffer));
    std::string text(buffer, std::size_t(end - buffer));
    if (const auto point = text.find('.'); point != std::string::npos)
        text.replace(point, 1, decimal);
    return text;
}

double roundtodecimals(double value, std::int32_t decimals)
{
    if (decimals < 0)
        throw automationerror(errnum::invalidcall);
    if (!std::isfinite(value) || decimals > 308)
        return value;
    const double scale = detail::powerof10(decimals);
    const double scaled = value * scale;
    // Beyond 2^52 a double holds no fraction any more: nothing is left to round.
    if (!std::isfinite(scaled) || std::fabs(scaled) >= 4503599627370496.0)
        return value;
    return detail::roundhalfeven(scaled) / scale;
}

bool isnumerictext(std::string_view text)
{
    double value = 0;
    return detail::readdouble(text, value) == 0;
}

} // namespace modfracglobal
