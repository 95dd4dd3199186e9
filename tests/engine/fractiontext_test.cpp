// Fractions as people write them, their text, and the nearest fraction under a denominator limit.
#include "enginetest.h"

#include <fstream>
#include <sstream>

namespace enginetest {
namespace {

// Reads the text; what the formatter writes of the record must read back into it.
routine parse(std::string text)
{
    return [text](FractionList &) {
        const FractionResult record = strparsefraction(text);
        if (record) {
            EXPECT_EQ(strparsefraction(strformatfraction(*record)), record) << text;
        }
        return record;
    };
}

const auto approximate = [](std::int32_t limit) { return onrow(strapproximate, limit); };

INSTANTIATE_TEST_SUITE_P(parse, routinetest, ::testing::Values(
    call{"negative whole", parse(" -3 "), {}, rec("-3", "", "")},
    call{"zero is empty", parse("0"), {}, rec("", "", "")},
    call{"fraction kept unreduced", parse("6/8"), {}, rec("", "6", "8")},
    call{"improper stays", parse("+7/4"), {}, rec("", "7", "4")},
    call{"negative fraction", parse("-2/3"), {}, rec("-", "2", "3")},
    call{"mixed", parse("-1 2/3"), {}, rec("-1", "2", "3")},
    call{"blanks around the slash", parse("1  2 / 3"), {}, rec("1", "2", "3")},
    call{"unicode minus and fraction slash", parse("\u22121 2\u20443"), {}, rec("-1", "2", "3")},
    call{"vulgar after whole", parse("1\u2154"), {}, rec("1", "2", "3")},
    call{"vulgar after no break space", parse("-1\u00A0\u00BE"), {}, rec("-1", "3", "4")},
    call{"zero denominator is data", parse("1/0"), {}, rec("", "1", "0")},
    call{"largest parts", parse("2147483647 1/2147483647"), {}, rec("2147483647", "1", "2147483647")},
    call{"decimal", parse("1.5"), {}, unallocated, {mismatch}},
    call{"doubled sign", parse("+-3"), {}, unallocated, {mismatch}},
    call{"two numbers", parse("1 2"), {}, unallocated, {mismatch}},
    call{"missing denominator", parse("2/"), {}, unallocated, {mismatch}},
    call{"empty", parse("  "), {}, unallocated, {mismatch}},
    call{"part beyond 32 bits", parse("1/2147483648"), {}, unallocated, {overflow}}), casename);

// Ordinary decimals are checked against the reference file below; these are the edges.
INSTANTIATE_TEST_SUITE_P(approximate, routinetest, ::testing::Values(
    call{"comma separator", approximate(2147483647), {{"3,141592653589793", "", ""}}, rec("3", "146682708", "1035948577"),
         {}, {}, ","},
    call{"rounds up to whole", approximate(10), {{"-2.999", "", ""}}, rec("-3", "", "1")},
    call{"tie to smaller denominator", approximate(3), {{"0.25", "", ""}}, rec("", "1", "3")},
    call{"record", approximate(7), {{"-1", "22", "7"}}, rec("-4", "1", "7")},
    call{"no number", approximate(10), {{"1/2", "", ""}}, unallocated, {mismatch}},
    call{"whole part beyond 32 bits", approximate(10), {{"2147483647", "5", "2"}}, unallocated, {overflow}},
    call{"zero denominator", approximate(10), {{"", "1", "0"}}, unallocated, {divbyzero}},
    call{"limit below one", approximate(0), {{"0.5", "", ""}}, unallocated, {badcall}}), casename);

// Python's fractions.Fraction.limit_denominator on random decimals (approximate_reference.py).
TEST(approximate, agreeswithreference)
{
    pinnedlocale locale(".");
    messagecapture capture;
    std::ifstream file(KEL_APPROXIMATE_REFERENCE);
    ASSERT_TRUE(file) << KEL_APPROXIMATE_REFERENCE;
    const auto part = [](const std::string &text) { return text == "_" ? std::string() : text; };
    int rows = 0;
    for (std::string line; std::getline(file, line); ++rows) {
        std::istringstream fields(line);
        std::string decimal, whole, numerator, denominator;
        std::int32_t limit = 0;
        fields >> decimal >> limit >> whole >> numerator >> denominator;
        ASSERT_EQ(strapproximate({decimal, "", ""}, limit), rec(part(whole), part(numerator), denominator)) << line;
    }
    EXPECT_EQ(rows, 3000);
    EXPECT_TRUE(capture.shown.empty());
}

// Each row: the record, then what is said.
TEST(speakfraction, wordsaspeoplesaythem)
{
    const std::vector<std::pair<FractionText, std::string>> rows{
        {{"4", "1", "7"}, "four and one seventh"},
        {{"-2", "1", "4"}, "minus two and one quarter"},
        {{"", "3", "4"}, "three quarters"},
        {{"-", "1", "2"}, "minus one half"},
        {{"", "17", "12"}, "seventeen twelfths"},
        {{"", "5", "0"}, "five over zero"},
        {{"", "1", "101"}, "one over one hundred and one"},
        {{"", "3", "40"}, "three fortieths"},
        {{"999999", "2", "3"}, "nine hundred and ninety-nine thousand nine hundred and ninety-nine and two thirds"},
        {{"1000000", "", ""}, "1000000"},
        {{"x", "a", "b"}, "x and a over b"},
    };
    for (const auto &[record, words] : rows)
        EXPECT_EQ(strspeakfraction(record), words) << record[0] << " " << record[1] << "/" << record[2];
}

} // namespace
} // namespace enginetest
