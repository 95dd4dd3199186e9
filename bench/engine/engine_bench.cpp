// The engine's routines beside a baseline that does the same job with plain std::from_chars,
// std::gcd / std::lcm and std::to_chars, on the same random input in the same run: it reads the
// same parts and returns the same FractionResult, without the engine's checks.
// Report figures as the ratio of each routine to its baseline.

#include "modfracglobal.h"

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>
#include <utility>
#include <random>
#include <string>
#include <vector>

using namespace modfracglobal;

namespace {

constexpr std::size_t poolsize = 256;
constexpr std::int32_t largest = 2147483647;

std::mt19937 &random()
{
    static std::mt19937 generator(20240601);
    return generator;
}

std::int32_t uniform(std::int32_t low, std::int32_t high)
{
    return std::uniform_int_distribution<std::int32_t>(low, high)(random());
}

std::string text(std::int32_t value)
{
    return value == 0 ? std::string() : std::to_string(value);
}

std::int32_t readlong(const std::string &part)
{
    std::int32_t value = 0;
    std::from_chars(part.data(), part.data() + part.size(), value);
    return value < 0 ? -value : value;
}

std::string writelong(std::int32_t value)
{
    if (value == 0)
        return std::string();
    char buffer[16];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

void quietsink()
{
    setmessagesink([](const std::string &) {});
    setnumberlocale(numberlocale{".", ","});
}

// Random 32-bit fractions n/d with a whole part.
const std::vector<FractionText> &fractionpool()
{
    static const std::vector<FractionText> pool = [] {
        std::vector<FractionText> p;
        for (std::size_t i = 0; i < poolsize; ++i)
            p.push_back({text(uniform(0, largest)), text(uniform(1, largest)), text(uniform(1, largest))});
        return p;
    }();
    return pool;
}

// Random 32-bit mixed numbers whose improper form still fits in 32 bits.
const std::vector<FractionText> &mixedpool()
{
    static const std::vector<FractionText> pool = [] {
        std::vector<FractionText> p;
        for (std::size_t i = 0; i < poolsize; ++i) {
            const std::int32_t d = uniform(1, largest);
            const std::int32_t w = uniform(0, (largest - d) / d);
            p.push_back({(i % 2 ? "-" : "") + text(w), text(uniform(0, d - 1)), text(d)});
        }
        return p;
    }();
    return pool;
}

// Random decimal texts: a 32-bit whole part and one to nine decimals.
const std::vector<FractionText> &decimalpool()
{
    static const std::vector<FractionText> pool = [] {
        std::vector<FractionText> p;
        for (std::size_t i = 0; i < poolsize; ++i) {
            const int decimals = uniform(1, 9);
            std::string digits = std::to_string(uniform(0, 999999999));
            digits.insert(0, std::size_t(9) - digits.size(), '0');
            p.push_back({std::to_string(uniform(0, largest)) + "." + digits.substr(0, std::size_t(decimals)), "", ""});
        }
        return p;
    }();
    return pool;
}

// --- single fractions ------------------------------------------------------------------------

void baseline_reduce(benchmark::State &state)
{
    const auto &pool = fractionpool();
    std::size_t i = 0;
    for (auto _ : state) {
        const FractionText &f = pool[i++ % poolsize];
        const std::int32_t w = readlong(f[0]);
        const std::int32_t n = readlong(f[1]);
        const std::int32_t d = readlong(f[2]);
        const std::int32_t g = std::gcd(n, d);
        FractionResult r(std::in_place, FractionText{writelong(w), writelong(n / g), writelong(d / g)});
        benchmark::DoNotOptimize(r);
    }
}

void engine_reduce(benchmark::State &state)
{
    quietsink();
    const auto &pool = fractionpool();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strreduce(pool[i++ % poolsize]));
}

void baseline_mixedtofrac(benchmark::State &state)
{
    const auto &pool = mixedpool();
    std::size_t i = 0;
    for (auto _ : state) {
        const FractionText &f = pool[i++ % poolsize];
        const bool negative = !f[0].empty() && f[0][0] == '-';
        const std::int32_t w = readlong(negative ? f[0].substr(1) : f[0]);
        const std::int32_t n = readlong(f[1]);
        const std::int32_t d = readlong(f[2]);
        FractionResult r(std::in_place, FractionText{negative ? "-" : "", writelong(w * d + n), writelong(d)});
        benchmark::DoNotOptimize(r);
    }
}

void engine_mixedtofrac(benchmark::State &state)
{
    quietsink();
    const auto &pool = mixedpool();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strmixedtofrac(pool[i++ % poolsize]));
}

