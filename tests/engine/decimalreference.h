#pragma once

// The decimal conversions as the plain double computation they stand for: whole part and
// numerator over denominator rounded in a double, then written by doubletotext(); a decimal text
// read by texttodouble(), its decimals counted by decimalcount(). The engine's fast readings and
// writings of usual values must agree with it to the character.

#include "modfracglobal.h"

#include <cmath>
#include <limits>

namespace decimalreference {

using namespace modfracglobal;

inline std::string todecimal(const FractionText &f, std::int32_t decimals)
{
    const double value = roundtodecimals(double(partvalue(f[1])) / double(partvalue(f[2])), decimals) + double(partvalue(f[0]));
    return f[0].starts_with("-") ? "-" + doubletotext(std::fabs(value)) : doubletotext(value);
}

inline FractionResult fromdecimal(const std::string &text)
{
    try {
        const double x = texttodouble(text);
        const double integral = std::trunc(x);
        const std::int32_t k = decimalcount(text);
        const double scale = k > 308 ? HUGE_VAL : std::pow(10.0, k);
        const std::int32_t w = roundtolong(std::fabs(integral));
        const std::int32_t n = roundtolong((x - integral) * scale);
        const std::int32_t d = roundtolong(scale);
        if (n == std::numeric_limits<std::int32_t>::min())
            return std::nullopt;
        return FractionText{(text.starts_with("-") ? "-" : "") + parttext(w), parttext(n < 0 ? -n : n), parttext(d)};
    } catch (const automationerror &) {
        return std::nullopt;
    }
}

} // namespace decimalreference
