#include "decimalreference.h"
#include "enginetest.h"

#include <random>

namespace enginetest {
namespace {

// Texts at the limits of the fast readings, then random values of every size, where the exact
// shortcuts and the double's way take turns.
TEST(decimalconversions, matchthedoublecomputation)
{
    messagecapture capture;
    std::mt19937_64 random(11);
    const auto draw = [&random](std::uint64_t below) { return static_cast<std::int32_t>(random() % below); };
    const std::uint64_t sizes[] = {10, 1000, 100000, 2147483648ull};
    const auto anysize = [&] { return sizes[random() % 4]; };
    // Texts on both sides of where the fast reading gives up.
    for (const auto &[text, separator] : {std::pair{"214748364.712345", "."}, {"2147483647.123456789", "."},
                                          {"2147483647,123456789", ","}, {"-2147483647.5", "."}, {"2147483648.5", "."},
                                          {"-000000000000000000001.25", "."}, {"12.", "."}, {".5", "."}, {"1.25", ","},
                                          {"1.2.5", "."}, {"+1.5", "."}, {"0.3333333333333333333333", "."}}) {
        pinnedlocale locale(separator);
        EXPECT_EQ(strdecimaltofrac({text, "", ""}), decimalreference::fromdecimal(text)) << text;
    }
    for (const std::string separator : {".", ","}) {
        pinnedlocale locale(separator);
        for (int round = 0; round < 20000; ++round) {
            const std::string sign = random() % 2 ? "-" : "";
            const FractionText f{sign + parttext(draw(anysize())), std::to_string(draw(anysize())),
                                 parttext(1 + draw(anysize() - 1))};
            const std::int32_t decimals = draw(18);
            ASSERT_EQ((*strfractodecimal(f, decimals))[0], decimalreference::todecimal(f, decimals)) << ::testing::PrintToString(f) << decimals;

            std::string text = sign + std::to_string(draw(anysize()));
            const std::int32_t places = draw(12);
            if (places > 0)
                text += separator + std::to_string(draw(2147483648ull)).substr(0, std::size_t(places));
            ASSERT_EQ(strdecimaltofrac({text, "", ""}), decimalreference::fromdecimal(text)) << text;
        }
    }
}

} // namespace
} // namespace enginetest
