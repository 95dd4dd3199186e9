#pragma once

// Shared by the engine's tests: message capture, pinned separators, readable case names and one
// table type for every routine that answers with a record.

#include "modfracglobal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <functional>
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
struct pinnedlocale
{
    numberlocale saved = currentnumberlocale();
    explicit pinnedlocale(const std::string &decimal) { setnumberlocale({decimal, decimal == "," ? "." : ","}); }
    ~pinnedlocale() { setnumberlocale(saved); }
};

inline const messages none;
inline const std::string overflow = "Overflow";
inline const std::string divbyzero = "Division by zero";
inline const std::string mismatch = "Type mismatch";
inline const std::string subscript = "Subscript out of range";
inline const std::string badcall = "Invalid procedure call or argument";
inline const std::string outofstack = "Out of stack space";

inline FractionResult rec(std::string w, std::string n, std::string d)
{
    return FractionText{std::move(w), std::move(n), std::move(d)};
}
inline const FractionResult unallocated;

/*! A routine run on the caller's rows; routines of one record read row 0. */
using routine = std::function<FractionResult(FractionList &)>;

/*! One call: the record and messages it gives and, when the routine rewrites them, the rows
 *  afterwards. */
struct call
{
    std::string name;
    routine run;
    FractionList rows;
    FractionResult expected;
    messages shown = {};
    FractionList after = {};
    std::string decimal = ".";
};

inline void PrintTo(const call &c, std::ostream *os)
{
    *os << c.name;
}

class routinetest : public ::testing::TestWithParam<call>
{
};

/*! A GoogleTest parameter name made of the case's description. */
inline std::string casename(const ::testing::TestParamInfo<call> &info)
{
    std::string name = info.param.name;
    std::replace_if(name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

inline routine onrow(FractionResult (*f)(const FractionText &))
{
    return [f](FractionList &rows) { return f(rows.at(0)); };
}

} // namespace enginetest