void baseline_fractodecimal(benchmark::State &state)
{
    const auto &pool = fractionpool();
    std::size_t i = 0;
    for (auto _ : state) {
        const FractionText &f = pool[i++ % poolsize];
        const double x = std::nearbyint(double(readlong(f[1])) / double(readlong(f[2])) * 1e4) / 1e4
                         + double(readlong(f[0]));
        char buffer[32];
        const auto end = std::to_chars(buffer, buffer + sizeof buffer, x, std::chars_format::general, 15).ptr;
        FractionResult r(std::in_place, FractionText{std::string(buffer, end), "", ""});
        benchmark::DoNotOptimize(r);
    }
}

void engine_fractodecimal(benchmark::State &state)
{
    quietsink();
    const auto &pool = fractionpool();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strfractodecimal(pool[i++ % poolsize], 4));
}

void baseline_decimaltofrac(benchmark::State &state)
{
    const auto &pool = decimalpool();
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string &t = pool[i++ % poolsize][0];
        double x = 0;
        std::from_chars(t.data(), t.data() + t.size(), x);
        const double integral = std::trunc(x);
        const std::size_t k = t.size() - t.find('.') - 1;
        const double scale = std::pow(10.0, double(k));
        FractionResult r(std::in_place, FractionText{writelong(std::int32_t(integral)), writelong(std::int32_t(std::nearbyint((x - integral) * scale))),
                       writelong(std::int32_t(scale))});
        benchmark::DoNotOptimize(r);
    }
}

void engine_decimaltofrac(benchmark::State &state)
{
    quietsink();
    const auto &pool = decimalpool();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strdecimaltofrac(pool[i++ % poolsize]));
}

// --- lists -----------------------------------------------------------------------------------

// A thousand fractions over divisors of 720720 with whole parts 0 or 1 and random signs: the
// sum fits in 32 bits.
const FractionList &sumlist()
{
    static const FractionList list = [] {
        std::vector<std::int32_t> divisors;
        for (std::int32_t d = 1; d <= 720720; ++d) {
            if (720720 % d == 0)
                divisors.push_back(d);
        }
        FractionList l;
        for (int i = 0; i < 1000; ++i) {
            const std::int32_t d = divisors[std::size_t(uniform(0, std::int32_t(divisors.size()) - 1))];
            const bool negative = uniform(0, 1) == 1;
            l.push_back({(negative ? "-" : "") + text(uniform(0, 1)), text(uniform(0, d - 1)), text(d)});
        }
        return l;
    }();
    return list;
}

void baseline_add1000(benchmark::State &state)
{
    const FractionList &list = sumlist();
    for (auto _ : state) {
        std::vector<std::int32_t> w(list.size()), n(list.size()), d(list.size());
        std::int64_t lcm = 1;
        for (std::size_t i = 0; i < list.size(); ++i) {
            const FractionText &f = list[i];
            const bool negative = !f[0].empty() && f[0][0] == '-';
            w[i] = readlong(negative ? f[0].substr(1) : f[0]);
            n[i] = readlong(f[1]);
            d[i] = readlong(f[2]);
            if (negative) {
                w[i] = -w[i];
                n[i] = -n[i];
            }
            if (d[i] == 0)
                d[i] = 1;
            lcm = std::lcm(lcm, std::int64_t(d[i]));
        }
        std::int64_t whole = 0, sum = 0;
        for (std::size_t i = 0; i < list.size(); ++i) {
            whole += w[i];
            sum += lcm / d[i] * n[i];
        }
        const std::int64_t total = whole * lcm + sum;
        FractionResult r(std::in_place, FractionText{total < 0 ? "-" : "", writelong(std::int32_t(std::llabs(total))), writelong(std::int32_t(lcm))});
        benchmark::DoNotOptimize(r);
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(list.size()));
}

void engine_add1000(benchmark::State &state)
{
    quietsink();
    const FractionList &list = sumlist();
    for (auto _ : state)
        benchmark::DoNotOptimize(straddfractions(list));
    state.SetItemsProcessed(state.iterations() * std::int64_t(list.size()));
}

