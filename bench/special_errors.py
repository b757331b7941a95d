#!/usr/bin/env python3
"""Errors of the special functions, on random arguments, on ones near zeros and poles and on huge ones.

    bench/special_errors.py [-n COUNT] [-d DIGITS,...] [-s SEED] [-m SHARE] [-p PART/PARTS] [NAME ...]

COUNT arguments a function (default 40), at 5, 10, 50 and 500 digits unless told; the worst error of each function and
precision is printed. An error is counted in units of the last digit of a part, or of the larger part where the smaller one
is below all digits of it. Half of the arguments are complex where the function takes such.

Values come from the balls of Arb where bench/special_referee was built, and from mpmath where Arb has none; mpmath also
checks one of SHARE cases (default 20) and decides where Arb disagrees: on a cut the two take different sides. Counted
apart are `open` calls, which the program leaves standing, `slow` ones, which take more than 10 seconds, and `none`,
of which neither reference has a value, `sides` where the references differ, `pole`s and values out of the range of floats. The exit status tells whether an error exceeds one unit. -p lets several
processes share the functions.
"""

import argparse
import os
import random
import re
import signal
import subprocess
import sys
import time

import mpmath
from mpmath import mp, mpc, mpf

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
PROGRAM = os.environ.get("KOREL_PROGRAM", os.path.join(ROOT, "build/release/bin/korelTTY"))
REFEREE = os.environ.get("KOREL_REFEREE", os.path.join(ROOT, "build/release/bench/special_referee"))
BATCH = 200
SLOW = 10  # seconds
# Floats end here, as powers of ten.
LARGEST = mpf(10) ** 2147483000


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


def near(*points):
    """A decimal text near one of the points, which are decimal texts, apart by 10^-1 to 10^-25 of it or by its last digits."""
    def make(rng):
        point = rng.choice(points)
        with mp.workdps(60):
            apart = mpf(rng.choice([-1, 1])) * rng.randint(1, 99) * mpf(10) ** -rng.randint(2, 26)
            return point + ("" if "." in point else ".") if rng.random() < 0.1 else mp.nstr(mpf(point) + apart, 45, min_fixed=-30, max_fixed=30)
    return make


def mixed(*makers):
    return lambda rng: rng.choice(makers)(rng)


POLES = near("0", "-1", "-2", "-3", "-7", "-20", "1", "2")
WIDE = mixed(real(-5, 5), real(-60, 60), scale(-8, 1), scale(-2, 3))
HUGE = mixed(scale(3, 6), scale(6, 40))
UNIT = mixed(real(-1, 1), scale(-6, -1), near("1", "-1", "0"))
SMALL = mixed(real(-8, 8), scale(-5, 0), scale(-30, -5))
ORDER = mixed(whole(-5, 20), real(-8, 8), near("0", "1", "-2", "0.5"))
BESSEL = mixed(WIDE, WIDE, scale(-30, 2), HUGE, near("2.404825557695772768622", "3.831705970207512315614", "5.520078110286310649597",
                                                     "0.893576966279167521585", "8.653727912911012216954"))
AIRY = mixed(WIDE, WIDE, HUGE, near("-2.338107410459767038489", "-1.173713222709127924919", "-1.018792971647471089018", "0"))
DEGREE = mixed(whole(0, 30), real(-3, 5), near("0", "3", "-1"))


def carlson(z, k, factor, n):
    """The elliptic integral to z, by those of Carlson: an amplitude would lie beside a quarter turn where z is near 1."""
    x, y = 1 - z * z, 1 - k * k * z * z
    first = z * mp.elliprf(x, y, 1)
    return first + factor * z ** 3 * mp.elliprj(x, y, 1, 1 - n * z * z) / 3 if factor else first


