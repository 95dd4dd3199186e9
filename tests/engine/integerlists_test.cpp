#include "enginetest.h"

#include <numeric>
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
    EXPECT_EQ(partvalue("1,234"), 1234);
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

struct listcase
{
    std::string name;
    LongList input;
    std::int32_t result;
    messages shown;
};

class minindextest : public ::testing::TestWithParam<listcase>
{
};

TEST_P(minindextest, picksthelaststepdown)
{
    const listcase &c = GetParam();
    messagecapture capture;
    EXPECT_EQ(minindex(c.input), c.result);
    EXPECT_EQ(capture.shown, c.shown);
}

INSTANTIATE_TEST_SUITE_P(integerlists, minindextest,
                         ::testing::Values(listcase{"4 2 3 picks the 2", {4, 2, 3}, 1, none},
                                           listcase{"5 9 3 picks the 3", {5, 9, 3}, 2, none},
                                           listcase{"3 1 2 picks the 1", {3, 1, 2}, 1, none},
                                           listcase{"2 1 0 1 picks the last step", {2, 1, 0, 1}, 2, none},
                                           listcase{"rising list picks the first", {1, 2, 3}, 0, none},
                                           listcase{"one entry", {7}, 0, none},
                                           listcase{"empty list", {}, 0, {subscript}}),
                         casename());

class listgcdtest : public ::testing::TestWithParam<listcase>
{
};

TEST_P(listgcdtest, divideswithoutchangingthelist)
{
    const listcase &c = GetParam();
    messagecapture capture;
    LongList list = c.input;
    EXPECT_EQ(listgcd(list), c.result);
    EXPECT_EQ(list, c.input);
    EXPECT_EQ(capture.shown, c.shown);
}

INSTANTIATE_TEST_SUITE_P(
    integerlists, listgcdtest,
    ::testing::Values(listcase{"12 18", {12, 18}, 6, none}, listcase{"0 7", {0, 7}, 7, none},
                      listcase{"6 4 9", {6, 4, 9}, 1, none}, listcase{"single 5", {5}, 5, none},
                      listcase{"largest and a prime", {2147483647, 2147483646}, 1, none},
                      listcase{"fibonacci neighbours", {1836311903, 1134903170}, 1, none},
                      listcase{"sign of the last entry", {-6}, -6, none},
                      // Every step that goes on with the empty list reports its own failure.
                      listcase{"all zeros", {0, 0}, 0, {subscript, subscript, subscript, subscript}},
                      listcase{"empty list", {}, 0, {subscript, subscript, subscript, subscript}},
                      // The step-down rule never picks -2 here, so the rounds never end.
                      listcase{"negative entries that cycle", {-8, -2}, 0, {outofstack}},
                      listcase{"smallest long by minus one", {std::numeric_limits<std::int32_t>::min(), -1}, 0,
                               {outofstack}}),
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

struct lcmcase
{
    std::string name;
    LongList input;
    std::int32_t result;
    LongList after;
    messages shown;
};

class listlcmtest : public ::testing::TestWithParam<lcmcase>
{
};

TEST_P(listlcmtest, resultandcallerslist)
{
    const lcmcase &c = GetParam();
    messagecapture capture;
    LongList list = c.input;
    EXPECT_EQ(listlcm(list), c.result);
    EXPECT_EQ(list, c.after);
    EXPECT_EQ(capture.shown, c.shown);
}

constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

INSTANTIATE_TEST_SUITE_P(
    integerlists, listlcmtest,
    ::testing::Values(
        lcmcase{"4 6", {4, 6}, 12, {4, 6}, none},
        lcmcase{"a zero gives minus one before signs are touched", {-3, 0}, -1, {-3, 0}, none},
        lcmcase{"negative entries are made positive in place", {-4, 6}, 12, {4, 6}, none},
        lcmcase{"largest long with 1 and 2", {2147483647, 1, 2}, 0, {2147483647, 1, 2}, {overflow}},
        lcmcase{"primes 2 to 23 fit", {2, 3, 5, 7, 11, 13, 17, 19, 23}, 223092870,
                {2, 3, 5, 7, 11, 13, 17, 19, 23}, none},
        lcmcase{"primes 2 to 29 overflow", {2, 3, 5, 7, 11, 13, 17, 19, 23, 29}, 0,
                {2, 3, 5, 7, 11, 13, 17, 19, 23, 29}, {overflow}},
        lcmcase{"65536 65537", {65536, 65537}, 0, {65536, 65537}, {overflow}},
        lcmcase{"exactly the largest long", {2147483647, 2147483647}, 2147483647, {2147483647, 2147483647}, none},
        lcmcase{"smallest long stops the sign pass", {-2, smallest, -3}, 0, {2, smallest, -3}, {overflow}},
        lcmcase{"empty list", {}, 0, {}, {subscript}}),
    casename());

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