// Ten factors whose unreduced product fits in 32 bits.
const FractionList &productlist()
{
    static const FractionList list = [] {
        FractionList l;
        for (int i = 0; i < 10; ++i)
            l.push_back({i % 3 == 0 ? "-" : "", text(uniform(1, 8)), text(uniform(1, 8))});
        return l;
    }();
    return list;
}

void baseline_multiply10(benchmark::State &state)
{
    for (auto _ : state) {
        FractionList list = productlist();
        std::int32_t p = 1, q = 1;
        for (FractionText &f : list) {
            const bool negative = !f[0].empty() && f[0][0] == '-';
            const std::int32_t w = readlong(negative ? f[0].substr(1) : f[0]);
            const std::int32_t d = readlong(f[2]);
            const std::int32_t n = w * d + readlong(f[1]);
            f = FractionText{negative ? "-" : "", writelong(n), writelong(d)};
            p *= negative ? -n : n;
            q *= d;
        }
        FractionResult r(std::in_place, FractionText{p < 0 ? "-" : "", writelong(p < 0 ? -p : p), writelong(q)});
        benchmark::DoNotOptimize(r);
    }
}

void engine_multiply10(benchmark::State &state)
{
    quietsink();
    for (auto _ : state) {
        FractionList list = productlist();
        benchmark::DoNotOptimize(strmultiplyfractions(list));
    }
}

const std::vector<LongList> &adversariallists()
{
    static const std::vector<LongList> lists{
        {2147483647, 1, 2},                        // counting multiples: about 2^31 steps to overflow
        {2, 3, 5, 7, 11, 13, 17, 19, 23, 29},      // overflows after about 2^31 / 29 steps
        {2, 3, 5, 7, 11, 13, 17, 19, 23},          // fits: 223092870, after 9.7 million steps
    };
    return lists;
}

void baseline_lcm(benchmark::State &state)
{
    const LongList &list = adversariallists()[std::size_t(state.range(0))];
    for (auto _ : state) {
        std::int64_t lcm = 1;
        for (std::int32_t v : list) {
            lcm = std::lcm(lcm, std::int64_t(v));
            if (lcm > largest) {
                lcm = 0;
                break;
            }
        }
        benchmark::DoNotOptimize(lcm);
    }
}

void engine_lcm(benchmark::State &state)
{
    quietsink();
    const LongList &source = adversariallists()[std::size_t(state.range(0))];
    for (auto _ : state) {
        LongList list = source;
        benchmark::DoNotOptimize(listlcm(list));
    }
}

// --- worst cases, absolute times -------------------------------------------------------------

void worst_reduce_fibonacci(benchmark::State &state)
{
    quietsink();
    const FractionText f{"", "1836311903", "1134903170"};
    for (auto _ : state)
        benchmark::DoNotOptimize(strreduce(f));
}

void worst_reduce_zero_over_zero(benchmark::State &state)
{
    quietsink();
    const FractionText f{"", "0", "0"};
    for (auto _ : state)
        benchmark::DoNotOptimize(strreduce(f));
}

void worst_partvalue_thousand_digits(benchmark::State &state)
{
    quietsink();
    const std::string digits(1000, '7');
    for (auto _ : state)
        benchmark::DoNotOptimize(partvalue(digits));
}

void worst_decimaltofrac_thousand_decimals(benchmark::State &state)
{
    quietsink();
    const FractionText f{"0." + std::string(1000, '3'), "", ""};
    for (auto _ : state)
        benchmark::DoNotOptimize(strdecimaltofrac(f));
}

void worst_listgcd_cycling(benchmark::State &state)
{
    quietsink();
    for (auto _ : state) {
        LongList list{-8, -2};
        benchmark::DoNotOptimize(listgcd(list));
    }
}

void worst_invert_overflow(benchmark::State &state)
{
    quietsink();
    const FractionText f{"2147483647", "1", "2"};
    for (auto _ : state)
        benchmark::DoNotOptimize(strinvert(f));
}


// --- fractions as people write them -----------------------------------------------------------

// Mixed numbers as typed: "-123 45/678".
const std::vector<std::string> &writtenpool()
{
    static const std::vector<std::string> pool = [] {
        std::vector<std::string> p;
        for (const FractionText &f : mixedpool())
            p.push_back(f[0] + " " + (f[1].empty() ? "0" : f[1]) + "/" + f[2]);
        return p;
    }();
    return pool;
}

