#include "automationerror.h"

namespace modfracglobal {

automationerror::automationerror(int number)
    : std::runtime_error(standarddescription(number))
    , m_number(number)
{
}

automationerror::automationerror(int number, const std::string &description)
    : std::runtime_error(description)
    , m_number(number)
{
}

std::string automationerror::standarddescription(int number)
{
    switch (number) {
    case errnum::invalidcall:
        return "Invalid procedure call or argument";
    case errnum::overflow:
        return "Overflow";
    case errnum::outofmemory:
        return "Out of memory";
    case errnum::subscript:
        return "Subscript out of range";
    case errnum::divisionbyzero:
        return "Division by zero";
    case errnum::typemismatch:
        return "Type mismatch";
    case errnum::outofstack:
        return "Out of stack space";
    case errnum::objectnotset:
        return "Object variable or With block variable not set";
    case errnum::invalidproperty:
        return "Invalid property value";
    default:
        return "Application-defined or object-defined error";
    }
}

} // namespace modfracglobal
