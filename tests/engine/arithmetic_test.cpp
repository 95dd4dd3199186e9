#include "enginetest.h"

#include <numeric>
#include <random>

namespace enginetest {
namespace {

enum class operation { add, multiply, divide };

struct listcase
{
    std::string name;
    operation op;
    FractionList input;
    FractionResult expected;
    messages shown = {};
    FractionList after = {}; // the caller's list afterwards, when the routine rewrites it
};

class arithmetictest : public ::testing::TestWithParam<listcase>
{
};

TEST_P(arithmetictest, resultmessagesandlist)
{
    const listcase &c = GetParam();
    for (const std::string decimal : {".", ","}) {
        pinnedlocale locale(decimal);
        messagecapture capture;
        FractionList list = c.input;
        FractionResult result;
        switch (c.op) {
        case operation::add:
            result = straddfractions(list);
            break;
        case operation::multiply:
            result = strmultiplyfractions(list);
            break;
        case operation::divide:
            result = strdividefractions(list);
            break;
        }
        EXPECT_EQ(show(result), show(c.expected)) << decimal;
        EXPECT_EQ(capture.shown, c.shown) << decimal;
        EXPECT_EQ(list, c.after.empty() ? c.input : c.after) << decimal;
    }
}

FractionResult rec(std::string w, std::string n, std::string d)
{
    return FractionText{std::move(w), std::move(n), std::move(d)};
}
const FractionResult unallocated;
constexpr auto add = operation::add;
constexpr auto multiply = operation::multiply;
constexpr auto divide = operation::divide;

INSTANTIATE_TEST_SUITE_P(
    arithmetic, arithmetictest,
    ::testing::Values(
        listcase{"1 1/2 plus 1/3", add, {{"1", "1", "2"}, {"", "1", "3"}}, rec("", "11", "6")},
        listcase{"whole numbers sum over 1", add, {{"2", "", ""}, {"3", "", ""}}, rec("", "5", "1")},
        listcase{"-1 1/2 plus 1/4", add, {{"-1", "1", "2"}, {"", "1", "4"}}, rec("-", "5", "4")},
        listcase{"sums over the lcm", add, {{"", "1", "6"}, {"", "1", "4"}}, rec("", "5", "12")},
        listcase{"zero sum keeps the denominator", add, {{"", "1", "2"}, {"-", "1", "2"}}, rec("", "", "2")},
        listcase{"one row", add, {{"-", "3", "4"}}, rec("-", "3", "4")},
        // listlcm reports and gives 0, and the sum goes on with it.
        listcase{"denominators beyond 32 bits", add, {{"", "1", "65536"}, {"", "1", "65537"}}, rec("", "", ""),
                 {overflow}},
        listcase{"sum past the largest", add, {{"2147483647", "", ""}, {"1", "", ""}}, unallocated, {overflow}},
        // The sign is written before the magnitude fails to fit.
        listcase{"sum exactly the smallest", add, {{"-2147483647", "", ""}, {"-1", "", ""}}, rec("-", "", ""),
                 {overflow}},
        listcase{"empty list", add, {}, unallocated, {subscript}},

        listcase{"-1 1/2 times 2/3", multiply, {{"-1", "1", "2"}, {"", "2", "3"}}, rec("-", "6", "6"), {},
                 {{"-", "3", "2"}, {"", "2", "3"}}},
        listcase{"no cancelling", multiply, {{"", "2", "3"}, {"", "3", "4"}}, rec("", "6", "12")},
        listcase{"zero factor", multiply, {{"", "0", "5"}, {"", "2", "3"}}, rec("", "", "15"), {},
                 {{"", "", "5"}, {"", "2", "3"}}},
        listcase{"empty row gives denominator 0", multiply, {{"", "", ""}, {"", "2", "3"}}, rec("", "", "")},
        listcase{"product past 32 bits", multiply, {{"", "65536", "1"}, {"", "65536", "1"}}, unallocated,
                 {overflow}},
        listcase{"product exactly the smallest", multiply, {{"-", "65536", "1"}, {"", "32768", "1"}},
                 rec("", "", "1"), {overflow}},
        listcase{"decimal row is read as it stands", multiply, {{"1.5", "3", "4"}, {"-", "1", "2"}},
                 rec("-", "3", "8")},
        listcase{"decimal row with a bad numerator", multiply, {{"1.5", "x", "4"}, {"", "1", "2"}},
                 rec("", "", "8"), {mismatch}},
        listcase{"row that has no improper form", multiply, {{"1", "1", "2"}, {"2147483647", "1", "2"}},
                 unallocated, {overflow, subscript}, {{"", "3", "2"}, {"2147483647", "1", "2"}}},

        listcase{"1/2 by inverted 3/4", divide, {{"", "1", "2"}, {"", "4", "3"}}, rec("", "4", "6")},
        listcase{"empty divisor gives the marker", divide, {{"", "1", "2"}, {"", "", ""}}, rec("", "", "-")},
        listcase{"dividend alone", divide, {{"2", "1", "3"}}, rec("", "7", "3"), {}, {{"", "7", "3"}}},
        listcase{"nothing to divide", divide, {}, unallocated, {subscript}}),
    casename());

TEST(arithmetic, thousandfractionsaddexactly)
{
    pinnedlocale locale(".");
    messagecapture capture;
    // 1/1 + 1/2 + ... + 1/12 repeated, with alternating signs on the even rows.
    FractionList list;
    long long numerator = 0;
    const long long common = 27720;
    for (int i = 0; i < 1000; ++i) {
        const int d = 1 + i % 12;
        const bool negative = i % 2 == 1;
        list.push_back(FractionText{negative ? "-" : "", "1", std::to_string(d)});
        numerator += (negative ? -1 : 1) * common / d;
    }
    const FractionResult sum = straddfractions(list);
    ASSERT_TRUE(sum.has_value());
    EXPECT_EQ(show(sum), show(FractionText{numerator < 0 ? "-" : "", std::to_string(std::llabs(numerator)),
                                           std::to_string(common)}));
    EXPECT_EQ(capture.shown, none);
}

} // namespace
} // namespace enginetest

