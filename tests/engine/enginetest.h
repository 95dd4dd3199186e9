#pragma once

// Shared by the engine's tests: message capture, pinned separators and readable case names.

#include "modfracglobal.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

namespace enginetest {

using namespace modfracglobal;
using messages = std::vector<std::string>;

/*! Collects every message the engine shows while it lives, instead of letting it reach stderr. */
struct messagecapture
{
    messages shown;
    scopedmessagesink sink{[this](const std::string &text) { shown.push_back(text); }};
};

/*! Sets the decimal separator ("." with "," grouping, or "," with "." grouping) for its lifetime. */
class pinnedlocale
{
public:
    explicit pinnedlocale(const std::string &decimal)
        : m_saved(currentnumberlocale())
    {
        setnumberlocale(numberlocale{decimal, decimal == "," ? "." : ","});
    }
    ~pinnedlocale() { setnumberlocale(m_saved); }
    pinnedlocale(const pinnedlocale &) = delete;
    pinnedlocale &operator=(const pinnedlocale &) = delete;

private:
    numberlocale m_saved;
};

inline const messages none;
inline const std::string overflow = "Overflow";
inline const std::string divbyzero = "Division by zero";
inline const std::string mismatch = "Type mismatch";
inline const std::string subscript = "Subscript out of range";
inline const std::string badcall = "Invalid procedure call or argument";
inline const std::string outofstack = "Out of stack space";

/*! A GoogleTest parameter name made of the case's description. */
struct casename
{
    template <typename Param>
    std::string operator()(const ::testing::TestParamInfo<Param> &info) const
    {
        std::string name = info.param.name;
        for (char &c : name) {
            if (!std::isalnum(static_cast<unsigned char>(c)))
                c = '_';
        }
        return name;
    }
};

inline std::string show(const FractionResult &record)
{
    if (!record)
        return "(unallocated)";
    return "(\"" + (*record)[0] + "\", \"" + (*record)[1] + "\", \"" + (*record)[2] + "\")";
}

} // namespace enginetest
