#include "modfracglobal.h"

#include "engineinternal.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

namespace modfracglobal {

using namespace detail;

namespace {

// Far more rounds than any list needs (each round shrinks an entry, Euclid-fast in practice);
// a last guard standing in for the host's call stack.
constexpr int maxgcdrounds = 10000;

bool isnegativetext(std::string_view text)
{
    return !text.empty() && text.front() == '-';
}

std::size_t stepdownindex(const LongList &list)
{
    std::size_t chosen = 0;
    for (std::size_t i = 1; i < list.size(); ++i) {
        if (list[i] < list[i - 1])
            chosen = i;
    }
    return chosen;
}

void reducebyentry(LongList &list, std::size_t chosen)
{
    const std::int32_t divisor = list[chosen];
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i != chosen)
            list[i] = checkedmod(list[i], divisor);
    }
}

// listgcd's rounds: reduce by the chosen entry, drop the zeros, until one entry is left. Returns
// false after reporting when the rounds would never end.
bool gcdrounds(const LongList &list, std::int32_t &result)
{
    LongList work;
    work.reserve(list.size());
    std::copy_if(list.begin(), list.end(), std::back_inserter(work), [](std::int32_t v) { return v != 0; });
    if (work.empty()) {
        // No entry to divide by: every step reports its own failure, as callers have seen it.
        LongList kept = removezeros(list);
        const LongList reduced = modbymin(kept);
        if (reduced.empty()) {
            report(errnum::subscript);
            return false;
        }
        result = reduced.front();
        return true;
    }
    for (int round = 0; work.size() > 1; ++round) {
        // An entry that changes shrinks in magnitude, so a round that changes nothing would
        // repeat for ever: the recursion of the rounds runs out of stack.
        bool changed = false;
        const std::size_t chosen = stepdownindex(work);
        const std::int32_t divisor = work[chosen];
        for (std::size_t i = 0; i < work.size(); ++i) {
            if (i != chosen) {
                const std::int32_t rest = divisor == -1 ? 0 : work[i] % divisor;
                changed = changed || rest != work[i];
                work[i] = rest;
            }
        }
        if (!changed || round == maxgcdrounds) {
            report(errnum::outofstack);
            return false;
        }
        work.erase(std::remove(work.begin(), work.end(), 0), work.end());
    }
    result = work.front();
    return true;
}

} // namespace

namespace detail {

std::int32_t pairgcd(std::int32_t a, std::int32_t b)
{
    if (a >= 0 && b >= 0 && (a | b) != 0)
        return std::gcd(a, b);
    LongList list{a, b};
    return listgcd(list);
}

void writepart(std::string &target, std::int32_t value)
{
    if (value == 0) {
        target.clear();
        return;
    }
    char buffer[12];
    const char *end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    // Built whole and moved in: short texts then cost a copy of their few bytes, not a generic
    // replacement inside the target.
    target = std::string(buffer, std::size_t(end - buffer));
}

void writewhole(std::string &target, const FractionText &source, std::int32_t magnitude)
{
    char buffer[13];
    char *begin = buffer + 1;
    char *end = begin;
    if (magnitude != 0)
        end = std::to_chars(begin, buffer + sizeof buffer, magnitude).ptr;
    if (isnegativetext(source[0]))
        *--begin = '-';
    target = std::string(begin, std::size_t(end - begin));
}

bool isnegative(const FractionText &fraction)
{
    return isnegativetext(fraction[0]);
}

} // namespace detail

std::int32_t partvalue(std::string_view part)
{
    if (part.empty() || part == "+" || part == "-")
        return 0;
    if (const std::int32_t plain = plainpartvalue(part); plain >= 0)
        return plain;
    std::int32_t value = 0;
    if (const int error = readlong(part, value)) {
        report(error);
        return 0;
    }
    if (value == std::numeric_limits<std::int32_t>::min()) {
        report(errnum::overflow);
        return 0;
    }
    return value < 0 ? -value : value;
}

