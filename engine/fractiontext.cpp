// Fractions as people write them ("1 2/3", "-2/3", "1⅔") and the nearest fraction to a value.
#include "engineinternal.h"

#include <algorithm>
#include <cstring>

namespace modfracglobal {

using namespace detail;

namespace {

using u128 = unsigned __int128;

constexpr std::int64_t int32max = std::numeric_limits<std::int32_t>::max();

// The vulgar fractions of Unicode, by their UTF-8 bytes.
struct vulgar
{
    const char *bytes;
    std::int32_t numerator;
    std::int32_t denominator;
};
constexpr vulgar vulgarfractions[] = {
    {"\u00BC", 1, 4}, {"\u00BD", 1, 2}, {"\u00BE", 3, 4},  {"\u2150", 1, 7}, {"\u2151", 1, 9},
    {"\u2152", 1, 10}, {"\u2153", 1, 3}, {"\u2154", 2, 3}, {"\u2155", 1, 5}, {"\u2156", 2, 5},
    {"\u2157", 3, 5}, {"\u2158", 4, 5}, {"\u2159", 1, 6},  {"\u215A", 5, 6}, {"\u215B", 1, 8},
    {"\u215C", 3, 8}, {"\u215D", 5, 8}, {"\u215E", 7, 8},
};

// Reads a text left to right; each accepting step moves past what it read.
class reader
{
public:
    explicit reader(std::string_view text) : m_text(text) {}

    bool atend() const { return m_pos == m_text.size(); }
    char peek() const { return atend() ? '\0' : m_text[m_pos]; }
    void skip() { ++m_pos; }

    bool take(std::string_view token)
    {
        if (m_text.substr(m_pos, token.size()) != token)
            return false;
        m_pos += token.size();
        return true;
    }

    // Spaces, tabs and the no-break spaces that documents put between a whole part and its
    // fraction. True when at least one was read.
    bool blanks()
    {
        const std::size_t start = m_pos;
        while (take(" ") || take("\t") || take("\u00A0") || take("\u202F")) {
        }
        return m_pos != start;
    }

    bool sign(bool &negative)
    {
        if (take("-") || take("\u2212")) {
            negative = true;
            return true;
        }
        return take("+");
    }

    bool slash() { return take("/") || take("\u2044"); }

    // Digits as an integer; 1 when there are none, 6 beyond 32 bits, else 0.
    int integer(std::int32_t &value)
    {
        const std::size_t start = m_pos;
        std::int64_t v = 0;
        bool big = false;
        while (m_pos < m_text.size() && m_text[m_pos] >= '0' && m_text[m_pos] <= '9') {
            v = v * 10 + (m_text[m_pos++] - '0');
            big = big || v > int32max;
            v = std::min<std::int64_t>(v, int32max + 1);
        }
        if (m_pos == start)
            return 1;
        if (big)
            return errnum::overflow;
        value = static_cast<std::int32_t>(v);
        return 0;
    }

