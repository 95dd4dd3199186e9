#pragma once

#include "modfracglobal_export.h"

#include <stdexcept>
#include <string>

namespace modfracglobal {

/*!
 * A run-time error of the component: an automation error number and its standard description
 * (6 "Overflow", 11 "Division by zero", 380 "Invalid property value", ...). The engine raises it
 * internally and reports it through the message sink; inside the control it travels to the
 * outermost member call, which records it for the caller instead of letting it pass.
 */
class MODFRACGLOBAL_EXPORT automationerror : public std::runtime_error
{
public:
    /*! An error with the standard description of \a number. */
    explicit automationerror(int number);
    automationerror(int number, const std::string &description);

    int number() const noexcept { return m_number; }
    std::string description() const { return what(); }

    /*! The standard description of an automation error number, or "Application-defined or
     *  object-defined error" for a number without one. */
    static std::string standarddescription(int number);

private:
    int m_number;
};

/*! The error numbers the component raises. */
namespace errnum {
inline constexpr int invalidcall = 5;
inline constexpr int overflow = 6;
inline constexpr int outofmemory = 7;
inline constexpr int subscript = 9;
inline constexpr int divisionbyzero = 11;
inline constexpr int typemismatch = 13;
inline constexpr int outofstack = 28;
inline constexpr int objectnotset = 91;
inline constexpr int invalidproperty = 380;
} // namespace errnum

} // namespace modfracglobal
