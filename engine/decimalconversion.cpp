// Crossing between exact fractions and decimal numbers: the only floating-point part of the engine.

#include "modfracglobal.h"

#include "engineinternal.h"

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
        if (d == 0) {
            report(errnum::divisionbyzero);
            return;
        }
        if (decimals < 0) {
            report(errnum::invalidcall);
            return;
        }
        double x = double(n) / double(d);
        x = roundtodecimals(x, decimals);
        // The whole part is added after rounding, so it is never rounded itself.
        x += double(w);
        FractionText &decimal = result.emplace();
        decimal[0] = isnegative(fraction) ? "-" + doubletotext(std::fabs(x)) : doubletotext(x);
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
        double x = 0;
        std::int32_t w = 0;
        if (const int error = readdouble(fraction[0], x); error != 0) {
            report(error);
            return;
        }
        const double integral = std::trunc(x);
        const double part = x - integral;
        // The number's text is read by the locale but its decimals are counted after either
        // mark; hosts rely on the two readings being independent ("2,5" in a "." locale).
        const std::int32_t k = decimalcount(fraction[0]);
        const double scale = k > 308 ? HUGE_VAL : powerof10(k);
        std::int32_t n = 0;
        std::int32_t d = 0;
        int error = roundlong(std::fabs(integral), w);
        if (error == 0)
            error = roundlong(part * scale, n);
        if (error == 0)
            error = roundlong(scale, d);
        if (error != 0) {
            report(error);
            return;
        }
        FractionText &converted = result.emplace();
        writepart(converted[1], checkedabs(n));
        writepart(converted[2], d);
        writewhole(converted[0], fraction, w);
    });
    return result;
}

} // namespace modfracglobal
