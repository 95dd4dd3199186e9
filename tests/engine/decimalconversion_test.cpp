// The decimal conversions against the plain double computation they stand for: whole part and
// numerator over denominator rounded in a double, then written by doubletotext(); a decimal text
// read by texttodouble(), its decimals counted by decimalcount(). Fast readings and writings of
// the usual values must agree with it to the character, on both sides of where they give up.

#include "enginetest.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <random>

namespace enginetest {
namespace {

std::string reftodecimal(const FractionText &f, std::int32_t decimals)
{
    const double value = roundtodecimals(double(partvalue(f[1])) / double(partvalue(f[2])), decimals)
                         + double(partvalue(f[0]));
    return f[0].starts_with("-") ? "-" + doubletotext(std::fabs(value)) : doubletotext(value);
}

FractionResult reffromdecimal(const std::string &text)
{
    try {
        const double x = texttodouble(text);
        const double integral = std::trunc(x);
        const std::int32_t k = decimalcount(text);
        const double scale = k > 308 ? HUGE_VAL : std::pow(10.0, k);
        const std::int32_t w = roundtolong(std::fabs(integral));
        const std::int32_t n = roundtolong((x - integral) * scale);
        const std::int32_t d = roundtolong(scale);
        if (n == std::numeric_limits<std::int32_t>::min())
            return std::nullopt;
        return FractionText{(text.starts_with("-") ? "-" : "") + parttext(w), parttext(n < 0 ? -n : n),
                            parttext(d)};
    } catch (const automationerror &) {
        return std::nullopt;
    }
}

struct todecimalcase
{
    std::string name;
    FractionText fraction;
    std::int32_t decimals;
    std::string expected;
};

void PrintTo(const todecimalcase &c, std::ostream *os)
{
    *os << c.name;
}

class todecimaltest : public ::testing::TestWithParam<todecimalcase>
{
};

TEST_P(todecimaltest, matchesthedoubletext)
{
    const todecimalcase &c = GetParam();
    for (const std::string separator : {".", ","}) {
        pinnedlocale locale(separator);
        std::string expected = c.expected;
        std::replace(expected.begin(), expected.end(), '.', separator[0]);
        const FractionResult result = strfractodecimal(c.fraction, c.decimals);
        ASSERT_TRUE(result.has_value()) << separator;
        EXPECT_EQ((*result)[0], expected) << separator;
        EXPECT_EQ((*result)[0], reftodecimal(c.fraction, c.decimals)) << separator;
    }
}

INSTANTIATE_TEST_SUITE_P(
    limits, todecimaltest,
    ::testing::Values(
        todecimalcase{"fifteen digits", {"2147483647", "1", "3"}, 5, "2147483647.33333"},
        todecimalcase{"sixteen digits round to fifteen", {"2147483647", "2", "3"}, 6, "2147483647.66667"},
        todecimalcase{"improper fraction carries", {"-2147483647", "2147483647", "2"}, 3, "-3221225470.5"},
        todecimalcase{"zeros in the decimals", {"", "1", "1000"}, 4, "0.001"},
        todecimalcase{"ten thousandth", {"", "1", "10000"}, 6, "0.0001"},
        todecimalcase{"below a ten thousandth takes an exponent", {"", "1", "100000"}, 6, "1E-05"},
        todecimalcase{"fourteen decimals", {"", "1", "7"}, 14, "0.14285714285714"},
        todecimalcase{"fifteen decimals", {"", "1", "7"}, 15, "0.142857142857143"},
        todecimalcase{"rounds up to a whole", {"9", "99999", "100000"}, 2, "10"},
        todecimalcase{"largest parts", {"2147483647", "2147483647", "1"}, 0, "4294967294"},
        // A sign in a part counts for nothing: the whole part carries the sign.
        todecimalcase{"signed numerator", {"", "-1", "4"}, 2, "0.25"}),
    casename());

struct fromdecimalcase
{
    std::string name;
    std::string text;
    std::string separator;
};

void PrintTo(const fromdecimalcase &c, std::ostream *os)
{
    *os << c.name;
}

class fromdecimaltest : public ::testing::TestWithParam<fromdecimalcase>
{
};

TEST_P(fromdecimaltest, matchesthedoublereading)
{
    const fromdecimalcase &c = GetParam();
    pinnedlocale locale(c.separator);
    messagecapture capture;
    EXPECT_EQ(show(strdecimaltofrac({c.text, "", ""})), show(reffromdecimal(c.text)));
}

INSTANTIATE_TEST_SUITE_P(
    limits, fromdecimaltest,
    ::testing::Values(
        fromdecimalcase{"fifteen digits", "214748364.712345", "."},
        fromdecimalcase{"nineteen digits lose the last decimals", "2147483647.123456789", "."},
        fromdecimalcase{"nineteen digits comma", "2147483647,123456789", ","},
        fromdecimalcase{"whole part at the limit", "-2147483647.5", "."},
        fromdecimalcase{"whole part beyond the limit", "2147483648.5", "."},
        fromdecimalcase{"leading zeros", "-000000000000000000001.25", "."},
        fromdecimalcase{"separator without decimals", "12.", "."},
        fromdecimalcase{"separator first", ".5", "."},
        fromdecimalcase{"other mark in a dot locale", "1,25", "."},
        fromdecimalcase{"other mark in a comma locale", "1.25", ","},
        fromdecimalcase{"two separators", "1.2.5", "."},
        fromdecimalcase{"signed with plus", "+1.5", "."}),
    casename());

// Random values of every size, where the exact shortcuts and the double's way take turns.
TEST(decimalconversions, randomvaluesmatchthedoublecomputation)
{
    messagecapture capture;
    std::mt19937_64 random(11);
    const auto draw = [&random](std::uint64_t below) { return static_cast<std::int32_t>(random() % below); };
    for (const std::string separator : {".", ","}) {
        pinnedlocale locale(separator);
        for (int round = 0; round < 20000; ++round) {
            const std::uint64_t sizes[] = {10, 1000, 100000, 2147483648ull};
            const std::string sign = random() % 2 ? "-" : "";
            const FractionText f{sign + parttext(draw(sizes[random() % 4])), std::to_string(draw(sizes[random() % 4])),
                                 std::to_string(1 + draw(sizes[random() % 4] - 1))};
            const std::int32_t decimals = draw(18);
            ASSERT_EQ((*strfractodecimal(f, decimals))[0], reftodecimal(f, decimals)) << show(f) << decimals;

            std::string text = sign + std::to_string(draw(sizes[random() % 4]));
            const std::int32_t places = draw(12);
            if (places > 0)
                text += separator + std::to_string(draw(2147483648ull)).substr(0, std::size_t(places));
            ASSERT_EQ(show(strdecimaltofrac({text, "", ""})), show(reffromdecimal(text))) << text;
        }
    }
}

} // namespace
} // namespace enginetest
