// Feeds arbitrary text and integer lists to every engine routine. Any crash, hang, sanitizer
// report or broken invariant below is a fault: the engine must answer every input with its
// documented result or a reported error.

#include "modfracglobal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <string_view>

using namespace modfracglobal;

namespace {

void check(bool condition)
{
    if (!condition)
        __builtin_trap();
}

// A record result is either no result or three texts no longer than the input could explain.
void checkrecord(const FractionResult &result)
{
    if (!result)
        return;
    for (const std::string &part : *result)
        check(part.size() < (1u << 20));
}

void hostnumbers(std::string_view text)
{
    try {
        const std::int32_t value = texttolong(text);
        check(isnumerictext(text));
        check(texttolong(std::to_string(value)) == value);
    } catch (const automationerror &error) {
        check(error.number() == errnum::typemismatch || error.number() == errnum::overflow);
    }
    try {
        const double value = texttodouble(text);
        check(isnumerictext(text));
        const std::string shown = doubletotext(value);
        check(shown.size() < 32);
        (void)texttodouble(shown);
        (void)roundtodecimals(value, static_cast<std::int32_t>(text.size() % 24));
    } catch (const automationerror &error) {
        check(error.number() == errnum::typemismatch || error.number() == errnum::overflow);
        check(!isnumerictext(text));
    }
    (void)partvalue(text);
    check(decimalcount(text) >= 0);
}

void integerlists(const std::uint8_t *data, std::size_t size)
{
    LongList list(std::min<std::size_t>(size / 4, 64));
    if (!list.empty())
        std::memcpy(list.data(), data, list.size() * 4);

    LongList copy = list;
    (void)removezeros(list);
    (void)minindex(list);
    (void)modbymin(copy);

    copy = list;
    const std::int32_t gcd = listgcd(copy);
    check(copy == list);
    const bool allnonnegative = std::all_of(list.begin(), list.end(), [](std::int32_t v) { return v >= 0; });
    std::int32_t expected = 0;
    for (std::int32_t v : list)
        expected = allnonnegative ? std::gcd(expected, v) : 0;
    if (allnonnegative && expected != 0)
        check(gcd == expected);

    copy = list;
    const std::int32_t lcm = listlcm(copy);
    if (lcm > 0) {
        for (std::int32_t v : copy)
            check(v > 0 && lcm % v == 0);
    } else {
        check(lcm == 0 || lcm == -1);
    }
}

// The decimal conversions take shortcuts for usual values; each must give what the plain double
// computation gives.
void decimalsagree(const FractionText &a, std::int32_t decimals)
{
    if (!a[1].empty() && !a[2].empty() && decimals >= 0) {
        const std::int32_t w = partvalue(a[0]);
        const std::int32_t n = partvalue(a[1]);
        const std::int32_t d = partvalue(a[2]);
        const FractionResult result = strfractodecimal(a, decimals);
        if (d == 0) {
            check(!result);
        } else {
            const double value = roundtodecimals(double(n) / double(d), decimals) + double(w);
            const bool negative = !a[0].empty() && a[0][0] == '-';
            check(result && (*result)[0] == (negative ? "-" + doubletotext(std::fabs(value)) : doubletotext(value)));
        }
    }
    if (a[1].empty() && a[2].empty() && !a[0].empty() && !haspercentsign(a[0])) {
        FractionResult expected;
        try {
            const double x = texttodouble(a[0]);
            const double integral = std::trunc(x);
            const std::int32_t k = decimalcount(a[0]);
            const double scale = k > 308 ? HUGE_VAL : std::pow(10.0, k);
            const std::int32_t w = roundtolong(std::fabs(integral));
            const std::int32_t n = roundtolong((x - integral) * scale);
            const std::int32_t d = roundtolong(scale);
            if (n != std::numeric_limits<std::int32_t>::min())
                expected = FractionText{(a[0][0] == '-' ? "-" : "") + parttext(w), parttext(n < 0 ? -n : n),
                                        parttext(d)};
        } catch (const automationerror &) {
        }
        check(strdecimaltofrac(a) == expected);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool quiet = [] {
        setmessagesink([](const std::string &) {});
        return true;
    }();
    (void)quiet;
    if (size == 0)
        return 0;

    const std::uint8_t control = data[0];
    setnumberlocale(control & 1 ? numberlocale{",", "."} : numberlocale{".", ","});
    const std::string_view rest(reinterpret_cast<const char *>(data + 1), size - 1);

    if (control & 2) {
        integerlists(data + 1, size - 1);
        return 0;
    }

    // Up to six fields separated by "|": two records.
    std::string fields[6];
    std::size_t field = 0;
    for (const char c : rest) {
        if (c == '|' && field < 5)
            ++field;
        else
            fields[field] += c;
    }
    hostnumbers(fields[0]);

    const FractionText a{fields[0], fields[1], fields[2]};
    const FractionText b{fields[3], fields[4], fields[5]};
    const std::int32_t amount = static_cast<std::int32_t>(control >> 2) - 8;

    checkrecord(strreduce(a));
    checkrecord(strfractomixed(a));
    checkrecord(strexpand(a, amount * 1000003));
    checkrecord(strmixedtofrac(a));
    checkrecord(strinvert(a));
    checkrecord(strfractodecimal(a, amount));
    checkrecord(strdecimaltofrac(a));
    decimalsagree(a, amount);

    // Fractions as people write them: what is read is written back and read again unchanged,
    // and the nearest fraction is reduced, mixed and within its limit.
    const FractionResult parsed = strparsefraction(rest);
    if (parsed)
        check(strparsefraction(strformatfraction(*parsed)) == parsed);
    const std::int32_t limit = static_cast<std::int32_t>(control) * 8191 + 1;
    for (const FractionResult &nearest : {strapproximate(a, limit), strapproximate({fields[0], "", ""}, limit)}) {
        if (!nearest)
            continue;
        const std::int32_t n = partvalue((*nearest)[1]);
        const std::int32_t d = partvalue((*nearest)[2]);
        check(d >= 1 && d <= limit && n < d && std::gcd(n, d) == (n == 0 ? d : 1));
    }

    FractionList list{a, b};
    checkrecord(straddfractions(list));
    check(list[0] == a && list[1] == b);
    checkrecord(strmultiplyfractions(list));
    list = {a, b};
    checkrecord(strdividefractions(list));
    return 0;
}
