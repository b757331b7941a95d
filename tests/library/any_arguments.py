"""Whatever a procedure of the library is called with, the session goes on.

    any_arguments.py KORELTTY MARCH LIBRARY [--share F] [--tuples N] [--limit SECONDS] [NAME ...]

Calls each procedure that the archive LIBRARY holds (or those named) without arguments, with each operand below (a
share F of them, all by default), and with N random pairs, triples and quadruples: one process a procedure, one trap
and a short time limit a call. A call may give a value or any error of the language. It may not end the process, hang,
or meet an error of the system. The random choices depend on the name alone, so that what is found is found again.
"""
import argparse
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

# They end the session, wait for input, replace the process or make another one.
LEFT_OUT = {"debugger", "exec", "fork"}

OPERANDS = r"""
0 | 1 | -1 | 2 | 3 | 10 | -5 | 255 | 2^31 | 2^63 | 10^30 | -10^30 | 10^400 + 1 | 123456789 | 10^18 + 9
1/2 | -7/3 | 10^30/7 | 0. | -0. | 1.0 | -2.5 | 1.5e-300 | 1e10000000 | -1e-10000000 | Float(1, 2147483646)
Float(infinity) | -Float(infinity) | Float(undefined) | HFloat(1.5)
I | -I | 1 + 2*I | 1/2 - I/3 | 1.5 + 0.*I | -0. - 0.*I | 10^30*I
"" | "abc" | "a b;" | "\001\377" | "3/4" | "%d" | `` | `a b` | 'string' | 'float[8]' | `+`
x | y | n | infinity | -infinity | undefined | true | false | FAIL | Digits | integer | Matrix | assignedNumber
'x' | ''x'' | x[1] | 'shared[1]' | % | NULL | Pi | exp(1) | sqrt(2) | 2^(1/2) + 3^(1/3)
x + 1 | x*y | 2*x^2 - 3*x + 1 | x^y | x^(-2) | x^(10^20) | f(x) | f() | x! | -x | sin(1.5) | x @ y | x @@ 3
x^5 + y^5 + z + 1 | (x^2 - 1)/(x^3 - 1) | (1 + x)^(1/2) | exp(x) | ln(x) | sin(x) | O(x) | RootOf(x^2 + 1)
f(x, 1..2) | x -> x^2 | (x, y) -> x + y
[] | [1] | [x, "a", 2.5] | [[1, 2], [3, 4]] | [1 = 2, x = y] | long | {} | {1} | {x, y, 1} | {{1}, [x]} | (1, 2)
withAttribute | deep | nested
x = 1 | 1 = x | x = 1..3 | x = 3..1 | x = 0 | x = infinity | x = Pi | x = 0.5..2.5 | x = [1, y]
x <> y | x < 1 | x <= y | x and y | not x | 1..3 | 3..1 | 1..10^30 | x..y | 1.5..2.5
x::integer | list | list(integer) | {integer, name} | And(integer, Not(list))
shared | eval(shared) | table() | eval(cyclic) | vectorOf3 | eval(matrixOf2) | double | eval(double) | failing
unknown | holder | holder:-e | eval(`if`)
matrix | vector | floats | smallIntegers | sparse | noElements | complexFloats | scalar | cube
powerSeries | laurentSeries | dense
"""

PREPARATION = r"""
assignedNumber := 5: shared := table([1 = a, x = b, (1, 2) = c]): cyclic := table(): cyclic[1] := cyclic:
vectorOf3 := array(1..3, [1, x, 2.5]): matrixOf2 := array(symmetric, 1..2, 1..2, [[1, 2], [2, y]]):
double := proc(x) 2*x end proc: failing := proc() error "failed on purpose", args end proc:
unknown := proc() 'procname'(args) end proc:
holder := module() export e, g; local l; e := 3; l := 4; g := proc() l end proc; end module:
deep := x: to 200 do deep := [deep, 1] end do: nested := x: to 60 do nested := f(nested)^2 + 1 end do:
long := [seq(k, k = 1..1000)]: withAttribute := setattribute([x, y], first, second):
matrix := rtable(1..2, 1..2, [[1, 2], [3, 4]], subtype = Matrix):
vector := rtable(1..3, [1, x, 2.5], subtype = Vector[column]):
floats := rtable(1..3, [1, 2, 3], datatype = float[8]):
smallIntegers := rtable(-1..1, [1, 2, 3], datatype = integer[4], readonly):
sparse := rtable(1..3, 1..3, [[1, 0, 2], [0, 0, 0], [0, 0, 5]], storage = sparse):
noElements := rtable(1..0): complexFloats := rtable(1..2, [1. + 2.*I, 3.], datatype = complex[8]):
scalar := rtable(): cube := rtable(1..2, 1..2, 1..2):
powerSeries := series(exp(x), x, 4): laurentSeries := series(1/x + ln(x), x, 3):
dense := modp1(ConvertIn(x^2 + 3*x + 1, x), 7): assume(n > 0):
"""


def names_in(march, library):
    listed = subprocess.run([march, "list", library], capture_output=True, text=True, check=True).stdout
    members = {line.split()[-1] for line in listed.splitlines() if line.endswith(".m")}
    return sorted(member[:-2] for member in members)


def calls_of(name, options):
    operands = [operand.strip() for line in OPERANDS.strip().splitlines() for operand in line.split(" | ")]
    chance = random.Random(name)
    calls = [""] + [operand for operand in operands if chance.random() < options.share]
    for count in (2, 2, 2, 3, 3, 4):
        calls += [", ".join(chance.choice(operands) for _ in range(count)) for _ in range(options.tuples)]
    return calls


def fault_of(name, calls, options):
    """What went wrong with the calls, or None."""
    folder = tempfile.mkdtemp(prefix="korel_any_")
    with open(folder + "/calls.krl", "w", encoding="latin-1") as script:
        script.write(PREPARATION)
        for number, call in enumerate(calls):
            script.write(f'lprint("@{number}"): try timelimit(0.15, `{name}`({call})) catch: end try:\n')
        script.write('lprint("@end"):\n')
    limits = 'ulimit -v 6000000 -f 20000; exec "$0" -q calls.krl'
    try:
        run = subprocess.run(["bash", "-c", limits, os.path.abspath(options.korel)], cwd=folder, stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=options.limit, check=False)
        output, end = run.stdout.decode("latin-1"), f"status {run.returncode}"
    except subprocess.TimeoutExpired as hung:
        output, end = (hung.stdout or b"").decode("latin-1"), "no end"
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    last = re.findall(r"@(\d+|end)\b", output)[-1:]
    if last == ["end"] and "System error" not in output:
        return None
    if last == ["end"]:
        end = re.search(".*System error.*", output).group()
    call = calls[int(last[0])] if last and last[0] != "end" else ""
    return f"{name}({call}): {end}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("korel")
    parser.add_argument("march")
    parser.add_argument("library")
    parser.add_argument("names", nargs="*")
    parser.add_argument("--share", type=float, default=1.0)
    parser.add_argument("--tuples", type=int, default=15)
    parser.add_argument("--limit", type=float, default=120)
    options = parser.parse_args()
    names = options.names or [name for name in names_in(options.march, options.library) if name not in LEFT_OUT]
    faults = [fault for name in names if (fault := fault_of(name, calls_of(name, options), options))]
    print(*faults[:20], f"{len(names)} procedures, {len(faults)} with faults", sep="\n")
    sys.exit(1 if faults or not names else 0)


if __name__ == "__main__":
    main()
