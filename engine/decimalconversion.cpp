// Crossing between exact fractions and decimal numbers: the only floating-point part of the engine.

#include "modfracglobal.h"

#include "checkedint.h"

#include <cmath>

namespace modfracglobal {

using namespace detail;

FractionResult strfractodecimal(const FractionText &fraction, std::int32_t decimals)
{
    FractionResult result;
    guarded([&] {
        if (fraction[1].empty() || fraction[2].empty()) {
            result = fraction;
            return;
        }
        const std::int32_t w = partvalue(fraction[0]);
        const std::int32_t n = partvalue(fraction[1]);
        const std::int32_t d = partvalue(fraction[2]);
        if (d == 0)
            raise(errnum::divisionbyzero);
        double x = double(n) / double(d);
        x = roundtodecimals(x, decimals);
        // The whole part is added after rounding, so it is never rounded itself.
        x += double(w);
        FractionText decimal;
        decimal[0] = isnegative(fraction) ? "-" + doubletotext(std::fabs(x)) : doubletotext(x);
        result = std::move(decimal);
    });
    return result;
}

FractionResult strdecimaltofrac(const FractionText &fraction)
{
    FractionResult result;
    guarded([&] {
        if (!fraction[1].empty() || !fraction[2].empty() || fraction[0].empty()
            || haspercentsign(fraction[0])) {
            result = fraction;
            return;
        }
        const double x = texttodouble(fraction[0]);
        const double integral = std::trunc(x);
        const std::int32_t w = roundtolong(std::fabs(integral));
        const double part = x - integral;
        // The number's text is read by the locale but its decimals are counted after either
        // mark; hosts rely on the two readings being independent ("2,5" in a "." locale).
        const std::int32_t k = decimalcount(fraction[0]);
        if (k > 308)
            raise(errnum::overflow);
        const double scale = std::pow(10.0, k);
        const std::int32_t n = roundtolong(part * scale);
        const std::int32_t d = roundtolong(scale);
        FractionText converted;
        converted[1] = parttext(checkedabs(n));
        converted[2] = parttext(d);
        converted[0] = signedwhole(fraction, w);
        result = std::move(converted);
    });
    return result;
}

} // namespace modfracglobal