namespace enginetest {
namespace {

// Random short lists against the same sums and products done in 64 bits: equal whenever the
// 64-bit result fits in 32 bits, and an overflow message with no result otherwise.
TEST(arithmetic, randomlistsmatcha64bitreference)
{
    pinnedlocale locale(",");
    std::mt19937 random(5);
    std::uniform_int_distribution<int> length(1, 4);
    std::uniform_int_distribution<std::int32_t> part(0, 40);
    std::uniform_int_distribution<std::int32_t> denominator(1, 60);
    for (int round = 0; round < 5000; ++round) {
        FractionList list(static_cast<std::size_t>(length(random)));
        std::int64_t lcm = 1;
        std::int64_t sumnumerator = 0;
        std::int64_t productnumerator = 1;
        std::int64_t productdenominator = 1;
        bool productoverflows = false; // checked at every step, as the engine multiplies
        const auto limit = std::numeric_limits<std::int32_t>::max();
        for (FractionText &row : list) {
            const std::int64_t w = part(random);
            const std::int64_t n = part(random);
            const std::int64_t d = denominator(random);
            const bool negative = random() % 2 == 1;
            row = FractionText{(negative ? "-" : "") + parttext(std::int32_t(w)), parttext(std::int32_t(n)),
                               parttext(std::int32_t(d))};
            lcm = std::lcm(lcm, d);
            productnumerator *= (negative ? -1 : 1) * (w * d + n);
            productdenominator *= d;
            productoverflows = productoverflows || std::llabs(productnumerator) > limit || productdenominator > limit;
        }
        for (const FractionText &row : list) {
            const std::int64_t w = partvalue(row[0]);
            const std::int64_t n = partvalue(row[1]);
            const std::int64_t d = partvalue(row[2]);
            sumnumerator += (isemptypart(row[0]) || row[0][0] != '-' ? 1 : -1) * (w * lcm + n * (lcm / d));
        }
        messagecapture capture;
        const FractionResult sum = straddfractions(list);
        ASSERT_LE(std::llabs(sumnumerator), std::numeric_limits<std::int32_t>::max());
        ASSERT_EQ(show(sum), show(FractionText{sumnumerator < 0 ? "-" : "", parttext(std::int32_t(std::llabs(sumnumerator))),
                                               parttext(std::int32_t(lcm))}));

        const FractionResult product = strmultiplyfractions(list);
        if (!productoverflows) {
            ASSERT_EQ(show(product),
                      show(FractionText{productnumerator < 0 ? "-" : "", parttext(std::int32_t(std::llabs(productnumerator))),
                                        parttext(std::int32_t(productdenominator))}));
            ASSERT_EQ(capture.shown, none);
        } else {
            ASSERT_EQ(capture.shown, messages{overflow});
        }
    }
}

} // namespace
} // namespace enginetest
