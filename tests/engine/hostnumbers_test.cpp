#include "enginetest.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

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

struct longcase
{
    std::string name;
    std::string decimal;
    std::string text;
    std::int32_t value;
    int error;
};

class texttolongtest : public ::testing::TestWithParam<longcase>
{
};

TEST_P(texttolongtest, readsbythelocale)
{
    const longcase &c = GetParam();
    pinnedlocale locale(c.decimal);
    std::int32_t value = 0;
    EXPECT_EQ(errorof([&] { value = texttolong(c.text); }), c.error);
    if (c.error == 0) {
        EXPECT_EQ(value, c.value);
    }
}

const std::string thousanddigits(1000, '9');
const std::string leadingzeros = std::string(1000, '0') + "42";

INSTANTIATE_TEST_SUITE_P(
    hostnumbers, texttolongtest,
    ::testing::Values(
        longcase{"plain digits", ".", "12", 12, 0},
        longcase{"blanks around and a sign", ".", " \t-12  ", -12, 0},
        longcase{"leading plus", ".", "+7", 7, 0},
        longcase{"grouping comma ignored in dot locale", ".", "2,5", 25, 0},
        longcase{"grouping dot ignored in comma locale", ",", "2.5", 25, 0},
        longcase{"grouped thousands", ".", "1,000,000", 1000000, 0},
        longcase{"half rounds to even below", ".", "2.5", 2, 0},
        longcase{"half rounds to even above", ".", "3.5", 4, 0},
        longcase{"negative half rounds to even", ".", "-2.5", -2, 0},
        longcase{"comma decimal rounds to even", ",", "3,5", 4, 0},
        longcase{"more than half rounds up", ".", "2.51", 3, 0},
        longcase{"exponent", ".", "1E3", 1000, 0},
        longcase{"largest long", ".", "2147483647", 2147483647, 0},
        longcase{"smallest long", ".", "-2147483648", std::numeric_limits<std::int32_t>::min(), 0},
        longcase{"a thousand leading zeros", ".", leadingzeros, 42, 0},
        longcase{"one beyond the largest", ".", "2147483648", 0, 6},
        longcase{"rounding past the largest", ".", "2147483647.5", 0, 6},
        longcase{"a thousand digits", ".", thousanddigits, 0, 6},
        longcase{"huge exponent", ".", "1e99999999999999999999", 0, 6},
        longcase{"empty text", ".", "", 0, 13},
        longcase{"blanks only", ".", "   ", 0, 13},
        longcase{"sign alone", ".", "-", 0, 13},
        longcase{"trailing sign", ".", "1-", 0, 13},
        longcase{"two signs", ".", "--1", 0, 13},
        longcase{"plus then minus", ".", "+-5", 0, 13},
        longcase{"blank inside", ".", "1 2", 0, 13},
        longcase{"grouping before any digit", ".", ",5", 0, 13},
        longcase{"two decimal separators", ".", "1.2.3", 0, 13},
        longcase{"grouping after the decimals", ".", "1.2,3", 0, 13},
        longcase{"percent sign", ".", "12%", 0, 13},
        longcase{"exponent without digits", ".", "1e", 0, 13},
        longcase{"letters", ".", "abc", 0, 13},
        longcase{"non ascii digit", ".", "\xd9\xa3", 0, 13},
        longcase{"embedded nul", ".", std::string("1\0" "2", 3), 0, 13}),
    casename());

struct doublecase
{
    std::string name;
    std::string decimal;
    std::string text;
    double value;
    int error;
};

class texttodoubletest : public ::testing::TestWithParam<doublecase>
{
};

TEST_P(texttodoubletest, readsbythelocale)
{
    const doublecase &c = GetParam();
    pinnedlocale locale(c.decimal);
    double value = 0;
    EXPECT_EQ(errorof([&] { value = texttodouble(c.text); }), c.error);
    EXPECT_EQ(isnumerictext(c.text), c.error == 0);
    if (c.error == 0) {
        EXPECT_DOUBLE_EQ(value, c.value);
    }
}

INSTANTIATE_TEST_SUITE_P(
    hostnumbers, texttodoubletest,
    ::testing::Values(doublecase{"dot decimal", ".", "2.75", 2.75, 0},
                      doublecase{"comma decimal", ",", "0,125", 0.125, 0},
                      doublecase{"dot is grouping in comma locale", ",", "0.125", 125, 0},
                      doublecase{"no integer digits", ".", "-.5", -0.5, 0},
                      doublecase{"separator at the end", ".", "3.", 3, 0},
                      doublecase{"exponent form", ".", "1.5E-3", 0.0015, 0},
                      doublecase{"underflow reads as zero", ".", "1e-400", 0, 0},
                      doublecase{"many fraction digits", ".", "0." + thousanddigits, 1, 0},
                      doublecase{"beyond a double", ".", "1e400", 0, 6},
                      doublecase{"a thousand digits with exponent", ".", thousanddigits + "e9", 0, 6},
                      doublecase{"separator alone", ".", ".", 0, 13},
                      doublecase{"comma in dot locale after decimals", ".", "0.5,1", 0, 13}),
    casename());

