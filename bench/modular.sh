#!/bin/sh
# Rows on polynomials modulo 46327, beside Singular and PARI/GP where they are installed:   bench/modular.sh BUILD
# Each program measures the processor time of the operation, repeated, and prints it in seconds; the fastest of three
# counts, and the ratio is against the faster of the others. The rows of bench/modular_bench.cpp are of calls in C.
korel=$1/bin/korelTTY
singular=$(command -v Singular)
gp=$(command -v gp)

# fastest PROGRAM STATEMENTS: the statements go to its standard input; the last line is the time
fastest() {
  for _ in 1 2 3; do
    echo "$2" | timeout 60 $1 2>/dev/null | tail -1
  done | grep '^[0-9.]' | sort -g | head -1
}
# row NAME TIMES, then for each program what to prepare and what to repeat: Korel, Singular, PARI/GP
row() {
  ours=$(fastest "$korel -q -s" "p := 46327: $3
gc(): st := time():
to $2 do $4 end do:
lprint(evalf(time() - st)):")
  line=
  [ -n "$singular" ] && [ -n "$6" ] && line="$line Singular=$(fastest "$singular -q" "ring r = 46327, (x,y,z), lp; option(noloadLib);
system(\"--ticks-per-sec\", 1000); proc random_of(int n) { poly f; int j; for (j = 0; j <= n; j = j + 1) { f = f + random(1, 46326)*x^j; } return (f); }
$5
def h; int k; int st = timer;
for (k = 1; k <= $2; k = k + 1) { $6 kill h; }
timer - st;" | awk '{ print $1 / 1000 }')"
  [ -n "$gp" ] && [ -n "$8" ] && line="$line GP=$(fastest "$gp -q -s 2000000000" "random_of(n) = Pol(vector(n + 1, k, 1 + random(46326)))*Mod(1, 46327);
$7
gettime(); for(k = 1, $2, $8);
print(gettime() / 1000.)")"
  echo "$1|$2|$ours|$line" | awk -F'|' '{
    n = split($4, peers, " "); best = ""
    for (i = 1; i <= n; ++i) {
      split(peers[i], one, "=")
      if (one[2] == "") continue
      shown = shown sprintf("  %s %.1f", one[1], one[2] * 1e6 / $2)
      if (best == "" || one[2] < best) best = one[2]
    }
    ratio = (best > 0 ? $3 / best : 0)
    printf "%-44s %11.1f us %8.2f %s\n", $1, $3 * 1e6 / $2, ratio, shown }'
}
printf '%-44s %14s %8s   %s\n' 'polynomials modulo 46327' korel ratio 'to the fastest of these, in us'

for n in 10 100 1000; do
  times=$((200000 * 10 / n / (n / 10)))
  korel_operands="a := modp1(Randpoly(x, $n), p): b := modp1(Randpoly(x, $n), p): c := modp1(Multiply(a, b), p):"
  singular_operands="poly a = random_of($n); poly b = random_of($n); poly c = a*b;"
  gp_operands="a = random_of($n); b = random_of($n); c = a*b;"
  row "product, degree $n" $times "$korel_operands" 'modp1(Multiply(a, b), p)' \
    "$singular_operands" 'def h = a*b;' "$gp_operands" 'a*b'
  row "division, degree $n" $times "$korel_operands" 'modp1(Quo(c, b), p)' \
    "$singular_operands" 'def h = c/b;' "$gp_operands" 'divrem(c, b)'
  row "gcd, degree $n" $times "$korel_operands" 'modp1(Gcd(a, b), p)' \
    "$singular_operands" 'def h = gcd(a, b);' "$gp_operands" 'gcd(a, b)'
done
for n in 100 500; do
  row "factors, degree $n" $((2000 / n)) "a := modp1(Randpoly(x, $n), p):" 'modp1(Factors(a), p)' \
    "poly a = random_of($n);" 'def h = factorize(a);' "a = random_of($n);" 'factor(a)'
done

# Several indeterminates.
dense_a='(1+x+y+z)^8+x*y' dense_b='(2+x-y+3*z)^8-x' dense_c='(1-x+2*y+z)^8+z'
row 'gcd, three indeterminates, dense' 40 \
  "a := Expand(($dense_a)*($dense_c)) mod p: b := Expand(($dense_b)*($dense_c)) mod p:" 'Gcd(a, b) mod p' \
  "poly a = ($dense_a)*($dense_c); poly b = ($dense_b)*($dense_c);" 'def h = gcd(a, b);' '' ''
row 'resultant, two parameters' 40 "a := Expand(x^6+(y+z+1)^4*x+y) mod p: b := Expand(y*x^5+(y-z)^3*x+1) mod p:" \
  'Resultant(a, b, x) mod p' "poly a = x^6+(y+z+1)^4*x+y; poly b = y*x^5+(y-z)^3*x+1;" 'def h = resultant(a, b, x);' '' ''
row 'factors, three indeterminates' 40 \
  'a := Expand((x^3*y+z^2+x+2)*(y^3+x*z+5)*(x^2+y*z^2+7)) mod p:' 'Factors(a) mod p' \
  'poly a = (x^3*y+z^2+x+2)*(y^3+x*z+5)*(x^2+y*z^2+7);' 'def h = factorize(a);' '' ''
