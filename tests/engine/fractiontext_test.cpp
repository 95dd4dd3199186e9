// Fractions as people write them, their text, and the nearest fraction under a denominator limit.
#include "enginetest.h"

#include <fstream>
#include <sstream>

namespace {

using namespace enginetest;

struct parsecase
{
    std::string name;
    std::string text;
    FractionResult expected;
    messages shown;
};

class parsefraction : public ::testing::TestWithParam<parsecase>
{
};

TEST_P(parsefraction, readsandwritesback)
{
    messagecapture capture;
    const parsecase &c = GetParam();
    const FractionResult record = strparsefraction(c.text);
    EXPECT_EQ(show(record), show(c.expected));
    EXPECT_EQ(capture.shown, c.shown);
    if (record) {
        // What the formatter writes reads back into the same record.
        EXPECT_EQ(show(strparsefraction(strformatfraction(*record))), show(record));
    }
}

const FractionResult nothing;

INSTANTIATE_TEST_SUITE_P(
    engine, parsefraction,
    ::testing::Values(
        parsecase{"whole", "3", FractionText{"3", "", ""}, none},
        parsecase{"negative_whole", " -3 ", FractionText{"-3", "", ""}, none},
        parsecase{"zero_is_empty", "0", FractionText{"", "", ""}, none},
        parsecase{"fraction_kept_unreduced", "6/8", FractionText{"", "6", "8"}, none},
        parsecase{"improper_stays", "+7/4", FractionText{"", "7", "4"}, none},
        parsecase{"negative_fraction", "-2/3", FractionText{"-", "2", "3"}, none},
        parsecase{"mixed", "-1 2/3", FractionText{"-1", "2", "3"}, none},
        parsecase{"blanks_around_the_slash", "1  2 / 3", FractionText{"1", "2", "3"}, none},
        parsecase{"unicode_minus_and_fraction_slash", "\u22121 2\u20443", FractionText{"-1", "2", "3"}, none},
        parsecase{"vulgar_after_whole", "1\u2154", FractionText{"1", "2", "3"}, none},
        parsecase{"vulgar_after_no_break_space", "-1\u00A0\u00BE", FractionText{"-1", "3", "4"}, none},
        parsecase{"vulgar_alone", "\u215E", FractionText{"", "7", "8"}, none},
        parsecase{"zero_numerator", "0/5", FractionText{"", "", "5"}, none},
        parsecase{"zero_denominator_is_data", "1/0", FractionText{"", "1", "0"}, none},
        parsecase{"largest_parts", "2147483647 1/2147483647", FractionText{"2147483647", "1", "2147483647"}, none},
        parsecase{"decimal", "1.5", nothing, {mismatch}},
        parsecase{"decimal_comma", "2,5", nothing, {mismatch}},
        parsecase{"percent", "12%", nothing, {mismatch}},
        parsecase{"doubled_sign", "+-3", nothing, {mismatch}},
        parsecase{"sign_inside", "1 -2/3", nothing, {mismatch}},
        parsecase{"two_numbers", "1 2", nothing, {mismatch}},
        parsecase{"missing_denominator", "2/", nothing, {mismatch}},
        parsecase{"empty", "  ", nothing, {mismatch}},
        parsecase{"part_beyond_32_bits", "1/2147483648", nothing, {overflow}}),
    casename{});

struct approxcase
{
    std::string name;
    FractionText value;
    std::int32_t limit;
    FractionResult expected;
    messages shown;
};

class approximate : public ::testing::TestWithParam<approxcase>
{
};

TEST_P(approximate, nearestfraction)
{
    pinnedlocale locale(".");
    messagecapture capture;
    const approxcase &c = GetParam();
    EXPECT_EQ(show(strapproximate(c.value, c.limit)), show(c.expected));
    EXPECT_EQ(capture.shown, c.shown);
}

INSTANTIATE_TEST_SUITE_P(
    engine, approximate,
    ::testing::Values(
        approxcase{"sixteenths", {"0.3125", "", ""}, 16, FractionText{"", "5", "16"}, none},
        approxcase{"pi_to_a_million", {"3.141592653589793238462", "", ""}, 1000000,
                   FractionText{"3", "140914", "995207"}, none},
        approxcase{"every_digit_counts", {"0.1234567890123", "", ""}, 2147483647,
                   FractionText{"", "108363171", "877741693"}, none},
        approxcase{"mixed_parts_fit", {"3.141592653589793", "", ""}, 2147483647,
                   FractionText{"3", "146682708", "1035948577"}, none},
        approxcase{"whole_result", {"3", "", ""}, 10, FractionText{"3", "", "1"}, none},
        approxcase{"rounds_up_to_whole", {"-2.999", "", ""}, 10, FractionText{"-3", "", "1"}, none},
        approxcase{"rounds_to_zero", {"-0.01", "", ""}, 10, FractionText{"", "", "1"}, none},
        approxcase{"tie_to_smaller_denominator", {"0.25", "", ""}, 3, FractionText{"", "1", "3"}, none},
        approxcase{"record", {"-1", "22", "7"}, 7, FractionText{"-4", "1", "7"}, none},
        approxcase{"no_number", {"1/2", "", ""}, 10, nothing, {mismatch}},
        approxcase{"whole_part_beyond_32_bits", {"2147483647", "5", "2"}, 10, nothing, {overflow}},
        approxcase{"zero_denominator", {"", "1", "0"}, 10, nothing, {divbyzero}},
        approxcase{"limit_below_one", {"0.5", "", ""}, 0, nothing, {badcall}}),
    casename{});

// Python's fractions.Fraction.limit_denominator on random decimals (approximate_reference.py).
TEST(approximate, agreeswithreference)
{
    pinnedlocale locale(".");
    messagecapture capture;
    std::ifstream file(KEL_APPROXIMATE_REFERENCE);
    ASSERT_TRUE(file) << KEL_APPROXIMATE_REFERENCE;
    std::string line;
    int rows = 0;
    auto part = [](const std::string &text) { return text == "_" ? std::string() : text; };
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        std::string decimal, whole, numerator, denominator;
        std::int32_t limit = 0;
        fields >> decimal >> limit >> whole >> numerator >> denominator;
        const FractionText expected{part(whole), part(numerator), denominator};
        ASSERT_EQ(show(strapproximate({decimal, "", ""}, limit)), show(expected)) << line;
        ++rows;
    }
    EXPECT_EQ(rows, 3000);
    EXPECT_EQ(capture.shown, none);
}

} // namespace