TEST(hostnumbers, doubletextisshortestwithfifteendigits)
{
    struct row
    {
        double value;
        const char *dot;
        const char *comma;
    };
    const row rows[] = {
        {0.5, "0.5", "0,5"},
        {1.0 / 3.0, "0.333333333333333", "0,333333333333333"},
        {2.0 / 3.0, "0.666666666666667", "0,666666666666667"},
        {0.1 + 0.2, "0.3", "0,3"},
        {-1.5, "-1.5", "-1,5"},
        {100, "100", "100"},
        {123456789012345.0, "123456789012345", "123456789012345"},
        {1e15, "1E+15", "1E+15"},
        {1e-5, "1E-05", "1E-05"},
        {-0.0, "0", "0"},
    };
    for (const row &r : rows) {
        {
            pinnedlocale locale(".");
            EXPECT_EQ(doubletotext(r.value), r.dot);
            EXPECT_NEAR(texttodouble(doubletotext(r.value)), r.value, std::fabs(r.value) * 1e-14) << r.dot;
        }
        pinnedlocale locale(",");
        EXPECT_EQ(doubletotext(r.value), r.comma);
        EXPECT_NEAR(texttodouble(doubletotext(r.value)), r.value, std::fabs(r.value) * 1e-14) << r.comma;
    }
}

TEST(hostnumbers, roundingtiesgototheevenneighbour)
{
    EXPECT_EQ(roundtodecimals(0.625, 2), 0.62);
    EXPECT_EQ(roundtodecimals(0.375, 2), 0.38);
    EXPECT_EQ(roundtodecimals(2.5, 0), 2);
    EXPECT_EQ(roundtodecimals(3.5, 0), 4);
    EXPECT_EQ(roundtodecimals(-2.5, 0), -2);
    // 1.005 is stored just below the tie.
    EXPECT_EQ(roundtodecimals(1.005, 2), 1.0);
    EXPECT_EQ(roundtodecimals(2.0 / 3.0, 4), 0.6667);
    // Nothing left to round, and no overflow on the way.
    EXPECT_EQ(roundtodecimals(1.0 / 3.0, 400), 1.0 / 3.0);
    EXPECT_EQ(roundtodecimals(1e300, 30), 1e300);
    EXPECT_TRUE(std::isnan(roundtodecimals(std::nan(""), 2)));
    EXPECT_EQ(errorof([] { roundtodecimals(1, -1); }), 5);
}

TEST(hostnumbers, roundingadoubletolong)
{
    EXPECT_EQ(roundtolong(2.5), 2);
    EXPECT_EQ(roundtolong(-3.5), -4);
    EXPECT_EQ(roundtolong(-2147483648.4), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(errorof([] { roundtolong(2147483647.5); }), 6);
    EXPECT_EQ(errorof([] { roundtolong(std::nan("")); }), 6);
    EXPECT_EQ(errorof([] { roundtolong(HUGE_VAL); }), 6);
}

TEST(hostnumbers, separatorsettingsarecleanedup)
{
    pinnedlocale restore(".");
    setnumberlocale(numberlocale{"", "'"});
    EXPECT_EQ(currentnumberlocale().decimal, ".");
    EXPECT_EQ(texttolong("1'000.5"), 1000);
    setnumberlocale(numberlocale{",", ","});
    EXPECT_EQ(currentnumberlocale().grouping, "");
    EXPECT_EQ(texttolong("2,5"), 2);
    // A separator of several bytes, as some locales group with a no-break space.
    setnumberlocale(numberlocale{",", "\xc2\xa0"});
    EXPECT_EQ(texttolong("1\xc2\xa0" "234,5"), 1234);
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
    EXPECT_EQ(system.decimal, ".");
    EXPECT_EQ(system.grouping, ",");
    if (environment)
        ::setenv("LC_ALL", saved.c_str(), 1);
    else
        ::unsetenv("LC_ALL");
}

TEST(messagesink, defaultgoestostandarderrorandsinksnest)
{
    ::testing::internal::CaptureStderr();
    showmessage("Overflow");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Overflow\n");

    messages outer;
    {
        scopedmessagesink first([&](const std::string &text) { outer.push_back(text); });
        messages inner;
        {
            scopedmessagesink second([&](const std::string &text) { inner.push_back(text); });
            showmessage("a");
        }
        showmessage("b");
        EXPECT_EQ(inner, messages{"a"});
    }
    EXPECT_EQ(outer, messages{"b"});
    EXPECT_FALSE(setmessagesink(nullptr));
}

} // namespace
} // namespace enginetest
