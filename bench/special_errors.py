#!/usr/bin/env python3
"""Errors of the special functions against mpmath, on random arguments: the worst one of each function and precision.

    bench/special_errors.py [-n COUNT] [-d DIGITS,...] [-s SEED] [NAME ...]

COUNT arguments a function (default 40), at 5, 10, 50 and 500 digits unless told. An error is counted in units of the last
digit of the larger part of a value. Arguments are decimal numbers; half of them are complex where the function takes
such. Calls that the program leaves standing count as `open`, values of mpmath that raise as `none`.
"""

import argparse
import os
import random
import re
import subprocess
import sys

import mpmath
from mpmath import mp, mpc, mpf

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
PROGRAM = os.environ.get("KOREL", os.path.join(ROOT, "build/release/bin/korelTTY"))


def real(low, high, places=6):
    """A decimal text in low .. high."""
    return lambda rng: "%.*f" % (rng.choice([1, 2, places]), rng.uniform(low, high))


def scale(low, high):
    """A decimal text of a size between 10^low and 10^high, of either sign."""
    return lambda rng: "%s%.5fe%d" % (rng.choice(["", "-"]), rng.uniform(1, 10), rng.randint(low, high))


def positive(low, high):
    return lambda rng: "%.5fe%d" % (rng.uniform(1, 10), rng.randint(low, high))


def whole(low, high):
    return lambda rng: str(rng.randint(low, high))


def mixed(*makers):
    return lambda rng: rng.choice(makers)(rng)


WIDE = mixed(real(-5, 5), real(-60, 60), scale(-8, 1), scale(-2, 3))
UNIT = mixed(real(-1, 1), scale(-6, -1))
SMALL = mixed(real(-8, 8), scale(-5, 0))

