#include "enginetest.h"

#include <functional>
#include <numeric>
#include <optional>
#include <random>

namespace enginetest {
namespace {

TEST(parts, partvaluereadsmagnitudes)
{
    for (const std::string decimal : {".", ","}) {
        pinnedlocale locale(decimal);
        messagecapture capture;
        EXPECT_EQ(partvalue(""), 0);
        EXPECT_EQ(partvalue("+"), 0);
        EXPECT_EQ(partvalue("-"), 0);
        EXPECT_EQ(partvalue("-12"), 12);
        EXPECT_EQ(partvalue("+7"), 7);
        EXPECT_EQ(partvalue(" 2147483647 "), 2147483647);
        EXPECT_EQ(capture.shown, none) << decimal;
    }
    pinnedlocale locale(".");
    EXPECT_EQ(partvalue("-1,234"), 1234);
    EXPECT_EQ(parttext(0), "");
    EXPECT_EQ(parttext(-5), "-5");
    EXPECT_EQ(parttext(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

TEST(parts, partvaluereportsandgiveszero)
{
    pinnedlocale locale(".");
    messagecapture capture;
    EXPECT_EQ(partvalue("x"), 0);
    EXPECT_EQ(partvalue("2147483648"), 0);
    // Its magnitude does not fit.
    EXPECT_EQ(partvalue("-2147483648"), 0);
    EXPECT_EQ(capture.shown, (messages{mismatch, overflow, overflow}));
}

TEST(parts, predicatesreadbothseparators)
{
    struct row
    {
        const char *text;
        int decimals;
        bool separator;
        bool percent;
    };
    const row rows[] = {
        {"3,25", 2, true, false},  {"1.5,75", 2, true, false}, {"12", 0, false, false},
        {"12.", 0, true, false},   {"0.125", 3, true, false},  {"12%", 0, false, true},
        {"1,5%", 2, true, true},   {"", 0, false, false},      {"1,\xc3\xa9\xc3\xa9", 2, true, false},
    };
    for (const row &r : rows) {
        EXPECT_EQ(decimalcount(r.text), r.decimals) << r.text;
        EXPECT_EQ(hasdecimalsep(r.text), r.separator) << r.text;
        EXPECT_EQ(haspercentsign(r.text), r.percent) << r.text;
    }
    EXPECT_TRUE(isemptyfraction(FractionText{}));
    EXPECT_FALSE(isemptyfraction(FractionText{"-", "", ""}));
    EXPECT_FALSE(isemptyfraction(FractionText{"", "", "-"}));
}

using listroutine = std::function<std::int32_t(LongList &)>;

struct listcase
{
    std::string name;
    listroutine call;
    LongList input;
    std::int32_t result;
    messages shown = {};
    std::optional<LongList> after = {}; // the caller's list afterwards, when the routine changes it
};

class listroutinetest : public ::testing::TestWithParam<listcase>
{
};

TEST_P(listroutinetest, resultmessagesandcallerslist)
{
    const listcase &c = GetParam();
    messagecapture capture;
    LongList list = c.input;
    EXPECT_EQ(c.call(list), c.result);
    EXPECT_EQ(list, c.after.value_or(c.input));
    EXPECT_EQ(capture.shown, c.shown);
}

const listroutine minindexof = [](LongList &list) { return minindex(list); };
const listroutine gcd = listgcd;
const listroutine lcm = listlcm;
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

INSTANTIATE_TEST_SUITE_P(
    integerlists, listroutinetest,
    ::testing::Values(
        listcase{"4 2 3 steps down to the 2", minindexof, {4, 2, 3}, 1},
        listcase{"5 9 3 steps down to the 3", minindexof, {5, 9, 3}, 2},
        listcase{"3 1 2 steps down to the 1", minindexof, {3, 1, 2}, 1},
        listcase{"2 1 0 1 takes the last step", minindexof, {2, 1, 0, 1}, 2},
        listcase{"rising list takes the first", minindexof, {1, 2, 3}, 0},
        listcase{"minindex of one entry", minindexof, {7}, 0},
        listcase{"minindex of nothing", minindexof, {}, 0, {subscript}},

        listcase{"gcd 12 18", gcd, {12, 18}, 6},
        listcase{"gcd 0 7", gcd, {0, 7}, 7},
        listcase{"gcd 6 4 9", gcd, {6, 4, 9}, 1},
        listcase{"gcd of 5 alone", gcd, {5}, 5},
        listcase{"gcd of the largest and a neighbour", gcd, {2147483647, 2147483646}, 1},
        listcase{"gcd of fibonacci neighbours", gcd, {1836311903, 1134903170}, 1},
        listcase{"gcd keeps the sign of the last entry", gcd, {-6}, -6},
        // Every step that goes on with the empty list reports its own failure.
        listcase{"gcd of zeros", gcd, {0, 0}, 0, {subscript, subscript, subscript, subscript}},
        listcase{"gcd of nothing", gcd, {}, 0, {subscript, subscript, subscript, subscript}},
        // The step-down rule never picks -2 here, so the rounds would never end.
        listcase{"gcd of negatives that cycle", gcd, {-8, -2}, 0, {outofstack}},
        listcase{"gcd of the smallest and minus one", gcd, {smallest, -1}, 0, {outofstack}},
        listcase{"gcd dividing the smallest by minus one", gcd, {smallest, 5, -1}, -1},

        listcase{"lcm 4 6", lcm, {4, 6}, 12},
        listcase{"lcm with a zero is minus one, signs untouched", lcm, {-3, 0}, -1},
        listcase{"lcm makes entries positive in place", lcm, {-4, 6}, 12, {}, LongList{4, 6}},
        listcase{"lcm of the largest with 1 and 2", lcm, {2147483647, 1, 2}, 0, {overflow}},
        listcase{"lcm of primes 2 to 23 fits", lcm, {2, 3, 5, 7, 11, 13, 17, 19, 23}, 223092870},
        listcase{"lcm of primes 2 to 29 overflows", lcm, {2, 3, 5, 7, 11, 13, 17, 19, 23, 29}, 0, {overflow}},
        listcase{"lcm 65536 65537", lcm, {65536, 65537}, 0, {overflow}},
        listcase{"lcm exactly the largest", lcm, {2147483647, 2147483647}, 2147483647},
        listcase{"lcm stops at the smallest long", lcm, {-2, smallest, -3}, 0, {overflow},
                 LongList{2, smallest, -3}},
        listcase{"lcm of nothing", lcm, {}, 0, {subscript}}),
    casename());

TEST(integerlists, listgcdmatchesstdgcdonrandomlists)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int32_t> entry(0, std::numeric_limits<std::int32_t>::max());
    std::uniform_int_distribution<int> length(1, 8);
    std::uniform_int_distribution<std::int32_t> factor(1, 1000);
    messagecapture capture;
    for (int i = 0; i < 20000; ++i) {
        LongList list(static_cast<std::size_t>(length(random)));
        const std::int32_t common = factor(random);
        for (std::int32_t &v : list)
            v = entry(random) / common * common;
        std::int32_t expected = 0;
        for (std::int32_t v : list)
            expected = std::gcd(expected, v);
        if (expected == 0)
            continue;
        ASSERT_EQ(listgcd(list), expected) << ::testing::PrintToString(list);
    }
    EXPECT_EQ(capture.shown, none);
}

TEST(integerlists, removezerosandmodbymin)
{
    messagecapture capture;
    EXPECT_EQ(removezeros({0, 3, 0, 5}), (LongList{3, 5}));
    EXPECT_EQ(capture.shown, none);
    EXPECT_EQ(removezeros({0, 0}), LongList{});
    EXPECT_EQ(capture.shown, messages{subscript});

    capture.shown.clear();
    LongList list{12, 18, -7};
    EXPECT_EQ(modbymin(list), (LongList{5, 4, -7}));
    EXPECT_EQ(list, (LongList{5, 4, -7})) << "the caller's list changes too";

    LongList zero{0, 5};
    EXPECT_EQ(modbymin(zero), LongList{});
    EXPECT_EQ(zero, (LongList{0, 5}));
    EXPECT_EQ(capture.shown, messages{divbyzero});
}

// The multiples loop exactly as hosts have always run it: the base is the last entry larger than
// its predecessor, and the first multiple of it divisible by every entry is the answer.
std::int32_t multiplesloop(LongList list, messages &shown)
{
    if (std::find(list.begin(), list.end(), 0) != list.end())
        return -1;
    for (std::int32_t &v : list)
        v = v < 0 ? -v : v;
    std::int32_t base = list[0];
    for (std::size_t i = 1; i < list.size(); ++i) {
        if (list[i - 1] < list[i])
            base = list[i];
    }
    for (std::int32_t k = 1;; ++k) {
        std::int32_t c = 0;
        if (__builtin_mul_overflow(base, k, &c)) {
            shown.push_back(overflow);
            return 0;
        }
        if (std::all_of(list.begin(), list.end(), [c](std::int32_t v) { return c % v == 0; }))
            return c;
    }
}

TEST(integerlists, listlcmmatchesthemultiplesloop)
{
    std::mt19937 random(11);
    std::uniform_int_distribution<std::int32_t> small(-12, 12);
    // With every entry above 2^21 the loop overflows or ends within 1024 multiples.
    std::uniform_int_distribution<std::int32_t> large(1 << 21, std::numeric_limits<std::int32_t>::max());
    std::uniform_int_distribution<int> length(1, 4);
    for (int i = 0; i < 20000; ++i) {
        LongList list(static_cast<std::size_t>(length(random)));
        const bool uselarge = i % 2 == 1;
        for (std::int32_t &v : list)
            v = uselarge ? large(random) / (1 + i % 7) * (1 + i % 7) : small(random);
        if (uselarge && i % 4 == 1)
            list.push_back(1 + i % 5);
        messages expectedshown;
        const std::int32_t expected = multiplesloop(list, expectedshown);
        messagecapture capture;
        LongList copy = list;
        ASSERT_EQ(listlcm(copy), expected) << ::testing::PrintToString(list);
        ASSERT_EQ(capture.shown, expectedshown) << ::testing::PrintToString(list);
    }
}

} // namespace
} // namespace enginetest
