#include "resstrings.h"

#include "automationerror.h"

#include <array>
#include <string>
#include <utility>

namespace kelfractionint::resstrings {

namespace {

constexpr int errnoresource = 326;

struct entry
{
    int id;
    const char *text;
};

constexpr std::array table{
    entry{1, "NORVANE Fraction Control"},
    entry{4, "NORVANE, makers of the kelfractionint fraction components"},
    entry{5, ","},
    entry{6, "."},
    entry{102, "The NORVANE fraction control shows and edits one fraction (a whole part, a numerator and a "
                "denominator) and computes exactly with fractions."},
    entry{104, "Designed and built by NORVANE: it reduces, expands and inverts fractions, adds, subtracts, "
                "multiplies and divides them, and turns them into decimals and percentages and back."},
    entry{200, "Invalid property value"},
    entry{201, "Usereditable and forcesign can't be True simultaneously"},
    entry{202, "Division by zero"},
};

} // namespace

QString loadresstring(int id)
{
    for (const entry &item : table) {
        if (item.id == id)
            return QString::fromUtf8(item.text);
    }
    throw modfracglobal::automationerror(errnoresource,
                                         "Resource with identifier '" + std::to_string(id) + "' not found");
}

QList<int> ids()
{
    QList<int> result;
    for (const entry &item : table)
        result.append(item.id);
    return result;
}

} // namespace kelfractionint::resstrings
