#include "enginetest.h"

#include <numeric>
#include <optional>
#include <random>

namespace enginetest {
namespace {

TEST(parts, partvaluereadsmagnitudes)
{
    struct row { const char *text; std::int32_t value; messages shown = {}; };
    const row rows[] = {{"", 0},           {"+", 0},          {"-", 0},
                        {"-12", 12},       {"+7", 7},         {" -2147483647 ", 2147483647},
                        {"x", 0, {mismatch}},    {"2147483648", 0, {overflow}},
                        // Its magnitude does not fit.
                        {"-2147483648", 0, {overflow}}};
    for (const std::string decimal : {".", ","}) {
        pinnedlocale locale(decimal);
        for (const row &r : rows) {
            messagecapture capture;
            EXPECT_EQ(partvalue(r.text), r.value) << r.text << decimal;
            EXPECT_EQ(capture.shown, r.shown) << r.text << decimal;
        }
    }
    EXPECT_EQ(parttext(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

TEST(parts, predicatesreadbothseparators)
{
    struct row { const char *text; int decimals; bool separator, percent; };
    const row rows[] = {{"3,25", 2, true, false}, {"1.5,75", 2, true, false}, {"12", 0, false, false},
                        {"12.", 0, true, false},  {"0.125", 3, true, false},  {"12%", 0, false, true},
                        {"1,5%", 2, true, true},  {"", 0, false, false},      {"1,\xc3\xa9\xc3\xa9", 2, true, false}};
    for (const row &r : rows) {
        EXPECT_EQ(decimalcount(r.text), r.decimals) << r.text;
        EXPECT_EQ(hasdecimalsep(r.text), r.separator) << r.text;
        EXPECT_EQ(haspercentsign(r.text), r.percent) << r.text;
    }
    EXPECT_TRUE(isemptyfraction(FractionText{}));
    EXPECT_FALSE(isemptyfraction(FractionText{"-", "", ""}));
    EXPECT_FALSE(isemptyfraction(FractionText{"", "", "-"}));
}

TEST(integerlists, resultmessagesandcallerslist)
{
    // after: the caller's list after the call, when the routine changes it.
    struct row { const char *name; std::function<std::int32_t(LongList &)> call; LongList input; std::int32_t result;
                 messages shown = {}; std::optional<LongList> after = {}; };
    const auto minindexof = [](LongList &list) { return minindex(list); };
    const auto gcd = listgcd, lcm = listlcm;
    const auto nonzero = [](LongList &list) { return std::int32_t((list = removezeros(list)).size()); };
    // modbymin's result is the caller's list after the call.
    const auto modmin = [](LongList &list) { return std::int32_t(modbymin(list) == list); };
    constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
    const row rows[] = {
        {"4 2 3 steps down to the 2", minindexof, {4, 2, 3}, 1},
        {"2 1 0 1 takes the last step", minindexof, {2, 1, 0, 1}, 2},
        {"minindex of nothing", minindexof, {}, 0, {subscript}},

        {"gcd of fibonacci neighbours", gcd, {1836311903, 1134903170}, 1},
        {"gcd keeps the sign of the last entry", gcd, {-6}, -6},
        // Every step that goes on with the empty list reports its own failure.
        {"gcd of zeros", gcd, {0, 0}, 0, {subscript, subscript, subscript, subscript}},
        {"gcd of nothing", gcd, {}, 0, {subscript, subscript, subscript, subscript}},
        // The step-down rule never picks -2 here, so the rounds would never end.
        {"gcd of negatives that cycle", gcd, {-8, -2}, 0, {outofstack}},
        {"gcd of the smallest and minus one", gcd, {smallest, -1}, 0, {outofstack}},
        {"gcd dividing the smallest by minus one", gcd, {smallest, 5, -1}, -1},

        {"lcm with a zero is minus one, signs untouched", lcm, {-3, 0}, -1},
        {"lcm makes entries positive in place", lcm, {-4, 6}, 12, {}, LongList{4, 6}},
        {"lcm exactly the largest", lcm, {2147483647, 2147483647}, 2147483647},
        {"lcm stops at the smallest long", lcm, {-2, smallest, -3}, 0, {overflow}, LongList{2, smallest, -3}},
        {"lcm of nothing", lcm, {}, 0, {subscript}},

        {"removezeros keeps the order", nonzero, {0, 3, 0, 5}, 2, {}, LongList{3, 5}},
        {"removezeros of zeros", nonzero, {0, 0}, 0, {subscript}, LongList{}},
        {"modbymin changes the caller's list", modmin, {12, 18, -7}, 1, {}, LongList{5, 4, -7}},
        {"modbymin by zero", [](LongList &list) { return std::int32_t(modbymin(list).size()); }, {0, 5}, 0, {divbyzero}},
    };
    for (const row &r : rows) {
        messagecapture capture;
        LongList list = r.input;
        EXPECT_EQ(r.call(list), r.result) << r.name;
        EXPECT_EQ(list, r.after.value_or(r.input)) << r.name;
        EXPECT_EQ(capture.shown, r.shown) << r.name;
    }
}

// Random lists against std::gcd and std::lcm in 64 bits: an lcm beyond 32 bits is an overflow.
// Odd rounds take multiples of one large base, so that the lcm falls on both sides of the limit.
TEST(integerlists, randomlistsmatchthestandardlibrary)
{
    std::mt19937 random(7);
    for (int i = 0; i < 40000; ++i) {
        LongList list(1 + random() % 6);
        const std::int32_t base = 1 + std::int32_t(random() % (1u << 25));
        std::int64_t gcd = 0, lcm = 1;
        for (std::int32_t &v : list) {
            v = i % 2 ? base * std::int32_t(1 + random() % 8) : std::int32_t(random() % 25) - (i % 4 == 0 ? 12 : 0);
            gcd = std::gcd(gcd, std::int64_t(v));
            lcm = lcm > 0 && v != 0 ? std::min<std::int64_t>(std::lcm(lcm, std::int64_t(v)), 1ll << 32) : 0;
        }
        messagecapture capture;
        LongList copy = list;
        if (gcd != 0 && i % 4 != 0) {
            ASSERT_EQ(listgcd(copy), gcd) << ::testing::PrintToString(list);
        }
        const std::int32_t expected = lcm == 0 ? -1 : lcm > std::numeric_limits<std::int32_t>::max() ? 0 : std::int32_t(lcm);
        ASSERT_EQ(listlcm(copy), expected) << ::testing::PrintToString(list);
        ASSERT_EQ(capture.shown, expected == 0 ? messages{overflow} : messages{}) << ::testing::PrintToString(list);
    }
}

} // namespace
} // namespace enginetest