void baseline_parse(benchmark::State &state)
{
    const auto &pool = writtenpool();
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string &t = pool[i++ % poolsize];
        const char *end = t.data() + t.size();
        std::int32_t w = 0, n = 0, d = 0;
        const bool negative = t[0] == '-';
        auto r = std::from_chars(t.data() + (negative ? 1 : 0), end, w);
        r = std::from_chars(r.ptr + 1, end, n);
        std::from_chars(r.ptr + 1, end, d);
        FractionResult f(std::in_place, FractionText{(negative ? "-" : "") + writelong(w), writelong(n), writelong(d)});
        benchmark::DoNotOptimize(f);
    }
}

void engine_parse(benchmark::State &state)
{
    quietsink();
    const auto &pool = writtenpool();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strparsefraction(pool[i++ % poolsize]));
}

void baseline_format(benchmark::State &state)
{
    const auto &pool = mixedpool();
    std::size_t i = 0;
    for (auto _ : state) {
        const FractionText &f = pool[i++ % poolsize];
        std::string t = f[0] + " " + f[1] + "/" + f[2];
        benchmark::DoNotOptimize(t);
    }
}

void engine_format(benchmark::State &state)
{
    const auto &pool = mixedpool();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strformatfraction(pool[i++ % poolsize]));
}

// The baseline reads the decimal as a double and runs the same continued fraction in doubles:
// it can be wrong in the last digits, which the engine's exact reading never is.
void baseline_approximate(benchmark::State &state)
{
    const auto &pool = decimalpool();
    const std::int64_t limit = state.range(0);
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string &t = pool[i++ % poolsize][0];
        double x = 0;
        std::from_chars(t.data(), t.data() + t.size(), x);
        const double whole = std::floor(x);
        double rest = x - whole;
        std::int64_t p0 = 0, q0 = 1, p1 = 1, q1 = 0;
        for (int step = 0; step < 64; ++step) {
            const double a = std::floor(rest == 0 ? 0 : 1 / rest);
            if (step == 0) {
                p0 = 0; q0 = 1; p1 = 0; q1 = 1;
                if (rest == 0)
                    break;
            }
            if (a > double(limit) || q0 + std::int64_t(a) * q1 > limit)
                break;
            const std::int64_t q2 = q0 + std::int64_t(a) * q1;
            const std::int64_t p2 = p0 + std::int64_t(a) * p1;
            p0 = p1; q0 = q1; p1 = p2; q1 = q2;
            rest = 1 / rest - a;
            if (rest <= 0)
                break;
        }
        FractionResult f(std::in_place, FractionText{writelong(std::int32_t(whole)), writelong(std::int32_t(p1)),
                                                     writelong(std::int32_t(q1))});
        benchmark::DoNotOptimize(f);
    }
}

void engine_approximate(benchmark::State &state)
{
    quietsink();
    const auto &pool = decimalpool();
    const std::int32_t limit = std::int32_t(state.range(0));
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(strapproximate(pool[i++ % poolsize], limit));
}

} // namespace

BENCHMARK(baseline_parse);
BENCHMARK(engine_parse);
BENCHMARK(baseline_format);
BENCHMARK(engine_format);
BENCHMARK(baseline_approximate)->Arg(16)->Arg(1000000);
BENCHMARK(engine_approximate)->Arg(16)->Arg(1000000);

BENCHMARK(baseline_reduce);
BENCHMARK(engine_reduce);
BENCHMARK(baseline_mixedtofrac);
BENCHMARK(engine_mixedtofrac);
BENCHMARK(baseline_fractodecimal);
BENCHMARK(engine_fractodecimal);
BENCHMARK(baseline_decimaltofrac);
BENCHMARK(engine_decimaltofrac);
BENCHMARK(baseline_add1000);
BENCHMARK(engine_add1000);
BENCHMARK(baseline_multiply10);
BENCHMARK(engine_multiply10);
BENCHMARK(baseline_lcm)->DenseRange(0, 2);
BENCHMARK(engine_lcm)->DenseRange(0, 2);
BENCHMARK(worst_reduce_fibonacci);
BENCHMARK(worst_reduce_zero_over_zero);
BENCHMARK(worst_partvalue_thousand_digits);
BENCHMARK(worst_decimaltofrac_thousand_decimals);
BENCHMARK(worst_listgcd_cycling);
BENCHMARK(worst_invert_overflow);

BENCHMARK_MAIN();
