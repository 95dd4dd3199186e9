#pragma once

// Shared by the engine's tests: message capture, pinned separators and one table type for every
// routine that answers with a record.

#include "modfracglobal.h"

#include <gtest/gtest.h>

#include <cctype>
#include <functional>
#include <string>
#include <type_traits>
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
struct pinnedlocale
{
    numberlocale saved = currentnumberlocale();
    explicit pinnedlocale(const std::string &decimal) { setnumberlocale({decimal, decimal == "," ? "." : ","}); }
    ~pinnedlocale() { setnumberlocale(saved); }
};

inline const std::string overflow = "Overflow", divbyzero = "Division by zero", mismatch = "Type mismatch",
                         subscript = "Subscript out of range", badcall = "Invalid procedure call or argument",
                         outofstack = "Out of stack space";

inline FractionResult rec(std::string w, std::string n, std::string d) { return FractionText{std::move(w), std::move(n), std::move(d)}; }
inline const FractionResult unallocated;

/*! A routine run on the caller's rows; routines of one record read row 0. */
using routine = std::function<FractionResult(FractionList &)>;

/*! One call: the record and messages it gives and, when the routine rewrites them, the rows
 *  afterwards. */
struct call
{
    std::string name; routine run; FractionList rows; FractionResult expected;
    messages shown = {}; FractionList after = {}; std::string decimal = ".";
};

inline void PrintTo(const call &c, std::ostream *os) { *os << c.name; }

class routinetest : public ::testing::TestWithParam<call> {};

/*! A GoogleTest parameter name made of the case's description. */
inline std::string casename(const ::testing::TestParamInfo<call> &info)
{
    std::string name = info.param.name;
    for (char &c : name)
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

template <typename... Args>
routine onrow(FractionResult (*f)(const FractionText &, Args...), std::type_identity_t<Args>... args)
{
    return [=](FractionList &rows) { return f(rows.at(0), args...); };
}

} // namespace enginetest