std::string parttext(std::int32_t value)
{
    std::string text;
    writepart(text, value);
    return text;
}

bool isemptypart(std::string_view part)
{
    return part.empty();
}

bool isemptyfraction(const FractionText &fraction)
{
    return fraction[0].empty() && fraction[1].empty() && fraction[2].empty();
}

std::int32_t decimalcount(std::string_view number)
{
    std::size_t at = std::string_view::npos;
    for (std::size_t i = 0; i < number.size(); ++i) {
        if (number[i] == ',') {
            at = i;
            break;
        }
        if (number[i] == '.' && at == std::string_view::npos)
            at = i;
    }
    if (at == std::string_view::npos)
        return 0;
    // Characters, not bytes: continuation bytes of UTF-8 do not count.
    const auto tail = number.substr(at + 1);
    const auto count = std::count_if(tail.begin(), tail.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    });
    return static_cast<std::int32_t>(std::min<std::ptrdiff_t>(count, std::numeric_limits<std::int32_t>::max()));
}

bool haspercentsign(std::string_view text)
{
    return text.find('%') != std::string_view::npos;
}

bool hasdecimalsep(std::string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char c) { return c == ',' || c == '.'; });
}

LongList removezeros(const LongList &list)
{
    LongList result;
    guarded([&] {
        LongList kept;
        kept.reserve(list.size());
        std::copy_if(list.begin(), list.end(), std::back_inserter(kept), [](std::int32_t v) { return v != 0; });
        // The result starts with one spare slot that is dropped at the end; with nothing kept
        // there is nothing to drop.
        if (kept.empty()) {
            report(errnum::subscript);
            return;
        }
        result = std::move(kept);
    });
    return result;
}

std::int32_t minindex(const LongList &list)
{
    if (list.empty()) {
        report(errnum::subscript);
        return 0;
    }
    return static_cast<std::int32_t>(stepdownindex(list));
}

LongList modbymin(LongList &list)
{
    LongList result;
    guarded([&] {
        const std::int32_t chosen = minindex(list);
        if (list.empty()) {
            report(errnum::subscript);
            return;
        }
        reducebyentry(list, static_cast<std::size_t>(chosen));
        result = list;
    });
    return result;
}

std::int32_t listgcd(LongList &list)
{
    std::int32_t result = 0;
    guarded([&] {
        std::int32_t gcd = 0;
        if (gcdrounds(list, gcd))
            result = gcd;
    });
    return result;
}

std::int32_t listlcm(LongList &list)
{
    std::int32_t result = 0;
    guarded([&] {
        if (list.empty()) {
            report(errnum::subscript);
            return;
        }
        if (std::find(list.begin(), list.end(), 0) != list.end()) {
            result = -1;
            return;
        }
        for (std::int32_t &entry : list) {
            if (entry == std::numeric_limits<std::int32_t>::min()) {
                report(errnum::overflow);
                return;
            }
            entry = entry < 0 ? -entry : entry;
        }
        // Counting through the multiples of one entry stops at the first multiple of all of them,
        // the least common multiple, and overflows exactly when that is beyond 32 bits; gcd
        // steps give the same answer in time that grows with the digits, not the value.
        // Denominators of one sum tend to divide a common one: a multiple already reached costs
        // one division instead of a gcd.
        std::uint32_t lcm = 1;
        for (const std::int32_t entry : list) {
            const auto value = static_cast<std::uint32_t>(entry);
            if (lcm % value == 0)
                continue;
            const std::uint64_t next = std::uint64_t(lcm / std::gcd(lcm, value)) * value;
            if (next > std::uint64_t(std::numeric_limits<std::int32_t>::max())) {
                report(errnum::overflow);
                return;
            }
            lcm = static_cast<std::uint32_t>(next);
        }
        result = static_cast<std::int32_t>(lcm);
    });
    return result;
}

} // namespace modfracglobal
