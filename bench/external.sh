#!/usr/bin/env bash
# Calls of C functions beside Python's ctypes and cffi:   bench/external.sh BUILD
# Nanoseconds a call, the least of three runs of a loop of a procedure; the loop is a part of them, in both languages.
# `ratio` is Korel's time over that of ctypes. A million calls of hypot, of a function of an integer and a string, and of one over an array that is handed over
# in place, whose figure must not depend on its length.
build=$(cd "$1" && pwd)
python=$(for p in /usr/bin/python3 python3; do command -v "$p" && break; done)
scratch=$(mktemp -d) || exit 2
trap 'rm -rf "$scratch"' EXIT
cd "$scratch" || exit 2
cat > bench.c <<'END'
int tag(int n, const char *text) { return n + text[0]; }
double first(double *data, int n) { return data[n - 1]; }
int twice(int n) { return 2 * n; }
END
cc -O2 -shared -fPIC bench.c -o libbench.so || exit 1

cat > korel.krl <<'END'
n := 1000000:
hypot := define_external('hypot', x::float[8], y::float[8], RETURN::float[8], LIB = "libm.so.6"):
twice := define_external('twice', x::integer[4], RETURN::integer[4], LIB = "./libbench.so"):
tag := define_external('tag', k::integer[4], text::string[], RETURN::integer[4], LIB = "./libbench.so"):
first := define_external('first', data::ARRAY(1..k, float[8], NO_COPY), k::integer[4], RETURN::float[8], LIB = "./libbench.so"):
short := rtable(1..10, fill = 1, datatype = float[8]): long := rtable(1..10^6, fill = 1, datatype = float[8]):
least := proc(f) local best, t; best := infinity; to 3 do t := time(); f(); t := time() - t; if t < best then best := t end if end do; best end proc:
shown := proc(name, f) lprint(name, trunc(10^9*least(f)/n)) end proc:
shown("loop", proc() local i; for i to n do end do end proc);
shown("hypot", proc() local i; for i to n do hypot(3.0, 4.5) end do end proc);
shown("twice", proc() local i; for i to n do twice(21) end do end proc);
shown("tag", proc() local i; for i to n do tag(21, "a text of some length") end do end proc);
shown("array_10", proc() local i; for i to n do first(short, 10) end do end proc);
shown("array_million", proc() local i; for i to n do first(long, 1000000) end do end proc);
END
cat > ctypes_calls.py <<'END'
import ctypes, time
n = 1000000
m, b = ctypes.CDLL("libm.so.6"), ctypes.CDLL("./libbench.so")
d, i, s = ctypes.c_double, ctypes.c_int, ctypes.c_char_p
hypot = m.hypot; hypot.restype = d; hypot.argtypes = [d, d]
twice = b.twice; twice.restype = i; twice.argtypes = [i]
tag = b.tag; tag.restype = i; tag.argtypes = [i, s]
first = b.first; first.restype = d; first.argtypes = [ctypes.POINTER(d), i]
short, long = (d * 10)(*[1.0] * 10), (d * n)()
text = b"a text of some length"
def least(f):
    best = 1e9
    for _ in range(3):
        t = time.process_time(); f(); best = min(best, time.process_time() - t)
    return best
def loop():
    for k in range(n): pass
def call_hypot():
    f = hypot
    for k in range(n): f(3.0, 4.5)
def call_twice():
    f = twice
    for k in range(n): f(21)
def call_tag():
    f, t = tag, text
    for k in range(n): f(21, t)
def call_array_10():
    f, data = first, short
    for k in range(n): f(data, 10)
def call_array_million():
    f, data, m = first, long, n
    for k in range(m): f(data, m)
for name, f in (("loop", loop), ("hypot", call_hypot), ("twice", call_twice), ("tag", call_tag),
                ("array_10", call_array_10), ("array_million", call_array_million)):
    print(name, int(1e9 * least(f) / n))
END
sed -e 's/^import ctypes, time/import time\nfrom cffi import FFI/' -e '/^m, b = /,/^short, long/d' ctypes_calls.py > cffi_calls.py
sed -i 's/^n = 1000000/n = 1000000\nffi = FFI()\nffi.cdef("double hypot(double, double); int twice(int); int tag(int, const char *); double first(double *, int);")\nm, b = ffi.dlopen("libm.so.6"), ffi.dlopen(".\/libbench.so")\nhypot, twice, tag, first = m.hypot, b.twice, b.tag, b.first\nshort, long = ffi.new("double[10]"), ffi.new("double[1000000]")/' cffi_calls.py

figures() { sed -e 's/[,"]//g' "$1" | awk '{print $1, $2}'; }
"$build/bin/korelTTY" -q -s korel.krl > korel.out 2>&1
: > ctypes.out; : > cffi.out
if [ -n "$python" ]; then
  "$python" -I -S -c 'import ctypes' 2> /dev/null && "$python" ctypes_calls.py > ctypes.out
  "$python" -c 'import cffi' 2> /dev/null && "$python" cffi_calls.py > cffi.out
fi
printf '%-16s %8s %8s %8s %8s\n' 'ns a call' korel ctypes cffi ratio
figures korel.out | while read -r name ours; do
  theirs=$(awk -v n="$name" '$1 == n {print $2}' ctypes.out)
  other=$(awk -v n="$name" '$1 == n {print $2}' cffi.out)
  awk -v name="$name" -v a="$ours" -v b="${theirs:--}" -v c="${other:--}" 'BEGIN {
    printf "%-16s %8s %8s %8s %8s\n", name, a, b, c, b == "-" ? "-" : sprintf("%.2f", a / b) }'
done
