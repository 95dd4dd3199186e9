#include "enginetest.h"

#include <functional>
#include <numeric>
#include <random>

namespace enginetest {
namespace {

using routine = std::function<FractionResult(const FractionText &)>;

struct recordcase
{
    std::string name;
    routine call;
    FractionText input;
    FractionResult expected;
    messages shown = {};
    std::string decimal = ".";
};

class recordtest : public ::testing::TestWithParam<recordcase>
{
};

TEST_P(recordtest, resultandmessages)
{
    const recordcase &c = GetParam();
    pinnedlocale locale(c.decimal);
    messagecapture capture;
    const FractionText input = c.input;
    const FractionResult result = c.call(input);
    EXPECT_EQ(show(result), show(c.expected));
    EXPECT_EQ(capture.shown, c.shown);
    EXPECT_EQ(input, c.input) << "the argument is left unchanged";
}

const routine reduce = strreduce;
const routine tomixed = strfractomixed;
const routine tofrac = strmixedtofrac;
const routine invert = strinvert;
routine expand(std::int32_t factor)
{
    return [factor](const FractionText &f) { return strexpand(f, factor); };
}
routine todecimal(std::int32_t decimals)
{
    return [decimals](const FractionText &f) { return strfractodecimal(f, decimals); };
}
const routine fromdecimal = strdecimaltofrac;
const FractionResult unallocated;

FractionResult rec(std::string w, std::string n, std::string d)
{
    return FractionText{std::move(w), std::move(n), std::move(d)};
}

INSTANTIATE_TEST_SUITE_P(
    normalforms, recordtest,
    ::testing::Values(
        recordcase{"6/8 reduces to 3/4", reduce, {"", "6", "8"}, rec("", "3", "4")},
        recordcase{"reduce keeps the whole part", reduce, {"-1", "6", "8"}, rec("-1", "3", "4")},
        recordcase{"reduce keeps a lone minus", reduce, {"-", "6", "8"}, rec("-", "3", "4")},
        recordcase{"reduce writes plus as nothing", reduce, {"+2", "2", "4"}, rec("2", "1", "2")},
        recordcase{"0/5 reduces to empty over 1", reduce, {"", "0", "5"}, rec("", "", "1")},
        recordcase{"improper stays improper", reduce, {"2", "10", "4"}, rec("2", "5", "2")},
        recordcase{"reduce leaves a whole number", reduce, {"4", "", ""}, rec("4", "", "")},
        recordcase{"reduce reads grouping in comma locale", reduce, {"", "1.000", "2.000"}, rec("", "1", "2"), {}, ","},
        recordcase{"0/0 reports every failing step", reduce, {"", "0", "0"}, unallocated,
                   {subscript, subscript, subscript, subscript, divbyzero}},
        recordcase{"bad numerator reads as zero", reduce, {"", "abc", "4"}, rec("", "", "1"), {mismatch}},
        recordcase{"numerator beyond 32 bits", reduce, {"", "2147483648", "2"}, rec("", "", "1"), {overflow}},

        recordcase{"7/3 to mixed", tomixed, {"", "7", "3"}, rec("2", "1", "3")},
        recordcase{"-7/3 to mixed", tomixed, {"-", "7", "3"}, rec("-2", "1", "3")},
        recordcase{"whole remainder keeps the denominator", tomixed, {"1", "8", "4"}, rec("3", "", "4")},
        recordcase{"to mixed by zero", tomixed, {"1", "1", "0"}, unallocated, {divbyzero}},
        recordcase{"to mixed past the largest whole", tomixed, {"2147483647", "2", "1"}, unallocated, {overflow}},

        recordcase{"1/2 expanded by 3", expand(3), {"", "1", "2"}, rec("", "3", "6")},
        recordcase{"expand keeps whole and sign", expand(2), {"-1", "1", "2"}, rec("-1", "2", "4")},
        recordcase{"expand by 0 leaves it", expand(0), {"", "1", "2"}, rec("", "1", "2")},
        recordcase{"expand by -2 leaves it", expand(-2), {"", "1", "2"}, rec("", "1", "2")},
        recordcase{"expand past 32 bits", expand(65536), {"", "65536", "1"}, unallocated, {overflow}},

        recordcase{"-3 1/4 to improper", tofrac, {"-3", "1", "4"}, rec("-", "13", "4")},
        recordcase{"whole number over 1", tofrac, {"5", "", ""}, rec("", "5", "1")},
        recordcase{"empty numerator over 4", tofrac, {"2", "", "4"}, rec("", "8", "4")},
        recordcase{"numerator without denominator is dropped", tofrac, {"", "3", ""}, rec("", "", "1")},
        recordcase{"lone minus stays", tofrac, {"-", "3", "4"}, rec("-", "3", "4")},
        recordcase{"decimal text is no mixed number", tofrac, {"2,5", "", ""}, rec("2,5", "", "")},
        recordcase{"percent text is no mixed number", tofrac, {"12%", "1", "2"}, rec("12%", "1", "2")},
        recordcase{"empty fraction stays empty", tofrac, {"", "", ""}, rec("", "", "")},
        recordcase{"to improper past 32 bits", tofrac, {"2147483647", "1", "2"}, unallocated, {overflow}},

        recordcase{"1 1/2 inverts to 2/3", invert, {"1", "1", "2"}, rec("", "2", "3")},
        recordcase{"-3/4 inverts to -4/3", invert, {"-", "3", "4"}, rec("-", "4", "3")},
        recordcase{"2/5 inverts to 5/2", invert, {"", "2", "5"}, rec("", "5", "2")},
        recordcase{"whole number is not inverted", invert, {"3", "", ""}, rec("3", "", "")},
        recordcase{"zero has no inverse", invert, {"", "0", "5"}, unallocated, {mismatch}},
        recordcase{"failed improper form", invert, {"2147483647", "1", "2"}, unallocated, {overflow, subscript}}),
    casename());

INSTANTIATE_TEST_SUITE_P(
    decimals, recordtest,
    ::testing::Values(
        recordcase{"1 1/3 to 2 places", todecimal(2), {"1", "1", "3"}, rec("1.33", "", "")},
        recordcase{"1 1/3 to 2 places comma", todecimal(2), {"1", "1", "3"}, rec("1,33", "", ""), {}, ","},
        recordcase{"tie rounds to even 0.62", todecimal(2), {"-", "5", "8"}, rec("-0.62", "", "")},
        recordcase{"tie rounds to even 0.38", todecimal(2), {"", "3", "8"}, rec("0.38", "", "")},
        recordcase{"2/3 to 0 places", todecimal(0), {"", "2", "3"}, rec("1", "", "")},
        recordcase{"2/3 to 4 places comma", todecimal(4), {"", "2", "3"}, rec("0,6667", "", ""), {}, ","},
        recordcase{"no trailing zeros", todecimal(3), {"", "1", "2"}, rec("0.5", "", "")},
        recordcase{"at most 15 digits", todecimal(20), {"", "1", "3"}, rec("0.333333333333333", "", "")},
        recordcase{"whole part is not rounded", todecimal(0), {"-7", "1", "4"}, rec("-7", "", "")},
        recordcase{"negative zero keeps its sign", todecimal(2), {"-", "0", "5"}, rec("-0", "", "")},
        recordcase{"whole number is not converted", todecimal(2), {"7", "", ""}, rec("7", "", "")},
        recordcase{"decimal by zero", todecimal(2), {"1", "1", "0"}, unallocated, {divbyzero}},
        recordcase{"negative decimals", todecimal(-1), {"", "1", "2"}, unallocated, {badcall}},

        recordcase{"2.75", fromdecimal, {"2.75", "", ""}, rec("2", "75", "100")},
        recordcase{"2,75 comma", fromdecimal, {"2,75", "", ""}, rec("2", "75", "100"), {}, ","},
        recordcase{"-0.5", fromdecimal, {"-0.5", "", ""}, rec("-", "5", "10")},
        recordcase{"3 has no decimals", fromdecimal, {"3", "", ""}, rec("3", "", "1")},
        recordcase{"2.675 keeps 675", fromdecimal, {"2.675", "", ""}, rec("2", "675", "1000")},
        recordcase{"0,125 comma", fromdecimal, {"0,125", "", ""}, rec("", "125", "1000"), {}, ","},
        // Read as 25 by the locale, one decimal counted after the comma: hosts rely on both.
        recordcase{"2,5 in a dot locale", fromdecimal, {"2,5", "", ""}, rec("25", "", "10")},
        recordcase{"0.125 in a comma locale", fromdecimal, {"0.125", "", ""}, rec("125", "", "1000"), {}, ","},
        recordcase{"nine decimals fit", fromdecimal, {"0.123456789", "", ""}, rec("", "123456789", "1000000000")},
        recordcase{"ten decimals overflow", fromdecimal, {"0.1234567891", "", ""}, unallocated, {overflow}},
        recordcase{"a thousand decimals overflow", fromdecimal, {"0." + std::string(1000, '3'), "", ""}, unallocated,
                   {overflow}},
        recordcase{"whole part beyond 32 bits", fromdecimal, {"3000000000.5", "", ""}, unallocated, {overflow}},
        recordcase{"not a number", fromdecimal, {"abc", "", ""}, unallocated, {mismatch}},
        recordcase{"empty stays", fromdecimal, {"", "", ""}, rec("", "", "")},
        recordcase{"percent stays", fromdecimal, {"12%", "", ""}, rec("12%", "", "")},
        recordcase{"fraction parts stay", fromdecimal, {"1.5", "1", ""}, rec("1.5", "1", "")}),
    casename());

} // namespace
} // namespace enginetest

namespace enginetest {
namespace {

// Random 32-bit values through the conversions whose results are known exactly.
TEST(normalforms, randomvaluesreduceandconvertexactly)
{
    pinnedlocale locale(".");
    messagecapture capture;
    std::mt19937 random(3);
    std::uniform_int_distribution<std::int32_t> value(1, std::numeric_limits<std::int32_t>::max());
    for (int round = 0; round < 20000; ++round) {
        const std::int32_t n = value(random);
        const std::int32_t d = value(random);
        const std::int32_t g = std::gcd(n, d);
        ASSERT_EQ(show(strreduce({"-", std::to_string(n), std::to_string(d)})),
                  show(FractionText{"-", parttext(n / g), parttext(d / g)}));
        ASSERT_EQ(show(strfractomixed({"", std::to_string(n), std::to_string(d)})),
                  show(FractionText{parttext(n / d), parttext(n % d), parttext(d)}));
        const FractionText mixed{parttext(n / d), parttext(n % d), parttext(d)};
        ASSERT_EQ(show(strmixedtofrac(mixed)), show(FractionText{"", parttext(n), parttext(d)}));
    }
    EXPECT_EQ(capture.shown, none);
}

} // namespace
} // namespace enginetest
