// Routines read every part, with its message, before the arithmetic that can overflow.
#include "enginetest.h"

#include <functional>

namespace {

using namespace enginetest;

struct ordercase
{
    std::string name;
    std::function<FractionResult()> call;
    messages expected;
};

class messageorder : public ::testing::TestWithParam<ordercase>
{
};

TEST_P(messageorder, conversionsbeforeproducts)
{
    messagecapture capture;
    const FractionResult result = GetParam().call();
    EXPECT_FALSE(result.has_value()) << show(result);
    EXPECT_EQ(capture.shown, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    engine, messageorder,
    ::testing::Values(
        ordercase{"expand_reads_the_denominator_first",
                  [] { return strexpand({"", "1073741823", "abc"}, 74092); }, {mismatch, overflow}},
        ordercase{"product_reads_every_row_first",
                  [] {
                      FractionList list{{"", "65536", "1"}, {"", "65536", "1"}, {"2.5", "abc", "1"}};
                      return strmultiplyfractions(list);
                  },
                  {mismatch, overflow}}),
    casename{});

} // namespace
