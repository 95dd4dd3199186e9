// Sums and products of fraction lists.

#include "modfracglobal.h"

#include "engineinternal.h"

#include <vector>

namespace modfracglobal {

using namespace detail;

FractionResult straddfractions(const FractionList &fractions)
{
    FractionResult result;
    guarded([&] {
        if (fractions.empty()) {
            report(errnum::subscript);
            return;
        }
        const std::size_t count = fractions.size();
        LongList wholes(count);
        LongList numerators(count);
        LongList denominators(count);
        for (std::size_t i = 0; i < count; ++i) {
            const FractionText &row = fractions[i];
            wholes[i] = partmagnitude(row[0]);
            numerators[i] = partmagnitude(row[1]);
            const std::int32_t d = partmagnitude(row[2]);
            if (isnegative(row)) {
                wholes[i] = -wholes[i];
                numerators[i] = -numerators[i];
            }
            denominators[i] = d != 0 ? d : 1;
        }
        // The least common multiple, not the product: sums stay small and overflow late.
        LongList common = denominators;
        const std::int32_t lcm = listlcm(common);
        std::int32_t wholesum = 0;
        std::int32_t numeratorsum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::int32_t scaled = checkedmul(checkeddiv(lcm, denominators[i]), numerators[i]);
            wholesum = checkedadd(wholesum, wholes[i]);
            numeratorsum = checkedadd(numeratorsum, scaled);
        }
        const std::int32_t total = checkedadd(checkedmul(wholesum, lcm), numeratorsum);
        // The record is filled part by part, so a failure on the way leaves what was written.
        result.emplace();
        if (total < 0)
            (*result)[0] = std::string(1, '-');
        writepart((*result)[1], checkedabs(total));
        writepart((*result)[2], lcm);
    });
    return result;
}

FractionResult strmultiplyfractions(FractionList &fractions)
{
    FractionResult result;
    guarded([&] {
        if (fractions.empty()) {
            report(errnum::subscript);
            return;
        }
        std::vector<improperparts> parts(fractions.size());
        for (std::size_t i = 0; i < fractions.size(); ++i) {
            // The caller's row becomes its improper form; a row that has none stops the product.
            if (!improperinto(fractions[i], fractions[i], parts[i])) {
                report(errnum::subscript);
                return;
            }
        }
        // Every row's parts are read, with their messages, before any product can overflow.
        for (std::size_t i = 0; i < fractions.size(); ++i) {
            if (parts[i].known)
                continue;
            const FractionText &row = fractions[i];
            parts[i].numerator = partmagnitude(row[1]);
            parts[i].denominator = partmagnitude(row[2]);
            if (isnegative(row))
                parts[i].numerator = -parts[i].numerator;
        }
        // No common factors are cancelled: hosts see the unreduced product (and its overflow).
        std::int32_t numerator = 1;
        std::int32_t denominator = 1;
        for (const improperparts &row : parts) {
            numerator = checkedmul(row.numerator, numerator);
            denominator = checkedmul(row.denominator, denominator);
        }
        result.emplace();
        writepart((*result)[2], denominator);
        writepart((*result)[1], checkedabs(numerator));
        if (numerator < 0)
            (*result)[0] = std::string(1, '-');
    });
    return result;
}

FractionResult strdividefractions(FractionList &fractions)
{
    FractionResult result;
    guarded([&] {
        if (fractions.empty()) {
            report(errnum::subscript);
            return;
        }
        // An empty divisor yields the marker (empty, empty, "-") that callers test for.
        if (fractions.size() > 1 && isemptyfraction(fractions[1])) {
            result = FractionText{"", "", "-"};
            return;
        }
        result = strmultiplyfractions(fractions);
    });
    return result;
}

} // namespace modfracglobal
