#!/usr/bin/env python3
"""Writes approximate_reference.txt: random decimals, a denominator limit and the nearest
fraction as Python's fractions module finds it (a reference independent of the engine).
Each line: decimal text, limit, whole part, numerator, denominator ("_" for an empty part).
Exact ties are left out: the engine gives them to the smaller denominator."""
import random
from fractions import Fraction


def main():
    rng = random.Random(20261122)
    limits = [1, 2, 3, 7, 16, 64, 100, 1000, 65536, 10**6, 2147483647]
    lines = []
    while len(lines) < 3000:
        whole = rng.choice([0, 0, 1, 3, rng.randrange(10**6), rng.randrange(2**31 - 2)])
        decimals = "".join(rng.choice("0123456789") for _ in range(rng.randrange(1, 37)))
        text = ("-" if rng.random() < 0.3 else "") + f"{whole}.{decimals}"
        limit = rng.choice(limits + [rng.randrange(1, 2**31)])
        x = abs(Fraction(text))
        r = x.limit_denominator(limit)
        # A tie leaves another fraction as near on the other side: 2x - r.
        if r != x and (2 * x - r).denominator <= limit:
            continue
        w, p = divmod(r.numerator, r.denominator)
        if w > 2**31 - 1:
            continue
        sign = "-" if text.startswith("-") and r != 0 else ""
        wholepart = sign + (str(w) if w else "")
        lines.append(f"{text} {limit} {wholepart or '_'} {p or '_'} {r.denominator}")
    with open(__file__.replace(".py", ".txt"), "w") as out:
        out.write("\n".join(lines) + "\n")


main()
