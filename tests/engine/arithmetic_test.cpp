#include "enginetest.h"

#include <numeric>
#include <random>

namespace enginetest {
namespace {

const routine add = straddfractions, multiply = strmultiplyfractions, divide = strdividefractions;

// Plain sums and products are checked against 64-bit arithmetic below; these are the edges.
INSTANTIATE_TEST_SUITE_P(arithmetic, routinetest, ::testing::Values(
    call{"whole numbers sum over 1", add, {{"2", "", ""}, {"3", "", ""}}, rec("", "5", "1"), {}, {}, ","},
    call{"zero sum keeps the denominator", add, {{"", "1", "2"}, {"-", "1", "2"}}, rec("", "", "2")},
    // listlcm reports and gives 0, and the sum goes on with it.
    call{"denominators beyond 32 bits", add, {{"", "1", "65536"}, {"", "1", "65537"}}, rec("", "", ""), {overflow}},
    call{"sum past the largest", add, {{"2147483647", "", ""}, {"1", "", ""}}, unallocated, {overflow}},
    // The sign is written before the magnitude fails to fit.
    call{"sum exactly the smallest", add, {{"-2147483647", "", ""}, {"-1", "", ""}}, rec("-", "", ""), {overflow}},
    call{"empty list", add, {}, unallocated, {subscript}},

    call{"-1 1/2 times 2/3", multiply, {{"-1", "1", "2"}, {"", "2", "3"}}, rec("-", "6", "6"), {},
         {{"-", "3", "2"}, {"", "2", "3"}}},
    call{"zero factor", multiply, {{"", "0", "5"}, {"", "2", "3"}}, rec("", "", "15"), {}, {{"", "", "5"}, {"", "2", "3"}}},
    call{"empty row gives denominator 0", multiply, {{"", "", ""}, {"", "2", "3"}}, rec("", "", "")},
    call{"product past 32 bits", multiply, {{"", "65536", "1"}, {"", "65536", "1"}}, unallocated, {overflow}},
    call{"product exactly the smallest", multiply, {{"-", "65536", "1"}, {"", "32768", "1"}}, rec("", "", "1"), {overflow}},
    call{"decimal row is read as it stands", multiply, {{"1.5", "3", "4"}, {"-", "1", "2"}}, rec("-", "3", "8")},
    call{"decimal row with a bad numerator", multiply, {{"1.5", "x", "4"}, {"", "1", "2"}}, rec("", "", "8"), {mismatch}},
    call{"row that has no improper form", multiply, {{"1", "1", "2"}, {"2147483647", "1", "2"}}, unallocated,
         {overflow, subscript}, {{"", "3", "2"}, {"2147483647", "1", "2"}}},
    // Every row is read, with its message, before the products that can overflow.
    call{"product reads every row first", multiply, {{"", "65536", "1"}, {"", "65536", "1"}, {"2.5", "abc", "1"}},
         unallocated, {mismatch, overflow}},

    call{"1/2 by inverted 3/4", divide, {{"", "1", "2"}, {"", "4", "3"}}, rec("", "4", "6")},
    call{"empty divisor gives the marker", divide, {{"", "1", "2"}, {"", "", ""}}, rec("", "", "-")},
    call{"dividend alone", divide, {{"2", "1", "3"}}, rec("", "7", "3"), {}, {{"", "7", "3"}}},
    call{"nothing to divide", divide, {}, unallocated, {subscript}}), casename);

// Random short lists against the same sums and products done in 64 bits: equal whenever the
// 64-bit result fits in 32 bits, and an overflow message with no result otherwise.
TEST(arithmetic, randomlistsmatcha64bitreference)
{
    pinnedlocale locale(",");
    std::mt19937 random(5);
    const std::int64_t limit = std::numeric_limits<std::int32_t>::max();
    const auto record = [](std::int64_t n, std::int64_t d) {
        return rec(n < 0 ? "-" : "", parttext(std::int32_t(std::llabs(n))), parttext(std::int32_t(d)));
    };
    for (int round = 0; round < 5000; ++round) {
        FractionList list(1 + random() % 4);
        std::int64_t lcm = 1, sum = 0, product = 1, productdenominator = 1;
        bool overflows = false; // checked at every step, as the engine multiplies
        for (FractionText &row : list) {
            const std::int64_t w = random() % 41, n = random() % 41, d = 1 + random() % 60, sign = random() % 2 ? -1 : 1;
            row = {(sign < 0 ? "-" : "") + parttext(std::int32_t(w)), parttext(std::int32_t(n)), parttext(std::int32_t(d))};
            const std::int64_t next = std::lcm(lcm, d);
            sum = sum * (next / lcm) + sign * (w * next + n * (next / d));
            lcm = next;
            product *= sign * (w * d + n);
            productdenominator *= d;
            overflows = overflows || std::llabs(product) > limit || productdenominator > limit;
        }
        messagecapture capture;
        ASSERT_EQ(straddfractions(list), record(sum, lcm));
        const FractionResult result = strmultiplyfractions(list);
        if (!overflows) {
            ASSERT_EQ(result, record(product, productdenominator));
        }
        ASSERT_EQ(capture.shown, overflows ? messages{overflow} : messages{});
    }
}

} // namespace
} // namespace enginetest
