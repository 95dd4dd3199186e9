#include "enginetest.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <tuple>

namespace enginetest {
namespace {

// Error number raised by a conversion, or 0 when it succeeded.
template <typename Call>
int errorof(Call &&call)
{
    try {
        call();
    } catch (const automationerror &error) {
        return error.number();
    }
    return 0;
}

TEST(hostnumbers, textreadsbythelocale)
{
    struct row { const char *decimal; std::string text; double value; std::int32_t rounded; int longerror = 0, doubleerror = 0; };
    const std::string nines(1000, '9');
    const auto nonumber = [](std::string text) { return row{".", std::move(text), 0, 0, 13, 13}; };
    // Grouping marks are skipped, ties go to the even neighbour.
    const row rows[] = {
        {".", " \t-12  ", -12, -12}, {".", "2,5", 25, 25}, {",", "2.5", 25, 25}, {",", "0,125", 0.125, 0},
        {".", "-2.5", -2.5, -2}, {",", "3,5", 3.5, 4}, {".", "2.51", 2.51, 3}, {".", "1.5E-3", 0.0015, 0},
        {".", "-.5", -0.5, 0}, {".", "3.", 3, 3}, {".", "1e-400", 0, 0}, {".", "2147483647", 2147483647, 2147483647},
        {".", "-2147483648", -2147483648.0, std::numeric_limits<std::int32_t>::min()},
        {".", std::string(1000, '0') + "42", 42, 42}, {".", "0." + nines, 1, 1}, {".", "2147483648", 2147483648.0, 0, 6},
        {".", "2147483647.5", 2147483647.5, 0, 6}, {".", nines, 0, 0, 6, 6}, {".", "1e400", 0, 0, 6, 6},
        {".", "1e99999999999999999999", 0, 0, 6, 6},
        nonumber(""),  nonumber("   "), nonumber("-"),     nonumber("1-"),    nonumber("+-5"), nonumber("1 2"),
        nonumber(",5"), nonumber("1.2.3"), nonumber("1.2,3"), nonumber("0.5,1"), nonumber("12%"), nonumber("1e"),
        nonumber("."), nonumber("\xd9\xa3"), nonumber(std::string("1\0" "2", 3)),
    };
    for (const row &r : rows) {
        pinnedlocale locale(r.decimal);
        std::int32_t rounded = 0;
        double value = 0;
        EXPECT_EQ(errorof([&] { rounded = texttolong(r.text); }), r.longerror) << r.text;
        EXPECT_EQ(errorof([&] { value = texttodouble(r.text); }), r.doubleerror) << r.text;
        EXPECT_EQ(rounded, r.rounded) << r.text;
        EXPECT_DOUBLE_EQ(value, r.doubleerror ? 0 : r.value) << r.text;
        EXPECT_EQ(isnumerictext(r.text), r.doubleerror == 0) << r.text;
    }
}

TEST(hostnumbers, doubletextisshortestwithfifteendigits)
{
    const std::pair<double, const char *> rows[] = {{2.0 / 3.0, "0,666666666666667"}, {0.1 + 0.2, "0,3"}, {-1.5, "-1,5"},
        {123456789012345.0, "123456789012345"}, {1e15, "1E+15"}, {1e-5, "1E-05"}, {-0.0, "0"}};
    pinnedlocale locale(",");
    for (const auto &[value, text] : rows) {
        EXPECT_EQ(doubletotext(value), text);
        EXPECT_NEAR(texttodouble(text), value, std::fabs(value) * 1e-14) << text;
    }
    pinnedlocale dot(".");
    EXPECT_EQ(doubletotext(1.0 / 3.0), "0.333333333333333");
}

// Ties going to the even neighbour are checked through texttolong above.
TEST(hostnumbers, roundingedges)
{
    // 1.005 is stored just below the tie.
    EXPECT_EQ(roundtodecimals(1.005, 2), 1.0);
    // Nothing left to round, and no overflow on the way.
    EXPECT_EQ(roundtodecimals(1.0 / 3.0, 400), 1.0 / 3.0);
    EXPECT_EQ(roundtodecimals(1e300, 30), 1e300);
    EXPECT_TRUE(std::isnan(roundtodecimals(std::nan(""), 2)));
    EXPECT_EQ(errorof([] { roundtodecimals(1, -1); }), 5);

    EXPECT_EQ(roundtolong(-2147483648.4), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(errorof([] { roundtolong(2147483647.5); }), 6);
    EXPECT_EQ(errorof([] { roundtolong(std::nan("")); }), 6);
    EXPECT_EQ(errorof([] { roundtolong(HUGE_VAL); }), 6);
}

TEST(hostnumbers, separatorsettingsarecleanedup)
{
    pinnedlocale restore(".");
    // An empty decimal falls back to "."; a grouping mark equal to the decimal is dropped; a mark of
    // several bytes, as some locales group with a no-break space.
    const std::tuple<numberlocale, const char *, std::int32_t> rows[] = {
        {{"", "'"}, "1'000.5", 1000}, {{",", ","}, "2,5", 2}, {{",", "\xc2\xa0"}, "1\xc2\xa0" "234,5", 1234}};
    for (const auto &[locale, text, value] : rows) {
        setnumberlocale(locale);
        EXPECT_EQ(texttolong(text), value) << text;
    }
}

TEST(hostnumbers, systemlocaleisreadwithoutchangingtheprocess)
{
    const char *environment = std::getenv("LC_ALL");
    const std::string saved = environment ? environment : "";
    ::setenv("LC_ALL", "C", 1);
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    const numberlocale system = systemnumberlocale();
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), before);
    // The C locale has no grouping mark: "," stands in for it beside ".".
    EXPECT_EQ(system.decimal + system.grouping, ".,");
    environment ? ::setenv("LC_ALL", saved.c_str(), 1) : ::unsetenv("LC_ALL");
}

TEST(messagesink, defaultgoestostandarderrorandsinksnest)
{
    ::testing::internal::CaptureStderr();
    showmessage("Overflow");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Overflow\n");

    std::optional<messagecapture> outer(std::in_place), inner(std::in_place);
    showmessage("a");
    inner.reset();
    showmessage("b");
    EXPECT_EQ(outer->shown, messages{"b"});
    outer.reset();
    EXPECT_FALSE(setmessagesink(nullptr));
}

} // namespace
} // namespace enginetest