# name of the function, makers of its arguments, which of them may be complex, mpmath's function
FUNCTIONS = [
    ("GAMMA", [mixed(WIDE, WIDE, POLES, HUGE)], [1], mp.gamma),
    ("lnGAMMA", [mixed(WIDE, WIDE, POLES, HUGE)], [1], mp.loggamma),
    ("Psi", [mixed(WIDE, WIDE, POLES, HUGE, near("1.461632144968362341263", "-0.504083008264455409258"))], [1], mp.digamma),
    ("Psi", [whole(1, 5), mixed(WIDE, WIDE, POLES, positive(3, 5))], [0, 1], lambda n, x: mp.polygamma(int(n), x)),
    ("Beta", [mixed(SMALL, POLES, positive(1, 12)), mixed(SMALL, SMALL, POLES)], [1, 1], mp.beta),
    ("GAMMA", [mixed(SMALL, POLES), mixed(real(0, 30), positive(-5, 1), positive(-20, 4))], [1, 1], lambda a, z: mp.gammainc(a, z)),
    ("Zeta", [mixed(real(-20, 20), scale(-4, 1), scale(1, 2), near("1", "-2", "-4", "0"))], [1], mp.zeta),
    ("Zeta", ["0", mixed(real(-5, 8), near("1", "0", "-2")), mixed(real(0.1, 20), positive(-6, 2))], [0, 1, 0],
     lambda n, s, a: mp.zeta(s, a)),
    ("Zeta", ["1", mixed(real(-5, 8), near("1"))], [0, 1], lambda n, s: mp.zeta(s, 1, 1)),
    ("erf", [mixed(SMALL, scale(-8, 1), scale(0, 3), HUGE)], [1], mp.erf),
    ("erfc", [mixed(SMALL, scale(-8, 1), scale(0, 3), HUGE)], [1], mp.erfc),
    ("erfi", [mixed(SMALL, scale(0, 2))], [1], mp.erfi),
    ("Ei", [mixed(WIDE, WIDE, scale(2, 6), near("0.372507410781366634462", "0"))], [1], mp.ei),
    ("Ei", [mixed(whole(-3, 5), real(-4, 4)), mixed(real(0, 30), positive(-5, 1), positive(0, 4))], [0, 1], lambda n, z: mp.expint(n, z)),
    ("Si", [mixed(WIDE, WIDE, HUGE, scale(-30, -8))], [1], mp.si),
    ("Ci", [mixed(WIDE, WIDE, HUGE, near("0.616505485620716233797", "3.384180422551186426397"))], [1], mp.ci),
    ("Shi", [mixed(WIDE, scale(2, 5), scale(-30, -8))], [1], mp.shi),
    ("Chi", [mixed(WIDE, scale(2, 5), near("0.523822571389864", "0"))], [0], mp.chi),
    ("Li", [mixed(positive(-3, 4), positive(4, 40), near("1", "1.451369234883381050284"))], [0], mp.li),
    ("dilog", [mixed(WIDE, WIDE, HUGE, near("1", "0", "2"))], [1], lambda x: mp.polylog(2, 1 - x)),
    ("polylog", [whole(-3, 6), mixed(WIDE, WIDE, HUGE, near("1", "-1", "0"))], [0, 1], lambda s, z: mp.polylog(int(s), z)),
    ("polylog", [real(-3, 4, 3), mixed(SMALL, near("1", "-1", "0"))], [0, 1], mp.polylog),
    ("LambertW", [whole(-3, 3), mixed(WIDE, WIDE, HUGE, near("-0.367879441171442321596", "0"))], [0, 1], lambda k, z: mp.lambertw(z, int(k))),
    ("BesselJ", [ORDER, BESSEL], [0, 1], mp.besselj),
    ("BesselY", [ORDER, BESSEL], [0, 1], mp.bessely),
    ("BesselI", [ORDER, mixed(WIDE, scale(-30, 2), scale(2, 4))], [0, 1], mp.besseli),
    ("BesselK", [ORDER, mixed(WIDE, scale(-30, 2), scale(2, 4))], [0, 1], mp.besselk),
    ("AiryAi", [AIRY], [1], mp.airyai),
    ("AiryBi", [AIRY], [1], mp.airybi),
    ("AiryAi", ["1", AIRY], [0, 1], lambda n, z: mp.airyai(z, derivative=1)),
    ("AiryBi", ["1", AIRY], [0, 1], lambda n, z: mp.airybi(z, derivative=1)),
    ("EllipticK", [mixed(UNIT, SMALL, HUGE)], [1], lambda k: mp.ellipk(k * k)),
    ("EllipticE", [mixed(UNIT, SMALL, HUGE)], [1], lambda k: mp.ellipe(k * k)),
    ("EllipticPi", [mixed(real(-3, 0.9), near("0", "1")), mixed(real(-0.9, 0.9), UNIT)], [0, 0], lambda n, k: mp.ellippi(n, k * k)),
    ("EllipticF", [UNIT, UNIT], [0, 0], lambda z, k: carlson(z, k, 0, 0)),
    ("EllipticE", [UNIT, UNIT], [0, 0], lambda z, k: carlson(z, k, -k * k, 0)),
    ("EllipticPi", [UNIT, UNIT, UNIT], [0, 0, 0], lambda z, n, k: carlson(z, k, n, n)),
    ("LegendreP", [DEGREE, mixed(UNIT, UNIT, real(-3, 8))], [0, 1], lambda n, x: mp.legendre(n, x)),
    ("ChebyshevT", [DEGREE, mixed(UNIT, UNIT, real(-3, 8))], [0, 1], mp.chebyt),
    ("ChebyshevU", [DEGREE, mixed(UNIT, UNIT, real(-3, 8))], [0, 1], mp.chebyu),
    ("HermiteH", [DEGREE, mixed(SMALL, scale(1, 3))], [0, 1], mp.hermite),
    ("LaguerreL", [DEGREE, real(0, 3), mixed(SMALL, scale(1, 3))], [0, 0, 1], mp.laguerre),
    ("GegenbauerC", [DEGREE, real(0.1, 3), mixed(UNIT, UNIT, real(-3, 8))], [0, 0, 1], mp.gegenbauer),
    ("JacobiP", [mixed(whole(0, 20), real(0, 5)), real(0, 3), real(0, 3), mixed(UNIT, UNIT, real(-3, 8))], [0, 0, 0, 1], mp.jacobi),
    ("hypergeom2/1", [real(-3, 3), real(-3, 3), real(0.1, 4), mixed(real(-9, 0.9), real(-2, 2), near("1", "0.5"), scale(0, 5))], [0, 0, 0, 1],
     mp.hyp2f1),
    ("hypergeom1/1", [real(-3, 3), real(0.1, 4), mixed(SMALL, scale(0, 3))], [0, 0, 1], mp.hyp1f1),
    ("hypergeom0/1", [real(-3, 3), mixed(SMALL, scale(0, 4))], [0, 1], mp.hyp0f1),
]


