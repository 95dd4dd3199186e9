// Feeds arbitrary text and integer lists to every engine routine. A crash, hang, sanitizer report
// or broken invariant below is a fault: every input gets its documented result or a reported error.

#include "decimalreference.h"

#include <cstring>
#include <numeric>

using namespace modfracglobal;

namespace {

void check(bool condition) { if (!condition) __builtin_trap(); }

bool readerror(const automationerror &error) { return error.number() == errnum::typemismatch || error.number() == errnum::overflow; }

void hostnumbers(const std::string &text)
{
    try {
        const std::int32_t value = texttolong(text);
        check(isnumerictext(text) && texttolong(std::to_string(value)) == value);
    } catch (const automationerror &error) {
        check(readerror(error));
    }
    try {
        const double value = texttodouble(text);
        check(isnumerictext(text) && doubletotext(value).size() < 32);
        (void)roundtodecimals(value, static_cast<std::int32_t>(text.size() % 24));
    } catch (const automationerror &error) {
        check(readerror(error) && !isnumerictext(text));
    }
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
    (void)listgcd(copy);
    check(copy == list);
    const std::int32_t lcm = listlcm(copy);
    for (std::int32_t v : copy)
        check(lcm <= 0 || (v > 0 && lcm % v == 0));
    check(lcm >= -1);
}

// The decimal conversions take shortcuts for usual values; each must give what the plain double
// computation gives.
void decimalsagree(const FractionText &a, std::int32_t decimals)
{
    if (!a[1].empty() && !a[2].empty() && decimals >= 0) {
        const FractionResult result = strfractodecimal(a, decimals);
        check(partvalue(a[2]) == 0 ? !result : result && (*result)[0] == decimalreference::todecimal(a, decimals));
    }
    if (a[1].empty() && a[2].empty() && !a[0].empty() && !haspercentsign(a[0]))
        check(strdecimaltofrac(a) == decimalreference::fromdecimal(a[0]));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const scopedmessagesink quiet([](const std::string &) {});
    if (size == 0)
        return 0;
    const std::uint8_t control = data[0];
    setnumberlocale(control & 1 ? numberlocale{",", "."} : numberlocale{".", ","});
    if (control & 2) {
        integerlists(data + 1, size - 1);
        return 0;
    }

    // Up to six fields separated by "|": two records.
    const std::string_view rest(reinterpret_cast<const char *>(data + 1), size - 1);
    std::string fields[6];
    std::size_t field = 0;
    for (const char c : rest) {
        if (c == '|' && field < 5)
            ++field;
        else
            fields[field] += c;
    }
    hostnumbers(fields[0]);
    const FractionText a{fields[0], fields[1], fields[2]}, b{fields[3], fields[4], fields[5]};
    const std::int32_t amount = static_cast<std::int32_t>(control >> 2) - 8;
    // Every result is either none or three texts no longer than the input could explain.
    const auto sane = [](const FractionResult &result) {
        check(!result || std::all_of(result->begin(), result->end(), [](const std::string &s) { return s.size() < (1u << 20); }));
    };
    for (const FractionResult &result : {strreduce(a), strfractomixed(a), strexpand(a, amount * 1000003), strmixedtofrac(a),
                                         strinvert(a), strfractodecimal(a, amount), strdecimaltofrac(a)})
        sane(result);
    decimalsagree(a, amount);

    // What is read is written back and read again unchanged, but for the denominator of a whole
    // number with a zero numerator, which is written alone; the nearest fraction is reduced,
    // mixed and within its limit.
    FractionResult readback = strparsefraction(rest);
    if (readback && (*readback)[1].empty() && !(*readback)[0].empty() && (*readback)[0] != "-")
        (*readback)[2].clear();
    check(!readback || strparsefraction(strformatfraction(*readback)) == readback);
    const std::int32_t limit = static_cast<std::int32_t>(control) * 8191 + 1;
    for (const FractionResult &nearest : {strapproximate(a, limit), strapproximate({fields[0], "", ""}, limit)}) {
        if (!nearest)
            continue;
        const std::int32_t n = partvalue((*nearest)[1]), d = partvalue((*nearest)[2]);
        check(d >= 1 && d <= limit && n < d && std::gcd(n, d) == (n == 0 ? d : 1));
    }

    FractionList list{a, b};
    sane(straddfractions(list));
    check(list[0] == a && list[1] == b);
    sane(strmultiplyfractions(list));
    list = {a, b};
    sane(strdividefractions(list));
    return 0;
}
