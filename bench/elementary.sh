#!/bin/sh
# Rows on the elementary functions and the constants, beside PARI/GP, mpmath and Maxima where they are installed:
#   bench/elementary.sh BUILD
# Each program measures the processor time of a loop alone and prints it in seconds; the fastest of three counts, and the
# ratio is against the fastest of the others. Each call has another argument, so that nothing is remembered. The last
# rows hold a call that stands as it is against one of a name without a value.
korel=$1/bin/korelTTY
python=$(for p in python3 /usr/bin/python3; do "$p" -c 'import mpmath' 2>/dev/null && echo "$p" && break; done)
gp=$(command -v gp)
maxima=$(command -v maxima)

# fastest PROGRAM STATEMENTS: the statements go to its standard input; the last line that is a number is the time
fastest() {
  for _ in 1 2 3; do
    echo "$2" | timeout 20 $1 2>/dev/null | grep -E '^ *[0-9.]+(e-?[0-9]+)? *$' | tail -1 | tr -d ' '
  done | sort -g | head -1
}
print_row() { # name, ours, count, NAME=seconds...
  name=$1 ours=$2 count=$3
  shift 3
  echo "$@" | awk -v name="$name" -v ours="$ours" -v count="$count" '{
    best = -1
    for (i = 1; i <= NF; ++i) { split($i, part, "="); if (part[2] > 0 && (best < 0 || part[2] < best)) best = part[2] }
    printf "%-44s %11.3f us", name, ours * 1e6 / count
    if (best > 0) printf " %11.3f us %8.2f ", best * 1e6 / count, ours / best
    else printf " %14s %8s ", "-", "-"
    for (i = 1; i <= NF; ++i) { split($i, part, "="); if (part[2] > 0) printf " %s %.3f", part[1], part[2] * 1e6 / count }
    printf "\n" }'
}
# loop NAME DIGITS COUNT KOREL GP MPMATH MAXIMA: COUNT times the function of x + i/1000
loop() {
  ours=$(fastest "$korel -q -s" "Digits := $2: x := 1.41421356237309504880168872420969807856967:
f := proc(n) local i; for i to n do $4(x + i/1000.) end do end proc: f(2): gc(): st := time(): f($3): lprint(evalf(time() - st)):")
  others=
  [ -n "$gp" ] && others="$others GP=$(fastest "$gp -q" "default(realprecision, $2); x = 1.41421356237309504880168872420969807856967;
$5(x); gettime(); for(i = 1, $3, $5(x + i/1000.)); print(gettime() / 1000.)")"
  [ -n "$python" ] && others="$others mpmath=$(fastest "$python -" "from time import process_time
from mpmath import mp
mp.dps = $2
x = mp.mpf('1.41421356237309504880168872420969807856967')
f = mp.$6
f(x)
st = process_time()
for i in range($3): f(x + mp.mpf(i)/1000)
print(process_time() - st)")"
  [ -n "$maxima" ] && others="$others Maxima=$(fastest "$maxima --very-quiet" "fpprec: $2\$ x: 1.41421356237309504880168872420969807856967b0\$ y: $7(x)\$
st: elapsed_run_time()\$ for i thru $3 do $7(x + i/1000b0)\$ print(elapsed_run_time() - st)\$")"
  print_row "$1, $2 digits" "$ours" "$3" $others
}
# once NAME KOREL GP MPMATH MAXIMA: one constant
once() {
  ours=$(fastest "$korel -q -s" "st := time(): $2: lprint(evalf(time() - st)):")
  others=
  [ -n "$gp" ] && others="$others GP=$(fastest "$gp -q -s 200000000" "$3; print(gettime() / 1000.)")"
  [ -n "$python" ] && others="$others mpmath=$(fastest "$python -" "from time import process_time
from mpmath import mp
st = process_time()
$4
print(process_time() - st)")"
  [ -n "$maxima" ] && others="$others Maxima=$(fastest "$maxima --very-quiet" "st: elapsed_run_time()\$ $5\$ print(elapsed_run_time() - st)\$")"
  print_row "$1" "$ours" 1 $others
}

once 'Pi, 100,000 digits' 'evalf(Pi, 100000)' 'default(realprecision, 100000); Pi' 'mp.dps = 100000; +mp.pi' 'fpprec: 100000$ bfloat(%pi)'
once 'exp(1), 100,000 digits' 'evalf(exp(1), 100000)' 'default(realprecision, 100000); exp(1)' 'mp.dps = 100000; +mp.e' 'fpprec: 100000$ bfloat(%e)'
once 'ln(2), 10,000 digits' 'evalf(ln(2), 10000)' 'default(realprecision, 10000); log(2)' 'mp.dps = 10000; mp.log(2)' 'fpprec: 10000$ bfloat(log(2))'
once "Euler's constant, 10,000 digits" 'evalf(gamma, 10000)' 'default(realprecision, 10000); Euler' 'mp.dps = 10000; +mp.euler' 'fpprec: 10000$ bfloat(%gamma)'
for digits in 20 100 1000; do
  count=$((digits < 1000 ? 5000 : 500))
  loop sin $digits $count sin sin sin sin
  loop exp $digits $count exp exp exp exp
  loop ln $digits $count ln log log log
  loop arctan $digits $count arctan atan atan atan
done

# Calls that stand: 10^4 distinct ones evaluated 100 times, and substitution into them.
standing() {
  ours=$(fastest "$korel -q -s" "$(echo "$2" | sed 's/HEAD/sin/g')")
  theirs=$(fastest "$korel -q -s" "$(echo "$2" | sed 's/HEAD/unassigned/g')")
  print_row "$1" "$ours" "$3" "unassigned=$theirs"
}
standing 'a call sin(x[i]) that stands, evaluated' "HEAD(0): e := add(HEAD(x||i), i = 1..10000):
f := proc(e) local i; for i to 100 do eval(e) end do end proc: f(e): gc(): st := time(): f('e'): lprint(evalf(time() - st)):" 2000000
standing 'the same within products' "HEAD(0): e := add(i*y*HEAD(2*x||i + y), i = 1..10000):
f := proc(e) local i; for i to 100 do eval(e) end do end proc: gc(): st := time(): f('e'): lprint(evalf(time() - st)):" 2000000
standing 'substitution into 10,000 calls' "HEAD(0): e := add(HEAD(x||i + y), i = 1..10000):
gc(): st := time(): for k to 20 do subs(y = k, e) end do: lprint(evalf(time() - st)):" 200000