def number(text):
    """The value of an argument, which is a decimal text or a pair of them."""
    return mpc(text[0], text[1]) if isinstance(text, tuple) else mpf(text)


def call(name, arguments):
    texts = ["Complex(%s,%s)" % a if isinstance(a, tuple) else a for a in arguments]
    if name.startswith("hypergeom"):
        upper = int(name[9])
        return "hypergeom([%s],[%s],%s)" % (",".join(texts[:upper]), ",".join(texts[upper:-1]), texts[-1])
    return "%s(%s)" % (name, ",".join(texts))


PART = r"[-+]?(?:\d+\.?\d*|\.\d+)(?:e[-+]?\d+)?"


def parse(text):
    """The value of a printed number, or None."""
    text = text.replace(" ", "")
    if not text.endswith("I"):
        return mpf(text) if re.fullmatch(PART, text) else None
    match = re.fullmatch(r"(?:(%s)(?=[-+]))?(%s|[-+]?)\*?I" % (PART, PART), text)
    if not match:
        return None
    imaginary = match.group(2)
    return mpc(match.group(1) or 0, imaginary + "1" if imaginary in ("", "+", "-") else imaginary)


def run(digits, calls):
    """What the program prints for the calls, one text a call; `slow` for a call that isn't done in time, `pole` for an error."""
    script = "Digits := %d:\ninterface(screenwidth = infinity):\n" % digits
    script += "".join("try lprint(timelimit(%d, evalf(%s))) catch \"time expired\": lprint('slow') catch: lprint('pole') end try;\n"
                      % (SLOW, c) for c in calls)
    try:
        done = subprocess.run([PROGRAM, "-q"], input=script, capture_output=True, text=True, check=False, timeout=600)
    except subprocess.TimeoutExpired:
        return []
    return done.stdout.replace("\\\n", "").splitlines()


