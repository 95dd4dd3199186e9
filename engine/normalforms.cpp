// Rewriting one fraction into an equal value of another form.

#include "modfracglobal.h"

#include "engineinternal.h"

#include <algorithm>

namespace modfracglobal {

using namespace detail;

namespace {

bool hasnofractionpart(const FractionText &fraction)
{
    return fraction[1].empty() || fraction[2].empty();
}

} // namespace

FractionResult strreduce(const FractionText &fraction)
{
    FractionResult result;
    guarded([&] {
        if (hasnofractionpart(fraction)) {
            result = fraction;
            return;
        }
        std::int32_t n = partmagnitude(fraction[1]);
        std::int32_t d = partmagnitude(fraction[2]);
        const std::int32_t g = checkedabs(pairgcd(n, d));
        if (g == 0) {
            report(errnum::divisionbyzero);
            return;
        }
        n = checkeddiv(n, g);
        d = checkeddiv(d, g);
        FractionText &reduced = result.emplace();
        writepart(reduced[1], n);
        writepart(reduced[2], d);
        writewhole(reduced[0], fraction, partmagnitude(fraction[0]));
    });
    return result;
}

FractionResult strfractomixed(const FractionText &fraction)
{
    FractionResult result;
    guarded([&] {
        if (hasnofractionpart(fraction)) {
            result = fraction;
            return;
        }
        std::int32_t w = partmagnitude(fraction[0]);
        std::int32_t n = partmagnitude(fraction[1]);
        const std::int32_t d = partmagnitude(fraction[2]);
        if (d == 0) {
            report(errnum::divisionbyzero);
            return;
        }
        const std::int32_t q = n / d;
        w = checkedadd(w, q);
        n = checkedsub(n, checkedmul(d, q));
        // A remainder of 0 leaves an empty numerator over the old denominator; hosts rely on
        // that record to tell a whole result from a reduced one.
        FractionText &mixed = result.emplace();
        writepart(mixed[1], n);
        writepart(mixed[2], d);
        writewhole(mixed[0], fraction, w);
    });
    return result;
}

FractionResult strexpand(const FractionText &fraction, std::int32_t factor)
{
    FractionResult result;
    guarded([&] {
        if (factor <= 0 || hasnofractionpart(fraction)) {
            result = fraction;
            return;
        }
        // Every part is read, with its message, before the products can overflow.
        const std::int32_t w = partmagnitude(fraction[0]);
        const std::int32_t numer = partmagnitude(fraction[1]);
        const std::int32_t denom = partmagnitude(fraction[2]);
        const std::int32_t n = checkedmul(numer, factor);
        const std::int32_t d = checkedmul(denom, factor);
        FractionText &expanded = result.emplace();
        writepart(expanded[1], n);
        writepart(expanded[2], d);
        writewhole(expanded[0], fraction, w);
    });
    return result;
}

namespace detail {

bool improperinto(const FractionText &fraction, FractionText &target, improperparts &parts)
{
    bool done = false;
    guarded([&] {
        if (isemptyfraction(fraction)) {
            target = FractionText{};
            parts = improperparts{0, 0, true};
            done = true;
            return;
        }
        if (std::any_of(fraction[0].begin(), fraction[0].end(),
                        [](char c) { return c == ',' || c == '.' || c == '%'; })) {
            if (&target != &fraction)
                target = fraction;
            parts = improperparts{};
            done = true;
            return;
        }
        std::int32_t w = partmagnitude(fraction[0]);
        std::int32_t n = partmagnitude(fraction[1]);
        std::int32_t d = 1;
        if (fraction[2].empty()) {
            // A whole number becomes itself over 1; a numerator without denominator is dropped,
            // as hosts have always seen it.
            n = w;
            w = 0;
        } else {
            d = partmagnitude(fraction[2]);
        }
        n = checkedadd(checkedmul(w, d), n);
        // Everything is read before anything is written: the target may be the fraction itself.
        const bool negative = isnegative(fraction);
        writepart(target[1], n);
        writepart(target[2], d);
        if (negative)
            target[0].assign(1, '-');
        else
            target[0].clear();
        parts = improperparts{negative ? -n : n, d, true};
        done = true;
    });
    return done;
}

} // namespace detail

FractionResult strmixedtofrac(const FractionText &fraction)
{
    FractionResult result(std::in_place);
    improperparts parts;
    if (!improperinto(fraction, *result, parts))
        result.reset();
    return result;
}

FractionResult strinvert(const FractionText &fraction)
{
    FractionResult result;
    guarded([&] {
        if (hasnofractionpart(fraction)) {
            result = fraction;
            return;
        }
        const FractionResult improper = strmixedtofrac(fraction);
        if (!improper) {
            report(errnum::subscript);
            return;
        }
        // The new denominator is a plain conversion of the numerator's text, so a zero value
        // (empty numerator) fails with a type mismatch; hosts rely on getting no result then.
        std::int32_t numerator = 0;
        if (const int error = readlong((*improper)[1], numerator)) {
            report(error);
            return;
        }
        FractionText &inverted = result.emplace();
        inverted[1] = (*improper)[2];
        inverted[2] = std::to_string(numerator);
        inverted[0] = (*improper)[0];
    });
    return result;
}

} // namespace modfracglobal
