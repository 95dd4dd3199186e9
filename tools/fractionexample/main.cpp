// A short worked example of the fraction engine: conversions, sums and products, and the
// message an overflow produces.

#include "modfracglobal.h"

#include <cstdio>
#include <string>

using namespace modfracglobal;

namespace {

// A record as a reader writes it: "-2 1/3", "3/4", "5".
std::string written(const FractionResult &record)
{
    if (!record)
        return "(no result)";
    const FractionText &f = *record;
    const bool negative = !f[0].empty() && f[0][0] == '-';
    const std::string whole = negative ? f[0].substr(1) : f[0];
    const bool fraction = !f[1].empty() && !f[2].empty();
    std::string text = negative ? "-" : "";
    if (!whole.empty())
        text += whole;
    if (fraction)
        text += (whole.empty() ? "" : " ") + f[1] + "/" + f[2];
    if (whole.empty() && !fraction)
        text += "0";
    return text;
}

void line(const std::string &what, const FractionResult &result)
{
    std::printf("  %-40s %s\n", what.c_str(), written(result).c_str());
}

void decimalline(const std::string &what, const FractionResult &result)
{
    std::printf("  %-40s %s\n", what.c_str(), result ? (*result)[0].c_str() : "(no result)");
}

} // namespace

int main()
{
    // Messages would open a message box in an application; here they are printed in place.
    setmessagesink([](const std::string &text) { std::printf("  [message] %s\n", text.c_str()); });
    setnumberlocale(numberlocale{".", ","});

    std::printf("Normal forms\n");
    line("6/8 reduced", strreduce({"", "6", "8"}));
    line("7/3 as a mixed number", strfractomixed({"", "7", "3"}));
    line("-3 1/4 as an improper fraction", strmixedtofrac({"-3", "1", "4"}));
    line("1/2 expanded by 3", strexpand({"", "1", "2"}, 3));
    line("1 1/2 inverted", strinvert({"1", "1", "2"}));

    std::printf("\nSums and products (improper, over the least common multiple)\n");
    const FractionResult sum = straddfractions({{"1", "1", "2"}, {"", "1", "3"}});
    line("1 1/2 + 1/3", sum);
    line("  ... as a mixed number", sum ? strfractomixed(*sum) : sum);
    line("1/6 + 1/4", straddfractions({{"", "1", "6"}, {"", "1", "4"}}));
    line("-1 1/2 + 1/4", straddfractions({{"-1", "1", "2"}, {"", "1", "4"}}));
    FractionList factors{{"-1", "1", "2"}, {"", "2", "3"}};
    const FractionResult product = strmultiplyfractions(factors);
    line("-1 1/2 x 2/3", product);
    const FractionResult reduced = product ? strreduce(*product) : product;
    line("  ... reduced", reduced);
    line("  ... as a mixed number", reduced ? strfractomixed(*reduced) : reduced);

    std::printf("\nDecimals\n");
    decimalline("1 1/3 to 2 places", strfractodecimal({"1", "1", "3"}, 2));
    decimalline("-5/8 to 2 places (a tie goes to even)", strfractodecimal({"-", "5", "8"}, 2));
    const FractionResult parsed = strdecimaltofrac({"2.75", "", ""});
    line("2.75 as a fraction", parsed);
    line("  ... reduced", parsed ? strreduce(*parsed) : parsed);
    setnumberlocale(numberlocale{",", "."});
    line("0,125 with \",\" as decimal separator", strdecimaltofrac({"0,125", "", ""}));
    decimalline("2/3 to 4 places with \",\"", strfractodecimal({"", "2", "3"}, 4));
    setnumberlocale(numberlocale{".", ","});

    std::printf("\nA deliberate overflow: 65536 x 65536 leaves 32 bits\n");
    FractionList large{{"65536", "", ""}, {"65536", "", ""}};
    line("65536 x 65536", strmultiplyfractions(large));
    return 0;
}