def refereed(name, digits, cases):
    """The values of Arb, None where it has none."""
    if not os.path.exists(REFEREE):
        return [None] * len(cases)
    lines = ""
    for arguments in cases:
        parts = [a if isinstance(a, tuple) else (a, "0") for a in arguments]
        lines += "%d %s %s\n" % (digits, name, " ".join("%s %s" % p for p in parts))
    with subprocess.Popen([REFEREE], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as referee:
        try:
            printed, _ = referee.communicate(lines, timeout=400)
        except subprocess.TimeoutExpired:
            referee.kill()
            printed, _ = referee.communicate()
    values = []
    for line in printed.splitlines():
        re_part, im_part = line.split()
        values.append(None if re_part == "?" else mpf(re_part) if im_part == "0" else mpc(re_part, im_part))
    return (values + [None] * len(cases))[:len(cases)]


class Late(BaseException):
    """A reference that takes too long."""


def checked(reference, arguments, digits):
    """mpmath's value where two precisions agree, else None."""
    def late(*_):
        raise Late
    signal.signal(signal.SIGVTALRM, late)
    signal.setitimer(signal.ITIMER_VIRTUAL, 1 + digits / 100)
    try:
        with mp.workdps(2 * digits + 40):
            first = reference(*[number(a) for a in arguments])
        with mp.workdps(3 * digits + 80):
            value = reference(*[number(a) for a in arguments])
        if mp.isnan(value) or mp.isinf(value) or abs(value - first) > abs(value) * mpf(10) ** (-digits - 5):
            return None
        return value
    except (Late, ValueError, ZeroDivisionError, mpmath.libmp.NoConvergence, NotImplementedError, OverflowError, TypeError, MemoryError):
        return None
    finally:
        signal.setitimer(signal.ITIMER_VIRTUAL, 0)


def units(value, wanted, digits):
    """The error in units of the last digit of each part; of the larger one where the other is far smaller."""
    value, wanted = mpc(value), mpc(wanted)
    largest = max(abs(wanted.real), abs(wanted.imag))
    if largest == 0:
        return mpf(0) if abs(value) < mpf(10) ** (-digits) else mpf("inf")
    worst = mpf(0)
    for part, right in ((value.real, wanted.real), (value.imag, wanted.imag)):
        size = abs(right) if abs(right) > largest * mpf(10) ** (-digits) else largest
        place = mp.floor(mp.log10(size)) + 1 - digits
        worst = max(worst, abs(part - right) / mpf(10) ** place)
    return worst


class Survey:
    """The worst error of a function and where it is, and counts."""

    def __init__(self, entry, digits, share):
        self.entry, self.digits, self.share = entry, digits, share
        self.worst, self.where, self.lost = mpf(0), [], []
        self.counts = dict.fromkeys(("cases", "open", "slow", "none", "sides", "pole", "range"), 0)

    def note(self, kind, text):
        self.counts[kind] += 1
        if kind in ("open", "slow") and len(self.lost) < 3:
            self.lost.append("%s: %s" % (kind, text))

    def judge(self, arguments, text, wanted):
        """Counts one case."""
        name, _, _, reference = self.entry
        self.counts["cases"] += 1
        c = call(name, arguments)
        value = parse(text)
        if value is None and text == "slow":
            return self.note("slow", c)
        if text == "pole" or wanted is None and self.counts["none"] > 30:
            return self.note("pole" if text == "pole" else "none", c)
        by_mpmath = wanted is None or self.counts["cases"] % self.share == 0
        other = checked(reference, arguments, self.digits) if by_mpmath else None
        if wanted is None and other is None:
            return self.note("none", c)
        size = abs(other if wanted is None else wanted)
        if size > LARGEST and "infinity" in text or size < 1 / LARGEST and value == 0:
            return self.note("range", c)
        if value is None:
            return self.note("open", c + " -> " + text[:60])
        right = other if wanted is None else wanted
        error = units(value, right, self.digits)
        if error > 1 and wanted is not None:
            other = checked(reference, arguments, self.digits)
            if other is not None and units(value, other, self.digits) <= 1:
                return self.note("sides", c)
        elif wanted is not None and other is not None and units(value, other, self.digits) > 1:
            self.note("sides", c)
        if error > 1 and len(self.where) < 5:
            self.where.append("%s -> %s not %s (%s units)" % (c, text[:70], mp.nstr(right, 20), mp.nstr(error, 4)))
        self.worst = max(self.worst, error)
        return None

    def batch(self, count, rng):
        name, makers, complexes, _ = self.entry
        cases = []
        for i in range(count):
            arguments = [m if isinstance(m, str) else m(rng) for m in makers]
            if i % 2 == 1:
                other = mixed(real(-6, 6), real(-6, 6), scale(-12, 2))
                arguments = [(a, other(rng)) if c else a for a, c in zip(arguments, complexes)]
            cases.append(arguments)
        printed = run(self.digits, [call(name, c) for c in cases])
        if len(printed) != len(cases):
            self.worst = mpf("inf")
            self.where.append("printed %d lines for %d calls from %s" % (len(printed), count, call(name, cases[0])))
            return
        with mp.workdps(self.digits + 30):
            for arguments, text, wanted in zip(cases, printed, refereed(name, self.digits, cases)):
                self.judge(arguments, text, wanted)

    def __str__(self):
        line = "%-12s %d arguments %4d digits %6d cases  worst %s" % (
            self.entry[0], len(self.entry[1]), self.digits, self.counts["cases"], mp.nstr(self.worst, 4))
        line += "".join("  %s %d" % (kind, n) for kind, n in self.counts.items() if n and kind != "cases")
        return "\n      ".join([line] + self.where + self.lost)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("-n", type=int, default=40)
    parser.add_argument("-d", default="5,10,50,500")
    parser.add_argument("-s", type=int, default=1)
    parser.add_argument("-m", type=int, default=20)
    parser.add_argument("-p", default="0/1")
    parser.add_argument("-f", type=int, default=0, help="the first of the functions, by number")
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    part, parts = map(int, options.p.split("/"))
    failed = False
    for digits in [int(d) for d in options.d.split(",")]:
        for i, entry in enumerate(FUNCTIONS):
            if i < options.f or i % parts != part or options.names and entry[0] not in options.names:
                continue
            rng = random.Random("%d %s %d %d" % (options.s, entry[0], i, digits))
            survey, begun = Survey(entry, digits, options.m), time.time()
            for done in range(0, options.n, BATCH):
                survey.batch(min(BATCH, options.n - done), rng)
            print("%s  (%.0f s)" % (survey, time.time() - begun), flush=True)
            failed = failed or survey.worst > 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
