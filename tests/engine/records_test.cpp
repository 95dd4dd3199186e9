#include "decimalreference.h"
#include "enginetest.h"

#include <numeric>
#include <random>

namespace enginetest {

TEST_P(routinetest, recordmessagesandrows)
{
    const call &c = GetParam();
    pinnedlocale locale(c.decimal);
    messagecapture capture;
    FractionList rows = c.rows;
    EXPECT_EQ(c.run(rows), c.expected);
    EXPECT_EQ(capture.shown, c.shown);
    EXPECT_EQ(rows, c.after.empty() ? c.rows : c.after);
}

namespace {

const routine reduce = onrow(strreduce), tomixed = onrow(strfractomixed), tofrac = onrow(strmixedtofrac),
              invert = onrow(strinvert), fromdecimal = onrow(strdecimaltofrac);
const auto expand = [](std::int32_t factor) { return onrow(strexpand, factor); };
const auto todecimal = [](std::int32_t decimals) { return onrow(strfractodecimal, decimals); };

INSTANTIATE_TEST_SUITE_P(normalforms, routinetest, ::testing::Values(
    call{"reduce keeps the whole part", reduce, {{"-1", "6", "8"}}, rec("-1", "3", "4")},
    call{"reduce writes plus as nothing", reduce, {{"+2", "2", "4"}}, rec("2", "1", "2")},
    call{"0/5 reduces to empty over 1", reduce, {{"", "0", "5"}}, rec("", "", "1")},
    call{"improper stays improper", reduce, {{"2", "10", "4"}}, rec("2", "5", "2")},
    call{"reduce reads grouping in comma locale", reduce, {{"", "1.000", "2.000"}}, rec("", "1", "2"), {}, {}, ","},
    call{"0/0 reports every failing step", reduce, {{"", "0", "0"}}, unallocated,
         {subscript, subscript, subscript, subscript, divbyzero}},
    call{"bad numerator reads as zero", reduce, {{"", "abc", "4"}}, rec("", "", "1"), {mismatch}},

    call{"-7/3 to mixed", tomixed, {{"-", "7", "3"}}, rec("-2", "1", "3")},
    call{"whole remainder keeps the denominator", tomixed, {{"1", "8", "4"}}, rec("3", "", "4")},
    call{"to mixed by zero", tomixed, {{"1", "1", "0"}}, unallocated, {divbyzero}},
    call{"to mixed past the largest whole", tomixed, {{"2147483647", "2", "1"}}, unallocated, {overflow}},

    call{"expand keeps whole and sign", expand(2), {{"-1", "1", "2"}}, rec("-1", "2", "4")},
    call{"expand by 0 leaves it", expand(0), {{"", "1", "2"}}, rec("", "1", "2")},
    call{"expand past 32 bits", expand(65536), {{"", "65536", "1"}}, unallocated, {overflow}},
    // Every part is read, with its message, before the arithmetic that can overflow.
    call{"expand reads the denominator first", expand(74092), {{"", "1073741823", "abc"}}, unallocated,
         {mismatch, overflow}},

    call{"-3 1/4 to improper", tofrac, {{"-3", "1", "4"}}, rec("-", "13", "4")},
    call{"whole number over 1", tofrac, {{"5", "", ""}}, rec("", "5", "1")},
    call{"empty numerator over 4", tofrac, {{"2", "", "4"}}, rec("", "8", "4")},
    call{"numerator without denominator is dropped", tofrac, {{"", "3", ""}}, rec("", "", "1")},
    call{"lone minus stays", tofrac, {{"-", "3", "4"}}, rec("-", "3", "4")},
    call{"decimal text is no mixed number", tofrac, {{"2,5", "", ""}}, rec("2,5", "", "")},
    call{"percent text is no mixed number", tofrac, {{"12%", "1", "2"}}, rec("12%", "1", "2")},
    call{"to improper past 32 bits", tofrac, {{"2147483647", "1", "2"}}, unallocated, {overflow}},

    call{"1 1/2 inverts to 2/3", invert, {{"1", "1", "2"}}, rec("", "2", "3")},
    call{"-3/4 inverts to -4/3", invert, {{"-", "3", "4"}}, rec("-", "4", "3")},
    call{"whole number is not inverted", invert, {{"3", "", ""}}, rec("3", "", "")},
    call{"zero has no inverse", invert, {{"", "0", "5"}}, unallocated, {mismatch}},
    call{"failed improper form", invert, {{"2147483647", "1", "2"}}, unallocated, {overflow, subscript}}), casename);

// Ordinary conversions are checked against the double computation below; these are the edges.
INSTANTIATE_TEST_SUITE_P(decimals, routinetest, ::testing::Values(
    call{"tie rounds to even", todecimal(2), {{"-", "5", "8"}}, rec("-0.62", "", "")},
    call{"negative zero keeps its sign", todecimal(2), {{"-", "0", "5"}}, rec("-0", "", "")},
    call{"whole number is not converted", todecimal(2), {{"7", "", ""}}, rec("7", "", "")},
    call{"decimal by zero", todecimal(2), {{"1", "1", "0"}}, unallocated, {divbyzero}},
    call{"negative decimals", todecimal(-1), {{"", "1", "2"}}, unallocated, {badcall}},
    // A sign in a part counts for nothing: the whole part carries the sign.
    call{"signed numerator", todecimal(2), {{"", "-1", "4"}}, rec("0.25", "", "")},

    // Read as 25 by the locale, one decimal counted after the comma: hosts rely on both.
    call{"2,5 in a dot locale", fromdecimal, {{"2,5", "", ""}}, rec("25", "", "10")},
    call{"0.125 in a comma locale", fromdecimal, {{"0.125", "", ""}}, rec("125", "", "1000"), {}, {}, ","},
    call{"ten decimals overflow", fromdecimal, {{"0.1234567891", "", ""}}, unallocated, {overflow}},
    call{"empty stays", fromdecimal, {{"", "", ""}}, rec("", "", "")},
    call{"percent stays", fromdecimal, {{"12%", "", ""}}, rec("12%", "", "")},
    call{"fraction parts stay", fromdecimal, {{"1.5", "1", ""}}, rec("1.5", "1", "")}), casename);

// Random 32-bit values through the conversions whose results are known exactly.
TEST(normalforms, randomvaluesreduceandconvertexactly)
{
    messagecapture capture;
    std::mt19937 random(3);
    std::uniform_int_distribution<std::int32_t> value(1, std::numeric_limits<std::int32_t>::max());
    for (int round = 0; round < 20000; ++round) {
        const std::int32_t n = value(random), d = value(random), g = std::gcd(n, d);
        const FractionText mixed{parttext(n / d), parttext(n % d), parttext(d)};
        ASSERT_EQ(strreduce({"-", parttext(n), parttext(d)}), rec("-", parttext(n / g), parttext(d / g)));
        ASSERT_EQ(strfractomixed({"", parttext(n), parttext(d)}), mixed);
        ASSERT_EQ(strmixedtofrac(mixed), rec("", parttext(n), parttext(d)));
    }
    EXPECT_TRUE(capture.shown.empty());
}

// Texts at the limits of the fast readings, then random values of every size, where the exact
// shortcuts and the double's way take turns.
TEST(decimalconversions, matchthedoublecomputation)
{
    messagecapture capture;
    std::mt19937_64 random(11);
    const auto draw = [&random](std::uint64_t below) { return static_cast<std::int32_t>(random() % below); };
    const std::uint64_t sizes[] = {10, 1000, 100000, 2147483648ull};
    const auto anysize = [&] { return sizes[random() % 4]; };
    for (const auto &[text, separator] : {std::pair{"214748364.712345", "."}, {"2147483647.123456789", "."},
                                          {"2147483647,123456789", ","}, {"-2147483647.5", "."}, {"2147483648.5", "."},
                                          {"-000000000000000000001.25", "."}, {"12.", "."}, {".5", "."}, {"1.25", ","},
                                          {"1.2.5", "."}, {"+1.5", "."}, {"0.3333333333333333333333", "."}}) {
        pinnedlocale locale(separator);
        EXPECT_EQ(strdecimaltofrac({text, "", ""}), decimalreference::fromdecimal(text)) << text;
    }
    for (const std::string separator : {".", ","}) {
        pinnedlocale locale(separator);
        for (int round = 0; round < 20000; ++round) {
            const std::string sign = random() % 2 ? "-" : "";
            const FractionText f{sign + parttext(draw(anysize())), std::to_string(draw(anysize())),
                                 parttext(1 + draw(anysize() - 1))};
            const std::int32_t decimals = draw(18);
            ASSERT_EQ((*strfractodecimal(f, decimals))[0], decimalreference::todecimal(f, decimals))
                << ::testing::PrintToString(f) << decimals;

            std::string text = sign + std::to_string(draw(anysize()));
            const std::int32_t places = draw(12);
            if (places > 0)
                text += separator + std::to_string(draw(2147483648ull)).substr(0, std::size_t(places));
            ASSERT_EQ(strdecimaltofrac({text, "", ""}), decimalreference::fromdecimal(text)) << text;
        }
    }
}

} // namespace
} // namespace enginetest
