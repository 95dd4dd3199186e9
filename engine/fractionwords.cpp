// Fractions in words, as people say them: for speech output and screen readers.
#include "modfracglobal.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace modfracglobal {

namespace {

// Numbers below this are spoken in words; larger ones stay digits, which every speech
// synthesizer reads as a number anyway.
constexpr std::int64_t wordlimit = 1000000;

constexpr std::array<std::string_view, 20> units{
    "zero",    "one",     "two",       "three",    "four",     "five",    "six",
    "seven",   "eight",   "nine",      "ten",      "eleven",   "twelve",  "thirteen",
    "fourteen", "fifteen", "sixteen",  "seventeen", "eighteen", "nineteen"};
constexpr std::array<std::string_view, 10> tens{"",      "",      "twenty",  "thirty", "forty",
                                                "fifty", "sixty", "seventy", "eighty", "ninety"};

bool isdigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The value of a digit text below wordlimit, or -1.
std::int64_t smallvalue(std::string_view digits)
{
    if (!isdigits(digits))
        return -1;
    std::int64_t value = 0;
    for (const char c : digits) {
        value = value * 10 + (c - '0');
        if (value >= wordlimit)
            return -1;
    }
    return value;
}

// British usage: "one hundred and one", "two thousand and five".
std::string numberwords(std::int64_t n)
{
    if (n < 20)
        return std::string(units[std::size_t(n)]);
    if (n < 100) {
        std::string text(tens[std::size_t(n / 10)]);
        if (n % 10 != 0)
            text += "-" + std::string(units[std::size_t(n % 10)]);
        return text;
    }
    const std::int64_t scale = n < 1000 ? 100 : 1000;
    std::string text = numberwords(n / scale) + (scale == 100 ? " hundred" : " thousand");
    const std::int64_t rest = n % scale;
    if (rest != 0)
        text += (rest < 100 ? " and " : " ") + numberwords(rest);
    return text;
}

// A part as spoken: words for a small number, otherwise the text as written.
std::string partwords(std::string_view part)
{
    const std::int64_t value = smallvalue(part);
    return value >= 0 ? numberwords(value) : std::string(part);
}

// The ordinal a denominator is named by ("seventh", "quarter"), or nothing when it is read
// "over" the number: the ordinals are kept to 2 to 20, the round tens, 100 and 1000, where
// they cannot be mistaken for something else.
std::string ordinal(std::int64_t d)
{
    static constexpr std::array<std::string_view, 21> small{
        "",          "",           "half",       "third",      "quarter",     "fifth",     "sixth",
        "seventh",   "eighth",     "ninth",      "tenth",      "eleventh",    "twelfth",   "thirteenth",
        "fourteenth", "fifteenth", "sixteenth",  "seventeenth", "eighteenth", "nineteenth", "twentieth"};
    if (d >= 2 && d <= 20)
        return std::string(small[std::size_t(d)]);
    if (d > 20 && d < 100 && d % 10 == 0) {
        std::string text(tens[std::size_t(d / 10)]);
        text.back() = 'i'; // twenty -> twentieth
        return text + "eth";
    }
    if (d == 100)
        return "hundredth";
    if (d == 1000)
        return "thousandth";
    return {};
}

std::string fractionwords(std::string_view numer, std::string_view denom)
{
    const std::int64_t n = smallvalue(numer);
    const std::int64_t d = smallvalue(denom);
    const std::string name = n >= 0 && d >= 0 ? ordinal(d) : std::string();
    if (name.empty())
        return partwords(numer) + " over " + partwords(denom);
    if (n == 1)
        return "one " + name;
    return numberwords(n) + " " + (d == 2 ? std::string("halves") : name + "s");
}

} // namespace

std::string strspeakfraction(const FractionText &fraction)
{
    std::string_view whole = fraction[0];
    std::string sign;
    if (!whole.empty() && (whole.front() == '-' || whole.front() == '+')) {
        sign = whole.front() == '-' ? "minus" : "plus";
        whole.remove_prefix(1);
    }
    const bool haspart = !fraction[1].empty() && !fraction[2].empty();
    std::string text = sign;
    auto append = [&text](std::string_view words) {
        if (!text.empty())
            text += ' ';
        text += words;
    };
    if (!whole.empty())
        append(partwords(whole));
    if (haspart) {
        if (!whole.empty())
            append("and");
        append(fractionwords(fraction[1], fraction[2]));
    }
    return text.empty() ? std::string("zero") : text;
}

} // namespace modfracglobal