# name of the function, makers of its arguments, which of them may be complex, mpmath's function
FUNCTIONS = [
    ("GAMMA", [WIDE], [1], mp.gamma),
    ("lnGAMMA", [WIDE], [1], mp.loggamma),
    ("Psi", [WIDE], [1], mp.digamma),
    ("Psi", [whole(1, 5), WIDE], [0, 1], lambda n, x: mp.polygamma(int(n), x)),
    ("Beta", [SMALL, SMALL], [1, 1], mp.beta),
    ("GAMMA", [SMALL, mixed(real(0, 30), positive(-5, 1))], [1, 1], lambda a, z: mp.gammainc(a, z)),
    ("Zeta", [mixed(real(-20, 20), scale(-4, 1))], [1], mp.zeta),
    ("Zeta", ["0", real(-5, 8), real(0.1, 20)], [0, 1, 0], lambda n, s, a: mp.zeta(s, a)),
    ("erf", [mixed(SMALL, scale(-8, 1))], [1], mp.erf),
    ("erfc", [mixed(SMALL, scale(-8, 1))], [1], mp.erfc),
    ("erfi", [SMALL], [1], mp.erfi),
    ("Ei", [WIDE], [0], mp.ei),
    ("Ei", [whole(0, 5), mixed(real(0, 30), positive(-5, 1))], [0, 1], lambda n, z: mp.expint(n, z)),
    ("Si", [WIDE], [1], mp.si),
    ("Ci", [WIDE], [1], mp.ci),
    ("Shi", [WIDE], [1], mp.shi),
    ("Chi", [WIDE], [0], mp.chi),
    ("Li", [positive(-3, 4)], [0], mp.li),
    ("dilog", [WIDE], [1], lambda x: mp.polylog(2, 1 - x)),
    ("polylog", [whole(-3, 6), WIDE], [0, 1], lambda s, z: mp.polylog(int(s), z)),
    ("polylog", [real(-3, 4, 3), SMALL], [0, 0], mp.polylog),
    ("LambertW", [whole(-3, 3), WIDE], [0, 1], lambda k, z: mp.lambertw(z, int(k))),
    ("BesselJ", [mixed(whole(-5, 20), real(-8, 8)), WIDE], [0, 1], mp.besselj),
    ("BesselY", [mixed(whole(-5, 20), real(-8, 8)), WIDE], [0, 1], mp.bessely),
    ("BesselI", [mixed(whole(-5, 20), real(-8, 8)), WIDE], [0, 1], mp.besseli),
    ("BesselK", [mixed(whole(-5, 20), real(-8, 8)), WIDE], [0, 1], mp.besselk),
    ("AiryAi", [WIDE], [1], mp.airyai),
    ("AiryBi", [WIDE], [1], mp.airybi),
    ("AiryAi", ["1", SMALL], [0, 1], lambda n, z: mp.airyai(z, derivative=1)),
    ("EllipticK", [UNIT], [1], lambda k: mp.ellipk(k * k)),
    ("EllipticE", [SMALL], [0], lambda k: mp.ellipe(k * k)),
    ("EllipticPi", [real(-3, 0.9), real(-0.9, 0.9)], [0, 0], lambda n, k: mp.ellippi(n, k * k)),
    ("EllipticF", [UNIT, UNIT], [0, 0], lambda z, k: mp.ellipf(mp.asin(z), k * k)),
    ("EllipticE", [UNIT, UNIT], [0, 0], lambda z, k: mp.ellipe(mp.asin(z), k * k)),
    ("EllipticPi", [UNIT, UNIT, UNIT], [0, 0, 0], lambda z, n, k: mp.ellippi(n, mp.asin(z), k * k)),
    ("LegendreP", [mixed(whole(0, 30), real(-3, 5)), UNIT], [0, 0], lambda n, x: mp.legendre(n, x)),
    ("ChebyshevT", [mixed(whole(0, 30), real(-3, 5)), UNIT], [0, 0], mp.chebyt),
    ("ChebyshevU", [mixed(whole(0, 30), real(-3, 5)), UNIT], [0, 0], mp.chebyu),
    ("HermiteH", [mixed(whole(0, 30), real(-3, 5)), SMALL], [0, 0], mp.hermite),
    ("LaguerreL", [mixed(whole(0, 30), real(-3, 5)), real(0, 3), SMALL], [0, 0, 0], mp.laguerre),
    ("GegenbauerC", [mixed(whole(0, 20), real(0, 5)), real(0.1, 3), UNIT], [0, 0, 0], mp.gegenbauer),
    ("JacobiP", [mixed(whole(0, 20), real(0, 5)), real(0, 3), real(0, 3), UNIT], [0, 0, 0, 0], mp.jacobi),
    ("hypergeom", [real(-3, 3), real(-3, 3), real(0.1, 4), mixed(real(-9, 0.9), real(-2, 2))], [0, 0, 0, 1], mp.hyp2f1),
    ("hypergeom", [real(-3, 3), real(0.1, 4), SMALL], [0, 0, 1], mp.hyp1f1),
]


def number(text):
    """The exact value of an argument, which is a decimal text or a pair of them."""
    return mpc(text[0], text[1]) if isinstance(text, tuple) else mpf(text)


def call(name, arguments):
    texts = ["(%s)+(%s)*I" % a if isinstance(a, tuple) else a for a in arguments]
    if name == "hypergeom":
        half = (len(texts) - 1) // 2 + (len(texts) - 1) % 2
        return "hypergeom([%s],[%s],%s)" % (",".join(texts[:half]), ",".join(texts[half:-1]), texts[-1])
    return "%s(%s)" % (name, ",".join(texts))


