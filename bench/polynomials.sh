#!/bin/sh
# Rows on polynomials, beside Singular, PARI/GP, GiNaC, Maxima and SymPy where they are installed:
#   bench/polynomials.sh BUILD
# Each program measures the processor time of the operation alone and prints it in seconds; the fastest of three counts,
# and the ratio is against the fastest of the others, but for those whose clock shows 0. Korel, Singular and PARI/GP do
# a short operation `copies` times, since their clocks count whole milliseconds. Behind each time stands the peak memory
# of the whole process.
# SymPy works in its polynomial ring and Maxima in its rational form, the fastest of their ways.
korel=$1/bin/korelTTY
python=$(for p in python3 /usr/bin/python3; do "$p" -c 'import sympy' 2>/dev/null && echo "$p" && break; done)
singular=$(command -v Singular)
gp=$(command -v gp)
ginsh=$(command -v ginsh)
maxima=$(command -v maxima)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
copies=1

# fastest PROGRAM STATEMENTS: the statements go to its standard input; the last line is the time. Prints the least time,
# and the peak of the processes in megabytes.
fastest() {
  : > "$scratch/times"
  for _ in 1 2 3; do
    echo "$2" | /usr/bin/time -o "$scratch/peak" -f '%M' timeout 10 $1 2>/dev/null | tail -1 >> "$scratch/times"
    grep -q 'status 124' "$scratch/peak" && return  # it took too long
  done
  grep '^[0-9.]' "$scratch/times" | sort -g | head -1 | awk -v kb="$(tail -1 "$scratch/peak")" '{ print $1, kb/1024 }'
}
# row NAME, then for each program what to prepare and what to measure: Korel, which does all copies at once, Singular,
# PARI/GP, SymPy, GiNaC, Maxima
row() {
  ours=$(fastest "$korel -q -s" "$2
gc(): st := time():
$3
lprint(evalf((time() - st)/$copies)):")
  line=
  # Singular's clock is coarse: ten times the same.
  [ -n "$singular" ] && [ -n "$5" ] && line="$line;Singular $(fastest "$singular -q" "ring r = 0, (x,y,z,u,v,w), lp; option(noloadLib);
system(\"--ticks-per-sec\", 1000); $4
poly h; int k; int st = timer;
for (k = 1; k <= $((10 * copies)); k = k + 1) { $5 }
timer - st;" | awk -v copies="$copies" '{ print $1 / 10000 / copies, $2 }')"
  [ -n "$gp" ] && [ -n "$7" ] && line="$line;GP $(fastest "$gp -q -s 2000000000" "$6
gettime();
for (copy = 1, $copies, $7)
print(gettime() / 1000. / $copies)")"
  [ -n "$ginsh" ] && [ -n "${11}" ] && line="$line;GiNaC $(fastest "$ginsh" "${10}
time(${11});" | sed 's/s / /')"
  [ -n "$maxima" ] && [ -n "${13}" ] && line="$line;Maxima $(fastest "$maxima --very-quiet" "${12}
st: elapsed_run_time()\$ ${13}\$ print(elapsed_run_time() - st)\$")"
  [ -n "$python" ] && [ -n "$9" ] && line="$line;SymPy $(fastest "$python -" "from time import process_time
from sympy import *
R, x, y, z, u, v, w = ring('x,y,z,u,v,w', ZZ)
$8
st = process_time()
$9
print(process_time() - st)")"
  echo "$1|$ours|$line" | awk -F'|' '{
    n = split($3, peers, ";"); best = ""
    for (i = 1; i <= n; ++i) {
      if (split(peers[i], one, " ") < 3) continue
      shown = shown sprintf("  %s %.1f (%.0f MB)", one[1], one[2] * 1000, one[3])
      if (one[2] > 0 && (best == "" || one[2] < best)) best = one[2]
    }
    split($2, own, " ")
    ratio = (best > 0 ? own[1] / best : 0)
    printf "%-44s %9.1f ms %5.0f MB %6.2f %s\n", $1, own[1] * 1000, own[2], ratio, shown }'
}
printf '%-44s %12s %8s %6s   %s\n' polynomials korel peak ratio 'to the fastest of these, in ms'

row '(1+x+y+z)^20 times its successor' 'f := expand((1 + x + y + z)^20): g := f + 1:' 'expand(f*g):' \
    'poly f = (1+x+y+z)^20; poly g = f+1;' 'h = f*g;' \
    'f = (1+x+y+z)^20; g = f+1;' 'h = f*g;' 'f = (1+x+y+z)**20; g = f+1' 'h = f*g' \
    'f = expand((1+x+y+z)^20): g = f+1:' 'expand(f*g)' \
    'f: rat((1+x+y+z)^20)$ g: f+1$' 'f*g'
row 'its division by the first factor' \
    'f := expand((1 + x + y + z)^20): g := expand(f*(f + 1)):' 'divide(g, f):' \
    'poly f = (1+x+y+z)^20; poly g = f*(f+1);' 'h = g/f;' \
    'f = (1+x+y+z)^20; g = f*(f+1);' 'h = g/f;' 'f = (1+x+y+z)**20; g = f*(f+1)' 'h = g.exquo(f)' \
    'f = expand((1+x+y+z)^20): g = expand(f*(f+1)):' 'divide(g,f)' \
    'f: rat((1+x+y+z)^20)$ g: f*(f+1)$' 'quotient(g,f)'
copies=20
row '(x+y+z+w+1)^16' '' 'for k to 20 do expand((x||k + y + z + w + 1)^16) end do:' '' 'h = (x+y+z+w+1)^16;' \
    '' 'h = (x+y+z+w+1)^16;' '' 'h = (x+y+z+w+1)**16' \
    '' 'expand((x+y+z+w+1)^16)' \
    '' 'rat((x+y+z+w+1)^16)'
row '(x+y+z+u+v+w)^12' '' 'for k to 20 do expand((x||k + y + z + u + v + w)^12) end do:' '' 'h = (x+y+z+u+v+w)^12;' \
    '' 'h = (x+y+z+u+v+w)^12;' '' 'h = (x+y+z+u+v+w)**12' \
    '' 'expand((x+y+z+u+v+w)^12)' \
    '' 'rat((x+y+z+u+v+w)^12)'
copies=1
row 'sparse: (1+x^17+y^31+z^5+u^7)^14 squared' 'f := expand((1 + x^17 + y^31 + z^5 + u^7)^14):' 'expand(f*(f + x)):' \
    'poly f = (1+x^17+y^31+z^5+u^7)^14;' 'h = f*(f+x);' \
    'f = (1+x^17+y^31+z^5+u^7)^14;' 'h = f*(f+x);' 'f = (1+x**17+y**31+z**5+u**7)**14' 'h = f*(f+x)' \
    'f = expand((1+x^17+y^31+z^5+u^7)^14):' 'expand(f*(f+x))' \
    'f: rat((1+x^17+y^31+z^5+u^7)^14)$' 'f*(f+x)'
copies=20
row 'gcd, three variables, dense of degree 10' \
    'a := expand((1 + x + y + z)^10 + x*y): b := expand((2 + x - y + 3*z)^10 - x): c := expand((1 - x + 2*y + z)^10 + z): p := expand(a*c): q := expand(b*c):' \
    'to 20 do gcd(p, q) end do:' \
    'poly a = (1+x+y+z)^10+x*y; poly b = (2+x-y+3*z)^10-x; poly c = (1-x+2*y+z)^10+z; poly p = a*c; poly q = b*c;' \
    'h = gcd(p, q);' \
    'a = (1+x+y+z)^10+x*y; b = (2+x-y+3*z)^10-x; c = (1-x+2*y+z)^10+z; p = a*c; q = b*c;' 'g = gcd(p, q);' \
    'a = (1+x+y+z)**10+x*y; b = (2+x-y+3*z)**10-x; c = (1-x+2*y+z)**10+z; p = a*c; q = b*c' 'g = p.gcd(q)' \
    'a = expand((1+x+y+z)^10+x*y): b = expand((2+x-y+3*z)^10-x): c = expand((1-x+2*y+z)^10+z): p = expand(a*c): q = expand(b*c):' 'gcd(p,q)' \
    'a: rat((1+x+y+z)^10+x*y)$ b: rat((2+x-y+3*z)^10-x)$ c: rat((1-x+2*y+z)^10+z)$ p: a*c$ q: b*c$' 'gcd(p,q)'
sparse_a='7*x^9*y^2*z-5*u^8*v^3*w+3*x*z^7*w^6+11*y^9*u^2+13*v^7*z^2-2*w^9*x^3+17*x^4*y^4*u^4+1'
sparse_b='5*y^8*z^3+9*x^7*u^2*v-4*w^8*y+6*v^9*z^4-13*x^2*u^9+8*x^5*w^5*z+3*y^3*v^3-7'
sparse_c='4*x^8*w^2-3*y^7*u^3*v+5*z^9*x+7*u^6*w^4+2*v^8*y^2-9*x^3*y^3*z^3+1'
python_power() { echo "$1" | sed 's/\^/**/g'; }
row 'gcd, six variables, sparse' \
    "p := expand(($sparse_a)*($sparse_c)): q := expand(($sparse_b)*($sparse_c)):" 'to 20 do gcd(p, q) end do:' \
    "poly a = $sparse_a; poly b = $sparse_b; poly c = $sparse_c; poly p = a*c; poly q = b*c;" 'h = gcd(p, q);' \
    "a = $sparse_a; b = $sparse_b; c = $sparse_c; p = a*c; q = b*c;" 'g = gcd(p, q);' \
    "a = $(python_power "$sparse_a"); b = $(python_power "$sparse_b"); c = $(python_power "$sparse_c"); p = a*c; q = b*c" \
    'g = p.gcd(q)' \
    "a = $sparse_a: b = $sparse_b: c = $sparse_c: p = expand(a*c): q = expand(b*c):" 'gcd(p,q)' \
    "a: rat($sparse_a)\$ b: rat($sparse_b)\$ c: rat($sparse_c)\$ p: a*c\$ q: b*c\$" 'gcd(p,q)'
row 'normal form of a sum of 100 fractions' 's := [seq(add(1/(x||j + k), k = 1 .. 100), j = 1 .. 20)]:' \
    'for j to 20 do normal(s[j]) end do:' \
    '' '' '' 's = sum(k = 1, 100, 1/(x+k));' \
    "X = symbols('X'); s = sum(1/(X+k) for k in range(1, 101))" 'h = cancel(together(s))' \
    "s = $(seq -s + -f '1/(x+%g)' 1 100):" 'normal(s)' \
    's: sum(1/(x+k), k, 1, 100)$' 'ratsimp(s)'