    const vulgar *vulgarfraction()
    {
        for (const vulgar &v : vulgarfractions) {
            if (take(v.bytes))
                return &v;
        }
        return nullptr;
    }

private:
    std::string_view m_text;
    std::size_t m_pos = 0;
};

struct parsedfraction
{
    bool negative = false;
    std::int32_t whole = 0;
    bool hasfraction = false;
    std::int32_t numerator = 0;
    std::int32_t denominator = 0;
};

// 0 when the whole text is a fraction as people write it, else the error to report.
int readfraction(std::string_view text, parsedfraction &out)
{
    reader in(text);
    in.blanks();
    in.sign(out.negative);
    if (const vulgar *v = in.vulgarfraction()) {
        out = {out.negative, 0, true, v->numerator, v->denominator};
    } else {
        std::int32_t first = 0;
        if (const int error = in.integer(first))
            return error == 1 ? errnum::typemismatch : error;
        const bool gap = in.blanks();
        if (const vulgar *v = in.vulgarfraction()) {
            out.whole = first;
            out.hasfraction = true;
            out.numerator = v->numerator;
            out.denominator = v->denominator;
        } else if (in.slash()) {
            in.blanks();
            out.hasfraction = true;
            out.numerator = first;
            if (const int error = in.integer(out.denominator))
                return error == 1 ? errnum::typemismatch : error;
        } else if (gap && !in.atend()) {
            out.whole = first;
            out.hasfraction = true;
            if (const int error = in.integer(out.numerator))
                return error == 1 ? errnum::typemismatch : error;
            in.blanks();
            if (!in.slash())
                return errnum::typemismatch;
            in.blanks();
            if (const int error = in.integer(out.denominator))
                return error == 1 ? errnum::typemismatch : error;
        } else {
            out.whole = first;
        }
    }
    in.blanks();
    return in.atend() ? 0 : errnum::typemismatch;
}

// A value |x| = whole + remainder / scale with 0 <= remainder < scale, read without rounding.
struct exactvalue
{
    bool negative = false;
    std::int64_t whole = 0;
    u128 remainder = 0;
    u128 scale = 1;
};

constexpr int exactdecimals = 37;

// A plain decimal text in the host's separator. The first 37 decimals are read exactly; of the
// rest, only whether one is not zero counts (the value then lies just above the 37 read).
int readdecimal(std::string_view text, exactvalue &out)
{
    reader in(text);
    in.blanks();
    in.sign(out.negative);
    bool digits = false;
    bool big = false;
    while (in.peek() >= '0' && in.peek() <= '9') {
        out.whole = out.whole * 10 + (in.peek() - '0');
        big = big || out.whole > int32max;
        out.whole = std::min<std::int64_t>(out.whole, int32max + 1);
        digits = true;
        in.skip();
    }
    if (in.take(decimalseparator())) {
        int count = 0;
        bool sticky = false;
        while (in.peek() >= '0' && in.peek() <= '9') {
            const int digit = in.peek() - '0';
            if (count < exactdecimals) {
                out.remainder = out.remainder * 10 + u128(digit);
                out.scale *= 10;
                ++count;
            } else {
                sticky = sticky || digit != 0;
            }
            digits = true;
            in.skip();
        }
        if (sticky) {
            out.remainder = 2 * out.remainder + 1;
            out.scale *= 2;
        }
    }
    in.blanks();
    if (!digits || !in.atend())
        return errnum::typemismatch;
    return big ? errnum::overflow : 0;
}

// Digits with an optional sign, as a fraction record's part holds them: 0, or the error.
int readpart(std::string_view text, std::int64_t &value)
{
    reader in(text);
    in.blanks();
    bool negative = false;
    in.sign(negative);
    std::int32_t v = 0;
    const int error = in.integer(v);
    in.blanks();
    if (error == 1 || !in.atend())
        return errnum::typemismatch;
    value = v;
    return error;
}

// The value of a record: a decimal text alone in element 0, or whole part and fraction.
int readvalue(const FractionText &fraction, exactvalue &out)
{
    if (fraction[1].empty() && fraction[2].empty()) {
        if (fraction[0].empty())
            return 0;
        if (fraction[0] == "-") {
            out.negative = true;
            return 0;
        }
        return readdecimal(fraction[0], out);
    }
    std::int64_t whole = 0;
    std::int64_t numerator = 0;
    std::int64_t denominator = 0;
    const bool negative = !fraction[0].empty() && fraction[0].front() == '-';
    const std::string_view wholetext = fraction[0] == "-" ? std::string_view() : std::string_view(fraction[0]);
    if (!wholetext.empty()) {
        if (const int error = readpart(wholetext, whole))
            return error;
    }
    if (!fraction[1].empty()) {
        if (const int error = readpart(fraction[1], numerator))
            return error;
    }
    if (const int error = readpart(fraction[2], denominator))
        return fraction[2].empty() ? errnum::divisionbyzero : error;
    if (denominator == 0)
        return errnum::divisionbyzero;
    out.negative = negative;
    out.whole = whole + numerator / denominator;
    out.remainder = u128(numerator % denominator);
    out.scale = u128(denominator);
    return out.whole > int32max ? errnum::overflow : 0;
}

// a * b compared with c * d, exactly (128-bit by 64-bit products).
int compareproducts(u128 a, std::uint64_t b, u128 c, std::uint64_t d)
{
    auto product = [](u128 x, std::uint64_t y) {
        const u128 low = u128(std::uint64_t(x)) * y;
        const u128 high = (x >> 64) * y + (low >> 64);
        return std::pair<u128, std::uint64_t>{high, std::uint64_t(low)};
    };
    const auto left = product(a, b);
    const auto right = product(c, d);
    if (left != right)
        return left < right ? -1 : 1;
    return 0;
}

// The fraction p / q with q <= limit nearest to remainder / scale (which lies in [0, 1)), by the
// continued fraction of the value: the cost grows with its digits, never with the limit.
void nearest(u128 remainder, u128 scale, std::int64_t limit, std::int64_t &p, std::int64_t &q)
{
    std::int64_t p0 = 0, q0 = 1, p1 = 1, q1 = 0;
    u128 n = remainder;
    u128 d = scale;
    while (d != 0) {
        const u128 a = n / d;
        // q1 + a * q0 beyond the limit ends the expansion (a alone may exceed 64 bits).
        if (q1 != 0 && a > u128(limit))
            break;
        const std::int64_t a64 = std::int64_t(a);
        const std::int64_t q2 = q0 + a64 * q1;
        if (q2 > limit)
            break;
        const std::int64_t p2 = p0 + a64 * p1;
        p0 = p1;
        q0 = q1;
        p1 = p2;
        q1 = q2;
        const u128 r = n - a * d;
        n = d;
        d = r;
    }
    if (d == 0) {
        p = p1;
        q = q1;
        return;
    }
    // Between the last convergent p1/q1 and the best semiconvergent below the limit: the value
    // is (p1 t + p0) / (q1 t + q0) with t = n / d, so the semiconvergent with k is nearer when
    // q1 n < d (q0 + 2 k q1); on a tie the smaller denominator wins.
    const std::int64_t k = (limit - q0) / q1;
    const std::int64_t pk = p0 + k * p1;
    const std::int64_t qk = q0 + k * q1;
    const int order = compareproducts(n, std::uint64_t(q1), d, std::uint64_t(q0 + 2 * k * q1));
    const bool semiconvergent = order < 0 || (order == 0 && qk < q1);
    p = semiconvergent ? pk : p1;
    q = semiconvergent ? qk : q1;
}

} // namespace

FractionResult strparsefraction(std::string_view text)
{
    FractionResult result;
    guarded([&] {
        parsedfraction parsed;
        if (const int error = readfraction(text, parsed)) {
            report(error);
            return;
        }
        FractionText &record = result.emplace();
        if (!parsed.hasfraction) {
            // A zero with nothing after it is the empty value, without a sign.
            if (parsed.whole != 0)
                record[0] = (parsed.negative ? "-" : "") + parttext(parsed.whole);
            return;
        }
        record[0] = (parsed.negative ? "-" : "") + parttext(parsed.whole);
        record[1] = parttext(parsed.numerator);
        // A zero denominator is data here, as in the control's fields.
        record[2] = std::to_string(parsed.denominator);
    });
    return result;
}

std::string strformatfraction(const FractionText &fraction)
{
    std::string whole = fraction[0];
    if (!whole.empty() && whole.front() == '+')
        whole.erase(0, 1);
    // A whole number shows no fraction part, whatever the denominator holds ("5" for 5 0/1).
    const bool haswhole = !whole.empty() && whole != "-";
    if (fraction[1].empty() && (haswhole || fraction[2].empty()))
        return haswhole ? whole : std::string("0");
    std::string text = whole;
    if (!whole.empty() && whole != "-")
        text += ' ';
    text += fraction[1].empty() ? std::string("0") : fraction[1];
    text += '/';
    text += fraction[2].empty() ? std::string("0") : fraction[2];
    return text;
}

FractionResult strapproximate(const FractionText &fraction, std::int32_t maxdenominator)
{
    FractionResult result;
    guarded([&] {
        if (maxdenominator < 1) {
            report(errnum::invalidcall);
            return;
        }
        exactvalue value;
        if (const int error = readvalue(fraction, value)) {
            report(error);
            return;
        }
        std::int64_t p = 0;
        std::int64_t q = 1;
        nearest(value.remainder, value.scale, maxdenominator, p, q);
        // The nearest fraction may be the next whole number.
        std::int64_t whole = value.whole;
        if (p == q) {
            ++whole;
            p = 0;
        }
        if (whole > int32max) {
            report(errnum::overflow);
            return;
        }
        FractionText &record = result.emplace();
        const bool zero = whole == 0 && p == 0;
        record[0] = (value.negative && !zero ? "-" : "") + parttext(std::int32_t(whole));
        record[1] = parttext(std::int32_t(p));
        record[2] = parttext(std::int32_t(q));
    });
    return result;
}

} // namespace modfracglobal