def parse(text):
    """The value of a printed number, or None."""
    text = text.replace(" ", "")
    part = r"[-+]?(?:\d+\.?\d*|\.\d+)(?:e[-+]?\d+)?"
    match = re.fullmatch(r"(%s)?(?:([-+]?)(%s)?\*?I)?" % (part, part), text)
    if not match or not text:
        return None
    if text.endswith("I"):
        match = re.fullmatch(r"(?:(%s)(?=[-+]))?(%s|[-+]?)\*?I" % (part, part), text)
        if not match:
            return None
        imaginary = match.group(2)
        imaginary = imaginary + "1" if imaginary in ("", "+", "-") else imaginary
        return mpc(match.group(1) or 0, imaginary)
    return mpf(text)


def run(digits, calls):
    """What the program prints for the calls, one text a call."""
    script = "Digits := %d:\ninterface(screenwidth = infinity):\n" % digits
    script += "".join("lprint(evalf(%s));\n" % c for c in calls)
    try:
        done = subprocess.run([PROGRAM, "-q"], input=script, capture_output=True, text=True, check=False, timeout=120)
    except subprocess.TimeoutExpired:
        return []
    lines = done.stdout.replace("\\\n", "").splitlines()
    return lines


def units(value, wanted, digits):
    """The error in units of the last digit of the larger part."""
    if wanted == value:
        return mpf(0)
    size = max(abs(mpc(wanted).real), abs(mpc(wanted).imag))
    if size == 0:
        return mpf(0) if abs(value) < mpf(10) ** (-digits) else mpf("inf")
    place = mp.floor(mp.log10(size)) + 1 - digits
    apart = mpc(value) - mpc(wanted)
    return max(abs(apart.real), abs(apart.imag)) / mpf(10) ** place


def survey(entry, digits, count, rng):
    """One line: the worst error and where it is."""
    name, makers, complexes, reference = entry
    cases = []
    for i in range(count):
        arguments = [m if isinstance(m, str) else m(rng) for m in makers]
        if i % 2 == 1:
            arguments = [(a, real(-6, 6)(rng)) if c else a for a, c in zip(arguments, complexes)]
        cases.append(arguments)
    with mp.workdps(digits):
        calls = [call(name, c) for c in cases]
    printed = run(digits, calls)
    if len(printed) != len(calls):
        return "%-12s %4d  printed %d lines for %d calls" % (name, digits, len(printed), len(calls)), mpf("inf")
    worst, where, open_calls, without = mpf(0), "", 0, 0
    for arguments, c, text in zip(cases, calls, printed):
        with mp.workdps(2 * digits + 40):
            try:
                wanted = reference(*[number(a) for a in arguments])
                with mp.workdps(3 * digits + 80):
                    again = reference(*[number(a) for a in arguments])
            except (ValueError, ZeroDivisionError, mpmath.libmp.NoConvergence, NotImplementedError, OverflowError, TypeError):
                without += 1
                continue
            if mp.isnan(wanted) or mp.isinf(wanted) or abs(wanted - again) > abs(again) * mpf(10) ** (-digits - 5):
                without += 1
                continue
            value = parse(text)
            if value is None:
                open_calls += 1
                where = where or "open: %s -> %s" % (c, text[:80])
                continue
            error = units(value, again, digits)
            if error > worst:
                worst, where = error, "%s -> %s not %s" % (c, text[:60], mp.nstr(again, 20)) if error > 1 else where
    line = "%-12s %d arguments  %4d digits  worst %s" % (name, len(makers), digits, mp.nstr(worst, 4))
    if open_calls:
        line += "  open %d" % open_calls
    if without:
        line += "  none %d" % without
    return line + ("   " + where if where else ""), worst


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("-n", type=int, default=40)
    parser.add_argument("-d", default="5,10,50,500")
    parser.add_argument("-s", type=int, default=1)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    failed = False
    for digits in [int(d) for d in options.d.split(",")]:
        for entry in FUNCTIONS:
            if options.names and entry[0] not in options.names:
                continue
            rng = random.Random("%d %s %d" % (options.s, entry[0], digits))
            line, worst = survey(entry, digits, options.n if digits < 500 else max(options.n // 10, 4), rng)
            print(line, flush=True)
            failed = failed or worst > 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
